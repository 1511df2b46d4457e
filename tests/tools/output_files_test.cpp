// SPDX-License-Identifier: MIT
// Unusual files at both ends of the program: pipes, links, long names, signals.
#include <png.h>
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

// Chunks of text that unfold to far more than the file: they are skipped, not kept.
TEST_F(ProgramTest, CompressedTextTakesLittleMemory) {
  std::FILE* const stream = std::fopen(folder_.File("a.png").c_str(), "wb");
  png_structp png = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
  png_infop info = png_create_info_struct(png);
  png_init_io(png, stream);
  png_set_IHDR(png, info, 1, 1, 8, PNG_COLOR_TYPE_GRAY, PNG_INTERLACE_NONE, 0, 0);
  std::string text(7'000'000, 'a');
  png_text entry = {};
  std::string key = "Remark";
  entry.key = key.data();
  entry.text = text.data();
  for (int i = 0; i < 60; ++i) {
    entry.compression = i % 2 == 0 ? PNG_TEXT_COMPRESSION_zTXt : PNG_ITXT_COMPRESSION_zTXt;
    png_set_text(png, info, &entry, 1);
  }
  png_write_info(png, info);
  const png_byte pixel = 77;
  png_write_row(png, &pixel);
  png_write_end(png, nullptr);
  png_destroy_write_struct(&png, &info);
  std::fclose(stream);
  const int64_t peak = ovra_test::PeakMemory(
      {"ovra", "rotate", "--mode", "half", folder_.File("a.png"), folder_.File("b.png")});
  EXPECT_EQ(Read("b.png").data()[0], 77);
  // What a sanitizer holds itself is counted too.
  EXPECT_LT(peak, int64_t{OVRA_SANITIZED ? 400 : 100} << 20);
}

}  // namespace
