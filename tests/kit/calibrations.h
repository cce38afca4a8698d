// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <sstream>

#include "tests/kit/calibration.h"
#include "tests/kit/checksums.h"
#include "tests/kit/types.h"

inline Names linesOf(const std::string& text) {
  Names lines;
  std::istringstream input(text);
  for (std::string line; std::getline(input, line);) lines.push_back(line + "\n");
  return lines;
}

inline bool beginsWith(const std::string& text, const std::string& beginning) {
  return text.rfind(beginning, 0) == 0;
}

inline std::string replaced(std::string text, const std::string& from, const std::string& to) {
  for (size_t at = text.find(from); at != text.npos; at = text.find(from, at + to.size())) {
    text.replace(at, from.size(), to);
  }
  return text;
}

// The calibration with other names for its antennas. One that serves both has the wiring of
// channel 5.
inline std::string calibrationWith(const std::string& ch5, const std::string& ch9) {
  std::string text;
  for (const std::string& line : linesOf(kCalibration)) {
    const bool wiring9 = beginsWith(line, "ant1.") && !beginsWith(line, "ant1.ch9");
    if (ch5 != ch9 || !wiring9) text += replaced(replaced(line, "ant0", ch5), "ant1", ch9);
  }
  return text;
}

// The calibration without the lines of a key.
inline std::string calibrationWithout(const std::string& key) {
  std::string text;
  for (const std::string& line : linesOf(kCalibration)) {
    if (!beginsWith(line, key + "=")) text += line;
  }
  return text;
}

inline Bytes sealed(Bytes block) {
  const uint16_t crc = blockCrc16(block);
  block[0] = static_cast<uint8_t>(crc >> 8);
  block[1] = static_cast<uint8_t>(crc & 0xFF);
  return block;
}

inline Bytes block() {
  return {kBlock, kBlock + sizeof(kBlock)};
}

// The block of a calibration whose antenna serves both channels.
inline Bytes blockOfOneAntenna() {
  Bytes block = ::block();
  block[36] = block[33];
  block[38] = block[37];
  return sealed(block);
}
