// SPDX-License-Identifier: MIT
// The vector forms, for registers of any width. Included by one kernel file a tier.
//
// Eight pixels of three samples fill three registers' lanes. Working rows may be read and written
// beyond their ends (see WorkRows), pixels not.
#pragma once

#include "core/channel_shuffles.h"
#include "core/vector_ops.h"
#include "tone/hyper_tone/kernels.h"
#include "tone/pyramid/pixels_vector.h"

namespace ovra {
namespace {

template <class V>
constexpr std::ptrdiff_t kStep = 8 * V::kLanes;  // pixels

template <class V>
const HyperToneKernels& Narrower() {
  return NarrowerThan<V>(kHyperTonePlain, kHyperToneSse);
}

template <class V>
struct Channels {
  using Reg = typename V::Reg;

  Channels(const uint16_t* pixels, Reg max_sample) {
    SplitThreeChannels<V, 16>(pixels, samples);
    for (Reg& channel : samples) channel = V::MinU16(channel, max_sample);
  }
  Reg Strongest() const { return V::Max16(V::Max16(samples[0], samples[1]), samples[2]); }

  Reg samples[3];
};

template <class V>
void Brightness(const uint16_t* source, int16_t* brightness, std::ptrdiff_t pixels,
                const TonePixels& format) {
  const WeightedSum<V> luminance(format.weights, format.depth_bits - 9, false);
  const auto max_sample = V::Set16(format.MaxSample());
  std::ptrdiff_t i = 0;
  for (; i + kStep<V> <= pixels; i += kStep<V>) {
    PrefetchAhead<6 * kStep<V>>(source + 3 * i, kAheadInRow);
    const Channels<V> pixel(source + 3 * i, max_sample);
    const auto strongest = V::ShiftLeft16(pixel.Strongest(), 15 - format.depth_bits);
    V::Store(
        brightness + i,
        V::AverageU16(luminance(pixel.samples[0], pixel.samples[1], pixel.samples[2]), strongest));
  }
  Narrower<V>().brightness(source + 3 * i, brightness + i, pixels - i, format);
}

// The sums of the channels of four rows of pixels: eight in each lane, those of the second lane 32
// pixels further.
template <class V>
void SumFourRows(const uint16_t* const* rows, std::ptrdiff_t first_sample,
                 typename V::Reg max_sample, typename V::Reg (&sums)[3]) {
  typename V::Reg interleaved[3];
  for (std::ptrdiff_t r = 0; r < 3; ++r) {
    interleaved[r] = V::Zero();
    for (int k = 0; k < 4; ++k) {
      const uint16_t* const p = rows[k] + first_sample + 8 * r;
      interleaved[r] = V::Add16(interleaved[r], V::MinU16(V::LoadLanes(p, p + 3 * 32), max_sample));
    }
  }
  SplitRegisters<V, 16>(interleaved, sums);
}

template <class V>
void Blocks(const uint16_t* const* rows, int16_t* brightness, std::ptrdiff_t pixels,
            const TonePixels& format) {
  const WeightedSum<V> luminance(format.weights, format.depth_bits - 5, true);
  const auto max_sample = V::Set16(format.MaxSample());
  const std::ptrdiff_t next_rows =
      4 * (reinterpret_cast<std::ptrdiff_t>(rows[1]) - reinterpret_cast<std::ptrdiff_t>(rows[0]));
  std::ptrdiff_t x = 0;
  for (; x + 4 * kStep<V> <= pixels; x += 4 * kStep<V>) {
    for (int k = 0; k < 4; ++k) PrefetchAhead<6 * 4 * kStep<V>>(rows[k] + 3 * x, next_rows);
    typename V::Reg eights[4][3];
    for (std::ptrdiff_t k = 0; k < 4; ++k) {
      SumFourRows<V>(rows, 3 * (x + 8 * k), max_sample, eights[k]);
    }
    typename V::Reg sums[3];  // of whole blocks, up to 16 bits
    for (int c = 0; c < 3; ++c) {
      sums[c] = V::AddAcross16(V::AddAcross16(eights[0][c], eights[1][c]),
                               V::AddAcross16(eights[2][c], eights[3][c]));
    }
    const auto sum = V::MaxU16(V::MaxU16(sums[0], sums[1]), sums[2]);
    const auto strongest =
        format.depth_bits == 10 ? V::ShiftLeft16(sum, 1) : V::ShiftRightU16(sum, 1);
    V::Store(brightness + x / 4,
             V::AverageU16(
                 luminance(V::FlipSign16(sums[0]), V::FlipSign16(sums[1]), V::FlipSign16(sums[2])),
                 strongest));
  }
  const uint16_t* const rest[] = {rows[0] + 3 * x, rows[1] + 3 * x, rows[2] + 3 * x,
                                  rows[3] + 3 * x};
  if (x < pixels) Narrower<V>().blocks(rest, brightness + x / 4, pixels - x, format);
}

// The gains of a register of pixels.
template <class V>
typename V::Reg GainsAt(const DetailRow& row, std::ptrdiff_t i, const int32_t* table) {
  const auto zero = V::Zero();
  const auto low_half = V::Set32(0xFFFF);
  const auto d = V::Load(row.detail + i);
  const auto base = V::Max16(V::SubSat16(V::Load(row.brightness + i), d), zero);
  const auto index = V::ShiftRightU16(V::Add16(base, V::Set16(4)), 3);
  const auto low = V::Gather32(table, V::template UnpackLow<16>(index, zero));
  const auto high = V::Gather32(table, V::template UnpackHigh<16>(index, zero));
  const auto gain = V::PackS32(V::And(low, low_half), V::And(high, low_half));
  const auto slope = V::PackS32(V::ShiftRight32(low, 16), V::ShiftRight32(high, 16));
  const auto raised = V::MulRound15(V::ShiftLeft16(d, 2), slope);
  return V::Max16(V::AddSat16(gain, raised), zero);
}

// (sample * gain + 4096) >> 13, for samples of up to 12 bits.
template <class V>
typename V::Reg Scaled(typename V::Reg samples, typename V::Reg gains) {
  return V::MulRound15(V::ShiftLeft16(samples, 2), gains);
}

// Three registers of pixels times a register of gains: each channel limited by itself.
template <class V>
struct Clipped {
  static constexpr auto kKernel = &HyperToneKernels::apply;

