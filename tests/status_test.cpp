// SPDX-License-Identifier: MIT
#include "ovra/status.h"

#include <gtest/gtest.h>

#include <limits>
#include <map>
#include <string>

#include "ovra/version.h"

namespace {

// All enumerators, as CMake found them in the header.
constexpr OvraStatusCode kCodes[] = {
#include "status_codes.inc"
};

const std::string kUnknown = "unknown status";

TEST(Status, EveryCodeHasItsOwnText) {
  std::map<std::string, OvraStatus> codes_of_texts;
  for (const OvraStatusCode code : kCodes) {
    const std::string text = OvraStatusText(code);
    EXPECT_FALSE(text.empty()) << code;
    EXPECT_NE(text, kUnknown) << code;
    EXPECT_NE(text.back(), '.') << code;
    const auto [other, is_new] = codes_of_texts.emplace(text, code);
    EXPECT_TRUE(is_new) << code << " and " << other->second << ": " << text;
  }
  EXPECT_GT(codes_of_texts.size(), 100U);  // the header was read
}

TEST(Status, OtherNumbersAreUnknown) {
  OvraStatus known = 0;
  for (OvraStatus status = -1000; status < 70000; ++status) {
    if (OvraStatusText(status) != kUnknown) ++known;
  }
  EXPECT_EQ(known, static_cast<OvraStatus>(std::size(kCodes)));
  EXPECT_EQ(OvraStatusText(std::numeric_limits<OvraStatus>::min()), kUnknown);
  EXPECT_EQ(OvraStatusText(std::numeric_limits<OvraStatus>::max()), kUnknown);
}

TEST(Version, LibraryAgreesWithTheHeader) {
  const uint32_t version = OvraGetVersion();
  EXPECT_EQ(version >> 16, uint32_t{OVRA_VERSION_MAJOR});
  EXPECT_EQ(version >> 8 & 0xFF, uint32_t{OVRA_VERSION_MINOR});
  EXPECT_EQ(version & 0xFF, uint32_t{OVRA_VERSION_PATCH});
}

}  // namespace
