// SPDX-License-Identifier: MIT
// Unusual files at both ends of the program: pipes, links, long names, signals.
#include <sys/stat.h>

#include "tools/run_program.h"

namespace {

namespace fs = std::filesystem;
using ovra_test::ProgramTest;
using ovra_test::RunResult;

TEST_F(ProgramTest, PipesAreRefusedWithoutWaiting) {
  ASSERT_EQ(::mkfifo(folder_.File("pipe.png").c_str(), 0600), 0);
  ExpectFailure("info pipe.png", "pipe.png: is not a regular file");
  Write("a.png", Counting(8, 1));
  ExpectFailure("rotate --mode half a.png pipe.png", "is not a regular file");
}

TEST_F(ProgramTest, LinksStayLinks) {
  Write("a.png", Counting(8, 1));
  Write("first.png", Counting(8, 3));
  fs::create_hard_link(folder_.File("first.png"), folder_.File("second.png"));
  fs::create_directory(folder_.File("sub"));
  fs::create_symlink("sub/target.png", folder_.File("dangling.png"));
  ASSERT_EQ(Run("rotate --mode half a.png first.png").exit_code, 0);
  EXPECT_EQ(fs::hard_link_count(folder_.File("second.png")), 2U);
  EXPECT_EQ(Read("second.png").channels(), 1U);
  ASSERT_EQ(Run("rotate --mode half a.png dangling.png").exit_code, 0);
  EXPECT_TRUE(fs::is_symlink(folder_.File("dangling.png")));
  EXPECT_EQ(Read("sub/target.png").channels(), 1U);
}

TEST_F(ProgramTest, TheLongestNamesCanBeWritten) {
  Write("a.png", Counting(8, 1));
  const std::string name = std::string(251, 'n') + ".png";
  ASSERT_EQ(Run("rotate --mode half a.png " + name).exit_code, 0);
  EXPECT_EQ(Read(name).height(), 3);
}

// A shell lets what it runs in the background ignore SIGINT. The signal comes while the result is written: its pixels take far longer than the wait.
TEST_F(ProgramTest, SignalsLeaveNoTemporaryFile) {
  Image image(2000, 1500, ovra_host::FileFormat(16, 3));
  for (size_t i = 0; i < image.size_bytes(); ++i) {
    image.data()[i] = static_cast<uint8_t>(i * i >> 11 ^ i);
  }
  Write("a.tif", image);
  for (const char* signal : {"TERM", "HUP"}) {
    const std::string wait_for_file = "('" OVRA_PROGRAM
                                      "' rotate --mode half a.tif b.png & p=$!; "
                                      "until ls .ovra-* >/dev/null 2>&1; do sleep 0.01; done; "
                                      "kill -" +
                                      std::string(signal) + " $p; wait $p; test $? -gt 128)";
    EXPECT_EQ(Run("--version", wait_for_file).exit_code, 0) << signal;
    EXPECT_EQ(folder_.FileCount(), 1U) << signal;
  }
}

}  // namespace
