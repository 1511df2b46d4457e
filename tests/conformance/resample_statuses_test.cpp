// SPDX-License-Identifier: MIT
// Statuses of the kernel tables and of the resize functions.
#include <vector>

#include "conformance/statuses.h"

namespace {

using namespace ovra_test;

constexpr int32_t kSide = 20;    // of the source
constexpr int32_t kToSide = 30;  // of the destination

// The arguments that all resize functions begin with.
enum : size_t { kFrom, kWidth, kHeight, kTo, kToWidth, kToHeight, kFormat };
enum : size_t { kX = 7, kY, kRegionWidth, kRegionHeight };

class ResizeStatuses : public testing::Test {
 protected:
  ResizeStatuses() { OvraCalcCubicSpline(-0.75F, table_.data()); }

  // The arguments from the source to the format, and more.
  template <class... More>
  auto Arguments(More... more) {
    return std::tuple(from_.data(), kSide, kSide, to_.data(), kToSide, kToSide, kRgb, more...);
  }

  std::vector<float> table_ = std::vector<float>(OVRA_KERNEL_TABLE_ENTRIES);
  Bytes from_ = Bytes(kSide * kSide * 8, 100);
  Bytes to_ = Bytes(kToSide * kToSide * 8, 77);
};

constexpr FormatStatuses kFormats = {OVRA_ERROR_RESIZE_COLOR_MODEL, OVRA_ERROR_RESIZE_DEPTH,
                                     OVRA_ERROR_RESIZE_COLOR_MODEL, OVRA_ERROR_RESIZE_ARRANGEMENT};

Faults WrongFormats(size_t format) {
  return RefusedFormats(format, kFormats) +
         Each(OVRA_ERROR_RESIZE_COLOR_MODEL, {{format, 0x30, kChannelsField}});
}

Faults NullImages() {
  return Nulls(OVRA_ERROR_RESIZE_NULL_IMAGE, {kFrom, kTo});
}

// For kernels of 4 taps.
Faults SmallImages() {
  return Each(OVRA_ERROR_RESIZE_SOURCE_SMALL, {{kWidth, 3}, {kHeight, -9}}) +
         Faults{{OVRA_ERROR_RESIZE_DESTINATION_SMALL, {{kToWidth, 3}, {kWidth, kSide}}},
                {OVRA_ERROR_RESIZE_DESTINATION_SMALL, {{kToHeight, -1}, {kHeight, kSide}}}};
}

// As far as the region of 20 x 20 pixels goes.
Faults RefusedRegions() {
  return Each(OVRA_ERROR_RESIZE_REGION_SIZE, {{kRegionWidth, kSide + 1},
                                              {kRegionHeight, kSide + 1},
                                              {kRegionWidth, 3},
                                              {kRegionHeight, -1}}) +
         Each(OVRA_ERROR_RESIZE_REGION_OUTSIDE, {{kX, 1}, {kY, 1}, {kX, kMax}, {kY, kMax}});
}

// Where the sizes give the ratio, they are looked at first.
Faults EmptySizes() {
  return Each(OVRA_ERROR_RESIZE_ZERO_SIZE, {{kWidth, 0}, {kRegionWidth, 0}, {kRegionHeight, 0}});
}

Faults RefusedKernels(size_t table, size_t stretch, size_t taps) {
  return Nulls(OVRA_ERROR_RESIZE_NULL_TABLE, {table}) +
         Each(OVRA_ERROR_RESIZE_STRETCH, {{stretch, 0.0}, {stretch, -1.0}, {stretch, kNan}}) +
         Each(OVRA_ERROR_RESIZE_TAP_COUNT, {{taps, 3}, {taps, kMin}});
}

Faults RefusedModes(size_t mode) {
  return Each(OVRA_ERROR_ROTATION_MODE, {{mode, -1}, {mode, 8}, {mode, 256}});
}

TEST(Statuses, KernelTables) {
  std::vector<float> table(OVRA_KERNEL_TABLE_ENTRIES);
  for (auto* const calculate : {OvraCalcCubicSpline, OvraCalcBSpline}) {
    ExpectStatuses(
        calculate, std::tuple(0.5F, table.data()), {},
        Nulls(OVRA_ERROR_RESIZE_NULL_TABLE, {1}) + Each(OVRA_OK, {{0, kNan}, {0, kInfinity}}));
  }
}

TEST_F(ResizeStatuses, Whole) {
  ExpectStatuses(
      OvraResizeImage, Arguments(), to_,
      MalformedFormat(kFormat) + Each(OVRA_ERROR_RESIZE_ZERO_SIZE, {{kWidth, 0}, {kHeight, 0}}) +
          NullImages() + WrongFormats(kFormat) +
          Faults{{OVRA_ERROR_RESIZE_SOURCE_SMALL, {{kWidth, 3}, {kHeight, kSide}}},
                 // 7 taps serve a half, the reduction without engine serves a third.
                 {OVRA_ERROR_RESIZE_DESTINATION_SMALL,
                  {{kToWidth, 7}, {kToHeight, 7}, {kWidth, kSide}}},
                 {OVRA_OK, {{kToWidth, 6}, {kToHeight, 6}}},
                 {OVRA_OK, {{kToWidth, 1}, {kToHeight, 1}}},
                 {OVRA_ERROR_RESIZE_DESTINATION_SMALL, {{kToWidth, 0}, {kToHeight, 1}}}});
}

// Below a ratio of 0.33 the region must lie inside.
Faults RegionsByRatio() {
  return {{OVRA_ERROR_RESIZE_REGION_OUTSIDE, {{kX, 1}}},
          {OVRA_OK, {{kX, -3}, {kY, kMin}}},
          {OVRA_ERROR_RESIZE_REGION_OUTSIDE, {{kX, -1}, {kToWidth, 6}, {kToHeight, 6}}}};
}

TEST_F(ResizeStatuses, Region) {
  ExpectStatuses(OvraResizeImageROI, Arguments(0, 0, kSide, kSide), to_,
                 MalformedFormat(kFormat) + EmptySizes() + NullImages() + WrongFormats(kFormat) +
                     RegionsByRatio());
  ExpectStatuses(OvraResizeRotateImageROI, Arguments(0, 0, kSide, kSide, 1), to_,
                 MalformedFormat(kFormat) + RefusedModes(11) + EmptySizes() + NullImages() +
                     WrongFormats(kFormat) + RegionsByRatio());
}

TEST_F(ResizeStatuses, Factors) {
  enum : size_t { kHorizontal = 7, kVertical };
  ExpectStatuses(
      OvraResizeImageVAR, Arguments(1.5, 1.5), to_,
      MalformedFormat(kFormat) +
          Each(OVRA_ERROR_RESIZE_FACTOR, {{kHorizontal, 0.3299999999},
                                          {kHorizontal, 0.0},
                                          {kVertical, -1.0},
                                          {kVertical, 0.3299999999}}) +
          NullImages() + WrongFormats(kFormat) +
          Faults{
              {OVRA_ERROR_RESIZE_SOURCE_SMALL, {{kWidth, 3}, {kVertical, 1.5}, {kHorizontal, 1.5}}},
              {OVRA_ERROR_RESIZE_DESTINATION_SMALL, {{kToWidth, 3}, {kWidth, kSide}}},
              // A reduction takes more taps than a small source has.
              {OVRA_ERROR_RESIZE_SOURCE_SMALL, {{kWidth, 7}, {kHorizontal, 0.33}, {kToWidth, 30}}},
              {OVRA_ERROR_RESIZE_FACTOR, {{kHorizontal, kNan}}},
              {OVRA_OK, {{kHorizontal, 0.33}, {kVertical, 0.33}}}});
}

TEST_F(ResizeStatuses, RegionAndFactors) {
  enum : size_t { kHorizontal = 11, kVertical };
  ExpectStatuses(OvraResizeImageROIVAR, Arguments(0, 0, kSide, kSide, 1.5, 1.5), to_,
                 MalformedFormat(kFormat) +
                     Each(OVRA_ERROR_RESIZE_FACTOR, {{kVertical, 0.3299999999}}) + NullImages() +
                     WrongFormats(kFormat) +
                     Faults{{OVRA_ERROR_RESIZE_SOURCE_SMALL, {{kWidth, 3}, {kVertical, 1.5}}}} +
                     SmallImages() + RefusedRegions() +
                     Faults{{OVRA_OK, {{kX, -3}, {kY, kMin}}},
                            {OVRA_ERROR_RESIZE_FACTOR, {{kVertical, kNan}}}});
}

TEST_F(ResizeStatuses, Core) {
  enum : size_t { kTable = 11, kStretch, kTaps, kMode };
  const Faults rest = MalformedFormat(kFormat) + WrongFormats(kFormat) +
                      Faults{{OVRA_ERROR_RESIZE_SOURCE_SMALL, {{kTaps, kSide + 1}}},
                             {OVRA_ERROR_RESIZE_SOURCE_SMALL, {{kWidth, 3}, {kTaps, 4}}}} +
                      SmallImages() + RefusedRegions() + Each(OVRA_OK, {{kTaps, kSide}});
  const Faults first = NullImages() + RefusedKernels(kTable, kStretch, kTaps);
  ExpectStatuses(OvraResizeRotateImageCore,
                 Arguments(0, 0, kSide, kSide, table_.data(), 1.0F, 4, 1), to_,
                 first + RefusedModes(kMode) + rest);
  const auto good = Arguments(0, 0, kSide, kSide, table_.data(), 1.0F, 4);
  ExpectStatuses(OvraResizeImageCore, good, to_,
                 first + rest + Faults{{OVRA_OK, {{kX, kMin}, {kY, kMin}}}} +
                     Each(OVRA_OK, {{kStretch, 1e-45}, {kStretch, kInfinity}}));
  // So much work memory that its size does not fit.
  Fault too_large = {OVRA_ERROR_NO_MEMORY, {{kToHeight, kMax - 1}, {kTaps, kMax - 1}}};
  for (const size_t size : {kWidth, kHeight, kToWidth}) too_large.changes.push_back({size, kMax});
  for (const size_t size : {kRegionWidth, kRegionHeight}) too_large.changes.push_back({size, kMax});
  ExpectStatuses(OvraResizeImageCore, good, to_, {too_large});
}

TEST_F(ResizeStatuses, CoreWithFactors) {
  enum : size_t { kHorizontal = 11, kVertical, kTable, kStretch, kStretch2, kTaps, kTaps2 };
  Faults faults = NullImages() + Nulls(OVRA_ERROR_RESIZE_NULL_TABLE, {kTable}) +
                  Faults{{OVRA_ERROR_RESIZE_STRETCH, {{kStretch, 0.0}}},
                         {OVRA_ERROR_RESIZE_STRETCH, {{kStretch2, kNan}, {kStretch, 1.0}}},
                         {OVRA_ERROR_RESIZE_TAP_COUNT, {{kTaps, 3}}},
                         {OVRA_ERROR_RESIZE_TAP_COUNT, {{kTaps2, -5}, {kTaps, 4}}}} +
                  MalformedFormat(kFormat) + WrongFormats(kFormat) +
                  Faults{{OVRA_ERROR_RESIZE_SOURCE_SMALL, {{kTaps2, kSide + 1}}},
                         {OVRA_ERROR_RESIZE_SOURCE_SMALL, {{kWidth, 3}, {kTaps2, 4}}}} +
                  SmallImages() + RefusedRegions() +
                  Faults{{OVRA_ERROR_RESIZE_FACTOR, {{kHorizontal, 0.0}, {kX, 0}, {kY, 0}}},
                         {OVRA_ERROR_RESIZE_FACTOR, {{kVertical, -0.0}, {kHorizontal, 1.5}}},
                         {OVRA_ERROR_RESIZE_FACTOR, {{kVertical, kNan}}},
                         {OVRA_OK, {{kTaps, kSide}}}};
  // Everything here ends quickly, inside the buffers.
  for (const double factor : {1e-300, -1e-300, 5e-324, 1e300, kInfinity, -kInfinity, -1.0}) {
    faults = faults + Each(OVRA_OK, {{kHorizontal, factor}, {kVertical, factor}});
  }
  const auto good = Arguments(0, 0, kSide, kSide, 1.5, 1.5, table_.data(), 1.0F, 1.0F, 4, 4);
  ExpectStatuses(OvraResizeImageCoreVAR, good, to_, faults);
}

TEST_F(ResizeStatuses, Small) {
  enum : size_t { kTable = 11, kMode };
  const Faults first = NullImages() + Nulls(OVRA_ERROR_RESIZE_NULL_TABLE, {kTable});
  const Faults rest =
      MalformedFormat(kFormat) + WrongFormats(kFormat) + EmptySizes() +
      Each(OVRA_ERROR_RESIZE_DESTINATION_SMALL, {{kToWidth, 0}, {kToHeight, -1}}) +
      Each(OVRA_ERROR_RESIZE_REGION_SIZE,
           {{kRegionWidth, kSide + 1}, {kRegionHeight, -1}, {kRegionWidth, -1}, {kHeight, -10}}) +
      Faults{{OVRA_ERROR_RESIZE_REGION_OUTSIDE, {{kX, 1}, {kHeight, kSide}}}} +
      Each(OVRA_ERROR_RESIZE_REGION_OUTSIDE, {{kX, -1}, {kY, -1}, {kY, kMax}});
  ExpectStatuses(OvraSmallResizeImage, Arguments(0, 0, kSide, kSide, table_.data()), to_,
                 first + rest);
  ExpectStatuses(OvraSmallResizeRotateImage, Arguments(0, 0, kSide, kSide, table_.data(), 3), to_,
                 first + RefusedModes(kMode) + rest);
}

// The arguments of the bands' _Init functions: no images, and the context at the end.
TEST_F(ResizeStatuses, BandInits) {
  enum : size_t { kFromWidth, kFromHeight, kOutWidth, kOutHeight, kCode, kLeft, kTop, kW, kH };
  OvraBandResizeContext* context = nullptr;
  const Faults rest =
      RefusedFormats(kCode, kFormats) + Each(OVRA_ERROR_RESIZE_SOURCE_SMALL, {{kFromHeight, 3}}) +
      Each(OVRA_ERROR_RESIZE_DESTINATION_SMALL, {{kOutHeight, 3}}) +
      Each(OVRA_ERROR_RESIZE_REGION_SIZE, {{kH, kSide + 1}}) +
      Each(OVRA_ERROR_RESIZE_REGION_OUTSIDE, {{kLeft, 1}}) + Each(OVRA_OK, {{kTop, kMin}});
  const std::tuple place(kSide, kSide, kToSide, kToSide, kRgb, 0, 0, kSide, kSide);
  ExpectStatuses(InitAndFree(OvraBandResize_Init, OvraBandResize_Free),
                 std::tuple_cat(place, std::tuple(&context)), {},
                 Nulls(OVRA_ERROR_RESIZE_NULL_IMAGE, {9}) + MalformedFormat(kCode) +
                     Each(OVRA_ERROR_RESIZE_ZERO_SIZE, {{kFromWidth, 0}, {kW, 0}, {kH, 0}}) + rest);
  ExpectStatuses(InitAndFree(OvraBandResizeCore_Init, OvraBandResize_Free),
                 std::tuple_cat(place, std::tuple(table_.data(), 1.0F, 4, &context)), {},
                 Nulls(OVRA_ERROR_RESIZE_NULL_IMAGE, {12}) + RefusedKernels(9, 10, 11) +
                     MalformedFormat(kCode) + rest);
  EXPECT_EQ(OvraBandResize_Free(nullptr), OVRA_OK);
  EXPECT_EQ(OvraBandResize_Free(&context), OVRA_OK);
}

// A row has been taken, and is not forgotten. Counts are 0 where they can be written.
TEST_F(ResizeStatuses, Bands) {
  enum : size_t { kFirst = 7, kTaken, kWritten, kContext };
  OvraBandResizeContext* context = nullptr;
  ASSERT_EQ(OvraBandResize_Init(kSide, kSide, kToSide, kToSide, kRgb, 0, 0, kSide, kSide, &context),
            OVRA_OK);
  int32_t taken = 0;
  int32_t written = 0;
  ASSERT_EQ(OvraBandResize(from_.data(), kSide, 1, to_.data(), kToSide, 0, kRgb, 0, &taken,
                           &written, context),
            OVRA_OK);
  EXPECT_EQ(taken, 1);
  const auto push = [&](auto... arguments) {
    const std::tuple given(arguments...);
    const bool has_counts =
        std::get<kTaken>(given) && std::get<kWritten>(given) && std::get<kContext>(given);
    taken = written = 77;
    const OvraStatus status = OvraBandResize(arguments...);
    EXPECT_EQ(taken, has_counts ? 0 : 77);
    EXPECT_EQ(written, has_counts ? 0 : 77);
    return status;
  };
  ExpectStatuses(
      push,
      std::tuple(from_.data(), kSide, 0, to_.data(), kToSide, 0, kRgb, 1, &taken, &written,
                 context),
      to_,
      Nulls(OVRA_ERROR_RESIZE_NULL_IMAGE, {kContext, kTaken, kWritten}) +
          Faults{{OVRA_ERROR_RESIZE_NULL_IMAGE, {{kFrom, nullptr}, {kHeight, 1}}},
                 {OVRA_ERROR_RESIZE_NULL_IMAGE, {{kTo, nullptr}, {kToHeight, 1}}}} +
          Each(OVRA_ERROR_BAND_RESIZE_CHANGED,
               {{kWidth, kSide + 1}, {kToWidth, kToSide - 1}, {kFormat, kRgb | 0x80000000U}}) +
          Faults{{OVRA_ERROR_BAND_RESIZE_POSITION, {{kHeight, kSide + 1}, {kFirst, 0}}}} +
          Each(OVRA_ERROR_BAND_RESIZE_POSITION,
               {{kHeight, -1}, {kToHeight, -1}, {kFirst, -1}, {kFirst, 2}, {kHeight, kSide}}) +
          Faults{{OVRA_OK, {{kFrom, nullptr}, {kTo, nullptr}}}});
  EXPECT_EQ(OvraBandResize_Free(&context), OVRA_OK);
}

}  // namespace
