// SPDX-License-Identifier: MIT
// One picture on several threads: bands of rows go through one prepared conversion at the same time.
// docs/threads.md tells which operations allow that.
#include <algorithm>
#include <iostream>
#include <ovra/ovra.hpp>
#include <thread>
#include <vector>

namespace {

// Calls work(first row, rows) for bands that make up the height, each on a thread of its own.
template <class Work>
void InBands(int32_t height, uint32_t threads, const Work& work) {
  const int64_t bands = std::clamp<int64_t>(threads, 1, height);
  std::vector<std::thread> running;
  for (int64_t i = 0; i < bands; ++i) {
    const auto first = static_cast<int32_t>(height * i / bands);
    const auto last = static_cast<int32_t>(height * (i + 1) / bands);
    running.emplace_back(work, first, last - first);
  }
  for (std::thread& thread : running) thread.join();
}

ovra::Image Ramp(ovra::Size size) {
  ovra::Image image(size, ovra::Format::Rgb());
  for (int32_t y = 0; y < size.height; ++y) {
    for (int32_t i = 0; i < 3 * size.width; ++i) image.Row(y)[i] = static_cast<uint8_t>(y + i);
  }
  return image;
}

}  // namespace

int main() {
  std::vector<uint16_t> negative(256);
  for (size_t v = 0; v < negative.size(); ++v) negative[v] = static_cast<uint16_t>(255 - v);
  const auto convert =
      ovra::ChannelTableConversion::Make(ovra::Format::Rgb(), ovra::Format::Rgb(),
                                         {{negative.data(), negative.data(), negative.data()}})
          .value();

  const ovra::Image picture = Ramp({1200, 801});
  ovra::Image result(picture.size(), picture.format());
  const ovra::MutableView to = result;
  InBands(picture.height(), std::thread::hardware_concurrency(), [&](int32_t first, int32_t rows) {
    convert(picture.view().Rows(first, rows), to.Rows(first, rows)).OrThrow();
  });

  int64_t wrong = 0;
  for (int32_t y = 0; y < picture.height(); ++y) {
    for (int32_t i = 0; i < 3 * picture.width(); ++i) {
      if (result.Row(y)[i] != 255 - picture.Row(y)[i]) ++wrong;
    }
  }
  std::cout << picture.height() << " rows converted, " << wrong << " samples wrong\n";
  return wrong == 0 ? 0 : 1;
}
