// SPDX-License-Identifier: MIT
#include "filter/edge_filter/edge_filter.h"
#include "bench_support.h"
#include "filter/edge_filter/classifier.h"

namespace ovra_bench {
namespace {

constexpr double kPixels = double{kWidth} * kHeight;
constexpr size_t kBytes = size_t{3} * kWidth * kHeight;

}  // namespace

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

}  // namespace ovra_bench
