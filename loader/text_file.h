// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <fstream>
#include <string>

// The whole text of an open file, of which `path` is the name. A text ends where reading fails, so
// a directory has an empty one. Needs no more memory than the text once it is read.
std::string readText(std::filebuf& file, const std::string& path);
