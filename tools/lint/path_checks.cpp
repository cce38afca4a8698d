// SPDX-License-Identifier: Apache-2.0
#include <algorithm>

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

using Id = std::optional<Findings::Id>;

// Why the path of an entry names no file, where the path itself explains it.
Id explainPath(const TracedPathFile& file, const TracedEntry& entry, Findings& findings) {
  const std::string& text = entry.text;
  const auto add = [&](Rule rule, size_t column, const std::string& message) {
    return findings.add(rule, entryPlace(file, entry, column), message, entry.own.path);
  };
  const auto ends_in_return = [](const TracedEntry& e) {
    return !e.text.empty() && e.text.back() == '\r';
  };
  if (ends_in_return(entry)) {
    // A file has them at all lines: it is told once.
    const auto first = std::find_if(file.entries.begin(), file.entries.end(), ends_in_return);
    return findings.add(
        Rule::PathCr, entryPlace(file, *first, first->text.size()),
        "the carriage return is part of the path: end all lines with a line feed alone");
  }
  if (const size_t comment = commentIn(text); comment != text.npos) {
    return add(Rule::PathComment, comment + 1,
               "path files have no comments: the whole line is a path; remove it");
  }
  const size_t begin = text.find_first_not_of(kBlanks);
  const size_t end = text.find_last_not_of(kBlanks);
  if (begin == 0 && end == text.size() - 1) return std::nullopt;
  return add(Rule::PathBlank, begin == 0 ? end + 2 : 1,
             begin == text.npos ? "an empty line is an entry too: remove it"
                                : "blanks are part of the path: remove them");
}

Id explainPlaceholder(const TracedPathFile& file, const TracedEntry& entry, Findings& findings) {
  if (entry.has_placeholder) return std::nullopt;
  const std::string lowered = CalibPath::lowercase(entry.text);
  if (hasPlaceholder(lowered)) {
    const size_t at = CalibPath::findCountryCodeComponent(lowered);
    return findings.add(Rule::PlaceholderCapitals, entryPlace(file, entry, at + 1),
                        "in capitals this is part of the path: write <country>");
  }
  const size_t mark = entry.text.find_first_of("<>{}$%");
  if (mark == entry.text.npos) return std::nullopt;
  return findings.add(Rule::PlaceholderMisspelt, entryPlace(file, entry, mark + 1),
                      "the only placeholder is <country>: this is part of the path");
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

Rule ruleFor(FileKind readability) {
  switch (readability) {
    case FileKind::Text:
    case FileKind::Empty:
      return Rule::FileEmpty;
    case FileKind::Directory:
      return Rule::FileDirectory;
    case FileKind::Missing:
      return Rule::FileMissing;
    case FileKind::Special:
      return Rule::FileSpecial;
    case FileKind::Unreadable:
      return Rule::FileUnreadable;
  }
  return Rule::FileUnreadable;
}

constexpr char kReadAsEmpty[] = ": it is read as an empty file";

Id checkPath(const TracedPath& path, const Place& place, const std::string& after,
             Findings& findings) {
  if (path.kind == FileKind::Text) return std::nullopt;
  const bool directory = path.kind == FileKind::Directory;
  const Findings::Id finding =
      findings.add(ruleFor(path.kind), place,
                   problemOf(path) + (directory ? kReadAsEmpty : "") + after, path.path);
  if (path.kind == FileKind::Special) findings.blame(kOutcome, finding);
  return finding;
}

// The country's file, where the default's was tried after it.
void checkFallback(const TracedPathFile& file, const TracedEntry& entry, Findings& findings) {
  if (!entry.fallback.has_value()) return;
  const std::string after = ": " + entry.fallback->path + " is read instead";
  if (entry.own.kind != FileKind::Missing) {
    const bool unopened = entry.own.kind == FileKind::Special;
    checkPath(entry.own, entryPlace(file, entry), entry.fellBack() && !unopened ? after : "",
              findings);
  } else if (entry.fellBack()) {
    findings.add(Rule::CountryFallback, entryPlace(file, entry),
                 "there is no file of the country's own" + after, entry.fallback->path);
  }
}

Id checkMissing(const TracedPathFile& file, const TracedEntry& entry, Findings& findings) {
  if (Id finding = explainPath(file, entry, findings)) return finding;
  if (Id finding = explainPlaceholder(file, entry, findings)) return finding;
  const bool neither = entry.has_placeholder && entry.own.kind == FileKind::Missing;
  return findings.add(
      Rule::FileMissing, entryPlace(file, entry),
      "there is no " + entry.last().path + (neither ? ", and no file of the country's own" : ""),
      entry.last().path);
}

void checkEntry(const TracedPathFile& file, const TracedEntry& entry, Findings& findings) {
  // Its path is that of no file, for a reason that is told already.
  if (entry.number == 1 && hasByteOrderMark(entry.text)) return;
  checkSecondPlaceholder(file, entry, findings);
  checkFallback(file, entry, findings);
  const TracedPath& last = entry.last();
  const Id finding = last.kind == FileKind::Missing
                         ? checkMissing(file, entry, findings)
                         : checkPath(last, entryPlace(file, entry), "", findings);
  if (finding.has_value()) findings.blame(kAnyKey, *finding);
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
    const bool exists = tracePath(paths[i]).kind != FileKind::Missing;
    if (!exists || isSameFile(paths[i], deciding)) continue;
    findings.add(Rule::PathFileHides, place,
                 "this path file decides: " + paths[i] + " is never read", paths[i]);
  }
}

