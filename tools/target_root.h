// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

// Makes `directory` the root of this process's file tree and its working directory, so that
// absolute paths and links are those of a target. Without the privilege to do so, a user namespace
// of the process's own gives it. Throws std::system_error when the kernel refuses both.
void enterTargetRoot(const std::string& directory);
