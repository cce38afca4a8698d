// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "output/ccc_params.h"

// Copies the first min(82, size) bytes of the block to `buffer`, which the caller owns and which
// may lie at any address, and returns their number. A smaller buffer is no error.
uint32_t write_calib_to_buffer(const ccc_params& params, void* buffer, uint32_t size);
