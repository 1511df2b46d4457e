// SPDX-License-Identifier: MIT
// The vector forms, for registers of any width. Included by one kernel file a tier.
#pragma once

#include "core/row_moves_vector.h"
#include "geometry/rotation/kernels.h"

namespace ovra {
namespace {

// Long runs in each destination row, since every row is on another page.
constexpr std::ptrdiff_t kBlockRows = 256;

constexpr int kLaneBytes = 16;
constexpr int8_t kZero = -1;

// Which byte of a lane goes where.
struct ByteTable {
  alignas(kLaneBytes) int8_t bytes[kLaneBytes] = {};
};

// Spreads packed pixels over cells of the next power of two, or packs them again.
template <int kPixelBytes, int kCellBytes>
constexpr ByteTable SpreadingTable() {
  ByteTable table;
  for (int i = 0; i < kLaneBytes; ++i) {
    const bool used = i % kCellBytes < kPixelBytes;
    table.bytes[i] =
        used ? static_cast<int8_t>(i / kCellBytes * kPixelBytes + i % kCellBytes) : kZero;
  }
  return table;
}

template <int kPixelBytes, int kCellBytes>
constexpr ByteTable PackingTable() {
  ByteTable table;
  for (int i = 0; i < kLaneBytes; ++i) {
    const bool used = i < kLaneBytes / kCellBytes * kPixelBytes;
    table.bytes[i] =
        used ? static_cast<int8_t>(i / kPixelBytes * kCellBytes + i % kPixelBytes) : kZero;
  }
  return table;
}

template <class V>
const RotationKernels& Rest() {
  return NarrowerThan<V>(kRotationPlain, kRotationSse);
}

template <class V, int kPixelBytes>
void Reverse(const RowMove& move) {
  constexpr bool kBackward = true;
  constexpr bool kExchangedBytes = false;
  RowMover<V, PixelOrder<kPixelBytes, kBackward, kExchangedBytes>>::Run(
      move, Rest<V>().reverse[kPixelBytes]);
}

// Squares of cells are transposed in registers: cells of the pixel's size, or of the next power of
// two. Where they differ, four squares one below the other are packed together: four times twelve
// bytes are three times sixteen.
template <class V, int kPixelBytes>
struct Transposition {
  using Reg = typename V::Reg;

  static constexpr int kCellBytes = kPixelBytes == 3 ? 4 : kPixelBytes == 6 ? 8 : kPixelBytes;
  static constexpr int kSide = kLaneBytes / kCellBytes;
  static constexpr int kGroup = kCellBytes == kPixelBytes ? 1 : 4;
  static constexpr int kLaneRows = kSide * kGroup;
  static constexpr int kStepRows = kLaneRows * V::kLanes;

  // So many squares side by side are about a cache line of each source row: it is used up at once,
  // which keeps rows a power of two apart from driving each other out of the cache.
  static constexpr int kSquaresOfLine = 4;

  static void Run(const uint8_t* source, std::ptrdiff_t source_stride, uint8_t* destination,
                  std::ptrdiff_t destination_stride, std::ptrdiff_t rows, std::ptrdiff_t columns) {
    constexpr std::ptrdiff_t kLineColumns = kSide * kSquaresOfLine;
    const std::ptrdiff_t whole_rows = rows / kStepRows * kStepRows;
    // A lane that is not filled by its pixels reads on, but not beyond its row.
    const auto square_fits = [columns](std::ptrdiff_t column) {
      return column * kPixelBytes + kLaneBytes <= columns * kPixelBytes;
    };
    std::ptrdiff_t column = 0;
    for (; square_fits(column + kLineColumns - kSide); column += kLineColumns) {
      TransposeStrip<kSquaresOfLine>(source + column * kPixelBytes, source_stride,
                                     destination + column * destination_stride, destination_stride,
                                     whole_rows);
    }
    for (; square_fits(column); column += kSide) {
      TransposeStrip<1>(source + column * kPixelBytes, source_stride,
                        destination + column * destination_stride, destination_stride, whole_rows);
    }
    kRotationPlain.transpose_block[kPixelBytes](source + column * kPixelBytes, source_stride,
                                                destination + column * destination_stride,
                                                destination_stride, whole_rows, columns - column);
    Rest<V>().transpose_block[kPixelBytes](source + whole_rows * source_stride, source_stride,
                                           destination + whole_rows * kPixelBytes,
                                           destination_stride, rows - whole_rows, columns);
  }

