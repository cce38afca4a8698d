// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>

// One antenna as used on one channel. Every field is named after the key that fills it. The first
// three belong to the antenna, the others to the channel at the pulse repetition frequency 64.
struct antenna_calib {
  uint8_t selector_gpio;        // The GPIO line that switches the antenna selector: 6 or 7.
  uint8_t selector_gpio_value;  // The level to drive on that line: 0 or 1.
  uint8_t port;                 // The antenna's port, counted from 0.
  uint16_t ant_delay;           // Antenna delay.
  uint32_t tx_power;            // Transmit power setting.
  uint16_t pg_count;            // Pulse generator count.
  uint8_t pg_delay;             // Pulse generator delay.
};

// A whole calibration. Once the loader has filled it, its 16- and 32-bit fields lie most
// significant byte first in memory, ready to be copied into the controller's block.
struct ccc_calib {
  uint16_t version;               // Version of the calibration data.
  antenna_calib ch5;              // The antenna of channel 5.
  antenna_calib ch9;              // The antenna of channel 9.
  uint8_t temperature_reference;  // Reference temperature.
  uint8_t xtal_trim;              // Crystal trim.
  uint8_t wifi_coex_time_gap;     // Wi-Fi coexistence time gap.
  uint8_t ap_coop_mode;           // AP cooperation mode.
  uint8_t alternate_pulse_shape;  // Alternate pulse shape selector.
  uint8_t wifi_coex_min_spacing;  // Wi-Fi coexistence minimum spacing.
};
