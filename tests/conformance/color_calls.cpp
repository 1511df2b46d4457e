// SPDX-License-Identifier: MIT
#include <algorithm>
#include <limits>

#include "conformance/operations.h"

namespace ovra_test {
namespace {

// Grid positions from about 0 to about `last`; few of them do not increase.
const uint16_t* DrawGrid(Call& call, int32_t count, int32_t last) {
  auto* const grid = call.Input<uint16_t>(static_cast<size_t>(count));
  const bool even = call.draw.OneIn(2);
  const int32_t step = std::max(1, last / (count - 1));
  int32_t position = even ? 0 : call.draw.Int(0, step);
  for (int32_t i = 0; i < count; ++i) {
    grid[i] = static_cast<uint16_t>(std::min(position, 0xFFFF));
    position += even ? step : call.draw.Int(1, std::max(1, 2 * step - 1));
  }
  if (call.draw.OneIn(16)) std::swap(grid[0], grid[count - 1]);
  return grid;
}

// A cube without its lattice, and how many nodes that has.
struct Grids {
  OvraColorCube cube;
  size_t nodes;
};

Grids DrawGrids(Call& call, int32_t last) {
  const int32_t most = call.draw.Of({2, 5, 9, 17});
  const int32_t counts[] = {call.draw.Int(2, most), call.draw.Int(2, most), call.draw.Int(2, most)};
  OvraColorCube cube = {};
  cube.count0 = static_cast<uint32_t>(counts[0]);
  cube.grid0 = DrawGrid(call, counts[0], last);
  cube.count1 = static_cast<uint32_t>(counts[1]);
  cube.grid1 = DrawGrid(call, counts[1], last);
  cube.count2 = static_cast<uint32_t>(counts[2]);
  cube.grid2 = DrawGrid(call, counts[2], last);
  const size_t nodes = size_t{cube.count0} * cube.count1 * cube.count2;
  if (call.draw.Errs()) cube.count1 = call.draw.Of({0U, 0x80000001U, 0xFFFFFFFFU});
  return {cube, nodes};
}

uint16_t* DrawLattice(Call& call, size_t count, uint32_t max, uint16_t* lattice) {
  Random random(call.draw.Bits());
  if (call.draw.OneIn(2)) {
    FillSamples(random, lattice, lattice + count, max);
  } else {  // neighbours differ little, as in cubes of a measured device
    for (size_t i = 0; i < count; ++i) {
      lattice[i] = static_cast<uint16_t>((i * 29 + (random() & 15)) % (max + 1));
    }
  }
  return lattice;
}

struct Images {
  Shape in;
  Shape out;
  const uint8_t* source;
  uint8_t* destination;
};

// Images of three channels, or `out_models`' ones; the rows of both are aligned as the input says.
Images DrawImages(Call& call, std::initializer_list<OvraColorModel> out_models,
                  uint32_t max_out_depth) {
  Images images = {};
  const int32_t width = call.draw.Size(1, 700);
  const int32_t height = call.draw.Int(1, 4);
  images.in = call.OrWrong(
      {width, height, call.Format({OVRA_MODEL_RGB, OVRA_MODEL_BGR, OVRA_MODEL_YCC}, 16)});
  images.out = {images.in.width, images.in.height, call.Format(out_models, max_out_depth)};
  images.out.format = call.OrWrong(images.out).format;
  images.source = call.Source(images.in);
  images.destination =
      call.Destination(images.out.WithAlignmentOf(images.in.format), Padding::kKept);
  return images;
}

double DrawNumber(Draw& draw, int32_t magnitude) {
  constexpr double kInfinity = std::numeric_limits<double>::infinity();
  if (draw.OneIn(24)) {
    return draw.Of({kInfinity, -kInfinity, std::numeric_limits<double>::quiet_NaN(), 1e300, -1e300,
                    1e-300, -0.0});
  }
  return draw.Int(-65536, 65536) / 65536.0 * magnitude;
}

constexpr OvraStatus kLeft = -1;  // a handle after its release

// Runs a conversion in one call, or by a handle.
template <class Parameters, class SingleStep, class Init, class Convert, class Free>
void RunConversion(Call& call, const Images& i, const Parameters* parameters,
                   SingleStep* single_step, Init* init, Convert* convert, Free* free) {
  const bool in_one_call = call.draw.OneIn(2);
  call.Run([&] {
    if (in_one_call) {
      return single_step(i.source, i.destination, i.in.width, i.in.height, i.in.format,
                         i.out.format, parameters);
    }
    uintptr_t handle = 1;  // not one; 0 after a failure
    OvraStatus status = init(i.in.format, i.out.format, parameters, &handle);
    if (status == OVRA_OK) {
      const auto with = [&](Convert* function) {
        return [&i, function, handle](auto* source, auto* destination, int32_t rows) {
          return function(source, destination, i.in.width, rows, i.in.format, i.out.format, handle);
        };
      };
      if (call.draw.Errs()) {  // a handle given to another family
        for (Convert* const other :
             {OvraConvColorCube, OvraConvColor1DTbl, OvraConvColorCoef, OvraConvColorMtx}) {
          if (other != convert) with(other)(i.source, i.destination, i.in.height);
        }
      }
      const auto height = static_cast<uint32_t>(i.in.height);
      status = call.Convert({i.source, i.destination, 0, height}, with(convert));
    }
    if (free(&handle); handle != 0) return kLeft;
    return status;
  });
}

}  // namespace

void Cube(Call& call) {
  const Images images =
      DrawImages(call, {OVRA_MODEL_RGB, OVRA_MODEL_BGR, OVRA_MODEL_YCC, OVRA_MODEL_CMYK}, 12);
  Grids grids = DrawGrids(call, static_cast<int32_t>(images.in.MaxSample()));
  const size_t components = grids.nodes * images.out.Channels();
  // Nodes beyond the output's depth are clamped or wrap round, as the input's depth has it.
  const uint32_t most = call.draw.OneIn(6) ? 0xFFFF : images.out.MaxSample();
  grids.cube.lattice = DrawLattice(call, components, most, call.Input<uint16_t>(components));
  RunConversion(call, images, &grids.cube, OvraConvColorCubeSingleStep, OvraConvColorCube_Init,
                OvraConvColorCube, OvraConvColorCube_Free);
}

void Cascade(Call& call) {
  constexpr uint32_t kMaxNode = 4095;
  Grids first = DrawGrids(call, 255);
  Grids second = DrawGrids(call, kMaxNode);
  first.cube.lattice =
      DrawLattice(call, 3 * first.nodes, kMaxNode, call.Output<uint16_t>(3 * first.nodes));
  second.cube.lattice =
      DrawLattice(call, 3 * second.nodes, kMaxNode, call.Input<uint16_t>(3 * second.nodes));
  call.SetNoMemoryStatus(OVRA_ERROR_CASCADE_CONVERSION);
  call.Run([&] { return OvraCascade3D(&first.cube, &second.cube); });
}

void ChannelTables(Call& call) {
  const Images images = DrawImages(call, {OVRA_MODEL_RGB, OVRA_MODEL_BGR, OVRA_MODEL_YCC}, 16);
  const size_t entries = size_t{images.in.MaxSample()} + 1;
  const uint32_t most = call.draw.Of({0xFFFFU, images.out.MaxSample()});
  const OvraChannelTableSet tables = {
      {call.Samples(entries, most), call.Samples(entries, most), call.Samples(entries, most)}};
  RunConversion(call, images, &tables, OvraConvColor1DTblSingleStep, OvraConvColor1DTbl_Init,
                OvraConvColor1DTbl, OvraConvColor1DTbl_Free);
}

void Polynomials(Call& call) {
  const Images images = DrawImages(call, {OVRA_MODEL_RGB, OVRA_MODEL_BGR, OVRA_MODEL_YCC}, 16);
  const auto out_max = static_cast<int32_t>(images.out.MaxSample());
  OvraChannelPolynomial polynomials[3] = {};
  for (OvraChannelPolynomial& p : polynomials) {
    p = {DrawNumber(call.draw, out_max), DrawNumber(call.draw, 64), 0, 0};
    const int32_t divisor_bits = call.draw.Int(0, 12);
    p.c2 = DrawNumber(call.draw, 1) / (1 << divisor_bits);
  }
  RunConversion(call, images, polynomials, OvraConvColorCoefSingleStep, OvraConvColorCoef_Init,
                OvraConvColorCoef, OvraConvColorCoef_Free);
}

void Matrix(Call& call) {
  const Images images = DrawImages(call, {OVRA_MODEL_RGB, OVRA_MODEL_BGR, OVRA_MODEL_YCC}, 16);
  const bool second_order = call.draw.OneIn(2);
  const int32_t magnitude = call.draw.Of({1, 2, 300});
  OvraColorMatrix matrix = {};
  for (auto& row : matrix.rows) {
    for (int t = 0; t < 3; ++t) row[t] = DrawNumber(call.draw, magnitude);
    row[3] = DrawNumber(call.draw, 300);
    for (int t = 4; t < 10 && second_order; ++t) row[t] = DrawNumber(call.draw, 1) / 256.0;
  }
  RunConversion(call, images, &matrix, OvraConvColorMtxSingleStep, OvraConvColorMtx_Init,
                OvraConvColorMtx, OvraConvColorMtx_Free);
}

}  // namespace ovra_test
