// SPDX-License-Identifier: MIT
// The vector forms, for registers of any width. Included by one kernel file a tier.
//
// A lane takes 16 bytes of each channel: 16 pixels of 8-bit samples or 8 of wider ones, whose
// 16 * channels bytes stand one after the other. The next lane's follow these.
#pragma once

#include "core/channel_shuffles.h"
#include "core/vector_ops.h"
#include "filter/luminance/kernels.h"

namespace ovra {
namespace {

constexpr int kLaneBytes = 16;

template <class Sample>
constexpr std::ptrdiff_t kLanePixels = kLaneBytes / sizeof(Sample);

// Register `r` of the pixels from `samples` on.
template <class V, class Sample, int kChannels>
typename V::Reg LoadPixels(const Sample* samples, int r) {
  const auto* const bytes = reinterpret_cast<const uint8_t*>(samples) + kLaneBytes * r;
  return V::LoadLanes(bytes, bytes + kLaneBytes * kChannels);
}

// Moves the three samples of each of the first pixels in a lane apart, to places of four samples
// of which the last is 0. `skipped` bytes stand before the first pixel.
template <class Sample>
struct ApartOrder {
  alignas(kLaneBytes) int8_t bytes[kLaneBytes] = {};

  explicit constexpr ApartOrder(int skipped) {
    constexpr int kSample = sizeof(Sample);
    for (int i = 0; i < kLaneBytes; ++i) {
      const int pixel = i / (4 * kSample);
      const int byte = i % (4 * kSample);
      bytes[i] =
          static_cast<int8_t>(byte < 3 * kSample ? skipped + 3 * kSample * pixel + byte : -1);
    }
  }
};

// A lane's pixels as four samples each, the fourth any or 0. Of three channels the last twelve bytes
// are read with the four before them, so that nothing beyond the pixels is read.
template <class V, class Sample, int kChannels>
void LoadFourSamples(const Sample* samples, typename V::Reg (&groups)[4]) {
  if constexpr (kChannels == 4) {
    for (int i = 0; i < 4; ++i) groups[i] = LoadPixels<V, Sample, kChannels>(samples, i);
  } else {
    static constexpr ApartOrder<Sample> kApart(0);
    static constexpr ApartOrder<Sample> kApartBehind4(4);
    constexpr std::ptrdiff_t kNextLane = kLaneBytes * kChannels;
    const auto* const bytes = reinterpret_cast<const uint8_t*>(samples);
    const auto apart = V::LoadToAllLanes(kApart.bytes);
    for (int i = 0; i < 3; ++i) {
      const uint8_t* const in = bytes + 12 * i;
      groups[i] = V::Shuffle8(V::LoadLanes(in, in + kNextLane), apart);
    }
    groups[3] = V::Shuffle8(V::LoadLanes(bytes + 32, bytes + 32 + kNextLane),
                            V::LoadToAllLanes(kApartBehind4.bytes));
  }
}

// Each lane's 16 bytes of luminance, which stand `kNextLane` pixels apart.
template <class V, std::ptrdiff_t kNextLane>
void StoreLuminance(int16_t* luminance, typename V::Reg a) {
  V::StoreLanes(luminance, luminance + kNextLane, a);
}

// The luminance of V::kLanes * 16 pixels.
template <class V, LuminanceLayout kLayout>
void ExtractBlock(const uint8_t* samples, int16_t* luminance, int32_t depth_bits) {
  using Reg = typename V::Reg;
  Reg low;
  Reg high;
  if constexpr (kLayout.channels == 1) {
    const int32_t up = kLuminanceDepthBits - depth_bits;
    const Reg in = LoadPixels<V, uint8_t, 1>(samples, 0);
    low = V::ShiftLeft16(V::template UnpackLow<8>(in, V::Zero()), up);
    high = V::ShiftLeft16(V::template UnpackHigh<8>(in, V::Zero()), up);
  } else {
    const int32_t shift = LuminanceShift(depth_bits);
    const Reg weights =
        V::Set32(kLayout.weights[0] | kLayout.weights[1] << 8 | kLayout.weights[2] << 16);
    Reg sums[4];
    LoadFourSamples<V, uint8_t, kLayout.channels>(samples, sums);
    for (Reg& sum : sums) sum = V::MulAddU8S8(sum, weights);
    low = V::ShiftRightU16(V::AddAcross16(sums[0], sums[1]), shift);
    high = V::ShiftRightU16(V::AddAcross16(sums[2], sums[3]), shift);
  }
  StoreLuminance<V, 16>(luminance, low);
  StoreLuminance<V, 16>(luminance + 8, high);
}

// The luminance of V::kLanes * 8 pixels.
template <class V, LuminanceLayout kLayout>
void ExtractBlock(const uint16_t* samples, int16_t* luminance, int32_t depth_bits) {
  using Reg = typename V::Reg;
  const Reg max_sample = V::Set16((1 << depth_bits) - 1);
  if constexpr (kLayout.channels == 1) {
    const Reg in = V::MinU16(LoadPixels<V, uint16_t, 1>(samples, 0), max_sample);
    const int32_t up = kLuminanceDepthBits - depth_bits;
    StoreLuminance<V, 8>(luminance, up >= 0 ? V::ShiftLeft16(in, up) : V::ShiftRightU16(in, -up));
  } else {
    static constexpr int16_t kW0 = kLayout.weights[0];
    static constexpr int16_t kW1 = kLayout.weights[1];
    static constexpr int16_t kW2 = kLayout.weights[2];
    static constexpr int16_t kWeights[] = {kW0, kW1, kW2, 0, kW0, kW1, kW2, 0};
    const Reg weights = V::LoadToAllLanes(kWeights);
    const int32_t shift = LuminanceShift(depth_bits);
    Reg sums[4];
    LoadFourSamples<V, uint16_t, kLayout.channels>(samples, sums);
    for (Reg& sum : sums) sum = V::MulAdd16(V::MinU16(sum, max_sample), weights);
    const Reg low = V::ShiftRightU32(V::AddAcross32(sums[0], sums[1]), shift);
    const Reg high = V::ShiftRightU32(V::AddAcross32(sums[2], sums[3]), shift);
    StoreLuminance<V, 8>(luminance, V::PackS32(low, high));
  }
}

template <class V, class Sample, int kAt>
const LuminanceKernels::OfLayout& Rest() {
  const LuminanceKernels& kernels = NarrowerThan<V>(kLuminancePlain, kLuminanceSse);
  return sizeof(Sample) == 1 ? kernels.of_bytes[kAt] : kernels.of_words[kAt];
}

template <class V, class Sample, int kAt>
void Extract(const uint8_t* source, int16_t* luminance, std::ptrdiff_t pixels, int32_t depth_bits) {
  constexpr std::ptrdiff_t kChannels = kLuminanceLayouts[kAt].channels;
  constexpr std::ptrdiff_t kStep = V::kLanes * kLanePixels<Sample>;
  constexpr auto kSampleBytes = static_cast<std::ptrdiff_t>(sizeof(Sample));
  const auto* const samples = reinterpret_cast<const Sample*>(source);
  std::ptrdiff_t i = 0;
  for (; i + kStep <= pixels; i += kStep) {
    // Rows are read one after the other: asks for the same pixels of the next.
    PrefetchAt(samples + kChannels * i, kChannels * pixels * kSampleBytes,
               kChannels * kStep * kSampleBytes);
    ExtractBlock<V, kLuminanceLayouts[kAt]>(samples + kChannels * i, luminance + i, depth_bits);
  }
  const auto* const rest = reinterpret_cast<const uint8_t*>(samples + kChannels * i);
  Rest<V, Sample, kAt>().extract(rest, luminance + i, pixels - i, depth_bits);
}

// Deltas of bytes: what is above 255 either way saturates like the sum.
template <class V, LuminanceLayout kLayout>
void AddBlock(const uint8_t* in, uint8_t* out, const int16_t* deltas, int32_t /*depth_bits*/) {
  constexpr int kChannels = kLayout.channels;
  const auto low = V::LoadLanes(deltas, deltas + 16);
  const auto high = V::LoadLanes(deltas + 8, deltas + 24);
  const auto up = V::PackU16(low, high);
  const auto down = V::PackU16(V::SubSat16(V::Zero(), low), V::SubSat16(V::Zero(), high));
  for (int r = 0; r < kChannels; ++r) {
    const auto order = V::LoadToAllLanes(kSpreadOrder<1, kChannels, kLayout.corrected>.orders[r]);
    const auto raised =
        V::AddSatU8(LoadPixels<V, uint8_t, kChannels>(in, r), V::Shuffle8(up, order));
    uint8_t* const to = out + kLaneBytes * r;
    V::StoreLanes(to, to + kLaneBytes * kChannels, V::SubSatU8(raised, V::Shuffle8(down, order)));
  }
}

// Samples of any 16-bit value, moved to the signed range for the saturating sum. A copied sample
// may be above the depth: it has delta 0, and is limited to 0xFFFF only.
template <class V, LuminanceLayout kLayout>
void AddBlock(const uint16_t* in, uint16_t* out, const int16_t* deltas, int32_t depth_bits) {
  constexpr int kChannels = kLayout.channels;
  const auto max_sample = V::Set16((1 << depth_bits) - 1);
  const auto delta = V::LoadLanes(deltas, deltas + 8);
  for (int r = 0; r < kChannels; ++r) {
    const auto order = V::LoadToAllLanes(kSpreadOrder<2, kChannels, kLayout.corrected>.orders[r]);
    const auto copied = V::ShiftRight16(order, 15);
    const auto sum = V::AddSat16(V::FlipSign16(LoadPixels<V, uint16_t, kChannels>(in, r)),
                                 V::Shuffle8(delta, order));
    uint16_t* const to = out + 8 * r;
    V::StoreLanes(to, to + 8 * kChannels, V::MinU16(V::FlipSign16(sum), V::Or(max_sample, copied)));
  }
}

template <class V, class Sample, int kAt>
void AddDeltas(const uint8_t* source, uint8_t* destination, const int16_t* deltas,
               std::ptrdiff_t pixels, int32_t depth_bits) {
  constexpr std::ptrdiff_t kChannels = kLuminanceLayouts[kAt].channels;
  constexpr std::ptrdiff_t kStep = V::kLanes * kLanePixels<Sample>;
  const auto* in = reinterpret_cast<const Sample*>(source);
  auto* out = reinterpret_cast<Sample*>(destination);
  for (; pixels >= kStep; pixels -= kStep) {
    AddBlock<V, kLuminanceLayouts[kAt]>(in, out, deltas, depth_bits);
    in += kChannels * kStep;
    out += kChannels * kStep;
    deltas += kStep;
  }
  Rest<V, Sample, kAt>().add_deltas(reinterpret_cast<const uint8_t*>(in),
                                    reinterpret_cast<uint8_t*>(out), deltas, pixels, depth_bits);
}

template <class V, class Sample, int kAt>
constexpr LuminanceKernels::OfLayout kOfLayout = {Extract<V, Sample, kAt>,
                                                  AddDeltas<V, Sample, kAt>};

template <class V>
constexpr LuminanceKernels kLuminanceOf = {
    {kOfLayout<V, uint8_t, 0>, kOfLayout<V, uint8_t, 1>, kOfLayout<V, uint8_t, 2>,
     kOfLayout<V, uint8_t, 3>, kOfLayout<V, uint8_t, 4>, kOfLayout<V, uint8_t, 5>},
    {kOfLayout<V, uint16_t, 0>, kOfLayout<V, uint16_t, 1>, kOfLayout<V, uint16_t, 2>,
     kOfLayout<V, uint16_t, 3>, kOfLayout<V, uint16_t, 4>, kOfLayout<V, uint16_t, 5>}};

}  // namespace
}  // namespace ovra
