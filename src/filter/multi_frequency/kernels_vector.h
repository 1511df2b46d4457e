// SPDX-License-Identifier: MIT
// The vector forms, for registers of any width. Included by one kernel file a tier.
//
// Working rows may be read and written beyond their ends (see WorkRows), pixels not.
#pragma once

#include "core/channel_shuffles.h"
#include "core/vector_ops.h"
#include "filter/multi_frequency/kernels.h"
#include "tone/pyramid/expand_vector.h"
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

  struct OfNarrow;

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

// Three weighted channels of 10 to 12 bits.
template <class V, LuminanceLayout kLayout>
struct ToBrightness<V, uint16_t, kLayout>::OfNarrow {
  explicit OfNarrow(int32_t depth_bits)
      : max_sample(V::Set16((1 << depth_bits) - 1)), sum(BrightnessShift(depth_bits)) {}

  void operator()(const uint16_t* samples, int16_t* output) const {
    constexpr bool kIsRgb = kLayout.weights[0] == NarrowLuminance<V>::kFirst;
    Reg pixels[3];
    Reg c[3];
    V::LoadTriple(samples, pixels);
    SplitRegisters<V, 16>(pixels, c);
    for (auto& channel : c) channel = V::MinU16(channel, max_sample);
    V::Store(output, sum(c[kIsRgb ? 0 : 2], c[1], c[kIsRgb ? 2 : 0]));
  }

  Reg max_sample;
  NarrowLuminance<V> sum;
};

// Whole steps; answers where they end.
template <class V, class Sample, int kChannels, class ToBrightness>
std::ptrdiff_t BrightnessOfSteps(const ToBrightness& to_brightness, const Sample* samples,
                                 int16_t* brightness, std::ptrdiff_t pixels) {
  std::ptrdiff_t i = 0;
  for (; i + kStep<V, Sample> <= pixels; i += kStep<V, Sample>) {
    PrefetchAhead<kChannels * V::kBytes>(samples + kChannels * i, kAheadInRow);
    to_brightness(samples + kChannels * i, brightness + i);
  }
  return i;
}

template <class V, class Sample, LuminanceLayout kLayout>
void Brightness(const uint8_t* source, int16_t* brightness, std::ptrdiff_t pixels,
                int32_t depth_bits) {
  using Wide = ToBrightness<V, Sample, kLayout>;
  const auto* samples = reinterpret_cast<const Sample*>(source);
  const auto cover = [&](const auto& to_brightness) {
    return BrightnessOfSteps<V, Sample, kLayout.channels>(to_brightness, samples, brightness,
                                                          pixels);
  };
  std::ptrdiff_t i = 0;
  if constexpr (sizeof(Sample) == 2 && kLayout.channels == 3 && kLayout.corrected == 3) {
    const bool is_narrow = depth_bits >= 10 && depth_bits <= 12;
    i = is_narrow ? cover(typename Wide::OfNarrow(depth_bits)) : cover(Wide(depth_bits));
  } else {
    i = cover(Wide(depth_bits));
  }
  const auto* const rest = reinterpret_cast<const uint8_t*>(samples + kLayout.channels * i);
  Narrower<V>(kLayout.color_model, depth_bits)
      .brightness(rest, brightness + i, pixels - i, depth_bits);
}

