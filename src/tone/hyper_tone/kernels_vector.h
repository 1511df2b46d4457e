// SPDX-License-Identifier: MIT
// The vector forms, for registers of any width. Included by one kernel file a tier.
//
// Eight pixels of three samples fill three registers' lanes. Working rows may be read and written
// beyond their ends (see WorkRows), pixels not.
#pragma once

#include "core/channel_shuffles.h"
#include "core/vector_ops.h"
#include "tone/hyper_tone/kernels.h"
#include "tone/pyramid/enlarge_vector.h"
#include "tone/pyramid/limited_vector.h"
#include "tone/pyramid/pixels_vector.h"

namespace ovra {
namespace {

template <class V>
constexpr std::ptrdiff_t kStep = 8 * V::kLanes;  // pixels

template <class V>
const HyperToneKernels& Narrower() {
  return NarrowerThan<V>(kHyperTonePlain, kHyperToneSse);
}

// Pixels by channel, limited.
template <class V>
struct Pixels {
  using Reg = typename V::Reg;

  Pixels(const uint16_t* pixels, Reg max_sample) {
    Reg lanes[3];
    V::LoadTriple(pixels, lanes);
    SplitRegisters<V, 16>(lanes, samples);
    for (Reg& channel : samples) channel = V::MinU16(channel, max_sample);
  }
  Reg Strongest() const { return V::Max16(V::Max16(samples[0], samples[1]), samples[2]); }

  Reg samples[3];
};

template <class V>
class Luminance {
 public:
  using Reg = typename V::Reg;

  explicit Luminance(const TonePixels& format)
      : sum_(format.depth_bits - 9), is_rgb_(format.weights[0] == NarrowLuminance<V>::kFirst) {}

  Reg operator()(const Pixels<V>& pixel) const {
    const auto& c = pixel.samples;
    return is_rgb_ ? sum_(c[0], c[1], c[2]) : sum_(c[2], c[1], c[0]);
  }

 private:
  NarrowLuminance<V> sum_;
  bool is_rgb_;
};

// The brightness of pixels.
template <class V>
class SteeringBrightness {
 public:
  explicit SteeringBrightness(const TonePixels& format)
      : luminance_(format), up_(V::Set16(1 << (15 - format.depth_bits))) {}

  typename V::Reg operator()(const Pixels<V>& pixel) const {
    return V::AverageU16(luminance_(pixel), V::MulLow16(pixel.Strongest(), up_));
  }

 private:
  Luminance<V> luminance_;
  typename V::Reg up_;
};

template <class V>
void Brightness(const uint16_t* source, int16_t* brightness, std::ptrdiff_t pixels,
                const TonePixels& format) {
  const SteeringBrightness<V> of(format);
  const auto max_sample = V::Set16(format.MaxSample());
  std::ptrdiff_t i = 0;
  for (; i + kStep<V> <= pixels; i += kStep<V>) {
    PrefetchAhead<6 * kStep<V>>(source + 3 * i, kAheadInRow);
    V::Store(brightness + i, of(Pixels<V>(source + 3 * i, max_sample)));
  }
  Narrower<V>().brightness(source + 3 * i, brightness + i, pixels - i, format);
}

// The limited difference of brightness and what blocks enlarge to, for pixels from `x` on in whole
// steps.
template <class V>
class BlockDetail {
 public:
  BlockDetail(std::ptrdiff_t x, const SoftLimit& limit) : enlarger_(x), limited_(limit) {}

  typename V::Reg At(const int16_t* blocks, std::ptrdiff_t x, typename V::Reg brightness) const {
    return limited_(V::Sub16(brightness, enlarger_.From(blocks, x)));
  }

