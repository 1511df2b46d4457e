// SPDX-License-Identifier: MIT
#include "geometry/free_trimming/free_trimming.h"

#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <cstring>

#include "core/row_copy/kernels.h"
#include "core/rows.h"
#include "core/work_memory.h"
#include "geometry/free_trimming/kernels.h"
#include "geometry/free_trimming/trimming_geometry.h"
#include "geometry/rotation/rotation.h"
#include "ovra/geometry.h"

namespace ovra {
namespace {

constexpr int32_t kMinSide = 8;
constexpr int32_t kMaxSide = 16383;

// The destination goes in tiles: a whole slanted row would touch a new line of the cache at every
// pixel. The source area under a tile is copied first: it has no borders then, and its rows lie on a
// few pages of memory, not on one each (a third faster, at 45 degrees twice as fast in 16 bits).
constexpr int32_t kTileSide = 64;

// The greatest source area of a tile: its diagonal, rounded up at both ends, and the kernel's reach.
constexpr int32_t kTapsBefore = 2;
constexpr int32_t kTapsAfter = 3;
constexpr int32_t kMaxAreaSide = 91 + kTapsBefore + kTapsAfter;
constexpr std::ptrdiff_t kAreaMargin = 16;
static_assert(kAreaMargin >= kTrimmingReadBefore && kAreaMargin >= kTrimmingReadBeyond);

constexpr int32_t kPhaseOne = 1 << kPhaseBits;

// An image with its rows as seen: the stride of a bottom-up one is negative.
template <class Byte>
struct SeenImage {
  Byte* first_row;
  std::ptrdiff_t stride;
  int64_t width;
  int64_t height;

  SeenImage(Byte* data, int32_t image_width, int32_t image_height, const PixelFormat& format)
      : stride(RowStride(image_width, format)), width(image_width), height(image_height) {
    first_row = format.BottomUp() ? data + (image_height - 1) * stride : data;
    if (format.BottomUp()) stride = -stride;
  }
  Byte* Row(int64_t row) const { return first_row + static_cast<std::ptrdiff_t>(row) * stride; }
};

// A rectangle of the destination.
struct Tile {
  int32_t column;
  int32_t row;
  int32_t columns;
  int32_t rows;
};

// Pixels from the first to the last, of the source or of a place around it.
struct Span {
  int64_t first;
  int64_t last;

  int64_t Count() const { return last - first + 1; }
};

// Positions along one axis under a tile, in phases.
Span PositionsOf(const Tile& tile, const TrimmingAxis& axis) {
  const int64_t right = tile.column + tile.columns - 1;
  const int64_t bottom = tile.row + tile.rows - 1;
  const auto corners = {axis.At(tile.column, tile.row), axis.At(right, tile.row),
                        axis.At(tile.column, bottom), axis.At(right, bottom)};
  const int64_t origin = axis.origin * kPhaseOne;
  return {origin + RoundedPosition(std::min(corners)), origin + RoundedPosition(std::max(corners))};
}

// How much of a pixel of that position the source's outline covers along one axis.
int64_t Coverage(int64_t position, int64_t size) {
  return std::clamp<int64_t>(std::min(position + kPhaseOne, kPhaseOne * size - position), 0,
                             kPhaseOne);
}

bool IsCovered(const Span& positions, int64_t size) {
  return Coverage(positions.first, size) == kPhaseOne &&
         Coverage(positions.last, size) == kPhaseOne;
}

bool IsOutside(const Span& positions, int64_t size) {
  return positions.last <= -kPhaseOne || positions.first >= kPhaseOne * size;
}

template <class Sample>
class Trimmer {
 public:
  Trimmer(const TrimmingImages& images, const PixelFormat& format, const TrimmingGeometry& geometry,
          const uint16_t* fill, KernelTier tier)
      : source_(images.source, images.source_width, images.source_height, format),
        destination_(images.destination, images.destination_width, images.destination_height,
                     format),
        geometry_(geometry),
        channels_(static_cast<std::ptrdiff_t>(format.channels)),
        pixel_bytes_(channels_ * static_cast<std::ptrdiff_t>(sizeof(Sample))),
        area_stride_(kMaxAreaSide * pixel_bytes_ + 2 * kAreaMargin),
        max_sample_(static_cast<int32_t>(format.MaxSample())),
        has_fill_(fill != nullptr),
        trim_row_(ForTier(tier, kTrimmingPlain, kTrimmingSse, kTrimmingAvx2)
                      .Of(format.channels, format.depth_bits)),
        movers_(RotationKernelsOf(tier)),
        copy_(RowCopyKernelsOf(tier).copy) {
    for (std::ptrdiff_t c = 0; has_fill_ && c < channels_; ++c) {
      fill_[c] = static_cast<Sample>(std::min<int32_t>(fill[c], max_sample_));
    }
  }

