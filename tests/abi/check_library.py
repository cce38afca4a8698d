# SPDX-License-Identifier: Apache-2.0
"""Checks how the shared library looks to its loader.

    python3 check_library.py --readelf readelf path/to/libtarnix_uwb_params_nfcc.so

It defines one name, goes by its own, needs the platform's libraries and the language's run-time
only, and keeps code, constants and stack apart.
"""

import argparse
import fnmatch
import os
import re
import subprocess
import sys
import tempfile

NAME = "libtarnix_uwb_params_nfcc.so"
FUNCTION = "load_uwb_params_from_files"

# The platform's libraries that the code calls; each must be needed, and of others only run-times.
PLATFORM = ["libbase.so*", "liblog.so*", "libz.so*"]
RUN_TIME = [
    "libstdc++.so*", "libc++.so*", "libc++abi.so*", "libc++_shared.so", "libgcc_s.so*",
    "libunwind.so*", "libc.so*", "libm.so*", "libdl.so*", "libpthread.so*", "librt.so*",
    "libatomic.so*", "ld-linux*.so*", "ld64.so*", "libasan.so*", "libubsan.so*",
    "libclang_rt.*.so*",
]  # fmt: skip


class Library:
    def __init__(self, readelf, path):
        self._command = [readelf, "--wide"]
        self._path = path
        self.header = self._read("--file-header")
        self.dynamic = self._read("--dynamic")
        self.segments = self._read("--program-headers")
        self.symbols = self._read("--dyn-syms")

    def _read(self, what):
        return subprocess.run(
            [*self._command, what, self._path],
            check=True, stdout=subprocess.PIPE, text=True, env={"LC_ALL": "C"},
        ).stdout  # fmt: skip

    def entries(self, tag):
        """The values of a tag of the dynamic section."""
        return re.findall(rf"\({tag}\)\s+(.*\S)", self.dynamic)

    def names(self, tag):
        return [re.search(r"\[(.*)\]", entry).group(1) for entry in self.entries(tag)]

    def defined(self):
        """Of every name that others can find type, binding, visibility and name."""
        rows = [line.split() for line in self.symbols.splitlines()]
        rows = [row for row in rows if len(row) >= 8 and re.fullmatch(r"\d+:", row[0])]
        rows = [row for row in rows if row[4] != "LOCAL" and row[6] != "UND"]
        return [(row[3], row[4], row[5], row[7]) for row in rows]

    def segment_flags(self, name):
        """The flags of a program header, or nothing when it is missing."""
        found = re.search(rf"^\s+{name}\s+(?:0x\S+\s+){{5}}([RWE ]+?)\s+0x", self.segments, re.M)
        return found.group(1).replace(" ", "") if found else None


    def machine(self):
        """The class and the processor that the file is for."""
        keys = ("Class", "Machine")
        return [re.search(rf"^\s+{key}:\s+(\S+)", self.header, re.M)[1] for key in keys]


def stripped_size(strip, path):
    with tempfile.NamedTemporaryFile() as stripped:
        subprocess.run([strip, "-o", stripped.name, path], check=True)
        return os.path.getsize(stripped.name)


def matches(name, patterns):
    return any(fnmatch.fnmatchcase(name, pattern) for pattern in patterns)


def problems(library):
    if library.defined() != [("FUNC", "GLOBAL", "DEFAULT", FUNCTION)]:
        yield f"defines {library.defined()}, not {FUNCTION} alone"
    if library.names("SONAME") != [NAME]:
        yield f"goes by {library.names('SONAME')}, not by {NAME}"
    needed = library.names("NEEDED")
    for pattern in PLATFORM:
        if not any(matches(name, [pattern]) for name in needed):
            yield f"does not need {pattern}"
    for name in needed:
        if not matches(name, PLATFORM + RUN_TIME):
            yield f"needs {name}"
    if library.segment_flags("GNU_RELRO") is None:
        yield "has no read-only relocations"
    flags = " ".join(library.entries("FLAGS") + library.entries("FLAGS_1"))
    if not re.search(r"\b(BIND_)?NOW\b", flags) and not library.entries("BIND_NOW"):
        yield "is bound lazily"
    if library.segment_flags("GNU_STACK") != "RW":
        yield f"has a stack with the flags {library.segment_flags('GNU_STACK')}"
    if library.entries("TEXTREL") or "TEXTREL" in flags:
        yield "has relocations in its code"


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--readelf", default="readelf", help="the readelf of the target")
    parser.add_argument("--machine", nargs=2, help="the file's class and processor")
    parser.add_argument("--strip", help="prints the size without what this program strips")
    parser.add_argument("--largest", type=int, help="the largest such size")
    parser.add_argument("library")
    arguments = parser.parse_args()
    library = Library(arguments.readelf, arguments.library)
    found = list(problems(library))
    if arguments.machine and library.machine() != arguments.machine:
        found.append(f"is for {library.machine()}")
    if arguments.strip:
        size = stripped_size(arguments.strip, arguments.library)
        print(f"stripped: {size} bytes")
        if arguments.largest and size > arguments.largest:
            found.append(f"is larger than {arguments.largest} bytes")
    for problem in found:
        print(f"{arguments.library} {problem}")
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main())
