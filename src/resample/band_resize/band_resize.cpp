// SPDX-License-Identifier: MIT
#include "resample/band_resize/band_resize.h"

#include <algorithm>
#include <utility>

#include "ovra/resample.h"
#include "resample/kernel_table.h"
#include "resample/resize/resize.h"

namespace ovra {
namespace {

// A context for a shape, which is still without rows.
ContextPtr<BandResizeContext> MakeBandContext(const ResizeShape& shape, PixelFormatCode format) {
  ContextPtr<BandResizeContext> context = MakeContext<BandResizeContext>();
  if (context != nullptr) {
    context->format = format;
    context->shape = shape;
  }
  return context;
}

// The last step of both forms: the rows of a plan, and the context is the caller's.
Status HandOut(const ResizePlan& plan, KernelTier tier, ContextPtr<BandResizeContext> made,
               BandResizeContext** context) {
  const Status status = made->rows.Prepare(plan, RowMemory::kAtOnceForBands, tier);
  if (status == OVRA_OK) *context = made.release();
  return status;
}

struct Band {
  const uint8_t* data;
  int32_t width;
  int32_t rows;
};

struct Room {
  uint8_t* data;
  int32_t width;
  int32_t rows;
};

Status CheckRun(const BandResizeContext& context, const Band& band, const Room& room,
                PixelFormatCode format, int32_t first_row) {
  if ((band.data == nullptr && band.rows > 0) || (room.data == nullptr && room.rows > 0)) {
    return OVRA_ERROR_RESIZE_NULL_IMAGE;
  }
  if (band.width != context.shape.source.width || room.width != context.shape.destination.width ||
      format != context.format) {
    return OVRA_ERROR_BAND_RESIZE_CHANGED;
  }
  if (band.rows < 0 || room.rows < 0 || first_row < 0 ||
      (first_row != 0 && first_row != context.rows.Taken()) ||
      band.rows > context.shape.source.height - first_row) {
    return OVRA_ERROR_BAND_RESIZE_POSITION;
  }
  return OVRA_OK;
}

Status BandResize(const Band& band, const Room& room, PixelFormatCode format, int32_t first_row,
                  int32_t* rows_taken, int32_t* rows_written, BandResizeContext* context) {
  if (context == nullptr || rows_taken == nullptr || rows_written == nullptr) {
    return OVRA_ERROR_RESIZE_NULL_IMAGE;
  }
  *rows_taken = 0;
  *rows_written = 0;
  const Status status = CheckRun(*context, band, room, format, first_row);
  if (status != OVRA_OK) return status;
  RowStream& rows = context->rows;
  if (first_row == 0 && rows.Taken() > 0) rows.Restart();
  const int32_t written_before = rows.Written();
  rows.Run({band.data, first_row, band.rows}, room.data, rows.DestinationStride(), room.rows);
  *rows_taken = rows.Taken() - first_row;
  *rows_written = rows.Written() - written_before;
  return OVRA_OK;
}

}  // namespace

Status BandResizeInit(const ResizeShape& shape, PixelFormatCode code, KernelTier tier,
                      BandResizeContext** context) {
  if (context == nullptr) return OVRA_ERROR_RESIZE_NULL_IMAGE;
  *context = nullptr;
  PixelFormat format;
  ResizePlan plan;
  Status status = DecodePixelFormat(code, &format);
  if (status != OVRA_OK) return status;
  ContextPtr<BandResizeContext> made = MakeBandContext(shape, code);
  if (made == nullptr) return OVRA_ERROR_NO_MEMORY;
  status = CheckResizeNotEmpty(shape);
  if (status == OVRA_OK) status = PlanByRatio(shape, format, ResizeKernelTable(), &plan);
  return status == OVRA_OK ? HandOut(plan, tier, std::move(made), context) : status;
}

Status BandResizeCoreInit(const ResizeShape& shape, PixelFormatCode code, const float* table,
                          KernelSupport support, KernelTier tier, BandResizeContext** context) {
  if (context == nullptr) return OVRA_ERROR_RESIZE_NULL_IMAGE;
  *context = nullptr;
  PixelFormat format;
  ResizePlan plan;
  const ResizeKernel kernel = {table, support, support};
  Status status = CheckResizeCore(code, kernel, &format);
  const double ratio = SizeRatio(shape);
  if (status == OVRA_OK) status = PlanEngine(shape, format, {ratio, ratio}, kernel, &plan);
  if (status != OVRA_OK) return status;
  ContextPtr<BandResizeContext> made = MakeBandContext(shape, code);
  if (made == nullptr || !made->table.Allocate(kKernelTableEntries)) return OVRA_ERROR_NO_MEMORY;
  std::copy_n(table, kKernelTableEntries, made->table.data());
  plan.kernel.table = made->table.data();
  return HandOut(plan, tier, std::move(made), context);
}

}  // namespace ovra

OVRA_API OvraStatus OVRA_CALL OvraBandResize_Init(int32_t source_width, int32_t source_height,
                                                  int32_t destination_width,
                                                  int32_t destination_height,
                                                  OvraPixelFormatCode format, int32_t x, int32_t y,
                                                  int32_t width, int32_t height,
                                                  OvraBandResizeContext** context) {
  return ovra::BandResizeInit({{source_width, source_height},
                               {destination_width, destination_height},
                               {x, y, width, height}},
                              format, ovra::DetectedTier(), context);
}

OVRA_API OvraStatus OVRA_CALL
OvraBandResizeCore_Init(int32_t source_width, int32_t source_height, int32_t destination_width,
                        int32_t destination_height, OvraPixelFormatCode format, int32_t x,
                        int32_t y, int32_t width, int32_t height, const float* kernel_table,
                        float stretch, int32_t taps, OvraBandResizeContext** context) {
  return ovra::BandResizeCoreInit({{source_width, source_height},
                                   {destination_width, destination_height},
                                   {x, y, width, height}},
                                  format, kernel_table, {stretch, taps}, ovra::DetectedTier(),
                                  context);
}

OVRA_API OvraStatus OVRA_CALL OvraBandResize(const uint8_t* source, int32_t source_width,
                                             int32_t source_rows, uint8_t* destination,
                                             int32_t destination_width, int32_t destination_rows,
                                             OvraPixelFormatCode format, int32_t first_row,
                                             int32_t* rows_taken, int32_t* rows_written,
                                             OvraBandResizeContext* context) {
  return ovra::BandResize({source, source_width, source_rows},
                          {destination, destination_width, destination_rows}, format, first_row,
                          rows_taken, rows_written, context);
}

OVRA_API OvraStatus OVRA_CALL OvraBandResize_Free(OvraBandResizeContext** context) {
  if (context != nullptr) ovra::ReleaseContext(context);
  return OVRA_OK;
}
