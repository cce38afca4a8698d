# SPDX-License-Identifier: Apache-2.0
"""Copies of the project in which script/mutants makes its changes and runs the tests."""

import json
import math
import os
import queue
import resource
import shlex
import shutil
import subprocess
import threading

from mutant_changes import FOLDERS, PROJECT, fail, read

WORK = os.path.join(PROJECT, "build", "mutants")
# The tests that notice most come first, after those of the changed file's own folder.
TESTS = (
    "output schema grammar loader scenarios calibration_text_fuzzer_seeds grammar_fuzzer_seeds"
    " load_fuzzer_seeds path_file_fuzzer_seeds faults unloading"
).split()


def project_files():
    """What git knows or would add, without what is deleted."""
    listed = subprocess.run(
        ["git", "ls-files", "-z", "--cached", "--others", "--exclude-standard"],
        cwd=PROJECT, capture_output=True, check=True,
    ).stdout.decode().split("\0")
    return {name for name in listed if name and os.path.lexists(os.path.join(PROJECT, name))}


class Test:
    """A test as CTest would run it, without CTest's start-up, and with a limit of processor time."""

    def __init__(self, description):
        self.command = shlex.join(description["command"])
        properties = {p["name"]: p["value"] for p in description["properties"]}
        self.folder = properties["WORKING_DIRECTORY"]
        self.environment = dict(v.split("=", 1) for v in properties.get("ENVIRONMENT", []))
        self.seconds = 60

    def passes(self, environment):
        limits = f"ulimit -v 4000000; ulimit -t {self.seconds}"
        environment = {**environment, **self.environment}
        done = run(f"{limits}; exec {self.command}", self.folder, environment, 60)
        return done is not None and done.returncode == 0

    def limit(self, seconds):
        """A change that makes it take three times as long makes it hang."""
        self.seconds = 2 + math.ceil(3 * seconds)


def run(command, folder, environment, seconds):
    """The finished process, or None when it took longer."""
    process = subprocess.Popen(
        command, shell=True, cwd=folder, env=environment, stdin=subprocess.DEVNULL,
        stdout=subprocess.PIPE, stderr=subprocess.STDOUT, start_new_session=True,
    )
    try:
        output, _ = process.communicate(timeout=seconds)
    except subprocess.TimeoutExpired:
        os.killpg(process.pid, 9)
        process.communicate()
        return None
    return subprocess.CompletedProcess(command, process.returncode, output)


