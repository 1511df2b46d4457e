// SPDX-License-Identifier: MIT
// The colour matrix in vectors of one or two 128-bit lanes. For kernel files only: `Simd` is a set
// of operations on vectors of their width, and everything here is compiled with their flags.
#pragma once

#include <smmintrin.h>

#include <cstddef>
#include <cstdint>

#include "color/color_matrix_kernels.h"

namespace ovra {
namespace {

inline __m128i LoadBytes(const void* bytes) {
  return _mm_loadu_si128(static_cast<const __m128i*>(bytes));
}

// Fixed point ------------------------------------------------------------------------------------
//
// Each 32-bit lane computes one output sample, and the lanes follow the order of the samples in
// memory, so that results only need packing. Four pixels are 12 samples: three vectors ("thirds")
// a lane, whose patterns of pixels and channels repeat from group to group.

inline constexpr int kThirds = 3;
inline constexpr int kGroupPixels = 4;
inline constexpr int kGroupSamples = 3 * kGroupPixels;
inline constexpr int kLaneGroups = 4;
inline constexpr int kLaneSamples = kLaneGroups * kGroupSamples;

// Where a third finds its input: the 16 bytes that start at this sample of the group.
template <class In>
constexpr int ThirdStart(int third) {
  return sizeof(In) == 1 ? 0 : 3 * third;  // 16 bytes hold all four pixels, or two and a half
}

// A shuffle that brings input channel j of its pixel into every 32-bit lane of a third: into the
// low half, and channel `high_j` into the high half (-1: zero).
template <class In>
__m128i PickChannels(int third, int j, int high_j) {
  uint8_t shuffle[16];
  for (int lane = 0; lane < 4; ++lane) {
    const int pixel = (4 * third + lane) / 3;
    for (int byte = 0; byte < 4; ++byte) {
      const int channel = byte < 2 ? j : high_j;
      const int sample_byte = byte % 2;
      const bool empty = channel < 0 || sample_byte >= static_cast<int>(sizeof(In));
      const int sample = 3 * pixel + channel - ThirdStart<In>(third);
      shuffle[4 * lane + byte] =
          static_cast<uint8_t>(empty ? 0x80 : sample * static_cast<int>(sizeof(In)) + sample_byte);
    }
  }
  return LoadBytes(shuffle);
}

// values(k) of the output channel k that each lane of a third computes.
template <class Values>
__m128i ByOutputChannel(int third, const Values& values) {
  uint32_t lanes[4];
  for (int lane = 0; lane < 4; ++lane) lanes[lane] = values((4 * third + lane) % 3);
  return LoadBytes(lanes);
}

// Sums by multiply-add pairs, for weights that fit 16 bits. Samples of two bytes are moved into the
// range of signed numbers, which a constant in the sum makes good.
template <class Simd, class In>
class PairSums {
  using Int = typename Simd::Int;

 public:
  explicit PairSums(const FixedMatrix& matrix) {
    constexpr uint32_t kSignedZero = sizeof(In) == 2 ? 0x8000 : 0;
    to_signed_ = Simd::Broadcast(_mm_set1_epi16(static_cast<int16_t>(kSignedZero)));
    for (int third = 0; third < kThirds; ++third) {
      pick01_[third] = Simd::Broadcast(PickChannels<In>(third, 0, 1));
      pick2_[third] = Simd::Broadcast(PickChannels<In>(third, 2, -1));
      weights01_[third] = Simd::Broadcast(ByOutputChannel(third, [&](int k) {
        return (static_cast<uint32_t>(matrix.weight[k][0]) & 0xFFFF) |
               static_cast<uint32_t>(matrix.weight[k][1]) << 16;
      }));
      weights2_[third] = Simd::Broadcast(ByOutputChannel(
          third, [&](int k) { return static_cast<uint32_t>(matrix.weight[k][2]) & 0xFFFF; }));
      constants_[third] = Simd::Broadcast(ByOutputChannel(third, [&](int k) {
        const int32_t weights = matrix.weight[k][0] + matrix.weight[k][1] + matrix.weight[k][2];
        return kSignedZero * static_cast<uint32_t>(weights) + (1U << (matrix.shift - 1));
      }));
    }
  }

