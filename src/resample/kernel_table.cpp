// SPDX-License-Identifier: MIT
#include "resample/kernel_table.h"

#include <algorithm>
#include <iterator>

#include "core/extended_precision.h"

namespace ovra {
namespace {

// The two pieces of a kernel, as functions of the distance from the start of the piece.
struct CubicConvolution {
  long double a;

  constexpr long double Inner(long double t) const {
    return (a + 2) * (t * t * t) - (a + 3) * (t * t) + 1;
  }
  constexpr long double Outer(long double u) const {
    return a * (u * u * u) - 2 * a * (u * u) + a * u;
  }
};

struct BSpline {
  // A factor, not a divisor, and rounded to double: products that lie halfway between two floats
  // go down.
  static constexpr double kSixth = 0.16666666666666666;
  long double b;

  long double Inner(long double t) const {
    return ((6 * b + 3) * (t * t * t) + (-9 * b - 6) * (t * t) + (2 * b + 4)) * kSixth;
  }
  long double Outer(long double u) const {
    return ((2 * b + 1) * (u * u * u) + (-3 * b - 3) * (u * u) + 3 * u + (b - 1)) * -kSixth;
  }
};

// Not inlined: no arithmetic may move to where the caller has not yet set the precision.
template <class Kernel>
[[gnu::noinline]] constexpr void FillPieces(const Kernel& kernel, float* table) {
  constexpr long double kStep = 1.0L / kKernelTableSteps;
  for (int32_t i = 0; i < kKernelTableSteps; ++i) {
    const long double distance = i * kStep;
    table[i] = static_cast<float>(kernel.Inner(distance));
    table[kKernelTableSteps + i] = static_cast<float>(kernel.Outer(distance));
  }
}

template <class Kernel>
Status FillTable(const Kernel& kernel, float* table) {
  if (table == nullptr) return OVRA_ERROR_RESIZE_NULL_TABLE;
  const ScopedExtendedPrecision extended_precision;
  FillPieces(kernel, table);
  std::fill(table + 2 * kKernelTableSteps, table + kKernelTableEntries, 0.0F);
  return OVRA_OK;
}

struct KernelTable {
  float entries[kKernelTableEntries] = {};
};

// Compilers compute in the full precision of long double. For this parameter nothing is rounded on the
// way to a float.
constexpr KernelTable kResizeTable = [] {
  KernelTable table;
  FillPieces(CubicConvolution{kResizeKernelParameter}, table.entries);
  return table;
}();

// From this ratio on a kernel of so many taps serves, stretched by the reciprocal of the middle of
// its band of ratios.
struct SupportBand {
  double min_ratio;
  uint32_t taps;
  float stretch;
};

constexpr SupportBand kSupports[] = {
    {0.917, 4, 1.0F},
    {0.771, 5, 0x1.2F514Ap0F},  // 1 / 0.844
    {0.648, 6, 0x1.68D146p0F},  // 1 / 0.7095
    {0.545, 7, 0x1.AD2B90p0F},  // 1 / 0.5965
};
constexpr SupportBand kWidestSupport = {0.0, 8, 2.0F};

}  // namespace

Status CalcCubicSpline(float a, float* table) {
  return FillTable(CubicConvolution{a}, table);
}

Status CalcBSpline(float b, float* table) {
  return FillTable(BSpline{b}, table);
}

const float* ResizeKernelTable() {
  return kResizeTable.entries;
}

void SelectKernelSupport(float ratio, uint32_t* taps, float* stretch) {
  const SupportBand* const found = std::find_if(
      std::begin(kSupports), std::end(kSupports),
      [ratio](const SupportBand& band) { return static_cast<double>(ratio) >= band.min_ratio; });
  const SupportBand& support = found == std::end(kSupports) ? kWidestSupport : *found;
  *taps = support.taps;
  *stretch = support.stretch;
}

}  // namespace ovra

OVRA_API OvraStatus OVRA_CALL OvraCalcCubicSpline(float a, float* table) {
  return ovra::CalcCubicSpline(a, table);
}

OVRA_API OvraStatus OVRA_CALL OvraCalcBSpline(float b, float* table) {
  return ovra::CalcBSpline(b, table);
}

OVRA_API OvraStatus OVRA_CALL OvraSelectKernelSupport(float ratio, int32_t* taps, float* stretch) {
  if (taps == nullptr || stretch == nullptr) return OVRA_ERROR_NULL_DECODER_OUTPUT;
  uint32_t selected = 0;
  ovra::SelectKernelSupport(ratio, &selected, stretch);
  *taps = static_cast<int32_t>(selected);
  return OVRA_OK;
}
