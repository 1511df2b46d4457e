// SPDX-License-Identifier: MIT
#include "filter/edge_filter_simd.h"

namespace ovra {

void SplitEdgeRowSse(const uint8_t* pixels, int16_t* planes, std::ptrdiff_t plane_stride,
                     std::ptrdiff_t width) {
  SplitEdgeRow<Sse>(pixels, planes, plane_stride, width);
}

void FilterEdgeRowSse(const EdgeNeighbours& neighbours, const EdgeTable& table, uint8_t* output,
                      std::ptrdiff_t width) {
  FilterEdgeRow<Sse>(neighbours, table, output, width);
}

}  // namespace ovra
