// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>

namespace ovra {

// Linear terms and a constant in fixed point, by output channel k:
//   ((sum of weight[j][k] * x[j] + 2^(shift - 1)) >> shift) + offset[k]
// with sums modulo 2^32 and an arithmetic shift, limited to 0..max.
//
// What belongs to an output channel stands there for each of the output samples of four pixels, so
// that registers of four take it as it is: three of them make four pixels.
struct FixedMatrix {
  static constexpr int kSamples = 12;
  using Samples = int32_t[kSamples];

  alignas(16) Samples weight[3];
  alignas(16) Samples offset;
  int32_t shift;
  int32_t max;

  // Where all weights fit 16 bits, the same for products of pairs: the weights of x[0] (low half) and
  // x[1], that of x[2], and what is added to the sum. Samples of two bytes are taken 2^15 lower, so
  // that they are signed; the sum makes it good.
  bool fits_pairs;
  alignas(16) Samples weights01;
  alignas(16) Samples weight2;
  alignas(16) Samples pair_sum;

  // From bytes to bytes, where weights of 16-bit sums fit bytes: a weight is 32 times `high` and `low`,
  //   (sum of high * x + (sum of low * x >> 5) + byte_sum) >> 4
  // is the result, and nothing leaves 16 bits. What belongs to an output channel stands there for each
  // of the output samples of eight pixels; bytes are weights of x[0] and x[1], or of x[2] and nothing.
  static constexpr int kByteSamples = 24;
  using BytePairs = int8_t[2 * kByteSamples];
  bool fits_bytes;
  alignas(16) BytePairs high01;
  alignas(16) BytePairs high2;
  alignas(16) BytePairs low01;
  alignas(16) BytePairs low2;
  alignas(16) int16_t byte_sum[kByteSamples];
};

// All ten terms in double precision, in the order in which they are stored:
//   sum of weight[k][t] * term[t], + 0.5
// limited to 0..max and truncated; a sum that is not a number gives 0. Each weight stands there as
// often as a register holds doubles.
struct DoubleMatrix {
  static constexpr int kCopies = 4;

  alignas(32) double weight[3][10][kCopies];
  double max;
};

// Converts a run of pixels. Samples are bytes, or 16-bit words where deep; max fits the destination's.
// All values of source samples may occur. The runs do not overlap.
template <class Matrix>
using ConvertMatrixRun = void(const uint8_t* source, uint8_t* destination, std::ptrdiff_t pixels,
                              const Matrix& matrix);

// Indices are [deep source][deep destination].
struct ColorMatrixKernels {
  ConvertMatrixRun<FixedMatrix>* fixed[2][2];
  ConvertMatrixRun<FixedMatrix>* fixed_pairs[2][2];  // for matrices that fit
  ConvertMatrixRun<FixedMatrix>* fixed_bytes;        // bytes to bytes, for those that fit there
  ConvertMatrixRun<DoubleMatrix>* exact[2][2];
};

extern const ColorMatrixKernels kColorMatrixPlain;
extern const ColorMatrixKernels kColorMatrixSse;
extern const ColorMatrixKernels kColorMatrixAvx2;

}  // namespace ovra
