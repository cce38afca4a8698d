// SPDX-License-Identifier: Apache-2.0
#include <algorithm>

#include "tools/command/command.h"
#include "tools/device/device_library.h"
#include "tools/device/open_redirect.h"
#include "tools/lint/checks.h"
#include "tools/lint/reports.h"
#include "tools/trace/countries.h"

namespace {

std::vector<std::string> countriesToLint(const Options& options) {
  if (options.country.has_value()) return {*options.country};
  std::vector<std::string> countries = countriesOfTree();
  countries.emplace_back();
  return countries;
}

void lintLoad(const std::string& country, const std::string& path_file, Findings& findings) {
  setDeviceProperties(country, path_file);
  const LoadTrace trace = traceLoad(country);
  findings.beginLoad(trace.country);
  checkPathFiles(trace, findings);
  checkLines(trace, findings);
  checkValues(trace, findings);
  checkParameters(trace, findings);
}

Findings lintTree(const Options& options) {
  const TargetRoot root(options.root);
  const OpenRedirect redirect(root);
  Findings findings;
  setDeviceProperties("", options.path_file);
  for (const std::string& country : countriesToLint(options)) {
    lintLoad(country, options.path_file, findings);
  }
  return findings;
}

std::string report(const Findings& findings, const std::string& format, const Paint& paint) {
  if (format == "json") return jsonReport(findings);
  if (format == "sarif") return sarifReport(findings);
  if (format == "github") return githubReport(findings);
  return textReport(findings, paint);
}

bool isClean(const Findings& findings) {
  return std::none_of(findings.all().begin(), findings.all().end(),
                      [](const Finding& finding) { return finding.severity != Severity::Note; });
}

}  // namespace

Outcome lint(const Options& options, const Paint& paint) {
  Findings findings = lintTree(options);
  findings.showPathsBelow(options.root);
  for (const std::string& rule : options.error_rules) findings.takeAsErrors(ruleCalled(rule));
  for (const std::string& rule : options.ignored_rules) findings.ignore(ruleCalled(rule));
  return {isClean(findings) ? kGood : kFindings, report(findings, options.format, paint), {}};
}
