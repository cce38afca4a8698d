// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

// Writes all of `content` to the file `path`, to the standard output for "-". An existing file
// is replaced in one step, or stays as it was. Throws std::runtime_error, one line, when it cannot.
void writeOutput(const std::string& path, const std::string& content);
