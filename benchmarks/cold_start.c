/* SPDX-License-Identifier: Apache-2.0 */
/* Opens the library, calls it once and prints the nanoseconds of processor time that each of
 * the two took.
 *
 *   cold_start LIBRARY CORPUS
 */
#include <dlfcn.h>
#include <stdint.h>
#include <stdio.h>
#include <string.h>
#include <time.h>
#include <unistd.h>

static int64_t nanoseconds(void) {
  struct timespec now;
  clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
  return (int64_t)now.tv_sec * 1000000000 + now.tv_nsec;
}

int main(int argc, char** argv) {
  if (argc != 3 || chdir(argv[2]) != 0) return 2;
  const int64_t start = nanoseconds();
  void* const library = dlopen(argv[1], RTLD_NOW);
  void* const symbol = library == NULL ? NULL : dlsym(library, "load_uwb_params_from_files");
  if (symbol == NULL) return 2;
  uint32_t (*load)(void*, unsigned int);
  memcpy(&load, &symbol, sizeof(load));
  const int64_t opened = nanoseconds();
  uint8_t block[82];
  load(block, sizeof(block));
  const int64_t end = nanoseconds();
  printf("%lld %lld\n", (long long)(opened - start), (long long)(end - opened));
  return 0;
}
