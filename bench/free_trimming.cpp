// SPDX-License-Identifier: MIT
#include "geometry/free_trimming/free_trimming.h"

#include <string>

#include "bench_support.h"
#include "pixel_kinds.h"

namespace ovra_bench {
namespace {

// A square from the middle, which stays inside the source at every angle.
void RegisterKind(const PixelKind& kind) {
  constexpr int32_t kSide = kHeight * 7 / 10;
  const size_t bytes = kind.Bytes() * kWidth * kHeight;
  for (const int32_t angle : {0, 23, 450, 885}) {
    RegisterTiers(
        std::string("free_trimming/") + kind.name + "/" + std::to_string(angle),
        double{kSide} * kSide, [=](ovra::KernelTier tier) {
          ovra::FreeTrimming(
              {Source(bytes), kWidth, kHeight, Destination(bytes), kSide, kSide, kind.Format()},
              (kWidth - kSide) / 2, (kHeight - kSide) / 2, angle, nullptr, tier);
        });
  }
}

}  // namespace

void RegisterFreeTrimming() {
  for (const PixelKind& kind : kPixelKinds) RegisterKind(kind);
}

}  // namespace ovra_bench
