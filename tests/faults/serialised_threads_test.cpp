// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include <mutex>
#include <thread>

#include "tests/faults/device.h"
#include "tests/kit/calibrations.h"
#include "tests/kit/doubles.h"

namespace {

constexpr int kThreadsOfEachCaller = 8;
constexpr int kLoadsOfEachThread = 50;

// Two parts of one service, which know nothing of each other but the lock. What each one sees
// depends on properties that it sets while it holds the lock.
class Caller {
 public:
  Caller(std::mutex& lock, const std::string& path_file, const Bytes& expected)
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
      const Load found;
      if (found.result != expected.size() || found.memory != guarded(82, expected)) ++failed;
      takeLog();
    }
  }

  std::mutex& lock;
  const std::string path_file;
  const Bytes expected;
  std::vector<std::thread> threads;
  int failed = 0;
};

TEST(SerialisedThreads, GetTheBlockOfTheirOwnLoad) {
  const Device device;
  device.write("nothing.conf", "missing\n");
  std::mutex lock;
  Caller valid(lock, kPathFile, block());
  Caller without(lock, "nothing.conf", {});
  valid.start();
  without.start();
  valid.finish();
  without.finish();
  EXPECT_EQ(valid.failures(), 0);
  EXPECT_EQ(without.failures(), 0);
}

}  // namespace
