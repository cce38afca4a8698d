// SPDX-License-Identifier: Apache-2.0
#include "tests/kit/allocations.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>

namespace {

// Before every allocation, so that its release knows its size.
struct alignas(std::max_align_t) Header {
  size_t size;
};

size_t count = 0;
size_t failing = 0;  // The count at which an allocation fails; none does when it is 0.
size_t live = 0;
size_t live_bytes = 0;
size_t peak_bytes = 0;

}  // namespace

void (*on_release)(const void* memory, size_t size) = nullptr;

void* operator new(size_t size) {
  if (++count == failing) throw OutOfMemory();
  // A sanitizer's malloc ends the program for what no system has.
  if (size > SIZE_MAX / 4) throw std::bad_alloc();
  void* const memory = std::malloc(sizeof(Header) + size);
  if (memory == nullptr) throw std::bad_alloc();
  ++live;
  live_bytes += size;
  peak_bytes = std::max(peak_bytes, live_bytes);
  return new (memory) Header{size} + 1;
}

void operator delete(void* memory) noexcept {
  if (memory == nullptr) return;
  Header* const header = static_cast<Header*>(memory) - 1;
  if (on_release != nullptr) on_release(memory, header->size);
  --live;
  live_bytes -= header->size;
  std::free(header);
}

void operator delete(void* memory, size_t /*size*/) noexcept {
  operator delete(memory);
}

size_t allocationCount() {
  return count;
}

size_t liveAllocations() {
  return live;
}

FailingAllocation::FailingAllocation(size_t before) {
  failing = count + before + 1;
}

FailingAllocation::~FailingAllocation() {
  failing = 0;
}

bool FailingAllocation::reached() {
  return count >= failing;
}

PeakMemory::PeakMemory() : before(live_bytes) {
  peak_bytes = live_bytes;
}

size_t PeakMemory::bytes() const {
  return peak_bytes - before;
}
