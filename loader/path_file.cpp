// SPDX-License-Identifier: Apache-2.0
#include "loader/path_file.h"

#include <algorithm>

bool next_entry(std::string_view& rest, std::string& entry) {
  if (rest.empty()) return false;
  const size_t end = std::min(rest.find('\n'), rest.size());
  entry.assign(rest.data(), end);
  rest.remove_prefix(std::min(end + 1, rest.size()));
  return true;
}
