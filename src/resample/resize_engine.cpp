// SPDX-License-Identifier: MIT
#include "resample/resize_engine.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>

#include "core/rows.h"
#include "core/work_memory.h"
#include "ovra/resample.h"
#include "resample/resize_checks.h"
#include "resample/resize_kernels.h"
#include "resample/resize_weights.h"

namespace ovra {
namespace {

// The filters and scales of a resize that passed its checks.
struct ResizePlan {
  PixelFormat format;
  AxisFilter horizontal;
  AxisFilter vertical;
  ResizeFactors factors;
};

// The product, or the largest number when it does not fit.
uint64_t SaturatedProduct(uint64_t a, uint64_t b) {
  constexpr uint64_t kMax = std::numeric_limits<uint64_t>::max();
  return b != 0 && a > kMax / b ? kMax : a * b;
}

// The work memory of one resize.
template <class Sample>
struct ResizeMemory {
  WorkMemory<Intermediate<Sample>> ring;
  AxisWeights horizontal;
  AxisWeights vertical;

  Status Allocate(const ResizeImages& images, const ResizePlan& plan) {
    constexpr uint64_t kSpareColumns = 32;  // rows are spaced by a multiple of a vector
    const auto width = static_cast<uint64_t>(images.destination_size.width);
    const auto height = static_cast<uint64_t>(images.destination_size.height);
    const auto vertical_taps = static_cast<uint64_t>(plan.vertical.taps);
    const uint64_t slot = (width + kSpareColumns) * plan.format.channels;
    SetTaps(plan.horizontal.taps, &horizontal);
    SetTaps(plan.vertical.taps, &vertical);
    const bool complete = ring.Allocate(SaturatedProduct(slot, vertical_taps)) &&
                          AllocateWeights(width, &horizontal) &&
                          AllocateWeights(height, &vertical) && horizontal.sets.Allocate(width) &&
                          vertical.sets.Allocate(height);
    return complete ? OVRA_OK : OVRA_ERROR_NO_MEMORY;
  }

 private:
  static void SetTaps(int32_t taps, AxisWeights* axis) {
    axis->taps = taps;
    axis->weight_stride = WeightStride(taps);
  }
  static bool AllocateWeights(uint64_t sets, AxisWeights* axis) {
    return axis->weights.Allocate(
        SaturatedProduct(sets, static_cast<uint64_t>(axis->weight_stride)));
  }
};

void BuildAxes(const ResizeImages& images, const ResizePlan& plan, AxisWeights* horizontal,
               AxisWeights* vertical) {
  const ResizeRegion& region = images.region;
  const int64_t first_row =
      FirstRegionRow(images.source_size.height, region, plan.format.BottomUp());
  BuildWeightSets({images.destination_size.width, region.x, region.width, plan.factors.horizontal},
                  plan.horizontal, horizontal);
  BuildWeightSets({images.destination_size.height, first_row, region.height, plan.factors.vertical},
                  plan.vertical, vertical);
}

// Finds the columns whose `pixels_read` pixels from the first tap on lie inside the source. Centres
// rise or fall steadily, so that these columns stand side by side.
void FindInnerColumns(int32_t pixels_read, HorizontalPass* pass) {
  const auto is_inner = [pass, pixels_read](int32_t column) {
    const int64_t first = int64_t{pass->sets[column].centre} - pass->taps_before_centre;
    return first >= 0 && first + pixels_read <= pass->source_width;
  };
  int32_t begin = 0;
  while (begin < pass->destination_width && !is_inner(begin)) ++begin;
  int32_t end = begin;
  while (end < pass->destination_width && is_inner(end)) ++end;
  pass->inner_begin = begin;
  pass->inner_end = end;
}

// Filters source rows into the ring, and combines the rows of the ring into destination rows.
template <class Sample>
class RowDriver {
 public:
  RowDriver(const ResizeImages& images, const ResizePlan& plan, ResizeMemory<Sample>* memory,
            KernelTier tier)
      : images_(images),
        source_stride_(RowStride(images.source_size.width, plan.format)),
        destination_stride_(RowStride(images.destination_size.width, plan.format)),
        vertical_(memory->vertical),
        ring_(memory->ring.data()),
        horizontal_kernel_(SelectHorizontal<Sample>(
            plan.horizontal.taps, static_cast<int32_t>(plan.format.channels), tier)),
        vertical_kernel_(SelectVertical<Sample>(plan.vertical.taps, tier)) {
    constexpr std::ptrdiff_t kRowAlignment = 32 / sizeof(Intermediate<Sample>);
    const auto channels = static_cast<int32_t>(plan.format.channels);
    horizontal_pass_ = {memory->horizontal.sets.data(),
                        memory->horizontal.weights.data(),
                        memory->horizontal.weight_stride,
                        plan.horizontal.taps,
                        TapsBeforeCentre(plan.horizontal.taps),
                        channels,
                        images.source_size.width,
                        images.destination_size.width,
                        0,
                        0};
    FindInnerColumns(horizontal_kernel_.pixels_read, &horizontal_pass_);
    const std::ptrdiff_t samples = std::ptrdiff_t{images.destination_size.width} * channels;
    vertical_pass_ = {ring_,
                      (samples + kRowAlignment - 1) / kRowAlignment * kRowAlignment,
                      plan.vertical.taps,
                      0,
                      nullptr,
                      samples,
                      static_cast<int32_t>(plan.format.MaxSample())};
  }

