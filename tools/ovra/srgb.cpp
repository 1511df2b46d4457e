// SPDX-License-Identifier: MIT
#include "srgb.h"

#include <lcms2.h>

#include "error.h"

namespace ovra_host {
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

}  // namespace

struct SrgbConversion::Transform {
  explicit Transform(cmsHTRANSFORM made) : handle(made) {}
  ~Transform() {
    if (handle != nullptr) cmsDeleteTransform(handle);
  }
  Transform(const Transform&) = delete;
  Transform& operator=(const Transform&) = delete;

  cmsHTRANSFORM handle;
};

SrgbConversion::SrgbConversion(const Blob& profile, OvraPixelFormatCode format)
    : profile_(profile) {
  if (profile.empty()) return;
  const uint32_t channels = (format >> 4 & 15) + 1;
  if (!ProfileFits(profile, channels))
    throw Error("--to-srgb: its profile is not one for its channels");
  const Profile from(
      cmsOpenProfileFromMem(profile.data(), static_cast<cmsUInt32Number>(profile.size())));
  const Profile to = MakeSrgb(channels == 1);
  const cmsUInt32Number type = PixelType(format);
  if (from && to) {
    transform_ = std::make_unique<Transform>(
        cmsCreateTransform(from.get(), type, to.get(), type, INTENT_RELATIVE_COLORIMETRIC,
                           cmsFLAGS_BLACKPOINTCOMPENSATION | cmsFLAGS_COPY_ALPHA));
  }
  if (!transform_ || transform_->handle == nullptr) {
    throw Error("--to-srgb: its colour profile is damaged");
  }
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

}  // namespace ovra_host
