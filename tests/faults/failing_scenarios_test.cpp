// SPDX-License-Identifier: Apache-2.0
// Every opening, reading and allocation of every scenario's load fails in turn, one at a time.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdarg>
#include <cstddef>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>

#include "fuzz/device_folder.h"
#include "fuzz/literal_load.h"
#include "tests/faults/device.h"
#include "tests/faults/effort.h"
#include "tests/faults/process_state.h"
#include "tests/kit/allocations.h"

namespace {

// The calls of the load under test, which fail or are passed on. None is counted outside of it.
struct Calls {
  bool counting = false;
  size_t openings = 0;
  size_t readings = 0;
  size_t failing_opening = SIZE_MAX;
  size_t failing_reading = SIZE_MAX;
  // Where the reading failed: the number of the opening, and the bytes that were read before.
  size_t cut_opening = SIZE_MAX;
  size_t cut_size = 0;
};

Calls calls;

int failWith(int error) {
  errno = error;
  return -1;
}

}  // namespace

// The library under test calls these in place of the C library's. The headers declare open() in
// more than one way.
extern "C" {
using OpenFunction = int(const char* path, int flags, ...);

__attribute__((visibility("default"))) OpenFunction countedOpen __asm__("open");

int countedOpen(const char* path, int flags, ...) {
  va_list arguments;
  va_start(arguments, flags);
  const mode_t mode = (flags & O_CREAT) != 0 ? va_arg(arguments, mode_t) : 0;
  va_end(arguments);
  if (calls.counting && calls.openings++ == calls.failing_opening) return failWith(EMFILE);
  return openat(AT_FDCWD, path, flags, mode);
}

#define SAME_AS_OPEN __attribute__((visibility("default"), alias("open")))
SAME_AS_OPEN OpenFunction countedOpen64 __asm__("open64");
SAME_AS_OPEN OpenFunction countedOpenChecked __asm__("__open_2");
SAME_AS_OPEN OpenFunction countedOpenChecked64 __asm__("__open64_2");

ssize_t read(int file, void* bytes, size_t size) {
  if (calls.counting && calls.readings++ == calls.failing_reading) {
    calls.cut_opening = calls.openings - 1;
    const off_t position = lseek(file, 0, SEEK_CUR);
    calls.cut_size = position < 0 ? 0 : static_cast<size_t>(position);
    return failWith(EIO);
  }
  return static_cast<ssize_t>(syscall(SYS_read, file, bytes, size));
}
}

namespace {

// What a load is expected to give.
struct Expected {
  Bytes block;
  Log log;
};

// What the literal loader says of a device of which one opening fails or one text is cut.
Expected expected(const DeviceFolder& device, const Calls& failed) {
  size_t openings = 0;
  const auto read = [&](const std::string& path) -> std::optional<std::string> {
    const size_t opening = openings++;
    if (opening == failed.failing_opening) return std::nullopt;
    const std::optional<std::string> text = DeviceFolder::textOf(path);
    return opening == failed.cut_opening ? text.value().substr(0, failed.cut_size) : text;
  };
  LiteralLoad literal(read, device.country());
  const Bytes block = literal.run(device.pathProperty());
  return {block, literal.log};
}

// A load with `counted` in force, which holds the calls afterwards.
Load loadWith(Calls& counted) {
  calls = counted;
  calls.counting = true;
  Load load;
  calls.counting = false;
  counted = calls;
  return load;
}

void expectSame(const Load& load, const Expected& expected) {
  EXPECT_FALSE(load.threw);
  EXPECT_EQ(load.result, expected.block.size());
  EXPECT_EQ(load.memory, guarded(82, expected.block));
  EXPECT_EQ(takeLog(), expected.log);
}

// Every scenario's first load, by its name, and one of long names and texts.
std::map<std::string, std::string> scenarios() {
  std::map<std::string, std::string> found;
  for (const auto& entry : std::filesystem::directory_iterator(SEEDS "/load")) {
    std::ifstream file(entry.path(), std::ios::binary);
    const std::string input(std::istreambuf_iterator<char>(file), {});
    found[entry.path().filename()] = input.substr(1);  // After the capacity.
  }
  const auto file = [](const char* path, const std::string& text) {
    return std::string("\xFF") + path + "\n" + text;
  };
  found["long names"] = std::string("FR\xFF") + kPathFile + file(kPathFile, pathFileText()) +
                        file(kCommonFile, commonText()) + file(kCountryFile, countryText());
  return found;
}

TEST(FailingScenarios, OpeningsAndReadingsCostTheirFile) {
  size_t openings = 0;
  size_t readings = 0;
  takeLog();
  for (const auto& [name, description] : scenarios()) {
    const DeviceFolder device(description);
    Calls whole;
    const Load first = loadWith(whole);
    expectSame(first, expected(device, Calls()));
    for (size_t n = 0; n < whole.openings + whole.readings; ++n) {
      SCOPED_TRACE(name + ", call " + std::to_string(n));
      Calls failed;
      if (n < whole.openings) failed.failing_opening = n;
      if (n >= whole.openings) failed.failing_reading = n - whole.openings;
      const Load load = loadWith(failed);
      expectSame(load, expected(device, failed));
      expectSame(Load(), expected(device, Calls()));
      ASSERT_FALSE(testing::Test::HasFailure());
    }
    openings += whole.openings;
    readings += whole.readings;
  }
  std::printf("%zu openings and %zu readings failed\n", openings, readings);
  EXPECT_GT(openings, 200U);
  EXPECT_GT(readings, 200U);
}

// A load in which the allocation after `before` others fails.
struct FailedLoad {
  explicit FailedLoad(size_t before) {
    const size_t descriptors_before = openDescriptors();
    const size_t live_before = liveAllocations();
    uint8_t buffer[kGuard + TARNIX_UWB_PARAMS_SIZE + kGuard];
    std::fill(std::begin(buffer), std::end(buffer), kUntouched);
    {
      const FailingAllocation failure(before);
      try {
        result = load_uwb_params_from_files(buffer + kGuard, TARNIX_UWB_PARAMS_SIZE);
      } catch (const OutOfMemory&) {
        threw = true;
      }
      happened = FailingAllocation::reached();
    }
    left_behind = liveAllocations() - live_before;
    descriptors = openDescriptors() - descriptors_before;
    memory.assign(buffer, buffer + sizeof(buffer));
    log = takeLog();
  }

