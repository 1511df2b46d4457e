// SPDX-License-Identifier: MIT
// The movers of rotation over vectors of one or two 128-bit lanes. Included by the accelerated
// kernel files, each of which brings the vector type:
//
//   Vector::kLanes                           1 or 2
//   Vector::Type                             the register
//   Vector::Load(first, second)              16 bytes a lane, from two addresses
//   Vector::Store(first, second, vector)     16 bytes a lane, to two addresses
//   Vector::StoreAll(address, vector)        all lanes, one after another
//   Vector::Table(bytes)                     16 constant bytes in every lane
//   Vector::Shuffle(vector, table)           bytes picked within each lane, 0 where the table says -1
//   Vector::InterleaveLow<kBytes>(a, b), InterleaveHigh<kBytes>(a, b)
//   Vector::Or(a, b), ShiftUp<kBytes>(a), ShiftDown<kBytes>(a)
//
// With one lane the second addresses are not used.
#pragma once

#include <xmmintrin.h>

#include "geometry/rotation_mappings.h"
#include "geometry/rotation_movers.h"

namespace ovra {
namespace {

constexpr int kLaneBytes = 16;

// Which byte of a vector goes where.
struct ByteTable {
  alignas(kLaneBytes) int8_t bytes[kLaneBytes];
};

// Reverses the pixels that end a lane. Where they do not fill it, the first bytes of the lane are
// left out and the last of the result are 0.
template <int kPixelBytes>
constexpr ByteTable ReversingTable() {
  constexpr int kPixels = kLaneBytes / kPixelBytes;
  constexpr int kSurplus = kLaneBytes - kPixels * kPixelBytes;
  ByteTable table = {};
  for (int i = 0; i < kLaneBytes; ++i) {
    const int pixel = kPixels - 1 - i / kPixelBytes;
    const bool used = i < kLaneBytes - kSurplus;
    table.bytes[i] =
        static_cast<int8_t>(used ? kSurplus + pixel * kPixelBytes + i % kPixelBytes : -1);
  }
  return table;
}

// Spreads packed pixels over cells of the next power of two, or packs them again.
template <int kPixelBytes, int kCellBytes>
constexpr ByteTable SpreadingTable() {
  ByteTable table = {};
  for (int i = 0; i < kLaneBytes; ++i) {
    const bool used = i % kCellBytes < kPixelBytes;
    table.bytes[i] = static_cast<int8_t>(used ? i / kCellBytes * kPixelBytes + i % kCellBytes : -1);
  }
  return table;
}

template <int kPixelBytes, int kCellBytes>
constexpr ByteTable PackingTable() {
  ByteTable table = {};
  for (int i = 0; i < kLaneBytes; ++i) {
    const bool used = i < kLaneBytes / kCellBytes * kPixelBytes;
    table.bytes[i] =
        static_cast<int8_t>(used ? i / kPixelBytes * kCellBytes + i % kPixelBytes : -1);
  }
  return table;
}

template <class Vector>
class VectorMovers {
 public:
  // Long runs in each destination row, since every row is on another page.
  static constexpr std::ptrdiff_t kBlockColumns = 256;

  template <int kPixelBytes>
  static void ReverseRow(const uint8_t* source, uint8_t* destination, std::ptrdiff_t pixels) {
    constexpr std::ptrdiff_t kPixels = kLaneBytes / kPixelBytes;
    constexpr std::ptrdiff_t kUsedBytes = kPixels * kPixelBytes;
    constexpr std::ptrdiff_t kStep = Vector::kLanes * kPixels;
    static constexpr ByteTable kTable = ReversingTable<kPixelBytes>();
    const Type reverse = Vector::Table(kTable.bytes);
    // A lane reads some bytes before its pixels and writes as many behind them, which the next step
    // writes again: hence one pixel more must follow.
    std::ptrdiff_t x = 0;
    for (; x + kStep < pixels; x += kStep) {
      const uint8_t* const in = source + (pixels - x) * kPixelBytes - kLaneBytes;
      uint8_t* const out = destination + x * kPixelBytes;
      Vector::Store(out, out + kUsedBytes,
                    Vector::Shuffle(Vector::Load(in, in - kUsedBytes), reverse));
    }
    ReversePixels<kPixelBytes>(source, destination + x * kPixelBytes, pixels - x);
  }

