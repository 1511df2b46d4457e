// SPDX-License-Identifier: MIT
#include <algorithm>
#include <limits>
#include <map>
#include <utility>
#include <vector>

#include "conformance/operations.h"

namespace ovra_test {
namespace {

struct Region {
  int32_t x;
  int32_t y;
  int32_t width;
  int32_t height;
};

struct Images {
  Shape source_shape;
  Shape destination_shape;
  Region region;
  const uint8_t* source;
  uint8_t* destination;

  bool IsWhole() const {
    return region.width == source_shape.width && region.height == source_shape.height;
  }
  bool AreOfOneSize() const {
    return destination_shape.width == source_shape.width &&
           destination_shape.height == source_shape.height;
  }
  // Calls a resize of the whole source, or one of the region, with these arguments at the end.
  template <class... More>
  OvraStatus Whole(auto* resize, More... more) const {
    return resize(source, source_shape.width, source_shape.height, destination,
                  destination_shape.width, destination_shape.height, source_shape.format, more...);
  }
  template <class... More>
  OvraStatus Part(auto* resize, More... more) const {
    return Whole(resize, region.x, region.y, region.width, region.height, more...);
  }
};

// A source of at least `least` pixels each way, and a region of it that may begin before it.
Images DrawImages(Call& call, int32_t least, int32_t most) {
  Draw& draw = call.draw;
  least = std::max(least, 1);  // taps may be a mistake
  const OvraPixelFormatCode format = call.Format(
      {OVRA_MODEL_GREY, OVRA_MODEL_RGB, OVRA_MODEL_YCC, OVRA_MODEL_TRIPLE_5, OVRA_MODEL_CMYK}, 16);
  Images images = {};
  images.source_shape = call.OrWrong({draw.Size(least, most), draw.Size(least, 60), format});
  const Shape& source = images.source_shape;
  images.region = {0, 0, source.width, source.height};
  if (draw.OneIn(2)) {
    images.region.width = draw.Int(least, source.width);
    images.region.height = draw.Int(least, source.height);
    const int32_t before = draw.OneIn(4) ? 6 : 0;
    images.region.x = draw.Int(-before, source.width - images.region.width);
    images.region.y = draw.Int(-before, source.height - images.region.height);
  }
  Region& region = images.region;
  for (int32_t* const number : {&region.x, &region.y, &region.width, &region.height}) {
    *number = draw.OrWrong(*number);
  }
  return images;
}

// Both axes are scaled by the one factor that follows from the sizes, or as the caller says.
// Between images of one size rows may be copied with their padding.
void DrawDestination(Call& call, int32_t least, int32_t most, Images* images) {
  const bool copies = call.draw.OneIn(16);
  const Shape& from = images->source_shape;
  const Shape to = {call.draw.Size(least, most), call.draw.Size(least, 60), from.format};
  images->destination_shape = copies ? from : call.OrWrongSize(to);
  const bool padded = images->AreOfOneSize();
  images->source = padded ? call.PaddedSource(from) : call.Source(from);
  images->destination =
      call.Destination(images->destination_shape, padded ? Padding::kWritten : Padding::kKept);
}

// Kept, because making one takes longer than most resizes of small pictures.
const float* UsualTable(bool cubic, float parameter) {
  thread_local std::map<std::pair<bool, float>, std::vector<float>> tables;
  std::vector<float>& table = tables[{cubic, parameter}];
  if (table.empty()) {
    table.resize(OVRA_KERNEL_TABLE_ENTRIES);
    (cubic ? OvraCalcCubicSpline : OvraCalcBSpline)(parameter, table.data());
  }
  return table.data();
}

// A usual kernel, or numbers of any kind.
const float* DrawTable(Call& call) {
  auto* const table = call.Input<float>(OVRA_KERNEL_TABLE_ENTRIES);
  const float parameter = call.draw.Fraction(-2, 2);
  std::copy_n(UsualTable(call.draw.OneIn(2), parameter), OVRA_KERNEL_TABLE_ENTRIES, table);
  const int32_t changed = call.draw.OneIn(6) ? call.draw.Int(1, 4) : 0;
  for (int32_t k = 0; k < changed; ++k) {
    constexpr float kInfinity = std::numeric_limits<float>::infinity();
    const int32_t begin = call.draw.Int(0, OVRA_KERNEL_TABLE_ENTRIES - 1000);
    const float fraction = call.draw.Fraction(-3, 3);
    const float value = call.draw.Of({fraction, fraction, 0.0F, 1e30F, -1e30F, kInfinity,
                                      std::numeric_limits<float>::quiet_NaN()});
    for (int32_t i = 0; i < 1000; ++i) table[begin + i] = value;
  }
  return table;
}

int32_t DrawTaps(Draw& draw) {
  return draw.OrWrong(draw.Of({4, 4, 5, 6, 7, 8, 16, draw.Int(4, 24)}));
}

// Mostly about 1; enlargements have the same kernels.
double DrawFactor(Draw& draw) {
  return draw.OrWrong(
      draw.Of({1.0, 0.33, 2.0, draw.Int(22, 256) / 64.0, draw.Int(22, 100) / 64.0}));
}

// Also mirrored, and far from 1.
double DrawAnyFactor(Draw& draw) {
  const double factor = DrawFactor(draw);
  return factor * draw.Of({1.0, 1.0, 1.0, -1.0, 0.125, 64.0});
}

float DrawStretch(Draw& draw) {
  return draw.OrWrong(draw.Of({1.0F, 2.0F, draw.Int(1, 256) / 64.0F}));
}

}  // namespace

void KernelTable(Call& call) {
  const float parameter = call.draw.OrWrong(call.draw.Fraction(-10, 10));
  auto* const table = call.Output<float>(OVRA_KERNEL_TABLE_ENTRIES);
  const bool cubic = call.draw.OneIn(2);
  call.Run([&] {
    return cubic ? OvraCalcCubicSpline(parameter, table) : OvraCalcBSpline(parameter, table);
  });
}

void Resize(Call& call) {
  Images i = DrawImages(call, 8, 300);
  DrawDestination(call, call.draw.Of({1, 8, 8}), 300, &i);
  call.Run([&] { return i.IsWhole() ? i.Whole(OvraResizeImage) : i.Part(OvraResizeImageROI); });
}

void ResizeByFactors(Call& call) {
  Images i = DrawImages(call, 12, 300);
  DrawDestination(call, 12, 300, &i);
  const double horizontal = DrawFactor(call.draw);
  const double vertical = DrawFactor(call.draw);
  call.Run([&] {
    return i.IsWhole() ? i.Whole(OvraResizeImageVAR, horizontal, vertical)
                       : i.Part(OvraResizeImageROIVAR, horizontal, vertical);
  });
}

void ResizeCore(Call& call) {
  const int32_t taps = DrawTaps(call.draw);
  Images i = DrawImages(call, taps, 300);
  DrawDestination(call, taps, 300, &i);
  const float stretch = DrawStretch(call.draw);
  const float* const table = DrawTable(call);
  call.MayDoWithoutMemory();
  call.Run([&] { return i.Part(OvraResizeImageCore, table, stretch, taps); });
}

void ResizeCoreByFactors(Call& call) {
  const int32_t horizontal_taps = DrawTaps(call.draw);
  const int32_t vertical_taps = DrawTaps(call.draw);
  const int32_t most_taps = std::max(horizontal_taps, vertical_taps);
  Images i = DrawImages(call, most_taps, 300);
  DrawDestination(call, most_taps, 300, &i);
  const double horizontal = DrawAnyFactor(call.draw);
  const double vertical = DrawAnyFactor(call.draw);
  const float horizontal_stretch = DrawStretch(call.draw);
  const float vertical_stretch = DrawStretch(call.draw);
  const float* const table = DrawTable(call);
  call.MayDoWithoutMemory();
  call.Run([&] {
    return i.Part(OvraResizeImageCoreVAR, horizontal, vertical, table, horizontal_stretch,
                  vertical_stretch, horizontal_taps, vertical_taps);
  });
}

void SmallResize(Call& call) {
  Images i = DrawImages(call, 1, 400);
  DrawDestination(call, 1, call.draw.Of({12, 40, 130}), &i);
  const float* const table = DrawTable(call);
  call.Run([&] { return i.Part(OvraSmallResizeImage, table); });
}

namespace {

// Upright as DrawDestination has it; in memory after the turn. All of it is written.
void DrawTurnedDestination(Call& call, int32_t least, int32_t most, int32_t mode, Images* images) {
  const bool same_size = call.draw.OneIn(16);
  Shape& shape = images->destination_shape;
  shape = {call.draw.Size(least, most), call.draw.Size(least, 200), images->source_shape.format};
  shape = same_size ? images->source_shape : call.OrWrongSize(shape);
  if (mode % 2 != 0) std::swap(shape.width, shape.height);
  images->source = call.Source(images->source_shape);
  images->destination = call.Destination(shape, Padding::kWritten);
}

constexpr OvraStatus kAcceptedMistake = -1;

// Bands of random heights and strips of random room, until so many rows are taken or the picture is
// complete. A band is gone after the call, and a context none the worse for calls that it refuses.
OvraStatus PushBands(const Images& i, Draw& draw, int32_t rows, OvraBandResizeContext* context) {
  const Shape& from = i.source_shape;
  const Shape& to = i.destination_shape;
  int32_t first = 0;
  int32_t out = 0;
  while (first < rows || (out < to.height && rows == from.height)) {
    const int32_t usual = draw.OneIn(4) ? from.height : 3;
    const int32_t count = draw.Int(0, std::min(from.height - first, usual));
    const int32_t room =
        draw.Int(0, draw.OneIn(4) ? to.height - out : std::min(to.height - out, 2));
    const Shape shape = {from.width, count, from.format};
    GuardedBuffer band(i.AreOfOneSize() ? shape.PaddedBytes() : shape.Bytes());
    std::copy_n(i.source + from.Stride() * static_cast<size_t>(first), band.size(), band.data());
    const int32_t wrong_row = first == 0 ? -1 : first + 1;  // row 1 may follow an abandoned picture
    int32_t taken = -1;
    int32_t written = -1;
    if (draw.Errs() &&
        OvraBandResize(band.data(), from.width, count, i.destination, to.width, room, from.format,
                       wrong_row, &taken, &written, context) != OVRA_ERROR_BAND_RESIZE_POSITION) {
      return kAcceptedMistake;
    }
    const OvraStatus status = OvraBandResize(
        band.data(), from.width, count, i.destination + to.Stride() * static_cast<size_t>(out),
        to.width, room, from.format, first, &taken, &written, context);
    if (status != OVRA_OK) return status;
    first += taken;
    out += written;
  }
  return OVRA_OK;
}

// A context by `init` for a picture that is abandoned, and one that is not.
void RunBands(Call& call, const Images& i, auto* init, auto... kernel) {
  const Draw cuts(call.draw.Bits(), {}, call.draw.MayErr());
  call.Run([&] {
    OvraBandResizeContext* context = NotYet<OvraBandResizeContext>();
    OvraStatus status = init(i.source_shape.width, i.source_shape.height, i.destination_shape.width,
                             i.destination_shape.height, i.source_shape.format, i.region.x,
                             i.region.y, i.region.width, i.region.height, kernel..., &context);
    Draw draw = cuts;
    for (const int32_t rows :
         {draw.Int(0, std::max(i.source_shape.height, 1) - 1), i.source_shape.height}) {
      if (status == OVRA_OK) status = PushBands(i, draw, rows, context);
    }
    OvraBandResize_Free(&context);
    return status;
  });
}

// Runs a resize that turns, whose result must be that of two calls.
void RunTurned(Call& call, const Images& i, int32_t mode, auto* turning, auto* upright,
               auto... kernel) {
  call.Run([&] { return i.Part(turning, kernel..., mode); });
  if (!call.HasSucceeded()) return;
  Images two = i;
  Shape& shape = two.destination_shape;
  if (mode % 2 != 0) std::swap(shape.width, shape.height);
  GuardedBuffer source(i.source_shape.PaddedBytes());  // rows may be copied with their padding
  GuardedBuffer resized(shape.PaddedBytes());
  GuardedBuffer turned(i.destination_shape.PaddedBytes());
  std::copy_n(i.source, i.source_shape.Bytes(), source.data());
  two.source = source.data();
  two.destination = resized.data();
  if (two.Part(upright, kernel...) != OVRA_OK ||
      OvraRotateImage(resized.data(), turned.data(), shape.width, shape.height, shape.format,
                      mode) != OVRA_OK ||
      !std::equal(turned.begin(), turned.end(), i.destination)) {
    call.Complain("a resize with a turn is not the two calls");
  }
}

}  // namespace

void ResizeRotate(Call& call) {
  const int32_t mode = call.draw.OrWrong(call.draw.Int(0, 7));
  Images i = DrawImages(call, 8, 300);
  DrawTurnedDestination(call, call.draw.Of({1, 8, 8}), 300, mode, &i);
  RunTurned(call, i, mode, OvraResizeRotateImageROI, OvraResizeImageROI);
}

void ResizeRotateCore(Call& call) {
  const int32_t mode = call.draw.OrWrong(call.draw.Int(0, 7));
  const int32_t taps = DrawTaps(call.draw);
  Images i = DrawImages(call, taps, 300);
  DrawTurnedDestination(call, taps, 300, mode, &i);
  const float stretch = DrawStretch(call.draw);
  const float* const table = DrawTable(call);
  RunTurned(call, i, mode, OvraResizeRotateImageCore, OvraResizeImageCore, table, stretch, taps);
}

void SmallResizeRotate(Call& call) {
  const int32_t mode = call.draw.OrWrong(call.draw.Int(0, 7));
  Images i = DrawImages(call, 1, 400);
  DrawTurnedDestination(call, 1, call.draw.Of({12, 40, 130}), mode, &i);
  const float* const table = DrawTable(call);
  RunTurned(call, i, mode, OvraSmallResizeRotateImage, OvraSmallResizeImage, table);
}

void BandResize(Call& call) {
  Images i = DrawImages(call, 8, 300);
  DrawDestination(call, call.draw.Of({1, 8, 8}), 300, &i);
  if (i.IsWhole()) i.region.x = i.region.y = 0;  // as Resize has it
  RunBands(call, i, OvraBandResize_Init);
}

void BandResizeCore(Call& call) {
  const int32_t taps = DrawTaps(call.draw);
  Images i = DrawImages(call, taps, 300);
  DrawDestination(call, taps, 300, &i);
  const float stretch = DrawStretch(call.draw);
  const float* const table = DrawTable(call);
  RunBands(call, i, OvraBandResizeCore_Init, table, stretch, taps);
}

}  // namespace ovra_test
