// SPDX-License-Identifier: MIT
// The C++ interface: what it adds to the C functions under it.
#include <gtest/gtest.h>

#include <algorithm>
#include <numeric>
#include <span>
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

// From x of row y on, the rows of `image` are those of `part`.
bool Shows(const Image& image, const Image& part, int32_t x = 0, int32_t y = 0) {
  for (int32_t row = 0; row < part.height(); ++row) {
    const uint8_t* const samples = part.Row(row);
    if (!std::equal(samples, samples + 3 * part.width(), image.Row(y + row) + 3 * x)) return false;
  }
  return true;
}

// What `call` makes of the source, as an image like `shape`.
Image Given(const Image& shape, const auto& call, const Image& source, const auto&... more) {
  Image other(shape.size(), shape.format());
  EXPECT_TRUE(call(source, other, more...));
  return other;
}

// `call` makes of the source an image like `expected`, with these pixels.
void ExpectGives(const Image& expected, const auto& call, const Image& source,
                 const auto&... more) {
  EXPECT_TRUE(Shows(Given(expected, call, source, more...), expected));
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
  std::vector<uint16_t> identity(256);
  std::iota(identity.begin(), identity.end(), uint16_t{0});
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
  ExpectGives(source, *tables, source);
}

TEST(CppInterface, GeometryAndComposition) {
  const Image source = Ramp({7, 4}, kPadded);
  const Image turned =
      Given(Image({4, 7}, kPadded), ovra::RotateImage, source, OVRA_ROTATE_QUARTER_LEFT);
  EXPECT_EQ(turned.size(), ovra::Turned(source.size(), OVRA_ROTATE_QUARTER_LEFT));
  EXPECT_EQ(turned.Row(0)[0], source.Row(0)[3 * 6]);
  EXPECT_EQ(turned.Row(6)[3 * 3], source.Row(3)[0]);

  Image canvas({9, 9}, kPadded);
  ASSERT_TRUE(ovra::ExtrapolateImage(source, canvas, 1, 2, {10, 20, 30}));
  EXPECT_EQ(canvas.Row(0)[1], 20);
  EXPECT_TRUE(Shows(canvas, source, 1, 2));
  Image again({9, 9}, kPadded);
  ASSERT_TRUE(ovra::CompositeImage(again, source, 1, 2));
  EXPECT_TRUE(Shows(again, source, 1, 2));

  Image cut({8, 8}, Format::Rgb());
  const Image flat = Ramp({20, 20}, Format::Rgb());
  ASSERT_TRUE(ovra::FreeTrimming(flat, cut, 3, 5, 0));
  EXPECT_TRUE(Shows(flat, cut, 3, 5));
  ASSERT_TRUE(ovra::FreeTrimming(flat, cut, 300, 5, 0, {7, 8, 9}));
  EXPECT_EQ(cut.Row(7)[2], 9);
  EXPECT_EQ(ovra::FreeTrimming(flat, cut, 0, 0, 0, {7}).code(), Status::kMismatch);

  const Image dib = Given(Image({20, 20}, ovra::kDibFormat), ovra::Raw2Dib, flat);
  EXPECT_EQ(dib.Row(0)[0], flat.Row(0)[2]);
  ExpectGives(flat, ovra::Dib2Raw, dib);
}

class CppResize : public testing::Test {
 protected:
  const Image source_ = Ramp({80, 64}, Format::Rgb());
  const ovra::KernelTable table_ = ovra::KernelTable::CubicSpline(-0.75F);
  const ovra::KernelSupport support_ = ovra::SelectKernelSupport(0.75F);
  const ovra::Region whole_ = ovra::Whole(source_);
  const Image large_ = Given(Image({60, 48}, Format::Rgb()), ovra::ResizeImage, source_);
  const Image small_ = Given(Image({8, 6}, Format::Rgb()), ovra::ResizeImage, source_);
};

TEST_F(CppResize, FunctionsAgreeWhereTheyDoTheSame) {
  constexpr auto kTurn = OVRA_ROTATE_QUARTER_RIGHT;
  const ovra::Factors factors = {0.75, 0.75};
  ExpectGives(large_, ovra::ResizeImageROI, source_, whole_);
  ExpectGives(large_, ovra::ResizeImageVAR, source_, factors);
  ExpectGives(large_, ovra::ResizeImageROIVAR, source_, whole_, factors);
  ExpectGives(large_, ovra::ResizeImageCore, source_, whole_, table_, support_);
  ExpectGives(large_, ovra::ResizeImageCoreVAR, source_, whole_, factors, table_, support_,
              support_);
  ExpectGives(small_, ovra::SmallResizeImage, source_, whole_, table_);
  const Image turned = Given(Image({48, 60}, Format::Rgb()), ovra::RotateImage, large_, kTurn);
  ExpectGives(turned, ovra::ResizeRotateImageROI, source_, whole_, kTurn);
  ExpectGives(turned, ovra::ResizeRotateImageCore, source_, whole_, table_, support_, kTurn);
  ExpectGives(Given(Image({6, 8}, Format::Rgb()), ovra::RotateImage, small_, kTurn),
              ovra::SmallResizeRotateImage, source_, whole_, table_, kTurn);
}