  template <int kPixelBytes>
  static void TransposeBlock(const uint8_t* source, std::ptrdiff_t source_stride,
                             uint8_t* destination, std::ptrdiff_t destination_stride,
                             std::ptrdiff_t rows, std::ptrdiff_t columns) {
    constexpr std::ptrdiff_t kSide = kLaneBytes / CellBytes(kPixelBytes);
    constexpr std::ptrdiff_t kRows = RowsOfSquares(kPixelBytes);
    constexpr std::ptrdiff_t kLineColumns = kSide * kSquaresOfLine;
    const std::ptrdiff_t whole_rows = rows / kRows * kRows;
    // A lane that is not filled by its pixels reads on, but not beyond its row.
    const auto square_fits = [columns](std::ptrdiff_t column) {
      return column * kPixelBytes + kLaneBytes <= columns * kPixelBytes;
    };
    std::ptrdiff_t column = 0;
    for (; square_fits(column + kLineColumns - kSide); column += kLineColumns) {
      TransposeStrip<kPixelBytes, kSquaresOfLine>(source + column * kPixelBytes, source_stride,
                                                  destination + column * destination_stride,
                                                  destination_stride, whole_rows);
    }
    for (; square_fits(column); column += kSide) {
      TransposeStrip<kPixelBytes, 1>(source + column * kPixelBytes, source_stride,
                                     destination + column * destination_stride, destination_stride,
                                     whole_rows);
    }
    TransposePixels<kPixelBytes>(source + column * kPixelBytes, source_stride,
                                 destination + column * destination_stride, destination_stride,
                                 whole_rows, columns - column);
    TransposePixels<kPixelBytes>(source + whole_rows * source_stride, source_stride,
                                 destination + whole_rows * kPixelBytes, destination_stride,
                                 rows - whole_rows, columns);
  }

 private:
  using Type = typename Vector::Type;

  // Squares of cells are transposed in registers: cells of the pixel's size, or of the next power of
  // two.
  static constexpr int CellBytes(int pixel_bytes) {
    return pixel_bytes == 3 ? 4 : pixel_bytes == 6 ? 8 : pixel_bytes;
  }

  // So many squares side by side are about a cache line of each source row: it is used up at once,
  // which keeps rows a power of two apart from driving each other out of the cache.
  static constexpr int kSquaresOfLine = 4;

  // Squares one below the other that fill whole vectors: four times twelve bytes are three times sixteen.
  static constexpr int Group(int pixel_bytes) {
    return CellBytes(pixel_bytes) == pixel_bytes ? 1 : 4;
  }

  static constexpr int RowsOfSquares(int pixel_bytes) {
    return kLaneBytes / CellBytes(pixel_bytes) * Group(pixel_bytes) * Vector::kLanes;
  }

  // Transposes `rows` source rows, a multiple of RowsOfSquares, of kSquares squares in width.
  template <int kPixelBytes, int kSquares>
  static void TransposeStrip(const uint8_t* source, std::ptrdiff_t source_stride,
                             uint8_t* destination, std::ptrdiff_t destination_stride,
                             std::ptrdiff_t rows) {
    constexpr std::ptrdiff_t kSide = kLaneBytes / CellBytes(kPixelBytes);
    constexpr std::ptrdiff_t kRows = RowsOfSquares(kPixelBytes);
    for (std::ptrdiff_t row = 0; row < rows; row += kRows) {
      for (std::ptrdiff_t i = 0; i < kRows; ++i) PrefetchAhead(source + (row + i) * source_stride);
      for (std::ptrdiff_t x = 0; x < kSquares * kSide; x += kSide) {
        TransposeSquares<kPixelBytes>(source + row * source_stride + x * kPixelBytes, source_stride,
                                      destination + x * destination_stride + row * kPixelBytes,
                                      destination_stride);
      }
    }
  }

