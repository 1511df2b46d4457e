// SPDX-License-Identifier: MIT
#include <algorithm>

#include "conformance/operations.h"

namespace ovra_test {

void Rotate(Call& call) {
  const Shape shape = call.OrWrong(
      {call.draw.Size(1, 200), call.draw.Size(1, 200),
       call.Format({OVRA_MODEL_GREY, OVRA_MODEL_RGB, OVRA_MODEL_TRIPLE_7, OVRA_MODEL_CMYK}, 16)});
  const int32_t mode = call.draw.OrWrong(call.draw.Int(OVRA_ROTATE_NONE, OVRA_ROTATE_TRANSPOSE));
  const bool turns = mode % 2 != 0;
  const uint8_t* const source = call.Source(shape);
  uint8_t* const destination = call.Destination(
      turns ? Shape{shape.height, shape.width, shape.format} : shape, Padding::kWritten);
  call.Run([&] {
    return OvraRotateImage(source, destination, shape.width, shape.height, shape.format, mode);
  });
}

void Extrapolate(Call& call) {
  Shape source_shape = call.OrWrong(
      {call.draw.Size(1, 150), call.draw.Int(1, 30),
       call.Format({OVRA_MODEL_GREY, OVRA_MODEL_YCC, OVRA_MODEL_BGR, OVRA_MODEL_CMYK}, 16)});
  source_shape.width = std::max(source_shape.width, 0);
  source_shape.height = std::max(source_shape.height, 0);
  int32_t x = call.draw.Int(0, 40);
  int32_t y = call.draw.Int(0, 9);
  const Shape shape = {source_shape.width + x + call.draw.Int(0, 40),
                       source_shape.height + y + call.draw.Int(0, 9), source_shape.format};
  const bool fills_all = call.draw.OneIn(16);
  x = call.draw.OrWrong(x);
  y = call.draw.OrWrong(y);
  const uint8_t* const source = call.Source(source_shape);
  constexpr size_t kClearedBehind = 2;  // some formats clear two bytes behind the image
  uint8_t* const destination =
      call.Destination(shape, Padding::kWritten, shape.SampleBytes() == 2 ? kClearedBehind : 0);
  const uint16_t* const fill = call.Samples(shape.Channels(), 0xFFFF);
  call.Run([&] {
    return OvraExtrapolateImage(source, static_cast<uint32_t>(source_shape.width),
                                fills_all ? 0 : static_cast<uint32_t>(source_shape.height),
                                destination, static_cast<uint32_t>(shape.width),
                                static_cast<uint32_t>(shape.height), shape.format, x, y, fill);
  });
}

void FreeTrim(Call& call) {
  Draw& draw = call.draw;
  const OvraPixelFormatCode format =
      call.Format({OVRA_MODEL_GREY, OVRA_MODEL_RGB, OVRA_MODEL_CMYK}, 16);
  const Shape from = call.OrWrong({draw.Size(1, 250), draw.Size(1, 250), format});
  const Shape to = call.OrWrongSize({draw.Size(8, 200), draw.Size(8, 200), from.format});
  const uint8_t* const source = call.Source(from);
  uint8_t* const destination = call.Destination(to, Padding::kWritten);
  const bool far = draw.OneIn(8);
  const int32_t reach = far ? 0x40000000 : 60;
  const int32_t x = draw.OrWrong(draw.Int(-reach, far ? reach : from.width));
  const int32_t y = draw.OrWrong(draw.Int(-60, from.height));
  const int32_t quarter_turns = 900 * draw.Int(-5, 5);
  const int32_t angle =
      draw.OrWrong(draw.Of({quarter_turns, draw.Int(-100, 100), draw.Int(-4000, 4000)}));
  const uint16_t* const fill = draw.OneIn(2) ? nullptr : call.Samples(4, 0xFFFF);
  call.Run([&] {
    return OvraFreeTrimming(source, from.width, from.height, destination, to.width, to.height,
                            from.format, x, y, angle, fill);
  });
}

}  // namespace ovra_test
