// SPDX-License-Identifier: MIT
// Resizing in C++. What each operation does and answers stands in ovra/resample.h.
#ifndef OVRA_HPP_RESAMPLE_HPP
#define OVRA_HPP_RESAMPLE_HPP

#include <vector>

#include "ovra/geometry.h"
#include "ovra/hpp/image.hpp"
#include "ovra/resample.h"

namespace ovra {

class KernelTable {
 public:
  static KernelTable CubicSpline(float a) {
    KernelTable table;
    static_cast<void>(OvraCalcCubicSpline(a, table.entries_.data()));
    return table;
  }
  static KernelTable BSpline(float b) {
    KernelTable table;
    static_cast<void>(OvraCalcBSpline(b, table.entries_.data()));
    return table;
  }

  const float* data() const { return entries_.data(); }

 private:
  std::vector<float> entries_ = std::vector<float>(OVRA_KERNEL_TABLE_ENTRIES);
};

struct KernelSupport {
  int32_t taps;
  float stretch;
};

inline KernelSupport SelectKernelSupport(float ratio) {
  KernelSupport support = {};
  static_cast<void>(OvraSelectKernelSupport(ratio, &support.taps, &support.stretch));
  return support;
}

struct Factors {
  double horizontal;
  double vertical;
};

inline Region Whole(View image) {
  return {0, 0, image.width(), image.height()};
}

inline Status ResizeImage(View source, MutableView destination) {
  if (source.format() != destination.format()) return Status::kMismatch;
  return OvraResizeImage(source.data(), source.width(), source.height(), destination.data(),
                         destination.width(), destination.height(), source.format().code());
}

inline Status ResizeImageROI(View source, MutableView destination, Region region) {
  if (source.format() != destination.format()) return Status::kMismatch;
  return OvraResizeImageROI(source.data(), source.width(), source.height(), destination.data(),
                            destination.width(), destination.height(), source.format().code(),
                            region.x, region.y, region.width, region.height);
}

inline Status ResizeImageVAR(View source, MutableView destination, Factors factors) {
  if (source.format() != destination.format()) return Status::kMismatch;
  return OvraResizeImageVAR(source.data(), source.width(), source.height(), destination.data(),
                            destination.width(), destination.height(), source.format().code(),
                            factors.horizontal, factors.vertical);
}

inline Status ResizeImageROIVAR(View source, MutableView destination, Region region,
                                Factors factors) {
  if (source.format() != destination.format()) return Status::kMismatch;
  return OvraResizeImageROIVAR(source.data(), source.width(), source.height(), destination.data(),
                               destination.width(), destination.height(), source.format().code(),
                               region.x, region.y, region.width, region.height, factors.horizontal,
                               factors.vertical);
}

inline Status ResizeImageCore(View source, MutableView destination, Region region,
                              const KernelTable& table, KernelSupport support) {
  if (source.format() != destination.format()) return Status::kMismatch;
  return OvraResizeImageCore(source.data(), source.width(), source.height(), destination.data(),
                             destination.width(), destination.height(), source.format().code(),
                             region.x, region.y, region.width, region.height, table.data(),
                             support.stretch, support.taps);
}

inline Status ResizeImageCoreVAR(View source, MutableView destination, Region region,
                                 Factors factors, const KernelTable& table,
                                 KernelSupport horizontal, KernelSupport vertical) {
  if (source.format() != destination.format()) return Status::kMismatch;
  return OvraResizeImageCoreVAR(source.data(), source.width(), source.height(), destination.data(),
                                destination.width(), destination.height(), source.format().code(),
                                region.x, region.y, region.width, region.height, factors.horizontal,
                                factors.vertical, table.data(), horizontal.stretch,
                                vertical.stretch, horizontal.taps, vertical.taps);
}

inline Status SmallResizeImage(View source, MutableView destination, Region region,
                               const KernelTable& table) {
  if (source.format() != destination.format()) return Status::kMismatch;
  return OvraSmallResizeImage(source.data(), source.width(), source.height(), destination.data(),
                              destination.width(), destination.height(), source.format().code(),
                              region.x, region.y, region.width, region.height, table.data());
}

// Resizes and turns; the destination's size is that after the turn.
inline Status ResizeRotateImageROI(View source, MutableView destination, Region region,
                                   OvraRotation rotation) {
  if (source.format() != destination.format()) return Status::kMismatch;
  return OvraResizeRotateImageROI(source.data(), source.width(), source.height(),
                                  destination.data(), destination.width(), destination.height(),
                                  source.format().code(), region.x, region.y, region.width,
                                  region.height, rotation);
}

inline Status ResizeRotateImageCore(View source, MutableView destination, Region region,
                                    const KernelTable& table, KernelSupport support,
                                    OvraRotation rotation) {
  if (source.format() != destination.format()) return Status::kMismatch;
  return OvraResizeRotateImageCore(
      source.data(), source.width(), source.height(), destination.data(), destination.width(),
      destination.height(), source.format().code(), region.x, region.y, region.width, region.height,
      table.data(), support.stretch, support.taps, rotation);
}

inline Status SmallResizeRotateImage(View source, MutableView destination, Region region,
                                     const KernelTable& table, OvraRotation rotation) {
  if (source.format() != destination.format()) return Status::kMismatch;
  return OvraSmallResizeRotateImage(source.data(), source.width(), source.height(),
                                    destination.data(), destination.width(), destination.height(),
                                    source.format().code(), region.x, region.y, region.width,
                                    region.height, table.data(), rotation);
}

// A resize of pictures that come in bands of rows.
class BandResize {
 public:
  struct Progress {
    int32_t rows_taken;
    int32_t rows_written;
  };

  static Result<BandResize> Make(Size source, Size destination, Format format, Region region) {
    BandResize resize;
    const Status status = OvraBandResize_Init(
        source.width, source.height, destination.width, destination.height, format.code(), region.x,
        region.y, region.width, region.height, resize.context_.address());
    if (!status) return status;
    return resize;
  }

  static Result<BandResize> Make(Size source, Size destination, Format format, Region region,
                                 const KernelTable& table, KernelSupport support) {
    BandResize resize;
    const Status status = OvraBandResizeCore_Init(
        source.width, source.height, destination.width, destination.height, format.code(), region.x,
        region.y, region.width, region.height, table.data(), support.stretch, support.taps,
        resize.context_.address());
    if (!status) return status;
    return resize;
  }

  // Takes rows of the band, which begins at first_row of the source, and writes what is ready to
  // `room`. Not from two threads at once.
  Result<Progress> operator()(View band, MutableView room, int32_t first_row) {
    if (band.format() != room.format()) return Status(Status::kMismatch);
    Progress progress = {};
    const Status status =
        OvraBandResize(band.data(), band.width(), band.height(), room.data(), room.width(),
                       room.height(), band.format().code(), first_row, &progress.rows_taken,
                       &progress.rows_written, context_.get());
    if (!status) return status;
    return progress;
  }

 private:
  struct Traits {
    using Handle = OvraBandResizeContext*;
    static void Free(Handle* context) { OvraBandResize_Free(context); }
  };

  detail::Owner<Traits> context_;
};

}  // namespace ovra

#endif  // OVRA_HPP_RESAMPLE_HPP
