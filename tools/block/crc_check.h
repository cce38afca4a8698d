// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <string>

#include "tools/block/fields.h"

// The CRC of a whole block, as it stores it and as it should be.
struct CrcCheck {
  uint16_t stored;
  uint16_t computed;
  // Why they may differ: empty when they don't, and when nothing explains it.
  std::string likely_cause;

  bool good() const { return stored == computed; }
};

// `block` must be a whole one.
CrcCheck checkCrc(const Bytes& block);
