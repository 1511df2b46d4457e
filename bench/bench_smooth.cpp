// SPDX-License-Identifier: MIT
#include "bench_support.h"
#include "filter/edge_classifier.h"
#include "filter/edge_filter.h"
#include "filter/plane_filter.h"

namespace ovra_bench {
namespace {

constexpr double kPixels = double{kWidth} * kHeight;
constexpr size_t kBytes = size_t{3} * kWidth * kHeight;

void RegisterEdgeFilter() {
  for (const bool wide : {false, true}) {
    RegisterTiers(wide ? "edge_filter/wide" : "edge_filter/narrow", kPixels,
                  [wide](ovra::KernelTier tier) {
                    ovra::FilterEdges(Source(kBytes), Destination(kBytes), kWidth, kHeight,
                                      wide ? ovra::kWideEdgeTable : ovra::kNarrowEdgeTable, tier);
                  });
  }
  RegisterTiers("edge_filter/classifier", kPixels, [](ovra::KernelTier tier) {
    benchmark::DoNotOptimize(ovra::HasMiddlingDetail(Source(kBytes), kWidth, kHeight, tier));
  });
  RegisterMemcpy("edge_filter", kBytes, kBytes, kPixels);
}

}  // namespace

void RegisterSmooth() {
  RegisterEdgeFilter();
}

}  // namespace ovra_bench
