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
                ("08", "cannot read '08' (a leading zero means octal) and ignores the rest of the "
                       "file: write 8 ("),
                ("-08", "cannot read '-08' (a leading zero means octal) and ignores the rest of the "
                        "file: write -8 ("),
                ("+0018dB", "cannot read '+0018dB' (a leading zero means octal) and ignores the "
                            "rest of the file: write 18 ("),
                ("20dB", "cannot read '20dB' and ignores the rest of the file: write 20 ("),
                ("0x1x", "cannot read '0x1x' and ignores the rest of the file: write 0x1 ("),
                ("07", "'07' is octal and is read as 7: write 7 ("),
                ("00", "'00' is octal and is read as 0: write 0 ("),
                ("0040", "'0040' is octal and is read as 32: write 32, or 40 if that is meant ("),
                ("zero # 0", "takes a whole number, 0 to 255, not 'zero'"),
                ("", "takes a whole number, 0 to 255, not ''"),
                ("x" * 61, "takes a whole number, 0 to 255, not '" + "x" * 60 + "...'"),
                ("0x100", "takes 0 to 255, not 0x100")):
            with self.subTest(value):
                self.write("more.conf", f"xtal_trim={value}\n")
                self.assertIn(message, self.lint().decode())

    def test_values_that_countries_override(self):
        self.forty_countries(self.POWERS + "ap_coop_mode=2\nwifi_coex_time_gap=20\n")
        self.assertIn(b": each gives a block; nothing found\n", self.lint(status=0))

    def test_one_cause_in_forty_countries(self):
        self.forty_countries()
        self.edit(self.uwb / "common.conf", "temperature_", "xtal_trim=444\ntemperature_")
        self.edit(self.etc / "uwb_calib_paths.conf", "/vendor/etc/uwb/more.conf\n", "")
        self.is_golden("one_cause")

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
        self.is_golden("unusable")
        self.assertIn(b"error: cannot read /vendor/etc/uwb/fr/calib.conf: it is a link to "
                      b"/nowhere/calib.conf, which does not exist", self.lint("--country", "FR"))
        matrix = run("matrix", "--root", "tree", cwd=self.folder).stdout
        self.assertIn(b"(fallback: cannot read /vendor/etc/uwb/se/calib.conf: Too many levels of "
                      b"symbolic links)", matrix)

    def test_neither_the_country_file_nor_the_default_can_be_used(self):
        (self.uwb / "default/calib.conf").unlink()
        missing = b"error: there is no /vendor/etc/uwb/default/calib.conf"
        self.assertIn(missing + b", and no file of the country's own [",
                      self.lint("--country", "FR"))
        (self.uwb / "fr").mkdir()
        (self.uwb / "fr/calib.conf").symlink_to("/nowhere/calib.conf")
        self.assertIn(missing + b" [", self.lint("--country", "FR"))

    def test_country_file_without_permission(self):
        self.write("fr/calib.conf")
        (self.uwb / "fr/calib.conf").chmod(0)
        self.folder.chmod(0o755)
        # Root reads every file.
        nobody = {"user": 65534, "group": 65534, "extra_groups": []} if os.geteuid() == 0 else {}
        try:
            result = run("lint", "--root", "tree", cwd=self.folder, **nobody)
        except PermissionError:
            self.skipTest("another user than root cannot call the command where it lies")
        self.assertIn(b"error: cannot read /vendor/etc/uwb/fr/calib.conf: Permission denied: "
                      b"/vendor/etc/uwb/default/calib.conf is read instead (country fr)",
                      result.stdout)

    def test_files_that_no_load_reads(self):
        for name in ("fr/calb.conf", "us/Calib.conf", "JP/calib.conf", "de.bak/calib.conf",
                     "common.conf.orig", "readme.txt", "de/notes", "usa/calib.conf"):
            self.write(name)
        (self.etc / "uwb_calib_path.conf").write_text("")
        self.is_golden("unread")

    def test_names_that_are_no_countries(self):
        for code in ("us", "default", "unknown", "base", "latam"):
            self.write(f"uwb_{code}.conf")
        (self.uwb / "uwb_us.conf~").write_text("")
        self.edit(self.etc / "uwb_calib_paths.conf", "<country>/calib.conf", "uwb_<country>.conf")
        self.is_golden("names")
        shown = self.lint("--countries", "latam,us,other", "--ignore", "file-unread", status=0)
        self.assertEqual(shown, b"tarnix-uwb-params: 3 loads (2 countries, any other country): each "
                                b"gives a block; nothing found\n")
        rows = json.loads(run("matrix", "--root", self.folder / "tree", "--countries", "us,latam",
                              "--format", "json").stdout)["countries"]
        self.assertEqual([row["country"] for row in rows], ["us", "latam"])

    def test_path_file_that_gives_no_block(self):
        paths = self.etc / "uwb_calib_paths.conf"
        self.edit(paths, "\n", "\r\n")
        self.is_golden("path_file_cr")
        self.assertIn(b"error: no block: ", self.lint("--ignore", "path-cr"))
        self.edit(paths, "\r\n", "\n")
        self.edit(paths, "/vendor/etc/uwb/common", "\ufeff/vendor/etc/uwb/common")
        self.is_golden("path_file_mark")
        paths.write_text("")
        self.is_golden("path_file_empty")

    def test_keys_of_the_other_channel(self):
        self.edit(self.uwb / "common.conf", "edge.ch9.prf64.pg_count", "patch.ch9.prf64.pg_count")
        self.is_golden("other_channel")

    def test_keys_in_capitals_or_without_a_part(self):
        for old, new in (("patch.port", "PATCH.port"), ("edge.port", "port"),
                         ("patch.ch5.prf64.ant_delay", "patch.ant_delay"),
                         ("edge.ch9.prf64.pg_delay", "edge.ch9.prf64.pg_dlay"),
                         ("version", "versoin")):
            self.edit(self.uwb / "common.conf", old, new)
        self.is_golden("key_parts")

    def test_country_selects_another_antenna(self):
        self.write("fr/calib.conf", "ch9.antenna_selection=top\ntop.port=1\n")
        self.is_golden("other_antenna")

    def test_selection_is_missing(self):
        self.edit(self.uwb / "common.conf", "ch9.antenna_selection", "ch9.antena_selection")
        self.is_golden("selection_misspelt")
        self.edit(self.uwb / "common.conf", "ch9.antena_selection=edge\n", "")
        self.is_golden("selection_missing")

    def test_what_is_no_file_is_not_opened(self):
        (self.uwb / "fr").mkdir()
        os.mkfifo(self.uwb / "fr/calib.conf")
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
            self.assertIn(b"  -       " + unknown, shown)
            self.assertNotIn(b"\x1b", shown)
            for sides, sign in (("tree", LINT / "base"), b"-"), ((LINT / "base", "tree"), b"+"):
                shown = run("diff", "--country", "", *sides, cwd=self.folder).stdout
                self.assertIn(sign + b" none: " + unknown, shown)
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
        result = run("lint", "--root", "tree", *maps[:2], "--format", "sarif", cwd=self.folder)
        uris = re.findall(rb'"uri": "(.*)"', result.stdout)
        self.assertEqual(uris, [b"tree/vendor/etc/uwb_calib_paths.conf", b"device/more.conf"])
        built = run("build", "-q", *maps, "--country", "DE", "--format", "hex", cwd=self.folder)
        explained = run("explain", *maps, "--country", "DE", "--format", "json", cwd=self.folder)
        self.assertEqual(built.stdout[:4].decode(),
                         json.loads(explained.stdout)["fields"][0]["bytes"].replace(" ", ""))
        self.fails(run("lint", "--map", "device"), "--map takes /PATH=FOLDER, not 'device'")

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
        result = run("lint", "--root", "tree", "--ignore", "no-block", cwd=self.folder)
        self.fails(result, "no-block cannot be ignored; --countries says which loads count")

    def test_ignored_for_the_next_line(self):
        self.write("more.conf", "# lint-ignore octal-number\nxtal_trim=040\nversion=01\n")
        shown = self.lint()
        self.assertNotIn(b"more.conf:2:", shown)
        self.assertIn(b"more.conf:3:9: warning: '01' is octal", shown)

    def test_what_is_ignored_does_not_hide_that_there_is_no_block(self):
        self.write("more.conf", "// lint-ignore unknown-key\nxtal_trm=40\n")
        shown = self.lint()
        self.assertNotIn(b"unknown-key", shown)
        self.assertIn(b"3 without a block; 2 errors", shown)

    def test_baseline(self):
        self.write("more.conf", "xtal_trim=040\nversion=01\nversion=01\n")
        self.lint("--format", "baseline", "-o", self.folder / "known")
        self.golden("trees/baseline", (self.folder / "known").read_bytes())
        self.assertEqual(self.lint("-q", "--baseline", "known", status=0), b"")
        self.write("more.conf", "// new\nxtal_trim=040\nversion=01\nap_coop_mode=01\n")
        shown = self.lint("--baseline", "known")
        self.assertIn(b"more.conf:4:14: warning: ", shown)
        self.assertIn(b"; 1 warning; 2 baseline lines unused\n", shown)
        self.write("known", "octal-number\n")
        result = run("lint", "--root", "tree", "--baseline", self.uwb / "known", cwd=self.folder)
        self.fails(result, f"{self.uwb}/known:1: no line of a baseline")

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
