// SPDX-License-Identifier: MIT
// The vector form, for registers of any width. Included by one kernel file a tier.
#pragma once

#include "core/vector_ops.h"
#include "filter/yusm_double/kernels.h"

namespace ovra {
namespace {

template <class V>
typename V::Reg ScaledBand(const YUsmBandTables& tables, typename V::Reg luminance,
                           typename V::Reg band) {
  constexpr int32_t kNoDifference = OVRA_DIFFERENCE_TABLE_SIZE / 2;
  const auto low = V::Set32(-kNoDifference);
  const auto high = V::Set32(kNoDifference - 1);
  const auto entry = V::Min32(V::Max32(band, low), high);
  const auto difference = V::Gather32(tables.difference + kNoDifference, entry);
  const auto level = V::Gather32(tables.level, luminance);
  const auto strength = V::ShiftRight32(V::MulLow32(difference, level), 8);
  return V::ShiftRight32(V::MulLow32(strength, band), 16);
}

template <class V>
typename V::Reg ScaledEvenBand(const YUsmEvenBand& strength, typename V::Reg band) {
  return V::Add16(V::MulLow16(band, V::Set16(strength.whole)),
                  V::MulHigh16(band, V::Set16(strength.fraction)));
}

// The deltas from what both bands add.
template <class V>
typename V::Reg DeltasOf(typename V::Reg y, typename V::Reg coarse, typename V::Reg coarse_change,
                         typename V::Reg fine_change) {
  const auto bands = V::Add16(coarse_change, fine_change);
  return V::ShiftRight16(V::Add16(V::Sub16(coarse, y), bands), 2);
}

// Of four or eight pixels, by four look-ups each.
template <class V>
void LookUpDeltas(const int16_t* luminance, const int16_t* coarse_blur, const int16_t* fine_blur,
                  int16_t* deltas, const YUsmDoubleTables& tables) {
  const auto y = V::LoadS16As32(luminance);
  const auto coarse = V::LoadS16As32(coarse_blur);
  const auto fine = V::LoadS16As32(fine_blur);
  const auto bands = V::Add32(ScaledBand<V>(tables.coarse, y, V::Sub32(fine, coarse)),
                              ScaledBand<V>(tables.fine, y, V::Sub32(y, fine)));
  const auto change = V::Add32(V::Sub32(coarse, y), bands);
  V::Store32AsS16(deltas, V::ShiftRight32(change, 2));
}

template <class V>
void FindDeltas(const int16_t* luminance, const int16_t* coarse_blur, const int16_t* fine_blur,
                int16_t* deltas, std::ptrdiff_t columns, const YUsmDoubleTables& tables) {
  constexpr std::ptrdiff_t kStep = V::kBytes / 2;
  const auto first = V::Set16(tables.even_levels.first);
  const auto length = V::Set16(tables.even_levels.last - tables.even_levels.first);
  const auto no_difference = V::Set16(OVRA_DIFFERENCE_TABLE_SIZE / 2);
  std::ptrdiff_t x = 0;
  for (; x + kStep <= columns; x += kStep) {
    const auto y = V::Load(luminance + x);
    const auto coarse = V::Load(coarse_blur + x);
    const auto fine = V::Load(fine_blur + x);
    if (tables.is_even) {
      V::Store(deltas + x,
               DeltasOf<V>(y, coarse, ScaledEvenBand<V>(tables.even_coarse, V::Sub16(fine, coarse)),
                           ScaledEvenBand<V>(tables.even_fine, V::Sub16(y, fine))));
    } else if (tables.has_even_levels && V::IsZero(V::SubSatU16(V::Sub16(y, first), length))) {
      const auto coarse_entry = V::Add16(V::Sub16(fine, coarse), no_difference);
      const auto fine_entry = V::Add16(V::Sub16(y, fine), no_difference);
      V::Store(deltas + x, DeltasOf<V>(y, coarse, V::Gather16(tables.coarse_changes, coarse_entry),
                                       V::Gather16(tables.fine_changes, fine_entry)));
    } else {
      for (std::ptrdiff_t half = x; half < x + kStep; half += kStep / 2) {
        LookUpDeltas<V>(luminance + half, coarse_blur + half, fine_blur + half, deltas + half,
                        tables);
      }
    }
  }
  NarrowerThan<V>(kYUsmDoublePlain, kYUsmDoubleSse)
      .find_deltas(luminance + x, coarse_blur + x, fine_blur + x, deltas + x, columns - x, tables);
}

template <class V>
constexpr YUsmDoubleKernels kYUsmDoubleOf = {FindDeltas<V>};

}  // namespace
}  // namespace ovra
