// SPDX-License-Identifier: MIT
// The one source of all choices that a random call makes.
#pragma once

#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <limits>
#include <span>
#include <type_traits>

#include "support/random.h"

namespace ovra_test {

// Numbers from given bytes while there are any, as a fuzzer hands them over, and from a generator
// after that. The same on every platform and compiler, as long as callers draw in a fixed order:
// arguments of one function call have none, so draw into variables or between braces.
class Draw {
 public:
  // One that may err also draws what no host should pass; without that, OrWrong draws nothing. One
  // that stays small draws no large sizes, for many calls in little time.
  explicit Draw(uint32_t seed, std::span<const uint8_t> bytes = {}, bool may_err = false,
                bool stays_small = false)
      : random_(seed), bytes_(bytes), may_err_(may_err), stays_small_(stays_small) {}

  bool MayErr() const { return may_err_; }
  bool StaysSmall() const { return stays_small_; }
  bool Errs() { return may_err_ && OneIn(8); }

  // A parameter that no buffer's size follows from, or now and then a value that is wrong for most.
  template <class T>
  T OrWrong(T right) {
    using Limits = std::numeric_limits<T>;
    if (!Errs()) return right;
    if constexpr (std::is_floating_point_v<T>) {
      return Of({T{0}, T{1}, -right, right * 2, T{1e-30F}, T{1e30F}, Limits::max(),
                 Limits::lowest(), Limits::denorm_min(), Limits::infinity(), -Limits::infinity(),
                 Limits::quiet_NaN()});
    } else {
      const auto word = static_cast<uint32_t>(right);
      const uint32_t any = Bits();
      const uint32_t wrong =
          Of({0U, 1U, 0U - 1, word - 1, word + 1, 0U - word, any,
              static_cast<uint32_t>(Limits::min()), static_cast<uint32_t>(Limits::max())});
      return static_cast<T>(wrong);
    }
  }

  // In [low, high], all as likely.
  int32_t Int(int32_t low, int32_t high) {
    if (high < low) return high;  // after a mistake
    const auto span = static_cast<uint64_t>(int64_t{high} - low);
    const int bytes = span < 0x100 ? 1 : span < 0x10000 ? 2 : 4;
    if (bytes_.empty()) return RandomInt(random_, low, high);
    return static_cast<int32_t>(low + static_cast<int64_t>(Bytes(bytes) % (span + 1)));
  }

  bool OneIn(int32_t n) { return Int(0, n - 1) == 0; }

  template <class T>
  T Of(std::initializer_list<T> choices) {
    return choices.begin()[Int(0, static_cast<int32_t>(choices.size()) - 1)];
  }

  // Sizes: mostly of a few vectors, often whole ones, now and then the least or many.
  int32_t Size(int32_t low, int32_t high) {
    const int32_t kind = Int(0, 7);
    if (kind == 0 || high < low) return low < high ? low : high;
    const bool any = kind == 1 && !stays_small_;
    const int32_t usual = !stays_small_ ? kUsual : kind == 1 ? kNotSmall : kSmall;
    const int32_t size = Int(low, any || high < low + usual ? high : low + usual);
    const int32_t whole = size / kVector * kVector;
    return kind <= 3 && whole >= low ? whole : size;
  }

  // A multiple of 1/64 in [low, high]: exact in every floating-point type.
  float Fraction(int32_t low, int32_t high) {
    return static_cast<float>(Int(64 * low, 64 * high)) / 64.0F;
  }

  uint32_t Bits() { return static_cast<uint32_t>(bytes_.empty() ? random_() : Bytes(4)); }

 private:
  static constexpr int32_t kUsual = 70;
  static constexpr int32_t kSmall = 40;  // still more than a vector of bytes
  static constexpr int32_t kNotSmall = 160;
  static constexpr int32_t kVector = 16;

  uint64_t Bytes(int count) {
    uint64_t value = 0;
    for (; count > 0 && !bytes_.empty(); --count, bytes_ = bytes_.subspan(1)) {
      value = value << 8 | bytes_.front();
    }
    return value;
  }

  Random random_;
  std::span<const uint8_t> bytes_;
  bool may_err_;
  bool stays_small_;
};

}  // namespace ovra_test
