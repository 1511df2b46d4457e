// SPDX-License-Identifier: MIT
#include <cstring>
#include <random>
#include <utility>
#include <vector>

#include "bench_support.h"

namespace ovra_bench {

const uint8_t* Source(size_t bytes) {
  static std::mt19937 random(1);
  static std::vector<uint8_t> buffer;
  while (buffer.size() < bytes) buffer.push_back(static_cast<uint8_t>(random() >> 8));
  return buffer.data();
}

uint8_t* Destination(size_t bytes) {
  static std::vector<uint8_t> buffer;
  if (buffer.size() < bytes) buffer.resize(bytes);
  return buffer.data();
}

void Register(const std::string& name, double pixels, std::function<void()> run) {
  benchmark::RegisterBenchmark(
      name.c_str(),
      [pixels](benchmark::State& state, const std::function<void()>& body) {
        body();  // touches fresh memory once, outside the time
        for (auto _ : state) {
          body();
          benchmark::ClobberMemory();
        }
        state.counters["MP/s"] =
            benchmark::Counter(pixels * 1e-6, benchmark::Counter::kIsIterationInvariantRate);
      },
      std::move(run))
      ->Unit(benchmark::kMillisecond)
      ->UseRealTime();
}

void RegisterMemcpy(const std::string& name, size_t bytes_read, size_t bytes_written,
                    double pixels) {
  // A copy of n bytes reads n and writes n.
  const size_t bytes = (bytes_read + bytes_written) / 2;
  Register(name + "/memcpy", pixels,
           [bytes] { std::memcpy(Destination(bytes), Source(bytes), bytes); });
}

void RegisterTiers(const std::string& name, double pixels,
                   const std::function<void(ovra::KernelTier)>& run) {
  const std::pair<const char*, ovra::KernelTier> tiers[] = {
      {"/plain", ovra::KernelTier::kPlain},
      {"/sse", ovra::KernelTier::kSse},
      {"/avx2", ovra::KernelTier::kAvx2},
  };
  for (const auto& [suffix, tier] : tiers) {
    if (tier > ovra::DetectedTier()) continue;
    Register(name + suffix, pixels, [run, tier = tier] { run(tier); });
  }
}

}  // namespace ovra_bench

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
  ovra_bench::RegisterBandResize();
  ovra_bench::RegisterChannelTables();
  ovra_bench::RegisterColorMatrix();
  ovra_bench::RegisterComposition();
  ovra_bench::RegisterCube();
  ovra_bench::RegisterDibRaw();
  ovra_bench::RegisterExtrapolation();
  ovra_bench::RegisterFreeTrimming();
  ovra_bench::RegisterResizeRotate();
  ovra_bench::RegisterRotation();
  ovra_bench::RegisterSmallResize();
  ovra_bench::RegisterEdgeFilter();
  ovra_bench::RegisterSoftFocus();
  ovra_bench::RegisterMultiFrequency();
  ovra_bench::RegisterHyperTone();
  ovra_bench::RegisterYUsm();
  ovra_bench::RegisterResize();
  ovra_bench::RegisterYUsmDouble();
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
}
