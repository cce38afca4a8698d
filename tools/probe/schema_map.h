// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <optional>
#include <vector>

#include "schema/antenna_selection.h"
#include "schema/ccc_calib.h"
#include "tools/block/fields.h"
#include "tools/probe/schema_probe.h"

// Where the value of one parameter goes.
struct ParameterPlace {
  size_t record_offset;     // In ccc_calib.
  size_t size;              // In bytes.
  const BlockField* field;  // Of the block; the selector's line and level share one.
};

// The places of all parameters of the schema for these antennas, in the tree's order, found by
// setting one parameter at a time and looking which bytes of the record and of the block move.
// Nothing for a parameter that no line can set: an antenna's name may rule that out.
std::vector<std::optional<ParameterPlace>> placesOf(const antenna_selection& selection,
                                                    const SchemaProbe& probe);

// The offsets in ccc_calib of an antenna's wiring.
constexpr size_t kWiringLines[] = {offsetof(ccc_calib, ch5.selector_gpio),
                                   offsetof(ccc_calib, ch9.selector_gpio)};
constexpr size_t kWiringLevels[] = {offsetof(ccc_calib, ch5.selector_gpio_value),
                                    offsetof(ccc_calib, ch9.selector_gpio_value)};
constexpr size_t kWiringPorts[] = {offsetof(ccc_calib, ch5.port), offsetof(ccc_calib, ch9.port)};

// Whether `offset` is one of the two.
bool isOneOf(const size_t (&offsets)[2], size_t offset);
