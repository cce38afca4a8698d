// SPDX-License-Identifier: Apache-2.0
#include "tests/faults/counted_new.h"

#include <algorithm>
#include <cstdlib>
#include <new>

namespace {

constexpr size_t kNever = 0;

// Before every allocation, so that its release knows what it was.
struct alignas(std::max_align_t) Header {
  size_t size;
  bool counted;
};

// One thread at a time: the tests that count start no other.
size_t live = 0;
size_t live_bytes = 0;
size_t peak_bytes = 0;
size_t until_failure = kNever;
bool failed = false;
int uncounted = 0;

// True when it is this allocation's turn to fail.
bool failsNow() {
  if (uncounted > 0 || until_failure == kNever) return false;
  failed = --until_failure == 0;
  return failed;
}

void count(const Header& header) {
  ++live;
  live_bytes += header.size;
  peak_bytes = std::max(peak_bytes, live_bytes);
}

void discount(const Header& header) {
  --live;
  live_bytes -= header.size;
}

}  // namespace

void* operator new(size_t size) {
  if (failsNow()) throw std::bad_alloc();
  void* const memory = std::malloc(sizeof(Header) + size);
  if (memory == nullptr) throw std::bad_alloc();
  Header* const header = new (memory) Header{size, uncounted == 0};
  if (header->counted) count(*header);
  return header + 1;
}

void operator delete(void* pointer) noexcept {
  if (pointer == nullptr) return;
  Header* const header = static_cast<Header*>(pointer) - 1;
  if (header->counted) discount(*header);
  std::free(header);
}

void operator delete(void* pointer, size_t /*size*/) noexcept {
  operator delete(pointer);
}

size_t liveAllocations() {
  return live;
}

Uncounted::Uncounted() {
  ++uncounted;
}

Uncounted::~Uncounted() {
  --uncounted;
}

FailingAllocation::FailingAllocation(size_t n) {
  until_failure = n;
  failed = false;
}

FailingAllocation::~FailingAllocation() {
  until_failure = kNever;
}

bool FailingAllocation::happened() const {
  return failed;
}

PeakMemory::PeakMemory() : before(live_bytes) {
  peak_bytes = live_bytes;
}

size_t PeakMemory::bytes() const {
  return peak_bytes - before;
}
