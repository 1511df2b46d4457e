// SPDX-License-Identifier: MIT
#include "resample/row_stream.h"

#include <cstring>

namespace ovra {

Status CopiedRows::Prepare(const ResizePlan& plan, RowMemory /*memory*/, KernelTier /*tier*/) {
  bytes_ = plan.SourceStride();
  return row_.Allocate(static_cast<uint64_t>(bytes_)) ? OVRA_OK : OVRA_ERROR_NO_MEMORY;
}

void CopiedRows::Take(const uint8_t* row) {
  std::memcpy(row_.data(), row, static_cast<size_t>(bytes_));
}

void CopiedRows::Write(uint8_t* destination) {
  std::memcpy(destination, row_.data(), static_cast<size_t>(bytes_));
}

Status RowStream::Prepare(const ResizePlan& plan, RowMemory memory, KernelTier tier) {
  const bool is_bytes = plan.format.depth_bits == 8;
  switch (plan.method) {
    case ResizeMethod::kCopy:
      maker_.emplace<CopiedRows>();
      break;
    case ResizeMethod::kEngine:
      if (is_bytes) {
        maker_.emplace<EngineRows<uint8_t>>();
      } else {
        maker_.emplace<EngineRows<uint16_t>>();
      }
      break;
    case ResizeMethod::kReduction:
      if (is_bytes) {
        maker_.emplace<ReductionRows<uint8_t>>();
      } else {
        maker_.emplace<ReductionRows<uint16_t>>();
      }
      break;
  }
  source_stride_ = plan.SourceStride();
  destination_stride_ = plan.DestinationStride();
  destination_height_ = plan.shape.destination.height;
  return std::visit([&](auto& maker) { return maker.Prepare(plan, memory, tier); }, maker_);
}

void RowStream::Restart() {
  taken_ = 0;
  written_ = 0;
  std::visit([](auto& maker) { maker.Restart(); }, maker_);
}

void RowStream::Run(const SourceRows& source, uint8_t* destination, std::ptrdiff_t stride,
                    int32_t room) {
  std::visit([&](auto& maker) { RunWith(&maker, source, destination, stride, room); }, maker_);
}

template <class Maker>
void RowStream::RunWith(Maker* maker, const SourceRows& source, uint8_t* destination,
                        std::ptrdiff_t stride, int32_t room) {
  const int32_t source_end = source.first + source.count;
  const auto take_until = [&](int32_t end) {
    for (; taken_ < end; ++taken_) {
      maker->Take(source.data + (taken_ - source.first) * source_stride_);
    }
  };
  for (; written_ < destination_height_; ++written_, --room, destination += stride) {
    const int32_t needed = maker->NeededRow(written_);
    take_until(needed < source_end ? needed + 1 : source_end);
    if (needed >= source_end || room == 0) return;
    maker->Write(destination);
  }
  take_until(source_end);
}

}  // namespace ovra