 private:
  // Transposes `rows` source rows, a multiple of kStepRows, of kSquares squares in width.
  template <int kSquares>
  static void TransposeStrip(const uint8_t* source, std::ptrdiff_t source_stride,
                             uint8_t* destination, std::ptrdiff_t destination_stride,
                             std::ptrdiff_t rows) {
    // Asks for what a row will need two lines further on: the rows of a block are more streams than
    // a processor follows by itself.
    constexpr uintptr_t kAhead = 128;
    for (std::ptrdiff_t row = 0; row < rows; row += kStepRows) {
      for (std::ptrdiff_t i = 0; i < kStepRows; ++i) {
        PrefetchLine(reinterpret_cast<uintptr_t>(source + (row + i) * source_stride) + kAhead);
      }
      for (std::ptrdiff_t x = 0; x < kSquares * kSide; x += kSide) {
        TransposeSquares(source + row * source_stride + x * kPixelBytes, source_stride,
                         destination + x * destination_stride + row * kPixelBytes,
                         destination_stride);
      }
    }
  }

  static void TransposeSquares(const uint8_t* source, std::ptrdiff_t source_stride,
                               uint8_t* destination, std::ptrdiff_t destination_stride) {
    static constexpr ByteTable kSpread = SpreadingTable<kPixelBytes, kCellBytes>();
    Reg squares[kGroup][kSide];
#pragma GCC unroll 4
    for (int square = 0; square < kGroup; ++square) {
#pragma GCC unroll 16
      for (int i = 0; i < kSide; ++i) {
        const uint8_t* const in = source + (square * kSide + i) * source_stride;
        squares[square][i] = V::LoadLanes(in, in + kLaneRows * source_stride);
        if constexpr (kGroup > 1) {
          squares[square][i] = V::Shuffle8(squares[square][i], V::LoadToAllLanes(kSpread.bytes));
        }
      }
      TransposeRegisters(squares[square]);
    }
#pragma GCC unroll 16
    for (int i = 0; i < kSide; ++i) {
      uint8_t* const out = destination + i * destination_stride;
      if constexpr (kGroup == 1) {
        V::Store(out, squares[0][i]);
      } else {
        StorePacked(out, squares[0][i], squares[1][i], squares[2][i], squares[3][i]);
      }
    }
  }

  // Interleaving the rows of the upper half with those of the lower, once for each bit of a row's
  // number, exchanges rows and columns.
  static void TransposeRegisters(Reg* rows) {
#pragma GCC unroll 4
    for (int bit = 1; bit < kSide; bit *= 2) {
      Reg interleaved[kSide];
#pragma GCC unroll 8
      for (int i = 0; i < kSide / 2; ++i) {
        const Reg upper = rows[i];
        const Reg lower = rows[i + kSide / 2];
        interleaved[2 * i] = V::template UnpackLow<8 * kCellBytes>(upper, lower);
        interleaved[2 * i + 1] = V::template UnpackHigh<8 * kCellBytes>(upper, lower);
      }
#pragma GCC unroll 16
      for (int i = 0; i < kSide; ++i) rows[i] = interleaved[i];
    }
  }

  // Stores the pixels of the cells of four registers one after another, lane by lane.
  static void StorePacked(uint8_t* first, Reg a, Reg b, Reg c, Reg d) {
    static constexpr ByteTable kPack = PackingTable<kPixelBytes, kCellBytes>();
    const Reg pack = V::LoadToAllLanes(kPack.bytes);
    a = V::Shuffle8(a, pack);
    b = V::Shuffle8(b, pack);
    c = V::Shuffle8(c, pack);
    d = V::Shuffle8(d, pack);
    uint8_t* const second = first + kLaneRows * kPixelBytes;
    V::StoreLanes(first, second, V::Or(a, V::template ShiftBytesUp<12>(b)));
    V::StoreLanes(first + 16, second + 16,
                  V::Or(V::template ShiftBytesDown<4>(b), V::template ShiftBytesUp<8>(c)));
    V::StoreLanes(first + 32, second + 32,
                  V::Or(V::template ShiftBytesDown<8>(c), V::template ShiftBytesUp<4>(d)));
  }
};

template <class V>
constexpr RotationKernels kRotationOf = {
    kBlockRows,
    {nullptr, Reverse<V, 1>, Reverse<V, 2>, Reverse<V, 3>, Reverse<V, 4>, nullptr, Reverse<V, 6>,
     nullptr, Reverse<V, 8>},
    {nullptr, Transposition<V, 1>::Run, Transposition<V, 2>::Run, Transposition<V, 3>::Run,
     Transposition<V, 4>::Run, nullptr, Transposition<V, 6>::Run, nullptr,
     Transposition<V, 8>::Run},
};

}  // namespace
}  // namespace ovra
