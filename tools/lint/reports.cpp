// SPDX-License-Identifier: Apache-2.0
#include "tools/lint/reports.h"

#include "tools/text/json.h"
#include "tools/trace/countries.h"

namespace {

// Of a longer line, only the part around the column is shown.
constexpr size_t kWidth = 120;

std::string painted(Severity severity, const Paint& paint) {
  std::string word = wordFor(severity) + ":";
  switch (severity) {
    case Severity::Note:
      return paint.cyan(word);
    case Severity::Warning:
      return paint.magenta(word);
    case Severity::Error:
      return paint.red(word);
  }
  return word;
}

std::string excerpt(const Place& place, const Paint& paint) {
  if (place.source.empty()) return {};
  const size_t column = place.column - 1;
  const size_t begin =
      column > kWidth / 2 && place.source.size() > kWidth ? column - kWidth / 2 : 0;
  const std::string shown = printable(place.source.substr(begin, kWidth));
  const size_t before = widthOf(printable(place.source.substr(begin, column - begin)));
  return "    " + shown + "\n    " + std::string(before, ' ') + paint.green("^") + "\n";
}

std::string findingText(const Findings& findings, const Finding& finding, const Paint& paint) {
  const Place& place = finding.place;
  return paint.bold(printable(place.path) + ":" + std::to_string(place.line) + ":" +
                    std::to_string(place.column) + ":") +
         " " + painted(finding.severity, paint) + " " + printable(messageOf(findings, finding)) +
         " [" + factsOf(finding.rule).name + "]\n" + excerpt(place, paint);
}

JsonValue findingJson(const Finding& finding) {
  const std::vector<std::string> countries(finding.countries.begin(), finding.countries.end());
  return JsonMembers{{"path", finding.place.path},
                     {"line", finding.place.line},
                     {"column", finding.place.column},
                     {"severity", wordFor(finding.severity)},
                     {"rule", factsOf(finding.rule).name},
                     {"message", finding.message},
                     {"countries", countries},
                     {"source", finding.place.source}};
}

std::string escaped(const std::string& text, const std::string& characters) {
  std::string out;
  for (const char c : text) {
    const auto byte = static_cast<uint8_t>(c);
    out += characters.find(c) == characters.npos ? std::string(1, c) : "%" + hex(byte, 2).substr(2);
  }
  return out;
}

}  // namespace

std::string messageOf(const Findings& findings, const Finding& finding) {
  std::vector<std::string> titles;
  for (const std::string& country : findings.countriesToName(finding)) {
    titles.push_back(countryTitle(country));
  }
  return titles.empty() ? finding.message : finding.message + " (" + joined(titles, ", ") + ")";
}

std::string textReport(const Findings& findings, const Paint& paint) {
  std::string out;
  for (const Finding& finding : findings.all()) out += findingText(findings, finding, paint);
  return out;
}

std::string jsonReport(const Findings& findings) {
  std::vector<JsonValue> json;
  for (const Finding& finding : findings.all()) json.push_back(findingJson(finding));
  return documentOf({{"findings", json}});
}

std::string githubReport(const Findings& findings) {
  std::string out;
  for (const Finding& finding : findings.all()) {
    const std::string command =
        finding.severity == Severity::Note ? "notice" : wordFor(finding.severity);
    out += "::" + command + " file=" + escaped(finding.place.path, "%\r\n:,") +
           ",line=" + std::to_string(finding.place.line) +
           ",col=" + std::to_string(finding.place.column) + ",title=" + factsOf(finding.rule).name +
           "::" + escaped(printable(messageOf(findings, finding)), "%\r\n") + "\n";
  }
  return out;
}
