// SPDX-License-Identifier: Apache-2.0
#include <algorithm>
#include <cctype>
#include <filesystem>

#include "tools/lint/report.h"
#include "tools/trace/countries.h"

namespace {

// Of a longer line, only the part around the column is shown.
constexpr size_t kWidth = 120;

// Of one finding; JSON has them all.
constexpr size_t kMostConsequences = 5;

// What relative addresses are relative to: the folder in which the command is called.
constexpr char kBase[] = "%SRCROOT%";

std::string painted(Severity severity, const Paint& paint) {
  constexpr const char* kCodes[] = {"1;36", "1;35", "1;31"};
  return paint.with(kCodes[static_cast<size_t>(severity)], wordFor(severity) + ":");
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
  const auto message = [&](const Finding& of, const Finding* cause) {
    return report.messageOf(of, cause) + " [" + factsOf(of.rule).name + "]\n";
  };
  const std::string place = printable(report.shown_path(finding.place.path)) + ":" +
                            std::to_string(finding.place.line) + ":" +
                            std::to_string(finding.place.column) + ":";
  std::string out = paint.bold(place) + " " + painted(finding.severity, paint) + " " +
                    message(finding, nullptr) + excerpt(finding.place, paint);
  const size_t shown = std::min(group.consequences.size(), kMostConsequences);
  for (size_t i = 0; i < shown; ++i) {
    out += "    leads to: " + message(group.consequences[i], &finding);
  }
  const size_t more = group.consequences.size() - shown;
  return more == 0 ? out : out + "    and " + std::to_string(more) + " more\n";
}

Json::Value findingJson(const LintReport& report, const Finding& finding) {
  Json::Value json;
  json["severity"] = wordFor(finding.severity);
  json["rule"] = factsOf(finding.rule).name;
  json["message"] = finding.message;
  json["countries"] =
      arrayOf(finding.loads, [&](size_t load) { return countryWord(report.loads[load]); });
  return json;
}

Json::Value groupJson(const LintReport& report, const Group& group) {
  const Place& place = group.finding.place;
  Json::Value json = findingJson(report, group.finding);
  json["path"] = report.shown_path(place.path);
  json["line"] = place.line;
  json["column"] = place.column;
  json["source"] = place.source;
  json["consequences"] = arrayOf(group.consequences, [&](const Finding& consequence) {
    return findingJson(report, consequence);
  });
  return json;
}

// With each byte percent-encoded that `keeps` returns false for.
template <typename Keeps>
std::string percentEncoded(const std::string& text, const Keeps& keeps) {
  std::string out;
  for (const char c : text) {
    out += keeps(c) ? std::string(1, c) : "%" + hex(static_cast<uint8_t>(c), 2).substr(2);
  }
  return out;
}

// As GitHub wants it. In properties, colons and commas separate.
std::string escaped(const std::string& text, const std::string& more = "") {
  return percentEncoded(text, [&](char c) { return ("%\r\n" + more).find(c) == more.npos; });
}

std::string githubLine(const LintReport& report, const Group& group) {
  const Finding& finding = group.finding;
  const bool is_note = finding.severity == Severity::Note;
  return "::" + (is_note ? "notice" : wordFor(finding.severity)) +
         " file=" + escaped(printable(report.shown_path(finding.place.path)), ":,") +
         ",line=" + std::to_string(finding.place.line) +
         ",col=" + std::to_string(finding.place.column) + ",title=" + factsOf(finding.rule).name +
         "::" + escaped(report.wholeMessageOf(group)) + "\n";
}

Json::Value textJson(const std::string& text) {
  Json::Value json;
  json["text"] = text;
  return json;
}

Json::Value ruleJson(const RuleFacts& rule) {
  Json::Value json;
  json["id"] = rule.name;
  json["helpUri"] = std::string(DOCS_URI "/lint_rules.md#") + rule.name;
  json["shortDescription"] = textJson(rule.summary);
  json["defaultConfiguration"]["level"] = wordFor(rule.severity);
  return json;
}

Json::Value regionJson(const Place& place) {
  Json::Value json;
  json["startLine"] = place.line;
  // SARIF counts characters, not bytes.
  json["startColumn"] = widthOf(place.source.substr(0, place.column - 1)) + 1;
  if (!place.source.empty()) json["snippet"] = textJson(printable(place.source));
  return json;
}

Json::Value artifactJson(const std::string& path) {
  static const std::string here = std::filesystem::current_path().string() + "/";
  if (StartsWith(path, here)) return artifactJson(path.substr(here.size()));
  const bool is_absolute = StartsWith(path, "/");
  Json::Value json;
  json["uri"] = (is_absolute ? "file://" : "") + percentEncoded(path, [](char c) {
                  return std::isalnum(static_cast<uint8_t>(c)) != 0 ||
                         std::string("-._~/").find(c) != std::string::npos;
                });
  if (!is_absolute) json["uriBaseId"] = kBase;
  return json;
}

Json::Value resultJson(const LintReport& report, const Group& group) {
  const Finding& finding = group.finding;
  Json::Value json;
  json["ruleId"] = factsOf(finding.rule).name;
  json["ruleIndex"] = static_cast<size_t>(finding.rule);
  json["level"] = wordFor(finding.severity);
  json["message"] = textJson(report.wholeMessageOf(group));
  Json::Value& place = json["locations"].append({})["physicalLocation"];
  place["artifactLocation"] = artifactJson(report.shown_path(finding.place.path));
  place["region"] = regionJson(finding.place);
  return json;
}

}  // namespace

std::string textReport(const LintReport& report, const Paint& paint) {
  std::string out;
  for (const Group& group : report.groups) out += groupText(report, group, paint);
  return out;
}

Json::Value jsonReport(const LintReport& report) {
  Json::Value json;
  json["countries"] = arrayOf(report.loads, countryWord);
  json["not_taken_for_countries"] = arrayOf(report.not_taken);
  json["without_block"] = report.without_block;
  json["findings"] =
      arrayOf(report.groups, [&](const Group& group) { return groupJson(report, group); });
  return json;
}

std::string sarifReport(const LintReport& report, const std::string& version) {
  Json::Value log;
  log["$schema"] = "https://json.schemastore.org/sarif-2.1.0.json";
  log["version"] = "2.1.0";
  Json::Value& run = log["runs"].append({});
  Json::Value& driver = run["tool"]["driver"];
  driver["name"] = "tarnix-uwb-params";
  driver["version"] = version;
  driver["informationUri"] = DOCS_URI "/command.md";
  driver["rules"] = arrayOf(kRules, ruleJson);
  run["originalUriBaseIds"][kBase]["description"] =
      textJson("The folder in which the command was called");
  run["columnKind"] = "unicodeCodePoints";
  run["results"] =
      arrayOf(report.groups, [&](const Group& group) { return resultJson(report, group); });
  return foreignDocumentOf(log);
}

std::string githubReport(const LintReport& report) {
  std::string out;
  for (const Group& group : report.groups) out += githubLine(report, group);
  return out;
}

std::string baselineReport(const LintReport& report) {
  std::string out;
  for (const Group& group : report.groups) {
    out += baselineLine(group.finding);
    for (const Finding& consequence : group.consequences) out += baselineLine(consequence);
  }
  return out;
}
