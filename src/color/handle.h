// SPDX-License-Identifier: MIT
// Handle words: how the context families of this subsystem hand a context to the caller and get it
// back. A word is the context's address; 0 is no handle.
#pragma once

#include <cstdint>
#include <utility>

#include "core/status.h"
#include "core/work_memory.h"

namespace ovra {

template <class Context>
Context* ContextOf(uintptr_t handle) {
  return reinterpret_cast<Context*>(handle);
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

// Releases the context behind *handle, if there is one, and sets the word to 0.
template <class Context>
void ReleaseHandle(uintptr_t* handle) {
  ContextPtr<Context>(ContextOf<Context>(std::exchange(*handle, 0))).reset();
}

}  // namespace ovra
