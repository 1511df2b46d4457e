// SPDX-License-Identifier: MIT
// What is compared: a row for each case. Who takes part follows from the operation.
#include <algorithm>
#include <cmath>
#include <iterator>

#include "compare.h"
#include "ovra/geometry.h"
#include "peers_found.h"
#include "work.h"

namespace compare {
namespace {

struct Row {
  const char* operation;
  const char* variant;
  int channels;  // of the source
  int depth_bits;
  Floor floor = {};
  double amount = 0;  // as the operation's preparation takes it
  int mode = 0;
  int target_depth_bits = 0;  // 0: that of the source
};

Work SameSize(const Row& row, Size size) {
  const int depth = row.target_depth_bits == 0 ? row.depth_bits : row.target_depth_bits;
  Work work = {row.operation, Scene(size, row.channels, row.depth_bits), size, row.channels, depth};
  work.amount = row.amount;
  work.mode = row.mode;
  work.variant = row.mode;
  return work;
}

// `size` is that of the larger picture.
Work Resize(const Row& row, Size size) {
  const auto scaled = [](Size from, double by) {
    return Size{std::max(1, static_cast<int>(from.width * by + 0.5)),
                std::max(1, static_cast<int>(from.height * by + 0.5))};
  };
  Work work = SameSize(row, row.amount <= 1 ? size : scaled(size, 1 / row.amount));
  work.target_size = scaled(work.source->size(), row.amount);
  return work;
}

Work Turn(const Row& row, Size size) {
  Work work = SameSize(row, size);
  const bool swaps = row.mode % 2 == 1;
  if (swaps) work.target_size = {size.height, size.width};
  return work;
}

Size ThreeQuarters(Size size) {
  return {std::max(1, size.width * 3 / 4), std::max(1, size.height * 3 / 4)};
}

// A source of three quarters of the width and height in the middle of a picture.
Work Compose(const Row& row, Size size) {
  const Size small = ThreeQuarters(size);
  Work work = SameSize(row, small);
  const bool alpha = work.operation == "alpha";
  work.target_channels = alpha ? row.channels - 1 : row.channels;
  work.target_size = size;
  work.background = Scene(size, work.target_channels, 8);
  work.mask = Scene(small, row.channels, 8);
  work.x = (size.width - small.width) / 2;
  work.y = (size.height - small.height) / 2;
  return work;
}

Work Canvas(const Row& row, Size size) {
  const Size small = ThreeQuarters(size);
  Work work = SameSize(row, small);
  work.target_size = size;
  work.x = (size.width - small.width) / 2;
  work.y = (size.height - small.height) / 2;
  return work;
}

// `amount` is the points of an axis, `mode` the channels that come out.
Work ThroughCube(const Row& row, Size size) {
  Work work = SameSize(row, size);
  work.target_channels = row.mode;
  auto numbers = std::make_shared<ColorNumbers>();
  numbers->cube =
      std::make_shared<Cube>(static_cast<uint32_t>(row.amount), static_cast<uint32_t>(row.mode),
                             work.source->max(), (1U << work.target_depth_bits) - 1);
  work.color = numbers;
  return work;
}

// Three tone curves.
Work ThroughTables(const Row& row, Size size) {
  Work work = SameSize(row, size);
  auto numbers = std::make_shared<ColorNumbers>();
  const double max_out = (1 << work.target_depth_bits) - 1;
  for (int c = 0; c < 3; ++c) {
    for (int i = 0; i <= work.source->max(); ++i) {
      const double curve = std::pow(static_cast<double>(i) / work.source->max(), 0.6 + 0.2 * c);
      numbers->tables[c].push_back(static_cast<uint16_t>(curve * max_out + 0.5));
    }
  }
  work.color = numbers;
  return work;
}

// More saturation; `amount` adds terms of the second order.
Work ThroughMatrix(const Row& row, Size size) {
  Work work = SameSize(row, size);
  auto numbers = std::make_shared<ColorNumbers>();
  for (int k = 0; k < 3; ++k) {
    for (int j = 0; j < 3; ++j) numbers->matrix.rows[k][j] = k == j ? 1.25 : -0.125;
    numbers->matrix.rows[k][3] = 3;
    for (int t = 4; t < 10; ++t) {
      numbers->matrix.rows[k][t] = row.amount * (t % 2 == 0 ? 1 : -1) / work.source->max();
    }
  }
  work.color = numbers;
  return work;
}

struct Family {
  Work (*prepare)(const Row& row, Size size);
  double least_psnr;  // of pictures that count as the same work
  std::vector<Row> rows;
};

const std::vector<Family>& Families() {
  constexpr double kAnyPicture = 0;  // recipes with the same aim
  static const std::vector<Family> families = {
      {Resize,
       30,
       {
           {"resize", "0.50", 3, 8, {1.8}, 0.5},
           {"resize", "0.50", 1, 8, {1.3}, 0.5},
           {"resize", "0.50", 4, 8, {2}, 0.5},
           {"resize", "0.50", 3, 16, {1.6}, 0.5},
           {"resize", "0.75", 3, 8, {2}, 0.75},
           {"resize", "0.75", 1, 8, {}, 0.75},
           {"resize", "0.75", 4, 8, {}, 0.75},
           {"resize", "0.75", 3, 16, {}, 0.75},
           {"resize", "2.00", 3, 8, {2}, 2},
           {"resize", "2.00", 1, 8, {}, 2},
           {"resize", "2.00", 4, 8, {}, 2},
           {"resize", "2.00", 3, 16, {}, 2},
           {"resize", "0.10", 3, 8, {2}, 0.1},
           {"resize", "0.10", 1, 8, {1.2}, 0.1},
           {"resize", "0.10", 4, 8, {}, 0.1},
           {"resize", "0.10", 3, 16, {}, 0.1},
       }},
      {Turn, 900,
       [] {
         struct Kind {
           const char* name;
           int mode;
           Floor floor;
         };
         constexpr Floor kMove = {1, 0, 0.9};
         const Kind kinds[] = {{"quarter left", OVRA_ROTATE_QUARTER_LEFT, {2}},
                               {"half turn", OVRA_ROTATE_HALF, kMove},
                               {"quarter right", OVRA_ROTATE_QUARTER_RIGHT, {2}},
                               {"mirror", OVRA_ROTATE_MIRROR, kMove},
                               {"flip", OVRA_ROTATE_FLIP, kMove},
                               {"transpose", OVRA_ROTATE_TRANSPOSE, {2}}};
         std::vector<Row> rows;
         for (const Kind& kind : kinds) {
           for (const auto& [channels, depth_bits] : {std::pair{1, 8}, {3, 8}, {4, 8}, {3, 16}}) {
             rows.push_back({"turn", kind.name, channels, depth_bits, kind.floor, 0, kind.mode});
           }
         }
         return rows;
       }()},
      {SameSize,
       30,
       {
           {"trimming", "0.7 degrees", 3, 8, {}, 0.7},
           {"trimming", "2.3 degrees", 3, 8, {}, 2.3},
           {"trimming", "10 degrees", 3, 8, {}, 10},
           {"trimming", "45 degrees", 3, 8, {}, 45},
           {"trimming", "88.5 degrees", 3, 8, {}, 88.5},
           {"trimming", "2.3 degrees", 1, 8, {}, 2.3},
           {"trimming", "2.3 degrees", 4, 8, {}, 2.3},
           {"trimming", "2.3 degrees", 3, 16, {}, 2.3},
       }},
      {Compose,
       30,
       {
           {"copy", "into the middle", 3, 8, {1, 0, 0.9}},
           {"alpha", "over", 4, 8, {3.5}},
           {"mask", "a weight a sample", 3, 8, {1.3}},
       }},
      {SameSize,
       900,
       {
           {"DIB to raw", "turned and reversed", 3, 8, {1.3, 0, 0.9}},
           {"raw to DIB", "turned and reversed", 3, 8, {1.3, 0, 0.9}},
       }},
      {Canvas,
       900,
       {
           {"canvas", "border of an eighth", 1, 8, {1.1, 0, 0.9}},
           {"canvas", "border of an eighth", 3, 8, {1.1, 0, 0.9}},
           {"canvas", "border of an eighth", 4, 8, {1.1, 0, 0.9}},
           {"canvas", "border of an eighth", 3, 16, {1.1, 0, 0.9}},
       }},
      {SameSize,
       30,
       {
           {"luminance mask", "3 taps", 3, 8, {2.5}, 0, kThreeTaps},
           {"luminance mask", "3 taps", 3, 12, {2.5}, 0, kThreeTaps},
           {"luminance mask", "5 taps", 3, 8, {2.5}, 0, kFiveTaps},
           {"luminance mask", "5 taps", 3, 12, {2.5}, 0, kFiveTaps},
           {"luminance mask", "15 taps", 3, 8, {2.5}, 0, kFifteenTaps},
           {"luminance mask", "15 taps", 3, 12, {2.5}, 0, kFifteenTaps},
           {"luminance mask", "5 taps, curves for photographs", 3, 8, {}, 1, kFiveTaps},
           {"double mask", "11 and 3 taps", 3, 8, {3}},
           {"double mask", "11 and 3 taps, curves for photographs", 3, 8, {}, 1},
           {"edge filter", "49 neighbours", 3, 8, {8}},
           {"soft focus", "radius 100", 3, 8, {0, 4}},
       }},
      {ThroughCube,
       30,
       {
           {"cube", "17 points", 3, 8, {8}, 17, 3},
           {"cube", "33 points", 3, 8, {8}, 33, 3},
           {"cube", "17 points to 4 channels", 3, 8, {8}, 17, 4},
           {"cube", "17 points to 12 bits", 3, 16, {8}, 17, 3, 12},
           {"cube", "33 points to 12 bits", 3, 16, {8}, 33, 3, 12},
           {"cube", "17 points to 4 channels of 12 bits", 3, 16, {8}, 17, 4, 12},
       }},
      {ThroughTables,
       900,
       {
           {"tables", "to 8 bits", 3, 8, {0, 3}},
           {"tables", "to 16 bits", 3, 8, {0, 1.6}, 0, 0, 16},
           {"tables", "to 8 bits", 3, 16, {0, 1.6}, 0, 0, 8},
           {"tables", "to 16 bits", 3, 16, {0, 1.6}},
       }},
      {ThroughMatrix,
       30,
       {
           {"matrix", "first order", 3, 8, {2, 0, 0.85}},
           {"matrix", "first order", 3, 16, {2, 0, 0.85}},
           {"second-order matrix", "all terms", 3, 8, {0, 5}, 0.05},
           {"second-order matrix", "all terms", 3, 16, {0, 5}, 0.05},
       }},
      {SameSize,
       kAnyPicture,
       {
           {"multi-frequency", "4 bands", 3, 12},
           {"tone", "OvraHyperTone", 3, 12, {}, 0, 0},
           {"tone", "OvraHyperToneLight", 3, 12, {}, 0, 1},
           {"tone", "OvraHybridHyperTone", 3, 12, {}, 0, 2},
           {"tone", "OvraHybridHyperToneLight", 3, 12, {}, 0, 3},
       }},
  };
  return families;
}

const std::vector<Maker>& Makers() {
  static const std::vector<Maker> makers = [] {
    std::vector<Maker> all;
    for (AddMakers* const add : kMakersFound) add(&all);
    return all;
  }();
  return makers;
}

// What is touched, once: the pixels that are placed are read and written, with weights also read.
size_t BytesMoved(const Work& work) {
  const auto target = static_cast<size_t>(work.target_size.Pixels()) *
                      static_cast<size_t>(work.target_channels) *
                      (work.target_depth_bits > 8 ? 2U : 1U);
  const size_t source = work.source->bytes();
  if (work.background == nullptr) return source + target;
  const size_t placed = source / static_cast<size_t>(work.source->channels()) *
                        static_cast<size_t>(work.target_channels);
  if (work.operation == "copy") return source + placed;
  return source + 2 * placed + (work.operation == "mask" ? source : 0);
}

Case MakeCase(const Family& family, const Row& row, Size size, bool ours_alone) {
  const Work work = family.prepare(row, size);
  const double target_pixels =
      work.background == nullptr ? work.target_size.Pixels() : work.source->size().Pixels();
  Case result = {std::max(work.source->size().Pixels(), target_pixels),
                 BytesMoved(work),
                 {},
                 family.least_psnr,
                 row.floor};
  for (const Maker& maker : Makers()) {
    if (maker.operation != work.operation) continue;
    Participant participant = maker.make(work);
    if (participant.run) result.participants.push_back(std::move(participant));
    if (ours_alone) break;  // the first
  }
  return result;
}

std::string NameOf(const Row& row, Size size) {
  const char* const model = row.channels == 1 ? "grey" : row.channels == 3 ? "RGB" : "RGBA";
  return std::string(row.operation) + "/" + row.variant + "/" + std::to_string(row.depth_bits) +
         "-bit " + model + "/" + size.Name();
}

}  // namespace

std::vector<NamedCase> Cases(Size size, bool ours_alone) {
  std::vector<NamedCase> cases;
  for (const Family& family : Families()) {
    for (const Row& row : family.rows) {
      cases.push_back({NameOf(row, size), [&family, &row, size, ours_alone] {
                         return MakeCase(family, row, size, ours_alone);
                       }});
    }
  }
  return cases;
}

}  // namespace compare
