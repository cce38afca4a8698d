// SPDX-License-Identifier: Apache-2.0
#include <cctype>
#include <filesystem>

#include "tools/lint/reports.h"
#include "tools/text/json.h"

namespace {

// What relative addresses are relative to: the folder in which the command is called.
constexpr char kBase[] = "%SRCROOT%";

// The path as a URI reference, with all other bytes percent-encoded.
std::string uriOf(const std::string& path) {
  std::string uri;
  for (const char c : path) {
    const auto byte = static_cast<uint8_t>(c);
    const bool plain = byte < 0x80 && (std::isalnum(byte) != 0 ||
                                       std::string("-._~/").find(c) != std::string::npos);
    uri += plain ? std::string(1, c) : "%" + hex(byte, 2).substr(2);
  }
  return uri;
}

JsonValue textJson(const std::string& text) {
  return JsonMembers{{"text", text}};
}

JsonValue ruleJson(const RuleFacts& rule) {
  return JsonMembers{{"id", rule.name},
                     {"helpUri", std::string(DOCS_URI "/lint_rules.md#") + rule.name},
                     {"shortDescription", textJson(rule.summary)},
                     {"defaultConfiguration", JsonMembers{{"level", wordFor(rule.severity)}}}};
}

JsonValue regionOf(const Place& place) {
  // SARIF counts characters, not bytes.
  const size_t column = widthOf(printable(place.source.substr(0, place.column - 1))) + 1;
  JsonMembers region = {{"startLine", place.line}, {"startColumn", column}};
  if (!place.source.empty()) region.emplace_back("snippet", textJson(printable(place.source)));
  return region;
}

JsonValue artifactJson(const std::string& path) {
  const std::string here = std::filesystem::current_path().string() + "/";
  if (path.compare(0, here.size(), here) == 0) return artifactJson(path.substr(here.size()));
  if (path[0] == '/') return JsonMembers{{"uri", "file://" + uriOf(path)}};
  return JsonMembers{{"uri", uriOf(path)}, {"uriBaseId", kBase}};
}

JsonValue resultJson(const LintReport& report, const Group& group) {
  const Finding& finding = group.finding;
  const JsonMembers place = {
      {"artifactLocation", artifactJson(report.shown_path(finding.place.path))},
      {"region", regionOf(finding.place)}};
  const std::vector<JsonValue> locations = {JsonMembers{{"physicalLocation", place}}};
  return JsonMembers{{"ruleId", factsOf(finding.rule).name},
                     {"ruleIndex", static_cast<size_t>(finding.rule)},
                     {"level", wordFor(finding.severity)},
                     {"message", textJson(wholeMessage(report, group))},
                     {"locations", locations}};
}

JsonValue driverJson(const std::string& version) {
  std::vector<JsonValue> driver_rules;
  for (const RuleFacts& rule : kRules) driver_rules.push_back(ruleJson(rule));
  return JsonMembers{{"name", "tarnix-uwb-params"},
                     {"version", version},
                     {"informationUri", DOCS_URI "/command.md"},
                     {"rules", driver_rules}};
}

}  // namespace

std::string sarifReport(const LintReport& report, const std::string& version) {
  std::vector<JsonValue> results;
  for (const Group& group : report.groups) results.push_back(resultJson(report, group));
  const JsonMembers base = {
      {"description", textJson("The folder in which the command was called")}};
  JsonMembers run = {{"tool", JsonMembers{{"driver", driverJson(version)}}},
                     {"originalUriBaseIds", JsonMembers{{kBase, base}}},
                     {"columnKind", "unicodeCodePoints"}};
  run.emplace_back("results", std::move(results));
  std::vector<JsonValue> runs;
  runs.emplace_back(std::move(run));
  JsonMembers log = {{"$schema", "https://json.schemastore.org/sarif-2.1.0.json"},
                     {"version", "2.1.0"}};
  log.emplace_back("runs", std::move(runs));
  return foreignDocumentOf(std::move(log));
}
