// SPDX-License-Identifier: MIT
// All operations of the conformance test.
#pragma once

#include <algorithm>
#include <string>

#include "conformance/call.h"

namespace ovra_test {

using Maker = void(Call& call);

// In basic_calls.cpp, geometry_calls.cpp, and so on.
Maker Composite, CompositeWithMask, DibToRaw, RawToDib;
Maker Rotate, Extrapolate, FreeTrim;
Maker KernelTable, Resize, ResizeByFactors, ResizeCore, ResizeCoreByFactors, SmallResize;
Maker ResizeRotate, ResizeRotateCore, SmallResizeRotate, BandResize, BandResizeCore;
Maker ResponseTables, YUsm, YUsmDouble, EdgeFilter, SoftFocus;
Maker MultiFrequency, HyperTone, HyperToneLight, HybridHyperTone, HybridHyperToneLight;
Maker Cube, Cascade, ChannelTables, Polynomials, Matrix;

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
