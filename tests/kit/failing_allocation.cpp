// SPDX-License-Identifier: Apache-2.0
#include "tests/kit/failing_allocation.h"

#include <cstdlib>

namespace {

size_t count = 0;
size_t failing = 0;  // The count at which an allocation fails; none does when it is 0.

}  // namespace

FailingAllocation::FailingAllocation(size_t before) {
  failing = count + before + 1;
}

FailingAllocation::~FailingAllocation() {
  failing = 0;
}

bool FailingAllocation::reached() {
  return count >= failing;
}

size_t allocationCount() {
  return count;
}

void* operator new(size_t size) {
  if (++count == failing) throw OutOfMemory();
  void* const memory = std::malloc(size == 0 ? 1 : size);
  if (memory == nullptr) throw std::bad_alloc();
  return memory;
}

void operator delete(void* memory) noexcept {
  std::free(memory);
}

void operator delete(void* memory, size_t /*size*/) noexcept {
  std::free(memory);
}
