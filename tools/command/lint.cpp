// SPDX-License-Identifier: Apache-2.0
#include <algorithm>

#include "tools/command/tree.h"
#include "tools/device/device_library.h"
#include "tools/lint/checks.h"
#include "tools/lint/report.h"
#include "tools/text/input_output.h"
#include "tools/trace/countries.h"

namespace {

Suppressions suppressionsOf(const Options& options) {
  Suppressions suppressions;
  for (const std::string& rule : options.ignored_rules) suppressions.ignore(rule);
  if (!options.baseline.empty()) {
    suppressions.addBaseline(options.baseline, readInput(options.baseline));
  }
  return suppressions;
}

LintReport reportOf(const Options& options, const TargetRoot& root, Suppressions& suppressions) {
  LintReport report{options.country.has_value() ? Countries{{*options.country}, {}}
                                                : countriesToLoad(options.countries)};
  std::vector<LoadTrace> traces;
  LoadTracer tracer;
  for (const std::string& country : report.loads) {
    traces.push_back(tracer.trace(country));
    traces.back().readAsDevice();
  }
  report.without_block =
      static_cast<size_t>(std::count_if(traces.begin(), traces.end(), [](const LoadTrace& trace) {
        return !trace.block.has_value();
      }));
  report.shown_path = [&root](const std::string& path) { return root.hostPath(path); };
  Findings findings = findingsOf(traces);
  for (const TracedPath& folder : report.unlisted) {
    findings.add({Rule::FileUnreadable, {folder.path}, folder.problem});
  }
  for (const std::string& rule : options.error_rules) {
    findings.takeAsErrors(ruleCalled(rule).value());
  }
  const bool with_notes = options.notes || options.fail_on == "note";
  report.groups = grouped(findings, suppressions, report.shown_path, with_notes);
  report.unused = suppressions.unused();
  return report;
}

std::string formatted(const LintReport& report, const std::string& format, const Paint& paint) {
  if (format == "json") return documentOf(jsonReport(report));
  if (format == "sarif") return sarifReport(report, libraryVersion());
  if (format == "baseline") return baselineReport(report);
  if (format == "github") return githubReport(report);
  return textReport(report, paint);
}

bool fails(const LintReport& report, const std::string& fail_on) {
  const Severity least = fail_on == "error"  ? Severity::Error
                         : fail_on == "note" ? Severity::Note
                                             : Severity::Warning;
  return !report.groups.empty() && report.groups.front().finding.severity >= least;
}

}  // namespace

Json::Value lintJson(const Options& options, const TargetRoot& root) {
  Suppressions none;
  return jsonReport(reportOf(options, root, none));
}

Outcome lint(const Options& options, const Paint& paint) {
  Suppressions suppressions = suppressionsOf(options);  // From the host's files.
  const Tree tree(options.root, options, OpenRedirect::Opens::NoSpecialFiles);
  const LintReport report = reportOf(options, tree.root(), suppressions);
  return {fails(report, options.fail_on) ? kFindings : kGood,
          formatted(report, options.format, paint),
          {},
          report.summary()};
}
