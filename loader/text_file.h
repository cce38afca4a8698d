// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <optional>
#include <string>

// The whole text of a file, or nothing when it cannot be opened. A text ends where reading fails,
// so a directory has an empty one. Throws std::bad_alloc or std::length_error when the text does
// not fit into memory.
std::optional<std::string> read_text_file(const std::string& path);
