// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <vector>

// Stands in for the system properties: a map that a test fills.

// Sets a property; an empty value unsets it.
void setProperty(const std::string& key, const std::string& value);

void clearProperties();

// The keys that were asked for since the last call, in order.
std::vector<std::string> takePropertyReads();
