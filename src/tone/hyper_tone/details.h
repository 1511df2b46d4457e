// SPDX-License-Identifier: MIT
// The four ways to tell detail from base.
#pragma once

#include <cstddef>
#include <cstdint>

#include "core/cpu.h"
#include "tone/hyper_tone/context.h"
#include "tone/hyper_tone/picture_rows.h"
#include "tone/tone_grid/tone_grid.h"

namespace ovra {

// One run of a form: Prepare goes over the picture once and answers false when there is no memory;
// then MakeRow is asked for every row of the result in order, and writes it when it has read its row
// of the source for the last time. A form's kRowsAhead says how far below the row of the result that
// row of the source lies which the next rows of the result will be the first to need.
class ToneDetail {
 public:
  virtual bool Prepare() = 0;
  virtual void MakeRow(std::ptrdiff_t y, const ToneGains& gains, uint16_t* destination) = 0;

 protected:
  ToneDetail(const TonePicture& picture, const HyperToneContext& context, KernelTier tier)
      : picture_(picture),
        context_(context),
        pyramid_(ForTier(tier, kPyramidPlain, kPyramidSse, kPyramidAvx2)),
        grid_kernels_(ForTier(tier, kToneGridPlain, kToneGridSse, kToneGridAvx2)) {}
  ~ToneDetail() = default;

  // The rows that every form needs; `narrow` of them is as wide as what the picture expands from.
  [[nodiscard]] bool AllocateRows(std::ptrdiff_t narrow_width) {
    const std::ptrdiff_t width = picture_.size.width;
    return narrow_.Allocate(1, narrow_width) && expanded_.Allocate(1, width) &&
           detail_.Allocate(1, width) && rest_.Allocate(1, width);
  }

  // The result of a row whose detail is known.
  void Apply(ApplyGainsRow* apply, std::ptrdiff_t y, const DetailRow& row, const ToneGains& gains,
             uint16_t* destination) const {
    apply(picture_.Row(y), row, gains, destination, picture_.size.width, picture_.pixels);
  }
  // How forms that never clip make it.
  ApplyGainsRow* Unclipped() const {
    return context_.keep == 0 ? picture_.kernels->apply_unclipped : picture_.kernels->apply_colour;
  }

  // Every level but the last gives up what differs from the next one's by less than its limit.
  void LimitLevels(const Pyramid& levels);

  static constexpr int kFirstWholeLevel = 2;

  const TonePicture& picture_;
  const HyperToneContext& context_;
  const PyramidKernels& pyramid_;
  const ToneGridKernels& grid_kernels_;
  WorkRows narrow_;
  WorkRows expanded_;
  WorkRows detail_;
  WorkRows rest_;
};

// The base is a pyramid in which every level yields to edges. Level 1 is made twice, so that no plane
// above a sixteenth of the picture exists.
class HyperToneDetail final : public ToneDetail {
 public:
  static constexpr std::ptrdiff_t kRowsAhead = 5;

  HyperToneDetail(const TonePicture& picture, const HyperToneContext& context, KernelTier tier)
      : ToneDetail(picture, context, tier), brightness_(picture) {}
  bool Prepare() override;
  void MakeRow(std::ptrdiff_t y, const ToneGains& gains, uint16_t* destination) override;

 private:
  void MakeBase1Row();

  ToneBrightness brightness_;
  Reduction level1_;
  Pyramid levels_;
  WorkRows base1_;
};

// The same, from blocks.
class HyperToneLightDetail final : public ToneDetail {
 public:
  static constexpr std::ptrdiff_t kRowsAhead = 1;

  HyperToneLightDetail(const TonePicture& picture, const HyperToneContext& context, KernelTier tier)
      : ToneDetail(picture, context, tier), blocks_(picture) {}
  bool Prepare() override;
  void MakeRow(std::ptrdiff_t y, const ToneGains& gains, uint16_t* destination) override;

 private:
  ToneBlocks blocks_;
  Pyramid levels_;
  WorkRows brightness_;
};

// The base is what the grid pulls tones to, about a fine blur.
class HybridHyperToneDetail final : public ToneDetail {
 public:
  static constexpr std::ptrdiff_t kRowsAhead = 5;

  HybridHyperToneDetail(const TonePicture& picture, const HyperToneContext& context,
                        KernelTier tier)
      : ToneDetail(picture, context, tier), brightness_(picture) {}
  bool Prepare() override;
  void MakeRow(std::ptrdiff_t y, const ToneGains& gains, uint16_t* destination) override;

 private:
  ToneBrightness brightness_;
  Reduction level1_;
  ToneGrid grid_;
  WorkRows fine_detail_;
};

// The same, from blocks.
class HybridHyperToneLightDetail final : public ToneDetail {
 public:
  static constexpr std::ptrdiff_t kRowsAhead = 6;

  HybridHyperToneLightDetail(const TonePicture& picture, const HyperToneContext& context,
                             KernelTier tier)
      : ToneDetail(picture, context, tier), blocks_(picture) {}
  bool Prepare() override;
  void MakeRow(std::ptrdiff_t y, const ToneGains& gains, uint16_t* destination) override;

 private:
  ToneBlocks blocks_;
  ToneGrid grid_;
  WorkRows brightness_;
  WorkRows fine_detail_;
};

}  // namespace ovra
