// SPDX-License-Identifier: MIT
// Buffers beside inaccessible memory: one byte read or written too far ends the program.
#pragma once

#include <cstddef>
#include <cstdint>

namespace ovra_test {

enum class Guard { kAfter, kBefore };

// `size` bytes that end (kAfter) or begin (kBefore) exactly at an inaccessible page. The bytes
// start as kFill.
class GuardedBuffer {
 public:
  static constexpr uint8_t kFill = 0xA5;

  explicit GuardedBuffer(size_t size, Guard guard = Guard::kAfter);
  ~GuardedBuffer();
  GuardedBuffer(const GuardedBuffer&) = delete;
  GuardedBuffer& operator=(const GuardedBuffer&) = delete;

  uint8_t* data() { return data_; }
  const uint8_t* data() const { return data_; }
  size_t size() const { return size_; }
  uint8_t* begin() { return data_; }
  uint8_t* end() { return data_ + size_; }
  const uint8_t* begin() const { return data_; }
  const uint8_t* end() const { return data_ + size_; }
  uint8_t& operator[](size_t i) { return data_[i]; }

  // The buffer as elements of a wider type; size must be a multiple of it.
  template <class T>
  T* as() {
    return reinterpret_cast<T*>(data_);
  }

 private:
  uint8_t* pages_;
  size_t mapped_bytes_;
  uint8_t* data_;
  size_t size_;
};

}  // namespace ovra_test
