/* SPDX-License-Identifier: Apache-2.0 */
#pragma once

#include <stddef.h>
#include <stdint.h>
#include <string.h>

/* A caller's buffer lies between two guards of this size. */
#define GUARD 64

/*
 * Fills the memory of a buffer and its guards: as it is before a load, or, with `count` bytes of
 * `written`, as it is when these were written to the buffer and nothing else was.
 */
static inline void guard(uint8_t* memory, size_t capacity, const uint8_t* written, size_t count) {
  memset(memory, 0xA5, GUARD + capacity + GUARD);
  if (count > 0) memcpy(memory + GUARD, written, count);
}
