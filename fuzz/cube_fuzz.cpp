// SPDX-License-Identifier: MIT
// Cubes of any grids and nodes, images of any samples: all tiers agree and stay in their buffers.
#include "color/cascade/cascade.h"
#include "color/cube/cube.h"
#include "fuzz_support.h"

namespace {

constexpr uint32_t kMaxCount = 12;
constexpr int32_t kMaxWidth = 600;  // more than two strips of the accelerated kernels
constexpr int32_t kMaxHeight = 3;

// Exactly as long as the cube says, so that the address sanitizer sees what lies beyond.
struct FuzzedCube {
  explicit FuzzedCube(FuzzedDataProvider& input) {
    for (std::vector<uint16_t>& grid : grids) {
      grid.resize(input.ConsumeIntegralInRange<uint32_t>(1, kMaxCount));
      uint16_t position = 0;
      const bool increasing = input.ConsumeBool();
      const auto most = input.ConsumeIntegral<uint16_t>();
      for (uint16_t& entry : grid) {
        const auto value = input.ConsumeIntegralInRange<uint16_t>(0, most);
        position = static_cast<uint16_t>(increasing ? position + value : value);
        entry = position;
      }
    }
  }

  OvraColorCube Record(FuzzedDataProvider& input, uint32_t components) {
    const size_t nodes = grids[0].size() * grids[1].size() * grids[2].size();
    const std::vector<uint8_t> bytes = ovra_fuzz::TakeImage(input, nodes * components * 2);
    const int shift = input.ConsumeIntegralInRange<int>(0, 8);
    lattice.resize(nodes * components);
    std::memcpy(lattice.data(), bytes.data(), bytes.size());
    for (uint16_t& node : lattice) node = static_cast<uint16_t>(node >> shift);
    const auto count = [this](size_t axis) { return static_cast<uint32_t>(grids[axis].size()); };
    return {count(0), grids[0].data(), count(1),      grids[1].data(),
            count(2), grids[2].data(), lattice.data()};
  }

  std::vector<uint16_t> grids[3];
  std::vector<uint16_t> lattice;
};

void FuzzConversion(FuzzedDataProvider& input, ovra::KernelTier tier) {
  // Mostly accepted words: depth, channels, model and alignment each within their lists.
  const auto depth = input.ConsumeIntegralInRange<uint32_t>(0, 9);
  const auto model = input.ConsumeIntegralInRange<uint32_t>(1, 4) << 8;
  const auto alignment = input.ConsumeIntegralInRange<uint32_t>(0, 2) << 20;
  const auto out_depth = input.ConsumeIntegralInRange<uint32_t>(0, 5);
  const bool four = input.ConsumeBool();
  const ovra::FormatPair formats = {depth | 0x20 | model | alignment,
                                    out_depth | (four ? 0x1230U : 0x0120U)};
  const auto width = input.ConsumeIntegralInRange<int32_t>(-1, kMaxWidth);
  const auto height = input.ConsumeIntegralInRange<int32_t>(-1, kMaxHeight);
  ovra::PixelFormat in;
  ovra::PixelFormat out;
  if (DecodePixelFormat(formats.input, &in) != OVRA_OK) return;
  if (DecodePixelFormat(formats.output, &out) != OVRA_OK) return;
  out.alignment_bytes = in.alignment_bytes;
  const auto bytes = [&](const ovra::PixelFormat& format) {
    if (width <= 0 || height <= 0) return size_t{0};
    return static_cast<size_t>(ovra::RowStride(width, format)) * static_cast<size_t>(height);
  };
  FuzzedCube cube(input);
  const OvraColorCube record = cube.Record(input, four ? 4 : 3);
  const std::vector<uint8_t> source = ovra_fuzz::TakeImage(input, bytes(in));
  std::vector<uint8_t> expected(bytes(out), 0xEE);
  std::vector<uint8_t> actual(bytes(out), 0xEE);
  const ovra::Status expected_status = ovra::ConvColorCubeSingleStep(
      {source.data(), expected.data(), width, height}, formats, &record, ovra::KernelTier::kPlain);
  const ovra::Status status = ovra::ConvColorCubeSingleStep(
      {source.data(), actual.data(), width, height}, formats, &record, tier);
  if (status != expected_status) std::abort();
  ovra_fuzz::RequireEqual(expected, actual);
}

void FuzzCascade(FuzzedDataProvider& input, ovra::KernelTier tier) {
  FuzzedCube first(input);
  FuzzedCube second(input);
  const OvraColorCube first_record = first.Record(input, 3);
  const OvraColorCube second_record = second.Record(input, 3);
  const std::vector<uint16_t> nodes = first.lattice;
  const ovra::Status expected_status =
      ovra::Cascade3D(&first_record, &second_record, ovra::KernelTier::kPlain);
  const std::vector<uint16_t> expected = first.lattice;
  if (expected_status != OVRA_OK && expected != nodes) std::abort();
  std::memcpy(first.lattice.data(), nodes.data(), nodes.size() * 2);
  if (ovra::Cascade3D(&first_record, &second_record, tier) != expected_status) std::abort();
  if (first.lattice != expected) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  FuzzedDataProvider input(data, size);
  const ovra::KernelTier tier = ovra_fuzz::TakeTier(input);
  if (input.ConsumeIntegralInRange<int>(0, 7) == 0) {
    FuzzCascade(input, tier);
  } else {
    FuzzConversion(input, tier);
  }
  return 0;
}
