# SPDX-License-Identifier: Apache-2.0
"""Each rule of lint fires on its bad tree and not on its good one; the documentation shows both.

A rule's folder has two trees, bad and good, which are laid over the tree in base. A file named
NAME.gone takes NAME out of it, one named NAME.fifo makes NAME a pipe. UPDATE=1 rewrites the expected
findings.
"""
import json
import os
import re
import shutil
import unittest
from pathlib import Path

from command_test import GOLDEN, HERE, PROJECT, CommandTest, run

LINT = HERE / "lint"
RULES = sorted(path.name for path in LINT.iterdir() if path.name != "base")
DOCUMENT = PROJECT / "docs/lint_rules.md"
ABSOLUTE_URI = r"^[a-z]+://[A-Za-z0-9._~/%-]+(#[a-z0-9-]+)?$"


def lay_over(source, target):
    """Copies a tree over another, links as links."""
    for path in sorted(source.rglob("*")):
        place = target / path.relative_to(source)
        if place.is_symlink() or place.is_file():
            place.unlink()
        if path.suffix == ".gone":
            place.with_suffix("").unlink()
        elif path.suffix == ".fifo":
            place.with_suffix("").unlink()
            os.mkfifo(place.with_suffix(""))
        elif path.is_symlink():
            place.symlink_to(os.readlink(path))
        elif path.is_dir():
            place.mkdir(exist_ok=True, parents=True)
        else:
            shutil.copyfile(path, place)


def tree_of(rule, kind, folder):
    target = folder / kind
    shutil.copytree(LINT / "base", target)
    lay_over(LINT / rule / kind, target)
    return target


def listing(folder):
    """The files of a folder, one per line."""
    lines = []
    for path in sorted(folder.rglob("*")):
        name = str(path.relative_to(folder))
        if path.is_symlink():
            lines.append(f"{name} -> {os.readlink(path)}")
        elif path.is_file():
            lines.append(name if path.stat().st_size else f"{name} (empty)")
    return "".join(line + "\n" for line in lines)


def shown(name):
    """What the documentation shows of a file or folder of the tests."""
    path = PROJECT / name
    if name.endswith("/"):
        return listing(path)
    return path.read_bytes().decode("utf-8", "backslashreplace").replace(
        "\r", "\\r").replace("\ufeff", "\\xef\\xbb\\xbf")


class Rules(CommandTest):
    def lint(self, tree, *options):
        # Named from its own folder, so that the findings are the same wherever it lies.
        return run("lint", "--root", tree.name, *options, cwd=tree.parent)

    def rules_found(self, tree, *options):
        found = json.loads(self.lint(tree, "--format", "json", *options).stdout)["findings"]
        return {finding["rule"] for finding in found}

    def test_base_tree_has_no_findings(self):
        shutil.copytree(LINT / "base", self.folder / "base")
        result = self.lint(self.folder / "base")
        self.assertEqual((result.returncode, result.stdout), (0, b""))
        self.assertEqual(result.stderr, b"tarnix-uwb-params: 3 loads (1 country, any other country, "
                                        b"no country code): each gives a block; nothing found\n")

    def test_bad_tree_fires_the_rule_as_expected(self):
        for rule in RULES:
            with self.subTest(rule):
                result = self.lint(tree_of(rule, "bad", self.folder / rule), "--notes")
                self.assertIn(f"[{rule}]".encode(), result.stdout)
                self.assertEqual(result.stderr.count(b"\n"), 1)
                self.golden(f"lint/{rule}", result.stdout + result.stderr)

    def test_good_tree_does_not_fire_the_rule(self):
        for rule in RULES:
            with self.subTest(rule):
                self.assertNotIn(rule, self.rules_found(tree_of(rule, "good", self.folder / rule)))

    def test_error_makes_a_rule_an_error(self):
        tree = tree_of("port-255", "bad", self.folder)
        self.assertEqual(self.lint(tree, "--fail-on", "error").returncode, 0)
        result = self.lint(tree, "--fail-on", "error", "--error", "port-255")
        self.assertEqual(result.returncode, 1)
        self.assertIn(b": error: ports are counted from 1", result.stdout)

    def test_ignore_removes_the_findings_of_a_rule(self):
        tree = tree_of("octal-number", "bad", self.folder)
        self.assertEqual(self.lint(tree).returncode, 1)
        result = self.lint(tree, "--ignore", "octal-number")
        self.assertEqual((result.returncode, result.stdout), (0, b""))

    def test_unknown_rule_is_wrong_usage(self):
        for option in ("--error", "--ignore"):
            result = run("lint", option, "no-such-rule")
            self.assertEqual((result.returncode, result.stdout), (2, b""))
            self.assertEqual(result.stderr.count(b"\n"), 1)


