# SPDX-License-Identifier: Apache-2.0
"""Each rule of lint fires on its bad tree and not on its good one; the documentation quotes them.

A rule's folder has two trees, bad and good, which are laid over the tree in base. A file named
NAME.gone takes NAME out of it, one named NAME.fifo makes NAME a pipe. UPDATE=1 rewrites the expected
findings.
"""
import contextlib
import ctypes
import json
import os
import re
import shutil
import socket
import unittest
from pathlib import Path

from command_test import GOLDEN, HERE, PROJECT, CommandTest, run

LINT = HERE / "lint"
RULES = sorted(path.name for path in LINT.iterdir() if path.name != "base")
DOCUMENT = PROJECT / "docs/lint_rules.md"

# What the published schema of SARIF 2.1.0 says of the objects that are used: their properties, those
# marked with ! required and no others allowed, and of each the type. A set is an enumeration, a number
# a least value, a list an array, a dictionary a map from any names.
TEXT = re.compile(r"(?s).+")
URI = re.compile(r"[a-z][a-z0-9+.-]*://?[A-Za-z0-9._~/%-]+(#[a-z0-9-]+)?")
URI_REFERENCE = re.compile(r"(file://)?[A-Za-z0-9._~/%-]+")
LEVELS = {"none", "note", "warning", "error"}
SARIF = {
    "log": {"$schema": URI, "version!": {"2.1.0"}, "runs!": ["run"]},
    "run": {"tool!": "tool", "originalUriBaseIds": {"": "artifactLocation"}, "results": ["result"],
            "columnKind": {"utf16CodeUnits", "unicodeCodePoints"}},
    "tool": {"driver!": "toolComponent"},
    "toolComponent": {"name!": TEXT, "version": TEXT, "informationUri": URI,
                      "rules": ["reportingDescriptor"]},
    "reportingDescriptor": {"id!": TEXT, "helpUri": URI, "shortDescription": "text",
                            "defaultConfiguration": "reportingConfiguration"},
    "reportingConfiguration": {"level": LEVELS},
    "text": {"text!": TEXT},
    "result": {"message!": "text", "ruleId": TEXT, "ruleIndex": -1, "level": LEVELS,
               "locations": ["location"]},
    "location": {"physicalLocation": "physicalLocation"},
    "physicalLocation": {"artifactLocation!": "artifactLocation", "region": "region"},
    "artifactLocation": {"uri": URI_REFERENCE, "uriBaseId": TEXT, "description": "text"},
    "region": {"startLine": 1, "startColumn": 1, "snippet": "text"},
}


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


def lines_of(tree):
    """What a tree holds: the names of its files, and their lines."""
    lines = listing(tree).splitlines()
    for path in sorted(tree.rglob("*")):
        if path.is_file() and not path.is_symlink():
            lines += path.read_bytes().decode("utf-8", "backslashreplace").replace(
                "\r", "\\r").replace("\ufeff", "\\xef\\xbb\\xbf").split("\n")
    return lines


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
            b"version=70000\n# caf\xe9 \x1b[31m\0\nxtal_trim=40 \xe2\x82\xac, 100%\n")

    def lint(self, form):
        result = run("lint", "-q", "--root", "bad", "--format", form, cwd=self.folder)
        self.assertEqual((result.returncode, result.stderr), (1, b""))
        return result.stdout

    def test_text_json_and_github(self):
        for form in ("text", "json", "github"):
            self.golden(f"lint.{form}", self.lint(form))
        shown = run("lint", "--root", PROJECT / "examples", "--notes", "--format", "github").stdout
        self.assertTrue(shown.startswith(b"::notice file="), shown)

    def test_text_never_steers_the_terminal(self):
        self.assertNotIn(b"\x1b", self.lint("text"))

    def test_colours_on_request(self):
        shown = run("lint", "--root", self.tree, "--color", "always").stdout
        self.assertIn(b"\x1b[1;31merror:\x1b[0m", shown)
        self.assertIn(b"\x1b[1;35mwarning:\x1b[0m", shown)
        shown = run("lint", "--root", PROJECT / "examples", "--color", "always", "--notes").stdout
        self.assertIn(b"\x1b[1;36mnote:\x1b[0m", shown)

    def test_sarif(self):
        self.golden("lint.sarif", re.sub(rb'"file:///[^"]*/docs?/[^"/]*/', b'"file:///docs/',
                                         self.lint("sarif")))


class Sarif(CommandTest):
    def check(self, value, shape, where="log"):
        if isinstance(shape, str):
            properties = {name.rstrip("!"): below for name, below in SARIF[shape].items()}
            self.assertEqual(set(value) - set(properties), set(), where)
            required = {name[:-1] for name in SARIF[shape] if name.endswith("!")}
            self.assertEqual(required - set(value), set(), where)
            for name, below in value.items():
                self.check(below, properties[name], f"{where}.{name}")
        elif isinstance(shape, (list, dict)):
            self.assertIsInstance(value, type(shape), where)
            parts = value.items() if isinstance(shape, dict) else enumerate(value)
            below = shape[""] if isinstance(shape, dict) else shape[0]
            for name, part in parts:
                self.check(part, below, f"{where}[{name}]")
        elif isinstance(shape, set):
            self.assertIn(value, shape, where)
        elif isinstance(shape, int):
            self.assertIs(type(value), int, where)
            self.assertGreaterEqual(value, shape, where)
        else:
            self.assertTrue(shape.fullmatch(value), f"{where}: {value}")

    def check_references(self, sarif_run):
        """What SARIF asks for beyond its schema."""
        rules = [rule["id"] for rule in sarif_run["tool"]["driver"]["rules"]]
        self.assertEqual(len(set(rules)), len(rules))
        for rule in sarif_run["tool"]["driver"]["rules"]:
            self.assertTrue(rule["helpUri"].endswith(f"/lint_rules.md#{rule['id']}"))
        for result in sarif_run["results"]:
            self.assertEqual(rules[result["ruleIndex"]], result["ruleId"])
            (location,) = result["locations"]
            artifact = location["physicalLocation"]["artifactLocation"]
            self.assertIn(artifact["uriBaseId"], sarif_run["originalUriBaseIds"])
            self.assertNotRegex(artifact["uri"], "^/|^file:|//")

    def test_every_tree_of_the_rules_gives_what_the_schema_asks_for(self):
        for rule in RULES:
            with self.subTest(rule):
                tree = tree_of(rule, "bad", self.folder / rule)
                log = json.loads(run("lint", "--root", tree.name, "--notes", "--format", "sarif",
                                     cwd=tree.parent).stdout)
                self.check(log, "log")
                (sarif_run,) = log["runs"]
                self.check_references(sarif_run)
                self.assertIn(rule, [result["ruleId"] for result in sarif_run["results"]] +
                              ["no-block"])  # Follows from another finding.

    def test_addresses(self):
        """Relative ones for files below the current folder, others whole."""
        tree = tree_of("octal-number", "bad", self.folder / "a b\u00e9%")
        escaped = f"{self.folder}/a%20b%C3%A9%25/bad/vendor/etc/uwb/more.conf"
        for folder, uri in ((self.folder, "a%20b%C3%A9%25/bad/vendor/etc/uwb/more.conf"),
                            (tree / "vendor", "etc/uwb/more.conf"),
                            (tree / "vendor/etc/uwb/de", f"file://{escaped}")):
            with self.subTest(folder):
                log = json.loads(run("lint", "--root", tree, "--format", "sarif", cwd=folder).stdout)
                self.check(log, "log")
                location = log["runs"][0]["results"][0]["locations"][0]["physicalLocation"]
                self.assertEqual(location["artifactLocation"]["uri"], uri)
                self.assertEqual("uriBaseId" in location["artifactLocation"], uri != f"file://{escaped}")


