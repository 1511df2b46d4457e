// SPDX-License-Identifier: MIT
// Conversion by a colour matrix, with the tier of kernels as an argument.
#pragma once

#include <cstdint>

#include "color/conversion.h"
#include "core/cpu.h"
#include "core/status.h"
#include "ovra/color.h"

namespace ovra {

using ColorMatrix = OvraColorMatrix;

Status InitColorMatrix(const FormatPair& formats, const ColorMatrix* matrix, uintptr_t* handle_out);

Status ConvertByColorMatrix(const ImagePair& images, const FormatPair& formats, uintptr_t handle,
                            KernelTier tier);

Status ConvertByColorMatrixOnce(const ImagePair& images, const FormatPair& formats,
                                const ColorMatrix* matrix, KernelTier tier);

Status FreeColorMatrix(uintptr_t* handle);

}  // namespace ovra
