// SPDX-License-Identifier: MIT
// Response tables from curves, and the tables of a context from response tables.
#include <algorithm>

#include "core/extended_precision.h"
#include "core/saturate.h"
#include "filter/luminance/kernels.h"
#include "filter/yusm/kernels.h"
#include "filter/yusm/yusm.h"

namespace ovra {
namespace {

constexpr double kTableUnit = 128;        // the entry that stands for 1.0
constexpr double kEntriesPerUnit = 1024;  // of x

// Entries are stored in 16 bits and wrap there.
int16_t ToEntry(double value) {
  return static_cast<int16_t>(TruncateToInt32(value));
}

// Every x is compared but the last one's, which must only exceed its predecessor.
bool IsCurveValid(int32_t point_count, const OvraResponsePoint* points, double low, double high) {
  for (int32_t i = 0; i + 1 < point_count; ++i) {
    const double x = points[i].x;
    if (!(x >= low && x <= high && points[i + 1].x > x)) return false;
  }
  return true;
}

Status CheckCurves(int32_t level_point_count, const OvraResponsePoint* level_points,
                   int32_t difference_point_count, const OvraResponsePoint* difference_points) {
  if (level_point_count <= 0 || difference_point_count <= 0) return OVRA_ERROR_YUSM_POINT_COUNT;
  if (level_points == nullptr || difference_points == nullptr) return OVRA_ERROR_YUSM_NULL;
  if (!IsCurveValid(level_point_count, level_points, 0.0, 1.0)) {
    return OVRA_ERROR_YUSM_LEVEL_CURVE;
  }
  if (!IsCurveValid(difference_point_count, difference_points, -1.0, 1.0)) {
    return OVRA_ERROR_YUSM_DIFFERENCE_CURVE;
  }
  return OVRA_OK;
}

// Not inlined: no arithmetic may move to where the caller has not yet set the precision.
[[gnu::noinline]] void FoldAmount(const int16_t* difference_table, float amount,
                                  uint32_t depth_bits, int32_t* correction_table) {
  const long double strength = static_cast<long double>(amount) - 1.0L;
  const long double scale =
      depth_bits > kLuminanceDepthBits ? 1 << (depth_bits - kLuminanceDepthBits) : 1;
  for (int32_t k = 0; k < OVRA_DIFFERENCE_TABLE_SIZE; ++k) {
    const int32_t product = difference_table[k] * (k - kNoDifference);
    correction_table[k] = TruncateToInt32(product * strength * scale + 0.5L);
  }
}

}  // namespace

void InterpolateResponseCurve(int32_t point_count, const OvraResponsePoint* points, int32_t size,
                              int32_t offset, int16_t* table) {
  const auto index = [offset](double x) {
    return TruncateToInt32(x * kEntriesPerUnit + offset + 0.5);
  };
  for (int32_t i = 0; i + 1 < point_count; ++i) {
    const OvraResponsePoint& left = points[i];
    const OvraResponsePoint& right = points[i + 1];
    const double slope = ((right.y - left.y) * kTableUnit) / ((right.x - left.x) * kEntriesPerUnit);
    // Rising lines start from their left end and falling ones from their right end, so that
    // truncation pulls both the same way.
    const OvraResponsePoint& anchor = slope >= 0 ? left : right;
    const double anchor_index = index(anchor.x);
    const double anchor_value = TruncateToInt32(anchor.y * kTableUnit);

    const bool is_first = i == 0;
    const bool is_last = i == point_count - 2;
    const int32_t low = is_first ? -1 : std::max(index(left.x), 0);
    const int32_t high = is_last ? size : std::min(index(right.x), size);
    // An inner point at the right end of the range stands one past the table.
    if (!is_first && low < size) table[low] = ToEntry(left.y * kTableUnit + 0.5);
    for (int32_t j = low + 1; j < high; ++j) {
      table[j] = ToEntry((j - anchor_index) * slope + anchor_value + 0.5);
    }
  }
}

void BuildYUsmTables(const int16_t* level_table, const int16_t* difference_table, float amount,
                     uint32_t depth_bits, YUsmContext* context) {
  std::copy_n(level_table, OVRA_LEVEL_TABLE_SIZE, context->level_table);
  const ScopedExtendedPrecision extended_precision;
  FoldAmount(difference_table, amount, depth_bits, context->correction_table);
}

}  // namespace ovra

OVRA_API OvraStatus OVRA_CALL OvraYUsmMakeTable(OvraPixelFormatCode format,
                                                int32_t level_point_count,
                                                const OvraResponsePoint* level_points,
                                                int32_t difference_point_count,
                                                const OvraResponsePoint* difference_points,
                                                int16_t* level_table, int16_t* difference_table) {
  if (level_table == nullptr || difference_table == nullptr) return OVRA_ERROR_YUSM_NULL;
  ovra::Status status =
      ovra::CheckCurves(level_point_count, level_points, difference_point_count, difference_points);
  ovra::PixelFormat decoded;
  if (status == OVRA_OK) status = ovra::CheckYUsmFormat(format, &decoded);
  if (status != OVRA_OK) return status;
  ovra::InterpolateResponseCurve(level_point_count, level_points, OVRA_LEVEL_TABLE_SIZE, 0,
                                 level_table);
  ovra::InterpolateResponseCurve(difference_point_count, difference_points,
                                 OVRA_DIFFERENCE_TABLE_SIZE, ovra::kNoDifference, difference_table);
  return OVRA_OK;
}
