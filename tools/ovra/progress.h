// SPDX-License-Identifier: MIT
// How far the work is, in a line of standard error that goes away; on a
// terminal only.
#pragma once

#include <cstdint>

namespace ovra_host {

class Progress {
 public:
  explicit Progress(int64_t total);
  ~Progress();
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;

  void Show(int64_t done);

 private:
  int64_t total_;
  int64_t shown_percent_ = -1;
  bool on_terminal_;
};

}  // namespace ovra_host
