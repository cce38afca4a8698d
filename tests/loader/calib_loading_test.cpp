// SPDX-License-Identifier: Apache-2.0
#include "loader/calib_loading.h"

#include <gtest/gtest.h>

#include <cstring>
#include <type_traits>

#include "tests/kit/allocations.h"
#include "tests/kit/calibrations.h"
#include "tests/kit/doubles.h"
#include "tests/kit/temporary_tree.h"

// tests/scenarios hold valid calibrations, and the log of every outcome.

namespace {

TEST(ParseResult, ValuesAreFixed) {
  EXPECT_EQ(static_cast<int>(ParseResult::NoCalibrationFiles), 0);
  EXPECT_EQ(static_cast<int>(ParseResult::InvalidCalibration), 1);
  EXPECT_EQ(static_cast<int>(ParseResult::ValidCalibration), 2);
  EXPECT_TRUE((std::is_same_v<std::underlying_type_t<ParseResult>, uint8_t>));
}

class ReadCalibrations : public testing::Test {
 protected:
  void SetUp() override { takeLog(); }

  // The calibrations that a path file of this text lists, each "path: text".
  Names listed(const std::string& path_file_text) {
    tree.write("paths", path_file_text);
    std::vector<calibration> read;
    const bool any = read_calibrations("paths", "FR", read);
    EXPECT_EQ(any, !read.empty());
    Names shown;
    for (const calibration& file : read) shown.push_back(file.path + ": " + file.content);
    return shown;
  }

  TemporaryTree tree;
};

TEST_F(ReadCalibrations, EveryLineIsAnEntryAndNothingOfItIsTrimmed) {
  tree.write("a", "one");
  tree.write("b", "two\n");
  tree.write("fr", "french");
  tree.write("empty", "");
  tree.makeDirectory("directory");
  const struct {
    const char* path_file;
    Names calibrations;
  } rows[] = {
      {"b\na\nb\n", {"b: two\n", "a: one", "b: two\n"}},
      {"x\nb\ny\n", {"b: two\n"}},
      {"a\nb", {"a: one", "b: two\n"}},
      {"", {}},
      {"\n", {}},
      {"a\r\n a\na \n#a\n", {}},
      {"<country>", {"fr: french"}},
      {"empty\ndirectory\n", {"empty: ", "directory: "}},
  };
  for (const auto& row : rows) EXPECT_EQ(listed(row.path_file), row.calibrations) << row.path_file;
}

TEST_F(ReadCalibrations, EveryEntryIsLogged) {
  tree.write("b", "two");
  listed("a\n\nb\r\nb");
  const LogLine as_is = info("No country placeholder, opening as-is");
  EXPECT_LOG(info("Reading entry: a"), as_is, error("Unable to open file a"),
             info("Reading entry: "), as_is, error("Unable to open file "),
             info("Reading entry: b\r"), as_is, error("Unable to open file b\r"),
             info("Reading entry: b"), as_is);
}

TEST_F(ReadCalibrations, OnlyAPathFileThatCannotBeOpenedIsAnError) {
  tree.makeDirectory("directory");
  std::vector<calibration> read;
  EXPECT_FALSE(read_calibrations("directory", "", read));
  EXPECT_LOG();
  EXPECT_FALSE(read_calibrations("100%s", "US", read));
  EXPECT_LOG(error("Failed to open path file: 100%s"));
  EXPECT_TRUE(read.empty());
}

TEST_F(ReadCalibrations, AppendsToTheList) {
  tree.write("a", "one");
  tree.write("paths", "a\nmissing\n");
  tree.write("none", "missing\n");
  std::vector<calibration> read = {{"earlier", "text"}};
  EXPECT_TRUE(read_calibrations("paths", "", read));
  ASSERT_EQ(read.size(), 2U);
  EXPECT_EQ(read[0].path, "earlier");
  EXPECT_EQ(read[1].path, "a");
  EXPECT_TRUE(read_calibrations("none", "", read));
  EXPECT_EQ(read.size(), 2U);
  EXPECT_FALSE(read_calibrations("no_such_path_file", "", read));
}

TEST_F(ReadCalibrations, PathFileWithoutMemoryIsThrown) {
  tree.write("paths", "a path that is too long to lie in a string object itself\n");
  std::vector<calibration> read;
  const FailingAllocation failure(0);
  EXPECT_THROW(read_calibrations("paths", "", read), OutOfMemory);
  EXPECT_LOG();
}

class ParseCalibFromFilePath : public testing::Test {
 protected:
  void SetUp() override {
    std::memset(&calib, 0xEE, sizeof(calib));
    takeLog();
  }

  // Writes the files "a", "b", ... with these texts and a path file that lists them, and parses it.
  ParseResult parsed(const Names& texts) {
    std::string entries;
    char name = 'a';
    for (const std::string& text : texts) {
      tree.write(std::string(1, name), text);
      entries += std::string(1, name++) + "\n";
    }
    tree.write("paths", entries);
    return parse_calib_from_file_path("paths", "", calib);
  }

  TemporaryTree tree;
  ccc_calib calib;
};

TEST_F(ParseCalibFromFilePath, AnythingElseLeavesTheRecord) {
  constexpr auto kNone = ParseResult::NoCalibrationFiles;
  constexpr auto kInvalid = ParseResult::InvalidCalibration;
  const struct {
    const char* what;
    Names texts;
    ParseResult result;
  } rows[] = {
      {"no file", {}, kNone},
      {"no line", {""}, kInvalid},
      {"no antenna", {calibrationWithout("ch9.antenna_selection")}, kInvalid},
      {"no file is read in the first pass",
       {"ch5.antenna_selection=\n", "ch9.antenna_selection= \n"},
       kInvalid},
      {"no file is read in the second pass",
       {kCalibration + std::string("version=65536\n")},
       kInvalid},
      {"a key is missing", {calibrationWithout("xtal_trim")}, kInvalid},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(parsed(row.texts), row.result) << row.what;
    const auto* const bytes = reinterpret_cast<const uint8_t*>(&calib);
    EXPECT_EQ(Bytes(bytes, bytes + sizeof(calib)), Bytes(sizeof(calib), 0xEE)) << row.what;
  }
  EXPECT_EQ(parse_calib_from_file_path("%s/no", "", calib), kNone);
}

}  // namespace
