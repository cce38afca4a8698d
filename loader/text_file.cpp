// SPDX-License-Identifier: Apache-2.0
#include "loader/text_file.h"

#include <sys/stat.h>

#include <algorithm>

namespace {

// True while the file holds more; its own buffer then holds the next of it. A read error ends the
// text: libstdc++ throws for it, libc++ reports the end.
bool holdsMore(std::filebuf& file) {
  try {
    return file.sgetc() != std::filebuf::traits_type::eof();
  } catch (const std::ios_base::failure&) {
    return false;
  }
}

// The size of the file, 0 when it cannot be told.
size_t sizeOf(const std::string& path) {
  struct stat status = {};
  return stat(path.c_str(), &status) == 0 ? static_cast<size_t>(status.st_size) : 0;
}

}  // namespace

std::string readText(std::filebuf& file, const std::string& path) {
  std::string text;
  while (holdsMore(file)) {
    const std::streamsize buffered = file.in_avail();
    const size_t before = text.size();
    const size_t after = before + static_cast<size_t>(buffered);
    // Most files fit into the stream's buffer. A larger one gets its room at once: a text that
    // grows step by step is at times held twice. To reserve less than there is would give it back.
    if (before > 0 && after > text.capacity()) {
      text.reserve(std::max(text.capacity(), sizeOf(path)));
    }
    text.resize(after);
    file.sgetn(&text[before], buffered);
  }
  return text;
}
