// SPDX-License-Identifier: MIT
#include "filter/soft_focus/padding.h"

#include <algorithm>
#include <cstdlib>

namespace ovra {
namespace {

// Steps that change a state by the same amount.
struct Run {
  int64_t change;
  std::ptrdiff_t steps;
};

// The first run of the walk state = input + (state * feedback + 32768 >> 16), at most `steps` long.
//
// A change by c moves the sum by c * feedback, hence its fraction by -c * (65536 - feedback) as long
// as the next change is c too, and that is until the fraction would leave its 16 bits. Then the
// changes are smaller: the walk is monotonic and slower than its state.
Run NextRun(const SoftFocusRecursion& recursion, int64_t state, int64_t input,
            std::ptrdiff_t steps) {
  const int64_t sum = state * recursion.feedback + 32768;
  const int64_t change = input + (sum >> 16) - state;
  if (change == 0) return {0, steps};
  const auto fraction = static_cast<uint32_t>(sum & 0xFFFF);
  const uint32_t room = change > 0 ? fraction : 0xFFFF - fraction;
  const uint32_t fraction_step = static_cast<uint32_t>(std::abs(change)) * recursion.input;
  return {change, std::min(steps, static_cast<std::ptrdiff_t>(1 + room / fraction_step))};
}

int64_t Walk(const SoftFocusRecursion& recursion, int64_t state, int64_t input,
             std::ptrdiff_t steps) {
  while (steps > 0) {
    const Run run = NextRun(recursion, state, input, steps);
    state += run.change * run.steps;
    steps -= run.steps;
  }
  return state;
}

}  // namespace

int64_t WalkSoftFocusPadding(const SoftFocusRecursion& recursion, int64_t state, uint8_t sample,
                             std::ptrdiff_t padding) {
  if (recursion.input == 0) return 0;  // the outcome is 0 whatever the states are
  const int64_t first = Walk(recursion, state, sample, 1);
  // No state, scaled to a sample, exceeds 255 * gain * input / 65536, which is below 511. So much a
  // step may change it by; every run has a smaller change than the one before, down to 0.
  constexpr size_t kMaxRuns = 512;
  Run runs[kMaxRuns];
  size_t count = 0;
  int64_t end = first;
  for (std::ptrdiff_t left = padding - 1; left > 0; left -= runs[count++].steps) {
    runs[count] = NextRun(recursion, end, sample, left);
    end += runs[count].change * runs[count].steps;
  }

  // The way back starts from the steady state of the last sample, which is `end` scaled. What it is
  // ahead of the states of the way forward, m - n, follows a walk of the same kind:
  //
  //   m' = (m * feedback + n' * input + 32768) >> 16 = n' + ((m - n') * feedback + 32768 >> 16)
  //
  // so that m - n', with n - n' = c all along a run, is walked with the input c.
  const uint64_t line_end = static_cast<uint64_t>(end) * recursion.input;
  int64_t ahead = static_cast<int64_t>((line_end * recursion.gain + 32768) >> 16) - end;
  while (count > 0) {
    const Run& run = runs[--count];
    ahead = Walk(recursion, ahead + run.change, run.change, run.steps) - run.change;
  }
  return first + ahead;
}

}  // namespace ovra