 private:
  Enlarger<V> enlarger_;
  VectorLimit<V> limited_;
};

template <class V>
void FineDetail(const uint16_t* source, const int16_t* blocks, const SoftLimit& limit,
                const FineRows& rows, const RowSpan& pixels, const TonePixels& format) {
  const SteeringBrightness<V> of(format);
  const BlockDetail<V> detail(pixels.first, limit);
  const auto max_sample = V::Set16(format.MaxSample());
  std::ptrdiff_t x = pixels.first;
  const auto cover = [&]<bool kHasRest>() {
    for (; x + kStep<V> <= pixels.end; x += kStep<V>) {
      PrefetchAhead<6 * kStep<V>>(source + 3 * x, kAheadInRow);
      const auto brightness = of(Pixels<V>(source + 3 * x, max_sample));
      const auto d = detail.At(blocks, x, brightness);
      V::Store(rows.brightness + x, brightness);
      V::Store(rows.detail + x, d);
      if constexpr (kHasRest) V::Store(rows.rest + x, V::Sub16(brightness, d));
    }
  };
  if (rows.rest != nullptr) {
    cover.template operator()<true>();
  } else {
    cover.template operator()<false>();
  }
  Narrower<V>().fine_detail(source, blocks, limit, rows, {x, pixels.end}, format);
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
[[gnu::always_inline]] inline typename V::Reg GainsAt(typename V::Reg brightness, typename V::Reg d,
                                                      const int32_t* table) {
  constexpr int kOddWords = 0xAA;
  const auto zero = V::Zero();
  const auto base = V::Max16(V::SubSat16(brightness, d), zero);
  const auto index = V::ShiftRightU16(V::Add16(base, V::Set16(4)), 3);
  typename V::Reg evens;
  typename V::Reg odds;
  V::LookUp32(table, index, &evens, &odds);
  const auto gain = V::template Choose16<kOddWords>(evens, V::ShiftLeft32(odds, 16));
  const auto slope = V::template Choose16<kOddWords>(V::ShiftRightU32(evens, 16), odds);
  const auto raised = V::MulRound15(V::ShiftLeft16(d, 2), slope);
  return V::Max16(V::AddSat16(gain, raised), zero);
}

// (sample * gain + 4096) >> 13, for samples of up to 12 bits.
template <class V>
typename V::Reg Scaled(typename V::Reg samples, typename V::Reg gains) {
  return V::MulRound15(V::ShiftLeft16(samples, 2), gains);
}

// Three registers of pixels, lane by lane, times a register of gains.
template <class V>
void ScalePixels(const uint16_t* in, typename V::Reg gain, typename V::Reg max_sample,
                 typename V::Reg (&out)[3]) {
  typename V::Reg lanes[3];
  V::LoadTriple(in, lanes);
  for (int r = 0; r < 3; ++r) {
    const auto spread = V::Shuffle8(gain, V::LoadToAllLanes(kSpreadOrder<2, 3, 3>.orders[r]));
    out[r] = Scaled<V>(V::MinU16(lanes[r], max_sample), spread);
  }
}

// Each channel limited by itself.
template <class V>
struct Clipped {
  static constexpr auto kKernel = &HyperToneKernels::apply;

  Clipped(const ToneGains& /*gains*/, const TonePixels& format)
      : max_sample(V::Set16(format.MaxSample())) {}

  void operator()(const uint16_t* in, typename V::Reg gain, typename V::Reg (&out)[3]) const {
    ScalePixels<V>(in, gain, max_sample, out);
    for (auto& part : out) part = V::Min16(part, max_sample);
  }

  typename V::Reg max_sample;
};

// Gains that keep the strongest channel of each pixel within the depth.
template <class V>
typename V::Reg UnclippedGains(const Pixels<V>& pixel, typename V::Reg gains,
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

// A pixel clips where a channel does, and few registers have any.
template <class V>
struct Unclipped {
  static constexpr auto kKernel = &HyperToneKernels::apply_unclipped;

  Unclipped(const ToneGains& /*gains*/, const TonePixels& format)
      : max_sample(V::Set16(format.MaxSample())), max_product(format.MaxSample() * 8192) {}

  void operator()(const uint16_t* in, typename V::Reg gain, typename V::Reg (&out)[3]) const {
    ScalePixels<V>(in, gain, max_sample, out);
    const auto strongest = V::Max16(V::Max16(out[0], out[1]), out[2]);
    if (V::IsZero(V::Greater16(strongest, max_sample))) return;
    const Pixels<V> pixel(in, max_sample);
    ScalePixels<V>(in, UnclippedGains<V>(pixel, gain, max_sample, max_product), max_sample, out);
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
        luminance(format),
        share(V::Set16(gains.keep)),
        up(15 - format.depth_bits),
        down(28 - format.depth_bits) {}

  void operator()(const uint16_t* in, Reg gain_wanted, Reg (&out)[3]) const {
    const auto max_sample = unclipped.max_sample;
    const Pixels<V> pixel(in, max_sample);
    const auto gain = UnclippedGains<V>(pixel, gain_wanted, max_sample, unclipped.max_product);
    const auto kept = V::MulRound15(V::Sub16(gain, V::Set16(8192)), share);
    const auto own = V::Sub16(gain, kept);
    const auto factors_low = V::template UnpackLow<16>(own, kept);
    const auto factors_high = V::template UnpackHigh<16>(own, kept);
    const auto y = luminance(pixel);
    const auto half = V::Set32(1 << (down - 1));
    const auto mixed = [&](Reg channel_and_y, Reg factors) {
      return V::ShiftRight32(V::Add32(V::MulAdd16(channel_and_y, factors), half), down);
    };
    Reg channels[3];
    for (int c = 0; c < 3; ++c) {
      const auto raised = V::ShiftLeft16(pixel.samples[c], up);
      const auto low = mixed(V::template UnpackLow<16>(raised, y), factors_low);
      const auto high = mixed(V::template UnpackHigh<16>(raised, y), factors_high);
      channels[c] = V::Min16(V::Max16(V::PackS32(low, high), V::Zero()), max_sample);
    }
    JoinRegisters<V, 16>(channels, out);
  }

  Unclipped<V> unclipped;
  Luminance<V> luminance;
  Reg share;
  int up;
  int down;
};

template <class V, template <class> class Form>
void ApplyRow(const uint16_t* source, const DetailRow& row, const ToneGains& gains,
              uint16_t* destination, std::ptrdiff_t pixels, const TonePixels& format) {
  constexpr auto kKernel = Form<V>::kKernel;
  const Form<V> form(gains, format);
  const std::ptrdiff_t i = CoverPixels<6, kStep<V>, V::kBytes>(
      destination, pixels, gains.streaming,
      [&](std::ptrdiff_t count) {
        (kHyperTonePlain.*kKernel)(source, row, gains, destination, count, format);
      },
      [&]<bool kStreaming>(std::ptrdiff_t x) {
        PrefetchAhead<6 * kStep<V>>(source + 3 * x, gains.ahead);
        const auto brightness = V::Load(row.brightness + x);
        const auto gain = GainsAt<V>(brightness, V::Load(row.detail + x), gains.table);
        typename V::Reg lanes[3];
        typename V::Reg result[3];
        form(source + 3 * x, gain, lanes);
        V::InMemoryOrder(lanes, result);
        for (std::ptrdiff_t r = 0; r < 3; ++r) {
          StoreTo<V, kStreaming>(destination + 3 * x + kStep<V> * r, result[r]);
        }
      });
  (Narrower<V>().*kKernel)(source + 3 * i, {row.brightness + i, row.detail + i}, gains,
                           destination + 3 * i, pixels - i, format);
}

template <class V>
constexpr HyperToneKernels kHyperToneOf = {Brightness<V>,          Blocks<V>,
                                           FineDetail<V>,          ApplyRow<V, Clipped>,
                                           ApplyRow<V, Unclipped>, ApplyRow<V, Coloured>};

}  // namespace
}  // namespace ovra
