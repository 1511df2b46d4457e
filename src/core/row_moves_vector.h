// SPDX-License-Identifier: MIT
// The vector forms of moving rows, for registers of any width and any order of pixels and bytes.
// For kernel files.
#pragma once

#include <cstring>

#include "core/row_move.h"
#include "core/vector_ops.h"

namespace ovra {
namespace {

// Pixels in the source's order or backward, their bytes in the source's order or exchanged.
template <int kBytes, bool kTurned, bool kExchanged>
struct PixelOrder {
  static constexpr int kPixelBytes = kBytes;
  static constexpr bool kBackward = kTurned;
  static constexpr bool kExchangedBytes = kExchanged;
  static constexpr bool kUnchanged = !kTurned && !kExchanged;
};

// Where the 16 bytes of lane kLane of a row come from. Pixels that do not fill a lane begin before
// it or end behind it, so that the source's bytes can be more than a lane: there are two loads, and
// all bytes stand in one of them.
template <class Order, int kLane>
struct LaneSource {
  static constexpr int kLaneBytes = 16;
  static constexpr int kPixelBytes = Order::kPixelBytes;
  static constexpr int kFirstPixel = kLane * kLaneBytes / kPixelBytes;
  static constexpr int kPixels =
      (kLane * kLaneBytes + kLaneBytes - 1) / kPixelBytes + 1 - kFirstPixel;
  static constexpr bool kNeedsTwo = kPixels * kPixelBytes > kLaneBytes;

  // The loads in bytes from the row's beginning, or from its end.
  static constexpr int kBegin =
      Order::kBackward ? -(kFirstPixel + kPixels) * kPixelBytes : kFirstPixel * kPixelBytes;
  static constexpr int kLast = kBegin + kPixels * kPixelBytes - kLaneBytes;

  alignas(kLaneBytes) int8_t first[kLaneBytes];
  alignas(kLaneBytes) int8_t last[kLaneBytes];

  constexpr LaneSource() : first(), last() {
    for (int i = 0; i < kLaneBytes; ++i) {
      const int place = kLane * kLaneBytes + i;
      const int pixel = place / kPixelBytes - kFirstPixel;
      const int byte = place % kPixelBytes;
      const int from = (Order::kBackward ? kPixels - 1 - pixel : pixel) * kPixelBytes +
                       (Order::kExchangedBytes ? kPixelBytes - 1 - byte : byte);
      const bool in_first = from < kLaneBytes;
      first[i] = static_cast<int8_t>(in_first ? from : -1);
      last[i] = static_cast<int8_t>(in_first ? -1 : from - (kLast - kBegin));
    }
  }
};

template <class Order, int kLane>
constexpr LaneSource<Order, kLane> kLaneSource;

template <class V, class Order>
struct RowMover {
  static constexpr std::ptrdiff_t kPixelBytes = Order::kPixelBytes;
  static constexpr std::ptrdiff_t kLineBytes = 64;
  // After so many lanes, registers and cache lines a pixel begins with each of them.
  static constexpr int kPeriod = kPixelBytes == 3 || kPixelBytes == 6 ? 3 : 1;
  static constexpr std::ptrdiff_t kStepBytes = kPeriod * V::kBytes;
  static constexpr std::ptrdiff_t kBlockBytes = (kPeriod == 1 ? 2 : kPeriod) * kLineBytes;

  // Rows narrower than a register's step are for `narrower`.
  static void Run(const RowMove& move, MoveRows* narrower) {
    const std::ptrdiff_t bytes = move.pixels * kPixelBytes;
    if (bytes < kStepBytes) return narrower(move);
    const uint8_t* source = move.source;
    uint8_t* destination = move.destination;
    for (std::ptrdiff_t row = 0; row < move.rows; ++row) {
      MoveRow(source, move.source_stride, destination, bytes, move.streaming);
      if (move.padding > 0) {
        std::memset(destination + bytes, 0, static_cast<size_t>(move.padding));
      }
      source += move.source_stride;
      destination += move.destination_stride;
    }
    if (move.streaming) FinishStreaming();
  }

 private:
  static void MoveRow(const uint8_t* source, std::ptrdiff_t next, uint8_t* destination,
                      std::ptrdiff_t bytes, bool streaming) {
    const std::ptrdiff_t head = BytesBeforeLine(destination);
    if (head > bytes) return MoveSteps(source, destination, bytes, 0, bytes);
    MoveSteps(source, destination, bytes, 0, head);
    const std::ptrdiff_t end = streaming
                                   ? MoveBlocks<true>(source, next, destination, bytes, head)
                                   : MoveBlocks<false>(source, next, destination, bytes, head);
    MoveSteps(source, destination, bytes, end, bytes);
  }

