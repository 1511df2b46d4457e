// SPDX-License-Identifier: MIT
#pragma once

#include <opencv2/core.hpp>

#include "work.h"

namespace compare {

inline cv::Mat MatOf(const Picture& picture) {
  const int depth = picture.sample_bytes() == 1 ? CV_8U : CV_16U;
  return cv::Mat(picture.height(), picture.width(), CV_MAKETYPE(depth, picture.channels()),
                 const_cast<uint8_t*>(picture.data()), picture.stride());
}

// The part of the target where the source comes to lie.
inline cv::Mat Place(const Work& work, const Picture& target) {
  return MatOf(target)(cv::Rect(work.x, work.y, work.source->width(), work.source->height()));
}

AddMakers AddOpenCvColor;
AddMakers AddOpenCvFilters;

}  // namespace compare
