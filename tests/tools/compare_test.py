# SPDX-License-Identifier: Apache-2.0
"""matrix and diff: the blocks of all countries, of two trees, and of a tree and a record of it."""
import json
import os
import re
import shutil
import subprocess
import unittest

from command_test import EXAMPLES, GOLDEN, CommandTest, on_terminal, run


COUNTRIES = ("at be bg br ca ch cz de dk ee es fi fr gb gr hr hu ie is it jp kr li lt lu lv mt mx nl no "
             "nz pl pt ro se si sk us vn za").split()
POWERS = ("0x181C2024", "0x10141418", "0x1C202428", "0x0C101014", "0x14181C20")


def make_forty_countries(tree):
    """The example's tree with forty countries, in five groups of power values."""
    shutil.copytree(EXAMPLES, tree)
    for country in ("us", "de"):
        shutil.rmtree(tree / "vendor/etc/uwb" / country)
    for i, country in enumerate([*COUNTRIES, "default"]):
        file = tree / "vendor/etc/uwb" / country / "calib.conf"
        file.parent.mkdir(exist_ok=True)
        power = POWERS[i % len(POWERS)]
        file.write_text("# Transmit power.\n"
                        f"patch.ch5.prf64.tx_power={power}\nedge.ch9.prf64.tx_power={power}\n")


class CompareTest(CommandTest):
    def setUp(self):
        super().setUp()
        self.tree = self.folder / "tree"

    def copy(self):
        shutil.copytree(EXAMPLES, self.tree)

    def change(self, path, old, new):
        """Replaces a text in a file of the tree, a copy of the example's."""
        if not self.tree.exists():
            self.copy()
        file = self.tree / "vendor/etc/uwb" / path
        self.assertIn(old, file.read_text())
        file.write_text(file.read_text().replace(old, new))

    def shown(self, *arguments, status=0):
        """What the command shows in the test's folder."""
        result = run(*arguments, cwd=self.folder)
        self.assertEqual((result.returncode, result.stderr), (status, b""))
        return result.stdout


