// SPDX-License-Identifier: MIT
#include "filter/yusm/even_deltas.h"

#include <cstdlib>
#include <limits>

#include "core/wrapping.h"

namespace ovra {
namespace {

// Every delta at one level.
void FillDeltas(const YUsmTables& tables, int32_t level, int16_t* deltas) {
  for (int32_t i = 0; i < OVRA_DIFFERENCE_TABLE_SIZE; ++i) {
    const uint32_t product = WrappingProduct(tables.correction[i], level);
    deltas[i] = static_cast<int16_t>(static_cast<int32_t>(product) >> tables.shift);
  }
}

// Takes the slope of the whole range with as many bits as a factor has, and sees whether it gives
// every delta.
bool FindProduct(const YUsmTables& tables, int32_t level, YUsmEvenDeltas* even) {
  constexpr int32_t kMostShift = 15;
  constexpr int64_t kMostFactor = std::numeric_limits<int16_t>::max();
  const int64_t product = int64_t{tables.correction[kNoDifference + kMaxLuminance]} * level
                          << kYUsmProductBits;
  const int64_t parts = int64_t{kMaxLuminance} << tables.shift;
  even->product_shift = 0;
  while (even->product_shift < kMostShift &&
         std::abs((product << (even->product_shift + 1)) / parts) <= kMostFactor) {
    ++even->product_shift;
  }
  const int64_t factor = (product << even->product_shift) / parts;
  if (std::abs(factor) > kMostFactor) return false;
  even->factor = static_cast<int16_t>(factor);
  bool is_product = true;
  for (int32_t d = -kMaxLuminance; d <= kMaxLuminance; ++d) {
    is_product &= YUsmProduct(*even, d) == even->deltas[kNoDifference + d];
  }
  return is_product;
}

}  // namespace

void FindEvenDeltas(const YUsmTables& tables, YUsmEvenDeltas* even) {
  even->levels = LongestStretch(
      [&tables](int32_t a, int32_t b) { return tables.level[a] == tables.level[b]; });
  const int32_t level = tables.level[even->levels.first];
  FillDeltas(tables, level, even->deltas);
  even->is_product = even->levels.IsAll() && FindProduct(tables, level, even);
}

}  // namespace ovra
