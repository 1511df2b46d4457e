// SPDX-License-Identifier: MIT
// The library itself. What a host would prepare once is prepared outside the time.
#include <string>
#include <utility>

#include "ovra/ovra.h"
#include "work.h"

namespace compare {
namespace {

// A figure of a call that was refused would be worth nothing.
void Expect(OvraStatus status, const char* what) {
  if (status == OVRA_OK) return;
  throw Refused(std::string(what) + ": status " + std::to_string(status));
}

uint32_t Unsigned(int number) {
  return static_cast<uint32_t>(number);
}

OvraPixelFormatCode TargetFormat(const Work& work) {
  const OvraColorModel model = work.target_channels == 4 ? OVRA_MODEL_CMYK : OVRA_MODEL_RGB;
  return OvraMakePixelFormat(Unsigned(work.target_depth_bits), Unsigned(work.target_channels),
                             model, 1, OVRA_ROWS_TOP_DOWN);
}

// An operation with a context: `make` makes one, `run` runs with it, `release` takes it back.
template <class Context, class Make, class RunWith, class Release>
Maker WithContext(const char* operation, const char* name, Make make, RunWith run,
                  Release release) {
  return {operation, [=](const Work& work) {
            Participant participant = NewParticipant(work, name);
            Context made = {};
            Expect(make(work, &made), name);
            const auto context = std::shared_ptr<Context>(new Context(made), [=](Context* owned) {
              release(owned);
              delete owned;
            });
            participant.run = [=, target = participant.result.get()] {
              Expect(run(work, target, *context), name);
            };
            return participant;
          }};
}

void Resize(const Work& work, Picture* target) {
  const Picture& source = *work.source;
  Expect(OvraResizeImage(source.data(), source.width(), source.height(), target->data(),
                         target->width(), target->height(), source.format()),
         "resize");
}

void Turn(const Work& work, Picture* target) {
  const Picture& source = *work.source;
  Expect(OvraRotateImage(source.data(), target->data(), source.width(), source.height(),
                         source.format(), work.mode),
         "turn");
}

void Trim(const Work& work, Picture* target) {
  const Picture& source = *work.source;
  const auto tenths = static_cast<int32_t>(work.amount * 10 + 0.5);
  Expect(
      OvraFreeTrimming(source.data(), source.width(), source.height(), target->data(),
                       target->width(), target->height(), source.format(), 0, 0, tenths, nullptr),
      "trimming");
}

void Compose(const Work& work, Picture* target) {
  const Picture& source = *work.source;
  Expect(OvraCompositeImage(target->data(), target->width(), target->height(), target->format(),
                            source.data(), source.width(), source.height(), source.format(), work.x,
                            work.y, OVRA_BLEND_WEIGHT_OF_SOURCE),
         "composition");
}

void ComposeByMask(const Work& work, Picture* target) {
  const Picture& source = *work.source;
  Expect(OvraCompositeImageWithMaskBlending(target->data(), target->width(), target->height(),
                                            source.data(), work.mask->data(), source.width(),
                                            source.height(), source.format(), work.x, work.y,
                                            OVRA_BLEND_WEIGHT_OF_SOURCE),
         "composition by a mask");
}

// The pictures here have no padding between rows, a DIB's rows begin at multiples of 4 bytes.
void ExpectNoPadding(const Work& work) {
  if (work.source->row_bytes() % 4 != 0) throw Refused("a DIB with padding");
}

void DibToRaw(const Work& work, Picture* target) {
  ExpectNoPadding(work);
  OvraDib2Raw(work.source->data(), target->data(), Unsigned(target->width()),
              Unsigned(target->height()));
}

void RawToDib(const Work& work, Picture* target) {
  ExpectNoPadding(work);
  OvraRaw2Dib(work.source->data(), target->data(), Unsigned(target->width()),
              Unsigned(target->height()));
}

void Canvas(const Work& work, Picture* target) {
  const Picture& source = *work.source;
  const uint16_t fill[4] = {};
  Expect(OvraExtrapolateImage(source.data(), Unsigned(source.width()), Unsigned(source.height()),
                              target->data(), Unsigned(target->width()), Unsigned(target->height()),
                              source.format(), work.x, work.y, fill),
         "canvas");
}

void EdgeFilter(const Work& work, Picture* target) {
  Expect(OvraEFilterImage(work.source->data(), target->data(), Unsigned(target->width()),
                          Unsigned(target->height()), target->format()),
         "edge filter");
}

void SoftFocus(const Work& work, Picture* target) {
  const OvraSoftFocusParams params = {kFocusRadius, 1, kFocusDecay, {}, kFocusMix};
  Expect(OvraSoftFocus(work.source->data(), target->data(), Unsigned(target->width()),
                       Unsigned(target->height()), &params),
         "soft focus");
}

void MultiFrequency(const Work& work, Picture* target) {
  OvraMultiFrequencyParams params = {};
  params.band_count = 4;
  params.base_gain = 0.9F;
  params.pivot = 0.5F;
  for (auto& band : params.band) band = {1.5F, 0.004F, 0.5F, 0.1F};
  Expect(OvraMultiFrequency(work.source->data(), target->data(), Unsigned(target->width()),
                            Unsigned(target->height()), target->format(), &params),
         "multi-frequency");
}

Maker LuminanceMask() {
  return WithContext<OvraYUsmContext*>(
      "luminance mask", "OvraYUsm",
      [](const Work& work, OvraYUsmContext** context) {
        const MaskCurves curves(work);
        const std::vector<int32_t>& taps = kMaskTaps[work.mode];
        return OvraYUsm_Init(work.source->format(), static_cast<int32_t>(taps.size()), taps.data(),
                             kMaskAmount, curves.level.data(), curves.difference.data(), context);
      },
      [](const Work& work, Picture* target, const OvraYUsmContext* context) {
        return OvraYUsm(work.source->data(), target->data(), Unsigned(target->width()),
                        Unsigned(target->height()), target->format(), context);
      },
      OvraYUsm_Free);
}

Maker DoubleMask() {
  return WithContext<OvraYUsmDoubleContext*>(
      "double mask", "OvraYUsmDouble",
      [](const Work& work, OvraYUsmDoubleContext** context) {
        const MaskCurves curves(work);
        const int16_t* const level = curves.level.data();
        const int16_t* const difference = curves.difference.data();
        return OvraYUsmDouble_Init(work.source->format(), static_cast<uint32_t>(kCoarseTaps.size()),
                                   kCoarseTaps.data(), static_cast<uint32_t>(kFineTaps.size()),
                                   kFineTaps.data(), kCoarseAmount, level, difference, kFineAmount,
                                   level, difference, context);
      },
      [](const Work& work, Picture* target, const OvraYUsmDoubleContext* context) {
        return OvraYUsmDouble(work.source->data(), target->data(), Unsigned(target->width()),
                              Unsigned(target->height()), target->format(), context);
      },
      OvraYUsmDouble_Free);
}

// The three families of colour conversions are called alike.
using Convert = OvraStatus(OVRA_CALL*)(const uint8_t*, uint8_t*, int32_t, int32_t,
                                       OvraPixelFormatCode, OvraPixelFormatCode, uintptr_t);

template <class Make>
Maker Conversion(const char* operation, const char* name, Make make, Convert convert,
                 OvraStatus(OVRA_CALL* release)(uintptr_t*)) {
  return WithContext<uintptr_t>(
      operation, name,
      [=](const Work& work, uintptr_t* handle) {
        return make(*work.color, work.source->format(), TargetFormat(work), handle);
      },
      [=](const Work& work, Picture* target, uintptr_t handle) {
        return convert(work.source->data(), target->data(), target->width(), target->height(),
                       work.source->format(), TargetFormat(work), handle);
      },
      release);
}

OvraStatus MakeCube(const ColorNumbers& numbers, OvraPixelFormatCode in, OvraPixelFormatCode out,
                    uintptr_t* handle) {
  const OvraColorCube cube = numbers.cube->View();
  return OvraConvColorCube_Init(in, out, &cube, handle);
}

OvraStatus MakeTables(const ColorNumbers& numbers, OvraPixelFormatCode in, OvraPixelFormatCode out,
                      uintptr_t* handle) {
  const OvraChannelTableSet set = {
      {numbers.tables[0].data(), numbers.tables[1].data(), numbers.tables[2].data()}};
  return OvraConvColor1DTbl_Init(in, out, &set, handle);
}

OvraStatus MakeMatrix(const ColorNumbers& numbers, OvraPixelFormatCode in, OvraPixelFormatCode out,
                      uintptr_t* handle) {
  return OvraConvColorMtx_Init(in, out, &numbers.matrix, handle);
}

struct ToneForm {
  const char* name;
  OvraStatus(OVRA_CALL* init)(OvraPixelFormatCode, const OvraHyperToneParams*, const uint16_t*,
                              void**);
  OvraStatus(OVRA_CALL* run)(const uint8_t*, uint8_t*, uint32_t, uint32_t, OvraPixelFormatCode,
                             const void*);
  OvraStatus(OVRA_CALL* release)(void**);
};

constexpr ToneForm kToneForms[] = {
    {"OvraHyperTone", OvraHyperTone_Init_12, OvraHyperTone, OvraHyperTone_Free},
    {"OvraHyperToneLight", OvraHyperToneLight_Init_12, OvraHyperToneLight, OvraHyperToneLight_Free},
    {"OvraHybridHyperTone", OvraHybridHyperTone_Init_12, OvraHybridHyperTone,
     OvraHybridHyperTone_Free},
    {"OvraHybridHyperToneLight", OvraHybridHyperToneLight_Init_12, OvraHybridHyperToneLight,
     OvraHybridHyperToneLight_Free},
};

Participant Tone(const Work& work) {
  const ToneForm& form = kToneForms[work.variant];
  return WithContext<void*>(
             "tone", form.name,
             [&form](const Work& w, void** context) {
               const OvraHyperToneParams params = {1.0F, 0.6F, 0.4F, 1.2F, 0.12F, 1.0F, 6, 0};
               return form.init(w.source->format(), &params, nullptr, context);
             },
             [&form](const Work& w, Picture* target, const void* context) {
               return form.run(w.source->data(), target->data(), Unsigned(target->width()),
                               Unsigned(target->height()), target->format(), context);
             },
             form.release)
      .make(work);
}

}  // namespace

void AddOwn(std::vector<Maker>* makers) {
  std::vector<Maker> own = {
      Direct("resize", "OvraResizeImage", Resize),
      Direct("turn", "OvraRotateImage", Turn),
      Direct("trimming", "OvraFreeTrimming", Trim),
      Direct("copy", "OvraCompositeImage", Compose),
      Direct("alpha", "OvraCompositeImage", Compose),
      Direct("mask", "OvraCompositeImageWithMaskBlending", ComposeByMask),
      Direct("DIB to raw", "OvraDib2Raw", DibToRaw),
      Direct("raw to DIB", "OvraRaw2Dib", RawToDib),
      Direct("canvas", "OvraExtrapolateImage", Canvas),
      LuminanceMask(),
      DoubleMask(),
      Direct("edge filter", "OvraEFilterImage", EdgeFilter),
      Direct("soft focus", "OvraSoftFocus", SoftFocus),
      Direct("multi-frequency", "OvraMultiFrequency", MultiFrequency),
      {"tone", Tone},
      Conversion("cube", "OvraConvColorCube", MakeCube, OvraConvColorCube, OvraConvColorCube_Free),
      Conversion("tables", "OvraConvColor1DTbl", MakeTables, OvraConvColor1DTbl,
                 OvraConvColor1DTbl_Free),
      Conversion("matrix", "OvraConvColorMtx", MakeMatrix, OvraConvColorMtx, OvraConvColorMtx_Free),
      Conversion("second-order matrix", "OvraConvColorMtx", MakeMatrix, OvraConvColorMtx,
                 OvraConvColorMtx_Free),
  };
  for (Maker& maker : own) {
    makers->push_back({maker.operation, [make = std::move(maker.make)](const Work& work) {
                         Participant participant = make(work);
                         participant.kind = Kind::kOurs;
                         return participant;
                       }});
  }
}

}  // namespace compare
