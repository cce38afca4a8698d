// SPDX-License-Identifier: Apache-2.0
// For valgrind --tool=callgrind --instr-atstart=no, which prints the count at its end.
#include <valgrind/callgrind.h>

#include "benchmarks/measurement.h"

void startMeasurement() {
  CALLGRIND_START_INSTRUMENTATION;
}

void stopMeasurement() {
  CALLGRIND_STOP_INSTRUMENTATION;
}
