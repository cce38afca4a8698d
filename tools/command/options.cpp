// SPDX-License-Identifier: Apache-2.0
#include "tools/command/options.h"

#include <algorithm>
#include <iterator>

#include "tools/lint/rules.h"

namespace {

enum Mask : unsigned { kBuild = 1, kDecode = 2, kLint = 4, kExplain = 8, kMatrix = 16, kDiff = 32 };
constexpr unsigned kAll = kBuild | kDecode | kLint | kExplain | kMatrix | kDiff;
constexpr unsigned kLoads = kAll & ~kDecode;

// clang-format off
constexpr Option kOptions[] = {
    {"root",      0,   Value::Folder, &Options::root,          kLoads & ~kDiff,
     "A target's file tree: paths and links are inside it"},
    {"map",       0,   Value::Folder, &Options::maps,          kLoads & ~kDiff,
     "/PATH=DIR: a folder in place of one of the device's; may be repeated"},
    {"country",   0,   Value::Text,   &Options::country,       kLoads & ~kMatrix,
     "The country code; '' for none"},
    {"path-file", 0,   Value::File,   &Options::path_file,     kLoads,
     "One more path file, tried first"},
    {"device-log", 0,  Value::File,   &Options::device_log,    kExplain,
     "Explain the errors of a device's log; - for standard input"},
    {"error",     0,   Value::Rule,   &Options::error_rules,   kLint,
     "Report this rule's findings as errors; may be repeated"},
    {"ignore",    0,   Value::RulePath, &Options::ignored_rules, kLint,
     "Leave out this rule's findings, or those about one file; may be repeated"},
    {"countries", 0,   Value::Text,   &Options::countries,     kLint | kMatrix | kDiff,
     "Exactly these loads: codes, 'other', 'none', with commas between"},
    {"fail-on",   0,   Value::Severity, &Options::fail_on,     kLint,
     "The least severe finding that makes the exit status 1: error, warning or note"},
    {"notes",     0,   Value::None,   &Options::notes,         kLint,
     "Show notes too"},
    {"baseline",  0,   Value::File,   &Options::baseline,      kLint,
     "Leave out the findings of this file, which --format baseline has written"},
    {"capacity",  0,   Value::Number, &Options::capacity,      kBuild,
     "The size of the caller's buffer"},
    {"library",   0,   Value::File,   &Options::library,       kBuild | kMatrix | kDiff,
     "A shared library to load in place of the command's own"},
    {"log",       0,   Value::None,   &Options::log,           kLoads,
     "Show the library's log on the standard error"},
    {"format",    0,   Value::Format, &Options::format,        kAll,
     nullptr},
    {"color",     0,   Value::Color,  &Options::color,         kAll,
     "auto, always or never"},
    {"output",    'o', Value::File,   &Options::output,        kAll,
     "The file for the result; - for standard output"},
    {"quiet",     'q', Value::None,   &Options::quiet,         kAll,
     "Only failures on the standard error"},
    {"help",      'h', Value::None,   &Options::help,          kAll,
     "Show this help"},
};
// clang-format on

constexpr Subcommand kSubcommands[] = {
    {"build", kBuild, build, "Call the library as the device does and write the block",
     "dump,hex,binary,json,c", "",
     "  tarnix-uwb-params build --root out/target --country US\n"
     "  tarnix-uwb-params build --root out/target --format binary -o block.bin\n"
     "The usual format is dump on a terminal and binary anywhere else."},
    {"decode", kDecode, decode, "Show the fields of a block", "table,text,json", "BLOCK",
     "  tarnix-uwb-params decode block.bin\n"
     "  echo 'da35 0000 ...' | tarnix-uwb-params decode -\n"
     "  tarnix-uwb-params decode --format text block.bin > calib.conf\n"
     "BLOCK is a file with raw bytes, hexadecimal text or any format of build; - is the standard\n"
     "input. The format text is a calibration text that makes the same block."},
    {"lint", kLint, lint, "Find what the library ignores without a message",
     "text,json,sarif,github,baseline", "",
     "  tarnix-uwb-params lint --root out/target\n"
     "  tarnix-uwb-params lint --root out/target --country US --error unknown-key\n"
     "  tarnix-uwb-params lint --root out/target --format sarif -o lint.sarif\n"
     "Without --country and --countries, every country of the tree is loaded, any other country,\n"
     "and no country code."},
    {"explain", kExplain, explain, "Show for each field of the block which line set it",
     "text,json", "[NAME]...",
     "  tarnix-uwb-params explain --root out/target --country DE\n"
     "  tarnix-uwb-params explain --root out/target xtal_trim ch9_port\n"
     "  adb logcat -d | tarnix-uwb-params explain --root out/target --device-log -\n"
     "NAME is a key or a field of the block: only these are shown."},
    {"matrix", kMatrix, matrix, "Compare the blocks of all countries that the tree has files for",
     "text,json", "", "  tarnix-uwb-params matrix --root out/target"},
    {"diff", kDiff, diff, "Compare two blocks or two trees, field by field", "text,json", "A,B",
     "  tarnix-uwb-params diff old.bin new.bin\n"
     "  tarnix-uwb-params diff out/old out/new\n"
     "A folder is a target's file tree; anything else is a block; - is the standard input. All\n"
     "countries of two trees are compared, any other country and no country code."},
};

constexpr char kExitStatus[] =
    "Exit status: 0 success; 1 findings, differences or no valid calibration; 2 wrong usage or\n"
    "unreadable input.\n";

// What the help calls a value, in the order of Value.
constexpr const char* kValueNames[] = {"",      " TEXT", " FILE",        " DIR",      " FORMAT",
                                       " WHEN", " RULE", " RULE[:PATH]", " SEVERITY", " NUMBER"};

std::string optionHelp(const Option& option, const Subcommand& subcommand) {
  std::string spelling =
      std::string("--") + option.name + kValueNames[static_cast<size_t>(option.value)];
  if (option.letter != 0) spelling = std::string("-") + option.letter + ", " + spelling;
  const std::string help =
      option.help != nullptr ? option.help : joined(choicesOf(option, subcommand), ", ");
  return "  " + padded(spelling, 22) + "  " + help + "\n";
}

// As many rules in a line as fit.
std::string rulesHelp() {
  std::string out = "\nRules:\n ";
  size_t width = 1;
  for (const std::string& name : ruleNames()) {
    if (width + 1 + name.size() > 100) {
      out += "\n ";
      width = 1;
    }
    out += " " + name;
    width += 1 + name.size();
  }
  return out + "\n";
}

std::vector<std::string> firstWords() {
  std::vector<std::string> words;
  for (const Subcommand& subcommand : subcommands()) words.emplace_back(subcommand.name);
  words.insert(words.end(), {"--help", "--version"});
  return words;
}

std::vector<std::string> fieldNames() {
  std::vector<std::string> names;
  for (const BlockField& field : kBlockFields) names.emplace_back(field.name);
  return names;
}

// The words that may replace `current`, the unfinished word after `previous`.
std::vector<std::string> nextWords(const Subcommand& subcommand, const std::string& previous,
                                   const std::string& current) {
  std::vector<std::string> names;
  for (const Option& option : optionsOf(subcommand)) {
    const std::string name = std::string("--") + option.name;
    const bool is_previous =
        previous == name || (option.letter != 0 && previous == std::string("-") + option.letter);
    if (is_previous && option.value != Value::None) return choicesOf(option, subcommand);
    names.push_back(name);
  }
  if (current.substr(0, 1) == "-" || *subcommand.operands == 0) return names;
  if (!takesNames(subcommand)) return {};
  return fieldNames();
}

}  // namespace

