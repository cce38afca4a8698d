// SPDX-License-Identifier: Apache-2.0
#include "tools/block/view.h"
#include "tools/command/tree_state.h"
#include "tools/device/device_library.h"

namespace {

std::string formatted(const Bytes& block, const std::string& format) {
  if (format == "binary") return {block.begin(), block.end()};
  if (format == "hex") return hexOf(block) + "\n";
  if (format == "json") return documentOf(jsonOf(block));
  if (format == "c") return cArrayOf(block);
  return dumpOf(block);
}

}  // namespace

Outcome build(const Options& options, const Paint& /*paint*/) {
  const DeviceLibrary library(options.library);
  const LogCapture log;
  const Tree tree(options.root, options);
  const Bytes block = library.load(options.capacity);
  // A capacity of 0 has no byte to write either.
  const bool failed = block.empty();
  for (const LogLine& line : log.lines()) {
    if (!options.quiet || (failed && line.priority == 'E')) show(line);
  }
  if (failed) return {kFindings, std::nullopt, "no valid calibration: the log says why"};
  // A pipe has been read: it has no second text.
  const OpenRedirect redirect(tree.root(), OpenRedirect::Opens::NoSpecialFiles);
  const std::string usual = options.to_terminal ? "dump" : "binary";
  return {kGood,
          formatted(block, options.format.empty() ? usual : options.format),
          {},
          remarkOn(stateOf({{options.country.value_or("")}, {}}, options, library))};
}
