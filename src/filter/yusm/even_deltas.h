// SPDX-License-Identifier: MIT
#pragma once

#include "filter/luminance/level_stretch.h"
#include "filter/yusm/kernels.h"

namespace ovra {

// Fills `even` for the correction and level tables of `tables` and the shift of their product.
void FindEvenDeltas(const YUsmTables& tables, YUsmEvenDeltas* even);

}  // namespace ovra