  Status Run() {
    const auto area_bytes = static_cast<uint64_t>(area_stride_) * kMaxAreaSide;
    if (!area_.Allocate(area_bytes)) return OVRA_ERROR_NO_MEMORY;
    const auto width = static_cast<int32_t>(destination_.width);
    const auto height = static_cast<int32_t>(destination_.height);
    for (int32_t row = 0; row < height; row += kTileSide) {
      for (int32_t column = 0; column < width; column += kTileSide) {
        WriteTile(
            {column, row, std::min(kTileSide, width - column), std::min(kTileSide, height - row)});
      }
    }
    const std::ptrdiff_t packed = width * pixel_bytes_;
    const std::ptrdiff_t padded = std::abs(destination_.stride);
    for (int32_t row = 0; row < height && padded > packed; ++row) {
      std::fill(destination_.Row(row) + packed, destination_.Row(row) + padded, uint8_t{0});
    }
    return OVRA_OK;
  }

 private:
  uint8_t* PixelOf(const Tile& tile, int32_t row) const {
    return destination_.Row(tile.row + row) + tile.column * pixel_bytes_;
  }

  void WriteTile(const Tile& tile) {
    const Span across = PositionsOf(tile, geometry_.across);
    const Span down = PositionsOf(tile, geometry_.down);
    if (geometry_.moves_pixels) return Move(tile, across, down);
    if (has_fill_ && (IsOutside(across, source_.width) || IsOutside(down, source_.height))) {
      return Fill(tile);
    }
    Filter(tile, across, down);
    if (has_fill_ && !(IsCovered(across, source_.width) && IsCovered(down, source_.height))) {
      Blend(tile);
    }
  }

  void Fill(const Tile& tile) {
    for (int32_t row = 0; row < tile.rows; ++row) {
      Repeat(reinterpret_cast<const uint8_t*>(fill_), tile.columns, PixelOf(tile, row));
    }
  }

  void Filter(const Tile& tile, const Span& across, const Span& down) {
    const Span columns = {(across.first >> kPhaseBits) - kTapsBefore,
                          (across.last >> kPhaseBits) + kTapsAfter};
    const Span rows = {(down.first >> kPhaseBits) - kTapsBefore,
                       (down.last >> kPhaseBits) + kTapsAfter};
    TrimmingRow job;
    job.source = CopyArea(columns, rows, nullptr);
    job.stride = area_stride_;
    job.u_step = geometry_.across.column_step;
    job.v_step = geometry_.down.column_step;
    for (int32_t row = 0; row < tile.rows; ++row) {
      job.u = PositionFrom(geometry_.across, columns.first, tile, row);
      job.v = PositionFrom(geometry_.down, rows.first, tile, row);
      trim_row_(job, tile.columns, max_sample_, PixelOf(tile, row));
    }
  }

  // Of the first pixel in a row of the tile, counted from source pixel `first`.
  static int64_t PositionFrom(const TrimmingAxis& axis, int64_t first, const Tile& tile,
                              int32_t row) {
    return axis.At(tile.column, tile.row + row) -
           (first - axis.origin) * (int64_t{1} << kPositionBits);
  }

