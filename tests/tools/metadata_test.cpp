// SPDX-License-Identifier: MIT
// What a photograph carries, through every format and back.
#include "metadata.h"

#include <gtest/gtest.h>
#include <lcms2.h>

#include <algorithm>

#include "exif.h"
#include "image_io.h"
#include "srgb.h"
#include "tools/temporary_folder.h"

namespace ovra_host {
namespace {

// Big-endian: orientation 6, maker "Ab", an EXIF directory with PixelXDimension (a long, 9999) and
// an exposure time of 1/125, and behind the first directory the offset of a preview's.
Blob SampleExif() {
  return {'M',  'M',  0, 42, 0, 0, 0, 8,                         // first directory at 8
          0,    3,                                               // of three entries
          0x01, 0x0F, 0, 2,  0, 0, 0, 3,  'A', 'b', 0,    0,     //
          0x01, 0x12, 0, 3,  0, 0, 0, 1,  0,   6,   0,    0,     //
          0x87, 0x69, 0, 4,  0, 0, 0, 1,  0,   0,   0,    50,    //
          0,    0,    0, 99,                                     // the preview's
          0,    2,                                               // at 50: two entries
          0x82, 0x9A, 0, 5,  0, 0, 0, 1,  0,   0,   0,    80,    //
          0xA0, 0x02, 0, 4,  0, 0, 0, 1,  0,   0,   0x27, 0x0F,  //
          0,    0,    0, 0,                                      //
          0,    0,    0, 1,  0, 0, 0, 125};                      // at 80: 1/125
}

Blob SomeText(const char* text) {
  const std::string string(text);
  return Blob(string.begin(), string.end());
}

// The primaries of sRGB with samples in proportion to light.
Blob LinearProfile() {
  const cmsCIExyY white = {0.3127, 0.3290, 1};
  const cmsCIExyYTRIPLE primaries = {{0.64, 0.33, 1}, {0.30, 0.60, 1}, {0.15, 0.06, 1}};
  cmsToneCurve* const curve = cmsBuildGamma(nullptr, 1);
  cmsToneCurve* curves[] = {curve, curve, curve};
  cmsHPROFILE profile = cmsCreateRGBProfile(&white, &primaries, curves);
  cmsUInt32Number bytes = 0;
  cmsSaveProfileToMem(profile, nullptr, &bytes);
  Blob blob(bytes);
  cmsSaveProfileToMem(profile, blob.data(), &bytes);
  cmsCloseProfile(profile);
  cmsFreeToneCurve(curve);
  return blob;
}

Picture SamplePicture() {
  Picture picture = {Image(3, 2, FileFormat(8, 3)), {}};
  for (size_t i = 0; i < 18; ++i) picture.image.data()[i] = static_cast<uint8_t>(i * 14);
  picture.metadata.profile = LinearProfile();
  picture.metadata.exif = SampleExif();
  picture.metadata.xmp = SomeText("<x:xmpmeta>\xC3\xA9</x:xmpmeta>");
  const Blob record = SomeText("\x1C\x02IPTC!");
  picture.metadata.iptc = WrapIptcRecord(record.data(), record.size());
  picture.metadata.comment = "seen at noon";
  picture.metadata.resolution = {300, 240};
  return picture;
}

TEST(Metadata, GoesThroughEveryFormat) {
  const ovra_test::TemporaryFolder folder;
  const Picture picture = SamplePicture();
  const ReadOptions as_it_is = {.auto_orient = false};
  const std::string formats[] = {".jpg", ".png", ".tif", ".webp", ".avif"};
  for (const std::string& first : formats) {
    for (const std::string& second : formats) {
      WritePicture(picture, folder.File("a" + first));
      const Picture between = ReadPicture(folder.File("a" + first), as_it_is);
      WritePicture(between, folder.File("b" + second));
      const Metadata back = ReadPicture(folder.File("b" + second), as_it_is).metadata;
      const std::string way = first + second;
      EXPECT_EQ(back.profile, picture.metadata.profile) << way;
      EXPECT_EQ(back.xmp, picture.metadata.xmp) << way;
      EXPECT_EQ(ExifOrientation(back.exif), 6) << way;
      const auto has = [&way](const char* name) { return way.find(name) != std::string::npos; };
      const bool keeps_little = has("webp") || has("avif");
      EXPECT_NEAR(back.resolution.x, keeps_little ? 0 : 300, 0.01) << way;
      EXPECT_NEAR(back.resolution.y, keeps_little ? 0 : 240, 0.01) << way;
      EXPECT_EQ(back.iptc, has("png") || keeps_little ? Blob() : picture.metadata.iptc) << way;
      EXPECT_EQ(back.comment, has("tif") || keeps_little ? "" : "seen at noon") << way;
      const ExifForTiff parts = SplitExif(back.exif, 0);
      const bool is_described = first == ".tif" || (has("tif") && !keeps_little);
      ASSERT_EQ(parts.texts.size(), is_described ? 2U : 1U) << way;
      EXPECT_EQ(parts.texts.back().second, "Ab") << way;
      // The exposure time, whatever the byte order of the blob was.
      const Blob time = {1, 0, 0, 0, 125, 0, 0, 0};
      EXPECT_NE(
          std::search(parts.directories.begin(), parts.directories.end(), time.begin(), time.end()),
          parts.directories.end())
          << way;
      EXPECT_EQ(parts.directories[2 + 12 + 8], 3) << way;  // PixelXDimension follows the width
    }
  }
}

TEST(Metadata, PicturesAreTurnedUprightOnReading) {
  const ovra_test::TemporaryFolder folder;
  Picture picture = SamplePicture();
  WritePicture(picture, folder.File("a.png"));
  const Picture upright = ReadPicture(folder.File("a.png"));
  ASSERT_EQ(upright.image.width(), 2);
  EXPECT_EQ(upright.image.Row(0)[3], picture.image.Row(0)[0]);  // the top left goes to the right
  EXPECT_EQ(ExifOrientation(upright.metadata.exif), 1);
  const Metadata stripped = ReadPicture(folder.File("a.png"), {.strip = true}).metadata;
  EXPECT_TRUE(stripped.exif.empty() && stripped.xmp.empty() && stripped.resolution.x == 0);
  EXPECT_EQ(stripped.profile, picture.metadata.profile);
}

TEST(Metadata, DamagedExifIsLeftAlone) {
  const Blob good = SampleExif();
  for (size_t size = 0; size < good.size(); ++size) {
    Blob cut(good.begin(), good.begin() + static_cast<std::ptrdiff_t>(size));
    ExifOrientation(cut);
    SetExifUpright(&cut);
    SetExifSize(&cut, 1, 1);
    SplitExif(cut, 8);
    EXPECT_EQ(cut.size(), size);
  }
  for (size_t i = 0; i < good.size(); ++i) {
    Blob damaged = good;
    damaged[i] = 0xFF;
    SetExifUpright(&damaged);
    SetExifSize(&damaged, 1, 1);
    EXPECT_LT(SplitExif(damaged, 8).directories.size(), size_t{1} << 20);
  }
}

TEST(Metadata, ConvertsColorsToSrgb) {
  Picture picture = {Image(2, 1, FileFormat(8, 3)), {}};
  picture.image.data()[0] = picture.image.data()[1] = picture.image.data()[2] = 55;
  ConvertToSrgb(&picture);
  EXPECT_EQ(picture.image.data()[0], 55);  // without a profile nothing happens
  picture.metadata.profile = LinearProfile();
  ConvertToSrgb(&picture);
  EXPECT_NEAR(picture.image.data()[0], 128, 1);  // linear 55 / 255 is 0.502 in sRGB
  ConvertToSrgb(&picture);
  EXPECT_NEAR(picture.image.data()[0], 128, 1);  // the profile is another one now
  picture.metadata.profile = Blob(200, 'x');
  EXPECT_ANY_THROW(ConvertToSrgb(&picture));
}

}  // namespace
}  // namespace ovra_host
