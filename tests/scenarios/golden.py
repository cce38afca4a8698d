# SPDX-License-Identifier: Apache-2.0
"""Compares the scenarios' expected logs and blocks with what a load really does.

    replay='build/host/tests/load_replay build/host/libtarnix_uwb_params_nfcc.so'
    python3 tests/scenarios/golden.py --replay "$replay" [SCENARIO...]

runs the scenarios through the library and through the model, here from the project's root. Without
--replay only the model is compared, which still finds an expectation that has gone stale. --update
rewrites the expected files, always from the model: the library is what is tested.
"""

import argparse
import difflib
import os
import shlex
import sys

HERE = os.path.dirname(os.path.abspath(__file__))
sys.path.insert(0, os.path.join(HERE, os.pardir, "model"))

import replay  # noqa: E402  (found through the line above)

EXPECTED = ("expected_log", "expected_block")


def scenario_names():
    return sorted(n for n in os.listdir(HERE) if os.path.exists(os.path.join(HERE, n, "steps")))


def read_text(path):
    if not os.path.exists(path):
        return ""
    with open(path, encoding="ascii") as file:
        return file.read()


def read_steps(name):
    """The scenario's commands, with its trees found below its folder."""
    commands = []
    for step in read_text(os.path.join(HERE, name, "steps")).splitlines():
        kind, *fields = step.split("\t")
        if kind == "root":
            folder = replay.escape(os.fsencode(os.path.join(HERE, name)))
            fields[0] = f"{folder}/{fields[0]}"
        commands.append("\t".join([kind, *fields]))
    return commands


def render(answers, lines_of):
    """The lines of all loads; where there are several, a line before each one's names it."""
    lines = []
    for number, answer in enumerate(answers, start=1):
        if len(answers) > 1:
            lines.append(f"-- load {number}")
        lines += lines_of(answer)
    return "".join(line + "\n" for line in lines)


def files_from(answers):
    return {
        "expected_log": render(answers, replay.Answer.log_lines),
        "expected_block": render(answers, replay.Answer.block_lines),
    }


def difference(name, files, whose):
    """A unified difference between the expected files and what was found; empty when none."""
    text = []
    for file in EXPECTED:
        expected = read_text(os.path.join(HERE, name, file)).splitlines()
        found = files[file].splitlines()
        text += difflib.unified_diff(
            expected, found, f"{name}/{file}", f"{name} from the {whose}", lineterm=""
        )
    return "\n".join(text)


def predictions(commands):
    """What the model says with either C++ library: the scenarios keep to spellings they share."""
    return {
        f"model with {stdlib}": files_from(replay.predict(commands, stdlib))
        for stdlib in ("libstdc++", "libc++")
    }


def check(name, program):
    commands = read_steps(name)
    trouble = ""
    found = predictions(commands)
    if program:
        answers, trouble = replay.Run(program, commands).finish()
        found["library"] = files_from(answers)
    differences = [difference(name, files, whose) for whose, files in found.items()]
    report = [text for text in [*differences, trouble] if text]
    print(f"{'FAIL' if report else 'ok  '} {name}")
    if report:
        print("\n".join(report))
    return not report


def update(name):
    files = predictions(read_steps(name))["model with libstdc++"]
    for file in EXPECTED:
        with open(os.path.join(HERE, name, file), "w", encoding="ascii", newline="\n") as out:
            out.write(files[file])


def main():
    parser = argparse.ArgumentParser(
        description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter
    )
    parser.add_argument("--replay", metavar="CMD", help="the replay program with its arguments")
    parser.add_argument("--update", action="store_true", help="rewrite the expected files")
    parser.add_argument("scenario", nargs="*", help="the scenarios to run; all by default")
    options = parser.parse_args()

    known = scenario_names()
    names = [name.rstrip("/") for name in options.scenario] or known
    for name in names:
        if name not in known:
            parser.error(f"no such scenario: {name}")
    if options.update:
        for name in names:
            update(name)
    program = shlex.split(options.replay) if options.replay else None
    passed = sum(check(name, program) for name in names)
    print(f"{passed} passed, {len(names) - passed} failed")
    return 0 if passed == len(names) else 1


if __name__ == "__main__":
    sys.exit(main())
