// SPDX-License-Identifier: MIT
#include <algorithm>
#include <limits>

#include "conformance/operations.h"

namespace ovra_test {
namespace {

// Points of increasing x from `first` / 4096 on.
const OvraResponsePoint* DrawCurve(Call& call, int32_t count, int32_t first) {
  constexpr int32_t kUnit = 4096;  // finer than the entries of the tables
  auto* const points = call.Input<OvraResponsePoint>(static_cast<size_t>(count));
  int32_t x = call.draw.Int(first, 0);
  for (int32_t i = 0; i < count; ++i) {
    const double y = call.draw.Int(-kUnit, 3 * kUnit) / double{kUnit};
    points[i] = {call.draw.OrWrong(x / double{kUnit}), call.draw.OrWrong(y)};
    x += call.draw.Int(1, std::max(1, (kUnit - x) / (count - i)));
  }
  return points;
}

struct Response {
  float amount;
  const int16_t* level;
  const int16_t* difference;
};

// Tables of curves, or of any numbers.
Response DrawResponse(Call& call) {
  auto* const level = call.Input<int16_t>(OVRA_LEVEL_TABLE_SIZE);
  auto* const difference = call.Input<int16_t>(OVRA_DIFFERENCE_TABLE_SIZE);
  const int32_t kind = call.draw.Int(0, 3);
  if (kind == 0) {
    Random random(call.draw.Bits());
    FillSamples(random, level, level + OVRA_LEVEL_TABLE_SIZE, 0xFFFF);
    FillSamples(random, difference, difference + OVRA_DIFFERENCE_TABLE_SIZE, 0xFFFF);
  } else {
    std::fill_n(level, OVRA_LEVEL_TABLE_SIZE, int16_t{128});
    std::fill_n(difference, OVRA_DIFFERENCE_TABLE_SIZE, int16_t{128});
    const int32_t level_points = call.draw.Int(1, 5);
    const int32_t difference_points = call.draw.Int(1, 5);
    const OvraResponsePoint* const level_curve = DrawCurve(call, level_points, 0);
    const OvraResponsePoint* const difference_curve = DrawCurve(call, difference_points, -4096);
    OvraYUsmMakeTable(0, level_points, level_curve, difference_points, difference_curve, level,
                      difference);
  }
  const float usual = call.draw.Fraction(-4, 8);
  const float amount = call.draw.OneIn(16) ? call.draw.Of({1e9F, -1e30F, 0.0F}) : usual;
  return {call.draw.OrWrong(amount), level, difference};
}

// The blurs that have kernels of their own.
constexpr int32_t kThreeTaps[] = {32, 64, 32};
constexpr int32_t kFiveTaps[] = {8, 32, 48, 32, 8};

// Counts of taps that are beyond this are refused.
constexpr int32_t kMostTaps = 400;

// Weights of a blur whose sum is mostly 128, or any.
const int32_t* DrawWeights(Call& call, int32_t taps) {
  const int32_t count = std::clamp(taps, 0, kMostTaps);
  auto* const weights = call.Input<int32_t>(static_cast<size_t>(count));
  const int32_t kind = call.draw.Int(0, 7);
  if (kind >= 5 && count == 3) return std::copy_n(kThreeTaps, count, weights) - count;
  if (kind >= 5 && count == 5) return std::copy_n(kFiveTaps, count, weights) - count;
  int32_t left = 128;
  for (int32_t i = 0; i < count; ++i) {
    const int32_t share = i + 1 == count ? left : left * 2 / (count - i + 1);
    left -= share;
    weights[i] = kind == 0   ? static_cast<int32_t>(call.draw.Bits())
                 : kind == 1 ? call.draw.Int(-300, 300)
                 : kind == 2 ? call.draw.Of({32767, -32768, 0})
                             : share;
  }
  return weights;
}

uint32_t Unsigned(int32_t number) {
  return static_cast<uint32_t>(number);
}

// A mistaken size that is negative has no samples, and would be a large one.
Shape NotNegative(Shape shape) {
  return {std::max(shape.width, 0), std::max(shape.height, 0), shape.format};
}

}  // namespace

void ResponseTables(Call& call) {
  const int32_t level_points = call.draw.Int(1, 6);
  const int32_t difference_points = call.draw.Int(1, 6);
  const OvraResponsePoint* const level_curve = DrawCurve(call, level_points, 0);
  const OvraResponsePoint* const difference_curve = DrawCurve(call, difference_points, -4096);
  auto* const level = call.Output<int16_t>(OVRA_LEVEL_TABLE_SIZE);
  auto* const difference = call.Output<int16_t>(OVRA_DIFFERENCE_TABLE_SIZE);
  call.Run([&] {
    return OvraYUsmMakeTable(0x120, level_points, level_curve, difference_points, difference_curve,
                             level, difference);
  });
}

void YUsm(Call& call) {
  const int32_t taps =
      call.draw.OrWrong(call.draw.Of({1, 2, 3, 5, 8, 9, call.draw.Int(1, OVRA_YUSM_MAX_TAPS)}));
  const int32_t least = std::clamp(taps, 1, kMostTaps);
  const Shape shape =
      NotNegative(call.OrWrong({call.draw.Size(least, 300), call.draw.Int(least, least + 30),
                                call.Format({OVRA_MODEL_GREY, OVRA_MODEL_RGB, OVRA_MODEL_BGR,
                                             OVRA_MODEL_YCC, OVRA_MODEL_RGBA, OVRA_MODEL_BGRA},
                                            14)}));
  const int32_t* const weights = DrawWeights(call, taps);
  const Response response = DrawResponse(call);
  const bool in_place = call.draw.OneIn(4);
  const bool single_step = call.draw.OneIn(2);
  const Call::Images images = call.SourceAndDestination(shape, in_place);
  call.Run([&] {
    if (single_step) {
      return OvraYUsmSingleStep(images.source, images.destination, images.width, images.height,
                                shape.format, taps, weights, response.amount, response.level,
                                response.difference);
    }
    OvraYUsmContext* context = NotYet<OvraYUsmContext>();
    OvraStatus status = OvraYUsm_Init(shape.format, taps, weights, response.amount, response.level,
                                      response.difference, &context);
    if (status == OVRA_OK) {
      status = call.Convert(images, [&](auto* source, auto* destination, int32_t rows) {
        return OvraYUsm(source, destination, images.width, Unsigned(rows), shape.format, context);
      });
    }
    OvraYUsm_Free(&context);
    return status;
  });
}

void YUsmDouble(Call& call) {
  Draw& draw = call.draw;
  const bool single_step = draw.OneIn(2);
  const int32_t most_taps = single_step ? 40 : OVRA_YUSM_DOUBLE_MAX_TAPS;
  const int32_t taps1 = draw.OrWrong(draw.Of({3, 7, 25, draw.Int(0, most_taps)}));
  const int32_t taps2 = draw.OrWrong(draw.Of({1, 3, 5, draw.Int(0, most_taps)}));
  const int32_t least = std::min(std::max({taps1, taps2, 1}), kMostTaps / 4);
  // From 2140 pixels on the rows stream through rings.
  const bool is_wide = draw.OneIn(draw.StaysSmall() ? 64 : 4);
  const int32_t width = is_wide ? draw.Int(2140, 2160) : draw.Size(least, 200);
  const Shape shape =
      NotNegative(call.OrWrong({width, draw.Int(least, least + 30), draw.Of({0x120U, 0x320U})}));
  const int32_t* const weights1 = DrawWeights(call, taps1);
  const Response response1 = DrawResponse(call);
  const int32_t* const weights2 = DrawWeights(call, taps2);
  const Response response2 = DrawResponse(call);
  const Call::Images images = call.SourceAndDestination(shape, draw.OneIn(4));
  call.Run([&] {
    if (single_step) {
      return OvraYUsmDoubleSingleStep(
          images.source, images.destination, images.width, images.height, shape.format,
          Unsigned(taps1), weights1, Unsigned(taps2), weights2, response1.amount, response1.level,
          response1.difference, response2.amount, response2.level, response2.difference);
    }
    OvraYUsmDoubleContext* context = nullptr;
    OvraStatus status =
        OvraYUsmDouble_Init(shape.format, Unsigned(taps1), weights1, Unsigned(taps2), weights2,
                            response1.amount, response1.level, response1.difference,
                            response2.amount, response2.level, response2.difference, &context);
    if (status == OVRA_OK) {
      status = call.Convert(images, [&](auto* source, auto* destination, int32_t rows) {
        return OvraYUsmDouble(source, destination, images.width, Unsigned(rows), shape.format,
                              context);
      });
    }
    OvraYUsmDouble_Free(&context);
    return status;
  });
}

void EdgeFilter(Call& call) {
  const Shape shape = NotNegative(call.OrWrong(
      {call.draw.Size(1, 300), call.draw.Int(1, 30), call.draw.Of({0x120U, 0x220U, 0x320U})}));
  const OvraPixelFormatCode ignored = call.draw.Of({0U, 0x00200000U, 0x01100000U});
  const Shape packed = shape.WithAlignmentOf(0);  // rows are, whatever the format says
  const uint8_t* const source = call.Source(packed);
  uint8_t* const destination = call.Destination(packed, Padding::kKept);
  call.MayDoWithoutMemory();
  call.Run([&] {
    return OvraEFilterImage(source, destination, Unsigned(shape.width), Unsigned(shape.height),
                            shape.format | ignored);
  });
}

void SoftFocus(Call& call) {
  Draw& draw = call.draw;
  const Shape shape = NotNegative(call.OrWrongSize({draw.Size(1, 200), draw.Size(1, 100), 0x120}));
  // In pixels of the picture; its shorter side scales the parameter.
  const int32_t radius = draw.Of({draw.Int(0, 60), draw.Int(60, 4000)});
  OvraSoftFocusParams params = {};
  params.radius = draw.OrWrong(radius * 2503 / std::max(std::min(shape.width, shape.height), 1));
  params.decay_exponent = draw.OrWrong(draw.Of({1, 2, draw.Int(-1, 200)}));
  params.decay_base = draw.OrWrong(draw.Int(0, 256) / 256.0);
  params.mix = draw.OrWrong(draw.Of({1.0, draw.Int(-16, 80) / 64.0}));
  const Call::Images images = call.SourceAndDestination(shape, draw.OneIn(4));
  call.Run([&] {
    return OvraSoftFocus(images.source, images.destination, images.width, images.height, &params);
  });
}

}  // namespace ovra_test
