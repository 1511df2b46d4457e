// SPDX-License-Identifier: MIT
// The checks that the resize functions share.
#pragma once

#include "core/pixel_format.h"
#include "core/status.h"
#include "resample/resize_geometry.h"

namespace ovra {

// Decodes the format word and asks whether it can be resized: 1, 3 or 4 channels of at most 16
// bits, interleaved, with a colour model that fits the channel count. (No model has two channels.)
Status CheckResizeFormat(PixelFormatCode code, PixelFormat* format);

// OVRA_ERROR_RESIZE_ZERO_SIZE when there is nothing to measure a ratio by.
Status CheckResizeNotEmpty(ImageSize source, const ResizeRegion& region);

// Source, destination and region hold the taps, and the region does not reach beyond the source's
// right or bottom edge. Regions that begin left of the source or above it are accepted.
Status CheckResizeRegion(ImageSize source, ImageSize destination, const ResizeRegion& region,
                         int32_t horizontal_taps, int32_t vertical_taps);

}  // namespace ovra
