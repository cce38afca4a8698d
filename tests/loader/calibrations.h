// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "tests/kit/log_capture.h"

// Complete calibrations, the blocks that they give, and the log lines of whole steps.

using Bytes = std::vector<uint8_t>;
using Log = std::vector<LogLine>;

inline constexpr char kSelection[] = R"(ch5.antenna_selection=ant0
ch9.antenna_selection=ant1
)";

inline constexpr char kValues[] = R"(version=2
ant0.selector_gpio=7
ant0.selector_gpio_value=1
ant0.port=1
ant0.ch5.prf64.ant_delay=0x4010
ant0.ch5.prf64.tx_power=0x11223344
ant0.ch5.prf64.pg_count=0x0506
ant0.ch5.prf64.pg_delay=0x21
ant1.selector_gpio=6
ant1.selector_gpio_value=0
ant1.port=3
ant1.ch9.prf64.ant_delay=0x4020
ant1.ch9.prf64.tx_power=0xAABBCCDD
ant1.ch9.prf64.pg_count=0x0708
ant1.ch9.prf64.pg_delay=0x22
temperature_reference=20
xtal_trim=40
wifi_coex_time_gap=3
ap_coop_mode=1
alternate_pulse_shape=5
wifi_coex_min_spacing=7
)";

inline const std::string kTwoAntennas = std::string(kSelection) + kValues;

inline constexpr char kSharedAntenna[] = R"(ch5.antenna_selection=both
ch9.antenna_selection=both
version=2
both.selector_gpio=7
both.selector_gpio_value=1
both.port=1
both.ch5.prf64.ant_delay=0x4010
both.ch5.prf64.tx_power=0x11223344
both.ch5.prf64.pg_count=0x0506
both.ch5.prf64.pg_delay=0x21
both.ch9.prf64.ant_delay=0x4020
both.ch9.prf64.tx_power=0xAABBCCDD
both.ch9.prf64.pg_count=0x0708
both.ch9.prf64.pg_delay=0x22
temperature_reference=20
xtal_trim=40
wifi_coex_time_gap=3
ap_coop_mode=1
alternate_pulse_shape=5
wifi_coex_min_spacing=7
)";

// The checksums were computed by another program: Python's binascii.crc_hqx(block[2:], 1).
inline Bytes blockOfTwoAntennas() {
  Bytes block = {
      0x7E, 0xD3,              //  0: crc
      0x00, 0x02,              //  2: version
      0x40, 0x20,              //  4: ch9_ant_delay
      0x40, 0x10,              //  6: ch5_ant_delay
      0xAA, 0xBB, 0xCC, 0xDD,  //  8: ch9_tx_power
      0x07, 0x08,              // 12: ch9_pg_count
      0x22,                    // 14: ch9_pg_delay
      0x11, 0x22, 0x33, 0x44,  // 15: ch5_tx_power
      0x05, 0x06,              // 19: ch5_pg_count
      0x21,                    // 21: ch5_pg_delay
      0x00, 0x00, 0x00, 0x00,  // 22: reserved
      20,                      // 26: temperature_reference
      40,                      // 27: xtal_trim
      0x00, 0x00, 0x00,        // 28: reserved
      3,                       // 31: wifi_coex_time_gap
      1,                       // 32: ap_coop_mode
      0x0C,                    // 33: ch5_antenna_selection
      5,                       // 34: alternate_pulse_shape
      7,                       // 35: wifi_coex_min_spacing
      0x01,                    // 36: ch9_antenna_selection
      2,                       // 37: ch5_port
      4,                       // 38: ch9_port
  };
  block.resize(82);  // 39: reserved
  return block;
}

inline Bytes blockOfSharedAntenna() {
  Bytes block = blockOfTwoAntennas();
  block[0] = 0xC2;
  block[1] = 0xA8;
  block[36] = 0x0C;
  block[38] = 2;
  return block;
}

inline Log joined(const std::vector<Log>& pieces) {
  Log all;
  for (const Log& piece : pieces) all.insert(all.end(), piece.begin(), piece.end());
  return all;
}

// The lines of a path file that cannot be opened.
inline Log unopenable(const std::string& path_file) {
  return {info("Reading path file " + path_file), error("Failed to open path file: " + path_file),
          error("Unable to read any calibration file from: " + path_file)};
}

// The lines of the two passes over files without comments or errors.
inline Log bothPasses(const std::vector<std::string>& files) {
  Log log = {info("Parsing antenna selection")};
  for (const std::string& file : files) log.push_back(info("Parsing " + file));
  log.push_back(info("Parsing full calibration"));
  for (const std::string& file : files) log.push_back(info("Parsing " + file));
  return log;
}

// The lines of a path file whose only entry is the calibration file `file`.
inline Log readingOneFile(const std::string& path_file, const std::string& file) {
  return {info("Reading path file " + path_file), info("Reading entry: " + file),
          info("No country placeholder, opening as-is"),
          info("Found 1 calibration files in " + path_file)};
}
