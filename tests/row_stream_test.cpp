// SPDX-License-Identifier: MIT
// Resizes with a turn and in bands give the bytes of the whole-picture resize.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <utility>
#include <vector>

#include "ovra/ovra.h"
#include "support/random.h"

namespace {

using ovra_test::Random;
using Bytes = std::vector<uint8_t>;

constexpr uint8_t kUntouched = 0x5A;

struct Resize {
  enum Kind { kRoi, kCore, kSmall };
  Kind kind;
  int32_t source_width, source_height, width, height;  // of the source, and of the upright result
  int32_t x, y, region_width, region_height;
  OvraPixelFormatCode format;
  float stretch;
  int32_t taps;

  size_t Stride(int32_t pixels) const {
    const size_t alignment = size_t{1} << (format >> 20 & 15);
    const size_t sample_bytes = (format & 15) == 0 ? 1 : 2;
    const size_t bytes = static_cast<size_t>(pixels) * ((format >> 4 & 15) + 1) * sample_bytes;
    return (bytes + alignment - 1) / alignment * alignment;
  }
  Bytes Image(int32_t pixels, int32_t rows) const {
    return Bytes(Stride(pixels) * static_cast<size_t>(rows), kUntouched);
  }
};

const float* Table() {
  static const std::vector<float> table = [] {
    std::vector<float> cubic(OVRA_KERNEL_TABLE_ENTRIES);
    OvraCalcCubicSpline(-0.75F, cubic.data());
    return cubic;
  }();
  return table.data();
}

// Each kind, enlarging and reducing, with regions that reach beyond the source, padded rows, both row
// orders, more taps than there are unrolled forms for, and one that is a copy.
constexpr Resize kResizes[] = {
    {Resize::kRoi, 41, 37, 60, 55, 3, 2, 30, 33, 0x1200120, 0, 0},
    {Resize::kRoi, 150, 120, 70, 90, 0, 0, 150, 120, 0x0000128, 0, 0},
    {Resize::kRoi, 150, 120, 20, 9, 1, 0, 149, 119, 0x1001030, 0, 0},
    {Resize::kRoi, 33, 29, 33, 29, 0, 0, 33, 29, 0x0200120, 0, 0},
    {Resize::kCore, 50, 60, 45, 25, -20, -30, 40, 50, 0x1100124, 1.5F, 6},
    {Resize::kCore, 50, 60, 77, 91, 10, 20, 40, 40, 0x0000000, 1.0F, 19},
    {Resize::kSmall, 140, 150, 13, 11, 5, 7, 130, 140, 0x0200004, 0, 0},
    {Resize::kSmall, 20, 15, 31, 40, 0, 0, 20, 15, 0x1000120, 0, 0},
};

Bytes RandomSource(Random& random, const Resize& r) {
  Bytes source = r.Image(r.source_width, r.source_height);
  for (uint8_t& byte : source) byte = static_cast<uint8_t>(random());
  for (size_t i = 1; (r.format & 15) == 4 && i < source.size(); i += 2) source[i] &= 15;
  return source;
}

OvraStatus ResizeWhole(const Resize& r, const uint8_t* source, uint8_t* destination) {
  if (r.kind == Resize::kRoi) {
    return OvraResizeImageROI(source, r.source_width, r.source_height, destination, r.width,
                              r.height, r.format, r.x, r.y, r.region_width, r.region_height);
  }
  if (r.kind == Resize::kCore) {
    return OvraResizeImageCore(source, r.source_width, r.source_height, destination, r.width,
                               r.height, r.format, r.x, r.y, r.region_width, r.region_height,
                               Table(), r.stretch, r.taps);
  }
  return OvraSmallResizeImage(source, r.source_width, r.source_height, destination, r.width,
                              r.height, r.format, r.x, r.y, r.region_width, r.region_height,
                              Table());
}

OvraStatus ResizeTurned(const Resize& r, int32_t mode, const uint8_t* source,
                        uint8_t* destination) {
  const int32_t width = mode % 2 == 0 ? r.width : r.height;
  const int32_t height = mode % 2 == 0 ? r.height : r.width;
  if (r.kind == Resize::kRoi) {
    return OvraResizeRotateImageROI(source, r.source_width, r.source_height, destination, width,
                                    height, r.format, r.x, r.y, r.region_width, r.region_height,
                                    mode);
  }
  if (r.kind == Resize::kCore) {
    return OvraResizeRotateImageCore(source, r.source_width, r.source_height, destination, width,
                                     height, r.format, r.x, r.y, r.region_width, r.region_height,
                                     Table(), r.stretch, r.taps, mode);
  }
  return OvraSmallResizeRotateImage(source, r.source_width, r.source_height, destination, width,
                                    height, r.format, r.x, r.y, r.region_width, r.region_height,
                                    Table(), mode);
}

TEST(ResizeRotate, EqualsTheTwoCalls) {
  Random random(1);
  for (const Resize& r : kResizes) {
    const Bytes source = RandomSource(random, r);
    Bytes upright = r.Image(r.width, r.height);
    ASSERT_EQ(ResizeWhole(r, source.data(), upright.data()), OVRA_OK);
    for (int32_t mode = 0; mode < 8; ++mode) {
      Bytes expected = mode % 2 == 0 ? r.Image(r.width, r.height) : r.Image(r.height, r.width);
      Bytes actual = expected;
      OvraRotateImage(upright.data(), expected.data(), r.width, r.height, r.format, mode);
      ASSERT_EQ(ResizeTurned(r, mode, source.data(), actual.data()), OVRA_OK);
      ASSERT_TRUE(expected == actual) << &r - kResizes << " mode " << mode;
    }
  }
}

// tw / w is 0.33 and th / h 0.32: the ratio is that of the upright size, and for the engine.
TEST(ResizeRotate, TheUprightSizeGivesTheRatio) {
  const Bytes source(1000 * 500, 100);
  Bytes destination(330 * 160, kUntouched);
  // A destination too small for the taps tells the engine from the reduction.
  EXPECT_EQ(OvraResizeRotateImageROI(source.data(), 1000, 500, destination.data(), 160, 330, 0, 0,
                                     0, 1000, 500, 1),
            OVRA_OK);
  EXPECT_EQ(OvraResizeRotateImageROI(source.data(), 1000, 500, destination.data(), 7, 330, 0, 0, 0,
                                     1000, 500, 1),
            OVRA_ERROR_RESIZE_DESTINATION_SMALL);
  EXPECT_EQ(OvraResizeRotateImageROI(source.data(), 1000, 500, destination.data(), 7, 329, 0, 0, 0,
                                     1000, 500, 1),
            OVRA_OK);
}

// A stream of bands.
class Bands {
 public:
  explicit Bands(const Resize& r) : r_(r), joined_(r.Image(r.width, r.height)) {
    std::vector<float> table(Table(), Table() + OVRA_KERNEL_TABLE_ENTRIES);
    const OvraStatus status =
        r.kind == Resize::kCore
            ? OvraBandResizeCore_Init(r.source_width, r.source_height, r.width, r.height, r.format,
                                      r.x, r.y, r.region_width, r.region_height, table.data(),
                                      r.stretch, r.taps, &context_)
            : OvraBandResize_Init(r.source_width, r.source_height, r.width, r.height, r.format, r.x,
                                  r.y, r.region_width, r.region_height, &context_);
    EXPECT_EQ(status, OVRA_OK);
    std::fill(table.begin(), table.end(), 0.0F);  // the context has its own copy
  }
  ~Bands() {
    EXPECT_EQ(OvraBandResize_Free(&context_), OVRA_OK);
    EXPECT_EQ(context_, nullptr);
  }
  Bands(const Bands&) = delete;
  Bands& operator=(const Bands&) = delete;

