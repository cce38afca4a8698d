// SPDX-License-Identifier: Apache-2.0
// Opens the library and calls it for a corpus, while an instrument watches one part of that:
//
//   measured_load LIBRARY CORPUS dlopen | cold | first | later
//
//   dlopen  opening the library
//   cold    opening it and the first call
//   first   the first call
//   later   a call after another one
#include <unistd.h>

#include <string_view>

#include "benchmarks/library_load.h"
#include "benchmarks/measurement.h"

int main(int argc, char** argv) {
  if (argc != 4 || chdir(argv[2]) != 0) return 2;
  const std::string_view part = argv[3];
  const bool opens = part == "dlopen" || part == "cold";
  uint8_t block[TARNIX_UWB_PARAMS_SIZE];
  if (opens) startMeasurement();
  const Load load = openLibrary(argv[1]);
  if (part == "dlopen") stopMeasurement();
  if (part == "later") load(block, sizeof(block));
  if (!opens) startMeasurement();
  const uint32_t count = load(block, sizeof(block));
  if (part != "dlopen") stopMeasurement();
  return count == sizeof(block) ? 0 : 1;
}
