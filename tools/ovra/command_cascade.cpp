// SPDX-License-Identifier: MIT
#include "color_tables.h"
#include "commands.h"
#include "cube_file.h"
#include "ovra/color.h"

namespace ovra_host {
namespace {

// Nodes of the first cube are the input of the second one, as 16-bit samples; results have 12 bits.
constexpr uint32_t kMaxBetween = 65535;
constexpr uint32_t kMaxResult = 4095;

struct CascadeOptions {
  std::string first;
  std::string second;
  std::string output;
};

CubeFile ReadThreeDimensions(const std::string& path) {
  CubeFile file = ReadCubeFile(path);
  if (file.dimensions != 3) throw Error(path + ": is not a table of three dimensions");
  if (!file.shaper.empty()) throw Error(path + ": has a table of one dimension before its cube");
  return file;
}

// The library converts the nodes one by one: their order, and the grid, can stay the file's.
void Cascade(const CascadeOptions& options, const CommonOptions& common) {
  CubeFile result = ReadThreeDimensions(options.first);
  CubeLattice second(ReadThreeDimensions(options.second), kMaxBetween, kMaxResult);
  std::vector<uint16_t> nodes;
  for (const Triple& row : result.rows) {
    for (const double value : row) nodes.push_back(ToSample(value, kMaxBetween));
  }
  const std::vector<uint16_t> any_grid(static_cast<size_t>(result.points));
  const auto count = static_cast<uint32_t>(result.points);
  const OvraColorCube first_record = {count, any_grid.data(), count,       any_grid.data(),
                                      count, any_grid.data(), nodes.data()};
  const OvraColorCube second_record = second.Record();
  CallLibrary(common, "OvraCascade3D",
              [&] { return OvraCascade3D(&first_record, &second_record); });
  for (size_t i = 0; i < nodes.size(); ++i) {
    result.rows[i / 3][i % 3] = double{1} * nodes[i] / kMaxResult;
  }
  result.title.clear();  // it named the first table alone
  WriteCubeFile(result, options.output, common.write.overwrite);
}

}  // namespace

void AddCascadeCommand(CLI::App& app, const CommonOptions& common) {
  CLI::App* const command =
      app.add_subcommand("cascade", "Join two .cube files into one that does both in turn");
  const auto options = std::make_shared<CascadeOptions>();
  AddInput(*command, "first", options->first, ".cube file that is applied first");
  AddInput(*command, "second", options->second, ".cube file that is applied to the result");
  AddInput(*command, "output", options->output, ".cube file to write");
  command->footer(
      "Both tables have three dimensions. The result has the points and the domain of the first; "
      "its\n"
      "values, and those handed from the first to the second, are limited to 0..1, and it has the\n"
      "precision of 12 bits.\n\n"
      "Example:\n  ovra cascade log-to-video.cube warm.cube both.cube");
  command->callback([options, &common] { Cascade(*options, common); });
}

}  // namespace ovra_host
