# SPDX-License-Identifier: Apache-2.0
"""The replay protocol: commands that set up and start loads, and the answers to them.

    root DIR CWD      DIR on the host becomes '/', CWD inside it the caller's directory
    set KEY VALUE     sets a property; an empty value unsets it
    load CAPACITY     one load with a buffer of CAPACITY bytes

Each load is answered by its `log PRIORITY TEXT` lines and `result N HEX`, or `exception WHAT`;
`overrun OFFSET` tells of a byte that was changed after the first N. Fields are separated by one
tab; every byte outside 0x20..0x7e and the backslash is written as \\xNN.
"""

import os
import re
import subprocess
import tempfile
from dataclasses import dataclass, field

import calibration_model

ESCAPED = re.compile(rb"\\x([0-9a-fA-F]{2})")
TO_ESCAPE = re.compile(rb"[^\x20-\x7e]|\\")


def escape(text):
    return TO_ESCAPE.sub(lambda match: b"\\x%02x" % match[0][0], text).decode("ascii")


def unescape(text):
    raw = text if isinstance(text, bytes) else text.encode("ascii")
    return ESCAPED.sub(lambda match: bytes([int(match[1], 16)]), raw)


@dataclass
class Answer:
    """What one load did: its log, the number and the bytes it gave, and whatever went wrong."""

    log: list = field(default_factory=list)
    count: int = 0
    data: bytes = b""
    faults: list = field(default_factory=list)

    def log_lines(self):
        return [f"{priority} {escape(text)}" for priority, text in self.log]

    def block_lines(self):
        return [f"{self.count} bytes", *calibration_model.hex_rows(self.data), *self.faults]


def parse_answers(output):
    """The answers in a program's output; one that was cut short is left out."""
    answers = []
    answer = Answer()
    ended = False
    for line in output.splitlines():
        kind, *fields = line.split(b"\t")
        if kind == b"overrun" and ended:
            answers[-1].faults.append(f"overrun {fields[0].decode()}")
            continue
        if kind == b"log":
            answer.log.append((int(fields[0]), unescape(fields[1])))
            if len(fields) > 2:
                answer.faults.append("a log line with a tag")
        elif kind == b"overrun":
            answer.faults.append(f"overrun {fields[0].decode()}")
        elif kind == b"exception":
            answer.faults.append(f"exception {escape(unescape(fields[0]))}")
        elif kind == b"result":
            answer.count = int(fields[0])
            answer.data = bytes.fromhex(fields[1].decode()) if len(fields) > 1 else b""
        else:
            answer.faults.append(f"unknown answer {escape(line)}")
        ended = kind in (b"result", b"exception")
        if ended:
            answers.append(answer)
            answer = Answer()
    return answers


class Run:
    """A process of the program that works through the commands while the caller goes on."""

    def __init__(self, program, commands):
        self._name = program[0]
        self._output = tempfile.TemporaryFile()
        self._errors = tempfile.TemporaryFile()
        with tempfile.TemporaryFile() as file:
            file.write("".join(command + "\n" for command in commands).encode("ascii"))
            file.seek(0)
            self._process = subprocess.Popen(
                program, stdin=file, stdout=self._output, stderr=self._errors
            )

    def finish(self):
        """The answers, and what went wrong with the program; empty when nothing did."""
        code = self._process.wait()
        with self._output, self._errors:
            self._output.seek(0)
            self._errors.seek(0)
            answers = parse_answers(self._output.read())
            errors = self._errors.read().decode(errors="replace")
        return answers, f"{self._name} ended with {code}\n{errors}" if code else ""


def predict(commands, stdlib):
    """The answers that the model gives to the same commands."""
    answers = []
    tree = None
    properties = {}
    for command in commands:
        kind, *fields = command.split("\t")
        if kind == "root":
            cwd = unescape(fields[1]) if len(fields) > 1 else b"/"
            tree = calibration_model.FileTree(unescape(fields[0]), cwd)
        elif kind == "set":
            properties[unescape(fields[0])] = unescape(fields[1])
        elif kind == "load":
            load = calibration_model.Load(tree, properties, int(fields[0]), stdlib)
            answers.append(Answer(load.log, load.result, load.written))
        else:
            raise ValueError(f"no such command: {command}")
    return answers


def root_command(directory, cwd=b"/"):
    return f"root\t{escape(os.fsencode(directory))}\t{escape(cwd)}"


def set_command(key, value):
    return f"set\t{escape(key)}\t{escape(value)}"
