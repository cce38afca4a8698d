// SPDX-License-Identifier: Apache-2.0
#include "tools/device/device_library.h"

#include <android-base/properties.h>
#include <dlfcn.h>

#include <stdexcept>

namespace {

void setProperty(const std::string& key, const std::string& value) {
  if (!android::base::SetProperty(key, value)) throw std::runtime_error("cannot set " + key);
}

}  // namespace

void setDeviceProperties(const std::string& country, const std::string& path_file) {
  setProperty("vendor.uwb.calibration.country_code", country);
  setProperty("ro.vendor.uwb.calibration.calibrationpaths", path_file);
}

DeviceLibrary::DeviceLibrary(const std::string& file) : load_(load_uwb_params_from_files) {
  if (file.empty()) return;
  void* const library = dlopen(file.c_str(), RTLD_NOW);
  void* const symbol = library == nullptr ? nullptr : dlsym(library, "load_uwb_params_from_files");
  if (symbol == nullptr) throw std::runtime_error(dlerror());
  load_ = reinterpret_cast<decltype(load_)>(symbol);
}

Bytes DeviceLibrary::load(unsigned int capacity) const {
  // One byte more: a vector without elements may have no address, and null means no buffer.
  Bytes buffer(size_t{capacity} + 1);
  buffer.resize(load_(buffer.data(), capacity));
  return buffer;
}
