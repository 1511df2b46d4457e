// SPDX-License-Identifier: MIT
#include "work.h"

#include <cstring>

#include "ovra/filter.h"

namespace compare {

// A look that bends every axis.
Cube::Cube(uint32_t points_an_axis, uint32_t out_channels, uint32_t max_input, uint32_t max_output)
    : points(points_an_axis), channels(out_channels) {
  for (uint32_t i = 0; i < points; ++i) {
    grid.push_back(static_cast<uint16_t>(i * max_input / (points - 1)));
  }
  const double last = points - 1;
  for (uint32_t node = 0; node < points * points * points; ++node) {
    const double a = node / points / points / last;
    const double b = node / points % points / last;
    const double c = node % points / last;
    const double values[] = {a * (1 - b * c / 3), b * (1 - a * c / 3), c * (1 - a * b / 3),
                             1 - a * b * c};
    for (uint32_t k = 0; k < channels; ++k) {
      lattice.push_back(static_cast<uint16_t>(values[k] * max_output + 0.5));
    }
  }
}

OvraColorCube Cube::View() const {
  return {points,
          grid.data(),
          points,
          grid.data(),
          points,
          grid.data(),
          const_cast<uint16_t*>(lattice.data())};
}

MaskCurves::MaskCurves(const Work& work)
    : level(OVRA_LEVEL_TABLE_SIZE, 128), difference(OVRA_DIFFERENCE_TABLE_SIZE, 128) {
  if (work.amount == 0) return;
  OvraResponsePoint level_points[OVRA_DEFAULT_LEVEL_POINTS];
  OvraResponsePoint difference_points[OVRA_DEFAULT_DIFFERENCE_POINTS];
  OvraDefaultCurves(level_points, difference_points);
  OvraYUsmMakeTable(work.source->format(), OVRA_DEFAULT_LEVEL_POINTS, level_points,
                    OVRA_DEFAULT_DIFFERENCE_POINTS, difference_points, level.data(),
                    difference.data());
}

PicturePtr Work::NewTarget() const {
  return std::make_shared<Picture>(target_size, target_channels, target_depth_bits);
}

Participant NewParticipant(const Work& work, const char* name) {
  Participant participant = {name, work.NewTarget(), {}};
  if (work.background != nullptr) {
    participant.prepare = [target = participant.result, background = work.background] {
      memcpy(target->data(), background->data(), background->bytes());
    };
  }
  return participant;
}

Maker Direct(const char* operation, const char* name, Run* run, Takes* takes) {
  return {operation, [=](const Work& work) {
            if (takes != nullptr && !takes(work)) return Participant{};
            Participant participant = NewParticipant(work, name);
            participant.run = [=, target = participant.result.get()] { run(work, target); };
            return participant;
          }};
}

}  // namespace compare
