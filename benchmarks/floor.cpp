// SPDX-License-Identifier: Apache-2.0
#include "benchmarks/floor.h"

#include <fcntl.h>
#include <unistd.h>

#include <fstream>
#include <string_view>

namespace {

constexpr const char* kPathFile = "./uwb_calib_paths.conf";

// The entry of a path file for the country of device_doubles.h.
std::string withCountry(std::string entry) {
  constexpr std::string_view kPlaceholder = "<country>";
  const size_t position = entry.find(kPlaceholder);
  return position == entry.npos ? entry : entry.replace(position, kPlaceholder.size(), "us");
}

}  // namespace

Floor::Floor()
    : paths{"/vendor/etc/uwb_calib_paths.conf", "/vendor/etc/calib_paths", kPathFile},
      buffer(size_t{1} << 24) {
  std::ifstream entries(kPathFile);
  for (std::string entry; std::getline(entries, entry);) paths.push_back(withCountry(entry));
}

size_t Floor::readAll() {
  size_t size = 0;
  for (const std::string& path : paths) {
    const int file = open(path.c_str(), O_RDONLY | O_CLOEXEC);
    if (file == -1) continue;
    ssize_t count = 0;
    while ((count = read(file, buffer.data(), buffer.size())) > 0) {
      size += static_cast<size_t>(count);
    }
    close(file);
  }
  return size;
}
