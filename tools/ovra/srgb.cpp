// SPDX-License-Identifier: MIT
#include "srgb.h"

#include <lcms2.h>

#include "error.h"

namespace ovra_host {

struct ColorTransform {
  explicit ColorTransform(cmsHTRANSFORM made) : handle(made) {}
  ~ColorTransform() {
    if (handle != nullptr) cmsDeleteTransform(handle);
  }
  ColorTransform(const ColorTransform&) = delete;
  ColorTransform& operator=(const ColorTransform&) = delete;

  cmsHTRANSFORM handle;
};

namespace {

struct ProfileCloser {
  void operator()(void* profile) const { cmsCloseProfile(profile); }
};
using Profile = std::unique_ptr<void, ProfileCloser>;

// sRGB, or grey with its tone curve.
Profile MakeSrgb(bool grey) {
  Profile srgb(cmsCreate_sRGBProfile());
  if (!grey || !srgb) return srgb;
  const auto* const curve =
      static_cast<const cmsToneCurve*>(cmsReadTag(srgb.get(), cmsSigGreenTRCTag));
  return Profile(cmsCreateGrayProfile(cmsD50_xyY(), curve));
}

cmsUInt32Number PixelType(OvraPixelFormatCode format) {
  const uint32_t channels = (format >> 4 & 15) + 1;
  const uint32_t bytes = (format & 15) > 0 ? 2 : 1;
  const uint32_t colors = channels == 1 ? 1 : 3;
  return COLORSPACE_SH(channels == 1 ? PT_GRAY : PT_RGB) | CHANNELS_SH(colors) |
         EXTRA_SH(channels - colors) | BYTES_SH(bytes);
}

Blob Save(cmsHPROFILE profile) {
  cmsUInt32Number bytes = 0;
  if (!cmsSaveProfileToMem(profile, nullptr, &bytes)) return {};
  Blob blob(bytes);
  return cmsSaveProfileToMem(profile, blob.data(), &bytes) ? blob : Blob();
}

Profile Open(const Blob& profile) {
  return Profile(
      cmsOpenProfileFromMem(profile.data(), static_cast<cmsUInt32Number>(profile.size())));
}

// Null where the profiles are not for these pixels.
std::unique_ptr<ColorTransform> MakeTransform(const Profile& from, cmsUInt32Number from_type,
                                              const Profile& to, cmsUInt32Number to_type) {
  if (!from || !to) return nullptr;
  auto transform = std::make_unique<ColorTransform>(
      cmsCreateTransform(from.get(), from_type, to.get(), to_type, INTENT_RELATIVE_COLORIMETRIC,
                         cmsFLAGS_BLACKPOINTCOMPENSATION | cmsFLAGS_COPY_ALPHA));
  return transform->handle == nullptr ? nullptr : std::move(transform);
}

}  // namespace

SrgbConversion::SrgbConversion(const Blob& profile, OvraPixelFormatCode format)
    : profile_(profile) {
  if (profile.empty()) return;
  const uint32_t channels = (format >> 4 & 15) + 1;
  if (!ProfileFits(profile, channels))
    throw Error("--to-srgb: its profile is not one for its channels");
  const Profile to = MakeSrgb(channels == 1);
  const cmsUInt32Number type = PixelType(format);
  transform_ = MakeTransform(Open(profile), type, to, type);
  if (!transform_) throw Error("--to-srgb: its colour profile is damaged");
  profile_ = Save(to.get());
}

SrgbConversion::~SrgbConversion() = default;

void SrgbConversion::ConvertRow(uint8_t* row, int32_t pixels) const {
  if (transform_)
    cmsDoTransform(transform_->handle, row, row, static_cast<cmsUInt32Number>(pixels));
}

void ConvertToSrgb(Picture* picture) {
  Image& image = picture->image;
  const SrgbConversion conversion(picture->metadata.profile, image.format());
  for (int32_t y = 0; y < image.height(); ++y) conversion.ConvertRow(image.Row(y), image.width());
  picture->metadata.profile = conversion.profile();
}

CmykConversion::CmykConversion(const Blob& profile, bool no_ink_is_255)
    : no_ink_is_255_(no_ink_is_255) {
  if (profile.empty()) return;
  const Profile to = MakeSrgb(false);
  transform_ =
      MakeTransform(Open(profile), no_ink_is_255 ? TYPE_CMYK_8_REV : TYPE_CMYK_8, to, TYPE_RGB_8);
  if (!transform_) throw Error("its colour profile is damaged, or not one of CMYK");
  profile_ = Save(to.get());
}

CmykConversion::~CmykConversion() = default;

std::string CmykConversion::note() const {
  return transform_ ? "is CMYK; its colors are made sRGB by its profile"
                    : "is CMYK without a profile; its colors are made RGB as if inks were ideal";
}

void CmykConversion::ConvertRow(const uint8_t* inks, uint8_t* rgb, int32_t pixels) const {
  if (transform_) {
    cmsDoTransform(transform_->handle, inks, rgb, static_cast<cmsUInt32Number>(pixels));
    return;
  }
  const int flip = no_ink_is_255_ ? 0 : UINT8_MAX;
  for (int32_t x = 0; x < pixels; ++x, inks += 4, rgb += 3) {
    const int key = inks[3] ^ flip;  // the share of light that passes
    for (size_t c = 0; c < 3; ++c) {
      rgb[c] = static_cast<uint8_t>(((inks[c] ^ flip) * key + UINT8_MAX / 2) / UINT8_MAX);
    }
  }
}

}  // namespace ovra_host
