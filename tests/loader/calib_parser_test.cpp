// SPDX-License-Identifier: Apache-2.0
#include "loader/calib_parser.h"

#include <gtest/gtest.h>

#include <map>
#include <vector>

#include "tests/kit/doubles.h"

namespace {

const LogLine kAsIs = info("No country placeholder, opening as-is");

// Files in memory.
class MapReader : public ICalibReader {
 public:
  std::optional<std::string> read(const std::string& path) override {
    paths.push_back(path);
    const auto found = files.find(path);
    if (found != files.end()) return found->second;
    return std::nullopt;
  }

  std::map<std::string, std::string> files;
  Names paths;
};

// What an entry yields: "path: text", or "nothing".
std::string shown(const std::optional<calibration>& read) {
  return read.has_value() ? read->path + ": " + read->content : "nothing";
}

// tests/scenarios hold the log of every entry.
class CalibParserTest : public testing::Test {
 protected:
  void SetUp() override { takeLog(); }

  std::string yield(const std::string& entry) {
    reader.paths.clear();
    return shown(CalibParser(reader, country_code).parsePathFileEntry(entry));
  }

  MapReader reader;
  std::string country_code;
};

TEST_F(CalibParserTest, WholeEntryWithoutAPlaceholderIsThePath) {
  for (const char* entry :
       {"/a/calib.conf", "", " ", " a ", "a\r", "# a", "// a", "a b", "<COUNTRY>", "<country"}) {
    reader.files = {};
    EXPECT_EQ(yield(entry), "nothing");
    EXPECT_EQ(reader.paths, Names{entry});
    reader.files = {{entry, "text"}};
    EXPECT_EQ(yield(entry), std::string(entry) + ": text");
    EXPECT_LOG(kAsIs, kAsIs);
  }
}

TEST_F(CalibParserTest, CountrysFileIsReadThenTheDefaultOne) {
  const struct {
    std::string country;
    std::string entry;
    std::string file;  // The one that exists, beside "default".
    std::string yield;
    Names paths;
  } rows[] = {
      {"FR", "/uwb/<country>/c", "/uwb/fr/c", "/uwb/fr/c: text", {"/uwb/fr/c"}},
      {"FR",
       "/uwb/<country>/c",
       "/uwb/default/c",
       "/uwb/default/c: text",
       {"/uwb/fr/c", "/uwb/default/c"}},
      {"FR", "/uwb/<country>/c", "", "nothing", {"/uwb/fr/c", "/uwb/default/c"}},
      {"", "/uwb/<country>/c", "", "nothing", {"/uwb/unknown/c", "/uwb/default/c"}},
      {"", "/uwb/<country>/c", "/uwb/unknown/c", "/uwb/unknown/c: text", {"/uwb/unknown/c"}},
      {"us", "<country>", "us", "us: text", {"us"}},
      {"default", "/<country>", "", "nothing", {"/default", "/default"}},
      // Only the first placeholder is replaced, wherever it stands.
      {"us", "<country>/<country>", "", "nothing", {"us/<country>", "default/<country>"}},
      {"us", "calib_<country>.conf", "calib_us.conf", "calib_us.conf: text", {"calib_us.conf"}},
      // Bytes beyond ASCII are kept.
      {"\xc3\x89T", "<country>", "\xc3\x89t", "\xc3\x89t: text", {"\xc3\x89t"}},
  };
  for (const auto& row : rows) {
    country_code = row.country;
    reader.files = {{"default", "a file that is not asked for"}, {row.file, "text"}};
    EXPECT_EQ(yield(row.entry), row.yield);
    EXPECT_EQ(reader.paths, row.paths) << row.entry << " for " << row.country;
  }
}

TEST_F(CalibParserTest, EmptyFileIsACalibrationWithEmptyText) {
  country_code = "us";
  reader.files = {{"a", ""}, {"us", ""}, {"default", "text"}};
  EXPECT_EQ(yield("a"), "a: ");
  EXPECT_EQ(yield("<country>"), "us: ");
}

TEST_F(CalibParserTest, EntriesDoNotInfluenceEachOther) {
  country_code = "us";
  reader.files = {{"us", "one"}, {"plain", "two"}};
  CalibParser parser(reader, country_code);
  for (const char* entry : {"missing", "<country>", "plain", "plain"})
    parser.parsePathFileEntry(entry);
  EXPECT_EQ(reader.paths, (Names{"missing", "us", "plain", "plain"}));
  EXPECT_EQ(shown(parser.parsePathFileEntry("plain")), "plain: two");
}

TEST_F(CalibParserTest, StepsCanBeTakenAlone) {
  country_code = "US";
  reader.files = {{"<country>", "plain"}, {"<country>/us", "second"}};
  CalibParser parser(reader, country_code);
  EXPECT_EQ(shown(parser.parsePlainCalibFile("<country>")), "<country>: plain");
  EXPECT_LOG();
  EXPECT_EQ(shown(parser.parseCountryCodeCalib("<country>/<country>", 10)), "<country>/us: second");
}

}  // namespace
