// SPDX-License-Identifier: Apache-2.0
#include "loader/calib_parser.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>
#include <vector>

#include "tests/kit/log_capture.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr char kEntry[] = "/vendor/etc/uwb/<country>/calib.conf";

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
  std::vector<std::string> paths;
};

class CalibParserTest : public testing::Test {
 protected:
  void SetUp() override { takeLog(); }

  // What `entry` yields: "path: text", or nothing.
  std::optional<std::string> yield(const std::string& entry) {
    return shown(CalibParser(reader, country_code).parsePathFileEntry(entry));
  }

  static std::optional<std::string> shown(const std::optional<calibration>& read) {
    if (!read.has_value()) return std::nullopt;
    return read->path + ": " + read->content;
  }

  MapReader reader;
  std::string country_code;
};

TEST_F(CalibParserTest, EntryWithoutAPlaceholderIsOpenedAsItIs) {
  reader.files["/a/calib.conf"] = "text";
  EXPECT_EQ(yield("/a/calib.conf"), "/a/calib.conf: text");
  EXPECT_THAT(takeLog(), ElementsAre(info("No country placeholder, opening as-is")));
  EXPECT_THAT(reader.paths, ElementsAre("/a/calib.conf"));
}

TEST_F(CalibParserTest, UnreadableEntryWithoutAPlaceholderYieldsNothing) {
  EXPECT_EQ(yield("/a/calib.conf"), std::nullopt);
  EXPECT_THAT(takeLog(), ElementsAre(info("No country placeholder, opening as-is")));
  EXPECT_THAT(reader.paths, ElementsAre("/a/calib.conf"));
}

TEST_F(CalibParserTest, WholeLineIsThePath) {
  for (const char* entry : {"", " ", " a ", "a\r", "# a", "// a", "a b", "<COUNTRY>", "<country"}) {
    reader.files = {{entry, "text"}};
    EXPECT_EQ(yield(entry), std::string(entry) + ": text");
    EXPECT_THAT(takeLog(), ElementsAre(info("No country placeholder, opening as-is")));
  }
}

TEST_F(CalibParserTest, CountryCodeTakesThePlaceOfThePlaceholder) {
  country_code = "FR";
  reader.files["/vendor/etc/uwb/fr/calib.conf"] = "french";
  reader.files["/vendor/etc/uwb/default/calib.conf"] = "default";
  EXPECT_EQ(yield(kEntry), "/vendor/etc/uwb/fr/calib.conf: french");
  EXPECT_THAT(takeLog(),
              ElementsAre(info("Calib path contains a country code placeholder, replacing it"),
                          info("Parsing calib file: /vendor/etc/uwb/fr/calib.conf")));
  EXPECT_THAT(reader.paths, ElementsAre("/vendor/etc/uwb/fr/calib.conf"));
}

TEST_F(CalibParserTest, CountryFallsBackToDefault) {
  country_code = "FR";
  reader.files["/vendor/etc/uwb/default/calib.conf"] = "default";
  EXPECT_EQ(yield(kEntry), "/vendor/etc/uwb/default/calib.conf: default");
  EXPECT_THAT(takeLog(),
              ElementsAre(info("Calib path contains a country code placeholder, replacing it"),
                          info("Parsing calib file: /vendor/etc/uwb/fr/calib.conf"),
                          error("Failed to reader calib file: /vendor/etc/uwb/fr/calib.conf, "
                                "falling back to default")));
  EXPECT_THAT(reader.paths,
              ElementsAre("/vendor/etc/uwb/fr/calib.conf", "/vendor/etc/uwb/default/calib.conf"));
}

TEST_F(CalibParserTest, WithoutACountryUnknownIsTriedThenDefault) {
  EXPECT_EQ(yield(kEntry), std::nullopt);
  EXPECT_THAT(takeLog(),
              ElementsAre(info("Calib path contains a country code placeholder, replacing it"),
                          info("Parsing calib file: /vendor/etc/uwb/unknown/calib.conf"),
                          error("Failed to reader calib file: /vendor/etc/uwb/unknown/calib.conf, "
                                "falling back to default")));
  EXPECT_THAT(reader.paths, ElementsAre("/vendor/etc/uwb/unknown/calib.conf",
                                        "/vendor/etc/uwb/default/calib.conf"));
}

