# SPDX-License-Identifier: Apache-2.0
"""Runs the built command as people do. COMMAND names it; UPDATE=1 rewrites the golden files."""
import contextlib
import json
import os
import pty
import random
import shutil
import subprocess
import sys
import tempfile
import termios
import threading
import unittest
from pathlib import Path

HERE = Path(__file__).resolve().parent
PROJECT = HERE.parents[1]
EXAMPLES = PROJECT / "examples"
SCENARIOS = PROJECT / "tests/scenarios"
GOLDEN = HERE / "golden"
COMMAND = os.environ["COMMAND"]


def run(*arguments, stdin=b"", **options):
    """Runs the command without a terminal."""
    environment = {k: v for k, v in os.environ.items() if k != "NO_COLOR"}
    environment.update(options.pop("env", {}))
    return subprocess.run([COMMAND, *map(str, arguments)], input=stdin, capture_output=True,
                          env=environment, check=False, **options)


def on_terminal(*arguments, env=None, columns=0):
    """Runs the command with its standard output on a terminal and returns what it shows."""
    master, slave = pty.openpty()
    termios.tcsetwinsize(slave, (0, columns))
    environment = {k: v for k, v in os.environ.items() if k != "NO_COLOR"}
    environment.update(env or {})
    process = subprocess.Popen([COMMAND, *map(str, arguments)], stdout=slave,
                               stderr=subprocess.DEVNULL, env=environment)
    os.close(slave)
    shown = b""
    while True:
        try:
            part = os.read(master, 65536)
        except OSError:
            break
        if not part:
            break
        shown += part
    os.close(master)
    return process.wait(), shown.decode().replace("\r\n", "\n")


def loads_of(steps):
    """The command's words for each load of a scenario."""
    country, path_file, root = b"", b"", None
    for step in steps.read_bytes().splitlines():
        what, *words = step.split(b"\t")
        if what == b"root":
            root = steps.parent / os.fsdecode(words[0])
        elif what == b"set" and words[0].endswith(b"country_code"):
            country = words[1]
        elif what == b"set":
            path_file = words[1]
        elif what == b"load":
            yield ["--root", root, "--country", os.fsdecode(country), "--path-file",
                   os.fsdecode(path_file), "--capacity", os.fsdecode(words[0])]


class CommandTest(unittest.TestCase):
    maxDiff = None

    @contextlib.contextmanager
    def seeded(self):
        """Random choices that follow from UWB_TEST_SEED, or from 1. A failure tells the command
        that repeats it."""
        seed = os.environ.get("UWB_TEST_SEED", "1")
        with self.subTest(repeat=f"cd {HERE} && UWB_TEST_SEED={seed} COMMAND={COMMAND}"
                                 f" {sys.executable} -m unittest {self.id()}"):
            yield random.Random(seed)

    @classmethod
    def setUpClass(cls):
        refusal = run("build", "-q", "--root", EXAMPLES).stderr.decode()
        if "openat2 is refused" in refusal:
            raise unittest.SkipTest(refusal.strip())

    def setUp(self):
        self.folder = Path(tempfile.mkdtemp())
        self.addCleanup(shutil.rmtree, self.folder)

    def golden(self, name, text):
        """The text must be that of the golden file."""
        path = GOLDEN / name
        if os.environ.get("UPDATE"):
            path.parent.mkdir(parents=True, exist_ok=True)
            path.write_bytes(text)
        self.assertEqual(path.read_bytes().decode(), text.decode())

    def fails(self, result, message):
        """The command was stopped by its user's mistake: one line, nothing else."""
        self.assertEqual(result.returncode, 2, result)
        self.assertEqual(result.stdout, b"")
        self.assertEqual(result.stderr.decode(), f"tarnix-uwb-params: {message}\n")

    def example(self, files):
        """Makes the test's folder a copy of the example tree with these files in place of its own."""
        shutil.copytree(EXAMPLES, self.folder, dirs_exist_ok=True)
        for path, text in files.items():
            (self.folder / "vendor/etc" / path).write_text(text)

    def block(self, country="US"):
        result = run("build", "--root", EXAMPLES, "--country", country, "--format", "binary")
        self.assertEqual(result.returncode, 0, result)
        return result.stdout


