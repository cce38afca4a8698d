// SPDX-License-Identifier: Apache-2.0
// Times whole loads of the corpora beside the floor.
//
//   load_benchmark LIBRARY CORPORA [options of Google Benchmark]
#include <benchmark/benchmark.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <string>

#include "benchmarks/device_doubles.h"
#include "benchmarks/floor.h"
#include "benchmarks/library_load.h"

namespace {

constexpr const char* kCorpora[] = {"typical", "commented", "keys", "noise"};

[[noreturn]] void fail(const std::string& reason) {
  std::fprintf(stderr, "load_benchmark: %s\n", reason.c_str());
  std::exit(2);
}

void enter(const std::string& folder) {
  if (chdir(folder.c_str()) != 0) fail("no folder " + folder);
}

// The corpora come third among the library's defaults.
void expectNoOtherPathFile() {
  for (const char* const file : {"/vendor/etc/uwb_calib_paths.conf", "/vendor/etc/calib_paths"}) {
    if (access(file, F_OK) == 0) fail(std::string(file) + " would be loaded instead");
  }
}

void timeLoad(benchmark::State& state, const std::string& folder, Load load, bool formats) {
  enter(folder);
  formatLog(formats);
  uint8_t block[TARNIX_UWB_PARAMS_SIZE];
  if (load(block, sizeof(block)) != sizeof(block)) fail("no block of " + folder);
  while (state.KeepRunning()) benchmark::DoNotOptimize(load(block, sizeof(block)));
}

void timeFloor(benchmark::State& state, const std::string& folder) {
  enter(folder);
  Floor floor;
  while (state.KeepRunning()) benchmark::DoNotOptimize(floor.readAll());
}

void registerCorpus(const std::string& corpora, const std::string& corpus, Load load) {
  const auto add = [&](const std::string& name, auto time, auto... arguments) {
    benchmark::RegisterBenchmark((corpus + "/" + name).c_str(), time, corpora + "/" + corpus,
                                 arguments...);
  };
  add("floor", timeFloor);
  add("library", timeLoad, load, false);
  add("library, log formatted", timeLoad, load, true);
}

}  // namespace

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  if (argc != 3) fail("usage: load_benchmark LIBRARY CORPORA [options of Google Benchmark]");
  expectNoOtherPathFile();
  const Load load = openLibrary(argv[1]);
  for (const char* const corpus : kCorpora) registerCorpus(argv[2], corpus, load);
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
}
