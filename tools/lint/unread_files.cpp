// SPDX-License-Identifier: Apache-2.0
#include <algorithm>

#include "loader/calib_path.h"
#include "tools/device/files.h"
#include "tools/lint/checks.h"
#include "tools/text/nearest.h"
#include "tools/trace/countries.h"

namespace {

constexpr char kBlanks[] = " \t\v\f\r";

// Blanks around a path are a finding of their own.
std::string withoutBlanksAround(const std::string& path) {
  const size_t begin = std::min(path.find_first_not_of(kBlanks), path.size());
  return path.substr(begin, path.find_last_not_of(kBlanks) + 1 - begin);
}

// What parts a name from the wanted one; empty when they are not alike, or are the same.
std::string likeness(const std::string& name, const std::string& wanted) {
  if (name == wanted) return {};
  const std::string would_be = "; a load looks for '" + wanted + "' here";
  if (CalibPath::lowercase(name) == CalibPath::lowercase(wanted)) {
    return would_be + ": capitals make another name";
  }
  if (name.compare(0, wanted.size(), wanted) == 0) return would_be + ": it may be an old copy";
  return editDistance(name, wanted, 1) <= 1 ? would_be + ": is it misspelt?" : "";
}

class UnreadFiles {
 public:
  UnreadFiles(const std::vector<LoadTrace>& traces, Findings& findings) : findings_(findings) {
    for (const LoadTrace& trace : traces) {
      for (const TracedPathFile& file : trace.path_files) collect(file);
    }
  }

  void check() {
    for (const std::string& entry : entries_) checkCountryNames(entry);
    for (const std::string& path : asked_) checkSiblings(path);
  }

 private:
  void collect(const TracedPathFile& file) {
    asked_.insert(file.path);
    for (const TracedEntry& entry : file.entries) {
      asked_.insert(withoutBlanksAround(entry.own.path));
      if (entry.fallback.has_value()) asked_.insert(withoutBlanksAround(entry.fallback->path));
      if (entry.has_placeholder) entries_.insert(withoutBlanksAround(entry.text));
    }
  }

  // Names in the placeholder's place that no country code makes. Folders of countries that have no
  // file of the wanted name may have one of a similar name.
  void checkCountryNames(const std::string& entry) {
    const PlaceholderPart part = placeholderPartOf(entry);
    for (const std::string& name : names(part.directory)) {
      const std::string code = codeIn(name, part);
      const std::string country = CalibPath::lowercase(code.substr(0, 2));
      if (!isCountryCode(country)) continue;
      const std::string wanted = part.before + country + part.after;
      if (code == country) {
        asked_.insert(pathOf(entry, code));
      } else if (name.compare(0, wanted.size(), wanted) == 0 &&
                 !std::isalnum(name[wanted.size()])) {
        add(part.directory + name,
            "; a load looks for '" + wanted + "' here: it may be an old copy");
      } else if (code.size() == 2) {
        add(part.directory + name,
            ": country codes are lowered, so that a load looks for '" + wanted + "' here");
      }
    }
  }

  void checkSiblings(const std::string& path) {
    const size_t slash = path.rfind('/');
    const std::string directory = slash == path.npos ? "" : path.substr(0, slash + 1);
    const std::string wanted = path.substr(directory.size());
    if (wanted.empty()) return;
    for (const std::string& name : names(directory)) {
      const std::string reason = likeness(name, wanted);
      if (reason.empty() || asked_.count(directory + name) > 0) continue;
      add(directory + name, reason);
    }
  }

  void add(const std::string& path, const std::string& reason) {
    if (told_.insert(path).second) {
      findings_.add(Rule::FileUnread, {path, 1, 1, {}}, "no load reads this" + reason);
    }
  }

  const std::vector<std::string>& names(const std::string& directory) {
    const auto [at, is_new] = names_.try_emplace(directory);
    if (is_new) at->second = namesIn(directory.empty() ? "." : directory);
    return at->second;
  }

  Findings& findings_;
  std::set<std::string> asked_;
  std::set<std::string> entries_;  // Those with a placeholder.
  std::set<std::string> told_;
  std::map<std::string, std::vector<std::string>> names_;
};

}  // namespace

void checkUnreadFiles(const std::vector<LoadTrace>& traces, Findings& findings) {
  UnreadFiles(traces, findings).check();
}
