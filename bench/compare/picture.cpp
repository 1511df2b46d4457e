// SPDX-License-Identifier: MIT
#include <algorithm>
#include <cmath>
#include <deque>

#include "compare.h"

namespace compare {
namespace {

constexpr size_t kCacheLine = 64;

template <class Sample>
void Draw(Picture* picture, Sample* samples) {
  const auto width = static_cast<size_t>(picture->width());
  const int channels = picture->channels();
  // sin(5u + 3v) cos(4v - 2u) and the texture, taken apart into factors of the column and the row.
  std::vector<double> columns(5 * width);
  for (size_t x = 0; x < width; ++x) {
    const double u = static_cast<double>(x) / picture->width();
    const double parts[] = {std::sin(5 * u), std::cos(5 * u), std::sin(2 * u), std::cos(2 * u),
                            std::sin(0.35 * static_cast<double>(x))};
    std::copy(parts, parts + 5, &columns[5 * x]);
  }
  uint32_t noise = 1;
  for (int y = 0; y < picture->height(); ++y) {
    const double v = static_cast<double>(y) / picture->height();
    const double sin3 = std::sin(3 * v);
    const double cos3 = std::cos(3 * v);
    const double sin4 = std::sin(4 * v);
    const double cos4 = std::cos(4 * v);
    const double texture_row = 0.05 * std::sin(0.29 * y);
    for (size_t x = 0; x < width; ++x) {
      const double* const c = &columns[5 * x];
      const double place = 7.0 * static_cast<double>(x) / picture->width() + 4 * v;
      const double edge = place - static_cast<int>(place) < 0.5 ? 0.1 : -0.1;
      const double hill = 0.5 + 0.3 * (c[0] * cos3 + c[1] * sin3) * (cos4 * c[3] + sin4 * c[2]) +
                          c[4] * texture_row;
      for (int k = 0; k < channels; ++k) {
        noise = noise * 1664525u + 1013904223u;
        const double grain = (static_cast<double>(noise >> 16) / 65536 - 0.5) * 0.02;
        const double tone = hill + (k == 1 ? edge : -0.5 * edge) + grain + 0.05 * k;
        *samples++ = static_cast<Sample>(std::clamp(tone, 0.0, 1.0) * picture->max() + 0.5);
      }
    }
  }
}

}  // namespace

std::string Size::Name() const {
  if (width * 2 != height * 3) return std::to_string(width) + " x " + std::to_string(height);
  const double megapixels = Pixels() * 1e-6;
  char text[32];
  snprintf(text, sizeof text, megapixels < 0.95 ? "%.1f MP" : "%.0f MP", megapixels);
  return text;
}

Size SizeOf(double megapixels) {
  constexpr int kUnit = 48;  // so that all sizes that are made of it are whole
  const int width = static_cast<int>(std::sqrt(1.5e6 * megapixels) / kUnit + 0.5) * kUnit;
  return {width, width * 2 / 3};
}

Picture::Picture(Size size, int channels, int depth_bits, size_t row_alignment)
    : size_(size), channels_(channels), depth_bits_(depth_bits) {
  stride_ = (row_bytes() + row_alignment - 1) / row_alignment * row_alignment;
  block_.resize(bytes() + 2 * kCacheLine);
  const auto address = reinterpret_cast<uintptr_t>(block_.data());
  data_ = block_.data() + (kCacheLine - address % kCacheLine) % kCacheLine;
}

OvraPixelFormatCode Picture::format() const {
  const OvraColorModel model = channels_ == 1   ? OVRA_MODEL_GREY
                               : channels_ == 3 ? OVRA_MODEL_RGB
                                                : OVRA_MODEL_RGBA;
  return OvraMakePixelFormat(static_cast<uint32_t>(depth_bits_), static_cast<uint32_t>(channels_),
                             model, 1, OVRA_ROWS_TOP_DOWN);
}

PicturePtr Scene(Size size, int channels, int depth_bits) {
  constexpr size_t kKept = 6;
  static std::deque<PicturePtr> kept;
  for (const PicturePtr& scene : kept) {
    if (scene->width() == size.width && scene->height() == size.height &&
        scene->channels() == channels && scene->depth_bits() == depth_bits) {
      return scene;
    }
  }
  auto scene = std::make_shared<Picture>(size, channels, depth_bits);
  if (scene->sample_bytes() == 1) {
    Draw(scene.get(), scene->data());
  } else {
    Draw(scene.get(), scene->words());
  }
  kept.push_back(scene);
  if (kept.size() > kKept) kept.pop_front();
  return scene;
}

}  // namespace compare
