#!/usr/bin/env python3
# SPDX-License-Identifier: Apache-2.0
"""Measures loads and prints the figures as tables. See script/benchmark for its use."""

import argparse
import datetime
import json
import os
import pathlib
import platform
import re
import subprocess
import sys

HERE = pathlib.Path(__file__).resolve().parent
COUNTS = HERE / "instructions.txt"
CORPORA = ["typical", "commented", "keys", "noise"]
TOLERANCE = 0.03

# The C library picks its routines by the processor. Without any that not every x86-64 processor
# has, a count is the same on all of them. The copying instructions of newer ones are off in both
# rows: one of them copies any number of bytes and counts as one instruction.
PINS = {
    "plain routines": "-ERMS,-FSRM,-AVX2,-AVX512F,-AVX512VL,-AVX_Fast_Unaligned_Load,-EVEX,-AVX",
    "AVX2 routines": "-ERMS,-FSRM",
}


def fail(message):
    print(f"benchmark: {message}", file=sys.stderr)
    sys.exit(2)


def output_of(*command, **environment):
    """The standard output of a command that succeeds."""
    done = subprocess.run([str(part) for part in command], capture_output=True, text=True,
                          env={**os.environ, **environment})
    if done.returncode != 0:
        fail(f"{command} failed with {done.returncode}\n{done.stdout}{done.stderr}")
    return done.stdout


def print_table(title, columns, rows):
    """Prints rows of cells, the first of each being its name, as a table in Markdown."""
    lines = [["", *columns], *[[str(cell) for cell in row] for row in rows]]
    widths = [max(len(line[i]) for line in lines) for i in range(len(lines[0]))]

    def printed(line):
        cells = [line[0].ljust(widths[0]),
                 *[cell.rjust(width) for cell, width in zip(line[1:], widths[1:])]]
        return "| " + " | ".join(cells) + " |"

    rule = ["-" * widths[0], *["-" * (width - 1) + ":" for width in widths[1:]]]
    print(f"\n{title}\n")
    print("\n".join([printed(lines[0]), "| " + " | ".join(rule) + " |", *map(printed, lines[1:])]))


def toolchain():
    compiler = output_of("g++", "--version").splitlines()[0]
    return f"{compiler}, {' '.join(platform.libc_ver())}, {platform.machine()}"


def print_setup():
    cpu = re.search(r"model name\s*: (.*)", pathlib.Path("/proc/cpuinfo").read_text())
    print(f"Machine   {cpu[1] if cpu else 'unknown processor'}, {os.cpu_count()} processors, "
          f"{platform.system()} {platform.release()}")
    print(f"Date      {datetime.date.today()}")
    print(f"Built by  {toolchain()}; -O2, optimised across files")


class Bench:
    """The built programs and the corpora."""

    def __init__(self, build):
        self.programs = build / "benchmarks"
        self.library = build / "libtarnix_uwb_params_nfcc.so"
        self.empty_library = self.programs / "libempty_library.so"
        self.corpora = build / "corpora"
        output_of(sys.executable, HERE / "make_corpora.py", self.corpora)

    def text_size(self, corpus):
        return (self.corpora / corpus / "calib.conf").stat().st_size

    def measured(self, instrument, corpus, part, library=None, wrapper=(), **environment):
        """The output of the program that measures one part of loading a corpus."""
        program = self.programs / f"measure_{instrument}"
        return output_of(*wrapper, program, library or self.library, self.corpora / corpus, part,
                         **environment)

    def instructions(self, pin, corpus, part="later", library=None):
        log = self.corpora / "callgrind.log"
        self.measured("instructions", corpus, part, library,
                      ("valgrind", "--tool=callgrind", "--instr-atstart=no",
                       "--callgrind-out-file=/dev/null", f"--log-file={log}"),
                      GLIBC_TUNABLES=f"glibc.cpu.hwcaps={PINS[pin]}")
        return int(re.search(r"Collected : (\d+)", log.read_text())[1])

    def heap(self, corpus):
        """The count of allocations of a first load, and the most bytes held at once."""
        return [int(number) for number in self.measured("heap", corpus, "first").split()]

    def system_calls(self):
        log = self.corpora / "strace.log"
        self.measured("system_calls", "typical", "later", wrapper=("strace", "-o", log))
        return log.read_text().split("getppid")[1].count("\n") - 1


def time_of_loads(bench):
    report = json.loads(output_of(
        bench.programs / "load_benchmark", bench.library, bench.corpora,
        "--benchmark_format=json", "--benchmark_repetitions=15", "--benchmark_min_time=0.05",
        "--benchmark_enable_random_interleaving=true",
        "--benchmark_report_aggregates_only=true"))
    units = {"ns": 1e-3, "us": 1, "ms": 1e3}
    return {run["run_name"].split("/repeats")[0]: run["cpu_time"] * units[run["time_unit"]]
            for run in report["benchmarks"] if run["aggregate_name"] == "median"}