class Build(CommandTest):
    def test_every_format(self):
        for form in ("dump", "hex", "json", "c"):
            result = run("build", "--root", EXAMPLES, "--country", "US", "--format", form)
            self.assertEqual(result.returncode, 0, result)
            self.golden(f"build_{form}", result.stdout)

    def test_usual_format_is_a_dump_on_a_terminal_and_binary_elsewhere(self):
        words = ("build", "--root", EXAMPLES, "--country", "US")
        self.assertEqual(on_terminal(*words), (0, (GOLDEN / "build_dump").read_text()))
        self.assertEqual(run(*words).stdout.hex(), (GOLDEN / "build_hex").read_text().strip())
        self.assertEqual(run(*words).stdout, self.block())

    def test_log_of_the_device_goes_to_standard_error(self):
        self.golden("build_log", run("build", "--root", EXAMPLES, "--country", "US").stderr)
        self.assertEqual(run("build", "-q", "--root", EXAMPLES).stderr, b"")

    def test_a_pipe_is_read_once(self):
        self.example({})
        pipe = self.folder / "vendor/etc/uwb/us/calib.conf"
        text = pipe.read_bytes()
        pipe.unlink()
        os.mkfifo(pipe)
        threading.Thread(target=pipe.write_bytes, args=(text,), daemon=True).start()
        result = run("build", "--root", self.folder, "--country", "US", timeout=60)
        self.assertEqual(result.stdout, self.block())

    def test_c_array_compiles_to_the_block(self):
        source = self.folder / "block.c"
        result = run("build", "--root", EXAMPLES, "--country", "US", "--format", "c", "-o", source)
        self.assertEqual((result.returncode, result.stdout), (0, b""))
        source.write_text("#include <stdio.h>\n" + source.read_text() +
                          "int main(void) { fwrite(uwb_params, 1, sizeof uwb_params, stdout); }\n")
        program = self.folder / "block"
        subprocess.run(["cc", "-Wall", "-Werror", source, "-o", program], check=True)
        self.assertEqual(subprocess.run([program], capture_output=True).stdout, self.block())

    def test_quiet_shows_why_there_is_no_valid_calibration(self):
        self.example({"uwb/us/calib.conf": "edge.port=300\n"})
        result = run("build", "-q", "--root", self.folder, "--country", "US")
        self.assertEqual((result.returncode, result.stdout), (1, b""))
        self.golden("build_failure", result.stderr)

    def test_no_valid_calibration_keeps_the_old_file(self):
        file = self.folder / "block.bin"
        file.write_bytes(b"old")
        run("build", "--root", self.folder, "-o", file)
        self.assertEqual(file.read_bytes(), b"old")

    def test_path_file_is_tried_first(self):
        self.example({"mine": "/vendor/etc/uwb/common.conf\n/vendor/etc/uwb/de/calib.conf\n"})
        result = run("build", "--root", self.folder, "--country", "US", "--path-file",
                     "/vendor/etc/mine")
        self.assertEqual(result.stdout, self.block("DE"))

    def test_path_file_is_one_of_the_tree(self):
        shutil.copytree(EXAMPLES, self.folder / "tree")
        mine = self.folder / "tree/mine"
        mine.write_text("/vendor/etc/uwb/common.conf\n")
        for arguments in (["build"], ["explain"], ["matrix"], ["diff", "tree", "tree"]):
            root = [] if arguments[0] == "diff" else ["--root", "tree"]
            for path in ("/missing", "tree/mine", str(mine)):
                self.fails(run(*arguments, *root, "--path-file", path, cwd=self.folder),
                           f"cannot open the path file {path} in the tree tree: "
                           "No such file or directory")
        self.fails(run("build", "--path-file", "/no/such"),
                   "cannot open the path file /no/such: No such file or directory")

    def test_capacity_cuts_the_block(self):
        for capacity in (10, "0xA"):
            result = run("build", "--root", EXAMPLES, "--country", "US", "--capacity", capacity)
            self.assertEqual((result.returncode, result.stdout), (0, self.block()[:10]))

    def test_relative_names_start_where_the_command_was_called(self):
        shutil.copytree(EXAMPLES, self.folder / "tree")
        result = run("build", "--root", "tree", "--country", "US", "-o", "block", cwd=self.folder)
        self.assertEqual((result.returncode, result.stdout), (0, b""))
        self.assertEqual((self.folder / "block").read_bytes(), self.block())

    def test_country_may_be_empty_in_every_spelling(self):
        for words in (["--country", ""], ["--country="], []):
            result = run("build", *words, "--root", EXAMPLES, "--format", "binary")
            self.assertEqual(result.stdout, self.block(""), words)

    def test_linked_and_loaded_library_agree_on_every_scenario(self):
        compared = 0
        for steps in sorted(SCENARIOS.glob("*/steps")):
            for words in loads_of(steps):
                with self.subTest(scenario=steps.parent.name, words=words):
                    own, loaded = (run("build", "--format", "hex", *words, *library)
                                   for library in ((), ("--library", os.environ["LIBRARY"])))
                    self.assertEqual(own.stdout, loaded.stdout)
                    self.assertEqual(own.stderr, loaded.stderr)
                    self.assertEqual(own.returncode, loaded.returncode)
                    compared += own.returncode == 0
        self.assertGreater(compared, 50)

    def test_what_is_missing_is_told_in_one_line(self):
        self.fails(run("build", "--root", "/no/such"),
                   "cannot make /no/such the root: No such file or directory")
        self.fails(run("build", "--library", "/no/such.so"),
                   "/no/such.so: cannot open shared object file: No such file or directory")


class CoverageBuild(CommandTest):
    def test_counters_are_written_where_opens_are_redirected_to_the_end(self):
        program = self.folder / "load"
        (self.folder / "load.cpp").write_text(
            '#include "tools/device/open_redirect.h"\n'
            'int main() { new OpenRedirect(*new TargetRoot("/proc")); }\n')
        device = PROJECT / "tools/device"
        sources = [device / f"{name}.cpp"
                   for name in ("files", "open_in_root", "open_redirect", "target_root")]
        subprocess.run(["c++", "-std=c++17", "--coverage", "-I", PROJECT, "-I/usr/include/android",
                        "load.cpp", *sources, "-o", program], cwd=self.folder, check=True)
        result = subprocess.run([program], cwd=self.folder, capture_output=True, check=True)
        self.assertEqual(result.stderr, b"")
        self.assertEqual(len(list(self.folder.glob("*.gcda"))), 5)


