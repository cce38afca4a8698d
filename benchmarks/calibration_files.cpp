// SPDX-License-Identifier: Apache-2.0
#include "benchmarks/calibration_files.h"

#include <android-base/properties.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <string_view>

namespace {

constexpr const char* kDefaults[] = {"/vendor/etc/uwb_calib_paths.conf", "/vendor/etc/calib_paths",
                                     "./uwb_calib_paths.conf", "./calib_paths"};

bool readPathFile(std::string& text) {
  const std::string path =
      android::base::GetProperty("ro.vendor.uwb.calibration.calibrationpaths", "");
  if (!path.empty() && readFile(path, text)) return true;
  for (const char* const file : kDefaults) {
    if (readFile(file, text)) return true;
  }
  return false;
}

std::string countryCode() {
  std::string code = android::base::GetProperty("vendor.uwb.calibration.country_code", "");
  if (code.empty()) return "unknown";
  for (char& c : code) {
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c + ('a' - 'A'));
  }
  return code;
}

CalibrationFile resolved(const std::string& line, const std::string& country) {
  constexpr std::string_view kPlaceholder = "<country>";
  const size_t position = line.find(kPlaceholder);
  if (position == line.npos) return {line, ""};
  CalibrationFile file{line, line};
  file.path.replace(position, kPlaceholder.size(), country);
  file.fallback.replace(position, kPlaceholder.size(), "default");
  return file;
}

}  // namespace

std::vector<CalibrationFile> listedFiles() {
  std::vector<CalibrationFile> files;
  std::string text;
  if (!readPathFile(text)) return files;
  const std::string country = countryCode();
  for (size_t begin = 0; begin < text.size();) {
    const size_t end = std::min(text.find('\n', begin), text.size());
    files.push_back(resolved(text.substr(begin, end - begin), country));
    begin = end + 1;
  }
  return files;
}

bool readFile(const std::string& path, std::string& text) {
  const int file = open(path.c_str(), O_RDONLY | O_CLOEXEC);
  if (file == -1) return false;
  struct stat status = {};
  fstat(file, &status);
  text.resize(static_cast<size_t>(status.st_size));
  const ssize_t count = read(file, text.data(), text.size());
  close(file);
  return count == static_cast<ssize_t>(text.size());
}
