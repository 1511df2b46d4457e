// SPDX-License-Identifier: MIT
#include <algorithm>
#include <cmath>
#include <cstring>

#include "ovra/geometry.h"
#include "plain.h"

namespace compare {
namespace {

size_t Offset(const Picture& picture, int x, int y) {
  return (static_cast<size_t>(y) * picture.width() + x) * picture.pixel_bytes();
}

void Copy(const Work& work, Picture* target) {
  const Picture& source = *work.source;
  for (int y = 0; y < source.height(); ++y) {
    memcpy(target->data() + Offset(*target, work.x, work.y + y),
           source.data() + Offset(source, 0, y), source.row_bytes());
  }
}

int Blend(int weight, int p, int q) {
  return ((weight + 1) * p + (256 - weight) * q) / 256;
}

void Alpha(const Work& work, Picture* target) {
  const Picture& source = *work.source;
  for (int y = 0; y < source.height(); ++y) {
    const uint8_t* const in = source.data() + Offset(source, 0, y);
    uint8_t* const out = target->data() + Offset(*target, work.x, work.y + y);
    for (int x = 0; x < source.width(); ++x) {
      for (int c = 0; c < 3; ++c) {
        out[3 * x + c] = static_cast<uint8_t>(Blend(in[4 * x + 3], in[4 * x + c], out[3 * x + c]));
      }
    }
  }
}

void Mask(const Work& work, Picture* target) {
  const Picture& source = *work.source;
  for (int y = 0; y < source.height(); ++y) {
    const uint8_t* const in = source.data() + Offset(source, 0, y);
    const uint8_t* const weights = work.mask->data() + Offset(source, 0, y);
    uint8_t* const out = target->data() + Offset(*target, work.x, work.y + y);
    for (size_t i = 0; i < source.row_bytes(); ++i) {
      out[i] = static_cast<uint8_t>(Blend(weights[i], in[i], out[i]));
    }
  }
}

void SwapAndFlip(const Work& work, Picture* target) {
  for (int y = 0; y < target->height(); ++y) {
    const uint8_t* const in = work.source->data() + Offset(*target, 0, target->height() - 1 - y);
    uint8_t* const out = target->data() + Offset(*target, 0, y);
    for (int x = 0; x < target->width(); ++x) {
      out[3 * x] = in[3 * x + 2];
      out[3 * x + 1] = in[3 * x + 1];
      out[3 * x + 2] = in[3 * x];
    }
  }
}

// The fill is 0.
void Canvas(const Work& work, Picture* target) {
  const Picture& source = *work.source;
  for (int y = 0; y < target->height(); ++y) {
    uint8_t* const out = target->data() + Offset(*target, 0, y);
    if (y < work.y || y >= work.y + source.height()) {
      memset(out, 0, target->row_bytes());
      continue;
    }
    const size_t left = Offset(*target, work.x, 0);
    const size_t right = left + source.row_bytes();
    memset(out, 0, left);
    memcpy(out + left, source.data() + Offset(source, 0, y - work.y), source.row_bytes());
    memset(out + right, 0, target->row_bytes() - right);
  }
}

template <int kBytes>
void TurnPixels(const Work& work, Picture* target) {
  const Picture& source = *work.source;
  const int width = target->width();
  const int height = target->height();
  for (int y = 0; y < height; ++y) {
    for (int x = 0; x < width; ++x) {
      int from_x = x;
      int from_y = y;
      switch (work.mode) {
        case OVRA_ROTATE_QUARTER_LEFT:
          from_x = height - 1 - y, from_y = x;
          break;
        case OVRA_ROTATE_HALF:
          from_x = width - 1 - x, from_y = height - 1 - y;
          break;
        case OVRA_ROTATE_QUARTER_RIGHT:
          from_x = y, from_y = width - 1 - x;
          break;
        case OVRA_ROTATE_MIRROR:
          from_x = width - 1 - x;
          break;
        case OVRA_ROTATE_FLIP:
          from_y = height - 1 - y;
          break;
        default:
          from_x = y, from_y = x;
      }
      memcpy(target->data() + Offset(*target, x, y), source.data() + Offset(source, from_x, from_y),
             kBytes);
    }
  }
}

void Turn(const Work& work, Picture* target) {
  switch (target->pixel_bytes()) {
    case 1:
      return TurnPixels<1>(work, target);
    case 3:
      return TurnPixels<3>(work, target);
    case 4:
      return TurnPixels<4>(work, target);
    default:
      return TurnPixels<6>(work, target);
  }
}

// Where the weights of a target column or row start, and what they are.
struct Taps {
  int first;
  std::vector<float> weights;
};

float Cubic(float x) {
  constexpr float a = -0.75F;
  x = std::abs(x);
  if (x < 1) return ((a + 2) * x - (a + 3)) * x * x + 1;
  if (x < 2) return ((a * x - 5 * a) * x + 8 * a) * x - 4 * a;
  return 0;
}

std::vector<Taps> CubicTaps(int from, int to) {
  const float step = static_cast<float>(from) / static_cast<float>(to);
  const float stretch = std::max(step, 1.0F);
  std::vector<Taps> all;
  for (int i = 0; i < to; ++i) {
    const float centre = (static_cast<float>(i) + 0.5F) * step - 0.5F;
    Taps taps = {static_cast<int>(std::ceil(centre - 2 * stretch)), {}};
    float sum = 0;
    for (int k = taps.first; k <= centre + 2 * stretch; ++k) {
      taps.weights.push_back(Cubic((static_cast<float>(k) - centre) / stretch));
      sum += taps.weights.back();
    }
    for (float& weight : taps.weights) weight /= sum;
    all.push_back(taps);
  }
  return all;
}

// Rows first, into floats, then columns.
template <class Sample>
void ResizeSamples(const Work& work, Picture* target) {
  const Picture& source = *work.source;
  const auto channels = static_cast<size_t>(source.channels());
  const std::vector<Taps> columns = CubicTaps(source.width(), target->width());
  const std::vector<Taps> rows = CubicTaps(source.height(), target->height());
  const size_t row_samples = channels * static_cast<size_t>(target->width());
  std::vector<float> middle(row_samples * static_cast<size_t>(source.height()));
  for (int y = 0; y < source.height(); ++y) {
    const Sample* const in =
        SamplesOf<Sample>(&source) + static_cast<size_t>(y) * channels * source.width();
    float* const out = &middle[static_cast<size_t>(y) * row_samples];
    for (size_t x = 0; x < columns.size(); ++x) {
      for (size_t c = 0; c < channels; ++c) {
        float sum = 0;
        for (size_t k = 0; k < columns[x].weights.size(); ++k) {
          const int at = Limit(columns[x].first + static_cast<int>(k), source.width() - 1);
          sum += columns[x].weights[k] * in[static_cast<size_t>(at) * channels + c];
        }
        out[x * channels + c] = sum;
      }
    }
  }
  std::vector<float> sums(row_samples);
  for (size_t y = 0; y < rows.size(); ++y) {
    std::fill(sums.begin(), sums.end(), 0.5F);
    for (size_t k = 0; k < rows[y].weights.size(); ++k) {
      const int at = Limit(rows[y].first + static_cast<int>(k), source.height() - 1);
      const float* const in = &middle[static_cast<size_t>(at) * row_samples];
      for (size_t i = 0; i < row_samples; ++i) sums[i] += rows[y].weights[k] * in[i];
    }
    Sample* const out = SamplesOf<Sample>(target) + y * row_samples;
    for (size_t i = 0; i < row_samples; ++i) {
      out[i] = static_cast<Sample>(Limit(static_cast<int>(sums[i]), target->max()));
    }
  }
}

void Resize(const Work& work, Picture* target) {
  if (target->sample_bytes() == 1) return ResizeSamples<uint8_t>(work, target);
  ResizeSamples<uint16_t>(work, target);
}

constexpr int kPhases = 256;
constexpr int kLobes = 3;

struct Lanczos {
  float weights[kPhases][2 * kLobes];

