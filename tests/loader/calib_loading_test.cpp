// SPDX-License-Identifier: Apache-2.0
#include "loader/calib_loading.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstring>
#include <type_traits>

#include "tests/kit/byte_order.h"
#include "tests/kit/log_capture.h"
#include "tests/kit/temporary_tree.h"
#include "tests/loader/calibrations.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

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
  std::vector<std::string> listed(const std::string& path_file_text) {
    tree.write("paths", path_file_text);
    std::vector<calibration> read;
    const bool any = read_calibrations("paths", country_code, read);
    EXPECT_EQ(any, !read.empty());
    std::vector<std::string> shown;
    shown.reserve(read.size());
    for (const calibration& file : read) shown.push_back(file.path + ": " + file.content);
    return shown;
  }

  TemporaryTree tree;
  std::string country_code;
};

TEST_F(ReadCalibrations, FilesAreListedInTheOrderOfTheLines) {
  tree.write("a", "one");
  tree.write("b", "two\n");
  EXPECT_THAT(listed("b\na\nb\n"), ElementsAre("b: two\n", "a: one", "b: two\n"));
  EXPECT_THAT(takeLog(),
              ElementsAre(info("Reading entry: b"), info("No country placeholder, opening as-is"),
                          info("Reading entry: a"), info("No country placeholder, opening as-is"),
                          info("Reading entry: b"), info("No country placeholder, opening as-is")));
}

TEST_F(ReadCalibrations, UnreadableEntriesAreLeftOut) {
  tree.write("b", "two");
  EXPECT_THAT(listed("a\nb\nc\n"), ElementsAre("b: two"));
  EXPECT_THAT(
      takeLog(),
      ElementsAre(info("Reading entry: a"), info("No country placeholder, opening as-is"),
                  error("Unable to open file a"), info("Reading entry: b"),
                  info("No country placeholder, opening as-is"), info("Reading entry: c"),
                  info("No country placeholder, opening as-is"), error("Unable to open file c")));
}

TEST_F(ReadCalibrations, LastLineNeedsNoLineFeed) {
  tree.write("a", "one");
  tree.write("b", "two");
  EXPECT_THAT(listed("a\nb"), ElementsAre("a: one", "b: two"));
}

TEST_F(ReadCalibrations, EmptyLineIsAnEntry) {
  EXPECT_THAT(listed("\n"), IsEmpty());
  EXPECT_THAT(takeLog(),
              ElementsAre(info("Reading entry: "), info("No country placeholder, opening as-is"),
                          error("Unable to open file ")));
}

TEST_F(ReadCalibrations, EmptyPathFileHasNoEntries) {
  EXPECT_THAT(listed(""), IsEmpty());
  EXPECT_THAT(takeLog(), IsEmpty());
}

TEST_F(ReadCalibrations, NothingOfALineIsTrimmed) {
  tree.write("a", "one");
  EXPECT_THAT(listed("a\r\n a\na \n#a\n"), IsEmpty());
  EXPECT_THAT(
      takeLog(),
      ElementsAre(info("Reading entry: a\r"), info("No country placeholder, opening as-is"),
                  error("Unable to open file a\r"), info("Reading entry:  a"),
                  info("No country placeholder, opening as-is"), error("Unable to open file  a"),
                  info("Reading entry: a "), info("No country placeholder, opening as-is"),
                  error("Unable to open file a "), info("Reading entry: #a"),
                  info("No country placeholder, opening as-is"), error("Unable to open file #a")));
}

TEST_F(ReadCalibrations, CountryCodeReachesTheEntries) {
  country_code = "FR";
  tree.write("uwb/fr/calib.conf", "french");
  EXPECT_THAT(listed("uwb/<country>/calib.conf"), ElementsAre("uwb/fr/calib.conf: french"));
  EXPECT_THAT(takeLog(),
              ElementsAre(info("Reading entry: uwb/<country>/calib.conf"),
                          info("Calib path contains a country code placeholder, replacing it"),
                          info("Parsing calib file: uwb/fr/calib.conf")));
}

