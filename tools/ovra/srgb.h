// SPDX-License-Identifier: MIT
// Colours of a picture's own profile brought to sRGB.
#pragma once

#include <memory>

#include "image_io.h"

namespace ovra_host {

// Converts rows of one format. Made once a picture; rows may have any length.
class SrgbConversion {
 public:
  // Throws Error when the profile cannot be used for the format. Without a profile, rows stay.
  SrgbConversion(const Blob& profile, OvraPixelFormatCode format);
  ~SrgbConversion();

  void ConvertRow(uint8_t* row, int32_t pixels) const;

  // The profile of converted rows; the given one where they stay.
  const Blob& profile() const { return profile_; }

 private:
  struct Transform;
  std::unique_ptr<Transform> transform_;
  Blob profile_;
};

void ConvertToSrgb(Picture* picture);

}  // namespace ovra_host
