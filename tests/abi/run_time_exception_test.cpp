// SPDX-License-Identifier: Apache-2.0
// The library catches what others throw: an exception keeps its type on its way from the program or
// the language's run-time into the library.
#include <dlfcn.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>

#include "tests/kit/allocations.h"
#include "tests/kit/calibration.h"
#include "tests/kit/doubles.h"
#include "tests/kit/temporary_tree.h"

namespace {

using LoadFunction = uint32_t (*)(void*, unsigned int);

LoadFunction openLibrary() {
  void* const library = dlopen("libtarnix_uwb_params_nfcc.so", RTLD_NOW);
  if (library == nullptr) return nullptr;
  return reinterpret_cast<LoadFunction>(dlsym(library, "load_uwb_params_from_files"));
}

// The log of a load in which one allocation fails, wherever that ends.
Log logWithoutMemory(LoadFunction load, size_t allocations) {
  uint8_t block[82];
  takeLog();
  try {
    const FailingAllocation failure(allocations);
    load(block, sizeof(block));
  } catch (const OutOfMemory&) {
  }
  return takeLog();
}

TEST(RunTimeException, CostsTheFileThatIsParsed) {
  const TemporaryTree tree;
  tree.write("calib_paths", "calib");
  // A line without a line feed at its end takes an allocation where it is parsed.
  tree.write("calib", "patch.ch5.prf64.tx_power=0x181C2024");
  const LoadFunction load = openLibrary();
  ASSERT_NE(load, nullptr) << dlerror();
  const LogLine caught = error("Failed to parse calb file calib, reason no memory left");
  size_t times = 0;
  for (size_t before = 0; before < 200; ++before) {
    const Log log = logWithoutMemory(load, before);
    if (std::find(log.begin(), log.end(), caught) != log.end()) ++times;
  }
  EXPECT_GT(times, 0U);
}

}  // namespace
