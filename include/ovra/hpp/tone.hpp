// SPDX-License-Identifier: MIT
// Tone processing in C++. What each form does and answers stands in ovra/tone.h.
#ifndef OVRA_HPP_TONE_HPP
#define OVRA_HPP_TONE_HPP

#include "ovra/hpp/image.hpp"
#include "ovra/tone.h"

namespace ovra {
namespace detail {

// The functions of one form; Init by the depth of the pictures.
using ToneInit = OvraStatus(OVRA_CALL*)(OvraPixelFormatCode, const OvraHyperToneParams*,
                                        const uint16_t*, void**);
using ToneRun = OvraStatus(OVRA_CALL*)(const uint8_t*, uint8_t*, uint32_t, uint32_t,
                                       OvraPixelFormatCode, const void*);

struct HyperToneFunctions {
  using Handle = void*;
  static ToneInit Init10() { return OvraHyperTone_Init; }
  static ToneInit Init12() { return OvraHyperTone_Init_12; }
  static ToneRun Run() { return OvraHyperTone; }
  static void Free(Handle* context) { OvraHyperTone_Free(context); }
};

struct HyperToneLightFunctions {
  using Handle = void*;
  static ToneInit Init10() { return OvraHyperToneLight_Init; }
  static ToneInit Init12() { return OvraHyperToneLight_Init_12; }
  static ToneRun Run() { return OvraHyperToneLight; }
  static void Free(Handle* context) { OvraHyperToneLight_Free(context); }
};

struct HybridHyperToneFunctions {
  using Handle = void*;
  static ToneInit Init10() { return OvraHybridHyperTone_Init; }
  static ToneInit Init12() { return OvraHybridHyperTone_Init_12; }
  static ToneRun Run() { return OvraHybridHyperTone; }
  static void Free(Handle* context) { OvraHybridHyperTone_Free(context); }
};

struct HybridHyperToneLightFunctions {
  using Handle = void*;
  static ToneInit Init10() { return OvraHybridHyperToneLight_Init; }
  static ToneInit Init12() { return OvraHybridHyperToneLight_Init_12; }
  static ToneRun Run() { return OvraHybridHyperToneLight; }
  static void Free(Handle* context) { OvraHybridHyperToneLight_Free(context); }
};

}  // namespace detail

// A form of tone processing for pictures of one format. Any number of threads may use it at once.
template <class Functions>
class Tone {
 public:
  // curve: 1024 entries for 10 bits, 4096 for 12, or null for the curve of the parameters.
  static Result<Tone> Make(Format format, const OvraHyperToneParams& params,
                           const uint16_t* curve = nullptr) {
    constexpr uint32_t kDepthField = 0xF;
    constexpr uint32_t kTwelveBits = 4;
    const bool twelve = (format.code() & kDepthField) == kTwelveBits;
    Tone tone(format);
    const Status status = (twelve ? Functions::Init12() : Functions::Init10())(
        format.code(), &params, curve, tone.context_.address());
    if (!status) return status;
    return tone;
  }

  // source and destination may be the same pixels.
  Status operator()(View source, MutableView destination) const {
    if (!detail::Alike(source, destination) || source.format() != format_) return Status::kMismatch;
    return Functions::Run()(source.data(), destination.data(), detail::Unsigned(source.width()),
                            detail::Unsigned(source.height()), format_.code(), context_.get());
  }

 private:
  explicit Tone(Format format) : format_(format) {}

  Format format_;
  detail::Owner<Functions> context_;
};

using HyperTone = Tone<detail::HyperToneFunctions>;
using HyperToneLight = Tone<detail::HyperToneLightFunctions>;
using HybridHyperTone = Tone<detail::HybridHyperToneFunctions>;
using HybridHyperToneLight = Tone<detail::HybridHyperToneLightFunctions>;

}  // namespace ovra

#endif  // OVRA_HPP_TONE_HPP
