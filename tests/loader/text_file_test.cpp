// SPDX-License-Identifier: Apache-2.0
#include "loader/text_file.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <fstream>
#include <limits>
#include <stdexcept>
#include <thread>
#include <vector>

#include "loader/calib_reader.h"
#include "tests/faults/process_state.h"
#include "tests/kit/allocations.h"
#include "tests/kit/doubles.h"
#include "tests/kit/temporary_tree.h"

namespace {

// What the next calls of read() give: at most that many bytes, the error -n, or an exception. Then
// the system's.
std::vector<int> readings;
constexpr int kThrown = std::numeric_limits<int>::max();

// What fstat() tells instead of the size, if set.
std::optional<off_t> told_size;

// Whether the file of the last read() is closed in a process that is started.
bool closes_on_exec = false;

int failWith(int error) {
  errno = error;
  return -1;
}

}  // namespace

// The library under test calls these in place of the C library's.
extern "C" ssize_t read(int file, void* bytes, size_t size) {
  closes_on_exec = (fcntl(file, F_GETFD) & FD_CLOEXEC) != 0;
  if (!readings.empty()) {
    const int reading = readings.front();
    readings.erase(readings.begin());
    if (reading == kThrown) throw std::length_error("no text is so long");
    if (reading < 0) return failWith(-reading);
    size = std::min(size, static_cast<size_t>(reading));
  }
  return static_cast<ssize_t>(syscall(SYS_read, file, bytes, size));
}

extern "C" int fstat(int file, struct stat* status) noexcept {
  if (!told_size.has_value()) return failWith(EOVERFLOW);
  *status = {};
  status->st_size = *told_size;
  return file < 0 ? failWith(EBADF) : 0;
}

namespace {

// A text in which no two places of a block's distance are alike.
std::string textOfSize(size_t size) {
  std::string text(size, '\0');
  for (size_t i = 0; i < size; ++i) text[i] = static_cast<char>(i * 7 + i / 251);
  return text;
}

class TextFile : public testing::Test {
 protected:
  ~TextFile() override {
    EXPECT_EQ(openDescriptors(), open_before);
    EXPECT_TRUE(readings.empty());
    readings.clear();
    told_size.reset();
  }

  TemporaryTree tree;
  const size_t open_before = openDescriptors();
};

TEST_F(TextFile, TextsOfEverySizeAreRead) {
  for (const size_t size :
       {0u, 1u, 15u, 16u, 4095u, 4096u, 4097u, 8191u, 8192u, 8193u, 16384u, 100000u}) {
    tree.write("file", textOfSize(size));
    EXPECT_EQ(read_text_file("file"), textOfSize(size)) << size;
    told_size = static_cast<off_t>(size);
    EXPECT_EQ(read_text_file("file"), textOfSize(size)) << size;
    told_size.reset();
  }
}

TEST_F(TextFile, EveryByteIsKept) {
  const std::string text("a\r\n\0\xff\x1a\nb", 8);
  tree.write("file", text);
  EXPECT_EQ(read_text_file("file"), text);
}

TEST_F(TextFile, FileIsClosedInAProcessThatIsStarted) {
  tree.write("file", "text");
  closes_on_exec = false;
  EXPECT_EQ(read_text_file("file"), "text");
  EXPECT_TRUE(closes_on_exec);
}

TEST_F(TextFile, MissingFileHasNoText) {
  EXPECT_EQ(read_text_file("file"), std::nullopt);
  EXPECT_EQ(read_text_file(""), std::nullopt);
}

TEST_F(TextFile, LargeTextIsHeldOnce) {
  constexpr size_t kSize = 1000000;
  tree.write("file", textOfSize(kSize));
  told_size = kSize;
  EXPECT_LT(read_text_file("file")->capacity(), kSize + 16);  // libc++ rounds up.
}

TEST_F(TextFile, WrongSizeRefusesNoFile) {
  tree.write("file", textOfSize(50000));
  // Some file systems tell 0, or more than any memory holds.
  for (const off_t size : {off_t{0}, off_t{1}, off_t{4096}, off_t{49999}, off_t{50001}, off_t{-1},
                           std::numeric_limits<off_t>::max()}) {
    told_size = size;
    EXPECT_EQ(read_text_file("file"), textOfSize(50000)) << size;
  }
}

TEST_F(TextFile, ReadingMayGiveLessThanAskedFor) {
  tree.write("file", textOfSize(9000));
  readings = {1, 4095, 3};
  EXPECT_EQ(read_text_file("file"), textOfSize(9000));
}

TEST_F(TextFile, InterruptedReadingIsRepeated) {
  tree.write("file", textOfSize(9000));
  readings = {-EINTR, 100, -EINTR, -EINTR};
  EXPECT_EQ(read_text_file("file"), textOfSize(9000));
}

TEST_F(TextFile, ReadErrorEndsTheText) {
  tree.write("file", textOfSize(9000));
  readings = {100, 50, -EIO};
  EXPECT_EQ(read_text_file("file"), textOfSize(150));
  readings = {-EIO};
  EXPECT_EQ(read_text_file("file"), "");
}

TEST_F(TextFile, PipeIsReadToItsEnd) {
  ASSERT_EQ(mkfifo("pipe", 0600), 0);
  const std::string text = textOfSize(50000);
  std::thread writer([&text] { std::ofstream("pipe") << text; });
  EXPECT_EQ(read_text_file("pipe"), text);
  writer.join();
}

TEST_F(TextFile, ReaderLogsEveryExceptionOfTheStandardLibrary) {
  tree.write("file", textOfSize(9000));
  readings = {100, kThrown};
  takeLog();
  EXPECT_EQ(CalibReader().read("file"), std::nullopt);
  EXPECT_LOG(error("Failed to parse calib from file, reason: no text is so long"));
}

TEST_F(TextFile, TextWithoutRoomIsThrown) {
  tree.write("file", textOfSize(9000));
  const FailingAllocation failure(0);
  EXPECT_THROW(read_text_file("file"), std::bad_alloc);
}

}  // namespace