class Output(CommandTest):
    def test_closed_standard_output(self):
        result = subprocess.run(f'"{COMMAND}" build -q --root "{EXAMPLES}" >&-', shell=True,
                                capture_output=True, check=False)
        self.fails(result, "cannot write to the standard output: Bad file descriptor")

    def test_closed_standard_input(self):
        result = subprocess.run(f'"{COMMAND}" decode - <&-', shell=True, capture_output=True,
                                check=False)
        self.fails(result, "cannot read the standard input: Bad file descriptor")

    def test_closed_standard_output_puts_no_block_into_a_file(self):
        file = self.folder / "block.bin"
        file.write_bytes(self.block())
        result = subprocess.run(f'"{COMMAND}" decode "{file}" >&-', shell=True,
                                capture_output=True, check=False)
        self.assertEqual(result.returncode, 2)
        self.assertEqual(file.read_bytes(), self.block())

    def test_full_standard_output(self):
        with open("/dev/full", "wb") as full:
            result = subprocess.run([COMMAND, "build", "-q", "--root", EXAMPLES], stdout=full,
                                    stderr=subprocess.PIPE, check=False)
        self.assertEqual(result.returncode, 2)
        self.assertIn(b"No space left on device", result.stderr)

    def test_file_in_a_read_only_folder(self):
        folder = Path("/proc/sys")  # Nobody may make a file here, root neither.
        result = run("build", "-q", "--root", EXAMPLES, "-o", folder / "block")
        self.assertEqual((result.returncode, result.stdout), (2, b""))
        self.assertEqual(result.stderr.count(b"\n"), 1)
        self.assertIn(b"cannot write /proc/sys/block: ", result.stderr)

    def test_file_replaces_the_old_one_and_leaves_no_other(self):
        file = self.folder / "block.bin"
        file.write_bytes(b"old" * 100)
        result = run("build", "--root", EXAMPLES, "--country", "US", "--format", "binary", "-o", file)
        self.assertEqual(result.returncode, 0)
        self.assertEqual(file.read_bytes(), self.block())
        self.assertEqual(os.listdir(self.folder), ["block.bin"])

    def test_a_link_stays_and_so_does_the_mode(self):
        (self.folder / "real").write_bytes(b"old")
        (self.folder / "real").chmod(0o640)
        (self.folder / "link").symlink_to("real")
        self.assertEqual(run("build", "--root", EXAMPLES, "--country", "US", "--format", "binary",
                             "-o", self.folder / "link").returncode, 0)
        self.assertEqual(os.readlink(self.folder / "link"), "real")
        self.assertEqual((self.folder / "real").read_bytes(), self.block())
        self.assertEqual((self.folder / "real").stat().st_mode & 0o7777, 0o640)

    def test_file_in_a_folder_that_does_not_exist(self):
        self.fails(run("build", "-q", "--root", EXAMPLES, "-o", "/no/such"),
                   "cannot write /no/such: No such file or directory")

    def test_file_that_grows_too_large_leaves_the_old_one(self):
        file = self.folder / "block.bin"
        file.write_bytes(b"old")
        result = subprocess.run(["sh", "-c", 'trap "" XFSZ; ulimit -f 0; exec "$@"', "sh", COMMAND,
                                 "build", "-q", "--root", EXAMPLES, "-o", file],
                                capture_output=True, check=False,
                                env={**os.environ, "LLVM_PROFILE_FILE": "/dev/null"})
        self.fails(result, f"cannot write {file}: File too large")
        self.assertEqual(file.read_bytes(), b"old")
        self.assertEqual(os.listdir(self.folder), ["block.bin"])

    def test_device_as_file(self):
        self.assertEqual(run("build", "--root", EXAMPLES, "-o", "/dev/null").returncode, 0)
        self.fails(run("build", "-q", "--root", EXAMPLES, "-o", "/dev/full"),
                   "cannot write /dev/full: No space left on device")
        self.fails(run("build", "-q", "--root", EXAMPLES, "-o", self.folder),
                   f"cannot write {self.folder}: Is a directory")


