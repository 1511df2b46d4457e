// SPDX-License-Identifier: MIT
#include "tone/pyramid/pyramid.h"

namespace ovra {

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
    if (k > 0 && !reductions_[k].Allocate(planes_[k - 1].size, 1)) return false;
  }
  if (!samples_.Allocate(samples + WorkRows::kBehind)) return false;
  int16_t* next = samples_.data();
  for (int k = 0; k < levels; ++k) {
    planes_[k].samples = next;
    next += planes_[k].size.width * planes_[k].size.height;
  }
  return true;
}

void KeptRows::Start(RowSource* rows, const Plane& plane) {
  rows_ = rows;
  plane_ = &plane;
  made_ = 0;
}

int16_t* KeptRows::Next() {
  int16_t* const row = rows_->Next();
  plane_->Put(made_++, row);
  return row;
}

void Pyramid::Start(RowSource* finest, const PyramidKernels& kernels) {
  kept_[0].Start(finest, planes_[0]);
  for (int k = 1; k < levels_; ++k) {
    reductions_[k].Start(&kept_[k - 1], kernels);
    kept_[k].Start(&reductions_[k], planes_[k]);
  }
}

void Pyramid::MakeRows(std::ptrdiff_t rows) {
  KeptRows& last = kept_[levels_ - 1];
  while (last.made() < rows) last.Next();
}

}  // namespace ovra
