// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>

// This program's own operator new: it counts, and it can fail.

// The number of allocations that are not yet released, without those of Uncounted.
size_t liveAllocations();

// While one lives, what this thread allocates is neither counted nor made to fail: for doubles that
// stand in for code which does not allocate through operator new.
class Uncounted {
 public:
  Uncounted();
  ~Uncounted();
  Uncounted(const Uncounted&) = delete;
  Uncounted& operator=(const Uncounted&) = delete;
};

// While it lives, the n-th allocation from its start on throws std::bad_alloc, counted from 1.
class FailingAllocation {
 public:
  explicit FailingAllocation(size_t n);
  ~FailingAllocation();
  FailingAllocation(const FailingAllocation&) = delete;
  FailingAllocation& operator=(const FailingAllocation&) = delete;

  // True when there were n allocations.
  bool happened() const;
};

// The most memory, in bytes, that was held at any time of its life beyond what was held before.
class PeakMemory {
 public:
  PeakMemory();
  size_t bytes() const;

 private:
  size_t before;
};
