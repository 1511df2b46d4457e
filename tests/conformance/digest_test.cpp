// SPDX-License-Identifier: MIT
// Random calls of every operation give the pinned results, on every platform. Run with each value of
// OVRA_TIER.
#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <iomanip>
#include <map>
#include <sstream>
#include <string>
#include <vector>

#include "conformance/operations.h"

namespace {

using ovra_test::Operation;

constexpr uint32_t kSeedsABlock = 16;
constexpr uint32_t kBlocks = 10;

using Digests = std::vector<std::string>;  // of the blocks, as hexadecimal numbers

// 64-bit FNV-1a.
class Hash {
 public:
  void Add(const std::vector<uint8_t>& bytes) {
    for (const uint8_t byte : bytes) value_ = (value_ ^ byte) * 0x100000001B3;
  }
  std::string Text() const {
    std::ostringstream text;
    text << std::hex << std::setw(16) << std::setfill('0') << value_;
    return text.str();
  }

 private:
  uint64_t value_ = 0xCBF29CE484222325;
};

Digests DigestsOf(const Operation& operation) {
  Digests digests;
  for (uint32_t block = 0; block < kBlocks; ++block) {
    Hash hash;
    for (uint32_t k = 0; k < kSeedsABlock; ++k) {
      const uint32_t seed = block * kSeedsABlock + k;
      const ovra_test::Outcome outcome = MakeCall(operation, ovra_test::Draw(seed));
      EXPECT_EQ(outcome.complaint, "") << operation.name << ", seed " << seed;
      hash.Add(outcome.output);
    }
    digests.push_back(hash.Text());
  }
  return digests;
}

// One line an operation: its name, and the digests of its blocks.
std::map<std::string, Digests> PinnedDigests() {
  std::map<std::string, Digests> pinned;
  std::ifstream file(OVRA_DIGESTS);
  for (std::string line; std::getline(file, line);) {
    std::istringstream words(line);
    std::string name;
    words >> name;
    for (std::string digest; words >> digest;) pinned[name].push_back(digest);
  }
  return pinned;
}

void Pin(const char* name, const Digests& digests) {
  std::ofstream file(OVRA_DIGESTS, std::ios::app);
  file << name;
  for (const std::string& digest : digests) file << ' ' << digest;
  file << '\n';
}

class Conformance : public testing::TestWithParam<Operation> {};

TEST_P(Conformance, Digests) {
  const Digests digests = DigestsOf(GetParam());
  const std::map<std::string, Digests> pinned = PinnedDigests();
  if (pinned.count(GetParam().name) == 0 && std::getenv("OVRA_PIN_DIGESTS") != nullptr) {
    return Pin(GetParam().name, digests);
  }
  ASSERT_EQ(pinned.count(GetParam().name), 1U) << GetParam().name << " has no digests";
  EXPECT_EQ(digests, pinned.at(GetParam().name)) << GetParam().name;
}

// Bands draw the calls of the whole resizes.
TEST(BandResize, DigestsAreThoseOfTheWhole) {
  std::map<std::string, Digests> pinned = PinnedDigests();
  EXPECT_EQ(pinned["band-resize"], pinned["resize"]);
  EXPECT_EQ(pinned["band-resize-core"], pinned["resize-core"]);
}

INSTANTIATE_TEST_SUITE_P(Calls, Conformance, testing::ValuesIn(ovra_test::kOperations),
                         ovra_test::OperationName);

}  // namespace
