// SPDX-License-Identifier: MIT
// The vector forms, for registers of any width. Included by one kernel file a tier.
//
// Working rows may be read and written beyond their ends (see WorkRows), pixels not.
#pragma once

#include "core/channel_shuffles.h"
#include "core/vector_ops.h"
#include "filter/multi_frequency/kernels.h"
#include "tone/pyramid/pixels_vector.h"

namespace ovra {
namespace {

// Pixels that a register of one channel's samples holds.
template <class V, class Sample>
constexpr std::ptrdiff_t kStep = V::kBytes / static_cast<std::ptrdiff_t>(sizeof(Sample));

template <class V>
const MultiFrequencyKernels::OfLayout& Narrower(uint32_t color_model, int32_t depth_bits) {
  return NarrowerThan<V>(kMultiFrequencyPlain, kMultiFrequencySse).Of(color_model, depth_bits);
}

// Register r of kChannels of the samples of kStep pixels: of each lane's own.
template <class V, int kChannels>
typename V::Reg LoadPart(const void* samples, std::ptrdiff_t r) {
  const auto* const bytes = static_cast<const uint8_t*>(samples);
  return V::LoadLanes(bytes + 16 * r, bytes + 16 * (kChannels + r));
}

// 16-bit working samples of the pixels that each lane of a register of bytes holds.
template <class V>
void StoreHalves(int16_t* output, typename V::Reg low, typename V::Reg high) {
  V::StoreLanes(output, output + 16, low);
  V::StoreLanes(output + 8, output + 24, high);
}

template <class V, class Sample, LuminanceLayout kLayout>
struct ToBrightness;

template <class V, LuminanceLayout kLayout>
struct ToBrightness<V, uint8_t, kLayout> {
  using Reg = typename V::Reg;
  static constexpr int kUp = 7;       // from 8 bits to 15
  static constexpr int kUpOfSum = 1;  // from 14 bits to 15

  explicit ToBrightness(int32_t /*depth_bits*/) {}

  static void StoreSums(Reg low, Reg high, int16_t* output) {
    StoreHalves<V>(output, V::ShiftLeft16(low, kUpOfSum), V::ShiftLeft16(high, kUpOfSum));
  }

  void operator()(const uint8_t* samples, int16_t* output) const {
    constexpr int kChannels = kLayout.channels;
    const auto zero = V::Zero();
    if constexpr (kLayout.corrected == 1) {  // the brightness is the first channel
      Reg channels[3];
      if constexpr (kChannels == 1) {
        channels[0] = V::Load(samples);
      } else {
        SplitThreeChannels<V, 8>(samples, channels);
      }
      StoreHalves<V>(output, V::ShiftLeft16(V::template UnpackLow<8>(channels[0], zero), kUp),
                     V::ShiftLeft16(V::template UnpackHigh<8>(channels[0], zero), kUp));
    } else if constexpr (kChannels == 3) {
      const auto first_two = V::Set16(kLayout.weights[1] << 8 | kLayout.weights[0]);
      const auto third = V::Set16(kLayout.weights[2]);
      Reg c[3];
      SplitThreeChannels<V, 8>(samples, c);
      StoreSums(V::Add16(V::MulAddU8S8(V::template UnpackLow<8>(c[0], c[1]), first_two),
                         V::MulAddU8S8(V::template UnpackLow<8>(c[2], zero), third)),
                V::Add16(V::MulAddU8S8(V::template UnpackHigh<8>(c[0], c[1]), first_two),
                         V::MulAddU8S8(V::template UnpackHigh<8>(c[2], zero), third)),
                output);
    } else {
      const auto weights =
          V::Set32(kLayout.weights[2] << 16 | kLayout.weights[1] << 8 | kLayout.weights[0]);
      Reg sums[4];
      for (int r = 0; r < 4; ++r) {
        sums[r] = V::MulAddU8S8(LoadPart<V, kChannels>(samples, r), weights);
      }
      StoreSums(V::AddAcross16(sums[0], sums[1]), V::AddAcross16(sums[2], sums[3]), output);
    }
  }
};

template <class V, LuminanceLayout kLayout>
struct ToBrightness<V, uint16_t, kLayout> {
  using Reg = typename V::Reg;