  static bool Serves(const FixedMatrix& matrix) {
    for (const auto& row : matrix.weight) {
      for (const int32_t weight : row) {
        if (weight != static_cast<int16_t>(weight)) return false;
      }
    }
    return true;
  }

  Int operator()(int third, Int samples) const {
    if constexpr (sizeof(In) == 2) samples = Simd::Xor(samples, to_signed_);
    const Int products01 =
        Simd::MultiplyAddPairs(Simd::Shuffle(samples, pick01_[third]), weights01_[third]);
    const Int products2 =
        Simd::MultiplyAddPairs(Simd::Shuffle(samples, pick2_[third]), weights2_[third]);
    return Simd::Add32(Simd::Add32(products01, products2), constants_[third]);
  }

 private:
  Int to_signed_;
  Int pick01_[kThirds], pick2_[kThirds];
  Int weights01_[kThirds], weights2_[kThirds];
  Int constants_[kThirds];
};

// Sums by 32-bit products, for all weights.
template <class Simd, class In>
class WideSums {
  using Int = typename Simd::Int;

 public:
  explicit WideSums(const FixedMatrix& matrix)
      : half_(Simd::Broadcast(_mm_set1_epi32(1 << (matrix.shift - 1)))) {
    for (int third = 0; third < kThirds; ++third) {
      for (int j = 0; j < 3; ++j) {
        pick_[third][j] = Simd::Broadcast(PickChannels<In>(third, j, -1));
        weights_[third][j] = Simd::Broadcast(ByOutputChannel(
            third, [&](int k) { return static_cast<uint32_t>(matrix.weight[k][j]); }));
      }
    }
  }

  Int operator()(int third, Int samples) const {
    Int sum = half_;
    for (int j = 0; j < 3; ++j) {
      const Int x = Simd::Shuffle(samples, pick_[third][j]);
      sum = Simd::Add32(sum, Simd::Multiply32(x, weights_[third][j]));
    }
    return sum;
  }

