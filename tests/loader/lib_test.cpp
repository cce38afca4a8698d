// SPDX-License-Identifier: Apache-2.0
#include "loader/lib.h"

#include <gtest/gtest.h>
#include <sys/inotify.h>
#include <unistd.h>

#include <algorithm>
#include <stdexcept>

#include "tests/kit/calibrations.h"
#include "tests/kit/doubles.h"
#include "tests/kit/guarded_load.h"
#include "tests/kit/temporary_tree.h"

// tests/scenarios hold whole loads; here is what they cannot show.

namespace {

// Starts and ends without properties.
class LibTest : public testing::Test {
 protected:
  void SetUp() override {
    clearProperties();
    takePropertyReads();
    takeLog();
  }
  void TearDown() override {
    clearProperties();
    on_log_line = nullptr;
  }
};

using BuildPaths = LibTest;

// The list for a property's value.
Names pathsWith(const std::string& property) {
  setProperty(kPathsProperty, property);
  return build_paths();
}

TEST_F(BuildPaths, PropertyComesBeforeTheDefaults) {
  const Names defaults = {"/vendor/etc/uwb_calib_paths.conf", "/vendor/etc/calib_paths",
                          "./uwb_calib_paths.conf", "./calib_paths"};
  EXPECT_EQ(build_paths(), defaults);
  EXPECT_EQ(pathsWith(""), defaults);
  // One path whatever it holds; a default that it names is tried twice.
  for (const char* value :
       {"/data/paths", "/vendor/etc/calib_paths", "/a,/b", "/a:/b", "/a /b", "/a;/b", " /a\n"}) {
    Names expected = defaults;
    expected.insert(expected.begin(), value);
    EXPECT_EQ(pathsWith(value), expected);
  }
  EXPECT_LOG();
}

TEST_F(BuildPaths, EveryCallReadsThePropertyAndReturnsACopy) {
  Names first = pathsWith("/a");
  for (std::string& path : first) path = "changed";
  const Names second = pathsWith("/b");
  EXPECT_EQ(second[0], "/b");
  EXPECT_EQ(second[4], "./calib_paths");
  EXPECT_EQ(takePropertyReads(), (Names{kPathsProperty, kPathsProperty}));
}

// Watches a file, or the files that a directory itself holds, for being opened.
class OpenedFiles {
 public:
  explicit OpenedFiles(const std::string& path) : watch_(inotify_init1(IN_NONBLOCK | IN_CLOEXEC)) {
    if (inotify_add_watch(watch_, path.c_str(), IN_OPEN) < 0) {
      throw std::runtime_error("cannot watch " + path);
    }
  }
  ~OpenedFiles() { close(watch_); }
  OpenedFiles(const OpenedFiles&) = delete;
  OpenedFiles& operator=(const OpenedFiles&) = delete;

  // True when any was opened since the last call.
  bool any() const {
    alignas(inotify_event) char event[4096];
    bool opened = false;
    while (read(watch_, event, sizeof(event)) > 0) opened = true;
    return opened;
  }

 private:
  const int watch_;
};

class LoadTest : public LibTest {
 protected:
  // A path file that lists one calibration file of this text.
  void writePathFile(const std::string& path_file, const std::string& text) const {
    tree.write(path_file, path_file + ".txt");
    tree.write(path_file + ".txt", text);
  }

  TemporaryTree tree;
};

TEST_F(LoadTest, NullBufferLogsTheEntryLineOnly) {
  writePathFile("calib_paths", kCalibration);
  setProperty(kCountryProperty, "US");
  const OpenedFiles opened(tree.root());
  for (const unsigned int capacity : {0U, 82U, 0xFFFFFFFFU}) {
    EXPECT_EQ(load_uwb_params_from_files(nullptr, capacity), 0U);
    EXPECT_FALSE(opened.any());
    EXPECT_LOG(info("load_uwb_params_from_files entry, version v1.2-RC1"));
    EXPECT_EQ(takePropertyReads(), Names());
  }
}

TEST_F(LoadTest, PathListIsBuiltBeforeTheCountryCodeIsRead) {
  writePathFile("calib_paths", kCalibration);
  const OpenedFiles opened("calib_paths");
  EXPECT_EQ(Load().memory, guarded(82, block()));
  EXPECT_EQ(takePropertyReads(), (Names{kPathsProperty, kCountryProperty}));
  EXPECT_TRUE(opened.any());
}

TEST_F(LoadTest, InvalidPathFileHidesTheNextWhichIsNotOpened) {
  writePathFile("uwb_calib_paths.conf", calibrationWithout("version"));
  writePathFile("calib_paths", kCalibration);
  const OpenedFiles hidden("calib_paths");
  EXPECT_EQ(Load().memory, guarded(82));
  EXPECT_FALSE(hidden.any());
}

TEST_F(LoadTest, BuffersOfAnyCapacityTakeAsMuchOfTheBlockAsFits) {
  writePathFile("calib_paths", kCalibration);
  for (const unsigned int capacity :
       {0U, 1U, 10U, 81U, 82U, 83U, 255U, 65536U, 0x80000000U, 0xFFFFFFFFU}) {
    const unsigned int count = std::min(82U, capacity);
    Bytes memory = guarded(100);
    EXPECT_EQ(load_uwb_params_from_files(memory.data() + kGuard, capacity), count);
    EXPECT_EQ(memory, guarded(100, {kBlock, kBlock + count})) << capacity;
  }
}

template <typename Thrown>
void throwAtSuccess(const LogLine& line) {
  if (beginsWith(line.text, "Valid calibration")) throw Thrown("bad log");
}

TEST_F(LoadTest, SuccessIsLoggedBeforeTheBufferIsWritten) {
  writePathFile("calib_paths", kCalibration);
  on_log_line = throwAtSuccess<std::runtime_error>;
  const Load load;
  EXPECT_EQ(load.result, 0U);
  EXPECT_EQ(load.memory, guarded(82));
  EXPECT_EQ(takeLog().back(), error("Unable to convert calib to params: bad log"));
}

TEST_F(LoadTest, ExceptionsThatAreNotOfTheStandardLibraryPass) {
  writePathFile("calib_paths", kCalibration);
  on_log_line = throwAtSuccess<std::string>;
  EXPECT_THROW(Load(), std::string);
  EXPECT_EQ(takeLog().back(), info("Valid calibration was parsed from entries in ./calib_paths"));
}

// One key, another value for it, and the offsets that then differ beside the checksum's.
struct Change {
  const char* line;
  std::vector<size_t> offsets;
};

const Change kChanges[] = {
    {"version=0xFEFD", {2, 3}},
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

TEST_F(LoadTest, EachKeyMovesItsOffsetsOnly) {
  for (const Change& change : kChanges) {
    writePathFile("calib_paths", kCalibration + std::string(change.line));
    const Load load;
    ASSERT_EQ(load.result, 82U) << change.line;
    const Bytes found(load.memory.begin() + kGuard, load.memory.begin() + kGuard + 82);
    std::vector<size_t> moved;
    for (size_t i = 2; i < found.size(); ++i) {
      if (found[i] != kBlock[i]) moved.push_back(i);
    }
    EXPECT_EQ(moved, change.offsets) << change.line;
    EXPECT_EQ(found, sealed(found)) << change.line;
  }
}

TEST(PublicHeader, NamesTheSizeOfTheBlock) {
  EXPECT_EQ(TARNIX_UWB_PARAMS_SIZE, 82);
}

}  // namespace
