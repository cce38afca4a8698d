# SPDX-License-Identifier: Apache-2.0
"""Compares the library with the model over random trees.

    replay='build/host/tests/load_replay build/host/libtarnix_uwb_params_nfcc.so'
    python3 tests/model/compare.py --replay "$replay" --count 5000 --seed 1

from the project's root. Result, bytes and the whole log of every load are compared. The first case
that differs is printed whole, with the command that runs it alone, and its trees are kept. The seed
is 1 unless UWB_TEST_SEED or --seed gives another.
"""

import argparse
import difflib
import os
import shlex
import shutil
import sys
import tempfile

import random_trees
import replay

BATCH = 250
SUCCESS = b"Valid calibration was parsed"


class Comparison:
    def __init__(self, program, seed, stdlib):
        self._program = program
        self._seed = seed
        self._stdlib = stdlib
        self.cases = self.second_trees = self.valid = self.loads = self.failed = 0

    def run(self, numbers):
        for at in range(0, len(numbers), BATCH):
            folder = tempfile.mkdtemp(prefix="uwb-trees-", dir=fast_directory())
            try:
                self._run_batch(numbers[at : at + BATCH], folder)
            finally:
                shutil.rmtree(folder)

    def _run_batch(self, numbers, folder):
        cases = [random_trees.Case(self._seed, number) for number in numbers]
        commands = [case.write(os.path.join(folder, str(case.number))) for case in cases]
        predictions = None
        while cases:
            # The program and the model work at the same time.
            process = replay.Run(self._program, [c for steps in commands for c in steps])
            if predictions is None:
                predictions = [replay.predict(steps, self._stdlib) for steps in commands]
            answers, trouble = process.finish()
            done = 0
            for case, steps, expected in zip(cases, commands, predictions):
                found, answers = answers[: case.loads()], answers[case.loads() :]
                done += 1
                at_fault = trouble if len(found) < case.loads() or done == len(cases) else ""
                self._check(case, steps, expected, found, at_fault, folder)
                if len(found) < case.loads():
                    break  # The program ended here: the others go to a new one.
            cases, commands, predictions = cases[done:], commands[done:], predictions[done:]

    def _check(self, case, steps, expected, found, trouble, folder):
        self.cases += 1
        self.second_trees += len(case.trees) - 1
        self.loads += case.loads()
        self.valid += any(text.startswith(SUCCESS) for a in expected for _, text in a.log)
        if expected == found and not trouble:
            return
        self.failed += 1
        if self.failed == 1:
            self._show(case, steps, expected, found, trouble, folder)

    def _show(self, case, steps, expected, found, trouble, folder):
        kept = tempfile.mkdtemp(prefix=f"uwb-case-{case.number}-")
        case_folder = os.path.join(folder, str(case.number))
        kept_folder = os.path.join(kept, "case")
        shutil.copytree(case_folder, kept_folder, symlinks=True)
        print(f"case {case.number} differs; its trees are kept in {kept_folder}; to run it alone:")
        print(self._command_for(case))
        print("\n".join(case.listing()))
        print("\n".join(step.replace(case_folder, kept_folder) for step in steps))
        print("\n".join(difference(expected, found)))
        if trouble:
            print(trouble)

    def _command_for(self, case):
        return shlex.join(
            [sys.executable, os.path.abspath(__file__), "--replay", shlex.join(self._program)]
            + ["--stdlib", self._stdlib, "--seed", self._seed, "--case", str(case.number)]
        )


def fast_directory():
    """Where thousands of short-lived files cost least, unless TMPDIR says otherwise."""
    memory = "/dev/shm"
    if "TMPDIR" in os.environ or not os.access(memory, os.W_OK):
        return None
    return memory


def answer_lines(answers):
    lines = []
    for number, answer in enumerate(answers, start=1):
        lines += [f"-- load {number}", *answer.log_lines(), *answer.block_lines()]
    return lines


def difference(expected, found):
    return difflib.unified_diff(
        answer_lines(expected), answer_lines(found), "model", "library", n=1000, lineterm=""
    )


def main():
    parser = argparse.ArgumentParser(
        description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter
    )
    parser.add_argument("--replay", metavar="CMD", required=True, help="the replay program")
    parser.add_argument("--count", type=int, default=5000, help="number of cases")
    parser.add_argument("--seed", default=os.environ.get("UWB_TEST_SEED", "1"))
    parser.add_argument("--case", type=int, help="only this case")
    parser.add_argument("--stdlib", choices=("libstdc++", "libc++"), default="libstdc++")
    options = parser.parse_args()

    comparison = Comparison(shlex.split(options.replay), options.seed, options.stdlib)
    numbers = range(options.count) if options.case is None else [options.case]
    comparison.run(numbers)
    print(
        f"seed {options.seed}: {comparison.cases} trees and {comparison.second_trees} to change to,"
        f" {comparison.valid} valid, {comparison.loads} loads"
    )
    print(f"{comparison.cases - comparison.failed} passed, {comparison.failed} failed")
    return 1 if comparison.failed else 0


if __name__ == "__main__":
    sys.exit(main())