  // Samples of 16 bits are multiplied as signed ones, 2^15 lower.
  explicit ToBrightness(int32_t depth_bits)
      : depth(depth_bits),
        max_sample(V::Set16((1 << depth_bits) - 1)),
        flip(V::Set16(depth_bits == 16 ? INT16_MIN : 0)),
        sum(kLayout.weights, BrightnessShift(depth_bits), depth_bits == 16) {}

  Reg Limited(Reg samples) const { return V::MinU16(samples, max_sample); }
  Reg Flipped(Reg samples) const { return V::Xor(Limited(samples), flip); }

  void operator()(const uint16_t* samples, int16_t* output) const {
    if constexpr (kLayout.channels == 1) {
      V::Store(output, Raised(V::Load(samples)));
    } else if constexpr (kLayout.channels == 3) {
      Reg c[3];
      SplitThreeChannels<V, 16>(samples, c);
      V::Store(output, kLayout.corrected == 1 ? Raised(c[0])
                                              : sum(Flipped(c[0]), Flipped(c[1]), Flipped(c[2])));
    } else {
      V::Store(output, OfFour(samples));
    }
  }

  Reg Raised(Reg samples) const {
    const auto limited = Limited(samples);
    return depth == 16 ? V::ShiftRightU16(limited, 1) : V::ShiftLeft16(limited, 15 - depth);
  }

  // Two pixels of four samples in a lane.
  Reg OfFour(const uint16_t* samples) const {
    alignas(16) static constexpr int16_t kWeights[] = {
        kLayout.weights[0], kLayout.weights[1], kLayout.weights[2], 0,
        kLayout.weights[0], kLayout.weights[1], kLayout.weights[2], 0};
    const auto weights = V::LoadToAllLanes(kWeights);
    const auto offset = V::Set32(depth == 16 ? 64 << 15 : 0);
    Reg sums[4];
    for (int r = 0; r < 4; ++r) {
      sums[r] = V::MulAdd16(Flipped(LoadPart<V, 4>(samples, r)), weights);
    }
    const auto shifted = [&](Reg a, Reg b) {
      return V::ShiftRight32(V::Add32(V::AddAcross32(a, b), offset), BrightnessShift(depth));
    };
    return V::PackS32(shifted(sums[0], sums[1]), shifted(sums[2], sums[3]));
  }

  int32_t depth;
  Reg max_sample;
  Reg flip;
  WeightedSum<V> sum;
};

template <class V, class Sample, LuminanceLayout kLayout>
void Brightness(const uint8_t* source, int16_t* brightness, std::ptrdiff_t pixels,
                int32_t depth_bits) {
  const ToBrightness<V, Sample, kLayout> to_brightness(depth_bits);
  const auto* samples = reinterpret_cast<const Sample*>(source);
  std::ptrdiff_t i = 0;
  for (; i + kStep<V, Sample> <= pixels; i += kStep<V, Sample>) {
    PrefetchAhead<kLayout.channels * V::kBytes>(samples + kLayout.channels * i, kAheadInRow);
    to_brightness(samples + kLayout.channels * i, brightness + i);
  }
  const auto* const rest = reinterpret_cast<const uint8_t*>(samples + kLayout.channels * i);
  Narrower<V>(kLayout.color_model, depth_bits)
      .brightness(rest, brightness + i, pixels - i, depth_bits);
}

// gain * (e - m) - damping * m is gain * e - (gain + damping) * m, and 8192 times what it is added to
// joins the sum before the shift.
template <class V>
class Responder {
 public:
  using Reg = typename V::Reg;

  explicit Responder(const BandResponse& band)
      : factors_(WeightPair<V>(band.gain, -(band.gain + band.damping))),
        noise_(V::Set16(band.noise)),
        minus_noise_(V::Set16(-band.noise)),
        limit_(V::Set16(band.limit)),
        minus_limit_(V::Set16(-band.limit)) {}