class Matrix(CompareTest):
    def test_every_format(self):
        for form in ("text", "csv", "json"):
            self.golden(f"matrix.{form}", self.shown("matrix", "--root", EXAMPLES, "--format", form))

    def test_forty_countries_in_five_groups(self):
        make_forty_countries(self.tree)
        shown = self.shown("matrix", "--root", "tree")
        self.assertEqual(len([row for row in shown.splitlines() if row.startswith(b"0x")]), 5)
        self.golden("matrix.forty_countries", shown)

    def test_loads_without_a_block_are_told_once_for_each_reason(self):
        self.change("de/calib.conf", "edge.ch9.prf64.tx_power", "edge.ch9.prf64.power")
        uwb = self.tree / "vendor/etc/uwb"
        for country in set(COUNTRIES[:20]) - {"de"}:
            shutil.copytree(uwb / "de", uwb / country)
        self.change("us/calib.conf", "patch.ch5.prf64.tx_power", "patch.ch5.prf64.power")
        self.golden("matrix.incomplete", self.shown("matrix", "--root", "tree", status=1))
        rows = json.loads(self.shown("matrix", "--root", "tree", "--format", "json", status=1))
        self.assertEqual([row.get("missing") for row in rows["countries"]],
                         [*[["edge.ch9.prf64.tx_power"]] * 20, ["patch.ch5.prf64.tx_power"],
                          None, None])

    def test_a_load_that_reads_no_regular_file_has_no_block(self):
        """Nothing opens a pipe, so what the device reads from it is unknown."""
        self.copy()
        file = self.tree / "vendor/etc/uwb/us/calib.conf"
        file.unlink()
        os.mkfifo(file)
        shown = self.shown("matrix", "--root", "tree", "--countries", "us", status=1)
        self.assertEqual(shown.decode(),
                         "no block: us\n    what the device does is unknown: "
                         "/vendor/etc/uwb/us/calib.conf is a pipe\n")

    def test_numbers_that_the_device_alone_refuses_are_told(self):
        """The blocks shown are not the device's, though lint may not have been asked."""
        self.copy()
        for country in ("us", "de"):
            file = self.tree / "vendor/etc/uwb" / country / "calib.conf"
            file.write_text("xtal_trim=08\nversion=09\n" + file.read_text())
        de, us = (f"/vendor/etc/uwb/{country}/calib.conf:1" for country in ("de", "us"))
        told = "the device does otherwise: it cannot read the numbers at "
        for command, remark in (
                (["matrix", "--root", "tree"], f"{told}{de}, {us}"),
                (["build", "-o", "block", "--root", "tree", "--country", "us"], told + us),
                (["diff", "tree", "tree"], f"{told}{de}, {us}"),
                (["diff", "--country", "us", EXAMPLES, "tree"], f"tree: {told}{us}"),
                (["diff", "--country", "us", "tree", EXAMPLES], f"tree: {told}{us}")):
            with self.subTest(command=command):
                result = run(*command, cwd=self.folder)
                self.assertEqual(result.stderr.decode().splitlines()[-1],
                                 "tarnix-uwb-params: " + remark)
                self.assertEqual(run(*command, "-q", cwd=self.folder).stderr, b"")
        shown = self.shown("explain", "--root", "tree", "--country", "us", "xtal_trim").decode()
        self.assertTrue(shown.endswith("\n\nThe device cannot read the number, and not what follows "
                                       f"in the file:\n    {us}: xtal_trim=08\n"), shown)

    def test_names_that_are_not_taken_for_countries_are_told(self):
        self.copy()
        shutil.copytree(self.tree / "vendor/etc/uwb/us", self.tree / "vendor/etc/uwb/latam")
        told = b"not taken for countries: latam (name them with --countries)\n"
        for command, side in ((["matrix", "--root", "tree"], b""), (["diff", EXAMPLES, "tree"], b"tree: ")):
            result = run(*command, cwd=self.folder)
            self.assertEqual((result.returncode, result.stderr),
                             (0, b"tarnix-uwb-params: " + side + told))
        record = json.loads(run("matrix", "--root", "tree", "--format", "json", cwd=self.folder).stdout)
        self.assertEqual(record["not_taken_for_countries"], ["latam"])
        self.assertIn(b"latam", self.shown("matrix", "--root", "tree", "--countries", "latam,us"))

    def test_words_for_loads_are_read_without_regard_to_case(self):
        self.assertIn(b"any other country, no country code",
                      self.shown("matrix", "--root", EXAMPLES, "--countries", "OTHER,None"))

    def test_no_load_with_a_block(self):
        self.tree.mkdir()
        self.assertEqual(self.shown("matrix", "--root", "tree", status=1),
                         b"no block: any other country, no country code\n"
                         b"    no path file names a calibration file that can be read\n")

    def test_a_library_that_refuses_what_the_trace_accepts(self):
        (self.folder / "none.c").write_text("int load_uwb_params_from_files() { return 0; }\n")
        subprocess.run(["cc", "-shared", "-fPIC", "none.c", "-o", "none.so"], cwd=self.folder,
                       check=True)
        shown = self.shown("matrix", "--root", EXAMPLES, "--library", "./none.so", "--countries",
                           "us", status=1)
        self.assertEqual(shown, b"no block: us\n    the library gives no block\n")

    def test_without_a_default_nothing_differs_from_it(self):
        for countries, differing in (("us,other", True), ("us,none", False)):
            record = json.loads(self.shown("matrix", "--root", EXAMPLES, "--format", "json",
                                           "--countries", countries))
            self.assertEqual(["differs_from_default" in load for load in record["countries"]],
                             [differing, differing])

    def test_table_fits_into_the_terminal(self):
        for columns, pieces in ((200, 1), (0, 2), (70, 2), (40, 4), (1, 4)):
            _, shown = on_terminal("matrix", "--root", EXAMPLES, "--color", "never",
                                   columns=columns)
            table = shown.split("\n\nthe same")[0]
            self.assertEqual(table.count("CRC "), pieces, shown)
            if columns >= 40:
                self.assertLessEqual(max(map(len, shown.splitlines())), columns, shown)
            elif columns == 0:  # A terminal that does not know its size.
                self.assertEqual(shown, self.shown("matrix", "--root", EXAMPLES).decode())

    def test_chosen_fields_and_countries(self):
        arguments = ("matrix", "--root", EXAMPLES, "--fields", "xtal_trim,ch9_port", "--countries",
                     "none,us")
        self.assertEqual(self.shown(*arguments).decode(),
                         "CRC     xtal_trim  ch9_port  countries\n"
                         "0x24EB  40         2         no country code\n"
                         "0x54D3  40         2         us\n")
        self.assertEqual(self.shown(*arguments, "--format", "csv").decode(),
                         "country,crc,xtal_trim,ch9_port,problem\n"
                         "none,0x24EB,40,2,\nus,0x54D3,40,2,\n")
        self.fails(run("matrix", "--root", EXAMPLES, "--fields", "xtal_trimm"),
                   "no field has the name 'xtal_trimm'; did you mean 'xtal_trim'?")

    def test_lists_are_trimmed_and_name_each_load_once(self):
        self.assertEqual(self.shown("matrix", "--root", EXAMPLES, "--format", "csv", "--fields",
                                    " xtal_trim\t,, ch9_port", "--countries", "us, US ,,none,us"),
                         b"country,crc,xtal_trim,ch9_port,problem\n"
                         b"us,0x54D3,40,2,\nnone,0x24EB,40,2,\n")
        self.fails(run("matrix", "--root", EXAMPLES, "--countries", " , "),
                   "--countries names no load: ' , '")
        for empty in ("", ",", " , "):
            for form in ("text", "csv"):
                self.fails(run("matrix", "--root", EXAMPLES, "--fields", empty, "--format", form),
                           f"--fields names no field: '{empty}'")

    def test_formats_that_have_all_fields_refuse_a_choice(self):
        for form in ("json", "html"):
            self.fails(run("matrix", "--root", EXAMPLES, "--fields", "version", "--format", form),
                       f"--fields is for text and csv; {form} has all fields")

    def test_sorted_by_block(self):
        """By the values: those of the default are the least, whatever the CRCs are."""
        rows = self.shown("matrix", "--root", EXAMPLES, "--sort", "block", "--format", "csv")
        self.assertEqual([row.split(b",")[0] for row in rows.splitlines()[1:]],
                         [b"other", b"none", b"de", b"us"])
        self.change("us/calib.conf", "patch.ch5.prf64.tx_power", "patch.ch5.prf64.power")
        rows = self.shown("matrix", "--root", "tree", "--sort", "block", "--format", "csv", status=1)
        self.assertEqual([row.split(b",")[0] for row in rows.splitlines()[1:]],
                         [b"us", b"other", b"none", b"de"])
        self.assertEqual(self.shown("matrix", "--root", EXAMPLES, "--sort", "country"),
                         self.shown("matrix", "--root", EXAMPLES))

    def test_values_as_the_text_has_them(self):
        self.change("common.conf", "xtal_trim=40", "xtal_trim= \t+050 ; octal")
        record = json.loads(self.shown("matrix", "--root", "tree", "--format", "json"))
        settings = record["countries"][0]["settings"]
        values = {name: [record["lines"][lines[-1]]["value"] for lines in settings[name]]
                  for name in ("xtal_trim", "ch9_tx_power", "ch9_antenna_selection",
                               "ch9.antenna_selection")}
        self.assertEqual(values, {"xtal_trim": ["+050"], "ch9_tx_power": ["0x10101414"],
                                  "ch9_antenna_selection": ["1", "7"],
                                  "ch9.antenna_selection": ["edge"]})

    def test_cells_of_csv_are_quoted(self):
        self.change("default/calib.conf", "edge.ch9", "edg.ch9")
        self.change("default/calib.conf", "patch.ch5", "patc.ch5")
        rows = self.shown("matrix", "--root", "tree", "--countries", 'a"b', "--fields", "version",
                          "--format", "csv", status=1)
        self.assertEqual(rows.splitlines()[1].decode(),
                         '"a""b",,,"parameters are missing: patch.ch5.prf64.tx_power, '
                         'edge.ch9.prf64.tx_power"')

    def test_countries_in_file_names_and_none_without_files(self):
        (self.folder / "vendor/etc").mkdir(parents=True)
        (self.folder / "vendor/etc/calib_paths").write_text("/uwb/a.<country>.conf\nnone\n")
        (self.folder / "uwb").mkdir()
        for name in ("a.fr.conf", "a.IT.conf", "a..conf", "a.default.conf", "b.es.conf", "a.pl"):
            (self.folder / "uwb" / name).write_text("")
        rows = json.loads(self.shown("matrix", "--root", ".", "--format", "json", status=1))
        # Codes are lowered before they are looked for, so IT is never read.
        self.assertEqual([row["country"] for row in rows["countries"]], ["fr", "other", "none"])

    def test_log_is_that_of_the_device(self):
        log = run("matrix", "--root", EXAMPLES, "--log").stderr.decode()
        self.assertEqual(log.count("load_uwb_params_from_files entry"), 4)
        self.assertEqual(log.count("Parsing full calibration"), 4)


