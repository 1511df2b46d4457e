// SPDX-License-Identifier: MIT
// What operations promise of their work memory, and large pictures, whose results go round the cache.
// Linked to the objects, so that allocations can be counted.
#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

#include "ovra/ovra.h"
#include "support/failing_malloc.h"
#include "support/forced_tier.h"
#include "support/tone_forms.h"

namespace {

using ovra_test::FailAllocations;
using ovra_test::kToneForms;

constexpr OvraPixelFormatCode kRgb12 = 0x124;
constexpr OvraMultiFrequencyBand kBand = {2, 0, 0, 1};

double BytesOf(const auto& call) {
  const FailAllocations counting;
  EXPECT_EQ(call(), OVRA_OK);
  return static_cast<double>(FailAllocations::RequestedBytes());
}

// Runs in a context of this form, as one function of source, destination and size.
template <class Use>
void WithTone(const ovra_test::ToneExports& form, const OvraHyperToneParams& params,
              const Use& use) {
  void* context = nullptr;
  ASSERT_EQ(form.init_12(kRgb12, &params, nullptr, &context), OVRA_OK);
  use([&](const uint8_t* source, uint8_t* destination, uint32_t width, uint32_t height) {
    return form.run(source, destination, width, height, kRgb12, context);
  });
  EXPECT_EQ(form.free(&context), OVRA_OK);
}

struct Size {
  uint32_t width;
  uint32_t height;

  double Pixels() const { return double{1} * width * height; }
  bool IsBelow(uint32_t side) const { return std::min(width, height) < side; }
};

class WorkMemoryBounds : public testing::TestWithParam<Size> {
 protected:
  // Runs the operation in place.
  void ExpectAtMost(double planes, const auto& run) {
    constexpr double kSmall = 50e3;  // whatever the size
    const uint32_t width = GetParam().width;
    const uint32_t height = GetParam().height;
    EXPECT_LE(BytesOf([&] { return run(picture_.data(), picture_.data(), width, height); }),
              planes + 64.0 * width + kSmall);
  }