  // The changes from sample i on.
  Reg At(const BandRow& row, std::ptrdiff_t i) const {
    return Changes(V::Load(row.level + i), V::Load(row.expanded + i),
                   V::Load(row.expanded_changes + i));
  }
  // The second lane's from sample i + 16 on.
  Reg AtLanes(const BandRow& row, std::ptrdiff_t i) const {
    const auto load = [i](const int16_t* samples) {
      return V::LoadLanes(samples + i, samples + i + 16);
    };
    return Changes(load(row.level), load(row.expanded), load(row.expanded_changes));
  }

 private:
  Reg Changes(Reg level, Reg expanded, Reg x) const {
    const auto one = V::Set16(1);
    const auto d = V::Sub16(level, expanded);
    const auto m = V::Max16(V::Min16(d, noise_), minus_noise_);
    const auto e = V::Max16(V::Min16(d, limit_), minus_limit_);
    const auto low = Sum(V::template UnpackLow<16>(e, m), V::template UnpackLow<16>(x, one));
    const auto high = Sum(V::template UnpackHigh<16>(e, m), V::template UnpackHigh<16>(x, one));
    return V::Max16(V::PackS32(low, high), V::Set16(-32767));
  }
  Reg Sum(Reg e_and_m, Reg change_and_one) const {
    const auto unit_and_half = WeightPair<V>(8192, 4096);
    return V::ShiftRight32(
        V::Add32(V::MulAdd16(e_and_m, factors_), V::MulAdd16(change_and_one, unit_and_half)), 13);
  }

  Reg factors_;
  Reg noise_;
  Reg minus_noise_;
  Reg limit_;
  Reg minus_limit_;
};

template <class V>
void Respond(const BandRow& row, const BandResponse& band, int16_t* changes, std::ptrdiff_t count) {
  const Responder<V> responder(band);
  for (std::ptrdiff_t i = 0; i < count; i += V::kBytes / 2) {
    V::Store(changes + i, responder.At(row, i));
  }
}

template <class V, class Sample, LuminanceLayout kLayout>
struct ChangeAdder;

// A change of more than 255 either way saturates like the sum.
template <class V, LuminanceLayout kLayout>
struct ChangeAdder<V, uint8_t, kLayout> {
  using Reg = typename V::Reg;
  static constexpr int kChannels = kLayout.channels;

  explicit ChangeAdder(int32_t /*depth_bits*/) {}

  void operator()(const uint8_t* in, const Responder<V>& responder, const BandRow& row,
                  Reg (&out)[kChannels]) const {
    const auto zero = V::Zero();
    const auto to_units = V::Set16(1 << 8);
    const auto low = V::MulRound15(responder.AtLanes(row, 0), to_units);
    const auto high = V::MulRound15(responder.AtLanes(row, 8), to_units);
    const auto up = V::PackU16(low, high);
    const auto down = V::PackU16(V::Sub16(zero, low), V::Sub16(zero, high));
    Reg samples[kChannels];
    for (int r = 0; r < kChannels; ++r) samples[r] = LoadPart<V, kChannels>(in, r);
    for (int r = 0; r < kChannels; ++r) {
      const auto order = V::LoadToAllLanes(kSpreadOrder<1, kChannels, kLayout.corrected>.orders[r]);
      const auto raised = V::AddSatU8(samples[r], V::Shuffle8(up, order));
      out[r] = V::SubSatU8(raised, V::Shuffle8(down, order));
    }
  }
};

// Samples of any 16-bit value, moved to the signed range for the saturating sum. At 16 bits a change is
// two units a step, and added twice.
template <class V, LuminanceLayout kLayout>
struct ChangeAdder<V, uint16_t, kLayout> {
  using Reg = typename V::Reg;
  static constexpr int kChannels = kLayout.channels;

