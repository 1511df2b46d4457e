// SPDX-License-Identifier: MIT
#include "batch.h"

#include <algorithm>
#include <atomic>
#include <exception>
#include <new>
#include <thread>

#include "error.h"
#include "progress.h"

namespace ovra_host {
namespace {

// What went wrong with one of them; empty when nothing did.
std::string Failure(const std::string& name, const std::function<void()>& work) {
  try {
    work();
    return "";
  } catch (const std::bad_alloc&) {
    return name + ": out of memory";
  } catch (const std::exception& error) {
    return error.what();
  }
}

}  // namespace

int UsualJobs() {
  return std::clamp(static_cast<int>(std::thread::hardware_concurrency()), 1, kMaxJobs);
}

double RunBatch(const std::vector<std::string>& names, int jobs,
                const std::function<void(size_t)>& work) {
  std::vector<std::string> failures(names.size());
  std::atomic<size_t> next = 0;
  std::atomic<size_t> done = 0;
  double seconds = 0;
  {
    Progress progress(static_cast<int64_t>(names.size()), "pictures");
    const auto work_on = [&] {
      for (size_t i = next++; i < names.size(); i = next++) {
        failures[i] = Failure(names[i], [&] { work(i); });
        progress.Show(static_cast<int64_t>(++done));
      }
    };
    std::vector<std::thread> threads;
    const size_t count = std::min(static_cast<size_t>(jobs), names.size());
    for (size_t i = 0; i < count; ++i) threads.emplace_back(work_on);
    for (std::thread& thread : threads) thread.join();
    seconds = progress.Seconds();
  }
  std::erase(failures, "");
  for (const std::string& failure : failures) PrintNote(failure);
  if (failures.empty()) return seconds;
  throw Error(std::to_string(failures.size()) + " of " + std::to_string(names.size()) +
              " pictures failed");
}

}  // namespace ovra_host
