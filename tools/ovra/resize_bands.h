// SPDX-License-Identifier: MIT
// Resizing a picture that is never in memory whole.
#pragma once

#include <string>

#include "picture_rows.h"
#include "resizing.h"

namespace ovra_host {

// Reads bands of so many rows and writes rows as they come out; with a turn the
// result, which is small where this is used, is kept until it is whole. With
// progress on a terminal.
void ResizeInBands(RowReader& reader, const ResizePlan& plan, int32_t band_rows,
                   const Metadata& metadata, const std::string& output,
                   const CommonOptions& common);

}  // namespace ovra_host
