// SPDX-License-Identifier: MIT
#include "filter/yusm_kernels.h"

namespace ovra {
namespace {

constexpr int32_t kWeightBits = 7;  // weights are meant to sum to 128
constexpr int32_t kMaxLuminance = 1023;
constexpr int32_t kNoDifference = 1024;  // the entry of the correction table at difference 0

// Products and sums wrap at 32 bits.
uint32_t Product(int32_t a, int32_t b) {
  return static_cast<uint32_t>(a) * static_cast<uint32_t>(b);
}

void BlurAlongGeneral(const int16_t* samples, int16_t* filtered, std::ptrdiff_t columns,
                      const int16_t* weights, int32_t taps) {
  for (std::ptrdiff_t x = 0; x < columns; ++x) {
    uint32_t sum = 0;
    for (int32_t k = 0; k < taps; ++k) sum += Product(weights[k], samples[x + k]);
    filtered[x] = static_cast<int16_t>(static_cast<int32_t>(sum) >> kWeightBits);
  }
}

// The weights 32, 64, 32, from the leftmost sample on.
int32_t ThreeTaps(const int16_t* samples) {
  return (samples[0] + 2 * samples[1] + samples[2]) >> 2;
}

void BlurAlongThreeTaps(const int16_t* samples, int16_t* filtered, std::ptrdiff_t columns,
                        const int16_t* /*weights*/, int32_t /*taps*/) {
  for (std::ptrdiff_t x = 0; x < columns; ++x) {
    filtered[x] = static_cast<int16_t>(ThreeTaps(samples + x));
  }
}

// The mirrored samples make the first pass symmetric about the edges, as the second one needs it.
void BlurAlongFiveTaps(const int16_t* samples, int16_t* filtered, std::ptrdiff_t columns,
                       const int16_t* /*weights*/, int32_t /*taps*/) {
  for (std::ptrdiff_t x = 0; x < columns; ++x) {
    const int32_t left = ThreeTaps(samples + x);
    const int32_t middle = ThreeTaps(samples + x + 1);
    const int32_t right = ThreeTaps(samples + x + 2);
    filtered[x] = static_cast<int16_t>((left + 2 * middle + right) >> 2);
  }
}

void BlurAcrossGeneral(const int16_t* const* rows, int16_t* blurred, std::ptrdiff_t columns,
                       const int16_t* weights, int32_t taps) {
  for (std::ptrdiff_t x = 0; x < columns; ++x) {
    uint32_t wrapped_sum = 0;
    for (int32_t k = 0; k < taps; ++k) wrapped_sum += Product(weights[k], rows[k][x]);
    const auto sum = static_cast<int32_t>(wrapped_sum);
    const bool is_beyond = sum >= kMaxLuminance << kWeightBits;
    blurred[x] = static_cast<int16_t>(sum < 0 ? 0 : is_beyond ? kMaxLuminance : sum >> kWeightBits);
  }
}

// With these two sets nothing leaves 0..1023.
void BlurAcrossThreeTaps(const int16_t* const* rows, int16_t* blurred, std::ptrdiff_t columns,
                         const int16_t* /*weights*/, int32_t /*taps*/) {
  for (std::ptrdiff_t x = 0; x < columns; ++x) {
    blurred[x] = static_cast<int16_t>((rows[0][x] + 2 * rows[1][x] + rows[2][x]) >> 2);
  }
}

void BlurAcrossFiveTaps(const int16_t* const* rows, int16_t* blurred, std::ptrdiff_t columns,
                        const int16_t* /*weights*/, int32_t /*taps*/) {
  for (std::ptrdiff_t x = 0; x < columns; ++x) {
    const int32_t inner = 6 * rows[2][x] + 4 * (rows[1][x] + rows[3][x]);
    blurred[x] = static_cast<int16_t>((inner + rows[0][x] + rows[4][x]) >> 4);
  }
}

void FindDeltas(const int16_t* luminance, const int16_t* blurred, int16_t* deltas,
                std::ptrdiff_t columns, const YUsmTables& tables) {
  for (std::ptrdiff_t x = 0; x < columns; ++x) {
    const int32_t correction = tables.correction[luminance[x] - blurred[x] + kNoDifference];
    const auto product = static_cast<int32_t>(Product(correction, tables.level[luminance[x]]));
    deltas[x] = static_cast<int16_t>(product >> tables.shift);
  }
}

}  // namespace

YUsmKernels YUsmKernelsPlain(YUsmBlur blur) {
  switch (blur) {
    case YUsmBlur::kThreeTaps:
      return {BlurAlongThreeTaps, BlurAcrossThreeTaps, FindDeltas};
    case YUsmBlur::kFiveTaps:
      return {BlurAlongFiveTaps, BlurAcrossFiveTaps, FindDeltas};
    default:
      return {BlurAlongGeneral, BlurAcrossGeneral, FindDeltas};
  }
}

}  // namespace ovra
