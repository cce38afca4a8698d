// SPDX-License-Identifier: Apache-2.0
#include "tools/trace/countries.h"

#include <set>

#include "loader/calib_path.h"
#include "loader/lib.h"
#include "loader/path_file.h"
#include "loader/text_file.h"
#include "tools/device/files.h"
#include "tools/text/text.h"
#include "tools/trace/load_trace.h"

namespace {

bool beginsWith(const std::string& text, const std::string& start) {
  return text.compare(0, start.size(), start) == 0;
}

bool endsWith(const std::string& text, const std::string& end) {
  return text.size() >= end.size() && text.compare(text.size() - end.size(), end.size(), end) == 0;
}

// The name that holds the placeholder, and its directory: DIRECTORY/BEFORE<country>AFTER/...
struct PlaceholderPart {
  std::string directory;
  std::string before;
  std::string after;
};

PlaceholderPart partOf(const std::string& entry, size_t position) {
  const std::string with_letter = CalibPath::setCountryCodeComponent(entry, position, "x");
  const size_t slash = position == 0 ? std::string::npos : entry.rfind('/', position - 1);
  const size_t begin = slash == std::string::npos ? 0 : slash + 1;
  const size_t end = std::min(with_letter.find('/', position), with_letter.size());
  return {slash == std::string::npos ? "." : entry.substr(0, begin),
          entry.substr(begin, position - begin),
          with_letter.substr(position + 1, end - position - 1)};
}

// The code in the placeholder's place in this name; empty when the name does not fit.
std::string codeIn(const std::string& name, const PlaceholderPart& part) {
  const size_t around = part.before.size() + part.after.size();
  if (name.size() <= around || !beginsWith(name, part.before) || !endsWith(name, part.after)) {
    return {};
  }
  return name.substr(part.before.size(), name.size() - around);
}

void addCountriesOf(const std::string& entry, std::set<std::string>& countries) {
  const size_t position = CalibPath::findCountryCodeComponent(entry);
  if (position == std::string::npos) return;
  const PlaceholderPart part = partOf(entry, position);
  for (const std::string& name : namesIn(part.directory)) {
    const std::string code = codeIn(name, part);
    if (code.empty() || code[0] == '.') continue;
    // Codes are lowered before they are put into a path, so names in capitals are never read.
    const std::string path = CalibPath::setCountryCodeComponent(entry, position, code);
    const FileKind kind = fileStatus(path).kind;
    const bool is_file = kind == FileKind::Text || kind == FileKind::Empty;
    if (CalibPath::lowercase(code) == code && is_file) countries.insert(code);
  }
}

}  // namespace

std::vector<std::string> countriesOfTree() {
  std::set<std::string> countries;
  for (const std::string& path : build_paths()) {
    const std::string content = readTextFile(path).value_or("");
    std::string_view rest = content;
    for (std::string entry; next_entry(rest, entry);) addCountriesOf(entry, countries);
  }
  countries.erase(CalibPath::kDefaultCountry);
  countries.erase(CalibPath::kUnknownCountry);
  return {countries.begin(), countries.end()};
}

std::string countryName(const std::string& country) {
  return country.empty() ? "no country code" : printable(CalibPath::lowercase(country));
}

std::string countryTitle(const std::string& country) {
  return (country.empty() ? "" : "country ") + countryName(country);
}