class Page(CompareTest):
    """What a browser shows of it is tested in tests/browser."""

    def page(self, status=0):
        page = self.shown("matrix", "--root", "tree", "--format", "html", status=status).decode()
        data = page.split('<script type="application/json" id="data">')[1].split("</script>")[0]
        return page, data

    def test_holds_what_matrix_and_lint_tell(self):
        self.change("de/calib.conf", "edge.ch9.prf64.tx_power", "edge.ch9.prf64.power")
        held = json.loads(self.page(status=1)[1])
        for part, command in (("state", "matrix"), ("lint", "lint")):
            told = json.loads(run(command, "--root", "tree", "--format", "json",
                                  cwd=self.folder).stdout)
            del told["format_version"]
            self.assertEqual(held[part], told)
        self.assertEqual(held["name"], "tree")

    def test_asks_no_network(self):
        self.copy()
        page, _ = self.page()
        self.assertIn("default-src 'none'; style-src 'unsafe-inline'; script-src 'unsafe-inline'",
                      page)
        for word in ("http:", "https:", " src=", "@import", "url(", "innerHTML"):
            self.assertNotIn(word, page)

    def test_is_small_for_forty_countries(self):
        make_forty_countries(self.tree)
        self.assertLess(len(self.page()[0].encode()), 300_000)
        for i, country in enumerate(COUNTRIES):
            self.change(f"{country}/calib.conf", "# Transmit", f"xtal_trim={i}\n# Transmit")
        self.assertLess(len(self.page()[0].encode()), 300_000)

    def test_no_text_ends_the_data(self):
        self.change("common.conf", "version=2", "version=2 </script><!-- \" ' & <b>")
        page, data = self.page()
        self.assertEqual(page.count("</script>"), 2)
        self.assertNotIn("<", data)
        texts = [line["text"] for line in json.loads(data)["state"]["lines"]]
        self.assertIn("version=2 </script><!-- \" ' & <b>", texts)

    def test_bytes_that_are_no_text_and_long_lines(self):
        self.copy()
        file = self.tree / "vendor/etc/uwb/common.conf"
        file.write_bytes(file.read_bytes().replace(b"edge", b"\xff\x1b").replace(
            b"version=2", b"version=2 " + b"x" * 10000))
        shutil.rmtree(self.tree / "vendor/etc/uwb/de")
        for name in ("us", "default"):
            file = self.tree / "vendor/etc/uwb" / name / "calib.conf"
            file.write_bytes(file.read_bytes().replace(b"edge", b"\xff\x1b"))
        texts = [line["text"] for line in json.loads(self.page()[1])["state"]["lines"]]
        self.assertIn("\ufffd\x1b.port=1", texts)
        self.assertIn("version=2 " + "x" * 10000, texts)


