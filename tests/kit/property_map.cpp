// SPDX-License-Identifier: Apache-2.0
#include "tests/kit/property_map.h"

#include <android-base/properties.h>

#include <map>
#include <utility>

namespace {

std::map<std::string, std::string>& properties() {
  static std::map<std::string, std::string> map;
  return map;
}

std::vector<std::string>& reads() {
  static std::vector<std::string> keys;
  return keys;
}

}  // namespace

namespace android::base {

std::string GetProperty(const std::string& key, const std::string& default_value) {
  reads().push_back(key);
  const auto found = properties().find(key);
  return found == properties().end() ? default_value : found->second;
}

}  // namespace android::base

void setProperty(const std::string& key, const std::string& value) {
  if (value.empty()) {
    properties().erase(key);
  } else {
    properties()[key] = value;
  }
}

void clearProperties() {
  properties().clear();
}

std::vector<std::string> takePropertyReads() {
  return std::exchange(reads(), {});
}
