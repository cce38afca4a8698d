// SPDX-License-Identifier: Apache-2.0
#include "tools/text/input_output.h"

#include <android-base/file.h>
#include <android-base/unique_fd.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <filesystem>

using android::base::unique_fd;
using android::base::WriteStringToFd;

namespace {

constexpr size_t kLargestInput = size_t{1} << 26;

// Also tells what goes wrong only when the file is closed.
bool writeAndClose(unique_fd file, const std::string& content) {
  return file.ok() && WriteStringToFd(content, file) && close(file.release()) == 0;
}

mode_t usualMode() {
  const mode_t mask = umask(0);
  umask(mask);
  return 0666 & ~mask;
}

// A link to the file stays, and so does the mode of a file that exists.
void replaceFile(const std::string& path, const std::string& content) {
  struct stat status {};
  const bool exists = stat(path.c_str(), &status) == 0;
  const std::string target = exists ? std::filesystem::canonical(path).string() : path;
  std::string temporary = target + ".XXXXXX";
  unique_fd file(mkostemp(temporary.data(), O_CLOEXEC));
  if (file.ok()) fchmod(file, exists ? status.st_mode & 07777 : usualMode());
  const bool done =
      writeAndClose(std::move(file), content) && rename(temporary.c_str(), target.c_str()) == 0;
  if (done) return;
  const std::runtime_error reason = failure("write " + path);
  unlink(temporary.c_str());
  throw std::runtime_error(reason);
}

}  // namespace

std::runtime_error failure(const std::string& what) {
  return std::runtime_error("cannot " + what + ": " + std::strerror(errno));
}

std::string readInput(const std::string& path) {
  const bool is_standard = path == "-";
  const std::string name = is_standard ? "the standard input" : path;
  const unique_fd file(is_standard ? dup(STDIN_FILENO) : open(path.c_str(), O_RDONLY | O_CLOEXEC));
  if (!file.ok()) throw failure("open " + name);
  std::string all;
  char part[65536];
  while (const ssize_t count = TEMP_FAILURE_RETRY(read(file.get(), part, sizeof(part)))) {
    if (count < 0) throw failure("read " + name);
    all.append(part, static_cast<size_t>(count));
    if (all.size() > kLargestInput) throw std::runtime_error(name + " is too large");
  }
  return all;
}

void writeOutput(const std::string& path, const std::string& content) {
  struct stat status {};
  // A terminal, a pipe or a device cannot be replaced by a file.
  const bool is_special = stat(path.c_str(), &status) == 0 && !S_ISREG(status.st_mode);
  if (path == "-") {
    if (!WriteStringToFd(content, STDOUT_FILENO)) throw failure("write to the standard output");
  } else if (!is_special) {
    replaceFile(path, content);
  } else if (!writeAndClose(unique_fd(open(path.c_str(), O_WRONLY | O_CLOEXEC)), content)) {
    throw failure("write " + path);
  }
}
