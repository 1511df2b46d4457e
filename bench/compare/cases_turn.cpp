// SPDX-License-Identifier: MIT
#include <libyuv.h>

#include <opencv2/core.hpp>

#include "compare.h"
#include "ovra/geometry.h"

namespace compare {
namespace {

struct Turn {
  const char* name;
  int mode;
  bool swaps_sides;
};

constexpr Turn kTurns[] = {
    {"quarter left", OVRA_ROTATE_QUARTER_LEFT, true},
    {"half turn", OVRA_ROTATE_HALF, false},
    {"quarter right", OVRA_ROTATE_QUARTER_RIGHT, true},
    {"mirror", OVRA_ROTATE_MIRROR, false},
    {"flip", OVRA_ROTATE_FLIP, false},
    {"transpose", OVRA_ROTATE_TRANSPOSE, true},
};

void TurnByOpenCv(const cv::Mat& source, cv::Mat* target, int mode) {
  switch (mode) {
    case OVRA_ROTATE_QUARTER_LEFT:
      return cv::rotate(source, *target, cv::ROTATE_90_COUNTERCLOCKWISE);
    case OVRA_ROTATE_HALF:
      return cv::rotate(source, *target, cv::ROTATE_180);
    case OVRA_ROTATE_QUARTER_RIGHT:
      return cv::rotate(source, *target, cv::ROTATE_90_CLOCKWISE);
    case OVRA_ROTATE_MIRROR:
      return cv::flip(source, *target, 1);
    case OVRA_ROTATE_FLIP:
      return cv::flip(source, *target, 0);
    default:
      return cv::transpose(source, *target);
  }
}

// libyuv has turns and mirrors of planes of bytes and of four-byte pixels.
bool TurnByLibyuv(const Picture& source, Picture* target, int mode) {
  const int in_stride = static_cast<int>(source.stride());
  const int out_stride = static_cast<int>(target->stride());
  const int width = source.width();
  const int height = source.height();
  const uint8_t* const in = source.data();
  uint8_t* const out = target->data();
  const auto angle = mode == OVRA_ROTATE_QUARTER_LEFT    ? libyuv::kRotate270
                     : mode == OVRA_ROTATE_QUARTER_RIGHT ? libyuv::kRotate90
                                                         : libyuv::kRotate180;
  const bool four = source.channels() == 4;
  if (mode == OVRA_ROTATE_MIRROR) {
    if (four) return libyuv::ARGBMirror(in, in_stride, out, out_stride, width, height) == 0;
    libyuv::MirrorPlane(in, in_stride, out, out_stride, width, height);
    return true;
  }
  if (mode == OVRA_ROTATE_FLIP) {
    libyuv::CopyPlane(in, in_stride, out, out_stride, in_stride, -height);
    return true;
  }
  if (mode == OVRA_ROTATE_TRANSPOSE) {
    if (four) return false;
    libyuv::TransposePlane(in, in_stride, out, out_stride, width, height);
    return true;
  }
  return (four ? libyuv::ARGBRotate(in, in_stride, out, out_stride, width, height, angle)
               : libyuv::RotatePlane(in, in_stride, out, out_stride, width, height, angle)) == 0;
}

Case MakeTurn(const Turn& turn, int channels, int depth_bits, double megapixels) {
  const int width = WidthOf(megapixels);
  const int height = width * 2 / 3;
  const auto target = [=] {
    return turn.swaps_sides ? std::make_shared<Picture>(height, width, channels, depth_bits)
                            : std::make_shared<Picture>(width, height, channels, depth_bits);
  };
  auto source = std::make_shared<Picture>(Scene(width, height, channels, depth_bits));
  auto ours = target();
  Case result = {double{1} * width * height,
                 2 * source->bytes(),
                 {"OvraRotateImage", ours,
                  [=] {
                    OvraRotateImage(source->data(), ours->data(), width, height, source->format(),
                                    turn.mode);
                  }},
                 {},
                 900};
  auto opencv = target();
  result.peers.push_back({"OpenCV", opencv, [=] {
                            cv::setNumThreads(1);
                            const int depth = depth_bits == 8 ? CV_8U : CV_16U;
                            const int type = CV_MAKETYPE(depth, channels);
                            const cv::Mat in(height, width, type, source->data());
                            cv::Mat out(opencv->height(), opencv->width(), type, opencv->data());
                            TurnByOpenCv(in, &out, turn.mode);
                          }});
  auto libyuv_target = target();
  if (depth_bits == 8 && channels != 3 && TurnByLibyuv(*source, libyuv_target.get(), turn.mode)) {
    result.peers.push_back(
        {"libyuv", libyuv_target, [=] { TurnByLibyuv(*source, libyuv_target.get(), turn.mode); }});
  }
  return result;
}

}  // namespace

void AddTurnCases(std::vector<NamedCase>* cases, double megapixels) {
  for (const Turn& turn : kTurns) {
    const auto add = [&](int channels, int depth_bits) {
      cases->push_back(
          {CaseName(std::string("turn/") + turn.name, channels, depth_bits, megapixels),
           [=, &turn] { return MakeTurn(turn, channels, depth_bits, megapixels); }});
    };
    add(1, 8);
    add(3, 8);
    add(4, 8);
    add(3, 16);
  }
}

}  // namespace compare
