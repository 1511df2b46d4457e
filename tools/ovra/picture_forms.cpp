// SPDX-License-Identifier: MIT
#include "picture_forms.h"

#include <algorithm>

namespace ovra_host {
namespace {

// Calls `use` with the rows of both, as samples of their own size.
template <class From, class To, class Use>
void ForRowsOf(const Image& from, Image* to, const Use& use) {
  for (int32_t y = 0; y < from.height(); ++y) {
    use(reinterpret_cast<const From*>(from.Row(y)), reinterpret_cast<To*>(to->Row(y)));
  }
}

template <class From, class To>
void ConvertSamples(const uint8_t* from, uint32_t from_bits, uint8_t* to, uint32_t to_bits,
                    size_t samples) {
  const auto* const in = reinterpret_cast<const From*>(from);
  auto* const out = reinterpret_cast<To*>(to);
  const uint64_t from_max = (1U << from_bits) - 1;
  const uint64_t to_max = (1U << to_bits) - 1;
  for (size_t i = 0; i < samples; ++i) {
    out[i] = static_cast<To>((in[i] * to_max + from_max / 2) / from_max);
  }
}

}  // namespace

Image OnThreeChannels(const Image& source, GreyBecomes grey, const ImageOperation& operation) {
  constexpr uint32_t kColors = 3;
  if (source.channels() == kColors) return operation(source);
  const uint32_t depth = source.depth_bits();
  const bool is_grey = source.channels() == 1;
  Image color(source.width(), source.height(), FileFormat(depth, kColors));
  for (uint32_t c = 0; c < kColors; ++c) CopyChannel(source, is_grey ? 0 : c, &color, c);
  Image worked = operation(color);
  if (is_grey && grey == GreyBecomes::kColor) return worked;
  Image result = source;  // with its alpha
  for (uint32_t c = 0; c < std::min(kColors, source.channels()); ++c) {
    CopyChannel(worked, c, &result, c);
  }
  return result;
}

void CopyChannel(const Image& from, uint32_t from_channel, Image* to, uint32_t to_channel) {
  const auto copy = [&](const auto* in, auto* out) {
    for (int32_t x = 0; x < from.width(); ++x) {
      out[static_cast<size_t>(x) * to->channels() + to_channel] =
          in[static_cast<size_t>(x) * from.channels() + from_channel];
    }
  };
  if (from.bytes_per_sample() == 1) {
    ForRowsOf<uint8_t, uint8_t>(from, to, copy);
  } else {
    ForRowsOf<uint16_t, uint16_t>(from, to, copy);
  }
}

Image OnEightBits(const Image& source, const ImageOperation& operation) {
  if (source.depth_bits() == 8) return operation(source);
  const Image before = WithDepth(source, 8);
  const Image after = operation(before);
  Image result = source;
  const auto max = static_cast<int32_t>(source.max_sample());
  const int32_t step = max / UINT8_MAX;
  for (int32_t y = 0; y < source.height(); ++y) {
    for (size_t i = 0; i < before.row_bytes(); ++i) {
      const int32_t change = (after.Row(y)[i] - before.Row(y)[i]) * step;
      uint16_t& sample = result.Row16(y)[i];
      sample = static_cast<uint16_t>(std::clamp(sample + change, 0, max));
    }
  }
  return result;
}

Image WithDepth(const Image& source, uint32_t depth_bits) {
  Image result(source.width(), source.height(), FileFormat(depth_bits, source.channels()));
  const size_t samples = result.row_bytes() / result.bytes_per_sample();
  for (int32_t y = 0; y < source.height(); ++y) {
    ConvertDepth(source.Row(y), source.depth_bits(), result.Row(y), depth_bits, samples);
  }
  return result;
}

void ConvertDepth(const uint8_t* from, uint32_t from_bits, uint8_t* to, uint32_t to_bits,
                  size_t samples) {
  if (from_bits == 8 && to_bits == 8) {
    std::copy_n(from, samples, to);
  } else if (from_bits == 8) {
    ConvertSamples<uint8_t, uint16_t>(from, from_bits, to, to_bits, samples);
  } else if (to_bits == 8) {
    ConvertSamples<uint16_t, uint8_t>(from, from_bits, to, to_bits, samples);
  } else {
    ConvertSamples<uint16_t, uint16_t>(from, from_bits, to, to_bits, samples);
  }
}

}  // namespace ovra_host
