// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <stdexcept>
#include <string>

// "cannot DO THIS: reason", with the reason in errno.
std::runtime_error failure(const std::string& what);

// The bytes of the file, of the standard input for "-". Throws std::runtime_error, one line, when
// it cannot be read or has more than 64 MB.
std::string readInput(const std::string& path);

// Writes all of `content` to the file `path`, to the standard output for "-". An existing file
// is replaced in one step, or stays as it was. Throws std::runtime_error, one line, when it cannot.
void writeOutput(const std::string& path, const std::string& content);
