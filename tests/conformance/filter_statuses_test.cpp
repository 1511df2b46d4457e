// SPDX-License-Identifier: MIT
// Statuses of the unsharp masks, the edge filter and soft focus.
#include <limits>
#include <vector>

#include "conformance/statuses.h"

namespace {

using namespace ovra_test;
using Bytes = std::vector<uint8_t>;

constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
constexpr OvraPixelFormatCode kRgb = 0x120;
constexpr uint32_t kTooLong = 0x80000000U;

class MaskStatuses : public testing::Test {
 protected:
  const int32_t weights_[70] = {1, 2, 3, 2, 1};
  const std::vector<int16_t> table_ = std::vector<int16_t>(OVRA_DIFFERENCE_TABLE_SIZE, 128);
  const int16_t* const t_ = table_.data();
  const Bytes from_ = Bytes(3 * 70 * 70, 9);
  Bytes to_ = Bytes(3 * 70 * 70, 7);
};

Faults RefusedByYUsm(size_t format) {
  return MalformedFormat(format) +
         Faults{{OVRA_ERROR_YUSM_CHANNELS, {{format, 0x10, kChannelsField}}},
                {OVRA_ERROR_YUSM_DEPTH, {{format, 7, kDepthField}, {format, 0x20, kChannelsField}}},
                {OVRA_ERROR_YUSM_DEPTH, {{format, 9, kDepthField}}},
                {OVRA_ERROR_YUSM_COLOR_MODEL,
                 {{format, OVRA_MODEL_GREY, kModelField}, {format, 6, kDepthField}}},
                {OVRA_ERROR_YUSM_COLOR_MODEL,
                 {{format, OVRA_MODEL_TRIPLE_4 | 0x20, kModelField | kChannelsField}}},
                {OVRA_ERROR_YUSM_COLOR_MODEL,
                 {{format, OVRA_MODEL_RGBA | 0x20, kModelField | kChannelsField}}},
                {OVRA_ERROR_YUSM_COLOR_MODEL,
                 {{format, OVRA_MODEL_CMYK, kModelField}, {format, 0x30, kChannelsField}}},
                {OVRA_ERROR_YUSM_COLOR_MODEL,
                 {{format, OVRA_MODEL_RGB, kModelField}, {format, 0, kChannelsField}}},
                {OVRA_ERROR_YUSM_ARRANGEMENT,
                 {{format, 0x10000, kArrangementField},
                  {format, kRgb, kModelField | kChannelsField}}}};
}

TEST_F(MaskStatuses, ResponseTables) {
  enum : size_t { kFormat, kX0, kX1, kX2, kLevels, kLevelPoints, kDifferences, kPoints, kTo, kTo2 };
  std::vector<int16_t> to(OVRA_DIFFERENCE_TABLE_SIZE, 7);
  const OvraResponsePoint good[] = {{0, 1}, {0.5, 2}, {1, 1}};
  // A curve through the points at three places serves the one whose pointer is given.
  const auto make = [&good](OvraPixelFormatCode format, double x0, double x1, double x2,
                            int32_t levels, const OvraResponsePoint* level_points,
                            int32_t differences, const OvraResponsePoint* points, int16_t* level,
                            int16_t* difference) {
    const OvraResponsePoint drawn[] = {{x0, 1}, {x1, 2}, {x2, 1}};
    return OvraYUsmMakeTable(format, levels, level_points == good + 1 ? drawn : level_points,
                             differences, points == good + 1 ? drawn : points, level, difference);
  };
  const auto refused = [&good](size_t curve, OvraStatus status, double low) {
    return Faults{{status, {{curve, good + 1}, {kX0, low - 0.001}, {kX1, 0.5}, {kX2, 1.0}}},
                  {status, {{curve, good + 1}, {kX0, 0.0}, {kX1, 1.001}, {kX2, 2.0}}},
                  {status, {{curve, good + 1}, {kX0, 0.5}, {kX1, 0.5}, {kX2, 1.0}}},
                  {status, {{curve, good + 1}, {kX0, 0.6}, {kX1, 0.5}, {kX2, 1.0}}},
                  {status, {{curve, good + 1}, {kX0, kNan}}},
                  {status, {{curve, good + 1}, {kX0, 0.0}, {kX1, 0.1}, {kX2, kNan}}}};
  };
  const Faults faults =
      Faults{{OVRA_ERROR_YUSM_NULL, {{kTo, nullptr}}},
             {OVRA_ERROR_YUSM_NULL, {{kTo2, nullptr}}},
             {OVRA_ERROR_YUSM_POINT_COUNT, {{kLevels, 0}}},
             {OVRA_ERROR_YUSM_POINT_COUNT, {{kDifferences, -1}, {kLevels, 3}}},
             {OVRA_ERROR_YUSM_NULL, {{kLevelPoints, nullptr}, {kDifferences, 3}}},
             {OVRA_ERROR_YUSM_NULL, {{kPoints, nullptr}}}} +
      refused(kLevelPoints, OVRA_ERROR_YUSM_LEVEL_CURVE, 0.0) +
      Faults{{OVRA_ERROR_YUSM_DIFFERENCE_CURVE, {{kLevelPoints, good + 0}, {kPoints, good + 1}}}} +
      refused(kPoints, OVRA_ERROR_YUSM_DIFFERENCE_CURVE, -1.0) + RefusedByYUsm(kFormat) +
      Faults{{kWritesNothing, {{kLevels, 1}, {kDifferences, 1}}},  // no line
             {OVRA_OK, {{kPoints, good + 1}, {kX0, -1.0}, {kX1, 0.5}, {kX2, 7.0}}}};
  ExpectStatuses(make,
                 std::tuple(kRgb, kNan, kNan, kNan, 3, good + 0, 3, good + 0, to.data(), to.data()),
                 std::span(reinterpret_cast<uint8_t*>(to.data()), 2 * to.size()), faults);
}

TEST_F(MaskStatuses, InitOfYUsm) {
  enum : size_t { kFormat, kTaps, kWeights, kAmount, kLevel, kDifference, kContext };
  OvraYUsmContext* context = nullptr;
  const auto init = [](auto... arguments) {
    const std::tuple all(arguments...);
    OvraYUsmContext** const made = std::get<kContext>(all);
    if (made != nullptr) *made = reinterpret_cast<OvraYUsmContext*>(16);
    const OvraStatus status = OvraYUsm_Init(arguments...);
    if (status != OVRA_OK && made != nullptr) {
      EXPECT_EQ(*made, nullptr);
    }
    return made != nullptr && *made != nullptr ? OvraYUsm_Free(made) : status;
  };
  ExpectStatuses(init, std::tuple(kRgb, 5, weights_ + 0, 2.0F, t_, t_, &context), {},
                 Faults{{OVRA_ERROR_YUSM_NULL, {{kContext, nullptr}}}} + RefusedByYUsm(kFormat) +
                     Faults{{OVRA_ERROR_YUSM_TAPS, {{kTaps, 65}}},
                            {OVRA_ERROR_YUSM_TAPS, {{kTaps, -1}}},
                            {OVRA_ERROR_YUSM_TAPS, {{kWeights, nullptr}, {kTaps, 64}}},
                            {OVRA_ERROR_YUSM_NULL_TABLE, {{kLevel, nullptr}, {kWeights, weights_}}},
                            {OVRA_ERROR_YUSM_NULL_TABLE, {{kDifference, nullptr}}},
                            {OVRA_OK, {{kTaps, 64}}},
                            {OVRA_OK, {{kTaps, 0}, {kWeights, nullptr}}}});
}

TEST_F(MaskStatuses, RunOfYUsm) {
  enum : size_t { kFrom, kTo, kWidth, kHeight, kFormat, kContext };
  OvraYUsmContext* context = nullptr;
  OvraYUsmContext* without_taps = nullptr;
  ASSERT_EQ(OvraYUsm_Init(kRgb, 5, weights_, 2.0F, t_, t_, &context), OVRA_OK);
  ASSERT_EQ(OvraYUsm_Init(kRgb, 0, nullptr, 2.0F, t_, t_, &without_taps), OVRA_OK);
  ExpectStatuses(OvraYUsm,
                 std::tuple(from_.data(), to_.data(), 5U, 5U, kRgb,
                            static_cast<const OvraYUsmContext*>(context)),
                 to_,
                 Faults{{OVRA_ERROR_YUSM_NULL, {{kFrom, nullptr}}},
                        {OVRA_ERROR_YUSM_NULL, {{kTo, nullptr}}},
                        {OVRA_ERROR_YUSM_NULL, {{kContext, nullptr}}},
                        {OVRA_ERROR_YUSM_SIZE, {{kWidth, 4}}},
                        {OVRA_ERROR_YUSM_SIZE, {{kHeight, 4}, {kContext, context}}},
                        {OVRA_ERROR_YUSM_TAPS, {{kContext, without_taps}}}} +
                     RefusedByYUsm(kFormat) +
                     Faults{{OVRA_ERROR_NO_MEMORY, {{kWidth, kTooLong}, {kHeight, 5}}},
                            {OVRA_ERROR_NO_MEMORY, {{kHeight, kTooLong}}}});
  EXPECT_EQ(OvraYUsm_Free(&without_taps), OVRA_OK);
  EXPECT_EQ(OvraYUsm_Free(&context), OVRA_OK);
  EXPECT_EQ(OvraYUsm_Free(&context), OVRA_OK);
  EXPECT_EQ(OvraYUsm_Free(nullptr), OVRA_ERROR_YUSM_NULL);
}

TEST_F(MaskStatuses, YUsmInOneStep) {
  enum : size_t { kFrom, kTo, kWidth, kHeight, kFormat, kTaps, kWeights, kAmount, kLevel, kDiff };
  ExpectStatuses(
      OvraYUsmSingleStep,
      std::tuple(from_.data(), to_.data(), 70U, 70U, kRgb, 5, weights_ + 0, 2.0F, t_, t_), to_,
      Faults{{OVRA_ERROR_YUSM_NULL, {{kFrom, nullptr}}},
             {OVRA_ERROR_YUSM_NULL, {{kTo, nullptr}}},
             {OVRA_ERROR_YUSM_SIZE, {{kWidth, 4}}},
             {OVRA_ERROR_YUSM_SIZE, {{kHeight, 4}}},
             {OVRA_ERROR_YUSM_SIZE, {{kTaps, -1}}},
             {OVRA_ERROR_YUSM_TAPS, {{kTaps, 0}, {kWidth, 0}, {kHeight, 0}}},
             {OVRA_ERROR_YUSM_TAPS, {{kTaps, 65}, {kWidth, 70}, {kHeight, 70}}},
             {OVRA_ERROR_YUSM_TAPS, {{kWeights, nullptr}, {kTaps, 5}}},
             {OVRA_ERROR_YUSM_NULL_TABLE, {{kLevel, nullptr}, {kWeights, weights_}}},
             {OVRA_ERROR_YUSM_NULL_TABLE, {{kDiff, nullptr}, {kLevel, t_}}}} +
          RefusedByYUsm(kFormat) + Faults{{OVRA_ERROR_NO_MEMORY, {{kWidth, kTooLong}}}});
}

TEST_F(MaskStatuses, InitOfYUsmDouble) {
  enum : size_t { kFormat, kTaps1, kWeights1, kTaps2, kWeights2, kLevel1 = 6, kDifference1 };
  enum : size_t { kLevel2 = 9, kDifference2, kContext };
  OvraYUsmDoubleContext* const untouched = reinterpret_cast<OvraYUsmDoubleContext*>(16);
  OvraYUsmDoubleContext* context = nullptr;
  const auto init = [untouched](auto... arguments) {
    OvraYUsmDoubleContext** const made = std::get<kContext>(std::tuple(arguments...));
    if (made != nullptr) *made = untouched;
    const OvraStatus status = OvraYUsmDouble_Init(arguments...);
    if (status == OVRA_OK) return OvraYUsmDouble_Free(made);
    if (made != nullptr) {
      EXPECT_EQ(*made, status == OVRA_ERROR_YUSM_DOUBLE_TAPS ? untouched : nullptr);
    }
    return status;
  };
  const int32_t* const w = weights_;
  ExpectStatuses(
      init, std::tuple(kRgb, 5U, w, 3U, w, 2.0F, t_, t_, 1.5F, t_, t_, &context), {},
      {{OVRA_ERROR_YUSM_DOUBLE_TAPS, {{kTaps1, 26}}},
       {OVRA_ERROR_YUSM_DOUBLE_TAPS, {{kTaps2, 0xFFFFFFFFU}, {kTaps1, 25}}},
       {OVRA_ERROR_YUSM_DOUBLE_FORMAT, {{kFormat, 0x220}, {kTaps2, 25}}},
       {OVRA_ERROR_YUSM_DOUBLE_FORMAT, {{kFormat, 0x80000120U}}},
       {OVRA_ERROR_YUSM_DOUBLE_FORMAT, {{kFormat, 0x121}}},
       {OVRA_ERROR_YUSM_DOUBLE_ARGUMENT, {{kWeights1, nullptr}, {kFormat, 0x320}}},
       {OVRA_ERROR_YUSM_DOUBLE_ARGUMENT, {{kWeights2, nullptr}, {kWeights1, w}}},
       {OVRA_ERROR_YUSM_DOUBLE_ARGUMENT, {{kLevel1, nullptr}}},
       {OVRA_ERROR_YUSM_DOUBLE_ARGUMENT, {{kDifference1, nullptr}}},
       {OVRA_ERROR_YUSM_DOUBLE_ARGUMENT, {{kLevel2, nullptr}}},
       {OVRA_ERROR_YUSM_DOUBLE_ARGUMENT, {{kDifference2, nullptr}}},
       {OVRA_ERROR_YUSM_DOUBLE_ARGUMENT, {{kContext, nullptr}}},
       {OVRA_OK, {{kTaps1, 0}, {kWeights1, nullptr}, {kTaps2, 0}, {kWeights2, nullptr}}}});
}

TEST_F(MaskStatuses, RunOfYUsmDouble) {
  enum : size_t { kFrom, kTo, kWidth, kHeight, kFormat, kContext };
  const int32_t* const w = weights_;
  OvraYUsmDoubleContext* context = nullptr;
  ASSERT_EQ(OvraYUsmDouble_Init(kRgb, 5, w, 3, w, 2.0F, t_, t_, 1.5F, t_, t_, &context), OVRA_OK);
  ExpectStatuses(OvraYUsmDouble,
                 std::tuple(from_.data(), to_.data(), 5U, 5U, kRgb,
                            static_cast<const OvraYUsmDoubleContext*>(context)),
                 to_,
                 {{OVRA_ERROR_YUSM_DOUBLE_FORMAT, {{kFormat, 0}}},
                  {OVRA_ERROR_YUSM_DOUBLE_ARGUMENT, {{kFrom, nullptr}, {kFormat, kRgb}}},
                  {OVRA_ERROR_YUSM_DOUBLE_ARGUMENT, {{kTo, nullptr}}},
                  {OVRA_ERROR_YUSM_DOUBLE_ARGUMENT, {{kContext, nullptr}}},
                  {OVRA_ERROR_YUSM_DOUBLE_ARGUMENT, {{kWidth, 0}}},
                  {OVRA_ERROR_YUSM_DOUBLE_ARGUMENT, {{kHeight, 0}}},
                  {OVRA_ERROR_YUSM_DOUBLE_ARGUMENT, {{kWidth, 4}}},
                  {OVRA_ERROR_YUSM_DOUBLE_ARGUMENT, {{kHeight, 4}}},
                  {OVRA_OK, {{kFormat, 0x320}}}});
  EXPECT_EQ(OvraYUsmDouble_Free(&context), OVRA_OK);
  EXPECT_EQ(context, nullptr);
}

TEST_F(MaskStatuses, YUsmDoubleInOneStep) {
  enum : size_t { kFrom, kTo, kWidth, kHeight, kFormat, kTaps1, kWeights1, kTaps2, kWeights2 };
  enum : size_t { kLevel1 = 10, kDifference1, kLevel2 = 13, kDifference2 };
  const int32_t* const w = weights_;
  ExpectStatuses(OvraYUsmDoubleSingleStep,
                 std::tuple(from_.data(), to_.data(), 70U, 70U, kRgb, 5U, w, 3U, w, 2.0F, t_, t_,
                            1.5F, t_, t_),
                 to_,
                 {{OVRA_ERROR_YUSM_DOUBLE_ARGUMENT, {{kWidth, 4}}},
                  {OVRA_ERROR_YUSM_DOUBLE_ARGUMENT, {{kHeight, 59}, {kTaps1, 60}, {kWidth, 70}}},
                  {OVRA_ERROR_YUSM_DOUBLE_FORMAT, {{kFormat, 0x220}, {kHeight, 70}, {kTaps1, 5}}},
                  {OVRA_ERROR_YUSM_DOUBLE_ARGUMENT, {{kFrom, nullptr}, {kFormat, kRgb}}},
                  {OVRA_ERROR_YUSM_DOUBLE_ARGUMENT, {{kTo, nullptr}}},
                  {OVRA_ERROR_YUSM_DOUBLE_ARGUMENT, {{kWeights1, nullptr}}},
                  {OVRA_ERROR_YUSM_DOUBLE_ARGUMENT, {{kWeights2, nullptr}}},
                  {OVRA_ERROR_YUSM_DOUBLE_ARGUMENT, {{kLevel1, nullptr}}},
                  {OVRA_ERROR_YUSM_DOUBLE_ARGUMENT, {{kDifference1, nullptr}}},
                  {OVRA_ERROR_YUSM_DOUBLE_ARGUMENT, {{kLevel2, nullptr}}},
                  {OVRA_ERROR_YUSM_DOUBLE_ARGUMENT, {{kDifference2, nullptr}}},
                  {OVRA_ERROR_NO_MEMORY, {{kWidth, kTooLong}}},
                  {OVRA_OK, {{kTaps1, 60}}},
                  {OVRA_OK, {{kTaps1, 0}, {kWeights1, nullptr}, {kTaps2, 0}, {kWeights2, nullptr}}},
                  {kWritesNothing, {{kTaps1, 0}, {kTaps2, 0}, {kWidth, 0}}}});
}

TEST(Statuses, EdgeFilter) {
  enum : size_t { kFrom, kTo, kWidth, kHeight, kFormat };
  const Bytes from(12, 9);
  Bytes to(12, 7);
  ExpectStatuses(
      OvraEFilterImage, std::tuple(from.data(), to.data(), 2U, 2U, kRgb), to,
      Faults{{OVRA_ERROR_EDGE_FILTER_NULL, {{kFrom, nullptr}}},
             {OVRA_ERROR_EDGE_FILTER_NULL, {{kTo, nullptr}}},
             {OVRA_ERROR_EDGE_FILTER_IN_PLACE, {{kFrom, to.data()}, {kTo, to.data()}}},
             {OVRA_ERROR_EDGE_FILTER_ZERO_SIZE, {{kWidth, 0}}},
             {OVRA_ERROR_EDGE_FILTER_ZERO_SIZE, {{kHeight, 0}}}} +
          MalformedFormat(kFormat) +
          Faults{
              {OVRA_ERROR_EDGE_FILTER_CHANNELS, {{kFormat, 0x30, kChannelsField}}},
              {OVRA_ERROR_EDGE_FILTER_DEPTH, {{kFormat, 0x21, kChannelsField | kDepthField}}},
              {OVRA_ERROR_EDGE_FILTER_COLOR_MODEL,
               {{kFormat, OVRA_MODEL_GREY, kModelField}, {kFormat, 0, kDepthField}}},
              {OVRA_ERROR_EDGE_FILTER_COLOR_MODEL, {{kFormat, OVRA_MODEL_TRIPLE_4, kModelField}}},
              {OVRA_ERROR_EDGE_FILTER_ARRANGEMENT, {{kFormat, 0x20320}}},
              {OVRA_ERROR_NO_MEMORY,
               {{kWidth, 0xFFFFFFFFU}, {kHeight, 0xFFFFFFFFU}, {kFormat, kRgb}}},
              // Rows are packed whatever the format says.
              {OVRA_OK, {{kFormat, 0xF1200220U}}}});
}

TEST(Statuses, SoftFocus) {
  enum : size_t { kFrom, kTo, kWidth, kHeight, kParameters };
  const Bytes from(12, 9);
  Bytes to(12, 7);
  const OvraSoftFocusParams params = {3000, 1, 0.1, {}, 1.0};
  ExpectStatuses(OvraSoftFocus, std::tuple(from.data(), to.data(), 2U, 2U, &params), to,
                 {{OVRA_ERROR_SOFT_FOCUS_NULL, {{kFrom, nullptr}}},
                  {OVRA_ERROR_SOFT_FOCUS_NULL, {{kTo, nullptr}}},
                  {OVRA_ERROR_SOFT_FOCUS_NULL, {{kParameters, nullptr}}},
                  {kWritesNothing, {{kWidth, 0}}},
                  {kWritesNothing, {{kHeight, 0}}},
                  {OVRA_ERROR_NO_MEMORY, {{kWidth, 0xFFFFFFFFU}, {kHeight, 0xFFFFFFFFU}}}});
}

}  // namespace
