// SPDX-License-Identifier: MIT
// Geometry and composition by OpenCV.
#include "opencv.h"

#include <opencv2/imgproc.hpp>

#include "ovra/geometry.h"

namespace compare {
namespace {

void Area(const Work& work, Picture* target) {
  cv::Mat out = MatOf(*target);
  cv::resize(MatOf(*work.source), out, out.size(), 0, 0, cv::INTER_AREA);
}

void Cubic(const Work& work, Picture* target) {
  cv::Mat out = MatOf(*target);
  cv::resize(MatOf(*work.source), out, out.size(), 0, 0, cv::INTER_CUBIC);
}

void Turn(const Work& work, Picture* target) {
  const cv::Mat in = MatOf(*work.source);
  cv::Mat out = MatOf(*target);
  switch (work.mode) {
    case OVRA_ROTATE_QUARTER_LEFT:
      return cv::rotate(in, out, cv::ROTATE_90_COUNTERCLOCKWISE);
    case OVRA_ROTATE_HALF:
      return cv::rotate(in, out, cv::ROTATE_180);
    case OVRA_ROTATE_QUARTER_RIGHT:
      return cv::rotate(in, out, cv::ROTATE_90_CLOCKWISE);
    case OVRA_ROTATE_MIRROR:
      return cv::flip(in, out, 1);
    case OVRA_ROTATE_FLIP:
      return cv::flip(in, out, 0);
    default:
      return cv::transpose(in, out);
  }
}

void Trim(const Work& work, Picture* target) {
  const cv::Point2f centre(0.5F * static_cast<float>(target->width() - 1),
                           0.5F * static_cast<float>(target->height() - 1));
  cv::Mat out = MatOf(*target);
  cv::warpAffine(MatOf(*work.source), out, cv::getRotationMatrix2D(centre, work.amount, 1.0),
                 out.size(), cv::INTER_CUBIC, cv::BORDER_REPLICATE);
}

void Copy(const Work& work, Picture* target) {
  MatOf(*work.source).copyTo(Place(work, *target));
}

// Products of bytes, rounded, which do the work nearest to the weights.
void Weigh(const cv::Mat& source, const cv::Mat& weights, cv::Mat place) {
  cv::Mat others;
  cv::Mat theirs;
  cv::Mat ours;
  cv::bitwise_not(weights, others);
  cv::multiply(source, weights, ours, 1.0 / 255);
  cv::multiply(place, others, theirs, 1.0 / 255);
  cv::add(ours, theirs, place);
}

void Alpha(const Work& work, Picture* target) {
  const cv::Mat source = MatOf(*work.source);
  cv::Mat pixels(source.size(), CV_8UC3);
  cv::Mat weights(source.size(), CV_8UC3);
  cv::Mat outputs[] = {pixels, weights};
  const int from_to[] = {0, 0, 1, 1, 2, 2, 3, 3, 3, 4, 3, 5};
  cv::mixChannels(&source, 1, outputs, 2, from_to, 6);
  Weigh(pixels, weights, Place(work, *target));
}

void Mask(const Work& work, Picture* target) {
  Weigh(MatOf(*work.source), MatOf(*work.mask), Place(work, *target));
}

void SwapAndFlip(const Work& work, Picture* target) {
  cv::Mat out = MatOf(*target);
  cv::flip(MatOf(*work.source), out, 0);
  cv::cvtColor(out, out, cv::COLOR_BGR2RGB);
}

void Canvas(const Work& work, Picture* target) {
  const int right = target->width() - work.x - work.source->width();
  const int bottom = target->height() - work.y - work.source->height();
  cv::Mat out = MatOf(*target);
  cv::copyMakeBorder(MatOf(*work.source), out, work.y, bottom, work.x, right, cv::BORDER_CONSTANT);
}

}  // namespace

void AddOpenCv(std::vector<Maker>* makers) {
  cv::setNumThreads(1);
  makers->insert(
      makers->end(),
      {Direct("resize", "OpenCV area", Area, [](const Work& work) { return work.amount < 0.3; }),
       Direct("resize", "OpenCV cubic", Cubic, [](const Work& work) { return work.amount > 1; }),
       Direct("turn", "OpenCV", Turn), Direct("trimming", "OpenCV warpAffine cubic", Trim),
       Direct("copy", "OpenCV copyTo", Copy), Direct("alpha", "OpenCV products", Alpha),
       Direct("mask", "OpenCV products", Mask),
       Direct("DIB to raw", "OpenCV flip, cvtColor", SwapAndFlip),
       Direct("raw to DIB", "OpenCV flip, cvtColor", SwapAndFlip),
       Direct("canvas", "OpenCV copyMakeBorder", Canvas)});
  AddOpenCvColor(makers);
  AddOpenCvFilters(makers);
}

}  // namespace compare