 private:
  std::vector<uint8_t> picture_ =
      std::vector<uint8_t>(static_cast<size_t>(6 * GetParam().Pixels()));
};

TEST_P(WorkMemoryBounds, MultiFrequency) {
  for (const uint32_t bands : {1U, 4U, 8U}) {
    SCOPED_TRACE(bands);
    OvraMultiFrequencyParams params = {bands, 0.5F, 0.5F, 0, {}};
    std::fill_n(params.band, bands, kBand);
    ExpectAtMost((GetParam().IsBelow(1U << bands) ? 4 : 1.4) * GetParam().Pixels(),
                 [&](auto* source, auto* destination, uint32_t width, uint32_t height) {
                   return OvraMultiFrequency(source, destination, width, height, kRgb12, &params);
                 });
  }
}

TEST_P(WorkMemoryBounds, ToneProcessing) {
  const Size size = GetParam();
  for (const ovra_test::ToneExports& form : kToneForms) {
    for (const int32_t scale : {3, 5, 8}) {
      SCOPED_TRACE(testing::Message() << form.name << ", scale " << scale);
      OvraHyperToneParams params = ovra_test::kToneDefaults;
      params.scale = scale;
      const uint32_t cell = 1U << scale;
      const Size cells = {(size.width + cell - 1) / cell, (size.height + cell - 1) / cell};
      const double planes =
          form.is_hybrid ? 64 * cells.Pixels() : (size.IsBelow(cell) ? 2 : 0.17) * size.Pixels();
      WithTone(form, params, [&](const auto& run) { ExpectAtMost(planes, run); });
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Sizes, WorkMemoryBounds,
                         testing::Values(Size{1500, 1000}, Size{400, 1500}, Size{1, 100000},
                                         Size{100000, 1}, Size{256, 256}));

// What goes round the cache is not written in place. Rows start at every even remainder of 16.
constexpr Size kLarge = {1601, 1800};

void ExpectSameBytesInPlace(const auto& run) {
  std::vector<uint8_t> source(static_cast<size_t>(6 * kLarge.Pixels()));
  for (size_t i = 0; i < source.size(); ++i)
    source[i] = static_cast<uint8_t>(i * i % 251 / (i % 2 * 15 + 1));
  std::vector<uint8_t> in_place = source;
  ASSERT_EQ(run(in_place.data(), in_place.data(), kLarge.width, kLarge.height), OVRA_OK);
  ovra_test::ExpectTiersAgree([&] {
    std::vector<uint8_t> result(source.size());
    EXPECT_EQ(run(source.data(), result.data(), kLarge.width, kLarge.height), OVRA_OK);
    EXPECT_TRUE(result == in_place);
    return result;
  });
}

TEST(LargePictures, AreTheSameInPlace) {
  const OvraMultiFrequencyParams bands = {3, 0.5F, 0.5F, 0, {kBand, kBand, kBand}};
  for (const OvraPixelFormatCode format : {kRgb12, OvraPixelFormatCode{0x120}}) {
    ExpectSameBytesInPlace([&](auto* source, auto* destination, uint32_t width, uint32_t height) {
      return OvraMultiFrequency(source, destination, width, format == kRgb12 ? height : 2 * height,
                                format, &bands);
    });
  }
  for (const ovra_test::ToneExports& form : kToneForms) {
    SCOPED_TRACE(form.name);
    OvraHyperToneParams params = ovra_test::kToneDefaults;
    params.colour = form.is_hybrid ? 0.5F : 1.0F;
    WithTone(form, params, [](const auto& run) { ExpectSameBytesInPlace(run); });
  }
}

struct Page {
  int32_t width;
  int32_t to_width;
  OvraPixelFormatCode format;

  uint64_t Channels() const { return (format >> 4 & 15) + 1; }
  uint64_t IntermediateBytes() const { return (format & 15) == 0 ? 2 : 4; }
};

// Of a context for a page of this height, whose proportions stay.
double BytesOfContext(const Page& page, int32_t height) {
  OvraBandResizeContext* context = nullptr;
  const auto to_height = static_cast<int32_t>(int64_t{height} * page.to_width / page.width);
  return BytesOf([&] {
    const OvraStatus status = OvraBandResize_Init(page.width, height, page.to_width, to_height,
                                                  page.format, 0, 0, page.width, height, &context);
    OvraBandResize_Free(&context);
    EXPECT_EQ(FailAllocations::Outstanding(), 0);
    return status;
  });
}

TEST(ResampleMemory, BandsDependOnTheWidths) {
  constexpr uint64_t kKib = 1024;
  const Page pages[] = {{6000, 3000, 0x0120}, {6000, 3000, 0x0128}, {6000, 1200, 0x0120},
                        {6000, 1200, 0x0128}, {6000, 30, 0x1030},   {1000, 1, 0x0008},
                        {600, 1200, 0x0000},  {40, 8, 0x0128}};
  for (const Page& page : pages) {
    const double bytes = BytesOfContext(page, 10000);
    EXPECT_EQ(bytes, BytesOfContext(page, 1000000)) << page.width << " to " << page.to_width;
    const auto width = static_cast<uint64_t>(page.width);
    const auto to_width = static_cast<uint64_t>(page.to_width);
    const uint64_t taps = to_width >= width ? 4 : 8;
    const uint64_t engine = 80 * kKib +
                            (to_width + 32) * page.Channels() * taps * page.IntermediateBytes() +
                            to_width * (2 * taps + 24) + 16 * taps;
    const uint64_t reduction =
        128 * kKib + 128 * width * page.Channels() + 320 * width + 64 * to_width;
    EXPECT_LE(bytes, static_cast<double>(100 * to_width < 33 * width ? reduction : engine))
        << page.width << " to " << page.to_width << " " << page.format;
  }
}

TEST(ResampleMemory, RunsOfBandsTakeNone) {
  const std::vector<uint8_t> band(600 * 3 * 20, 9);
  std::vector<uint8_t> out(300 * 3 * 20);
  for (const int32_t to_width : {300, 60}) {
    OvraBandResizeContext* context = nullptr;
    ASSERT_EQ(
        OvraBandResize_Init(600, 400, to_width, to_width * 2 / 3, 0x120, 0, 0, 600, 400, &context),
        OVRA_OK);
    const FailAllocations all(1);
    for (int32_t row = 0; row < 400; row += 20) {
      int32_t taken = 0;
      int32_t written = 0;
      EXPECT_EQ(OvraBandResize(band.data(), 600, 20, out.data(), to_width, 20, 0x120, row, &taken,
                               &written, context),
                OVRA_OK);
    }
    EXPECT_EQ(FailAllocations::Requested(), 0);
    OvraBandResize_Free(&context);
  }
}

TEST(ResampleMemory, TurnsAndTrimmingTakeNoPicture) {
  const std::vector<uint8_t> source(size_t{400} * 4000 * 3);
  std::vector<uint8_t> destination(source.size());
  const auto turn = [&](int32_t height) {
    return BytesOf([&] {
      return OvraResizeRotateImageROI(source.data(), 400, height, destination.data(), height / 2,
                                      200, 0x120, 0, 0, 400, height, OVRA_ROTATE_QUARTER_LEFT);
    });
  };
  EXPECT_EQ(turn(400), turn(4000));
  const double trimming = BytesOf([&] {
    return OvraFreeTrimming(source.data(), 400, 4000, destination.data(), 400, 4000, 0x120, 0, 0,
                            77, nullptr);
  });
  EXPECT_LT(trimming, 256 * 1024);
}

}  // namespace
