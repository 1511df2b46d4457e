// SPDX-License-Identifier: MIT
// Resizes with a turn and in bands give the bytes of the whole-picture resize.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <vector>

#include "ovra/ovra.h"
#include "support/random.h"

namespace {

using ovra_test::Random;
using ovra_test::RandomInt;
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
  double Ratio() const {
    return std::max(static_cast<double>(width) / region_width,
                    static_cast<double>(height) / region_height);
  }
  bool BottomUp() const { return (format & 0x1000000) != 0; }
};

const float* Table() {
  static const std::vector<float> table = [] {
    std::vector<float> cubic(OVRA_KERNEL_TABLE_ENTRIES);
    OvraCalcCubicSpline(-0.75F, cubic.data());
    return cubic;
  }();
  return table.data();
}

Resize RandomResize(Random& random) {
  constexpr OvraPixelFormatCode kPixels[] = {0x0000, 0x0120, 0x1030, 0x0004, 0x0124, 0x0128};
  Resize r = {};
  r.kind = static_cast<Resize::Kind>(RandomInt(random, 0, 2));
  r.taps = RandomInt(random, 4, 20);
  r.stretch = 0.25F * static_cast<float>(RandomInt(random, 1, 12));
  const int32_t least = r.kind == Resize::kCore ? r.taps : 8;
  r.source_width = RandomInt(random, least, 150);
  r.source_height = RandomInt(random, least, 150);
  r.region_width = RandomInt(random, least, r.source_width);
  r.region_height = RandomInt(random, least, r.source_height);
  const int32_t before = r.kind == Resize::kCore ? 40 : 0;
  r.x = RandomInt(random, -before, r.source_width - r.region_width);
  r.y = RandomInt(random, -before, r.source_height - r.region_height);
  const bool strong = r.kind != Resize::kCore && RandomInt(random, 0, 1) == 0;
  const int32_t most = strong ? least : 140;
  r.width = RandomInt(random, strong ? 1 : least, most);
  r.height = RandomInt(random, strong ? 1 : least, most);
  if (r.Ratio() >= 0.33) {  // for the engine after all
    r.width = std::max(r.width, least);
    r.height = std::max(r.height, least);
  }
  r.format = kPixels[RandomInt(random, 0, 5)] |
             static_cast<uint32_t>(RandomInt(random, 0, 2)) << 20 |
             static_cast<uint32_t>(RandomInt(random, 0, 1)) << 24;
  if (RandomInt(random, 0, 9) == 0) {  // copied
    r.x = r.y = 0;
    r.width = r.region_width = r.source_width;
    r.height = r.region_height = r.source_height;
  }
  return r;
}

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
  for (int trial = 0; trial < 1500; ++trial) {
    const Resize r = RandomResize(random);
    const int32_t mode = trial % 8;
    const Bytes source = RandomSource(random, r);
    Bytes upright = r.Image(r.width, r.height);
    ASSERT_EQ(ResizeWhole(r, source.data(), upright.data()), OVRA_OK) << trial;
    Bytes expected = mode % 2 == 0 ? r.Image(r.width, r.height) : r.Image(r.height, r.width);
    Bytes actual = expected;
    OvraRotateImage(upright.data(), expected.data(), r.width, r.height, r.format, mode);
    ASSERT_EQ(ResizeTurned(r, mode, source.data(), actual.data()), OVRA_OK) << trial;
    ASSERT_TRUE(expected == actual) << trial << " kind " << r.kind << " mode " << mode;
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

// A stream of bands, and what it must have come to.
class Bands {
 public:
  explicit Bands(const Resize& r) : r_(r), joined_(r.Image(r.width, r.height)) {
    const OvraStatus status =
        r.kind == Resize::kCore
            ? OvraBandResizeCore_Init(r.source_width, r.source_height, r.width, r.height, r.format,
                                      r.x, r.y, r.region_width, r.region_height, Table(), r.stretch,
                                      r.taps, &context_)
            : OvraBandResize_Init(r.source_width, r.source_height, r.width, r.height, r.format, r.x,
                                  r.y, r.region_width, r.region_height, &context_);
    EXPECT_EQ(status, OVRA_OK);
  }
  ~Bands() {
    EXPECT_EQ(OvraBandResize_Free(&context_), OVRA_OK);
    EXPECT_EQ(context_, nullptr);
  }
  Bands(const Bands&) = delete;
  Bands& operator=(const Bands&) = delete;

  void Run(const Bytes& source, int32_t rows, int32_t room) {
    // Copies, so that nothing can be read after the call.
    const auto* const begin = source.data() + r_.Stride(r_.source_width) * Row(taken_);
    const Bytes band(begin, begin + r_.Stride(r_.source_width) * Row(rows));
    int32_t taken = -1;
    int32_t written = -1;
    ASSERT_EQ(OvraBandResize(band.data(), r_.source_width, rows,
                             joined_.data() + r_.Stride(r_.width) * Row(written_), r_.width, room,
                             r_.format, taken_, &taken, &written, context_),
              OVRA_OK);
    Expect(taken_ + rows, room, taken, written);
    taken_ += taken;
    written_ += written;
  }

  // The stream so far goes on after calls that are refused.
  void Misuse(const Bytes& source) {
    struct Call {
      OvraStatus status;
      int32_t width, rows, to_width, room;
      OvraPixelFormatCode format;
      int32_t first;
    };
    const int32_t w = r_.source_width;
    const int32_t left = r_.source_height - taken_;
    const Call calls[] = {
        {OVRA_ERROR_BAND_RESIZE_CHANGED, w + 1, 1, r_.width, 1, r_.format, taken_},
        {OVRA_ERROR_BAND_RESIZE_CHANGED, w, 1, r_.width - 1, 1, r_.format, taken_},
        {OVRA_ERROR_BAND_RESIZE_CHANGED, w, 1, r_.width, 1, r_.format ^ 0x80000000, 0},
        {OVRA_ERROR_BAND_RESIZE_POSITION, w, -1, r_.width, 1, r_.format, taken_},
        {OVRA_ERROR_BAND_RESIZE_POSITION, w, 1, r_.width, -1, r_.format, taken_},
        {OVRA_ERROR_BAND_RESIZE_POSITION, w, 0, r_.width, 1, r_.format, -1},
        {OVRA_ERROR_BAND_RESIZE_POSITION, w, 0, r_.width, 1, r_.format, taken_ + 1},
        {OVRA_ERROR_BAND_RESIZE_POSITION, w, left + 1, r_.width, 1, r_.format, taken_},
        {OVRA_ERROR_BAND_RESIZE_POSITION, w, r_.source_height + 1, r_.width, 1, r_.format, 0},
    };
    Bytes destination = r_.Image(r_.width, 1);
    for (const Call& c : calls) {
      int32_t taken = -1;
      int32_t written = -1;
      EXPECT_EQ(OvraBandResize(source.data(), c.width, c.rows, destination.data(), c.to_width,
                               c.room, c.format, c.first, &taken, &written, context_),
                c.status);
      EXPECT_EQ(taken, 0);
      EXPECT_EQ(written, 0);
    }
    int32_t count = 7;
    EXPECT_EQ(
        OvraBandResize(nullptr, w, 1, nullptr, r_.width, 0, r_.format, 0, &count, &count, context_),
        OVRA_ERROR_RESIZE_NULL_IMAGE);
    EXPECT_EQ(OvraBandResize(nullptr, w, 0, nullptr, r_.width, 0, r_.format, 0, &count, nullptr,
                             context_),
              OVRA_ERROR_RESIZE_NULL_IMAGE);
    EXPECT_EQ(destination, r_.Image(r_.width, 1));
  }

  void Restart() {
    int32_t taken = -1;
    int32_t written = -1;
    EXPECT_EQ(OvraBandResize(nullptr, r_.source_width, 0, nullptr, r_.width, 0, r_.format, 0,
                             &taken, &written, context_),
              OVRA_OK);
    taken_ = written_ = 0;
  }

  bool IsComplete() const { return taken_ == r_.source_height && written_ == r_.height; }
  int32_t RowsLeft() const { return r_.source_height - taken_; }
  int32_t RoomLeft() const { return r_.height - written_; }
  const Bytes& Joined() const { return joined_; }

 private:
  static size_t Row(int32_t row) { return static_cast<size_t>(row); }

  // The last source row that destination row j waits for.
  int32_t NeededRow(int32_t j) const {
    const double scale = r_.Ratio();
    const bool copied =
        scale == 1.0 && r_.width == r_.source_width && r_.height == r_.source_height;
    if (copied) return j;
    const int32_t top = r_.BottomUp() ? r_.source_height - r_.y - r_.region_height : r_.y;
    const double centre = top + (r_.region_height - 1) * 0.5;
    const double p = (j - (r_.height - 1) * 0.5) * (1 / scale) + centre;
    const double phase = r_.height % 2 == 0 ? 0.5 : 0.0;
    const double engine_p = (j - r_.height / 2 + phase) * (1 / scale) + centre;
    const int32_t taps = r_.kind == Resize::kCore                           ? r_.taps
                         : scale >= 1 || static_cast<float>(scale) >= 0.917 ? 4
                         : static_cast<float>(scale) >= 0.771               ? 5
                         : static_cast<float>(scale) >= 0.648               ? 6
                         : static_cast<float>(scale) >= 0.545               ? 7
                                                                            : 8;
    const bool is_small = r_.kind != Resize::kCore && scale < 0.33;
    const double row = is_small ? std::floor(p + 2 / scale) : std::floor(engine_p) + taps / 2;
    return static_cast<int32_t>(std::clamp(row, 0.0, r_.source_height - 1.0));
  }

  // Row by row, as the run is defined.
  void Expect(int32_t end, int32_t room, int32_t taken, int32_t written) const {
    int32_t expected_taken = taken_;
    int32_t expected_written = written_;
    for (;;) {
      const bool ready =
          expected_written < r_.height && NeededRow(expected_written) < expected_taken;
      if (ready) {
        if (expected_written - written_ == room) break;
        ++expected_written;
      } else {
        if (expected_taken == end) break;
        ++expected_taken;
      }
    }
    ASSERT_EQ(taken, expected_taken - taken_);
    ASSERT_EQ(written, expected_written - written_);
  }

  Resize r_;
  Bytes joined_;
  OvraBandResizeContext* context_ = nullptr;
  int32_t taken_ = 0;
  int32_t written_ = 0;
};

void RunToTheEnd(Random& random, const Bytes& source, bool thin, Bands* bands) {
  while (!bands->IsComplete() && !testing::Test::HasFatalFailure()) {
    const int32_t most_rows = thin ? std::min(2, bands->RowsLeft()) : bands->RowsLeft();
    const int32_t rows = RandomInt(random, 0, most_rows);
    bands->Run(source, rows, RandomInt(random, 0, bands->RoomLeft()));
  }
}

// Also after a picture that was abandoned, and after misuse.
TEST(BandResize, JoinsToTheWholeResize) {
  Random random(2);
  for (int trial = 0; trial < 1000 && !HasFatalFailure(); ++trial) {
    SCOPED_TRACE(trial);
    Resize r = RandomResize(random);
    if (r.kind == Resize::kSmall) r.kind = Resize::kRoi;
    const Bytes source = RandomSource(random, r);
    Bytes whole = r.Image(r.width, r.height);
    ASSERT_EQ(ResizeWhole(r, source.data(), whole.data()), OVRA_OK);
    Bands bands(r);
    if (trial % 4 == 0) {
      bands.Run(source, RandomInt(random, 0, r.source_height), RandomInt(random, 0, r.height));
      bands.Restart();
    }
    if (trial % 4 == 1) {
      bands.Run(source, RandomInt(random, 1, r.source_height), RandomInt(random, 0, r.height));
      bands.Misuse(source);
    }
    RunToTheEnd(random, source, trial % 2 == 0, &bands);
    ASSERT_TRUE(bands.Joined() == whole);
  }
}

}  // namespace