  Clipped(const ToneGains& /*gains*/, const TonePixels& format)
      : max_sample(V::Set16(format.MaxSample())) {}

  void operator()(const uint16_t* in, typename V::Reg gain, typename V::Reg (&out)[3]) const {
    for (int r = 0; r < 3; ++r) {
      const auto samples = V::MinU16(V::LoadLanes(in + 8 * r, in + 24 + 8 * r), max_sample);
      const auto spread = V::Shuffle8(gain, V::LoadToAllLanes(kSpreadOrder<2, 3, 3>.orders[r]));
      out[r] = V::Min16(Scaled<V>(samples, spread), max_sample);
    }
  }

  typename V::Reg max_sample;
};

// Gains that keep the strongest channel of each pixel within the depth.
template <class V>
typename V::Reg UnclippedGains(const Channels<V>& pixel, typename V::Reg gains,
                               typename V::Reg max_sample, int32_t max_product) {
  const auto strongest = pixel.Strongest();
  const auto clips = V::Greater16(Scaled<V>(strongest, gains), max_sample);
  if (V::IsZero(clips)) return gains;
  const auto zero = V::Zero();
  const auto product = V::Set32(max_product);
  const auto low = V::Divide32(product, V::template UnpackLow<16>(strongest, zero));
  const auto high = V::Divide32(product, V::template UnpackHigh<16>(strongest, zero));
  return V::Choose8(gains, V::PackS32(low, high), clips);
}

template <class V>
struct Unclipped {
  static constexpr auto kKernel = &HyperToneKernels::apply_unclipped;

