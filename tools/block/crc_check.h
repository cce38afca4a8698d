// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <string>

#include "tools/block/fields.h"

// The CRC that a whole block holds, and the one that it should hold.
struct CrcCheck {
  uint16_t stored;
  uint16_t computed;
  // Why they differ; empty when they do not or no cause was found.
  std::string likely_cause;

  bool good() const { return stored == computed; }
};

// `block` must be a whole one.
CrcCheck checkCrc(const Bytes& block);
