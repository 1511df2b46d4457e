// SPDX-License-Identifier: MIT
// Statuses of composition, DIB rows, rotation and extrapolation.
#include <vector>

#include "conformance/statuses.h"

namespace {

using namespace ovra_test;

constexpr OvraPixelFormatCode kBottomUp = OVRA_ROWS_BOTTOM_UP;
constexpr FormatStatuses kRotationFormats = {
    OVRA_ERROR_ROTATION_COLOR_MODEL, OVRA_ERROR_ROTATION_DEPTH, OVRA_ERROR_ROTATION_COLOR_MODEL,
    OVRA_ERROR_ROTATION_ARRANGEMENT};
constexpr FormatStatuses kExtrapolationFormats = {
    OVRA_ERROR_EXTRAPOLATION_CHANNELS, OVRA_ERROR_EXTRAPOLATION_DEPTH,
    OVRA_ERROR_EXTRAPOLATION_COLOR_MODEL, OVRA_ERROR_EXTRAPOLATION_ARRANGEMENT};

// Any number of channels will do.
Faults RefusedByComposition(size_t format) {
  return MalformedFormat(format) +
         Each(OVRA_ERROR_COMPOSITE_DEPTH, {{format, 1, kDepthField}, {format, 9, kDepthField}}) +
         Each(OVRA_ERROR_COMPOSITE_COLOR_MODEL, {{format, OVRA_MODEL_TRIPLE_4, kModelField},
                                                 {format, OVRA_MODEL_TRIPLE_7, kModelField},
                                                 {format, OVRA_MODEL_CMYK, kModelField}}) +
         Each(OVRA_ERROR_COMPOSITE_ARRANGEMENT,
              {{format, 0x10000, kArrangementField}, {format, 0x20000, kArrangementField}});
}

class GeometryStatuses : public testing::Test {
 protected:
  const Bytes from_ = Bytes(20 * 20 * 8, 8);
  Bytes to_ = Bytes(40 * 40 * 8, 7);
  const uint8_t* const f_ = from_.data();
  uint8_t* const t_ = to_.data();

