// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

// Writes all of `content` to the file `path`, to the standard output for "-". A file that exists is
// replaced in one step or left as it was. Throws std::runtime_error, one line, when it cannot.
void writeOutput(const std::string& path, const std::string& content);
