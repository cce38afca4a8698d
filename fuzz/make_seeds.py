# SPDX-License-Identifier: Apache-2.0
"""Makes the fuzzers' first inputs from the golden scenarios and the example tree.

    python3 make_seeds.py OUTPUT_FOLDER

writes one folder per fuzzer. README.md has the form of each one's input.
"""

import os
import re
import sys

PROJECT = os.path.join(os.path.dirname(os.path.abspath(__file__)), os.pardir)
PATH_FILES = ("uwb_calib_paths.conf", "calib_paths")

# Trees for the grammar's fuzzer: a group is NAME ID TAG COUNT and its nodes, a node KIND and then a
# group's bytes, or NAME ID TARGET for a parameter. Names are positions in the fuzzer's list.
TREES = {
    "parameters": bytes([0, 0, 0, 3, 0, 1, 0, 0, 1, 2, 0, 0, 2, 3, 0, 0]),
    "text_and_unbound": bytes([0, 0, 0, 2, 3, 1, 0, 0, 0, 17, 0, 3]),
    "numbered_groups": bytes([0, 0, 0, 2, 4, 1, 1, 7, 1, 0, 17, 1, 0, 4, 1, 3, 7, 1, 2, 17, 1, 0]),
    "nested_groups": bytes([1, 1, 9, 1, 4, 1, 0, 9, 1, 4, 1, 0, 9, 1, 4, 0, 0, 9, 1, 3, 1, 0, 0]),
    "empty_names": bytes([0, 0, 0, 3, 4, 0, 0, 1, 1, 0, 0, 0, 0, 1, 0, 0, 0, 2, 5, 0, 0]),
    "same_names": bytes([0, 0, 0, 3, 0, 1, 0, 0, 1, 1, 0, 0, 4, 1, 0, 1, 0]),
}
TEXTS = {
    "values": b"a=1\naa=0x1F\nab=4294967295\nport=017 ; note\n",
    "limits": b"[CCC]a=255\naa=65535\n[CCC] ab=1\n[CCC][CCC]port=1\n",
    "groups": b"a.port=5\na0.port=1\na12.port=2\na 3.port=3\na.a..a=word\n",
    "errors": b"a=300\naa=70000\nab=x\na256.port=1\n",
    "comments": b"# a=1\n// aa=2\n;ab=3\n[CCC]a=4\n [CCC] a=5\na=6 // note\n\n=7\n.=8\n",
}


def escaped_bytes(text):
    return re.sub(rb"\\x(..)", lambda m: bytes.fromhex(m[1].decode()), text.encode())


def read(path):
    with open(path, "rb") as file:
        return file.read()


def properties_of(steps):
    """The country code and the path property at the scenario's first load."""
    values = {}
    for step in steps.splitlines():
        kind, *fields = step.split("\t")
        if kind == "load":
            break
        if kind == "set":
            values[fields[0].rsplit(".", 1)[1]] = escaped_bytes("".join(fields[1:]))
    return values.get("country_code", b""), values.get("calibrationpaths", b"")


def files_of(root):
    """The tree's files, as paths inside the tree and contents."""
    for folder, _, names in sorted(os.walk(root)):
        for name in sorted(names):
            path = os.path.join(folder, name)
            if os.path.isfile(path) and not os.path.islink(path):
                yield os.fsencode(path[len(root) :]), read(path)


def devices():
    """A name, the two properties and the files of each tree."""
    example = os.path.join(PROJECT, "examples")
    yield "example", (b"US", b""), list(files_of(example))
    scenarios = os.path.join(PROJECT, "tests", "scenarios")
    for scenario in sorted(os.listdir(scenarios)):
        steps = os.path.join(scenarios, scenario, "steps")
        if os.path.exists(steps):
            properties = properties_of(read(steps).decode())
            for root in ("root", "root2", "root3"):
                files = list(files_of(os.path.join(scenarios, scenario, root)))
                if files:
                    yield f"{scenario}_{root}", properties, files


def seeds():
    """Fuzzer, name and bytes of every first input."""
    for name, (country, path_property), files in devices():
        parts = [country, path_property] + [path + b"\n" + text for path, text in files]
        yield "load", name, bytes([82]) + b"\xff".join(parts)
        for number, (path, text) in enumerate(files):
            if path.endswith(tuple(os.fsencode(f) for f in PATH_FILES)) or path == path_property:
                yield "path_file", f"{name}_{number}", country + b"\n" + text
            else:
                yield "calibration_text", f"{name}_{number}", text
    for tree_name, tree in TREES.items():
        for text_name, text in TEXTS.items():
            yield "grammar", f"{tree_name}_{text_name}", bytes([len(tree)]) + tree + text


def blocks():
    """A name and bytes of every block that the scenarios and the command's tests know."""
    scenarios = os.path.join(PROJECT, "tests", "scenarios")
    for scenario in sorted(os.listdir(scenarios)):
        path = os.path.join(scenarios, scenario, "expected_block")
        if os.path.exists(path):
            # Rows of an offset and bytes, behind a head for each load.
            rows = re.findall(rb"^ *[0-9]+  ((?:[0-9a-f]{2} ?)+)$", read(path), re.M)
            yield scenario, bytes.fromhex(b" ".join(rows).decode())[:82]
    yield "hex", read(os.path.join(PROJECT, "tests", "tools", "golden", "build_hex"))
    yield "spaced_hex", b"0xDA, 0x35, 0x00,\n00:0c da35"


def main():
    if len(sys.argv) != 2:
        sys.exit(__doc__)
    every = [*seeds(), *(("block", name, data) for name, data in blocks())]
    for fuzzer, name, data in every:
        folder = os.path.join(sys.argv[1], fuzzer)
        os.makedirs(folder, exist_ok=True)
        with open(os.path.join(folder, name), "wb") as file:
            file.write(data)


if __name__ == "__main__":
    main()
