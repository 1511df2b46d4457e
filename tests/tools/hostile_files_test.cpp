// SPDX-License-Identifier: MIT
// Whatever the bytes of a file are, reading it gives a picture or one Error of one line, and neither
// leaks nor reaches outside its memory (the sanitizers watch).
#include <png.h>

#include "error.h"
#include "tools/run_program.h"

namespace {

using ovra_test::FileBytes;
using ovra_test::TemporaryFolder;

// What reading these bytes says; empty when it gives a picture.
std::string ReadingError(const TemporaryFolder& folder, const FileBytes& bytes) {
  ovra_test::WriteBytes(folder.File("hostile"), bytes);
  try {
    ovra_host::ReadImage(folder.File("hostile"));
  } catch (const ovra_host::Error& error) {
    return error.what();
  }
  return "";
}

class HostileFileTest : public testing::TestWithParam<const char*> {
 protected:
  void SetUp() override {
    const std::string path = folder_.File(std::string("good") + GetParam());
    const uint32_t depth_bits = std::string(GetParam()) == ".png" ? 16 : 8;
    ovra_host::WriteImage(ovra_test::Noise(40, 30, depth_bits, 3), path);
    good_ = ovra_test::ReadBytes(path);
    ASSERT_EQ(ReadingError(folder_, good_), "");
  }

  const TemporaryFolder folder_;
  FileBytes good_;
};

TEST_P(HostileFileTest, TruncatedAnywhereIsRefusedInOneLine) {
  // The last bytes of a TIFF or PNG directory may be dispensable; the pixels never are.
  for (size_t size = 0; size + 8 < good_.size(); size += 1 + good_.size() / 97) {
    const auto end = good_.begin() + static_cast<std::ptrdiff_t>(size);
    const std::string error = ReadingError(folder_, FileBytes(good_.begin(), end));
    EXPECT_NE(error, "") << "of " << good_.size() << " bytes only " << size;
    EXPECT_EQ(error.find('\n'), std::string::npos);
  }
}

TEST_P(HostileFileTest, DamageNeverDoesMoreThanRefuse) {
  ovra_test::Random random(7);
  int refused = 0;
  for (int i = 0; i < 300; ++i) {
    FileBytes bytes = good_;
    const int32_t last = static_cast<int32_t>(bytes.size()) - 1;
    // Half of the damage goes into the headers, where it matters most.
    const int32_t reach = i % 2 == 0 ? std::min(last, 200) : last;
    for (int32_t change = 0; change <= i % 4; ++change) {
      bytes[static_cast<size_t>(ovra_test::RandomInt(random, 0, reach))] =
          static_cast<uint8_t>(random() >> 24);
    }
    refused += ReadingError(folder_, bytes).empty() ? 0 : 1;
  }
  EXPECT_GT(refused, 0);
}

INSTANTIATE_TEST_SUITE_P(Formats, HostileFileTest,
                         testing::Values(".png", ".jpg", ".tif", ".bmp", ".webp", ".avif"),
                         [](const auto& test) { return std::string(test.param + 1); });

// Chunks of text that unfold to far more than the file: they are skipped, not kept.
TEST(HostileFile, CompressedTextTakesLittleMemory) {
  const TemporaryFolder folder;
  std::FILE* const stream = std::fopen(folder.File("a.png").c_str(), "wb");
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
      {"ovra", "rotate", "--mode", "half", folder.File("a.png"), folder.File("b.png")});
  EXPECT_EQ(ovra_host::ReadImage(folder.File("b.png")).data()[0], 77);
  // What a sanitizer holds itself is counted too.
  EXPECT_LT(peak, int64_t{OVRA_SANITIZED ? 400 : 100} << 20);
}

}  // namespace
