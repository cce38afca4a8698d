// SPDX-License-Identifier: Apache-2.0
#include <getopt.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <stdexcept>

#include "tools/command/options.h"
#include "tools/device/device_library.h"

namespace {

// getopt_long returns this plus the index of the option; letters are below it.
constexpr int kFirstRow = 256;

[[noreturn]] void refuse(const std::string& problem, const std::string& subcommand = "") {
  throw std::runtime_error(problem + " (see 'tarnix-uwb-params " +
                           (subcommand.empty() ? "" : subcommand + " ") + "--help')");
}

// Reads the words of one subcommand, whose name is the first of them.
class Reader {
 public:
  explicit Reader(const Subcommand& subcommand)
      : subcommand_(subcommand), rows_(optionsOf(subcommand)) {}

  Options read(int argc, char** argv) {
    std::vector<option> longs;
    std::string letters = ":";  // Makes getopt_long return ':' for a missing value.
    for (const Option& row : rows_) {
      const bool takes_value = !row.value.empty();
      longs.push_back({row.name.c_str(), takes_value ? required_argument : no_argument, nullptr,
                       kFirstRow + static_cast<int>(longs.size())});
      if (row.letter != 0) letters += std::string(1, row.letter) + (takes_value ? ":" : "");
    }
    longs.push_back({});
    opterr = 0;
    optind = 0;  // Resets the C library's state.
    for (int found = 0;
         (found = getopt_long(argc, argv, letters.c_str(), longs.data(), nullptr)) >= 0;) {
      if (found == '?') refuseOption(argv[optind - 1]);
      if (found == ':') refuse(std::string(argv[optind - 1]) + " needs a value");
      set(rowOf(found), optarg == nullptr ? "" : optarg);
    }
    options_.operands.assign(argv + optind, argv + argc);
    if (!options_.help && !takesNames(subcommand_)) check();
    return options_;
  }

 private:
  [[noreturn]] void refuse(const std::string& problem) const {
    ::refuse(problem, subcommand_.name);
  }

  const Option& rowOf(int found) const {
    if (found >= kFirstRow) return rows_.at(static_cast<size_t>(found - kFirstRow));
    return *std::find_if(rows_.begin(), rows_.end(),
                         [&](const Option& row) { return row.letter == found; });
  }

  [[noreturn]] void refuseOption(const std::string& word) const {
    if (optopt >= kFirstRow) refuse("--" + rowOf(optopt).name + " takes no value");
    if (optopt != 0) refuse(std::string("unknown option -") + static_cast<char>(optopt));
    const std::string name = word.substr(0, word.find('='));
    std::vector<std::string> names;
    for (const Option& row : rows_) names.push_back("--" + row.name);
    refuse("unknown option " + name + suggestion(name, names));
  }

  void set(const Option& row, const std::string& value) {
    const std::string name = "--" + row.name;
    const std::vector<std::string> choices = choicesOf(row, subcommand_);
    const std::string word = row.value == "RULE[:PATH]" ? value.substr(0, value.find(':')) : value;
    if (!choices.empty() && std::find(choices.begin(), choices.end(), word) == choices.end()) {
      refuse(name + " does not take '" + value + "'" +
             suggestion(value, choices, ", but " + Join(choices, ", ")));
    }
    if (row.set(options_, value)) return;
    refuse(name + " takes a number from 0 to " + std::to_string(kLargestNumber) + ", not '" +
           value + "'");
  }

  void check() const {
    std::vector<std::string> wanted = Split(subcommand_.operands, " ");
    if (subcommand_.operands.empty()) wanted.clear();
    const std::vector<std::string>& given = options_.operands;
    if (given.size() > wanted.size()) refuse("unexpected argument " + given[wanted.size()]);
    if (given.size() < wanted.size()) refuse(wanted[given.size()] + " is missing");
    if (options_.country.has_value() && options_.countries.has_value()) {
      refuse("--country and --countries exclude each other");
    }
  }

  const Subcommand& subcommand_;
  const std::vector<Option> rows_;
  Options options_{};
};

// Asks for nothing but this text.
Request answer(const std::string& text) {
  return {{}, [text](const Options&, const Paint&) { return Outcome{kGood, text, {}}; }};
}

std::string versionLine() {
  const std::string commit = COMMIT;
  return "tarnix-uwb-params, library " + libraryVersion() +
         (commit.empty() ? "" : ", commit " + commit) + "\n";
}

// As --color says, or on a terminal unless NO_COLOR is set.
bool wantsColour(const Options& options) {
  if (options.color != "auto") return options.color == "always";
  const char* const no_color = std::getenv("NO_COLOR");
  return options.to_terminal && (no_color == nullptr || *no_color == '\0');
}

}  // namespace

Request parseCommandLine(int argc, char** argv) {
  if (argc < 2) refuse("a subcommand is missing");
  const std::string first = argv[1];
  if (first == "--help" || first == "-h") return answer(generalHelp());
  if (first == "--version") return answer(versionLine());
  if (first == "--complete") return answer(completionsOf({argv + 2, argv + argc}));
  const Subcommand* const subcommand = subcommandCalled(first);
  if (subcommand == nullptr) {
    refuse("unknown subcommand " + first + suggestion(first, subcommandNames()));
  }
  Options options = Reader(*subcommand).read(argc - 1, argv + 1);
  if (options.help) return answer(helpOf(*subcommand));
  options.to_terminal = options.output == "-" && isatty(STDOUT_FILENO) == 1;
  options.in_colour = wantsColour(options);
  return {std::move(options), subcommand->run};
}