def print_times(bench):
    times = time_of_loads(bench)
    rows = [[name, *[f"{times[f'{corpus}/{name}'] / times[f'{corpus}/floor']:.1f}"
                     for corpus in CORPORA]]
            for name in ("library", "library, log formatted")]
    floor = [f"{times[f'{corpus}/floor']:.0f} us" for corpus in CORPORA]
    print_table("Time of a load, as a multiple of opening, reading and closing the same files",
                CORPORA, [*rows, ["those files alone", *floor]])


def print_instructions(bench):
    rows, cold = [], []
    for pin in PINS:
        counts = [bench.instructions(pin, corpus) for corpus in CORPORA]
        per_byte = [f"{count / bench.text_size(corpus):.1f}"
                    for count, corpus in zip(counts[1:], CORPORA[1:])]
        first = bench.instructions(pin, "typical", "first")
        rows.append([pin, f"{counts[0]:,}", f"{first:,}", *per_byte])
        for name, library in (("", None), (", empty library", bench.empty_library)):
            parts = [bench.instructions(pin, "typical", part, library)
                     for part in ("dlopen", "cold")]
            cold.append([pin + name, *[f"{count:,}" for count in parts]])
    print_table("Instructions of a load",
                ["typical", "first call", *[f"{corpus}, per byte" for corpus in CORPORA[1:]]], rows)
    print_table("Instructions of a cold start on 'typical'", ["dlopen", "and the first call"], cold)
    print_growth(bench)


def print_growth(bench):
    pin = next(iter(PINS))
    growth = [bench.instructions(pin, corpus + "10") / bench.instructions(pin, corpus)
              for corpus in CORPORA[1:]]
    print_table("Instructions of 10 MB, as a multiple of those of 1 MB", CORPORA[1:],
                [[pin, *[f"{ratio:.2f}" for ratio in growth]]])


def print_heap(bench):
    allocations = [f"{bench.heap(corpus)[0]:,}" for corpus in CORPORA]
    peaks = [f"{bench.heap(corpus + '10')[1] / bench.text_size(corpus + '10'):.3f}"
             for corpus in CORPORA[1:]]
    print_table("Heap", CORPORA, [
        ["allocations of a load", *allocations],
        ["most held at once, as a multiple of a text of 10 MB", "", *peaks]])


def print_system_calls(bench):
    print(f"\nSystem calls of a load of 'typical': {bench.system_calls()}")


def own_counts(bench):
    pin = next(iter(PINS))
    counts = {corpus: bench.instructions(pin, corpus) for corpus in CORPORA}
    return {**counts, "cold_start": bench.instructions(pin, "typical", "cold")}


def recorded_counts():
    rows = [line.split() for line in COUNTS.read_text().splitlines() if not line.startswith("#")]
    return {name: int(count) for name, count in rows}


def renew(bench):
    lines = ["# Instructions of one load by the library, with plain routines of the C library.",
             "# Compared by script/benchmark --check, written by script/benchmark --renew.",
             f"# {toolchain()}"]
    lines += [f"{name} {count}" for name, count in own_counts(bench).items()]
    COUNTS.write_text("\n".join(lines) + "\n")
    print(COUNTS.read_text(), end="")


def check(bench):
    """Compares the counts with the recorded ones; true when none has grown too much."""
    if platform.machine() != "x86_64":
        print(f"The counts of {COUNTS.name} are those of x86_64: nothing to compare.")
        return True
    counts, recorded = own_counts(bench), recorded_counts()
    grown = [name for name in recorded if counts[name] > recorded[name] * (1 + TOLERANCE)]
    print_table("Instructions of a load by the library", ["recorded", "now", "change"], [
        [name, f"{recorded[name]:,}", f"{counts[name]:,}",
         f"{counts[name] / recorded[name] - 1:+.1%}"] for name in recorded])
    if grown:
        print(f"\nMore than {TOLERANCE:.0%} above {COUNTS.relative_to(HERE.parent)}: "
              f"{', '.join(grown)}.\nFind out why. Where it is worth its price, or where only the "
              "compiler has changed,\nwrite the counts anew with script/benchmark --renew and say "
              "so in the commit.\n"
              f"Counted now with {toolchain()};\nthe file names what it was counted with.")
    return not grown


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--build", type=pathlib.Path, required=True)
    for name in ("time", "instructions", "heap", "syscalls", "all", "check", "renew"):
        parser.add_argument(f"--{name}", action="store_true")
    arguments = parser.parse_args()
    bench = Bench(arguments.build.resolve())
    if arguments.renew:
        renew(bench)
        return 0
    if arguments.check:
        return 0 if check(bench) else 1
    print_setup()
    if arguments.time or arguments.all:
        print_times(bench)
    if arguments.instructions or arguments.all:
        print_instructions(bench)
    if arguments.heap or arguments.all:
        print_heap(bench)
    if arguments.syscalls or arguments.all:
        print_system_calls(bench)
    return 0


if __name__ == "__main__":
    sys.exit(main())
