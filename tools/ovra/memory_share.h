// SPDX-License-Identifier: MIT
// Pictures that are worked on side by side, held to the memory that the machine has.
#pragma once

#include <cstdint>

#include "picture_rows.h"

namespace ovra_host {

// What work on one picture may take, judged by its size as it is read, claimed for as long as this
// object lives. Waits while others hold so much that the claim would go beyond half of the machine's
// memory; one is never kept waiting when there are no others.
class MemoryShare {
 public:
  explicit MemoryShare(const PictureHeader& header);
  ~MemoryShare();
  MemoryShare(const MemoryShare&) = delete;
  MemoryShare& operator=(const MemoryShare&) = delete;

 private:
  uint64_t bytes_;
};

}  // namespace ovra_host