class Diff(CompareTest):
    def diff(self, *arguments, status=1):
        return self.shown("diff", *arguments, status=status)

    def test_changes_of_all_countries_are_grouped(self):
        self.copy()
        self.assertEqual(self.diff(EXAMPLES, "tree", status=0), b"")
        self.change("common.conf", "edge.port=1", "edge.port=3")
        self.change("de/calib.conf", "wifi_coex_time_gap=20", "wifi_coex_time_gap=21")
        self.change("us/calib.conf", "edge.ch9.prf64.tx_power", "edge.ch9.prf64.power")
        shutil.copytree(self.tree / "vendor/etc/uwb/default", self.tree / "vendor/etc/uwb/fr")
        with (self.tree / "vendor/etc/uwb/fr/calib.conf").open("a") as file:
            file.write("ap_coop_mode=2\n")
        for form in ("text", "json"):
            self.golden(f"diff.trees.{form}", self.diff("--format", form, EXAMPLES, "tree"))
        self.golden("diff.trees.countries",
                    self.diff("--countries", "de,none", EXAMPLES, "tree"))
        self.golden("diff.trees.back", self.diff("tree", EXAMPLES))

    def test_forty_countries(self):
        make_forty_countries(self.tree)
        shutil.copytree(self.tree, self.folder / "old")
        self.change("common.conf", "xtal_trim=40", "xtal_trim=41")
        for country in ("at", "za"):
            self.change(f"{country}/calib.conf", "# Transmit", "xtal_trim=40\n# Transmit")
        for key, step in (("patch.ch5", 5), ("edge.ch9", 10)):
            for country in COUNTRIES[::step]:
                power = f"{key}.prf64.tx_power=0x181C20"
                self.change(f"{country}/calib.conf", power + "24", power + "20")
        self.golden("diff.forty_countries", self.diff("old", "tree"))

    def test_the_shorter_list_of_countries_is_told(self):
        for countries, told in ((["us"], "in us: "), (["de", "us"], "in de, us: "),
                                (["default", "us"], "in 3 of 4 loads, not in de: ")):
            with self.subTest(countries=countries):
                self.copy()
                for country in countries:
                    path = self.tree / "vendor/etc/uwb" / country / "calib.conf"
                    path.write_text(path.read_text() + "xtal_trim=41\n")
                shown = self.diff(EXAMPLES, "tree").decode()
                self.assertEqual(shown.splitlines()[0], told + "xtal_trim 40 -> 41")
                shutil.rmtree(self.tree)

    def test_a_line_that_ends_a_file_is_why_a_block_is_lost(self):
        """Not the lines after it, nor others that differ."""
        self.copy()
        common = self.tree / "vendor/etc/uwb/common.conf"
        common.write_text(common.read_text() + "xtal_trim=400\nch5.antenna_selection=\n")
        shutil.copytree(self.tree, self.folder / "old")
        file = self.tree / "vendor/etc/uwb/us/calib.conf"
        file.write_text("edge.port=300\n" + file.read_text())
        self.change("common.conf", "ap_coop_mode=1", "ap_coop_mode=2")
        for sides, text, mark in ((("old", "tree"), "no block any more", "+"),
                                  (("tree", "old"), "a block now; before", "-")):
            self.assertEqual(
                self.diff("--country", "us", *sides).decode(),
                f"{text}: parameters are missing: patch.ch5.prf64.tx_power, edge.ch9.prf64.tx_power\n"
                f"  {mark} /vendor/etc/uwb/us/calib.conf:1: edge.port=300\n")

    def test_one_country_of_two_trees(self):
        self.change("common.conf", "version=2", "version = 2\nversion=2")
        self.assertEqual(self.diff("--country", "US", EXAMPLES, "tree", status=0), b"")
        self.change("common.conf", "edge.port=1", "edge.port=3")
        self.golden("diff.trees.country", self.diff("--country", "US", EXAMPLES, "tree"))

    def test_other_and_none_are_countries_too(self):
        self.change("default/calib.conf", "0x0A0A0A0A", "0x0A0A0A0B")
        for country in ("other", "none", ""):
            shown = self.diff("--country", country, EXAMPLES, "tree").decode()
            self.assertIn("ch5_tx_power 0x0A0A0A0A -> 0x0A0A0A0B\n", shown)
        self.assertEqual(self.diff("--countries", "none", EXAMPLES, "tree").decode(), shown)

    def test_countries_beside_between_are_refused(self):
        for option in (("--country", "us"), ("--countries", "us")):
            self.fails(run("diff", "--root", EXAMPLES, *option, "--between", "us", "de"),
                       "--between takes its countries from A and B, not from an option")

    def test_a_country_that_comes_or_goes_alone_is_a_difference(self):
        """Its block may be that of any other country still."""
        self.copy()
        shutil.copytree(self.tree / "vendor/etc/uwb/default", self.tree / "vendor/etc/uwb/fr")
        self.assertEqual(self.diff(EXAMPLES, "tree"), b"added: fr\n")
        self.assertEqual(self.diff("tree", EXAMPLES), b"removed: fr\n")
        self.assertEqual(self.diff("--countries", "fr", "tree", EXAMPLES, status=0), b"")

    def test_loads_without_a_block_in_both_trees_are_named(self):
        self.change("de/calib.conf", "edge.ch9.prf64.tx_power", "edge.ch9.prf64.power")
        result = run("diff", "tree", "tree", cwd=self.folder)
        self.assertEqual((result.returncode, result.stdout), (0, b""))
        self.assertEqual(result.stderr, b"tarnix-uwb-params: no block on either side: de\n")
        self.diff("-q", "tree", "tree", status=0)
        self.change("default/calib.conf", "edge.ch9.prf64.tx_power", "edge.ch9.prf64.power")
        document = json.loads(run("diff", "--format", "json", "tree", "tree", cwd=self.folder).stdout)
        self.assertEqual(document["without_block"], ["de", "other", "none"])
        result = run("diff", "-q", "--country", "DE", "tree", "tree", cwd=self.folder)
        self.assertEqual((result.returncode, result.stdout), (1, b""))
        self.assertEqual(result.stderr,
                         b"tarnix-uwb-params: no valid calibration in tree and tree\n")

    def test_trees_without_any_block_still_tell_their_countries(self):
        self.copy()
        (self.tree / "vendor/etc/uwb/common.conf").unlink()
        shutil.copytree(self.tree, self.folder / "old")
        shutil.copytree(self.tree / "vendor/etc/uwb/default", self.tree / "vendor/etc/uwb/fr")
        text, document = (run("diff", "--format", form, "old", "tree", cwd=self.folder)
                          for form in ("text", "json"))
        for result in (text, document):
            self.assertEqual((result.returncode, result.stderr), (
                1, b"tarnix-uwb-params: no valid calibration in old and tree\n"))
        self.assertEqual(text.stdout, b"added: fr\n")
        self.assertEqual(json.loads(document.stdout), {
            "format_version": 1, "differences": [], "added": ["fr"], "removed": [],
            "without_block": ["de", "fr", "us", "other", "none"]})

    def test_two_countries_of_one_tree(self):
        self.copy()
        self.golden("diff.between", self.diff("--root", "tree", "--between", "us", "de"))
        self.assertEqual(self.diff("--root", "tree", "--between", "other", "none", status=0), b"")
        mapped = ("--map", f"/vendor={EXAMPLES}/vendor", "--between", "us", "de")
        self.assertEqual(self.diff(*mapped), (GOLDEN / "diff.between").read_bytes())
        for more in (["--root", "tree"], ["--map", "/vendor=tree"]):
            self.fails(run("diff", *more, EXAMPLES, "tree", cwd=self.folder),
                       "--root and --map are for --between; A and B are trees themselves")


