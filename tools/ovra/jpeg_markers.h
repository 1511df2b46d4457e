// SPDX-License-Identifier: MIT
// Remarks of a photograph in the markers of a JPEG file.
#pragma once

#include <array>
#include <cstdio>
// libjpeg's header needs FILE and size_t declared before it.
#include <jpeglib.h>

#include <vector>

#include "files.h"
#include "metadata.h"

namespace ovra_host {

// Markers that libjpeg is asked to keep: EXIF and XMP, profile, resource blocks, comment.
constexpr std::array<int, 4> kKeptJpegMarkers = {JPEG_APP0 + 1, JPEG_APP0 + 2, JPEG_APP0 + 13,
                                                 JPEG_COM};

struct JpegMarker {
  int number;
  Blob bytes;
};

// All but profile and resolution, which libjpeg knows itself.
Metadata JpegMetadata(const jpeg_marker_struct* markers);

// What is too long for a marker is left out, with a line for the user about this file.
std::vector<JpegMarker> JpegMarkers(const Metadata& metadata, const OutputFile& file);

}  // namespace ovra_host
