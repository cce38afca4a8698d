// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "tools/command/command.h"
#include "tools/device/device_library.h"
#include "tools/device/open_redirect.h"
#include "tools/text/json.h"
#include "tools/trace/load_trace.h"

// What the loads of a subcommand depend on: as long as it lives, they read the files of the tree
// below `root`, and the properties are those of the options.
class Tree {
 public:
  // Throws std::runtime_error, one line, when the tree cannot be used or lacks the path file.
  Tree(const std::string& root, const Options& options,
       OpenRedirect::Opens opens = OpenRedirect::Opens::AllFiles);
  // Spelt out: some callers use nothing of a Tree but its lifetime.
  ~Tree() = default;

  const TargetRoot& root() const { return root_; }

 private:
  const TargetRoot root_;
  const OpenRedirect redirect_;
};

// What lint finds in the Tree that exists, as its JSON.
Json::Value lintJson(const Options& options, const TargetRoot& root);

// {path, line, text}
Json::Value lineJson(const LoadTrace& trace, const LineRef& ref);

// A printable text of a document, and "path:line: text" of what lineJson has made.
std::string shown(const Json::Value& text);
std::string lineText(const Json::Value& line);
