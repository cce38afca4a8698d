// SPDX-License-Identifier: Apache-2.0
#include "tools/trace/device_log.h"

#include <algorithm>
#include <array>
#include <optional>
#include <stdexcept>

#include "include/tarnix_uwb_params_nfcc.h"
#include "loader/lib.h"
#include "tools/device/device_library.h"
#include "tools/text/text.h"
#include "tools/trace/load_trace.h"

namespace {

// How the messages begin that tell of the entry, the country and a path file: taken from the log of
// a load with known properties.
std::array<std::string, 3> learnBeginnings() {
  const std::string country = "?country";
  const std::string path_file = "?path file";
  setDeviceProperties(country, path_file);
  const LogCapture log;
  uint8_t buffer = 0;
  load_uwb_params_from_files(&buffer, sizeof(buffer));
  const auto beginningOf = [&](const std::string& value) {
    size_t line = 0;
    while (log.lines().at(line).text.find(value) == value.npos) ++line;
    const std::string& text = log.lines()[line].text;
    return text.substr(0, text.find(value));
  };
  return {beginningOf(libraryVersion()), beginningOf(country), beginningOf(path_file)};
}

// What precedes a message: "11-21 18:40:13.123  1234  1234 I tag: ". It is the same in all lines of
// a process but for the time and the priority.
class Prefix {
 public:
  explicit Prefix(const std::string& text) : text_(text) {
    for (const std::string& word : Split(text, " ")) {
      const bool is_time = word.find_first_not_of("0123456789.:+-") == word.npos &&
                           word.find_first_of(".:+-") < word.size() - 1;
      const bool is_priority = word == "I" || StartsWith(word, "I/") || StartsWith(word, "I(");
      if (is_priority && priority_ == text.npos) priority_ = is_time_.size();
      is_time_.insert(is_time_.end(), word.size(), is_time);
      is_time_.push_back(false);
    }
  }

  // The message of a line of the same process; nothing for another's.
  std::optional<LogLine> read(const std::string& line) const {
    if (line.size() < text_.size()) return std::nullopt;
    for (size_t i = 0; i < text_.size(); ++i) {
      const bool may_differ = i == priority_ || (is_time_[i] && line[i] >= '0' && line[i] <= '9');
      if (!may_differ && line[i] != text_[i]) return std::nullopt;
    }
    return LogLine{priority_ == text_.npos ? '?' : line[priority_], line.substr(text_.size())};
  }

 private:
  const std::string text_;
  std::vector<bool> is_time_;
  size_t priority_ = std::string::npos;
};

// Without what sets a terminal's colours.
std::string withoutColours(std::string line) {
  for (size_t at = 0; (at = line.find("\x1b[", at)) != line.npos;) {
    const size_t end = line.find_first_not_of("0123456789;", at + 2);
    if (end < line.size() && line[end] == 'm')
      line.erase(at, end + 1 - at);
    else
      at += 2;
  }
  return line;
}

// The lines of the log. In logcat's long format a header precedes each message: both in one line.
std::vector<std::string> messageLinesOf(const std::string& log) {
  std::vector<std::string> lines;
  std::string header;
  for (const std::string& text : linesOf(log)) {
    const std::string line = comparable(withoutColours(text));
    const bool is_header = StartsWith(line, "[ ") && line.back() == ']';
    if (line.empty()) header.clear();
    lines.push_back(is_header ? "" : header + line);
    if (is_header) header = line;
  }
  return lines;
}

// The path file that the property named, if the load tried others than the defaults.
std::string propertyOf(const std::vector<std::string>& path_files) {
  setDeviceProperties("", "");
  const std::vector<std::string> defaults = build_paths();
  const bool are_defaults = path_files.size() <= defaults.size() &&
                            std::equal(path_files.begin(), path_files.end(), defaults.begin());
  return are_defaults ? "" : path_files.front();
}

}  // namespace

LoggedLoad lastLoadIn(const std::string& log) {
  const auto [entry, country, path_file] = learnBeginnings();
  const std::vector<std::string> lines = messageLinesOf(log);
  size_t first = lines.size();
  for (size_t i = 0; i < lines.size(); ++i) {
    if (lines[i].find(entry) != log.npos) first = i;
  }
  if (first == lines.size()) throw std::runtime_error("the log has no load of the library");
  const Prefix prefix(lines[first].substr(0, lines[first].find(entry)));
  LoggedLoad load;
  std::vector<std::string> path_files;
  for (size_t i = first; i < lines.size(); ++i) {
    const std::optional<LogLine> message = prefix.read(lines[i]);
    // An empty line of the raw format is no message.
    if (!message.has_value() || message->text.empty()) continue;
    load.lines.push_back({i + 1, *message});
    const std::string& text = message->text;
    if (StartsWith(text, country)) load.country = text.substr(country.size());
    if (StartsWith(text, path_file)) path_files.push_back(text.substr(path_file.size()));
  }
  load.path_file = propertyOf(path_files);
  return load;
}

std::string comparable(const std::string& text) {
  const std::string escaped = printable(text);
  std::string_view line = escaped;
  while (android::base::ConsumeSuffix(&line, " ") || android::base::ConsumeSuffix(&line, "\\x0d")) {
  }
  return std::string(line);
}