const std::vector<Subcommand>& subcommands() {
  static const std::vector<Subcommand> all(std::begin(kSubcommands), std::end(kSubcommands));
  return all;
}

const Subcommand* subcommandCalled(const std::string& name) {
  for (const Subcommand& subcommand : subcommands()) {
    if (subcommand.name == name) return &subcommand;
  }
  return nullptr;
}

std::vector<Option> optionsOf(const Subcommand& subcommand) {
  std::vector<Option> options;
  for (const Option& option : kOptions) {
    if ((option.subcommands & subcommand.mask) != 0) options.push_back(option);
  }
  return options;
}

std::vector<std::string> operandsOf(const Subcommand& subcommand) {
  return split(subcommand.operands, ',');
}

bool takesNames(const Subcommand& subcommand) {
  return *subcommand.operands == '[';
}

std::vector<std::string> choicesOf(const Option& option, const Subcommand& subcommand) {
  if (option.value == Value::Format) return split(subcommand.formats, ',');
  if (option.value == Value::Color) return {"auto", "always", "never"};
  if (option.value == Value::Rule || option.value == Value::RulePath) return ruleNames();
  if (option.value == Value::Severity) return {"error", "warning", "note"};
  return {};
}

std::string helpOf(const Subcommand& subcommand) {
  std::string out = std::string(subcommand.summary) + ".\nUsage: tarnix-uwb-params " +
                    subcommand.name + " [OPTIONS]";
  for (const std::string& operand : operandsOf(subcommand)) out += " " + operand;
  out += "\n\nOptions:\n";
  for (const Option& option : optionsOf(subcommand)) out += optionHelp(option, subcommand);
  if (subcommand.mask == kLint) out += rulesHelp();
  return out + "\nExamples:\n" + subcommand.examples + "\n" + kExitStatus;
}

std::string generalHelp() {
  std::string out =
      "Write, read and check UWB calibrations.\n"
      "Usage: tarnix-uwb-params SUBCOMMAND [OPTIONS]\n\nSubcommands:\n";
  for (const Subcommand& subcommand : subcommands()) {
    out += "  " + padded(subcommand.name, 9) + subcommand.summary + "\n";
  }
  return out + "\n'tarnix-uwb-params SUBCOMMAND --help' shows the options of each; --version " +
         "shows the version.\n" + kExitStatus;
}

std::string completionsOf(std::vector<std::string> words) {
  // bash splits --format=text into three words.
  if (!words.empty() && words.back() == "=") words.back().clear();
  words.erase(std::remove(words.begin(), words.end(), "="), words.end());
  std::vector<std::string> next;
  if (words.size() < 2) {
    next = firstWords();
  } else if (const Subcommand* const subcommand = subcommandCalled(words.front())) {
    next = nextWords(*subcommand, words[words.size() - 2], words.back());
  }
  return joined(next, "\n");
}
