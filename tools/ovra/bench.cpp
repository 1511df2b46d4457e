// SPDX-License-Identifier: MIT
#include "bench.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdlib>
#include <cstring>
#include <functional>

#include "chain.h"
#include "color_tables.h"
#include "ovra/basic.h"
#include "ovra/color.h"
#include "ovra/version.h"
#include "progress.h"

namespace ovra_host {
namespace {

using Milliseconds = std::chrono::duration<double, std::milli>;
using Clock = std::chrono::steady_clock;

constexpr int32_t kWidth = 2400;
constexpr int32_t kHeight = 1600;
constexpr int kLeastTurns = 3;
constexpr int kMostTurns = 15;
constexpr Milliseconds kEnough{8000};

// The stages of `ovra run` that are timed by what they spend in the library.
constexpr std::array<const char*, 20> kStages = {
    "rotate --mode left",
    "rotate --mode mirror",
    "canvas --size 2600x1800",
    "straighten --angle 2.3 --crop same",
    "resize --scale 25%",
    "resize --scale 75%",
    "resize --scale 75% --fast",
    "resize --crop 0,0,1200,800 --scale 200%",
    "sharpen",
    "sharpen --double",
    "smooth",
    "softfocus",
    "clarity",
    "tone --form hyper",
    "tone --form hyper-light",
    "tone --form hybrid",
    "tone --form hybrid-light",
    "curve --gamma 1.2",
    "matrix --saturation 1.2",
    "matrix --sepia",
};

// Soft shapes with a little noise, as photographs have.
Image DrawPicture() {
  Image image(kWidth, kHeight, FileFormat(8, 3));
  uint32_t random = 1;
  for (int32_t y = 0; y < kHeight; ++y) {
    uint8_t* const row = image.Row(y);
    for (int32_t i = 0; i < 3 * kWidth; ++i) {
      const int32_t x = i / 3;
      const int32_t shape = ((x / 5) ^ (y / 7)) % 128 + (x + y) / 40 % 96;
      random = random * 1664525 + 1013904223;
      row[i] = static_cast<uint8_t>(shape + 8 * (i % 3) + static_cast<int32_t>(random >> 29));
    }
  }
  return image;
}

// By the rule of the library.
std::string TierInUse() {
  __builtin_cpu_init();
  const bool has_sse = __builtin_cpu_supports("sse4.1") != 0;
  const bool has_avx2 = __builtin_cpu_supports("avx2") != 0;
  const char* const variable = std::getenv("OVRA_TIER");
  const std::string asked = variable == nullptr ? "" : variable;
  if (!has_sse || asked == "plain") return "plain";
  return has_avx2 && asked != "sse" ? "avx2" : "sse";
}

double Median(std::vector<double> values) {
  const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
  std::nth_element(values.begin(), middle, values.end());
  return *middle;
}

double MillisecondsOf(const std::function<void()>& work) {
  const Clock::time_point start = Clock::now();
  work();
  return Milliseconds(Clock::now() - start).count();
}

struct Operation {
  std::string function;
  std::string what;
  double megapixels = 0;
  size_t copied_bytes = 0;      // as many as it reads, and as many as it writes
  std::function<double()> run;  // answers milliseconds
  std::vector<double> turns;    // milliseconds
  std::vector<double> shares;   // of the speed of a copy just after it
};

double MegapixelsOf(const Image& image) {
  return 1e-6 * image.width() * image.height();
}

class Bench {
 public:
  Bench() : picture_{DrawPicture(), {}}, copy_(picture_.image) {
    common_.on_time = [this](const std::string& function, double milliseconds) {
      function_ = function;
      milliseconds_ += milliseconds;
    };
    for (const char* stage : kStages) AddStage(stage);
    AddCube();
    AddCompose();
    AddDib();
  }

