// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "tools/command/command.h"

constexpr char kErrorPrefix[] = "tarnix-uwb-params: ";

struct Request {
  Options options;
  Outcome (*command)(const Options&, const Paint&) = nullptr;
};

// Reads the command line. A command line that asks for help becomes a request whose result is the
// help. Throws std::runtime_error, one line, for a wrong one.
Request parseCommandLine(int argc, char** argv);

// Whether the result is to be coloured: as asked for, else on a terminal unless NO_COLOR is set.
bool wantsColour(const Options& options);
