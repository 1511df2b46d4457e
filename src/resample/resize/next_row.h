// SPDX-License-Identifier: MIT
// Asks for the next source row while the present one is filtered, so that memory works while the
// processor multiplies: rows are read in order, and wide ones come from memory. For kernel files.
#pragma once

#include <cstddef>
#include <cstdint>

#include "core/vector_ops.h"

namespace ovra {
namespace {

class NextRow {
 public:
  // Of the row `stride` bytes after `row` what comes before byte `begin` is needed first.
  NextRow(const void* row, std::ptrdiff_t stride, std::ptrdiff_t begin)
      : row_(AddressAt(reinterpret_cast<uintptr_t>(row), stride)), next_(AddressAt(row_, begin)) {}

  // To be called with rising numbers.
  void AskUpToByte(std::ptrdiff_t byte) {
    const uintptr_t end = AddressAt(row_, byte);
    for (; next_ < end; next_ += kCacheLine) PrefetchLine(next_);
  }

 private:
  uintptr_t row_;
  uintptr_t next_;
};

}  // namespace
}  // namespace ovra
