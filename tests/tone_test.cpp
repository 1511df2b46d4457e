// SPDX-License-Identifier: MIT
#include "ovra/tone.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <vector>

#include "support/tone_forms.h"
#include "support/tone_pictures.h"

namespace {

using ovra_test::AnchorPicture;
using ovra_test::Fnv1a;
using ovra_test::Picture16;

using ovra_test::kToneDefaults;
using ovra_test::kToneForms;
using ovra_test::ToneExports;

Picture16 Toned(const ToneExports& form, const Picture16& picture,
                const OvraHyperToneParams& params, const uint16_t* curve = nullptr) {
  void* context = nullptr;
  const ToneExports::Init init = picture.depth_bits == 10 ? form.init : form.init_12;
  EXPECT_EQ(init(picture.Format(), &params, curve, &context), OVRA_OK);
  Picture16 result = picture;
  EXPECT_EQ(form.run(picture.Bytes(), result.Bytes(), picture.width, picture.height,
                     picture.Format(), context),
            OVRA_OK);
  EXPECT_EQ(form.free(&context), OVRA_OK);
  EXPECT_EQ(context, nullptr);
  return result;
}

// The arithmetic, which is the same on every platform.
TEST(Tone, Anchors) {
  struct Case {
    OvraHyperToneParams params;
    uint32_t depth_bits;
    uint32_t hashes[4];
  };
  constexpr OvraHyperToneParams kOther = {0.75F, 1.25F, -0.25F, 1.5F, 0.0625F, 0.5F, 3, 0};
  const Case cases[] = {
      {kToneDefaults, 10, {0xd3cffa97, 0x97f809b9, 0x9879e008, 0x4c577fba}},
      {kToneDefaults, 12, {0xdd43d830, 0x5b1d4df0, 0x69696672, 0x71c38605}},
      {kOther, 10, {0xdb997a31, 0xa2dc7abd, 0x64d5a180, 0xd8f9450d}},
      {kOther, 12, {0xebbb9e76, 0xfd0bced6, 0x058debf2, 0xefa66fe2}},
  };
  ASSERT_EQ(Fnv1a(AnchorPicture(12)), 0xc741fe82);
  ASSERT_EQ(Fnv1a(AnchorPicture(10)), 0xf1171100);
  for (const Case& c : cases) {
    for (size_t i = 0; i < 4; ++i) {
      EXPECT_EQ(Fnv1a(Toned(kToneForms[i], AnchorPicture(c.depth_bits), c.params)), c.hashes[i])
          << kToneForms[i].name << ", " << c.depth_bits << " bits, scale " << c.params.scale;
    }
  }
}

}  // namespace
