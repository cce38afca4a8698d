// SPDX-License-Identifier: Apache-2.0
#include "benchmarks/library_load.h"

#include <dlfcn.h>

#include <cstdio>
#include <cstdlib>

#include "benchmarks/contender.h"
#include "include/tarnix_uwb_params_nfcc.h"

namespace {

decltype(&load_uwb_params_from_files) exported = nullptr;

const Entry entry("library",
                  [](uint8_t* block) { return exported(block, TARNIX_UWB_PARAMS_SIZE); });

}  // namespace

void openLibrary(const char* file) {
  void* const library = dlopen(file, RTLD_NOW);
  void* const symbol = library == nullptr ? nullptr : dlsym(library, "load_uwb_params_from_files");
  if (symbol == nullptr) {
    std::fprintf(stderr, "%s\n", dlerror());
    std::exit(2);
  }
  exported = reinterpret_cast<decltype(exported)>(symbol);
}
