// SPDX-License-Identifier: MIT
// Rows that go from one image to another unchanged but for the order of their pixels or bytes.
#pragma once

#include <cstddef>
#include <cstdint>

namespace ovra {

// Rows and strides are in memory order; strides are in bytes and may be negative. The images do not
// overlap, and only their pixels are read and written, and the padding that is asked for.
struct RowMove {
  const uint8_t* source;
  std::ptrdiff_t source_stride;
  uint8_t* destination;
  std::ptrdiff_t destination_stride;
  std::ptrdiff_t pixels;  // of a row
  std::ptrdiff_t rows;
  std::ptrdiff_t padding;  // bytes behind each destination row, which are set to 0
  bool streaming;          // whether writing goes round the cache
};

using MoveRows = void(const RowMove& move);

// Whether an image of so many bytes and rows is written round the cache. A large one has left it by
// the time it is read again, and its lines need not be read in order to be written, which is a third
// of the traffic; a small one loses by it. Measured with 32 MiB of cache, which a picture and its
// copy nearly fill.
inline bool WritesRoundCache(int64_t row_bytes, int64_t rows) {
  constexpr int64_t kLeastBytes = int64_t{12} << 20;
  return row_bytes * rows >= kLeastBytes;
}

}  // namespace ovra
