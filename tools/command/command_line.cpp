// SPDX-License-Identifier: Apache-2.0
#include "tools/command/command_line.h"

#include <getopt.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <stdexcept>

#include "tools/block/fields.h"
#include "tools/command/options.h"
#include "tools/device/library_log.h"
#include "tools/text/nearest.h"

namespace {

constexpr unsigned kLargestCapacity = 1U << 20;

// getopt_long returns this plus the index of the option; letters are below it.
constexpr int kFirstRow = 256;

[[noreturn]] void refuse(const std::string& problem, const std::string& subcommand = "") {
  throw std::runtime_error(problem + " (see 'tarnix-uwb-params " +
                           (subcommand.empty() ? "" : subcommand + " ") + "--help')");
}

std::string suggestion(const std::string& word, const std::vector<std::string>& candidates) {
  const std::string nearest = nearestOf(word, candidates);
  return nearest.empty() ? "" : "; did you mean " + nearest + "?";
}

void assign(bool& target, const std::string& /*value*/) {
  target = true;
}

void assign(unsigned& target, const std::string& value) {
  char* end = nullptr;
  const unsigned long number = std::strtoul(value.c_str(), &end, 10);
  if (value.empty() || value[0] == '-' || *end != '\0' || number > kLargestCapacity) {
    throw std::invalid_argument("a number from 0 to " + std::to_string(kLargestCapacity));
  }
  target = static_cast<unsigned>(number);
}

void assign(std::string& target, const std::string& value) {
  target = value;
}

void assign(std::optional<std::string>& target, const std::string& value) {
  target = value;
}

void assign(std::vector<std::string>& target, const std::string& value) {
  target.push_back(value);
}

// Reads the words of one subcommand, whose name is the first of them.
class Reader {
 public:
  explicit Reader(const Subcommand& subcommand)
      : subcommand_(subcommand), rows_(optionsOf(subcommand)) {}

  Options read(int argc, char** argv) {
    const std::vector<option> longs = longOptions();
    const std::string shorts = shortOptions();
    opterr = 0;
    optind = 0;  // Resets the C library's state.
    for (int found = 0;
         (found = getopt_long(argc, argv, shorts.c_str(), longs.data(), nullptr)) >= 0;) {
      if (found == '?') refuseOption(argv[optind - 1]);
      if (found == ':') refuse(std::string(argv[optind - 1]) + " needs a value", subcommand_.name);
      set(rowOf(found), optarg == nullptr ? "" : optarg);
    }
    options_.operands.assign(argv + optind, argv + argc);
    if (!options_.help) checkOperands();
    return options_;
  }

 private:
  std::vector<option> longOptions() const {
    std::vector<option> longs;
    for (const Option& row : rows_) {
      const int argument = row.value == Value::None ? no_argument : required_argument;
      longs.push_back({row.name, argument, nullptr, kFirstRow + static_cast<int>(longs.size())});
    }
    longs.push_back({});
    return longs;
  }

  // The first colon makes getopt_long return ':' for a missing value.
  std::string shortOptions() const {
    std::string letters = ":";
    for (const Option& row : rows_) {
      if (row.letter == 0) continue;
      letters += row.letter;
      if (row.value != Value::None) letters += ':';
    }
    return letters;
  }

  const Option& rowOf(int found) const {
    if (found >= kFirstRow) return rows_.at(static_cast<size_t>(found - kFirstRow));
    return *std::find_if(rows_.begin(), rows_.end(),
                         [&](const Option& row) { return row.letter == found; });
  }

  [[noreturn]] void refuseOption(const std::string& word) const {
    if (optopt >= kFirstRow) {
      refuse(std::string("--") + rowOf(optopt).name + " takes no value", subcommand_.name);
    }
    if (optopt != 0) {
      refuse(std::string("unknown option -") + static_cast<char>(optopt), subcommand_.name);
    }
    const std::string name = word.substr(0, word.find('='));
    std::vector<std::string> names;
    for (const Option& row : rows_) names.push_back(std::string("--") + row.name);
    refuse("unknown option " + name + suggestion(name, names), subcommand_.name);
  }

  void set(const Option& row, const std::string& value) {
    const std::vector<std::string> choices = choicesOf(row, subcommand_);
    const std::string word =
        row.value == Value::RulePath ? value.substr(0, value.find(':')) : value;
    if (!choices.empty() && std::find(choices.begin(), choices.end(), word) == choices.end()) {
      const std::string nearest = suggestion(value, choices);
      refuse(std::string("--") + row.name + " does not take '" + value + "'" +
                 (nearest.empty() ? ", but " + joined(choices, ", ") : nearest),
             subcommand_.name);
    }
    try {
      std::visit([&](auto member) { assign(options_.*member, value); }, row.target);
    } catch (const std::invalid_argument& e) {
      refuse(std::string("--") + row.name + " takes " + e.what() + ", not '" + value + "'",
             subcommand_.name);
    }
  }

  void checkOperands() const {
    if (takesNames(subcommand_)) return;
    const std::vector<std::string> wanted = operandsOf(subcommand_);
    const std::vector<std::string>& given = options_.operands;
    if (given.size() > wanted.size()) {
      refuse("unexpected argument " + given[wanted.size()], subcommand_.name);
    }
    if (given.size() < wanted.size()) {
      refuse(wanted[given.size()] + " is missing", subcommand_.name);
    }
  }

  const Subcommand& subcommand_;
  const std::vector<Option> rows_;
  Options options_{};
};

const Subcommand& chosenSubcommand(const std::string& name) {
  if (const Subcommand* const subcommand = subcommandCalled(name)) return *subcommand;
  std::vector<std::string> names;
  for (const Subcommand& subcommand : subcommands()) names.emplace_back(subcommand.name);
  refuse("unknown subcommand " + name + suggestion(name, names));
}

std::string versionLine() {
  const std::string commit = COMMIT;
  return "tarnix-uwb-params, library " + libraryVersion() +
         (commit.empty() ? "" : ", commit " + commit) + "\n";
}

}  // namespace

Request parseCommandLine(int argc, char** argv) {
  if (argc < 2) refuse("a subcommand is missing");
  const std::string first = argv[1];
  if (first == "--help" || first == "-h") return {{}, nullptr, generalHelp()};
  if (first == "--version") return {{}, nullptr, versionLine()};
  if (first == "--complete") return {{}, nullptr, completionsOf({argv + 2, argv + argc})};
  const Subcommand& subcommand = chosenSubcommand(first);
  Options options = Reader(subcommand).read(argc - 1, argv + 1);
  if (options.help) return {{}, nullptr, helpOf(subcommand)};
  options.to_terminal = options.output == "-" && isatty(STDOUT_FILENO) == 1;
  return {std::move(options), subcommand.run, {}};
}

bool wantsColour(const Options& options) {
  if (options.color != "auto") return options.color == "always";
  const char* const no_color = std::getenv("NO_COLOR");
  return options.to_terminal && (no_color == nullptr || *no_color == '\0');
}
