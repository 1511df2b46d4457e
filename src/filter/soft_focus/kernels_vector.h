// SPDX-License-Identifier: MIT
// The vector forms, for registers of any width. Included by one kernel file a tier.
//
// Of a 16.16 state only its rounded upper half is used again, and in a narrow recursion that fits 16
// bits. So the halves alone are kept:
//
//   forward   n' = (n * feedback + 32768 >> 16) + sample
//   back      m' = (m * feedback + n * input + 32768) >> 16
//                = n + ((m - n) * feedback + 32768 >> 16)      as input is 65536 - feedback
#pragma once

#include "core/vector_ops.h"
#include "filter/soft_focus/kernels.h"

namespace ovra {
namespace {

template <class V>
const SoftFocusKernels& Narrower() {
  return NarrowerThan<V>(kSoftFocusPlain, kSoftFocusSse);
}

// (a * factor + 32768) >> 16 for unsigned 16-bit factors.
template <class V>
typename V::Reg RoundedProduct(typename V::Reg a, typename V::Reg factor) {
  return V::Add16(V::MulHighU16(a, factor), V::ShiftRightU16(V::MulLow16(a, factor), 15));
}

// The steps of a recursion with its constants in registers.
template <class V>
class NarrowRecursion {
 public:
  using Reg = typename V::Reg;

  explicit NarrowRecursion(const SoftFocusRecursion& recursion)
      : gain_(Set(recursion.gain)),
        feedback_(Set(recursion.feedback)),
        input_(Set(recursion.input)),
        start_fraction_(Set(recursion.gain * recursion.input)),
        start_integer_(Set(recursion.gain * recursion.input >> 16)) {}

  // The state of a constant line.
  Reg ForwardStart(Reg sample) const { return V::MulLow16(sample, gain_); }
  Reg Forward(Reg n, Reg sample) const { return V::Add16(RoundedProduct<V>(n, feedback_), sample); }

  // gain * input is about 65536: its integer and its fraction act apart.
  Reg BackStart(Reg n) const {
    return V::Add16(V::MulLow16(n, start_integer_), RoundedProduct<V>(n, start_fraction_));
  }
  Reg Back(Reg m, Reg n) const {
    // m - n is taken as unsigned: where it is negative the product comes out 65536 * feedback too
    // large.
    const Reg excess = V::AndNot(V::Equal16(V::MaxU16(m, n), m), feedback_);
    return V::Add16(n, V::Sub16(RoundedProduct<V>(V::Sub16(m, n), feedback_), excess));
  }
  // The first sample of a line has no state of its own on the way back.
  Reg BackToFirst(Reg m, Reg sample) const { return Forward(m, sample); }

  Reg Output(Reg m) const { return V::MulHighU16(m, input_); }

 private:
  static Reg Set(uint64_t value) { return V::Set16(static_cast<int32_t>(value & 0xFFFF)); }

