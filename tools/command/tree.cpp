// SPDX-License-Identifier: Apache-2.0
#include "tools/command/tree.h"

#include <cerrno>
#include <cstring>
#include <stdexcept>

#include "tools/device/files.h"
#include "tools/device/library_log.h"

Tree::Tree(const std::string& root, const Options& options, OpenRedirect::Opens opens)
    : root_(root, "/", options.maps), redirect_(root_, opens) {
  setDeviceProperties(options.country.value_or(""), options.path_file);
  if (options.path_file.empty() || canBeOpened(options.path_file)) return;
  throw std::runtime_error("cannot open the path file " + options.path_file +
                           (root.empty() ? "" : " in the tree " + root) + ": " +
                           std::strerror(errno));
}

Tree::~Tree() = default;

TreeLoad loadTree(const std::string& country, const Options& options, const DeviceLibrary& library,
                  LoadTracer& tracer) {
  setDeviceProperties(country, options.path_file);
  TreeLoad load{library.load(kBlockSize), {}};
  const LogCapture log;  // The load above has logged everything already.
  load.trace = tracer.trace(country);
  if (load.trace.unknown) load.block.clear();
  return load;
}

std::string problemOf(const LoadTrace& trace) {
  if (trace.missing.empty()) return trace.problem;
  return trace.problem + ": " + joined(trace.missing, ", ");
}

JsonValue lineJson(const LoadTrace& trace, const LineRef& ref) {
  return JsonMembers{{"path", trace.files[ref.file]->path},
                     {"line", trace.at(ref).number},
                     {"text", trace.at(ref).text}};
}