// gain * (e - m) - damping * m is gain * e - (gain + damping) * m.
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

  // Whether every response of a band fits 16 bits.
  static bool IsNarrow(const BandResponse& band) {
    constexpr int32_t kGreatest = 8192 * 32767;
    const int32_t gain = band.gain < 0 ? -band.gain : band.gain;
    return (gain > band.damping ? gain : band.damping) * band.limit <= kGreatest;
  }

  // The changes of samples x .. x + kBytes - 1, with their sign, in the order of an expanded part.
  template <bool kIsNarrow>
  ExpandedPart<V> At(const BandRow& row, std::ptrdiff_t x) const {
    const auto expanded = ExpandedFrom<V, NarrowWords>(row.coarse, x);
    const auto changes = ExpandedFrom<V, WideWords>(row.coarse_changes, x);
    const int16_t* const p = row.level + x;
    const auto at = [&](Reg level, Reg base, Reg change) {
      const auto d = V::Sub16(level, base);
      const auto signed_change = V::FlipSign16(change);
      return kIsNarrow ? NarrowChanges(d, signed_change) : WideChanges(d, signed_change);
    };
    return {at(V::LoadLanes(p, p + 16), expanded.low, changes.low),
            at(V::LoadLanes(p + 8, p + 24), expanded.high, changes.high)};
  }

 private:
  Reg Noise(Reg d) const { return V::Max16(V::Min16(d, noise_), minus_noise_); }
  Reg Held(Reg d) const { return V::Max16(V::Min16(d, limit_), minus_limit_); }

  Reg NarrowChanges(Reg d, Reg x) const {
    const auto m = Noise(d);
    const auto e = Held(d);
    const auto half = V::Set32(4096);
    const auto response = [&](Reg e_and_m) {
      return V::ShiftRight32(V::Add32(V::MulAdd16(e_and_m, factors_), half), 13);
    };
    const auto responses = V::PackS32(response(V::template UnpackLow<16>(e, m)),
                                      response(V::template UnpackHigh<16>(e, m)));
    return V::Max16(V::AddSat16(responses, x), V::Set16(-32767));
  }

  // 8192 times what the response is added to joins the sum before the shift.
  Reg WideChanges(Reg d, Reg x) const {
    const auto m = Noise(d);
    const auto e = Held(d);
    const auto one = V::Set16(1);
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
  const auto respond = [&]<bool kIsNarrow>() {
    for (std::ptrdiff_t x = 0; x < count; x += V::kBytes) {
      const auto part = responder.template At<kIsNarrow>(row, x);
      StoreHalves<V>(changes + x, V::FlipSign16(part.low), V::FlipSign16(part.high));
    }
  };
  if (Responder<V>::IsNarrow(band)) {
    respond.template operator()<true>();
  } else {
    respond.template operator()<false>();
  }
}

// Pixels of a step of changes: those of an expanded part.
template <class V>
constexpr std::ptrdiff_t kChangeStep = V::kBytes;

template <class V, class Sample, LuminanceLayout kLayout>
struct ChangeAdder;

// A change of more than 255 either way saturates like the sum.
template <class V, LuminanceLayout kLayout>
struct ChangeAdder<V, uint8_t, kLayout> {
  using Reg = typename V::Reg;
  static constexpr int kChannels = kLayout.channels;

  explicit ChangeAdder(int32_t /*depth_bits*/) {}

  template <bool kStreaming>
  void operator()(const uint8_t* in, const ExpandedPart<V>& changes, uint8_t* out) const {
    const auto zero = V::Zero();
    const auto to_units = V::Set16(1 << 8);
    const auto low = V::MulRound15(changes.low, to_units);
    const auto high = V::MulRound15(changes.high, to_units);
    const auto up = V::PackU16(low, high);
    const auto down = V::PackU16(V::Sub16(zero, low), V::Sub16(zero, high));
    Reg samples[kChannels];
    for (int r = 0; r < kChannels; ++r) samples[r] = LoadPart<V, kChannels>(in, r);
    for (int r = 0; r < kChannels; ++r) {
      const auto order = V::LoadToAllLanes(kSpreadOrder<1, kChannels, kLayout.corrected>.orders[r]);
      const auto raised = V::AddSatU8(samples[r], V::Shuffle8(up, order));
      StoreLanesTo<V, kStreaming>(out + 16 * r, out + 16 * (kChannels + r),
                                  V::SubSatU8(raised, V::Shuffle8(down, order)));
    }
  }
};

// Below 15 bits changes are added 2^15 higher, so that both limits come by saturation without sign. At
// 15 and 16 they are added with their sign, at 16, where a change is two units a step, twice.
template <class V, LuminanceLayout kLayout>
struct ChangeAdder<V, uint16_t, kLayout> {
  using Reg = typename V::Reg;
  static constexpr int kChannels = kLayout.channels;
  static constexpr int kCorrected = kLayout.corrected;
  static constexpr std::ptrdiff_t kWords = V::kBytes / 2;

  explicit ChangeAdder(int32_t depth_bits)
      : depth(depth_bits),
        max_sample(V::Set16((1 << depth_bits) - 1)),
        to_units(V::Set16(1 << (depth_bits < 15 ? depth_bits : 0))) {}

