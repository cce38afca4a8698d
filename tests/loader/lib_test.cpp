// SPDX-License-Identifier: Apache-2.0
#include "loader/lib.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "include/tarnix_uwb_params_nfcc.h"
#include "tests/kit/checksums.h"
#include "tests/kit/failing_allocation.h"
#include "tests/kit/log_capture.h"
#include "tests/kit/opened_files.h"
#include "tests/kit/property_map.h"
#include "tests/kit/temporary_tree.h"
#include "tests/loader/calibrations.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr char kPathFile[] = "ro.vendor.uwb.calibration.calibrationpaths";
constexpr char kCountryCode[] = "vendor.uwb.calibration.country_code";

class BuildPaths : public testing::Test {
 protected:
  void SetUp() override {
    clearProperties();
    takePropertyReads();
    takeLog();
  }
  void TearDown() override {
    EXPECT_THAT(takeLog(), IsEmpty());
    clearProperties();
  }
};

TEST_F(BuildPaths, DefaultsWithoutTheProperty) {
  EXPECT_THAT(build_paths(),
              ElementsAre("/vendor/etc/uwb_calib_paths.conf", "/vendor/etc/calib_paths",
                          "./uwb_calib_paths.conf", "./calib_paths"));
  setProperty(kPathFile, "");
  EXPECT_EQ(build_paths().size(), 4U);
}

TEST_F(BuildPaths, PropertyComesFirst) {
  setProperty(kPathFile, "/data/paths");
  EXPECT_THAT(build_paths(),
              ElementsAre("/data/paths", "/vendor/etc/uwb_calib_paths.conf",
                          "/vendor/etc/calib_paths", "./uwb_calib_paths.conf", "./calib_paths"));
}

TEST_F(BuildPaths, DefaultNamedByThePropertyIsTriedTwice) {
  setProperty(kPathFile, "/vendor/etc/calib_paths");
  EXPECT_THAT(build_paths(),
              ElementsAre("/vendor/etc/calib_paths", "/vendor/etc/uwb_calib_paths.conf",
                          "/vendor/etc/calib_paths", "./uwb_calib_paths.conf", "./calib_paths"));
}

TEST_F(BuildPaths, PropertyIsOnePathWhateverItHolds) {
  for (const char* value : {"/a,/b", "/a:/b", "/a /b", "/a;/b", " /a\n"}) {
    setProperty(kPathFile, value);
    const std::vector<std::string> paths = build_paths();
    EXPECT_EQ(paths.size(), 5U);
    EXPECT_EQ(paths[0], value);
  }
}

TEST_F(BuildPaths, EveryCallReadsThePropertyAndReturnsACopy) {
  setProperty(kPathFile, "/a");
  std::vector<std::string> first = build_paths();
  for (std::string& path : first) path = "changed";
  setProperty(kPathFile, "/b");
  EXPECT_EQ(build_paths()[0], "/b");
  EXPECT_EQ(build_paths()[4], "./calib_paths");
  EXPECT_THAT(takePropertyReads(), ElementsAre(kPathFile, kPathFile, kPathFile));
}

constexpr uint8_t kUntouched = 0xA5;
constexpr size_t kGuard = 32;

class Load : public testing::Test {
 protected:
  void SetUp() override {
    clearProperties();
    takePropertyReads();
    takeLog();
  }
  void TearDown() override { clearProperties(); }

  // Calls the library with a buffer between guards.
  uint32_t load(unsigned int capacity = 82) {
    memory.assign(kGuard + 128 + kGuard, kUntouched);
    return load_uwb_params_from_files(memory.data() + kGuard, capacity);
  }

  // The call is expected to have written `bytes` and to have left everything around them.
  void expectWritten(const Bytes& bytes) const {
    Bytes expected(memory.size(), kUntouched);
    std::copy(bytes.begin(), bytes.end(), expected.begin() + kGuard);
    EXPECT_EQ(memory, expected);
  }

