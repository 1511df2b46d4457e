// SPDX-License-Identifier: MIT
// Statuses of composition, DIB rows, rotation and extrapolation.
#include <vector>

#include "conformance/statuses.h"

namespace {

using namespace ovra_test;
using Bytes = std::vector<uint8_t>;

constexpr int32_t kMax = 0x7FFFFFFF;
constexpr int32_t kMin = -kMax - 1;
constexpr OvraPixelFormatCode kRgb = 0x120;
constexpr OvraPixelFormatCode kBottomUp = OVRA_ROWS_BOTTOM_UP;

Faults RefusedByComposition(size_t format) {
  return MalformedFormat(format) +
         Faults{{OVRA_ERROR_COMPOSITE_DEPTH, {{format, 1, kDepthField}}},
                {OVRA_ERROR_COMPOSITE_DEPTH, {{format, 9, kDepthField}}},
                {OVRA_ERROR_COMPOSITE_COLOR_MODEL, {{format, OVRA_MODEL_TRIPLE_4, kModelField}}},
                {OVRA_ERROR_COMPOSITE_COLOR_MODEL, {{format, OVRA_MODEL_TRIPLE_7, kModelField}}},
                {OVRA_ERROR_COMPOSITE_COLOR_MODEL, {{format, OVRA_MODEL_CMYK, kModelField}}},
                {OVRA_ERROR_COMPOSITE_ARRANGEMENT, {{format, 0x10000, kArrangementField}}},
                {OVRA_ERROR_COMPOSITE_ARRANGEMENT, {{format, 0x20000, kArrangementField}}}};
}

TEST(Statuses, Composition) {
  enum : size_t { kTo, kToWidth, kToHeight, kToFormat, kFrom, kWidth, kHeight, kFormat, kX, kY };
  Bytes to(12, 7);
  const Bytes from(12, 8);
  const Faults faults =
      Faults{{OVRA_ERROR_COMPOSITE_NULL, {{kTo, nullptr}}},
             {OVRA_ERROR_COMPOSITE_NULL, {{kFrom, nullptr}}},
             {OVRA_ERROR_COMPOSITE_IN_PLACE, {{kFrom, to.data()}, {kTo, to.data()}}},
             {OVRA_ERROR_COMPOSITE_SIZE, {{kToWidth, 0}}},
             {OVRA_ERROR_COMPOSITE_SIZE, {{kToHeight, 0}}},
             {OVRA_ERROR_COMPOSITE_SIZE, {{kWidth, 0}}},
             {OVRA_ERROR_COMPOSITE_SIZE, {{kHeight, 0}}}} +
      RefusedByComposition(kToFormat) + RefusedByComposition(kFormat) +
      Faults{{OVRA_ERROR_COMPOSITE_FORMATS_DIFFER, {{kFormat, 0x100000, kAlignmentField}}},
             {OVRA_ERROR_COMPOSITE_FORMATS_DIFFER,
              {{kFormat, kBottomUp, kOrderField}, {kToFormat, 0, kOrderField}}},
             {OVRA_ERROR_COMPOSITE_CHANNEL_RELATION,
              {{kFormat, 0x10, kChannelsField}, {kToFormat, 0x20, kChannelsField}}},
             {OVRA_ERROR_COMPOSITE_CHANNEL_RELATION,
              {{kFormat, 0x20, kChannelsField}, {kToFormat, 0, kChannelsField}}},
             {OVRA_ERROR_COMPOSITE_SIZE,
              {{kFormat, kBottomUp, kOrderField}, {kToFormat, kBottomUp, kOrderField}, {kY, 1}}},
             // Positions and sizes beyond all pictures.
             {kWritesNothing, {{kToWidth, kMax}, {kX, kMax}}},
             {kWritesNothing, {{kX, kMin}, {kY, kMin}}},
             {kWritesNothing, {{kToHeight, kMax}, {kY, kMax}}},
             {kWritesNothing, {{kHeight, kMin}, {kY, kMax}}},
             {kWritesNothing, {{kToWidth, -2}}},
             {kWritesNothing, {{kToHeight, -2}}},
             {kWritesNothing, {{kWidth, -2}}},
             {kWritesNothing, {{kX, 2}}},
             {OVRA_OK, {{kFormat, 0xF0000000, 0xF0000000}}},
             {OVRA_OK, {{kFormat, OVRA_MODEL_GREY, kModelField}}}};
  ExpectStatuses(OvraCompositeImage,
                 std::tuple(to.data(), 2, 2, kRgb, from.data(), 2, 2, kRgb, 0, 0, uint8_t{1}), to,
                 faults);
}

TEST(Statuses, CompositionWithMask) {
  enum : size_t { kTo, kToWidth, kToHeight, kFrom, kMask, kWidth, kHeight, kFormat, kX, kY };
  Bytes to(12, 7);
  const Bytes from(12, 8);
  const Faults faults =
      Faults{{OVRA_ERROR_COMPOSITE_NULL, {{kTo, nullptr}}},
             {OVRA_ERROR_COMPOSITE_NULL, {{kFrom, nullptr}}},
             {OVRA_ERROR_COMPOSITE_IN_PLACE, {{kFrom, to.data()}, {kTo, to.data()}}},
             {OVRA_ERROR_COMPOSITE_SIZE, {{kToWidth, 0}}},
             {OVRA_ERROR_COMPOSITE_SIZE, {{kToHeight, 0}}},
             {OVRA_ERROR_COMPOSITE_SIZE, {{kWidth, 0}}},
             {OVRA_ERROR_COMPOSITE_SIZE, {{kHeight, 0}}}} +
      RefusedByComposition(kFormat) +
      Faults{{OVRA_ERROR_COMPOSITE_SIZE, {{kFormat, kBottomUp, kOrderField}, {kY, 1}}},
             {OVRA_ERROR_COMPOSITE_NULL, {{kMask, nullptr}, {kY, 0}}},
             // No mask is needed where nothing is written.
             {kWritesNothing, {{kMask, nullptr}, {kY, 2}}},
             {kWritesNothing, {{kMask, nullptr}, {kWidth, -1}}},
             {kWritesNothing, {{kX, kMin}}},
             {OVRA_OK, {{kMask, from.data()}}}};
  ExpectStatuses(
      OvraCompositeImageWithMaskBlending,
      std::tuple(to.data(), 2, 2, from.data(), from.data(), 2, 2, kRgb, 0, 0, uint8_t{0}), to,
      faults);
}

TEST(Statuses, DibRows) {
  enum : size_t { kFrom, kTo, kWidth, kHeight };
  const Bytes from(8, 8);
  Bytes to(8, 7);
  for (auto* const convert : {OvraDib2Raw, OvraRaw2Dib}) {
    ExpectStatuses(
        [convert](auto... arguments) {
          convert(arguments...);
          return OVRA_OK;
        },
        std::tuple(from.data(), to.data(), 2U, 1U), to,
        {{kWritesNothing, {{kFrom, nullptr}}},
         {kWritesNothing, {{kTo, nullptr}}},
         {kWritesNothing, {{kWidth, 0}}},
         {kWritesNothing, {{kHeight, 0}}},
         {kWritesNothing, {{kWidth, 0x80000000U}}},
         {kWritesNothing, {{kHeight, 0xFFFFFFFFU}}}});
  }
}

TEST(Statuses, Rotation) {
  enum : size_t { kFrom, kTo, kWidth, kHeight, kFormat, kMode };
  const Bytes from(16, 8);
  Bytes to(16, 7);
  const Faults faults =
      Faults{{OVRA_ERROR_ROTATION_NULL, {{kFrom, nullptr}}},
             {OVRA_ERROR_ROTATION_NULL, {{kTo, nullptr}}},
             {OVRA_ERROR_ROTATION_ZERO_SIZE, {{kWidth, 0}}},
             {OVRA_ERROR_ROTATION_ZERO_SIZE, {{kHeight, 0}}},
             {OVRA_ERROR_ROTATION_MODE, {{kMode, 8}}},
             {OVRA_ERROR_ROTATION_MODE, {{kMode, -1}}}} +
      MalformedFormat(kFormat) +
      Faults{
          {OVRA_ERROR_ROTATION_DEPTH, {{kFormat, 9, kDepthField}}},
          {OVRA_ERROR_ROTATION_COLOR_MODEL, {{kFormat, OVRA_MODEL_GREY, kModelField}}},
          {OVRA_ERROR_ROTATION_COLOR_MODEL, {{kFormat, OVRA_MODEL_RGBA, kModelField}}},
          {OVRA_ERROR_ROTATION_COLOR_MODEL, {{kFormat, 0x10, kChannelsField}}},
          {OVRA_ERROR_ROTATION_COLOR_MODEL, {{kFormat, 0x30, kChannelsField}}},
          {OVRA_ERROR_ROTATION_ARRANGEMENT,
           {{kFormat, 0x10000, kArrangementField}, {kFormat, kRgb, kModelField | kChannelsField}}},
          {kWritesNothing, {{kWidth, -1}}},
          {kWritesNothing, {{kHeight, kMin}}},
          {kWritesNothing, {{kWidth, -64}, {kMode, OVRA_ROTATE_NONE}}},
          {kWritesNothing, {{kFrom, to.data()}, {kMode, OVRA_ROTATE_NONE}}},
          {OVRA_OK, {{kFormat, OVRA_MODEL_TRIPLE_7, kModelField}}}};
  ExpectStatuses(OvraRotateImage, std::tuple(from.data(), to.data(), 2, 2, kRgb, 1), to, faults);
}

TEST(Statuses, Extrapolation) {
  enum : size_t { kFrom, kWidth, kHeight, kTo, kToWidth, kToHeight, kFormat, kX, kY, kFill };
  const Bytes from(16, 8);
  Bytes to(64, 7);
  const uint16_t fill[4] = {1, 2, 3, 4};
  const Faults faults =
      Faults{{OVRA_ERROR_EXTRAPOLATION_NULL, {{kFrom, nullptr}}},
             {OVRA_ERROR_EXTRAPOLATION_NULL, {{kTo, nullptr}}},
             {OVRA_ERROR_EXTRAPOLATION_IN_PLACE, {{kFrom, to.data()}, {kTo, to.data()}}},
             {OVRA_ERROR_EXTRAPOLATION_SIZE, {{kWidth, 0}}},
             {OVRA_ERROR_EXTRAPOLATION_SIZE, {{kToHeight, 0}, {kHeight, 0}}},
             {OVRA_ERROR_EXTRAPOLATION_SIZE, {{kToWidth, 1}}},
             {OVRA_ERROR_EXTRAPOLATION_SIZE, {{kToHeight, 1}}},
             {OVRA_ERROR_EXTRAPOLATION_SIZE, {{kX, 2}}},
             {OVRA_ERROR_EXTRAPOLATION_SIZE, {{kY, 2}}},
             {OVRA_ERROR_EXTRAPOLATION_SIZE, {{kX, -1}}},
             {OVRA_ERROR_EXTRAPOLATION_SIZE, {{kY, -1}}},
             // Sums that would wrap round to something that fits.
             {OVRA_ERROR_EXTRAPOLATION_SIZE, {{kWidth, 0xFFFFFFFFU}, {kX, 1}}},
             {OVRA_ERROR_EXTRAPOLATION_SIZE, {{kHeight, 0x80000001U}, {kY, kMax}}},
             {OVRA_ERROR_EXTRAPOLATION_NULL_FILL,
              {{kFill, nullptr}, {kX, 1}, {kY, 1}, {kWidth, 2}, {kHeight, 2}}}} +
      MalformedFormat(kFormat) +
      Faults{{OVRA_ERROR_EXTRAPOLATION_CHANNELS, {{kFormat, 0x10, kChannelsField}}},
             {OVRA_ERROR_EXTRAPOLATION_DEPTH, {{kFormat, 9, kDepthField}}},
             {OVRA_ERROR_EXTRAPOLATION_COLOR_MODEL, {{kFormat, OVRA_MODEL_TRIPLE_4, kModelField}}},
             {OVRA_ERROR_EXTRAPOLATION_COLOR_MODEL, {{kFormat, OVRA_MODEL_TRIPLE_7, kModelField}}},
             {OVRA_ERROR_EXTRAPOLATION_ARRANGEMENT, {{kFormat, 0x20000, kArrangementField}}},
             // More rows below the source than a signed number holds.
             {OVRA_ERROR_EXTRAPOLATION_SIZE,
              {{kToHeight, 0xFFFFFFFFU}, {kFormat, kBottomUp, kOrderField}}},
             {OVRA_OK, {{kFormat, OVRA_MODEL_CMYK, kModelField}}},
             {OVRA_OK, {{kHeight, 0}}}};
  ExpectStatuses(OvraExtrapolateImage,
                 std::tuple(from.data(), 2U, 2U, to.data(), 3U, 3U, kRgb, 1, 1, fill + 0), to,
                 faults);
}

TEST(Statuses, FreeTrimming) {
  enum : size_t { kFrom, kWidth, kHeight, kTo, kToWidth, kToHeight, kFormat, kX, kY, kAngle };
  Bytes to(40 * 40 * 8, 7);
  const Bytes from(20 * 20 * 8, 8);
  ExpectStatuses(
      OvraFreeTrimming,
      std::tuple(from.data(), 20, 20, to.data(), 40, 40, kRgb, 0, 0, 23,
                 static_cast<const uint16_t*>(nullptr)),
      to,
      Faults{{OVRA_ERROR_ROTATION_NULL, {{kFrom, nullptr}}},
             {OVRA_ERROR_ROTATION_NULL, {{kTo, nullptr}}},
             {OVRA_ERROR_TRIMMING_IN_PLACE, {{kFrom, to.data()}, {kTo, to.data()}}},
             {OVRA_ERROR_ROTATION_ZERO_SIZE, {{kWidth, 0}}},
             {OVRA_ERROR_ROTATION_ZERO_SIZE, {{kHeight, -1}}},
             {OVRA_ERROR_TRIMMING_SIZE, {{kToWidth, 7}}},
             {OVRA_ERROR_TRIMMING_SIZE, {{kToHeight, 7}, {kToWidth, 40}}},
             {OVRA_ERROR_TRIMMING_SIZE, {{kToWidth, 16384}, {kToHeight, 40}}}} +
          MalformedFormat(kFormat) +
          Faults{{OVRA_ERROR_ROTATION_DEPTH, {{kFormat, 9, kDepthField}}},
                 {OVRA_ERROR_ROTATION_COLOR_MODEL, {{kFormat, 0x10, kChannelsField}}},
                 {OVRA_ERROR_ROTATION_ARRANGEMENT,
                  {{kFormat, 0x10000, kArrangementField}, {kFormat, kRgb, kChannelsField}}},
                 {OVRA_OK, {{kX, kMin}, {kY, kMax}, {kAngle, kMin}}},
                 {OVRA_OK, {{kX, kMax}, {kAngle, kMax}}},
                 {OVRA_OK, {{kToWidth, 8}}}});
}

}  // namespace
