// SPDX-License-Identifier: MIT
#include "conformance/operations.h"

namespace ovra_test {
namespace {

struct Placement {
  Shape destination;
  Shape source;
  int32_t x;
  int32_t y;
  uint8_t mode;
};

// Both images with the same rows; the source has up to `more_channels` more, and lies anywhere
// about the destination.
Placement DrawPlacement(Draw& draw, int32_t more_channels) {
  const auto model = [&draw] {
    return draw.Of({OVRA_MODEL_GREY, OVRA_MODEL_RGB, OVRA_MODEL_BGR, OVRA_MODEL_YCC,
                    OVRA_MODEL_RGBA, OVRA_MODEL_BGRA});
  };
  const int32_t channels = draw.Int(1, 4 - more_channels);
  const int32_t source_channels = channels + draw.Int(0, more_channels);
  const uint32_t alignment = draw.Of({1U, 2U, 4U});
  const auto order = draw.Of({OVRA_ROWS_TOP_DOWN, OVRA_ROWS_TOP_DOWN, OVRA_ROWS_BOTTOM_UP});
  const auto shape = [&](int32_t count) {
    const int32_t width = draw.Size(1, 300);
    const int32_t height = draw.Int(1, 20);
    return Shape{width, height,
                 OvraMakePixelFormat(8, static_cast<uint32_t>(count), model(), alignment, order)};
  };
  const Shape destination = shape(channels);
  const Shape source = shape(source_channels);
  const bool inside = draw.OneIn(2);
  const int32_t x = inside ? draw.Int(0, 20) : draw.Int(-source.width - 1, destination.width + 1);
  const int32_t y = inside ? draw.Int(0, 3) : draw.Int(-source.height - 1, destination.height + 1);
  const int32_t mode = draw.Of({0, 1, 2});
  return {destination, source, draw.OrWrong(x), draw.OrWrong(y),
          static_cast<uint8_t>(draw.OrWrong(mode))};
}

Shape DibShape(Draw& draw) {
  return {draw.Size(1, 300), draw.Int(1, 8),
          OvraMakePixelFormat(8, 3, OVRA_MODEL_BGR, 4, OVRA_ROWS_BOTTOM_UP)};
}

Shape RawShape(const Shape& dib) {
  return {dib.width, dib.height, OvraMakePixelFormat(8, 3, OVRA_MODEL_RGB, 1, OVRA_ROWS_TOP_DOWN)};
}

}  // namespace

void Composite(Call& call) {
  Placement p = DrawPlacement(call.draw, call.draw.Int(0, 1));
  p.destination = call.OrWrong(p.destination);
  p.source = call.OrWrong(p.source);
  uint8_t* const destination = call.SourceAndDestination(p.destination);
  const uint8_t* const source = call.Source(p.source);
  call.Run([&] {
    return OvraCompositeImage(destination, p.destination.width, p.destination.height,
                              p.destination.format, source, p.source.width, p.source.height,
                              p.source.format, p.x, p.y, p.mode);
  });
}

void CompositeWithMask(Call& call) {
  Placement p = DrawPlacement(call.draw, 0);
  p.destination = call.OrWrong(p.destination);
  p.source.format = p.destination.format;  // one word for all three
  p.source = call.OrWrongSize(p.source);
  uint8_t* const destination = call.SourceAndDestination(p.destination);
  const uint8_t* const source = call.Source(p.source);
  const uint8_t* const mask = call.Source(p.source);
  call.Run([&] {
    return OvraCompositeImageWithMaskBlending(
        destination, p.destination.width, p.destination.height, source, mask, p.source.width,
        p.source.height, p.destination.format, p.x, p.y, p.mode);
  });
}

void DibToRaw(Call& call) {
  const Shape shape = call.OrWrongSize(DibShape(call.draw));
  const uint8_t* const dib = call.Source(shape);
  uint8_t* const raw = call.Destination(RawShape(shape), Padding::kKept);
  call.Run([&] {
    OvraDib2Raw(dib, raw, static_cast<uint32_t>(shape.width), static_cast<uint32_t>(shape.height));
    return OVRA_OK;
  });
}

void RawToDib(Call& call) {
  const Shape shape = call.OrWrongSize(DibShape(call.draw));
  const uint8_t* const raw = call.Source(RawShape(shape));
  uint8_t* const dib = call.Destination(shape, Padding::kWritten);
  call.Run([&] {
    OvraRaw2Dib(raw, dib, static_cast<uint32_t>(shape.width), static_cast<uint32_t>(shape.height));
    return OVRA_OK;
  });
}

}  // namespace ovra_test
