// SPDX-License-Identifier: MIT
// Images beyond 2 and 4 GiB by real calls. One block of memory stands again and again in the address
// space, as the tiles of an image that repeats itself from top to bottom; so does the destination.
// What an operation leaves in the one block is compared with a small image of a few tiles. Prints how
// many cases and calls there were, and answers 1 where one was wrong.
#include <sys/mman.h>
#include <sys/resource.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <functional>
#include <limits>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include "ovra/ovra.h"
#include "support/failing_malloc.h"
#include "support/tone_forms.h"

namespace {

// 4096 pixels of 3 bytes, or 2048 of 6; a tile is whole pages, and begins in the grid of any pyramid.
constexpr int32_t kTileRows = 64;
constexpr size_t kRowBytes = size_t{12} << 10;
constexpr size_t kTileBytes = kRowBytes * kTileRows;

// A block of memory `tiles` times in a row. The pages behind it cannot be touched.
class Tiles {
 public:
  explicit Tiles(size_t tiles) : bytes_(tiles * kTileBytes) {
    const int file = memfd_create("tile", 0);
    void* const room = mmap(nullptr, bytes_ + kTileBytes, PROT_NONE,
                            MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
    if (file < 0 || ftruncate(file, kTileBytes) != 0 || room == MAP_FAILED) std::abort();
    data_ = static_cast<uint8_t*>(room);
    for (size_t at = 0; at < bytes_; at += kTileBytes) {
      if (mmap(data_ + at, kTileBytes, PROT_READ | PROT_WRITE,
               MAP_SHARED | MAP_FIXED | MAP_POPULATE, file, 0) == MAP_FAILED) {
        std::abort();
      }
    }
    close(file);
  }
  ~Tiles() { munmap(data_, bytes_ + kTileBytes); }
  Tiles(const Tiles&) = delete;
  Tiles& operator=(const Tiles&) = delete;

  uint8_t* data() { return data_; }

 private:
  uint8_t* data_;
  size_t bytes_;
};

struct Image {
  const uint8_t* source;
  uint8_t* destination;
  int32_t width;
  int32_t height;
  OvraPixelFormatCode format;

