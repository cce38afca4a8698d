// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <new>

// A program's own operator new: it counts, and it can fail. For one thread.

// What a failed allocation throws, told apart by its text.
struct OutOfMemory : std::bad_alloc {
  const char* what() const noexcept override { return "no memory left"; }
};

// The number of allocations so far, and of those that are not yet released.
size_t allocationCount();
size_t liveAllocations();

// Called with each block before it is released, if set.
extern void (*on_release)(const void* memory, size_t size);

// While it lives, one allocation fails: the one after `before` others. Only one may live at a time.
class FailingAllocation {
 public:
  explicit FailingAllocation(size_t before);
  ~FailingAllocation();
  FailingAllocation(const FailingAllocation&) = delete;
  FailingAllocation& operator=(const FailingAllocation&) = delete;

  // True when the allocation was asked for and has failed.
  static bool reached();
};

// The most memory, in bytes, that was held at any time of its life beyond what was held before.
class PeakMemory {
 public:
  PeakMemory();
  size_t bytes() const;

 private:
  size_t before;
};
