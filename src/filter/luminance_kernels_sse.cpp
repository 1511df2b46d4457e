// SPDX-License-Identifier: MIT
#include <smmintrin.h>

#include "filter/luminance_kernels.h"

namespace ovra {
namespace {

constexpr int32_t kWorkingDepthBits = 10;  // of the luminance
constexpr char kNone = -128;               // in a shuffle: 0

__m128i Load(const void* p) {
  return _mm_loadu_si128(static_cast<const __m128i*>(p));
}

void Store(void* p, __m128i a) {
  _mm_storeu_si128(static_cast<__m128i*>(p), a);
}

struct ByteOrder {
  char bytes[16];
};

// Four groups of 12 bytes, each moved apart to pixels of four samples, the fourth 0; or four groups
// of 16 bytes that are such pixels. The last group of 12 is read with the four bytes before it, so
// that nothing beyond the 48 is read.
template <class Sample, int kChannels>
void LoadGroups(const Sample* samples, __m128i groups[4]) {
  const auto* bytes = reinterpret_cast<const uint8_t*>(samples);
  if constexpr (kChannels == 4) {
    for (int i = 0; i < 4; ++i) groups[i] = Load(bytes + 16 * i);
  } else {
    const __m128i apart =
        sizeof(Sample) == 1
            ? _mm_setr_epi8(0, 1, 2, kNone, 3, 4, 5, kNone, 6, 7, 8, kNone, 9, 10, 11, kNone)
            : _mm_setr_epi8(0, 1, 2, 3, 4, 5, kNone, kNone, 6, 7, 8, 9, 10, 11, kNone, kNone);
    for (int i = 0; i < 3; ++i) groups[i] = _mm_shuffle_epi8(Load(bytes + 12 * i), apart);
    groups[3] = _mm_shuffle_epi8(_mm_srli_si128(Load(bytes + 32), 4), apart);
  }
}

template <LuminanceLayout kLayout>
struct Weighted {
  static constexpr char kWeight0 = kLayout.weights[0];
  static constexpr char kWeight1 = kLayout.weights[1];
  static constexpr char kWeight2 = kLayout.weights[2];

  // 16 pixels.
  static void Block(const uint8_t* samples, int16_t* luminance, int32_t depth_bits) {
    const __m128i weights = _mm_set1_epi32(kWeight0 | kWeight1 << 8 | kWeight2 << 16);
    __m128i sums[4];
    LoadGroups<uint8_t, kLayout.channels>(samples, sums);
    for (__m128i& sum : sums) sum = _mm_maddubs_epi16(sum, weights);
    const int32_t shift = LuminanceShift(depth_bits);
    Store(luminance, _mm_srli_epi16(_mm_hadd_epi16(sums[0], sums[1]), shift));
    Store(luminance + 8, _mm_srli_epi16(_mm_hadd_epi16(sums[2], sums[3]), shift));
  }

  // 8 pixels.
  static void Block(const uint16_t* samples, int16_t* luminance, int32_t depth_bits) {
    const __m128i weights =
        _mm_setr_epi16(kWeight0, kWeight1, kWeight2, 0, kWeight0, kWeight1, kWeight2, 0);
    const __m128i max_sample = _mm_set1_epi16(static_cast<int16_t>((1 << depth_bits) - 1));
    const __m128i shift = _mm_cvtsi32_si128(LuminanceShift(depth_bits));
    __m128i sums[4];
    LoadGroups<uint16_t, kLayout.channels>(samples, sums);
    for (__m128i& sum : sums) sum = _mm_madd_epi16(_mm_min_epu16(sum, max_sample), weights);
    const __m128i low = _mm_srl_epi32(_mm_hadd_epi32(sums[0], sums[1]), shift);
    const __m128i high = _mm_srl_epi32(_mm_hadd_epi32(sums[2], sums[3]), shift);
    Store(luminance, _mm_packs_epi32(low, high));
  }
};

// One channel, which is the luminance.
struct Direct {
  static void Block(const uint8_t* samples, int16_t* luminance, int32_t depth_bits) {
    const __m128i in = Load(samples);
    const int32_t shift = kWorkingDepthBits - depth_bits;
    Store(luminance, _mm_slli_epi16(_mm_cvtepu8_epi16(in), shift));
    Store(luminance + 8, _mm_slli_epi16(_mm_unpackhi_epi8(in, _mm_setzero_si128()), shift));
  }

