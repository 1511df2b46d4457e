// SPDX-License-Identifier: MIT
// What tone and multi-frequency processing promise of their work memory.
#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <vector>

#include "ovra/filter.h"
#include "support/failing_malloc.h"
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
      const double planes = (size.IsBelow(1U << bands) ? 2 : 0.17) * size.Pixels();
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

}  // namespace
