// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <vector>

#include "ovra/filter.h"
#include "support/guarded_buffer.h"
#include "support/random.h"

namespace {

using ovra_test::Guard;
using ovra_test::GuardedBuffer;
using ovra_test::Random;
using ovra_test::RandomInt;

constexpr OvraPixelFormatCode kRgb = 0x0120;

// Packed rows of three-byte pixels.
struct Picture {
  Picture(int32_t w, int32_t h)
      : width(w), height(h), samples(static_cast<size_t>(w) * static_cast<size_t>(h) * 3) {}

  size_t Index(int32_t x, int32_t y, int32_t c) const {
    return (static_cast<size_t>(y) * static_cast<size_t>(width) + static_cast<size_t>(x)) * 3 +
           static_cast<size_t>(c);
  }
  uint8_t& At(int32_t x, int32_t y, int32_t c) { return samples[Index(x, y, c)]; }
  // Edge pixels are repeated.
  int32_t Clamped(int32_t x, int32_t y, int32_t c) const {
    return samples[Index(std::clamp(x, 0, width - 1), std::clamp(y, 0, height - 1), c)];
  }

  int32_t width;
  int32_t height;
  std::vector<uint8_t> samples;
};

// --- The filter from its definition --------------------------------------------------------------

int32_t Weight(bool wide, int32_t distance) {
  static constexpr std::array<int32_t, 21> kNarrow = {1003, 911, 827, 750, 679, 613, 553,
                                                      496,  444, 395, 349, 306, 266, 228,
                                                      192,  158, 126, 96,  67,  40,  14};
  static constexpr std::array<int32_t, 35> kWide = {
      1003, 947, 893, 843, 795, 750, 706, 665, 626, 588, 553, 518, 485, 454, 424, 395, 367, 340,
      315,  290, 266, 243, 221, 199, 178, 158, 139, 120, 102, 85,  67,  51,  35,  19,  4};
  const int32_t first = wide ? 34 : 20;
  const int32_t end = wide ? 69 : 41;
  if (distance < first) return 1024;
  if (distance >= end) return 0;
  const auto i = static_cast<size_t>(distance - first);
  return wide ? kWide[i] : kNarrow[i];
}

Picture Smooth(const Picture& in, bool wide) {
  Picture out(in.width, in.height);
  for (int32_t y = 0; y < in.height; ++y) {
    for (int32_t x = 0; x < in.width; ++x) {
      int32_t pulls[3] = {};
      for (int32_t i = 0; i < 49; ++i) {
        int32_t differences[3];
        int32_t distance = 0;
        for (int32_t c = 0; c < 3; ++c) {
          differences[c] =
              in.Clamped(x + i % 7 * 2 - 6, y + i / 7 * 2 - 6, c) - in.Clamped(x, y, c);
          distance += std::abs(differences[c]);
        }
        for (int c = 0; c < 3; ++c) pulls[c] += (Weight(wide, distance) * differences[c]) >> 10;
      }
      for (int32_t c = 0; c < 3; ++c) {
        out.At(x, y, c) = static_cast<uint8_t>(in.Clamped(x, y, c) + pulls[c] / 49);
      }
    }
  }
  return out;
}

// One colour-difference plane, blurred by weights that sum to 128.
class BlurredPlane {
 public:
  BlurredPlane(const Picture& in, int plane, const std::vector<int32_t>& weights)
      : width_(in.width), height_(in.height) {
    for (int32_t y = 0; y < height_; ++y) {
      for (int32_t x = 0; x < width_; ++x) {
        const int32_t c0 = in.Clamped(x, y, 0);
        const int32_t c1 = in.Clamped(x, y, 1);
        const int32_t c2 = in.Clamped(x, y, 2);
        samples_.push_back(plane == 0 ? (45 * c0 - 38 * c1 - 7 * c2) >> 4
                                      : ((3 * c2 - 2 * c1 - c0) * 19) >> 4);
      }
    }
    Blur(weights, 1, 0);
    Blur(weights, 0, 1);
  }

  int32_t At(int32_t x, int32_t y) const {
    return samples_[static_cast<size_t>(std::clamp(y, 0, height_ - 1) * width_ +
                                        std::clamp(x, 0, width_ - 1))];
  }

