// SPDX-License-Identifier: Apache-2.0
#include "tools/lint/reports.h"

#include <algorithm>

#include "tools/text/json.h"
#include "tools/trace/countries.h"

namespace {

// Of a longer line, only the part around the column is shown.
constexpr size_t kWidth = 120;

// Of one finding; JSON has them all.
constexpr size_t kMostConsequences = 5;

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

std::string groupText(const LintReport& report, const Group& group, const Paint& paint) {
  const Finding& finding = group.finding;
  const Place& place = finding.place;
  std::string out =
      paint.bold(printable(report.shown_path(place.path)) + ":" + std::to_string(place.line) + ":" +
                 std::to_string(place.column) + ":") +
      " " + painted(finding.severity, paint) + " " + printable(report.messageOf(finding)) + " [" +
      factsOf(finding.rule).name + "]\n" + excerpt(place, paint);
  const size_t shown = std::min(group.consequences.size(), kMostConsequences);
  for (size_t i = 0; i < shown; ++i) {
    const Finding& consequence = group.consequences[i];
    out += "    leads to: " + printable(report.messageOf(consequence, finding)) + " [" +
           factsOf(consequence.rule).name + "]\n";
  }
  const size_t more = group.consequences.size() - shown;
  return more == 0 ? out : out + "    and " + std::to_string(more) + " more\n";
}

JsonMembers findingJson(const LintReport& report, const Finding& finding) {
  std::vector<std::string> countries;
  for (const size_t load : finding.loads) countries.push_back(countryWord(report.loads[load]));
  return {{"severity", wordFor(finding.severity)},
          {"rule", factsOf(finding.rule).name},
          {"message", finding.message},
          {"countries", countries}};
}

JsonValue groupJson(const LintReport& report, const Group& group) {
  const Place& place = group.finding.place;
  JsonMembers json = findingJson(report, group.finding);
  std::vector<JsonValue> consequences;
  for (const Finding& consequence : group.consequences) {
    consequences.emplace_back(findingJson(report, consequence));
  }
  json.insert(json.end(), {{"path", report.shown_path(place.path)},
                           {"line", place.line},
                           {"column", place.column},
                           {"source", place.source},
                           {"consequences", consequences}});
  return json;
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

std::string wholeMessage(const LintReport& report, const Group& group) {
  std::string message = report.messageOf(group.finding);
  for (const Finding& consequence : group.consequences) {
    message += "; leads to: " + report.messageOf(consequence, group.finding);
  }
  return printable(message);
}

std::string textReport(const LintReport& report, const Paint& paint) {
  std::string out;
  for (const Group& group : report.groups) out += groupText(report, group, paint);
  return out;
}

std::string jsonReport(const LintReport& report) {
  std::vector<std::string> countries;
  for (const std::string& country : report.loads) countries.push_back(countryWord(country));
  std::vector<JsonValue> findings;
  for (const Group& group : report.groups) findings.push_back(groupJson(report, group));
  JsonMembers members = {{"countries", countries},
                         {"not_taken_for_countries", report.not_taken},
                         {"without_block", report.without_block}};
  members.emplace_back("findings", std::move(findings));
  return documentOf(std::move(members));
}

std::string githubReport(const LintReport& report) {
  std::string out;
  for (const Group& group : report.groups) {
    const Finding& finding = group.finding;
    const std::string command =
        finding.severity == Severity::Note ? "notice" : wordFor(finding.severity);
    out += "::" + command + " file=" + escaped(report.shown_path(finding.place.path), "%\r\n:,") +
           ",line=" + std::to_string(finding.place.line) +
           ",col=" + std::to_string(finding.place.column) + ",title=" + factsOf(finding.rule).name +
           "::" + escaped(wholeMessage(report, group), "%\r\n") + "\n";
  }
  return out;
}

std::string baselineOf(const LintReport& report) {
  std::string out;
  for (const Group& group : report.groups) {
    out += baselineLine(group.finding) + "\n";
    for (const Finding& consequence : group.consequences) out += baselineLine(consequence) + "\n";
  }
  return out;
}