class Copy:
    """A copy of the project, where a change of a source costs one compilation and two links."""

    def __init__(self, number):
        self.root = os.path.join(WORK, str(number))
        self.build = os.path.join(self.root, "build")
        self.environment = {
            **os.environ,
            "CCACHE_DISABLE": "1",
            "GTEST_FAIL_FAST": "1",
            "PYTHONDONTWRITEBYTECODE": "1",
            "UWB_TEST_EFFORT": "1",
            "TMPDIR": os.path.join(self.root, "tmp"),
        }
        self.changed = self.original = None

    def prepare(self):
        self._mirror()
        os.makedirs(self.environment["TMPDIR"], exist_ok=True)
        self._must(
            "cmake -S . -B build -G Ninja -DCMAKE_BUILD_TYPE=Debug -DBUILD_SHARED_LIBS=ON"
            " -DTARNIX_TOOLS=OFF -DCMAKE_CXX_FLAGS='-O0 -g0 -w'"
        )
        self._must("ninja -j1 -C build")
        self._read_commands()
        for name, test in self.tests.items():
            before = resource.getrusage(resource.RUSAGE_CHILDREN)
            if not test.passes(self.environment):
                fail(f"{name} fails on the unchanged library")
            after = resource.getrusage(resource.RUSAGE_CHILDREN)
            test.limit(after.ru_utime + after.ru_stime - before.ru_utime - before.ru_stime)

    def _mirror(self):
        """Brings what has changed, and only that, so that little is built."""
        wanted = project_files()
        for name in wanted:
            self._bring(os.path.join(PROJECT, name), os.path.join(self.root, name))
        for folder in (*FOLDERS, "tests", "fuzz"):
            for place, _, names in os.walk(os.path.join(self.root, folder)):
                for path in (os.path.join(place, name) for name in names):
                    if os.path.relpath(path, self.root) not in wanted:
                        os.remove(path)

    @staticmethod
    def _bring(source, target):
        os.makedirs(os.path.dirname(target), exist_ok=True)
        if os.path.islink(source):
            if not os.path.lexists(target):
                os.symlink(os.readlink(source), target)
            return
        with open(source, "rb") as one:
            data = one.read()
        if os.path.exists(target):
            with open(target, "rb") as other:
                if other.read() == data:
                    return
        shutil.copyfile(source, target)

    def _must(self, command):
        done = run(command, self.root, self.environment, 1800)
        if done is None or done.returncode != 0:
            fail(f"'{command}' fails:\n{done.stdout.decode() if done else ''}")
        return done.stdout.decode()

    def _read_commands(self):
        """How each source is compiled, how the two libraries are linked, how each test is run."""
        commands = self._must("ninja -C build -t commands calibration tarnix_uwb_params_nfcc")
        self.compilations, self.links = {}, []
        for command in commands.splitlines():
            if " -shared " in command:
                self.links.append(command)
            elif " -c " in command:
                path = command.split(" -c ")[1].split()[0]
                self.compilations[os.path.relpath(path, self.root)] = command
        shown = json.loads(self._must("ctest --test-dir build --show-only=json-v1"))
        tests = {t["name"]: t for t in shown["tests"]}
        for name in set(TESTS) - set(tests):
            fail(f"no test is called {name}")
        self.tests = {name: Test(tests[name]) for name in TESTS}

    def judge(self, mutant):
        """What notices the change: a test, the compiler ('') or nothing (None)."""
        if self.changed != mutant.path:
            self._restore()
            self.changed = mutant.path
            self.original = read(os.path.join(self.root, mutant.path))
        self._write(mutant.path, mutant.text)
        folder = mutant.path.split("/")[0]
        if mutant.path in self.compilations:
            commands = [self.compilations[mutant.path], *self.links]
        else:  # A header may change the tests too; first the tests of its folder.
            commands = [f"ninja -j1 calibration tarnix_uwb_params_nfcc {folder}_tests"]
        if not self._works(commands):
            return ""
        if not self.tests[folder].passes(self.environment):
            return folder
        if mutant.path not in self.compilations and not self._works(["ninja -j1"]):
            return ""
        others = (name for name in TESTS if name != folder)
        return next((n for n in others if not self.tests[n].passes(self.environment)), None)

    def _works(self, commands):
        done = (run(command, self.build, self.environment, 600) for command in commands)
        return all(d is not None and d.returncode == 0 for d in done)

    def _restore(self):
        """Takes the last change back."""
        if self.changed is not None:
            self._write(self.changed, self.original)
            self._must("ninja -j1 -C build")

    def _write(self, path, text):
        with open(os.path.join(self.root, path), "w", encoding="utf-8") as file:
            file.write(text)


def judge_all(mutants, jobs):
    """Yields each change with what notices it, in no particular order."""
    by_file = {}
    for mutant in mutants:
        by_file.setdefault(mutant.path, []).append(mutant)
    # The files with most changes first, so that no processor waits at the end.
    groups = queue.SimpleQueue()
    for group in sorted(by_file.values(), key=len, reverse=True):
        groups.put(group)
    results = queue.SimpleQueue()

    def work(number):
        try:
            copy = Copy(number)
            copy.prepare()
            while True:
                for mutant in groups.get_nowait():
                    results.put((mutant, copy.judge(mutant)))
        except queue.Empty:
            pass
        except BaseException as error:
            results.put(error)

    for number in range(min(jobs, len(by_file))):
        threading.Thread(target=work, args=[number], daemon=True).start()
    for _ in mutants:
        result = results.get()
        if isinstance(result, BaseException):
            raise result
        yield result
