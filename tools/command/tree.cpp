// SPDX-License-Identifier: Apache-2.0
#include "tools/command/tree.h"

#include "tools/device/files.h"
#include "tools/text/input_output.h"

Tree::Tree(const std::string& root, const Options& options, OpenRedirect::Opens opens)
    : root_(root, "/", options.maps), redirect_(root_, opens) {
  setDeviceProperties(options.country.value_or(""), options.path_file);
  if (options.path_file.empty() || canBeOpened(options.path_file)) return;
  throw failure("open the path file " + options.path_file +
                (root.empty() ? "" : " in the tree " + root));
}

Json::Value lineJson(const LoadTrace& trace, const LineRef& ref) {
  Json::Value json;
  json["path"] = trace.files[ref.file]->path;
  json["line"] = trace.at(ref).number;
  json["text"] = trace.at(ref).text;
  return json;
}

std::string shown(const Json::Value& text) {
  return printable(text.asString());
}

std::string lineText(const Json::Value& line) {
  return shown(line["path"]) + ":" + shown(line["line"]) + ": " + shown(line["text"]);
}
