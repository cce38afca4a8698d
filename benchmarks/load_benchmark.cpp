// SPDX-License-Identifier: Apache-2.0
// Times whole loads of the corpora by every contender, beside the floor. All blocks are compared
// before anything is timed.
//
//   load_benchmark LIBRARY CORPORA [options of Google Benchmark]
#include <benchmark/benchmark.h>
#include <unistd.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "benchmarks/contender.h"
#include "benchmarks/device_doubles.h"
#include "benchmarks/floor.h"
#include "benchmarks/library_load.h"
#include "include/tarnix_uwb_params_nfcc.h"

namespace {

using Block = std::array<uint8_t, TARNIX_UWB_PARAMS_SIZE>;

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

Block blockOf(const Contender& contender) {
  Block block{};
  if (contender.load(block.data()) != block.size()) fail(contender.name + " makes no block");
  return block;
}

const Contender& library() {
  for (const Contender& contender : contenders()) {
    if (contender.name == "library") return contender;
  }
  fail("the library does not contend");
}

void compareBlocks(const std::string& corpus) {
  const Block expected = blockOf(library());
  for (const Contender& contender : contenders()) {
    if (blockOf(contender) != expected) fail(contender.name + " makes another block of " + corpus);
  }
}

void timeLoad(benchmark::State& state, const std::string& folder, Contender::Load load,
              bool formats) {
  enter(folder);
  formatLog(formats);
  Block block;
  while (state.KeepRunning()) benchmark::DoNotOptimize(load(block.data()));
}

void timeFloor(benchmark::State& state, const std::string& folder) {
  enter(folder);
  Floor floor;
  while (state.KeepRunning()) benchmark::DoNotOptimize(floor.readAll());
}

void registerCorpus(const std::string& corpora, const std::string& corpus) {
  const std::string folder = corpora + "/" + corpus;
  const auto add = [&](const std::string& name, auto... arguments) {
    benchmark::RegisterBenchmark((corpus + "/" + name).c_str(), arguments...);
  };
  enter(folder);
  compareBlocks(corpus);
  add("floor", timeFloor, folder);
  for (const Contender& contender : contenders()) {
    add(contender.name, timeLoad, folder, contender.load, false);
  }
  add("library, log formatted", timeLoad, folder, library().load, true);
}

}  // namespace

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  if (argc != 3) fail("usage: load_benchmark LIBRARY CORPORA [options of Google Benchmark]");
  expectNoOtherPathFile();
  openLibrary(argv[1]);
  for (const char* const corpus : kCorpora) registerCorpus(argv[2], corpus);
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
}
