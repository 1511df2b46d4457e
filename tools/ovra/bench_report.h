// SPDX-License-Identifier: MIT
// What was timed, on standard output: for people, for programs, and as a picture.
#pragma once

#include "bench.h"

namespace ovra_host {

void PrintBenchText(const BenchResults& bench);
void PrintBenchJson(const BenchResults& bench);
void PrintBenchSvg(const BenchResults& bench);

}  // namespace ovra_host
