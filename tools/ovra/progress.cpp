// SPDX-License-Identifier: MIT
#include "progress.h"

#include <unistd.h>

#include <atomic>
#include <cmath>
#include <cstdio>
#include <utility>

#include "error.h"

namespace ovra_host {
namespace {

using std::chrono_literals::operator""ms;
using std::chrono_literals::operator""s;

constexpr auto kBetweenBars = 100ms;
constexpr auto kBetweenLines = 10s;
constexpr int64_t kBarLetters = 24;

std::atomic<bool> is_one_shown = false;

// "0:08", "1:02:03".
std::string ClockText(double seconds) {
  const long whole = std::lround(seconds);
  char text[40];
  if (whole < 3600) {
    std::snprintf(text, sizeof(text), "%ld:%02ld", whole / 60, whole % 60);
  } else {
    std::snprintf(text, sizeof(text), "%ld:%02ld:%02ld", whole / 3600, whole / 60 % 60, whole % 60);
  }
  return text;
}

}  // namespace

Progress::Progress(int64_t total, std::string unit)
    : total_(total),
      unit_(std::move(unit)),
      on_terminal_(::isatty(STDERR_FILENO) != 0),
      is_shown_(!is_one_shown.exchange(true)) {}

Progress::~Progress() {
  if (!is_shown_) return;
  if (on_terminal_) std::fprintf(stderr, "\r\033[K");
  is_one_shown = false;
}

double Progress::Seconds() const {
  return std::chrono::duration<double>(Clock::now() - start_).count();
}

std::string Progress::Text(int64_t done) const {
  const double rate = static_cast<double>(done) / Seconds();
  char text[160];
  std::snprintf(text, sizeof(text), "%lld of %lld %s, %.*f a second, %s left",
                static_cast<long long>(done), static_cast<long long>(total_), unit_.c_str(),
                rate < 10 ? 2 : 0, rate,
                ClockText(static_cast<double>(total_ - done) / rate).c_str());
  return text;
}

void Progress::Show(int64_t done) {
  if (!is_shown_ || done == 0) return;
  const std::lock_guard<std::mutex> lock(mutex_);
  const Clock::time_point now = Clock::now();
  if (now - last_shown_ < (on_terminal_ ? Clock::duration(kBetweenBars) : kBetweenLines)) return;
  last_shown_ = now;
  if (!on_terminal_) return PrintNote(Text(done));
  const auto filled = static_cast<size_t>(kBarLetters * done / total_);
  const std::string bar = std::string(filled, '#') + std::string(kBarLetters - filled, '.');
  std::fprintf(stderr, "\r[%s] %s\033[K", bar.c_str(), Text(done).c_str());
}

}  // namespace ovra_host
