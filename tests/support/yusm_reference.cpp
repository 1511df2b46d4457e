// SPDX-License-Identifier: MIT
#include "support/yusm_reference.h"

#include <algorithm>
#include <cmath>
#include <functional>

namespace ovra_test {
namespace {

using Line = std::vector<int32_t>;
using Plane = std::vector<Line>;  // rows

const Line kThreeTaps = {32, 64, 32};
const Line kFiveTaps = {8, 32, 48, 32, 8};

int32_t Read(const YUsmCase& test, const std::vector<uint8_t>& image, size_t x, size_t row,
             size_t channel) {
  const size_t at = row * test.Stride() + (x * test.Channels() + channel) * test.SampleBytes();
  return test.depth_bits == 8 ? image[at] : image[at] | image[at + 1] << 8;
}

void Write(const YUsmCase& test, std::vector<uint8_t>& image, size_t x, size_t row, size_t channel,
           int32_t value) {
  const size_t at = row * test.Stride() + (x * test.Channels() + channel) * test.SampleBytes();
  image[at] = static_cast<uint8_t>(value);
  if (test.depth_bits != 8) image[at + 1] = static_cast<uint8_t>(value >> 8);
}

int32_t Luminance(const YUsmCase& test, const std::vector<uint8_t>& image, size_t x, size_t row) {
  const auto sample = [&](size_t channel) {
    return std::min(Read(test, image, x, row, channel), (1 << test.depth_bits) - 1);
  };
  const auto depth = static_cast<int32_t>(test.depth_bits);
  if (test.model == OVRA_MODEL_GREY || test.model == OVRA_MODEL_YCC) {
    return depth < 10 ? sample(0) << (10 - depth) : sample(0) >> (depth - 10);
  }
  const bool is_reversed = test.model == OVRA_MODEL_BGR || test.model == OVRA_MODEL_BGRA;
  const int32_t red = sample(is_reversed ? 2 : 0);
  const int32_t blue = sample(is_reversed ? 0 : 2);
  return (19 * red + 38 * sample(1) + 7 * blue) >> (depth - 4);
}

int32_t Mirrored(const Line& line, int64_t q) {
  const auto size = static_cast<int64_t>(line.size());
  if (q < 0) q = -q;
  if (q >= size) q = 2 * size - q - 2;
  return line.at(static_cast<size_t>(q));
}

int32_t WrappedSum(const Line& line, const Line& weights, int64_t x) {
  const auto taps = static_cast<int64_t>(weights.size());
  const int64_t before = taps - 1 - (taps >> 1);
  int64_t sum = 0;
  for (int64_t k = 0; k < taps; ++k) {
    sum += int64_t{static_cast<int16_t>(weights[static_cast<size_t>(k)])} *
           Mirrored(line, x - before + k);
  }
  return static_cast<int32_t>(static_cast<uint32_t>(static_cast<uint64_t>(sum)));
}

Line Smoothed(const Line& line) {
  const size_t last = line.size() - 1;
  Line result(line.size());
  result[0] = (line[0] + line[1]) >> 1;
  for (size_t x = 1; x < last; ++x) result[x] = (line[x - 1] + 2 * line[x] + line[x + 1]) >> 2;
  result[last] = (line[last] + line[last - 1]) >> 1;
  return result;
}

Line BlurredAlong(const Line& line, const Line& weights) {
  if (weights == kThreeTaps) return Smoothed(line);
  if (weights == kFiveTaps) return Smoothed(Smoothed(line));
  Line result;
  for (size_t x = 0; x < line.size(); ++x) {
    result.push_back(static_cast<int16_t>(WrappedSum(line, weights, static_cast<int64_t>(x)) >> 7));
  }
  return result;
}

// A column of the rows blurred along; with the special sets this is their own formula, too.
int32_t BlurredAcross(const Line& column, const Line& weights, int64_t row) {
  const int32_t sum = WrappedSum(column, weights, row);
  if (sum < 0) return 0;
  return sum >= 1023 * 128 ? 1023 : sum >> 7;
}

int32_t Delta(const YUsmCase& test, int32_t luminance, int32_t blurred) {
  const int32_t difference = luminance - blurred;
  const double scale = test.depth_bits > 10 ? std::ldexp(1.0, int(test.depth_bits) - 10) : 1.0;
  const int32_t entry = test.difference.at(static_cast<size_t>(difference + 1024)) * difference;
  const auto correction = static_cast<int32_t>(entry * (double{test.amount} - 1.0) * scale + 0.5);
  const int64_t product = int64_t{correction} * test.level.at(static_cast<size_t>(luminance));
  const auto wrapped = static_cast<int32_t>(static_cast<uint32_t>(static_cast<uint64_t>(product)));
  return static_cast<int16_t>(wrapped >> (test.depth_bits == 8 ? 16 : 14));
}

Line RandomWeights(Random& random) {
  const int32_t kind = RandomInt(random, 0, 6);
  if (kind == 0) return kThreeTaps;
  if (kind == 1) return kFiveTaps;
  const int32_t longest = RandomInt(random, 0, 7) == 0 ? OVRA_YUSM_MAX_TAPS : 12;
  Line weights(static_cast<size_t>(RandomInt(random, 1, longest)));
  const auto taps = static_cast<int32_t>(weights.size());
  // Small positive weights, small ones of both signs, or any word.
  const int32_t low = kind <= 3 ? 0 : kind <= 5 ? -60 : INT32_MIN;
  const int32_t high = kind <= 3 ? 256 / taps : kind <= 5 ? 100 : INT32_MAX;
  for (int32_t& weight : weights) weight = RandomInt(random, low, high);
  return weights;
}

}  // namespace

uint32_t YUsmCase::Channels() const {
  return model == OVRA_MODEL_GREY ? 1 : model <= OVRA_MODEL_YCC ? 3 : 4;
}

size_t YUsmCase::Stride() const {
  return (width * Channels() * SampleBytes() + alignment - 1) / alignment * alignment;
}

OvraPixelFormatCode YUsmCase::Format() const {
  return OvraMakePixelFormat(depth_bits, Channels(), model, alignment, OVRA_ROWS_TOP_DOWN);
}

std::string YUsmCase::Describe() const {
  std::string text = std::to_string(width) + " x " + std::to_string(height) + ", " +
                     std::to_string(depth_bits) + " bits, model " + std::to_string(model >> 8) +
                     ", alignment " + std::to_string(alignment) + ", weights";
  for (const int32_t weight : weights) text += " " + std::to_string(weight);
  return text;
}

YUsmCase RandomYUsmCase(Random& random) {
  constexpr OvraColorModel kModels[] = {OVRA_MODEL_GREY, OVRA_MODEL_RGB,  OVRA_MODEL_BGR,
                                        OVRA_MODEL_YCC,  OVRA_MODEL_RGBA, OVRA_MODEL_BGRA};
  YUsmCase test;
  test.weights = RandomWeights(random);
  const int32_t taps = test.TapCount();
  test.width = static_cast<uint32_t>(taps + std::max(0, RandomInt(random, -20, 60)));
  test.height = static_cast<uint32_t>(taps + std::max(0, RandomInt(random, -6, 12)));
  test.depth_bits = static_cast<uint32_t>(std::max(8, RandomInt(random, 4, 14)));
  test.model = kModels[RandomInt(random, 0, 5)];
  test.alignment = 1U << RandomInt(random, 0, 2);
  test.amount = static_cast<float>(RandomInt(random, -8, 40)) / 8;
  // Tables of moderate strength, or of any entries.
  const int32_t bound = RandomInt(random, 0, 3) == 0 ? INT16_MAX : 300;
  for (int16_t& entry : test.level) {
    entry = static_cast<int16_t>(RandomInt(random, -bound / 4, bound));
  }
  for (int16_t& entry : test.difference) {
    entry = static_cast<int16_t>(RandomInt(random, -bound / 4, bound));
  }
  return test;
}

std::vector<uint8_t> RandomYUsmImage(const YUsmCase& test, Random& random) {
  const size_t row_bytes = test.width * test.Channels() * test.SampleBytes();
  std::vector<uint8_t> image(test.Stride() * (test.height - 1) + row_bytes);
  if (test.depth_bits == 8) {
    FillSamples(random, image.data(), image.data() + image.size(), 255);
    return image;
  }
  const bool is_above_depth = RandomInt(random, 0, 5) == 0;
  auto* const samples = reinterpret_cast<uint16_t*>(image.data());
  FillSamples(random, samples, samples + image.size() / 2,
              is_above_depth ? 0xFFFF : (1U << test.depth_bits) - 1);
  return image;
}

bool IsPixelByte(const YUsmCase& test, size_t at) {
  return at % test.Stride() < test.width * test.Channels() * test.SampleBytes();
}

std::vector<uint8_t> ReferenceYUsm(const YUsmCase& test, const std::vector<uint8_t>& source) {
  Plane luminance(test.height, Line(test.width));
  Plane along;
  for (size_t row = 0; row < test.height; ++row) {
    for (size_t x = 0; x < test.width; ++x) luminance[row][x] = Luminance(test, source, x, row);
    along.push_back(BlurredAlong(luminance[row], test.weights));
  }
  const size_t channels = test.Channels();
  const size_t corrected = test.model == OVRA_MODEL_YCC ? 1 : std::min<size_t>(channels, 3);
  std::vector<uint8_t> result = source;
  for (size_t x = 0; x < test.width; ++x) {
    Line column;
    for (const Line& row : along) column.push_back(row[x]);
    for (size_t row = 0; row < test.height; ++row) {
      const int32_t blurred = BlurredAcross(column, test.weights, static_cast<int64_t>(row));
      const int32_t delta = Delta(test, luminance[row][x], blurred);
      for (size_t channel = 0; channel < corrected; ++channel) {
        const int32_t value = Read(test, source, x, row, channel) + delta;
        Write(test, result, x, row, channel, std::clamp(value, 0, (1 << test.depth_bits) - 1));
      }
    }
  }
  return result;
}

}  // namespace ovra_test