class Formats(CommandTest):
    def setUp(self):
        super().setUp()
        self.tree = tree_of("out-of-range", "bad", self.folder)
        (self.tree / "vendor/etc/uwb/more.conf").write_bytes(
            b"xtal_trim=40 \xe2\x82\xac, 100%\n# caf\xe9 \x1b[31m\0\nversion=70000\n")

    def lint(self, form):
        result = run("lint", "-q", "--root", "bad", "--format", form, cwd=self.folder)
        self.assertEqual((result.returncode, result.stderr), (1, b""))
        return result.stdout

    def test_text_json_and_github(self):
        for form in ("text", "json", "github"):
            self.golden(f"lint.{form}", self.lint(form))

    def test_text_never_steers_the_terminal(self):
        self.assertNotIn(b"\x1b", self.lint("text"))

    def test_colours_on_request(self):
        shown = run("lint", "--root", self.tree, "--color", "always").stdout
        self.assertIn(b"\x1b[1;31merror:\x1b[0m", shown)

    def test_sarif_has_every_property_that_2_1_0_requires(self):
        log = json.loads(self.lint("sarif"))
        self.golden("lint.sarif", re.sub(rb'"file:///[^"]*/docs?/[^"/]*/', b'"file:///docs/',
                                         self.lint("sarif")))
        self.assertEqual(log["version"], "2.1.0")
        self.assertTrue(log["$schema"].endswith("sarif-2.1.0.json"))
        self.assertEqual(len(log["runs"]), 1)
        sarif_run = log["runs"][0]
        self.assertEqual(set(sarif_run), {"tool", "columnKind", "originalUriBaseIds", "results"})
        self.assertIn(sarif_run["columnKind"], ("utf16CodeUnits", "unicodeCodePoints"))
        self.assertEqual(list(sarif_run["originalUriBaseIds"]), ["%SRCROOT%"])
        driver = sarif_run["tool"]["driver"]
        self.assertEqual(set(driver), {"name", "version", "informationUri", "rules"})
        self.assertRegex(driver["version"], r"^v\d")
        self.assertRegex(driver["informationUri"], ABSOLUTE_URI)
        self.check_sarif_rules(driver["rules"])
        self.assertTrue(sarif_run["results"])
        for result in sarif_run["results"]:
            self.check_sarif_result(result, driver["rules"])

    def check_sarif_rules(self, rules):
        identifiers = [rule["id"] for rule in rules]
        self.assertEqual(len(set(identifiers)), len(identifiers))
        for rule in rules:
            self.assertEqual(set(rule), {"id", "helpUri", "shortDescription", "defaultConfiguration"})
            self.assertRegex(rule["helpUri"], ABSOLUTE_URI)
            self.assertTrue(rule["helpUri"].endswith(f"/lint_rules.md#{rule['id']}"))
            self.assertTrue(rule["shortDescription"]["text"])
            self.assertIn(rule["defaultConfiguration"]["level"], ("note", "warning", "error"))

    def check_sarif_result(self, result, rules):
        self.assertEqual(set(result), {"ruleId", "ruleIndex", "level", "message", "locations"})
        self.assertEqual(rules[result["ruleIndex"]]["id"], result["ruleId"])
        self.assertIn(result["level"], ("note", "warning", "error"))
        self.assertTrue(result["message"]["text"])
        location = result["locations"][0]["physicalLocation"]
        self.assertEqual(location["artifactLocation"]["uriBaseId"], "%SRCROOT%")
        self.assertRegex(location["artifactLocation"]["uri"], r"^[A-Za-z0-9._~%-][A-Za-z0-9._~/%-]*$")
        region = location["region"]
        self.assertGreaterEqual(region["startLine"], 1)
        self.assertGreaterEqual(region["startColumn"], 1)
        self.assertEqual(set(region) - {"startLine", "startColumn", "snippet"}, set())
        if "snippet" in region:
            self.assertIsInstance(region["snippet"]["text"], str)


