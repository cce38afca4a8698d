// SPDX-License-Identifier: Apache-2.0
#include <algorithm>
#include <stdexcept>

#include "tools/block/reader.h"
#include "tools/command/tree.h"
#include "tools/device/device_library.h"
#include "tools/text/json.h"
#include "tools/trace/countries.h"
#include "tools/trace/device_log.h"
#include "tools/trace/load_trace.h"

namespace {

constexpr size_t kLargestLog = size_t{1} << 28;

// A line of a file; without a file, only the text.
struct Cause {
  std::string path;
  size_t line;
  std::string text;
  bool not_read;  // It comes after an error of its file.
};

struct LoggedError {
  DeviceLogLine line;
  std::vector<Cause> causes;
};

// Where the log and the load of the tree differ first. A side that has ended has no text.
struct Difference {
  size_t line;
  std::string log;
  std::string tree;
};

struct Report {
  LoggedLoad load;
  LoadTrace trace;
  std::vector<LoggedError> errors;
  std::optional<Difference> difference;
};

// Whether the message names the path, not only a longer one.
bool namesPath(const std::string& message, const std::string& whole_path) {
  const std::string path = comparable(whole_path);
  const size_t at = message.find(path);
  if (path.empty() || at == message.npos) return false;
  const size_t end = at + path.size();
  return end == message.size() || message[end] == ',';
}

// The lines of the tree that cause an error message.
class Causes {
 public:
  Causes(const LoadTrace& trace, const std::string& message) : trace_(trace), message_(message) {
    for (const TracedPathFile& file : trace.path_files) addEntries(file);
    trace.forEachLine([&](const LineRef& ref, const TracedLine& line) {
      const bool fails = line.effect.kind == LineEffect::Kind::Fails && !line.lost;
      if (fails && namesPath(message, trace.files[ref.file]->path)) add(ref);
    });
    const std::string last_word = message.substr(message.rfind(' ') + 1);
    for (const TracedParameter& parameter : trace.parameters) {
      if (parameter.key == last_word && parameter.settings.empty()) addMissing(parameter);
      if (isWrongWiring(parameter)) add(parameter.settings.back());
    }
  }

  const std::vector<Cause>& found() const { return causes_; }

 private:
  void add(const LineRef& ref) {
    const TracedLine& line = trace_.at(ref);
    causes_.push_back({trace_.files[ref.file]->path, line.number, line.text, line.lost});
  }

  void addEntries(const TracedPathFile& file) {
    for (const TracedEntry& entry : file.entries) {
      const bool is_named =
          namesPath(message_, entry.own.path) || namesPath(message_, entry.last().path);
      const bool was_read = entry.file.has_value() && !entry.fellBack();
      if (is_named && !was_read) causes_.push_back({file.path, entry.number, entry.text, false});
    }
  }

  // A line that sets the parameter may be there, but after an error.
  void addMissing(const TracedParameter& parameter) {
    const size_t before = causes_.size();
    trace_.forEachLine([&](const LineRef& ref, const TracedLine& line) {
      if (line.lost && &trace_.parameterOf(line) == &parameter) add(ref);
    });
    if (causes_.size() == before)
      causes_.push_back({"", 0, "no line sets " + parameter.key, false});
  }

  // Whether the message is that of the conversion, which fails for the parameter's number.
  bool isWrongWiring(const TracedParameter& parameter) const {
    const bool is_conversions =
        !trace_.problem.empty() && message_.find(trace_.problem) != message_.npos;
    if (!is_conversions || parameter.facts == nullptr || parameter.settings.empty()) return false;
    const std::string& value = trace_.at(parameter.settings.back()).effect.value;
    return !hasSelector(parameter.facts->role, std::stoul(value));
  }

