# SPDX-License-Identifier: Apache-2.0
"""Keeps true what is written about the command: examples, manual, completion, installation.

UPDATE=1 rewrites the examples' output in the documents.
"""
import json
import os
import re
import shutil
import subprocess
import unittest
from pathlib import Path

from command_test import COMMAND, EXAMPLES, GOLDEN, PROJECT, CommandTest, run

COMPLETION = PROJECT / "tools/install"
MANUAL = PROJECT / "tools/install/tarnix-uwb-params.1"
SUBCOMMANDS = ("build", "decode", "lint", "explain", "matrix", "diff")
# What a terminal shows: each command after "$ ", its output below it.
TRANSCRIPT = re.compile(r"(?<=^```console\n).*?(?=^```$)", re.M | re.S)


def help_of(subcommand):
    return run(subcommand, "--help").stdout.decode()


def options_of(subcommand):
    return set(re.findall(r"^  (?:-\w, )?(--[a-z-]+)", help_of(subcommand), re.M))


class Documents(CommandTest):
    def replay(self, transcript):
        """The transcript with what its commands print now."""
        shown = ""
        for command in re.findall(r"^\$ (.*)$", transcript, re.M):
            path = f"{Path(COMMAND).parent}:{os.environ['PATH']}"
            result = subprocess.run(["bash", "-c", command], cwd=self.folder, text=True,
                                    stdout=subprocess.PIPE, stderr=subprocess.DEVNULL,
                                    env={**os.environ, "PATH": path}, check=False)
            shown += f"$ {command}\n{result.stdout}"
        return shown

    def check(self, document):
        """Each command of the document prints what is shown. Returns what is shown."""
        shutil.copytree(EXAMPLES, self.folder / "examples")
        shutil.copytree(PROJECT / "tests/tools/lint", self.folder / "tests/tools/lint",
                        symlinks=True)
        text = document.read_text()
        transcripts = TRANSCRIPT.findall(text)
        now = TRANSCRIPT.sub(lambda transcript: self.replay(transcript.group()), text)
        if os.environ.get("UPDATE"):
            document.write_text(now)
        self.assertEqual(document.read_text(), now)
        return "".join(transcripts)

    def test_examples_of_the_command_are_true(self):
        shown = self.check(PROJECT / "docs/command.md")
        for subcommand in SUBCOMMANDS:
            self.assertIn(f"$ tarnix-uwb-params {subcommand} ", shown)

    def test_every_member_of_json_is_documented(self):
        table = (PROJECT / "docs/command.md").read_text().split("## JSON")[1]
        rows = {row: text for row, text in re.findall(r"^\| `(\w+)` \| (.*) \|$", table, re.M)}
        rows["decode"] += rows["build"]
        rows["explain"] += rows["build"]
        rows["matrix"] += rows["build"]
        for command, name in (("build", "build_json"), ("decode", "decode.json"),
                              ("lint", "lint.json"), ("explain", "explain.json"),
                              ("explain", "explain.tried.json"),
                              ("explain", "explain.device_log.json"),
                              ("matrix", "matrix.json"), ("diff", "diff.json"), ("diff", "diff.trees.json")):
            # The members of settings are fields and keys.
            text = re.sub(r'"settings": \s*\{[^}]*\}', '"settings": ', (GOLDEN / name).read_text())
            members = set(re.findall(r'"(\w+)": ', text))
            self.assertEqual(members - {"format_version"} - set(re.findall(r"`(\w+)`", rows[command])),
                             set(), command)

    def test_map_of_the_block_is_that_of_the_command(self):
        """UPDATE=1 draws it again."""
        block = run("build", "-q", "--root", EXAMPLES, "--format", "json").stdout
        drawn = subprocess.run([PROJECT / "script/block_map.py"], input=block, capture_output=True,
                               check=True).stdout.decode()
        picture = PROJECT / "docs/block_map.svg"
        if os.environ.get("UPDATE"):
            picture.write_text(drawn)
        self.assertEqual(picture.read_text(), drawn)
        # Each byte is drawn once: the whole rows, and the one of the 42 bytes at the end.
        pieces = re.findall(r'<rect class="(?:f\d|zero)" x="\d+" y="(\d+)" width="(\d+)"', drawn)
        widths = {y: sum(int(width) for row, width in pieces if row == y) for y, _ in pieces}
        self.assertEqual(set(widths.values()), {8 * 108})
        self.assertEqual(len(widths), 6)
        for field in json.loads(block)["fields"]:
            self.assertIn(f"<title>{field['name']}, offset {field['offset']}, size {field['size']}<",
                          drawn)

    def test_examples_of_the_readme_are_true(self):
        self.assertIn("$ tarnix-uwb-params ", self.check(PROJECT / "README.md"))


