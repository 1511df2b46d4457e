// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>

#include "core/cpu.h"

namespace ovra {

// Linear terms and a constant in fixed point, by output channel k:
//   ((sum of weight[k][j] * x[j] + 2^(shift - 1)) >> shift) + offset[k]
// with sums modulo 2^32 and an arithmetic shift, limited to 0..max.
struct FixedMatrix {
  int32_t weight[3][3];
  int32_t offset[3];
  int32_t shift;
  int32_t max;
};

// All ten terms in double precision, in the order in which they are stored:
//   sum of weight[k][t] * term[t], + 0.5
// limited to 0..max and truncated; a sum that is not a number gives 0.
struct DoubleMatrix {
  double weight[3][10];
  double max;
};

// Converts a row. Matrix is one of the two above; In and Out are uint8_t or uint16_t, and max fits
// Out. All values of In may occur. The rows do not overlap.
template <class Matrix, class In, class Out>
using ConvertMatrixRow = void(const In* source, Out* destination, std::ptrdiff_t pixels,
                              const Matrix& matrix);

template <class Matrix, class In, class Out>
void ConvertMatrixPlain(const In* source, Out* destination, std::ptrdiff_t pixels,
                        const Matrix& matrix);
template <class Matrix, class In, class Out>
void ConvertMatrixSse(const In* source, Out* destination, std::ptrdiff_t pixels,
                      const Matrix& matrix);
template <class Matrix, class In, class Out>
void ConvertMatrixAvx2(const In* source, Out* destination, std::ptrdiff_t pixels,
                       const Matrix& matrix);

template <class Matrix, class In, class Out>
ConvertMatrixRow<Matrix, In, Out>* SelectConvertMatrix(KernelTier tier) {
  if (tier == KernelTier::kAvx2) return ConvertMatrixAvx2<Matrix, In, Out>;
  if (tier == KernelTier::kSse) return ConvertMatrixSse<Matrix, In, Out>;
  return ConvertMatrixPlain<Matrix, In, Out>;
}

}  // namespace ovra
