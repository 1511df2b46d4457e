// SPDX-License-Identifier: MIT
// Work memory of one call, and the memory of contexts. Everything comes from malloc, nothing
// throws, and every path releases what it took.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <limits>
#include <memory>
#include <new>
#include <type_traits>
#include <utility>

#include "core/status.h"

namespace ovra {

// A block of `count` elements that starts at a cache line, so that aligned vector loads of every
// width may be used from its first element on. The elements are not initialised.
template <class T>
class WorkMemory {
  static_assert(std::is_trivial_v<T>);

 public:
  static constexpr size_t kAlignment = 64;

  WorkMemory() = default;
  WorkMemory(WorkMemory&& other) noexcept { swap(other); }
  WorkMemory& operator=(WorkMemory&& other) noexcept {
    swap(other);
    return *this;
  }
  ~WorkMemory() { std::free(block_); }

  // Takes a block in place of the one held so far. False when the size does not fit a size_t or the
  // block cannot be had; nothing is held then. The size may be computed in 64 bits by the caller.
  [[nodiscard]] bool Allocate(uint64_t count) {
    std::free(std::exchange(block_, nullptr));
    elements_ = nullptr;
    constexpr uint64_t kMaxCount = (std::numeric_limits<size_t>::max() - kAlignment) / sizeof(T);
    if (count > kMaxCount) return false;
    block_ = std::malloc(static_cast<size_t>(count) * sizeof(T) + kAlignment);
    if (block_ == nullptr) return false;
    const auto address = reinterpret_cast<uintptr_t>(block_);
    const uintptr_t aligned = (address + kAlignment - 1) / kAlignment * kAlignment;
    elements_ = reinterpret_cast<T*>(static_cast<char*>(block_) + (aligned - address));
    return true;
  }

  T* data() { return elements_; }
  const T* data() const { return elements_; }
  T& operator[](size_t i) { return elements_[i]; }
  const T& operator[](size_t i) const { return elements_[i]; }

  void swap(WorkMemory& other) noexcept {
    std::swap(block_, other.block_);
    std::swap(elements_, other.elements_);
  }

 private:
  void* block_ = nullptr;
  T* elements_ = nullptr;
};

// Ownership of an object in malloc'ed memory: the contexts that _Init functions hand out.
struct ContextDeleter {
  template <class Context>
  void operator()(Context* context) const {
    context->~Context();
    std::free(context);
  }
};

template <class Context>
using ContextPtr = std::unique_ptr<Context, ContextDeleter>;

// A value-initialised context, or null when there is no memory for it.
template <class Context>
ContextPtr<Context> MakeContext() {
  static_assert(alignof(Context) <= alignof(std::max_align_t));
  void* memory = std::malloc(sizeof(Context));
  return ContextPtr<Context>(memory == nullptr ? nullptr : ::new (memory) Context());
}

// Releases the context that *context points to and nulls the pointer; a null pointer stays null.
template <class Context>
void ReleaseContext(Context** context) {
  ContextPtr<Context>(std::exchange(*context, nullptr)).reset();
}

// The one release of the families whose contexts need no more than their memory back and that have
// no status for a null argument: it does nothing then. Always OVRA_OK.
template <class Context>
Status FreeAnyContext(Context** context) {
  if (context != nullptr) std::free(std::exchange(*context, nullptr));
  return OVRA_OK;
}

}  // namespace ovra
