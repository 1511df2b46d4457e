// SPDX-License-Identifier: MIT
// Statuses of tone and multi-frequency processing.
#include <cmath>
#include <vector>

#include "conformance/statuses.h"
#include "support/tone_forms.h"

namespace {

using namespace ovra_test;

constexpr OvraPixelFormatCode kRgb10 = 0x122;
constexpr OvraPixelFormatCode kRgb12 = 0x124;
constexpr uint32_t kTooLong = 0x80000000U;

// A number just beyond the end of a range, away from `inside`.
float Beyond(float end, float inside) {
  return std::nextafter(end, 2 * end - inside);
}

// `status` of a number is OVRA_OK from `low` to `high`, and `refusal` beyond.
void ExpectRange(float low, float high, OvraStatus refusal, const auto& status) {
  for (const float good : {low, high}) EXPECT_EQ(status(good), OVRA_OK) << good;
  for (const float refused : {Beyond(low, high), Beyond(high, low), std::nanf("")}) {
    EXPECT_EQ(status(refused), refusal) << refused;
  }
}

constexpr FormatStatuses kToneFormats = {OVRA_ERROR_TONE_CHANNELS, OVRA_ERROR_TONE_DEPTH,
                                         OVRA_ERROR_TONE_COLOR_MODEL, OVRA_ERROR_TONE_ARRANGEMENT};
constexpr FormatStatuses kYUsmFormats = {OVRA_ERROR_YUSM_CHANNELS, OVRA_ERROR_YUSM_DEPTH,
                                         OVRA_ERROR_YUSM_COLOR_MODEL, OVRA_ERROR_YUSM_ARRANGEMENT};

Faults RefusedByTone(size_t format) {
  return MalformedFormat(format) +
         Each(OVRA_ERROR_TONE_CHANNELS, {{format, 0x30, kChannelsField}}) +
         Each(OVRA_ERROR_TONE_DEPTH, {{format, 0x23, kChannelsField | kDepthField}}) +
         Each(OVRA_ERROR_TONE_COLOR_MODEL, {{format, OVRA_MODEL_YCC | 0x22, 0xFFFF}}) +
         RefusedFormats(format, kToneFormats);
}

TEST(Statuses, ToneInit) {
  enum : size_t { kFormat, kParams, kCurve, kContext };
  const OvraHyperToneParams bad = {2, 0, 0, 1, 0.1F, 1, 4, 0};
  for (const ToneExports& form : kToneForms) {
    SCOPED_TRACE(form.name);
    void* context = nullptr;
    const uint16_t* const no_curve = nullptr;
    ExpectStatuses(InitAndFree(form.init, form.free),
                   std::tuple(kRgb10, &kToneDefaults, no_curve, &context), {},
                   Nulls(OVRA_ERROR_TONE_NULL, {kContext, kParams}) + RefusedByTone(kFormat) +
                       Each(OVRA_ERROR_TONE_PARAMETER, {{kParams, &bad}}));
    EXPECT_EQ(form.init_12(kRgb10, &kToneDefaults, nullptr, &context), OVRA_ERROR_TONE_DEPTH);
    EXPECT_EQ(form.init(kRgb12, &kToneDefaults, nullptr, &context), OVRA_ERROR_TONE_DEPTH);
    EXPECT_EQ(form.free(nullptr), OVRA_OK);
  }
}

TEST(Statuses, ToneParameters) {
  const struct {
    float OvraHyperToneParams::*field;
    float low;
    float high;
  } ranges[] = {{&OvraHyperToneParams::amount, 0, 1},
                {&OvraHyperToneParams::shadows, -0.5F, 1.5F},
                {&OvraHyperToneParams::highlights, -0.5F, 1},
                {&OvraHyperToneParams::local_contrast, 0.5F, 1.5F},
                {&OvraHyperToneParams::edge, 0.01F, 0.15F},
                {&OvraHyperToneParams::colour, 0, 1}};
  const auto status = [](const OvraHyperToneParams& params, const uint16_t* curve = nullptr) {
    void* context = nullptr;
    const OvraStatus answer = OvraHyperTone_Init(kRgb10, &params, curve, &context);
    EXPECT_EQ(OvraHyperTone_Free(&context), OVRA_OK);
    return answer;
  };
  for (const auto& range : ranges) {
    const auto set = [&](float value) {
      OvraHyperToneParams params = kToneDefaults;
      params.*range.field = value;
      return status(params);
    };
    ExpectRange(range.low, range.high, OVRA_ERROR_TONE_PARAMETER, set);
  }
  for (const int32_t scale : {2, 3, 8, 9, -1}) {
    OvraHyperToneParams params = kToneDefaults;
    params.scale = scale;
    EXPECT_EQ(status(params), scale < 3 || scale > 8 ? OVRA_ERROR_TONE_PARAMETER : OVRA_OK);
  }
  std::vector<uint16_t> curve(1024, 1023);
  EXPECT_EQ(status(kToneDefaults, curve.data()), OVRA_OK);
  curve.back() = 1024;
  EXPECT_EQ(status(kToneDefaults, curve.data()), OVRA_ERROR_TONE_PARAMETER);
  curve.back() = 1022;
  EXPECT_EQ(status(kToneDefaults, curve.data()), OVRA_ERROR_TONE_PARAMETER);
}

TEST(Statuses, ToneRun) {
  enum : size_t { kFrom, kTo, kWidth, kHeight, kFormat, kContext };
  const std::vector<uint8_t> from(24, 1);
  std::vector<uint8_t> to(24, 7);
  for (size_t i = 0; i < std::size(kToneForms); ++i) {
    const ToneExports& form = kToneForms[i];
    const ToneExports& other_form = kToneForms[(i + 1) % std::size(kToneForms)];
    SCOPED_TRACE(form.name);
    void* context = nullptr;
    void* other = nullptr;
    ASSERT_EQ(form.init(kRgb10, &kToneDefaults, nullptr, &context), OVRA_OK);
    ASSERT_EQ(other_form.init(kRgb10, &kToneDefaults, nullptr, &other), OVRA_OK);
    const void* const given = context;
    ExpectStatuses(
        form.run, std::tuple(from.data(), to.data(), 2U, 2U, kRgb10, given), to,
        Nulls(OVRA_ERROR_TONE_NULL, {kFrom, kTo, kContext}) +
            Each(OVRA_ERROR_TONE_ZERO_SIZE, {{kWidth, 0}, {kHeight, 0}}) + RefusedByTone(kFormat) +
            Each(OVRA_ERROR_TONE_CONTEXT, {{kFormat, kRgb10 | 0x10000000U}, {kFormat, kRgb12}}) +
            Faults{{OVRA_ERROR_TONE_CONTEXT, {{kFormat, kRgb10}, {kContext, other}}},
                   {OVRA_ERROR_NO_MEMORY, {{kHeight, kTooLong}, {kContext, context}}},
                   // Six bytes a pixel.
                   {OVRA_ERROR_NO_MEMORY, {{kHeight, 1}, {kWidth, 357913942}}}});
    EXPECT_EQ(form.free(&context), OVRA_OK);
    EXPECT_EQ(other_form.free(&other), OVRA_OK);
    EXPECT_EQ(form.free(&context), OVRA_OK);
  }
}

TEST(Statuses, MultiFrequency) {
  enum : size_t { kFrom, kTo, kWidth, kHeight, kFormat, kParams };
  const std::vector<uint8_t> from(24, 1);
  std::vector<uint8_t> to(24, 7);
  const OvraMultiFrequencyParams good = {1, 0, 0, 0, {{2, 0, 0, 1}}};
  const OvraMultiFrequencyParams bad = {9, 0, 0, 0, {{2, 0, 0, 1}}};
  const OvraMultiFrequencyParams* const given = &good;
  ExpectStatuses(
      OvraMultiFrequency, std::tuple(from.data(), to.data(), 2U, 2U, kRgb10, given), to,
      Nulls(OVRA_ERROR_YUSM_NULL, {kFrom, kTo, kParams}) +
          Each(OVRA_ERROR_YUSM_SIZE, {{kWidth, 0}, {kHeight, 0}}) +
          Each(OVRA_ERROR_MULTI_FREQUENCY_PARAMETER, {{kParams, &bad}}) + MalformedFormat(kFormat) +
          Each(OVRA_ERROR_YUSM_COLOR_MODEL, {{kFormat, OVRA_MODEL_GREY | 0x28, 0xFFFF},
                                             {kFormat, OVRA_MODEL_CMYK | 0x30, 0xFFFF}}) +
          RefusedFormats(kFormat, kYUsmFormats) +
          Faults{{OVRA_ERROR_NO_MEMORY, {{kHeight, kTooLong}}},
                 {OVRA_ERROR_NO_MEMORY, {{kHeight, 1}, {kWidth, 357913942}}}});
}

TEST(Statuses, MultiFrequencyParameters) {
  using Params = OvraMultiFrequencyParams;
  using Band = OvraMultiFrequencyBand;
  const auto status = [](const Params& params) {
    uint8_t pixel[3] = {1, 2, 3};
    return OvraMultiFrequency(pixel, pixel, 1, 1, 0x120, &params);
  };
  Params good = {2, 1, 0.5F, 7, {}};
  const float no_number = std::nanf("");  // in bands that are not read
  for (Band& band : good.band) band = {no_number, no_number, no_number, no_number};
  good.band[0] = good.band[1] = {1, 0.25F, 0, 1};
  ASSERT_EQ(status(good), OVRA_OK);
  const auto expect_range = [&](float low, float high, const auto& field) {
    const auto set = [&](float value) {
      Params params = good;
      field(params) = value;
      return status(params);
    };
    ExpectRange(low, high, OVRA_ERROR_MULTI_FREQUENCY_PARAMETER, set);
  };
  expect_range(0, 2, [](Params& params) -> float& { return params.base_gain; });
  expect_range(0, 1, [](Params& params) -> float& { return params.pivot; });
  expect_range(0, 4, [](Params& params) -> float& { return params.band[1].gain; });
  expect_range(0, 0.25F, [](Params& params) -> float& { return params.band[1].noise; });
  expect_range(0, 1, [](Params& params) -> float& { return params.band[1].damping; });
  // No lower than the noise.
  expect_range(0.25F, 1, [](Params& params) -> float& { return params.band[1].limit; });
  for (const uint32_t count : {0U, 3U, 9U, 0xFFFFFFFFU}) {
    Params params = good;
    params.band_count = count;
    EXPECT_EQ(status(params), OVRA_ERROR_MULTI_FREQUENCY_PARAMETER) << count;
  }
}

}  // namespace