  // The colour shows where the source's outline covers a pixel in part.
  void Blend(const Tile& tile) {
    constexpr int kCoverageBits = 2 * kPhaseBits;
    for (int32_t row = 0; row < tile.rows; ++row) {
      auto* pixel = reinterpret_cast<Sample*>(PixelOf(tile, row));
      for (int32_t column = 0; column < tile.columns; ++column, pixel += channels_) {
        const auto coverage = static_cast<uint32_t>(
            CoverageAt(geometry_.across, tile.column + column, tile.row + row, source_.width) *
            CoverageAt(geometry_.down, tile.column + column, tile.row + row, source_.height));
        for (std::ptrdiff_t c = 0; c < channels_; ++c) {
          const uint32_t sum = coverage * pixel[c] + ((1U << kCoverageBits) - coverage) * fill_[c];
          pixel[c] = static_cast<Sample>((sum + (1U << (kCoverageBits - 1))) >> kCoverageBits);
        }
      }
    }
  }

  static int64_t CoverageAt(const TrimmingAxis& axis, int32_t column, int32_t row, int64_t size) {
    return Coverage(axis.origin * kPhaseOne + RoundedPosition(axis.At(column, row)), size);
  }

  void Move(const Tile& tile, const Span& across, const Span& down) {
    const Span columns = {across.first >> kPhaseBits, across.last >> kPhaseBits};
    const Span rows = {down.first >> kPhaseBits, down.last >> kPhaseBits};
    const bool in_source = IsInSource(columns, rows);
    const std::ptrdiff_t stride = in_source ? source_.stride : area_stride_;
    const uint8_t* const area =
        in_source
            ? source_.Row(rows.first) + static_cast<std::ptrdiff_t>(columns.first) * pixel_bytes_
            : CopyArea(columns, rows, has_fill_ ? fill_ : nullptr);
    const Orientation turn = OrientationOf(geometry_.quarter_turns, false);
    const auto count = static_cast<std::ptrdiff_t>(rows.Count());
    const uint8_t* const first = turn.rows_reversed ? area + (count - 1) * stride : area;
    const std::ptrdiff_t step = turn.rows_reversed ? -stride : stride;
    if (turn.transposed) {
      const bool upward = turn.columns_reversed;
      movers_.transpose_block[pixel_bytes_](first, step, PixelOf(tile, upward ? tile.rows - 1 : 0),
                                            upward ? -destination_.stride : destination_.stride,
                                            count, tile.rows, false);
      return;
    }
    const bool reversed = turn.columns_reversed;
    MoveRows* const move_rows = reversed ? movers_.reverse[pixel_bytes_] : copy_;
    move_rows({.source = first,
               .source_stride = step,
               .destination = PixelOf(tile, 0),
               .destination_stride = destination_.stride,
               .pixels = reversed ? tile.columns : tile.columns * pixel_bytes_,
               .rows = tile.rows,
               .padding = 0,
               .streaming = false});
  }

  // The pixels outside the source are `outside`, or without it repeat the edge.
  const uint8_t* CopyArea(const Span& columns, const Span& rows, const Sample* outside) {
    uint8_t* const area = area_.data() + kAreaMargin;
    for (int64_t row = rows.first; row <= rows.last; ++row) {
      CopyRow(row, columns, outside,
              area + static_cast<std::ptrdiff_t>(row - rows.first) * area_stride_);
    }
    return area;
  }

  bool IsInSource(const Span& columns, const Span& rows) const {
    return columns.first >= 0 && columns.last < source_.width && rows.first >= 0 &&
           rows.last < source_.height;
  }

