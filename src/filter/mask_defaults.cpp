// SPDX-License-Identifier: MIT
// Weights and curves for hosts of the unsharp masks that have none of their own.
#include <algorithm>
#include <iterator>

#include "ovra/filter.h"

namespace ovra {
namespace {

constexpr int32_t kWeightSum = 128;
constexpr int32_t kMaxReach = (OVRA_YUSM_MAX_TAPS - 1) / 2;

constexpr OvraResponsePoint kLevelPoints[OVRA_DEFAULT_LEVEL_POINTS] = {
    {0.0, 0.3}, {0.12, 1.0}, {0.85, 1.0}, {1.0, 0.5}};
constexpr OvraResponsePoint kDifferencePoints[OVRA_DEFAULT_DIFFERENCE_POINTS] = {
    {-1.0, 0.3},  {-0.25, 0.6}, {-0.06, 1.0}, {-0.015, 1.0}, {-0.003, 0.0},
    {0.003, 0.0}, {0.015, 1.0}, {0.06, 1.0},  {0.25, 0.6},   {1.0, 0.3}};

// exp(-x) for x >= 0 in basic operations, since the functions of C libraries differ in the last
// bits: the power series at x / 2^n, squared n times.
double ExpOfNegative(double x) {
  constexpr double kNegligible = 64;  // exp(-64) of 128 parts is none
  constexpr double kSeriesLimit = 0.125;
  constexpr int32_t kTerms = 10;  // 0.125^11 / 11! is beyond a double's bits
  if (!(x < kNegligible)) return 0;
  int32_t squarings = 0;
  for (; x > kSeriesLimit; x /= 2) ++squarings;
  double result = 1;
  for (int32_t term = kTerms; term > 0; --term) result = 1 - result * x / term;
  for (; squarings > 0; --squarings) result *= result;
  return result;
}

// Half a bell, from the middle outward.
struct HalfBell {
  double exact[kMaxReach + 1];    // values that sum to kWeightSum over the whole bell
  int32_t weight[kMaxReach + 1];  // what they become
  int32_t reach;
};

void FillExact(double radius, HalfBell* bell) {
  double sum = 0;
  for (int32_t k = 0; k <= bell->reach; ++k) {
    const double distance = k / radius;
    bell->exact[k] = k == 0 ? 1 : ExpOfNegative(distance * distance / 2);
    sum += k == 0 ? 1 : 2 * bell->exact[k];
  }
  for (int32_t k = 0; k <= bell->reach; ++k) bell->exact[k] *= kWeightSum / sum;
}

// The pair that lost most by being rounded down; of equals the one nearest to the middle.
int32_t NeediestPair(const HalfBell& bell) {
  const auto lost = [&bell](int32_t k) { return bell.exact[k] - bell.weight[k]; };
  int32_t neediest = 1;
  for (int32_t k = 2; k <= bell.reach; ++k) {
    if (lost(k) > lost(neediest)) neediest = k;
  }
  return neediest;
}

// Rounds down, gives what is missing to the pairs that lost most, one each, and the rest, which is
// less than a pair, to the middle. In flat bells the pairs could come to stand above the middle:
// then the last of them gives it back.
void RoundToSum(HalfBell* bell) {
  int32_t rest = kWeightSum;
  for (int32_t k = 0; k <= bell->reach; ++k) {
    bell->weight[k] = static_cast<int32_t>(bell->exact[k]);
    rest -= k == 0 ? bell->weight[k] : 2 * bell->weight[k];
  }
  int32_t last = 0;
  for (; bell->reach > 0 && rest >= 2; rest -= 2) {
    last = NeediestPair(*bell);
    ++bell->weight[last];
  }
  bell->weight[0] += rest;
  if (last > 0 && bell->weight[0] < bell->weight[1]) {
    --bell->weight[last];
    bell->weight[0] += 2;
  }
}

void GaussianWeights(double radius, int32_t max_taps, int32_t* tap_count, int32_t* weights) {
  HalfBell bell = {};
  bell.reach = radius > 0 ? (max_taps - 1) / 2 : 0;
  FillExact(radius, &bell);
  RoundToSum(&bell);
  while (bell.reach > 0 && bell.weight[bell.reach] == 0) --bell.reach;
  *tap_count = 2 * bell.reach + 1;
  for (int32_t k = 0; k <= bell.reach; ++k) {
    weights[bell.reach - k] = bell.weight[k];
    weights[bell.reach + k] = bell.weight[k];
  }
}

}  // namespace
}  // namespace ovra

OVRA_API OvraStatus OVRA_CALL OvraGaussianWeights(double radius, int32_t max_taps,
                                                  int32_t* tap_count, int32_t* weights) {
  if (tap_count == nullptr || weights == nullptr) return OVRA_ERROR_YUSM_NULL;
  if (max_taps < 1 || max_taps > OVRA_YUSM_MAX_TAPS) return OVRA_ERROR_YUSM_TAPS;
  ovra::GaussianWeights(radius, max_taps, tap_count, weights);
  return OVRA_OK;
}

OVRA_API OvraStatus OVRA_CALL OvraDefaultCurves(OvraResponsePoint* level_points,
                                                OvraResponsePoint* difference_points) {
  if (level_points == nullptr || difference_points == nullptr) return OVRA_ERROR_YUSM_NULL;
  std::copy(std::begin(ovra::kLevelPoints), std::end(ovra::kLevelPoints), level_points);
  std::copy(std::begin(ovra::kDifferencePoints), std::end(ovra::kDifferencePoints),
            difference_points);
  return OVRA_OK;
}
