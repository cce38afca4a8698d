// SPDX-License-Identifier: Apache-2.0
#include "benchmarks/library_load.h"

#include <dlfcn.h>

#include <cstdio>
#include <cstdlib>

Load openLibrary(const char* file) {
  void* const library = dlopen(file, RTLD_NOW);
  void* const symbol = library == nullptr ? nullptr : dlsym(library, "load_uwb_params_from_files");
  if (symbol == nullptr) {
    std::fprintf(stderr, "%s\n", dlerror());
    std::exit(2);
  }
  return reinterpret_cast<Load>(symbol);
}