  uint32_t Width() const { return static_cast<uint32_t>(width); }
  uint32_t Height() const { return static_cast<uint32_t>(height); }
};

using Operation = std::function<OvraStatus(const Image&)>;

constexpr int32_t kMost = std::numeric_limits<int32_t>::max();
constexpr int32_t kLeast = std::numeric_limits<int32_t>::min();

struct Case {
  const char* name;
  OvraPixelFormatCode format;
  Operation call;
  int32_t tallest = 10'000'000;  // rows of one pixel that take it seconds
};

constexpr OvraPixelFormatCode kRgb = 0x120;
constexpr OvraPixelFormatCode kRgb12 = 0x124;

int cases = 0;
int calls = 0;
int failures = 0;

void Expect(bool holds, const Case& c, const std::string& what) {
  ++cases;
  if (holds) return;
  std::printf("FAILED: %s: %s\n", c.name, what.c_str());
  ++failures;
}

size_t PixelBytes(OvraPixelFormatCode format) {
  return format == kRgb ? 3 : 6;
}

int32_t ColumnsOfARow(const Case& c) {
  return static_cast<int32_t>(kRowBytes / PixelBytes(c.format));
}

void FillTile(uint8_t* tile) {
  for (size_t i = 0; i < kTileBytes; ++i) {
    tile[i] = static_cast<uint8_t>((i % kRowBytes / 7 + i / kRowBytes * 5) & 15);
  }
}

// The block of the destination after an image of so many tiles.
std::vector<uint8_t> BlockAfter(const Case& c, int32_t tiles) {
  Tiles source(static_cast<size_t>(tiles));
  Tiles destination(static_cast<size_t>(tiles));
  FillTile(source.data());
  ++calls;
  const OvraStatus status =
      c.call({source.data(), destination.data(), ColumnsOfARow(c), tiles * kTileRows, c.format});
  Expect(status == OVRA_OK, c, "status " + std::to_string(status));
  return {destination.data(), destination.data() + kTileBytes};
}

// The last tile stays: it sees the same rows whatever the height is.
void CompareWithTiles(const Case& c) {
  constexpr int32_t kFew = 69;     // higher than wide, too: the shorter side scales soft focus
  constexpr int32_t kMany = 6005;  // 4.40 GiB; like kFew modulo 16
  Expect(BlockAfter(c, kMany) == BlockAfter(c, kFew), c, "another result than of few tiles");
}

// Thin images, which end at pages that cannot be touched, rows and columns that are too long, and
// sizes that are negative, or beyond 2^31 where they have no sign. Any status will do.
void TryThinOnes(const Case& c) {
  constexpr int32_t kLong = 60000;
  const struct {
    int32_t width, height;
  } sizes[] = {{kLong, 1},  {1, kLong},  {kMost, 1}, {1, c.tallest},
               {kLeast, 1}, {0, kLeast}, {kLeast, 0}};
  for (const auto& size : sizes) {
    const size_t pixel = c.format == kRgb ? 4 : 6;  // with the padding of a bitmap
    const auto pixels = [](int32_t side) { return size_t{static_cast<uint32_t>(side)}; };
    const size_t bytes = pixel * pixels(size.width) * pixels(size.height);
    const size_t tiles = bytes / kTileBytes + 1;
    Tiles source(tiles);
    Tiles destination(tiles);
    FillTile(source.data());
    const size_t before = tiles * kTileBytes - bytes;
    ++calls;
    const OvraStatus status = c.call(
        {source.data() + before, destination.data() + before, size.width, size.height, c.format});
    const bool is_given = status == OVRA_OK || OvraStatusText(status) != nullptr;
    Expect(is_given, c, std::to_string(size.width) + " x " + std::to_string(size.height));
  }
}

// A quarter turn cannot be laid over itself: its destination is memory, up to 4.4 GiB.
std::vector<uint8_t> Turned(const Case& c, int32_t divisor, int32_t tiles) {
  Tiles source(static_cast<size_t>(tiles));
  FillTile(source.data());
  std::vector<uint8_t> turned(static_cast<size_t>(tiles) * kTileBytes /
                              static_cast<size_t>(divisor * divisor));
  ++calls;
  const OvraStatus status =
      c.call({source.data(), turned.data(), ColumnsOfARow(c), tiles * kTileRows, c.format});
  Expect(status == OVRA_OK, c, "status " + std::to_string(status));
  return turned;
}

// Rows begin and end as those of an image of a few tiles, and repeat themselves in between.
void CompareTurned(const Case& c, int32_t divisor) {
  constexpr int32_t kFew = 21;
  constexpr int32_t kMany = 6001;  // like kFew modulo the period
  constexpr int32_t kPeriodTiles = 4;
  const std::vector<uint8_t> few = Turned(c, divisor, kFew);
  const std::vector<uint8_t> many = Turned(c, divisor, kMany);
  const auto rows = static_cast<size_t>(ColumnsOfARow(c) / divisor);
  const size_t short_row = few.size() / rows;
  const size_t long_row = many.size() / rows;
  const size_t period =
      PixelBytes(c.format) * size_t{kPeriodTiles * kTileRows} / static_cast<size_t>(divisor);
  bool is_right = true;
  for (size_t y = 0; y < rows; ++y) {
    const uint8_t* const expected = few.data() + y * short_row;
    const uint8_t* const row = many.data() + y * long_row;
    is_right = is_right && std::memcmp(row, expected, short_row / 2) == 0 &&
               std::memcmp(row + long_row - short_row / 2, expected + short_row - short_row / 2,
                           short_row / 2) == 0 &&
               std::memcmp(row + period, row + 2 * period, long_row - 3 * period) == 0;
  }
  Expect(is_right, c, "another result than of few tiles");
}

// The conversion with these arguments behind the format.
template <class Side, class... More>
Operation Converts(OvraStatus(OVRA_CALL* convert)(const uint8_t*, uint8_t*, Side, Side,
                                                  OvraPixelFormatCode, More...),
                   std::type_identity_t<More>... more) {
  return [=](const Image& i) {
    return convert(i.source, i.destination, static_cast<Side>(i.width), static_cast<Side>(i.height),
                   i.format, more...);
  };
}

int32_t Part(int32_t size, int32_t divisor) {
  return std::max(size / divisor, 1);
}

Operation Resizes(auto* resize, int32_t divisor, auto... more) {
  return [=](const Image& i) {
    return resize(i.source, i.width, i.height, i.destination, Part(i.width, divisor),
                  Part(i.height, divisor), i.format, more...);
  };
}

// All but the upper quarter.
Operation ResizesRegion(auto* resize, int32_t divisor, auto... more) {
  return [=](const Image& i) {
    return resize(i.source, i.width, i.height, i.destination, Part(i.width, divisor),
                  Part(i.height, divisor), i.format, 0, i.height / 4, i.width,
                  i.height - i.height / 4, more...);
  };
}

OvraStatus Enlarge(const Image& i) {
  return OvraResizeImageVAR(i.source, Part(i.width, 2), Part(i.height, 2), i.destination, i.width,
                            i.height, i.format, 2, 2);
}

Operation EnlargesTurned(int32_t mode) {
  return [mode](const Image& i) {
    const int32_t width = Part(i.width, 2);
    const int32_t height = Part(i.height, 2);
    return OvraResizeRotateImageROI(i.source, width, height, i.destination, i.height, i.width,
                                    i.format, 0, 0, width, height, mode);
  };
}

Operation ReducesTurned(int32_t divisor, int32_t mode) {
  return [=](const Image& i) {
    return OvraResizeRotateImageROI(i.source, i.width, i.height, i.destination,
                                    Part(i.height, divisor), Part(i.width, divisor), i.format, 0, 0,
                                    i.width, i.height, mode);
  };
}

// In two bands: a few rows, and all others.
Operation ResizesInBands(auto* init, int32_t divisor, auto... more) {
  return [=](const Image& i) {
    const int32_t width = Part(i.width, divisor);
    const int32_t height = Part(i.height, divisor);
    OvraBandResizeContext* context = nullptr;
    OvraStatus status = init(i.width, i.height, width, height, i.format, 0, 0, i.width, i.height,
                             more..., &context);
    int32_t first = 0;
    int32_t out = 0;
    for (int32_t rows = std::min(i.height, 5); status == OVRA_OK && rows > 0;
         rows = i.height - first) {
      int32_t taken = 0;
      int32_t written = 0;
      const auto at = [&](int32_t columns, int32_t row) {
        return PixelBytes(i.format) * static_cast<size_t>(columns) * static_cast<size_t>(row);
      };
      status = OvraBandResize(i.source + at(i.width, first), i.width, rows,
                              i.destination + at(width, out), width, height - out, i.format, first,
                              &taken, &written, context);
      first += taken;
      out += written;
    }
    OvraBandResize_Free(&context);
    return status;
  };
}

// A rectangle near the lower end.
Operation Trims(int32_t angle) {
  return [angle](const Image& i) {
    return OvraFreeTrimming(i.source, i.width, i.height, i.destination, 200, 200, i.format, 40,
                            i.height - 300, angle, nullptr);
  };
}

Operation Moves(auto* move) {
  return [move](const Image& i) {
    move(i.source, i.destination, i.Width(), i.Height());
    return OVRA_OK;
  };
}

// The blur is of 12 pixels, whatever the size.
OvraStatus SoftFocus(const Image& i) {
  const OvraSoftFocusParams params = {12 * 2503 / std::min(i.width, i.height), 1, 0.1, {}, 0.7};
  return OvraSoftFocus(i.source, i.destination, i.Width(), i.Height(), &params);
}

Operation Tones(size_t number) {
  return [&form = ovra_test::kToneForms[number]](const Image& i) {
    const OvraHyperToneParams params = {1.0F, 0.6F, 0.4F, 1.2F, 0.12F, 1.0F, 3, 0};
    void* context = nullptr;
    OvraStatus status = form.init_12(i.format, &params, nullptr, &context);
    if (status == OVRA_OK) {
      status = form.run(i.source, i.destination, i.Width(), i.Height(), i.format, context);
    }
    form.free(&context);
    return status;
  };
}

// The lower rows of a canvas that is a tile higher.
OvraStatus Extrapolate(const Image& i) {
  const uint16_t fill[] = {1, 2, 3};
  const int32_t above = std::min(i.height - 1, kTileRows);
  return OvraExtrapolateImage(i.source, i.Width(), i.Height() - static_cast<uint32_t>(above),
                              i.destination, i.Width(), i.Height(), i.format, 0, above, fill);
}

OvraStatus Composite(const Image& i) {
  return OvraCompositeImage(i.destination, i.width, i.height, i.format, i.source, i.width, i.height,
                            i.format, 3, 2, 0);
}

OvraStatus CompositeByMask(const Image& i) {
  return OvraCompositeImageWithMaskBlending(i.destination, i.width, i.height, i.source, i.source,
                                            i.width, i.height, i.format, 0, 0, 1);
}

const std::vector<int16_t> kEvenTable(OVRA_DIFFERENCE_TABLE_SIZE, 128);
const int16_t* const kEven = kEvenTable.data();
const int32_t kBlur[] = {32, 64, 32};
const OvraMultiFrequencyParams kBands = {
    3, 1.0F, 0.5F, 0, {{2, 0, 0, 1}, {2, 0, 0, 1}, {2, 0, 0, 1}}};
const std::vector<uint16_t> kTable(4096, 77);
const OvraChannelTableSet kTables = {{kTable.data(), kTable.data(), kTable.data()}};
const OvraChannelPolynomial kPolynomials[] = {{9, 0.5, 0, 0}, {3, 1, 0, 0}, {0, 0, 0.01, 0}};
const OvraColorMatrix kMatrix = {{{0.9, 0.1, 0, 3, 0.001}, {0, 1.1}, {0.2, 0, 0.8}}, 0};
const uint16_t kGrid[] = {0, 255};
uint16_t lattice[24] = {0,   11,  22,  33,  44,  55,  66,  77,  88,  99,  110, 121,
                        132, 143, 154, 165, 176, 187, 198, 209, 220, 231, 242, 253};
const OvraColorCube kCube = {2, kGrid, 2, kGrid, 2, kGrid, lattice};

const std::vector<float> kKernel = [] {
  std::vector<float> table(OVRA_KERNEL_TABLE_ENTRIES);
  OvraCalcCubicSpline(-0.75F, table.data());
  return table;
}();
const float* const kCubic = kKernel.data();

const Case kCases[] = {
    {"resize 1:1", kRgb, Resizes(OvraResizeImage, 1), kMost},
    {"resize 1:2", kRgb, Resizes(OvraResizeImage, 2)},
    {"resize 1:4", kRgb12, Resizes(OvraResizeImage, 4)},
    {"resize 2:1, factors", kRgb, Enlarge},
    {"resize, factors", kRgb, Resizes(OvraResizeImageVAR, 2, 0.8, 0.5), kMost},
    {"resize, region", kRgb12, ResizesRegion(OvraResizeImageROI, 2)},
    {"resize, region, factors", kRgb, ResizesRegion(OvraResizeImageROIVAR, 2, 0.5, 0.8)},
    {"resize, core", kRgb, ResizesRegion(OvraResizeImageCore, 2, kCubic, 1.5F, 10)},
    {"resize, core, factors", kRgb12,
     ResizesRegion(OvraResizeImageCoreVAR, 2, 0.8, 0.5, kCubic, 1.2F, 2.0F, 5, 8)},
    {"small resize", kRgb, ResizesRegion(OvraSmallResizeImage, 4, kCubic)},
    {"resize with a half turn", kRgb, ResizesRegion(OvraResizeRotateImageROI, 2, OVRA_ROTATE_HALF)},
    {"resize with a flip, core", kRgb12,
     ResizesRegion(OvraResizeRotateImageCore, 2, kCubic, 2.0F, 8, OVRA_ROTATE_FLIP)},
    {"small resize, mirrored", kRgb,
     ResizesRegion(OvraSmallResizeRotateImage, 4, kCubic, OVRA_ROTATE_MIRROR)},
    {"bands 1:1", kRgb, ResizesInBands(OvraBandResize_Init, 1), kMost},
    {"bands 1:2, core", kRgb, ResizesInBands(OvraBandResizeCore_Init, 2, kCubic, 2.0F, 8)},
    {"bands 1:4", kRgb12, ResizesInBands(OvraBandResize_Init, 4)},
    {"rotate, copy", kRgb, Converts(OvraRotateImage, OVRA_ROTATE_NONE), kMost},
    {"rotate, half turn", kRgb, Converts(OvraRotateImage, OVRA_ROTATE_HALF), kMost},
    {"rotate, mirror", kRgb12, Converts(OvraRotateImage, OVRA_ROTATE_MIRROR)},
    {"rotate, flip", kRgb, Converts(OvraRotateImage, OVRA_ROTATE_FLIP), kMost},
    {"extrapolate", kRgb, Extrapolate, kMost},
    {"free trimming", kRgb, Trims(77), kMost},
    {"free trimming, no turn", kRgb, Trims(0), kMost},
    {"composite", kRgb, Composite, kMost},
    {"composite, mask", kRgb, CompositeByMask},
    {"raw to DIB", kRgb, Moves(OvraRaw2Dib), kMost},
    {"DIB to raw", kRgb, Moves(OvraDib2Raw), kMost},
    {"luminance mask", kRgb, Converts(OvraYUsmSingleStep, 3, kBlur, 2.0F, kEven, kEven)},
    {"double mask", kRgb,
     Converts(OvraYUsmDoubleSingleStep, 3, kBlur, 3, kBlur, 2.0F, kEven, kEven, 1.5F, kEven,
              kEven)},
    {"edge filter", kRgb, Converts(OvraEFilterImage)},
    {"soft focus", kRgb, SoftFocus},
    {"multi-frequency", kRgb, Converts(OvraMultiFrequency, &kBands)},
    {"tone", kRgb12, Tones(0)},
    {"tone, light", kRgb12, Tones(1)},
    {"tone, hybrid", kRgb12, Tones(2)},
    {"tone, hybrid light", kRgb12, Tones(3)},
    {"cube", kRgb, Converts(OvraConvColorCubeSingleStep, kRgb, &kCube)},
    {"channel tables", kRgb, Converts(OvraConvColor1DTblSingleStep, kRgb, &kTables)},
    {"polynomials", kRgb12, Converts(OvraConvColorCoefSingleStep, kRgb12, kPolynomials)},
    {"matrix", kRgb, Converts(OvraConvColorMtxSingleStep, kRgb, &kMatrix)},
};

// Each with the divisor of its sides.
const std::pair<Case, int32_t> kTurns[] = {
    {{"transposition", kRgb, Converts(OvraRotateImage, OVRA_ROTATE_TRANSPOSE)}, 1},
    {{"resize 2:1 with a turn", kRgb, EnlargesTurned(OVRA_ROTATE_QUARTER_LEFT)}, 1},
    {{"resize 1:2 with a turn", kRgb12, ReducesTurned(2, OVRA_ROTATE_QUARTER_RIGHT)}, 2},
    {{"resize 1:4 with a turn", kRgb, ReducesTurned(4, OVRA_ROTATE_ANTI_TRANSPOSE)}, 4},
};

struct Cost {
  size_t bytes;
  double seconds;  // of the processor
};

Cost CostOf(const Case& c, int32_t width, int32_t height) {
  std::vector<uint8_t> source(size_t{6} * static_cast<size_t>(width) * static_cast<size_t>(height));
  std::vector<uint8_t> destination(source.size() + kTileBytes);
  for (size_t i = 0; i < source.size(); ++i) source[i] = static_cast<uint8_t>((i * i >> 5) & 15);
  const std::clock_t begin = std::clock();
  const ovra_test::FailAllocations none;
  c.call({source.data(), destination.data(), width, height, c.format});
  return {ovra_test::FailAllocations::RequestedBytes(),
          static_cast<double>(std::clock() - begin) / CLOCKS_PER_SEC};
}

// Rows of a table: the bytes that a call asks for in all, and its time by the source's pixels.
void PrintCosts() {
  std::printf(
      "| Call | 1000 x 1000 | 2000 x 1000 | 1000 x 2000 | ns a pixel |\n"
      "| --- | ---: | ---: | ---: | ---: |\n");
  for (const Case& c : kCases) {
    double least = std::numeric_limits<double>::max();
    for (int turn = 0; turn < 5; ++turn) least = std::min(least, CostOf(c, 2000, 1000).seconds);
    std::printf("| %s | %zu | %zu | %zu | %.2f |\n", c.name, CostOf(c, 1000, 1000).bytes,
                CostOf(c, 2000, 1000).bytes, CostOf(c, 1000, 2000).bytes, least * 1e9 / 2e6);
  }
}

}  // namespace

// With --costs: a table of memory and time. With words: the cases whose names hold one of them.
int main(int argc, char** argv) {
  if (argc == 2 && std::string(argv[1]) == "--costs") return PrintCosts(), 0;
  constexpr rlim_t kAddressSpace = rlim_t{44} << 30;  // what asks for more gets none
  const rlimit limit = {kAddressSpace, kAddressSpace};
  setrlimit(RLIMIT_AS, &limit);
  const auto is_wanted = [&](const char* name) {
    return argc == 1 ||
           std::any_of(argv + 1, argv + argc, [&](auto* word) { return std::strstr(name, word); });
  };
  const auto timed = [&](const Case& c, const auto& run) {
    if (!is_wanted(c.name)) return;
    const auto begin = std::chrono::steady_clock::now();
    run();
    const std::chrono::duration<double> seconds = std::chrono::steady_clock::now() - begin;
    std::printf("%-26s %6.1f s\n", c.name, seconds.count());
    std::fflush(stdout);
  };
  for (const Case& c : kCases) {
    timed(c, [&] {
      CompareWithTiles(c);
      TryThinOnes(c);
    });
  }
  for (const auto& turn : kTurns)
    timed(turn.first, [&] { CompareTurned(turn.first, turn.second); });
  std::printf("cases: %d\ncalls: %d\n", cases, calls);
  return failures == 0 ? 0 : 1;
}