class Decode(CommandTest):
    def test_every_format(self):
        for form in ("table", "text", "json"):
            result = run("decode", "--format", form, "-", stdin=self.block())
            self.assertEqual((result.returncode, result.stderr), (0, b""))
            self.golden(f"decode.{form}", result.stdout)

    def test_reads_a_file_and_every_format_that_build_writes(self):
        table = (GOLDEN / "decode.table").read_bytes()
        file = self.folder / "block"
        for form in ("dump", "hex", "binary", "json", "c"):
            run("build", "--root", EXAMPLES, "--country", "US", "--format", form, "-o", file)
            for result in run("decode", file), run("decode", "-", stdin=file.read_bytes()):
                self.assertEqual((result.returncode, result.stdout), (0, table), form)

    def test_text_builds_the_same_block(self):
        etc = self.folder / "vendor/etc"
        etc.mkdir(parents=True)
        (etc / "uwb_calib_paths.conf").write_text("/calib.conf\n")
        for country in ("US", "DE", ""):
            text = run("decode", "--format", "text", "-", stdin=self.block(country)).stdout
            (self.folder / "calib.conf").write_bytes(text)
            self.assertEqual(run("build", "--root", self.folder).stdout, self.block(country))

    def test_map_on_a_terminal(self):
        file = self.folder / "block"
        file.write_bytes(self.block())
        status, shown = on_terminal("decode", file)
        self.assertEqual(status, 0)
        self.golden("decode.terminal", shown.encode())
        file.write_bytes(self.block()[:32])
        self.assertEqual(on_terminal("decode", file)[1].split("\n\n")[0].splitlines(),
                         shown.splitlines()[:5])

    def test_colours_as_asked_for(self):
        file = self.folder / "block"
        file.write_bytes(self.block())
        self.assertNotIn("\x1b", on_terminal("decode", file, env={"NO_COLOR": "1"})[1])
        self.assertNotIn("\x1b", on_terminal("decode", "--color", "never", file)[1])
        self.assertIn("\x1b", on_terminal("decode", file, env={"NO_COLOR": ""})[1])
        self.assertIn(b"\x1b", run("decode", "--color", "always", file).stdout)
        self.assertNotIn(b"\x1b", run("decode", file).stdout)

    def test_faults_are_named(self):
        good = bytearray(self.block())
        flipped = bytearray(good)
        flipped[27] ^= 4
        reserved = bytearray(good)
        reserved[40] = 7
        selector = bytearray(good)
        selector[33] = 2
        faults = {"flipped_bit": flipped, "swapped": good[1::-1] + good[2:], "cut": good[:30],
                  "reserved": reserved, "selector": selector}
        for name, block in faults.items():
            result = run("decode", "-", stdin=bytes(block))
            self.assertEqual(result.returncode, 1, name)
            self.golden(f"decode.{name}", result.stdout)
        result = run("decode", "--format", "json", "-", stdin=bytes(flipped))
        crc = json.loads(result.stdout)["crc"]
        self.assertEqual((crc["good"], crc["cause"]),
                         (False, "bit 2 of byte 27 (xtal_trim) is flipped: 0x2C should be 0x28"))

    def test_no_text_for_a_bad_block(self):
        result = run("decode", "--format", "text", "-", stdin=bytes(82))
        self.assertEqual((result.returncode, result.stdout), (1, b""))
        self.assertIn(b"no text makes this block", result.stderr)

    def test_what_is_no_block(self):
        self.fails(run("decode", "-"), "no block: the input is empty")
        self.fails(run("decode", "-", stdin=bytes(83)), "no block: 83 bytes, a block has 82")
        self.fails(run("decode", "/dev/zero"), "/dev/zero is too large")
        self.fails(run("decode", "/no/such"), "cannot open /no/such: No such file or directory")
        self.fails(run("decode", self.folder),
                   f"cannot read {self.folder}: Is a directory")

    def test_any_bytes(self):
        for seed in range(200):
            block = bytes((seed * 7 + i * i * 31) % 256 for i in range(seed))
            result = run("decode", "--format", ("table", "text", "json")[seed % 3], "-", stdin=block)
            self.assertIn(result.returncode, (1, 2), seed)
            self.assertLessEqual(result.stderr.count(b"\n"), 1)


