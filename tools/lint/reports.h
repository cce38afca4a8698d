// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

#include "tools/lint/findings.h"
#include "tools/text/text.h"

// The findings for people and for programs.

// "path:line:col: severity: text [rule]", the line, and a caret below its column.
std::string textReport(const Findings& findings, const Paint& paint);

// {"findings": [...]}
std::string jsonReport(const Findings& findings);

// SARIF 2.1.0.
std::string sarifReport(const Findings& findings);

// Workflow commands that annotate the lines of a change.
std::string githubReport(const Findings& findings);

// The message, and the countries that have the finding unless all have it.
std::string messageOf(const Findings& findings, const Finding& finding);
