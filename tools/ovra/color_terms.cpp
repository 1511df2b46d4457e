// SPDX-License-Identifier: MIT
#include "color_terms.h"

#include <charconv>
#include <cmath>
#include <cstdio>
#include <string_view>
#include <vector>

#include "error.h"
#include "files.h"

namespace ovra_host {
namespace {

constexpr size_t kMaxTextBytes = 1 << 16;
constexpr size_t kConstantTerm = 3;  // terms of second order follow it

// The luminance of linear red, green and blue with the primaries of ITU-R BT.709.
constexpr double kLuminance[] = {0.2126, 0.7152, 0.0722};

std::string ReadText(const InputFile& file) {
  if (file.size() > kMaxTextBytes) file.Refuse("is too long for a color matrix");
  std::string text(static_cast<size_t>(file.size()), '\0');
  if (std::fread(text.data(), 1, text.size(), file.stream()) != text.size()) {
    file.Refuse("cannot be read");
  }
  return text;
}

// The numbers of a line; false when there is anything else before a #.
bool ParseNumbers(std::string_view line, std::vector<double>* numbers) {
  constexpr std::string_view kSeparators = " \t\r,";
  line = line.substr(0, line.find('#'));
  while (true) {
    const size_t start = line.find_first_not_of(kSeparators);
    if (start == std::string_view::npos) return true;
    line.remove_prefix(start);
    const std::string_view word = line.substr(0, line.find_first_of(kSeparators));
    double number = 0;
    const auto [stop, error] = std::from_chars(word.data(), word.data() + word.size(), number);
    if (error != std::errc() || stop != word.data() + word.size() || !std::isfinite(number)) {
      return false;
    }
    numbers->push_back(number);
    line.remove_prefix(word.size());
  }
}

// The library truncates the weights of a matrix without second-order terms to 1/512 for 8 and 16
// bits, and the constant to whole codes. Rounded here, they keep what they have; and the greatest one
// takes up what the sum of a row loses, so that greys stay neutral and white stays white.
void RoundLinearRow(double (&row)[10]) {
  constexpr double kSteps = 512;
  const double sum = std::round((row[0] + row[1] + row[2]) * kSteps);
  size_t greatest = 0;
  double rounded_sum = 0;
  for (size_t t = 0; t < kConstantTerm; ++t) {
    row[t] = std::round(row[t] * kSteps);
    rounded_sum += row[t];
    if (std::abs(row[t]) > std::abs(row[greatest])) greatest = t;
  }
  row[greatest] += sum - rounded_sum;
  for (size_t t = 0; t < kConstantTerm; ++t) row[t] /= kSteps;
  row[kConstantTerm] = std::round(row[kConstantTerm]);
}

}  // namespace

ColorTerms SepiaTerms() {
  return {{{0.393, 0.769, 0.189}, {0.349, 0.686, 0.168}, {0.272, 0.534, 0.131}}};
}

ColorTerms SaturationTerms(double saturation) {
  ColorTerms terms = {};
  for (size_t k = 0; k < 3; ++k) {
    for (size_t j = 0; j < 3; ++j) {
      terms[k][j] = (1 - saturation) * kLuminance[j] + (j == k ? saturation : 0);
    }
  }
  return terms;
}

ColorTerms GainTerms(const std::array<double, 3>& gains) {
  ColorTerms terms = {};
  for (size_t k = 0; k < 3; ++k) terms[k][k] = gains[k];
  return terms;
}

ColorTerms ReadColorTerms(const std::string& path) {
  const InputFile file(path);
  const std::string text = ReadText(file);
  ColorTerms terms = {};
  size_t rows = 0;
  size_t row_length = 0;
  int line_number = 0;
  for (std::string_view rest = text; !rest.empty();) {
    const size_t length = rest.find('\n');
    const std::string_view line = rest.substr(0, length);
    rest.remove_prefix(length == std::string_view::npos ? rest.size() : length + 1);
    const std::string where = "line " + std::to_string(++line_number) + ": ";
    std::vector<double> numbers;
    if (!ParseNumbers(line, &numbers)) file.Refuse(where + "is not a row of numbers");
    if (numbers.empty()) continue;
    if (rows == terms.size()) file.Refuse(where + "is more than three rows");
    if (rows == 0) row_length = numbers.size();
    if (numbers.size() != row_length || (row_length != 3 && row_length != terms[0].size())) {
      file.Refuse(where + "has " + std::to_string(numbers.size()) +
                  " numbers; rows have 3 or 10, all alike");
    }
    for (size_t t = 0; t < numbers.size(); ++t) terms[rows][t] = numbers[t];
    ++rows;
  }
  if (rows < terms.size()) file.Refuse("has less than three rows");
  return terms;
}

OvraColorMatrix MakeColorMatrix(const ColorTerms& terms, uint32_t max_sample) {
  OvraColorMatrix matrix = {};
  bool is_linear = true;
  for (size_t k = 0; k < terms.size(); ++k) {
    for (size_t t = 0; t < terms[k].size(); ++t) {
      const double scale = t < kConstantTerm    ? 1
                           : t == kConstantTerm ? max_sample
                                                : 1.0 / max_sample;
      matrix.rows[k][t] = terms[k][t] * scale;
      is_linear &= t <= kConstantTerm || terms[k][t] == 0;
    }
  }
  if (is_linear) {
    for (double(&row)[10] : matrix.rows) RoundLinearRow(row);
  }
  return matrix;
}

}  // namespace ovra_host
