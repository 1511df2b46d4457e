// SPDX-License-Identifier: MIT
#include "resample/row_stream.h"

#include <algorithm>
#include <cstring>

namespace ovra {

Status CopiedRows::Prepare(const ResizePlan& plan, RowUse /*use*/, KernelTier /*tier*/) {
  bytes_ = plan.SourceStride();
  return kept_.Allocate(static_cast<uint64_t>(bytes_)) ? OVRA_OK : OVRA_ERROR_NO_MEMORY;
}

void CopiedRows::Write(uint8_t* destination, std::ptrdiff_t /*stride*/, int32_t /*count*/) {
  std::memcpy(destination, row_, static_cast<size_t>(bytes_));
  row_ = nullptr;
}

void CopiedRows::KeepTakenRows() {
  if (row_ == nullptr || row_ == kept_.data()) return;
  std::memcpy(kept_.data(), row_, static_cast<size_t>(bytes_));
  row_ = kept_.data();
}

Status RowStream::Prepare(const ResizePlan& plan, RowUse use, KernelTier tier) {
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
  return std::visit([&](auto& maker) { return maker.Prepare(plan, use, tier); }, maker_);
}

void RowStream::Restart() {
  taken_ = 0;
  written_ = 0;
  std::visit([](auto& maker) { maker.Restart(); }, maker_);
}

void RowStream::KeepTakenRows() {
  std::visit([](auto& maker) { maker.KeepTakenRows(); }, maker_);
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
  while (written_ < destination_height_) {
    const int32_t needed = maker->NeededRow(written_);
    take_until(needed < source_end ? needed + 1 : source_end);
    if (needed >= source_end || room == 0) return;
    // Further rows that this source suffices for, when the maker is better at several.
    const int32_t most = std::min({maker->RowsAtOnce(), room, destination_height_ - written_});
    int32_t count = 1;
    while (count < most && maker->NeededRow(written_ + count) < source_end) ++count;
    take_until(maker->NeededRow(written_ + count - 1) + 1);
    maker->Write(destination, stride, count);
    destination += count * stride;
    written_ += count;
    room -= count;
  }
  take_until(source_end);
}

}  // namespace ovra
