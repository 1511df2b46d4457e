// SPDX-License-Identifier: MIT
#include <cmath>
#include <memory>
#include <string>
#include <vector>

#include "bench_support.h"
#include "color/cascade/cascade.h"
#include "color/cube/cube.h"
#include "depth_pairs.h"

namespace ovra_bench {
namespace {

constexpr double kPixels = double{kWidth} * kHeight;
constexpr size_t kSamples = size_t{3} * kWidth * kHeight;

// Three-channel pictures. Noise visits all cells of a cube in no order; a photograph stays near one
// place for a while.
enum class Content { kRandom, kPhotographic };

// Slow waves of colour with the grain of a sensor.
template <class Sample>
std::vector<Sample> MakePhotograph(int depth_bits) {
  constexpr double kSlowness = 300;  // pixels a radian
  constexpr double kGrain = 1.0 / 200;
  const double max = (1 << depth_bits) - 1;
  const uint8_t* noise = Source(kSamples);
  std::vector<double> waves(static_cast<size_t>(kWidth + kHeight) * 3);
  for (size_t i = 0; i < waves.size(); ++i) {
    waves[i] = 0.5 + 0.45 * std::sin(static_cast<double>(i) / (3 * kSlowness) + (i % 3) * 2.0);
  }
  std::vector<Sample> samples(kSamples);
  for (size_t i = 0; i < kSamples; ++i) {
    const size_t row = i / (size_t{3} * kWidth);
    const double grain = (noise[i] / 255.0 - 0.5) * kGrain;
    samples[i] = static_cast<Sample>((waves[i % (size_t{3} * kWidth) + 3 * row] + grain) * max);
  }
  return samples;
}

const uint8_t* Picture(Content content, int depth_bits) {
  if (content == Content::kRandom) return Source(kSamples * (depth_bits > 8 ? 2 : 1));
  static const std::vector<uint8_t> bytes = MakePhotograph<uint8_t>(8);
  static const std::vector<uint16_t> words = MakePhotograph<uint16_t>(16);
  return depth_bits > 8 ? reinterpret_cast<const uint8_t*>(words.data()) : bytes.data();
}

// A look that bends every axis.
struct Look {
  Look(uint32_t points, uint32_t components, uint32_t max_input, uint32_t max_output) {
    for (uint32_t i = 0; i < points; ++i) {
      grid.push_back(static_cast<uint16_t>(i * max_input / (points - 1)));
    }
    const double last = points - 1;
    for (uint32_t node = 0; node < points * points * points; ++node) {
      const double a = node / points / points / last;
      const double b = node / points % points / last;
      const double c = node % points / last;
      const double values[] = {a * (1 - b * c / 3), b * (1 - a * c / 3), c * (1 - a * b / 3),
                               1 - a * b * c};
      for (uint32_t k = 0; k < components; ++k) {
        lattice.push_back(static_cast<uint16_t>(values[k] * max_output));
      }
    }
    cube = {points, grid.data(), points, grid.data(), points, grid.data(), lattice.data()};
  }

  std::vector<uint16_t> grid;
  std::vector<uint16_t> lattice;
  OvraColorCube cube;
};

struct Variant {
  const char* name;
  int input_depth;
  int output_depth;
  uint32_t channels;
  uint32_t points;
};

void RegisterNarrow(const Look& look) {
  ForNarrowWidths("cube/8x3", [&](const std::string& name, int32_t width, double pixels) {
    ovra::ContextPtr<ovra::CubeContext> made;
    if (ovra::MakeCubeContext(NarrowFormats(width), &look.cube, &made) != OVRA_OK) return;
    const std::shared_ptr<ovra::CubeContext> context = std::move(made);
    RegisterTiers(name, pixels, [=](ovra::KernelTier tier) {
      ovra::ConvColorCube(NarrowImages(width), NarrowFormats(width), context.get(), tier);
    });
  });
}

void RegisterVariant(const Variant& variant) {
  const bool four = variant.channels == 4;
  const Look look(variant.points, variant.channels, (1U << variant.input_depth) - 1,
                  (1U << variant.output_depth) - 1);
  const ovra::FormatPair formats = {
      OvraMakePixelFormat(static_cast<uint32_t>(variant.input_depth), 3, OVRA_MODEL_RGB, 1,
                          OVRA_ROWS_TOP_DOWN),
      OvraMakePixelFormat(static_cast<uint32_t>(variant.output_depth), variant.channels,
                          four ? OVRA_MODEL_CMYK : OVRA_MODEL_RGB, 1, OVRA_ROWS_TOP_DOWN)};
  ovra::ContextPtr<ovra::CubeContext> made;
  if (ovra::MakeCubeContext(formats, &look.cube, &made) != OVRA_OK) return;
  const std::shared_ptr<ovra::CubeContext> context = std::move(made);
  if (variant.points == 17 && std::string(variant.name) == "8x3") RegisterNarrow(look);
  const size_t bytes_out =
      kSamples / 3 * variant.channels * (variant.output_depth > 8 ? size_t{2} : size_t{1});
  for (const Content content : {Content::kRandom, Content::kPhotographic}) {
    const std::string name = std::string("cube/") + variant.name + "/" +
                             std::to_string(variant.points) +
                             (content == Content::kRandom ? "/random" : "/photographic");
    RegisterTiers(name, kPixels, [=](ovra::KernelTier tier) {
      const ovra::ImagePair images = {Picture(content, variant.input_depth), Destination(bytes_out),
                                      kWidth, kHeight};
      ovra::ConvColorCube(images, formats, context.get(), tier);
    });
  }
}

}  // namespace

void RegisterCube() {
  const Variant variants[] = {
      {"8x3", 8, 8, 3, 17},    {"8x3", 8, 8, 3, 33},    {"8x4", 8, 8, 4, 17},
      {"16x3", 16, 12, 3, 17}, {"16x3", 16, 12, 3, 33}, {"16x4", 16, 12, 4, 17},
  };
  for (const Variant& variant : variants) RegisterVariant(variant);
  RegisterMemcpy("cube/8x3", kSamples, kSamples, kPixels);
  RegisterMemcpy("cube/8x4", kSamples, kSamples / 3 * 4, kPixels);
  RegisterMemcpy("cube/16x4", 2 * kSamples, 2 * (kSamples / 3 * 4), kPixels);
  RegisterMemcpy("cube/16x3", 2 * kSamples, 2 * kSamples, kPixels);

  const auto first = std::make_shared<Look>(65, 3, 4095, 4095);
  const auto second = std::make_shared<Look>(33, 3, 4095, 4095);
  RegisterTiers("cube/cascade/65_33", 65.0 * 65 * 65,
                [=](ovra::KernelTier tier) { ovra::Cascade3D(&first->cube, &second->cube, tier); });
}

}  // namespace ovra_bench
