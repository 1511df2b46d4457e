// SPDX-License-Identifier: MIT
// Rows brought into the form in which they are stored, on their way to the file.
#pragma once

#include <memory>

#include "picture_rows.h"

namespace ovra_host {

// The format in which a picture is stored that is brought to the depth and onto the background of
// the options. Throws Error where the background is not a colour for it.
OvraPixelFormatCode FittedFormat(const PictureHeader& header, const WriteOptions& options);

// A writer that takes rows of the header's format and gives the other one rows of the fitted format.
std::unique_ptr<RowWriter> FitRows(std::unique_ptr<RowWriter> writer, const PictureHeader& header,
                                   const WriteOptions& options);

}  // namespace ovra_host
