// SPDX-License-Identifier: Apache-2.0
#include <algorithm>
#include <utility>

#include "loader/calib_path.h"
#include "loader/lib.h"
#include "tools/device/files.h"
#include "tools/lint/checks.h"
#include "tools/text/text.h"

namespace {

size_t carriageReturnIn(const std::string& entry) {
  return EndsWith(entry, '\r') ? entry.size() - 1 : entry.npos;
}

// Where something begins that is a comment in other kinds of files.
size_t commentIn(const std::string& entry) {
  for (const char* mark : {"#", ";", "//"}) {
    const size_t at = entry.find(mark);
    if (at == 0 || (at != entry.npos && entry.find_last_of(kBlanks, at) == at - 1)) return at;
  }
  return entry.npos;
}

size_t blankAroundIn(const std::string& entry) {
  const size_t end = entry.find_last_not_of(kBlanks) + 1;
  if (afterBlanks(entry, 0) > 0 || entry.empty()) return 0;
  return end < entry.size() ? end : entry.npos;
}

size_t quoteIn(const std::string& entry) {
  return entry.find_first_of("\"'") == 0 ? 0 : entry.npos;
}

size_t placeholderLikeIn(const std::string& entry) {
  const bool has_placeholder = CalibPath::findCountryCodeComponent(entry) != entry.npos;
  return has_placeholder ? entry.npos : entry.find_first_of("<>{}$%");
}

size_t secondPlaceholderIn(const std::string& entry) {
  const size_t first = CalibPath::findCountryCodeComponent(entry);
  if (first == entry.npos) return first;
  const size_t second = CalibPath::findCountryCodeComponent(entry.substr(first + 1));
  return second == entry.npos ? second : first + 1 + second;
}

// Why an entry names no file, where its text explains it: the first row that has a place in it.
struct Reason {
  Rule rule;
  size_t (*place_in)(const std::string& entry);
  std::string (*message)(const std::string& entry, size_t at);
};

constexpr Reason kReasons[] = {
    {Rule::PathCr, carriageReturnIn,
     [](const std::string&, size_t) -> std::string {
       return "the carriage return is part of the path: end all lines with a line feed alone";
     }},
    {Rule::PathComment, commentIn,
     [](const std::string& entry, size_t at) {
       return std::string("path files have no comments, so the whole line is a path: remove the ") +
              (at == afterBlanks(entry, 0) ? "line" : "comment");
     }},
    {Rule::PathBlank, blankAroundIn,
     [](const std::string& entry, size_t) -> std::string {
       return entry.empty() ? "an empty line is a path too: remove the line"
                            : "the blank is part of the path: remove it";
     }},
    {Rule::PathBlank, quoteIn,
     [](const std::string&, size_t) -> std::string {
       return "the quotes are part of the path: remove them";
     }},
    {Rule::Placeholder, placeholderLikeIn,
     [](const std::string& entry, size_t at) {
       const size_t close = entry.find_first_of(">}", at);
       const size_t end = close == entry.npos ? entry.find_first_of("/.", at) : close + 1;
       return "'" + entry.substr(at, end - at) +
              "' is no placeholder but part of the path: write <country>";
     }},
    {Rule::PlaceholderTwice, secondPlaceholderIn,
     [](const std::string&, size_t) -> std::string {
       return "only the first <country> is replaced, this one is part of the path: write it once";
     }},
};

// A path that gives no text: by FileKind, what is told of it.
struct Trouble {
  Rule rule;
  const char* advice;
};

constexpr Trouble kTroubles[] = {
    {Rule::FileUnreadable, ""},
    {Rule::FileEmpty, ": fill it or remove it"},
    {Rule::FileDirectory, ": it is read as an empty file; name a file"},
    {Rule::FileMissing, ": create it, or remove this line"},
    {Rule::FileSpecial, ": it is not opened here; put a regular file in its place"},
    {Rule::FileUnreadable, ": put a file there that can be read"},
};

Finding trouble(const TracedPath& path, const Place& place, const std::string& explains,
                const std::string& after = {}) {
  const Trouble& trouble = kTroubles[static_cast<size_t>(path.kind)];
  const bool special = path.kind == FileKind::Special;
  return {trouble.rule,
          place,
          path.problem + trouble.advice + (special ? "" : after),
          {explains, special ? kOutcome : ""},
          path.path};
}

// What is wrong with the last path that is tried for the entry.
Finding troubleOf(const TracedPathFile& file, const TracedEntry& entry) {
  const TracedPath& last = entry.last();
  for (const Reason& reason : kReasons) {
    const size_t at = reason.place_in(entry.text);
    if (at == entry.text.npos || last.kind != FileKind::Missing) continue;
    return {reason.rule,
            placeIn(file.path, entry, at),
            reason.message(entry.text, at),
            {kAnyKey},
            last.path,
            {},
            reason.rule == Rule::PathCr};
  }
  Finding finding = trouble(last, placeIn(file.path, entry), kAnyKey);
  if (last.kind == FileKind::Missing && entry.has_placeholder) {
    finding.message =
        last.problem + ", which is read for a country without a file of its own: create it";
  }
  return finding;
}

// The country's file, where the default's was tried after it.
void checkFallback(const TracedPathFile& file, const TracedEntry& entry, Findings& findings) {
  const Place place = placeIn(file.path, entry);
  const std::string& instead = entry.fallback->path;
  if (entry.own.kind != FileKind::Missing) {
    const std::string after = entry.fellBack() ? "; " + instead + " is read instead" : "";
    findings.add(trouble(entry.own, place, "", after));
  } else if (entry.fellBack()) {
    findings.add({Rule::CountryFallback,
                  place,
                  entry.own.problem + "; " + instead + " is read instead",
                  {},
                  instead});
  }
}

void checkEntry(const TracedPathFile& file, const TracedEntry& entry, Findings& findings) {
  // Its path is that of no file, for a reason that is told already.
  if (entry.number == 1 && hasByteOrderMark(entry.text)) return;
  if (entry.fallback.has_value()) checkFallback(file, entry, findings);
  if (entry.last().kind != FileKind::Text) findings.add(troubleOf(file, entry));
}

void checkPathFile(const TracedPathFile& file, Findings& findings) {
  if (file.kind != FileKind::Missing && file.kind != FileKind::Text) {
    findings.add(trouble(file, {file.path}, kAnyKey));
  }
  if (!checkText(file.path, file.content, kAnyKey, findings)) return;
  for (const TracedEntry& entry : file.entries) checkEntry(file, entry, findings);
}

// The same for all names of a file.
std::pair<dev_t, ino_t> identityOf(const std::string& path) {
  struct stat none {};
  const struct stat status = statusOf(path).value_or(none);
  return {status.st_dev, status.st_ino};
}

void checkHidden(const LoadTrace& trace, Findings& findings) {
  const std::vector<std::string> paths = build_paths();
  const TracedPathFile& deciding = trace.deciding();
  for (size_t i = trace.path_files.size(); i < paths.size(); ++i) {
    const bool exists = tracePath(paths[i]).kind != FileKind::Missing;
    if (!exists || identityOf(paths[i]) == identityOf(deciding.path)) continue;
    findings.add({Rule::PathFileHides,
                  {paths[i]},
                  "never read, because " + deciding.path + " decides: remove one of them",
                  {},
                  deciding.path});
  }
}

void checkExistence(const LoadTrace& trace, Findings& findings) {
  std::vector<std::string> missing;
  for (const TracedPathFile& file : trace.path_files) {
    if (file.kind != FileKind::Missing) return;
    missing.push_back(file.path);
  }
  findings.add({Rule::PathFileMissing,
                {missing.front()},
                "there is no path file: create " + Join(missing, " or "),
                {kAnyKey}});
}

}  // namespace

void checkPathFiles(const LoadTrace& trace, Findings& findings) {
  for (const TracedPathFile& file : trace.path_files) checkPathFile(file, findings);
  checkExistence(trace, findings);
  if (trace.decided) checkHidden(trace, findings);
}