class Manual(CommandTest):
    def test_has_every_subcommand_option_and_format(self):
        manual = MANUAL.read_text()
        for subcommand in SUBCOMMANDS:
            self.assertIn(f".It Cm {subcommand}\n", manual)
            for option in options_of(subcommand):
                self.assertIn(f"Fl -{option[2:]} ", manual.replace("\n", " "), option)
            formats = re.search(r"--format FORMAT +(.*)", help_of(subcommand)).group(1)
            for form in formats.split(", "):
                self.assertRegex(manual, rf"\.Cm (.* )?{form}\b")

    def test_has_no_option_that_does_not_exist(self):
        every = {"--version"}.union(*map(options_of, SUBCOMMANDS))
        for option in re.findall(r"Fl -([a-z-]{2,})", MANUAL.read_text()):
            self.assertIn(f"--{option}", every)

    def test_is_well_formed(self):
        result = subprocess.run(["groff", "-mdoc", "-ww", "-Tutf8", "-z", MANUAL],
                                capture_output=True, text=True, check=False)
        self.assertEqual((result.returncode, result.stderr), (0, ""))


class Completion(CommandTest):
    def bash(self, *words):
        """What bash offers for the last word."""
        script = (f'. "{COMPLETION}/tarnix-uwb-params.bash"; COMP_WORDS=("$@"); '
                  'COMP_CWORD=$(($# - 1)); _tarnix_uwb_params "$1"; '
                  'printf "%s\\n" "${COMPREPLY[@]}"')
        shown = subprocess.run(["bash", "-c", script, "bash", COMMAND, *words],
                               capture_output=True, text=True, check=True).stdout
        return set(shown.split())

    def zsh(self, *words):
        """The words that zsh chooses from, whatever of the last one is written."""
        script = (f'source "{COMPLETION}/_tarnix-uwb-params"; compadd() {{ print -l -- "${{@:2}}" }}; '
                  'words=("$@"); CURRENT=$#; _tarnix_uwb_params')
        shown = subprocess.run(["zsh", "-f", "-c", script, "zsh", COMMAND, *words],
                               capture_output=True, text=True, check=True).stdout
        return set(shown.split())

    def test_bash_offers_the_subcommands(self):
        self.assertEqual(self.bash(""), {*SUBCOMMANDS, "--help", "--version"})
        self.assertEqual(self.bash("d"), {"decode", "diff"})

    def test_bash_offers_the_options_of_the_subcommand(self):
        for subcommand in SUBCOMMANDS:
            self.assertEqual(self.bash(subcommand, "--"), options_of(subcommand))

    def test_bash_offers_options_after_an_option_without_a_value(self):
        self.assertEqual(self.bash("build", "--quiet", ""), options_of("build"))
        self.assertEqual(self.bash("build", "-q", ""), options_of("build"))

    def test_bash_offers_fields_to_explain(self):
        self.assertEqual(self.bash("explain", "ch5_p"), {"ch5_pg_count", "ch5_pg_delay", "ch5_port"})

    def test_bash_offers_values(self):
        for words in (["--format", ""], ["--format", "="], ["--color", "never", "--format", ""]):
            self.assertEqual(self.bash("lint", *words), {"text", "json", "sarif", "github",
                                                         "baseline"})
        self.assertEqual(self.bash("lint", "--format", "=", "s"), {"sarif"})
        self.assertEqual(self.bash("lint", "--error", "no-"), {"no-equal", "no-block"})

    def test_bash_offers_files_where_a_file_may_stand(self):
        """It does so by itself where the function offers nothing."""
        for words in (["build", "--root", ""], ["build", "-o", ""], ["lint", "--path-file", ""],
                      ["decode", ""], ["diff", "a", ""]):
            self.assertEqual(self.bash(*words), set(), words)

    def test_zsh_offers_the_same(self):
        for words in ([""], ["lint", "--error", ""], ["build", "--root", ""], ["decode", ""],
                      *([subcommand, "--"] for subcommand in SUBCOMMANDS)):
            self.assertEqual(self.zsh(*words), self.bash(*words), words)


class Installation(CommandTest):
    def test_installed_command_and_library_work(self):
        subprocess.run(["cmake", "--install", os.environ["BUILD"], "--prefix", self.folder],
                       check=True, capture_output=True)
        command = self.folder / "bin/tarnix-uwb-params"
        maps = subprocess.run(["ldd", command], capture_output=True, text=True, check=True).stdout
        self.assertNotIn("not found", maps)
        library = next(self.folder.rglob("libtarnix_uwb_params_nfcc.so"))
        build = [command, "build", "--root", EXAMPLES, "--format", "hex"]
        blocks = {subprocess.run(words, capture_output=True, check=True).stdout
                  for words in (build, [*build, "--library", library])}
        self.assertEqual(len(blocks), 1)
        for name in ("man/man1/tarnix-uwb-params.1",
                     "bash-completion/completions/tarnix-uwb-params",
                     "zsh/site-functions/_tarnix-uwb-params"):
            self.assertTrue((self.folder / "share" / name).is_file(), name)


if __name__ == "__main__":
    unittest.main()
