// SPDX-License-Identifier: MIT
// Any text as a .cube file: a table or an Error, and a table answers every input.
#include <cstddef>
#include <cstdint>
#include <string>

#include "cube_file.h"
#include "error.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  try {
    const std::string text(reinterpret_cast<const char*>(data), size);
    const ovra_host::CubeFile cube = ovra_host::ParseCubeFile(text, "fuzzed");
    for (const double value : {-1.0, 0.0, 0.3, 1.0, 2.0}) cube.Evaluate({value, 0.5, 1 - value});
  } catch (const ovra_host::Error&) {
    // Refused.
  }
  return 0;
}
