// SPDX-License-Identifier: MIT
// Arithmetic modulo a power of two, where that is meant: callers' numbers may be of any size, and
// every tier of kernels gives the same bits for them. Anywhere else a number that wraps round is a
// fault; the integer checks (cmake/integer_checks.txt) pass over this file alone. For all files.
#pragma once

#include <cstddef>
#include <cstdint>

namespace ovra {
namespace {

// a + b modulo 2^32.
template <class A, class B>
constexpr uint32_t WrappingSum(A a, B b) {
  return static_cast<uint32_t>(a) + static_cast<uint32_t>(b);
}

// a * b modulo 2^32.
template <class A, class B>
constexpr uint32_t WrappingProduct(A a, B b) {
  return static_cast<uint32_t>(a) * static_cast<uint32_t>(b);
}

// The low 16 bits of two numbers side by side, for kernels that multiply by pairs.
constexpr int32_t PackedPair(int32_t low, int32_t high) {
  return static_cast<int32_t>((static_cast<uint32_t>(low) & 0xFFFF) | static_cast<uint32_t>(high)
                                                                          << 16);
}

// Where `distance` bytes from `address` are, which may be no memory at all.
constexpr uintptr_t AddressAt(uintptr_t address, std::ptrdiff_t distance) {
  return address + static_cast<uintptr_t>(distance);
}

}  // namespace
}  // namespace ovra
