// SPDX-License-Identifier: MIT
#include "memory_share.h"

#include <unistd.h>

#include <condition_variable>
#include <mutex>

namespace ovra_host {
namespace {

// Samples that are widened to 16 bits, before and after the work, and what the library takes beside.
constexpr uint64_t kBytesPerSample = 8;

struct Claims {
  std::mutex mutex;
  std::condition_variable fewer;
  uint64_t bytes = 0;
};

Claims& AllClaims() {
  static Claims claims;
  return claims;
}

uint64_t HalfOfTheMemory() {
  static const uint64_t half = static_cast<uint64_t>(::sysconf(_SC_PHYS_PAGES)) *
                               static_cast<uint64_t>(::sysconf(_SC_PAGESIZE)) / 2;
  return half;
}

}  // namespace

MemoryShare::MemoryShare(const PictureHeader& header)
    : bytes_(kBytesPerSample * header.channels() * static_cast<uint64_t>(header.width) *
             static_cast<uint64_t>(header.height)) {
  Claims& claims = AllClaims();
  std::unique_lock<std::mutex> lock(claims.mutex);
  claims.fewer.wait(
      lock, [&] { return claims.bytes == 0 || claims.bytes + bytes_ <= HalfOfTheMemory(); });
  claims.bytes += bytes_;
}

MemoryShare::~MemoryShare() {
  Claims& claims = AllClaims();
  {
    const std::lock_guard<std::mutex> lock(claims.mutex);
    claims.bytes -= bytes_;
  }
  claims.fewer.notify_all();
}

}  // namespace ovra_host
