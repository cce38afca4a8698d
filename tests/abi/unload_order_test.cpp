// SPDX-License-Identifier: Apache-2.0
// The library's load-time data: the antenna names are built first, so unloading frees them last,
// after the list of default path files. A block is recognised by its text when it is freed.
#include <dlfcn.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <new>
#include <string>

#include "tests/kit/calibrations.h"
#include "tests/kit/temporary_tree.h"

namespace {

// Longer than any string object keeps in itself.
constexpr char kFirstPathFile[] = "/vendor/etc/uwb_calib_paths.conf";
constexpr char kName5[] = "antenna_of_channel_5_with_a_name_that_is_long";
constexpr char kName9[] = "antenna_of_channel_9_with_a_name_that_is_long";

constexpr size_t kSmallestBlock = 64;

// What was freed since `watching` was set, in order: one letter for each block that is known.
bool watching = false;
char freed[16];

bool holds(const void* memory, const char* text) {
  return std::memcmp(memory, text, std::strlen(text)) == 0;
}

void noteFreed(const void* memory) {
  const size_t count = std::strlen(freed);
  if (count + 1 == sizeof(freed)) return;
  if (holds(memory, kFirstPathFile)) freed[count] = 'p';
  if (holds(memory, kName5)) freed[count] = '5';
  if (holds(memory, kName9)) freed[count] = '9';
}

void release(void* memory) {
  if (watching && memory != nullptr) noteFreed(memory);
  std::free(memory);
}

TEST(UnloadOrder, AntennaNamesOutliveThePathList) {
  const TemporaryTree tree;
  tree.write("calib_paths", "calib");
  tree.write("calib", calibrationWith(kName5, kName9));
  void* const library = dlopen("libtarnix_uwb_params_nfcc.so", RTLD_NOW);
  ASSERT_NE(library, nullptr) << dlerror();
  const auto load = reinterpret_cast<uint32_t (*)(void*, unsigned int)>(
      dlsym(library, "load_uwb_params_from_files"));
  ASSERT_NE(load, nullptr);
  uint8_t block[82];
  EXPECT_EQ(load(block, sizeof(block)), 82U);
  watching = true;
  dlclose(library);
  watching = false;
  EXPECT_STREQ(freed, "p95");
}

}  // namespace

void* operator new(size_t size) {
  void* const memory = std::calloc(1, size < kSmallestBlock ? kSmallestBlock : size);
  if (memory == nullptr) throw std::bad_alloc();
  return memory;
}

void operator delete(void* memory) noexcept {
  release(memory);
}

void operator delete(void* memory, size_t /*size*/) noexcept {
  release(memory);
}
