// SPDX-License-Identifier: Apache-2.0
#include "grammar/line_reader.h"

// For memrchr, which the C libraries of the device and of the hosts have beside the standard.
#include <string.h>

LineReader::LineReader(std::istream& input) : input(input) {}

bool LineReader::next(Line& line) {
  while (!findLine(line)) {
    if (!readLines()) return false;
  }
  return true;
}

bool LineReader::findLine(Line& line) {
  char* const lines = &block[first];
  const size_t size = complete - first;
  line.equal = static_cast<char*>(memchr(lines, '=', size));
  if (line.equal == nullptr) return false;
  const auto before = static_cast<size_t>(line.equal - lines);
  auto* const newline = static_cast<char*>(memrchr(lines, '\n', before));
  line.begin = newline == nullptr ? lines : newline + 1;
  line.end = static_cast<char*>(memchr(line.equal, '\n', size - before));
  first = static_cast<size_t>(line.end - block.data()) + 1;
  return true;
}

bool LineReader::readLines() {
  filled -= complete;
  memmove(block.data(), &block[complete], filled);
  first = 0;
  complete = 0;
  while (complete == 0) {
    const size_t searched = filled;
    if (!readBlock() && !endLastLine()) return false;
    const void* const newline = memrchr(&block[searched], '\n', filled - searched);
    if (newline != nullptr) {
      complete = static_cast<size_t>(static_cast<const char*>(newline) - block.data()) + 1;
    }
  }
  return true;
}

bool LineReader::readBlock() {
  constexpr size_t kBlockSize = 4096;
  // One more place, for the '\n' that the last line may lack.
  block.resize(filled + kBlockSize + 1);
  input.read(&block[filled], kBlockSize);
  filled += static_cast<size_t>(input.gcount());
  return input.gcount() > 0;
}

bool LineReader::endLastLine() {
  if (filled == 0) return false;
  block[filled++] = '\n';
  return true;
}