  Unclipped(const ToneGains& /*gains*/, const TonePixels& format)
      : max_sample(V::Set16(format.MaxSample())), max_product(format.MaxSample() * 8192) {}

  void operator()(const uint16_t* in, typename V::Reg gain, typename V::Reg (&out)[3]) const {
    Channels<V> pixel(in, max_sample);
    const auto unclipped = UnclippedGains<V>(pixel, gain, max_sample, max_product);
    for (auto& channel : pixel.samples) channel = Scaled<V>(channel, unclipped);
    JoinRegisters<V, 16>(pixel.samples, out);
  }

  typename V::Reg max_sample;
  int32_t max_product;
};

template <class V>
struct Coloured {
  using Reg = typename V::Reg;
  static constexpr auto kKernel = &HyperToneKernels::apply_colour;

  Coloured(const ToneGains& gains, const TonePixels& format)
      : unclipped(gains, format),
        luminance(format.weights, format.depth_bits - 9, false),
        share(V::Set16(gains.keep)),
        up(15 - format.depth_bits),
        down(28 - format.depth_bits) {}

  void operator()(const uint16_t* in, Reg gain_wanted, Reg (&out)[3]) const {
    const auto max_sample = unclipped.max_sample;
    Channels<V> pixel(in, max_sample);
    const auto gain = UnclippedGains<V>(pixel, gain_wanted, max_sample, unclipped.max_product);
    const auto kept = V::MulRound15(V::Sub16(gain, V::Set16(8192)), share);
    const auto own = V::Sub16(gain, kept);
    const auto factors_low = V::template UnpackLow<16>(own, kept);
    const auto factors_high = V::template UnpackHigh<16>(own, kept);
    const auto y = luminance(pixel.samples[0], pixel.samples[1], pixel.samples[2]);
    const auto half = V::Set32(1 << (down - 1));
    const auto mixed = [&](Reg channel_and_y, Reg factors) {
      return V::ShiftRight32(V::Add32(V::MulAdd16(channel_and_y, factors), half), down);
    };
    for (auto& channel : pixel.samples) {
      const auto raised = V::ShiftLeft16(channel, up);
      const auto low = mixed(V::template UnpackLow<16>(raised, y), factors_low);
      const auto high = mixed(V::template UnpackHigh<16>(raised, y), factors_high);
      channel = V::Min16(V::Max16(V::PackS32(low, high), V::Zero()), max_sample);
    }
    JoinRegisters<V, 16>(pixel.samples, out);
  }

  Unclipped<V> unclipped;
  WeightedSum<V> luminance;
  Reg share;
  int up;
  int down;
};

template <class V, template <class> class Form>
void ApplyRow(const uint16_t* source, const DetailRow& row, const ToneGains& gains,
              uint16_t* destination, std::ptrdiff_t pixels, const TonePixels& format) {
  constexpr auto kKernel = Form<V>::kKernel;
  const Form<V> form(gains, format);
  const std::ptrdiff_t i = CoverPixels<6, kStep<V>>(
      destination, pixels, gains.streaming,
      [&](std::ptrdiff_t count) {
        (kHyperTonePlain.*kKernel)(source, row, gains, destination, count, format);
      },
      [&]<bool kStreaming>(std::ptrdiff_t at) {
        typename V::Reg result[3];
        form(source + 3 * at, GainsAt<V>(row, at, gains.table), result);
        uint16_t* const out = destination + 3 * at;
        for (int r = 0; r < 3; ++r) {
          StoreLanesTo<V, kStreaming>(out + 8 * r, out + 24 + 8 * r, result[r]);
        }
      });
  (Narrower<V>().*kKernel)(source + 3 * i, {row.brightness + i, row.detail + i}, gains,
                           destination + 3 * i, pixels - i, format);
}

template <class V>
constexpr HyperToneKernels kHyperToneOf = {Brightness<V>, Blocks<V>, ApplyRow<V, Clipped>,
                                           ApplyRow<V, Unclipped>, ApplyRow<V, Coloured>};

}  // namespace
}  // namespace ovra
