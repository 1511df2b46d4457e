// SPDX-License-Identifier: MIT
#include "color/color_matrix_kernels.h"

namespace ovra {
namespace {

void ConvertPixel(const uint32_t (&x)[3], uint32_t (&out)[3], const FixedMatrix& matrix) {
  const uint32_t half = uint32_t{1} << (matrix.shift - 1);
  for (int k = 0; k < 3; ++k) {
    uint32_t sum = half;
    for (int j = 0; j < 3; ++j) sum += static_cast<uint32_t>(matrix.weight[k][j]) * x[j];
    const int32_t scaled = static_cast<int32_t>(sum) >> matrix.shift;
    const auto value = static_cast<int32_t>(static_cast<uint32_t>(scaled) +
                                            static_cast<uint32_t>(matrix.offset[k]));
    out[k] = static_cast<uint32_t>(value < 0 ? 0 : value > matrix.max ? matrix.max : value);
  }
}

void ConvertPixel(const uint32_t (&x)[3], uint32_t (&out)[3], const DoubleMatrix& matrix) {
  const uint32_t terms[10] = {x[0],        x[1],        x[2],        1,           x[0] * x[0],
                              x[1] * x[1], x[2] * x[2], x[1] * x[0], x[2] * x[1], x[2] * x[0]};
  for (int k = 0; k < 3; ++k) {
    double sum = matrix.weight[k][0] * terms[0];
    for (int t = 1; t < 10; ++t) sum += matrix.weight[k][t] * terms[t];
    sum += 0.5;
    if (!(sum > 0)) sum = 0;
    if (sum > matrix.max) sum = matrix.max;
    out[k] = static_cast<uint32_t>(sum);
  }
}

}  // namespace

template <class Matrix, class In, class Out>
void ConvertMatrixPlain(const In* source, Out* destination, std::ptrdiff_t pixels,
                        const Matrix& matrix) {
  for (std::ptrdiff_t i = 0; i < pixels; ++i) {
    const uint32_t x[3] = {source[3 * i], source[3 * i + 1], source[3 * i + 2]};
    uint32_t out[3];
    ConvertPixel(x, out, matrix);
    for (int k = 0; k < 3; ++k) destination[3 * i + k] = static_cast<Out>(out[k]);
  }
}

template <class Matrix, class In, class Out>
using Row = ConvertMatrixRow<Matrix, In, Out>;

template Row<FixedMatrix, uint8_t, uint8_t> ConvertMatrixPlain;
template Row<FixedMatrix, uint8_t, uint16_t> ConvertMatrixPlain;
template Row<FixedMatrix, uint16_t, uint8_t> ConvertMatrixPlain;
template Row<FixedMatrix, uint16_t, uint16_t> ConvertMatrixPlain;
template Row<DoubleMatrix, uint8_t, uint8_t> ConvertMatrixPlain;
template Row<DoubleMatrix, uint8_t, uint16_t> ConvertMatrixPlain;
template Row<DoubleMatrix, uint16_t, uint8_t> ConvertMatrixPlain;
template Row<DoubleMatrix, uint16_t, uint16_t> ConvertMatrixPlain;

}  // namespace ovra
