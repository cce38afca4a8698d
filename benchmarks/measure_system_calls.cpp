// SPDX-License-Identifier: Apache-2.0
// For strace: a call of getppid() before and after.
#include <unistd.h>

#include "benchmarks/measurement.h"

void startMeasurement() {
  getppid();
}

void stopMeasurement() {
  getppid();
}
