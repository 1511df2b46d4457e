// SPDX-License-Identifier: MIT
#include "metadata.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <string_view>
#include <utility>

namespace ovra_host {
namespace {

constexpr uint32_t kIptcBlock = 0x0404;
constexpr size_t kMarkBytes = 4;  // "8BIM"
constexpr size_t kBlockHeadBytes =
    kMarkBytes + 2;  // with the number; a name of even length follows

uint32_t BigEndian(const Blob& blob, size_t at, size_t bytes) {
  uint32_t value = 0;
  for (size_t i = 0; i < bytes; ++i) value = value << 8 | blob[at + i];
  return value;
}

}  // namespace

void StripMetadata(Metadata* metadata) {
  Metadata kept;
  kept.profile = std::move(metadata->profile);
  *metadata = std::move(kept);
}

bool ProfileFits(const Blob& profile, uint32_t channels) {
  constexpr size_t kHeaderBytes = 128;
  constexpr size_t kColorSpace = 16;
  if (profile.size() < kHeaderBytes) return false;
  const std::string_view space(reinterpret_cast<const char*>(profile.data()) + kColorSpace, 4);
  return space == (channels == 1 ? "GRAY" : "RGB ");
}

double CleanResolution(double per_inch) {
  constexpr double kSlack = 0.02;
  const double whole = std::round(per_inch);
  return std::abs(per_inch - whole) < kSlack ? whole : per_inch;
}

Blob WrapIptcRecord(const uint8_t* record, size_t bytes) {
  const std::array<uint8_t, 8> head = {'8', 'B', 'I', 'M', kIptcBlock >> 8, kIptcBlock & 255};
  Blob blocks(head.size() + 4 + (bytes + 1) / 2 * 2);
  auto at = std::copy(head.begin(), head.end(), blocks.begin());
  for (int shift = 24; shift >= 0; shift -= 8) *at++ = static_cast<uint8_t>(bytes >> shift);
  std::copy(record, record + bytes, at);
  return blocks;
}

Blob FindIptcRecord(const Blob& resources) {
  size_t at = 0;
  while (at + kBlockHeadBytes + 2 + 4 <= resources.size()) {
    const uint32_t number = BigEndian(resources, at + kMarkBytes, 2);
    const size_t name_bytes = (resources[at + kBlockHeadBytes] + size_t{2}) / 2 * 2;
    const size_t size_at = at + kBlockHeadBytes + name_bytes;
    if (size_at + 4 > resources.size()) break;
    const size_t bytes = BigEndian(resources, size_at, 4);
    const size_t data = size_at + 4;
    if (bytes > resources.size() - data) break;
    if (number == kIptcBlock) {
      return Blob(resources.begin() + static_cast<std::ptrdiff_t>(data),
                  resources.begin() + static_cast<std::ptrdiff_t>(data + bytes));
    }
    at = data + (bytes + 1) / 2 * 2;
  }
  return {};
}

}  // namespace ovra_host
