// SPDX-License-Identifier: Apache-2.0
#include "output/calib_converter.h"

#include <stdexcept>

#include "output/crc16.h"

namespace {

// Ports are counted from 1 in the block and from 0 in the files; 255 becomes 0.
uint8_t blockPort(uint8_t port) {
  return static_cast<uint8_t>(port + 1);
}

}  // namespace

ccc_params CalibConverter::convert(const ccc_calib& calib) {
  ccc_params params{};
  params.version = calib.version;
  params.ch9_ant_delay = calib.ch9.ant_delay;
  params.ch5_ant_delay = calib.ch5.ant_delay;
  params.ch9_tx_power = calib.ch9.tx_power;
  params.ch9_pg_count = calib.ch9.pg_count;
  params.ch9_pg_delay = calib.ch9.pg_delay;
  params.ch5_tx_power = calib.ch5.tx_power;
  params.ch5_pg_count = calib.ch5.pg_count;
  params.ch5_pg_delay = calib.ch5.pg_delay;
  params.temperature_reference = calib.temperature_reference;
  params.xtal_trim = calib.xtal_trim;
  params.wifi_coex_time_gap = calib.wifi_coex_time_gap;
  params.ap_coop_mode = calib.ap_coop_mode;
  params.alternate_pulse_shape = calib.alternate_pulse_shape;
  params.wifi_coex_min_spacing = calib.wifi_coex_min_spacing;
  // Don't change the order here: when both antennas are bad, the error is that of channel 9.
  params.ch9_antenna_selection = computeAntennaSelection(calib.ch9);
  params.ch5_antenna_selection = computeAntennaSelection(calib.ch5);
  params.ch5_port = blockPort(calib.ch5.port);
  params.ch9_port = blockPort(calib.ch9.port);
  // Last: it covers everything above.
  params.crc = computeCrc16(kMostSignificantByteFirst, params);
  return params;
}

uint8_t CalibConverter::computeAntennaSelection(const antenna_calib& antenna) {
  return computeAntennaSelection(antenna.selector_gpio, antenna.selector_gpio_value);
}

uint8_t CalibConverter::computeAntennaSelection(const uint8_t& gpio, const uint8_t& value) {
  if (gpio != 6 && gpio != 7) throw std::invalid_argument("GPIO must be 6 or 7");
  if (value > 1) throw std::invalid_argument("GPIO value must be 0 or 1");
  // Each line has two bits: that it is the selector, and the level to drive on it.
  const auto code = static_cast<uint8_t>(0x01 | value << 1);
  return gpio == 6 ? code : static_cast<uint8_t>(code << 2);
}

uint16_t CalibConverter::computeCrc16(EndiannessConversion conversion, const ccc_params& params) {
  constexpr uint16_t kStart = 0x0001;
  constexpr uint32_t kFirst = offsetof(ccc_params, version);  // After the CRC itself.
  const auto* const bytes = reinterpret_cast<const uint8_t*>(&params);
  return converted(Crc16().crc(bytes + kFirst, sizeof(params) - kFirst, kStart), conversion);
}
