#!/usr/bin/env python3
# SPDX-License-Identifier: Apache-2.0
"""Keeps the documents true: their excerpts stand in the files they name, their tables are those of
the sources, and their blocks are the library's."""

import argparse
import pathlib
import re
import subprocess
import sys
import unittest

ROOT = pathlib.Path(__file__).resolve().parents[2]
DOCUMENTS = [
    *sorted(ROOT.glob("*.md")),
    *sorted((ROOT / "docs").glob("*.md")),
    ROOT / "fuzz/README.md",
    ROOT / "tests/scenarios/README.md",
]
WHOLE = re.compile(r"<!-- file: (\S+) -->\n```\w*\n(.*?)```", re.S)
EXCERPT = re.compile(r"<!-- from: (\S+) -->\n```\w*\n(.*?)```", re.S)
BLOCK = re.compile(r"<!-- output of: block (\S+) (\S+) -->\n```\n(.*?)```", re.S)
PRIORITIES = {"DEBUG": "3 debug", "INFO": "4 info", "WARN": "5 warning", "ERROR": "6 error"}
LOG_CALL = re.compile(r"__android_log_print\(\s*ANDROID_LOG_(\w+),\s*nullptr,\s*((?:\"[^\"]*\"\s*)+)")
EXCEPTION = re.compile(r"invalid_argument\(\"([^\"]*)\"\)")
OPTIONS = argparse.Namespace(replay=None)


def sources():
    folders = ("grammar", "schema", "output", "loader")
    return "\n".join(p.read_text() for f in folders for p in sorted((ROOT / f).glob("*.cpp")))


def rows(document, columns):
    """The rows of the document's tables that have this many columns, without their heads."""
    lines = (ROOT / "docs" / document).read_text().splitlines()
    cells = [[c.strip() for c in line.strip("|").split("|")] for line in lines if line[:1] == "|"]
    rules = {i for i, row in enumerate(cells) if set("".join(row)) == {"-"}}
    heads = {i - 1 for i in rules}
    return [r for i, r in enumerate(cells) if i not in rules | heads and len(r) == columns]


class Documents(unittest.TestCase):
    def test_excerpts_stand_in_their_files(self):
        for document in DOCUMENTS:
            for path, text in EXCERPT.findall(document.read_text()):
                with self.subTest(document=document.name, path=path):
                    self.assertIn("\n" + text, "\n" + (ROOT / path).read_text())

    def test_whole_files_are_shown_whole(self):
        for document in DOCUMENTS:
            for path, text in WHOLE.findall(document.read_text()):
                with self.subTest(document=document.name, path=path):
                    self.assertEqual(text, (ROOT / path).read_text())

    def test_links_lead_to_files(self):
        for document in DOCUMENTS:
            for target in re.findall(r"\]\(([^)#:]+)\)", document.read_text()):
                with self.subTest(document=document.name, target=target):
                    self.assertTrue((document.parent / target).exists())

    def test_blocks_are_the_librarys(self):
        if OPTIONS.replay is None:
            self.skipTest("no --replay given")
        for document in DOCUMENTS:
            for tree, country, text in BLOCK.findall(document.read_text()):
                with self.subTest(document=document.name, tree=tree, country=country):
                    self.assertEqual(text, block(tree, country))

    def test_every_message_is_listed_with_its_priority(self):
        calls = LOG_CALL.findall(sources())
        expected = {
            ("".join(re.findall(r'"([^"]*)"', texts)).removesuffix("\\n"), PRIORITIES[priority])
            for priority, texts in calls
        }
        listed = [(row[1].strip("`"), row[0]) for row in rows("log_messages.md", 4)]
        self.assertEqual(sorted(listed), sorted(expected))

    def test_every_exception_text_is_listed(self):
        listed = [row[0].strip("`") for row in rows("log_messages.md", 2)]
        self.assertEqual(sorted(listed), sorted(set(EXCEPTION.findall(sources()))))

    def test_block_table_is_the_record(self):
        header = (ROOT / "output/ccc_params.h").read_text()
        offsets = re.findall(r"offsetof\(ccc_params, (\w+)\) == (\d+)\)", header)
        listed = rows("block_format.md", 4)
        self.assertEqual([(row[2].strip("`"), row[0]) for row in listed], offsets)
        ends = [int(row[0]) + int(row[1]) for row in listed]
        self.assertEqual(ends, [int(row[0]) for row in listed[1:]] + [82])

    def test_every_key_is_listed(self):
        keys = set(re.findall(r"param\(\"(\w+)\"", sources()))
        listed = {row[0].strip("`").rsplit(".")[-1] for row in rows("calibration_files.md", 3)}
        self.assertEqual(listed, keys)


def block(tree, country):
    """The rows of bytes that the library makes of a tree with a country code."""
    commands = (
        f"root\t{ROOT / tree}\nset\tvendor.uwb.calibration.country_code\t{country}\nload\t82\n"
    )
    answer = subprocess.run(
        OPTIONS.replay, shell=True, input=commands, text=True, stdout=subprocess.PIPE, check=True
    ).stdout
    data = bytes.fromhex(answer.splitlines()[-1].split("\t")[2])
    return "".join(
        f"{at:03}  {data[at:at + 16].hex(' ')}\n" for at in range(0, len(data), 16)
    )


if __name__ == "__main__":
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--replay", help="the replay program with its library")
    OPTIONS, rest = parser.parse_known_args()
    unittest.main(argv=[sys.argv[0], *rest])
