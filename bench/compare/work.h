// SPDX-License-Identifier: MIT
// What a case asks for, and who can do it. A file for each library adds its makers; a new operation is
// a row of the cases and a maker in each file that knows it.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "compare.h"
#include "ovra/color.h"

namespace compare {

// A cube of equal steps along all axes, with its grid and its nodes.
struct Cube {
  Cube(uint32_t points, uint32_t channels, uint32_t max_input, uint32_t max_output);
  OvraColorCube View() const;

  uint32_t points;
  uint32_t channels;
  std::vector<uint16_t> grid;
  std::vector<uint16_t> lattice;  // the last axis fastest
};

// The numbers of a colour conversion; an operation uses one of them.
struct ColorNumbers {
  std::shared_ptr<const Cube> cube;
  std::vector<uint16_t> tables[3];
  OvraColorMatrix matrix = {};
};

// The work of one case. Members that the operation does not have stay as they are.
struct Work {
  std::string operation;
  PicturePtr source;
  Size target_size;
  int target_channels;
  int target_depth_bits;
  PicturePtr background = {};  // what the target holds before
  PicturePtr mask = {};
  int x = 0;  // where the source comes to lie
  int y = 0;
  int mode = 0;       // of a turn, the taps of a mask
  double amount = 0;  // the factor of a resize, the degrees of a trimming, 1 for a mask with curves
  int variant = 0;    // the form of tone processing
  std::shared_ptr<const ColorNumbers> color = {};

  PicturePtr NewTarget() const;
};

// One that can do an operation. What `make` answers runs nothing if it does not know the formats.
struct Maker {
  const char* operation;
  std::function<Participant(const Work&)> make;
};

// For work that needs no preparation: `takes` says whether formats are known.
using Run = void(const Work& work, Picture* target);
using Takes = bool(const Work& work);
Maker Direct(const char* operation, const char* name, Run* run, Takes* takes = nullptr);

// A participant with a target of its own, which starts from the background.
Participant NewParticipant(const Work& work, const char* name);

using AddMakers = void(std::vector<Maker>* makers);
AddMakers AddOwn;
AddMakers AddPlainGeometry;
AddMakers AddPlainColor;
AddMakers AddPlainFilters;
// Of these, those are called whose libraries are found.
AddMakers AddOpenCv;
AddMakers AddLibyuv;
AddMakers AddZimg;
AddMakers AddPixman;
AddMakers AddLcms;
AddMakers AddOpenColorIo;
AddMakers AddAvfilter;
AddMakers AddVips;

// The settings of the filters, which all who take part go by.
inline const std::vector<int32_t> kMaskTaps[] = {
    {32, 64, 32}, {8, 32, 48, 32, 8}, {1, 2, 4, 7, 10, 13, 17, 20, 17, 13, 10, 7, 4, 2, 1}};
enum MaskTaps { kThreeTaps, kFiveTaps, kFifteenTaps };  // among these
inline const std::vector<int32_t> kCoarseTaps = {1, 3, 8, 15, 23, 28, 23, 15, 8, 3, 1};
inline const std::vector<int32_t> kFineTaps = {32, 64, 32};
// Curves of a mask: flat ones, or those for photographs.
struct MaskCurves {
  explicit MaskCurves(const Work& work);

  std::vector<int16_t> level;
  std::vector<int16_t> difference;
};
inline constexpr float kMaskAmount = 1.5F;
inline constexpr float kCoarseAmount = 1.5F;
inline constexpr float kFineAmount = 2.0F;
inline constexpr int32_t kFocusRadius = 100;
inline constexpr double kFocusDecay = 0.1;
inline constexpr double kFocusMix = 0.5;

}  // namespace compare
