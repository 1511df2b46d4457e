// SPDX-License-Identifier: MIT
// Pyramids that are made row by row, so that no plane of a picture's own size is needed.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>

#include "core/work_memory.h"
#include "tone/pyramid/kernels.h"
#include "tone/pyramid/work_rows.h"

namespace ovra {

struct PlaneSize {
  std::ptrdiff_t width = 0;
  std::ptrdiff_t height = 0;

  // Of the next level.
  PlaneSize Half() const { return {width / 2 + width % 2, height / 2 + height % 2}; }
};

// A plane whose rows are made one after the other.
class RowSource {
 public:
  // The next row, which lies among work rows. Its ends may be held by the caller; it stays for as long
  // as the source says.
  virtual int16_t* Next() = 0;

 protected:
  ~RowSource() = default;
};

// The next level of a plane.
class Reduction final : public RowSource {
 public:
  // Of its own rows the last `rows_kept` stay.
  [[nodiscard]] bool Allocate(PlaneSize finer_size, uint64_t rows_kept);

  // Starts at the first row.
  void Start(RowSource* finer, const PyramidKernels& kernels);

  int16_t* Next() override;

  const int16_t* operator[](std::ptrdiff_t row) const { return rows_[row]; }
  PlaneSize size() const { return size_; }
  std::ptrdiff_t made() const { return made_; }

 private:
  static constexpr int32_t kTaps = 5;

  RowSource* finer_ = nullptr;
  const PyramidKernels* kernels_ = nullptr;
  PlaneSize finer_size_;
  PlaneSize size_;
  std::ptrdiff_t finer_rows_ = 0;  // taken so far
  std::ptrdiff_t made_ = 0;
  WorkRows narrowed_;  // finer rows at half their width
  WorkRows rows_;
};

// A whole plane, packed. Reading beyond a row is safe, writing beyond it is not.
struct Plane {
  int16_t* samples = nullptr;
  PlaneSize size;

  const int16_t* operator[](std::ptrdiff_t row) const { return samples + row * size.width; }
  void Put(std::ptrdiff_t row, const int16_t* values) const {
    std::copy_n(values, size.width, samples + row * size.width);
  }
};

// Passes rows on and keeps them in a plane.
class KeptRows final : public RowSource {
 public:
  void Start(RowSource* rows, const Plane& plane);
  int16_t* Next() override;

  std::ptrdiff_t made() const { return made_; }

 private:
  RowSource* rows_ = nullptr;
  const Plane* plane_ = nullptr;
  std::ptrdiff_t made_ = 0;
};

// Whole planes, each half as wide and high as the one before it: the first from its rows, the others
// by reduction.
class Pyramid {
 public:
  static constexpr int kMaxLevels = 8;

  [[nodiscard]] bool Allocate(PlaneSize finest, int levels);

  void Start(RowSource* finest, const PyramidKernels& kernels);

  // Makes what is missing of the last plane's first `rows` rows, and of the others what these need:
  // of each at least twice as many rows as of the next one and two more, or all.
  void MakeRows(std::ptrdiff_t rows);

  void Fill(RowSource* finest, const PyramidKernels& kernels) {
    Start(finest, kernels);
    MakeRows(planes_[levels_ - 1].size.height);
  }

  int levels() const { return levels_; }
  const Plane& operator[](int level) const { return planes_[level]; }

 private:
  WorkMemory<int16_t> samples_;
  int levels_ = 0;
  Plane planes_[kMaxLevels];
  KeptRows kept_[kMaxLevels];
  Reduction reductions_[kMaxLevels];  // the first is not used
};

// Row `y` of the plane that a coarser one, given by its rows, expands to, still as narrow as the
// coarser one: a work row, whose ends are held.
template <class Rows>
void ExpandAcross(const Rows& coarse, PlaneSize size, std::ptrdiff_t y, ExpandAcrossRows* kernel,
                  int16_t* narrow) {
  const std::ptrdiff_t i = y / 2;
  const int16_t* const rows[] = {coarse[std::max<std::ptrdiff_t>(i - 1, 0)], coarse[i],
                                 coarse[std::min(i + 1, size.height - 1)]};
  kernel(rows, y % 2 != 0, narrow, size.width);
  HoldEnds(narrow, size.width);
}

// The same as wide as it will be: the output gets 2 * size.width samples.
template <class Rows>
void ExpandRow(const Rows& coarse, PlaneSize size, std::ptrdiff_t y, const PyramidKernels& kernels,
               int16_t* narrow, int16_t* output) {
  ExpandAcross(coarse, size, y, kernels.expand_across, narrow);
  kernels.expand_along(narrow, output, size.width);
}

}  // namespace ovra