TEST_F(CppResize, InBands) {
  using Bands = ovra::BandResize;
  auto first = Bands::Make(source_.size(), {60, 48}, Format::Rgb(), whole_).value();
  auto second =
      Bands::Make(source_.size(), {60, 48}, Format::Rgb(), whole_, table_, support_).value();
  for (Bands* resize : {&first, &second}) {
    Image result({60, 48}, Format::Rgb());
    int32_t written = 0;
    for (int32_t row = 0; row < 64; row += 16) {
      const auto progress =
          (*resize)(source_.view().Rows(row, 16), result.view().Rows(written, 48 - written), row);
      ASSERT_TRUE(progress);
      EXPECT_EQ(progress->rows_taken, 16);
      written += progress->rows_written;
    }
    EXPECT_EQ(written, 48);
    EXPECT_TRUE(Shows(result, large_));
  }
}

// Contexts work after a move, and what was moved from is empty.
TEST(CppInterface, ContextsMove) {
  const Image source = Ramp({64, 48}, Format::Rgb());
  const auto tables = ovra::ResponseTables::Make(ovra::DefaultCurves()).value();
  const auto weights = ovra::GaussianWeights(1).value();
  static_assert(!std::is_copy_constructible_v<ovra::YUsm>);
  ovra::YUsm first = ovra::YUsm::Make(Format::Rgb(), weights, 2.5F, tables).value();
  const Image expected = Given(source, first, source);
  EXPECT_FALSE(Shows(expected, source));
  ovra::YUsm second = std::move(first);
  ExpectGives(expected, second, source);
  second = ovra::YUsm::Make(Format::Rgb(), weights, 1.0F, tables).value();
  ExpectGives(source, second, source);
  EXPECT_EQ(ovra::YUsm::Make(Format::Rgb(16), weights, 1, tables).status().code(),
            OVRA_ERROR_YUSM_DEPTH);
  const ovra::UsmBand band = {weights, 1.5F, tables};
  const auto both = ovra::YUsmDouble::Make(Format::Rgb(), band, band).value();
  EXPECT_FALSE(Shows(Given(source, both, source), source));
}

TEST(CppInterface, FiltersReachTheirFunctions) {
  const Image source = Ramp({64, 48}, Format::Rgb());
  Given(source, ovra::EFilterImage, source);
  const OvraSoftFocusParams soft = {500, 1, 0.1, {}, 0.5};
  EXPECT_FALSE(Shows(Given(source, ovra::SoftFocus, source, soft), source));
  const OvraMultiFrequencyParams bands = {1, 1, 0, 0, {{1, 0, 0, 0}}};
  ExpectGives(source, ovra::MultiFrequency, source, bands);
}

// Without an amount the source comes back, in a context for the format's depth.
template <class Form>
void CheckTone() {
  for (const uint32_t depth : {10U, 12U}) {
    Image source({64, 48}, Format::Bgr(depth));
    std::span samples(source.Row<uint16_t>(0), size_t{3} * 64 * 48);
    for (size_t i = 0; i < samples.size(); ++i) samples[i] = static_cast<uint16_t>(i % 1000);
    const OvraHyperToneParams params = {0, 0, 0, 1, 0.1F, 0, 3, 0};
    const auto tone = Form::Make(Format::Bgr(depth), params).value();
    const Image other = Given(source, tone, source);
    EXPECT_TRUE(std::equal(samples.begin(), samples.end(), other.Row<uint16_t>(0)));
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
  const auto negative = ovra::ChannelPolynomialConversion::Make(
      Format::Rgb(), Format::Rgb(), {{{255, -1, 0, 0}, {255, -1, 0, 0}, {255, -1, 0, 0}}});
  ASSERT_TRUE(negative.status());
  EXPECT_EQ(Given(source, *negative, source).Row(1)[5], 255 - source.Row(1)[5]);

  const OvraColorMatrix matrix = {{{0, 0, 1}, {0, 1}, {1}}, 0};
  const auto swap = ovra::ColorMatrixConversion::Make(Format::Rgb(), Format::Rgb(), matrix);
  EXPECT_EQ(Given(source, *swap, source).Row(1)[0], source.Row(1)[2]);

  const uint16_t grid[] = {0, 255};
  uint16_t lattice[24] = {};
  for (size_t i = 0; i < 24; ++i) lattice[i] = (i / 3 >> (2 - i % 3) & 1) != 0 ? 255 : 0;
  const OvraColorCube cube = {2, grid, 2, grid, 2, grid, lattice};
  EXPECT_TRUE(ovra::Cascade3D(cube, cube));
  const auto same = ovra::ColorCubeConversion::Make(Format::Rgb(), Format::Rgb(), cube);
  ExpectGives(source, *same, source);
}

}  // namespace
