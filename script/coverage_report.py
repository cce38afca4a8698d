# SPDX-License-Identifier: Apache-2.0
"""Prints what the tests leave out: a part of script/coverage.

    python3 coverage_report.py LCOV_LINES LLVM_COV_JSON

Exit status: 0 when library and command reach the shares below, 1 otherwise.
"""

import json
import os
import sys

# Folders, and the least share of lines, outcomes and conditions in percent.
PARTS = {
    "library": (("grammar", "schema", "output", "loader"), (100, 100, 100)),
    "command": (("tools",), (100, 98, 95)),
}

# Conditions that cannot have one of their outcomes: file, line of code, which of its conditions.
EXPLAINED = {
    # A value that cannot be read throws.
    ("grammar/ast_equal.cpp", "return readName(input) && child.parse(input);", 2),
}


def path_below(folders, path):
    """The path from the project's root, or None when the file is in none of the folders."""
    relative = os.path.relpath(path, os.getcwd())
    return relative if relative.split(os.sep)[0] in folders else None


def code_at(path, line):
    with open(path, encoding="utf-8") as source:
        return source.readlines()[line - 1].strip()


def compile_time_lines(functions, folders):
    """Places of the constexpr functions that the compiler alone executes."""
    for function in functions:
        path = path_below(folders, function["filenames"][0])
        first, _, last = function["regions"][0][:3]
        if path and function["count"] == 0 and code_at(path, first).startswith("constexpr "):
            yield from (f"{path}:{line}" for line in range(first, last + 1))


def lines(lcov, functions, folders):
    """Place and execution of every line of code."""
    path = None
    skipped = set(compile_time_lines(functions, folders))
    for record in lcov:
        name, _, value = record.strip().partition(":")
        if name == "SF":
            path = path_below(folders, value)
        elif name == "DA" and path:
            line, count = value.split(",")[:2]
            if f"{path}:{line}" not in skipped:
                yield f"{path}:{line}", int(count) > 0


def outcomes(files, folders):
    """Place and execution of every outcome of a condition."""
    for file in files:
        path = path_below(folders, file["filename"])
        for line, column, _, _, true, false, *_ in file["branches"] if path else []:
            yield f"{path}:{line}:{column} is true", true > 0
            yield f"{path}:{line}:{column} is false", false > 0


def conditions(files, folders):
    """Place of every condition of a decision, and whether it was shown to decide alone."""
    for file in files:
        path = path_below(folders, file["filename"])
        for record in file.get("mcdc_records", []) if path else []:
            alone = next(part for part in record if isinstance(part, list))
            for number, shown in enumerate(alone, start=1):
                if (path, code_at(path, record[0]), number) not in EXPLAINED:
                    yield f"{path}:{record[0]}:{record[1]} condition {number}", shown


def together(places):
    """The copies of a template count as one."""
    merged = {}
    for place, done in places:
        merged[place] = merged.get(place, False) or done
    return merged


def main():
    with open(sys.argv[1], encoding="utf-8") as file:
        lcov = list(file)
    with open(sys.argv[2], encoding="utf-8") as file:
        counts = json.load(file)["data"][0]
    complete = True
    for part, (folders, least) in PARTS.items():
        kinds = (
            ("lines executed", lines(lcov, counts["functions"], folders)),
            ("outcomes of conditions seen", outcomes(counts["files"], folders)),
            ("conditions shown to decide alone", conditions(counts["files"], folders)),
        )
        for (what, places), share in zip(kinds, least):
            places = together(places)
            left = [place for place, done in places.items() if not done]
            done = len(places) - len(left)
            print(f"{part}: {done} of {len(places)} {what} ({share} % asked)")
            for place in left:
                print(f"  never: {place}")
            complete = complete and done > 0 and 100 * done >= share * len(places)
    return 0 if complete else 1


if __name__ == "__main__":
    sys.exit(main())
