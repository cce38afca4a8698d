// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

// One calibration file as read: the path that was opened in the end, for the log, and its whole
// text.
struct calibration {
  std::string path;
  std::string content;
};
