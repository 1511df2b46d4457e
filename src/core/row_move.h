// SPDX-License-Identifier: MIT
// Rows that go from one image to another unchanged but for the order of their pixels or bytes.
#pragma once

#include <cstddef>
#include <cstdint>

#include "core/rows.h"

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

}  // namespace ovra
