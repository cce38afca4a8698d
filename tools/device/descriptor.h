// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <unistd.h>

// Closes an open file at the end of its life. A negative number means no file.
class Descriptor {
 public:
  explicit Descriptor(int number) : number_(number) {}
  ~Descriptor() {
    if (isOpen()) close(number_);
  }
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;

  bool isOpen() const { return number_ >= 0; }
  int number() const { return number_; }

 private:
  const int number_;
};
