// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <vector>

// Levenshtein's distance; more than `limit` when the lengths alone differ by more.
size_t editDistance(const std::string& a, const std::string& b, size_t limit);

// The candidate that was probably meant by a misspelt `word`; empty when none is near.
std::string nearestOf(const std::string& word, const std::vector<std::string>& candidates);
