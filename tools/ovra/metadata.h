// SPDX-License-Identifier: MIT
// What a photograph carries beside its pixels.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace ovra_host {

using Blob = std::vector<uint8_t>;

// No part of a photograph's remarks is honestly larger; what is, is left out.
constexpr size_t kMaxBlobBytes = size_t{16} << 20;

// Pixels an inch; 0 where the file does not tell.
struct Resolution {
  double x = 0;
  double y = 0;
};

// Blobs are as the formats define them and empty where there are none.
struct Metadata {
  Blob profile;         // ICC colour profile
  Blob exif;            // from its byte-order mark on
  Blob xmp;             // packet of XML
  Blob iptc;            // image resource blocks ("8BIM"), one of which holds the IPTC record
  std::string comment;  // text
  Resolution resolution;
};

// Leaves the profile alone, without which colors would look different.
void StripMetadata(Metadata* metadata);

// Whether the profile describes pixels of this many channels (a fourth one is alpha).
bool ProfileFits(const Blob& profile, uint32_t channels);

// A number of pixels an inch that went through whole pixels a metre is whole again.
double CleanResolution(double per_inch);

// The resource blocks that hold a bare IPTC record, and the record in such blocks (empty without).
Blob WrapIptcRecord(const uint8_t* record, size_t bytes);
Blob FindIptcRecord(const Blob& resources);

}  // namespace ovra_host
