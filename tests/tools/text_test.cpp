// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include "tools/device/library_log.h"
#include "tools/text/json.h"
#include "tools/text/nearest.h"
#include "tools/text/text.h"

namespace {

TEST(Text, PrintableKeepsTextAndEscapesTheRest) {
  EXPECT_EQ(printable("a\tb"), "a b");
  EXPECT_EQ(printable("caf\xC3\xA9 \xE2\x82\xAC \xF0\x9F\x98\x80"),
            "caf\xC3\xA9 \xE2\x82\xAC \xF0\x9F\x98\x80");
  EXPECT_EQ(printable("\x1B[31m\r"), "\\x1b[31m\\x0d");
  EXPECT_EQ(printable(std::string("\0", 1)), "\\x00");
  // Overlong, a surrogate, cut off, a lone continuation, a control character of two bytes.
  EXPECT_EQ(printable("\xC0\xAF"), "\\xc0\\xaf");
  EXPECT_EQ(printable("\xED\xA0\x80"), "\\xed\\xa0\\x80");
  EXPECT_EQ(printable("\xE2\x82"), "\\xe2\\x82");
  EXPECT_EQ(printable("\x80"), "\\x80");
  EXPECT_EQ(printable("\xC2\x9B"), "\\xc2\\x9b");
}

TEST(Text, WidthCountsCharacters) {
  EXPECT_EQ(widthOf("caf\xC3\xA9"), 4U);
  EXPECT_EQ(padded("caf\xC3\xA9", 6), "caf\xC3\xA9  ");
}

TEST(Nearest, AllowsTwoDifferencesInAShortWord) {
  EXPECT_EQ(nearestOf("lnt", {"build", "lint", "diff"}), "lint");
  EXPECT_EQ(nearestOf("fmt", {"format"}), "");
  EXPECT_EQ(nearestOf("frmt", {"format"}), "format");
  EXPECT_EQ(nearestOf("", {}), "");
}

TEST(Nearest, AllowsAQuarterOfALongWordButSixAtMost) {
  const std::string word(16, 'a');
  EXPECT_EQ(nearestOf(word, {std::string(12, 'a') + "bbbb"}), std::string(12, 'a') + "bbbb");
  EXPECT_EQ(nearestOf(word, {std::string(11, 'a') + "bbbbb"}), "");
  const std::string longer(40, 'a');
  EXPECT_EQ(nearestOf(longer, {std::string(46, 'a')}), std::string(46, 'a'));
  EXPECT_EQ(nearestOf(longer, {std::string(47, 'a')}), "");
}

TEST(Nearest, PrefersTheNearestAndThenTheFirst) {
  EXPECT_EQ(nearestOf("ch5", {"ch99", "ch9", "ch4"}), "ch9");
}

TEST(LibraryLog, AnInnerCaptureHidesAnOuterOne) {
  const LogCapture outer;
  EXPECT_EQ(libraryVersion(), "v1.2-RC1");
  EXPECT_TRUE(outer.lines().empty());
}

// The document without the version.
std::string written(const JsonValue& value) {
  return foreignDocumentOf({{"value", value}});
}

TEST(Json, WritesNumbersTextsAndEmptyLists) {
  EXPECT_EQ(foreignDocumentOf({{"largest", UINT32_MAX},
                               {"long", uint64_t{1} << 40},
                               {"none", std::vector<std::string>{}},
                               {"yes", true}}),
            "{\n  \"largest\": 4294967295,\n  \"long\": 1099511627776,\n  \"none\": [],\n"
            "  \"yes\": true\n}\n");
}

TEST(Json, NamesTheVersionOfTheCommandsFormats) {
  EXPECT_EQ(documentOf({}), "{\n  \"format_version\": 1\n}\n");
}

TEST(Json, EscapesWhatJsonForbids) {
  EXPECT_EQ(written("a\"b\\\n\x01"), "{\n  \"value\": \"a\\\"b\\\\\\n\\u0001\"\n}\n");
  EXPECT_EQ(written(std::string("a\0b", 3)), "{\n  \"value\": \"a\\u0000b\"\n}\n");
}

TEST(Json, ReplacesBytesThatAreNoUtf8) {
  EXPECT_EQ(written(std::string("\xC3(\xFF\xC3\xA9")),
            "{\n  \"value\": \"\xEF\xBF\xBD(\xEF\xBF\xBD\xC3\xA9\"\n}\n");
}

}  // namespace
