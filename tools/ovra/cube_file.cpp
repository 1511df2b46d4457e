// SPDX-License-Identifier: MIT
#include "cube_file.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <optional>
#include <string_view>

#include "error.h"
#include "files.h"

namespace ovra_host {
namespace {

// Longer than any file of kMaxPoints3D cubed rows.
constexpr uint64_t kMaxFileBytes = uint64_t{64} << 20;

// Colours are fractions of full scale; far larger numbers are no colours, and would overflow sums.
constexpr double kMaxNumber = 1e9;

constexpr std::string_view kSpaces = " \t\r";

// Some editors put it before UTF-8.
constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

std::string_view Trim(std::string_view text) {
  const size_t first = text.find_first_not_of(kSpaces);
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(kSpaces) - first + 1);
}

// Takes the first word off the text.
std::string_view TakeWord(std::string_view* text) {
  *text = Trim(*text);
  const std::string_view word = text->substr(0, text->find_first_of(kSpaces));
  text->remove_prefix(word.size());
  return word;
}

bool IsLetter(char c) {
  return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
}

bool ParseNumber(std::string_view word, double* number) {
  if (word.size() > 1 && word[0] == '+' && word[1] != '-') word.remove_prefix(1);
  const char* const end = word.data() + word.size();
  const auto [stop, error] = std::from_chars(word.data(), end, *number);
  return error == std::errc() && stop == end && std::abs(*number) <= kMaxNumber;
}

struct Domain {
  Triple min = {0, 0, 0};
  Triple max = {1, 1, 1};
};

class Parser {
 public:
  explicit Parser(const std::string& name) : name_(name) {}

  CubeFile Parse(std::string_view text) {
    if (text.substr(0, kByteOrderMark.size()) == kByteOrderMark) {
      text.remove_prefix(kByteOrderMark.size());
    }
    while (!text.empty()) {
      const size_t length = std::min(text.find('\n'), text.size());
      ++line_;
      ParseLine(Trim(text.substr(0, length)));
      text.remove_prefix(std::min(length + 1, text.size()));
    }
    if (cube_.dimensions == 0) Refuse("neither LUT_1D_SIZE nor LUT_3D_SIZE is given");
    if (rows_.size() < RowCount()) Refuse("ends after " + RowsOfCount());
    PlaceRows();
    return std::move(cube_);
  }

 private:
  [[noreturn]] void Refuse(const std::string& reason) const {
    throw Error(name_ + ":" + std::to_string(line_) + ": " + reason);
  }

  // Of both tables.
  size_t RowCount() const {
    const auto points = static_cast<size_t>(cube_.points);
    return ShaperPoints() + (cube_.dimensions == 3 ? points * points * points : points);
  }

  size_t ShaperPoints() const {
    return cube_.shaper.empty() ? 0 : static_cast<size_t>(cube_.shaper[0].points);
  }

  // The rows of one dimension stand first.
  void PlaceRows() {
    const auto middle = rows_.begin() + static_cast<std::ptrdiff_t>(ShaperPoints());
    if (!cube_.shaper.empty()) {
      cube_.shaper[0].rows.assign(rows_.begin(), middle);
      SetDomain(&cube_.shaper[0], range_1d_ ? range_1d_ : domain_);
      SetDomain(&cube_, range_3d_);  // of what comes out of the first table
    } else {
      SetDomain(&cube_, range_1d_ ? range_1d_ : range_3d_ ? range_3d_ : domain_);
    }
    cube_.rows.assign(middle, rows_.end());
  }

  void SetDomain(CubeFile* table, const std::optional<Domain>& domain) const {
    if (!domain) return;
    for (size_t k = 0; k < 3; ++k) {
      if (domain->min[k] < domain->max[k]) continue;
      throw Error(name_ + ":" + std::to_string(domain_line_) +
                  ": the domain's minimum is not below its maximum");
    }
    table->domain_min = domain->min;
    table->domain_max = domain->max;
  }

  // What stands behind a # is a remark; titles may have one of their own.
  static std::string_view WithoutRemark(std::string_view line) {
    return line.substr(0, 5) == "TITLE" ? line : Trim(line.substr(0, line.find('#')));
  }

  std::string RowsOfCount() const {
    return std::to_string(rows_.size()) + " of " + std::to_string(RowCount()) + " rows";
  }

  void ParseLine(std::string_view line) {
    line = WithoutRemark(line);
    if (line.empty()) return;
    if (!IsLetter(line[0])) return ParseRow(line);
    if (!rows_.empty()) Refuse("a keyword stands among the rows of numbers");
    const std::string_view keyword = TakeWord(&line);
    if (keyword == "TITLE") {
      ParseTitle(Trim(line));
    } else if (keyword == "DOMAIN_MIN") {
      SetDomainLine(&domain_)->min = ParseNumbers<3>(line);
    } else if (keyword == "DOMAIN_MAX") {
      SetDomainLine(&domain_)->max = ParseNumbers<3>(line);
    } else if (keyword == "LUT_1D_INPUT_RANGE" || keyword == "LUT_3D_INPUT_RANGE") {
      const std::array<double, 2> range = ParseNumbers<2>(line);
      Domain& domain = *SetDomainLine(keyword[4] == '1' ? &range_1d_ : &range_3d_);
      domain.min.fill(range[0]);
      domain.max.fill(range[1]);
    } else if (keyword == "LUT_1D_SIZE") {
      ParseSize(1, CubeFile::kMaxPoints1D, line);
    } else if (keyword == "LUT_3D_SIZE") {
      ParseSize(3, CubeFile::kMaxPoints3D, line);
    } else {  // programs have keywords of their own, none of which changes the table
      cube_.skipped.push_back("line " + std::to_string(line_) + ": " + std::string(keyword));
    }
  }

