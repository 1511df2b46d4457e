// SPDX-License-Identifier: MIT
// Many files, worked on side by side.
#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

namespace ovra_host {

constexpr int kMaxJobs = 32;

// As many as the machine has processors.
int UsualJobs();

// Calls work(i) for each name, up to `jobs` at a time, with progress. What fails does not stop the
// others: it is told at the end, in the order of the names, and an Error says how many there were.
// Answers the seconds that all took.
double RunBatch(const std::vector<std::string>& names, int jobs,
                const std::function<void(size_t)>& work);

}  // namespace ovra_host