class Explain(CommandTest):
    def test_every_format(self):
        for form in ("text", "json"):
            result = run("explain", "--root", EXAMPLES, "--country", "DE", "--format", form)
            self.assertEqual((result.returncode, result.stderr), (0, b""))
            self.golden(f"explain.{form}", result.stdout)

    def test_countries_are_in_lower_case(self):
        result = run("explain", "--root", EXAMPLES, "--country", "DE")
        self.assertTrue(result.stdout.startswith(b"country de, path file "))
        self.assertEqual(run("explain", "--root", EXAMPLES, "--country", "de").stdout, result.stdout)
        result = run("explain", "--root", EXAMPLES, "--country", "DE", "--format", "json")
        self.assertEqual(json.loads(result.stdout)["country"], "de")
        result = run("lint", "--root", EXAMPLES, "--country", "DE", "--format", "json")
        self.assertEqual(json.loads(result.stdout)["countries"], ["de"])

    def test_log_of_the_library_on_request(self):
        result = run("explain", "--root", EXAMPLES, "--country", "DE", "--log")
        self.assertIn(b"I Parsing full calibration\n", result.stderr)
        self.assertEqual(run("explain", "--root", EXAMPLES, "--log", "--quiet").stderr, b"")

    def explain_scenario(self, name, *options):
        root = SCENARIOS / name / "root"
        result = run("explain", "--root", root, *options)
        self.assertEqual(result.stderr, b"")
        return result

    def test_loads_that_go_another_way(self):
        """A wiring that is copied, lines after an error that are not read, no block."""
        for scenario, status, golden in (
                ("shared_antenna", 0, "explain.shared_antenna"),
                ("values_before_a_syntax_error_are_kept", 1, "explain.lost"),
                ("missing_parameters_named_in_tree_order", 1, "explain.missing")):
            result = self.explain_scenario(scenario)
            self.assertEqual(result.returncode, status, scenario)
            self.golden(golden, result.stdout)
        result = self.explain_scenario("bad_gpio_on_both")
        self.assertEqual(result.returncode, 1)
        self.assertIn(b"no block: GPIO value must be 0 or 1\n", result.stdout)

    def test_every_file_has_an_error(self):
        self.example({"uwb_calib_paths.conf": "/vendor/etc/uwb/common.conf\n"})
        common = self.folder / "vendor/etc/uwb/common.conf"
        common.write_text(common.read_text() + "ch9.antenna_selection=\n")
        result = run("explain", "--root", self.folder)
        self.assertEqual((result.returncode, result.stderr), (1, b""))
        self.assertIn(b"no block: every calibration file has an error\n", result.stdout)

    def test_without_a_calibration_file_the_path_files_are_named(self):
        etc = self.folder / "vendor/etc"
        etc.mkdir(parents=True)
        (etc / "calib_paths").write_text("/a/<country>\n/b\n/loop\n")
        (self.folder / "loop").symlink_to("loop")
        result = run("explain", "--root", self.folder, "--country", "DE")
        self.assertEqual((result.returncode, result.stderr), (1, b""))
        self.assertEqual(result.stdout.decode(), """\
country de, no path file names a calibration file that can be read
there is no path file /vendor/etc/uwb_calib_paths.conf
path file /vendor/etc/calib_paths
  line 1: there is no /a/de, and there is no /a/default
  line 2: there is no /b
  line 3: cannot read /loop: Too many levels of symbolic links
there is no path file ./uwb_calib_paths.conf
there is no path file ./calib_paths
""")
        result = run("explain", "--root", self.folder, "--country", "DE", "--format", "json")
        self.golden("explain.tried.json", result.stdout)

    def test_shows_only_the_named_keys_and_fields(self):
        shown = run("explain", "--root", EXAMPLES, "--country", "FR").stdout.decode()
        result = run("explain", "--root", EXAMPLES, "--country", "FR", "wifi_coex_time_gap",
                     "edge.selector_gpio", "ch5_antenna_selection", "ch9.antenna_selection")
        self.assertEqual((result.returncode, result.stderr), (0, b""))
        self.golden("explain.names", result.stdout)
        for line in result.stdout.decode().splitlines():
            self.assertIn(line + "\n", shown)
        result = run("explain", "--root", EXAMPLES, "--format", "json", "crc", "version")
        self.assertEqual(json.loads(result.stdout)["country"], "none")
        missing = self.explain_scenario("missing_parameters_named_in_tree_order", "xtal_trim")
        self.assertTrue(missing.stdout.decode().endswith(
            "\n\nno block: parameters are missing\n    xtal_trim\n"), missing.stdout)
        names = [field["name"] for field in json.loads(result.stdout)["fields"]]
        self.assertEqual(names, ["crc", "version"])
        self.assertEqual(json.loads(result.stdout)["selection"], [])
        self.example({"uwb/us/calib.conf": "version=x\nxtal_trm=1\n"})
        failing = run("explain", "--root", self.folder, "--country", "US", "--format", "json", "version")
        self.assertEqual(len(json.loads(failing.stdout)["failing"]), 1)
        self.assertEqual(json.loads(failing.stdout)["dropped"], [])

    def test_the_line_that_ends_a_file_is_shown_for_any_name(self):
        self.example({"uwb/us/calib.conf": "version=x\npatch.port=1\nversion=3\n"})
        shown = run("explain", "--root", self.folder, "--country", "US", "ch5_port").stdout.decode()
        place = "\n    /vendor/etc/uwb/us/calib.conf:"
        self.assertIn(f"\nThe device stops reading a file at:{place}1: version=x\n"
                      f"\nNot read after it:{place}2: patch.port=1\n\n", shown)

    def test_an_unknown_name_is_wrong_usage(self):
        """The hints are lint's for keys."""
        for name, hint in (("xtal_trm", "; did you mean 'xtal_trim'?"), ("nonsense", ""),
                           ("EDGE.port", "; did you mean 'edge.port'?"),
                           ("port", "; did you mean 'edge.port' or 'patch.port'?"),
                           ("ch9_prt", "; did you mean 'ch9_port'?")):
            self.fails(run("explain", "--root", EXAMPLES, name),
                       f"no parameter and no field has the name '{name}'{hint}")