  uint32_t result = 0;
  bool threw = false;
  bool happened = false;  // False when a load has fewer allocations.
  size_t left_behind = 0;
  size_t descriptors = 0;
  Bytes memory;
  Log log;
};

// A failure inside a step that catches it: the rest of the file is ignored, and the load goes on.
bool isLogged(const Log& log) {
  return std::any_of(log.begin(), log.end(), [](const LogLine& line) {
    return line == error("Unable to convert calib to params: no memory left") ||
           (line.priority == 6 && (beginsWith(line.text, "Failed to parse calb file ") ||
                                   beginsWith(line.text, "Failed to parse calib from ")));
  });
}

// libc++ up to 14 loses the memory of a vector of which an element cannot be copied.
bool isLostInACopy() {
  const std::vector<std::string> strings(2, "longer than a string without memory");
  const size_t before = liveAllocations();
  const FailingAllocation failure(2);
  try {
    const std::vector<std::string> copy = strings;
  } catch (const std::bad_alloc&) {
  }
  return liveAllocations() != before;
}

// What is written is nothing or a whole block, and nothing around it.
void expectWholeBlock(const FailedLoad& failed) {
  const auto buffer = failed.memory.begin() + kGuard;
  const Bytes written(buffer, buffer + static_cast<std::ptrdiff_t>(failed.result));
  EXPECT_TRUE(written.empty() || written.size() == 82);
  EXPECT_EQ(written, written.empty() ? written : sealed(written));
  EXPECT_EQ(failed.memory, guarded(82, written));
}

// A block from which something is missing must not come without a word.
TEST(FailingScenarios, AllocationsAreThrownOrLoggedOrCostNothing) {
  const bool is_lost = isLostInACopy();
  const size_t step = std::max<size_t>(1, 100 / effort(100));
  size_t count = 0;
  size_t thrown = 0;
  for (const auto& [name, description] : scenarios()) {
    const DeviceFolder device(description);
    const Expected right = expected(device, Calls());
    // The standard library keeps what it has looked up once, and the library its antenna names.
    takeLog();
    expectSame(Load(), right);
    for (size_t before = 0;; before += step) {
      SCOPED_TRACE(name + ", allocation " + std::to_string(before));
      const FailedLoad failed(before);
      if (!failed.happened) break;
      ++count;
      if (failed.threw) ++thrown;
      const bool is_right = failed.memory == guarded(82, right.block) && failed.log == right.log;
      EXPECT_TRUE(failed.threw || is_right || (isLogged(failed.log) && failed.log != right.log))
          << testing::PrintToString(failed.log);
      expectWholeBlock(failed);
      EXPECT_TRUE(is_lost || failed.left_behind == 0);
      EXPECT_EQ(failed.descriptors, 0U);
      expectSame(Load(), right);
      ASSERT_FALSE(testing::Test::HasFailure());
    }
  }
  std::printf("%zu allocations failed, %zu of them thrown\n", count, thrown);
  EXPECT_GT(thrown * step, 1000U) << "the loads are the real ones";
}

}  // namespace
