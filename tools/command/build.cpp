// SPDX-License-Identifier: Apache-2.0
#include "tools/block/view.h"
#include "tools/command/command.h"
#include "tools/device/device_library.h"
#include "tools/device/library_log.h"
#include "tools/device/open_redirect.h"

namespace {

std::string formatted(const Bytes& block, const std::string& format) {
  if (format == "binary") return {block.begin(), block.end()};
  if (format == "hex") return hexOf(block);
  if (format == "json") return JsonValue(jsonOf(block)).document();
  if (format == "c") return cArrayOf(block);
  return dumpOf(block);
}

std::string usualFormat(const Options& options) {
  return options.to_terminal ? "dump" : "binary";
}

}  // namespace

Outcome build(const Options& options, const Paint& /*paint*/) {
  showLog(!options.quiet);  // build always shows what the device would log.
  const DeviceLibrary library(options.library);
  const TargetRoot root(options.root);
  setDeviceProperties(options.country.value_or(""), options.path_file);
  Bytes block;
  {
    const OpenRedirect redirect(root);
    block = library.load(options.capacity);
  }
  // A capacity of 0 has no byte to write either.
  if (block.empty()) return {kFindings, std::nullopt, "no valid calibration: the log says why"};
  return {
      kGood, formatted(block, options.format.empty() ? usualFormat(options) : options.format), {}};
}
