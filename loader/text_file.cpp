// SPDX-License-Identifier: Apache-2.0
#include "loader/text_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <exception>

namespace {

// An open file, closed at the end of its scope.
class File {
 public:
  explicit File(const std::string& path)
      // 32-bit processes refuse files of 2 GB and more without O_LARGEFILE.
      : descriptor(open(path.c_str(), O_RDONLY | O_CLOEXEC | O_LARGEFILE)) {}
  ~File() {
    if (isOpen()) close(descriptor);
  }
  File(const File&) = delete;
  File& operator=(const File&) = delete;

  bool isOpen() const { return descriptor >= 0; }

  // The number of bytes read, which may be less than `size` also before the end of the file. 0 at
  // its end and after a read error.
  size_t readSome(char* bytes, size_t size) const {
    ssize_t count = 0;
    do {
      count = read(descriptor, bytes, size);
    } while (count < 0 && errno == EINTR);
    return count < 0 ? 0 : static_cast<size_t>(count);
  }

  // The size that the file system tells, 0 when it tells none.
  size_t size() const {
    struct stat status = {};
    return fstat(descriptor, &status) == 0 ? static_cast<size_t>(status.st_size) : 0;
  }

 private:
  const int descriptor;
};

// Makes room for the rest of a large file at once: a text that grows step by step is at times held
// twice. The size is a hint, which some file systems get wrong: without room for it, the text grows
// step by step all the same.
void reserveRest(const File& file, std::string& text) {
  try {
    // In C++17 a smaller reserve() may shrink.
    text.reserve(std::max(text.capacity(), file.size()));
  } catch (const std::exception&) {
    return;
  }
}

}  // namespace

std::optional<std::string> readTextFile(const std::string& path) {
  const File file(path);
  if (!file.isOpen()) return std::nullopt;
  std::string text;
  std::array<char, 4096> block;
  while (const size_t count = file.readSome(block.data(), block.size())) {
    // Most files fit into the first block, and their size need not be asked for.
    if (!text.empty() && text.size() + count > text.capacity()) reserveRest(file, text);
    text.append(block.data(), count);
  }
  return text;
}
