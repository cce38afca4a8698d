// SPDX-License-Identifier: Apache-2.0
#include "loader/text_file.h"

#include <android-base/unique_fd.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <exception>

namespace {

// Reads up to `size` bytes and returns their number, which may be smaller before the end of the
// file too. 0 at its end and after a read error.
size_t read_some(int file, char* bytes, size_t size) {
  const ssize_t count = TEMP_FAILURE_RETRY(read(file, bytes, size));
  return count < 0 ? 0 : static_cast<size_t>(count);
}

// Makes room for the rest of a large file: a text that grows in steps is at times held twice. Some
// file systems tell a wrong size; without room for it, the text grows in steps.
void reserve_rest(int file, std::string& text) {
  struct stat status = {};
  if (fstat(file, &status) != 0) return;
  try {
    // In C++17 a smaller reserve() may shrink.
    text.reserve(std::max(text.capacity(), static_cast<size_t>(status.st_size)));
  } catch (const std::exception&) {
  }
}

}  // namespace

std::optional<std::string> read_text_file(const std::string& path) {
  // With O_LARGEFILE a 32-bit process can open a file of 2 GB or more.
  // NOLINTNEXTLINE(misc-redundant-expression): in a 64-bit process two of the flags are 0.
  const android::base::unique_fd file(open(path.c_str(), O_RDONLY | O_CLOEXEC | O_LARGEFILE));
  if (!file.ok()) return std::nullopt;
  std::string text;
  std::array<char, 4096> block;
  while (const size_t count = read_some(file, block.data(), block.size())) {
    // Most files fit into the first block, and their size need not be asked for.
    if (!text.empty() && text.size() + count > text.capacity()) reserve_rest(file, text);
    text.append(block.data(), count);
  }
  return text;
}
