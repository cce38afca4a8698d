// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <vector>

#include "grammar/ast_root.h"
#include "loader/calibration.h"

// Parses every text with one tree, in order, so that a later file wins over an earlier one. A file
// that fails is logged and its rest ignored; what it set before stays. True when at least one file
// did not fail.
bool parse_pattern(AstRoot& tree, const std::vector<calibration>& calibrations);

// True when no parameter lacks a value; otherwise the log names each one that does.
bool validate_pattern(AstRoot& tree);
