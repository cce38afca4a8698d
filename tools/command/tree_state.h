// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "tools/command/tree.h"
#include "tools/trace/countries.h"

// What matrix shows and records, and diff compares: the document of 'matrix --format json', without
// its version. docs/command.md tells its members.

// The loads of these countries in the Tree that exists, in the order of the options. Throws
// std::runtime_error, one line, where some are unlisted.
Json::Value stateOf(const Countries& countries, const Options& options,
                    const DeviceLibrary& library);

// Throws std::exception for a document that stateOf cannot have made.
void checkState(const Json::Value& state);

// The block of a load; empty without a valid calibration.
Bytes blockOf(const Json::Value& state, const Json::Value& load);

// Why the load has no block, with the keys that are missing.
std::string reasonOf(const Json::Value& load);

// What the blocks do not tell: lines that the device's C++ library refuses, and names that are not
// taken for countries. In one line; empty when there is neither.
std::string remarkOn(const Json::Value& state);

// The names of countries that a state calls by their words.
std::vector<std::string> namesOf(const Json::Value& words);
