// SPDX-License-Identifier: MIT
#include "geometry/free_trimming/lanczos_weights.h"

namespace ovra {
namespace {

constexpr double kPi = 3.14159265358979323846;

// sin(pi * x) / (pi * x). Taylor's series about the nearest whole number, where sin(pi * x) changes
// its sign only, to well below a double's precision.
constexpr double Sinc(double x) {
  if (x == 0.0) return 1.0;
  const int whole = static_cast<int>(x < 0.0 ? x - 0.5 : x + 0.5);
  const double angle = kPi * (x - whole);
  double term = angle;
  double sine = 0.0;
  for (int n = 1; n < 30; n += 2) {
    sine += term;
    term *= -angle * angle / ((n + 1) * (n + 2));
  }
  return (whole % 2 == 0 ? sine : -sine) / (kPi * x);
}

constexpr LanczosWeights MakeWeights() {
  LanczosWeights weights;
  for (int k = 0; k < kLanczosPhases; ++k) {
    double values[kLanczosTaps] = {};
    double sum = 0.0;
    for (int t = 0; t < kLanczosTaps; ++t) {
      const double distance = t - 2 - k / static_cast<double>(kLanczosPhases);
      values[t] = Sinc(distance) * Sinc(distance / 3.0);
      sum += values[t];
    }
    int16_t* const set = weights.sets[k];
    int rest = kLanczosUnity;
    int largest = 0;
    for (int t = 0; t < kLanczosTaps; ++t) {
      const double exact = values[t] / sum * kLanczosUnity;
      set[t] = static_cast<int16_t>(exact < 0.0 ? exact - 0.5 : exact + 0.5);
      rest -= set[t];
      if (set[t] > set[largest]) largest = t;
    }
    set[largest] = static_cast<int16_t>(set[largest] + rest);
  }
  return weights;
}

constexpr LanczosWeights kWeights = MakeWeights();

constexpr bool IsSet(int k, const int (&expected)[kLanczosTaps]) {
  for (int t = 0; t < kLanczosTaps; ++t) {
    if (kWeights.sets[k][t] != expected[t]) return false;
  }
  return true;
}

constexpr int64_t CheckSum() {
  int64_t sum = 0;
  for (int k = 0; k < kLanczosPhases; ++k) {
    for (int t = 0; t < kLanczosTaps; ++t) sum += int64_t{kWeights.sets[k][t]} * (6 * k + t + 1);
  }
  return sum;
}

// The compiler's arithmetic is what it should be.
static_assert(IsSet(0, {0, 0, 16384, 0, 0, 0}));
static_assert(IsSet(64, {493, -2184, 14628, 4440, -1114, 121}));
static_assert(IsSet(128, {401, -2226, 10017, 10017, -2226, 401}));
static_assert(CheckSum() == 3223314432);

}  // namespace

const LanczosWeights kLanczosWeights = kWeights;

}  // namespace ovra
