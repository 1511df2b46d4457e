// SPDX-License-Identifier: MIT
// The rows of a picture that an operation still needs, however high the picture is.
#pragma once

#include <cstddef>
#include <cstdint>
#include <limits>

#include "core/work_memory.h"

namespace ovra {

// Rows of a common size, of which as many are held as the ring has slots: row j is in slot
// j mod Slots(), where it stays until a row with the same slot is written. Rows are for the user to
// fill; every one starts at a cache line.
template <class Sample>
class RowRing {
 public:
  // Takes `slots` (at least one) rows of `row_samples` samples each. False when there is no memory
  // for them; the ring is not usable then.
  [[nodiscard]] bool Allocate(uint64_t row_samples, uint64_t slots) {
    constexpr uint64_t kLineSamples = WorkMemory<Sample>::kAlignment / sizeof(Sample);
    // An odd number of cache lines: columns of rows that lie a power of two apart would compete for
    // the same few places in the cache.
    const uint64_t spacing = ((row_samples / kLineSamples + 1) | 1) * kLineSamples;
    if (spacing > std::numeric_limits<std::ptrdiff_t>::max() / slots) return false;
    if (!samples_.Allocate(spacing * slots)) return false;
    spacing_ = static_cast<std::ptrdiff_t>(spacing);
    slots_ = static_cast<std::ptrdiff_t>(slots);
    return true;
  }

  // Row j, from 0 on.
  Sample* Row(std::ptrdiff_t j) { return samples_.data() + j % slots_ * spacing_; }
  const Sample* Row(std::ptrdiff_t j) const { return samples_.data() + j % slots_ * spacing_; }

  std::ptrdiff_t Slots() const { return slots_; }

 private:
  WorkMemory<Sample> samples_;
  std::ptrdiff_t spacing_ = 0;  // between the starts of two slots, in samples
  std::ptrdiff_t slots_ = 1;
};

}  // namespace ovra