  Faults InPlace(OvraStatus status, size_t from, size_t to) const {
    return {{status, {{from, t_}, {to, t_}}}};
  }
};

TEST_F(GeometryStatuses, Composition) {
  enum : size_t { kTo, kToWidth, kToHeight, kToFormat, kFrom, kWidth, kHeight, kFormat, kX, kY };
  const Faults differing = {
      {OVRA_ERROR_COMPOSITE_FORMATS_DIFFER, {{kFormat, 0x100000, kAlignmentField}}},
      {OVRA_ERROR_COMPOSITE_FORMATS_DIFFER,
       {{kFormat, kBottomUp, kOrderField}, {kToFormat, 0, kOrderField}}},
      {OVRA_ERROR_COMPOSITE_CHANNEL_RELATION,
       {{kFormat, 0x10, kChannelsField}, {kToFormat, 0x20, kChannelsField}}},
      {OVRA_ERROR_COMPOSITE_CHANNEL_RELATION,
       {{kFormat, 0x20, kChannelsField}, {kToFormat, 0, kChannelsField}}},
      {OVRA_ERROR_COMPOSITE_SIZE,
       {{kFormat, kBottomUp, kOrderField}, {kToFormat, kBottomUp, kOrderField}, {kY, 1}}}};
  // Positions and sizes beyond all pictures.
  const Faults outside = {{kWritesNothing, {{kToWidth, kMax}, {kX, kMax}}},
                          {kWritesNothing, {{kX, kMin}, {kY, kMin}}},
                          {kWritesNothing, {{kToHeight, kMax}, {kY, kMax}}},
                          {kWritesNothing, {{kHeight, kMin}, {kY, kMax}}}};
  ExpectStatuses(
      OvraCompositeImage, std::tuple(t_, 2, 2, kRgb, f_, 2, 2, kRgb, 0, 0, uint8_t{1}), to_,
      Nulls(OVRA_ERROR_COMPOSITE_NULL, {kTo, kFrom}) +
          InPlace(OVRA_ERROR_COMPOSITE_IN_PLACE, kFrom, kTo) +
          Each(OVRA_ERROR_COMPOSITE_SIZE,
               {{kToWidth, 0}, {kToHeight, 0}, {kWidth, 0}, {kHeight, 0}}) +
          RefusedByComposition(kToFormat) + RefusedByComposition(kFormat) + differing + outside +
          Each(kWritesNothing, {{kToWidth, -2}, {kToHeight, -2}, {kWidth, -2}, {kX, 2}}) +
          Each(OVRA_OK,
               {{kFormat, 0xF0000000, 0xF0000000}, {kFormat, OVRA_MODEL_GREY, kModelField}}));
}

TEST_F(GeometryStatuses, CompositionWithMask) {
  enum : size_t { kTo, kToWidth, kToHeight, kFrom, kMask, kWidth, kHeight, kFormat, kX, kY };
  // No mask is needed where nothing is written.
  const Faults without_mask = {{OVRA_ERROR_COMPOSITE_NULL, {{kMask, nullptr}}},
                               {kWritesNothing, {{kMask, nullptr}, {kY, 2}}},
                               {kWritesNothing, {{kMask, nullptr}, {kWidth, -1}}}};
  ExpectStatuses(
      OvraCompositeImageWithMaskBlending,
      std::tuple(t_, 2, 2, f_, f_, 2, 2, kRgb, 0, 0, uint8_t{0}), to_,
      Nulls(OVRA_ERROR_COMPOSITE_NULL, {kTo, kFrom}) +
          InPlace(OVRA_ERROR_COMPOSITE_IN_PLACE, kFrom, kTo) +
          Each(OVRA_ERROR_COMPOSITE_SIZE,
               {{kToWidth, 0}, {kToHeight, 0}, {kWidth, 0}, {kHeight, 0}}) +
          RefusedByComposition(kFormat) +
          Faults{{OVRA_ERROR_COMPOSITE_SIZE, {{kFormat, kBottomUp, kOrderField}, {kY, 1}}}} +
          without_mask + Each(kWritesNothing, {{kX, kMin}}) + Each(OVRA_OK, {{kMask, f_}}));
}

TEST_F(GeometryStatuses, DibRows) {
  enum : size_t { kFrom, kTo, kWidth, kHeight };
  for (auto* const convert : {OvraDib2Raw, OvraRaw2Dib}) {
    const auto call = [convert](auto... arguments) { return convert(arguments...), OVRA_OK; };
    ExpectStatuses(
        call, std::tuple(f_, t_, 2U, 1U), to_,
        Nulls(kWritesNothing, {kFrom, kTo}) +
            Each(kWritesNothing,
                 {{kWidth, 0}, {kHeight, 0}, {kWidth, 0x80000000U}, {kHeight, 0xFFFFFFFFU}}));
  }
}

TEST_F(GeometryStatuses, Rotation) {
  enum : size_t { kFrom, kTo, kWidth, kHeight, kFormat, kMode };
  ExpectStatuses(OvraRotateImage, std::tuple(f_, t_, 2, 2, kRgb, 1), to_,
                 Nulls(OVRA_ERROR_ROTATION_NULL, {kFrom, kTo}) +
                     Each(OVRA_ERROR_ROTATION_ZERO_SIZE, {{kWidth, 0}, {kHeight, 0}}) +
                     Each(OVRA_ERROR_ROTATION_MODE, {{kMode, 8}, {kMode, -1}}) +
                     MalformedFormat(kFormat) + RefusedFormats(kFormat, kRotationFormats) +
                     Each(OVRA_ERROR_ROTATION_COLOR_MODEL,
                          {{kFormat, OVRA_MODEL_RGBA | 0x20, kModelField | kChannelsField},
                           {kFormat, 0x30, kChannelsField}}) +
                     Each(kWritesNothing, {{kWidth, -1}, {kHeight, kMin}}) +
                     Faults{{kWritesNothing, {{kWidth, -64}, {kMode, OVRA_ROTATE_NONE}}},
                            {kWritesNothing, {{kFrom, t_}, {kMode, OVRA_ROTATE_NONE}}},
                            {OVRA_OK, {{kFormat, OVRA_MODEL_TRIPLE_7, kModelField}}}});
}

TEST_F(GeometryStatuses, Extrapolation) {
  enum : size_t { kFrom, kWidth, kHeight, kTo, kToWidth, kToHeight, kFormat, kX, kY, kFill };
  const uint16_t fill[4] = {1, 2, 3, 4};
  const Faults wrapping = {{OVRA_ERROR_EXTRAPOLATION_SIZE, {{kWidth, 0xFFFFFFFFU}, {kX, 1}}},
                           {OVRA_ERROR_EXTRAPOLATION_SIZE, {{kHeight, 0x80000001U}, {kY, kMax}}}};
  // More rows below the source than a signed number holds.
  const Faults too_far = {{OVRA_ERROR_EXTRAPOLATION_SIZE,
                           {{kToHeight, 0xFFFFFFFFU}, {kFormat, kBottomUp, kOrderField}}}};
  ExpectStatuses(
      OvraExtrapolateImage, std::tuple(f_, 2U, 2U, t_, 3U, 3U, kRgb, 1, 1, fill + 0), to_,
      Nulls(OVRA_ERROR_EXTRAPOLATION_NULL, {kFrom, kTo}) +
          InPlace(OVRA_ERROR_EXTRAPOLATION_IN_PLACE, kFrom, kTo) +
          Each(OVRA_ERROR_EXTRAPOLATION_SIZE, {{kWidth, 0},
                                               {kToHeight, 0},
                                               {kToWidth, 1},
                                               {kToHeight, 1},
                                               {kX, 2},
                                               {kY, 2},
                                               {kX, -1},
                                               {kY, -1}}) +
          wrapping +
          Faults{{OVRA_ERROR_EXTRAPOLATION_NULL_FILL,
                  {{kFill, nullptr}, {kX, 1}, {kY, 1}, {kWidth, 2}, {kHeight, 2}}}} +
          MalformedFormat(kFormat) + RefusedFormats(kFormat, kExtrapolationFormats) +
          Each(OVRA_ERROR_EXTRAPOLATION_COLOR_MODEL,
               {{kFormat, OVRA_MODEL_TRIPLE_7, kModelField}}) +
          Each(OVRA_ERROR_EXTRAPOLATION_ARRANGEMENT, {{kFormat, 0x20000, kArrangementField}}) +
          too_far + Each(OVRA_OK, {{kFormat, OVRA_MODEL_CMYK, kModelField}, {kHeight, 0}}));
}

TEST_F(GeometryStatuses, FreeTrimming) {
  enum : size_t { kFrom, kWidth, kHeight, kTo, kToWidth, kToHeight, kFormat, kX, kY, kAngle };
  const uint16_t* const no_fill = nullptr;
  ExpectStatuses(
      OvraFreeTrimming, std::tuple(f_, 20, 20, t_, 40, 40, kRgb, 0, 0, 23, no_fill), to_,
      Nulls(OVRA_ERROR_ROTATION_NULL, {kFrom, kTo}) +
          InPlace(OVRA_ERROR_TRIMMING_IN_PLACE, kFrom, kTo) +
          Each(OVRA_ERROR_ROTATION_ZERO_SIZE, {{kWidth, 0}, {kHeight, -1}}) +
          Each(OVRA_ERROR_TRIMMING_SIZE, {{kToWidth, 7}, {kToHeight, 7}, {kToWidth, 16384}}) +
          MalformedFormat(kFormat) + RefusedFormats(kFormat, kRotationFormats) +
          Faults{{OVRA_OK, {{kX, kMin}, {kY, kMax}, {kAngle, kMin}}},
                 {OVRA_OK, {{kX, kMax}, {kAngle, kMax}}},
                 {OVRA_OK, {{kToWidth, 8}}}});
}

}  // namespace
