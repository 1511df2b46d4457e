// SPDX-License-Identifier: MIT
#include "suggestion.h"

#include <algorithm>
#include <numeric>

namespace ovra_host {
namespace {

// The least number of letters to change, add or drop (V. I. Levenshtein, 1966).
size_t Distance(const std::string& a, const std::string& b) {
  std::vector<size_t> row(b.size() + 1);
  std::iota(row.begin(), row.end(), size_t{0});
  for (size_t i = 0; i < a.size(); ++i) {
    size_t diagonal = row[0];
    row[0] = i + 1;
    for (size_t j = 0; j < b.size(); ++j) {
      const size_t changed = diagonal + (a[i] == b[j] ? 0 : 1);
      diagonal = row[j + 1];
      row[j + 1] = std::min({changed, row[j] + 1, diagonal + 1});
    }
  }
  return row[b.size()];
}

}  // namespace

std::string NearestWord(const std::string& typed, const std::vector<std::string>& words) {
  std::string nearest;
  size_t least = std::min<size_t>(2, typed.size() / 3) + 1;  // farther is another word
  for (const std::string& word : words) {
    const bool begun = typed.size() >= 3 && word.rfind(typed, 0) == 0;
    const size_t distance = begun ? 1 : Distance(typed, word);
    if (distance >= least) continue;
    least = distance;
    nearest = word;
  }
  return nearest;
}

}  // namespace ovra_host