  const LoadTrace& trace_;
  const std::string& message_;
  std::vector<Cause> causes_;
};

// What the load logs in the tree; without debug lines if the log has none.
std::vector<LogLine> expectedLines(const LoggedLoad& load) {
  const LogCapture log;
  uint8_t buffer[kBlockSize];
  load_uwb_params_from_files(buffer, sizeof(buffer));
  std::vector<LogLine> lines = log.lines();
  for (LogLine& line : lines) line.text = comparable(line.text);
  const auto is_debug = [](const LogLine& line) { return line.priority == 'D'; };
  const bool shows_debug =
      std::any_of(load.lines.begin(), load.lines.end(), [&](const DeviceLogLine& line) {
        return is_debug(line.message) || line.message.priority == '?';
      });
  if (!shows_debug) lines.erase(std::remove_if(lines.begin(), lines.end(), is_debug), lines.end());
  return lines;
}

// The first line, with the library's version, is not compared.
std::optional<Difference> firstDifference(const LoggedLoad& load,
                                          const std::vector<LogLine>& tree) {
  for (size_t i = 1; i < tree.size(); ++i) {
    const std::string& expected = tree[i].text;
    if (i == load.lines.size()) return Difference{load.lines.back().number, "", expected};
    const DeviceLogLine& line = load.lines[i];
    if (line.message.text != expected) return Difference{line.number, line.message.text, expected};
  }
  return std::nullopt;
}

// The raw format has no priorities: an error is what the load of the tree logs as one.
bool isError(const LogLine& message, const std::vector<LogLine>& tree) {
  if (message.priority != '?') return message.priority == 'E';
  return std::any_of(tree.begin(), tree.end(), [&](const LogLine& line) {
    return line.priority == 'E' && line.text == message.text;
  });
}

Report reportOn(const Options& options) {
  const std::string log = readInput(options.device_log, kLargestLog);
  const Tree tree(options.root, options, OpenRedirect::Opens::NoSpecialFiles);
  Report report{lastLoadIn(log), {}, {}, {}};
  setDeviceProperties(report.load.country, report.load.path_file);
  const std::vector<LogLine> expected = expectedLines(report.load);
  report.difference = firstDifference(report.load, expected);
  // Lines after the load are the process's other messages.
  if (!report.difference.has_value()) report.load.lines.resize(expected.size());
  const LogCapture quiet;
  report.trace = traceLoad(report.load.country);
  for (const DeviceLogLine& line : report.load.lines) {
    if (!isError(line.message, expected)) continue;
    report.errors.push_back({line, Causes(report.trace, line.message.text).found()});
  }
  return report;
}

std::string asText(const Report& report, const Paint& paint) {
  std::string out = countryTitle(report.load.country) + ", load in line " +
                    std::to_string(report.load.lines.front().number) + " of the log\n";
  for (const LoggedError& error : report.errors) {
    out += paint.red("E " + printable(error.line.message.text)) + "\n";
    for (const Cause& cause : error.causes) {
      const std::string place =
          cause.path.empty() ? "" : cause.path + ":" + std::to_string(cause.line) + ": ";
      out += "    " + printable(place + cause.text) + (cause.not_read ? "  (not read)\n" : "\n");
    }
  }
  if (!report.difference.has_value()) return out + "the load of the tree logs the same\n";
  const auto side = [](const std::string& text) {
    return text.empty() ? "(nothing more)" : printable(text);
  };
  const Difference& difference = *report.difference;
  return out + "the tree is not the device's: its load differs from line " +
         std::to_string(difference.line) + " of the log on\n" +
         paint.red("- " + side(difference.log)) + "\n" + paint.green("+ " + side(difference.tree)) +
         "\n";
}

JsonMembers jsonOf(const Report& report) {
  std::vector<JsonValue> errors;
  for (const LoggedError& error : report.errors) {
    std::vector<JsonValue> causes;
    for (const Cause& cause : error.causes) {
      causes.emplace_back(JsonMembers{{"path", cause.path},
                                      {"line", cause.line},
                                      {"text", cause.text},
                                      {"not_read", cause.not_read}});
    }
    errors.emplace_back(JsonMembers{
        {"log_line", error.line.number}, {"message", error.line.message.text}, {"causes", causes}});
  }
  JsonMembers json = {{"country", report.trace.country},
                      {"path_file", report.load.path_file},
                      {"valid", report.trace.block.has_value()},
                      {"errors", errors}};
  if (report.difference.has_value()) {
    json.emplace_back("difference", JsonMembers{{"log_line", report.difference->line},
                                                {"log", report.difference->log},
                                                {"tree", report.difference->tree}});
  }
  return json;
}

}  // namespace

Outcome explainDeviceLog(const Options& options, const Paint& paint) {
  if (options.country.has_value() || !options.path_file.empty() || !options.operands.empty()) {
    throw std::runtime_error("--device-log has the country and the path file, and shows no names");
  }
  const Report report = reportOn(options);
  const bool good = report.trace.block.has_value() && !report.difference.has_value();
  return {good ? kGood : kFindings,
          options.format == "json" ? documentOf(jsonOf(report)) : asText(report, paint),
          {}};
}
