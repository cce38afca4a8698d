// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "tools/command/command.h"

constexpr char kErrorPrefix[] = "tarnix-uwb-params: ";

struct Request {
  Options options;
  Outcome (*run)(const Options&, const Paint&);  // Null when `answer` is all there is to print.
  std::string answer;                            // The help, the version, completions.
};

// Reads the command line. Throws std::runtime_error, one line, for a wrong one.
Request parseCommandLine(int argc, char** argv);

// Whether the result is coloured: as --color says, or on a terminal unless NO_COLOR is set.
bool wantsColour(const Options& options);
