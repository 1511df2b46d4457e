// SPDX-License-Identifier: MIT
#include "support/guarded_buffer.h"

#include <cstdlib>
#include <cstring>
#include <mutex>

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

// Maps of a few pages are kept for the next buffer that needs as many, since making one takes longer
// than most calls that are tested. Each points to the next from its first accessible byte; none of
// this allocates, because tests count allocations.
constexpr size_t kMostKeptPages = 64;
std::mutex kept_mutex;
uint8_t* kept[kMostKeptPages];

// The list that maps of so many bytes belong to, or null.
uint8_t** KeptMaps(size_t bytes) {
  const size_t pages = bytes / kPage;
  return pages > 2 && pages < kMostKeptPages ? &kept[pages] : nullptr;
}

uint8_t* TakeKept(size_t bytes) {
  uint8_t** const list = KeptMaps(bytes);
  const std::lock_guard lock(kept_mutex);
  if (list == nullptr || *list == nullptr) return nullptr;
  uint8_t* const pages = *list;
  std::memcpy(list, pages + kPage, sizeof *list);
  return pages;
}

// False where it is not to be kept.
bool Keep(uint8_t* pages, size_t bytes) {
  uint8_t** const list = KeptMaps(bytes);
  if (list == nullptr) return false;
  const std::lock_guard lock(kept_mutex);
  std::memcpy(pages + kPage, list, sizeof *list);
  *list = pages;
  return true;
}

}  // namespace

GuardedBuffer::GuardedBuffer(size_t size, Guard guard) : size_(size) {
  const size_t usable = (size + kPage - 1) / kPage * kPage;
  mapped_bytes_ = usable + 2 * kPage;
  pages_ = TakeKept(mapped_bytes_);
  if (pages_ == nullptr) pages_ = MapBetweenGuards(mapped_bytes_);
  std::memset(pages_ + kPage, kFill, usable);
  data_ = pages_ + kPage + (guard == Guard::kAfter ? usable - size : 0);
}

GuardedBuffer::~GuardedBuffer() {
  if (Keep(pages_, mapped_bytes_)) return;
#ifdef _WIN32
  VirtualFree(pages_, 0, MEM_RELEASE);
#else
  munmap(pages_, mapped_bytes_);
#endif
}

}  // namespace ovra_test