 private:
  void Blur(const std::vector<int32_t>& weights, int32_t dx, int32_t dy) {
    std::vector<int32_t> out;
    const auto taps = static_cast<int32_t>(weights.size());
    for (int32_t y = 0; y < height_; ++y) {
      for (int32_t x = 0; x < width_; ++x) {
        int32_t sum = 0;
        for (int32_t k = 0; k < taps; ++k) {
          const int32_t offset = k - taps / 2;
          sum += weights[static_cast<size_t>(k)] * At(x + dx * offset, y + dy * offset);
        }
        out.push_back(sum >> 7);
      }
    }
    samples_ = out;
  }

  int32_t width_;
  int32_t height_;
  std::vector<int32_t> samples_;
};

int32_t CountMiddling(const Picture& in, int plane) {
  const BlurredPlane coarse(in, plane, {1, 3, 8, 15, 23, 28, 23, 15, 8, 3, 1});
  const BlurredPlane fine(in, plane, {32, 64, 32});
  int32_t count = 0;
  for (int32_t y = 0; y < in.height; ++y) {
    for (int32_t x = 0; x < in.width; ++x) {
      const int32_t band = std::abs(fine.At(x, y) - coarse.At(x, y));
      if (band >= 10 && band < 20) ++count;
    }
  }
  return count;
}

bool IsWide(const Picture& in) {
  return CountMiddling(in, 0) * 5 > in.width * in.height ||
         CountMiddling(in, 1) * 5 > in.width * in.height;
}

// --- The export ----------------------------------------------------------------------------------

// Runs in buffers that end, or begin, at inaccessible pages.
std::vector<uint8_t> Filtered(const Picture& in, Guard guard = Guard::kAfter,
                              OvraPixelFormatCode format = kRgb) {
  GuardedBuffer source(in.samples.size(), guard);
  GuardedBuffer destination(in.samples.size(), guard);
  std::copy(in.samples.begin(), in.samples.end(), source.begin());
  EXPECT_EQ(OvraEFilterImage(source.data(), destination.data(), static_cast<uint32_t>(in.width),
                             static_cast<uint32_t>(in.height), format),
            OVRA_OK);
  return {destination.begin(), destination.end()};
}

// Noise about a colour: `amplitude` says which distances occur.
Picture Noise(Random& random, int32_t width, int32_t height, int32_t amplitude) {
  Picture picture(width, height);
  for (uint8_t& sample : picture.samples) {
    sample =
        static_cast<uint8_t>(std::clamp(RandomInt(random, 90 - amplitude, 90 + amplitude), 0, 255));
  }
  return picture;
}

TEST(EdgeFilter, EqualsItsDefinition) {
  Random random(30);
  const std::pair<int32_t, int32_t> sizes[] = {{1, 1},   {1, 20}, {20, 1}, {5, 4},
                                               {13, 13}, {33, 7}, {70, 9}};
  int32_t wide_pictures = 0;
  for (const auto& [width, height] : sizes) {
    for (const int32_t amplitude : {4, 8, 12, 20, 40, 200}) {
      const Picture picture = Noise(random, width, height, amplitude);
      const bool wide = IsWide(picture);
      wide_pictures += wide ? 1 : 0;
      for (const Guard guard : {Guard::kAfter, Guard::kBefore}) {
        ASSERT_EQ(Filtered(picture, guard), Smooth(picture, wide).samples)
            << width << " x " << height << ", amplitude " << amplitude;
      }
    }
  }
  EXPECT_GT(wide_pictures, 3);
  EXPECT_LT(wide_pictures, 39);
}

TEST(EdgeFilter, FlatPicturesAndSharpEdgesStay) {
  Picture picture(30, 20);
  for (size_t i = 0; i < picture.samples.size(); ++i) {
    picture.samples[i] = static_cast<uint8_t>(i % 3 * 100 + 55);
  }
  EXPECT_EQ(Filtered(picture), picture.samples);
  for (int32_t y = 0; y < picture.height; ++y) {
    for (int32_t x = 11; x < picture.width; ++x) picture.At(x, y, 1) = 86;  // 69 away
  }
  EXPECT_EQ(Filtered(picture), picture.samples);
}

// A picture with upright stripes in one channel at its left, and so wide that a fifth of its columns
// are of middling amplitude, less `fewer_columns` flat ones.
Picture Stripes(int32_t channel, int32_t step, int32_t fewer_columns) {
  constexpr int32_t kStripes = 60;
  constexpr int32_t kPeriod = 12;
  constexpr int32_t kRows = 14;
  const auto draw = [&](int32_t width) {
    Picture picture(width, kRows);
    for (int32_t y = 0; y < kRows; ++y) {
      for (int32_t x = 0; x < width; ++x) {
        for (int32_t c = 0; c < 3; ++c) picture.At(x, y, c) = 100;
        const bool raised = x < kStripes && x % kPeriod >= kPeriod / 2;
        if (raised) picture.At(x, y, channel) = static_cast<uint8_t>(100 + step);
      }
    }
    return picture;
  };
  const Picture probe = draw(kStripes * 5);
  const int32_t middling = std::max(CountMiddling(probe, 0), CountMiddling(probe, 1)) / kRows;
  return draw(middling * 5 - fewer_columns);
}

TEST(EdgeFilter, MoreThanAFifthOfMiddlingDetailChoosesTheWideTable) {
  struct Case {
    int32_t channel;
    int32_t step;
    int plane;  // the one that decides
  };
  for (const Case& c : {Case{0, 25, 0}, Case{2, 20, 1}}) {
    const Picture exact = Stripes(c.channel, c.step, 0);
    ASSERT_EQ(CountMiddling(exact, c.plane) * 5, exact.width * exact.height);
    ASSERT_LT(CountMiddling(exact, 1 - c.plane) * 5, exact.width * exact.height);
    ASSERT_NE(Smooth(exact, false).samples, Smooth(exact, true).samples);
    EXPECT_EQ(Filtered(exact), Smooth(exact, false).samples);
    const Picture above = Stripes(c.channel, c.step, 1);
    ASSERT_GT(CountMiddling(above, c.plane) * 5, above.width * above.height);
    EXPECT_EQ(Filtered(above), Smooth(above, true).samples);
  }
}

TEST(EdgeFilter, RowsArePackedWhateverTheFormatSays) {
  Random random(31);
  const Picture picture = Noise(random, 7, 5, 30);
  const std::vector<uint8_t> expected = Filtered(picture);
  for (const OvraPixelFormatCode format : {0x00200120U, 0x01000120U, 0x01100220U, 0xF0000320U}) {
    EXPECT_EQ(Filtered(picture, Guard::kAfter, format), expected) << std::hex << format;
  }
}

TEST(EdgeFilter, FirstFailingCheckAnswers) {
  struct Case {
    bool source;
    bool in_place;
    uint32_t width;
    OvraPixelFormatCode format;
    OvraStatus status;
  };
  constexpr uint32_t kHuge = 0xFFFFFFFF;
  const Case cases[] = {
      {false, false, 0, 0xF, OVRA_ERROR_EDGE_FILTER_NULL},
      {true, true, 0, 0xF, OVRA_ERROR_EDGE_FILTER_IN_PLACE},
      {true, false, 0, 0xF, OVRA_ERROR_EDGE_FILTER_ZERO_SIZE},
      {true, false, 2, 0x012F, OVRA_ERROR_FORMAT_DEPTH},
      {true, false, 2, 0x0F31, OVRA_ERROR_FORMAT_COLOR_MODEL},
      {true, false, 2, 0x00F20131, OVRA_ERROR_FORMAT_ROW_ALIGNMENT},
      {true, false, 2, 0x00020131, OVRA_ERROR_EDGE_FILTER_CHANNELS},
      {true, false, 2, 0x00020421, OVRA_ERROR_EDGE_FILTER_DEPTH},
      {true, false, 2, 0x00020420, OVRA_ERROR_EDGE_FILTER_COLOR_MODEL},
      {true, false, 2, 0x00020320, OVRA_ERROR_EDGE_FILTER_ARRANGEMENT},
      {true, false, kHuge, kRgb, OVRA_ERROR_NO_MEMORY},
  };
  for (const Case& c : cases) {
    uint8_t source[12] = {};
    uint8_t destination[12] = {1, 2, 3};
    const uint32_t height = c.width == kHuge ? kHuge : 2;
    EXPECT_EQ(OvraEFilterImage(c.source ? source : nullptr, c.in_place ? source : destination,
                               c.width, height, c.format),
              c.status);
    EXPECT_EQ(destination[2], 3);
  }
  uint8_t pixel[3] = {};
  uint8_t other[3];
  EXPECT_EQ(OvraEFilterImage(pixel, nullptr, 1, 1, kRgb), OVRA_ERROR_EDGE_FILTER_NULL);
  EXPECT_EQ(OvraEFilterImage(pixel, other, 1, 0, kRgb), OVRA_ERROR_EDGE_FILTER_ZERO_SIZE);
}

}  // namespace
