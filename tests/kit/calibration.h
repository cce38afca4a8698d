// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>

// One calibration, in which every value differs, and its block. kit/calibration.py reads them too.

inline constexpr char kCalibration[] =
    "ch5.antenna_selection=ant0\n"
    "ch9.antenna_selection=ant1\n"
    "version=0x0102\n"
    "ant0.selector_gpio=7\n"
    "ant0.selector_gpio_value=1\n"
    "ant0.port=0x31\n"
    "ant0.ch5.prf64.ant_delay=0x4142\n"
    "ant0.ch5.prf64.tx_power=0x11223344\n"
    "ant0.ch5.prf64.pg_count=0x0506\n"
    "ant0.ch5.prf64.pg_delay=0x21\n"
    "ant1.selector_gpio=6\n"
    "ant1.selector_gpio_value=0\n"
    "ant1.port=0x35\n"
    "ant1.ch9.prf64.ant_delay=0x5152\n"
    "ant1.ch9.prf64.tx_power=0xAABBCCDD\n"
    "ant1.ch9.prf64.pg_count=0x0708\n"
    "ant1.ch9.prf64.pg_delay=0x23\n"
    "temperature_reference=20\n"
    "xtal_trim=40\n"
    "wifi_coex_time_gap=3\n"
    "ap_coop_mode=9\n"
    "alternate_pulse_shape=10\n"
    "wifi_coex_min_spacing=11\n";

// The checksum was computed by another program: Python's binascii.crc_hqx(block[2:], 1).
inline constexpr uint8_t kBlock[82] = {
    0xD4, 0x15,              // 0: crc
    0x01, 0x02,              // 2: version
    0x51, 0x52,              // 4: ch9_ant_delay
    0x41, 0x42,              // 6: ch5_ant_delay
    0xAA, 0xBB, 0xCC, 0xDD,  // 8: ch9_tx_power
    0x07, 0x08,              // 12: ch9_pg_count
    0x23,                    // 14: ch9_pg_delay
    0x11, 0x22, 0x33, 0x44,  // 15: ch5_tx_power
    0x05, 0x06,              // 19: ch5_pg_count
    0x21,                    // 21: ch5_pg_delay
    0x00, 0x00, 0x00, 0x00,  // 22: reserved
    0x14,                    // 26: temperature_reference
    0x28,                    // 27: xtal_trim
    0x00, 0x00, 0x00,        // 28: reserved
    0x03,                    // 31: wifi_coex_time_gap
    0x09,                    // 32: ap_coop_mode
    0x0C,                    // 33: ch5_antenna_selection
    0x0A,                    // 34: alternate_pulse_shape
    0x0B,                    // 35: wifi_coex_min_spacing
    0x01,                    // 36: ch9_antenna_selection
    0x32,                    // 37: ch5_port
    0x36,                    // 38: ch9_port
};                           // 39: reserved
