// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdlib>

// So much of `whole` as UWB_TEST_EFFORT says in percent; all of it where it is unset. Processors
// that are emulated, and programs that are watched by a sanitizer, take a part.
inline size_t effort(size_t whole) {
  const char* const percent = std::getenv("UWB_TEST_EFFORT");
  if (percent == nullptr) return whole;
  return std::max<size_t>(1, whole / 100 * std::strtoul(percent, nullptr, 10));
}
