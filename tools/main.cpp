// SPDX-License-Identifier: Apache-2.0
#include <fcntl.h>

#include <exception>
#include <iostream>

#include "tools/command/command_line.h"
#include "tools/device/library_log.h"
#include "tools/text/output_file.h"

namespace {

// A file opened later must not get the number of a closed standard stream: the result would be
// written into it.
void occupyClosedStreams() {
  for (int stream = 0; stream <= 2; ++stream) {
    if (fcntl(stream, F_GETFD) < 0) open("/dev/null", stream == 0 ? O_WRONLY : O_RDONLY);
  }
}

int run(int argc, char** argv) {
  const Request request = parseCommandLine(argc, argv);
  const Options& options = request.options;
  showLog(options.log && !options.quiet);
  const Outcome outcome = request.run == nullptr
                              ? Outcome{kGood, request.answer, {}}
                              : request.run(options, Paint(wantsColour(options)));
  const std::string remark = options.quiet ? "" : outcome.remark;
  for (const std::string& text : {outcome.failure, remark}) {
    if (!text.empty()) std::cerr << kErrorPrefix << printable(text) << '\n';
  }
  if (outcome.result.has_value()) writeOutput(options.output, *outcome.result);
  return outcome.status;
}

}  // namespace

int main(int argc, char** argv) {
  occupyClosedStreams();
  try {
    return run(argc, argv);
  } catch (const std::exception& e) {
    std::cerr << kErrorPrefix << printable(e.what()) << '\n';
    return kTrouble;
  }
}
