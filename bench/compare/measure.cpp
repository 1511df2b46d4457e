// SPDX-License-Identifier: MIT
#include <emmintrin.h>
#include <time.h>

#include <algorithm>
#include <cmath>
#include <cstring>

#include "compare.h"

namespace compare {
namespace {

double ProcessorMilliseconds() {
  timespec now = {};
  clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
  return 1e3 * static_cast<double>(now.tv_sec) + 1e-6 * static_cast<double>(now.tv_nsec);
}

// Of one of so many runs.
double Time(const std::function<void()>& run, int repetitions) {
  const double start = ProcessorMilliseconds();
  for (int i = 0; i < repetitions; ++i) run();
  return (ProcessorMilliseconds() - start) / repetitions;
}

struct Runner {
  std::function<void()> run;
  double first_milliseconds;
};

double Median(std::vector<double> values) {
  std::nth_element(values.begin(), values.begin() + values.size() / 2, values.end());
  return values[values.size() / 2];
}

template <class Sample>
double SquaredDifferences(const Sample* a, const Sample* b, size_t count) {
  uint64_t sum = 0;
  for (size_t i = 0; i < count; ++i) {
    const int64_t difference = int64_t{a[i]} - b[i];
    sum += static_cast<uint64_t>(difference * difference);
  }
  return static_cast<double>(sum);
}

// Of pictures whose rows follow each other without gaps.
double Psnr(const Picture& a, const Picture& b) {
  const double sum = a.sample_bytes() == 1 ? SquaredDifferences(a.data(), b.data(), a.samples())
                                           : SquaredDifferences(a.words(), b.words(), a.samples());
  if (sum == 0) return 999;
  return 10 * std::log10(double{1} * a.max() * a.max() * static_cast<double>(a.samples()) / sum);
}

void CopyStreaming(const uint8_t* source, uint8_t* destination, size_t bytes) {
  const auto* in = reinterpret_cast<const __m128i*>(source);
  auto* out = reinterpret_cast<__m128i*>(destination);
  for (size_t i = 0; i < bytes / 16; ++i) _mm_stream_si128(out + i, _mm_loadu_si128(in + i));
  _mm_sfence();
}

void CopyPlain(const uint8_t* source, uint8_t* destination, size_t bytes) {
  const auto* in = reinterpret_cast<const __m128i*>(source);
  auto* out = reinterpret_cast<__m128i*>(destination);
  for (size_t i = 0; i < bytes / 16; ++i) _mm_store_si128(out + i, _mm_loadu_si128(in + i));
}

// The ways to copy half as many bytes as are moved: a copy of n bytes reads n and writes n.
std::vector<std::function<void()>> Copies(size_t bytes_moved) {
  const size_t bytes = bytes_moved / 2;
  const auto source =
      std::make_shared<Picture>(Size{4096, static_cast<int>(bytes / 4096 + 1)}, 1, 8);
  const auto to = std::make_shared<Picture>(source->size(), 1, 8);
  return {[=] { memcpy(to->data(), source->data(), bytes); },
          [=] { CopyPlain(source->data(), to->data(), bytes); },
          [=] { CopyStreaming(source->data(), to->data(), bytes); }};
}

// How often work is repeated for one figure: until the clock can be trusted. `first` is how long it
// took when it also touched fresh memory; long work is not done again to find out.
int Repetitions(const std::function<void()>& run, double first) {
  constexpr double kLeastMilliseconds = 5;
  if (first > 5 * kLeastMilliseconds) return 1;
  return std::max(1, static_cast<int>(kLeastMilliseconds / std::max(Time(run, 1), 1e-3)));
}

// Whether someone is so much slower than the first one that a single run tells enough.
bool IsFarBehind(const Runner& runner, const Runner& first) {
  constexpr double kTimes = 20;
  constexpr double kLongMilliseconds = 100;
  return runner.first_milliseconds > kLongMilliseconds &&
         runner.first_milliseconds > kTimes * first.first_milliseconds;
}

// The median time of each. All take turns, another one first in each round, so that none profits
// from its place.
std::vector<double> TakeTurns(const std::vector<Runner>& runners, int turns) {
  std::vector<int> repetitions;
  for (const Runner& runner : runners) {
    repetitions.push_back(Repetitions(runner.run, runner.first_milliseconds));
  }
  std::vector<std::vector<double>> times(runners.size());
  for (int turn = 0; turn < turns; ++turn) {
    for (size_t k = 0; k < runners.size(); ++k) {
      const size_t who = (k + static_cast<size_t>(turn)) % runners.size();
      if (IsFarBehind(runners[who], runners[0])) continue;
      times[who].push_back(Time(runners[who].run, repetitions[who]));
    }
  }
  std::vector<double> medians;
  for (size_t k = 0; k < runners.size(); ++k) {
    medians.push_back(times[k].empty() ? runners[k].first_milliseconds : Median(times[k]));
  }
  return medians;
}

// Runs each once, compares the pictures, and notes who takes part.
std::vector<Runner> ComparePictures(const Case& comparison, std::vector<Timing>* timings) {
  std::vector<Runner> runners;
  for (const Participant& participant : comparison.participants) {
    Timing timing = {participant.name, participant.kind};
    if (participant.prepare) participant.prepare();
    runners.push_back({participant.run, Time(participant.run, 1)});
    if (participant.finish) participant.finish();
    if (!timings->empty()) {
      timing.psnr = Psnr(*comparison.participants[0].result, *participant.result);
      timing.alike = timing.psnr >= comparison.least_psnr;
    }
    timings->push_back(timing);
  }
  return runners;
}

}  // namespace

double CaseResult::Ratio(Kind kind) const {
  double best = 0;
  for (const Timing& timing : timings) {
    if (timing.kind != kind || !timing.alike) continue;
    if (best == 0 || timing.milliseconds < best) best = timing.milliseconds;
  }
  return best / timings[0].milliseconds;
}

bool CaseResult::MeetsFloor() const {
  const auto meets = [](double value, double floor) { return floor > 0 && value >= floor; };
  const bool none = floor.ratio == 0 && floor.ratio_of_plain == 0 && floor.share_of_copy == 0;
  return none || meets(Ratio(Kind::kLibrary), floor.ratio) ||
         meets(Ratio(Kind::kPlainLoop), floor.ratio_of_plain) ||
         meets(ShareOfCopy(), floor.share_of_copy);
}

CaseResult Measure(const std::string& name, const Case& comparison, int turns) {
  CaseResult result = {name, comparison.pixels, comparison.floor, {}, 0};
  std::vector<Runner> runners = ComparePictures(comparison, &result.timings);
  for (const auto& copy : Copies(comparison.bytes_moved)) runners.push_back({copy, Time(copy, 1)});
  const std::vector<double> medians = TakeTurns(runners, turns);
  const auto copies = medians.begin() + static_cast<std::ptrdiff_t>(result.timings.size());
  for (size_t k = 0; k < result.timings.size(); ++k) result.timings[k].milliseconds = medians[k];
  result.copy_milliseconds = *std::min_element(copies, medians.end());
  return result;
}

CaseResult MeasureOurs(const std::string& name, const Case& comparison, int turns) {
  const Participant& ours = comparison.participants[0];
  const double median = TakeTurns({{ours.run, Time(ours.run, 1)}}, turns)[0];
  return {name, comparison.pixels, {}, {{ours.name, ours.kind, median}}, 0};
}

}  // namespace compare
