// SPDX-License-Identifier: MIT
#include "filter/edge_filter_simd.h"

namespace ovra {

void SplitEdgeRowAvx2(const uint8_t* pixels, int16_t* planes, std::ptrdiff_t plane_stride,
                      std::ptrdiff_t width) {
  SplitEdgeRow<Avx2>(pixels, planes, plane_stride, width);
}

void FilterEdgeRowAvx2(const EdgeNeighbours& neighbours, const EdgeTable& table, uint8_t* output,
                       std::ptrdiff_t width) {
  FilterEdgeRow<Avx2>(neighbours, table, output, width);
}

}  // namespace ovra
