// SPDX-License-Identifier: MIT
#include "ovra/tone.h"

#include <gtest/gtest.h>

#include "ovra/filter.h"

namespace {

using Free = OvraStatus(OVRA_CALL*)(void**);

// All are one release: each gives back what any of these families has made.
TEST(Tone, ReleasesContexts) {
  const int32_t weights[] = {32, 64, 32};
  const std::vector<int16_t> table(2048, 128);
  for (const Free free_context : {OvraHyperTone_Free, OvraHyperToneLight_Free,
                                  OvraHybridHyperTone_Free, OvraHybridHyperToneLight_Free}) {
    OvraYUsmDoubleContext* made = nullptr;
    ASSERT_EQ(OvraYUsmDouble_Init(0x120, 3, weights, 3, weights, 1.0F, table.data(), table.data(),
                                  1.0F, table.data(), table.data(), &made),
              OVRA_OK);
    void* context = made;
    EXPECT_EQ(free_context(&context), OVRA_OK);
    EXPECT_EQ(context, nullptr);
    EXPECT_EQ(free_context(&context), OVRA_OK);
    EXPECT_EQ(free_context(nullptr), OVRA_OK);
  }
}

}  // namespace
