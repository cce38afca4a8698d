// SPDX-License-Identifier: Apache-2.0
// Stand-in for the platform's libbase: properties live in a map of this process.
#include <android-base/properties.h>

#include <map>
#include <mutex>

namespace android::base {

namespace {

std::mutex mutex;

std::map<std::string, std::string>& properties() {
  static std::map<std::string, std::string> map;
  return map;
}

}  // namespace

std::string GetProperty(const std::string& key, const std::string& default_value) {
  const std::lock_guard<std::mutex> lock(mutex);
  const auto found = properties().find(key);
  return found == properties().end() || found->second.empty() ? default_value : found->second;
}

bool SetProperty(const std::string& key, const std::string& value) {
  const std::lock_guard<std::mutex> lock(mutex);
  properties()[key] = value;
  return true;
}

}  // namespace android::base
