// SPDX-License-Identifier: Apache-2.0
#include <algorithm>
#include <cctype>

#include "loader/calib_path.h"
#include "tools/device/files.h"
#include "tools/lint/checks.h"
#include "tools/text/text.h"
#include "tools/trace/countries.h"

namespace {

bool isSeparator(uint8_t c) {
  return std::isalnum(c) == 0;
}

// What to do with a file that may be meant to have the wanted name; empty when it does not seem so.
std::string adviceFor(const std::string& directory, const std::string& name,
                      const std::string& wanted) {
  if (name == wanted) return {};
  if (CalibPath::lowercase(name) == CalibPath::lowercase(wanted))
    return "rename it, as capitals count";
  if (StartsWith(name, wanted) && isSeparator(static_cast<uint8_t>(name[wanted.size()]))) {
    const bool is_alone = tracePath(directory + wanted).kind == FileKind::Missing;
    return is_alone ? "rename it" : "remove it if it is an old copy";
  }
  return editDistance(name, wanted, 1) <= 1 ? "rename it if it is misspelt" : "";
}

class UnreadFiles {
 public:
  UnreadFiles(const std::vector<LoadTrace>& traces, Findings& findings) : findings_(findings) {
    for (const LoadTrace& trace : traces) {
      for (const TracedPathFile& file : trace.path_files) collect(file);
    }
  }

  void check() {
    for (const std::string& entry : entries_) checkCountries(entry);
    for (const std::string& path : asked_) checkSiblings(path);
  }

 private:
  // Blanks around a path are a finding of their own.
  void collect(const TracedPathFile& file) {
    asked_.insert(file.path);
    for (const TracedEntry& entry : file.entries) {
      asked_.insert(android::base::Trim(entry.own.path));
      asked_.insert(android::base::Trim(entry.last().path));
      if (entry.has_placeholder) entries_.insert(android::base::Trim(entry.text));
    }
  }

  // Names in the placeholder's place that no country code makes. Folders of countries that have no
  // file of the wanted name may have one of a similar name.
  void checkCountries(const std::string& entry) {
    const PlaceholderPart part = placeholderPartOf(entry);
    for (const std::string& code : not_taken_) asked_.insert(pathOf(entry, code));
    for (const std::string& name : namesIn(part.directory)) {
      if (!StartsWith(name, part.before)) continue;
      const std::string code = codeIn(name, part);
      // More may follow what follows the placeholder.
      const std::string lowered =
          CalibPath::lowercase(code.empty() ? name.substr(part.before.size()) : code);
      const std::string country(lowered.begin(),
                                std::find_if(lowered.begin(), lowered.end(), isSeparator));
      const bool is_word =
          country == CalibPath::kDefaultCountry || country == CalibPath::kUnknownCountry;
      if (!is_word && !isCountryCode(country)) continue;
      if (code == country) {
        asked_.insert(pathOf(entry, code));
      } else if (code != lowered || asked_.count(pathOf(entry, code)) == 0) {
        checkName(part.directory, name, part.before + country + part.after);
      }
    }
  }

  void checkSiblings(const std::string& path) {
    const std::string directory = path.substr(0, path.rfind('/') + 1);
    const std::string wanted = path.substr(directory.size());
    if (wanted.empty()) return;
    for (const std::string& name : namesIn(directory)) checkName(directory, name, wanted);
  }

  void checkName(const std::string& directory, const std::string& name, const std::string& wanted) {
    const std::string path = directory + name;
    const std::string advice = adviceFor(directory, name, wanted);
    if (advice.empty() || asked_.count(path) > 0 || !told_.insert(path).second) return;
    findings_.add({Rule::FileUnread,
                   {path},
                   "no load reads '" + name + "', but one looks for '" + wanted + "': " + advice});
  }

  Findings& findings_;
  // Told of with the loads.
  const std::vector<std::string> not_taken_ = countriesToLoad({}).not_taken;
  std::set<std::string> asked_;
  std::set<std::string> entries_;  // Those with a placeholder.
  std::set<std::string> told_;
};

}  // namespace

void checkUnreadFiles(const std::vector<LoadTrace>& traces, Findings& findings) {
  UnreadFiles(traces, findings).check();
}