  explicit ChangeAdder(int32_t depth_bits)
      : depth(depth_bits), max_sample(V::Set16((1 << depth_bits) - 1)) {}

  void operator()(const uint16_t* in, const Responder<V>& responder, const BandRow& row,
                  Reg (&out)[kChannels]) const {
    auto change = responder.At(row, 0);
    if (depth < 15) change = V::MulRound15(change, V::Set16(1 << depth));
    Reg samples[kChannels];
    for (int r = 0; r < kChannels; ++r) samples[r] = LoadPart<V, kChannels>(in, r);
    for (int r = 0; r < kChannels; ++r) {
      const auto order = V::LoadToAllLanes(kSpreadOrder<2, kChannels, kLayout.corrected>.orders[r]);
      const auto spread = V::Shuffle8(change, order);
      auto sum = V::AddSat16(V::FlipSign16(samples[r]), spread);
      if (depth == 16) sum = V::AddSat16(sum, spread);
      // What is copied has no limit; its orders are negative.
      const auto limit = V::Or(max_sample, V::ShiftRight16(order, 15));
      out[r] = V::MinU16(V::FlipSign16(sum), limit);
    }
  }

  int32_t depth;
  Reg max_sample;
};

template <class V, class Sample, LuminanceLayout kLayout>
void Change(const uint8_t* source, const BandRow& row, const BandResponse& band,
            uint8_t* destination, std::ptrdiff_t pixels, const PixelRows& rows) {
  constexpr std::ptrdiff_t kChannels = kLayout.channels;
  const ChangeAdder<V, Sample, kLayout> add(rows.depth_bits);
  const Responder<V> responder(band);
  const auto* in = reinterpret_cast<const Sample*>(source);
  auto* out = reinterpret_cast<Sample*>(destination);
  const std::ptrdiff_t i =
      CoverPixels<kChannels * std::ptrdiff_t{sizeof(Sample)}, kStep<V, Sample>>(
          destination, pixels, rows.streaming,
          [&](std::ptrdiff_t count) {
            kMultiFrequencyPlain.Of(kLayout.color_model, rows.depth_bits)
                .change(source, row, band, destination, count, rows);
          },
          [&]<bool kStreaming>(std::ptrdiff_t at) {
            PrefetchAhead<kChannels * V::kBytes>(in + kChannels * at, kAheadInRow);
            typename V::Reg result[kChannels];
            add(in + kChannels * at, responder, row.From(at), result);
            auto* const bytes = reinterpret_cast<uint8_t*>(out + kChannels * at);
            for (std::ptrdiff_t r = 0; r < kChannels; ++r) {
              StoreLanesTo<V, kStreaming>(bytes + 16 * r, bytes + 16 * (kChannels + r), result[r]);
            }
          });
  Narrower<V>(kLayout.color_model, rows.depth_bits)
      .change(reinterpret_cast<const uint8_t*>(in + kChannels * i), row.From(i), band,
              reinterpret_cast<uint8_t*>(out + kChannels * i), pixels - i, rows);
}

template <class V, class Sample, int kAt>
constexpr MultiFrequencyKernels::OfLayout kOfLayout = {
    Brightness<V, Sample, kLuminanceLayouts[kAt]>, Change<V, Sample, kLuminanceLayouts[kAt]>};

template <class V>
constexpr MultiFrequencyKernels kMultiFrequencyOf = {
    Respond<V>,
    {kOfLayout<V, uint8_t, 0>, kOfLayout<V, uint8_t, 1>, kOfLayout<V, uint8_t, 2>,
     kOfLayout<V, uint8_t, 3>, kOfLayout<V, uint8_t, 4>, kOfLayout<V, uint8_t, 5>},
    {kOfLayout<V, uint16_t, 0>, kOfLayout<V, uint16_t, 1>, kOfLayout<V, uint16_t, 2>,
     kOfLayout<V, uint16_t, 3>, kOfLayout<V, uint16_t, 4>, kOfLayout<V, uint16_t, 5>}};

}  // namespace
}  // namespace ovra
