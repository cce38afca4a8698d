// SPDX-License-Identifier: Apache-2.0
#include "tools/command/command_line.h"

#include <unistd.h>

#include <CLI/CLI.hpp>
#include <cstdlib>

#include "tools/block/fields.h"
#include "tools/lint/rules.h"

namespace {

// The name that dlopen looks for where this program's own run path says.
constexpr char kLibrary[] = "libtarnix_uwb_params_nfcc.so";

constexpr char kExitStatus[] =
    "Exit status: 0 good; 1 findings, differences or no valid calibration; 2 wrong usage or\n"
    "unreadable input.";

struct Subcommand {
  const char* name;
  const char* summary;
  Outcome (*command)(const Options&, const Paint&);
  std::vector<std::string> formats;
  const char* examples;
};

const std::vector<Subcommand>& subcommands() {
  static const std::vector<Subcommand> all = {
      {"build",
       "Call the library as the device does and write the block",
       build,
       {"dump", "hex", "binary", "json", "c"},
       "  tarnix-uwb-params build --root out/target --country US\n"
       "  tarnix-uwb-params build --root out/target --format binary -o block.bin\n"
       "The usual format is dump on a terminal and binary anywhere else."},
      {"decode",
       "Name every byte of a block",
       decode,
       {"table", "text", "json"},
       "  tarnix-uwb-params decode block.bin\n"
       "  echo 'da35 0000 ...' | tarnix-uwb-params decode -\n"
       "  tarnix-uwb-params decode --format text block.bin > calib.conf\n"
       "The format text is a calibration text that makes the same block."},
      {"lint",
       "Find what the text language passes over in silence",
       lint,
       {"text", "json", "sarif", "github"},
       "  tarnix-uwb-params lint --root out/target\n"
       "  tarnix-uwb-params lint --root out/target --country US --error unknown-key\n"
       "  tarnix-uwb-params lint --root out/target --format sarif -o lint.sarif\n"
       "Without --country every country that the tree has files for is looked at, and none.\n"
       "Notes alone leave the exit status 0."},
      {"explain",
       "Say for each field of the block which line set it",
       explain,
       {"text", "json"},
       "  tarnix-uwb-params explain --root out/target --country DE"},
      {"matrix",
       "Compare the blocks of all countries that the tree has files for",
       matrix,
       {"text", "json"},
       "  tarnix-uwb-params matrix --root out/target"},
      {"diff",
       "Compare two blocks or two trees, field by field",
       diff,
       {"text", "json"},
       "  tarnix-uwb-params diff old.bin new.bin\n"
       "  tarnix-uwb-params diff --country US out/old out/new\n"
       "A folder is a target's file tree; anything else is a block."},
  };
  return all;
}

bool readsTree(const Subcommand& subcommand) {
  return subcommand.command != decode;
}

void addCommonOptions(CLI::App& app, const Subcommand& subcommand, Options& options) {
  app.add_option("--format", options.format, "One of " + joined(subcommand.formats, ", "))
      ->check(CLI::IsMember(subcommand.formats));
  app.add_option("--color", options.color, "auto, always or never")
      ->check(CLI::IsMember(std::vector<std::string>{"auto", "always", "never"}));
  app.add_option("-o,--output", options.output, "The file for the result; - for standard output");
  app.add_flag("-q,--quiet", options.quiet, "Only failures on the standard error");
}

void addTreeOptions(CLI::App& app, const Subcommand& subcommand, Options& options) {
  if (subcommand.command != diff) {
    app.add_option("--root", options.root, "A target's file tree: paths and links are inside it");
  }
  if (subcommand.command != matrix) {
    app.add_option("--country", options.country, "The country code; '' for none");
  }
  app.add_option("--path-file", options.path_file, "One more path file, tried first");
  app.add_flag("--log", options.log, "Show the library's log on the standard error");
  const bool calls_library = subcommand.command != lint && subcommand.command != explain;
  if (calls_library) app.add_option("--library", options.library, "The shared library to load");
}

void addOwnOptions(CLI::App& app, const Subcommand& subcommand, Options& options) {
  if (subcommand.command == build) {
    app.add_option("--capacity", options.capacity, "The size of the caller's buffer")
        ->check(CLI::Range(0U, 1U << 20));
  } else if (subcommand.command == decode) {
    app.add_option("BLOCK", options.operands, "Raw bytes or hexadecimal text; - for standard input")
        ->required()
        ->expected(1);
  } else if (subcommand.command == diff) {
    app.add_option("A_B", options.operands, "Two blocks or two trees")->required()->expected(2);
  } else if (subcommand.command == lint) {
    const CLI::IsMember rule_names(ruleNames());
    app.add_option("--error", options.error_rules, "Take this rule's findings as errors")
        ->expected(1)
        ->take_all()
        ->check(rule_names);
    app.add_option("--ignore", options.ignored_rules, "Leave out this rule's findings")
        ->expected(1)
        ->take_all()
        ->check(rule_names);
  }
}

void addSubcommand(CLI::App& app, const Subcommand& subcommand, Options& options) {
  CLI::App* const sub = app.add_subcommand(subcommand.name, subcommand.summary);
  sub->footer(std::string("Examples:\n") + subcommand.examples + "\n" + kExitStatus);
  addOwnOptions(*sub, subcommand, options);
  if (readsTree(subcommand)) addTreeOptions(*sub, subcommand, options);
  addCommonOptions(*sub, subcommand, options);
}

// The words of the command line, last first, as CLI11 takes them. It would let the next word be the
// value of `--country=`, so that is made two words here.
std::vector<std::string> wordsOf(int argc, char** argv) {
  std::vector<std::string> words;
  for (int i = 1; i < argc; ++i) {
    std::string word = argv[i];
    const bool no_value = word.size() > 3 && word.compare(0, 2, "--") == 0 && word.back() == '=';
    if (no_value) word.pop_back();
    words.push_back(word);
    if (no_value) words.emplace_back();
  }
  return {words.rbegin(), words.rend()};
}

Request helpRequest(const CLI::App& app) {
  static std::string help;
  help = app.help(app.get_parent() == nullptr ? "" : app.get_parent()->get_name());
  Request request;
  request.command = [](const Options&, const Paint&) { return Outcome{kGood, help, {}}; };
  return request;
}

const CLI::App& chosenApp(const CLI::App& app) {
  const std::vector<CLI::App*> chosen = const_cast<CLI::App&>(app).get_subcommands();
  return chosen.empty() ? app : *chosen.front();
}

Request chosenRequest(const CLI::App& app, Options options) {
  options.to_terminal = options.output == "-" && isatty(STDOUT_FILENO) == 1;
  for (const Subcommand& subcommand : subcommands()) {
    if (!app.got_subcommand(subcommand.name)) continue;
    // What the device would log is part of what build shows.
    if (subcommand.command == build) options.log = true;
    return {std::move(options), subcommand.command};
  }
  throw std::runtime_error("no subcommand");
}

}  // namespace

Request parseCommandLine(int argc, char** argv) {
  Options options;
  options.capacity = kBlockSize;
  options.library = kLibrary;
  CLI::App app("Write, read and check UWB calibrations, with the library's own eyes.",
               "tarnix-uwb-params");
  app.require_subcommand(1);
  app.footer(std::string("See 'tarnix-uwb-params COMMAND --help' for each.\n") + kExitStatus);
  for (const Subcommand& subcommand : subcommands()) addSubcommand(app, subcommand, options);
  try {
    app.parse(wordsOf(argc, argv));
  } catch (const CLI::CallForHelp&) {
    return helpRequest(chosenApp(app));
  } catch (const CLI::ParseError& e) {
    throw std::runtime_error(std::string(e.what()) + " (see --help)");
  }
  return chosenRequest(app, std::move(options));
}

bool wantsColour(const Options& options) {
  if (options.color != "auto") return options.color == "always";
  const char* const no_color = std::getenv("NO_COLOR");
  return options.to_terminal && (no_color == nullptr || *no_color == '\0');
}
