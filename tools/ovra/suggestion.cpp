// SPDX-License-Identifier: MIT
#include "suggestion.h"

#include <algorithm>
#include <numeric>

namespace ovra_host {
namespace {

// The least number of letters to change, add, drop or exchange with their neighbours (F. J. Damerau,
// 1964, where no letter is touched twice).
size_t Distance(const std::string& a, const std::string& b) {
  std::vector<std::vector<size_t>> least(a.size() + 1, std::vector<size_t>(b.size() + 1));
  for (size_t i = 0; i <= a.size(); ++i) least[i][0] = i;
  std::iota(least[0].begin(), least[0].end(), size_t{0});
  for (size_t i = 1; i <= a.size(); ++i) {
    for (size_t j = 1; j <= b.size(); ++j) {
      const size_t changed = least[i - 1][j - 1] + (a[i - 1] == b[j - 1] ? 0 : 1);
      least[i][j] = std::min({changed, least[i - 1][j] + 1, least[i][j - 1] + 1});
      if (i > 1 && j > 1 && a[i - 1] == b[j - 2] && a[i - 2] == b[j - 1]) {
        least[i][j] = std::min(least[i][j], least[i - 2][j - 2] + 1);
      }
    }
  }
  return least[a.size()][b.size()];
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
