// SPDX-License-Identifier: MIT
#include "color/color_matrix/kernels.h"
#include "core/wrapping.h"

namespace ovra {
namespace {

void ConvertPixel(const uint32_t (&x)[3], uint32_t (&out)[3], const FixedMatrix& matrix) {
  const uint32_t half = uint32_t{1} << (matrix.shift - 1);
  for (int k = 0; k < 3; ++k) {
    uint32_t sum = half;
    for (int j = 0; j < 3; ++j) {
      sum = WrappingSum(sum, WrappingProduct(matrix.weight[j][k], x[j]));
    }
    const int32_t scaled = static_cast<int32_t>(sum) >> matrix.shift;
    const auto value = static_cast<int32_t>(WrappingSum(scaled, matrix.offset[k]));
    out[k] = static_cast<uint32_t>(value < 0 ? 0 : value > matrix.max ? matrix.max : value);
  }
}

void ConvertPixel(const uint32_t (&x)[3], uint32_t (&out)[3], const DoubleMatrix& matrix) {
  const uint32_t terms[10] = {x[0],        x[1],        x[2],        1,           x[0] * x[0],
                              x[1] * x[1], x[2] * x[2], x[1] * x[0], x[2] * x[1], x[2] * x[0]};
  for (int k = 0; k < 3; ++k) {
    double sum = matrix.weight[k][0][0] * terms[0];
    for (int t = 1; t < 10; ++t) sum += matrix.weight[k][t][0] * terms[t];
    sum += 0.5;
    if (!(sum > 0)) sum = 0;
    if (sum > matrix.max) sum = matrix.max;
    out[k] = static_cast<uint32_t>(sum);
  }
}

template <class Matrix, class In, class Out>
void Convert(const uint8_t* source, uint8_t* destination, std::ptrdiff_t pixels,
             const Matrix& matrix) {
  const auto* const in = reinterpret_cast<const In*>(source);
  auto* const out = reinterpret_cast<Out*>(destination);
  for (std::ptrdiff_t i = 0; i < pixels; ++i) {
    const uint32_t x[3] = {in[3 * i], in[3 * i + 1], in[3 * i + 2]};
    uint32_t converted[3];
    ConvertPixel(x, converted, matrix);
    for (int k = 0; k < 3; ++k) out[3 * i + k] = static_cast<Out>(converted[k]);
  }
}

}  // namespace

const ColorMatrixKernels kColorMatrixPlain = {
    .fixed = {{Convert<FixedMatrix, uint8_t, uint8_t>, Convert<FixedMatrix, uint8_t, uint16_t>},
              {Convert<FixedMatrix, uint16_t, uint8_t>, Convert<FixedMatrix, uint16_t, uint16_t>}},
    .fixed_pairs = {{Convert<FixedMatrix, uint8_t, uint8_t>,
                     Convert<FixedMatrix, uint8_t, uint16_t>},
                    {Convert<FixedMatrix, uint16_t, uint8_t>,
                     Convert<FixedMatrix, uint16_t, uint16_t>}},
    .fixed_bytes = Convert<FixedMatrix, uint8_t, uint8_t>,
    .exact = {{Convert<DoubleMatrix, uint8_t, uint8_t>, Convert<DoubleMatrix, uint8_t, uint16_t>},
              {Convert<DoubleMatrix, uint16_t, uint8_t>,
               Convert<DoubleMatrix, uint16_t, uint16_t>}},
};

}  // namespace ovra
