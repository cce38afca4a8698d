// SPDX-License-Identifier: Apache-2.0
#include "tools/device/target_root.h"

#include <fcntl.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <stdexcept>

namespace {

constexpr int kDirectory = O_PATH | O_DIRECTORY | O_CLOEXEC;
constexpr int kNone = -1;

void require(int file, const std::string& purpose) {
  if (file >= 0) return;
  const int reason = errno;
  // A kernel without the call answers ENOSYS, a container that forbids it EPERM.
  const bool refused = reason == ENOSYS || reason == EPERM;
  throw std::runtime_error("cannot " + purpose + ": " +
                           (refused ? "the system call openat2 is refused: " : "") +
                           std::strerror(reason));
}

// The path without repeated slashes, "." and "..".
std::string normal(const std::string& path) {
  return std::filesystem::path(path).lexically_normal().string();
}

}  // namespace

PathMap::PathMap(const std::string& text)
    : device_(normal(text.substr(0, text.find('=')) + "/.")),
      host_(text.substr(std::min(text.find('=') + 1, text.size()))),
      folder_(openat(AT_FDCWD, host_.c_str(), kDirectory)) {
  if (text[0] != '/' || text.find('=') == text.npos) {
    throw std::runtime_error("--map takes /PATH=DIR, not '" + text + "'");
  }
  require(folder_, "use " + host_ + " for --map");
}

std::optional<std::string> PathMap::below(const std::string& path) const {
  if (path.empty()) return std::nullopt;
  const std::string absolute = normal("/" + path);
  if (absolute + "/" == device_) return "";
  if (absolute.compare(0, device_.size(), device_) != 0) return std::nullopt;
  return absolute.substr(device_.size());
}

std::string PathMap::nameIn(const std::string& directory) const {
  const std::string folder = normal("/" + directory + "/.");
  if (device_.compare(0, folder.size(), folder) != 0) return {};
  return device_.substr(folder.size(), device_.find('/', folder.size()) - folder.size());
}

int PathMap::open(const std::string& below, int flags) const {
  const char* const path = below.empty() ? "." : below.c_str();
  return openInRoot(folder_, path, flags, Leaving::Fails);
}

TargetRoot::TargetRoot(const std::string& directory, const std::string& working_directory,
                       const std::vector<std::string>& maps)
    : name_(directory),
      directory_(directory.empty() ? kNone : openat(AT_FDCWD, directory.c_str(), kDirectory)),
      relative_to_(working_directory == "/" ? "" : working_directory + "/") {
  for (const std::string& map : maps) maps_.emplace_back(map);
  maps_.sort([](const PathMap& a, const PathMap& b) { return a.device() > b.device(); });
  const auto twice = std::adjacent_find(
      maps_.begin(), maps_.end(),
      [](const PathMap& a, const PathMap& b) { return a.device() == b.device(); });
  if (twice != maps_.end()) {
    throw std::runtime_error("--map is given twice for " + twice->device());
  }
  if (directory.empty()) return;
  require(directory_, "make " + directory + " the root");
  const android::base::unique_fd start(
      openInRoot(directory_, working_directory.c_str(), kDirectory));
  require(start, "make " + directory + " the root");
}

std::vector<std::string> TargetRoot::mapsIn(const std::string& directory) const {
  std::vector<std::string> names;
  for (const PathMap& map : maps_) {
    if (const std::string name = map.nameIn(directory); !name.empty()) names.push_back(name);
  }
  return names;
}

std::string TargetRoot::hostPath(const std::string& path) const {
  for (const PathMap& map : maps_) {
    if (const auto below = map.below(path)) return map.hostPath(*below);
  }
  if (name_.empty()) return path;
  return name_.substr(0, name_.find_last_not_of('/') + 1) + normal("/" + path);
}

int TargetRoot::open(const std::string& path, int flags) const {
  for (const PathMap& map : maps_) {
    if (const auto below = map.below(path)) return map.open(*below, flags);
  }
  if (!directory_.ok()) {
    errno = ENOENT;
    return maps_.empty() ? openat(AT_FDCWD, path.c_str(), flags) : kNone;
  }
  const bool is_relative = !path.empty() && path[0] != '/';
  const std::string from_root = is_relative ? relative_to_ + path : path;
  return openInRoot(directory_, from_root.c_str(), flags);
}
