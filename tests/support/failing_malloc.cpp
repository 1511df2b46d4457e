// SPDX-License-Identifier: MIT
#include "support/failing_malloc.h"

#include <cstdlib>
#include <new>

namespace {

// Test programs call the library from one thread while they count.
struct {
  bool is_on;
  int first_failing;
  int last_failing;
  int requested;
  int outstanding;
  size_t requested_bytes;
} count;

// Whether the next allocation, of this size, is to fail; counts it.
bool NextFails(size_t size) {
  if (!count.is_on) return false;
  ++count.requested;
  count.requested_bytes += size;
  return count.requested >= count.first_failing && count.requested <= count.last_failing;
}

void* Counted(void* block) {
  if (count.is_on && block != nullptr) ++count.outstanding;
  return block;
}

}  // namespace

// The linker sends every reference to malloc and its kin here.
extern "C" {
void* __real_malloc(size_t size);
void* __real_calloc(size_t number, size_t size);
void* __real_realloc(void* block, size_t size);
void __real_free(void* block);

void* __wrap_malloc(size_t size);
void* __wrap_calloc(size_t number, size_t size);
void* __wrap_realloc(void* block, size_t size);
void __wrap_free(void* block);

void* __wrap_malloc(size_t size) {
  return NextFails(size) ? nullptr : Counted(__real_malloc(size));
}

void* __wrap_calloc(size_t number, size_t size) {
  return NextFails(number * size) ? nullptr : Counted(__real_calloc(number, size));
}

void* __wrap_realloc(void* block, size_t size) {
  if (NextFails(size)) return nullptr;
  return block == nullptr ? Counted(__real_realloc(block, size)) : __real_realloc(block, size);
}

void __wrap_free(void* block) {
  if (count.is_on && block != nullptr) --count.outstanding;
  __real_free(block);
}
}

#ifdef _WIN32
// Where the C++ library is linked into the program, what the tests themselves allocate would count.
void* operator new(size_t size) {
  if (void* block = __real_malloc(size)) return block;
  throw std::bad_alloc();
}
void operator delete(void* block) noexcept {
  __real_free(block);
}
void operator delete(void* block, size_t /*size*/) noexcept {
  __real_free(block);
}
#endif

namespace ovra_test {

FailAllocations::FailAllocations(int first, int last) {
  count = {true, first, last, 0, 0, 0};
}
FailAllocations::~FailAllocations() {
  count.is_on = false;
}
int FailAllocations::Requested() {
  return count.requested;
}
size_t FailAllocations::RequestedBytes() {
  return count.requested_bytes;
}
int FailAllocations::Outstanding() {
  return count.outstanding;
}

}  // namespace ovra_test
