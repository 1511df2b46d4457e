// SPDX-License-Identifier: MIT
// Allocations that fail on request, and a count of those that live. Covers malloc, calloc, realloc
// and free of everything that is linked into the program itself.
#pragma once

#include <cstddef>
#include <limits>

namespace ovra_test {

// While it lives, allocations are counted, and those with the numbers (from 1) `first` to `last` fail.
class FailAllocations {
 public:
  static constexpr int kNone = std::numeric_limits<int>::max();

  explicit FailAllocations(int first = kNone, int last = kNone);
  ~FailAllocations();
  FailAllocations(const FailAllocations&) = delete;
  FailAllocations& operator=(const FailAllocations&) = delete;

  // Allocations asked for since construction.
  static int Requested();
  // Their bytes in sum.
  static size_t RequestedBytes();
  // Blocks taken since construction and not yet released.
  static int Outstanding();
};

}  // namespace ovra_test
