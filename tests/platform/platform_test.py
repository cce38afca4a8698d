# SPDX-License-Identifier: Apache-2.0
"""Holds what the platform's build reads to the tree and to the CMake build.

    python3 platform_test.py --sources build/host/tests/platform/sources.txt
"""

import argparse
import glob
import json
import os
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile
import unittest

import blueprint

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[1] / "kit"))
import calibration  # noqa: E402  (found through the line above)

ROOT = pathlib.Path(__file__).resolve().parents[2]
DEVICE = ROOT / "examples/device"
PATHS = ("srcs", "src", "data", "export_include_dirs", "version_script", "license_text", "dictionary")
# Libraries that the platform brings, all of them for its host too.
OF_THE_PLATFORM = (
    "libbase", "libbase_headers", "libjsoncpp", "liblog", "liblog_headers", "libz"
)
OPTIONS = argparse.Namespace(sources=None)
EXAMPLES = blueprint.modules_of(DEVICE / "Android.bp")
MODULES = {**blueprint.modules_of(ROOT / "Android.bp"), **EXAMPLES}


def as_list(value):
    return value if isinstance(value, list) else [value]


def own_and_inherited(name, key):
    """The values of a list property, with those of the module's defaults."""
    properties = MODULES[name][1]
    values = list(as_list(properties.get(key, [])))
    for default in properties.get("defaults", []):
        values += own_and_inherited(default, key)
    return values


def sources(name):
    """All source files of a module, those of the file groups that it names among them."""
    found = []
    for source in own_and_inherited(name, "srcs"):
        found += sources(source[1:]) if source.startswith(":") else [source]
    return found


def cmake_sources():
    """Of every target that has a module the sources, from the root, as CMake builds it."""
    targets = {}
    for line in OPTIONS.sources.read_text().splitlines():
        module, folder, *files = line.split(";")
        files = [f for f in files if "TARGET_OBJECTS" not in f]
        paths = [(pathlib.Path(folder) / f).resolve().relative_to(ROOT) for f in files]
        targets.setdefault(module, []).extend(str(path) for path in paths)
    return targets


class AndroidBp(unittest.TestCase):
    def test_every_module_has_the_sources_of_the_cmake_build(self):
        targets = cmake_sources()
        self.assertGreater(len(targets), 0)
        for module, expected in targets.items():
            with self.subTest(module=module):
                self.assertEqual(sorted(sources(module)), sorted(expected))

    def test_every_module_with_sources_is_compared(self):
        kinds = ("cc_library_shared", "cc_binary_host", "cc_test", "cc_fuzz")
        built = {name for name, (kind, _) in MODULES.items() if kind in kinds}
        self.assertEqual(built, set(cmake_sources()))

    def test_every_path_exists(self):
        for name, (_, properties) in MODULES.items():
            folder = DEVICE if name in EXAMPLES else ROOT
            for path in (p for key in PATHS for p in as_list(properties.get(key, []))):
                if not path.startswith(":"):
                    with self.subTest(module=name, path=path):
                        self.assertTrue(glob.glob(str(folder / path)))

    def test_every_module_that_is_named_exists(self):
        for name, (_, properties) in MODULES.items():
            paths = (p for key in ("srcs", "src") for p in as_list(properties.get(key, [])))
            named = [p[1:] for p in paths if p.startswith(":")]
            for key in ("defaults", "required", "tools"):
                named += properties.get(key, [])
            for key in ("shared_libs", "static_libs", "header_libs"):
                named += [lib for lib in properties.get(key, []) if lib not in OF_THE_PLATFORM]
            for other in named:
                with self.subTest(module=name, other=other):
                    self.assertIn(other, MODULES)

    def test_the_command_is_a_host_module_with_what_a_host_has(self):
        name = "tarnix-uwb-params"
        self.assertEqual(MODULES[name][0], "cc_binary_host")
        self.assertEqual(
            sorted(own_and_inherited(name, "shared_libs")), ["libbase", "libjsoncpp", "liblog", "libz"]
        )
        self.assertEqual(own_and_inherited(name, "vendor"), [])
        self.assertEqual(own_and_inherited(name, "cppflags"), ["-fexceptions"])

    def test_unit_tests_are_built_for_the_host_too(self):
        for folder in ("grammar", "schema", "output", "loader"):
            name = f"tarnix_uwb_params_nfcc_{folder}_tests"
            self.assertEqual(own_and_inherited(name, "host_supported"), [True])

    def test_the_library_is_what_the_device_asks_for(self):
        name = "libtarnix_uwb_params_nfcc"
        kind, properties = MODULES[name]
        self.assertEqual(kind, "cc_library_shared")
        self.assertEqual(own_and_inherited(name, "vendor"), [True])
        self.assertEqual(
            own_and_inherited(name, "target"), [{"android": {"compile_multilib": "32"}}]
        )
        self.assertEqual(own_and_inherited(name, "shared_libs"), ["libbase", "liblog", "libz"])
        self.assertEqual(own_and_inherited(name, "cppflags"), ["-fexceptions"])
        self.assertEqual(own_and_inherited(name, "rtti"), [True])
        self.assertIn("-fvisibility=hidden", own_and_inherited(name, "cflags"))
        self.assertEqual(properties["version_script"], f"{name}.map.txt")
        self.assertEqual(
            properties["sanitize"], {"integer_overflow": True, "misc_undefined": ["bounds"]}
        )


