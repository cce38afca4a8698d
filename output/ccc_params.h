// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdint>

// The calibration block as the controller reads it: 82 bytes without padding, every 16- and 32-bit
// field most significant byte first, every reserved byte zero.
//
// The delay, power and pulse values of channel 9 come before those of channel 5; for the selector
// codes and ports it is the other way round. Never bind a reference to a field: some are unaligned.
struct __attribute__((packed)) ccc_params {
  uint16_t crc;                   //  0: CRC-16 of offsets 2 to 81.
  uint16_t version;               //  2: Version of the calibration data.
  uint16_t ch9_ant_delay;         //  4: Antenna delay on channel 9.
  uint16_t ch5_ant_delay;         //  6: Antenna delay on channel 5.
  uint32_t ch9_tx_power;          //  8: Transmit power on channel 9.
  uint16_t ch9_pg_count;          // 12: Pulse generator count on channel 9.
  uint8_t ch9_pg_delay;           // 14: Pulse generator delay on channel 9.
  uint32_t ch5_tx_power;          // 15: Transmit power on channel 5.
  uint16_t ch5_pg_count;          // 19: Pulse generator count on channel 5.
  uint8_t ch5_pg_delay;           // 21: Pulse generator delay on channel 5.
  uint8_t reserved_22[4];         // 22: Zero.
  uint8_t temperature_reference;  // 26: Reference temperature.
  uint8_t xtal_trim;              // 27: Crystal trim.
  uint8_t reserved_28[3];         // 28: Zero.
  uint8_t wifi_coex_time_gap;     // 31: Wi-Fi coexistence time gap.
  uint8_t ap_coop_mode;           // 32: AP cooperation mode.
  uint8_t ch5_antenna_selection;  // 33: Selector code of the channel 5 antenna: 1, 3, 4 or 12.
  uint8_t alternate_pulse_shape;  // 34: Alternate pulse shape selector.
  uint8_t wifi_coex_min_spacing;  // 35: Wi-Fi coexistence minimum spacing.
  uint8_t ch9_antenna_selection;  // 36: Selector code of the channel 9 antenna: 1, 3, 4 or 12.
  uint8_t ch5_port;               // 37: Port of the channel 5 antenna, counted from 1.
  uint8_t ch9_port;               // 38: Port of the channel 9 antenna, counted from 1.
  uint8_t reserved_39[43];        // 39: Zero.
};

static_assert(offsetof(ccc_params, crc) == 0);
static_assert(offsetof(ccc_params, version) == 2);
static_assert(offsetof(ccc_params, ch9_ant_delay) == 4);
static_assert(offsetof(ccc_params, ch5_ant_delay) == 6);
static_assert(offsetof(ccc_params, ch9_tx_power) == 8);
static_assert(offsetof(ccc_params, ch9_pg_count) == 12);
static_assert(offsetof(ccc_params, ch9_pg_delay) == 14);
static_assert(offsetof(ccc_params, ch5_tx_power) == 15);
static_assert(offsetof(ccc_params, ch5_pg_count) == 19);
static_assert(offsetof(ccc_params, ch5_pg_delay) == 21);
static_assert(offsetof(ccc_params, reserved_22) == 22);
static_assert(offsetof(ccc_params, temperature_reference) == 26);
static_assert(offsetof(ccc_params, xtal_trim) == 27);
static_assert(offsetof(ccc_params, reserved_28) == 28);
static_assert(offsetof(ccc_params, wifi_coex_time_gap) == 31);
static_assert(offsetof(ccc_params, ap_coop_mode) == 32);
static_assert(offsetof(ccc_params, ch5_antenna_selection) == 33);
static_assert(offsetof(ccc_params, alternate_pulse_shape) == 34);
static_assert(offsetof(ccc_params, wifi_coex_min_spacing) == 35);
static_assert(offsetof(ccc_params, ch9_antenna_selection) == 36);
static_assert(offsetof(ccc_params, ch5_port) == 37);
static_assert(offsetof(ccc_params, ch9_port) == 38);
static_assert(offsetof(ccc_params, reserved_39) == 39);
static_assert(sizeof(ccc_params) == 82);