  BenchResults Run() {
    const Clock::time_point start = Clock::now();
    int turns = 0;
    {
      Progress progress(kMostTurns, "turns");
      while (turns < kLeastTurns || (turns < kMostTurns && Clock::now() - start < kEnough)) {
        for (Operation& operation : operations_) Turn(operation);
        progress.Show(++turns);
      }
    }
    const uint32_t version = OvraGetVersion();
    BenchResults results = {std::to_string(version >> 16) + "." +
                                std::to_string(version >> 8 & 255) + "." +
                                std::to_string(version & 255),
                            TierInUse(),
                            kWidth,
                            kHeight,
                            turns,
                            {}};
    for (const Operation& operation : operations_) {
      const double milliseconds = Median(operation.turns);
      results.results.push_back({operation.function, operation.what,
                                 1000 * operation.megapixels / milliseconds,
                                 Median(operation.shares)});
    }
    return results;
  }

 private:
  void Turn(Operation& operation) {
    const double milliseconds = operation.run();
    const double copy = MillisecondsOf(
        [&] { std::memcpy(copy_.data(), picture_.image.data(), operation.copied_bytes); });
    operation.turns.push_back(milliseconds);
    operation.shares.push_back(copy / milliseconds);
  }

  // What the stage spends in the library; the first run says which function that is, and what comes.
  void AddStage(const std::string& stage) {
    chains_.push_back(std::make_unique<Chain>(stage, common_));
    const Chain* const chain = chains_.back().get();
    const auto run = [this, chain] {
      milliseconds_ = 0;
      result_ = (*chain)(picture_).image;
      return milliseconds_;
    };
    run();
    const size_t bytes = (picture_.image.size_bytes() + result_.size_bytes()) / 2;
    operations_.push_back({function_,
                           stage,
                           MegapixelsOf(picture_.image),
                           std::min(bytes, copy_.size_bytes()),
                           run,
                           {},
                           {}});
  }

  // An operation that no stage makes without files.
  void AddCall(const std::string& function, const std::string& what,
               const std::function<OvraStatus()>& call) {
    const auto run = [this, function, call] {
      milliseconds_ = 0;
      CallLibrary(common_, function, call);
      return milliseconds_;
    };
    operations_.push_back(
        {function, what, MegapixelsOf(picture_.image), copy_.size_bytes(), run, {}, {}});
  }

  void AddCube() {
    CubeFile file;
    file.dimensions = 3;
    file.points = 33;
    for (int i = 0; i < file.points * file.points * file.points; ++i) {
      const double last = file.points - 1;
      const int slice = i / file.points / file.points;
      file.rows.push_back(
          {1 - i % file.points / last, i / file.points % file.points / last, slice / last});
    }
    lattice_ = std::make_unique<CubeLattice>(file, 255, 255);
    AddCall("OvraConvColorCubeSingleStep", "lut of 33 points an axis", [this] {
      const OvraColorCube cube = lattice_->Record();
      const Image& image = picture_.image;
      return OvraConvColorCubeSingleStep(image.data(), result_.data(), image.width(),
                                         image.height(), image.format(), image.format(), &cube);
    });
  }

  void AddCompose() {
    overlay_ = Image(kWidth, kHeight, FileFormat(8, 4));
    std::memcpy(overlay_.data(), picture_.image.data(), picture_.image.size_bytes());
    AddCall("OvraCompositeImage", "compose by alpha", [this] {
      return OvraCompositeImage(result_.data(), kWidth, kHeight, result_.format(), overlay_.data(),
                                kWidth, kHeight, overlay_.format(), 0, 0,
                                OVRA_BLEND_WEIGHT_OF_SOURCE);
    });
  }

  void AddDib() {
    AddCall("OvraRaw2Dib", "rows of a bitmap", [this] {
      OvraRaw2Dib(picture_.image.data(), result_.data(), kWidth, kHeight);
      return OVRA_OK;
    });
  }

  CommonOptions common_;
  Picture picture_;
  Image copy_;
  Image result_ = Image(1, 1, FileFormat(8, 3));
  Image overlay_ = Image(1, 1, FileFormat(8, 4));
  std::string function_;
  double milliseconds_ = 0;
  std::vector<std::unique_ptr<Chain>> chains_;
  std::unique_ptr<CubeLattice> lattice_;
  std::vector<Operation> operations_;
};

}  // namespace

BenchResults RunBench() {
  return Bench().Run();
}

}  // namespace ovra_host