class Trees(CommandTest):
    """Trees with one mistake, as they come up, and all that lint says of them."""

    POWERS = "patch.ch5.prf64.tx_power=1\nedge.ch9.prf64.tx_power=1\n"

    def setUp(self):
        super().setUp()
        shutil.copytree(LINT / "base", self.folder / "tree")
        self.etc = self.folder / "tree/vendor/etc"
        self.uwb = self.etc / "uwb"

    def write(self, name, text=POWERS):
        path = self.uwb / name
        path.parent.mkdir(exist_ok=True, parents=True)
        path.write_bytes(text.encode())

    def edit(self, path, old, new):
        text = path.read_bytes().decode()
        self.assertIn(old, text)
        path.write_bytes(text.replace(old, new).encode())

    def lint(self, *options, status=1):
        result = run("lint", "--root", "tree", *options, cwd=self.folder)
        self.assertEqual(result.returncode, status, result)
        return result.stdout + result.stderr

    def held_to_modes(self, *arguments):
        """Root, who may read every file, is called without the two capabilities for it."""
        prctl, drop_from_bounding_set = ctypes.CDLL(None).prctl, 24
        return run(*arguments, cwd=self.folder, preexec_fn=lambda: [
            prctl(drop_from_bounding_set, capability) for capability in (1, 2)])

    def is_golden(self, name, *options, status=1):
        self.golden(f"trees/{name}", self.lint(*options, status=status))

    def forty_countries(self, text=POWERS):
        for code in ("at be bg ca ch cy cz dk ee es fi fr gb gr hr hu ie il in is it jp kr li lt lu "
                     "lv mt mx nl no nz pl pt ro se si sk us").split():
            self.write(f"{code}/calib.conf", text)

    def test_forty_countries_without_a_mistake(self):
        self.forty_countries()
        result = run("lint", "--root", "tree", cwd=self.folder)
        self.assertEqual((result.returncode, result.stdout), (0, b""))
        self.assertEqual(result.stderr, b"tarnix-uwb-params: 42 loads (40 countries, any other "
                                        b"country, no country code): each gives a block; nothing "
                                        b"found\n")
        self.assertEqual(run("lint", "-q", "--root", "tree", cwd=self.folder).stderr, b"")

    def test_what_to_write_for_a_number(self):
        for value, message in (
                ("08", "cannot read '08' (a leading zero means octal) and ignores this line: write "
                       "8 ("),
                ("-08", "cannot read '-08' (a leading zero means octal) and ignores this line: "
                        "write 8 ("),
                ("08\n# 1\nversion=4\nch5.antenna_selection=patch\nap_coop_mode=1",
                 "and ignores this line and the rest of the file (version, ap_coop_mode): write 8 ("),
                ("-20dB", "'xtal_trim' takes 0 to 255, not -20 ("),
                ("-65530", "'-65530' wraps around to 6, and the C++ library of older platform "
                           "releases ends the file here: write 6, or what else is meant ("),
                ("-0177772", "'-0177772' wraps around to 6, and "),
                ("-0", "'-0' has a sign, and the C++ library of older platform releases ends the "
                       "file here: write 0 ("),
                ("+0018dB", "cannot read '+0018dB' (a leading zero means octal) and ignores this "
                            "line: write 18 ("),
                ("20dB", "cannot read '20dB' and ignores this line: write 20 ("),
                ("1F", "cannot read '1F' and ignores this line: write 0x1F if hexadecimal is meant, "
                       "or 1 ("),
                ("0b1", ": write 0x0b1 if hexadecimal is meant, or a decimal number ("),
                ("2,500", "is 2; what follows is not read: write the number without ',' ("),
                ("2,5", "is 2; what follows is not read: remove it, or begin it with '#' ("),
                ("2,5000", "is 2; what follows is not read: remove it, or begin it with '#' ("),
                ("2,x", "is 2; what follows is not read: remove it, or begin it with '#' ("),
                ("2,", "is 2; what follows is not read: remove it, or begin it with '#' ("),
                ("\u00a05", "takes a whole number, 0 to 255, not '\\xc2\\xa05' ("),
                ("0x1x", "cannot read '0x1x' and ignores this line: write 0x1 ("),
                ("0" * 70 + "1b", f"cannot read '{'0' * 60}...' and ignores this line: write "
                                  f"0x{'0' * 70}1b if hexadecimal is meant, or {'0' * 60}... ("),
                ("0" + "8" * 70, f"cannot read '0{'8' * 59}...' (a leading zero means octal) and "
                                 f"ignores this line: write {'8' * 60}... ("),
                ("0" * 60 + "7", f"'{'0' * 60}...' is octal and is read as 7: write 7 ("),
                ("-" + "0" * 60, f"'-{'0' * 59}...' has a sign, and "),
                ("07", "'07' is octal and is read as 7: write 7 ("),
                ("00", "'00' is octal and is read as 0: write 0 ("),
                ("0040", "'0040' is octal and is read as 32: write 32, or 40 if that is meant ("),
                ("zero # 0", "takes a whole number, 0 to 255, not 'zero'"),
                ("", "takes a whole number, 0 to 255, but there is no value after '=' ("),
                ("x" * 61, "takes a whole number, 0 to 255, not '" + "x" * 60 + "...'"),
                ("9" * 60, "takes 0 to 255, not " + "9" * 60 + " ("),
                ("0x100", "takes 0 to 255, not 0x100")):
            with self.subTest(value):
                self.write("more.conf", f"xtal_trim={value}\n")
                shown = self.lint().decode()
                self.assertIn(message, shown)
                self.assertEqual(len(re.findall(": (?:error|warning): ", shown)), 1, shown)

    def test_values_that_countries_override(self):
        self.forty_countries(self.POWERS + "ap_coop_mode=2\nwifi_coex_time_gap=20\n")
        self.assertIn(b": each gives a block; nothing found\n", self.lint(status=0))

    def test_one_cause_in_forty_countries(self):
        self.forty_countries()
        self.edit(self.uwb / "common.conf", "temperature_", "xtal_trim=444\ntemperature_")
        self.edit(self.etc / "uwb_calib_paths.conf", "/vendor/etc/uwb/more.conf\n", "")
        self.is_golden("one_cause")

    def test_mistake_of_many_countries(self):
        self.forty_countries(self.POWERS + "xtal_trim=40\n")
        for code in ("at", "be", "bg", "ca", "ch", "cy", "cz"):
            self.write(f"{code}/calib.conf")
        self.edit(self.etc / "uwb_calib_paths.conf", "/vendor/etc/uwb/more.conf\n", "")
        self.assertIn("(10 of 42 loads: country at, country be, country bg, country ca, country ch, "
                      "country cy, ...)", self.lint().decode())

    def test_consequences_of_one_cause(self):
        self.edit(self.uwb / "common.conf", "version=2\n", "version=x\n")
        lost = (self.uwb / "common.conf").read_text().splitlines()[4:10]
        for code, line in zip(("at", "be", "bg", "ca", "ch", "cy"), lost):
            self.write(f"{code}/calib.conf", self.POWERS + line + "\n")
        self.is_golden("consequences")
        baseline = self.lint("-q", "--format", "baseline").decode()
        self.assertEqual(len(re.findall("(?m)^missing-key\t", baseline)), 7)

    def test_path_file_under_two_names(self):
        (self.etc / "calib_paths").symlink_to("uwb_calib_paths.conf")
        self.assertEqual(self.lint("-q", status=0), b"")

    def test_default_is_missing_or_broken(self):
        self.write("default/calib.conf", "edge.ch9.prf64.tx_power=1\npatch.ch5.prf64.tx_power=x\n")
        self.is_golden("default_broken")
        (self.uwb / "default/calib.conf").unlink()
        self.is_golden("default_missing")
        self.assertIn(b"2 loads (1 country, no country code): each gives a block; nothing found\n",
                      self.lint("--countries", "de,none", status=0))

    def test_country_file_cannot_be_used(self):
        for code, target in (("fr", "/nowhere/calib.conf"), ("us", "/etc/hostname"),
                             ("it", "../../../../../../etc/hostname"), ("se", "calib.conf")):
            (self.uwb / code).mkdir()
            (self.uwb / code / "calib.conf").symlink_to(target)
        (self.uwb / "es/calib.conf").mkdir(parents=True)
        # In the place of a country's folder. Files with other names may lie there.
        (self.uwb / "no").symlink_to("nowhere")
        os.mkfifo(self.uwb / "pl")
        self.write("pt", "")
        self.write("notes", "")
        self.is_golden("unusable")
        self.assertIn(b"error: cannot read /vendor/etc/uwb/fr/calib.conf: it is a link to "
                      b"/nowhere/calib.conf, which does not exist", self.lint("--country", "FR"))

    def test_what_to_write_for_an_entry(self):
        paths = self.etc / "uwb_calib_paths.conf"
        good = paths.read_text()
        other = "is no placeholder but part of the path: write <country>"
        for entry, column, message in (
                ("# all", 1, "path files have no comments, so the whole line is a path: remove the line"),
                (" // all", 2, "path files have no comments, so the whole line is a path: remove the "
                               "line"),
                ("/a.conf ; all", 9, "path files have no comments, so the whole line is a path: "
                                     "remove the comment"),
                ("", 1, "an empty line is a path too: remove the line"),
                (" /a.conf", 1, "the blank is part of the path: remove it"),
                ("/<Country>/a.conf", 2, f"'<Country>' {other}"),
                ("/${country}_a.conf", 2, f"'${{country}}' {other}"),
                ("/$COUNTRY/a.conf", 2, f"'$COUNTRY' {other}"),
                ("/a/%s.conf", 4, f"'%s' {other}"),
                ("/a/%s", 4, f"'%s' {other}"),
                ("/<country>/b<country>.conf", 13, "only the first <country> is replaced, this one "
                                                   "is part of the path: write it once")):
            with self.subTest(entry):
                paths.write_text(good + entry + "\n")
                shown = self.lint().decode()
                self.assertIn(f"uwb_calib_paths.conf:4:{column}: warning: {message} (in all ", shown)
                self.assertIn("; 1 warning\n", shown)

    def test_sarif_counts_the_characters_of_the_file(self):
        with open(self.etc / "uwb_calib_paths.conf", "ab") as paths:
            paths.write(b"/caf\xc3\xa9\x01\xe9 # all\n")
        result = run("lint", "--root", "tree", "--format", "sarif", cwd=self.folder)
        found = {one["ruleId"]: one for one in json.loads(result.stdout)["runs"][0]["results"]}
        place = found["path-comment"]["locations"][0]["physicalLocation"]
        self.assertEqual(place["region"]["startColumn"], 9)

    def test_paths_that_lead_to_no_file(self):
        with open(self.etc / "uwb_calib_paths.conf", "a", encoding="ascii") as paths:
            paths.write("/vendor/etc/uwb/common.conf/more\n/write_only/drop_caches\n")
        shown = self.lint("--map", "/write_only=/proc/sys/vm").decode()
        self.assertIn("error: cannot read /vendor/etc/uwb/common.conf/more: "
                      "/vendor/etc/uwb/common.conf is no directory: ", shown)
        # Nobody may read this one, root neither.
        self.assertIn("error: cannot read /write_only/drop_caches: Permission denied: ", shown)

    def test_neither_the_country_file_nor_the_default_can_be_used(self):
        (self.uwb / "default/calib.conf").unlink()
        missing = (b"error: there is no /vendor/etc/uwb/default/calib.conf, which is read for a "
                   b"country without a file of its own: create it")
        self.assertIn(missing + b" [", self.lint("--country", "FR"))
        (self.uwb / "fr").mkdir()
        (self.uwb / "fr/calib.conf").symlink_to("/nowhere/calib.conf")
        self.assertIn(missing + b" [", self.lint("--country", "FR"))
        (self.uwb / "default").rmdir()
        (self.uwb / "default").symlink_to("nowhere")
        self.assertIn(b"error: cannot read /vendor/etc/uwb/default/calib.conf: /vendor/etc/uwb/default "
                      b"is a link to nowhere, which does not exist: ", self.lint("--country", "SE"))

    def test_country_file_without_permission(self):
        self.write("fr/calib.conf")
        (self.uwb / "fr/calib.conf").chmod(0)
        self.assertIn(b"error: cannot read /vendor/etc/uwb/fr/calib.conf: Permission denied: "
                      b"put a file there that can be read; /vendor/etc/uwb/default/calib.conf is "
                      b"read instead (country fr)",
                      self.held_to_modes("lint", "--root", "tree").stdout)

    def test_folder_that_keeps_its_names(self):
        """Which countries it has is unknown, and said so."""
        self.uwb.chmod(0o311)
        self.addCleanup(self.uwb.chmod, 0o755)
        problem = ("cannot list /vendor/etc/uwb/: Permission denied, so its countries are unknown: "
                   "name them with --countries")
        shown = self.held_to_modes("lint", "--root", "tree").stdout.decode()
        self.assertEqual(shown, f"tree/vendor/etc/uwb/:1:1: error: {problem} (in both loads) "
                                "[file-unreadable]\n")
        for arguments in (("matrix", "--root", "tree"), ("diff", "tree", "tree")):
            self.fails(self.held_to_modes(*arguments), problem)
            self.assertEqual(self.held_to_modes(*arguments, "--countries", "de,other").returncode, 0)
        for option in ("--countries", "--country"):
            self.assertEqual(self.held_to_modes("lint", "--root", "tree", option, "de").returncode, 0)

    def test_files_that_no_load_reads(self):
        for name in ("fr/calb.conf", "us/Calib.conf", "JP/calib.conf", "de.bak/calib.conf",
                     "common.conf.orig", "readme.txt", "de/notes", "usa/calib.conf",
                     "common.configuration", "Unknown/calib.conf", "DEFAULT/calib.conf",
                     "default.bak/calib.conf", "us-ca/calib.conf", "se.bak/calib.conf",
                     "at/calib.conf.txt"):
            self.write(name)
        (self.etc / "uwb_calib_path.conf").write_text("")
        self.is_golden("unread")
        self.assertNotIn(b"'de.bak'", self.lint("--countries", "de,de.bak"))

    def test_unread_file_that_is_like_two_others(self):
        self.edit(self.etc / "uwb_calib_paths.conf", "/more.conf",
                  "/more1.conf\n/vendor/etc/uwb/more2.conf")
        (self.uwb / "more.conf").rename(self.uwb / "more1.conf")
        for name in ("more2.conf", "more3.conf"):
            self.write(name)
        self.assertEqual(self.lint().count(b"[file-unread]"), 1)

    def test_names_that_are_no_countries(self):
        for code in ("us", "default", "unknown", "base", "latam"):
            self.write(f"uwb_{code}.conf")
        for name in ("uwb_us.conf~", "uwb_fr.conf.txt", "uwb_se.conf "):
            (self.uwb / name).write_text("")
        self.edit(self.etc / "uwb_calib_paths.conf", "<country>/calib.conf", "uwb_<country>.conf")
        self.is_golden("names")
        shown = self.lint("--countries", "latam,us,other", "--ignore", "file-unread", status=0)
        self.assertEqual(shown, b"tarnix-uwb-params: 3 loads (2 countries, any other country): each "
                                b"gives a block; nothing found\n")
        rows = json.loads(run("matrix", "--root", self.folder / "tree", "--countries", "us,latam",
                              "--format", "json").stdout)["countries"]
        self.assertEqual([row["country"] for row in rows], ["us", "latam"])

    def test_path_file_that_gives_no_block(self):
        paths = (self.etc / "uwb_calib_paths.conf").rename(self.etc / "calib_paths")
        self.edit(paths, "\n", "\r\n")
        self.is_golden("path_file_cr")
        self.assertIn(b"/calib_paths:1:1: error: no block: ", self.lint("--ignore", "path-cr"))
        self.edit(paths, "\r\n", "\n")
        self.edit(paths, "/vendor/etc/uwb/common", "\ufeff/vendor/etc/uwb/common")
        self.is_golden("path_file_mark")
        paths.write_text("")
        self.is_golden("path_file_empty")
        paths.unlink()
        self.assertIn(b"/etc/uwb_calib_paths.conf:1:1: error: no block: ",
                      self.lint("--ignore", "path-file-missing"))

    def test_keys_of_the_other_channel(self):
        self.edit(self.uwb / "common.conf", "edge.ch9", "patch.ch9")
        self.is_golden("other_channel")
        self.edit(self.uwb / "common.conf", "patch.ch9.prf64.ant",
                  "# lint-ignore unknown-key\npatch.ch9.prf64.ant")
        self.assertIn(b"common.conf:16:1: error: an antenna's lines for the other one's channel",
                      self.lint())

    def test_keys_in_capitals_or_without_a_part(self):
        for old, new in (("patch.port", "PATCH.port"), ("edge.port", "port"),
                         ("patch.ch5.prf64.ant_delay", "patch.ant_delay"),
                         ("edge.ch9.prf64.pg_delay", "edge.ch9.prf64.pg_dlay"),
                         ("edge.ch9.prf64.pg_count", "edge.ch9.prf16.pg_count"),
                         ("patch.ch5.prf64.pg_delay", "ch5.patch.prf64.pg_delay"),
                         ("ap_coop_mode", "ap.coop.mode"), ("alternate", "export alternate"),
                         ("temperature_reference=", "temperature_reference: "),
                         ("edge.selector_gpio_value", "edge.selector_gpio_vlaue"),
                         ("version", "versoin")):
            self.edit(self.uwb / "common.conf", old, new)
        self.is_golden("key_parts")

    def test_marks_that_make_an_assignment_a_comment(self):
        for line, column, mark in (("version;=4", 8, ";"), ("version #=4", 9, "#"),
                                   ("version //=4", 9, "//")):
            with self.subTest(line):
                self.edit(self.uwb / "common.conf", "version=2", line)
                shown = self.lint().decode()
                self.assertIn(f"common.conf:2:{column}: error: the mark '{mark}' before '=' makes "
                              "this line a comment: remove the mark, or begin the line with it (in "
                              "all 3 loads) [no-equal]\n", shown)
                self.assertIn("    leads to: no line sets 'version' [missing-key]\n", shown)
                self.edit(self.uwb / "common.conf", line, "version=2")

    def test_keys_that_many_parameters_may_have(self):
        self.write("more.conf", "xtal_trim=40\nprf64=1\n=5\n")
        shown = self.lint()
        self.assertIn(b":2:1: warning: no parameter has the key 'prf64', so the line sets nothing: "
                      b"correct it, or remove the line (in all 3 loads) [unknown-key]\n", shown)
        self.assertIn(b":3:1: warning: there is no key before '=', so the line sets nothing: "
                      b"correct it, or remove the line (in all 3 loads) [unknown-key]\n", shown)

    def test_selector_that_the_converter_refuses(self):
        """It alone is the reason that there is no block: not the other antenna's, nor its level, nor
        a value that ends the reading of a file."""
        wrong = ("edge.selector_gpio=9", "edge.selector_gpio_value=3", "patch.selector_gpio=8",
                 "patch.selector_gpio_value=2")
        for first, line in enumerate(wrong):
            with self.subTest(line):
                self.write("more.conf", "\n".join(wrong[first:][::-1]) + "\nxtal_trim=40\nversion=x\n")
                groups = json.loads(self.lint("-q", "--format", "json"))["findings"]
                (cause,) = [group for group in groups if group["consequences"]]
                self.assertEqual(cause["source"], line)
                self.assertEqual([found["message"] for found in cause["consequences"]], [
                    "no block: GPIO value must be 0 or 1" if "value" in line else
                    "no block: GPIO must be 6 or 7"])

    def test_country_selects_another_antenna(self):
        self.write("fr/calib.conf", "ch9.antenna_selection=top\ntop.port=1\n")
        self.write("default/calib.conf", self.POWERS + "top.port=3\n")
        self.is_golden("other_antenna")
        # Alone, the load does not show that others have the antenna.
        self.assertIn(b"the key 'edge.port', so the line sets nothing: select this antenna, or remove "
                      b"the line if no country has it [", self.lint("--country", "fr"))

    def test_misspelt_name_of_an_antenna(self):
        self.edit(self.uwb / "common.conf", "selection=patch", "selection=pacth")
        self.is_golden("antenna_misspelt")
        # An antenna that has lines is no misspelt one, read or not.
        for name in ("de/calib.conf", "default/calib.conf"):
            self.write(name, "version=2\n")
        for old, new in (("selection=pacth", "selection=patch"), ("gpio=6", "gpio=600\npacth.port=1"),
                         ("\npatch.", "\npatch .")):
            self.edit(self.uwb / "common.conf", old, new)
            self.assertNotIn(b"no line has a key of antenna", self.lint())

    def test_antennas_whose_names_are_alike(self):
        for path in (self.uwb / "common.conf", *self.uwb.glob("*/calib.conf")):
            path.write_text(path.read_text().replace("patch", "edgy"))
        self.edit(self.uwb / "common.conf", "edge.port", "edge.prt")
        self.assertIn(b"; did you mean 'edge.port'? (", self.lint())

    def test_antenna_with_an_equal_sign(self):
        for path in (self.uwb / "common.conf", *self.uwb.glob("*/calib.conf")):
            path.write_text(path.read_text().replace("patch", "1a=1"))
        self.assertEqual(self.lint("-q", status=0), b"")
        state = json.loads(run("matrix", "--root", "tree", "--format", "json", cwd=self.folder).stdout)
        values = {line["text"]: line["value"] for line in state["lines"]}
        self.assertEqual((values["1a=1.port=0"], values["1a=1.selector_gpio=6"]), ("0", "6"))

    def test_selection_is_missing(self):
        self.edit(self.uwb / "common.conf", "ch9.antenna_selection", "ch8.antenna_selection")
        self.edit(self.uwb / "common.conf", "patch.ch5.prf64.pg_delay", "patch.ch5.prf64.pgdelay")
        self.is_golden("selection_misspelt")
        self.edit(self.uwb / "common.conf", "pgdelay", "pg_delay")
        self.edit(self.uwb / "common.conf", "ch8.antenna_selection=edge\n", "")
        self.is_golden("selection_missing")

    def test_what_is_no_file_is_not_opened(self):
        (self.uwb / "fr").mkdir()
        os.mkfifo(self.uwb / "fr/calib.conf")
        (self.uwb / "es").mkdir()
        with socket.socket(socket.AF_UNIX) as server, contextlib.chdir(self.uwb / "es"):
            server.bind("calib.conf")
        # What is read is incomplete, and the converter refuses it: what is not read may mend both.
        self.edit(self.uwb / "default/calib.conf", "edge.ch9", "#edge.ch9")
        self.write("more.conf", "xtal_trim=40\nedge.selector_gpio=8\n")
        self.is_golden("pipe")
        matrix = run("matrix", "--root", "tree", cwd=self.folder)
        self.assertEqual(matrix.returncode, 1)
        self.assertIn(b"unknown: /vendor/etc/uwb/fr/calib.conf is a pipe\n", matrix.stdout)
        explained = run("explain", "--root", "tree", "--country", "FR", cwd=self.folder)
        self.assertEqual(explained.returncode, 1)
        self.assertIn(b"no block: what the device does is unknown", explained.stdout)
        self.edit(self.etc / "uwb_calib_paths.conf", "/vendor/etc/uwb/more.conf", "/dev/zero")
        result = run("lint", "--path-file", self.etc / "uwb_calib_paths.conf", "--country", "")
        self.assertIn(b"/dev/zero is a device", result.stdout)

    def test_control_characters_in_names_never_reach_the_terminal(self):
        self.write("\x1bx/calib.conf")
        self.assertIn(b"; not taken for countries: \\x1bx (name them", self.lint(status=0))
        paths = self.etc / "uwb_calib_paths.conf"
        os.mkfifo(self.uwb / "\x1b.conf")
        unknown = b"what the device does is unknown: /vendor/etc/uwb/\\x1b.conf is a pipe\n"
        for entries, line in ((paths.read_text() + "/vendor/etc/uwb/\x1b.conf\n", b"\nno block: "),
                              ("/vendor/etc/uwb/\x1b.conf\n", b"no country code, ")):
            paths.write_text(entries)
            shown = run("explain", "--root", "tree", cwd=self.folder).stdout
            self.assertIn(line + unknown, shown)
            self.assertNotIn(b"\x1b", shown)
            shown = run("matrix", "--root", "tree", "--countries", "none", cwd=self.folder).stdout
            self.assertIn(b"    " + unknown, shown)
            self.assertNotIn(b"\x1b", shown)
            for sides, words in ((("tree", LINT / "base"), b"a block now; before: "),
                                 ((LINT / "base", "tree"), b"no block any more: ")):
                shown = run("diff", "--country", "", *sides, cwd=self.folder).stdout
                self.assertIn(words + unknown, shown)
                self.assertNotIn(b"\x1b", shown)

    def test_control_characters_in_missing_keys_are_escaped_in_text_alone(self):
        self.edit(self.uwb / "common.conf", "ch9.antenna_selection=edge",
                  "ch9.antenna_selection=\x1b")
        for arguments in (("matrix", "--root", "tree", "--countries", "none"),
                          ("diff", "--country", "", LINT / "base", "tree")):
            shown = run(*arguments, cwd=self.folder).stdout
            self.assertIn(b"parameters are missing: \\x1b.ch9.prf64.ant_delay, ", shown)
            self.assertNotIn(b"\x1b", shown)
        differences = json.loads(run("diff", "--country", "", "--format", "json", LINT / "base",
                                     "tree", cwd=self.folder).stdout)["differences"]
        self.assertIn("parameters are missing: \x1b.ch9.prf64.ant_delay, ", differences[0]["b"])

    def test_sources_in_place_of_an_image(self):
        """Without a root there is only what is mapped; findings name the sources."""
        (self.uwb / "fr").mkdir()
        (self.uwb / "fr/calib.conf").symlink_to("/vendor/etc/uwb/de/calib.conf")
        self.edit(self.uwb / "more.conf", "40", "040")
        self.uwb.rename(self.folder / "device")
        maps = ("--map", "/vendor/etc/uwb=device", "--map", "/vendor/etc=tree/vendor/etc")
        result = run("lint", *maps, cwd=self.folder)
        self.golden("trees/map", result.stdout + result.stderr)
        turned = run("lint", *maps[2:], *maps[:2], cwd=self.folder)
        self.assertEqual(turned.stdout, result.stdout)
        result = run("lint", "--root", "tree", *maps[:2], "--format", "sarif", cwd=self.folder)
        uris = re.findall(rb'"uri": "(.*)"', result.stdout)
        self.assertEqual(uris, [b"tree/vendor/etc/uwb_calib_paths.conf", b"device/more.conf"])
        built = run("build", "-q", *maps, "--country", "DE", "--format", "hex", cwd=self.folder)
        explained = run("explain", *maps, "--country", "DE", "--format", "json", cwd=self.folder)
        self.assertEqual(built.stdout[:4].decode(),
                         json.loads(explained.stdout)["fields"][0]["bytes"].replace(" ", ""))
        self.fails(run("lint", "--map", "device"), "--map takes /PATH=DIR, not 'device'")
        twice = run("lint", "--map", "/etc/uwb=device", "--map", "/etc=tree", "--map", "/etc//uwb/=tree",
                    cwd=self.folder)
        self.fails(twice, "--map is given twice for /etc/uwb/")

    def test_a_country_of_a_map_of_its_own(self):
        """A country's folder may come from elsewhere: its name is in no listing."""
        (self.uwb / "de").rename(self.folder / "france")
        self.edit(self.folder / "france/calib.conf", "patch", "path")
        mapped = ("--map", "/vendor/etc/uwb/fr=france")
        for more in (("--root", "tree"), ("--map", "/=tree"), ("--map", "/vendor/etc=tree/vendor/etc")):
            result = run("lint", *mapped, *more, cwd=self.folder)
            self.assertIn(b"france/calib.conf:1:1: error: ", result.stdout)
            self.assertIn(b": 3 loads (1 country, any", result.stderr)
        shutil.rmtree(self.uwb)
        self.assertIn(b": 3 loads (1 country, any", self.lint(*mapped))

    def test_severities_that_fail(self):
        self.edit(self.uwb / "more.conf", "40", "040")
        self.lint("--fail-on", "warning", status=1)
        self.lint("--fail-on", "error", status=0)
        self.edit(self.uwb / "more.conf", "040", "40")
        self.edit(self.etc / "uwb_calib_paths.conf", "<country>", "<country>.d")
        self.write("default.d/calib.conf")
        self.assertEqual(self.lint("-q", status=0), b"")
        self.assertIn(b": note: ", self.lint("--fail-on", "note", status=1))
        self.assertIn(b": note: ", self.lint("--notes", status=0))

    def test_ignored_for_one_file(self):
        """A file that the factory writes is named by its own path."""
        self.edit(self.etc / "uwb_calib_paths.conf", "/vendor/etc/uwb/more.conf",
                  "/vendor/etc/uwb/more.conf\n/persist/trim.conf\n/persist/gone.conf")
        shown = self.lint("--ignore", "file-missing:/persist/trim.conf")
        self.assertNotIn(b"trim.conf", shown)
        self.assertIn(b"there is no /persist/gone.conf", shown)
        self.lint("--ignore", "file-missing:/vendor/etc/uwb_calib_paths.conf", status=0)
        self.lint("--ignore", "file-missing:tree/vendor/etc/uwb_calib_paths.conf", status=0)
        for ignored in ("no-block", "no-block:/a"):
            self.fails(run("lint", "--ignore", ignored),
                       "no-block cannot be ignored; --countries says which loads count")
        self.fails(run("lint", "--ignore", "octal-number:"),
                   "--ignore takes RULE or RULE:PATH, not 'octal-number:'")

    def test_what_ignores_nothing_is_told(self):
        self.write("more.conf", "xtal_trim=040\n")
        shown = self.lint("--ignore", "octal-number:tree/vendor/etc/uwb/more.conf",
                          "--ignore", "octal-number:/more.conf", "--ignore", "file-missing",
                          "--ignore", "no-equal:tree/vendor/etc/uwb/more.conf", status=0)
        self.assertTrue(shown.endswith(
            b": each gives a block; nothing found; unused: --ignore no-equal:tree/vendor/etc/uwb/"
            b"more.conf, --ignore octal-number:/more.conf\n"), shown)

    def test_comment_that_names_no_rule(self):
        nothing = ", so this comment silences nothing"
        meant = f"{nothing}; did you mean 'octal-number'?"
        for name, message in (
                ("octal-nummer", f"there is no rule 'octal-nummer'{meant}"),
                ("octal-number, no-equal", f"there is no rule 'octal-number,'{meant}"),
                ("everything", f"there is no rule 'everything'{nothing}: lint --help lists the rules"),
                ("", f"there is no rule ''{nothing}: lint --help lists the rules"),
                ("no-block", "no-block cannot be ignored; --countries says which loads count")):
            with self.subTest(name):
                self.write("more.conf", f"# lint-ignore {name}\nxtal_trim=040\n")
                shown = self.lint().decode()
                self.assertIn(f"more.conf:1:15: warning: {message} (in all 3 loads) [unknown-rule]\n",
                              shown)
                self.assertIn("more.conf:2:11: warning: '040' is octal", shown)

    def test_lines_that_are_lost(self):
        """What is told of them does not say that they are read."""
        self.write("more.conf", "xtal_trim=444\nversion=010\nversion=-2\n"
                                f"ap_coop_mode=2{' ' * 99}3{'4' * 99}\n"
                                "wifi_coex_time_gap=12dB\nversion=70000\n")
        self.is_golden("lost_lines", "--fail-on", "error")

    def test_what_follows_a_number_that_the_device_alone_refuses_is_lost(self):
        for text, outcome in (("xtal_trim=40\nversion=08\n", b": each gives a block; 1 error"),
                              ("version=08\nxtal_trim=40\n", b": 3 without a block; 1 error"),
                              ("version=08\n", b": no line sets 'xtal_trim': add a line ")):
            self.write("more.conf", text)
            self.assertIn(outcome, self.lint())

    def test_lines_are_lost_for_one_of_the_two_readings(self):
        self.write("more.conf", "xtal_trim=444\nch5.antenna_selection=\nversion=1\n"
                                "ch9.antenna_selection=edge\n")
        shown = self.lint()
        self.assertIn(b"not 444; the rest of the file is not read: version (", shown)
        self.assertIn(b"takes a word, but there is no value after '='; the rest of the file is not "
                      b"read: ch9.antenna_selection (", shown)

    def test_bytes_that_are_no_text(self):
        for text, told in (
                (b"# \x1b", "1:3: warning: the control character 0x1B is no text: remove it ("),
                (b"\0# ", "1:1: warning: the control character 0x00 is no text: remove it ("),
                (b"\0" * 40, "1:1: warning: the control character 0x00 is no text: remove it; the file "
                             "has 39 more that are no text ("),
                (b"#\0\r", "1:2: warning: the control character 0x00 is no text: remove it ("),
                (b"\n\x7f\xff", "2:1: warning: the control character 0x7F is no text: remove it; "
                                 "the file has 1 more that are no text ("),
                (b"#\t\xc3\xa9 \xc3", "1:6: warning: the byte 0xC3 is not UTF-8: save the file as "
                                       "UTF-8 (")):
            with self.subTest(text):
                (self.uwb / "more.conf").write_bytes(text + b"\nxtal_trim=40\n")
                self.assertIn(f"more.conf:{told}", self.lint().decode())

    def test_files_without_lines(self):
        paths = self.etc / "uwb_calib_paths.conf"
        for path in (self.uwb / "common.conf", paths):
            text = path.read_text()
            utf16 = "the file is UTF-16: save it as UTF-8"
            returns = "a carriage return alone ends no line: save the file with line feeds"
            for content, message in (
                    (b"\xff\xfe" + text.encode("utf-16-le"), utf16),
                    (b"\xfe\xff" + text.encode("utf-16-be"), utf16),
                    (text.encode("utf-16-le"), utf16), (text.encode("utf-16-be"), utf16),
                    (text.replace("\n", "\r").encode(), returns),
                    (text.replace("\n", "\r").encode() + b"\n", returns)):
                with self.subTest(path=path, message=message):
                    path.write_bytes(content)
                    (found,) = json.loads(self.lint("-q", "--format", "json"))["findings"]
                    self.assertEqual((found["rule"], found["message"]), ("not-text", message))
                    self.assertEqual(found["consequences"][0]["rule"], "no-block")
            path.write_text(text)

    def test_comments_that_speak_of_the_comment_that_silences(self):
        self.write("more.conf", "# see lint-ignore\n# lint-ignored octal-number\n#\nxtal_trim=040\n")
        shown = self.lint().decode()
        self.assertNotIn("unknown-rule", shown)
        self.assertIn("more.conf:4:11: warning: '040' is octal", shown)

    def test_ignored_for_the_next_line(self):
        self.write("more.conf", "# lint-ignore octal-number\nxtal_trim=040\nversion=01\n")
        shown = self.lint()
        self.assertNotIn(b"more.conf:2:", shown)
        self.assertIn(b"more.conf:3:9: warning: '01' is octal", shown)

    def test_bytes_that_are_no_text_can_be_ignored_too(self):
        self.write("more.conf", "# lint-ignore not-text\n# \x01\nxtal_trim=40\n")
        self.assertEqual(self.lint("-q", status=0), b"")

    def test_what_is_ignored_does_not_hide_that_there_is_no_block(self):
        self.write("more.conf", "// lint-ignore unknown-key\nxtal_trm=40\n")
        shown = self.lint()
        self.assertNotIn(b"unknown-key", shown)
        self.assertIn(b"    leads to: no block: parameters are missing [no-block]\n", shown)
        self.assertIn(b"3 without a block; 1 error\n", shown)

    def test_baseline(self):
        self.write("more.conf", "xtal_trim=040\nversion=01\nversion=01\n")
        self.lint("--format", "baseline", "-o", self.folder / "known")
        self.golden("trees/baseline", (self.folder / "known").read_bytes())
        self.assertEqual(self.lint("-q", "--baseline", "known", status=0), b"")
        self.edit(self.folder / "known", "\n", "\r\n")
        self.write("more.conf", "// new\nxtal_trim=040\nversion=01\nap_coop_mode=01\n")
        shown = self.lint("--baseline", "known")
        self.assertIn(b"more.conf:4:14: warning: ", shown)
        self.assertIn(b"; 1 warning; unused: 2 baseline lines\n", shown)
        self.write("known", "octal-number\n")
        result = run("lint", "--root", "tree", "--baseline", self.uwb / "known", cwd=self.folder)
        self.fails(result, f"{self.uwb}/known:1: no line of a baseline")

    def test_a_baseline_never_hides_that_there_is_no_block(self):
        self.write("more.conf", "xtal_trm=40\n")
        self.lint("--format", "baseline", "-o", self.folder / "known")
        lines = (self.folder / "known").read_text()
        self.assertEqual(re.findall(r"(?m)^[\w-]+", lines), ["unknown-key", "missing-key"])
        shown = self.lint("--baseline", "known").decode()
        message = "no block: parameters are missing"
        self.assertEqual(re.findall(r" error: (.*) \(in all 3 loads\) \[", shown), [message])
        paths = "/vendor/etc/uwb_calib_paths.conf"
        (self.folder / "known").write_text(f"{lines}no-block\t{paths}\t{message}\n")
        self.assertEqual(self.lint("--baseline", "known").decode(),
                         shown.replace("; 1 error", "; 1 error; unused: 1 baseline line"))

    def test_countries_that_are_no_loads_and_those_beside_a_country(self):
        for words in ("", ","):
            for arguments in (["lint", "--root", "tree"], ["matrix", "--root", "tree"],
                              ["diff", "tree", "tree"]):
                result = run(*arguments, "--countries", words, cwd=self.folder)
                self.fails(result, f"--countries names no load: '{words}'")
        for name, *operands in (("lint",), ("diff", "tree", "tree")):
            result = run(name, *operands, "--country", "", "--countries", "us", cwd=self.folder)
            self.fails(result, "--country and --countries exclude each other (see "
                               f"'tarnix-uwb-params {name} --help')")

    def test_many_faults_are_told_in_proportion(self):
        """Ten times the lines make ten times the findings, each once."""
        self.write("more.conf", "".join(f"xtal_trm{i}=40\n" for i in range(5000)))
        found = json.loads(run("lint", "-q", "--root", "tree", "--format", "json",
                               cwd=self.folder).stdout)["findings"]
        self.assertEqual(len([f for f in found if f["rule"] == "unknown-key"]), 5000)


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
                            (f"{common}:9:21", "selector"),
                            ("tree/vendor/etc/uwb_calib_paths.conf:2:1", "file-missing")):
            self.assertRegex(result.stdout.decode(), re.compile(
                rf"^{re.escape(place)}: \w+: .* \[{rule}\]$", re.M))

    def test_explain_shows_what_the_device_would_read(self):
        shown = run("explain", "--root", "tree", "--country", "DE", cwd=self.folder).stdout.decode()
        self.assertIn("    no line sets xtal_trim\n", shown)
        self.assertIn("\nNo parameter has the key of:\n    /vendor/etc/uwb/common.conf:31: xtal_trm=40\n",
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
        documented = [re.match(r"(\S+)\n\n(\w+)\. ", section).groups() for section in self.sections]
        self.assertEqual(documented, [
            (rule["id"], rule["defaultConfiguration"]["level"].capitalize()) for rule in rules])

    def test_examples_are_lines_of_the_tested_trees(self):
        for section in self.sections:
            rule = section.split("\n", 1)[0]
            with self.subTest(rule):
                (example,) = re.findall(r"^```\n(.*?)\n```$", section, re.M | re.S)
                bad, good = (lines_of(LINT / rule / kind) for kind in ("bad", "good"))
                self.assertEqual([line for line in example.split("\n") if line not in bad], [])
                if rule not in ("file-missing", "country-fallback"):  # A good tree has the file.
                    self.assertFalse(set(example.split("\n")) <= set(good))
                text = " ".join(section.split("```", 1)[0].split("\n"))
                for advice in re.findall(r"Write `([^`]*)`(?: and `([^`]*)`)?", text):
                    for line in filter(None, advice):
                        self.assertIn(line, good)


if __name__ == "__main__":
    unittest.main()
