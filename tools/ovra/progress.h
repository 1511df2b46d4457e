// SPDX-License-Identifier: MIT
// How far the work is, with its rate and the time that is left, on standard error: on a terminal a bar
// that goes away, elsewhere a plain line now and then, so that short work says nothing.
#pragma once

#include <chrono>
#include <cstdint>
#include <mutex>
#include <string>

namespace ovra_host {

class Progress {
 public:
  // So many of `unit`, as "pictures". There is one bar: others made meanwhile are not shown.
  Progress(int64_t total, std::string unit);
  ~Progress();
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;

  // May be called by several threads.
  void Show(int64_t done);

  double Seconds() const;

 private:
  using Clock = std::chrono::steady_clock;

  std::string Text(int64_t done) const;

  const int64_t total_;
  const std::string unit_;
  const bool on_terminal_;
  const bool is_shown_;
  const Clock::time_point start_ = Clock::now();
  std::mutex mutex_;
  Clock::time_point last_shown_ = start_;
};

}  // namespace ovra_host
