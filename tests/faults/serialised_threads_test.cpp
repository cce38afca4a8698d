// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include <mutex>
#include <thread>

#include "tests/faults/device.h"

namespace {

// Two parts of one service, of eight threads each, which know nothing of each other but the lock.
// What each one sees depends on a property that it sets while it holds the lock.
TEST(SerialisedThreads, GetTheBlockOfTheirOwnLoad) {
  const Device device;
  device.write("nothing.conf", "missing\n");
  std::mutex lock;
  int failures = 0;
  const auto load_repeatedly = [&](const std::string& path_file, const Bytes& expected) {
    for (int i = 0; i < 50; ++i) {
      const std::lock_guard<std::mutex> guard(lock);
      setProperty(kPathsProperty, path_file);
      const Load found;
      if (found.result != expected.size() || found.memory != guarded(82, expected)) ++failures;
      takeLog();
    }
  };
  std::vector<std::thread> threads;
  for (int i = 0; i < 8; ++i) {
    threads.emplace_back(load_repeatedly, kPathFile, block());
    threads.emplace_back(load_repeatedly, "nothing.conf", Bytes());
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(failures, 0);
}

}  // namespace