class DeviceLog(CommandTest):
    """The log of a load, as logcat shows it, explained with the tree."""
    FORMATS = {
        "brief": "{p}/uwb     ( 1234): {m}",
        "process": "{p}( 1234) {m}",
        "tag": "{p}/uwb     : {m}",
        "thread": "{p}( 1234: 1240) {m}",
        "time": "11-21 18:40:{s:06.3f} {p}/uwb     ( 1234): {m}",
        "threadtime": "11-21 18:40:{s:06.3f}  1234  1240 {p} uwb     : {m}",
        "year": "2026-11-21 18:40:{s:06.3f} +0100  1234  1240 {p} uwb     : {m}",
        "epoch": "17000000{s:06.3f}  1234  1240 {p} uwb     : {m}",
        "tag like a priority": "11-21 18:40:{s:06.3f}  1234  1240 {p} I       : {m}",
        "color": "\x1b[38;5;40m11-21 18:40:{s:06.3f}  1234  1240 {p} uwb     : {m}\x1b[0m",
        "long": "[ 11-21 18:40:{s:06.3f}  1234: 1240 {p}/uwb      ]\n{m}\n",
    }

    def setUp(self):
        super().setUp()
        us = (EXAMPLES / "vendor/etc/uwb/us/calib.conf").read_text()
        self.example({"uwb/us/calib.conf": "# Not measured.\nedge.port=300\nedge.port=301\n" + us})
        self.log = self.log_of("--country", "US")

    def log_of(self, *options):
        log = run("build", "--root", self.folder, *options).stderr.decode()
        return [line for line in log.splitlines() if not line.startswith("tarnix")]

    def logcat(self, form, with_others=True):
        """The log in one of logcat's formats, with lines of other processes between."""
        out = "--------- beginning of main\n"
        for number, line in enumerate(self.log):
            priority, message = line[0], line[2:]
            seconds = number / 1000 + number % 60
            out += self.FORMATS[form].format(p=priority, m=message, s=seconds) + "\n"
            if number % 5 == 0:
                out += "--------- switch to main\n"
            if with_others:
                other = self.FORMATS[form].replace("1234", "4321").replace("uwb ", "hal ")
                out += other.format(p="E", m=f"other's message {number}", s=seconds) + "\n"
        return out

    def explain(self, log, *options):
        result = run("explain", "--root", self.folder, "--device-log", "-", *options,
                     stdin=log.encode())
        self.assertEqual(result.stderr, b"")
        return result

    def test_every_format_of_logcat(self):
        expected = self.explain("\n".join(self.log) + "\n")
        self.assertEqual(expected.returncode, 1)
        self.golden("explain.device_log", expected.stdout)
        for form in self.FORMATS:
            shown = self.explain(self.logcat(form)).stdout.decode()
            self.assertEqual(shown.splitlines()[1:], expected.stdout.decode().splitlines()[1:], form)
        raw = "\n\n".join(line[2:] for line in self.log)
        self.assertEqual(self.explain(raw).stdout, expected.stdout)

    def test_json(self):
        log = self.folder / "log"
        log.write_text(self.logcat("threadtime"))
        result = run("explain", "--root", self.folder, "--device-log", log, "--format", "json")
        self.golden("explain.device_log.json", result.stdout)

    def test_a_log_without_debug_lines_and_with_carriage_returns(self):
        self.log = [line for line in self.log if not line.startswith("D ")]
        shown = self.explain(self.logcat("threadtime").replace("\n", "\r\n")).stdout
        self.assertTrue(shown.endswith(b"the load of the tree logs the same\n"), shown)

    def test_the_last_load_counts(self):
        first = self.logcat("threadtime")
        self.log = self.log_of("--country", "DE")
        result = self.explain(first + self.logcat("threadtime"))
        self.assertEqual(result.returncode, 0)
        self.assertTrue(result.stdout.startswith(b"country de, load in line "))
        self.assertTrue(result.stdout.endswith(b"the load of the tree logs the same\n"))

    def test_a_path_file_that_the_property_names(self):
        (self.folder / "mine").write_text("/vendor/etc/uwb/common.conf\n/missing.conf\n")
        self.log = self.log_of("--path-file", "/mine")
        result = self.explain(self.logcat("brief"))
        self.assertEqual(result.returncode, 1)
        self.golden("explain.device_log.path_file", result.stdout)
        document = json.loads(self.explain(self.logcat("brief"), "--format", "json").stdout)
        self.assertEqual(document["country"], "none")

    def test_an_error_that_speaks_of_what_is_missing(self):
        (self.folder / "vendor/etc/uwb/common.conf").write_text("version=2\n")
        self.log = [*self.log_of(), "E parameters are missing"]
        self.assertEqual(self.explain(self.logcat("brief")).returncode, 1)
        self.log = [*self.log[:2], "E parameters are missing", *self.log[2:]]
        shown = self.explain(self.logcat("brief")).stdout.decode()
        self.assertIn("E parameters are missing\n", shown)

    def test_a_path_file_with_an_empty_line(self):
        (self.folder / "vendor/etc/uwb_calib_paths.conf").write_text("/missing.conf\n\n")
        self.log = self.log_of()
        shown = self.explain(self.logcat("brief")).stdout.decode()
        self.assertIn("    /vendor/etc/uwb_calib_paths.conf:1: /missing.conf\nE ", shown)
        self.assertTrue(shown.endswith("the load of the tree logs the same\n"), shown)

    def test_a_property_that_names_a_default_path_file(self):
        """The log shows the file twice: it is tried again as a default."""
        path = "/vendor/etc/uwb_calib_paths.conf"
        (self.folder / path[1:]).write_text("/missing.conf\n")
        self.log = self.log_of("--path-file", path)
        result = self.explain(self.logcat("brief"), "--format", "json")
        self.assertEqual(json.loads(result.stdout)["path_file"], path)
        self.assertNotIn("difference", json.loads(result.stdout))
        self.log = self.log_of()
        result = self.explain(self.logcat("brief"), "--format", "json")
        self.assertEqual(json.loads(result.stdout)["path_file"], "")

    def test_carriage_returns_in_a_path_file(self):
        path_file = self.folder / "vendor/etc/uwb_calib_paths.conf"
        path_file.write_text(path_file.read_text().replace("\n", "\r\n"))
        self.log = self.log_of("--country", "US")
        shown = self.explain("\n".join(self.log)).stdout
        self.golden("explain.device_log.returns", shown)
        self.log = [line.replace("\\x0d", "\r") for line in self.log]
        self.assertEqual(self.explain("\n".join(self.log)).stdout, shown)

    def test_a_failing_conversion_names_the_line_of_the_wiring(self):
        (self.folder / "vendor/etc/uwb/us/calib.conf").write_text(
            "patch.selector_gpio=8\npatch.ch5.prf64.tx_power=1\nedge.ch9.prf64.tx_power=1\n")
        self.log = self.log_of("--country", "US")
        self.assertIn(b"GPIO must be 6 or 7\n    /vendor/etc/uwb/us/calib.conf:1: "
                      b"patch.selector_gpio=8\nthe load", self.explain(self.logcat("tag")).stdout)

    def test_the_first_difference_tells_that_the_tree_is_another(self):
        log = self.logcat("threadtime", with_others=False)
        self.example({})
        result = self.explain(log)
        self.assertEqual(result.returncode, 1)
        self.golden("explain.device_log.other_tree", result.stdout)

    def test_what_the_process_logs_after_the_load_is_not_shown(self):
        log = self.logcat("threadtime", with_others=False)
        later = self.FORMATS["threadtime"].format(p="E", m="Cannot start the controller", s=0)
        self.assertEqual(self.explain(log + later + "\n").stdout, self.explain(log).stdout)

    def test_only_colours_are_taken_out_of_a_line(self):
        self.log[-1] += "\x1b[31m\x1b[2J\x1b[0"
        self.assertIn("\n- Calibration is invalid, aborting\\x1b[2J\\x1b[0\n",
                      self.explain("\n".join(self.log)).stdout.decode())

    def test_any_bytes(self):
        words = [line.encode() for line in self.log] + [
            b"\n", b"\n\n", b"\r", b"\0", b"\xff", b" ", b"I ", b"I/", b"[ ", b" ]", b"12:34", b": ",
            b"load_uwb_params_from_files entry, version", b"Reading path file ", b"\\x0d",
            b"Using country code: "]
        with self.seeded() as chance:
            for index in range(60):
                log = b"".join(chance.choices(words, k=chance.randrange(40)))
                result = run("explain", "--root", self.folder, "--device-log", "-", stdin=log)
                self.assertIn(result.returncode, (0, 1, 2), (index, log))
                self.assertLessEqual(result.stderr.count(b"\n"), 1, log)
                result.stdout.decode()

    def test_a_log_that_ends_early_differs(self):
        self.log = self.log[:-1]
        shown = self.explain(self.logcat("threadtime")).stdout
        self.assertTrue(shown.endswith(
            b"\nthe log ends before the load does; the loads differ from line 49 of the log on\n"
            b"- (nothing more)\n+ Calibration is invalid, aborting\n"), shown)
        self.example({"uwb/us/calib.conf": "edge.port=08\n"})
        shown = self.explain("\n".join(self.log[:5])).stdout
        self.assertIn(b"\nthe log ends before the load does; ", shown)

    def test_a_number_that_the_device_alone_refuses(self):
        """The log is that of the device, whose C++ library refuses 08."""
        self.example({"uwb/us/calib.conf": "edge.port=08\n"})
        result = self.explain("\n".join(self.log))
        self.assertEqual(result.returncode, 1)
        self.golden("explain.device_log.number", result.stdout)
        result = self.explain("\n".join(self.log), "--format", "json")
        self.assertEqual(json.loads(result.stdout)["refused_by_device"], [
            {"path": "/vendor/etc/uwb/us/calib.conf", "line": 1, "text": "edge.port=08"}])

    def test_wrong_usage(self):
        self.fails(run("explain", "--device-log", "-", stdin=b"E/uwb( 1): something\n"),
                   "the log has no load of the library")
        self.fails(run("explain", "--device-log", "/no/such"),
                   "cannot open /no/such: No such file or directory")
        for more in (["--country", "US"], ["--path-file", "/a"], ["xtal_trim"]):
            self.fails(run("explain", "--device-log", "-", *more),
                       "--device-log has the country and the path file, and shows no names")


