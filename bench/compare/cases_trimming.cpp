// SPDX-License-Identifier: MIT
#include <opencv2/core.hpp>
#include <opencv2/imgproc.hpp>

#include "compare.h"
#include "ovra/geometry.h"

namespace compare {
namespace {

cv::Mat MatOf(Picture* picture) {
  const int depth = picture->sample_bytes() == 1 ? CV_8U : CV_16U;
  return cv::Mat(picture->height(), picture->width(), CV_MAKETYPE(depth, picture->channels()),
                 picture->data(), picture->stride());
}

Case Straighten(int channels, int depth_bits, double degrees, double megapixels) {
  const int width = WidthOf(megapixels);
  const int height = width * 2 / 3;
  auto source = std::make_shared<Picture>(Scene(width, height, channels, depth_bits));
  auto ours = std::make_shared<Picture>(width, height, channels, depth_bits);
  auto opencv = std::make_shared<Picture>(width, height, channels, depth_bits);
  const auto tenths = static_cast<int32_t>(degrees * 10 + 0.5);
  return {double{1} * width * height,
          2 * source->bytes(),
          {"OvraFreeTrimming", ours,
           [=] {
             OvraFreeTrimming(source->data(), width, height, ours->data(), width, height,
                              source->format(), 0, 0, tenths, nullptr);
           }},
          {{"OpenCV warpAffine cubic", opencv, [=] {
              cv::setNumThreads(1);
              const cv::Point2f centre(0.5F * (width - 1), 0.5F * (height - 1));
              const cv::Mat turn = cv::getRotationMatrix2D(centre, degrees, 1.0);
              cv::Mat target = MatOf(opencv.get());
              cv::warpAffine(MatOf(source.get()), target, turn, target.size(), cv::INTER_CUBIC,
                             cv::BORDER_REPLICATE);
            }}}};
}

}  // namespace

void AddTrimmingCases(std::vector<NamedCase>* cases, double megapixels) {
  const auto add = [=](int channels, int depth_bits, double degrees) {
    char operation[32];
    snprintf(operation, sizeof operation, "trimming/%.1f degrees", degrees);
    cases->push_back({CaseName(operation, channels, depth_bits, megapixels),
                      [=] { return Straighten(channels, depth_bits, degrees, megapixels); }});
  };
  for (const double degrees : {0.7, 2.3, 10.0, 45.0, 88.5}) add(3, 8, degrees);
  add(1, 8, 2.3);
  add(4, 8, 2.3);
  add(3, 16, 2.3);
}

}  // namespace compare
