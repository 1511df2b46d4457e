// SPDX-License-Identifier: MIT
// Handle words: how the context families of this subsystem hand a context to the caller and get it
// back. A word is the context's address; 0 is no handle. The context begins with its family's tag,
// so that a handle of another family is told from one's own.
#pragma once

#include <cstdint>
#include <utility>

#include "core/status.h"
#include "core/work_memory.h"

namespace ovra {

// The base of a family's context; `kTagOfFamily` is a number of its own.
template <uint32_t kTagOfFamily>
class TaggedContext {
 public:
  static constexpr uint32_t kTag = kTagOfFamily;

  TaggedContext() = default;
  TaggedContext(const TaggedContext&) = delete;
  TaggedContext& operator=(const TaggedContext&) = delete;
  // A tag that is left in memory given back would vouch for what is not there any more. The store
  // is volatile, since it is the last one to an object that ends.
  ~TaggedContext() { *const_cast<volatile uint32_t*>(&tag_) = 0; }

 private:
  uint32_t tag_ = kTagOfFamily;
};

// The context that a word stands for, or null when it is 0, cannot be an address that the allocator
// gave, or stands for a context of another family. A word that never was a handle, or whose context
// was released, cannot be told with certainty: its memory may be anyone's.
template <class Context>
Context* ContextOf(uintptr_t handle) {
  constexpr uintptr_t kLowestAddress = 0x10000;  // no system gives out the first 64 KiB
  constexpr uintptr_t kAlignment = 2 * sizeof(void*);
  if (handle < kLowestAddress || handle % kAlignment != 0) return nullptr;
  const auto tag = *reinterpret_cast<const uint32_t*>(handle);
  return tag == Context::kTag ? reinterpret_cast<Context*>(handle) : nullptr;
}

// The whole of an _Init: sets the word to 0 first, then hands out the context that
// `Status make(ContextPtr<Context>*)` has made. The word stays 0 when that fails, and a null
// pointer to the word is answered with `null_status`.
template <class Context, class Make>
Status CreateHandle(uintptr_t* handle_out, Status null_status, const Make& make) {
  if (handle_out == nullptr) return null_status;
  *handle_out = 0;
  ContextPtr<Context> context;
  const Status status = make(&context);
  if (status == OVRA_OK) *handle_out = reinterpret_cast<uintptr_t>(context.release());
  return status;
}

// The whole of a _Free, but for the null pointer: releases the context and sets the word to 0. A word
// of 0 is answered with `zero_status`, one that is not this family's with `null_status`, and kept.
template <class Context>
Status ReleaseHandle(uintptr_t* handle, Status zero_status, Status null_status) {
  if (*handle == 0) return zero_status;
  ContextPtr<Context> context(ContextOf<Context>(*handle));
  if (context == nullptr) return null_status;
  *handle = 0;
  return OVRA_OK;
}

}  // namespace ovra
