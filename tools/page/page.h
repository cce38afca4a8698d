// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

#include "tools/text/json.h"

// A page for a browser, in one file that asks no network: the table of blocks and fields, where
// each value comes from, the map of the bytes, and what lint has found. `state` is what 'matrix
// --format json' writes, `lint` what 'lint --format json' writes, `name` what the tree is called,
// `remark` what the tables do not tell.
std::string pageOf(const std::string& name, const std::string& remark, Json::Value state,
                   Json::Value lint);
