// SPDX-License-Identifier: Apache-2.0
#include "tools/block/fields.h"

#include <iterator>
#include <stdexcept>

namespace {

constexpr BlockField kFields[] = {
#define FIELD(name, kind) \
  { #name, offsetof(ccc_params, name), sizeof(ccc_params::name), kind }
    FIELD(crc, FieldKind::Crc),
    FIELD(version, FieldKind::Number),
    FIELD(ch9_ant_delay, FieldKind::Number),
    FIELD(ch5_ant_delay, FieldKind::Number),
    FIELD(ch9_tx_power, FieldKind::Number),
    FIELD(ch9_pg_count, FieldKind::Number),
    FIELD(ch9_pg_delay, FieldKind::Number),
    FIELD(ch5_tx_power, FieldKind::Number),
    FIELD(ch5_pg_count, FieldKind::Number),
    FIELD(ch5_pg_delay, FieldKind::Number),
    FIELD(reserved_22, FieldKind::Reserved),
    FIELD(temperature_reference, FieldKind::Number),
    FIELD(xtal_trim, FieldKind::Number),
    FIELD(reserved_28, FieldKind::Reserved),
    FIELD(wifi_coex_time_gap, FieldKind::Number),
    FIELD(ap_coop_mode, FieldKind::Number),
    FIELD(ch5_antenna_selection, FieldKind::SelectorCode),
    FIELD(alternate_pulse_shape, FieldKind::Number),
    FIELD(wifi_coex_min_spacing, FieldKind::Number),
    FIELD(ch9_antenna_selection, FieldKind::SelectorCode),
    FIELD(ch5_port, FieldKind::Port),
    FIELD(ch9_port, FieldKind::Port),
    FIELD(reserved_39, FieldKind::Reserved),
#undef FIELD
};

// A field left out above would leave a gap.
constexpr bool coverTheBlock() {
  size_t offset = 0;
  for (const BlockField& field : kFields) {
    if (field.offset != offset) return false;
    offset += field.size;
  }
  return offset == kBlockSize;
}
static_assert(coverTheBlock());

}  // namespace

const std::vector<BlockField>& blockFields() {
  static const std::vector<BlockField> fields(std::begin(kFields), std::end(kFields));
  return fields;
}

const BlockField& fieldAt(size_t offset) {
  for (const BlockField& field : blockFields()) {
    if (offset < field.end()) return field;
  }
  throw std::out_of_range("no field at this offset");
}

uint32_t numberIn(const Bytes& block, const BlockField& field) {
  uint32_t number = 0;
  for (size_t i = field.offset; i < field.end(); ++i) number = number << 8 | block.at(i);
  return number;
}
