// SPDX-License-Identifier: MIT
// A slow resize, straight from its definition: every destination sample by itself, in wide numbers,
// without ring and without work memory that could go wrong.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <map>
#include <vector>

namespace ovra_test {

struct ResizeCase {
  int32_t source_width;
  int32_t source_height;
  int32_t destination_width;
  int32_t destination_height;
  int32_t x, y, width, height;
  int32_t depth_bits;
  int32_t channels;
  int32_t alignment;
  bool bottom_up;
  double horizontal_factor;
  double vertical_factor;
  float horizontal_stretch;
  float vertical_stretch;
  int32_t horizontal_taps;
  int32_t vertical_taps;

  int32_t SampleBytes() const { return depth_bits == 8 ? 1 : 2; }
  size_t RowBytes(int32_t pixels) const {
    return static_cast<size_t>(pixels) * static_cast<size_t>(channels * SampleBytes());
  }
  size_t Stride(int32_t pixels) const {
    const auto step = static_cast<size_t>(alignment);
    return (RowBytes(pixels) + step - 1) / step * step;
  }
  // Bytes up to the last pixel: the padding of the last row need not exist.
  size_t ImageBytes(int32_t pixels, int32_t rows) const {
    return Stride(pixels) * static_cast<size_t>(rows - 1) + RowBytes(pixels);
  }
};

class ResizeReference {
 public:
  ResizeReference(const ResizeCase& c, const float* table, const uint8_t* source)
      : case_(c), source_(source) {
    columns_ = Sets(c.destination_width, c.x, c.width, c.horizontal_factor, c.horizontal_stretch,
                    c.horizontal_taps, table);
    const int64_t top = c.bottom_up ? int64_t{c.source_height} - c.y - c.height : c.y;
    rows_ = Sets(c.destination_height, top, c.height, c.vertical_factor, c.vertical_stretch,
                 c.vertical_taps, table);
  }

  // Writes all pixels and leaves padding alone.
  void Write(uint8_t* destination) {
    for (int32_t j = 0; j < case_.destination_height; ++j) {
      uint8_t* row = destination + case_.Stride(case_.destination_width) * static_cast<size_t>(j);
      for (int32_t i = 0; i < case_.destination_width * case_.channels; ++i) {
        const auto value = static_cast<uint16_t>(Sample(j, static_cast<size_t>(i)));
        if (case_.depth_bits == 8) {
          row[i] = static_cast<uint8_t>(value);
        } else {
          std::memcpy(row + 2 * i, &value, 2);
        }
      }
    }
  }

 private:
  struct Set {
    double centre = 0;
    std::vector<int64_t> weights;
  };

  static std::vector<Set> Sets(int32_t n, int64_t start, int32_t extent, double scale,
                               float stretch, int32_t taps, const float* table) {
    const double centre = static_cast<double>(start) + (extent - 1) * 0.5;
    const double step = (1 / static_cast<double>(stretch)) * 4096;
    std::vector<Set> sets;
    const int32_t last = n % 2 == 0 ? n / 2 - 1 : n / 2;
    for (int32_t k = -(n / 2); k <= last; ++k) {
      const double p = (k + (n % 2 == 0 ? 0.5 : 0.0)) * (1 / scale) + centre;
      const double f = p - std::floor(p);
      std::vector<double> values;
      double sum = 0;
      for (int32_t t = -((taps - 1) / 2); t <= taps / 2; ++t) {
        const double entry = (t <= 0 ? f - t : t - f) * step;
        const bool inside = !(entry >= 16384);  // what is not a number looks up entry 0
        values.push_back(
            inside ? static_cast<double>(table[std::isnan(entry) ? 0 : static_cast<int>(entry)])
                   : 0);
        sum += values.back();
      }
      Set set;
      set.centre = std::isnan(p) ? 0 : std::clamp(std::floor(p), -1e15, 1e15);
      for (const double value : values) {
        const bool usable = std::isfinite(sum) && sum != 0;
        const double weight = usable ? value / sum * 1024 : 0;
        set.weights.push_back(static_cast<int64_t>(std::clamp(weight, -32768.0, 32767.0)));
      }
      sets.push_back(set);
    }
    return sets;
  }

  static int32_t Low32(int64_t value) { return static_cast<int32_t>(static_cast<uint32_t>(value)); }

  static int64_t TapIndex(const Set& set, size_t k, int32_t extent) {
    const auto before = static_cast<int64_t>(set.weights.size() - 1) / 2;
    return std::clamp<int64_t>(static_cast<int64_t>(set.centre) - before + static_cast<int64_t>(k),
                               0, extent - 1);
  }

  int64_t SourceSample(int64_t row, int64_t index) const {
    const uint8_t* at = source_ + case_.Stride(case_.source_width) * static_cast<size_t>(row);
    if (case_.depth_bits == 8) return at[index];
    uint16_t value = 0;
    std::memcpy(&value, at + 2 * index, 2);
    return value;
  }

  const std::vector<int64_t>& FilteredRow(int64_t row) {
    std::vector<int64_t>& samples = filtered_[row];
    if (!samples.empty()) return samples;
    for (const Set& set : columns_) {
      for (int32_t c = 0; c < case_.channels; ++c) {
        int64_t sum = 32;
        for (size_t k = 0; k < set.weights.size(); ++k) {
          const int64_t column = TapIndex(set, k, case_.source_width);
          sum += SourceSample(row, column * case_.channels + c) * set.weights[k];
        }
        const int32_t value = Low32(sum) >> 6;
        samples.push_back(case_.depth_bits == 8 ? static_cast<int16_t>(value) : value);
      }
    }
    return samples;
  }

  int64_t Sample(int32_t j, size_t i) {
    const Set& set = rows_[static_cast<size_t>(j)];
    // Source rows are only ever read in rising order: under a negative factor the first ones stay.
    const Set& position = case_.vertical_factor < 0 ? rows_.front() : set;
    int64_t sum = 8192;
    for (size_t k = 0; k < set.weights.size(); ++k) {
      const int64_t row = TapIndex(position, k, case_.source_height);
      sum += FilteredRow(row)[i] * set.weights[k];
    }
    return std::clamp(Low32(sum) >> 14, 0, (1 << case_.depth_bits) - 1);
  }

  const ResizeCase& case_;
  const uint8_t* source_;
  std::vector<Set> columns_;
  std::vector<Set> rows_;
  std::map<int64_t, std::vector<int64_t>> filtered_;
};

}  // namespace ovra_test