class TestMapping(unittest.TestCase):
    def test_every_test_exists_and_is_listed(self):
        groups = json.loads((ROOT / "TEST_MAPPING").read_text())
        listed = [test["name"] for tests in groups.values() for test in tests]
        tests = [name for name, (kind, _) in MODULES.items() if kind == "cc_test"]
        self.assertEqual(sorted(listed), sorted(tests))


@unittest.skipIf("COMMAND" not in os.environ, "needs the command")
class CalibrationCheck(unittest.TestCase):
    """The command lines of the rules in examples/device, run as the platform's build runs them."""

    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.top = pathlib.Path(folder.name)
        self.etc = self.top / "vendor/tarnix/uwb_params_nfcc/examples/vendor/etc"
        shutil.copytree(ROOT / "examples/vendor/etc", self.etc)

    def run_rule(self, name):
        _, rule = EXAMPLES[f"tarnix_uwb_params_nfcc_example_{name}"]
        words = {"$(location tarnix-uwb-params)": os.environ["COMMAND"], "$(out)": "out", "$$": "$"}
        command = rule["cmd"]
        for word, value in words.items():
            command = command.replace(word, value)
        self.assertNotIn("$(", command)
        return subprocess.run(command, shell=True, cwd=self.top, capture_output=True, text=True)

    def test_good_calibration_gives_the_path_file(self):
        done = self.run_rule("check")
        self.assertEqual(done.returncode, 0, done.stderr)
        self.assertEqual((self.top / "out").read_text(),
                         (self.etc / "uwb_calib_paths.conf").read_text())

    def test_mistake_fails_the_build_and_names_its_line(self):
        with open(self.etc / "uwb/us/calib.conf", "a", encoding="ascii") as file:
            file.write("xtal_trm=40\n")
        done = self.run_rule("check")
        self.assertEqual(done.returncode, 1)
        path = "vendor/tarnix/uwb_params_nfcc/examples/vendor/etc/uwb/us/calib.conf"
        self.assertRegex(done.stdout, rf"(?m)^{path}:4:1: warning: no parameter has the key 'xtal_trm'")
        self.assertFalse((self.top / "out").exists())

    def test_page_of_the_countries_is_an_output(self):
        self.assertEqual(self.run_rule("countries").returncode, 0)
        data = re.search('id="data">(.*?)</script>', (self.top / "out").read_text(), re.S)[1]
        blocks = {tuple(block["countries"]): block["bytes"][:4]
                  for block in json.loads(data)["state"]["blocks"]}
        self.assertEqual(blocks[("us",)], "54d3")


class DeviceExamples(unittest.TestCase):
    def test_callers_calibration_is_that_of_the_tests(self):
        text = (ROOT / "tests/platform/data/calib.conf").read_text()
        self.assertEqual(text, calibration.TEXT)

    def test_makefile_names_modules_and_files_that_exist(self):
        text = (DEVICE / "device.mk").read_text()
        for module in re.findall(r"^PRODUCT_PACKAGES \+= (\S+)", text, re.M):
            self.assertIn(module, MODULES)
        copies = re.findall(r"uwb_params_nfcc/(\S+):\$\(TARGET_COPY_OUT_VENDOR\)/(\S+)", text)
        self.assertEqual(len(copies), 4)
        for source, target in copies:
            self.assertTrue((ROOT / source).is_file(), source)
            self.assertTrue(source.endswith("vendor/" + target), target)

    def test_properties_are_those_that_the_library_reads(self):
        text = (ROOT / "loader/android_properties.cpp").read_text()
        rows = [line.split() for line in (DEVICE / "property_contexts").read_text().splitlines()]
        labelled = [row[0] for row in rows if row and row[0] != "#"]
        self.assertEqual(labelled, re.findall(r'getSystemProp\("(.*)"\)', text))

    def test_policy_declares_the_type_of_the_properties(self):
        types = set(re.findall(r":(\w+_prop):", (DEVICE / "property_contexts").read_text()))
        policy = (DEVICE / "hal_uwb_calibration.te").read_text()
        self.assertEqual(types, set(re.findall(r"vendor_internal_prop\((\w+)\)", policy)))
        self.assertEqual(types, set(re.findall(r"set_prop\(\w+, (\w+)\)", policy)))
        self.assertEqual(types, set(re.findall(r"get_prop\(hal_uwb_default, (\w+)\)", policy)))

    def test_policy_lets_the_service_set_the_country_alone(self):
        contexts = (DEVICE / "property_contexts").read_text()
        policy = (DEVICE / "hal_uwb_calibration.te").read_text()
        setters = {
            key: re.findall(rf"set_prop\((\w+), {label}\)", policy)
            for key, label in re.findall(r"^(\S+) u:object_r:(\w+):", contexts, re.M)
        }
        self.assertEqual(setters, {
            "ro.vendor.uwb.calibration.calibrationpaths": ["vendor_init"],
            "vendor.uwb.calibration.country_code": ["hal_uwb_default"],
        })


if __name__ == "__main__":
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--sources", type=pathlib.Path, required=True)
    OPTIONS, rest = parser.parse_known_args()
    unittest.main(argv=[sys.argv[0], *rest])