  // Bands of so many rows, until the picture is complete.
  void Run(const Bytes& source, int32_t rows, int32_t room) {
    taken_ = written_ = 0;
    while (taken_ < r_.source_height || written_ < r_.height) {
      // Copies, so that nothing can be read after the call.
      const int32_t count = std::min(rows, r_.source_height - taken_);
      const auto* const begin = source.data() + r_.Stride(r_.source_width) * Rows(taken_);
      const Bytes band(begin, begin + r_.Stride(r_.source_width) * Rows(count));
      int32_t taken = -1;
      int32_t written = -1;
      ASSERT_EQ(OvraBandResize(band.data(), r_.source_width, count,
                               joined_.data() + r_.Stride(r_.width) * Rows(written_), r_.width,
                               std::min(room, r_.height - written_), r_.format, taken_, &taken,
                               &written, context_),
                OVRA_OK);
      ASSERT_GT(taken + written, 0);
      taken_ += taken;
      written_ += written;
    }
  }

  // Takes a row, after which the stream is still good when calls are refused.
  void Misuse(const Bytes& source) {
    struct Call {
      OvraStatus status;
      int32_t width, rows, to_width, room;
      OvraPixelFormatCode format;
      int32_t first;
    };
    const int32_t w = r_.source_width;
    const int32_t h = r_.source_height;
    const Call calls[] = {
        {OVRA_OK, w, 1, r_.width, 0, r_.format, 0},
        {OVRA_ERROR_BAND_RESIZE_CHANGED, w + 1, 1, r_.width, 1, r_.format, 1},
        {OVRA_ERROR_BAND_RESIZE_CHANGED, w, 1, r_.width - 1, 1, r_.format, 1},
        {OVRA_ERROR_BAND_RESIZE_CHANGED, w, 1, r_.width, 1, r_.format ^ 0x80000000, 0},
        {OVRA_ERROR_BAND_RESIZE_POSITION, w, -1, r_.width, 1, r_.format, 1},
        {OVRA_ERROR_BAND_RESIZE_POSITION, w, 1, r_.width, -1, r_.format, 1},
        {OVRA_ERROR_BAND_RESIZE_POSITION, w, 0, r_.width, 1, r_.format, -1},
        {OVRA_ERROR_BAND_RESIZE_POSITION, w, 0, r_.width, 1, r_.format, 2},
        {OVRA_ERROR_BAND_RESIZE_POSITION, w, h, r_.width, 1, r_.format, 1},
        {OVRA_ERROR_BAND_RESIZE_POSITION, w, h + 1, r_.width, 1, r_.format, 0},
        {OVRA_OK, w, 0, r_.width, 0, r_.format, 1},  // where the first call left off
    };
    Bytes destination = r_.Image(r_.width, 1);
    int32_t taken = -1;
    int32_t written = -1;
    for (const Call& c : calls) {
      EXPECT_EQ(OvraBandResize(source.data(), c.width, c.rows, destination.data(), c.to_width,
                               c.room, c.format, c.first, &taken, &written, context_),
                c.status);
      EXPECT_EQ(taken, c.status == OVRA_OK ? c.rows : 0);
      EXPECT_EQ(written, 0);
    }
    EXPECT_EQ(OvraBandResize(nullptr, w, 1, nullptr, r_.width, 0, r_.format, 0, &taken, &written,
                             context_),
              OVRA_ERROR_RESIZE_NULL_IMAGE);
    EXPECT_EQ(OvraBandResize(nullptr, w, 0, nullptr, r_.width, 0, r_.format, 0, &taken, nullptr,
                             context_),
              OVRA_ERROR_RESIZE_NULL_IMAGE);
    EXPECT_EQ(destination, r_.Image(r_.width, 1));
  }

  const Bytes& Joined() const { return joined_; }

 private:
  static size_t Rows(int32_t count) { return static_cast<size_t>(count); }

  Resize r_;
  Bytes joined_;
  OvraBandResizeContext* context_ = nullptr;
  int32_t taken_ = 0;
  int32_t written_ = 0;
};

// Also after misuse and a picture that was abandoned.
TEST(BandResize, JoinsToTheWholeResize) {
  Random random(2);
  for (const Resize& r : kResizes) {
    if (r.kind == Resize::kSmall) continue;
    SCOPED_TRACE(&r - kResizes);
    const Bytes source = RandomSource(random, r);
    Bytes whole = r.Image(r.width, r.height);
    ASSERT_EQ(ResizeWhole(r, source.data(), whole.data()), OVRA_OK);
    Bands bands(r);
    for (const auto& [rows, room] : {std::pair(1, 1), {7, 2}, {2, 100}, {200, 200}}) {
      bands.Misuse(source);
      ASSERT_NO_FATAL_FAILURE(bands.Run(source, rows, room));
      ASSERT_TRUE(bands.Joined() == whole) << rows << ' ' << room;
    }
  }
}

}  // namespace
