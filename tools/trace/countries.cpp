// SPDX-License-Identifier: Apache-2.0
#include "tools/trace/countries.h"

#include <algorithm>
#include <set>
#include <stdexcept>

#include "loader/lib.h"
#include "loader/path_file.h"
#include "loader/text_file.h"
#include "tools/device/files.h"
#include "tools/text/text.h"

namespace {

void addNamesOf(const std::string& entry, std::set<std::string>& names,
                std::vector<TracedPath>& unlisted) {
  if (CalibPath::findCountryCodeComponent(entry) == entry.npos) return;
  const PlaceholderPart part = placeholderPartOf(entry);
  if (hidesNames(part.directory)) {
    const std::string problem = "cannot list " + part.directory + ": Permission denied, so its " +
                                "countries are unknown: name them with --countries";
    unlisted.push_back({part.directory, FileKind::Unreadable, problem});
  }
  for (const std::string& name : namesIn(part.directory)) {
    const std::string code = codeIn(name, part);
    // A code in capitals is lowered before it comes here, so only some names are ever looked for.
    if (code.empty() || code.find('.') != code.npos || CalibPath::lowercase(code) != code) continue;
    const FileKind kind = tracePath(pathOf(entry, code)).kind;
    // Beside the folders of countries there may be files of any name.
    const bool is_usable = kind != FileKind::Unreadable || isCountryCode(code);
    if (kind != FileKind::Missing && is_usable) names.insert(code);
  }
}

// What stands in the placeholder's place in the names of files.
Countries countriesOfTree() {
  std::set<std::string> names;
  Countries countries;
  for (const std::string& path : build_paths()) {
    const std::string content = read_text_file(path).value_or("");
    std::string_view rest = content;
    for (std::string entry; next_entry(rest, entry);) {
      addNamesOf(entry, names, countries.unlisted);
    }
  }
  names.erase(CalibPath::kDefaultCountry);
  names.erase(CalibPath::kUnknownCountry);
  for (const std::string& name : names) {
    (isCountryCode(name) ? countries.loads : countries.not_taken).push_back(name);
  }
  countries.loads.insert(countries.loads.end(), {kOtherCountry, ""});
  return countries;
}

}  // namespace

Countries countriesToLoad(const std::optional<std::string>& list) {
  if (!list.has_value()) return countriesOfTree();
  std::vector<std::string> countries;
  for (const std::string& word : wordsIn(*list)) {
    const std::string country = countryCalled(word);
    const bool is_new = std::find(countries.begin(), countries.end(), country) == countries.end();
    if (is_new) countries.push_back(country);
  }
  if (countries.empty()) throw std::runtime_error("--countries names no load: '" + *list + "'");
  return {countries, {}};
}

std::string notTakenText(const std::vector<std::string>& names) {
  if (names.empty()) return {};
  return "not taken for countries: " + Join(names, ", ") + " (name them with --countries)";
}

bool isCountryCode(const std::string& text) {
  return text.size() == 2 && text.find_first_not_of("abcdefghijklmnopqrstuvwxyz") == text.npos;
}

std::string countryName(const std::string& country) {
  if (country.empty()) return "no country code";
  return country == kOtherCountry ? "any other country" : printable(CalibPath::lowercase(country));
}

std::string countryTitle(const std::string& country) {
  const bool is_code = !country.empty() && country != kOtherCountry;
  return (is_code ? "country " : "") + countryName(country);
}

std::string allLoads(size_t count) {
  return count == 2 ? "both loads" : "all " + std::to_string(count) + " loads";
}

std::string countryWord(const std::string& country) {
  if (country.empty()) return kNoneWord;
  return country == kOtherCountry ? kOtherWord : CalibPath::lowercase(country);
}

std::string countryCalled(const std::string& word) {
  const std::string country = CalibPath::lowercase(word);
  if (country == kOtherWord) return kOtherCountry;
  return country == kNoneWord ? "" : country;
}

std::string pathOf(const std::string& entry, const std::string& country) {
  const size_t position = CalibPath::findCountryCodeComponent(entry);
  return CalibPath::setCountryCodeComponent(entry, position, country);
}

PlaceholderPart placeholderPartOf(const std::string& entry) {
  const size_t position = CalibPath::findCountryCodeComponent(entry);
  const std::string with_letter = CalibPath::setCountryCodeComponent(entry, position, "x");
  const size_t slash = position == 0 ? std::string::npos : entry.rfind('/', position - 1);
  const size_t begin = slash == std::string::npos ? 0 : slash + 1;
  const size_t end = std::min(with_letter.find('/', position), with_letter.size());
  return {entry.substr(0, begin), entry.substr(begin, position - begin),
          with_letter.substr(position + 1, end - position - 1)};
}

std::string codeIn(const std::string& name, const PlaceholderPart& part) {
  const size_t around = part.before.size() + part.after.size();
  const bool matches =
      name.size() > around && StartsWith(name, part.before) && EndsWith(name, part.after);
  if (!matches) return {};
  return name.substr(part.before.size(), name.size() - around);
}
