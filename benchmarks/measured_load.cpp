// SPDX-License-Identifier: Apache-2.0
// Loads a corpus once in the sight of a measuring instrument, after WARM-UPS loads that it does
// not see.
//
//   measured_load LIBRARY CORPUS CONTENDER WARM-UPS
#include <unistd.h>

#include <cstdlib>

#include "benchmarks/contender.h"
#include "benchmarks/library_load.h"
#include "benchmarks/measurement.h"
#include "include/tarnix_uwb_params_nfcc.h"

namespace {

Contender::Load loadOf(const char* name) {
  for (const Contender& contender : contenders()) {
    if (contender.name == name) return contender.load;
  }
  return nullptr;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 5) return 2;
  openLibrary(argv[1]);
  const Contender::Load load = loadOf(argv[3]);
  if (chdir(argv[2]) != 0 || load == nullptr) return 2;
  uint8_t block[TARNIX_UWB_PARAMS_SIZE];
  for (int i = std::atoi(argv[4]); i > 0; --i) load(block);
  startMeasurement();
  const uint32_t count = load(block);
  stopMeasurement();
  return count == sizeof(block) ? 0 : 1;
}
