// SPDX-License-Identifier: MIT
// What tone and multi-frequency processing promise of their work memory, and large pictures, whose results
// go round the cache.
#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <vector>

#include "ovra/filter.h"
#include "support/failing_malloc.h"
#include "support/forced_tier.h"
#include "support/tone_forms.h"

namespace {

using ovra_test::FailAllocationsFrom;
using ovra_test::kToneForms;

constexpr OvraPixelFormatCode kRgb12 = 0x124;
constexpr double kSmall = 50e3;  // whatever the size

struct Size {
  uint32_t width;
  uint32_t height;

  double Pixels() const { return double{1} * width * height; }
  bool IsBelow(uint32_t side) const { return std::min(width, height) < side; }
};

constexpr Size kSizes[] = {{1500, 1000}, {400, 1500}, {1, 100000}, {100000, 1}, {256, 256}};

template <class Call>
double BytesOf(const Call& call) {
  const FailAllocationsFrom counting(std::numeric_limits<int>::max());
  EXPECT_EQ(call(), OVRA_OK);
  return static_cast<double>(FailAllocationsFrom::RequestedBytes());
}

TEST(WorkMemoryBounds, MultiFrequency) {
  for (const Size& size : kSizes) {
    std::vector<uint8_t> picture(static_cast<size_t>(6 * size.Pixels()));
    for (const uint32_t bands : {1U, 4U, 8U}) {
      OvraMultiFrequencyParams params = {bands, 0.5F, 0.5F, 0, {}};
      for (OvraMultiFrequencyBand& band : params.band) band = {2, 0, 0, 1};
      const double bytes = BytesOf([&] {
        return OvraMultiFrequency(picture.data(), picture.data(), size.width, size.height, kRgb12,
                                  &params);
      });
      const double planes = (size.IsBelow(1U << bands) ? 4 : 1.4) * size.Pixels();
      EXPECT_LE(bytes, planes + 64.0 * size.width + kSmall)
          << size.width << " x " << size.height << ", " << bands;
    }
  }
}

TEST(WorkMemoryBounds, ToneProcessing) {
  for (const Size& size : kSizes) {
    std::vector<uint8_t> picture(static_cast<size_t>(6 * size.Pixels()));
    for (const ovra_test::ToneExports& form : kToneForms) {
      for (const int32_t scale : {3, 5, 8}) {
        OvraHyperToneParams params = ovra_test::kToneDefaults;
        params.scale = scale;
        void* context = nullptr;
        ASSERT_EQ(form.init_12(kRgb12, &params, nullptr, &context), OVRA_OK);
        const double bytes = BytesOf([&] {
          return form.run(picture.data(), picture.data(), size.width, size.height, kRgb12, context);
        });
        EXPECT_EQ(form.free(&context), OVRA_OK);
        const uint32_t cell = 1U << scale;
        const Size cells = {(size.width + cell - 1) / cell, (size.height + cell - 1) / cell};
        const double planes =
            form.is_hybrid ? 64 * cells.Pixels() : (size.IsBelow(cell) ? 2 : 0.17) * size.Pixels();
        EXPECT_LE(bytes, planes + 64.0 * size.width + kSmall)
            << form.name << ", " << size.width << " x " << size.height << ", scale " << scale;
      }
    }
  }
}

// What goes round the cache is not written in place. Rows start at every even remainder of 16.
constexpr Size kLarge = {1601, 1800};

template <class Run>
void ExpectSameBytesInPlace(const Run& run) {
  std::vector<uint8_t> source(static_cast<size_t>(6 * kLarge.Pixels()));
  for (size_t i = 0; i < source.size(); ++i)
    source[i] = static_cast<uint8_t>(i * i % 251 / (i % 2 * 15 + 1));
  std::vector<uint8_t> expected = source;
  ASSERT_EQ(run(expected.data(), expected.data()), OVRA_OK);
  for (const ovra::KernelTier tier : ovra_test::AllTiers()) {
    const ovra_test::ForcedTier forced(tier);
    std::vector<uint8_t> result(source.size());
    ASSERT_EQ(run(source.data(), result.data()), OVRA_OK);
    ASSERT_TRUE(result == expected) << ovra_test::TierName(tier);
  }
}

TEST(LargePictures, MultiFrequency) {
  OvraMultiFrequencyParams params = {3, 0.5F, 0.5F, 0, {}};
  for (OvraMultiFrequencyBand& band : params.band) band = {2, 0, 0, 1};
  for (const OvraPixelFormatCode format : {kRgb12, OvraPixelFormatCode{0x120}}) {
    const uint32_t height = format == kRgb12 ? kLarge.height : 2 * kLarge.height;
    ExpectSameBytesInPlace([&](const uint8_t* source, uint8_t* destination) {
      return OvraMultiFrequency(source, destination, kLarge.width, height, format, &params);
    });
  }
}

TEST(LargePictures, ToneProcessing) {
  for (const ovra_test::ToneExports& form : kToneForms) {
    SCOPED_TRACE(form.name);
    OvraHyperToneParams params = ovra_test::kToneDefaults;
    params.colour = form.is_hybrid ? 0.5F : 1.0F;
    void* context = nullptr;
    ASSERT_EQ(form.init_12(kRgb12, &params, nullptr, &context), OVRA_OK);
    ExpectSameBytesInPlace([&](const uint8_t* source, uint8_t* destination) {
      return form.run(source, destination, kLarge.width, kLarge.height, kRgb12, context);
    });
    EXPECT_EQ(form.free(&context), OVRA_OK);
  }
}

}  // namespace