  void Run() {
    for (int32_t j = 0; j < images_.destination_size.height; ++j) {
      const int64_t centre = vertical_.sets[static_cast<size_t>(j)].centre;
      // The first row fills the whole ring, wherever its centre lies: none of it has been written.
      const int64_t last = j == 0 ? centre - vertical_.taps : last_centre_;
      FillRing(centre, last);
      last_centre_ = centre;
      vertical_pass_.oldest = slot_;
      vertical_pass_.weights = vertical_.WeightsOf(j);
      WriteRow(RowAt<Sample>(images_.destination, destination_stride_, j));
    }
  }

 private:
  // Produces the rows around `centre` that are not in the ring yet. Where a centre lies above the
  // last one, which negative factors bring about, there are none: the ring keeps its rows.
  void FillRing(int64_t centre, int64_t last_centre) {
    const int64_t taps = vertical_.taps;
    const int64_t end = centre + taps / 2;
    const int64_t begin = centre < taps + last_centre ? last_centre + taps / 2 + 1
                                                      : centre - TapsBeforeCentre(vertical_.taps);
    for (int64_t row = begin; row <= end; ++row) {
      AppendRow(std::clamp<int64_t>(row, 0, images_.source_size.height - 1));
    }
  }

  // Rows above the image and below it repeat its edge rows, which are filtered once.
  void AppendRow(int64_t row) {
    Intermediate<Sample>* const out = Slot(slot_);
    if (row == last_row_) {
      const int32_t previous = slot_ == 0 ? vertical_.taps - 1 : slot_ - 1;
      std::copy_n(Slot(previous), vertical_pass_.samples, out);
    } else {
      horizontal_kernel_.run(
          horizontal_pass_,
          RowAt<Sample>(images_.source, source_stride_, static_cast<std::ptrdiff_t>(row)), out);
    }
    last_row_ = row;
    slot_ = slot_ + 1 == vertical_.taps ? 0 : slot_ + 1;
  }

  // The generic form takes its work memory for each row anew, and leaves out a row that gets none.
  void WriteRow(Sample* destination) {
    if (vertical_kernel_ != nullptr) return vertical_kernel_(vertical_pass_, destination);
    const auto taps = static_cast<uint64_t>(vertical_.taps);
    WorkMemory<int32_t> slots;
    WorkMemory<int32_t> weights;
    if (!slots.Allocate(taps) || !weights.Allocate(taps)) return;
    VerticalRowGeneric(vertical_pass_, slots.data(), weights.data(), destination);
  }

  Intermediate<Sample>* Slot(int32_t slot) { return ring_ + slot * vertical_pass_.row_spacing; }