 private:
  Int half_;
  Int pick_[kThirds][3];
  Int weights_[kThirds][3];
};

// A lane's groups lie kLaneSamples before those of the next lane.
template <class Simd, class Sample>
typename Simd::Int LoadLanes(const Sample* samples) {
  return Simd::LoadLanes(reinterpret_cast<const uint8_t*>(samples), kLaneSamples * sizeof(Sample));
}

template <class Simd, class Sample>
void StoreLanes(Sample* samples, typename Simd::Int values) {
  Simd::StoreLanes(reinterpret_cast<uint8_t*>(samples), kLaneSamples * sizeof(Sample), values);
}

// Converts whole steps of the row, as many as may be read: vectors reach up to two pixels beyond
// the step's own. Answers the number of pixels done.
template <class Simd, class Sums, class In, class Out>
std::ptrdiff_t ConvertFixedSteps(const In* source, Out* destination, std::ptrdiff_t pixels,
                                 const FixedMatrix& matrix) {
  using Int = typename Simd::Int;
  constexpr int kVectors = kLaneGroups * kThirds;
  constexpr int kStepPixels = Simd::kLanes * kLaneGroups * kGroupPixels;
  constexpr int kReadBeyond = 2;
  const Sums sums(matrix);
  const Int max = Simd::Broadcast(_mm_set1_epi16(static_cast<int16_t>(matrix.max)));
  const __m128i shift = _mm_cvtsi32_si128(matrix.shift);
  Int offsets[kThirds];
  for (int third = 0; third < kThirds; ++third) {
    offsets[third] = Simd::Broadcast(
        ByOutputChannel(third, [&](int k) { return static_cast<uint32_t>(matrix.offset[k]); }));
  }
  std::ptrdiff_t i = 0;
  for (; i + kStepPixels + kReadBeyond <= pixels; i += kStepPixels) {
    const In* const in = source + 3 * i;
    Out* const out = destination + 3 * i;
    const auto vector = [&](int v) {
      const int third = v % kThirds;
      const Int samples =
          LoadLanes<Simd>(in + kGroupSamples * (v / kThirds) + ThirdStart<In>(third));
      return Simd::Add32(Simd::ShiftRight32(sums(third, samples), shift), offsets[third]);
    };
    if constexpr (sizeof(Out) == 1) {  // whose range is that of the packing itself
#pragma GCC unroll 3
      for (int v = 0; v < kVectors; v += 4) {
        const Int low = Simd::PackSigned32(vector(v), vector(v + 1));
        const Int high = Simd::PackSigned32(vector(v + 2), vector(v + 3));
        StoreLanes<Simd>(out + 4 * v, Simd::PackUnsigned16(low, high));
      }
    } else {
#pragma GCC unroll 6
      for (int v = 0; v < kVectors; v += 2) {
        const Int packed = Simd::PackUnsigned32(vector(v), vector(v + 1));
        StoreLanes<Simd>(out + 4 * v, Simd::MinUnsigned16(packed, max));
      }
    }
  }
  return i;
}

template <class Simd, class In, class Out>
std::ptrdiff_t ConvertSteps(const In* source, Out* destination, std::ptrdiff_t pixels,
                            const FixedMatrix& matrix) {
  if (PairSums<Simd, In>::Serves(matrix)) {
    return ConvertFixedSteps<Simd, PairSums<Simd, In>>(source, destination, pixels, matrix);
  }
  return ConvertFixedSteps<Simd, WideSums<Simd, In>>(source, destination, pixels, matrix);
}

// Double precision -------------------------------------------------------------------------------
//
// Four pixels a step, one in each lane of as many vectors as four doubles take.

// The samples of four pixels by channel, as 32-bit integers.
struct Planes {
  __m128i channel[3];
};

inline Planes LoadPlanes(const uint8_t* source) {
  int32_t last;
  __builtin_memcpy(&last, source + 8, sizeof last);
  const __m128i samples =
      _mm_insert_epi32(_mm_loadl_epi64(reinterpret_cast<const __m128i*>(source)), last, 2);
  constexpr char kNo = -128;
  return {{_mm_shuffle_epi8(samples, _mm_setr_epi8(0, kNo, kNo, kNo, 3, kNo, kNo, kNo,  //
                                                   6, kNo, kNo, kNo, 9, kNo, kNo, kNo)),
           _mm_shuffle_epi8(samples, _mm_setr_epi8(1, kNo, kNo, kNo, 4, kNo, kNo, kNo,  //
                                                   7, kNo, kNo, kNo, 10, kNo, kNo, kNo)),
           _mm_shuffle_epi8(samples, _mm_setr_epi8(2, kNo, kNo, kNo, 5, kNo, kNo, kNo,  //
                                                   8, kNo, kNo, kNo, 11, kNo, kNo, kNo))}};
}

inline Planes LoadPlanes(const uint16_t* source) {
  constexpr char kNo = -128;
  const __m128i low = LoadBytes(source);       // samples 0..7
  const __m128i high = LoadBytes(source + 4);  // samples 4..11
  const __m128i zero = _mm_setzero_si128();
  // Pixels 0 and 1 of a channel from the one vector, 2 and 3 from the other.
  const __m128i first = _mm_setr_epi8(0, 1, kNo, kNo, 6, 7, kNo, kNo,  //
                                      kNo, kNo, kNo, kNo, kNo, kNo, kNo, kNo);
  const __m128i second = _mm_setr_epi8(kNo, kNo, kNo, kNo, kNo, kNo, kNo, kNo,  //
                                       4, 5, kNo, kNo, 10, 11, kNo, kNo);
  const auto plane = [&](__m128i a, __m128i b) {
    return _mm_or_si128(_mm_shuffle_epi8(a, first), _mm_shuffle_epi8(b, second));
  };
  return {{plane(low, high), plane(_mm_alignr_epi8(zero, low, 2), _mm_alignr_epi8(zero, high, 2)),
           plane(_mm_alignr_epi8(zero, low, 4), _mm_alignr_epi8(zero, high, 4))}};
}

inline void StorePlanes(const Planes& planes, uint8_t* destination) {
  const __m128i words = _mm_packus_epi32(planes.channel[0], planes.channel[1]);
  const __m128i words2 = _mm_packus_epi32(planes.channel[2], planes.channel[2]);
  const __m128i bytes =
      _mm_shuffle_epi8(_mm_packus_epi16(words, words2),
                       _mm_setr_epi8(0, 4, 8, 1, 5, 9, 2, 6, 10, 3, 7, 11, -1, -1, -1, -1));
  _mm_storel_epi64(reinterpret_cast<__m128i*>(destination), bytes);
  const int32_t last = _mm_extract_epi32(bytes, 2);
  __builtin_memcpy(destination + 8, &last, sizeof last);
}

inline void StorePlanes(const Planes& planes, uint16_t* destination) {
  const __m128i words = _mm_packus_epi32(planes.channel[0], planes.channel[1]);
  const __m128i words2 = _mm_packus_epi32(planes.channel[2], planes.channel[2]);
  constexpr char kNo = -128;
  const __m128i low =
      _mm_or_si128(_mm_shuffle_epi8(words, _mm_setr_epi8(0, 1, 8, 9, kNo, kNo, 2, 3,  //
                                                         10, 11, kNo, kNo, 4, 5, 12, 13)),
                   _mm_shuffle_epi8(words2, _mm_setr_epi8(kNo, kNo, kNo, kNo, 0, 1, kNo, kNo,  //
                                                          kNo, kNo, 2, 3, kNo, kNo, kNo, kNo)));
  const __m128i high =
      _mm_or_si128(_mm_shuffle_epi8(words, _mm_setr_epi8(kNo, kNo, 6, 7, 14, 15, kNo, kNo,  //
                                                         kNo, kNo, kNo, kNo, kNo, kNo, kNo, kNo)),
                   _mm_shuffle_epi8(words2, _mm_setr_epi8(4, 5, kNo, kNo, kNo, kNo, 6, 7,  //
                                                          kNo, kNo, kNo, kNo, kNo, kNo, kNo, kNo)));
  _mm_storeu_si128(reinterpret_cast<__m128i*>(destination), low);
  _mm_storel_epi64(reinterpret_cast<__m128i*>(destination + 8), high);
}

template <class Simd>
class DoubleSums {
  using Double = typename Simd::Double;