  // A path file that lists one calibration file of this text.
  void writePathFile(const std::string& path_file, const std::string& text) const {
    tree.write(path_file, path_file + ".txt");
    tree.write(path_file + ".txt", text);
  }

  static Log entry() {
    return {info("load_uwb_params_from_files entry, version v1.2-RC1"),
            warning("No country code set")};
  }

  // A path file from which no calibration file can be read.
  static Log skipped(const std::string& path_file) {
    return joined({unopenable(path_file),
                   {error("Failed to read calibration files from " + path_file +
                          ", trying next path file")}});
  }

  static Log vendorFilesSkipped() {
    return joined(
        {skipped("/vendor/etc/uwb_calib_paths.conf"), skipped("/vendor/etc/calib_paths")});
  }

  static LogLine success(const std::string& path_file) {
    return info("Valid calibration was parsed from entries in " + path_file);
  }

  TemporaryTree tree;
  Bytes memory;
};

TEST_F(Load, NullBufferLogsTheEntryLineOnly) {
  writePathFile("calib_paths", kTwoAntennas);
  setProperty(kCountryCode, "US");
  const OpenedFiles opened(tree.root());
  for (const unsigned int capacity : {0U, 82U, 0xFFFFFFFFU}) {
    EXPECT_EQ(load_uwb_params_from_files(nullptr, capacity), 0U);
    EXPECT_FALSE(opened.any());
    EXPECT_THAT(takeLog(), ElementsAre(info("load_uwb_params_from_files entry, version v1.2-RC1")));
    EXPECT_THAT(takePropertyReads(), IsEmpty());
  }
}

TEST_F(Load, TwoAntennas) {
  writePathFile("calib_paths", kTwoAntennas);
  const OpenedFiles opened("calib_paths");
  EXPECT_EQ(load(), 82U);
  EXPECT_TRUE(opened.any());
  expectWritten(blockOfTwoAntennas());
  EXPECT_EQ(takeLog(), joined({entry(),
                               vendorFilesSkipped(),
                               skipped("./uwb_calib_paths.conf"),
                               readingOneFile("./calib_paths", "calib_paths.txt"),
                               bothPasses({"calib_paths.txt"}),
                               {success("./calib_paths")}}));
}

TEST_F(Load, SharedAntenna) {
  writePathFile("calib_paths", kSharedAntenna);
  EXPECT_EQ(load(), 82U);
  expectWritten(blockOfSharedAntenna());
}

TEST_F(Load, PathListIsBuiltBeforeTheCountryCodeIsRead) {
  load();
  EXPECT_THAT(takePropertyReads(), ElementsAre(kPathFile, kCountryCode));
}

TEST_F(Load, NoPathFileOpens) {
  EXPECT_EQ(load(), 0U);
  expectWritten({});
  EXPECT_EQ(takeLog(),
            joined({entry(),
                    vendorFilesSkipped(),
                    skipped("./uwb_calib_paths.conf"),
                    skipped("./calib_paths"),
                    {error("Did not find valid calibration values in any of the files")}}));
}

TEST_F(Load, NoPathFileOpensWithTheProperty) {
  setProperty(kPathFile, "/no%s/such");
  EXPECT_EQ(load(), 0U);
  expectWritten({});
  EXPECT_EQ(takeLog(),
            joined({entry(),
                    skipped("/no%s/such"),
                    vendorFilesSkipped(),
                    skipped("./uwb_calib_paths.conf"),
                    skipped("./calib_paths"),
                    {error("Did not find valid calibration values in any of the files")}}));
}

TEST_F(Load, PathFileOfThePropertyComesFirst) {
  writePathFile("calib_paths", kTwoAntennas);
  writePathFile("mine%d", kSharedAntenna);
  setProperty(kPathFile, "mine%d");
  EXPECT_EQ(load(), 82U);
  expectWritten(blockOfSharedAntenna());
  EXPECT_EQ(takeLog(), joined({entry(),
                               readingOneFile("mine%d", "mine%d.txt"),
                               bothPasses({"mine%d.txt"}),
                               {success("mine%d")}}));
}

