// SPDX-License-Identifier: Apache-2.0
#include "loader/path_file.h"

#include <gtest/gtest.h>

#include <vector>

namespace {

using Entries = std::vector<std::string>;

Entries entriesOf(std::string_view text) {
  Entries entries;
  for (std::string entry = "earlier"; next_entry(text, entry);) entries.push_back(entry);
  EXPECT_EQ(text, "");
  return entries;
}

TEST(PathFile, EveryLineIsAnEntry) {
  EXPECT_EQ(entriesOf("a\nb/c\n"), (Entries{"a", "b/c"}));
}

TEST(PathFile, TheLastLineMayLackItsLineFeed) {
  EXPECT_EQ(entriesOf("a\nb"), (Entries{"a", "b"}));
  EXPECT_EQ(entriesOf("a"), Entries{"a"});
}

TEST(PathFile, AnEmptyLineIsAnEntry) {
  EXPECT_EQ(entriesOf("\n\na\n\n"), (Entries{"", "", "a", ""}));
  EXPECT_EQ(entriesOf("\n"), Entries{""});
}

TEST(PathFile, AnEmptyTextHasNone) {
  EXPECT_EQ(entriesOf(""), Entries{});
}

TEST(PathFile, EveryOtherByteIsPartOfTheEntry) {
  const std::string_view text(" a \r\n# b\t\n\0c\n", 13);
  EXPECT_EQ(entriesOf(text), (Entries{" a \r", "# b\t", std::string("\0c", 2)}));
}

TEST(PathFile, AnEntryEndsBeforeTheRest) {
  std::string_view rest = "a\nb\nc";
  std::string entry;
  EXPECT_TRUE(next_entry(rest, entry));
  EXPECT_EQ(rest, "b\nc");
}

}  // namespace