class DiffOfRecords(CompareTest):
    def setUp(self):
        super().setUp()
        self.copy()
        self.record = self.folder / "certified.json"
        self.record.write_bytes(self.shown("matrix", "--root", "tree", "--format", "json"))

    def test_a_record_stands_for_its_tree(self):
        self.assertEqual(self.shown("diff", "certified.json", "tree"), b"")
        for path, old, new in (("common.conf", "xtal_trim=40", "xtal_trim=41"),
                               ("us/calib.conf", "edge.ch9.prf64.tx_power", "edge.power"),
                               ("common.conf", "patch.selector_gpio=6", "patch.selector_gpio=7")):
            self.change(path, old, new)
            for form in ("text", "json"):
                for arguments in ([], ["--country", "US"], ["--countries", "us,fr,none"]):
                    arguments = ("diff", "--format", form, *arguments)
                    self.assertEqual(self.shown(*arguments, "certified.json", "tree", status=1),
                                     self.shown(*arguments, EXAMPLES, "tree", status=1))
                    self.assertEqual(self.shown(*arguments, "tree", "certified.json", status=1),
                                     self.shown(*arguments, "tree", EXAMPLES, status=1))
        (self.folder / "now.json").write_bytes(
            self.shown("matrix", "--root", "tree", "--format", "json", status=1))
        self.assertEqual(self.shown("diff", "certified.json", "now.json", status=1),
                         self.shown("diff", EXAMPLES, "tree", status=1))

    def test_countries_that_come_and_go(self):
        (self.tree / "vendor/etc/uwb/us").rename(self.tree / "vendor/etc/uwb/fr")
        shown = self.shown("diff", "certified.json", "tree", status=1)
        self.assertEqual(shown, self.shown("diff", EXAMPLES, "tree", status=1))
        self.assertEqual(shown.splitlines()[:2], [b"added: fr", b"removed: us"])

    def test_a_load_that_is_not_recorded(self):
        self.record.write_bytes(self.shown("matrix", "--root", "tree", "--format", "json",
                                           "--countries", "us"))
        self.assertEqual(self.shown("diff", "certified.json", "tree", status=1),
                         b"added: de, any other country, no country code\n")
        shutil.rmtree(self.tree / "vendor/etc/uwb/us")
        self.assertEqual(self.shown("diff", "--countries", "other", "tree", "tree"), b"")
        (self.folder / "other.json").write_bytes(self.shown(
            "matrix", "--root", "tree", "--format", "json", "--countries", "other"))
        self.record.write_bytes(self.shown("matrix", "--root", "tree", "--format", "json",
                                           "--countries", "none"))
        self.assertEqual(self.shown("diff", "other.json", "certified.json", status=1),
                         b"added: no country code\nremoved: any other country\n")
        self.record.write_bytes(self.shown("matrix", "--root", "tree", "--format", "json",
                                           "--countries", "us"))
        self.fails(run("diff", "--country", "", "certified.json", "tree", cwd=self.folder),
                   "certified.json lacks a load: no country code")

    def test_the_only_load_of_two_records_is_not_named(self):
        for name in ("certified", "now"):
            (self.folder / f"{name}.json").write_bytes(self.shown(
                "matrix", "--root", "tree", "--format", "json", "--countries", "us"))
            if name == "certified":
                self.change("common.conf", "xtal_trim=40", "xtal_trim=41")
        shown = self.shown("diff", "certified.json", "now.json", status=1)
        self.assertEqual(shown.splitlines()[0], b"xtal_trim 40 -> 41")

    def test_a_record_and_a_block(self):
        (self.folder / "us.bin").write_bytes(self.block("US"))
        self.assertEqual(self.shown("diff", "--country", "US", "certified.json", "us.bin"), b"")
        self.shown("diff", "--country", "DE", "certified.json", "us.bin", status=1)

    def test_what_is_no_record_is_named(self):
        text = self.record.read_text()
        neither = ("certified.json is neither a block nor what 'matrix --format json' writes, with "
                   "format_version 1")
        no_record = "certified.json is not as 'matrix --format json' writes it"
        for bad, message in (
                (text[:-20], "certified.json: no block: the JSON document is not whole"),
                ('{"a": 1}', neither),
                (text.replace('"format_version": 1', '"format_version": 2'), neither),
                (text.replace('"format_version": 1', '"format_version": "1"'), neither),
                (text.replace('"blocks"', '"block"'), neither),
                (text.replace('"country": "us"', '"country": 7'), no_record),
                (text.replace('"block": 1', '"block": 7'), no_record),
                (text.replace('"bytes": "54', '"bytes": "5'), no_record),
                (re.sub(r'"xtal_trim": \n *\[\n *\[\s*\d+', '"xtal_trim": [[1000', text),
                 no_record),
                (text.replace('"path": "', '"path": 7, "": "'), no_record),
                (text.replace('"line": ', '"line": -'), no_record),
                (text.replace('"text": "', '"text": 7, "": "'), no_record),
                ('{"bytes": "0"}', "certified.json: hexadecimal text, but no two digits at "
                                   "character 1")):
            self.assertNotEqual(bad, text, message)
            self.record.write_text(bad)
            self.fails(run("diff", "certified.json", "tree", cwd=self.folder), message)

    def test_each_member_of_a_record_is_checked(self):
        valid = self.record.read_text()
        bare = {"country": "us", "valid": False, "settings": {}, "problem": "none", "missing": [],
                "failing": [], "refused_by_device": []}
        for place, bad in (
                (["blocks"], {}), (["lines"], {}), (["countries"], {}),
                (["blocks", 0, "bytes"], 54), (["countries", 0, "valid"], 1),
                (["countries", 0, "settings"], []),
                (["countries", 0, "settings", "xtal_trim"], {}),
                (["countries", 0, "settings", "xtal_trim", 0], {}),
                (["countries", 0, "settings", "xtal_trim", 0, 0], "0"),
                (["not_taken_for_countries"], [7]), (["countries", 0, "failing"], [1000]), (["countries", 0, "refused_by_device"], 1),
                (["countries", 0], {**bare, "problem": {}}),
                (["countries", 0], {**bare, "missing": {}}),
                (["countries", 0], {**bare, "missing": [7]})):
            with self.subTest(place=place, bad=bad):
                record = json.loads(valid)
                member = record
                for step in place[:-1]:
                    member = member[step]
                member[place[-1]] = bad
                self.record.write_text(json.dumps(record))
                self.fails(run("diff", "certified.json", "tree", cwd=self.folder),
                           "certified.json is not as 'matrix --format json' writes it")