class NewUser(CommandTest):
    """A tree with one misspelt key, one octal number, no file for other countries, and one bad
    selector."""

    def setUp(self):
        super().setUp()
        shutil.copytree(PROJECT / "examples", self.folder / "tree")
        uwb = self.folder / "tree/vendor/etc/uwb"
        shutil.rmtree(uwb / "default")
        common = (uwb / "common.conf").read_text()
        for good, bad in (("xtal_trim=40", "xtal_trm=40"), ("spacing=4", "spacing=014"),
                          ("patch.selector_gpio=6", "patch.selector_gpio=8")):
            self.assertIn(good, common)
            common = common.replace(good, bad)
        (uwb / "common.conf").write_text(common)

    def test_lint_names_all_four_and_their_lines(self):
        result = run("lint", "--root", "tree", cwd=self.folder)
        self.assertEqual(result.returncode, 1)
        common = "tree/vendor/etc/uwb/common.conf"
        for place, rule in ((f"{common}:31:1", "unknown-key"), (f"{common}:35:23", "octal-number"),
                            (f"{common}:9:21", "selector-line"),
                            ("tree/vendor/etc/uwb_calib_paths.conf:2:1", "file-missing")):
            self.assertRegex(result.stdout.decode(), re.compile(
                rf"^{re.escape(place)}: \w+: .* \[{rule}\]$", re.M))

    def test_explain_shows_what_the_device_would_read(self):
        shown = run("explain", "--root", "tree", "--country", "DE", cwd=self.folder).stdout.decode()
        self.assertIn("    no line sets xtal_trim\n", shown)
        self.assertIn("No parameter has the key of:\n    /vendor/etc/uwb/common.conf:31: xtal_trm=40\n",
                      shown)
        self.assertIn("    overrides /vendor/etc/uwb/common.conf:34: wifi_coex_time_gap=12\n", shown)
        missing = run("explain", "--root", "tree", "--country", "FR", cwd=self.folder).stdout
        self.assertIn(b"  line 2: there is no /vendor/etc/uwb/fr/calib.conf, "
                      b"and there is no /vendor/etc/uwb/default/calib.conf\n",
                      missing)


class Documentation(CommandTest):
    def setUp(self):
        super().setUp()
        self.text = DOCUMENT.read_text()
        self.sections = re.split(r"^### ", self.text, flags=re.M)[1:]

    def rules_of_the_command(self):
        tree = tree_of("unknown-key", "good", self.folder)
        sarif = json.loads(run("lint", "--root", tree, "--format", "sarif").stdout)
        return sarif["runs"][0]["tool"]["driver"]["rules"]

    def test_every_rule_is_tested_and_documented_with_its_severity(self):
        rules = self.rules_of_the_command()
        self.assertEqual(sorted(rule["id"] for rule in rules), RULES)
        documented = [re.match(r"(\S+)\n\nSeverity: (\w+)\.", section).groups()
                      for section in self.sections]
        self.assertEqual(documented, [(rule["id"], rule["defaultConfiguration"]["level"])
                                      for rule in rules])

    def test_examples_are_the_tested_files(self):
        for section in self.sections:
            rule = section.split("\n", 1)[0]
            examples = re.findall(r"^(Bad|Good), `([^`]*)`:\n\n```\n(.*?)```$", section, re.M | re.S)
            self.assertEqual([kind for kind, _, _ in examples], ["Bad", "Good"], rule)
            for kind, name, text in examples:
                self.assertTrue(name.startswith(f"tests/tools/lint/{rule}/{kind.lower()}/"), name)
                self.assertEqual(text, shown(name), name)


if __name__ == "__main__":
    unittest.main()
