// SPDX-License-Identifier: Apache-2.0
#include "loader/path_file.h"

#include <gtest/gtest.h>

#include "tests/kit/types.h"

namespace {

Names entriesOf(std::string_view text) {
  Names entries;
  for (std::string entry = "earlier"; next_entry(text, entry);) entries.push_back(entry);
  EXPECT_EQ(text, "");
  return entries;
}

TEST(PathFile, EveryLineIsAnEntry) {
  const struct {
    std::string text;
    Names entries;
  } rows[] = {
      {"", {}},
      {"a\nb/c\n", {"a", "b/c"}},
      {"a\nb", {"a", "b"}},
      {"a", {"a"}},
      {"\n\na\n\n", {"", "", "a", ""}},
      {"\n", {""}},
      {std::string(" a \r\n# b\t\n\0c\n", 13), {" a \r", "# b\t", std::string("\0c", 2)}},
  };
  for (const auto& row : rows) EXPECT_EQ(entriesOf(row.text), row.entries) << row.text;
}

TEST(PathFile, RestFollowsTheEntry) {
  std::string_view rest = "a\nb\nc";
  std::string entry;
  EXPECT_TRUE(next_entry(rest, entry));
  EXPECT_EQ(rest, "b\nc");
}

}  // namespace
