// SPDX-License-Identifier: MIT
#include <algorithm>

#include "conformance/operations.h"
#include "support/tone_forms.h"

namespace ovra_test {
namespace {

// A share of the range from 0 on: often an end or a small number, which tell more.
float Share(Draw& draw, int32_t sixty_fourths) {
  const float usual = static_cast<float>(draw.Int(0, sixty_fourths)) / 64.0F;
  const float small = static_cast<float>(draw.Int(0, sixty_fourths)) / 1024.0F;
  const float end = static_cast<float>(draw.Of({0, sixty_fourths})) / 64.0F;
  return draw.OrWrong(draw.Of({usual, small, end}));
}

OvraMultiFrequencyParams DrawMultiFrequency(Draw& draw) {
  OvraMultiFrequencyParams params = {};
  params.band_count = static_cast<uint32_t>(draw.OrWrong(draw.Int(1, 8)));
  params.base_gain = draw.OneIn(2) ? 1.0F : draw.Fraction(0, 2);
  params.pivot = Share(draw, 64);
  params.reserved = draw.Bits();
  for (OvraMultiFrequencyBand& band : params.band) {
    const float noise = Share(draw, 16);
    const float limit = Share(draw, 64);
    band.gain = draw.Of({0.0F, 1.0F, 4.0F, draw.Fraction(0, 4)});
    band.noise = std::min(noise, limit);
    band.damping = Share(draw, 64);
    band.limit = limit;
  }
  return params;
}

OvraHyperToneParams DrawTone(Draw& draw) {
  OvraHyperToneParams params = {};
  params.amount = draw.OneIn(2) ? 1.0F : Share(draw, 64);
  params.shadows = draw.OrWrong(static_cast<float>(draw.Int(-32, 96)) / 64.0F);
  params.highlights = draw.OrWrong(static_cast<float>(draw.Int(-32, 64)) / 64.0F);
  params.local_contrast = draw.OrWrong(static_cast<float>(draw.Int(32, 96)) / 64.0F);
  params.edge = draw.OrWrong(draw.Of({0.01F, 0.15F, 0.0625F, 0.125F}));
  params.colour = draw.OneIn(2) ? 1.0F : Share(draw, 64);
  params.scale = draw.OrWrong(draw.Int(3, 8));
  params.reserved = draw.Bits();
  return params;
}

// A curve that never falls, or null.
const uint16_t* DrawToneCurve(Call& call, uint32_t depth_bits) {
  if (call.draw.OneIn(2)) return nullptr;
  const auto max = (1 << depth_bits) - 1;
  auto* const curve = call.Input<uint16_t>(size_t{1} << depth_bits);
  const int32_t first = call.draw.Of({0, 0, call.draw.Int(0, max)});
  const int32_t step = call.draw.Int(0, 40);
  Random random(call.draw.Bits());
  int32_t value = first;
  for (int32_t v = 0; v <= max; ++v, value += RandomInt(random, 0, step) / 10) {
    curve[v] = static_cast<uint16_t>(std::min(value, max));
  }
  return curve;
}

void Tone(Call& call, const ToneExports& form) {
  Draw& draw = call.draw;
  constexpr OvraPixelFormatCode kDepthField = 0x0000000F;
  const OvraPixelFormatCode format = call.Format({OVRA_MODEL_RGB, OVRA_MODEL_BGR}, 16);
  const bool is_12_bits = draw.OneIn(2);
  const Shape shape = call.OrWrong(
      {draw.Size(1, 600), draw.Size(1, 300), (format & ~kDepthField) | (is_12_bits ? 4U : 2U)});
  const OvraHyperToneParams params = DrawTone(draw);
  const uint16_t* const curve = DrawToneCurve(call, is_12_bits ? 12 : 10);
  const Call::Images images = call.SourceAndDestination(shape, call.draw.OneIn(4));
  call.Run([&] {
    void* context = NotYet<void>();
    OvraStatus status =
        (is_12_bits ? form.init_12 : form.init)(shape.format, &params, curve, &context);
    if (status == OVRA_OK) {
      status = call.Convert(images, [&](auto* source, auto* destination, int32_t rows) {
        return form.run(source, destination, images.width, static_cast<uint32_t>(rows),
                        shape.format, context);
      });
    }
    form.free(&context);
    return status;
  });
}

}  // namespace

void MultiFrequency(Call& call) {
  const Shape shape = call.OrWrong({call.draw.Size(1, 600), call.draw.Size(1, 300),
                                    call.Format({OVRA_MODEL_GREY, OVRA_MODEL_RGB, OVRA_MODEL_BGR,
                                                 OVRA_MODEL_YCC, OVRA_MODEL_RGBA, OVRA_MODEL_BGRA},
                                                16)});
  const OvraMultiFrequencyParams params = DrawMultiFrequency(call.draw);
  const Call::Images images = call.SourceAndDestination(shape, call.draw.OneIn(4));
  call.Run([&] {
    return OvraMultiFrequency(images.source, images.destination, images.width, images.height,
                              shape.format, &params);
  });
}

void HyperTone(Call& call) {
  Tone(call, kToneForms[0]);
}

void HyperToneLight(Call& call) {
  Tone(call, kToneForms[1]);
}

void HybridHyperTone(Call& call) {
  Tone(call, kToneForms[2]);
}

void HybridHyperToneLight(Call& call) {
  Tone(call, kToneForms[3]);
}

}  // namespace ovra_test
