// SPDX-License-Identifier: MIT
#include "geometry/rotation_mappings.h"
#include "geometry/rotation_movers.h"

namespace ovra {
namespace {

struct PlainMovers {
  // So many source rows stay in the cache while each destination row gets a run of whole lines.
  static constexpr std::ptrdiff_t kBlockColumns = 64;

  template <int kPixelBytes>
  static void ReverseRow(const uint8_t* source, uint8_t* destination, std::ptrdiff_t pixels) {
    ReversePixels<kPixelBytes>(source, destination, pixels);
  }

  template <int kPixelBytes>
  static void TransposeBlock(const uint8_t* source, std::ptrdiff_t source_stride,
                             uint8_t* destination, std::ptrdiff_t destination_stride,
                             std::ptrdiff_t rows, std::ptrdiff_t columns) {
    TransposePixels<kPixelBytes>(source, source_stride, destination, destination_stride, rows,
                                 columns);
  }
};

}  // namespace

OrientKernel* SelectOrientPlain(Orientation orientation, int32_t bytes_per_sample) {
  return SelectOrientWith<PlainMovers>(orientation, bytes_per_sample);
}

}  // namespace ovra
