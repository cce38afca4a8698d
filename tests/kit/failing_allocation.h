// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <new>

// What a failed allocation throws here, told apart by its text.
struct OutOfMemory : std::bad_alloc {
  const char* what() const noexcept override { return "no memory left"; }
};

// While it lives, one allocation of the program fails: the one after `before` others. Only one may
// live at a time.
class FailingAllocation {
 public:
  explicit FailingAllocation(size_t before);
  ~FailingAllocation();
  FailingAllocation(const FailingAllocation&) = delete;
  FailingAllocation& operator=(const FailingAllocation&) = delete;

  // True when the allocation was asked for and has failed.
  static bool reached();
};

// The number of allocations so far.
size_t allocationCount();
