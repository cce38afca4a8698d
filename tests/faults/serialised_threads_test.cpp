// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include <mutex>
#include <thread>

#include "include/tarnix_uwb_params_nfcc.h"
#include "tests/faults/device.h"
#include "tests/faults/guarded_load.h"
#include "tests/kit/log_capture.h"
#include "tests/kit/property_map.h"

namespace {

constexpr int kThreadsOfEachCaller = 8;
constexpr int kLoadsOfEachThread = 50;

// Two parts of one service, which know nothing of each other but the lock. What each one sees
// depends on properties that it sets while it holds the lock.
class Caller {
 public:
  Caller(std::mutex& lock, const std::string& path_file, uint32_t expected)
      : lock(lock), path_file(path_file), expected(expected) {}

  void start() {
    for (int i = 0; i < kThreadsOfEachCaller; ++i)
      threads.emplace_back([this] { loadRepeatedly(); });
  }

  void finish() {
    for (std::thread& thread : threads) thread.join();
  }

  int failures() const { return failed; }

 private:
  void loadRepeatedly() {
    for (int i = 0; i < kLoadsOfEachThread; ++i) {
      const std::lock_guard<std::mutex> guard(lock);
      setProperty("ro.vendor.uwb.calibration.calibrationpaths", path_file);
      setProperty("vendor.uwb.calibration.country_code", kCountryCode);
      const Load found = load(TARNIX_UWB_PARAMS_SIZE);
      const std::vector<uint8_t> memory = memoryWith(expected, TARNIX_UWB_PARAMS_SIZE);
      if (found.result != expected || found.memory != memory) ++failed;
      takeLog();
    }
  }

  std::mutex& lock;
  const std::string path_file;
  const uint32_t expected;
  std::vector<std::thread> threads;
  int failed = 0;
};

TEST(SerialisedThreads, GetTheBlockOfTheirOwnLoad) {
  const Device device;
  device.write("invalid.conf", std::string(kCommonFile) + "\nmissing\n");
  device.write("nothing.conf", "missing\n");
  std::mutex lock;
  Caller valid(lock, kPathFile, 82);
  Caller without(lock, "nothing.conf", 0);
  valid.start();
  without.start();
  valid.finish();
  without.finish();
  EXPECT_EQ(valid.failures(), 0);
  EXPECT_EQ(without.failures(), 0);
}

}  // namespace