  static void Block(const uint16_t* samples, int16_t* luminance, int32_t depth_bits) {
    const __m128i max_sample = _mm_set1_epi16(static_cast<int16_t>((1 << depth_bits) - 1));
    const __m128i limited = _mm_min_epu16(Load(samples), max_sample);
    const int32_t up = kWorkingDepthBits - depth_bits;
    Store(luminance, up >= 0 ? _mm_slli_epi16(limited, up) : _mm_srli_epi16(limited, -up));
  }
};

// A block is 16 samples a channel of one byte, or 8 of two bytes.
template <class Sample>
constexpr std::ptrdiff_t kBlockPixels = 16 / sizeof(Sample);

template <class Sample, LuminanceLayout kLayout>
void Extract(const uint8_t* source, int16_t* luminance, std::ptrdiff_t pixels, int32_t depth_bits) {
  const auto* samples = reinterpret_cast<const Sample*>(source);
  std::ptrdiff_t i = 0;
  for (; i + kBlockPixels<Sample> <= pixels; i += kBlockPixels<Sample>) {
    const Sample* const block = samples + kLayout.channels * i;
    if constexpr (kLayout.channels == 1) {
      Direct::Block(block, luminance + i, depth_bits);
    } else {
      Weighted<kLayout>::Block(block, luminance + i, depth_bits);
    }
  }
  const auto* rest = reinterpret_cast<const uint8_t*>(samples + kLayout.channels * i);
  LuminanceKernelsPlain(kLayout.color_model, depth_bits)
      .extract(rest, luminance + i, pixels - i, depth_bits);
}

// Where the bytes of register `index` of a block's samples find their pixel's delta, which has the
// width of a sample; kNone where the sample is copied.
template <class Sample, LuminanceLayout kLayout>
constexpr ByteOrder DeltaOrder(int index) {
  constexpr int kBytes = sizeof(Sample);
  ByteOrder order = {};
  for (int i = 0; i < 16; ++i) {
    const int sample = (16 * index + i) / kBytes;
    const int pixel = sample / kLayout.channels;
    const bool is_corrected = sample % kLayout.channels < kLayout.corrected;
    order.bytes[i] = is_corrected ? static_cast<char>(kBytes * pixel + i % kBytes) : kNone;
  }
  return order;
}

template <class Sample, LuminanceLayout kLayout>
struct DeltaOrders {
  __m128i orders[kLayout.channels];

  DeltaOrders() {
    for (int r = 0; r < kLayout.channels; ++r) {
      const ByteOrder order = DeltaOrder<Sample, kLayout>(r);
      orders[r] = Load(order.bytes);
    }
  }
};

// Deltas of bytes: what is above 255 either way saturates like the sum.
template <LuminanceLayout kLayout>
void AddBlock(const uint8_t* in, uint8_t* out, const int16_t* deltas,
              const DeltaOrders<uint8_t, kLayout>& spread, int32_t /*depth_bits*/) {
  const __m128i zero = _mm_setzero_si128();
  const __m128i low = Load(deltas);
  const __m128i high = Load(deltas + 8);
  const __m128i up = _mm_packus_epi16(low, high);
  const __m128i down = _mm_packus_epi16(_mm_subs_epi16(zero, low), _mm_subs_epi16(zero, high));
  for (int r = 0; r < kLayout.channels; ++r) {
    const __m128i raised = _mm_adds_epu8(Load(in + 16 * r), _mm_shuffle_epi8(up, spread.orders[r]));
    Store(out + 16 * r, _mm_subs_epu8(raised, _mm_shuffle_epi8(down, spread.orders[r])));
  }
}

// Samples of any 16-bit value, moved to the signed range for the saturating sum. A copied sample
// may be above the depth: it has delta 0, and is limited to 0xFFFF only.
template <LuminanceLayout kLayout>
void AddBlock(const uint16_t* in, uint16_t* out, const int16_t* deltas,
              const DeltaOrders<uint16_t, kLayout>& spread, int32_t depth_bits) {
  const __m128i bias = _mm_set1_epi16(INT16_MIN);
  const __m128i max_sample = _mm_set1_epi16(static_cast<int16_t>((1 << depth_bits) - 1));
  const __m128i delta = Load(deltas);
  for (int r = 0; r < kLayout.channels; ++r) {
    const __m128i copied = _mm_srai_epi16(spread.orders[r], 15);
    const __m128i sum = _mm_adds_epi16(_mm_xor_si128(Load(in + 8 * r), bias),
                                       _mm_shuffle_epi8(delta, spread.orders[r]));
    const __m128i limit = _mm_or_si128(max_sample, copied);
    Store(out + 8 * r, _mm_min_epu16(_mm_xor_si128(sum, bias), limit));
  }
}

template <class Sample, LuminanceLayout kLayout>
void AddDeltas(const uint8_t* source, uint8_t* destination, const int16_t* deltas,
               std::ptrdiff_t pixels, int32_t depth_bits) {
  constexpr std::ptrdiff_t kChannels = kLayout.channels;
  const auto* in = reinterpret_cast<const Sample*>(source);
  auto* out = reinterpret_cast<Sample*>(destination);
  const DeltaOrders<Sample, kLayout> spread;
  std::ptrdiff_t i = 0;
  for (; i + kBlockPixels<Sample> <= pixels; i += kBlockPixels<Sample>) {
    AddBlock<kLayout>(in + kChannels * i, out + kChannels * i, deltas + i, spread, depth_bits);
  }
  LuminanceKernelsPlain(kLayout.color_model, depth_bits)
      .add_deltas(reinterpret_cast<const uint8_t*>(in + kChannels * i),
                  reinterpret_cast<uint8_t*>(out + kChannels * i), deltas + i, pixels - i,
                  depth_bits);
}

}  // namespace

LuminanceKernels LuminanceKernelsSse(uint32_t color_model, int32_t depth_bits) {
  return WithLuminanceLayout(color_model, [depth_bits]<LuminanceLayout kLayout>() {
    return depth_bits == 8
               ? LuminanceKernels{Extract<uint8_t, kLayout>, AddDeltas<uint8_t, kLayout>}
               : LuminanceKernels{Extract<uint16_t, kLayout>, AddDeltas<uint16_t, kLayout>};
  });
}

}  // namespace ovra
