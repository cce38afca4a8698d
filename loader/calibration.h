// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

// One calibration file as read: the path that was opened, for the log, and the whole text.
struct calibration {
  std::string path;
  std::string content;
};
