// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

#include "tools/lint/report.h"
#include "tools/text/text.h"

// What people, and the programs that they look through, read of a report.

// "path:line:col: severity: text [rule]", the line, a caret below its column, and what it leads to.
std::string textReport(const LintReport& report, const Paint& paint);

// {"format_version": 1, ..., "findings": [...]}
std::string jsonReport(const LintReport& report);

// SARIF 2.1.0; `version` is this program's.
std::string sarifReport(const LintReport& report, const std::string& version);

// Workflow commands that annotate the lines of a change.
std::string githubReport(const LintReport& report);

// One line for each finding, to be given to --baseline.
std::string baselineOf(const LintReport& report);

// The message, the loads that it holds for, and what the finding leads to, in one line.
std::string wholeMessage(const LintReport& report, const Group& group);
