// SPDX-License-Identifier: MIT
// How fast the library's operations are on this machine.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace ovra_host {

struct BenchResult {
  std::string function;          // of the library
  std::string what;              // the stage that calls it, or what else is done
  double megapixels_per_second;  // of the larger picture
  double share_of_copy;          // 1 is as fast as a copy of as many bytes
};

struct BenchResults {
  std::string version;
  std::string tier;
  int32_t width;
  int32_t height;
  int turns;
  std::vector<BenchResult> results;
};

BenchResults RunBench();

}  // namespace ovra_host
