// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <vector>

// The path files in the order in which they are tried: the one that the property names, if any,
// then the defaults. A file that both name is tried twice.
std::vector<std::string> build_paths();
