// SPDX-License-Identifier: MIT
// libvips runs pipelines of tiles: from the picture's memory to memory of its own.
#include <vips/vips.h>

#include <cmath>
#include <cstring>

#include "ovra/geometry.h"
#include "work.h"

namespace compare {
namespace {

struct Unref {
  void operator()(VipsImage* image) const { g_object_unref(image); }
};
using Image = std::unique_ptr<VipsImage, Unref>;

VipsBandFormat BandFormat(int depth_bits) {
  return depth_bits == 8 ? VIPS_FORMAT_UCHAR : VIPS_FORMAT_USHORT;
}

Image Wrap(const Picture& picture) {
  VipsImage* const image =
      vips_image_new_from_memory(picture.data(), picture.bytes(), picture.width(), picture.height(),
                                 picture.channels(), BandFormat(picture.depth_bits()));
  image->Type = picture.channels() == 1       ? VIPS_INTERPRETATION_B_W
                : picture.sample_bytes() == 1 ? VIPS_INTERPRETATION_sRGB
                                              : VIPS_INTERPRETATION_RGB16;
  return Image(image);
}

// An operation of libvips: 0 and a new image in *out, or not.
using Pipe = int(const Work& work, VipsImage* in, VipsImage** out);

Maker Pipeline(const char* operation, const char* name, Pipe* pipe, Takes* takes = nullptr) {
  return {operation, [=](const Work& work) {
            if (takes != nullptr && !takes(work)) return Participant{};
            Participant participant = NewParticipant(work, name);
            const auto made =
                std::make_shared<std::unique_ptr<void, decltype(&g_free)>>(nullptr, g_free);
            participant.run = [=, target_bytes = participant.result->bytes()] {
              const Image in = Wrap(*work.source);
              VipsImage* out = nullptr;
              if (pipe(work, in.get(), &out) != 0) return;
              const Image owned(out);
              size_t bytes = 0;
              made->reset();
              made->reset(vips_image_write_to_memory(out, &bytes));
              if (bytes != target_bytes) made->reset();
            };
            participant.finish = [=, target = participant.result.get()] {
              if (*made != nullptr) memcpy(target->data(), made->get(), target->bytes());
            };
            return participant;
          }};
}

int Resize(const Work& work, VipsImage* in, VipsImage** out) {
  return vips_resize(in, out, work.amount, "kernel", VIPS_KERNEL_CUBIC, nullptr);
}

int Turn(const Work& work, VipsImage* in, VipsImage** out) {
  switch (work.mode) {
    case OVRA_ROTATE_QUARTER_LEFT:
      return vips_rot(in, out, VIPS_ANGLE_D270, nullptr);
    case OVRA_ROTATE_HALF:
      return vips_rot(in, out, VIPS_ANGLE_D180, nullptr);
    case OVRA_ROTATE_QUARTER_RIGHT:
      return vips_rot(in, out, VIPS_ANGLE_D90, nullptr);
    case OVRA_ROTATE_MIRROR:
      return vips_flip(in, out, VIPS_DIRECTION_HORIZONTAL, nullptr);
    default:
      return vips_flip(in, out, VIPS_DIRECTION_VERTICAL, nullptr);
  }
}

int Canvas(const Work& work, VipsImage* in, VipsImage** out) {
  return vips_embed(in, out, work.x, work.y, work.target_size.width, work.target_size.height,
                    "extend", VIPS_EXTEND_BLACK, nullptr);
}

int Sharpen(const Work&, VipsImage* in, VipsImage** out) {
  return vips_sharpen(in, out, "sigma", 1.0, "m1", 0.5, "m2", 0.5, nullptr);
}

int Tables(const Work& work, VipsImage* in, VipsImage** out) {
  const size_t entries = work.color->tables[0].size();
  std::vector<uint16_t> table;
  for (size_t i = 0; i < entries; ++i) {
    for (int c = 0; c < 3; ++c) table.push_back(work.color->tables[c][i]);
  }
  std::vector<uint8_t> bytes(table.begin(), table.end());
  const bool narrow = work.target_depth_bits == 8;
  const Image table_image(vips_image_new_from_memory_copy(
      narrow ? static_cast<const void*>(bytes.data()) : table.data(),
      narrow ? bytes.size() : 2 * table.size(), static_cast<int>(entries), 1, 3,
      BandFormat(work.target_depth_bits)));
  return vips_maplut(in, out, table_image.get(), nullptr);
}

// The constant is left out.
int Matrix(const Work& work, VipsImage* in, VipsImage** out) {
  const auto& rows = work.color->matrix.rows;
  const Image weights(vips_image_new_matrix(3, 3));
  for (int k = 0; k < 3; ++k) {
    for (int j = 0; j < 3; ++j) *VIPS_MATRIX(weights.get(), j, k) = rows[k][j];
  }
  VipsImage* floats = nullptr;
  if (vips_recomb(in, &floats, weights.get(), nullptr) != 0) return -1;
  const Image owned(floats);
  return vips_cast(floats, out, BandFormat(work.target_depth_bits), nullptr);
}

// Corners that the source does not reach stay black here.
int Trim(const Work& work, VipsImage* in, VipsImage** out) {
  constexpr double kDegree = 3.14159265358979323846 / 180;
  const double cosine = std::cos(work.amount * kDegree);
  const double sine = std::sin(work.amount * kDegree);
  const double x = 0.5 * (in->Xsize - 1);
  const double y = 0.5 * (in->Ysize - 1);
  VipsInterpolate* const bicubic = vips_interpolate_new("bicubic");
  VipsArrayInt* const area =
      vips_array_int_newv(4, 0, 0, work.target_size.width, work.target_size.height);
  const int status =
      vips_affine(in, out, cosine, sine, -sine, cosine, "interpolate", bicubic, "oarea", area,
                  "idx", -x, "idy", -y, "odx", x, "ody", y, "extend", VIPS_EXTEND_COPY, nullptr);
  g_object_unref(bicubic);
  vips_area_unref(VIPS_AREA(area));
  return status;
}

int Over(const Work& work, VipsImage* in, VipsImage** out) {
  const Image background = Wrap(*work.background);
  VipsImage* composed = nullptr;
  if (vips_composite2(background.get(), in, &composed, VIPS_BLEND_MODE_OVER, "x", work.x, "y",
                      work.y, nullptr) != 0) {
    return -1;
  }
  const Image owned(composed);
  return vips_extract_band(composed, out, 0, "n", 3, nullptr);
}

}  // namespace

void AddVips(std::vector<Maker>* makers) {
  if (vips_init("ovra_compare") != 0) return;
  vips_concurrency_set(1);
  vips_cache_set_max(0);  // results are not to be remembered
  makers->insert(
      makers->end(),
      {Pipeline("resize", "libvips", Resize),
       Pipeline("turn", "libvips", Turn,
                [](const Work& work) { return work.mode != OVRA_ROTATE_TRANSPOSE; }),
       Pipeline("trimming", "libvips affine, bicubic", Trim),
       Pipeline("alpha", "libvips composite", Over), Pipeline("canvas", "libvips embed", Canvas),
       Pipeline("luminance mask", "libvips sharpen", Sharpen,
                [](const Work& work) { return work.source->depth_bits() == 8; }),
       Pipeline("tables", "libvips maplut", Tables), Pipeline("matrix", "libvips recomb", Matrix)});
}

}  // namespace compare
