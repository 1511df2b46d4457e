// SPDX-License-Identifier: MIT
#include "tone/hyper_tone/details.h"

#include <algorithm>

namespace ovra {
namespace {

constexpr uint64_t kCoarseRows = 4;  // three that are expanded, and one
constexpr int32_t kBlockBits = 2;

}  // namespace

void ToneDetail::LimitLevels(const Pyramid& levels) {
  for (int k = levels.levels() - 2; k >= 0; --k) {
    const Plane& level = levels[k];
    const SoftLimit& limit = context_.limits[k + kFirstWholeLevel];
    for (std::ptrdiff_t y = 0; y < level.size.height; ++y) {
      ExpandRow(levels[k + 1], levels[k + 1].size, y, pyramid_, narrow_[0], expanded_[0]);
      pyramid_.limit_detail(level[y], expanded_[0], limit, detail_[0], rest_[0], level.size.width);
      level.Put(y, rest_[0]);
    }
  }
}

bool HyperToneDetail::Prepare() {
  const PlaneSize half = picture_.size.Half();
  const int whole_levels = context_.scale - kFirstWholeLevel + 1;
  if (!AllocateRows(half.width) || !brightness_.Allocate() || !level1_.Allocate(picture_.size, 1) ||
      !base1_.Allocate(kCoarseRows, half.width) || !levels_.Allocate(half.Half(), whole_levels)) {
    return false;
  }
  Reduction level2;
  if (!level2.Allocate(half, 1)) return false;
  level1_.Start(&brightness_, pyramid_);
  level2.Start(&level1_, pyramid_);
  levels_.Fill(&level2, pyramid_);
  LimitLevels(levels_);
  brightness_.Start();
  level1_.Start(&brightness_, pyramid_);
  return true;
}

void HyperToneDetail::MakeBase1Row() {
  const std::ptrdiff_t y = level1_.made();
  const int16_t* const row = level1_.Next();
  ExpandRow(levels_[0], levels_[0].size, y, pyramid_, narrow_[0], expanded_[0]);
  pyramid_.limit_detail(row, expanded_[0], context_.limits[1], detail_[0], base1_[y],
                        level1_.size().width);
}

void HyperToneDetail::MakeRow(std::ptrdiff_t y, const ToneGains& gains, uint16_t* destination) {
  const PlaneSize half = level1_.size();
  while (level1_.made() <= std::min(y / 2 + 1, half.height - 1)) MakeBase1Row();
  ExpandRow(base1_, half, y, pyramid_, narrow_[0], expanded_[0]);
  pyramid_.limit_detail(brightness_[y], expanded_[0], context_.limits[0], detail_[0], rest_[0],
                        picture_.size.width);
  Apply(picture_.kernels->apply, y, {brightness_[y], detail_[0]}, gains, destination);
}

bool HyperToneLightDetail::Prepare() {
  const int whole_levels = context_.scale - kFirstWholeLevel + 1;
  const PlaneSize size = blocks_.size();
  if (!AllocateRows(size.width) || !blocks_.Allocate() ||
      !brightness_.Allocate(1, picture_.size.width) || !levels_.Allocate(size, whole_levels)) {
    return false;
  }
  levels_.Fill(&blocks_, pyramid_);
  LimitLevels(levels_);
  return true;
}

void HyperToneLightDetail::MakeRow(std::ptrdiff_t y, const ToneGains& gains,
                                   uint16_t* destination) {
  EnlargeAcross(levels_[0], levels_[0].size, y, pyramid_, narrow_[0]);
  picture_.kernels->fine_detail(picture_.Row(y), narrow_[0], context_.limits[0],
                                {brightness_[0], detail_[0], nullptr}, {0, picture_.size.width},
                                picture_.pixels);
  Apply(picture_.kernels->apply, y, {brightness_[0], detail_[0]}, gains, destination);
}

bool HybridHyperToneDetail::Prepare() {
  const std::ptrdiff_t width = picture_.size.width;
  if (!AllocateRows(width / 2 + 1) || !brightness_.Allocate() ||
      !level1_.Allocate(picture_.size, kCoarseRows) || !fine_detail_.Allocate(1, width) ||
      !grid_.Allocate(picture_.size, context_.scale, 0)) {
    return false;
  }
  grid_.Fill(&brightness_, grid_kernels_);
  brightness_.Start();
  level1_.Start(&brightness_, pyramid_);
  return true;
}

void HybridHyperToneDetail::MakeRow(std::ptrdiff_t y, const ToneGains& gains,
                                    uint16_t* destination) {
  const std::ptrdiff_t width = picture_.size.width;
  const PlaneSize half = level1_.size();
  while (level1_.made() <= std::min(y / 2 + 1, half.height - 1)) level1_.Next();
  ExpandRow(level1_, half, y, pyramid_, narrow_[0], expanded_[0]);
  pyramid_.limit_detail(brightness_[y], expanded_[0], context_.fine_limit, fine_detail_[0],
                        rest_[0], width);
  grid_.Slice(y, rest_[0], fine_detail_[0], context_.limits[0], detail_[0], width, grid_kernels_);
  Apply(Unclipped(), y, {brightness_[y], detail_[0]}, gains, destination);
}

bool HybridHyperToneLightDetail::Prepare() {
  const std::ptrdiff_t width = picture_.size.width;
  if (!AllocateRows(blocks_.size().width) || !blocks_.Allocate() ||
      !brightness_.Allocate(1, width) || !fine_detail_.Allocate(1, width) ||
      !grid_.Allocate(blocks_.size(), context_.scale, kBlockBits)) {
    return false;
  }
  grid_.Fill(&blocks_, grid_kernels_);
  blocks_.Start();
  return true;
}

void HybridHyperToneLightDetail::MakeRow(std::ptrdiff_t y, const ToneGains& gains,
                                         uint16_t* destination) {
  const std::ptrdiff_t width = picture_.size.width;
  const std::ptrdiff_t below = std::min((y + 2) / 4, blocks_.size().height - 1);
  while (blocks_.taken() <= below) blocks_.Next();
  EnlargeAcross(blocks_, blocks_.size(), y, pyramid_, narrow_[0]);
  picture_.kernels->fine_detail(picture_.Row(y), narrow_[0], context_.fine_limit,
                                {brightness_[0], fine_detail_[0], rest_[0]}, {0, width},
                                picture_.pixels);
  grid_.Slice(y, rest_[0], fine_detail_[0], context_.limits[0], detail_[0], width, grid_kernels_);
  Apply(Unclipped(), y, {brightness_[0], detail_[0]}, gains, destination);
}

}  // namespace ovra
