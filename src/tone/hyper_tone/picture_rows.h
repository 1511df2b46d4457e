// SPDX-License-Identifier: MIT
// The brightness of a picture, row by row.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>

#include "core/rows.h"
#include "tone/hyper_tone/kernels.h"
#include "tone/pyramid/pyramid.h"

namespace ovra {

struct TonePicture {
  const uint8_t* source;
  std::ptrdiff_t stride;
  PlaneSize size;
  TonePixels pixels;
  const HyperToneKernels* kernels;

  const uint16_t* Row(std::ptrdiff_t y) const { return RowAt<uint16_t>(source, stride, y); }
};

// Of each pixel.
class ToneBrightness final : public RowSource {
 public:
  explicit ToneBrightness(const TonePicture& picture) : picture_(picture) {}

  // A row stays until five more are taken: as long as its reduction needs it.
  [[nodiscard]] bool Allocate() { return rows_.Allocate(kRowsKept, picture_.size.width); }
  void Start() { taken_ = 0; }

  int16_t* Next() override {
    int16_t* const row = rows_[taken_];
    picture_.kernels->brightness(picture_.Row(taken_++), row, picture_.size.width, picture_.pixels);
    return row;
  }

  const int16_t* operator[](std::ptrdiff_t row) const { return rows_[row]; }

 private:
  static constexpr uint64_t kRowsKept = 6;

  const TonePicture& picture_;
  std::ptrdiff_t taken_ = 0;
  WorkRows rows_;
};

// Of blocks of 4 x 4 pixels. Missing pixels of the last ones repeat the edge.
class ToneBlocks final : public RowSource {
 public:
  explicit ToneBlocks(const TonePicture& picture) : picture_(picture) {}

  PlaneSize size() const { return picture_.size.Half().Half(); }
  std::ptrdiff_t taken() const { return taken_; }

  // Two rows stay.
  [[nodiscard]] bool Allocate() { return rows_.Allocate(kRowsKept, size().width); }
  void Start() { taken_ = 0; }

  int16_t* Next() override {
    const uint16_t* source[4];
    for (std::ptrdiff_t k = 0; k < 4; ++k) {
      source[k] = picture_.Row(std::min(4 * taken_ + k, picture_.size.height - 1));
    }
    int16_t* const row = rows_[taken_++];
    picture_.kernels->blocks(source, row, picture_.size.width, picture_.pixels);
    return row;
  }

  const int16_t* operator[](std::ptrdiff_t row) const { return rows_[row]; }

 private:
  static constexpr uint64_t kRowsKept = 2;

  const TonePicture& picture_;
  std::ptrdiff_t taken_ = 0;
  WorkRows rows_;
};

// What row `y` of a picture enlarges from, of the rows of its blocks: a work row, whose ends are held.
template <class Rows>
void EnlargeAcross(const Rows& blocks, PlaneSize size, std::ptrdiff_t y,
                   const PyramidKernels& kernels, int16_t* narrow) {
  constexpr int32_t kEighths[] = {5, 7, 1, 3};
  const std::ptrdiff_t above = y / 4 - (y % 4 < 2 ? 1 : 0);
  kernels.enlarge_across(blocks[std::max<std::ptrdiff_t>(above, 0)],
                         blocks[std::min(above + 1, size.height - 1)], kEighths[y % 4], narrow,
                         size.width);
  HoldEnds(narrow, size.width);
}

}  // namespace ovra
