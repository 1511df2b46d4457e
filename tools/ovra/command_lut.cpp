// SPDX-License-Identifier: MIT
#include <algorithm>

#include "color_command.h"
#include "commands.h"
#include "cube_file.h"
#include "ovra/color.h"
#include "picture_files.h"
#include "picture_forms.h"

namespace ovra_host {
namespace {

// Cubes of the library give at most 12 bits.
constexpr uint32_t kMaxCubeDepth = 12;

struct LutOptions {
  std::string cube;
};

// Deeper results come out of the cube with 12 bits and are then spread over their own range.
Image ApplyCube(const Image& source, const CubeFile& file, uint32_t depth_bits,
                const CommonOptions& common) {
  const uint32_t depth = std::min(depth_bits, kMaxCubeDepth);
  Image result(source.width(), source.height(), FileFormat(depth, 3));
  CubeLattice lattice(file, source.max_sample(), result.max_sample());
  const OvraColorCube record = lattice.Record();
  CallLibrary(common, "OvraConvColorCubeSingleStep", [&] {
    return OvraConvColorCubeSingleStep(source.data(), result.data(), source.width(),
                                       source.height(), source.format(), result.format(), &record);
  });
  if (depth == depth_bits) return result;
  const uint32_t max = (1U << depth_bits) - 1;
  return ApplyTables(result, MakeScalingTables(result.max_sample(), max), FileFormat(depth_bits, 3),
                     common);
}

// Between the table of one dimension and the cube samples have 16 bits.
Image ApplyShaperAndCube(const Image& source, CubeFile file, const CommonOptions& common) {
  constexpr uint32_t kBetween = 16;
  const ChannelTables tables =
      MakeChannelTables(file.shaper[0], source.max_sample(), (1U << kBetween) - 1);
  file.shaper.clear();
  const Image shaped = ApplyTables(source, tables, FileFormat(kBetween, 3), common);
  return ApplyCube(shaped, file, source.depth_bits(), common);
}

Image Lut(const Image& picture, const LutOptions& options, const CommonOptions& common) {
  const CubeFile file = ReadCubeFile(options.cube);
  return OnThreeChannels(picture, GreyBecomes::kColor, [&](const Image& source) {
    if (!file.shaper.empty()) return ApplyShaperAndCube(source, file, common);
    if (file.dimensions == 3) return ApplyCube(source, file, source.depth_bits(), common);
    const uint32_t max = source.max_sample();
    return ApplyTables(source, MakeChannelTables(file, max, max), source.format(), common);
  });
}

}  // namespace

void AddLutCommand(CLI::App& app, const CommonOptions& common) {
  CLI::App* const command = app.add_subcommand("lut", "Apply the look of a .cube file");
  const auto options = std::make_shared<LutOptions>();
  AddInput(*command, "--cube", options->cube, "table of one or three dimensions, as .cube text");
  command->footer(
      "Tables of three dimensions may have up to 65 points an axis, of one up to 65536. What is\n"
      "outside a table's domain takes its nearest value. Grey pictures become color ones; alpha\n"
      "stays. Pictures keep their 8 or 16 bits a sample, but a table of three dimensions gives\n"
      "16-bit pictures 12 bits, spread over the range of 16.\n\n"
      "Example:\n  ovra lut --cube warm.cube photo.jpg warm.png");
  AddPictureFiles(*command, common, OnPixels([options, &common](const Image& image) {
    return Lut(image, *options, common);
  }));
}

}  // namespace ovra_host
