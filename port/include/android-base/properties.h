// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

// The two functions of the platform's libbase that this project uses, with the same signatures.
namespace android::base {

// The property's value, or `default_value` when it is unset or empty.
std::string GetProperty(const std::string& key, const std::string& default_value);

// Sets the property inside this process. True when it was set.
bool SetProperty(const std::string& key, const std::string& value);

}  // namespace android::base
