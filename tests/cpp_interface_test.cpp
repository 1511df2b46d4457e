// SPDX-License-Identifier: MIT
// The C++ interface: what it adds to the C functions under it.
#include <gtest/gtest.h>

#include <algorithm>
#include <type_traits>
#include <vector>

#include "ovra/ovra.hpp"

namespace {

using ovra::Format;
using ovra::Image;
using ovra::Status;

constexpr Format kPadded(8, 3, OVRA_MODEL_RGB, 4, OVRA_ROWS_BOTTOM_UP);

// Every sample has a value of its own for a while.
Image Ramp(ovra::Size size, Format format) {
  Image image(size, format);
  const ovra::MutableView view = image.view();
  for (size_t i = 0; i < view.stride() * static_cast<size_t>(size.height); ++i) {
    view.data()[i] = static_cast<uint8_t>(i);
  }
  return image;
}

bool SamePixels(ovra::View a, ovra::View b) {
  for (int32_t y = 0; y < a.height(); ++y) {
    if (!std::equal(a.Row(y), a.Row(y) + 3 * a.width(), b.Row(y))) return false;
  }
  return true;
}

TEST(CppInterface, ViewsKnowStrideAndRowOrder) {
  Image image({5, 3}, kPadded);
  EXPECT_EQ(image.view().stride(), 16U);
  EXPECT_EQ(image.Row(0), image.view().data() + 32);
  EXPECT_EQ(image.Row(2), image.view().data());
  const ovra::MutableView band = image.view().Rows(1, 2);
  EXPECT_EQ(band.data(), image.view().data() + 16);
  EXPECT_EQ(band.Row(0), image.Row(0));
  Image deep({5, 3}, Format::Grey(12));
  EXPECT_EQ(deep.Row<uint16_t>(1) - deep.Row<uint16_t>(0), 5);
  EXPECT_EQ(Format(7, 3, OVRA_MODEL_RGB).Stride(5), 0U);
  static_assert(std::is_convertible_v<ovra::MutableView, ovra::View>);
  static_assert(!std::is_convertible_v<ovra::View, ovra::MutableView>);
}

TEST(CppInterface, StatusesAreAnswersOrExceptions) {
  const Image source = Ramp({40, 30}, Format::Rgb());
  Image tiny({2, 2}, Format::Rgb(32));
  const Status refused = ovra::ResizeImage(source, tiny);
  EXPECT_EQ(refused.code(), Status::kMismatch);
  EXPECT_STREQ(refused.text(), "images of one call do not belong together");
  Image deep({40, 30}, Format::Rgb(32));
  const Status depth = ovra::RotateImage(deep, deep, OVRA_ROTATE_HALF);
  EXPECT_EQ(depth.code(), OVRA_ERROR_ROTATION_DEPTH);
  try {
    depth.OrThrow();
    ADD_FAILURE() << "no exception";
  } catch (const ovra::Error& error) {
    EXPECT_STREQ(error.what(), OvraStatusText(OVRA_ERROR_ROTATION_DEPTH));
    EXPECT_EQ(error.status().code(), OVRA_ERROR_ROTATION_DEPTH);
  }
  EXPECT_NO_THROW(Status().OrThrow());
}

TEST(CppInterface, ResultsHoldAValueOrAStatus) {
  const auto weights = ovra::GaussianWeights(1);
  ASSERT_TRUE(weights);
  EXPECT_EQ(*weights, (std::vector<int32_t>{7, 31, 52, 31, 7}));
  const auto none = ovra::GaussianWeights(1, 65);
  EXPECT_FALSE(none);
  EXPECT_EQ(none.status().code(), OVRA_ERROR_YUSM_TAPS);
  EXPECT_THROW(ovra::GaussianWeights(1, 65).value(), ovra::Error);
}

TEST(CppInterface, ImagesThatDoNotBelongTogetherAreRefused) {
  const Image source = Ramp({7, 6}, Format::Rgb());
  Image same({7, 6}, Format::Rgb());
  Image turned({6, 7}, Format::Rgb());
  Image padded({7, 6}, kPadded);
  Image dib({7, 6}, ovra::kDibFormat);
  const std::vector<uint16_t> identity = [] {
    std::vector<uint16_t> table(256);
    for (size_t i = 0; i < table.size(); ++i) table[i] = static_cast<uint16_t>(i);
    return table;
  }();
  const auto tables = ovra::ChannelTableConversion::Make(
      Format::Rgb(), Format::Rgb(), {{identity.data(), identity.data(), identity.data()}});
  ASSERT_TRUE(tables);
  const OvraSoftFocusParams soft = {};
  const Status refused[] = {
      ovra::RotateImage(source, same, OVRA_ROTATE_QUARTER_LEFT),
      ovra::RotateImage(source, turned, OVRA_ROTATE_FLIP),
      ovra::RotateImage(source, padded, OVRA_ROTATE_FLIP),
      ovra::ExtrapolateImage(source, same, 0, 0, {1, 2}),
      ovra::CompositeImageWithMaskBlending(same, source, turned, 0, 0),
      ovra::Raw2Dib(source, same),
      ovra::Dib2Raw(dib, turned),
      ovra::EFilterImage(source, turned),
      ovra::SoftFocus(padded, padded, soft),
      (*tables)(source, turned),
      (*tables)(source, padded),
  };
  for (const Status& status : refused) {
    EXPECT_EQ(status.code(), Status::kMismatch) << &status - refused;
  }
  EXPECT_TRUE((*tables)(source, same));
  EXPECT_TRUE(SamePixels(same, source));
}

TEST(CppInterface, GeometryAndComposition) {
  const Image source = Ramp({7, 4}, kPadded);
  Image turned(ovra::Turned(source.size(), OVRA_ROTATE_QUARTER_LEFT), kPadded);
  ASSERT_TRUE(ovra::RotateImage(source, turned, OVRA_ROTATE_QUARTER_LEFT));
  EXPECT_EQ(turned.Row(0)[0], source.Row(0)[3 * 6]);
  EXPECT_EQ(turned.Row(6)[3 * 3], source.Row(3)[0]);

  Image canvas({9, 9}, kPadded);
  ASSERT_TRUE(ovra::ExtrapolateImage(source, canvas, 1, 2, {10, 20, 30}));
  EXPECT_EQ(canvas.Row(0)[1], 20);
  EXPECT_TRUE(std::equal(source.Row(3), source.Row(3) + 21, canvas.Row(5) + 3));
  Image again({9, 9}, kPadded);
  ASSERT_TRUE(ovra::CompositeImage(again, source, 1, 2));
  EXPECT_TRUE(std::equal(source.Row(3), source.Row(3) + 21, again.Row(5) + 3));

  Image cut({8, 8}, Format::Rgb());
  const Image flat = Ramp({20, 20}, Format::Rgb());
  ASSERT_TRUE(ovra::FreeTrimming(flat, cut, 3, 5, 0));
  EXPECT_TRUE(std::equal(cut.Row(1), cut.Row(1) + 24, flat.Row(6) + 9));
  ASSERT_TRUE(ovra::FreeTrimming(flat, cut, 300, 5, 0, {7, 8, 9}));
  EXPECT_EQ(cut.Row(7)[2], 9);
  EXPECT_EQ(ovra::FreeTrimming(flat, cut, 0, 0, 0, {7}).code(), Status::kMismatch);

  const Image raw = Ramp({5, 3}, Format::Rgb());
  Image dib({5, 3}, ovra::kDibFormat);
  Image back({5, 3}, Format::Rgb());
  ASSERT_TRUE(ovra::Raw2Dib(raw, dib));
  EXPECT_EQ(dib.Row(0)[0], raw.Row(0)[2]);
  ASSERT_TRUE(ovra::Dib2Raw(dib, back));
  EXPECT_TRUE(SamePixels(raw, back));
}

TEST(CppInterface, ResizeFunctionsAgreeWhereTheyDoTheSame) {
  const Image source = Ramp({80, 64}, Format::Rgb());
  const auto table = ovra::KernelTable::CubicSpline(-0.75F);
  const ovra::KernelSupport support = ovra::SelectKernelSupport(0.75F);
  const ovra::Region whole = ovra::Whole(source);
  const ovra::Factors factors = {0.75, 0.75};
  Image expected({60, 48}, Format::Rgb());
  ASSERT_TRUE(ovra::ResizeImage(source, expected));
  for (int form = 0; form < 5; ++form) {
    Image other({60, 48}, Format::Rgb());
    const auto resize = [&]() -> Status {
      switch (form) {
        case 0:
          return ovra::ResizeImageROI(source, other, whole);
        case 1:
          return ovra::ResizeImageVAR(source, other, factors);
        case 2:
          return ovra::ResizeImageROIVAR(source, other, whole, factors);
        case 3:
          return ovra::ResizeImageCore(source, other, whole, table, support);
        default:
          return ovra::ResizeImageCoreVAR(source, other, whole, factors, table, support, support);
      }
    };
    EXPECT_TRUE(resize());
    EXPECT_TRUE(SamePixels(expected, other)) << form;
  }
  Image small({8, 6}, Format::Rgb());
  Image tiny({8, 6}, Format::Rgb());
  ASSERT_TRUE(ovra::ResizeImage(source, small));
  ASSERT_TRUE(ovra::SmallResizeImage(source, tiny, whole, table));
  EXPECT_TRUE(SamePixels(small, tiny));
}

TEST(CppInterface, ResizeWithATurnAndInBands) {
  const Image source = Ramp({80, 64}, Format::Rgb());
  const auto table = ovra::KernelTable::CubicSpline(-0.75F);
  const ovra::KernelSupport support = ovra::SelectKernelSupport(0.75F);
  const ovra::Region whole = ovra::Whole(source);
  Image upright({60, 48}, Format::Rgb());
  Image expected({48, 60}, Format::Rgb());
  Image other({48, 60}, Format::Rgb());
  ASSERT_TRUE(ovra::ResizeImage(source, upright));
  ASSERT_TRUE(ovra::RotateImage(upright, expected, OVRA_ROTATE_QUARTER_RIGHT));
  ASSERT_TRUE(ovra::ResizeRotateImageROI(source, other, whole, OVRA_ROTATE_QUARTER_RIGHT));
  EXPECT_TRUE(SamePixels(expected, other));
  Image core({48, 60}, Format::Rgb());
  ASSERT_TRUE(
      ovra::ResizeRotateImageCore(source, core, whole, table, support, OVRA_ROTATE_QUARTER_RIGHT));
  EXPECT_TRUE(SamePixels(expected, core));
  Image tiny({6, 8}, Format::Rgb());
  EXPECT_TRUE(ovra::SmallResizeRotateImage(source, tiny, whole, table, OVRA_ROTATE_QUARTER_RIGHT));

  auto first = ovra::BandResize::Make(source.size(), upright.size(), Format::Rgb(), whole).value();
  auto second =
      ovra::BandResize::Make(source.size(), upright.size(), Format::Rgb(), whole, table, support)
          .value();
  for (ovra::BandResize* resize : {&first, &second}) {
    Image result({60, 48}, Format::Rgb());
    int32_t written = 0;
    for (int32_t row = 0; row < 64; row += 16) {
      const auto progress =
          (*resize)(source.view().Rows(row, 16), result.view().Rows(written, 48 - written), row);
      ASSERT_TRUE(progress);
      EXPECT_EQ(progress->rows_taken, 16);
      written += progress->rows_written;
    }
    EXPECT_EQ(written, 48);
    EXPECT_TRUE(SamePixels(upright, result));
  }
}

// Contexts work after a move, and what was moved from is empty.
TEST(CppInterface, ContextsMove) {
  const Image source = Ramp({64, 48}, Format::Rgb());
  const auto tables = ovra::ResponseTables::Make(ovra::DefaultCurves()).value();
  const auto weights = ovra::GaussianWeights(1).value();
  static_assert(!std::is_copy_constructible_v<ovra::YUsm>);
  ovra::YUsm first = ovra::YUsm::Make(Format::Rgb(), weights, 2.5F, tables).value();
  Image expected({64, 48}, Format::Rgb());
  ASSERT_TRUE(first(source, expected));
  EXPECT_FALSE(SamePixels(source, expected));
  ovra::YUsm second = std::move(first);
  Image other({64, 48}, Format::Rgb());
  ASSERT_TRUE(second(source, other));
  EXPECT_TRUE(SamePixels(expected, other));
  second = ovra::YUsm::Make(Format::Rgb(), weights, 1.0F, tables).value();
  ASSERT_TRUE(second(source, other));
  EXPECT_TRUE(SamePixels(source, other));
  EXPECT_EQ(ovra::YUsm::Make(Format::Rgb(16), weights, 1, tables).status().code(),
            OVRA_ERROR_YUSM_DEPTH);

  const ovra::UsmBand band = {weights, 1.5F, tables};
  const auto both = ovra::YUsmDouble::Make(Format::Rgb(), band, band).value();
  ASSERT_TRUE(both(source, other));
  EXPECT_FALSE(SamePixels(source, other));
}

TEST(CppInterface, FiltersReachTheirFunctions) {
  const Image source = Ramp({64, 48}, Format::Rgb());
  Image other({64, 48}, Format::Rgb());
  ASSERT_TRUE(ovra::EFilterImage(source, other));
  OvraSoftFocusParams soft = {};
  soft.radius = 500;
  soft.decay_base = 0.1;
  soft.decay_exponent = 1;
  soft.mix = 0.5;
  ASSERT_TRUE(ovra::SoftFocus(source, other, soft));
  EXPECT_FALSE(SamePixels(source, other));
  OvraMultiFrequencyParams bands = {};
  bands.band_count = 1;
  bands.base_gain = 1;
  bands.band[0].gain = 1;
  ASSERT_TRUE(ovra::MultiFrequency(source, other, bands));
  EXPECT_TRUE(SamePixels(source, other));
}

// Without an amount the source comes back, in a context for the format's depth.
template <class Form>
void CheckTone() {
  for (const uint32_t depth : {10U, 12U}) {
    Image source({64, 48}, Format::Bgr(depth));
    Image other({64, 48}, Format::Bgr(depth));
    for (int32_t i = 0; i < 3 * 64 * 48; ++i) {
      source.Row<uint16_t>(0)[i] = static_cast<uint16_t>(i % 1000);
    }
    OvraHyperToneParams params = {};
    params.local_contrast = 1;
    params.edge = 0.1F;
    params.scale = 3;
    const auto tone = Form::Make(Format::Bgr(depth), params).value();
    ASSERT_TRUE(tone(source, other));
    EXPECT_TRUE(std::equal(source.Row<uint16_t>(0), source.Row<uint16_t>(0) + 3 * 64 * 48,
                           other.Row<uint16_t>(0)));
    Image small({32, 32}, Format::Bgr(depth));
    EXPECT_EQ(tone(source, small).code(), Status::kMismatch);
  }
}

TEST(CppInterface, EveryFormOfToneProcessing) {
  CheckTone<ovra::HyperTone>();
  CheckTone<ovra::HyperToneLight>();
  CheckTone<ovra::HybridHyperTone>();
  CheckTone<ovra::HybridHyperToneLight>();
}

TEST(CppInterface, ConversionsConvert) {
  const Image source = Ramp({16, 2}, Format::Rgb());
  Image other({16, 2}, Format::Rgb());
  const auto negative = ovra::ChannelPolynomialConversion::Make(
      Format::Rgb(), Format::Rgb(), {{{255, -1, 0, 0}, {255, -1, 0, 0}, {255, -1, 0, 0}}});
  ASSERT_TRUE(negative.status());
  ASSERT_TRUE((*negative)(source, other));
  EXPECT_EQ(other.Row(1)[5], 255 - source.Row(1)[5]);

  OvraColorMatrix matrix = {};
  matrix.rows[0][2] = matrix.rows[1][1] = matrix.rows[2][0] = 1;
  const auto swap = ovra::ColorMatrixConversion::Make(Format::Rgb(), Format::Rgb(), matrix);
  ASSERT_TRUE((*swap)(source, other));
  EXPECT_EQ(other.Row(1)[0], source.Row(1)[2]);

  const uint16_t grid[] = {0, 255};
  uint16_t lattice[2 * 2 * 2 * 3] = {};
  for (size_t node = 0; node < 8; ++node) {
    for (size_t axis = 0; axis < 3; ++axis) {
      lattice[3 * node + axis] = (node >> (2 - axis) & 1) != 0 ? 255 : 0;
    }
  }
  const OvraColorCube cube = {2, grid, 2, grid, 2, grid, lattice};
  EXPECT_TRUE(ovra::Cascade3D(cube, cube));
  const auto same = ovra::ColorCubeConversion::Make(Format::Rgb(), Format::Rgb(), cube);
  ASSERT_TRUE((*same)(source, other));
  EXPECT_TRUE(SamePixels(source, other));
}

}  // namespace
