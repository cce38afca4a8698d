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

#define GUARD 16
#define UNTOUCHED 0xA5

typedef uint32_t (*load_function)(void* buffer, unsigned int capacity);

static const char kCalibration[] =
    "ch5.antenna_selection=ant0\n"
    "ch9.antenna_selection=ant1\n"
    "version=2\n"
    "ant0.selector_gpio=7\n"
    "ant0.selector_gpio_value=1\n"
    "ant0.port=1\n"
    "ant0.ch5.prf64.ant_delay=0x4010\n"
    "ant0.ch5.prf64.tx_power=0x11223344\n"
    "ant0.ch5.prf64.pg_count=0x0506\n"
    "ant0.ch5.prf64.pg_delay=0x21\n"
    "ant1.selector_gpio=6\n"
    "ant1.selector_gpio_value=0\n"
    "ant1.port=3\n"
    "ant1.ch9.prf64.ant_delay=0x4020\n"
    "ant1.ch9.prf64.tx_power=0xAABBCCDD\n"
    "ant1.ch9.prf64.pg_count=0x0708\n"
    "ant1.ch9.prf64.pg_delay=0x22\n"
    "temperature_reference=20\n"
    "xtal_trim=40\n"
    "wifi_coex_time_gap=3\n"
    "ap_coop_mode=1\n"
    "alternate_pulse_shape=5\n"
    "wifi_coex_min_spacing=7\n";

/* The reserved bytes from offset 39 on are zero. */
static const uint8_t kBlock[TARNIX_UWB_PARAMS_SIZE] = {
    0x7E, 0xD3, 0x00, 0x02, 0x40, 0x20, 0x40, 0x10, 0xAA, 0xBB, 0xCC, 0xDD, 0x07,
    0x08, 0x22, 0x11, 0x22, 0x33, 0x44, 0x05, 0x06, 0x21, 0x00, 0x00, 0x00, 0x00,
    0x14, 0x28, 0x00, 0x00, 0x00, 0x03, 0x01, 0x0C, 0x05, 0x07, 0x01, 0x02, 0x04};

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
  memset(memory, UNTOUCHED, sizeof(memory));
  memset(expected, UNTOUCHED, sizeof(expected));
  memcpy(expected + GUARD, kBlock, count);
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
