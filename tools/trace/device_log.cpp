// SPDX-License-Identifier: Apache-2.0
#include "tools/trace/device_log.h"

#include <algorithm>
#include <optional>
#include <stdexcept>

#include "include/tarnix_uwb_params_nfcc.h"
#include "loader/lib.h"
#include "tools/device/device_library.h"
#include "tools/text/text.h"
#include "tools/trace/load_trace.h"

namespace {

// How the messages begin that tell what a load depends on.
struct Beginnings {
  std::string entry;
  std::string country;
  std::string path_file;
};

// Taken from the log of a load with known properties.
Beginnings learnBeginnings() {
  const std::string country = "?country";
  const std::string path_file = "?path file";
  setDeviceProperties(country, path_file);
  const LogCapture log;
  uint8_t buffer = 0;
  load_uwb_params_from_files(&buffer, sizeof(buffer));
  const auto beginningOf = [&](const std::string& value) {
    for (const LogLine& line : log.lines()) {
      const size_t at = line.text.find(value);
      if (at != line.text.npos) return line.text.substr(0, at);
    }
    throw std::logic_error("the library does not log " + value);
  };
  return {beginningOf(libraryVersion()), beginningOf(country), beginningOf(path_file)};
}

// What precedes a message: "11-21 18:40:13.123  1234  1234 I tag: ". It is the same in all lines of
// a process but for the time and the priority.
class Prefix {
 public:
  explicit Prefix(const std::string& text) : text_(text), is_time_(text.size(), false) {
    for (size_t begin = 0; begin < text.size();) {
      const size_t end = std::min(text.find(' ', begin), text.size());
      const std::string word = text.substr(begin, end - begin);
      const bool is_time = word.find_first_not_of("0123456789.:+-") == word.npos &&
                           word.find_first_of(".:+-") < word.size() - 1;
      std::fill_n(is_time_.begin() + static_cast<ptrdiff_t>(begin), word.size(), is_time);
      const bool is_priority =
          word == "I" || word.substr(0, 2) == "I/" || word.substr(0, 2) == "I(";
      if (is_priority && priority_ == text.npos) priority_ = begin;
      begin = end + 1;
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

// The lines of the log. In logcat's long format a header precedes each message: both in one line.
std::vector<std::string> messageLinesOf(const std::string& log) {
  std::vector<std::string> lines;
  std::string header;
  for (const std::string& text : linesOf(log)) {
    const std::string line = comparable(text);
    const bool is_header = line.substr(0, 2) == "[ " && line.back() == ']';
    lines.push_back(is_header || line.empty() ? "" : header + line);
    if (is_header) header = line + " ";
    if (line.empty()) header.clear();
  }
  return lines;
}

// The rest of the message after this beginning; nothing when it begins otherwise.
std::optional<std::string> after(const std::string& beginning, const LogLine& message) {
  if (message.text.compare(0, beginning.size(), beginning) != 0) return std::nullopt;
  return message.text.substr(beginning.size());
}

// The path file that the property named, if the load tried others than the defaults.
std::string propertyOf(const std::vector<std::string>& path_files) {
  setDeviceProperties("", "");
  const std::vector<std::string> defaults = build_paths();
  const size_t count = std::min(path_files.size(), defaults.size());
  const std::vector<std::string> first(defaults.begin(),
                                       defaults.begin() + static_cast<ptrdiff_t>(count));
  return path_files == first ? "" : path_files.front();
}

}  // namespace

LoggedLoad lastLoadIn(const std::string& log) {
  const Beginnings beginnings = learnBeginnings();
  const std::vector<std::string> lines = messageLinesOf(log);
  const auto entry = std::find_if(lines.rbegin(), lines.rend(), [&](const std::string& line) {
    return line.find(beginnings.entry) != line.npos;
  });
  if (entry == lines.rend()) throw std::runtime_error("the log has no load of the library");
  const Prefix prefix(entry->substr(0, entry->find(beginnings.entry)));
  LoggedLoad load;
  std::vector<std::string> path_files;
  for (auto i = static_cast<size_t>(lines.rend() - entry) - 1; i < lines.size(); ++i) {
    const std::optional<LogLine> message = prefix.read(lines[i]);
    if (!message.has_value()) continue;
    load.lines.push_back({i + 1, *message});
    if (const auto country = after(beginnings.country, *message)) load.country = *country;
    if (const auto path = after(beginnings.path_file, *message)) path_files.push_back(*path);
  }
  load.path_file = propertyOf(path_files);
  return load;
}

std::string comparable(const std::string& text) {
  const std::string escaped_return = "\\x0d";
  std::string line = printable(text);
  line.erase(line.find_last_not_of(' ') + 1);
  const size_t end = line.rfind(escaped_return);
  const bool at_end = end != line.npos && end + escaped_return.size() == line.size();
  return at_end ? comparable(line.substr(0, end)) : line;
}