  const ResizeImages& images_;
  std::ptrdiff_t source_stride_;
  std::ptrdiff_t destination_stride_;
  const AxisWeights& vertical_;
  Intermediate<Sample>* ring_;
  HorizontalKernel<Sample> horizontal_kernel_;
  VerticalRow<Sample>* vertical_kernel_;  // null: the generic form
  HorizontalPass horizontal_pass_;
  VerticalPass<Sample> vertical_pass_;
  int32_t slot_ = 0;       // where the next row goes, and the oldest one stands
  int64_t last_row_ = -1;  // the source row written last
  int64_t last_centre_ = 0;
};

template <class Sample>
Status Resample(const ResizeImages& images, const ResizePlan& plan, KernelTier tier) {
  ResizeMemory<Sample> memory;
  const Status status = memory.Allocate(images, plan);
  if (status != OVRA_OK) return status;
  BuildAxes(images, plan, &memory.horizontal, &memory.vertical);
  RowDriver<Sample>(images, plan, &memory, tier).Run();
  return OVRA_OK;
}

Status ResampleAnyDepth(const ResizeImages& images, const ResizePlan& plan, KernelTier tier) {
  return plan.format.depth_bits == 8 ? Resample<uint8_t>(images, plan, tier)
                                     : Resample<uint16_t>(images, plan, tier);
}

Status CheckArguments(const ResizeImages& images, const float* table, KernelSupport horizontal,
                      KernelSupport vertical, PixelFormat* format) {
  constexpr int32_t kMinTaps = 4;
  if (images.source == nullptr || images.destination == nullptr) {
    return OVRA_ERROR_RESIZE_NULL_IMAGE;
  }
  if (table == nullptr) return OVRA_ERROR_RESIZE_NULL_TABLE;
  if (!(horizontal.stretch > 0.0F) || !(vertical.stretch > 0.0F)) return OVRA_ERROR_RESIZE_STRETCH;
  if (horizontal.taps < kMinTaps || vertical.taps < kMinTaps) return OVRA_ERROR_RESIZE_TAP_COUNT;
  const Status status = CheckResizeFormat(images.format, format);
  if (status != OVRA_OK) return status;
  return CheckResizeRegion(images.source_size, images.destination_size, images.region,
                           horizontal.taps, vertical.taps);
}

// Factors of one between images of one size leave everything as it is. Then as many rows as the
// region has are copied, from the first one in memory on, wherever the region lies.
bool IsIdentity(const ResizeImages& images, ResizeFactors factors) {
  return factors.horizontal == 1.0 && factors.vertical == 1.0 &&
         images.source_size.width == images.destination_size.width &&
         images.source_size.height == images.destination_size.height;
}

void CopyRows(const ResizeImages& images, const PixelFormat& format) {
  const std::ptrdiff_t bytes = RowStride(images.source_size.width, format) * images.region.height;
  std::memcpy(images.destination, images.source, static_cast<size_t>(bytes));
}

}  // namespace

Status ResizeImageCore(const ResizeImages& images, const float* table, KernelSupport support,
                       KernelTier tier) {
  PixelFormat format;
  const Status status = CheckArguments(images, table, support, support, &format);
  if (status != OVRA_OK) return status;
  const double scale = SizeRatio(images.destination_size, images.region);
  if (IsIdentity(images, {scale, scale})) {
    CopyRows(images, format);
    return OVRA_OK;
  }
  const AxisFilter filter = {table, support.taps, support.stretch};
  return ResampleAnyDepth(images, {format, filter, filter, {scale, scale}}, tier);
}

Status ResizeImageCoreVar(const ResizeImages& images, ResizeFactors factors, const float* table,
                          KernelSupport horizontal, KernelSupport vertical, KernelTier tier) {
  PixelFormat format;
  const Status status = CheckArguments(images, table, horizontal, vertical, &format);
  if (status != OVRA_OK) return status;
  if (IsIdentity(images, factors)) {
    CopyRows(images, format);
    return OVRA_OK;
  }
  const auto usable = [](double factor) { return factor != 0.0 && !std::isnan(factor); };
  if (!usable(factors.horizontal) || !usable(factors.vertical)) return OVRA_ERROR_RESIZE_FACTOR;
  const ResizePlan plan = {format,
                           {table, horizontal.taps, horizontal.stretch},
                           {table, vertical.taps, vertical.stretch},
                           factors};
  return ResampleAnyDepth(images, plan, tier);
}

}  // namespace ovra

OVRA_API OvraStatus OVRA_CALL
OvraResizeImageCore(const uint8_t* source, int32_t source_width, int32_t source_height,
                    uint8_t* destination, int32_t destination_width, int32_t destination_height,
                    OvraPixelFormatCode format, int32_t x, int32_t y, int32_t width, int32_t height,
                    const float* kernel_table, float stretch, int32_t taps) {
  return ovra::ResizeImageCore({source,
                                {source_width, source_height},
                                destination,
                                {destination_width, destination_height},
                                format,
                                {x, y, width, height}},
                               kernel_table, {stretch, taps}, ovra::DetectedTier());
}

OVRA_API OvraStatus OVRA_CALL OvraResizeImageCoreVAR(
    const uint8_t* source, int32_t source_width, int32_t source_height, uint8_t* destination,
    int32_t destination_width, int32_t destination_height, OvraPixelFormatCode format, int32_t x,
    int32_t y, int32_t width, int32_t height, double horizontal_factor, double vertical_factor,
    const float* kernel_table, float horizontal_stretch, float vertical_stretch,
    int32_t horizontal_taps, int32_t vertical_taps) {
  return ovra::ResizeImageCoreVar({source,
                                   {source_width, source_height},
                                   destination,
                                   {destination_width, destination_height},
                                   format,
                                   {x, y, width, height}},
                                  {horizontal_factor, vertical_factor}, kernel_table,
                                  {horizontal_stretch, horizontal_taps},
                                  {vertical_stretch, vertical_taps}, ovra::DetectedTier());
}
