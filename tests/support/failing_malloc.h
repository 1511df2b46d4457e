// SPDX-License-Identifier: MIT
// Allocations that fail on request, and a count of those that live. Covers malloc, calloc, realloc
// and free of everything that is linked into the program itself.
#pragma once

#include <cstddef>

namespace ovra_test {

// While it lives, the allocation with this number (from 1) and all later ones fail.
class FailAllocationsFrom {
 public:
  explicit FailAllocationsFrom(int number);
  ~FailAllocationsFrom();
  FailAllocationsFrom(const FailAllocationsFrom&) = delete;
  FailAllocationsFrom& operator=(const FailAllocationsFrom&) = delete;

  // Allocations asked for since construction.
  static int Requested();
  // Their bytes in sum.
  static size_t RequestedBytes();
  // Blocks taken since construction and not yet released.
  static int Outstanding();
};

// As above, but only the one allocation with this number fails.
class FailAllocation {
 public:
  explicit FailAllocation(int number);
  ~FailAllocation();
  FailAllocation(const FailAllocation&) = delete;
  FailAllocation& operator=(const FailAllocation&) = delete;
};

}  // namespace ovra_test