class AnyTree(CommandTest):
    """Trees with every trap that the loader's tests know."""

    def trees(self):
        for folder in sorted(SCENARIOS.iterdir()):
            for root in sorted(folder.glob("root*")):
                for country in ("", "FR", "eu/de.v2"):
                    yield root, ("--root", root, "--country", country)

    def winning_lines(self, explanation):
        parameters = explanation["selection"] + [
            parameter for field in explanation["fields"] for parameter in field["parameters"]]
        return [parameter["set_by"]["text"] for parameter in parameters]

    def test_explain_agrees_with_build(self):
        """The winning lines alone, as one file, make the same block."""
        etc = self.folder / "vendor/etc"
        etc.mkdir(parents=True)
        (etc / "uwb_calib_paths.conf").write_text("/winners.conf\n")
        compared = 0
        for root, options in self.trees():
            with self.subTest(root=root, options=options):
                built = run("build", "-q", *options)
                explained = run("explain", "--format", "json", *options)
                self.assertEqual(explained.returncode, built.returncode)
                explanation = json.loads(explained.stdout)
                self.assertEqual(explanation["valid"], built.returncode == 0)
                if not explanation["valid"]:
                    continue
                block = b"".join(bytes.fromhex(field["bytes"]) for field in explanation["fields"])
                reserved_out = built.stdout[:22] + built.stdout[26:28] + built.stdout[31:39]
                self.assertEqual(block, reserved_out)
                lines = self.winning_lines(explanation)
                (self.folder / "winners.conf").write_text("".join(f"{line}\n" for line in lines))
                again = run("build", "-q", "--root", self.folder)
                self.assertEqual(again.stdout, built.stdout)
                compared += 1
        self.assertGreater(compared, 60)

    def test_lint_never_fails(self):
        forms = ("text", "json", "sarif", "github")
        for index, (root, options) in enumerate(self.trees()):
            with self.subTest(root=root, options=options):
                result = run("lint", "-q", "--format", forms[index % len(forms)], *options)
                self.assertIn(result.returncode, (0, 1))
                self.assertEqual(result.stderr, b"")
                result.stdout.decode()

    def test_any_bytes_in_the_files(self):
        self.example({})
        words = [b"xtal_trim", b"=", b"patch.", b"0x", b"-", b"08", b"[CCC]", b"#", b"//", b"\n",
                 b" ", b"\0", b"\xff", b"<country>", b"/vendor/etc/uwb/", b"ch5.antenna_selection"]
        with self.seeded() as chance:
            for index in range(60):
                victim = ("vendor/etc/uwb/common.conf", "vendor/etc/uwb_calib_paths.conf")[index % 2]
                original = (EXAMPLES / victim).read_bytes().splitlines(keepends=True)
                for _ in range(4):
                    soup = b"".join(chance.choices(words, k=chance.randrange(12)))
                    original.insert(chance.randrange(len(original)), soup)
                (self.folder / victim).write_bytes(b"".join(original))
                for command in (["lint", "-q", "--format", ("text", "json")[index % 2]], ["explain"],
                                ["matrix"]):
                    result = run(*command, "--root", self.folder)
                    self.assertIn(result.returncode, (0, 1), (index, command))
                    self.assertEqual(result.stderr, b"")
                    result.stdout.decode()

    def test_lint_finds_a_reason_for_every_load_without_a_block(self):
        for root, options in self.trees():
            with self.subTest(root=root, options=options):
                if run("build", "-q", *options).returncode == 1:
                    self.assertEqual(run("lint", *options).returncode, 1)


    def test_country_files_may_be_named_without_a_folder(self):
        self.example({"uwb_calib_paths.conf": "vendor/etc/uwb/common.conf\ncalib.<country>\n"})
        for country in ("fr", "default"):
            shutil.copy(EXAMPLES / "vendor/etc/uwb/default/calib.conf", self.folder / f"calib.{country}")
        result = run("lint", "--root", self.folder)
        self.assertEqual(result.stderr.decode().split(":")[1],
                         " 3 loads (1 country, any other country, no country code)")


