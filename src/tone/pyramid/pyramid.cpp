// SPDX-License-Identifier: MIT
#include "tone/pyramid/pyramid.h"

namespace ovra {
namespace {

// Passes rows on and keeps them in a plane.
class KeptRows final : public RowSource {
 public:
  void Start(RowSource* rows, const Plane& plane) {
    rows_ = rows;
    plane_ = &plane;
  }

  int16_t* Next() override {
    int16_t* const row = rows_->Next();
    plane_->Put(made_++, row);
    return row;
  }

 private:
  RowSource* rows_ = nullptr;
  const Plane* plane_ = nullptr;
  std::ptrdiff_t made_ = 0;
};

}  // namespace

bool Reduction::Allocate(PlaneSize finer_size, uint64_t rows_kept) {
  finer_size_ = finer_size;
  size_ = finer_size.Half();
  return narrowed_.Allocate(kTaps, size_.width) && rows_.Allocate(rows_kept, size_.width);
}

void Reduction::Start(RowSource* finer, const PyramidKernels& kernels) {
  finer_ = finer;
  kernels_ = &kernels;
  finer_rows_ = 0;
  made_ = 0;
}

int16_t* Reduction::Next() {
  const std::ptrdiff_t centre = 2 * made_;
  const std::ptrdiff_t last = finer_size_.height - 1;
  for (; finer_rows_ <= std::min(centre + 2, last); ++finer_rows_) {
    int16_t* const row = finer_->Next();
    HoldEnds(row, finer_size_.width);
    kernels_->reduce_along(row, narrowed_[finer_rows_], size_.width);
  }
  const int16_t* rows[kTaps];
  for (std::ptrdiff_t k = 0; k < kTaps; ++k) {
    rows[k] = narrowed_[std::clamp<std::ptrdiff_t>(centre - 2 + k, 0, last)];
  }
  int16_t* const row = rows_[made_++];
  kernels_->reduce_across(rows, row, size_.width);
  return row;
}

bool Pyramid::Allocate(PlaneSize finest, int levels) {
  levels_ = levels;
  uint64_t samples = 0;
  PlaneSize size = finest;
  for (int k = 0; k < levels; ++k, size = size.Half()) {
    planes_[k].size = size;
    samples += static_cast<uint64_t>(size.width) * static_cast<uint64_t>(size.height);
  }
  if (!samples_.Allocate(samples + WorkRows::kBehind)) return false;
  int16_t* next = samples_.data();
  for (int k = 0; k < levels; ++k) {
    planes_[k].samples = next;
    next += planes_[k].size.width * planes_[k].size.height;
  }
  return true;
}

bool Pyramid::Fill(RowSource* finest, const PyramidKernels& kernels) {
  KeptRows kept[kMaxLevels];
  Reduction reductions[kMaxLevels];
  kept[0].Start(finest, planes_[0]);
  for (int k = 1; k < levels_; ++k) {
    if (!reductions[k].Allocate(planes_[k - 1].size, 1)) return false;
    reductions[k].Start(&kept[k - 1], kernels);
    kept[k].Start(&reductions[k], planes_[k]);
  }
  const int last = levels_ - 1;
  for (std::ptrdiff_t y = 0; y < planes_[last].size.height; ++y) kept[last].Next();
  return true;
}

}  // namespace ovra
