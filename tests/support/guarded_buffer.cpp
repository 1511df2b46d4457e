// SPDX-License-Identifier: MIT
#include "support/guarded_buffer.h"

#include <cstdlib>
#include <cstring>

#ifdef _WIN32
#include <windows.h>
#else
#include <sys/mman.h>
#endif

namespace ovra_test {
namespace {

constexpr size_t kPage = 4096;

// Readable and writable pages with an inaccessible one at either end.
uint8_t* MapBetweenGuards(size_t bytes) {
#ifdef _WIN32
  auto* pages =
      static_cast<uint8_t*>(VirtualAlloc(nullptr, bytes, MEM_RESERVE | MEM_COMMIT, PAGE_READWRITE));
  DWORD old = 0;
  if (pages == nullptr || !VirtualProtect(pages, kPage, PAGE_NOACCESS, &old) ||
      !VirtualProtect(pages + bytes - kPage, kPage, PAGE_NOACCESS, &old)) {
    std::abort();
  }
#else
  void* map = mmap(nullptr, bytes, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  if (map == MAP_FAILED) std::abort();
  auto* pages = static_cast<uint8_t*>(map);
  if (mprotect(pages, kPage, PROT_NONE) != 0 ||
      mprotect(pages + bytes - kPage, kPage, PROT_NONE) != 0) {
    std::abort();
  }
#endif
  return pages;
}

}  // namespace

GuardedBuffer::GuardedBuffer(size_t size, Guard guard) : size_(size) {
  const size_t usable = (size + kPage - 1) / kPage * kPage;
  mapped_bytes_ = usable + 2 * kPage;
  uint8_t* const pages = MapBetweenGuards(mapped_bytes_);
  pages_ = pages;
  std::memset(pages + kPage, kFill, usable);
  data_ = pages + kPage + (guard == Guard::kAfter ? usable - size : 0);
}

GuardedBuffer::~GuardedBuffer() {
#ifdef _WIN32
  VirtualFree(pages_, 0, MEM_RELEASE);
#else
  munmap(pages_, mapped_bytes_);
#endif
}

}  // namespace ovra_test
