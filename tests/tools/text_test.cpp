// SPDX-License-Identifier: Apache-2.0
#include <android/log.h>
#include <gtest/gtest.h>

#include "tools/device/device_library.h"
#include "tools/text/json.h"
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
  EXPECT_EQ(printable("\xEF\xBB\xBF\xEF\xBB\xBE"), "\\xef\\xbb\\xbf\xEF\xBB\xBE");
  EXPECT_EQ(printable("\xC2\x9F"), "\\xc2\\x9f");
}

// The first and the last character of each length, and what is just outside.
TEST(Text, CharacterLengthIsThatOfUtf8) {
  const std::vector<std::pair<std::string, size_t>> rows = {{"\x7F", 1},
                                                            {"\x80", 0},
                                                            {"\xC1\xBF", 0},
                                                            {"\xC2\x80", 2},
                                                            {"\xDF\xBF", 2},
                                                            {"\xDF\xC0", 0},
                                                            {"\xE0\x9F\xBF", 0},
                                                            {"\xE0\xA0\x80", 3},
                                                            {"\xED\x9F\xBF", 3},
                                                            {"\xED\xA0\x80", 0},
                                                            {"\xEF\xBF\xBF", 3},
                                                            {"\xEF\xBF\x7F", 0},
                                                            {"\xEF\xBF", 0},
                                                            {"\xF0\x8F\xBF\xBF", 0},
                                                            {"\xF0\x90\x80\x80", 4},
                                                            {"\xF4\x8F\xBF\xBF", 4},
                                                            {"\xF4\x90\x80\x80", 0},
                                                            {"\xF5\x80\x80\x80", 0}};
  for (const auto& [text, length] : rows) EXPECT_EQ(characterLength(text, 0), length) << text;
  EXPECT_EQ(printable("\xC2\xA0\xC2\xA1\x7F"), "\\xc2\\xa0\xC2\xA1\\x7f");
}

TEST(Text, ListsAreBrokenWhereALineIsFull) {
  EXPECT_EQ(wrapped({}, 2, 10), "");
  EXPECT_EQ(wrapped({"aa", "bbb", "cc"}, 0, 12), "aa, bbb, cc");
  EXPECT_EQ(wrapped({"aa", "bbb", "cc"}, 0, 11), "aa, bbb,\ncc");
  EXPECT_EQ(wrapped({"aa", "bbb", "cc"}, 4, 11), "aa,\n    bbb,\n    cc");
  EXPECT_EQ(wrapped({"too long", "b"}, 1, 4), "too long,\n b");
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

TEST(LibraryLog, EachLineHasThePriorityOfLogcat) {
  const LogCapture log;
  for (const int priority : {1, 2, 5, 7, 8}) {
    __android_log_print(priority, nullptr, "%s", priority == 5 ? "" : "text\n");
  }
  std::string priorities;
  std::string texts;
  for (const LogLine& line : log.lines()) {
    priorities += line.priority;
    texts += line.text + ";";
  }
  EXPECT_EQ(priorities, "EVWFE");
  EXPECT_EQ(texts, "text;text;;text;text;");
}

// The document without the version.
std::string written(const std::string& value) {
  Json::Value json;
  json["value"] = value;
  return foreignDocumentOf(json);
}

TEST(Json, WritesNumbersTextsAndEmptyLists) {
  Json::Value json;
  json["yes"] = true;
  json["none"] = arrayOf({});
  json["long"] = uint64_t{1} << 40;
  json["largest"] = UINT32_MAX;
  EXPECT_EQ(foreignDocumentOf(json),
            "{\n  \"largest\": 4294967295,\n  \"long\": 1099511627776,\n  \"none\": [],\n"
            "  \"yes\": true\n}\n");
}

TEST(Json, NamesTheVersionOfTheCommandsFormats) {
  EXPECT_EQ(documentOf({}), "{\n  \"format_version\": 1\n}\n");
}

TEST(Json, ReadsObjectsThatAreTheWholeDocument) {
  EXPECT_EQ(documentIn("{\"a\": 1}\n").value()["a"].asInt(), 1);
  for (const char* text : {"{} {", "{}x", "[1]", "{", ""}) {
    EXPECT_EQ(documentIn(text), std::nullopt) << text;
  }
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
