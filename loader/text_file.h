// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <fstream>
#include <string>

// The whole text of an open file, of which `path` is the name. A text ends where reading fails, so
// a directory has an empty one. A file larger than the stream's buffer gets room for its size at
// once; std::bad_alloc or std::length_error leaves when there is none.
std::string readText(std::filebuf& file, const std::string& path);