void checkExistence(const LoadTrace& trace, Findings& findings) {
  std::vector<std::string> missing;
  for (const TracedPathFile& file : trace.path_files) {
    if (file.kind != FileKind::Missing) return;
    missing.push_back(file.path);
  }
  findings.blame(kAnyKey,
                 findings.add(Rule::PathFileMissing, {missing.front(), 1, 1, {}},
                              "there is no path file: neither " + joined(missing, " nor ")));
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

void checkBytes(const std::string& path, const std::string& content, Findings& findings) {
  size_t count = 0;
  size_t first = content.npos;
  for (size_t at = hasByteOrderMark(content) ? 3 : 0; at < content.size();) {
    const size_t length = characterLength(content, at);
    if (!isText(content, at, length)) {
      ++count;
      first = std::min(first, at);
    }
    at += length == 0 ? 1 : length;
  }
  if (count == 0) return;
  const size_t begin = first == 0 ? 0 : content.rfind('\n', first - 1) + 1;
  const auto before = static_cast<size_t>(
      std::count(content.begin(), content.begin() + static_cast<ptrdiff_t>(begin), '\n'));
  findings.add(Rule::NotText, {path, before + 1, first - begin + 1, lineAround(content, begin)},
               counted(count, "byte") + (count == 1 ? " is" : " are") +
                   " not UTF-8 text (the first is here): save the file as UTF-8");
}

std::string joinedLines(const TracedPathFile& file) {
  std::string content;
  for (const TracedEntry& entry : file.entries) content += entry.text + "\n";
  return content;
}

void checkPathFile(const TracedPathFile& file, Findings& findings) {
  if (file.kind != FileKind::Missing) {
    const Id finding = checkPath(file, {file.path, 1, 1, {}}, "", findings);
    if (finding.has_value()) findings.blame(kAnyKey, *finding);
  }
  checkText(file.path, joinedLines(file), kAnyKey, findings);
  for (const TracedEntry& entry : file.entries) checkEntry(file, entry, findings);
}

}  // namespace

bool hasByteOrderMark(const std::string& text) {
  return text.compare(0, 3, "\xEF\xBB\xBF") == 0;
}

void checkText(const std::string& path, const std::string& content, const std::string& first_lost,
               Findings& findings) {
  if (hasByteOrderMark(content)) {
    const Findings::Id finding = findings.add(
        Rule::ByteOrderMark, {path, 1, 1, lineAround(content, 0)},
        "the file starts with a byte order mark, which is part of its first line: save it without");
    findings.blame(first_lost, finding);
  }
  checkBytes(path, content, findings);
}

void checkPathFiles(const LoadTrace& trace, Findings& findings) {
  for (const TracedPathFile& file : trace.path_files) checkPathFile(file, findings);
  checkExistence(trace, findings);
  if (trace.decided) checkHidden(trace, findings);
}
