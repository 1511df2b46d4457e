// SPDX-License-Identifier: MIT
// Per-channel tables, polynomials and colour matrices.
#include <algorithm>

#include "color/channel_tables/channel_tables.h"
#include "color/color_matrix/color_matrix.h"
#include "fuzz_support.h"

namespace {

using ovra::KernelTier;

// A three-channel format, sometimes an arbitrary word.
ovra::PixelFormatCode TakeFormat(FuzzedDataProvider& input) {
  if (input.ConsumeIntegralInRange<int>(0, 15) == 0) return input.ConsumeIntegral<uint32_t>();
  const auto model = static_cast<OvraColorModel>(input.ConsumeIntegralInRange<int>(1, 3) << 8);
  return OvraMakePixelFormat(input.ConsumeIntegralInRange<uint32_t>(8, 16), 3, model,
                             1U << input.ConsumeIntegralInRange<int>(0, 2), OVRA_ROWS_TOP_DOWN);
}

// Any bits at all, or a number of everyday size.
double TakeNumber(FuzzedDataProvider& input) {
  if (input.ConsumeBool()) return input.ConsumeFloatingPointInRange<double>(-70, 70);
  const auto bits = input.ConsumeIntegral<uint64_t>();
  double number;
  std::memcpy(&number, &bits, sizeof number);
  return number;
}

struct Arguments {
  ovra::FormatPair formats;
  int32_t width;
  int32_t height;

  size_t RowBytes(ovra::PixelFormatCode format) const {
    const size_t packed = static_cast<size_t>(width) * ((format & 15) == 0 ? 3 : 6);
    const size_t alignment = size_t{1} << (formats.input >> 20 & 3);
    return (packed + alignment - 1) / alignment * alignment;
  }
  // As large as accepted formats need it. Refused ones touch nothing.
  size_t ImageBytes(ovra::PixelFormatCode format) const {
    return width <= 0 || height <= 0 ? 0 : RowBytes(format) * static_cast<size_t>(height);
  }
};

// `convert` runs the operation for (images, tier).
template <class Convert>
void Compare(FuzzedDataProvider& input, const Arguments& arguments, KernelTier tier,
             const Convert& convert) {
  const std::vector<uint8_t> source =
      ovra_fuzz::TakeImage(input, arguments.ImageBytes(arguments.formats.input) + 2);
  std::vector<uint8_t> actual(arguments.ImageBytes(arguments.formats.output) + 2, 1);
  std::vector<uint8_t> expected = actual;
  const auto run = [&](std::vector<uint8_t>& destination, KernelTier with) {
    // Two bytes stand before the image, so that its last byte ends the buffer.
    return convert(ovra::ImagePair{source.data() + 2, destination.data() + 2, arguments.width,
                                   arguments.height},
                   with);
  };
  if (run(actual, tier) != run(expected, KernelTier::kPlain)) std::abort();
  ovra_fuzz::RequireEqual(actual, expected);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  FuzzedDataProvider input(data, size);
  const KernelTier tier = ovra_fuzz::TakeTier(input);
  const Arguments arguments = {{TakeFormat(input), TakeFormat(input)},
                               input.ConsumeIntegralInRange<int32_t>(-1, 200),
                               input.ConsumeIntegralInRange<int32_t>(-1, 4)};
  if (input.ConsumeBool()) {
    ovra::ChannelPolynomial coefficients[3];
    for (auto& polynomial : coefficients) {
      polynomial = {TakeNumber(input), TakeNumber(input), TakeNumber(input), 0};
    }
    Compare(input, arguments, tier, [&](const ovra::ImagePair& images, KernelTier with) {
      return ovra::ConvertByChannelTablesOnce(images, arguments.formats, coefficients, with);
    });
  } else {
    ovra::ColorMatrix matrix = {};
    const int terms = input.ConsumeBool() ? 10 : 4;
    for (auto& row : matrix.rows) {
      for (int t = 0; t < terms; ++t) row[t] = TakeNumber(input);
    }
    Compare(input, arguments, tier, [&](const ovra::ImagePair& images, KernelTier with) {
      return ovra::ConvertByColorMatrixOnce(images, arguments.formats, &matrix, with);
    });
  }
  return 0;
}
