// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <string_view>

// Moves the next entry of a path file's text from the front of `rest` to `entry`; false when there
// is none. An entry is a line without its '\n', blanks and carriage return included. The last line
// may lack its '\n', and an empty line is an entry.
bool next_entry(std::string_view& rest, std::string& entry);