 public:
  explicit DoubleSums(const DoubleMatrix& matrix) : max_(Simd::SetDouble(matrix.max)) {
    for (int k = 0; k < 3; ++k) {
      for (int t = 0; t < 10; ++t) weights_[k][t] = Simd::SetDouble(matrix.weight[k][t]);
    }
  }

  Planes operator()(const Planes& samples) const {
    typename Simd::FourDoubles out[3];
    const typename Simd::FourDoubles x0 = Simd::ToDoubles(samples.channel[0]);
    const typename Simd::FourDoubles x1 = Simd::ToDoubles(samples.channel[1]);
    const typename Simd::FourDoubles x2 = Simd::ToDoubles(samples.channel[2]);
    for (int v = 0; v < Simd::kVectorsOfFour; ++v) {
      // Products of samples are integers below 2^32, which doubles hold exactly.
      const Double a = x0.vector[v];
      const Double b = x1.vector[v];
      const Double c = x2.vector[v];
      const Double terms[] = {a,     b,     c,    Simd::SetDouble(1), a * a, b * b, c * c,
                              b * a, c * b, c * a};
      for (int k = 0; k < 3; ++k) {
        Double sum = weights_[k][0] * terms[0];
        for (int t = 1; t < 10; ++t) sum = sum + weights_[k][t] * terms[t];
        out[k].vector[v] = Limit(sum + Simd::SetDouble(0.5));
      }
    }
    return {{Simd::Truncate(out[0]), Simd::Truncate(out[1]), Simd::Truncate(out[2])}};
  }

 private:
  Double Limit(Double sum) const {
    // The maximum answers its second operand when the first is no number.
    return Simd::MinDouble(Simd::MaxDouble(sum, Simd::SetDouble(0)), max_);
  }

  Double weights_[3][10];
  Double max_;
};

template <class Simd, class In, class Out>
std::ptrdiff_t ConvertSteps(const In* source, Out* destination, std::ptrdiff_t pixels,
                            const DoubleMatrix& matrix) {
  const DoubleSums<Simd> sums(matrix);
  std::ptrdiff_t i = 0;
  for (; i + kGroupPixels <= pixels; i += kGroupPixels) {
    StorePlanes(sums(LoadPlanes(source + 3 * i)), destination + 3 * i);
  }
  return i;
}

}  // namespace
}  // namespace ovra