  // Asks for what this row will need two lines further on: the rows of a block are more streams than
  // a processor follows by itself. A prefetch cannot fault, wherever it points.
  static void PrefetchAhead(const uint8_t* row) {
    constexpr uintptr_t kDistance = 128;
    _mm_prefetch(reinterpret_cast<const char*>(reinterpret_cast<uintptr_t>(row) + kDistance),
                 _MM_HINT_T0);
  }

  // Interleaving the rows of the upper half with those of the lower, once for each bit of a row's
  // number, exchanges rows and columns.
  template <int kCellBytes>
  static void TransposeRegisters(Type* rows) {
    constexpr int kRows = kLaneBytes / kCellBytes;
#pragma GCC unroll 4
    for (int bit = 1; bit < kRows; bit *= 2) {
      Type interleaved[kRows];
#pragma GCC unroll 8
      for (int i = 0; i < kRows / 2; ++i) {
        const Type upper = rows[i];
        const Type lower = rows[i + kRows / 2];
        interleaved[2 * i] = Vector::template InterleaveLow<kCellBytes>(upper, lower);
        interleaved[2 * i + 1] = Vector::template InterleaveHigh<kCellBytes>(upper, lower);
      }
#pragma GCC unroll 16
      for (int i = 0; i < kRows; ++i) rows[i] = interleaved[i];
    }
  }

  template <int kPixelBytes>
  static void TransposeSquares(const uint8_t* source, std::ptrdiff_t source_stride,
                               uint8_t* destination, std::ptrdiff_t destination_stride) {
    constexpr int kCellBytes = CellBytes(kPixelBytes);
    constexpr int kSide = kLaneBytes / kCellBytes;
    constexpr int kGroup = Group(kPixelBytes);
    constexpr int kLaneRows = kSide * kGroup;
    static constexpr ByteTable kSpread = SpreadingTable<kPixelBytes, kCellBytes>();
    static constexpr ByteTable kPack = PackingTable<kPixelBytes, kCellBytes>();
    Type squares[kGroup][kSide];
#pragma GCC unroll 4
    for (int square = 0; square < kGroup; ++square) {
#pragma GCC unroll 16
      for (int i = 0; i < kSide; ++i) {
        const uint8_t* const in = source + (square * kSide + i) * source_stride;
        squares[square][i] = Vector::Load(in, in + kLaneRows * source_stride);
        if constexpr (kGroup > 1) {
          squares[square][i] = Vector::Shuffle(squares[square][i], Vector::Table(kSpread.bytes));
        }
      }
      TransposeRegisters<kCellBytes>(squares[square]);
    }
#pragma GCC unroll 16
    for (int i = 0; i < kSide; ++i) {
      uint8_t* const out = destination + i * destination_stride;
      if constexpr (kGroup == 1) {
        Vector::StoreAll(out, squares[0][i]);
      } else {
        uint8_t* const second = out + kLaneRows * kPixelBytes;
        const Type pack = Vector::Table(kPack.bytes);
        StorePacked(out, second, Vector::Shuffle(squares[0][i], pack),
                    Vector::Shuffle(squares[1][i], pack), Vector::Shuffle(squares[2][i], pack),
                    Vector::Shuffle(squares[3][i], pack));
      }
    }
  }

  // Stores the first twelve bytes of each of four vectors one after another.
  static void StorePacked(uint8_t* first, uint8_t* second, Type a, Type b, Type c, Type d) {
    Vector::Store(first, second, Vector::Or(a, Vector::template ShiftUp<12>(b)));
    Vector::Store(first + 16, second + 16,
                  Vector::Or(Vector::template ShiftDown<4>(b), Vector::template ShiftUp<8>(c)));
    Vector::Store(first + 32, second + 32,
                  Vector::Or(Vector::template ShiftDown<8>(c), Vector::template ShiftUp<4>(d)));
  }
};

}  // namespace
}  // namespace ovra
