// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>
#include <sys/fsuid.h>
#include <sys/resource.h>
#include <unistd.h>

#include <filesystem>

#include "tests/faults/device.h"
#include "tests/kit/doubles.h"

namespace {

// Reading at its start gives EIO: nothing is mapped at address 0.
constexpr const char* kUnreadable = "/proc/self/mem";

// While it lives, this process can open `more` further files at most.
class DescriptorLimit {
 public:
  explicit DescriptorLimit(rlim_t more) {
    EXPECT_EQ(getrlimit(RLIMIT_NOFILE, &before), 0);
    const int next = dup(0);
    close(next);
    rlimit limit = before;
    limit.rlim_cur = static_cast<rlim_t>(next) + more;
    EXPECT_EQ(setrlimit(RLIMIT_NOFILE, &limit), 0);
  }
  ~DescriptorLimit() { EXPECT_EQ(setrlimit(RLIMIT_NOFILE, &before), 0); }
  DescriptorLimit(const DescriptorLimit&) = delete;
  DescriptorLimit& operator=(const DescriptorLimit&) = delete;

 private:
  rlimit before;
};

// Files are opened with the rights of a user who owns none. Without it, root may read everything.
class FilesOfNobody {
 public:
  FilesOfNobody() { setfsuid(65534); }
  ~FilesOfNobody() { setfsuid(geteuid()); }
  FilesOfNobody(const FilesOfNobody&) = delete;
  FilesOfNobody& operator=(const FilesOfNobody&) = delete;
};

Log noSuchPathFile(const std::string& path) {
  return {info("Reading path file " + path), error("Failed to open path file: " + path),
          error("Unable to read any calibration file from: " + path),
          error("Failed to read calibration files from " + path + ", trying next path file")};
}

Log begun() {
  return {info("load_uwb_params_from_files entry, version v1.2-RC1"),
          info("Using country code: FR")};
}

Log noDefaults() {
  return noSuchPathFile("/vendor/etc/uwb_calib_paths.conf") +
         noSuchPathFile("/vendor/etc/calib_paths") + noSuchPathFile("./uwb_calib_paths.conf") +
         noSuchPathFile("./calib_paths") +
         Log{error("Did not find valid calibration values in any of the files")};
}

Log entry(const std::string& path) {
  return {info("Reading entry: " + path), info("No country placeholder, opening as-is")};
}

Log noSuchEntry(const std::string& path) {
  return entry(path) + Log{error("Unable to open file " + path)};
}

// The path file of the vendor has no calibration file that can be read.
Log nothingIn(const Log& entries) {
  const std::string path = kPathFile;
  return begun() + Log{info("Reading path file " + path)} + entries +
         Log{error("Unable to read any calibration file from: " + path),
             error("Failed to read calibration files from " + path + ", trying next path file")} +
         noDefaults();
}

void expectNothing(const Log& log) {
  const Load none;
  EXPECT_FALSE(none.threw);
  EXPECT_EQ(none.result, 0U);
  EXPECT_EQ(none.memory, guarded(82));
  EXPECT_EQ(takeLog(), log);
}

class FailingFiles : public testing::Test {
 protected:
  Device device;
};

TEST_F(FailingFiles, NoDescriptorLeftForThePathFile) {
  {
    const DescriptorLimit limit(0);
    expectNothing(begun() + noSuchPathFile(kPathFile) + noDefaults());
  }
  expectRightBlock();
}

TEST_F(FailingFiles, OneDescriptorIsEnough) {
  const DescriptorLimit limit(1);
  expectRightBlock();
}

TEST_F(FailingFiles, APathFileEndsWhereReadingItFails) {
  device.remove(kPathFile);
  std::filesystem::create_symlink(kUnreadable, kPathFile);
  expectNothing(nothingIn({}));
}

TEST_F(FailingFiles, ATextEndsWhereReadingItFails) {
  device.write(kPathFile, std::string(kUnreadable) + "\n" + pathFileText());
  expectRightBlock();
  device.write(kPathFile, std::string(kUnreadable) + "\n");
  expectNothing(
      begun() + Log{info(std::string("Reading path file ") + kPathFile)} + entry(kUnreadable) +
      Log{info(std::string("Found 1 calibration files in ") + kPathFile),
          info("Parsing antenna selection"), info(std::string("Parsing ") + kUnreadable),
          error("Calibration is invalid, missing params: "), error("- ch5.antenna_selection"),
          error("- ch9.antenna_selection"), error("Calibration is invalid, aborting")});
}

TEST_F(FailingFiles, ATextThatMayNotBeReadIsLeftOut) {
  device.write(kPathFile, std::string(kCommonFile) + "\n");
  std::filesystem::permissions(".", std::filesystem::perms(0755));
  std::filesystem::permissions(kCommonFile, std::filesystem::perms::none);
  const FilesOfNobody nobody;
  expectNothing(nothingIn(noSuchEntry(kCommonFile)));
}

TEST_F(FailingFiles, FilesThatVanishAreMissedByTheNextLoad) {
  expectRightBlock();
  device.write(kPathFile, std::string(kCommonFile) + "\n");
  device.remove(kCommonFile);
  expectNothing(nothingIn(noSuchEntry(kCommonFile)));
  device.remove(kPathFile);
  expectNothing(begun() + noSuchPathFile(kPathFile) + noDefaults());
  device.write(kPathFile, pathFileText());
  device.write(kCommonFile, commonText());
  expectRightBlock();
}

}  // namespace
