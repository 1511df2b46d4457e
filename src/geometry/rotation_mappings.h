// SPDX-License-Identifier: MIT
// The eight mappings as kernels over two movers of pixels, which each tier brings along:
//
//   Movers::kBlockColumns
//     Destination columns that a transposing mapping fills at a time, from as many source rows.
//
//   Movers::ReverseRow<kPixelBytes>(source, destination, pixels)
//     Copies a row of pixels in reversed order.
//   Movers::TransposeBlock<kPixelBytes>(source, source_stride, destination, destination_stride,
//                                       rows, columns)
//     Copies pixel `column` of source row `row` to pixel `row` of destination row `column`, for
//     up to kBlockColumns rows. Strides are in bytes and may be negative.
//
// A pixel is moved as a unit, so only its size in bytes matters: 1, 2, 3, 4, 6 or 8. Included by
// each kernel file and compiled with that file's flags.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

#include "core/pixel_format.h"
#include "geometry/rotation_kernels.h"

namespace ovra {
namespace {

// Pixel bytes of a row, and the padding that follows them.
struct RowLayout {
  std::ptrdiff_t packed;
  std::ptrdiff_t stride;

  void ClearPadding(uint8_t* row) const {
    std::memset(row + packed, 0, static_cast<size_t>(stride - packed));
  }
};

template <int kSampleBytes>
RowLayout LayoutOf(int32_t width, int32_t channels, int32_t alignment_bytes) {
  return {RowStride(width, channels, 8 * kSampleBytes, 1),
          RowStride(width, channels, 8 * kSampleBytes, alignment_bytes)};
}

template <class Movers, int kSampleBytes>
void ReverseRow(const uint8_t* source, uint8_t* destination, int32_t width, int32_t channels) {
  switch (channels) {
    case 1:
      return Movers::template ReverseRow<1 * kSampleBytes>(source, destination, width);
    case 2:
      return Movers::template ReverseRow<2 * kSampleBytes>(source, destination, width);
    case 3:
      return Movers::template ReverseRow<3 * kSampleBytes>(source, destination, width);
    case 4:
      return Movers::template ReverseRow<4 * kSampleBytes>(source, destination, width);
    default:
      return;
  }
}

template <class Movers, int kSampleBytes>
void TransposeBlock(const uint8_t* source, std::ptrdiff_t source_stride, uint8_t* destination,
                    std::ptrdiff_t destination_stride, std::ptrdiff_t rows, std::ptrdiff_t columns,
                    int32_t channels) {
  switch (channels) {
    case 1:
      return Movers::template TransposeBlock<1 * kSampleBytes>(source, source_stride, destination,
                                                               destination_stride, rows, columns);
    case 2:
      return Movers::template TransposeBlock<2 * kSampleBytes>(source, source_stride, destination,
                                                               destination_stride, rows, columns);
    case 3:
      return Movers::template TransposeBlock<3 * kSampleBytes>(source, source_stride, destination,
                                                               destination_stride, rows, columns);
    case 4:
      return Movers::template TransposeBlock<4 * kSampleBytes>(source, source_stride, destination,
                                                               destination_stride, rows, columns);
    default:
      return;
  }
}

template <int kSampleBytes>
Status OrientCopy(const uint8_t* source, uint8_t* destination, int32_t width, int32_t height,
                  int32_t channels, int32_t alignment_bytes) {
  if (source == destination) return OVRA_OK;
  const RowLayout row = LayoutOf<kSampleBytes>(width, channels, alignment_bytes);
  for (std::ptrdiff_t y = 0; y < height; ++y) {
    std::memcpy(destination + y * row.stride, source + y * row.stride,
                static_cast<size_t>(row.packed));
    row.ClearPadding(destination + y * row.stride);
  }
  return OVRA_OK;
}

template <int kSampleBytes>
Status OrientFlipVertical(const uint8_t* source, uint8_t* destination, int32_t width,
                          int32_t height, int32_t channels, int32_t alignment_bytes) {
  const RowLayout row = LayoutOf<kSampleBytes>(width, channels, alignment_bytes);
  for (std::ptrdiff_t y = 0; y < height; ++y) {
    std::memcpy(destination + y * row.stride, source + (height - 1 - y) * row.stride,
                static_cast<size_t>(row.packed));
    row.ClearPadding(destination + y * row.stride);
  }
  return OVRA_OK;
}

template <class Movers, int kSampleBytes>
Status OrientMirror(const uint8_t* source, uint8_t* destination, int32_t width, int32_t height,
                    int32_t channels, int32_t alignment_bytes) {
  const RowLayout row = LayoutOf<kSampleBytes>(width, channels, alignment_bytes);
  for (std::ptrdiff_t y = 0; y < height; ++y) {
    ReverseRow<Movers, kSampleBytes>(source + y * row.stride, destination + y * row.stride, width,
                                     channels);
    row.ClearPadding(destination + y * row.stride);
  }
  return OVRA_OK;
}

template <class Movers, int kSampleBytes>
Status OrientHalfTurn(const uint8_t* source, uint8_t* destination, int32_t width, int32_t height,
                      int32_t channels, int32_t alignment_bytes) {
  const RowLayout row = LayoutOf<kSampleBytes>(width, channels, alignment_bytes);
  for (std::ptrdiff_t y = 0; y < height; ++y) {
    ReverseRow<Movers, kSampleBytes>(source + (height - 1 - y) * row.stride,
                                     destination + y * row.stride, width, channels);
    row.ClearPadding(destination + y * row.stride);
  }
  return OVRA_OK;
}

enum class RowWalk { kForward, kBackward };

// All four transposing mappings are the transposition between images whose rows are walked from the
// first to the last or from the last to the first.
template <class Movers, int kSampleBytes, RowWalk kSourceWalk, RowWalk kDestinationWalk>
Status OrientTransposed(const uint8_t* source, uint8_t* destination, int32_t width, int32_t height,
                        int32_t channels, int32_t alignment_bytes) {
  const RowLayout in = LayoutOf<kSampleBytes>(width, channels, alignment_bytes);
  const RowLayout out = LayoutOf<kSampleBytes>(height, channels, alignment_bytes);
  const bool in_forward = kSourceWalk == RowWalk::kForward;
  const bool out_forward = kDestinationWalk == RowWalk::kForward;
  const uint8_t* const first_in = in_forward ? source : source + (height - 1) * in.stride;
  uint8_t* const first_out = out_forward ? destination : destination + (width - 1) * out.stride;
  const std::ptrdiff_t in_step = in_forward ? in.stride : -in.stride;
  const std::ptrdiff_t out_step = out_forward ? out.stride : -out.stride;
  for (std::ptrdiff_t begin = 0; begin < height; begin += Movers::kBlockColumns) {
    const std::ptrdiff_t left = height - begin;
    TransposeBlock<Movers, kSampleBytes>(
        first_in + begin * in_step, in_step, first_out + begin * channels * kSampleBytes, out_step,
        left < Movers::kBlockColumns ? left : Movers::kBlockColumns, width, channels);
  }
  for (std::ptrdiff_t y = 0; y < width; ++y) out.ClearPadding(destination + y * out.stride);
  return OVRA_OK;
}

template <class Movers, int kSampleBytes>
OrientKernel* SelectOrientWith(Orientation orientation) {
  switch (orientation) {
    case Orientation::kCopy:
      return OrientCopy<kSampleBytes>;
    case Orientation::kQuarterLeft:
      return OrientTransposed<Movers, kSampleBytes, RowWalk::kForward, RowWalk::kBackward>;
    case Orientation::kHalfTurn:
      return OrientHalfTurn<Movers, kSampleBytes>;
    case Orientation::kQuarterRight:
      return OrientTransposed<Movers, kSampleBytes, RowWalk::kBackward, RowWalk::kForward>;
    case Orientation::kMirror:
      return OrientMirror<Movers, kSampleBytes>;
    case Orientation::kAntiTranspose:
      return OrientTransposed<Movers, kSampleBytes, RowWalk::kBackward, RowWalk::kBackward>;
    case Orientation::kFlipVertical:
      return OrientFlipVertical<kSampleBytes>;
    case Orientation::kTranspose:
      return OrientTransposed<Movers, kSampleBytes, RowWalk::kForward, RowWalk::kForward>;
  }
  return nullptr;
}

template <class Movers>
OrientKernel* SelectOrientWith(Orientation orientation, int32_t bytes_per_sample) {
  return bytes_per_sample == 1 ? SelectOrientWith<Movers, 1>(orientation)
                               : SelectOrientWith<Movers, 2>(orientation);
}

}  // namespace
}  // namespace ovra