class DiffOfBlocks(CompareTest):
    def setUp(self):
        super().setUp()
        self.a = self.folder / "a"
        self.b = self.folder / "b"
        self.a.write_bytes(self.block("US"))
        self.b.write_bytes(self.block("DE"))

    def test_blocks_that_differ(self):
        for form in ("text", "json"):
            self.golden(f"diff.{form}", self.shown("diff", "--format", form, "a", "b", status=1))

    def test_blocks_that_are_alike(self):
        self.assertEqual(self.shown("diff", "a", "a"), b"")

    def test_one_block_from_standard_input(self):
        result = run("diff", "-", self.b, stdin=self.a.read_bytes())
        self.assertEqual(result.stdout, (GOLDEN / "diff.text").read_bytes())
        self.fails(run("diff", "-", "-"), "only one of the two can be the standard input")

    def test_a_tree_and_a_block(self):
        self.assertEqual(self.shown("diff", "--country", "DE", EXAMPLES, "b"), b"")
        self.assertEqual(self.shown("diff", "--countries", "DE", EXAMPLES, "b"), b"")
        for sides in ((EXAMPLES, "b"), ("b", EXAMPLES)):
            self.fails(run("diff", "--countries", "de,us", *sides, cwd=self.folder),
                       "a block is of one country, --countries names 2")

    def test_a_cut_block_lacks_fields(self):
        self.b.write_bytes(self.a.read_bytes()[:38])
        self.golden("diff.cut", self.shown("diff", "a", "b", status=1))

    def test_a_tree_without_a_calibration_is_status_1(self):
        (self.folder / "empty").mkdir()
        why = b"no path file names a calibration file that can be read\n"
        self.assertEqual(self.shown("diff", "empty", "a", status=1),
                         b"a block now; before: " + why)
        self.assertEqual(self.shown("diff", "a", "empty", status=1),
                         b"no block any more: " + why)
        result = run("diff", "-q", "empty", "empty", cwd=self.folder)
        self.assertEqual((result.returncode, result.stdout), (1, b""))
        self.assertEqual(result.stderr,
                         b"tarnix-uwb-params: no valid calibration in empty and empty\n")

    def test_what_is_no_block_is_status_2(self):
        self.fails(run("diff", self.a, "/no/such"), "cannot open /no/such: No such file or directory")
        (self.folder / "large").write_bytes(bytes(83))
        self.fails(run("diff", "a", "large", cwd=self.folder),
                   "large: no block: 83 bytes, a block has 82")


if __name__ == "__main__":
    unittest.main()
