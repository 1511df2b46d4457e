// SPDX-License-Identifier: MIT
// The vector forms, for registers of any width. Included by one kernel file a tier.
#pragma once

#include "core/row_copy/kernels.h"
#include "core/row_moves_vector.h"
#include "geometry/rotation/kernels.h"

namespace ovra {
namespace {

// Long runs in each destination row, since every row is on another page.
constexpr std::ptrdiff_t kBlockRows = 256;

constexpr int kLaneBytes = 16;
constexpr int8_t kZero = -1;

constexpr std::ptrdiff_t kLineBytes = 64;

// Whether so many rows drive each other out of the first-level cache. Its places repeat after 4 KiB,
// so that rows of a multiple of a part of that share few of them. How many lines a place may be asked
// to hold is measured: twelve ways, which the other image's rows need as well.
constexpr std::ptrdiff_t kLinesOfSource = 16;
constexpr std::ptrdiff_t kLinesOfDestination = 8;

inline bool Collide(std::ptrdiff_t rows, std::ptrdiff_t lines_of_place, std::ptrdiff_t stride) {
  constexpr std::ptrdiff_t kRepeat = 4096;
  const std::ptrdiff_t part = stride & -stride;  // the greatest power of two that divides it
  return rows * (part < kRepeat ? part : kRepeat) > lines_of_place * kRepeat;
}

// Which byte of a lane goes where.
struct ByteTable {
  alignas(kLaneBytes) int8_t bytes[kLaneBytes] = {};
};

// Spreads packed pixels, which begin with byte `first`, over cells of the next power of two, or packs
// them again.
template <int kPixelBytes, int kCellBytes>
constexpr ByteTable SpreadingTable(int first) {
  ByteTable table;
  for (int i = 0; i < kLaneBytes; ++i) {
    const bool used = i % kCellBytes < kPixelBytes;
    table.bytes[i] =
        used ? static_cast<int8_t>(first + i / kCellBytes * kPixelBytes + i % kCellBytes) : kZero;
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

template <class V>
void RowCopyOf(const RowMove& move) {
  RowMover<V, PixelOrder<1, false, false>>::Run(move, kRowCopyPlain.copy);
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

  // So many squares side by side are about a cache line of each source row, which is used up at once.
  static constexpr int kSquaresOfLine = 4;
  static constexpr std::ptrdiff_t kStripColumns = kSide * kSquaresOfLine;
  static constexpr std::ptrdiff_t kSquareBytes = kSide * kPixelBytes;

  // What a strip writes to a destination row, and how far such runs are apart where they are collected.
  static constexpr std::ptrdiff_t kRunBytes = kBlockRows * kPixelBytes;
  static constexpr std::ptrdiff_t kRunStride = kRunBytes + kLineBytes;

  static void Run(const uint8_t* source, std::ptrdiff_t source_stride, uint8_t* destination,
                  std::ptrdiff_t destination_stride, std::ptrdiff_t rows, std::ptrdiff_t columns,
                  bool streaming) {
    for (std::ptrdiff_t row = 0; row < rows; row += kBlockRows) {
      RunBlock({source + row * source_stride, source_stride, destination + row * kPixelBytes,
                destination_stride, rows - row < kBlockRows ? rows - row : kBlockRows, columns,
                streaming});
    }
  }

 private:
  struct Block {
    const uint8_t* source;
    std::ptrdiff_t source_stride;
    uint8_t* destination;
    std::ptrdiff_t destination_stride;
    std::ptrdiff_t rows;
    std::ptrdiff_t columns;
    bool streaming;
  };

  static void RunBlock(const Block& block) {
    if (block.rows < kStepRows || block.columns * kPixelBytes < kLaneBytes) {
      return Rest<V>().transpose_block[kPixelBytes](block.source, block.source_stride,
                                                    block.destination, block.destination_stride,
                                                    block.rows, block.columns, block.streaming);
    }
    // A lane that is not filled by its pixels reads on, but not beyond its row.
    const auto squares_fit = [&block](std::ptrdiff_t column, std::ptrdiff_t squares) {
      const std::ptrdiff_t last = (column + (squares - 1) * kSide) * kPixelBytes;
      return last + kLaneBytes <= block.columns * kPixelBytes;
    };
    std::ptrdiff_t column = 0;
    for (; squares_fit(column, kSquaresOfLine); column += kStripColumns) {
      MoveStrip<kSquaresOfLine, 0>(block, column);
    }
    for (; squares_fit(column, 1); column += kSide) MoveStrip<1, 0>(block, column);
    // Pixels at the end are the last of their loads, some of them moved already.
    const std::ptrdiff_t last = block.columns - kSide;
    for (; column < block.columns; column += kSide) {
      MoveStrip<1, kLaneBytes - kSquareBytes>(block, column < last ? column : last);
    }
  }

  // A strip of kSquares squares in width, whose loads begin kBefore bytes before its pixels.
  template <int kSquares, int kBefore>
  static void MoveStrip(const Block& block, std::ptrdiff_t column) {
    const uint8_t* const source = block.source + column * kPixelBytes - kBefore;
    uint8_t* const destination = block.destination + column * block.destination_stride;
    const bool collide = Collide(kStripColumns, kLinesOfDestination, block.destination_stride);
    const bool half_lines = block.destination_stride % (kLineBytes / 2) == 0;
    // Measured: where rows collide, pixels that are packed again gain nothing by runs.
    const bool by_runs = collide ? kGroup == 1 : block.streaming && half_lines;
    if (!by_runs) {
      return TransposeStrip<kSquares, kBefore>(source, block.source_stride, destination,
                                               block.destination_stride, block.rows);
    }
    alignas(kLineBytes) uint8_t runs[kSquares * kSide * kRunStride];
    TransposeStrip<kSquares, kBefore>(source, block.source_stride, runs, kRunStride, block.rows);
    RowCopyOf<V>({.source = runs,
                  .source_stride = kRunStride,
                  .destination = destination,
                  .destination_stride = block.destination_stride,
                  .pixels = block.rows * kPixelBytes,
                  .rows = kSquares * kSide,
                  .padding = 0,
                  .streaming = block.streaming});
  }

  template <int kSquares, int kBefore>
  static void TransposeStrip(const uint8_t* source, std::ptrdiff_t source_stride,
                             uint8_t* destination, std::ptrdiff_t destination_stride,
                             std::ptrdiff_t rows) {
    if (Collide(kStepRows, kLinesOfSource, source_stride)) {
      TransposeRows<kSquares, kBefore, true>(source, source_stride, destination, destination_stride,
                                             rows);
    } else {
      TransposeRows<kSquares, kBefore, false>(source, source_stride, destination,
                                              destination_stride, rows);
    }
  }

  template <int kSquares, int kBefore, bool kCollected>
  static void TransposeRows(const uint8_t* source, std::ptrdiff_t source_stride,
                            uint8_t* destination, std::ptrdiff_t destination_stride,
                            std::ptrdiff_t rows) {
    for (std::ptrdiff_t step = 0; step < rows; step += kStepRows) {
      // What does not fill a step is moved with rows that have been moved already.
      const std::ptrdiff_t row = step + kStepRows <= rows ? step : rows - kStepRows;
      const uint8_t* const in = source + row * source_stride;
      uint8_t* const out = destination + row * kPixelBytes;
      PrefetchRows(in, source_stride);
      if constexpr (kCollected) {
        uint8_t lanes[kStepRows * kSquares * kLaneBytes];
        Collect<kSquares>(in, source_stride, lanes);
        TransposeStep<kSquares, kBefore, kLaneBytes>(lanes, kSquares * kLaneBytes, out,
                                                     destination_stride);
      } else {
        TransposeStep<kSquares, kBefore, kSquareBytes>(in, source_stride, out, destination_stride);
      }
    }
  }

  // Asks for what rows will need two lines further on: the rows of a block are more streams than a
  // processor follows by itself.
  static void PrefetchRows(const uint8_t* source, std::ptrdiff_t source_stride) {
    constexpr uintptr_t kAhead = 2 * kLineBytes;
    for (std::ptrdiff_t i = 0; i < kStepRows; ++i) {
      PrefetchLine(reinterpret_cast<uintptr_t>(source + i * source_stride) + kAhead);
    }
  }

  // The lanes of the squares of a step, row by row.
  template <int kSquares>
  static void Collect(const uint8_t* source, std::ptrdiff_t source_stride, uint8_t* lanes) {
    for (std::ptrdiff_t i = 0; i < kStepRows; ++i, lanes += kSquares * kLaneBytes) {
      for (int square = 0; square < kSquares; ++square) {
        Sse::Store(lanes + square * kLaneBytes,
                   Sse::Load(source + i * source_stride + square * kSquareBytes));
      }
    }
  }

  // kSquares squares side by side, which are kDistance bytes apart.
  template <int kSquares, int kBefore, std::ptrdiff_t kDistance>
  static void TransposeStep(const uint8_t* source, std::ptrdiff_t source_stride,
                            uint8_t* destination, std::ptrdiff_t destination_stride) {
    for (int square = 0; square < kSquares; ++square) {
      constexpr auto kTranspose =
          kGroup * kSide > 8 ? TransposeApart<kBefore> : TransposeSquares<kBefore>;
      kTranspose(source + square * kDistance, source_stride,
                 destination + square * kSide * destination_stride, destination_stride);
    }
  }

  // Where the registers are many they need a function of their own.
  template <int kBefore>
  [[gnu::noinline]] static void TransposeApart(const uint8_t* source, std::ptrdiff_t source_stride,
                                               uint8_t* destination,
                                               std::ptrdiff_t destination_stride) {
    TransposeSquares<kBefore>(source, source_stride, destination, destination_stride);
  }

  template <int kBefore>
  static void TransposeSquares(const uint8_t* source, std::ptrdiff_t source_stride,
                               uint8_t* destination, std::ptrdiff_t destination_stride) {
    static constexpr ByteTable kSpread = SpreadingTable<kPixelBytes, kCellBytes>(kBefore);
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
