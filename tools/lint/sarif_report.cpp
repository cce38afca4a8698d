// SPDX-License-Identifier: Apache-2.0
#include <cctype>
#include <nlohmann/json.hpp>

#include "tools/lint/reports.h"

namespace {

using Json = nlohmann::ordered_json;

// The path as a relative or absolute reference, every byte that is none of a reference's encoded.
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

Json ruleJson(const Rule& rule) {
  return {{"id", rule.name},
          {"shortDescription", {{"text", rule.summary}}},
          {"defaultConfiguration", {{"level", wordFor(rule.severity)}}}};
}

Json regionOf(const Place& place) {
  // SARIF counts characters, not bytes.
  const size_t column = widthOf(printable(place.source.substr(0, place.column - 1))) + 1;
  Json region = {{"startLine", place.line}, {"startColumn", column}};
  if (!place.source.empty()) region["snippet"] = {{"text", printable(place.source)}};
  return region;
}

Json resultJson(const Findings& findings, const Finding& finding) {
  const Json location = {{"artifactLocation", {{"uri", uriOf(finding.place.path)}}},
                         {"region", regionOf(finding.place)}};
  return {{"ruleId", rules()[finding.rule].name},
          {"ruleIndex", finding.rule},
          {"level", wordFor(finding.severity)},
          {"message", {{"text", printable(messageOf(findings, finding))}}},
          {"locations", Json::array({{{"physicalLocation", location}}})}};
}

Json driverJson() {
  Json driver = {{"name", "tarnix-uwb-params"}, {"rules", Json::array()}};
  for (const Rule& rule : rules()) driver["rules"].push_back(ruleJson(rule));
  return driver;
}

}  // namespace

std::string sarifReport(const Findings& findings) {
  Json results = Json::array();
  for (const Finding& finding : findings.all()) results.push_back(resultJson(findings, finding));
  const Json run = {{"tool", {{"driver", driverJson()}}},
                    {"columnKind", "unicodeCodePoints"},
                    {"results", results}};
  const Json log = {{"$schema", "https://json.schemastore.org/sarif-2.1.0.json"},
                    {"version", "2.1.0"},
                    {"runs", Json::array({run})}};
  return log.dump(2, ' ', false, Json::error_handler_t::replace) + "\n";
}