TEST_F(CalibParserTest, UnknownFileServesWithoutACountry) {
  reader.files["/vendor/etc/uwb/unknown/calib.conf"] = "unknown";
  EXPECT_EQ(yield(kEntry), "/vendor/etc/uwb/unknown/calib.conf: unknown");
  EXPECT_THAT(reader.paths, ElementsAre("/vendor/etc/uwb/unknown/calib.conf"));
}

TEST_F(CalibParserTest, CountryNamedDefaultIsTriedTwice) {
  country_code = "default";
  EXPECT_EQ(yield("<country>"), std::nullopt);
  EXPECT_THAT(reader.paths, ElementsAre("default", "default"));
}

TEST_F(CalibParserTest, OnlyTheFirstPlaceholderIsReplaced) {
  country_code = "us";
  EXPECT_EQ(yield("<country>/<country>"), std::nullopt);
  EXPECT_THAT(reader.paths, ElementsAre("us/<country>", "default/<country>"));
}

TEST_F(CalibParserTest, PlaceholderMayStandInsideAName) {
  country_code = "us";
  reader.files["calib_us.conf"] = "text";
  EXPECT_EQ(yield("calib_<country>.conf"), "calib_us.conf: text");
}

TEST_F(CalibParserTest, BytesBeyondAsciiAreKept) {
  country_code = "\xc3\x89T";
  reader.files["\xc3\x89t"] = "text";
  EXPECT_EQ(yield("<country>"), "\xc3\x89t: text");
}

TEST_F(CalibParserTest, EmptyFileIsACalibrationWithEmptyText) {
  reader.files["a"] = "";
  EXPECT_EQ(yield("a"), "a: ");
}

TEST_F(CalibParserTest, EmptyFileOfTheCountryCountsAsFound) {
  country_code = "us";
  reader.files["us"] = "";
  reader.files["default"] = "default";
  EXPECT_EQ(yield("<country>"), "us: ");
  EXPECT_THAT(reader.paths, ElementsAre("us"));
}

TEST_F(CalibParserTest, PercentSignsAreLoggedAsTheyStand) {
  country_code = "%s%n";
  EXPECT_EQ(yield("%d<country>"), std::nullopt);
  EXPECT_THAT(takeLog(),
              ElementsAre(info("Calib path contains a country code placeholder, replacing it"),
                          info("Parsing calib file: %d%s%n"),
                          error("Failed to reader calib file: %d%s%n, falling back to default")));
}

TEST_F(CalibParserTest, EntriesDoNotInfluenceEachOther) {
  country_code = "us";
  reader.files = {{"us", "one"}, {"plain", "two"}};
  CalibParser parser(reader, country_code);
  EXPECT_EQ(shown(parser.parsePathFileEntry("missing")), std::nullopt);
  EXPECT_EQ(shown(parser.parsePathFileEntry("<country>")), "us: one");
  EXPECT_EQ(shown(parser.parsePathFileEntry("plain")), "plain: two");
  EXPECT_EQ(shown(parser.parsePathFileEntry("plain")), "plain: two");
  EXPECT_THAT(reader.paths, ElementsAre("missing", "us", "plain", "plain"));
}

TEST_F(CalibParserTest, StepsCanBeTakenAlone) {
  country_code = "US";
  reader.files = {{"<country>", "plain"}, {"<country>/us", "second"}};
  CalibParser parser(reader, country_code);
  EXPECT_EQ(shown(parser.parsePlainCalibFile("<country>")), "<country>: plain");
  EXPECT_EQ(shown(parser.parsePlainCalibFile("missing")), std::nullopt);
  EXPECT_THAT(takeLog(), IsEmpty());
  EXPECT_EQ(shown(parser.parseCountryCodeCalib("<country>/<country>", 10)), "<country>/us: second");
  EXPECT_THAT(takeLog(), ElementsAre(info("Parsing calib file: <country>/us")));
}

}  // namespace
