// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <vector>

#include "tools/command/command.h"

// The subcommands and their options. Parsing, help and completion are made from these tables.

struct Subcommand {
  std::string name;
  unsigned mask;  // Its bit in Option::subcommands.
  Outcome (*run)(const Options&, const Paint&);
  std::string summary;
  std::string formats;   // Separated by commas.
  std::string operands;  // Separated by blanks; in brackets for any number of names.
  std::string examples;
};

struct Option {
  std::string name;
  char letter;        // 0 for an option without a short form.
  std::string value;  // What the help calls it; empty for none.
  // Sets the member of Options, where a list gets one more element each time; false for a value
  // that is no number where one is wanted.
  bool (*set)(Options& options, const std::string& value);
  unsigned subcommands;
  std::string help;  // Empty where the choices say all.
};

constexpr unsigned kLargestNumber = 1U << 20;

// The subcommand of this name; null when there is none.
const Subcommand* subcommandCalled(const std::string& name);
std::vector<std::string> subcommandNames();

// Whether its operands are any number of names of fields and parameters.
inline bool takesNames(const Subcommand& subcommand) {
  return StartsWith(subcommand.operands, '[');
}

// The options of the subcommand, in the order of the help.
std::vector<Option> optionsOf(const Subcommand& subcommand);

// The values that the option accepts; none when it accepts any text.
std::vector<std::string> choicesOf(const Option& option, const Subcommand& subcommand);

std::string helpOf(const Subcommand& subcommand);
std::string generalHelp();

// The words that may replace the last of `words`, one in a line; none where a file is possible.
// `words` are those after the command's name.
std::string completionsOf(std::vector<std::string> words);
