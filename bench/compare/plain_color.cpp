// SPDX-License-Identifier: MIT
#include <cmath>

#include "plain.h"

namespace compare {
namespace {

// Calls body(in, out) with typed pointers to all samples.
template <class Body>
void WithSamples(const Work& work, Picture* target, const Body& body) {
  const Picture* const source = work.source.get();
  if (source->sample_bytes() == 1) {
    if (target->sample_bytes() == 1) return body(source->data(), target->data());
    return body(source->data(), target->words());
  }
  if (target->sample_bytes() == 1) return body(source->words(), target->data());
  return body(source->words(), target->words());
}

// Trilinear interpolation in floats.
template <int kChannels, class In, class Out>
void ThroughCube(const Cube& cube, const Picture& source, const In* in, Out* out, Out max) {
  const auto points = static_cast<int>(cube.points);
  const float scale = static_cast<float>(points - 1) / static_cast<float>(source.max());
  const size_t steps[3] = {size_t{kChannels} * cube.points * cube.points,
                           size_t{kChannels} * cube.points, kChannels};
  const size_t pixels = source.samples() / 3;
  for (size_t i = 0; i < pixels; ++i) {
    const uint16_t* node = cube.lattice.data();
    float shares[3];
    for (int axis = 0; axis < 3; ++axis) {
      const float place = static_cast<float>(in[3 * i + axis]) * scale;
      const int cell = static_cast<int>(place) < points - 1 ? static_cast<int>(place) : points - 2;
      shares[axis] = place - static_cast<float>(cell);
      node += steps[axis] * static_cast<size_t>(cell);
    }
    for (int c = 0; c < kChannels; ++c) {
      float sum = 0.5F;
      for (int corner = 0; corner < 8; ++corner) {
        float weight = 1;
        size_t at = static_cast<size_t>(c);
        for (int axis = 0; axis < 3; ++axis) {
          const bool far = (corner >> axis & 1) != 0;
          weight *= far ? shares[axis] : 1 - shares[axis];
          at += far ? steps[axis] : 0;
        }
        sum += weight * static_cast<float>(node[at]);
      }
      out[kChannels * i + c] = static_cast<Out>(sum > static_cast<float>(max) ? max : sum);
    }
  }
}

void Cubes(const Work& work, Picture* target) {
  WithSamples(work, target, [&]<class In, class Out>(const In* in, Out* out) {
    const Cube& cube = *work.color->cube;
    const Out max = static_cast<Out>(target->max());
    if (cube.channels == 3) {
      ThroughCube<3>(cube, *work.source, in, out, max);
    } else {
      ThroughCube<4>(cube, *work.source, in, out, max);
    }
  });
}

void Tables(const Work& work, Picture* target) {
  WithSamples(work, target, [&]<class In, class Out>(const In* in, Out* out) {
    std::vector<Out> tables[3];
    for (int c = 0; c < 3; ++c) {
      for (const uint16_t value : work.color->tables[c]) {
        tables[c].push_back(static_cast<Out>(value));
      }
    }
    const Out* const first = tables[0].data();
    const Out* const second = tables[1].data();
    const Out* const third = tables[2].data();
    const size_t samples = target->samples();
    for (size_t i = 0; i < samples; i += 3) {
      out[i] = first[in[i]];
      out[i + 1] = second[in[i + 1]];
      out[i + 2] = third[in[i + 2]];
    }
  });
}

// In integers.
void Matrix(const Work& work, Picture* target) {
  constexpr int kShift = 9;
  int weights[3][4];
  for (int k = 0; k < 3; ++k) {
    for (int j = 0; j < 4; ++j) {
      weights[k][j] = static_cast<int>(work.color->matrix.rows[k][j] * (1 << kShift));
    }
  }
  const int max = target->max();
  WithSamples(work, target, [&]<class In, class Out>(const In* in, Out* out) {
    const size_t samples = target->samples();
    for (size_t i = 0; i < samples; i += 3) {
      for (int k = 0; k < 3; ++k) {
        const int sum = weights[k][0] * in[i] + weights[k][1] * in[i + 1] +
                        weights[k][2] * in[i + 2] + weights[k][3] + (1 << (kShift - 1));
        out[i + static_cast<size_t>(k)] = static_cast<Out>(Limit(sum >> kShift, max));
      }
    }
  });
}

// In doubles, in the order of the terms.
void SecondOrder(const Work& work, Picture* target) {
  const auto& rows = work.color->matrix.rows;
  const double max = target->max();
  WithSamples(work, target, [&]<class In, class Out>(const In* in, Out* out) {
    const size_t samples = target->samples();
    for (size_t i = 0; i < samples; i += 3) {
      const double a = in[i];
      const double b = in[i + 1];
      const double c = in[i + 2];
      for (int k = 0; k < 3; ++k) {
        const double* const w = rows[k];
        const double sum = w[0] * a + w[1] * b + w[2] * c + w[3] + w[4] * (a * a) + w[5] * (b * b) +
                           w[6] * (c * c) + w[7] * (a * b) + w[8] * (b * c) + w[9] * (c * a) + 0.5;
        out[i + static_cast<size_t>(k)] = static_cast<Out>(sum < 0 ? 0 : sum > max ? max : sum);
      }
    }
  });
}

}  // namespace

void AddPlainColor(std::vector<Maker>* makers) {
  makers->insert(makers->end(),
                 {PlainLoop("cube", Cubes), PlainLoop("tables", Tables),
                  PlainLoop("matrix", Matrix), PlainLoop("second-order matrix", SecondOrder)});
}

}  // namespace compare
