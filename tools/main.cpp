// SPDX-License-Identifier: Apache-2.0
#include <fcntl.h>

#include <exception>
#include <iostream>

#include "tools/command/command.h"
#include "tools/device/device_library.h"
#include "tools/text/input_output.h"

namespace {

// A file opened later must not get the number of a closed standard stream: the result would be
// written into it.
void occupyClosedStreams() {
  for (int stream = 0; stream <= 2; ++stream) {
    if (fcntl(stream, F_GETFD) < 0) open("/dev/null", stream == 0 ? O_WRONLY : O_RDONLY);
  }
}

void complain(const std::string& text) {
  if (!text.empty()) std::cerr << "tarnix-uwb-params: " << printable(text) << '\n';
}

}  // namespace

int main(int argc, char** argv) {
  occupyClosedStreams();
  try {
    const Request request = parseCommandLine(argc, argv);
    const Options& options = request.options;
    showLog(options.log && !options.quiet);
    const Outcome outcome = request.run(options, Paint(options.in_colour));
    complain(outcome.failure);
    if (!options.quiet) complain(outcome.remark);
    if (outcome.result.has_value()) writeOutput(options.output, *outcome.result);
    return outcome.status;
  } catch (const std::exception& e) {
    complain(e.what());
    return kTrouble;
  }
}
