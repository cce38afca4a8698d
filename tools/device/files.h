// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <sys/stat.h>

#include <optional>
#include <string>
#include <vector>

// Look-ups in the tree whose files this thread opens: see OpenRedirect.

// What the path leads to; nothing, and the reason in errno, when it leads to no file.
std::optional<struct stat> statusOf(const std::string& path);

// Whether it is a pipe, a socket or a device.
bool isSpecial(const struct stat& status);

// What the link at the path says; empty for what is no link.
std::string linkAt(const std::string& path);

// Whether the file can be opened for reading; the reason is in errno when not.
bool canBeOpened(const std::string& path);

// Whether the directory keeps the names in it from this user, who may yet open files there.
bool hidesNames(const std::string& directory);

// The names in a directory, the current one for an empty path, in no order; those of maps
// alone when it cannot be read.
std::vector<std::string> namesIn(const std::string& directory);
