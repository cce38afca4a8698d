// SPDX-License-Identifier: Apache-2.0
#include "tools/block/reader.h"
#include "tools/command/tree.h"
#include "tools/device/library_log.h"
#include "tools/lint/checks.h"
#include "tools/lint/reports.h"
#include "tools/trace/countries.h"

namespace {

Lines linesTaken(const std::vector<LoadTrace>& traces) {
  Lines taken;
  std::set<std::shared_ptr<const TracedFile>> seen;
  for (const LoadTrace& trace : traces) {
    for (const auto& file : trace.files) {
      if (!seen.insert(file).second) continue;
      for (const TracedLine& line : file->lines) {
        if (line.parameter.has_value()) taken.emplace(file->path, line.number);
      }
    }
  }
  return taken;
}

// Keys that are missing in loads whose last files are not the same.
std::set<std::string> keysMissingInMany(const std::vector<LoadTrace>& traces) {
  std::map<std::string, std::string> last_files;
  std::set<std::string> keys;
  for (const LoadTrace& trace : traces) {
    for (const std::string& key : trace.missing) {
      const std::string& last = trace.files.back()->path;
      if (last_files.emplace(key, last).first->second != last) keys.insert(key);
    }
  }
  return keys;
}

void checkFile(const LoadTrace& trace, size_t index, const Lines& taken, Findings& findings) {
  const TracedFile& traced = *trace.files[index];
  const std::string name = traced.path + '\n' + trace.selection.ch5 + '\n' + trace.selection.ch9;
  findings.once(name, [&] {
    const CheckedFile file(trace, index, taken);
    // A byte order mark makes the first key another one.
    const std::string& text = traced.content;
    const std::string first_key = hasByteOrderMark(text) ? text.substr(3, text.find('=') - 3) : "";
    checkText(traced.path, text, first_key, findings);
    checkLines(file, findings);
    checkValues(file, findings);
  });
}

Findings findingsOf(const std::vector<LoadTrace>& traces) {
  Findings findings;
  const Lines taken = linesTaken(traces);
  const std::set<std::string> missing_in_many = keysMissingInMany(traces);
  for (size_t load = 0; load < traces.size(); ++load) {
    const LoadTrace& trace = traces[load];
    findings.beginLoad(load);
    checkPathFiles(trace, findings);
    checkParameters(trace, findings);
    for (size_t file = 0; file < trace.files.size(); ++file) {
      checkFile(trace, file, taken, findings);
    }
    findings.once("", [&] { checkUnreadFiles(traces, findings); });
    checkOutcome(trace, missing_in_many, findings);
  }
  return findings;
}

Exceptions exceptionsOf(const Options& options) {
  Exceptions exceptions;
  for (const std::string& rule : options.ignored_rules) exceptions.ignore(rule);
  if (!options.baseline.empty()) {
    exceptions.addBaseline(options.baseline, readInput(options.baseline));
  }
  return exceptions;
}

LintReport reportOf(const Options& options, const TargetRoot& root, Exceptions& exceptions) {
  LintReport report;
  std::vector<LoadTrace> traces;
  report.loads = options.country.has_value() ? std::vector<std::string>{*options.country}
                                             : countriesToLoad(options.countries);
  if (!options.country.has_value() && options.countries.empty()) {
    report.not_taken = countriesOfTree().others;
  }
  LoadTracer tracer;
  for (const std::string& country : report.loads) {
    traces.push_back(tracer.trace(country));
    if (!traces.back().block.has_value()) ++report.without_block;
  }
  Findings findings = findingsOf(traces);
  for (const std::string& rule : options.error_rules) findings.takeAsErrors(ruleCalled(rule));
  report.groups = grouped(findings, exceptions, options.notes || options.fail_on == "note");
  report.stale = exceptions.unusedLines();
  report.shown_path = [&root](const std::string& path) { return root.hostPath(path); };
  return report;
}

std::string formatted(const LintReport& report, const std::string& format, const Paint& paint) {
  if (format == "json") return jsonReport(report);
  if (format == "sarif") return sarifReport(report, libraryVersion());
  if (format == "baseline") return baselineOf(report);
  if (format == "github") return githubReport(report);
  return textReport(report, paint);
}

bool fails(const LintReport& report, const std::string& fail_on) {
  if (report.groups.empty()) return false;
  if (fail_on == "note") return true;
  return report.worst() == Severity::Error ||
         (fail_on == "warning" && report.worst() == Severity::Warning);
}

}  // namespace

Outcome lint(const Options& options, const Paint& paint) {
  Exceptions exceptions = exceptionsOf(options);  // From the host's files.
  const Tree tree(options.root, options, OpenRedirect::Opens::NoSpecialFiles);
  const LintReport report = reportOf(options, tree.root(), exceptions);
  return {fails(report, options.fail_on) ? kFindings : kGood,
          formatted(report, options.format, paint),
          {},
          report.summary()};
}
