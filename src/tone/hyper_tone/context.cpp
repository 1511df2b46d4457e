// SPDX-License-Identifier: MIT
#include "tone/hyper_tone/context.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

#include "core/format_rules.h"
#include "core/range.h"
#include "core/wrapping.h"
#include "tone/pyramid/soft_limit.h"

namespace ovra {
namespace {

static_assert(sizeof(OvraHyperToneParams) == 32);
static_assert(offsetof(OvraHyperToneParams, scale) == 24);

bool AreParamsAccepted(const OvraHyperToneParams& params) {
  return IsWithin(params.amount, 0, 1) && IsWithin(params.shadows, -0.5F, 1.5F) &&
         IsWithin(params.highlights, -0.5F, 1) && IsWithin(params.local_contrast, 0.5F, 1.5F) &&
         IsWithin(params.edge, 0.01F, 0.15F) && IsWithin(params.colour, 0, 1) &&
         params.scale >= 3 && params.scale <= 8;
}

bool IsCurveAccepted(const uint16_t* curve, int32_t max_sample) {
  for (int32_t v = 0; v < max_sample; ++v) {
    if (curve[v] > curve[v + 1]) return false;
  }
  return curve[max_sample] <= max_sample;
}

bool IsRgbOrBgr(const PixelFormat& format) {
  return format.color_model == OVRA_MODEL_RGB || format.color_model == OVRA_MODEL_BGR;
}

constexpr FormatRules RulesOf(NumberSet depths_bits) {
  return {
      .channels = NumberSet::Of(3),
      .channels_refused = OVRA_ERROR_TONE_CHANNELS,
      .depths_bits = depths_bits,
      .depth_refused = OVRA_ERROR_TONE_DEPTH,
      .accepts_model = IsRgbOrBgr,
      .model_refused = OVRA_ERROR_TONE_COLOR_MODEL,
      .arrangement_refused = OVRA_ERROR_TONE_ARRANGEMENT,
  };
}

// The curve's value at v, an entry's number with a fraction.
double CurveAt(const uint16_t* curve, double v, int32_t max_sample) {
  const double floor = std::floor(v);
  const auto j = static_cast<int32_t>(floor);
  if (j == max_sample) return curve[max_sample];
  return curve[j] + (v - floor) * (curve[j + 1] - curve[j]);
}

// The gain table; the order of every operation counts.
void MakeGains(const OvraHyperToneParams& params, const uint16_t* curve, int32_t depth_bits,
               int32_t* gains) {
  constexpr double kMaxGain = 32767.0 / 8192;
  const int32_t max_sample = (1 << depth_bits) - 1;
  const double entries_per_code = (kGainEntries - 1) >> depth_bits;
  const double amount = params.amount;
  const double shadows = params.shadows;
  const double highlights = params.highlights;
  const double contrast = amount * (params.local_contrast - 1.0);
  for (int i = 0; i < kGainEntries; ++i) {
    const double v = std::min<double>(i / entries_per_code, max_sample);
    const double x = v / max_sample;
    const double u = 1.0 - x;
    double gain = 0;
    if (curve == nullptr) {
      gain = 1.0 + amount * (shadows * u * u * u - highlights * x * x * u);
    } else {
      const double z = i == 0 ? 1 / entries_per_code : v;
      gain = 1.0 + amount * (CurveAt(curve, z, max_sample) / z - 1.0);
    }
    gain = std::clamp(gain, 0.0, kMaxGain);
    const auto fixed = static_cast<int32_t>(std::floor(gain * 8192 + 0.5));
    const auto slope = static_cast<int32_t>(std::floor(contrast * gain / (x + 0.25) * 2048 + 0.5));
    gains[i] = PackedPair(fixed, slope);
  }
}

}  // namespace

Status CheckToneFormat(PixelFormatCode code, uint32_t depth_bits, PixelFormat* format) {
  const NumberSet depths = depth_bits == 0 ? NumberSet::Of(10, 12) : NumberSet::Of(depth_bits);
  return DecodeAndCheckFormat(code, RulesOf(depths), format);
}

Status MakeHyperToneContext(ToneForm form, PixelFormatCode code, int32_t depth_bits,
                            const OvraHyperToneParams& params, const uint16_t* curve,
                            ContextPtr<HyperToneContext>* context) {
  if (!AreParamsAccepted(params)) return OVRA_ERROR_TONE_PARAMETER;
  if (curve != nullptr && !IsCurveAccepted(curve, (1 << depth_bits) - 1)) {
    return OVRA_ERROR_TONE_PARAMETER;
  }
  *context = MakeContext<HyperToneContext>();
  if (*context == nullptr) return OVRA_ERROR_NO_MEMORY;
  HyperToneContext& made = **context;
  made.form = form;
  made.code = code;
  made.depth_bits = depth_bits;
  made.scale = params.scale;
  double threshold = params.edge;
  for (SoftLimit& limit : made.limits) {
    limit = MakeSoftLimit(threshold);
    threshold = threshold * 0.8;
  }
  made.fine_limit = MakeSoftLimit(params.edge * 0.5);
  made.keep = static_cast<int16_t>(std::floor((1.0 - params.colour) * 32767 + 0.5));
  MakeGains(params, curve, depth_bits, made.gains);
  return OVRA_OK;
}

}  // namespace ovra
