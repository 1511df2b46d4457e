// SPDX-License-Identifier: MIT
#include "progress.h"

#include <unistd.h>

#include <cstdio>

namespace ovra_host {

Progress::Progress(int64_t total) : total_(total), on_terminal_(::isatty(STDERR_FILENO) != 0) {}

Progress::~Progress() {
  if (shown_percent_ >= 0) std::fprintf(stderr, "\r\033[K");
}

void Progress::Show(int64_t done) {
  const int64_t percent = total_ > 0 ? 100 * done / total_ : 100;
  if (!on_terminal_ || percent == shown_percent_) return;
  shown_percent_ = percent;
  std::fprintf(stderr, "\r%lld %%", static_cast<long long>(percent));
}

}  // namespace ovra_host
