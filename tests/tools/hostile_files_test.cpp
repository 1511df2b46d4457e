// SPDX-License-Identifier: MIT
// Whatever the bytes of a file are, reading it gives a picture or one Error of one line, and neither
// leaks nor reaches outside its memory (the sanitizers watch).
#include <gtest/gtest.h>
#include <tiffio.h>

#include <string>

#include "error.h"
#include "image_io.h"
#include "support/random.h"
#include "tools/temporary_folder.h"

namespace {

using ovra_host::FileFormat;
using ovra_host::Image;
using ovra_test::FileBytes;
using ovra_test::TemporaryFolder;

Image Gradient(uint32_t depth_bits) {
  Image image(40, 30, FileFormat(depth_bits, 3));
  for (size_t i = 0; i < image.size_bytes(); ++i) image.data()[i] = static_cast<uint8_t>(i * i / 7);
  return image;
}

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
    ovra_host::WriteImage(Gradient(depth_bits), path);
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

INSTANTIATE_TEST_SUITE_P(Formats, HostileFileTest, testing::Values(".png", ".jpg", ".tif", ".bmp"),
                         [](const auto& test) { return std::string(test.param + 1); });

TEST(HostileFile, NoPictureAtAll) {
  const TemporaryFolder folder;
  EXPECT_NE(ReadingError(folder, {}), "");
  EXPECT_NE(ReadingError(folder, FileBytes(1000, 0)), "");
  EXPECT_NE(ReadingError(folder, {'B', 'M'}), "");
  EXPECT_THROW(ovra_host::ReadImage(folder.File("absent.png")), ovra_host::Error);
  EXPECT_THROW(ovra_host::ReadImage(folder.File(".")), ovra_host::Error);
}

// A header that claims a large picture is refused before memory is asked for: by the limit, or
// because no file this short could hold it.
TEST(HostileFile, LargeClaimsAreRefused) {
  const TemporaryFolder folder;
  ovra_host::WriteImage(Gradient(8), folder.File("a.bmp"));
  const FileBytes good = ovra_test::ReadBytes(folder.File("a.bmp"));
  constexpr size_t kWidth = 18;
  constexpr size_t kHeight = 22;
  const struct {
    size_t field;
    uint8_t bytes[4];
    const char* reason;
  } cases[] = {{kWidth, {0xFF, 0xFF, 0xFF, 0x7F}, "too large"},
               {kHeight, {0x00, 0x00, 0x00, 0x80}, "too large"},
               {kHeight, {0xFF, 0xFF, 0x07, 0x00}, "too short"},
               {kWidth, {0, 0, 0, 0}, "claims 0 x 30"}};
  for (const auto& c : cases) {
    FileBytes bytes = good;
    std::copy(std::begin(c.bytes), std::end(c.bytes), bytes.begin() + static_cast<int>(c.field));
    EXPECT_NE(ReadingError(folder, bytes).find(c.reason), std::string::npos) << c.reason;
  }
}

// Samples that are not compressed take as much of the file as of memory.
TEST(HostileFile, PlainSamplesMustBeInTheFile) {
  const TemporaryFolder folder;
  TIFF* const tiff = TIFFOpen(folder.File("a.tif").c_str(), "w");
  TIFFSetField(tiff, TIFFTAG_IMAGEWIDTH, 10000);
  TIFFSetField(tiff, TIFFTAG_IMAGELENGTH, 10000);
  TIFFSetField(tiff, TIFFTAG_BITSPERSAMPLE, 8);
  TIFFSetField(tiff, TIFFTAG_SAMPLESPERPIXEL, 1);
  TIFFSetField(tiff, TIFFTAG_PHOTOMETRIC, PHOTOMETRIC_MINISBLACK);
  std::vector<uint8_t> row(10000);
  TIFFWriteScanline(tiff, row.data(), 0, 0);
  TIFFClose(tiff);
  EXPECT_NE(ReadingError(folder, ovra_test::ReadBytes(folder.File("a.tif"))).find("too short"),
            std::string::npos);
}

}  // namespace
