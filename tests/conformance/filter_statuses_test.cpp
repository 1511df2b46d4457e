// SPDX-License-Identifier: MIT
// Statuses of the unsharp masks, the edge filter and soft focus.
#include <vector>

#include "conformance/statuses.h"

namespace {

using namespace ovra_test;

constexpr uint32_t kTooLong = 0x80000000U;
constexpr FormatStatuses kYUsmFormats = {OVRA_ERROR_YUSM_CHANNELS, OVRA_ERROR_YUSM_DEPTH,
                                         OVRA_ERROR_YUSM_COLOR_MODEL, OVRA_ERROR_YUSM_ARRANGEMENT};
constexpr FormatStatuses kEdgeFormats = {
    OVRA_ERROR_EDGE_FILTER_CHANNELS, OVRA_ERROR_EDGE_FILTER_DEPTH,
    OVRA_ERROR_EDGE_FILTER_COLOR_MODEL, OVRA_ERROR_EDGE_FILTER_ARRANGEMENT};

class MaskStatuses : public testing::Test {
 protected:
  const int32_t weights_[70] = {1, 2, 3, 2, 1};
  const int32_t* const w_ = weights_;
  const std::vector<int16_t> table_ = std::vector<int16_t>(OVRA_DIFFERENCE_TABLE_SIZE, 128);
  const int16_t* const t_ = table_.data();
  const Bytes from_ = Bytes(3 * 70 * 70, 9);
  Bytes to_ = Bytes(3 * 70 * 70, 7);
  const uint8_t* const f_ = from_.data();
};

Faults RefusedByYUsm(size_t format) {
  constexpr uint32_t kShape = kModelField | kChannelsField | kDepthField;
  return MalformedFormat(format) +
         Each(OVRA_ERROR_YUSM_DEPTH, {{format, 0x27, kChannelsField | kDepthField}}) +
         Each(OVRA_ERROR_YUSM_COLOR_MODEL, {{format, OVRA_MODEL_GREY | 0x26, kShape},
                                            {format, OVRA_MODEL_RGBA | 0x20, kShape},
                                            {format, OVRA_MODEL_CMYK | 0x30, kShape},
                                            {format, OVRA_MODEL_RGB, kShape}}) +
         RefusedFormats(format, kYUsmFormats);
}

TEST_F(MaskStatuses, ResponseTables) {
  enum : size_t { kFormat, kX0, kX1, kX2, kLevels, kLevelPoints, kDifferences, kPoints, kTo, kTo2 };
  std::vector<int16_t> table(OVRA_DIFFERENCE_TABLE_SIZE, 7);
  const OvraResponsePoint curve[] = {{0, 1}, {0.5, 2}, {1, 1}};
  const OvraResponsePoint* const good = curve;
  // A curve through the points at three places serves the one whose pointer is given.
  const auto make = [good](auto format, double x0, double x1, double x2, auto levels,
                           auto level_points, auto differences, auto points, auto... to) {
    const OvraResponsePoint drawn[] = {{x0, 1}, {x1, 2}, {x2, 1}};
    return OvraYUsmMakeTable(format, levels, level_points == good + 1 ? drawn : level_points,
                             differences, points == good + 1 ? drawn : points, to...);
  };
  const auto refused = [good](size_t argument, OvraStatus status, double low) {
    Faults faults;
    for (const auto& [x0, x1, x2] : {std::tuple(low - 0.001, 0.5, 1.0),
                                     {0.0, 1.001, 2.0},
                                     {0.5, 0.5, 1.0},
                                     {0.6, 0.5, 1.0},
                                     {kNan, 0.5, 1.0},
                                     {0.0, 0.1, kNan}}) {
      faults.push_back({status, {{argument, good + 1}, {kX0, x0}, {kX1, x1}, {kX2, x2}}});
    }
    return faults;
  };
  ExpectStatuses(
      make, std::tuple(kRgb, kNan, kNan, kNan, 3, good, 3, good, table.data(), table.data()),
      std::span(reinterpret_cast<uint8_t*>(table.data()), 2 * table.size()),
      Nulls(OVRA_ERROR_YUSM_NULL, {kTo, kTo2}) +
          Each(OVRA_ERROR_YUSM_POINT_COUNT, {{kLevels, 0}, {kDifferences, -1}}) +
          Nulls(OVRA_ERROR_YUSM_NULL, {kLevelPoints, kPoints}) +
          refused(kLevelPoints, OVRA_ERROR_YUSM_LEVEL_CURVE, 0.0) +
          Faults{{OVRA_ERROR_YUSM_DIFFERENCE_CURVE, {{kLevelPoints, good}, {kPoints, good + 1}}}} +
          refused(kPoints, OVRA_ERROR_YUSM_DIFFERENCE_CURVE, -1.0) + RefusedByYUsm(kFormat) +
          Faults{{kWritesNothing, {{kLevels, 1}, {kDifferences, 1}}},  // no line
                 {OVRA_OK, {{kPoints, good + 1}, {kX0, -1.0}, {kX1, 0.5}, {kX2, 7.0}}}});
}

TEST_F(MaskStatuses, InitOfYUsm) {
  enum : size_t { kFormat, kTaps, kWeights, kAmount, kLevel, kDifference, kContext };
  OvraYUsmContext* context = nullptr;
  ExpectStatuses(
      InitAndFree(OvraYUsm_Init, OvraYUsm_Free), std::tuple(kRgb, 5, w_, 2.0F, t_, t_, &context),
      {},
      Nulls(OVRA_ERROR_YUSM_NULL, {kContext}) + RefusedByYUsm(kFormat) +
          Each(OVRA_ERROR_YUSM_TAPS, {{kTaps, 65}, {kTaps, -1}, {kWeights, nullptr}}) +
          Nulls(OVRA_ERROR_YUSM_NULL_TABLE, {kLevel, kDifference}) +
          Faults{{OVRA_OK, {{kTaps, 64}}}, {OVRA_OK, {{kTaps, 0}, {kWeights, nullptr}}}});
}

TEST_F(MaskStatuses, RunOfYUsm) {
  enum : size_t { kFrom, kTo, kWidth, kHeight, kFormat, kContext };
  OvraYUsmContext* context = nullptr;
  OvraYUsmContext* without_taps = nullptr;
  ASSERT_EQ(OvraYUsm_Init(kRgb, 5, weights_, 2.0F, t_, t_, &context), OVRA_OK);
  ASSERT_EQ(OvraYUsm_Init(kRgb, 0, nullptr, 2.0F, t_, t_, &without_taps), OVRA_OK);
  const OvraYUsmContext* const given = context;
  ExpectStatuses(OvraYUsm, std::tuple(f_, to_.data(), 5U, 5U, kRgb, given), to_,
                 Nulls(OVRA_ERROR_YUSM_NULL, {kFrom, kTo, kContext}) +
                     Faults{{OVRA_ERROR_YUSM_SIZE, {{kWidth, 4}}},
                            {OVRA_ERROR_YUSM_SIZE, {{kHeight, 4}, {kContext, context}}}} +
                     Each(OVRA_ERROR_YUSM_TAPS, {{kContext, without_taps}}) +
                     RefusedByYUsm(kFormat) +
                     Each(OVRA_ERROR_NO_MEMORY, {{kWidth, kTooLong}, {kHeight, kTooLong}}));
  EXPECT_EQ(OvraYUsm_Free(&without_taps), OVRA_OK);
  EXPECT_EQ(OvraYUsm_Free(&context), OVRA_OK);
  EXPECT_EQ(OvraYUsm_Free(&context), OVRA_OK);
  EXPECT_EQ(OvraYUsm_Free(nullptr), OVRA_ERROR_YUSM_NULL);
}

TEST_F(MaskStatuses, YUsmInOneStep) {
  enum : size_t { kFrom, kTo, kWidth, kHeight, kFormat, kTaps, kWeights, kAmount, kLevel, kDiff };
  ExpectStatuses(OvraYUsmSingleStep,
                 std::tuple(f_, to_.data(), 70U, 70U, kRgb, 5, w_, 2.0F, t_, t_), to_,
                 Nulls(OVRA_ERROR_YUSM_NULL, {kFrom, kTo}) +
                     Each(OVRA_ERROR_YUSM_SIZE, {{kWidth, 4}, {kHeight, 4}, {kTaps, -1}}) +
                     Faults{{OVRA_ERROR_YUSM_TAPS, {{kTaps, 0}, {kWidth, 0}, {kHeight, 0}}},
                            {OVRA_ERROR_YUSM_TAPS, {{kTaps, 65}, {kWidth, 70}, {kHeight, 70}}},
                            {OVRA_ERROR_YUSM_TAPS, {{kWeights, nullptr}, {kTaps, 5}}}} +
                     Nulls(OVRA_ERROR_YUSM_NULL_TABLE, {kLevel, kDiff}) + RefusedByYUsm(kFormat) +
                     Each(OVRA_ERROR_NO_MEMORY, {{kWidth, kTooLong}}));
}

TEST_F(MaskStatuses, InitOfYUsmDouble) {
  enum : size_t { kFormat, kTaps1, kWeights1, kTaps2, kWeights2, kLevel1 = 6, kDifference1 };
  enum : size_t { kLevel2 = 9, kDifference2, kContext };
  OvraYUsmDoubleContext* context = nullptr;
  ExpectStatuses(
      InitAndFree(OvraYUsmDouble_Init, OvraYUsmDouble_Free, OVRA_ERROR_YUSM_DOUBLE_TAPS),
      std::tuple(kRgb, 5U, w_, 3U, w_, 2.0F, t_, t_, 1.5F, t_, t_, &context), {},
      Each(OVRA_ERROR_YUSM_DOUBLE_TAPS, {{kTaps1, 26}, {kTaps2, 0xFFFFFFFFU}}) +
          Each(OVRA_ERROR_YUSM_DOUBLE_FORMAT,
               {{kFormat, 0x220}, {kFormat, 0x80000120U}, {kFormat, 0x121}}) +
          Nulls(OVRA_ERROR_YUSM_DOUBLE_ARGUMENT,
                {kWeights1, kWeights2, kLevel1, kDifference1, kLevel2, kDifference2, kContext}) +
          Faults{
              {OVRA_ERROR_YUSM_DOUBLE_ARGUMENT, {{kWeights1, nullptr}, {kFormat, 0x320}}},
              {OVRA_OK, {{kTaps1, 0}, {kWeights1, nullptr}, {kTaps2, 0}, {kWeights2, nullptr}}}});
}

TEST_F(MaskStatuses, RunOfYUsmDouble) {
  enum : size_t { kFrom, kTo, kWidth, kHeight, kFormat, kContext };
  OvraYUsmDoubleContext* context = nullptr;
  ASSERT_EQ(OvraYUsmDouble_Init(kRgb, 5, w_, 3, w_, 2.0F, t_, t_, 1.5F, t_, t_, &context), OVRA_OK);
  const OvraYUsmDoubleContext* const given = context;
  ExpectStatuses(OvraYUsmDouble, std::tuple(f_, to_.data(), 5U, 5U, kRgb, given), to_,
                 Each(OVRA_ERROR_YUSM_DOUBLE_FORMAT, {{kFormat, 0}}) +
                     Nulls(OVRA_ERROR_YUSM_DOUBLE_ARGUMENT, {kFrom, kTo, kContext}) +
                     Each(OVRA_ERROR_YUSM_DOUBLE_ARGUMENT,
                          {{kWidth, 0}, {kHeight, 0}, {kWidth, 4}, {kHeight, 4}}) +
                     Each(OVRA_OK, {{kFormat, 0x320}}));
  EXPECT_EQ(OvraYUsmDouble_Free(&context), OVRA_OK);
  EXPECT_EQ(context, nullptr);
}

TEST_F(MaskStatuses, YUsmDoubleInOneStep) {
  enum : size_t { kFrom, kTo, kWidth, kHeight, kFormat, kTaps1, kWeights1, kTaps2, kWeights2 };
  enum : size_t { kLevel1 = 10, kDifference1, kLevel2 = 13, kDifference2 };
  ExpectStatuses(
      OvraYUsmDoubleSingleStep,
      std::tuple(f_, to_.data(), 70U, 70U, kRgb, 5U, w_, 3U, w_, 2.0F, t_, t_, 1.5F, t_, t_), to_,
      Faults{{OVRA_ERROR_YUSM_DOUBLE_ARGUMENT, {{kWidth, 4}}},
             {OVRA_ERROR_YUSM_DOUBLE_ARGUMENT, {{kHeight, 59}, {kTaps1, 60}, {kWidth, 70}}},
             {OVRA_ERROR_YUSM_DOUBLE_FORMAT, {{kFormat, 0x220}}}} +
          Nulls(OVRA_ERROR_YUSM_DOUBLE_ARGUMENT,
                {kFrom, kTo, kWeights1, kWeights2, kLevel1, kDifference1, kLevel2, kDifference2}) +
          Faults{{OVRA_ERROR_NO_MEMORY, {{kWidth, kTooLong}}},
                 {OVRA_OK, {{kTaps1, 60}}},
                 {OVRA_OK, {{kTaps1, 0}, {kWeights1, nullptr}, {kTaps2, 0}, {kWeights2, nullptr}}},
                 {kWritesNothing, {{kTaps1, 0}, {kTaps2, 0}, {kWidth, 0}}}});
}

TEST_F(MaskStatuses, EdgeFilter) {
  enum : size_t { kFrom, kTo, kWidth, kHeight, kFormat };
  ExpectStatuses(
      OvraEFilterImage, std::tuple(f_, to_.data(), 2U, 2U, kRgb), to_,
      Nulls(OVRA_ERROR_EDGE_FILTER_NULL, {kFrom, kTo}) +
          Faults{{OVRA_ERROR_EDGE_FILTER_IN_PLACE, {{kFrom, to_.data()}, {kTo, to_.data()}}}} +
          Each(OVRA_ERROR_EDGE_FILTER_ZERO_SIZE, {{kWidth, 0}, {kHeight, 0}}) +
          MalformedFormat(kFormat) +
          Each(OVRA_ERROR_EDGE_FILTER_CHANNELS, {{kFormat, 0x30, kChannelsField}}) +
          Each(OVRA_ERROR_EDGE_FILTER_DEPTH, {{kFormat, 0x21, kChannelsField | kDepthField}}) +
          Each(OVRA_ERROR_EDGE_FILTER_COLOR_MODEL, {{kFormat, OVRA_MODEL_GREY | 0x20, 0xFFFF}}) +
          RefusedFormats(kFormat, kEdgeFormats) +
          Faults{{OVRA_ERROR_EDGE_FILTER_ARRANGEMENT, {{kFormat, 0x20320}}},
                 {OVRA_ERROR_NO_MEMORY,
                  {{kWidth, 0xFFFFFFFFU}, {kHeight, 0xFFFFFFFFU}, {kFormat, kRgb}}},
                 // Rows are packed whatever the format says.
                 {OVRA_OK, {{kFormat, 0xF1200220U}}}});
}

TEST_F(MaskStatuses, SoftFocus) {
  enum : size_t { kFrom, kTo, kWidth, kHeight, kParameters };
  const OvraSoftFocusParams params = {3000, 1, 0.1, {}, 1.0};
  ExpectStatuses(
      OvraSoftFocus, std::tuple(f_, to_.data(), 2U, 2U, &params), to_,
      Nulls(OVRA_ERROR_SOFT_FOCUS_NULL, {kFrom, kTo, kParameters}) +
          Each(kWritesNothing, {{kWidth, 0}, {kHeight, 0}}) +
          Faults{{OVRA_ERROR_NO_MEMORY, {{kWidth, 0xFFFFFFFFU}, {kHeight, 0xFFFFFFFFU}}}});
}

}  // namespace
