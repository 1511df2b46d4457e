// SPDX-License-Identifier: MIT
// Statuses of the kernel tables and of the resize functions.
#include <limits>
#include <vector>

#include "conformance/statuses.h"

namespace {

using namespace ovra_test;
using Bytes = std::vector<uint8_t>;

constexpr int32_t kMax = 0x7FFFFFFF;
constexpr int32_t kMin = -kMax - 1;
constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr OvraPixelFormatCode kRgb = 0x120;
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

Faults RefusedFormats() {
  return {{OVRA_ERROR_RESIZE_DEPTH, {{kFormat, 9, kDepthField}}},
          {OVRA_ERROR_RESIZE_COLOR_MODEL, {{kFormat, OVRA_MODEL_GREY, kModelField}}},
          {OVRA_ERROR_RESIZE_COLOR_MODEL, {{kFormat, 0x10, kChannelsField}}},
          {OVRA_ERROR_RESIZE_COLOR_MODEL, {{kFormat, 0x30, kChannelsField}}},
          {OVRA_ERROR_RESIZE_ARRANGEMENT,
           {{kFormat, 0x10000, kArrangementField}, {kFormat, kRgb, kModelField | kChannelsField}}}};
}

Faults NullImages() {
  return {{OVRA_ERROR_RESIZE_NULL_IMAGE, {{kFrom, nullptr}}},
          {OVRA_ERROR_RESIZE_NULL_IMAGE, {{kTo, nullptr}}}};
}

// For kernels of 4 taps.
Faults SmallImages() {
  return {{OVRA_ERROR_RESIZE_SOURCE_SMALL, {{kWidth, 3}}},
          {OVRA_ERROR_RESIZE_SOURCE_SMALL, {{kHeight, -9}}},
          {OVRA_ERROR_RESIZE_DESTINATION_SMALL, {{kToWidth, 3}, {kWidth, kSide}}},
          {OVRA_ERROR_RESIZE_DESTINATION_SMALL, {{kToHeight, -1}, {kHeight, kSide}}}};
}

// As far as the region of 20 x 20 pixels goes.
Faults RefusedRegions() {
  return {
      {OVRA_ERROR_RESIZE_REGION_SIZE, {{kRegionWidth, kSide + 1}, {kToWidth, kToSide}}},
      {OVRA_ERROR_RESIZE_REGION_SIZE, {{kRegionHeight, kSide + 1}, {kToHeight, kToSide}}},
      {OVRA_ERROR_RESIZE_REGION_SIZE, {{kRegionWidth, 3}}},
      {OVRA_ERROR_RESIZE_REGION_SIZE, {{kRegionHeight, -1}}},
      {OVRA_ERROR_RESIZE_REGION_OUTSIDE, {{kX, 1}, {kRegionWidth, kSide}, {kRegionHeight, kSide}}},
      {OVRA_ERROR_RESIZE_REGION_OUTSIDE, {{kY, 1}, {kX, 0}}},
      {OVRA_ERROR_RESIZE_REGION_OUTSIDE, {{kX, kMax}}},
      {OVRA_ERROR_RESIZE_REGION_OUTSIDE, {{kY, kMax}}}};
}

// Where the sizes give the ratio, they are looked at first.
Faults EmptySizes() {
  return {{OVRA_ERROR_RESIZE_ZERO_SIZE, {{kWidth, 0}}},
          {OVRA_ERROR_RESIZE_ZERO_SIZE, {{kRegionWidth, 0}}},
          {OVRA_ERROR_RESIZE_ZERO_SIZE, {{kRegionHeight, 0}}}};
}

TEST(Statuses, KernelTables) {
  std::vector<float> table(OVRA_KERNEL_TABLE_ENTRIES);
  for (auto* const calculate : {OvraCalcCubicSpline, OvraCalcBSpline}) {
    ExpectStatuses(calculate, std::tuple(0.5F, table.data()), {},
                   {{OVRA_ERROR_RESIZE_NULL_TABLE, {{1, nullptr}}},
                    {OVRA_OK, {{0, kNan}}},
                    {OVRA_OK, {{0, kInfinity}}}});
  }
}

TEST_F(ResizeStatuses, Whole) {
  ExpectStatuses(OvraResizeImage, Arguments(), to_,
                 MalformedFormat(kFormat) +
                     Faults{{OVRA_ERROR_RESIZE_ZERO_SIZE, {{kWidth, 0}}},
                            {OVRA_ERROR_RESIZE_ZERO_SIZE, {{kHeight, 0}, {kWidth, kSide}}}} +
                     NullImages() + RefusedFormats() +
                     Faults{{OVRA_ERROR_RESIZE_SOURCE_SMALL, {{kWidth, 3}, {kHeight, kSide}}},
                            // 7 taps serve a half, the reduction without engine serves a third.
                            {OVRA_ERROR_RESIZE_DESTINATION_SMALL,
                             {{kToWidth, 7}, {kToHeight, 7}, {kWidth, kSide}}},
                            {OVRA_OK, {{kToWidth, 6}, {kToHeight, 6}}},
                            {OVRA_OK, {{kToWidth, 1}, {kToHeight, 1}}},
                            {OVRA_ERROR_RESIZE_DESTINATION_SMALL,
                             {{kToWidth, 0}, {kToHeight, 1}, {kWidth, kSide}}}});
}

TEST_F(ResizeStatuses, Region) {
  ExpectStatuses(
      OvraResizeImageROI, Arguments(0, 0, kSide, kSide), to_,
      MalformedFormat(kFormat) + EmptySizes() +
          Faults{{OVRA_ERROR_RESIZE_NULL_IMAGE,
                  {{kFrom, nullptr}, {kWidth, kSide}, {kRegionWidth, 5}, {kRegionHeight, 5}}}} +
          NullImages() + RefusedFormats() +
          Faults{{OVRA_ERROR_RESIZE_REGION_OUTSIDE, {{kX, 1}}},
                 {OVRA_OK, {{kX, -3}, {kY, kMin}}},
                 // Below a ratio of 0.33 the region must lie inside.
                 {OVRA_ERROR_RESIZE_REGION_OUTSIDE, {{kX, -1}, {kToWidth, 6}, {kToHeight, 6}}}});
}

TEST_F(ResizeStatuses, Factors) {
  enum : size_t { kHorizontal = 7, kVertical };
  ExpectStatuses(
      OvraResizeImageVAR, Arguments(1.5, 1.5), to_,
      MalformedFormat(kFormat) +
          Faults{{OVRA_ERROR_RESIZE_FACTOR, {{kHorizontal, 0.3299999999}}},
                 {OVRA_ERROR_RESIZE_FACTOR, {{kHorizontal, 0.0}}},
                 {OVRA_ERROR_RESIZE_FACTOR, {{kVertical, -1.0}, {kHorizontal, 1.5}}},
                 {OVRA_ERROR_RESIZE_FACTOR, {{kVertical, 0.3299999999}}}} +
          NullImages() + RefusedFormats() +
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
                     Faults{{OVRA_ERROR_RESIZE_FACTOR, {{kVertical, 0.3299999999}}}} +
                     NullImages() + RefusedFormats() +
                     Faults{{OVRA_ERROR_RESIZE_SOURCE_SMALL, {{kWidth, 3}, {kVertical, 1.5}}}} +
                     SmallImages() + RefusedRegions() +
                     Faults{{OVRA_OK, {{kX, -3}, {kY, kMin}}},
                            {OVRA_ERROR_RESIZE_FACTOR, {{kVertical, kNan}}}});
}

TEST_F(ResizeStatuses, Core) {
  enum : size_t { kTable = 11, kStretch, kTaps };
  const auto good = Arguments(0, 0, kSide, kSide, table_.data(), 1.0F, 4);
  ExpectStatuses(OvraResizeImageCore, good, to_,
                 NullImages() +
                     Faults{{OVRA_ERROR_RESIZE_NULL_TABLE, {{kTable, nullptr}}},
                            {OVRA_ERROR_RESIZE_STRETCH, {{kStretch, 0.0}}},
                            {OVRA_ERROR_RESIZE_STRETCH, {{kStretch, -1.0}}},
                            {OVRA_ERROR_RESIZE_STRETCH, {{kStretch, kNan}}},
                            {OVRA_ERROR_RESIZE_TAP_COUNT, {{kTaps, 3}}},
                            {OVRA_ERROR_RESIZE_TAP_COUNT, {{kTaps, kMin}}}} +
                     MalformedFormat(kFormat) + RefusedFormats() +
                     Faults{{OVRA_ERROR_RESIZE_SOURCE_SMALL, {{kTaps, kSide + 1}}},
                            {OVRA_ERROR_RESIZE_SOURCE_SMALL, {{kWidth, 3}, {kTaps, 4}}}} +
                     SmallImages() + RefusedRegions() +
                     Faults{{OVRA_OK, {{kTaps, kSide}}},
                            {OVRA_OK, {{kX, kMin}, {kY, kMin}}},
                            {OVRA_OK, {{kStretch, 1e-45}}},
                            {OVRA_OK, {{kStretch, kInfinity}}}});
  // So much work memory that its size does not fit.
  ExpectStatuses(OvraResizeImageCore, good, to_,
                 {{OVRA_ERROR_NO_MEMORY,
                   {{kWidth, kMax},
                    {kHeight, kMax},
                    {kToWidth, kMax},
                    {kToHeight, kMax - 1},
                    {kRegionWidth, kMax},
                    {kRegionHeight, kMax},
                    {kTaps, kMax - 1}}}});
}

TEST_F(ResizeStatuses, CoreWithFactors) {
  enum : size_t { kHorizontal = 11, kVertical, kTable, kStretch, kStretch2, kTaps, kTaps2 };
  Faults faults = NullImages() +
                  Faults{{OVRA_ERROR_RESIZE_NULL_TABLE, {{kTable, nullptr}}},
                         {OVRA_ERROR_RESIZE_STRETCH, {{kStretch, 0.0}}},
                         {OVRA_ERROR_RESIZE_STRETCH, {{kStretch2, kNan}, {kStretch, 1.0}}},
                         {OVRA_ERROR_RESIZE_TAP_COUNT, {{kTaps, 3}}},
                         {OVRA_ERROR_RESIZE_TAP_COUNT, {{kTaps2, -5}, {kTaps, 4}}}} +
                  MalformedFormat(kFormat) + RefusedFormats() +
                  Faults{{OVRA_ERROR_RESIZE_SOURCE_SMALL, {{kTaps2, kSide + 1}}},
                         {OVRA_ERROR_RESIZE_SOURCE_SMALL, {{kWidth, 3}, {kTaps2, 4}}}} +
                  SmallImages() + RefusedRegions() +
                  Faults{{OVRA_ERROR_RESIZE_FACTOR, {{kHorizontal, 0.0}, {kX, 0}, {kY, 0}}},
                         {OVRA_ERROR_RESIZE_FACTOR, {{kVertical, -0.0}, {kHorizontal, 1.5}}},
                         {OVRA_ERROR_RESIZE_FACTOR, {{kVertical, kNan}}},
                         {OVRA_OK, {{kTaps, kSide}}}};
  // Everything here ends quickly, inside the buffers.
  for (const double factor : {1e-300, -1e-300, 5e-324, 1e300, kInfinity, -kInfinity, -1.0}) {
    faults.push_back({OVRA_OK, {{kHorizontal, factor}}});
    faults.push_back({OVRA_OK, {{kVertical, factor}}});
  }
  const auto good = Arguments(0, 0, kSide, kSide, 1.5, 1.5, table_.data(), 1.0F, 1.0F, 4, 4);
  ExpectStatuses(OvraResizeImageCoreVAR, good, to_, faults);
}

TEST_F(ResizeStatuses, Small) {
  enum : size_t { kTable = 11 };
  ExpectStatuses(
      OvraSmallResizeImage, Arguments(0, 0, kSide, kSide, table_.data()), to_,
      NullImages() + Faults{{OVRA_ERROR_RESIZE_NULL_TABLE, {{kTable, nullptr}}}} +
          MalformedFormat(kFormat) + RefusedFormats() + EmptySizes() +
          Faults{{OVRA_ERROR_RESIZE_DESTINATION_SMALL,
                  {{kToWidth, 0}, {kWidth, kSide}, {kRegionWidth, 4}, {kRegionHeight, 4}}},
                 {OVRA_ERROR_RESIZE_DESTINATION_SMALL, {{kToHeight, -1}, {kToWidth, 1}}},
                 {OVRA_ERROR_RESIZE_REGION_SIZE, {{kRegionWidth, kSide + 1}, {kToHeight, 1}}},
                 {OVRA_ERROR_RESIZE_REGION_SIZE, {{kRegionHeight, -1}, {kRegionWidth, kSide}}},
                 {OVRA_ERROR_RESIZE_REGION_SIZE, {{kHeight, -10}, {kRegionHeight, kSide}}},
                 {OVRA_ERROR_RESIZE_REGION_OUTSIDE, {{kX, 1}, {kHeight, kSide}}},
                 {OVRA_ERROR_RESIZE_REGION_OUTSIDE, {{kX, -1}}},
                 {OVRA_ERROR_RESIZE_REGION_OUTSIDE, {{kY, -1}, {kX, 0}}},
                 {OVRA_ERROR_RESIZE_REGION_OUTSIDE, {{kY, kMax}}}});
}

Faults RefusedKernels(size_t table, size_t stretch, size_t taps) {
  return {{OVRA_ERROR_RESIZE_NULL_TABLE, {{table, nullptr}}},
          {OVRA_ERROR_RESIZE_STRETCH, {{stretch, 0.0}}},
          {OVRA_ERROR_RESIZE_STRETCH, {{stretch, kNan}}},
          {OVRA_ERROR_RESIZE_TAP_COUNT, {{taps, 3}}}};
}

Faults RefusedModes(size_t mode) {
  return {{OVRA_ERROR_ROTATION_MODE, {{mode, -1}}},
          {OVRA_ERROR_ROTATION_MODE, {{mode, 8}}},
          {OVRA_ERROR_ROTATION_MODE, {{mode, 256}}}};
}

TEST_F(ResizeStatuses, RotateRegion) {
  constexpr size_t kMode = 11;
  ExpectStatuses(
      OvraResizeRotateImageROI, Arguments(0, 0, kSide, kSide, 1), to_,
      MalformedFormat(kFormat) + RefusedModes(kMode) + EmptySizes() + NullImages() +
          RefusedFormats() +
          Faults{{OVRA_ERROR_RESIZE_REGION_OUTSIDE, {{kX, 1}}},
                 {OVRA_OK, {{kX, -3}, {kY, kMin}}},
                 {OVRA_ERROR_RESIZE_REGION_OUTSIDE, {{kX, -1}, {kToWidth, 6}, {kToHeight, 6}}}});
}

TEST_F(ResizeStatuses, RotateCore) {
  enum : size_t { kTable = 11, kStretch, kTaps, kMode };
  ExpectStatuses(OvraResizeRotateImageCore,
                 Arguments(0, 0, kSide, kSide, table_.data(), 1.0F, 4, 1), to_,
                 NullImages() + RefusedKernels(kTable, kStretch, kTaps) + RefusedModes(kMode) +
                     MalformedFormat(kFormat) + RefusedFormats() + SmallImages() +
                     RefusedRegions() + Faults{{OVRA_OK, {{kTaps, kSide}}}});
}

TEST_F(ResizeStatuses, SmallRotate) {
  enum : size_t { kTable = 11, kMode };
  ExpectStatuses(
      OvraSmallResizeRotateImage, Arguments(0, 0, kSide, kSide, table_.data(), 3), to_,
      NullImages() + Faults{{OVRA_ERROR_RESIZE_NULL_TABLE, {{kTable, nullptr}}}} +
          RefusedModes(kMode) + MalformedFormat(kFormat) + RefusedFormats() + EmptySizes() +
          Faults{{OVRA_ERROR_RESIZE_DESTINATION_SMALL, {{kToWidth, 0}}},
                 {OVRA_ERROR_RESIZE_DESTINATION_SMALL, {{kToHeight, -1}}},
                 {OVRA_ERROR_RESIZE_REGION_SIZE, {{kRegionWidth, -1}, {kToHeight, kToSide}}},
                 {OVRA_ERROR_RESIZE_REGION_OUTSIDE, {{kX, -1}, {kRegionWidth, kSide}}}});
}

// The arguments of the bands' _Init functions: no images, and the context at the end.
TEST_F(ResizeStatuses, BandInits) {
  enum : size_t { kFromWidth, kFromHeight, kOutWidth, kOutHeight, kCode, kLeft, kTop, kW, kH };
  OvraBandResizeContext* context = nullptr;
  const auto by_ratio = [](auto... arguments) {
    const OvraStatus status = OvraBandResize_Init(arguments...);
    auto* const made = std::get<sizeof...(arguments) - 1>(std::tuple(arguments...));
    if (made != nullptr) OvraBandResize_Free(made);
    return status;
  };
  const auto with_kernel = [](auto... arguments) {
    const OvraStatus status = OvraBandResizeCore_Init(arguments...);
    auto* const made = std::get<sizeof...(arguments) - 1>(std::tuple(arguments...));
    if (made != nullptr) OvraBandResize_Free(made);
    return status;
  };
  const Faults rest = Faults{{OVRA_ERROR_RESIZE_DEPTH, {{kCode, 9, kDepthField}}},
                             {OVRA_ERROR_RESIZE_COLOR_MODEL, {{kCode, 0, kModelField}}},
                             {OVRA_ERROR_RESIZE_ARRANGEMENT, {{kCode, 0x10000, kArrangementField}}},
                             {OVRA_ERROR_RESIZE_SOURCE_SMALL, {{kFromHeight, 3}}},
                             {OVRA_ERROR_RESIZE_DESTINATION_SMALL, {{kOutHeight, 3}}},
                             {OVRA_ERROR_RESIZE_REGION_SIZE, {{kH, kSide + 1}}},
                             {OVRA_ERROR_RESIZE_REGION_OUTSIDE, {{kLeft, 1}}},
                             {OVRA_OK, {{kTop, kMin}}}};
  ExpectStatuses(by_ratio,
                 std::tuple(kSide, kSide, kToSide, kToSide, kRgb, 0, 0, kSide, kSide, &context), {},
                 Faults{{OVRA_ERROR_RESIZE_NULL_IMAGE, {{9, nullptr}}}} + MalformedFormat(kCode) +
                     Faults{{OVRA_ERROR_RESIZE_ZERO_SIZE, {{kFromWidth, 0}}},
                            {OVRA_ERROR_RESIZE_ZERO_SIZE, {{kW, 0}, {kFromWidth, kSide}}},
                            {OVRA_ERROR_RESIZE_ZERO_SIZE, {{kH, 0}, {kW, kSide}}}} +
                     rest);
  ExpectStatuses(with_kernel,
                 std::tuple(kSide, kSide, kToSide, kToSide, kRgb, 0, 0, kSide, kSide, table_.data(),
                            1.0F, 4, &context),
                 {},
                 Faults{{OVRA_ERROR_RESIZE_NULL_IMAGE, {{12, nullptr}}}} +
                     RefusedKernels(9, 10, 11) + MalformedFormat(kCode) + rest);
  EXPECT_EQ(OvraBandResize_Free(nullptr), OVRA_OK);
  EXPECT_EQ(OvraBandResize_Free(&context), OVRA_OK);
}

}  // namespace
