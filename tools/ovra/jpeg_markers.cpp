// SPDX-License-Identifier: MIT
#include "jpeg_markers.h"

#include <algorithm>
#include <string_view>

#include "codecs.h"

namespace ovra_host {
namespace {

using namespace std::string_view_literals;

constexpr std::string_view kExifStart = "Exif\0\0"sv;
constexpr std::string_view kXmpStart = "http://ns.adobe.com/xap/1.0/\0"sv;
constexpr std::string_view kIptcStart = "Photoshop 3.0\0"sv;

constexpr size_t kMaxMarkerBytes = 65533;

// Appends what follows the start, when the marker begins with it.
void Take(const jpeg_marker_struct& marker, int number, std::string_view start, Blob* blob) {
  const std::string_view bytes(reinterpret_cast<const char*>(marker.data), marker.data_length);
  if (marker.marker != number || bytes.substr(0, start.size()) != start) return;
  if (blob->size() + bytes.size() > kMaxBlobBytes) return;
  blob->insert(blob->end(), marker.data + start.size(), marker.data + marker.data_length);
}

}  // namespace

Metadata JpegMetadata(const jpeg_marker_struct* markers) {
  Metadata metadata;
  Blob comment;
  for (; markers != nullptr; markers = markers->next) {
    if (metadata.exif.empty()) Take(*markers, JPEG_APP0 + 1, kExifStart, &metadata.exif);
    if (metadata.xmp.empty()) Take(*markers, JPEG_APP0 + 1, kXmpStart, &metadata.xmp);
    Take(*markers, JPEG_APP0 + 13, kIptcStart, &metadata.iptc);
    if (comment.empty()) Take(*markers, JPEG_COM, "", &comment);
  }
  const auto end = std::find(comment.begin(), comment.end(), 0);
  metadata.comment.assign(comment.begin(), end);
  return metadata;
}

std::vector<JpegMarker> JpegMarkers(const Metadata& metadata, const OutputFile& file) {
  std::vector<JpegMarker> markers;
  const auto add = [&](int number, std::string_view start, const auto& blob, const char* name) {
    if (blob.empty()) return;
    if (start.size() + blob.size() > kMaxMarkerBytes) {
      NoteLeftOut(file, std::string(name) + " of more than 64 KiB does not fit into JPEG");
      return;
    }
    Blob bytes(start.begin(), start.end());
    bytes.insert(bytes.end(), blob.begin(), blob.end());
    markers.push_back({number, std::move(bytes)});
  };
  add(JPEG_APP0 + 1, kExifStart, metadata.exif, "EXIF data");
  add(JPEG_APP0 + 1, kXmpStart, metadata.xmp, "XMP data");
  add(JPEG_APP0 + 13, kIptcStart, metadata.iptc, "IPTC data");
  add(JPEG_COM, "", metadata.comment, "a comment");
  return markers;
}

}  // namespace ovra_host
