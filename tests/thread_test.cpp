// SPDX-License-Identifier: MIT
// Calls from several threads at once, on different buffers; the thread sanitizer watches.
#include <gtest/gtest.h>
#ifdef OVRA_LIBRARY
#include <dlfcn.h>
#include <unistd.h>
#endif

#include <atomic>
#include <filesystem>
#include <functional>
#include <string>
#include <thread>
#include <vector>

#include "conformance/operations.h"
#include "support/rounds.h"

namespace {

using Bytes = std::vector<uint8_t>;

constexpr int kThreads = 8;
constexpr int kTurns = 3;

// Runs the same in all threads at once, a few times, and compares what comes out with a run before.
void RunAtOnce(const std::function<Bytes()>& run) {
  const Bytes expected = run();
  std::vector<Bytes> results(kThreads);
  std::vector<std::thread> threads;
  std::atomic<int> ready = 0;
  const auto work = [&](Bytes& result) {
    for (++ready; ready < kThreads;) std::this_thread::yield();
    int turn = 0;
    do result = run();
    while (++turn < kTurns && result == expected);
  };
  for (Bytes& result : results) threads.emplace_back(work, std::ref(result));
  for (std::thread& thread : threads) thread.join();
  for (const Bytes& result : results) EXPECT_EQ(result, expected);
}

class Threads : public testing::TestWithParam<ovra_test::Operation> {};

TEST_P(Threads, ShareNothingButContexts) {
  const auto [begin, end] = ovra_test::SeedsOf(4);
  for (uint32_t seed = begin; seed < end && !HasFailure(); ++seed) {
    SCOPED_TRACE(seed);
    RunAtOnce([&] { return MakeCall(GetParam(), ovra_test::Draw(seed)).output; });
    MakeCall(
        GetParam(), ovra_test::Draw(seed), [](const auto& run) { return run(); }, RunAtOnce);
  }
}

INSTANTIATE_TEST_SUITE_P(Calls, Threads, testing::ValuesIn(ovra_test::kOperations),
                         ovra_test::OperationName);

#ifdef OVRA_LIBRARY
// What is found when the library is loaded, the processor's tier, is found by all who load it at once.
TEST(Library, IsLoadedByAllAtOnce) {
  namespace fs = std::filesystem;
  const std::string copy = "ovra-copy-" + std::to_string(::getpid());
  const fs::path path = fs::temp_directory_path() / copy;  // not the one that is loaded already
  fs::copy_file(OVRA_LIBRARY, path, fs::copy_options::overwrite_existing);
  const Bytes source(size_t{40} * 40, 77);
  const auto load_and_resize = [&] {
    void* const library = ::dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
    const auto resize =
        reinterpret_cast<decltype(&OvraResizeImage)>(::dlsym(library, "OvraResizeImage"));
    Bytes result(size_t{20} * 20);
    EXPECT_EQ(resize(source.data(), 40, 40, result.data(), 20, 20, 0), OVRA_OK);
    ::dlclose(library);
    return result;
  };
  const auto [begin, end] = ovra_test::SeedsOf(20);
  for (uint32_t seed = begin; seed < end; ++seed) RunAtOnce(load_and_resize);
  fs::remove(path);
}
#endif

}  // namespace