  // The bytes of whole pixels up to the beginning of a cache line, none or at least a step, so that
  // nothing else is written to lines that go round the cache. More than any row has where no pixel
  // begins with a line.
  static std::ptrdiff_t BytesBeforeLine(const uint8_t* destination) {
    std::ptrdiff_t bytes = BytesToLine(destination);
    while (bytes % kPixelBytes != 0 && bytes < kBlockBytes) bytes += kLineBytes;
    if (bytes % kPixelBytes != 0) return PTRDIFF_MAX;
    return bytes > 0 && bytes < kStepBytes ? bytes + kBlockBytes : bytes;
  }

  // What the bytes from place x of the destination on are in the source.
  static const uint8_t* From(const uint8_t* source, std::ptrdiff_t row_bytes, std::ptrdiff_t x,
                             std::ptrdiff_t count) {
    return source + (Order::kBackward ? row_bytes - x - count : x);
  }

  // Whole blocks from x on, as long as none or a step is left; answers where they end.
  template <bool kStreaming>
  static std::ptrdiff_t MoveBlocks(const uint8_t* source, std::ptrdiff_t next, uint8_t* destination,
                                   std::ptrdiff_t row_bytes, std::ptrdiff_t x) {
    const auto left = [row_bytes](std::ptrdiff_t place) { return row_bytes - place; };
    for (; left(x) == kBlockBytes || left(x) >= kBlockBytes + kStepBytes; x += kBlockBytes) {
      const uint8_t* const block = From(source, row_bytes, x, kBlockBytes);
      // A row's beginning is more than a processor foresees: asks for the next row's same bytes.
      PrefetchAt(block, next, kBlockBytes);
      Move<kBlockBytes, kStreaming>(block, destination + x);
    }
    return x;
  }

  // From x to the end, at least a step or nothing. What does not fill a step is moved with bytes that
  // have been moved already.
  static void MoveSteps(const uint8_t* source, uint8_t* destination, std::ptrdiff_t row_bytes,
                        std::ptrdiff_t x, std::ptrdiff_t end) {
    for (; x + kStepBytes <= end; x += kStepBytes) {
      Move<kStepBytes, false>(From(source, row_bytes, x, kStepBytes), destination + x);
    }
    if (x < end) {
      x = end - kStepBytes;
      Move<kStepBytes, false>(From(source, row_bytes, x, kStepBytes), destination + x);
    }
  }

  template <std::ptrdiff_t kBytes, bool kStreaming>
  static void Move(const uint8_t* source, uint8_t* destination) {
#pragma GCC unroll 4
    for (std::ptrdiff_t i = 0; i < kBytes; i += kStepBytes) {
      const uint8_t* const in = source + (Order::kBackward ? kBytes - i - kStepBytes : i);
      MoveRegister<0, kStreaming>(in, destination + i);
      if constexpr (kPeriod > 1) {
        MoveRegister<1, kStreaming>(in, destination + i);
        MoveRegister<2, kStreaming>(in, destination + i);
      }
    }
  }

  // Register kRegister of a step.
  template <int kRegister, bool kStreaming>
  static void MoveRegister(const uint8_t* source, uint8_t* destination) {
    constexpr int kLane = kRegister * V::kLanes;
    constexpr const auto& kFrom = kLaneSource<Order, kLane>;
    constexpr const auto& kFromSecond = kLaneSource<Order, kLane + V::kLanes - 1>;
    const uint8_t* const in = Order::kBackward ? source + kStepBytes : source;
    typename V::Reg moved;
    if constexpr (kFrom.kNeedsTwo) {
      const auto last = V::LoadLanes(in + kFrom.kLast, in + kFromSecond.kLast);
      moved = V::LoadLanes(in + kFrom.kBegin, in + kFromSecond.kBegin);
      moved = V::Or(V::Shuffle8(moved, V::LoadLanes(kFrom.first, kFromSecond.first)),
                    V::Shuffle8(last, V::LoadLanes(kFrom.last, kFromSecond.last)));
    } else if constexpr (Order::kBackward) {
      moved = V::Shuffle8(V::SwapLanes(V::Load(in + kFromSecond.kBegin)),
                          V::LoadToAllLanes(kFrom.first));
    } else {
      static_assert(Order::kUnchanged);
      moved = V::Load(in + kFrom.kBegin);
    }
    uint8_t* const out = destination + kRegister * V::kBytes;
    if constexpr (kStreaming) {
      V::StoreStreaming(out, moved);
    } else {
      V::Store(out, moved);
    }
  }
};

}  // namespace
}  // namespace ovra
