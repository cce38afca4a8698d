// SPDX-License-Identifier: Apache-2.0
#include "fuzz/device_folder.h"

#include <stdlib.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "fuzz/support.h"
#include "tests/kit/doubles.h"

namespace {

// The folder of all devices of a program, in TMPDIR: made and entered once, removed at the end.
class Folder {
 public:
  Folder() : path_(std::filesystem::temp_directory_path() / "device_folder.XXXXXX") {
    require(mkdtemp(path_.data()) != nullptr && chdir(path_.c_str()) == 0, "TMPDIR can be used");
  }
  ~Folder() { rmdir(path_.c_str()); }
  Folder(const Folder&) = delete;
  Folder& operator=(const Folder&) = delete;

 private:
  std::string path_;
};

std::string flat(std::string path) {
  std::replace(path.begin(), path.end(), '/', '_');
  return path;
}

// The defaults that lie in the working directory stand for those of /vendor/etc as well.
std::string nameOf(const std::string& path) {
  if (path == "/vendor/etc/uwb_calib_paths.conf") return "uwb_calib_paths.conf";
  if (path == "/vendor/etc/calib_paths") return "calib_paths";
  return flat(path);
}

}  // namespace

DeviceFolder::DeviceFolder(const std::string& description) {
  static const Folder folder;
  const std::vector<std::string> texts = split(description, '\xFF');
  if (!texts.empty()) country_ = flat(texts[0]);
  if (texts.size() > 1) path_property_ = nameOf(texts[1]);
  setProperty(kCountryProperty, country_);
  setProperty(kPathsProperty, path_property_);
  for (size_t i = 2; i < texts.size(); ++i) writeFile(texts[i]);
}

DeviceFolder::~DeviceFolder() {
  clearProperties();
  takePropertyReads();  // Kept, they look like a leak to libFuzzer, which then looks for it.
  for (const auto& file : std::filesystem::directory_iterator(".")) remove(file.path());
}

std::optional<std::string> DeviceFolder::textOf(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  if (!file.is_open()) return std::nullopt;
  std::ostringstream text;
  text << file.rdbuf();
  return text.str();
}

void DeviceFolder::writeFile(const std::string& file) const {
  const size_t end = std::min(file.find('\n'), file.size());
  const std::string name = nameOf(file.substr(0, end));
  const std::string text = file.substr(std::min(end + 1, file.size()));
  const bool is_path_file = name == "uwb_calib_paths.conf" || name == "calib_paths" ||
                            std::string(name.c_str()) == path_property_.c_str();
  std::ofstream(name) << (is_path_file ? flat(text) : text);
}
