// SPDX-License-Identifier: Apache-2.0
#include "tools/command/options.h"

#include <android-base/parseint.h>

#include <algorithm>
#include <type_traits>

#include "tools/lint/rules.h"

namespace {

enum Mask : unsigned { kBuild = 1, kDecode = 2, kLint = 4, kExplain = 8, kMatrix = 16, kDiff = 32 };
constexpr unsigned kAll = kBuild | kDecode | kLint | kExplain | kMatrix | kDiff;
constexpr unsigned kLoads = kAll & ~kDecode;

template <auto member>
bool set(Options& options, const std::string& value) {
  auto& target = options.*member;
  using Target = std::remove_reference_t<decltype(target)>;
  bool is_valid = true;
  if constexpr (std::is_same_v<Target, unsigned>) {
    is_valid = android::base::ParseUint(value, &target, kLargestNumber);
  } else if constexpr (std::is_same_v<Target, bool>) {
    target = true;
  } else if constexpr (std::is_same_v<Target, std::vector<std::string>>) {
    target.push_back(value);
  } else {
    target = value;
  }
  return is_valid;
}

const std::vector<Option>& allOptions() {
  // clang-format off
  static const std::vector<Option> kOptions = {
      {"root",       0,   "DIR",         set<&Options::root>,           kLoads,
       "A target's file tree: paths and links are inside it"},
      {"map",        0,   "/PATH=DIR",   set<&Options::maps>,           kLoads,
       "A folder in place of one of the device's; may be repeated"},
      {"country",    0,   "CODE",        set<&Options::country>,        kLoads & ~kMatrix,
       "The country code; '' for none"},
      {"path-file",  0,   "FILE",        set<&Options::path_file>,      kLoads,
       "One more path file, tried first; must exist"},
      {"device-log", 0,   "FILE",        set<&Options::device_log>,     kExplain,
       "Explain the errors of a device's log; - for standard input"},
      {"error",      0,   "RULE",        set<&Options::error_rules>,    kLint,
       "Report this rule's findings as errors; may be repeated"},
      {"ignore",     0,   "RULE[:PATH]", set<&Options::ignored_rules>,  kLint,
       "Leave out this rule's findings, or those about one file; may be repeated"},
      {"countries",  0,   "LIST",        set<&Options::countries>,      kLint | kMatrix | kDiff,
       "Exactly these loads: codes, 'other', 'none', with commas between"},
      {"between",    0,   "",            set<&Options::between>,        kDiff,
       "A and B are two countries of the tree: codes, 'other', 'none'"},
      {"fields",     0,   "LIST",        set<&Options::fields>,         kMatrix,
       "Exactly these fields, with commas between; for text and csv"},
      {"sort",       0,   "ORDER",       set<&Options::sort>,           kMatrix,
       "country (usual), or block: by the values, like blocks beside each other"},
      {"fail-on",    0,   "SEVERITY",    set<&Options::fail_on>,        kLint,
       "The least severity with exit status 1: error, warning (usual) or note"},
      {"notes",      0,   "",            set<&Options::notes>,          kLint,
       "Show notes too"},
      {"baseline",   0,   "FILE",        set<&Options::baseline>,       kLint,
       "Leave out the findings of this file, which --format baseline has written"},
      {"capacity",   0,   "NUMBER",      set<&Options::capacity>,       kBuild,
       "The size of the caller's buffer"},
      {"library",    0,   "FILE",        set<&Options::library>,        kBuild | kMatrix | kDiff,
       "A shared library to load in place of the command's own"},
      {"log",        0,   "",            set<&Options::log>,            kLoads & ~kBuild,
       "Show the library's log on the standard error"},
      {"format",     0,   "FORMAT",      set<&Options::format>,         kAll,
       ""},
      {"color",      0,   "WHEN",        set<&Options::color>,          kAll,
       "auto, always or never"},
      {"output",     'o', "FILE",        set<&Options::output>,         kAll,
       "The file for the result; - for standard output"},
      {"quiet",      'q', "",            set<&Options::quiet>,          kAll,
       "Only failures on the standard error"},
      {"help",       'h', "",            set<&Options::help>,           kAll,
       "Show this help"},
  };
  // clang-format on
  return kOptions;
}

const std::vector<Subcommand>& allSubcommands() {
  static const std::vector<Subcommand> kSubcommands = {
      {"build", kBuild, build, "Call the library as the device does and write the block",
       "dump,hex,binary,json,c", "",
       "  tarnix-uwb-params build --root out/target --country US\n"
       "  tarnix-uwb-params build --root out/target --format binary -o block.bin\n"
       "The usual format is dump on a terminal and binary anywhere else."},
      {"decode", kDecode, decode, "Show the fields of a block", "table,text,json", "BLOCK",
       "  tarnix-uwb-params decode block.bin\n"
       "  echo 'da35 0000 ...' | tarnix-uwb-params decode -\n"
       "  tarnix-uwb-params decode --format text block.bin > calib.conf\n"
       "BLOCK is a file with raw bytes, hexadecimal text or any format of build; - is the "
       "standard\n"
       "input. The format text is a calibration text that makes the same block."},
      {"lint", kLint, lint, "Find what the library ignores without a message",
       "text,json,sarif,github,baseline", "",
       "  tarnix-uwb-params lint --root out/target\n"
       "  tarnix-uwb-params lint --root out/target --country US --error unknown-key\n"
       "  tarnix-uwb-params lint --root out/target --format sarif -o lint.sarif\n"
       "Without --country and --countries, every country of the tree is loaded, any other "
       "country,\n"
       "and no country code."},
      {"explain", kExplain, explain, "Show for each field of the block which line set it",
       "text,json", "[NAME]...",
       "  tarnix-uwb-params explain --root out/target --country DE\n"
       "  tarnix-uwb-params explain --root out/target xtal_trim ch9_port\n"
       "  adb logcat -d | tarnix-uwb-params explain --root out/target --device-log -\n"
       "NAME is a key or a field of the block: only these are shown."},
      {"matrix", kMatrix, matrix, "Compare the blocks of all countries that the tree has files for",
       "text,csv,json,html", "",
       "  tarnix-uwb-params matrix --root out/target\n"
       "  tarnix-uwb-params matrix --root out/target --format html -o page.html\n"
       "  tarnix-uwb-params matrix --root out/target --format json > certified.json\n"
       "diff compares what json has recorded with a tree; html is a page for a browser."},
      {"diff", kDiff, diff, "Show what changes from one tree or block to another", "text,json",
       "A B",
       "  tarnix-uwb-params diff out/old out/new\n"
       "  tarnix-uwb-params diff certified.json out/target\n"
       "  tarnix-uwb-params diff --root out/target --between us de\n"
       "  tarnix-uwb-params diff old.bin new.bin\n"
       "A folder is a target's file tree; a file is what 'matrix --format json' has written, or a\n"
       "block; - is the standard input. All countries of both are compared, any other country and\n"
       "no country code."},
  };
  return kSubcommands;
}

constexpr char kExitStatus[] =
    "Exit status: 0 success; 1 no block, a damaged one, a difference, or a finding that lint's\n"
    "--fail-on counts; 2 wrong usage or unreadable input.\n";

std::string optionHelp(const Option& option, const Subcommand& subcommand) {
  std::string spelling = "--" + option.name + (option.value.empty() ? "" : " " + option.value);
  if (option.letter != 0) spelling = std::string("-") + option.letter + ", " + spelling;
  const std::string help =
      option.help.empty() ? Join(choicesOf(option, subcommand), ", ") : option.help;
  return "  " + padded(spelling, 22) + "  " + help + "\n";
}

// The words that may replace `current`, the unfinished word after `previous`.
std::vector<std::string> nextWords(const Subcommand& subcommand, const std::string& previous,
                                   const std::string& current) {
  std::vector<std::string> names;
  for (const Option& option : optionsOf(subcommand)) {
    names.push_back("--" + option.name);
    const bool is_previous = previous == names.back() ||
                             (option.letter != 0 && previous == std::string("-") + option.letter);
    if (is_previous && !option.value.empty()) return choicesOf(option, subcommand);
  }
  if (StartsWith(current, '-') || subcommand.operands.empty()) return names;
  names.clear();
  if (!takesNames(subcommand)) return names;
  for (const BlockField& field : kBlockFields) names.emplace_back(field.name);
  return names;
}

}  // namespace

