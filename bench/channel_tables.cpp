// SPDX-License-Identifier: MIT
#include "color/channel_tables/channel_tables.h"

#include "depth_pairs.h"

namespace ovra_bench {
namespace {

struct Inversion {
  ovra::ChannelPolynomial channels[3] = {};

  explicit Inversion(const DepthPair& depths) {
    const double max_input = (1U << depths.input) - 1;
    const double max_output = (1U << depths.output) - 1;
    for (ovra::ChannelPolynomial& channel : channels) {
      channel.c0 = max_output;
      channel.c1 = -max_output / max_input;
    }
  }
};

}  // namespace

void RegisterChannelTables() {
  constexpr double kPixels = double{kWidth} * kHeight;
  for (const DepthPair& depths : kDepthPairs) {
    const std::string name = "color_tables/" + depths.Name();
    RegisterTiers(name, kPixels, [=](ovra::KernelTier tier) {
      ovra::ConvertByChannelTablesOnce(depths.Images(), depths.Formats(),
                                       Inversion(depths).channels, tier);
    });
    RegisterMemcpy(name, depths.InputBytes(), depths.OutputBytes(), kPixels);
  }
  ForNarrowWidths("color_tables", [](const std::string& name, int32_t width, double pixels) {
    RegisterTiers(name, pixels, [=](ovra::KernelTier tier) {
      ovra::ConvertByChannelTablesOnce(NarrowImages(width), NarrowFormats(width),
                                       Inversion({8, 8}).channels, tier);
    });
  });
}

}  // namespace ovra_bench
