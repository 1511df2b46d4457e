// SPDX-License-Identifier: MIT
// The .cube text files in which looks are exchanged: tables of one or three dimensions.
#pragma once

#include <array>
#include <string>
#include <vector>

#include "files.h"

namespace ovra_host {

using Triple = std::array<double, 3>;  // red, green, blue

// What a .cube file holds. All numbers are fractions of full scale.
struct CubeFile {
  static constexpr int kMaxPoints1D = 65536;
  static constexpr int kMaxPoints3D = 65;

  std::string title;
  // None, or a table of one dimension that inputs go through first.
  std::vector<CubeFile> shaper;
  int dimensions = 0;  // 1 or 3
  int points = 0;      // along each axis
  Triple domain_min = {0, 0, 0};
  Triple domain_max = {1, 1, 1};
  // `points` rows, or `points` cubed with the red input varying fastest, then the green one.
  std::vector<Triple> rows;
  // Keywords that are not of the format, with their lines; they are left out.
  std::vector<std::string> skipped;

  // The output for one input, linear between the points and constant beyond the domain.
  Triple Evaluate(const Triple& input) const;
};

// Reads a file. Throws an Error of one line with the number of the line that is wrong.
CubeFile ReadCubeFile(const std::string& path);

// The same from text; `name` is what errors call it.
CubeFile ParseCubeFile(const std::string& text, const std::string& name);

// Writes under another name first, so that a failure leaves an existing file as it was.
void WriteCubeFile(const CubeFile& cube, const std::string& path,
                   Overwrite overwrite = Overwrite::kWritable);

}  // namespace ovra_host