TEST_F(Load, UnusablePathFileLeadsToTheNext) {
  writePathFile("calib_paths", kTwoAntennas);
  tree.write("uwb_calib_paths.conf", "missing");
  EXPECT_EQ(load(), 82U);
  expectWritten(blockOfTwoAntennas());
  EXPECT_EQ(
      takeLog(),
      joined({entry(),
              vendorFilesSkipped(),
              {info("Reading path file ./uwb_calib_paths.conf"), info("Reading entry: missing"),
               info("No country placeholder, opening as-is"), error("Unable to open file missing"),
               error("Unable to read any calibration file from: ./uwb_calib_paths.conf"),
               error("Failed to read calibration files from ./uwb_calib_paths.conf, trying "
                     "next path file")},
              readingOneFile("./calib_paths", "calib_paths.txt"),
              bothPasses({"calib_paths.txt"}),
              {success("./calib_paths")}}));
}

TEST_F(Load, InvalidPathFileHidesTheNext) {
  writePathFile("uwb_calib_paths.conf", kValues);
  writePathFile("calib_paths", kTwoAntennas);
  const OpenedFiles hidden("calib_paths");
  EXPECT_EQ(load(), 0U);
  EXPECT_FALSE(hidden.any());
  expectWritten({});
  EXPECT_EQ(
      takeLog(),
      joined({entry(),
              vendorFilesSkipped(),
              readingOneFile("./uwb_calib_paths.conf", "uwb_calib_paths.conf.txt"),
              {info("Parsing antenna selection"), info("Parsing uwb_calib_paths.conf.txt"),
               error("Calibration is invalid, missing params: "), error("- ch5.antenna_selection"),
               error("- ch9.antenna_selection"), error("Calibration is invalid, aborting")}}));
}

TEST_F(Load, ThirdDefaultComesBeforeTheFourth) {
  writePathFile("uwb_calib_paths.conf", kSharedAntenna);
  writePathFile("calib_paths", kTwoAntennas);
  EXPECT_EQ(load(), 82U);
  expectWritten(blockOfSharedAntenna());
}

TEST_F(Load, CountryCodeIsLoggedAsReadAndLoweredInPaths) {
  setProperty(kCountryCode, "Us%s");
  tree.write("calib_paths", "uwb/<country>.conf");
  tree.write("uwb/us%s.conf", kTwoAntennas);
  EXPECT_EQ(load(), 82U);
  expectWritten(blockOfTwoAntennas());
  EXPECT_EQ(
      takeLog(),
      joined({{info("load_uwb_params_from_files entry, version v1.2-RC1"),
               info("Using country code: Us%s")},
              vendorFilesSkipped(),
              skipped("./uwb_calib_paths.conf"),
              {info("Reading path file ./calib_paths"), info("Reading entry: uwb/<country>.conf"),
               info("Calib path contains a country code placeholder, replacing it"),
               info("Parsing calib file: uwb/us%s.conf"),
               info("Found 1 calibration files in ./calib_paths")},
              bothPasses({"uwb/us%s.conf"}),
              {success("./calib_paths")}}));
}

TEST_F(Load, WithoutACountryCodeUnknownIsTriedThenDefault) {
  tree.write("calib_paths", "uwb/<country>.conf");
  tree.write("uwb/default.conf", kTwoAntennas);
  EXPECT_EQ(load(), 82U);
  EXPECT_EQ(
      takeLog(),
      joined({entry(),
              vendorFilesSkipped(),
              skipped("./uwb_calib_paths.conf"),
              {info("Reading path file ./calib_paths"), info("Reading entry: uwb/<country>.conf"),
               info("Calib path contains a country code placeholder, replacing it"),
               info("Parsing calib file: uwb/unknown.conf"),
               error("Unable to open file uwb/unknown.conf"),
               error("Failed to reader calib file: uwb/unknown.conf, falling back to "
                     "default"),
               info("Found 1 calibration files in ./calib_paths")},
              bothPasses({"uwb/default.conf"}),
              {success("./calib_paths")}}));
}

