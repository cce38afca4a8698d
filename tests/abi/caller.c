/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Calls the shared library as a program in C would: through the public header, by the library's
 * file name, on files of its own. The log and the properties are the ones that the library links.
 */
#define _POSIX_C_SOURCE 200809L

#include <dlfcn.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <unistd.h>

#include "include/tarnix_uwb_params_nfcc.h"
#include "tests/kit/calibration.h"
#include "tests/kit/guards.h"

typedef uint32_t (*load_function)(void* buffer, unsigned int capacity);

static int failures = 0;

static void check(int holds, const char* what, unsigned int number) {
  if (holds) return;
  ++failures;
  fprintf(stderr, "caller: %s, capacity %u\n", what, number);
}

static void stop(const char* what) {
  fprintf(stderr, "caller: %s\n", what);
  exit(2);
}

static void write_file(const char* path, const char* text) {
  FILE* const file = fopen(path, "w");
  if (file == NULL || fputs(text, file) < 0 || fclose(file) != 0) stop("cannot write a file");
}

/* Makes a directory with a path file and a calibration file the working directory. */
static void enter_tree(char* directory) {
  if (mkdtemp(directory) == NULL || chdir(directory) != 0) stop("cannot make a directory");
  write_file("calib_paths", "calib.conf\n");
  write_file("calib.conf", kCalibration);
}

static void remove_tree(const char* directory) {
  if (unlink("calib_paths") != 0 || unlink("calib.conf") != 0 || rmdir(directory) != 0) {
    stop("cannot remove the directory");
  }
}

static load_function find_function(void* library) {
  load_function function;
  void* const symbol = dlsym(library, "load_uwb_params_from_files");
  if (symbol == NULL) stop("the library lacks its function");
  memcpy(&function, &symbol, sizeof(function));
  return function;
}

/* Calls with a buffer between guards and checks every byte of it. */
static void check_call(load_function load, unsigned int capacity, uint32_t count) {
  uint8_t memory[GUARD + 100 + GUARD];
  uint8_t expected[sizeof(memory)];
  guard(memory, 100, kBlock, 0);
  guard(expected, 100, kBlock, count);
  check(load(memory + GUARD, capacity) == count, "wrong result", capacity);
  check(memcmp(memory, expected, sizeof(memory)) == 0, "wrong bytes", capacity);
}

int main(void) {
  char directory[] = "/tmp/uwb_params_caller.XXXXXX";
  void* const library = dlopen("libtarnix_uwb_params_nfcc.so", RTLD_NOW);
  if (library == NULL) stop(dlerror());
  const load_function load = find_function(library);
  enter_tree(directory);
  check(load(NULL, 82) == 0, "a result for a null buffer", 82);
  check_call(load, 0, 0);
  check_call(load, 1, 1);
  check_call(load, 10, 10);
  check_call(load, 81, 81);
  check_call(load, TARNIX_UWB_PARAMS_SIZE, 82);
  check_call(load, 100, 82);
  remove_tree(directory);
  check_call(load, TARNIX_UWB_PARAMS_SIZE, 0);
  check(dlclose(library) == 0, "the library cannot be closed", 0);
  return failures == 0 ? 0 : 1;
}
