// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <vector>

#include "grammar/ast_root.h"
#include "loader/calibration.h"

// Runs every text through one tree, in order, so that a later file wins over an earlier one. A file
// that fails is logged and left; what it set before stays. True when at least one file was read to
// its end.
bool parse_pattern(AstRoot& tree, const std::vector<calibration>& calibrations);

// True when no parameter lacks a value; otherwise the log names each one that does.
bool validate_pattern(AstRoot& tree);
