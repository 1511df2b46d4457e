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

double Median(std::vector<double> values) {
  std::nth_element(values.begin(), values.begin() + values.size() / 2, values.end());
  return values[values.size() / 2];
}

double Psnr(const Picture& a, const Picture& b) {
  const size_t samples = a.bytes() / a.sample_bytes();
  double sum = 0;
  for (size_t i = 0; i < samples; ++i) {
    const double difference = a.sample_bytes() == 1
                                  ? a.data()[i] - static_cast<double>(b.data()[i])
                                  : a.words()[i] - static_cast<double>(b.words()[i]);
    sum += difference * difference;
  }
  if (sum == 0) return 999;
  const double max = std::pow(2.0, a.depth_bits()) - 1;
  return 10 * std::log10(max * max * static_cast<double>(samples) / sum);
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

// A copy of n bytes reads n and writes n.
double CopyLimit(size_t bytes_moved, int turns) {
  const size_t bytes = bytes_moved / 2;
  const Picture source = Picture(static_cast<int>(bytes / 4096 + 1), 4096, 1, 8);
  Picture destination = source;
  Picture target(source.width(), source.height(), 1, 8);
  const auto time = [&](const auto& copy) {
    std::vector<double> times;
    for (int turn = 0; turn < turns; ++turn) {
      const double start = ProcessorMilliseconds();
      copy(source.data(), target.data(), bytes);
      times.push_back(ProcessorMilliseconds() - start);
    }
    return Median(times);
  };
  const auto with_memcpy = [](const uint8_t* from, uint8_t* to, size_t n) { memcpy(to, from, n); };
  return std::min({time(with_memcpy), time(CopyPlain), time(CopyStreaming)});
}

// Short work is repeated until the clock can be trusted.
int Repetitions(const std::function<void()>& run) {
  constexpr double kLeastMilliseconds = 5;
  const double start = ProcessorMilliseconds();
  run();
  const double once = std::max(ProcessorMilliseconds() - start, 1e-3);
  return std::max(1, static_cast<int>(kLeastMilliseconds / once));
}

}  // namespace

double CaseResult::Ratio() const {
  double best = 0;
  for (size_t i = 1; i < timings.size(); ++i) {
    const bool better = best == 0 || timings[i].milliseconds < best;
    if (timings[i].alike && better) best = timings[i].milliseconds;
  }
  return best / timings[0].milliseconds;
}

CaseResult Measure(const std::string& name, const Case& comparison, int turns) {
  std::vector<Participant> participants = {comparison.ours};
  participants.insert(participants.end(), comparison.peers.begin(), comparison.peers.end());
  CaseResult result = {name, comparison.pixels * 1e-6, {}, 0};
  std::vector<int> repetitions;
  for (const Participant& participant : participants) {
    repetitions.push_back(Repetitions(participant.run));  // which also touches all memory
  }
  for (const Participant& participant : participants) {
    Timing timing;
    timing.name = participant.name;
    if (participant.finish) participant.finish();
    if (&participant != &participants.front()) {
      timing.psnr = Psnr(*comparison.ours.result, *participant.result);
      timing.alike = timing.psnr >= comparison.least_psnr;
    }
    result.timings.push_back(timing);
  }
  // All take turns, another one first in each round, so that none profits from its place.
  std::vector<std::vector<double>> times(participants.size());
  for (int turn = 0; turn < turns; ++turn) {
    for (size_t k = 0; k < participants.size(); ++k) {
      const size_t who = (k + static_cast<size_t>(turn)) % participants.size();
      const double start = ProcessorMilliseconds();
      for (int i = 0; i < repetitions[who]; ++i) participants[who].run();
      times[who].push_back((ProcessorMilliseconds() - start) / repetitions[who]);
    }
  }
  for (size_t k = 0; k < participants.size(); ++k) {
    result.timings[k].milliseconds = Median(times[k]);
  }
  result.copy_milliseconds = CopyLimit(comparison.bytes_moved, turns);
  return result;
}

}  // namespace compare
