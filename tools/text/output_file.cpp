// SPDX-License-Identifier: Apache-2.0
#include "tools/text/output_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <stdexcept>

namespace {

[[noreturn]] void fail(const std::string& what) {
  throw std::runtime_error("cannot write " + what + ": " + std::strerror(errno));
}

bool writeAll(int file, const std::string& content) {
  for (size_t at = 0; at < content.size();) {
    const ssize_t count = write(file, content.data() + at, content.size() - at);
    if (count < 0 && errno != EINTR) return false;
    if (count > 0) at += static_cast<size_t>(count);
  }
  return true;
}

// A terminal, a pipe or a device cannot be replaced by a file.
bool isSpecial(const std::string& path) {
  struct stat status {};
  return stat(path.c_str(), &status) == 0 && !S_ISREG(status.st_mode);
}

void writeInPlace(const std::string& path, const std::string& content) {
  const int file = open(path.c_str(), O_WRONLY | O_CLOEXEC);
  if (file < 0) fail(path);
  const bool written = writeAll(file, content);
  if (close(file) != 0 || !written) fail(path);
}

mode_t usualMode() {
  const mode_t mask = umask(0);
  umask(mask);
  return 0666 & ~mask;
}

void replaceFile(const std::string& path, const std::string& content) {
  std::string temporary = path + ".XXXXXX";
  const int file = mkostemp(temporary.data(), O_CLOEXEC);
  if (file < 0) fail(path);
  bool done = writeAll(file, content) && fchmod(file, usualMode()) == 0;
  done = close(file) == 0 && done;
  if (done && rename(temporary.c_str(), path.c_str()) == 0) return;
  const int reason = errno;
  unlink(temporary.c_str());
  errno = reason;
  fail(path);
}

}  // namespace

void writeOutput(const std::string& path, const std::string& content) {
  if (path == "-") {
    if (!writeAll(STDOUT_FILENO, content)) fail("to the standard output");
  } else if (isSpecial(path)) {
    writeInPlace(path, content);
  } else {
    replaceFile(path, content);
  }
}
