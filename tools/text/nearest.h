// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <vector>

// The candidate that was probably meant by a misspelt `word`; empty when none is near.
std::string nearestOf(const std::string& word, const std::vector<std::string>& candidates);
