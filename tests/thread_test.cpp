// SPDX-License-Identifier: MIT
// Calls on different buffers from several threads at once; the thread sanitizer watches.
#include <gtest/gtest.h>

#ifndef _WIN32

#include <functional>
#include <thread>
#include <vector>

#include "ovra/ovra.h"

namespace {

using Bytes = std::vector<uint8_t>;

constexpr int32_t kWidth = 61;
constexpr int32_t kHeight = 47;
constexpr uint32_t kRgb = 0x120;

Bytes TestPicture() {
  Bytes picture(3 * kWidth * kHeight);
  for (size_t i = 0; i < picture.size(); ++i) picture[i] = static_cast<uint8_t>(i * i >> 3);
  return picture;
}

// Runs one operation in four threads at once, each with a destination of its own, and compares with
// a run before them.
void RunAtOnce(const std::function<void(uint8_t* destination)>& run) {
  Bytes expected(size_t{4} * kWidth * kHeight, 1);
  run(expected.data());
  std::vector<Bytes> results(4, Bytes(expected.size(), 1));
  std::vector<std::thread> threads;
  for (Bytes& result : results) {
    threads.emplace_back([&] { run(result.data()); });
  }
  for (std::thread& thread : threads) thread.join();
  for (const Bytes& result : results) EXPECT_EQ(result, expected);
}

TEST(Threads, CallsShareNothing) {
  const Bytes source = TestPicture();
  RunAtOnce([&](uint8_t* out) { OvraRaw2Dib(source.data(), out, kWidth, kHeight); });
  RunAtOnce([&](uint8_t* out) {
    OvraRotateImage(source.data(), out, kWidth, kHeight, kRgb, OVRA_ROTATE_QUARTER_LEFT);
  });
  RunAtOnce([&](uint8_t* out) {
    OvraCompositeImage(out, kWidth, kHeight, kRgb, source.data(), kWidth, kHeight, kRgb, 3, 5, 0);
  });
  RunAtOnce([&](uint8_t* out) {
    OvraResizeImage(source.data(), kWidth, kHeight, out, kWidth / 2, kHeight / 2, kRgb);
  });
  RunAtOnce([&](uint8_t* out) {
    OvraResizeImage(source.data(), kWidth, kHeight, out, kWidth / 6, kHeight / 6, kRgb);
  });
  RunAtOnce([&](uint8_t* out) { OvraEFilterImage(source.data(), out, kWidth, kHeight, kRgb); });
  const OvraSoftFocusParams soft = {400, 1, 0.1, {}, 0.7};
  RunAtOnce([&](uint8_t* out) { OvraSoftFocus(source.data(), out, kWidth, kHeight, &soft); });
}

TEST(Threads, RunsShareAContext) {
  const Bytes source = TestPicture();
  const int32_t weights[] = {32, 64, 32};
  const std::vector<int16_t> table(2048, 128);
  OvraYUsmContext* mask = nullptr;
  ASSERT_EQ(OvraYUsm_Init(kRgb, 3, weights, 2.0F, table.data(), table.data(), &mask), OVRA_OK);
  RunAtOnce([&](uint8_t* out) { OvraYUsm(source.data(), out, kWidth, kHeight, kRgb, mask); });
  EXPECT_EQ(OvraYUsm_Free(&mask), OVRA_OK);

  OvraColorMatrix matrix = {};
  for (int k = 0; k < 3; ++k) matrix.rows[k][2 - k] = 0.9;
  uintptr_t handle = 0;
  ASSERT_EQ(OvraConvColorMtx_Init(kRgb, kRgb, &matrix, &handle), OVRA_OK);
  RunAtOnce([&](uint8_t* out) {
    OvraConvColorMtx(source.data(), out, kWidth, kHeight, kRgb, kRgb, handle);
  });
  EXPECT_EQ(OvraConvColorMtx_Free(&handle), OVRA_OK);
}

}  // namespace

#endif  // _WIN32
