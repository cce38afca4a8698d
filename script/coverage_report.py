# SPDX-License-Identifier: Apache-2.0
"""Prints what the tests leave out: a part of script/coverage.

    python3 coverage_report.py LCOV_LINES LLVM_COV_JSON

Exit status: 0 when library and command reach the shares below, 1 otherwise.
"""

import functools
import json
import os
import sys

# Folders, and the least share of lines, outcomes and conditions in percent.
PARTS = {
    "library": (("grammar/", "schema/", "output/", "loader/"), (100, 100, 100)),
    "command": (("tools/",), (100, 98, 95)),
}

# Conditions that cannot have one of their outcomes: file, line of code, which of its conditions.
EXPLAINED = {
    # A value that cannot be read throws.
    ("grammar/ast_equal.cpp", "return readName(input) && child.parse(input);", 2),
}


@functools.cache
def code_of(path):
    with open(path, encoding="utf-8") as source:
        return ["", *map(str.strip, source)]


def compile_time_lines(functions):
    """Places of the constexpr functions that the compiler alone executes."""
    for function in functions:
        path = os.path.relpath(function["filenames"][0])
        first, _, last = function["regions"][0][:3]
        if function["count"] == 0 and code_of(path)[first].startswith("constexpr "):
            yield from (f"{path}:{line}" for line in range(first, last + 1))


def lines(lcov, functions):
    """Place and execution of every line of code."""
    skipped = set(compile_time_lines(functions))
    for record in lcov:
        name, _, value = record.strip().partition(":")
        if name == "SF":
            path = os.path.relpath(value)
        elif name == "DA":
            line, count = value.split(",")[:2]
            if f"{path}:{line}" not in skipped:
                yield f"{path}:{line}", int(count) > 0


def outcomes(files):
    """Place and execution of every outcome of a condition."""
    for file in files:
        for line, column, _, _, true, false, *_ in file["branches"]:
            place = f"{os.path.relpath(file['filename'])}:{line}:{column}"
            yield from ((f"{place} is true", true > 0), (f"{place} is false", false > 0))


def conditions(files):
    """Place of every condition of a decision, and whether it was shown to decide alone."""
    for file in files:
        path = os.path.relpath(file["filename"])
        for line, column, *record in file.get("mcdc_records", []):
            alone = next(part for part in record if isinstance(part, list))
            for number, shown in enumerate(alone, start=1):
                if (path, code_of(path)[line], number) not in EXPLAINED:
                    yield f"{path}:{line}:{column} condition {number}", shown


def main():
    with open(sys.argv[2], encoding="utf-8") as file:
        counts = json.load(file)["data"][0]
    with open(sys.argv[1], encoding="utf-8") as lcov:
        kinds = {
            "lines executed": list(lines(lcov, counts["functions"])),
            "outcomes of conditions seen": list(outcomes(counts["files"])),
            "conditions shown to decide alone": list(conditions(counts["files"])),
        }
    complete = True
    for part, (folders, shares) in PARTS.items():
        for (what, found), share in zip(kinds.items(), shares):
            # The copies of a template count as one.
            places = {}
            for place, done in found:
                if place.startswith(folders):
                    places[place] = places.get(place, False) or done
            left = [place for place, done in places.items() if not done]
            done = len(places) - len(left)
            print(f"{part}: {done} of {len(places)} {what} ({share} % asked)")
            for place in left:
                print(f"  never: {place}")
            complete = complete and done > 0 and 100 * done >= share * len(places)
    return 0 if complete else 1


if __name__ == "__main__":
    sys.exit(main())
