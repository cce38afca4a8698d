// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "tools/block/fields.h"
#include "tools/text/text.h"

// What the command line asks for. Each subcommand uses the members that its options set.
struct Options {
  std::string root;                    // The file tree of a target; empty for the host's own.
  std::optional<std::string> country;  // The country code property.
  std::vector<std::string> maps;       // Folders in place of the target's.
  std::string path_file;               // The property that names one more path file.
  std::string format;                  // Empty for the subcommand's usual one.
  std::string output = "-";
  std::string color = "auto";
  std::string library;
  std::string device_log;
  unsigned int capacity = kBlockSize;
  bool quiet = false;
  bool log = false;
  bool help = false;
  bool to_terminal = false;  // The result goes to a terminal.
  bool in_colour = false;
  std::vector<std::string> operands;
  std::vector<std::string> error_rules;
  std::vector<std::string> ignored_rules;
  std::optional<std::string> countries;  // "us,de,other,none"; all without it.
  std::optional<std::string> fields;     // "xtal_trim,ch9_port"; without it the usual ones.
  std::string sort;                      // "block"; else by country.
  bool between = false;                  // The operands are countries.
  std::string baseline;
  std::string fail_on = "warning";
  bool notes = false;
};

// What a subcommand returns: the exit status, the result for the output, if any, why there is
// none, in one line, and a line for the standard error that --quiet suppresses.
struct Outcome {
  int status = 0;
  std::optional<std::string> result;
  std::string failure;
  std::string remark = {};  // May be left out.
};

constexpr int kGood = 0;
constexpr int kFindings = 1;  // Or no block, a damaged one, a difference.
constexpr int kTrouble = 2;   // Wrong usage or unreadable input.

Outcome build(const Options& options, const Paint& paint);
Outcome decode(const Options& options, const Paint& paint);
Outcome lint(const Options& options, const Paint& paint);
Outcome explain(const Options& options, const Paint& paint);
// What explain does for --device-log: compares the load that the log tells of with the same load in
// the tree, and shows the lines that cause its errors.
Outcome explainDeviceLog(const Options& options, const Paint& paint);
Outcome matrix(const Options& options, const Paint& paint);
Outcome diff(const Options& options, const Paint& paint);

// What the command line asks for: a subcommand, or the help, the version, completions.
struct Request {
  Options options;
  std::function<Outcome(const Options&, const Paint&)> run;
};

// Reads the command line. Throws std::runtime_error, one line, for a wrong one.
Request parseCommandLine(int argc, char** argv);
