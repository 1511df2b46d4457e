// SPDX-License-Identifier: MIT
#include <cstdlib>

#include "filter/edge_filter/kernels.h"

namespace ovra {
namespace {

constexpr int kWeightShift = 10;

void Split(const uint8_t* pixels, int16_t* planes, std::ptrdiff_t plane_stride,
           std::ptrdiff_t width) {
  for (std::ptrdiff_t x = 0; x < width; ++x) {
    for (std::ptrdiff_t c = 0; c < 3; ++c) {
      planes[c * plane_stride + x] = static_cast<int16_t>(kEdgeSampleScale * pixels[3 * x + c]);
    }
  }
}

void FilterPixel(const EdgeNeighbours& neighbours, const EdgeTable& table, std::ptrdiff_t x,
                 uint8_t* output) {
  int32_t pulls[3] = {};
  for (const int16_t* const samples : neighbours.samples) {
    int32_t differences[3];
    int32_t distance = 0;
    for (std::ptrdiff_t c = 0; c < 3; ++c) {
      const std::ptrdiff_t at = x + c * neighbours.plane_stride;
      differences[c] = (samples[at] - neighbours.Centre()[at]) / kEdgeSampleScale;
      distance += std::abs(differences[c]);
    }
    const int32_t weight = table.weights[distance];
    for (int c = 0; c < 3; ++c) pulls[c] += (weight * differences[c]) >> kWeightShift;
  }
  for (std::ptrdiff_t c = 0; c < 3; ++c) {
    const int32_t centre = neighbours.Centre()[x + c * neighbours.plane_stride] / kEdgeSampleScale;
    // Between the extremes of the neighbours, hence a byte.
    output[c] = static_cast<uint8_t>(centre + pulls[c] / kEdgeNeighbours);
  }
}

void Filter(const EdgeNeighbours& neighbours, const EdgeTable& table, uint8_t* output,
            std::ptrdiff_t width) {
  for (std::ptrdiff_t x = 0; x < width; ++x) FilterPixel(neighbours, table, x, output + 3 * x);
}

void ColorDifference(const uint8_t* pixels, int16_t* first, int16_t* second, std::ptrdiff_t width) {
  for (std::ptrdiff_t x = 0; x < width; ++x) {
    const int32_t c0 = pixels[3 * x];
    const int32_t c1 = pixels[3 * x + 1];
    const int32_t c2 = pixels[3 * x + 2];
    first[x] = static_cast<int16_t>((45 * c0 - 38 * c1 - 7 * c2) >> 4);
    second[x] = static_cast<int16_t>(((3 * c2 - 2 * c1 - c0) * 19) >> 4);
  }
}

uint32_t CountMiddling(const int16_t* a, const int16_t* b, std::ptrdiff_t width) {
  uint32_t count = 0;
  for (std::ptrdiff_t x = 0; x < width; ++x) {
    const int32_t magnitude = std::abs(a[x] - b[x]);
    if (magnitude >= kMiddlingDifference && magnitude < 2 * kMiddlingDifference) ++count;
  }
  return count;
}

}  // namespace

const EdgeFilterKernels kEdgeFilterPlain = {
    Split, {Filter, Filter}, ColorDifference, CountMiddling};

}  // namespace ovra
