// SPDX-License-Identifier: MIT
#include <algorithm>

#include "tools/run_program.h"

namespace {

using ovra_host::FileFormat;
using ovra_host::Image;
using ovra_test::Bytes;
using ovra_test::ProgramTest;

TEST_F(ProgramTest, Straightens) {
  Image image(120, 80, FileFormat(8, 3));
  std::fill_n(image.data(), image.size_bytes(), uint8_t{200});
  Write("a.png", image);
  // The cut shows nothing of what lies beyond; one pixel more at each side would.
  for (const char* angle : {"0.5", "-7.3", "30", "91", "180"}) {
    const std::string options = std::string("straighten --fill 0 a.png b.png --angle ") + angle;
    const ovra_test::RunResult run = Run(options);
    ASSERT_EQ(run.exit_code, 0) << run.errors;
    const Image inside = Read("b.png");
    EXPECT_NE(run.output.find(std::to_string(inside.width()) + " x "), std::string::npos);
    for (const uint8_t sample : Bytes(inside)) ASSERT_GE(sample, 199) << angle;
    EXPECT_NEAR(inside.width() * 80.0 / 120, inside.height(), 2) << angle;
    EXPECT_EQ(inside.width() == 120, std::string(angle) == "180");
    ASSERT_EQ(Run(options + " --crop same").exit_code, 0);
    const std::vector<uint8_t> same = Bytes(Read("b.png"));
    EXPECT_EQ(same.size(), image.size_bytes());
    EXPECT_EQ(*std::min_element(same.begin(), same.end()) == 200, std::string(angle) == "180");
  }
  ASSERT_EQ(Run("straighten --angle 7.3 --crop same a.png b.png").exit_code, 0);
  EXPECT_EQ(Bytes(Read("b.png")), Bytes(image));  // edges repeated
}

}  // namespace