TEST_F(Load, CommentsAreLoggedInBothPasses) {
  writePathFile("calib_paths", "# version = 1\n" + kTwoAntennas);
  EXPECT_EQ(load(), 82U);
  const LogLine ignored = debug("--------------Ignored: #version=1\n");
  EXPECT_EQ(takeLog(),
            joined({entry(),
                    vendorFilesSkipped(),
                    skipped("./uwb_calib_paths.conf"),
                    readingOneFile("./calib_paths", "calib_paths.txt"),
                    {info("Parsing antenna selection"), info("Parsing calib_paths.txt"), ignored,
                     info("Parsing full calibration"), info("Parsing calib_paths.txt"), ignored,
                     success("./calib_paths")}}));
}

TEST_F(Load, CapacityCutsTheBlock) {
  writePathFile("calib_paths", kTwoAntennas);
  const Bytes block = blockOfTwoAntennas();
  const struct {
    unsigned int capacity;
    uint32_t count;
  } rows[] = {{0, 0},   {1, 1},    {10, 10},    {81, 81},        {82, 82},
              {83, 82}, {100, 82}, {65536, 82}, {0xFFFFFFFF, 82}};
  for (const auto& row : rows) {
    takeLog();
    EXPECT_EQ(load(row.capacity), row.count) << "capacity " << row.capacity;
    expectWritten(Bytes(block.data(), block.data() + row.count));
    EXPECT_EQ(takeLog().back(), success("./calib_paths")) << "capacity " << row.capacity;
  }
}

// A complete calibration whose wiring cannot be encoded.
class LoadOfBadWiring : public Load {
 protected:
  void expectConversionError(const std::string& text, const std::string& reason) {
    writePathFile("uwb_calib_paths.conf", kTwoAntennas + text);
    writePathFile("calib_paths", kTwoAntennas);
    EXPECT_EQ(load(), 0U);
    expectWritten({});
    EXPECT_EQ(takeLog(),
              joined({entry(),
                      vendorFilesSkipped(),
                      readingOneFile("./uwb_calib_paths.conf", "uwb_calib_paths.conf.txt"),
                      bothPasses({"uwb_calib_paths.conf.txt"}),
                      {error("Unable to convert calib to params: " + reason)}}));
  }
};

TEST_F(LoadOfBadWiring, GpioOfChannel5) {
  expectConversionError("ant0.selector_gpio=5\n", "GPIO must be 6 or 7");
}

TEST_F(LoadOfBadWiring, GpioOfChannel9) {
  expectConversionError("ant1.selector_gpio=8\n", "GPIO must be 6 or 7");
}

TEST_F(LoadOfBadWiring, LevelOfChannel5) {
  expectConversionError("ant0.selector_gpio_value=2\n", "GPIO value must be 0 or 1");
}

TEST_F(LoadOfBadWiring, Channel9ComesFirst) {
  expectConversionError("ant0.selector_gpio=9\nant1.selector_gpio_value=3\n",
                        "GPIO value must be 0 or 1");
}

// One key of a complete calibration, another value for it, and the offsets that then differ.
struct Change {
  const char* line;
  std::vector<size_t> offsets;
};

