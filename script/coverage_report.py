# SPDX-License-Identifier: Apache-2.0
"""Prints what tests leave unexecuted: a part of script/coverage.

    python3 coverage_report.py GCOVR_JSON LLVM_COV_JSON

Exit status: 0 when nothing is left, 1 otherwise.
"""

import json
import os
import sys

FOLDERS = ("grammar", "schema", "output", "loader")


def read(path):
    with open(path, encoding="utf-8") as file:
        return json.load(file)


def library_path(path):
    """The path from the project's root, or None when the file is not the library's."""
    relative = os.path.relpath(path, os.getcwd())
    return relative if relative.split(os.sep)[0] in FOLDERS else None


def lines(gcovr):
    """Place and count of every line of code."""
    for file in gcovr["files"]:
        for line in file["lines"]:
            if not line.get("gcovr/noncode"):
                yield f"{file['file']}:{line['line_number']}", line["count"]


def is_for_the_compiler(path, line):
    """True for a function that the compiler executes itself."""
    with open(path, encoding="utf-8") as file:
        return file.readlines()[line - 1].startswith("constexpr ")


def functions(llvm_cov):
    """Place and count of every function; of a template, the copies together."""
    counts = {}
    for function in llvm_cov["data"][0]["functions"]:
        path = library_path(function["filenames"][0])
        line = function["regions"][0][0]
        if path and not is_for_the_compiler(path, line):
            place = f"{path}:{line}"
            counts[place] = counts.get(place, 0) + function["count"]
    return counts.items()


def outcomes(llvm_cov):
    """Place and count of every outcome of a condition; of a template, the copies together."""
    counts = {}
    for file in llvm_cov["data"][0]["files"]:
        path = library_path(file["filename"])
        for line, column, _, _, true, false, *_ in file["branches"] if path else []:
            for outcome, count in (("true", true), ("false", false)):
                place = f"{path}:{line}:{column} {outcome}"
                counts[place] = counts.get(place, 0) + count
    return counts.items()


def main():
    gcovr, llvm_cov = map(read, sys.argv[1:])
    complete = True
    for name, counted in (
        ("lines", lines(gcovr)),
        ("functions", functions(llvm_cov)),
        ("outcomes of conditions", outcomes(llvm_cov)),
    ):
        counted = list(counted)
        left = [place for place, count in counted if count == 0]
        print(f"{name}: {len(counted) - len(left)} of {len(counted)} executed")
        for place in left:
            print(f"  never: {place}")
        complete = complete and counted and not left
    return 0 if complete else 1


if __name__ == "__main__":
    sys.exit(main())
