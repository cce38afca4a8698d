// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "output/ccc_params.h"
#include "schema/antenna_selection.h"
#include "schema/ccc_calib.h"

// What the command itself knows of the block: its fields, the parameters that fill them and the
// selector codes. A test compares it with what the library does.

// What the bytes of a field mean.
enum class FieldKind { Crc, Number, SelectorCode, Port, Reserved };

struct BlockField {
  const char* name;
  size_t offset;
  size_t size;
  FieldKind kind;

  constexpr size_t end() const { return offset + size; }
};

using Bytes = std::vector<uint8_t>;

constexpr size_t kBlockSize = sizeof(ccc_params);

// In the order of their offsets.
inline constexpr BlockField kBlockFields[] = {
#define FIELD(name, kind) \
  { #name, offsetof(ccc_params, name), sizeof(ccc_params::name), FieldKind::kind }
    FIELD(crc, Crc),
    FIELD(version, Number),
    FIELD(ch9_ant_delay, Number),
    FIELD(ch5_ant_delay, Number),
    FIELD(ch9_tx_power, Number),
    FIELD(ch9_pg_count, Number),
    FIELD(ch9_pg_delay, Number),
    FIELD(ch5_tx_power, Number),
    FIELD(ch5_pg_count, Number),
    FIELD(ch5_pg_delay, Number),
    FIELD(reserved_22, Reserved),
    FIELD(temperature_reference, Number),
    FIELD(xtal_trim, Number),
    FIELD(reserved_28, Reserved),
    FIELD(wifi_coex_time_gap, Number),
    FIELD(ap_coop_mode, Number),
    FIELD(ch5_antenna_selection, SelectorCode),
    FIELD(alternate_pulse_shape, Number),
    FIELD(wifi_coex_min_spacing, Number),
    FIELD(ch9_antenna_selection, SelectorCode),
    FIELD(ch5_port, Port),
    FIELD(ch9_port, Port),
    FIELD(reserved_39, Reserved),
#undef FIELD
};

// The field that covers the byte at `offset`, which must be one of the block.
constexpr const BlockField& fieldAt(size_t offset) {
  const BlockField* field = kBlockFields;
  while (offset >= field->end()) ++field;
  return *field;
}

// What a parameter's number becomes in its field.
enum class Role { Number, SelectorLine, SelectorLevel, Port };

struct Parameter {
  size_t record_offset;  // In ccc_calib.
  size_t size;           // Of the record's field.
  size_t block_offset;   // Of the block's field; the selector's line and level share one.
  Role role;

  constexpr const BlockField& field() const { return fieldAt(block_offset); }
  constexpr uint32_t largest() const { return UINT32_MAX >> (32 - 8 * size); }
};

// In the order of the schema's tree, which knows their keys.
inline constexpr Parameter kParameters[] = {
#define PARAMETER(record, block, role)                                                   \
  {                                                                                      \
    offsetof(ccc_calib, record), sizeof(ccc_calib::record), offsetof(ccc_params, block), \
        Role::role                                                                       \
  }
    PARAMETER(version, version, Number),
    PARAMETER(ch5.ant_delay, ch5_ant_delay, Number),
    PARAMETER(ch5.tx_power, ch5_tx_power, Number),
    PARAMETER(ch5.pg_count, ch5_pg_count, Number),
    PARAMETER(ch5.pg_delay, ch5_pg_delay, Number),
    PARAMETER(ch5.selector_gpio_value, ch5_antenna_selection, SelectorLevel),
    PARAMETER(ch5.selector_gpio, ch5_antenna_selection, SelectorLine),
    PARAMETER(ch5.port, ch5_port, Port),
    PARAMETER(ch9.ant_delay, ch9_ant_delay, Number),
    PARAMETER(ch9.tx_power, ch9_tx_power, Number),
    PARAMETER(ch9.pg_count, ch9_pg_count, Number),
    PARAMETER(ch9.pg_delay, ch9_pg_delay, Number),
    PARAMETER(ch9.selector_gpio_value, ch9_antenna_selection, SelectorLevel),
    PARAMETER(ch9.selector_gpio, ch9_antenna_selection, SelectorLine),
    PARAMETER(ch9.port, ch9_port, Port),
    PARAMETER(temperature_reference, temperature_reference, Number),
    PARAMETER(xtal_trim, xtal_trim, Number),
    PARAMETER(wifi_coex_time_gap, wifi_coex_time_gap, Number),
    PARAMETER(ap_coop_mode, ap_coop_mode, Number),
    PARAMETER(alternate_pulse_shape, alternate_pulse_shape, Number),
    PARAMETER(wifi_coex_min_spacing, wifi_coex_min_spacing, Number),
#undef PARAMETER
};

// The parameters of the tree for these antennas: a shared antenna has its wiring under channel 5.
std::vector<const Parameter*> parametersFor(const antenna_selection& selection);

struct Selector {
  uint8_t line;
  uint8_t level;
  uint8_t code;
};

inline constexpr Selector kSelectors[] = {{6, 0, 0x01}, {6, 1, 0x03}, {7, 0, 0x04}, {7, 1, 0x0C}};

// Whether a selector has this number of its line or level; true for other parameters.
bool hasSelector(Role role, uint64_t number);

// The selector with this code; null when there is none.
const Selector* selectorOf(uint8_t code);

// The field's number in `block`, which must hold the whole field of at most four bytes.
uint32_t numberIn(const Bytes& block, const BlockField& field);