TEST_F(Load, EachKeyMovesItsOffsetsOnly) {
  const Change changes[] = {
      {"version=0xFFFD", {2, 3}},
      {"ant1.ch9.prf64.ant_delay=0xBFDF", {4, 5}},
      {"ant0.ch5.prf64.ant_delay=0xBFEF", {6, 7}},
      {"ant1.ch9.prf64.tx_power=0x55443322", {8, 9, 10, 11}},
      {"ant1.ch9.prf64.pg_count=0xF8F7", {12, 13}},
      {"ant1.ch9.prf64.pg_delay=0xDD", {14}},
      {"ant0.ch5.prf64.tx_power=0xEEDDCCBB", {15, 16, 17, 18}},
      {"ant0.ch5.prf64.pg_count=0xFAF9", {19, 20}},
      {"ant0.ch5.prf64.pg_delay=0xDE", {21}},
      {"temperature_reference=21", {26}},
      {"xtal_trim=41", {27}},
      {"wifi_coex_time_gap=4", {31}},
      {"ap_coop_mode=2", {32}},
      {"ant0.selector_gpio=6", {33}},
      {"ant0.selector_gpio_value=0", {33}},
      {"alternate_pulse_shape=6", {34}},
      {"wifi_coex_min_spacing=8", {35}},
      {"ant1.selector_gpio=7", {36}},
      {"ant1.selector_gpio_value=1", {36}},
      {"ant0.port=255", {37}},
      {"ant1.port=255", {38}},
  };
  for (const Change& change : changes) {
    writePathFile("calib_paths", kTwoAntennas + change.line);
    EXPECT_EQ(load(), 82U) << change.line;
    const Bytes block(memory.begin() + kGuard, memory.begin() + kGuard + 82);
    const Bytes before = blockOfTwoAntennas();
    std::vector<size_t> moved;
    for (size_t i = 2; i < block.size(); ++i) {
      if (block[i] != before[i]) moved.push_back(i);
    }
    EXPECT_EQ(moved, change.offsets) << change.line;
    EXPECT_EQ(block[0] << 8 | block[1], blockCrc16(block)) << change.line;
  }
}

TEST_F(Load, EachCallReadsEverythingAfresh) {
  writePathFile("calib_paths", kTwoAntennas);
  EXPECT_EQ(load(), 82U);
  expectWritten(blockOfTwoAntennas());
  writePathFile("calib_paths", kSharedAntenna);
  EXPECT_EQ(load(), 82U);
  expectWritten(blockOfSharedAntenna());
  writePathFile("mine", kTwoAntennas);
  setProperty(kPathFile, "mine");
  EXPECT_EQ(load(), 82U);
  expectWritten(blockOfTwoAntennas());
  setProperty(kPathFile, "");
  EXPECT_EQ(load(), 82U);
  expectWritten(blockOfSharedAntenna());
  tree.remove("calib_paths");
  EXPECT_EQ(load(), 0U);
  expectWritten({});
}

TEST_F(Load, EachCallReadsTheCountryCodeAfresh) {
  tree.write("calib_paths", "<country>");
  tree.write("us", kTwoAntennas);
  tree.write("fr", kSharedAntenna);
  setProperty(kCountryCode, "US");
  EXPECT_EQ(load(), 82U);
  expectWritten(blockOfTwoAntennas());
  setProperty(kCountryCode, "FR");
  EXPECT_EQ(load(), 82U);
  expectWritten(blockOfSharedAntenna());
  setProperty(kCountryCode, "");
  EXPECT_EQ(load(), 0U);
}

TEST_F(Load, AntennasOfAnEarlierCallAreForgotten) {
  writePathFile("calib_paths", kTwoAntennas);
  EXPECT_EQ(load(), 82U);
  for (const std::string missing : {"ch5", "ch9"}) {
    std::string text = kTwoAntennas;
    text.erase(text.find(missing + ".antenna_selection"), 27);
    writePathFile("calib_paths", text);
    takeLog();
    EXPECT_EQ(load(), 0U);
    expectWritten({});
    EXPECT_EQ(takeLog(),
              joined({entry(),
                      vendorFilesSkipped(),
                      skipped("./uwb_calib_paths.conf"),
                      readingOneFile("./calib_paths", "calib_paths.txt"),
                      {info("Parsing antenna selection"), info("Parsing calib_paths.txt"),
                       error("Calibration is invalid, missing params: "),
                       error("- " + missing + ".antenna_selection"),
                       error("Calibration is invalid, aborting")}}));
  }
}

