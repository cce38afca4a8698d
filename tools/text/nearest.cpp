// SPDX-License-Identifier: Apache-2.0
#include "tools/text/nearest.h"

#include <algorithm>

size_t editDistance(const std::string& a, const std::string& b, size_t limit) {
  if (std::max(a.size(), b.size()) - std::min(a.size(), b.size()) > limit) return limit + 1;
  std::vector<size_t> row(b.size() + 1);
  for (size_t j = 0; j < row.size(); ++j) row[j] = j;
  for (size_t i = 1; i <= a.size(); ++i) {
    size_t diagonal = row[0];
    row[0] = i;
    for (size_t j = 1; j < row.size(); ++j) {
      const size_t replaced = diagonal + (a[i - 1] == b[j - 1] ? 0 : 1);
      diagonal = row[j];
      row[j] = std::min({row[j] + 1, row[j - 1] + 1, replaced});
    }
  }
  return row.back();
}

std::string nearestOf(const std::string& word, const std::vector<std::string>& candidates) {
  // Up to two characters may differ, in a long word a quarter of it, but at most six.
  size_t best = std::max<size_t>(2, std::min<size_t>(word.size() / 4, 6)) + 1;
  std::string nearest;
  for (const std::string& candidate : candidates) {
    const size_t d = editDistance(word, candidate, best);
    if (d >= best) continue;
    best = d;
    nearest = candidate;
  }
  return nearest;
}
