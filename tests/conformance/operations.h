// SPDX-License-Identifier: MIT
// All operations of the conformance test.
#pragma once

#include <algorithm>
#include <string>

#include "conformance/call.h"

namespace ovra_test {

// basic_calls.cpp
void Composite(Call& call);
void CompositeWithMask(Call& call);
void DibToRaw(Call& call);
void RawToDib(Call& call);
// geometry_calls.cpp
void Rotate(Call& call);
void Extrapolate(Call& call);
void FreeTrim(Call& call);
// resample_calls.cpp
void KernelTable(Call& call);
void Resize(Call& call);
void ResizeByFactors(Call& call);
void ResizeCore(Call& call);
void ResizeCoreByFactors(Call& call);
void SmallResize(Call& call);
void ResizeRotate(Call& call);
void ResizeRotateCore(Call& call);
void SmallResizeRotate(Call& call);
void BandResize(Call& call);
void BandResizeCore(Call& call);
// filter_calls.cpp
void ResponseTables(Call& call);
void YUsm(Call& call);
void YUsmDouble(Call& call);
void EdgeFilter(Call& call);
void SoftFocus(Call& call);
// tone_calls.cpp
void MultiFrequency(Call& call);
void HyperTone(Call& call);
void HyperToneLight(Call& call);
void HybridHyperTone(Call& call);
void HybridHyperToneLight(Call& call);
// color_calls.cpp
void Cube(Call& call);
void Cascade(Call& call);
void ChannelTables(Call& call);
void Polynomials(Call& call);
void Matrix(Call& call);

inline constexpr Operation kOperations[] = {
    {"composite", Composite},
    {"composite-mask", CompositeWithMask},
    {"dib-to-raw", DibToRaw},
    {"raw-to-dib", RawToDib},
    {"rotate", Rotate},
    {"extrapolate", Extrapolate},
    {"free-trimming", FreeTrim},
    {"kernel-table", KernelTable},
    {"resize", Resize},
    {"resize-factors", ResizeByFactors},
    {"resize-core", ResizeCore},
    {"resize-core-factors", ResizeCoreByFactors},
    {"small-resize", SmallResize},
    {"resize-rotate", ResizeRotate},
    {"resize-rotate-core", ResizeRotateCore},
    {"small-resize-rotate", SmallResizeRotate},
    {"band-resize", BandResize},
    {"band-resize-core", BandResizeCore},
    {"response-tables", ResponseTables},
    {"yusm", YUsm},
    {"yusm-double", YUsmDouble},
    {"edge-filter", EdgeFilter},
    {"soft-focus", SoftFocus},
    {"multi-frequency", MultiFrequency},
    {"hyper-tone", HyperTone},
    {"hyper-tone-light", HyperToneLight},
    {"hybrid-hyper-tone", HybridHyperTone},
    {"hybrid-hyper-tone-light", HybridHyperToneLight},
    {"cube", Cube},
    {"cascade", Cascade},
    {"channel-tables", ChannelTables},
    {"polynomials", Polynomials},
    {"matrix", Matrix},
};

// Names the tests of operations that are test parameters.
inline constexpr auto OperationName = [](const auto& info) {
  std::string name = info.param.name;
  std::replace(name.begin(), name.end(), '-', '_');
  return name;
};

}  // namespace ovra_test
