/* SPDX-License-Identifier: Apache-2.0 */
#include <dlfcn.h>
#include <stdio.h>

#include "tarnix_uwb_params_nfcc.h"

int main(void) {
  uint8_t block[TARNIX_UWB_PARAMS_SIZE];
  void* const library = dlopen("libtarnix_uwb_params_nfcc.so", RTLD_NOW);
  if (library == NULL) return 2;
  uint32_t (*load)(void*, unsigned int);
  *(void**)&load = dlsym(library, "load_uwb_params_from_files");
  if (load == NULL || load(block, sizeof(block)) != sizeof(block)) return 1;
  for (size_t i = 0; i < sizeof(block); ++i) printf("%02x", block[i]);
  return dlclose(library);
}
