// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <string_view>

#include "include/tarnix_uwb_params_nfcc.h"
#include "tests/faults/device.h"
#include "tests/faults/effort.h"
#include "tests/faults/process_state.h"
#include "tests/kit/allocations.h"
#include "tests/kit/doubles.h"
#include "tests/kit/opened_library.h"

namespace {

constexpr const char* kLibrary = LIBRARY_PATH;

// Opens the library, loads once and closes it. Returns the result of the load, or 0.
uint32_t openLoadClose() {
  const OpenedLibrary library(kLibrary);
  uint8_t buffer[TARNIX_UWB_PARAMS_SIZE];
  return library.load(buffer, sizeof(buffer));
}

TEST(Unloading, LeavesNothingBehind) {
  const Device device;
  keepLog(false);
  ASSERT_FALSE(OpenedLibrary::isMapped(kLibrary));
  ASSERT_EQ(openLoadClose(), 82U);
  ASSERT_FALSE(OpenedLibrary::isMapped(kLibrary));
  const size_t allocations = liveAllocations();
  const size_t descriptors = openDescriptors();
  const size_t regions = mappedRegions();
  for (size_t i = 0; i < effort(1000); ++i) ASSERT_EQ(openLoadClose(), 82U) << "round " << i;
  EXPECT_FALSE(OpenedLibrary::isMapped(kLibrary));
  EXPECT_EQ(liveAllocations(), allocations);
  EXPECT_EQ(openDescriptors(), descriptors);
  // The C library's own heap may take a region or two; many stays must not add up.
  EXPECT_LE(mappedRegions(), regions + 10);
  keepLog(true);
}

// One letter for each block that is released and known by its text.
std::string released;

void noteReleased(const void* memory, size_t size) {
  const std::string_view text(static_cast<const char*>(memory), size);
  const auto begins = [text](std::string_view known) { return text.rfind(known, 0) == 0; };
  if (begins("/vendor/etc/uwb_calib_paths.conf")) released += 'p';
  if (begins(kAntenna5)) released += '5';
  if (begins(kAntenna9)) released += '9';
}

TEST(Unloading, ReleasesTheAntennaNamesAfterThePathList) {
  const Device device;
  auto library = std::make_unique<OpenedLibrary>(kLibrary);
  uint8_t buffer[TARNIX_UWB_PARAMS_SIZE];
  ASSERT_EQ(library->load(buffer, sizeof(buffer)), 82U);
  on_release = noteReleased;
  library.reset();
  on_release = nullptr;
  EXPECT_EQ(released, "p95");
}

// The log of a load in which one allocation fails, wherever that ends.
Log logWithoutMemory(const OpenedLibrary& library, size_t allocations) {
  uint8_t block[TARNIX_UWB_PARAMS_SIZE];
  takeLog();
  try {
    const FailingAllocation failure(allocations);
    library.load(block, sizeof(block));
  } catch (const OutOfMemory&) {
  }
  return takeLog();
}

// An exception keeps its type on its way from the program into the library.
TEST(Unloading, LibraryCatchesWhatTheProgramThrows) {
  const Device device;
  // A line without a line feed at its end takes an allocation where it is parsed.
  device.write(kCountryFile, "patch.ch5.prf64.tx_power=0x181C2024");
  const OpenedLibrary library(kLibrary);
  const LogLine caught =
      error(std::string("Failed to parse calb file ") + kCountryFile + ", reason no memory left");
  size_t times = 0;
  for (size_t before = 0; before < 200; ++before) {
    const Log log = logWithoutMemory(library, before);
    if (std::find(log.begin(), log.end(), caught) != log.end()) ++times;
  }
  EXPECT_GT(times, 0U);
}

}  // namespace
