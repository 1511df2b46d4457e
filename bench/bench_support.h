// SPDX-License-Identifier: MIT
// Common ground of the benchmarks: picture size, tiers, rows in megapixels a second.
#pragma once

#include <benchmark/benchmark.h>

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>

#include "core/cpu.h"

namespace ovra_bench {

// A 24-megapixel picture, the size of a common camera.
inline constexpr int32_t kWidth = 6000;
inline constexpr int32_t kHeight = 4000;

// The two buffers that all benchmarks share, at least `bytes` long: repeatable noise to read, and
// one to write. Valid until a larger one is asked for.
const uint8_t* Source(size_t bytes);
uint8_t* Destination(size_t bytes);

// Registers a row `name` that calls `run` and counts `pixels` a call, as megapixels a second.
void Register(const std::string& name, double pixels, std::function<void()> run);

// The floor of an operation: a memcpy that moves as many bytes as it reads and writes.
void RegisterMemcpy(const std::string& name, size_t bytes_read, size_t bytes_written,
                    double pixels);

// Registers `name` + "/plain", "/sse" and "/avx2", those that this processor has.
void RegisterTiers(const std::string& name, double pixels,
                   const std::function<void(ovra::KernelTier)>& run);

// One function for each file of benchmarks, called by main.
void RegisterBandResize();
void RegisterChannelTables();
void RegisterColorMatrix();
void RegisterComposition();
void RegisterCube();
void RegisterDibRaw();
void RegisterExtrapolation();
void RegisterFreeTrimming();
void RegisterResizeRotate();
void RegisterRotation();
void RegisterSmallResize();
void RegisterEdgeFilter();
void RegisterSoftFocus();
void RegisterMultiFrequency();
void RegisterHyperTone();
void RegisterYUsm();
void RegisterResize();
void RegisterYUsmDouble();

}  // namespace ovra_bench
