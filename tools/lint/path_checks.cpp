// SPDX-License-Identifier: Apache-2.0
#include <algorithm>

#include "loader/android_properties.h"
#include "loader/calib_path.h"
#include "loader/lib.h"
#include "tools/device/files.h"
#include "tools/lint/checks.h"
#include "tools/text/text.h"

namespace {

constexpr char kBlanks[] = " \t\v\f";

Place entryPlace(const TracedPathFile& file, const TracedEntry& entry, size_t column = 1) {
  return {file.path, entry.number, column, entry.text};
}

bool hasPlaceholder(const std::string& path) {
  return CalibPath::findCountryCodeComponent(path) != path.npos;
}

// Where something begins that is a comment in other kinds of files.
size_t commentIn(const std::string& entry) {
  for (const char* mark : {"#", ";", "//"}) {
    const size_t at = entry.find(mark);
    if (at == 0 || (at != entry.npos && std::string(kBlanks).find(entry[at - 1]) != entry.npos)) {
      return at;
    }
  }
  return entry.npos;
}

// Reports why the path of an entry names no file. False when nothing in the path explains it.
bool explainPath(const TracedPathFile& file, const TracedEntry& entry, Findings& findings) {
  const std::string& text = entry.text;
  if (!text.empty() && text.back() == '\r') {
    findings.add(Rule::PathCr, entryPlace(file, entry, text.size()),
                 "the carriage return is part of the path: no such file");
    return true;
  }
  if (const size_t comment = commentIn(text); comment != text.npos) {
    findings.add(
        Rule::PathComment, entryPlace(file, entry, comment + 1),
        "path files have no comments: the whole line is a path, and there is no such file");
    return true;
  }
  const size_t begin = text.find_first_not_of(kBlanks);
  const size_t end = text.find_last_not_of(kBlanks);
  if (begin == 0 && end == text.size() - 1) return false;
  findings.add(Rule::PathBlank, entryPlace(file, entry, begin == 0 ? end + 2 : 1),
               begin == text.npos ? "an empty line is an entry too: no such file"
                                  : "blanks are part of the path: no such file");
  return true;
}

bool explainPlaceholder(const TracedPathFile& file, const TracedEntry& entry, Findings& findings) {
  if (entry.has_placeholder) return false;
  const std::string lowered = CalibPath::lowercase(entry.text);
  if (hasPlaceholder(lowered)) {
    const size_t at = CalibPath::findCountryCodeComponent(lowered);
    findings.add(Rule::PlaceholderCapitals, entryPlace(file, entry, at + 1),
                 "in capitals this is no placeholder: it is part of the path");
    return true;
  }
  const size_t mark = entry.text.find_first_of("<>{}$%");
  if (mark == entry.text.npos) return false;
  findings.add(Rule::PlaceholderMisspelt, entryPlace(file, entry, mark + 1),
               "the only placeholder is <country>: this is part of the path");
  return true;
}

void checkSecondPlaceholder(const TracedPathFile& file, const TracedEntry& entry,
                            Findings& findings) {
  if (!entry.has_placeholder) return;
  const size_t first = CalibPath::findCountryCodeComponent(entry.text);
  const size_t second = CalibPath::findCountryCodeComponent(entry.text.substr(first + 1));
  if (second == entry.text.npos) return;
  findings.add(Rule::PlaceholderTwice, entryPlace(file, entry, first + second + 2),
               "only the first placeholder is replaced: this one is part of the path");
}

void checkStatus(const FileStatus& status, const std::string& path, const Place& place,
                 Findings& findings) {
  switch (status.kind) {
    case FileKind::Text:
      return;
    case FileKind::Empty:
      findings.add(Rule::FileEmpty, place, path + " is empty");
      return;
    case FileKind::Missing:
      findings.add(Rule::FileMissing, place, "there is no " + path);
      return;
    case FileKind::Directory:
      findings.add(Rule::FileDirectory, place,
                   path + " is a directory: it is read as an empty file");
      return;
    case FileKind::Unreadable:
      findings.add(Rule::FileUnreadable, place, "cannot read " + path + ": " + status.reason);
      return;
  }
}

std::string pathsTried(const TracedEntry& entry) {
  return entry.path == entry.last_path ? entry.path : entry.path + " and no " + entry.last_path;
}

void checkEntry(const TracedPathFile& file, const TracedEntry& entry, Findings& findings) {
  checkSecondPlaceholder(file, entry, findings);
  if (entry.fell_back) {
    findings.add(Rule::CountryFallback, entryPlace(file, entry),
                 "there is no " + entry.path + ": " + entry.last_path + " is read instead");
  }
  if (!entry.file.has_value() &&
      (explainPath(file, entry, findings) || explainPlaceholder(file, entry, findings))) {
    return;
  }
  const bool missing = entry.status.kind == FileKind::Missing;
  checkStatus(entry.status, missing ? pathsTried(entry) : entry.last_path, entryPlace(file, entry),
              findings);
}

bool isSameFile(const std::string& a, const std::string& b) {
  const std::optional<struct stat> first = statusOf(a);
  const std::optional<struct stat> second = statusOf(b);
  return first.has_value() && second.has_value() && first->st_dev == second->st_dev &&
         first->st_ino == second->st_ino;
}

void checkHidden(const LoadTrace& trace, Findings& findings) {
  const std::vector<std::string> paths = build_paths();
  const std::string& deciding = trace.deciding().path;
  const Place place{deciding, 1, 1, trace.deciding().entries.front().text};
  for (size_t i = trace.path_files.size(); i < paths.size(); ++i) {
    const bool exists = fileStatus(paths[i]).kind != FileKind::Missing;
    if (!exists || isSameFile(paths[i], deciding)) continue;
    findings.add(Rule::PathFileHides, place,
                 paths[i] + " is never read: this path file comes first");
  }
}

void checkExistence(const LoadTrace& trace, Findings& findings) {
  const std::string asked_for = AndroidProperties::getCalibPathProp().value_or("");
  std::vector<std::string> missing;
  for (const TracedPathFile& file : trace.path_files) {
    if (file.status.kind == FileKind::Missing) missing.push_back(file.path);
  }
  if (missing.size() == trace.path_files.size()) {
    findings.add(Rule::PathFileMissing, {missing.front(), 1, 1, {}},
                 "there is no path file: neither " + joined(missing, " nor "));
  } else if (!missing.empty() && missing.front() == asked_for) {
    findings.add(Rule::PathFileMissing, {asked_for, 1, 1, {}},
                 "the path file that the property names does not exist");
  }
}

// Text is printable characters in UTF-8, tabs and line ends.
bool isText(const std::string& content, size_t at, size_t length) {
  const auto byte = static_cast<uint8_t>(content[at]);
  if (length == 0) return false;
  return !isControl(byte) || byte == '\t' || byte == '\n' || byte == '\r';
}

std::string lineAround(const std::string& content, size_t begin) {
  return content.substr(begin, content.find('\n', begin) - begin);
}

// A byte order mark is valid UTF-8, but here it becomes part of the first key.
size_t firstNonText(const std::string& content, size_t& count) {
  const bool marked = content.compare(0, 3, "\xEF\xBB\xBF") == 0;
  size_t first = marked ? 0 : content.npos;
  count = marked ? 3 : 0;
  for (size_t at = 0; at < content.size();) {
    const size_t length = characterLength(content, at);
    if (!isText(content, at, length)) {
      ++count;
      if (first == content.npos) first = at;
    }
    at += length == 0 ? 1 : length;
  }
  return first;
}

void checkText(const std::string& path, const std::string& content, Findings& findings) {
  size_t count = 0;
  const size_t first = firstNonText(content, count);
  if (first == content.npos) return;
  const size_t newline = first == 0 ? content.npos : content.rfind('\n', first - 1);
  const size_t begin = newline == content.npos ? 0 : newline + 1;
  const auto before = static_cast<size_t>(
      std::count(content.begin(), content.begin() + static_cast<ptrdiff_t>(begin), '\n'));
  findings.add(Rule::NotText, {path, before + 1, first - begin + 1, lineAround(content, begin)},
               counted(count, "byte") + " of the file " + (count == 1 ? "is" : "are") +
                   " no text, the first here");
}

std::string joinedLines(const TracedPathFile& file) {
  std::string content;
  for (const TracedEntry& entry : file.entries) content += entry.text + "\n";
  return content;
}

void checkPathFile(const TracedPathFile& file, Findings& findings) {
  const bool missing = file.status.kind == FileKind::Missing;
  if (!missing) checkStatus(file.status, file.path, {file.path, 1, 1, {}}, findings);
  checkText(file.path, joinedLines(file), findings);
  for (const TracedEntry& entry : file.entries) checkEntry(file, entry, findings);
}

}  // namespace

void checkPathFiles(const LoadTrace& trace, Findings& findings) {
  for (const TracedPathFile& file : trace.path_files) checkPathFile(file, findings);
  for (const TracedFile& file : trace.files) checkText(file.path, file.content, findings);
  checkExistence(trace, findings);
  if (trace.decided) checkHidden(trace, findings);
}