TEST_F(Load, FailedCallLeavesNothingForTheNext) {
  writePathFile("calib_paths", kTwoAntennas + "xtal_trim=99\nversion=bad\n");
  EXPECT_EQ(load(), 0U);
  writePathFile("calib_paths", kTwoAntennas);
  EXPECT_EQ(load(), 82U);
  expectWritten(blockOfTwoAntennas());
}

TEST_F(Load, RelativePathsStartAtTheWorkingDirectoryOfTheCall) {
  writePathFile("calib_paths", kTwoAntennas);
  EXPECT_EQ(load(), 82U);
  expectWritten(blockOfTwoAntennas());
  {
    const TemporaryTree other;
    EXPECT_EQ(load(), 0U);
    other.write("calib_paths", other.root() + "/calib");
    other.write("calib", kSharedAntenna);
    EXPECT_EQ(load(), 82U);
    expectWritten(blockOfSharedAntenna());
  }
  EXPECT_EQ(load(), 82U);
  expectWritten(blockOfTwoAntennas());
}

TEST_F(Load, DirectoriesAsFiles) {
  tree.makeDirectory("uwb_calib_paths.conf");
  tree.makeDirectory("directory");
  tree.write("calib_paths", "directory\ncalib\n");
  tree.write("calib", kTwoAntennas);
  EXPECT_EQ(load(), 82U);
  expectWritten(blockOfTwoAntennas());
  EXPECT_EQ(
      takeLog(),
      joined({entry(),
              vendorFilesSkipped(),
              {info("Reading path file ./uwb_calib_paths.conf"),
               error("Unable to read any calibration file from: ./uwb_calib_paths.conf"),
               error("Failed to read calibration files from ./uwb_calib_paths.conf, trying next "
                     "path file"),
               info("Reading path file ./calib_paths"), info("Reading entry: directory"),
               info("No country placeholder, opening as-is"), info("Reading entry: calib"),
               info("No country placeholder, opening as-is"),
               info("Found 2 calibration files in ./calib_paths")},
              bothPasses({"directory", "calib"}),
              {success("./calib_paths")}}));
}

TEST_F(Load, WritesToAnyAddress) {
  writePathFile("calib_paths", kTwoAntennas);
  memory.assign(128, kUntouched);
  for (size_t offset = 0; offset < 4; ++offset) {
    EXPECT_EQ(load_uwb_params_from_files(memory.data() + offset, 82), 82U);
    const auto begin = memory.begin() + static_cast<ptrdiff_t>(offset);
    EXPECT_EQ(Bytes(begin, begin + 82), blockOfTwoAntennas());
  }
}

// Wherever memory runs out, the call throws or returns 0, writes nothing, and the next one works.
TEST_F(Load, OutOfMemoryCostsOneCallOnly) {
  writePathFile("calib_paths", kTwoAntennas);
  EXPECT_EQ(load(), 82U);
  size_t thrown = 0;
  bool reached = true;
  for (size_t before = 0; reached; before += 1 + before / 16) {
    memory.assign(kGuard + 128 + kGuard, kUntouched);
    uint32_t count = 0;
    takeLog();
    {
      const FailingAllocation failure(before);
      try {
        count = load_uwb_params_from_files(memory.data() + kGuard, 82);
      } catch (const OutOfMemory&) {
        ++thrown;
      }
      reached = FailingAllocation::reached();
    }
    expectWritten(count == 0 ? Bytes() : blockOfTwoAntennas());
    EXPECT_EQ(load(), 82U) << "after allocation " << before;
    expectWritten(blockOfTwoAntennas());
  }
  EXPECT_GT(thrown, 0U);
}

TEST(PublicHeader, NamesTheSizeOfTheBlock) {
  EXPECT_EQ(TARNIX_UWB_PARAMS_SIZE, 82);
}

}  // namespace
