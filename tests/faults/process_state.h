// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>

// What a process holds besides memory.

size_t openDescriptors();

// The parts of the address space that are in use: libraries, heaps, stacks.
size_t mappedRegions();
