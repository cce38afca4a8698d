// SPDX-License-Identifier: Apache-2.0
// Counts what the program and its libraries allocate, in front of the C library's own functions,
// and prints the count of allocations and the most bytes held at once.
#include <malloc.h>

#include <cerrno>
#include <cstddef>
#include <cstdio>

#include "benchmarks/measurement.h"

// NOLINTBEGIN(bugprone-reserved-identifier): the C library's own functions have such names.
extern "C" {
void* __libc_malloc(size_t size);
void* __libc_calloc(size_t count, size_t size);
void* __libc_realloc(void* memory, size_t size);
void* __libc_memalign(size_t alignment, size_t size);
void __libc_free(void* memory);
}
// NOLINTEND(bugprone-reserved-identifier)

namespace {

bool measures = false;
size_t allocations = 0;
ptrdiff_t held = 0;
ptrdiff_t most_held = 0;

void* counted(void* memory) {
  if (!measures || memory == nullptr) return memory;
  ++allocations;
  held += static_cast<ptrdiff_t>(malloc_usable_size(memory));
  if (held > most_held) most_held = held;
  return memory;
}

void released(void* memory) {
  if (measures) held -= static_cast<ptrdiff_t>(malloc_usable_size(memory));
}

}  // namespace

void startMeasurement() {
  measures = true;
}

void stopMeasurement() {
  measures = false;
  std::printf("%zu %td\n", allocations, most_held);
}

extern "C" {

void* malloc(size_t size) {
  return counted(__libc_malloc(size));
}

void* calloc(size_t count, size_t size) {
  return counted(__libc_calloc(count, size));
}

// Moved or not, the old memory counts as released once the new one is there.
void* realloc(void* memory, size_t size) {
  released(memory);
  return counted(__libc_realloc(memory, size));
}

void* memalign(size_t alignment, size_t size) {
  return counted(__libc_memalign(alignment, size));
}

void* aligned_alloc(size_t alignment, size_t size) {
  return memalign(alignment, size);
}

int posix_memalign(void** memory, size_t alignment, size_t size) {
  *memory = memalign(alignment, size);
  return *memory == nullptr ? ENOMEM : 0;
}

void free(void* memory) {
  released(memory);
  __libc_free(memory);
}
}
