// SPDX-License-Identifier: MIT
// Colours of a picture's own profile brought to sRGB.
#pragma once

#include <memory>
#include <string>

#include "image_io.h"

namespace ovra_host {

struct ColorTransform;

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
  std::unique_ptr<ColorTransform> transform_;
  Blob profile_;
};

void ConvertToSrgb(Picture* picture);

// Converts rows of four inks, 8 bits each, to sRGB.
class CmykConversion {
 public:
  // Without a profile of inks the colours are those of ideal ones: light passes each in turn. Throws
  // Error when the profile is damaged.
  CmykConversion(const Blob& profile, bool no_ink_is_255);
  ~CmykConversion();

  void ConvertRow(const uint8_t* inks, uint8_t* rgb, int32_t pixels) const;

  // What the user should know.
  std::string note() const;

  // The profile of converted rows; empty where there was none.
  const Blob& profile() const { return profile_; }

 private:
  std::unique_ptr<ColorTransform> transform_;
  bool no_ink_is_255_;
  Blob profile_;
};

}  // namespace ovra_host