class Usage(CommandTest):
    def test_help_of_every_command(self):
        result = run("--help")
        self.assertEqual((result.returncode, result.stderr), (0, b""))
        self.golden("help", result.stdout)
        self.assertEqual(run("-h").stdout, result.stdout)
        for subcommand in ("build", "decode", "lint", "explain", "matrix", "diff"):
            result = run(subcommand, "-h")
            self.assertEqual((result.returncode, result.stderr), (0, b""))
            self.golden(f"help.{subcommand}", result.stdout)

    def test_wrong_usage_is_told_in_one_line(self):
        self.fails(run(), "a subcommand is missing (see 'tarnix-uwb-params --help')")
        self.fails(run("foo"), "unknown subcommand foo (see 'tarnix-uwb-params --help')")
        self.fails(run("lnt"), "unknown subcommand lnt; did you mean 'lint'? "
                   "(see 'tarnix-uwb-params --help')")
        for arguments, message in (
                (["decode"], "BLOCK is missing"),
                (["diff", "a"], "B is missing"),
                (["decode", "a", "b"], "unexpected argument b"),
                (["build", "a"], "unexpected argument a"),
                (["build", "--nonsense"], "unknown option --nonsense"),
                (["build", "--formt=hex"], "unknown option --formt; did you mean '--format'?"),
                (["build", "-x"], "unknown option -x"),
                (["build", "--root"], "--root needs a value"),
                (["build", "-o"], "-o needs a value"),
                (["build", "--quiet=1"], "--quiet takes no value"),
                (["decode", "--root", "x", "y"], "unknown option --root"),
                (["build", "--format", "sarif"],
                 "--format does not take 'sarif', but dump, hex, binary, json, c"),
                (["lint", "--ignore", "path-c"],
                 "--ignore does not take 'path-c'; did you mean 'path-cr'?"),
                (["build", "--color", "red"], "--color does not take 'red', but auto, always, never"),
                (["build", "--capacity", "-1"], "--capacity takes a number from 0 to 1048576, not '-1'"),
                (["build", "--capacity", "1048577"],
                 "--capacity takes a number from 0 to 1048576, not '1048577'"),
                (["build", "--capacity", "7x"],
                 "--capacity takes a number from 0 to 1048576, not '7x'"),
                (["build", "--capacity", ""], "--capacity takes a number from 0 to 1048576, not ''")):
            self.fails(run(*arguments),
                       f"{message} (see 'tarnix-uwb-params {arguments[0]} --help')")

    def test_words_that_complete_a_command_line(self):
        for words, expected in (((), "build\n"), (("bui",), "\n--version"), (("nonsense", ""), "")):
            shown = run("--complete", *words).stdout.decode()
            self.assertIn(expected, shown)
            self.assertEqual(expected == "", shown.strip() == "")

    def test_options_may_follow_operands_and_two_dashes_end_them(self):
        file = self.folder / "-block"
        file.write_bytes(self.block())
        expected = run("decode", "--format", "json", file).stdout
        self.assertEqual(run("decode", file, "--format", "json").stdout, expected)
        self.assertEqual(run("decode", "--format=json", "--", "-block", cwd=self.folder).stdout,
                         expected)

    def test_version_is_that_of_the_library(self):
        result = run("--version")
        self.assertEqual((result.returncode, result.stdout),
                         (0, b"tarnix-uwb-params, library v1.2-RC1\n"))


if __name__ == "__main__":
    unittest.main()
