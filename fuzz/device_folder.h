// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <optional>
#include <string>
#include <vector>

// A device's files and properties, as an input of the load fuzzer describes them: texts with 0xFF
// between them, which are the country code, the path property, and for each file its path, a line
// feed and its text.
//
// The device is one folder, the working directory: in every path, '_' stands for '/', so that no
// input leaves it. Its files are removed at the end.
class DeviceFolder {
 public:
  explicit DeviceFolder(const std::string& description);
  ~DeviceFolder();
  DeviceFolder(const DeviceFolder&) = delete;
  DeviceFolder& operator=(const DeviceFolder&) = delete;

  const std::string& country() const { return country_; }
  const std::string& pathProperty() const { return path_property_; }

  // The text of a file, by the language's own means; nothing when it cannot be opened.
  static std::optional<std::string> textOf(const std::string& path);

 private:
  void writeFile(const std::string& file) const;

  std::string country_;
  std::string path_property_;
};
