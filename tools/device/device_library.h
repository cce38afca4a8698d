// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

#include "include/tarnix_uwb_params_nfcc.h"
#include "tools/block/fields.h"

// What a load depends on, besides files. Empty texts are unset properties.
void setDeviceProperties(const std::string& country, const std::string& path_file);

// The library: the one that is linked into this program or, if a file is named, a shared one,
// opened as the device's service opens it.
class DeviceLibrary {
 public:
  // Throws std::runtime_error when the file or its function cannot be found.
  explicit DeviceLibrary(const std::string& file);

  // Calls the exported function once and returns the bytes that it wrote: none without a valid
  // calibration.
  Bytes load(unsigned int capacity) const;

 private:
  decltype(&load_uwb_params_from_files) load_;
};
