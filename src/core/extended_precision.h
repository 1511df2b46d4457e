// SPDX-License-Identifier: MIT
// The precision of `long double` arithmetic.
#pragma once

#include <cstdint>

namespace ovra {

// While an object of this class lives, x87 arithmetic rounds to the full 64-bit significand.
// Windows runtimes leave 53 bits in force, and a library must compute the same tables in every
// host.
class ScopedExtendedPrecision {
 public:
  ScopedExtendedPrecision() {
    __asm__ volatile("fnstcw %0" : "=m"(saved_));
    const uint16_t extended = saved_ | kFullPrecision;
    __asm__ volatile("fldcw %0" : : "m"(extended));
  }
  ~ScopedExtendedPrecision() { __asm__ volatile("fldcw %0" : : "m"(saved_)); }
  ScopedExtendedPrecision(const ScopedExtendedPrecision&) = delete;
  ScopedExtendedPrecision& operator=(const ScopedExtendedPrecision&) = delete;

 private:
  static constexpr uint16_t kFullPrecision = 0x0300;  // precision control field
  uint16_t saved_ = 0;
};

}  // namespace ovra
