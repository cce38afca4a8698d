// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstring>

#include "output/ccc_params.h"
#include "tests/kit/types.h"

// The block as a record and as bytes.

inline ccc_params paramsOf(const Bytes& bytes) {
  ccc_params params;
  std::memcpy(&params, bytes.data(), sizeof(params));
  return params;
}

inline Bytes bytesOf(const ccc_params& params) {
  Bytes bytes(sizeof(params));
  std::memcpy(bytes.data(), &params, sizeof(params));
  return bytes;
}
