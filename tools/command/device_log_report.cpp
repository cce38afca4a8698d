// SPDX-License-Identifier: Apache-2.0
#include <algorithm>
#include <stdexcept>

#include "tools/command/tree.h"
#include "tools/text/input_output.h"
#include "tools/trace/countries.h"
#include "tools/trace/device_log.h"

namespace {

// Whether the message names the path, not only a longer one.
bool namesPath(const std::string& message, const std::string& whole_path) {
  const std::string path = comparable(whole_path);
  return !path.empty() && (message + ",").find(path + ",") != message.npos;
}

// The lines of the tree that cause an error message.
class Causes {
 public:
  Causes(const LoadTrace& trace, const std::string& message) : trace_(trace), message_(message) {
    for (const TracedPathFile& file : trace.path_files) addEntries(file);
    for (const auto& refs : {trace.failing(), trace.refusedByDevice()}) {
      for (const LineRef& ref : refs) {
        if (namesPath(message, trace.files[ref.file]->path)) add(ref);
      }
    }
    const std::string last_word = message.substr(message.rfind(' ') + 1);
    for (const TracedParameter& parameter : trace.parameters) {
      if (parameter.key == last_word && parameter.settings.empty()) addMissing(parameter);
      if (isWrongWiring(parameter)) add(parameter.settings.back());
    }
  }

  const Json::Value& found() const { return causes_; }

 private:
  // A line of a file; without a path, only the text. A line after an error of its file is not read.
  void add(const std::string& path, size_t line, const std::string& text, bool not_read = false) {
    Json::Value& cause = causes_.append({});
    cause["path"] = path;
    cause["line"] = line;
    cause["text"] = text;
    cause["not_read"] = not_read;
  }

  void add(const LineRef& ref) {
    const TracedLine& line = trace_.at(ref);
    add(trace_.files[ref.file]->path, line.number, line.text, line.lost);
  }

  void addEntries(const TracedPathFile& file) {
    for (const TracedEntry& entry : file.entries) {
      const bool is_named =
          namesPath(message_, entry.own.path) || namesPath(message_, entry.last().path);
      const bool was_read = entry.file.has_value() && !entry.fellBack();
      if (is_named && !was_read) add(file.path, entry.number, entry.text);
    }
  }

  // A line that sets the parameter may be there, but after an error.
  void addMissing(const TracedParameter& parameter) {
    const Json::ArrayIndex before = causes_.size();
    trace_.forEachLine([&](const LineRef& ref, const TracedLine& line) {
      if (line.lost && &trace_.parameterOf(line) == &parameter) add(ref);
    });
    if (causes_.size() == before) add("", 0, "no line sets " + parameter.key);
  }

  // Whether the message is that of the conversion, which fails for the parameter's number.
  bool isWrongWiring(const TracedParameter& parameter) const {
    const bool is_conversions =
        !trace_.problem.empty() && message_.find(trace_.problem) != message_.npos;
    if (!is_conversions || parameter.facts == nullptr || parameter.settings.empty()) return false;
    return !hasSelector(parameter.facts->role, std::stoul(trace_.valueOf(parameter)));
  }

  const LoadTrace& trace_;
  const std::string& message_;
  Json::Value causes_ = Json::arrayValue;
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

// Where the log and the load of the tree differ first; null where they do not. A side that has
// ended has no text. The first line, with the library's version, is not compared.
Json::Value firstDifference(const LoggedLoad& load, const std::vector<LogLine>& tree) {
  Json::Value json;
  for (size_t i = 1; i < tree.size() && json.isNull(); ++i) {
    const bool ended = i == load.lines.size();
    const DeviceLogLine& line = load.lines[ended ? i - 1 : i];
    const std::string text = ended ? "" : line.message.text;
    if (text == tree[i].text) continue;
    json["log_line"] = line.number;
    json["log"] = text;
    json["tree"] = tree[i].text;
  }
  return json;
}

// The raw format has no priorities: an error is what the load of the tree logs as one.
bool isError(const LogLine& message, const std::vector<LogLine>& tree) {
  if (message.priority != '?') return message.priority == 'E';
  return std::any_of(tree.begin(), tree.end(), [&](const LogLine& line) {
    return line.priority == 'E' && line.text == message.text;
  });
}

Json::Value reportOn(const Options& options) {
  const std::string log = readInput(options.device_log);
  const Tree tree(options.root, options, OpenRedirect::Opens::NoSpecialFiles);
  LoggedLoad load = lastLoadIn(log);
  setDeviceProperties(load.country, load.path_file);
  const std::vector<LogLine> expected = expectedLines(load);
  const LoadTrace trace = LoadTracer().trace(load.country);
  Json::Value report;
  report["country"] = countryWord(trace.country);
  report["path_file"] = load.path_file;
  report["log_line"] = load.lines.front().number;
  report["valid"] = trace.block.has_value();
  report["errors"] = Json::arrayValue;
  const Json::Value difference = firstDifference(load, expected);
  if (!difference.isNull()) {
    report["difference"] = difference;
    report["refused_by_device"] =
        arrayOf(trace.refusedByDevice(), [&](const LineRef& ref) { return lineJson(trace, ref); });
  }
  // Lines after the load are the process's other messages.
  if (difference.isNull()) load.lines.resize(expected.size());
  for (const DeviceLogLine& line : load.lines) {
    if (!isError(line.message, expected)) continue;
    Json::Value& error = report["errors"].append({});
    error["log_line"] = line.number;
    error["message"] = line.message.text;
    error["causes"] = Causes(trace, line.message.text).found();
  }
  return report;
}

std::string asText(const Json::Value& report, const Paint& paint) {
  std::string out = countryTitle(countryCalled(report["country"].asString())) + ", load in line " +
                    shown(report["log_line"]) + " of the log\n";
  for (const Json::Value& error : report["errors"]) {
    out += paint.red("E " + shown(error["message"])) + "\n";
    for (const Json::Value& cause : error["causes"]) {
      out += "    " + (cause["path"] == "" ? shown(cause["text"]) : lineText(cause)) +
             (cause["not_read"].asBool() ? "  (not read)\n" : "\n");
    }
  }
  const Json::Value& difference = report["difference"];
  if (difference.isNull()) return out + "the load of the tree logs the same\n";
  const Json::Value& refused = report["refused_by_device"];
  const std::string log = shown(difference["log"]);
  const std::string tree = shown(difference["tree"]);
  std::string reason = "the tree is not the device's";
  if (!refused.empty()) reason = "the device cannot read numbers that are read here";
  if (log.empty()) reason = "the log ends before the load does";
  out +=
      reason + "; the loads differ from line " + shown(difference["log_line"]) + " of the log on\n";
  for (const Json::Value& line : refused) out += "    " + lineText(line) + "\n";
  return out + paint.red("- " + (log.empty() ? "(nothing more)" : log)) + "\n" +
         paint.green("+ " + tree) + "\n";
}

}  // namespace

Outcome explainDeviceLog(const Options& options, const Paint& paint) {
  if (options.country.has_value() || !options.path_file.empty() || !options.operands.empty()) {
    throw std::runtime_error("--device-log has the country and the path file, and shows no names");
  }
  const Json::Value report = reportOn(options);
  const bool good = report["valid"].asBool() && !report.isMember("difference");
  return {good ? kGood : kFindings,
          options.format == "json" ? documentOf(report) : asText(report, paint),
          {}};
}
