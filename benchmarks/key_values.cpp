// SPDX-License-Identifier: Apache-2.0
#include "benchmarks/key_values.h"

#include <charconv>
#include <cstddef>
#include <cstring>

#include "output/calib_converter.h"

struct KeyValues::Row {
  std::string_view name;
  size_t offset;  // Of the field in ccc_calib.
  size_t size;
};

// Seven keys. `first` is the number of the first one among all keys.
struct KeyValues::Table {
  unsigned first;
  Row rows[7];
};

// clang-format off
#define FIELD(field) offsetof(ccc_calib, field), sizeof(ccc_calib::field)
#define ANTENNA_FIELD(channel, field) \
  offsetof(ccc_calib, channel) + offsetof(antenna_calib, field), sizeof(antenna_calib::field)

const KeyValues::Table KeyValues::kRoot = {0, {
    {"version", FIELD(version)},
    {"temperature_reference", FIELD(temperature_reference)},
    {"xtal_trim", FIELD(xtal_trim)},
    {"wifi_coex_time_gap", FIELD(wifi_coex_time_gap)},
    {"ap_coop_mode", FIELD(ap_coop_mode)},
    {"alternate_pulse_shape", FIELD(alternate_pulse_shape)},
    {"wifi_coex_min_spacing", FIELD(wifi_coex_min_spacing)}}};

// The names in these two tables follow the name of the antenna and a '.'.
const KeyValues::Table KeyValues::kChannel5 = {7, {
    {"ch5.prf64.ant_delay", ANTENNA_FIELD(ch5, ant_delay)},
    {"ch5.prf64.tx_power", ANTENNA_FIELD(ch5, tx_power)},
    {"ch5.prf64.pg_count", ANTENNA_FIELD(ch5, pg_count)},
    {"ch5.prf64.pg_delay", ANTENNA_FIELD(ch5, pg_delay)},
    {"selector_gpio_value", ANTENNA_FIELD(ch5, selector_gpio_value)},
    {"selector_gpio", ANTENNA_FIELD(ch5, selector_gpio)},
    {"port", ANTENNA_FIELD(ch5, port)}}};

const KeyValues::Table KeyValues::kChannel9 = {14, {
    {"ch9.prf64.ant_delay", ANTENNA_FIELD(ch9, ant_delay)},
    {"ch9.prf64.tx_power", ANTENNA_FIELD(ch9, tx_power)},
    {"ch9.prf64.pg_count", ANTENNA_FIELD(ch9, pg_count)},
    {"ch9.prf64.pg_delay", ANTENNA_FIELD(ch9, pg_delay)},
    {"selector_gpio_value", ANTENNA_FIELD(ch9, selector_gpio_value)},
    {"selector_gpio", ANTENNA_FIELD(ch9, selector_gpio)},
    {"port", ANTENNA_FIELD(ch9, port)}}};

#undef ANTENNA_FIELD
#undef FIELD
// clang-format on

namespace {

constexpr uint32_t kAllKeys = (uint32_t{1} << 21) - 1;

// The part of `key` behind "<antenna>.", empty when it does not begin so.
std::string_view behind(const std::string& antenna, std::string_view key) {
  const size_t size = antenna.size();
  if (key.size() <= size || key[size] != '.' || key.substr(0, size) != antenna) return {};
  return key.substr(size + 1);
}

// Decimal, hexadecimal after 0x, octal after 0; as many of the characters as are digits.
bool readNumber(std::string_view text, size_t bytes, uint32_t& number) {
  int base = 10;
  if (text.size() > 1 && text[0] == '0') {
    const bool hexadecimal = text[1] == 'x' || text[1] == 'X';
    base = hexadecimal ? 16 : 8;
    text.remove_prefix(hexadecimal ? 2 : 1);
  }
  const auto result = std::from_chars(text.data(), text.data() + text.size(), number, base);
  return result.ec == std::errc() && (bytes == sizeof(number) || number >> (8 * bytes) == 0);
}

}  // namespace

void KeyValues::select(std::string_view key, std::string_view value) {
  if (key == "ch5.antenna_selection") antenna5 = value;
  if (key == "ch9.antenna_selection") antenna9 = value;
}

void KeyValues::set(std::string_view key, std::string_view value) {
  if (setIn(kChannel5, behind(antenna5, key), value)) return;
  if (setIn(kChannel9, behind(antenna9, key), value)) return;
  setIn(kRoot, key, value);
}

bool KeyValues::setIn(const Table& table, std::string_view key, std::string_view value) {
  if (key.empty()) return false;
  unsigned number = table.first;
  for (const Row& row : table.rows) {
    if (row.name == key) {
      if (!store(row, value)) bad = true;
      given |= uint32_t{1} << number;
      return true;
    }
    ++number;
  }
  return false;
}

// Most significant byte first: the form that the converter takes.
bool KeyValues::store(const Row& row, std::string_view value) {
  uint32_t number = 0;
  if (!readNumber(value, row.size, number)) return false;
  uint8_t* const field = reinterpret_cast<uint8_t*>(&calib) + row.offset;
  for (size_t i = row.size; i-- > 0; number >>= 8) field[i] = static_cast<uint8_t>(number);
  return true;
}

std::vector<std::string> KeyValues::keys() const {
  std::vector<std::string> all;
  for (const Row& row : kRoot.rows) all.emplace_back(row.name);
  for (const Row& row : kChannel5.rows) all.push_back(antenna5 + '.' + std::string(row.name));
  for (const Row& row : kChannel9.rows) all.push_back(antenna9 + '.' + std::string(row.name));
  return all;
}

uint32_t KeyValues::writeBlock(uint8_t* block) const {
  if (bad || given != kAllKeys) return 0;
  const ccc_params params = CalibConverter::convert(calib);
  std::memcpy(block, &params, sizeof(params));
  return sizeof(params);
}
