// SPDX-License-Identifier: MIT
// Local contrast and tone against the nearest recipes that people have. None
// makes the same picture: what is compared is the time of the same kind of
// work, and every row says so by its PSNR.
#include <opencv2/core.hpp>
#include <opencv2/imgproc.hpp>
#include <opencv2/photo.hpp>

#include "compare.h"
#include "ovra/filter.h"
#include "ovra/tone.h"

namespace compare {
namespace {

constexpr int kDepthBits = 12;

OvraMultiFrequencyParams FourBands() {
  OvraMultiFrequencyParams params = {};
  params.band_count = 4;
  params.base_gain = 0.9F;
  params.pivot = 0.5F;
  for (auto& band : params.band) band = {1.5F, 0.004F, 0.5F, 0.1F};
  return params;
}

struct ToneForm {
  const char* name;
  OvraStatus(OVRA_CALL* init)(OvraPixelFormatCode, const OvraHyperToneParams*, const uint16_t*,
                              void**);
  OvraStatus(OVRA_CALL* run)(const uint8_t*, uint8_t*, uint32_t, uint32_t, OvraPixelFormatCode,
                             const void*);
  OvraStatus(OVRA_CALL* release)(void**);
};

constexpr ToneForm kForms[] = {
    {"OvraHyperTone", OvraHyperTone_Init_12, OvraHyperTone, OvraHyperTone_Free},
    {"OvraHyperToneLight", OvraHyperToneLight_Init_12, OvraHyperToneLight, OvraHyperToneLight_Free},
    {"OvraHybridHyperTone", OvraHybridHyperTone_Init_12, OvraHybridHyperTone,
     OvraHybridHyperTone_Free},
    {"OvraHybridHyperToneLight", OvraHybridHyperToneLight_Init_12, OvraHybridHyperToneLight,
     OvraHybridHyperToneLight_Free},
};

cv::Mat EightBit(const Picture& picture) {
  cv::Mat result;
  const cv::Mat deep(picture.height(), picture.width(), CV_16UC3,
                     const_cast<uint8_t*>(picture.data()));
  deep.convertTo(result, CV_8U, 1.0 / 16);
  return result;
}

// The peers work on 8 bits or on floats: their pictures are brought to 12 bits outside the time.
void AddPeers(const std::shared_ptr<Picture>& source, Case* result) {
  const auto small = std::make_shared<cv::Mat>(EightBit(*source));
  const auto floats = std::make_shared<cv::Mat>();
  small->convertTo(*floats, CV_32F, 1.0 / 255);
  const auto add = [&](const char* name, double to_deep, const auto& process) {
    const auto made = std::make_shared<cv::Mat>();
    auto target =
        std::make_shared<Picture>(source->width(), source->height(), 3, source->depth_bits());
    result->peers.push_back({name, target, [=] { process(*made); },
                             [=] {
                               cv::Mat deep(target->height(), target->width(), CV_16UC3,
                                            target->data());
                               made->convertTo(deep, CV_16U, to_deep);
                             }});
  };
  cv::setNumThreads(1);
  add("OpenCV detailEnhance", 16, [=](cv::Mat& out) { cv::detailEnhance(*small, out); });
  add("OpenCV edgePreservingFilter", 16,
      [=](cv::Mat& out) { cv::edgePreservingFilter(*small, out); });
  add("OpenCV bilateral base and detail", 16, [=](cv::Mat& out) {
    cv::Mat base;
    cv::bilateralFilter(*small, base, 9, 30, 16);
    cv::addWeighted(*small, 1.5, base, -0.5, 0, out);
  });
  add("OpenCV TonemapMantiuk", 4095,
      [=](cv::Mat& out) { cv::createTonemapMantiuk(1.0F, 0.7F, 1.0F)->process(*floats, out); });
  result->least_psnr = 0;
}

Case MultiFrequency(double megapixels) {
  const int width = WidthOf(megapixels);
  const int height = width * 2 / 3;
  auto source = std::make_shared<Picture>(Scene(width, height, 3, kDepthBits));
  auto ours = std::make_shared<Picture>(width, height, 3, kDepthBits);
  Case result = {double{1} * width * height,
                 2 * source->bytes(),
                 {"OvraMultiFrequency", ours,
                  [=] {
                    const OvraMultiFrequencyParams params = FourBands();
                    OvraMultiFrequency(source->data(), ours->data(), static_cast<uint32_t>(width),
                                       static_cast<uint32_t>(height), source->format(), &params);
                  }},
                 {}};
  AddPeers(source, &result);
  return result;
}

Case Tone(const ToneForm& form, double megapixels) {
  const int width = WidthOf(megapixels);
  const int height = width * 2 / 3;
  auto source = std::make_shared<Picture>(Scene(width, height, 3, kDepthBits));
  auto ours = std::make_shared<Picture>(width, height, 3, kDepthBits);
  const OvraHyperToneParams params = {1.0F, 0.6F, 0.4F, 1.2F, 0.12F, 1.0F, 6, 0};
  void* made = nullptr;
  form.init(source->format(), &params, nullptr, &made);
  const std::shared_ptr<void> context(made, [&form](void* owned) { form.release(&owned); });
  Case result = {double{1} * width * height,
                 2 * source->bytes(),
                 {form.name, ours,
                  [=, &form] {
                    form.run(source->data(), ours->data(), static_cast<uint32_t>(width),
                             static_cast<uint32_t>(height), source->format(), context.get());
                  }},
                 {}};
  AddPeers(source, &result);
  return result;
}

}  // namespace

void AddToneCases(std::vector<NamedCase>* cases, double megapixels) {
  cases->push_back({CaseName("multi-frequency/4 bands", 3, kDepthBits, megapixels),
                    [=] { return MultiFrequency(megapixels); }});
  for (const ToneForm& form : kForms) {
    cases->push_back({CaseName(std::string("tone/") + form.name, 3, kDepthBits, megapixels),
                      [=, &form] { return Tone(form, megapixels); }});
  }
}

}  // namespace compare
