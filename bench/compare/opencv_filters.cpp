// SPDX-License-Identifier: MIT
// Filters by OpenCV: the same steps where it has them, and the nearest recipes that people have where
// the picture is another one, which every row says by its PSNR.
#include <opencv2/imgproc.hpp>
#include <opencv2/photo.hpp>

#include "opencv.h"

namespace compare {
namespace {

// Curves are left out: there are no steps for them.
cv::Mat Blur(const cv::Mat& plane, const std::vector<int32_t>& taps) {
  const auto count = static_cast<int>(taps.size());
  cv::Mat kernel(1, count, CV_32F);
  float sum = 0;
  for (const int32_t tap : taps) sum += static_cast<float>(tap);
  for (int k = 0; k < count; ++k) {
    kernel.at<float>(k) = static_cast<float>(taps[static_cast<size_t>(k)]) / sum;
  }
  cv::Mat blurred;
  cv::sepFilter2D(plane, blurred, -1, kernel, kernel, {-1, -1}, 0, cv::BORDER_REPLICATE);
  return blurred;
}

void AddToAll(const Work& work, const cv::Mat& change, Picture* target) {
  cv::Mat three;
  cv::merge(std::vector<cv::Mat>(3, change), three);
  const cv::Mat in = MatOf(*work.source);
  cv::Mat out = MatOf(*target);
  cv::add(in, three, out, cv::noArray(), in.depth());
}

void LuminanceMask(const Work& work, Picture* target) {
  cv::Mat plane;
  cv::cvtColor(MatOf(*work.source), plane, cv::COLOR_RGB2GRAY);
  cv::Mat change;
  cv::addWeighted(plane, kMaskAmount - 1, Blur(plane, kMaskTaps[work.mode]), 1 - kMaskAmount, 0,
                  change, CV_16S);
  AddToAll(work, change, target);
}

// The same of each channel, which is what one finds first.
void UnsharpMask(const Work& work, Picture* target) {
  const cv::Mat in = MatOf(*work.source);
  cv::Mat blurred;
  const auto side = static_cast<int>(kMaskTaps[work.mode].size());
  cv::GaussianBlur(in, blurred, {side, side}, 0);
  cv::Mat out = MatOf(*target);
  cv::addWeighted(in, kMaskAmount, blurred, 1 - kMaskAmount, 0, out);
}

void DoubleMask(const Work& work, Picture* target) {
  cv::Mat plane;
  cv::cvtColor(MatOf(*work.source), plane, cv::COLOR_RGB2GRAY);
  const cv::Mat coarse = Blur(plane, kCoarseTaps);
  const cv::Mat fine = Blur(plane, kFineTaps);
  cv::Mat middle;
  cv::Mat change;
  cv::addWeighted(fine, kCoarseAmount - 1, coarse, 1 - kCoarseAmount, 0, middle, CV_16S);
  cv::addWeighted(plane, kFineAmount - 1, fine, 1 - kFineAmount, 0, change, CV_16S);
  change += middle;
  AddToAll(work, change, target);
}

void Bilateral(const Work& work, Picture* target) {
  cv::Mat out = MatOf(*target);
  cv::bilateralFilter(MatOf(*work.source), out, 9, 30, 16);
}

// Three box blurs come near a bell, and their time does not grow with the radius, as ours does not.
void Glow(const Work& work, Picture* target) {
  constexpr double kReferenceSide = 2503;
  const cv::Mat in = MatOf(*work.source);
  const int side = static_cast<int>(1.2 * kFocusRadius * target->height() / kReferenceSide) | 1;
  cv::Mat blurred;
  cv::blur(in, blurred, {side, side});
  for (int pass = 1; pass < 3; ++pass) cv::blur(blurred, blurred, {side, side});
  cv::Mat out = MatOf(*target);
  cv::addWeighted(in, 1 - kFocusMix, blurred, kFocusMix, 0, out);
}

// Recipes that work on 8 bits or on floats: pictures are brought there and back outside the time.
struct Recipe {
  const char* operation;
  const char* name;
  bool floats;
  void (*run)(const cv::Mat& in, cv::Mat& out);
};

void BaseAndDetail(const cv::Mat& in, cv::Mat& out) {
  cv::Mat base;
  cv::bilateralFilter(in, base, 9, 30, 16);
  cv::addWeighted(in, 1.5, base, -0.5, 0, out);
}

constexpr Recipe kRecipes[] = {
    {"multi-frequency", "OpenCV detailEnhance", false,
     [](const cv::Mat& in, cv::Mat& out) { cv::detailEnhance(in, out); }},
    {"multi-frequency", "OpenCV bilateral base and detail", false, BaseAndDetail},
    {"tone", "OpenCV bilateral base and detail", false, BaseAndDetail},
    {"tone", "OpenCV TonemapMantiuk", true,
     [](const cv::Mat& in, cv::Mat& out) {
       cv::createTonemapMantiuk(1.0F, 0.7F, 1.0F)->process(in, out);
     }},
};

Participant MakeRecipe(const Recipe& recipe, const Work& work) {
  Participant participant = NewParticipant(work, recipe.name);
  const auto in = std::make_shared<cv::Mat>();
  const auto out = std::make_shared<cv::Mat>();
  const double full = recipe.floats ? 1 : 255;
  MatOf(*work.source).convertTo(*in, recipe.floats ? CV_32F : CV_8U, full / work.source->max());
  participant.run = [=, &recipe] { recipe.run(*in, *out); };
  participant.finish = [=, target = participant.result.get()] {
    cv::Mat deep = MatOf(*target);
    out->convertTo(deep, CV_16U, target->max() / full);
  };
  return participant;
}

}  // namespace

void AddOpenCvFilters(std::vector<Maker>* makers) {
  makers->insert(makers->end(),
                 {Direct("luminance mask", "OpenCV luminance steps", LuminanceMask),
                  Direct("luminance mask", "OpenCV GaussianBlur, addWeighted", UnsharpMask),
                  Direct("double mask", "OpenCV luminance steps", DoubleMask),
                  Direct("edge filter", "OpenCV bilateralFilter 9", Bilateral),
                  Direct("soft focus", "OpenCV blur thrice, addWeighted", Glow)});
  for (const Recipe& recipe : kRecipes) {
    makers->push_back({recipe.operation, [&recipe](const Work& work) {
                         // All forms of tone processing have the same peers: once is enough.
                         return work.variant == 0 ? MakeRecipe(recipe, work) : Participant{};
                       }});
  }
}

}  // namespace compare