  template <bool kStreaming>
  void operator()(const uint16_t* in, const ExpandedPart<V>& changes, uint16_t* out) const {
    Add<kStreaming>(in, V::FirstLanes(changes.low, changes.high), out);
    Add<kStreaming>(in + kChannels * kWords, V::SecondLanes(changes.low, changes.high),
                    out + kChannels * kWords);
  }

  template <bool kStreaming>
  void Add(const uint16_t* in, Reg change, uint16_t* out) const {
    if (depth < 15) change = V::FlipSign16(V::MulRound15(change, to_units));
    AddTo<kStreaming, 0>(in, change, out);
    if constexpr (kChannels > 1) AddTo<kStreaming, 1>(in, change, out);
    if constexpr (kChannels > 2) AddTo<kStreaming, 2>(in, change, out);
    if constexpr (kChannels > 3) AddTo<kStreaming, 3>(in, change, out);
  }

  // To register r of kChannels.
  template <bool kStreaming, int r>
  void AddTo(const uint16_t* in, Reg change, uint16_t* out) const {
    const auto samples = V::Load(in + kWords * r);
    const auto spread = SpreadWords<V, kChannels, kCorrected, r>(change);
    auto limit = max_sample;
    auto height = V::Set16(INT16_MIN);
    if constexpr (kCorrected < kChannels) {  // what is copied has no limit; its orders are negative
      const auto copied = V::ShiftRight16(WordOrder<V, kChannels, kCorrected, r>(), 15);
      limit = V::Or(limit, copied);
      height = V::AndNot(copied, height);
    }
    Reg sum;
    if (depth < 15) {
      sum = V::SubSatU16(V::AddSatU16(samples, spread), height);
    } else {
      sum = V::AddSat16(V::FlipSign16(samples), spread);
      if (depth == 16) sum = V::AddSat16(sum, spread);
      sum = V::FlipSign16(sum);
    }
    StoreTo<V, kStreaming>(out + kWords * r, V::MinU16(sum, limit));
  }

  int32_t depth;
  Reg max_sample;
  Reg to_units;
};

template <class V, class Sample, LuminanceLayout kLayout>
void Change(const uint8_t* source, const BandRow& row, const BandResponse& band,
            uint8_t* destination, const RowSpan& pixels, const PixelRows& rows) {
  constexpr std::ptrdiff_t kChannels = kLayout.channels;
  constexpr std::ptrdiff_t kPixelBytes = kChannels * std::ptrdiff_t{sizeof(Sample)};
  constexpr std::ptrdiff_t kStep = kChangeStep<V>;
  const ChangeAdder<V, Sample, kLayout> add(rows.depth_bits);
  const Responder<V> responder(band);
  const auto* const in = reinterpret_cast<const Sample*>(source);
  auto* const out = reinterpret_cast<Sample*>(destination);
  const BandRow samples = row;  // kept apart from what is written
  const std::ptrdiff_t ahead = rows.ahead;
  const auto cover = [&]<bool kIsNarrow>() {
    return pixels.first +
           CoverPixels<kPixelBytes, kStep, V::kBytes>(
               destination + kPixelBytes * pixels.first, pixels.end - pixels.first, rows.streaming,
               [&](std::ptrdiff_t count) {
                 kMultiFrequencyPlain.Of(kLayout.color_model, rows.depth_bits)
                     .change(source, row, band, destination, {pixels.first, pixels.first + count},
                             rows);
               },
               [&]<bool kStreaming>(std::ptrdiff_t i) {
                 const std::ptrdiff_t x = pixels.first + i;
                 PrefetchAhead<kPixelBytes * kStep>(in + kChannels * x, kAheadInRow);
                 PrefetchAhead<kPixelBytes * kStep>(in + kChannels * x, ahead);
                 add.template operator()<kStreaming>(in + kChannels * x,
                                                     responder.template At<kIsNarrow>(samples, x),
                                                     out + kChannels * x);
               });
  };
  const std::ptrdiff_t end = Responder<V>::IsNarrow(band) ? cover.template operator()<true>()
                                                          : cover.template operator()<false>();
  Narrower<V>(kLayout.color_model, rows.depth_bits)
      .change(source, row, band, destination, {end, pixels.end}, rows);
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
