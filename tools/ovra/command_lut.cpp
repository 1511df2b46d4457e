// SPDX-License-Identifier: MIT
#include <algorithm>

#include "color_command.h"
#include "commands.h"
#include "cube_file.h"
#include "ovra/color.h"

namespace ovra_host {
namespace {

// Cubes of the library give at most 12 bits.
constexpr uint32_t kMaxCubeDepth = 12;

struct LutOptions {
  std::string cube;
  std::string input;
  std::string output;
};

// Deeper pictures come out of the cube with 12 bits and are then spread over their own range.
Image ApplyCube(const Image& source, const CubeFile& file, const CommonOptions& common) {
  const uint32_t depth = std::min(source.depth_bits(), kMaxCubeDepth);
  Image result(source.width(), source.height(), FileFormat(depth, 3));
  CubeLattice lattice(file, source.max_sample(), result.max_sample());
  const OvraColorCube record = lattice.Record();
  CallLibrary(common, "OvraConvColorCubeSingleStep", [&] {
    return OvraConvColorCubeSingleStep(source.data(), result.data(), source.width(),
                                       source.height(), source.format(), result.format(), &record);
  });
  if (depth == source.depth_bits()) return result;
  return ApplyTables(result, MakeScalingTables(result.max_sample(), source.max_sample()),
                     source.format(), common);
}

void Lut(const LutOptions& options, const CommonOptions& common) {
  const CubeFile file = ReadCubeFile(options.cube);
  const Image source = ReadColor(options.input);
  const Image result =
      file.dimensions == 3
          ? ApplyCube(source, file, common)
          : ApplyTables(source, MakeChannelTables(file, source.max_sample(), source.max_sample()),
                        source.format(), common);
  WriteImage(result, options.output, common.write);
}

}  // namespace

void AddLutCommand(CLI::App& app, const CommonOptions& common) {
  CLI::App* const command = app.add_subcommand("lut", "Apply the look of a .cube file");
  const auto options = std::make_shared<LutOptions>();
  AddInput(*command, "--cube", options->cube, "table of one or three dimensions, as .cube text");
  AddInput(*command, "input", options->input);
  AddOutput(*command, "output", options->output);
  command->footer(
      "Tables of three dimensions may have up to 65 points an axis, of one up to 65536. What is\n"
      "outside a table's domain takes its nearest value. Grey pictures become color ones; those\n"
      "with an alpha channel are refused. Pictures keep their 8 or 16 bits a sample, but a table\n"
      "of three dimensions gives 16-bit pictures 12 bits, spread over the range of 16.\n\n"
      "Example:\n  ovra lut --cube warm.cube photo.jpg warm.png");
  command->callback([options, &common] { Lut(*options, common); });
}

}  // namespace ovra_host