  Lanczos() {
    constexpr double kPi = 3.14159265358979323846;
    const auto sinc = [](double x) { return x == 0 ? 1 : std::sin(kPi * x) / (kPi * x); };
    for (int phase = 0; phase < kPhases; ++phase) {
      double sum = 0;
      double row[2 * kLobes];
      for (int k = 0; k < 2 * kLobes; ++k) {
        const double distance = k - (kLobes - 1) - static_cast<double>(phase) / kPhases;
        row[k] = sinc(distance) * sinc(distance / kLobes);
        sum += row[k];
      }
      for (int k = 0; k < 2 * kLobes; ++k) weights[phase][k] = static_cast<float>(row[k] / sum);
    }
  }
};

template <class Sample>
void TrimSamples(const Work& work, Picture* target) {
  static const Lanczos kernel;
  const Picture& source = *work.source;
  const int channels = source.channels();
  const double radians = work.amount * 3.14159265358979323846 / 180;
  const double cosine = std::cos(radians);
  const double sine = std::sin(radians);
  const Sample* const in = SamplesOf<Sample>(&source);
  Sample* out = SamplesOf<Sample>(target);
  for (int y = 0; y < target->height(); ++y) {
    for (int x = 0; x < target->width(); ++x, out += channels) {
      const double dx = x - 0.5 * (target->width() - 1);
      const double dy = y - 0.5 * (target->height() - 1);
      const double u = 0.5 * (source.width() - 1) + cosine * dx - sine * dy + 0.5 / kPhases;
      const double v = 0.5 * (source.height() - 1) + sine * dx + cosine * dy + 0.5 / kPhases;
      const int left = static_cast<int>(std::floor(u));
      const int top = static_cast<int>(std::floor(v));
      const float* const across = kernel.weights[static_cast<int>((u - left) * kPhases)];
      const float* const down = kernel.weights[static_cast<int>((v - top) * kPhases)];
      float sums[4] = {0.5F, 0.5F, 0.5F, 0.5F};
      for (int j = 0; j < 2 * kLobes; ++j) {
        const int row = Limit(top + j - (kLobes - 1), source.height() - 1);
        for (int i = 0; i < 2 * kLobes; ++i) {
          const int column = Limit(left + i - (kLobes - 1), source.width() - 1);
          const float weight = down[j] * across[i];
          const Sample* const pixel =
              in + (static_cast<size_t>(row) * source.width() + column) * channels;
          for (int c = 0; c < channels; ++c) sums[c] += weight * pixel[c];
        }
      }
      for (int c = 0; c < channels; ++c) {
        out[c] = static_cast<Sample>(Limit(static_cast<int>(sums[c]), target->max()));
      }
    }
  }
}

void Trim(const Work& work, Picture* target) {
  if (target->sample_bytes() == 1) return TrimSamples<uint8_t>(work, target);
  TrimSamples<uint16_t>(work, target);
}

}  // namespace

Maker PlainLoop(const char* operation, Run* run, Takes* takes) {
  return {operation, [make = Direct(operation, "plain loop", run, takes).make](const Work& work) {
            Participant participant = make(work);
            participant.kind = Kind::kPlainLoop;
            return participant;
          }};
}

void AddPlainGeometry(std::vector<Maker>* makers) {
  makers->insert(
      makers->end(),
      {PlainLoop("resize", Resize), PlainLoop("turn", Turn),  // Slow, and the same at every angle.
       PlainLoop("trimming", Trim, [](const Work& work) { return work.amount == 2.3; }),
       PlainLoop("copy", Copy), PlainLoop("alpha", Alpha), PlainLoop("mask", Mask),
       PlainLoop("DIB to raw", SwapAndFlip), PlainLoop("raw to DIB", SwapAndFlip),
       PlainLoop("canvas", Canvas)});
}

}  // namespace compare
