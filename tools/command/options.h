// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <variant>
#include <vector>

#include "tools/command/command.h"

// The tables of the command line: subcommands and their options. Parsing, help and completion are
// made from them.

struct Subcommand {
  const char* name;
  unsigned mask;  // Its bit in Option::subcommands.
  Outcome (*run)(const Options&, const Paint&);
  const char* summary;
  const char* formats;   // Separated by commas,
  const char* operands;  // and these too.
  const char* examples;
};

// The kind of an option's value.
enum class Value { None, Text, File, Folder, Format, Color, Rule, RulePath, Severity, Number };

struct Option {
  const char* name;
  char letter;  // 0 for an option without a short form.
  Value value;
  // The member of Options that the option sets; a list gets one more element each time.
  std::variant<bool Options::*, unsigned Options::*, std::string Options::*,
               std::optional<std::string> Options::*, std::vector<std::string> Options::*>
      target;
  unsigned subcommands;
  const char* help;
};

const std::vector<Subcommand>& subcommands();

// The subcommand of this name; null when there is none.
const Subcommand* subcommandCalled(const std::string& name);

// The options of the subcommand, in the order of the help.
std::vector<Option> optionsOf(const Subcommand& subcommand);

// The names of the arguments that the subcommand needs, and whether it takes any number of names.
std::vector<std::string> operandsOf(const Subcommand& subcommand);
bool takesNames(const Subcommand& subcommand);

// The values that the option accepts; none when it accepts any text.
std::vector<std::string> choicesOf(const Option& option, const Subcommand& subcommand);

std::string helpOf(const Subcommand& subcommand);
std::string generalHelp();

// The words that may replace the last of `words`, one in a line; none where a file is possible.
// `words` are those after the command's name.
std::string completionsOf(std::vector<std::string> words);