  Domain* SetDomainLine(std::optional<Domain>* domain) {
    domain_line_ = line_;
    if (!*domain) domain->emplace();
    return &**domain;
  }

  // A title stands in quotation marks, which many programs leave out.
  void ParseTitle(std::string_view title) {
    const bool quoted = title.size() >= 2 && title.front() == '"' && title.back() == '"';
    cube_.title = quoted ? title.substr(1, title.size() - 2) : title;
  }

  template <size_t kCount>
  std::array<double, kCount> ParseNumbers(std::string_view text) const {
    std::array<double, kCount> numbers;
    for (double& number : numbers) {
      if (!ParseNumber(TakeWord(&text), &number)) RefuseNumbers(kCount);
    }
    if (!Trim(text).empty()) RefuseNumbers(kCount);
    return numbers;
  }

  [[noreturn]] void RefuseNumbers(size_t count) const {
    Refuse("expected " + std::to_string(count) + " numbers");
  }

  void ParseSize(int dimensions, int max_points, std::string_view text) {
    const bool has_one = dimensions == cube_.dimensions || !cube_.shaper.empty();
    if (has_one) Refuse("a second size; a file holds one table of each kind");
    const double size = ParseNumbers<1>(text)[0];
    if (size < 2 || size > max_points || size != std::floor(size)) {
      Refuse("the size is not a whole number from 2 to " + std::to_string(max_points));
    }
    const auto points = static_cast<int>(size);
    if (cube_.dimensions != 0) {  // the other one
      const int points_1d = dimensions == 1 ? points : cube_.points;
      if (dimensions == 3) cube_.points = points;
      cube_.dimensions = 3;
      cube_.shaper.emplace_back();
      cube_.shaper[0].dimensions = 1;
      cube_.shaper[0].points = points_1d;
      return;
    }
    cube_.dimensions = dimensions;
    cube_.points = points;
  }

  void ParseRow(std::string_view line) {
    if (cube_.dimensions == 0) Refuse("a row before LUT_1D_SIZE or LUT_3D_SIZE");
    if (rows_.size() == RowCount()) Refuse("more than " + RowsOfCount());
    rows_.push_back(ParseNumbers<3>(line));
  }

  std::string name_;
  int line_ = 0;
  int domain_line_ = 0;  // the last that changed a domain
  std::optional<Domain> domain_;
  std::optional<Domain> range_1d_;
  std::optional<Domain> range_3d_;
  std::vector<Triple> rows_;  // of both tables
  CubeFile cube_;
};

// Where an input stands on an axis: between point `low` and the next one.
struct Coordinate {
  size_t low;
  double fraction;
};

Coordinate Locate(const CubeFile& cube, size_t channel, double input) {
  const double min = cube.domain_min[channel];
  const double last = cube.points - 1;
  const double place = (input - min) / (cube.domain_max[channel] - min) * last;
  const double inside = std::clamp(place, 0.0, last);
  const double low = std::min(std::floor(inside), last - 1);
  return {static_cast<size_t>(low), inside - low};
}

}  // namespace

Triple CubeFile::Evaluate(const Triple& given) const {
  const Triple input = shaper.empty() ? given : shaper[0].Evaluate(given);
  Coordinate at[3];
  for (size_t k = 0; k < 3; ++k) at[k] = Locate(*this, k, input[k]);
  Triple output;
  if (dimensions == 1) {
    for (size_t k = 0; k < 3; ++k) {
      const double low = rows[at[k].low][k];
      const double high = rows[at[k].low + 1][k];
      output[k] = low + (high - low) * at[k].fraction;
    }
    return output;
  }
  output.fill(0);
  const auto side = static_cast<size_t>(points);
  for (size_t corner = 0; corner < 8; ++corner) {
    size_t row = 0;
    double weight = 1;
    for (size_t k = 3; k-- > 0;) {
      const size_t far = corner >> k & 1;
      row = row * side + at[k].low + far;
      weight *= far != 0 ? at[k].fraction : 1 - at[k].fraction;
    }
    for (size_t k = 0; k < 3; ++k) output[k] += weight * rows[row][k];
  }
  return output;
}

CubeFile ParseCubeFile(const std::string& text, const std::string& name) {
  return Parser(name).Parse(text);
}

CubeFile ReadCubeFile(const std::string& path) {
  const InputFile file(path);
  if (file.size() > kMaxFileBytes) file.Refuse("is too large for a .cube file");
  std::string text(static_cast<size_t>(file.size()), '\0');
  if (std::fread(text.data(), 1, text.size(), file.stream()) != text.size()) {
    file.Refuse("cannot be read");
  }
  CubeFile cube = ParseCubeFile(text, path);
  for (const std::string& keyword : cube.skipped) {
    PrintNote(path + ": " + keyword + " is not known here and left out");
  }
  return cube;
}

void WriteCubeFile(const CubeFile& cube, const std::string& path, Overwrite overwrite) {
  OutputFile file(path, overwrite);
  std::FILE* const stream = file.stream();
  if (!cube.title.empty()) std::fprintf(stream, "TITLE \"%s\"\n", cube.title.c_str());
  std::fprintf(stream, "LUT_%dD_SIZE %d\n", cube.dimensions, cube.points);
  const auto print = [stream](const char* keyword, const Triple& values) {
    std::fprintf(stream, "%s%.9g %.9g %.9g\n", keyword, values[0], values[1], values[2]);
  };
  print("DOMAIN_MIN ", cube.domain_min);
  print("DOMAIN_MAX ", cube.domain_max);
  for (const Triple& row : cube.rows) print("", row);
  file.Commit();
}

}  // namespace ovra_host