  Reg gain_;
  Reg feedback_;
  Reg input_;
  Reg start_fraction_;
  Reg start_integer_;
};

// Filters kRegs registers of lines side by side. At least one step of padding follows the samples.
template <class V, int kRegs>
void FilterLineGroup(const NarrowRecursion<V>& recursion, const SoftFocusLines& lines,
                     std::ptrdiff_t first_line, uint16_t* work) {
  using Reg = typename V::Reg;
  constexpr std::ptrdiff_t kLanes = V::kBytes / 2;
  constexpr std::ptrdiff_t kGroup = kRegs * kLanes;
  uint8_t* const samples = lines.samples + first_line;
  Reg sample[kRegs];
  Reg state[kRegs];
  for (int r = 0; r < kRegs; ++r) {
    sample[r] = V::LoadU8As16(samples + r * kLanes);
    state[r] = recursion.ForwardStart(sample[r]);
  }
  std::ptrdiff_t i = 1;
  for (; i < lines.length; ++i) {
    for (int r = 0; r < kRegs; ++r) {
      sample[r] = V::LoadU8As16(samples + i * lines.stride + r * kLanes);
      state[r] = recursion.Forward(state[r], sample[r]);
      V::Store(work + i * kGroup + r * kLanes, state[r]);
    }
  }
  for (; i < lines.length + lines.padding; ++i) {
    for (int r = 0; r < kRegs; ++r) {
      state[r] = recursion.Forward(state[r], sample[r]);
      V::Store(work + i * kGroup + r * kLanes, state[r]);
    }
  }
  for (int r = 0; r < kRegs; ++r) state[r] = recursion.BackStart(state[r]);
  for (i = lines.length + lines.padding - 2; i >= lines.length; --i) {
    for (int r = 0; r < kRegs; ++r) {
      state[r] = recursion.Back(state[r], V::Load(work + i * kGroup + r * kLanes));
    }
  }
  for (; i > 0; --i) {
    for (int r = 0; r < kRegs; ++r) {
      state[r] = recursion.Back(state[r], V::Load(work + i * kGroup + r * kLanes));
      V::Store16AsU8(samples + i * lines.stride + r * kLanes, recursion.Output(state[r]));
    }
  }
  for (int r = 0; r < kRegs; ++r) {
    state[r] = recursion.BackToFirst(state[r], V::LoadU8As16(samples + r * kLanes));
    V::Store16AsU8(samples + r * kLanes, recursion.Output(state[r]));
  }
}

template <class V>
void FilterLines(const SoftFocusRecursion& recursion, const SoftFocusLines& lines, uint32_t* work) {
  constexpr std::ptrdiff_t kLanes = V::kBytes / 2;
  constexpr std::ptrdiff_t kRegs = 3;  // hides the latency of a step
  static_assert(kRegs * V::kBytes <= kSoftFocusWorkWords * 4);
  const NarrowRecursion<V> narrow(recursion);
  auto* const states = reinterpret_cast<uint16_t*>(work);
  std::ptrdiff_t k = 0;
  for (; k + kRegs * kLanes <= lines.count; k += kRegs * kLanes) {
    FilterLineGroup<V, kRegs>(narrow, lines, k, states);
  }
  for (; k + kLanes <= lines.count; k += kLanes) FilterLineGroup<V, 1>(narrow, lines, k, states);
  if (k == lines.count) return;
  Narrower<V>().filter_lines(
      recursion, {lines.samples + k, lines.stride, lines.length, lines.padding, lines.count - k},
      work);
}

// Transposes 16 x 16 bytes. Four rounds, each of which joins the elements of registers that are
// eight apart: after them the bits of row and column numbers have changed places.
inline void Transpose(Sse::Reg (&block)[16]) {
  for (int round = 0; round < 4; ++round) {
    Sse::Reg joined[16];
    for (int i = 0; i < 8; ++i) {
      joined[2 * i] = Sse::UnpackLow<8>(block[i], block[i + 8]);
      joined[2 * i + 1] = Sse::UnpackHigh<8>(block[i], block[i + 8]);
    }
    for (int i = 0; i < 16; ++i) block[i] = joined[i];
  }
}

// Gathering and scattering gain nothing from wider registers.
void Gather(const uint8_t* const* rows, uint8_t* lines, std::ptrdiff_t bytes) {
  static_assert(kSoftFocusRows == 16);
  std::ptrdiff_t i = 0;
  for (; i + 16 <= bytes; i += 16) {
    Sse::Reg block[16];
    for (int k = 0; k < 16; ++k) block[k] = Sse::Load(rows[k] + i);
    Transpose(block);
    for (int k = 0; k < 16; ++k) Sse::Store(lines + 16 * (i + k), block[k]);
  }
  const uint8_t* rest[16];
  for (int k = 0; k < 16; ++k) rest[k] = rows[k] + i;
  kSoftFocusPlain.gather(rest, lines + 16 * i, bytes - i);
}

void Scatter(const uint8_t* lines, uint8_t* const* rows, std::ptrdiff_t bytes) {
  std::ptrdiff_t i = 0;
  for (; i + 16 <= bytes; i += 16) {
    Sse::Reg block[16];
    for (int k = 0; k < 16; ++k) block[k] = Sse::Load(lines + 16 * (i + k));
    Transpose(block);
    for (int k = 0; k < 16; ++k) Sse::Store(rows[k] + i, block[k]);
  }
  uint8_t* rest[16];
  for (int k = 0; k < 16; ++k) rest[k] = rows[k] + i;
  kSoftFocusPlain.scatter(lines + 16 * i, rest, bytes - i);
}

template <class V>
void Mix(const uint8_t* source, const uint8_t* blurred, uint8_t* destination, SoftFocusBlock block,
         uint32_t share) {
  constexpr std::ptrdiff_t kStep = V::kBytes / 2;
  // blurred + ((source - blurred) * rest >> 16): a rest below 65536 is 16 bits. A negative
  // difference, taken as unsigned, gives a product that is 65536 * rest too large.
  const auto rest = V::Set16(static_cast<int32_t>(65536 - share));
  const std::ptrdiff_t whole = block.bytes / kStep * kStep;
  for (std::ptrdiff_t y = 0; y < block.rows; ++y) {
    const std::ptrdiff_t begin = y * block.stride;
    for (std::ptrdiff_t i = begin; i < begin + whole; i += kStep) {
      const auto b = V::LoadU8As16(blurred + i);
      const auto difference = V::Sub16(V::LoadU8As16(source + i), b);
      const auto excess = V::And(V::ShiftRight16(difference, 15), rest);
      const auto product = V::Sub16(V::MulHighU16(difference, rest), excess);
      V::Store16AsU8(destination + i, V::Add16(b, product));
    }
  }
  if (whole == block.bytes) return;
  Narrower<V>().mix(source + whole, blurred + whole, destination + whole,
                    {block.stride, block.rows, block.bytes - whole}, share);
}

template <class V>
constexpr SoftFocusKernels kSoftFocusOf = {FilterLines<V>, Gather, Scatter, Mix<V>};

}  // namespace
}  // namespace ovra
