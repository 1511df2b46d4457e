// SPDX-License-Identifier: MIT
// Common ground of the fuzzers.
#pragma once

#include <fuzzer/FuzzedDataProvider.h>

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <vector>

#include "core/cpu.h"

namespace ovra_fuzz {

// Samples from the input, repeated when the input is short: exactly `size` bytes, so that the
// address sanitizer sees the first byte beyond.
inline std::vector<uint8_t> TakeImage(FuzzedDataProvider& input, size_t size) {
  std::vector<uint8_t> seed = input.ConsumeBytes<uint8_t>(size);
  std::vector<uint8_t> image(size);
  for (size_t i = 0; i < size; ++i) {
    image[i] = seed.empty() ? static_cast<uint8_t>(i * 37) : seed[i % seed.size()];
  }
  return image;
}

inline ovra::KernelTier TakeTier(FuzzedDataProvider& input) {
  return static_cast<ovra::KernelTier>(
      input.ConsumeIntegralInRange<int>(0, static_cast<int>(ovra::DetectedTier())));
}

// Ends the program, which the fuzzer reports, when two results differ.
inline void RequireEqual(const std::vector<uint8_t>& a, const std::vector<uint8_t>& b) {
  if (a != b) std::abort();
}

}  // namespace ovra_fuzz