const Subcommand* subcommandCalled(const std::string& name) {
  for (const Subcommand& subcommand : allSubcommands()) {
    if (subcommand.name == name) return &subcommand;
  }
  return nullptr;
}

std::vector<std::string> subcommandNames() {
  std::vector<std::string> names;
  names.reserve(allSubcommands().size());
  for (const Subcommand& subcommand : allSubcommands()) names.push_back(subcommand.name);
  return names;
}

std::vector<Option> optionsOf(const Subcommand& subcommand) {
  std::vector<Option> options;
  std::copy_if(allOptions().begin(), allOptions().end(), std::back_inserter(options),
               [&](const Option& o) { return (o.subcommands & subcommand.mask) != 0; });
  return options;
}

std::vector<std::string> choicesOf(const Option& option, const Subcommand& subcommand) {
  if (option.value == "FORMAT") return Split(subcommand.formats, ",");
  if (option.value == "WHEN") return {"auto", "always", "never"};
  if (option.value == "ORDER") return {"country", "block"};
  if (option.value == "SEVERITY") return {"error", "warning", "note"};
  return StartsWith(option.value, "RULE") ? ruleNames() : std::vector<std::string>();
}

std::string helpOf(const Subcommand& subcommand) {
  std::string out = subcommand.summary + ".\nUsage: tarnix-uwb-params " + subcommand.name +
                    " [OPTIONS]" + (subcommand.operands.empty() ? "" : " ") + subcommand.operands +
                    "\n\nOptions:\n";
  for (const Option& option : optionsOf(subcommand)) out += optionHelp(option, subcommand);
  if (subcommand.mask == kLint) out += "\nRules:\n  " + wrapped(ruleNames(), 2, 100) + "\n";
  return out + "\nExamples:\n" + subcommand.examples + "\n" + kExitStatus;
}

std::string generalHelp() {
  std::string out =
      "Write, read and check UWB calibrations.\n"
      "Usage: tarnix-uwb-params SUBCOMMAND [OPTIONS]\n\nSubcommands:\n";
  for (const Subcommand& subcommand : allSubcommands()) {
    out += "  " + padded(subcommand.name, 9) + subcommand.summary + "\n";
  }
  return out + "\n'tarnix-uwb-params SUBCOMMAND --help' shows the options of each; --version " +
         "shows the version.\n" + kExitStatus;
}

std::string completionsOf(std::vector<std::string> words) {
  // bash splits --format=text into three words.
  if (!words.empty() && words.back() == "=") words.back().clear();
  words.erase(std::remove(words.begin(), words.end(), "="), words.end());
  if (words.size() < 2) return Join(subcommandNames(), "\n") + "\n--help\n--version";
  const Subcommand* const subcommand = subcommandCalled(words.front());
  if (subcommand == nullptr) return {};
  return Join(nextWords(*subcommand, words[words.size() - 2], words.back()), "\n");
}