  void CopyRow(int64_t row, const Span& columns, const Sample* outside, uint8_t* out) {
    const auto count = static_cast<std::ptrdiff_t>(columns.Count());
    const bool row_is_outside = row < 0 || row >= source_.height;
    const uint8_t* const source = source_.Row(std::clamp<int64_t>(row, 0, source_.height - 1));
    const uint8_t* before = source;
    const uint8_t* behind = source + static_cast<std::ptrdiff_t>(source_.width - 1) * pixel_bytes_;
    if (outside != nullptr) before = behind = reinterpret_cast<const uint8_t*>(outside);
    if (outside != nullptr && row_is_outside) return Repeat(before, count, out);

    const auto limited = [count](int64_t position) {
      return static_cast<std::ptrdiff_t>(std::clamp<int64_t>(position, 0, count));
    };
    const std::ptrdiff_t begin = limited(-columns.first);
    const std::ptrdiff_t end = limited(source_.width - columns.first);
    Repeat(before, begin, out);
    if (begin < end) {
      std::memcpy(out + begin * pixel_bytes_,
                  source + static_cast<std::ptrdiff_t>(columns.first + begin) * pixel_bytes_,
                  static_cast<size_t>((end - begin) * pixel_bytes_));
    }
    Repeat(behind, count - end, out + end * pixel_bytes_);
  }

  void Repeat(const uint8_t* pixel, std::ptrdiff_t count, uint8_t* out) const {
    for (std::ptrdiff_t i = 0; i < count; ++i, out += pixel_bytes_) {
      std::memcpy(out, pixel, static_cast<size_t>(pixel_bytes_));
    }
  }

  SeenImage<const uint8_t> source_;
  SeenImage<uint8_t> destination_;
  const TrimmingGeometry& geometry_;
  std::ptrdiff_t channels_;
  std::ptrdiff_t pixel_bytes_;
  std::ptrdiff_t area_stride_;
  int32_t max_sample_;
  bool has_fill_;
  Sample fill_[4] = {};
  TrimRow* trim_row_;
  const RotationKernels& movers_;
  MoveRows* copy_;
  WorkMemory<uint8_t> area_;
};

Status CheckArguments(const TrimmingImages& images) {
  if (images.source == nullptr || images.destination == nullptr) return OVRA_ERROR_ROTATION_NULL;
  if (images.source == images.destination) return OVRA_ERROR_TRIMMING_IN_PLACE;
  if (images.source_width <= 0 || images.source_height <= 0) return OVRA_ERROR_ROTATION_ZERO_SIZE;
  for (const int32_t side : {images.destination_width, images.destination_height}) {
    if (side < kMinSide || side > kMaxSide) return OVRA_ERROR_TRIMMING_SIZE;
  }
  return OVRA_OK;
}

}  // namespace

Status FreeTrimming(const TrimmingImages& images, int32_t x, int32_t y, int32_t angle,
                    const uint16_t* fill, KernelTier tier) {
  PixelFormat format;
  Status status = CheckArguments(images);
  if (status == OVRA_OK) status = ValidateRotationFormat(images.format, &format);
  if (status != OVRA_OK) return status;
  const TrimmingGeometry geometry =
      FindTrimmingGeometry(images.destination_width, images.destination_height, x, y, angle);
  if (format.depth_bits == 8) {
    return Trimmer<uint8_t>(images, format, geometry, fill, tier).Run();
  }
  return Trimmer<uint16_t>(images, format, geometry, fill, tier).Run();
}

}  // namespace ovra

OVRA_API OvraStatus OVRA_CALL OvraFreeTrimming(const uint8_t* source, int32_t source_width,
                                               int32_t source_height, uint8_t* destination,
                                               int32_t destination_width,
                                               int32_t destination_height,
                                               OvraPixelFormatCode format, int32_t x, int32_t y,
                                               int32_t angle, const uint16_t* fill) {
  return ovra::FreeTrimming({source, source_width, source_height, destination, destination_width,
                             destination_height, format},
                            x, y, angle, fill, ovra::DetectedTier());
}
