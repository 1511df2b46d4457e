// SPDX-License-Identifier: MIT
#include <cstdlib>

#include "filter/edge_filter/kernels.h"

namespace ovra {
namespace {

constexpr int kWeightShift = 10;

void Split(const uint8_t* pixels, uint8_t* planes, int16_t* scaled_planes, std::ptrdiff_t width,
           std::ptrdiff_t /*next*/) {
  for (std::ptrdiff_t x = 0; x < width; ++x) {
    for (std::ptrdiff_t c = 0; c < 3; ++c) {
      planes[c * kEdgePlane + x] = pixels[3 * x + c];
      const auto scaled = static_cast<int16_t>(kEdgeSampleScale * pixels[3 * x + c]);
      scaled_planes[c * kEdgePlane + x] = scaled;
      scaled_planes[c * kEdgePlane + x + kEdgeSecondCopy] = scaled;
    }
  }
}

int32_t Distance(const uint8_t* a, const uint8_t* b) {
  int32_t distance = 0;
  for (std::ptrdiff_t c = 0; c < 3; ++c) {
    distance += std::abs(a[c * kEdgePlane] - b[c * kEdgePlane]);
  }
  return distance;
}

void Weigh(const uint8_t* const (&rows)[kEdgeLaterRows], const EdgeTable& table, int16_t* factors,
           std::ptrdiff_t columns) {
  for (std::ptrdiff_t x = 0; x < columns; ++x) {
    for (std::ptrdiff_t j = 0; j < kEdgeLaterRows; ++j) {
      for (std::ptrdiff_t i = FirstLater(j); i < kEdgeSide; ++i) {
        const uint8_t* const neighbour = rows[j] + x + kEdgeStep * (i - kEdgeMiddle);
        const int32_t weight = table.weights[Distance(rows[0] + x, neighbour)];
        factors[LaterNumber(j, i) * kEdgePlane + x] =
            static_cast<int16_t>(kEdgeFactorScale * weight);
      }
    }
  }
}

// Adds to the pulls of three channels at a pixel that of one neighbour.
void AddPull(const int16_t* pixel, const int16_t* neighbour, int16_t factor, int32_t (&pulls)[3]) {
  const int32_t weight = factor / kEdgeFactorScale;
  for (std::ptrdiff_t c = 0; c < 3; ++c) {
    const int32_t difference =
        (neighbour[c * kEdgePlane] - pixel[c * kEdgePlane]) / kEdgeSampleScale;
    pulls[c] += (weight * difference) >> kWeightShift;
  }
}

void PullPixel(const EdgePulls& pulls, std::ptrdiff_t x, uint8_t* output) {
  const int16_t* const pixel = pulls.rows[kEdgeMiddle] + x;
  int32_t sums[3] = {};
  for (std::ptrdiff_t j = 0; j < kEdgeLaterRows; ++j) {
    for (std::ptrdiff_t i = FirstLater(j); i < kEdgeSide; ++i) {
      const std::ptrdiff_t step = kEdgeStep * (i - kEdgeMiddle);
      const std::ptrdiff_t plane = LaterNumber(j, i) * kEdgePlane;
      AddPull(pixel, pulls.rows[kEdgeMiddle + j] + x + step, pulls.factors[0][plane + x], sums);
      AddPull(pixel, pulls.rows[kEdgeMiddle - j] + x - step, pulls.factors[j][plane + x - step],
              sums);
    }
  }
  for (std::ptrdiff_t c = 0; c < 3; ++c) {
    const int32_t centre = pixel[c * kEdgePlane] / kEdgeSampleScale;
    // Between the extremes of the neighbours, hence a byte.
    output[c] = static_cast<uint8_t>(centre + sums[c] / kEdgeNeighbours);
  }
}

void Pull(const EdgePulls& pulls, uint8_t* output, std::ptrdiff_t width) {
  for (std::ptrdiff_t x = 0; x < width; ++x) PullPixel(pulls, x, output + 3 * x);
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
    Split, {Weigh, Weigh}, Pull, ColorDifference, CountMiddling};

}  // namespace ovra
