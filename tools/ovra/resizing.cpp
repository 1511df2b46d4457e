// SPDX-License-Identifier: MIT
#include "resizing.h"

#include <algorithm>
#include <cstring>

#include "alpha.h"
#include "ovra/geometry.h"
#include "ovra/resample.h"
#include "turning.h"

namespace ovra_host {
namespace {

// Below this ratio every pixel of the source counts; above it the engine's few
// do well.
constexpr double kEveryPixelBelow = 0.5;
constexpr double kEngineFrom = 0.33;

constexpr float kSharpness = -0.75F;  // of the kernel that OvraResizeImage uses

std::vector<float> CubicTable() {
  std::vector<float> table(OVRA_KERNEL_TABLE_ENTRIES);
  CheckStatus(OvraCalcCubicSpline(kSharpness, table.data()), "OvraCalcCubicSpline");
  return table;
}

Image ResizedByAllPixels(const Image& source, const ResizePlan& plan, const CommonOptions& common) {
  const std::vector<float> table = CubicTable();
  const Position position = plan.region.position;
  const Size size = plan.region.size;
  Image result(plan.size.width, plan.size.height, source.format());
  CallLibrary(common, "OvraSmallResizeRotateImage", [&] {
    return OvraSmallResizeRotateImage(source.data(), source.width(), source.height(), result.data(),
                                      result.width(), result.height(), source.format(), position.x,
                                      position.y, size.width, size.height, table.data(), plan.mode);
  });
  return result;
}

Image ResizedByEngine(const Image& source, const ResizePlan& plan, const CommonOptions& common) {
  const Position position = plan.region.position;
  const Size size = plan.region.size;
  Image result(plan.size.width, plan.size.height, source.format());
  CallLibrary(common, "OvraResizeRotateImageROI", [&] {
    return OvraResizeRotateImageROI(source.data(), source.width(), source.height(), result.data(),
                                    result.width(), result.height(), source.format(), position.x,
                                    position.y, size.width, size.height, plan.mode);
  });
  return result;
}

// The picture with so many copies of its edge pixels on all sides.
Image WithEdgesRepeated(const Image& image, int32_t margin) {
  Image result(image.width() + 2 * margin, image.height() + 2 * margin, image.format());
  const size_t pixel = image.row_bytes() / static_cast<size_t>(image.width());
  for (int32_t y = 0; y < result.height(); ++y) {
    const uint8_t* const from = image.Row(std::clamp(y - margin, 0, image.height() - 1));
    for (int32_t x = 0; x < result.width(); ++x) {
      const int32_t column = std::clamp(x - margin, 0, image.width() - 1);
      std::memcpy(result.Row(y) + static_cast<size_t>(x) * pixel,
                  from + static_cast<size_t>(column) * pixel, pixel);
    }
  }
  return result;
}

Image Part(const Image& image, const Rectangle& part) {
  Image result(part.size.width, part.size.height, image.format());
  const size_t pixel = image.row_bytes() / static_cast<size_t>(image.width());
  for (int32_t y = 0; y < result.height(); ++y) {
    std::memcpy(result.Row(y),
                image.Row(part.position.y + y) + static_cast<size_t>(part.position.x) * pixel,
                result.row_bytes());
  }
  return result;
}

// The engine refuses pictures smaller than its taps. Source, region and result
// get a margin each, of the edge pixels; given factors keep the scale, and the
// middle stays the middle.
Image ResizedWithMargin(const Image& source, const ResizePlan& plan, const CommonOptions& common) {
  constexpr int32_t kMargin = 8;  // the most taps
  const Position position = plan.region.position;
  const Size region = plan.region.size;
  const bool inside = position.x >= 0 && position.y >= 0 &&
                      region.width <= source.width() - position.x &&
                      region.height <= source.height() - position.y;
  if (!inside) return ResizedByEngine(source, plan, common);  // which says why not
  const Image wide = WithEdgesRepeated(source, kMargin);
  const Size size = plan.UprightSize();
  const double ratio = plan.Ratio();
  Image result(size.width + 2 * kMargin, size.height + 2 * kMargin, source.format());
  CallLibrary(common, "OvraResizeImageROIVAR", [&] {
    return OvraResizeImageROIVAR(wide.data(), wide.width(), wide.height(), result.data(),
                                 result.width(), result.height(), source.format(), position.x,
                                 position.y, region.width + 2 * kMargin,
                                 region.height + 2 * kMargin, ratio, ratio);
  });
  return Rotated(Part(result, {{kMargin, kMargin}, size}), plan.mode);
}

bool IsSmallerThanTaps(const Image& source, const ResizePlan& plan, double ratio) {
  int32_t taps = 0;
  float stretch = 0;
  CheckStatus(OvraSelectKernelSupport(static_cast<float>(ratio), &taps, &stretch),
              "OvraSelectKernelSupport");
  const Size size = plan.UprightSize();
  const Size region = plan.region.size;
  return std::min({source.width(), source.height(), region.width, region.height, size.width,
                   size.height}) < taps;
}

Image ResizedAsItIs(const Image& source, const ResizePlan& plan, const CommonOptions& common) {
  const double ratio = plan.Ratio();
  if (ratio < (plan.fast ? kEngineFrom : kEveryPixelBelow)) {
    return ResizedByAllPixels(source, plan, common);
  }
  return IsSmallerThanTaps(source, plan, ratio) ? ResizedWithMargin(source, plan, common)
                                                : ResizedByEngine(source, plan, common);
}

}  // namespace

Size ResizePlan::UprightSize() const {
  return TurnedSize(size, mode);
}

double ResizePlan::Ratio() const {
  const Size upright = UprightSize();
  return std::max(static_cast<double>(upright.width) / region.size.width,
                  static_cast<double>(upright.height) / region.size.height);
}

Image Resized(const Image& source, const ResizePlan& plan, const CommonOptions& common) {
  if (plan.straight || IsOpaque(source)) return ResizedAsItIs(source, plan, common);
  return Divided(ResizedAsItIs(Multiplied(source), plan, common), source.depth_bits());
}

}  // namespace ovra_host
