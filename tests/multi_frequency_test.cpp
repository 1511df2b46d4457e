// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <vector>

#include "ovra/filter.h"
#include "support/tone_pictures.h"

namespace {

using ovra_test::AnchorPicture;
using ovra_test::Fnv1a;
using ovra_test::Picture16;

OvraMultiFrequencyParams UnitParams(uint32_t band_count) {
  OvraMultiFrequencyParams params = {band_count, 1, 0.5F, 0, {}};
  for (OvraMultiFrequencyBand& band : params.bands) band = {1, 0, 0, 1};
  return params;
}

Picture16 Processed(const Picture16& picture, const OvraMultiFrequencyParams& params) {
  Picture16 result = picture;
  EXPECT_EQ(OvraMultiFrequency(picture.Bytes(), result.Bytes(), picture.width, picture.height,
                               picture.Format(), &params),
            OVRA_OK);
  return result;
}

// The arithmetic, which is the same on every platform.
TEST(MultiFrequency, Anchors) {
  OvraMultiFrequencyParams params = UnitParams(4);
  params.base_gain = 0.875F;
  for (int k = 0; k < 4; ++k) {
    const auto index = static_cast<float>(k);
    params.bands[k] = {1.75F - 0.25F * index, 0.0078125F, 0.5F, 0.125F};
  }
  EXPECT_EQ(Fnv1a(Processed(AnchorPicture(12), params)), 0x64878121);
  EXPECT_EQ(Fnv1a(Processed(AnchorPicture(10), params)), 0xce51c10b);

  const Picture16 wide = AnchorPicture(12);
  std::vector<uint8_t> bytes;
  for (const uint16_t sample : wide.samples) bytes.push_back(static_cast<uint8_t>(sample >> 4));
  ASSERT_EQ(Fnv1a(bytes.data(), bytes.size()), 0x1afece5e);
  EXPECT_EQ(OvraMultiFrequency(bytes.data(), bytes.data(), wide.width, wide.height, 0x120, &params),
            OVRA_OK);
  EXPECT_EQ(Fnv1a(bytes.data(), bytes.size()), 0xe86bd8d8);
}

}  // namespace
