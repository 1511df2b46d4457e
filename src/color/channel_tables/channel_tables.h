// SPDX-License-Identifier: MIT
// A table for each channel, given as such or by polynomials. One kind of handle, one conversion and
// one release serve both families; the tier of kernels is an argument.
#pragma once

#include <cstdint>

#include "color/conversion.h"
#include "core/cpu.h"
#include "core/status.h"
#include "ovra/color.h"

namespace ovra {

using ChannelTableSet = OvraChannelTableSet;
using ChannelPolynomial = OvraChannelPolynomial;

// The statuses by which the first checks of the two families differ.
struct ChannelTableStatuses {
  Status null;
  Status zero_size;
  Status format_changed;
};

inline constexpr ChannelTableStatuses kTableStatuses = {
    OVRA_ERROR_TABLE_NULL, OVRA_ERROR_TABLE_ZERO_SIZE, OVRA_ERROR_TABLE_FORMAT_CHANGED};
inline constexpr ChannelTableStatuses kCoefficientStatuses = {
    OVRA_ERROR_COEFFICIENT_NULL, OVRA_ERROR_COEFFICIENT_ZERO_SIZE, OVRA_ERROR_FORMAT_CHANGED};

Status InitChannelTables(const FormatPair& formats, const ChannelTableSet* tables,
                         uintptr_t* handle_out);
Status InitChannelTables(const FormatPair& formats, const ChannelPolynomial* coefficients,
                         uintptr_t* handle_out);

Status ConvertByChannelTables(const ImagePair& images, const FormatPair& formats, uintptr_t handle,
                              const ChannelTableStatuses& statuses, KernelTier tier);

Status ConvertByChannelTablesOnce(const ImagePair& images, const FormatPair& formats,
                                  const ChannelTableSet* tables, KernelTier tier);
Status ConvertByChannelTablesOnce(const ImagePair& images, const FormatPair& formats,
                                  const ChannelPolynomial* coefficients, KernelTier tier);

Status FreeChannelTables(uintptr_t* handle);

}  // namespace ovra