TEST_F(ReadCalibrations, CountryAndDefaultMissing) {
  EXPECT_THAT(listed("<country>/c"), IsEmpty());
  EXPECT_THAT(
      takeLog(),
      ElementsAre(info("Reading entry: <country>/c"),
                  info("Calib path contains a country code placeholder, replacing it"),
                  info("Parsing calib file: unknown/c"), error("Unable to open file unknown/c"),
                  error("Failed to reader calib file: unknown/c, falling back to default"),
                  error("Unable to open file default/c")));
}

TEST_F(ReadCalibrations, EmptyFileAndDirectoryAreCalibrationsWithEmptyText) {
  tree.write("empty", "");
  tree.makeDirectory("directory");
  EXPECT_THAT(listed("empty\ndirectory\n"), ElementsAre("empty: ", "directory: "));
}

TEST_F(ReadCalibrations, UnopenablePathFileIsLogged) {
  std::vector<calibration> read;
  EXPECT_FALSE(read_calibrations("100%s", "US", read));
  EXPECT_THAT(read, IsEmpty());
  EXPECT_THAT(takeLog(), ElementsAre(error("Failed to open path file: 100%s")));
}

TEST_F(ReadCalibrations, DirectoryAsPathFileHasNoLines) {
  tree.makeDirectory("directory");
  std::vector<calibration> read;
  EXPECT_FALSE(read_calibrations("directory", "", read));
  EXPECT_THAT(takeLog(), IsEmpty());
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

TEST_F(ReadCalibrations, ThereIsNoLimitOnTheNumberOfLines) {
  tree.write("a", "one");
  std::string lines;
  for (int i = 0; i < 1000; ++i) lines += "a\n";
  EXPECT_EQ(listed(lines).size(), 1000U);
}

class ParseCalibFromFilePath : public testing::Test {
 protected:
  void SetUp() override {
    std::memset(&calib, 0xEE, sizeof(calib));
    takeLog();
  }

  // Writes the files "a", "b", ... with these texts and a path file that lists them, and parses it.
  ParseResult parsed(const std::vector<std::string>& texts) {
    std::string entries;
    char name = 'a';
    for (const std::string& text : texts) {
      tree.write(std::string(1, name), text);
      entries += std::string(1, name++) + "\n";
    }
    tree.write("paths", entries);
    return parse_calib_from_file_path("paths", "", calib);
  }

  void expectUntouched() const {
    const auto* const bytes = reinterpret_cast<const uint8_t*>(&calib);
    EXPECT_EQ(Bytes(bytes, bytes + sizeof(calib)), Bytes(sizeof(calib), 0xEE));
  }

  // The lines up to the two passes, when the files "a", "b", ... are read.
  static Log reading(size_t count) {
    Log log = {info("Reading path file paths")};
    for (size_t i = 0; i < count; ++i) {
      log.push_back(info("Reading entry: " + std::string(1, static_cast<char>('a' + i))));
      log.push_back(info("No country placeholder, opening as-is"));
    }
    log.push_back(info("Found " + std::to_string(count) + " calibration files in paths"));
    return log;
  }

  TemporaryTree tree;
  ccc_calib calib;
};

TEST_F(ParseCalibFromFilePath, TwoAntennas) {
  EXPECT_EQ(parsed({kTwoAntennas}), ParseResult::ValidCalibration);
  EXPECT_EQ(takeLog(), joined({reading(1), bothPasses({"a"})}));
  EXPECT_EQ(calib.version, mostSignificantFirst(uint16_t{2}));
  EXPECT_EQ(calib.ch5.selector_gpio, 7);
  EXPECT_EQ(calib.ch5.selector_gpio_value, 1);
  EXPECT_EQ(calib.ch5.port, 1);
  EXPECT_EQ(calib.ch5.ant_delay, mostSignificantFirst(uint16_t{0x4010}));
  EXPECT_EQ(calib.ch5.tx_power, mostSignificantFirst(uint32_t{0x11223344}));
  EXPECT_EQ(calib.ch5.pg_count, mostSignificantFirst(uint16_t{0x0506}));
  EXPECT_EQ(calib.ch5.pg_delay, 0x21);
  EXPECT_EQ(calib.ch9.selector_gpio, 6);
  EXPECT_EQ(calib.ch9.selector_gpio_value, 0);
  EXPECT_EQ(calib.ch9.port, 3);
  EXPECT_EQ(calib.ch9.ant_delay, mostSignificantFirst(uint16_t{0x4020}));
  EXPECT_EQ(calib.ch9.tx_power, mostSignificantFirst(uint32_t{0xAABBCCDD}));
  EXPECT_EQ(calib.ch9.pg_count, mostSignificantFirst(uint16_t{0x0708}));
  EXPECT_EQ(calib.ch9.pg_delay, 0x22);
  EXPECT_EQ(calib.temperature_reference, 20);
  EXPECT_EQ(calib.xtal_trim, 40);
  EXPECT_EQ(calib.wifi_coex_time_gap, 3);
  EXPECT_EQ(calib.ap_coop_mode, 1);
  EXPECT_EQ(calib.alternate_pulse_shape, 5);
  EXPECT_EQ(calib.wifi_coex_min_spacing, 7);
}

TEST_F(ParseCalibFromFilePath, SharedAntennaHasOneWiring) {
  EXPECT_EQ(parsed({kSharedAntenna}), ParseResult::ValidCalibration);
  EXPECT_EQ(calib.ch5.selector_gpio, 7);
  EXPECT_EQ(calib.ch5.selector_gpio_value, 1);
  EXPECT_EQ(calib.ch5.port, 1);
  EXPECT_EQ(calib.ch9.selector_gpio, 7);
  EXPECT_EQ(calib.ch9.selector_gpio_value, 1);
  EXPECT_EQ(calib.ch9.port, 1);
  EXPECT_EQ(calib.ch9.ant_delay, mostSignificantFirst(uint16_t{0x4020}));
  EXPECT_EQ(calib.ch9.tx_power, mostSignificantFirst(uint32_t{0xAABBCCDD}));
  EXPECT_EQ(calib.ch9.pg_count, mostSignificantFirst(uint16_t{0x0708}));
  EXPECT_EQ(calib.ch9.pg_delay, 0x22);
}

TEST_F(ParseCalibFromFilePath, ValuesMayBeSpreadOverFiles) {
  EXPECT_EQ(parsed({kValues, kSelection}), ParseResult::ValidCalibration);
  EXPECT_EQ(takeLog(), joined({reading(2), bothPasses({"a", "b"})}));
}

TEST_F(ParseCalibFromFilePath, LaterFileWins) {
  EXPECT_EQ(parsed({kTwoAntennas, "xtal_trim=41\n"}), ParseResult::ValidCalibration);
  EXPECT_EQ(calib.xtal_trim, 41);
  EXPECT_EQ(parsed({"xtal_trim=41\n", kTwoAntennas}), ParseResult::ValidCalibration);
  EXPECT_EQ(calib.xtal_trim, 40);
}

TEST_F(ParseCalibFromFilePath, LaterFileSelectsOtherAntennas) {
  EXPECT_EQ(parsed({kTwoAntennas, "ch9.antenna_selection=ant0\n"}),
            ParseResult::InvalidCalibration);
  EXPECT_EQ(takeLog(),
            joined({reading(2),
                    bothPasses({"a", "b"}),
                    {error("Calibration is invalid, missing params: "),
                     error("- ant0.ch9.prf64.ant_delay"), error("- ant0.ch9.prf64.tx_power"),
                     error("- ant0.ch9.prf64.pg_count"), error("- ant0.ch9.prf64.pg_delay")}}));
}

TEST_F(ParseCalibFromFilePath, SyntaxErrorCostsTheRestOfItsFileOnly) {
  EXPECT_EQ(parsed({"xtal_trim=41\nversion=bad\nxtal_trim=42\n",
                    std::string(kSelection) + kValues + "xtal_trim=43\n"}),
            ParseResult::ValidCalibration);
  EXPECT_EQ(calib.xtal_trim, 43);
  EXPECT_EQ(
      takeLog(),
      joined({reading(2),
              {info("Parsing antenna selection"), info("Parsing a"), info("Parsing b"),
               info("Parsing full calibration"), info("Parsing a"), error("Unexpected_value\n"),
               error("Failed to parse calb file a, reason Unexpected value"), info("Parsing b")}}));
}

TEST_F(ParseCalibFromFilePath, ValuesBeforeASyntaxErrorAreKept) {
  const std::string values(kValues);
  const size_t trim = values.find("xtal_trim=40\n");
  const std::string without_trim = values.substr(0, trim) + values.substr(trim + 13);
  EXPECT_EQ(parsed({"xtal_trim=41\nversion=bad\nxtal_trim=42\n", kSelection + without_trim}),
            ParseResult::ValidCalibration);
  EXPECT_EQ(calib.xtal_trim, 41);
}

TEST_F(ParseCalibFromFilePath, OneOfThreeEntriesIsReadable) {
  tree.write("b", kTwoAntennas);
  tree.write("paths", "a\nb\nc");
  EXPECT_EQ(parse_calib_from_file_path("paths", "", calib), ParseResult::ValidCalibration);
  EXPECT_EQ(takeLog(),
            joined({{info("Reading path file paths"), info("Reading entry: a"),
                     info("No country placeholder, opening as-is"), error("Unable to open file a"),
                     info("Reading entry: b"), info("No country placeholder, opening as-is"),
                     info("Reading entry: c"), info("No country placeholder, opening as-is"),
                     error("Unable to open file c"), info("Found 1 calibration files in paths")},
                    bothPasses({"b"})}));
}

TEST_F(ParseCalibFromFilePath, CountryCodeReachesTheEntries) {
  tree.write("us", kTwoAntennas);
  tree.write("paths", "<country>");
  EXPECT_EQ(parse_calib_from_file_path("paths", "US", calib), ParseResult::ValidCalibration);
  EXPECT_EQ(takeLog(),
            joined({{info("Reading path file paths"), info("Reading entry: <country>"),
                     info("Calib path contains a country code placeholder, replacing it"),
                     info("Parsing calib file: us"), info("Found 1 calibration files in paths")},
                    bothPasses({"us"})}));
}

TEST_F(ParseCalibFromFilePath, UnopenablePathFile) {
  EXPECT_EQ(parse_calib_from_file_path("%s/no", "", calib), ParseResult::NoCalibrationFiles);
  EXPECT_EQ(takeLog(), unopenable("%s/no"));
  expectUntouched();
}

TEST_F(ParseCalibFromFilePath, PathFileWithoutUsableEntries) {
  tree.write("paths", "\nmissing\n");
  EXPECT_EQ(parse_calib_from_file_path("paths", "", calib), ParseResult::NoCalibrationFiles);
  EXPECT_THAT(takeLog(), ElementsAre(info("Reading path file paths"), info("Reading entry: "),
                                     info("No country placeholder, opening as-is"),
                                     error("Unable to open file "), info("Reading entry: missing"),
                                     info("No country placeholder, opening as-is"),
                                     error("Unable to open file missing"),
                                     error("Unable to read any calibration file from: paths")));
  expectUntouched();
}

TEST_F(ParseCalibFromFilePath, EmptyOrDirectoryPathFile) {
  tree.write("paths", "");
  tree.makeDirectory("directory");
  EXPECT_EQ(parse_calib_from_file_path("paths", "", calib), ParseResult::NoCalibrationFiles);
  EXPECT_EQ(parse_calib_from_file_path("directory", "", calib), ParseResult::NoCalibrationFiles);
  EXPECT_THAT(takeLog(), ElementsAre(info("Reading path file paths"),
                                     error("Unable to read any calibration file from: paths"),
                                     info("Reading path file directory"),
                                     error("Unable to read any calibration file from: directory")));
}

TEST_F(ParseCalibFromFilePath, NoFileSurvivesTheAntennaSelection) {
  EXPECT_EQ(parsed({"ch5.antenna_selection=\n", "ch9.antenna_selection= \n"}),
            ParseResult::InvalidCalibration);
  EXPECT_EQ(takeLog(), joined({reading(2),
                               {info("Parsing antenna selection"), info("Parsing a"),
                                error("Unexpected_value\n"),
                                error("Failed to parse calb file a, reason Unexpected value"),
                                info("Parsing b"), error("Unexpected_value\n"),
                                error("Failed to parse calb file b, reason Unexpected value"),
                                error("Failed to parse antenna selection")}}));
  expectUntouched();
}

TEST_F(ParseCalibFromFilePath, AntennaSelectionMissing) {
  EXPECT_EQ(parsed({kValues}), ParseResult::InvalidCalibration);
  EXPECT_EQ(takeLog(),
            joined({reading(1),
                    {info("Parsing antenna selection"), info("Parsing a"),
                     error("Calibration is invalid, missing params: "),
                     error("- ch5.antenna_selection"), error("- ch9.antenna_selection")}}));
  expectUntouched();
}

TEST_F(ParseCalibFromFilePath, NoFileSurvivesTheFullCalibration) {
  EXPECT_EQ(parsed({std::string(kSelection) + "version=65536\n"}), ParseResult::InvalidCalibration);
  EXPECT_EQ(takeLog(), joined({reading(1),
                               bothPasses({"a"}),
                               {error("Unexpected_value\n"),
                                error("Failed to parse calb file a, reason Unexpected value"),
                                error("Failed to parse calibration from paths")}}));
  expectUntouched();
}

TEST_F(ParseCalibFromFilePath, FullCalibrationMissesAKey) {
  std::string text = kTwoAntennas;
  text.erase(text.find("xtal_trim=40\n"), 13);
  text.erase(text.find("ant1.ch9.prf64.pg_delay=0x22\n"), 29);
  EXPECT_EQ(parsed({text}), ParseResult::InvalidCalibration);
  EXPECT_EQ(takeLog(), joined({reading(1),
                               bothPasses({"a"}),
                               {error("Calibration is invalid, missing params: "),
                                error("- ant1.ch9.prf64.pg_delay"), error("- xtal_trim")}}));
  expectUntouched();
}

TEST_F(ParseCalibFromFilePath, EmptyCalibrationFileIsInvalid) {
  EXPECT_EQ(parsed({""}), ParseResult::InvalidCalibration);
  EXPECT_EQ(takeLog(),
            joined({reading(1),
                    {info("Parsing antenna selection"), info("Parsing a"),
                     error("Calibration is invalid, missing params: "),
                     error("- ch5.antenna_selection"), error("- ch9.antenna_selection")}}));
}

TEST_F(ParseCalibFromFilePath, NothingOfAnEarlierCallIsSeen) {
  EXPECT_EQ(parsed({kTwoAntennas}), ParseResult::ValidCalibration);
  takeLog();
  EXPECT_EQ(parsed({std::string("ch9.antenna_selection=ant1\n") + kValues}),
            ParseResult::InvalidCalibration);
  EXPECT_EQ(takeLog(), joined({reading(1),
                               {info("Parsing antenna selection"), info("Parsing a"),
                                error("Calibration is invalid, missing params: "),
                                error("- ch5.antenna_selection")}}));
}

}  // namespace
