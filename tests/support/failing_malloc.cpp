// SPDX-License-Identifier: MIT
#include "support/failing_malloc.h"

#include <cstdlib>
#include <limits>

namespace {

// Test programs call the library from one thread while they count.
constexpr int kNever = std::numeric_limits<int>::max();
bool counting = false;
int first_failing = kNever;
int last_failing = kNever;
int requested = 0;
int outstanding = 0;
size_t requested_bytes = 0;

void StartCounting(int first, int last) {
  first_failing = first;
  last_failing = last;
  requested = 0;
  outstanding = 0;
  requested_bytes = 0;
  counting = true;
}

// Whether the next allocation, of this size, is to fail; counts it.
bool NextFails(size_t size) {
  if (!counting) return false;
  ++requested;
  requested_bytes += size;
  return requested >= first_failing && requested <= last_failing;
}

void* Count(void* block) {
  if (counting && block != nullptr) ++outstanding;
  return block;
}

}  // namespace

// The linker sends every reference to malloc and its kin here.
extern "C" {
void* __real_malloc(size_t size);
void* __real_calloc(size_t count, size_t size);
void* __real_realloc(void* block, size_t size);
void __real_free(void* block);

void* __wrap_malloc(size_t size);
void* __wrap_calloc(size_t count, size_t size);
void* __wrap_realloc(void* block, size_t size);
void __wrap_free(void* block);

void* __wrap_malloc(size_t size) {
  return NextFails(size) ? nullptr : Count(__real_malloc(size));
}

void* __wrap_calloc(size_t count, size_t size) {
  return NextFails(count * size) ? nullptr : Count(__real_calloc(count, size));
}

void* __wrap_realloc(void* block, size_t size) {
  if (NextFails(size)) return nullptr;
  return block == nullptr ? Count(__real_realloc(block, size)) : __real_realloc(block, size);
}

void __wrap_free(void* block) {
  if (counting && block != nullptr) --outstanding;
  __real_free(block);
}
}

namespace ovra_test {

FailAllocationsFrom::FailAllocationsFrom(int number) {
  StartCounting(number, kNever);
}
FailAllocationsFrom::~FailAllocationsFrom() {
  counting = false;
}
int FailAllocationsFrom::Requested() {
  return requested;
}
size_t FailAllocationsFrom::RequestedBytes() {
  return requested_bytes;
}

int FailAllocationsFrom::Outstanding() {
  return outstanding;
}

FailAllocation::FailAllocation(int number) {
  StartCounting(number, number);
}
FailAllocation::~FailAllocation() {
  counting = false;
}

}  // namespace ovra_test
