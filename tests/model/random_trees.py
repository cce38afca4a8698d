# SPDX-License-Identifier: Apache-2.0
"""Makes random device trees and loads; about half of the trees hold a valid calibration.

Every case follows from its seed and its number alone; compare.py runs one again.
"""

import os
import posixpath
import random

import calibration_model
import replay

DIRECTORY = object()

BLANKS = (b" ", b" ", b"\t", b"\v", b"\f", b"\r")
MARKERS = (b"//", b"#", b";")
TAILS = (b"", b"", b"", b" ", b"\r", b"\t ", b" // note", b"//note", b"#7", b";x", b" 9", b",1",
         b".5", b"\v\f", b" [CCC]", b"[CCC]", b"\0", b"=3", b"\xff", b"%n")

# Antennas of channels 5 and 9. Any word will do as long as its lines are no comments.
ANTENNAS = (
    (b"ant0", b"ant1"), (b"ant0", b"ant1"), (b"ant0", b"ant1"), (b"top", b"back"),
    (b"main", b"main"), (b"main", b"main"), (b"A", b"A"), (b"ch5", b"ch5"),
    (b"ant1", b"ant10"), (b"ant10", b"ant1"), (b"a", b"aa"), (b"ver", b"version"),
    (b"version", b"xtal_trim"), (b"xtal_trim", b"xtal"), (b"port", b"selector_gpio"),
    (b"ch5", b"ch9"), (b"ch9", b"ch5"), (b"prf64", b"ch5.prf64"), (b"ant0", b"ant0.ch9"),
    (b"a.ch9.prf64", b"a"), (b"a.port", b"a"), (b"x=", b"x"), (b".", b".."), (b"=", b"=="),
    (b"\xc3\xa9", b"\xff"), (b"a/b", b"a/"), (b"%s", b"%n%s%d"), (b"a\0b", b"a\0"),
    (b"Ant0", b"ant0"),
)  # fmt: skip
BAD_ANTENNAS = (
    (b"ant0//x", b"ant1"), (b"ant0", b"ant#1"), (b"a;", b"a;"), (b"version=", b"ant1"),
    (b"[CCC]", b"ant1"), (b"a", b"a.port=b"), (b"xtal_trim=", b"xtal_trim="),
)  # fmt: skip

# The last ones are read by one C++ library and refused by the other.
BAD_VALUES = (
    b"", b" ", b"\t\r", b"x", b"0x", b"-", b"+", b"--1", b"+-1", b"- 1", b"\xd9\xa3", b"\0", b"=1",
    b"256", b"65535", b"65536", b"4294967296", b"99999999999999999999999", b"0x10000", b"0x100",
    b"0x100000000", b"0400", b"0200000", b"040000000000", b"-1", b"-255", b"-256", b"-65280",
    b"-65281", b"-65535", b"-65536", b"-4294967295", b"-4294967296", b"0xg", b"#1", b"//1",
    b"08", b"09", b"018", b"12abc", b"1e5", b"0x1x", b"00x1", b"0b1", b"7f", b"0x0x1", b"6A",
)  # fmt: skip

COUNTRIES = (b"", b"US", b"us", b"Fr", b"JP", b"EU/DE", b"..", b".", b"../x", b"a b", b"\xc3\x89Z",
             b"DEFAULT", b"unknown", b"<country>", b"%s%n", b"gb.", b"/", b"x\ny",
             b"\\x41")  # fmt: skip

UNKNOWN_LINES = (
    b"", b" ", b"\r", b"\t\v\f", b"no sign here", b"xtal_trim", b"# note", b"// note", b"; note",
    b"#xtal_trim=1", b"//xtal_trim=2", b";xtal_trim=3", b"/ /x=1", b"/ /xtal_trim=4",
    b"/\t/\v#=1", b"  # xtal_trim = 5", b"xtal_trim;=6", b"xtal_trim =7", b" xtal_trim=8",
    b"[CCC] xtal_trim=9", b"[CCC][CCC]xtal_trim=10", b"/[CCC]/xtal_trim=11", b"[C CC]xtal_trim=1",
    b"=", b"==", b"=5", b".=1", b"ant0.=1", b"ant0.port.=1", b"xtal_trim.=1", b"XTAL_TRIM=1",
    b"ch5.antenna_selection =x", b"ch5.antenna_selections=x", b"ch6.antenna_selection=x",
    b"ant0.ch5.prf16.tx_power=1", b"ant0.ch5.prf64=1", b"ch5.prf64.tx_power=1", b"\0=1", b"\0#=1",
    b"#\0=1", b"\xff\xfe=1", b"# %s%n=1", b"#[CCC]=1", b"x" * 300 + b"=1", b"#" * 300 + b"=",
)  # fmt: skip

PATHS_PROPERTIES = (
    b"", b"", b"/persist/paths", b"persist/paths", b"/vendor/etc/calib_paths", b"./calib_paths",
    b"/none", b"/vendor", b"/persist/a,/persist/b", b"/persist/paths\r", b"%s%n",
)  # fmt: skip

STRAY_ENTRIES = (
    b"", b"", b" ", b"\r", b"# rev C", b"/", b".", b"..", b"/vendor", b"/vendor/etc/uwb/none.conf",
    b"none", b"%s%n", b"<country>", b"/<country>/<country>", b"/vendor/<COUNTRY>/c", b"\0",
    b"/vendor/etc/uwb/loop", b"/vendor/etc/uwb/gone", b"/vendor/etc/uwb/c.conf/", b"\xff",
    b"n" * 256, b"./" * 2100, b"/vendor/etc/uwb/c.conf/..", b"<countr", b"/x<country", b"\t",
)  # fmt: skip

DEFAULT_TEXT = b"version=9\nch5.antenna_selection=a\nch9.antenna_selection=a\n" + b"".join(
    b"%s=1\n" % key for key in calibration_model.antenna_keys(b"a", b"ch5", has_wiring=True)
)


class Tree:
    """A device's files, and the caller's directory and properties that suit them."""

    def __init__(self):
        self.entries = {}  # path without the first slash -> text, link target (str) or DIRECTORY
        self.cwd = b"/"
        self.country = b""
        self.paths_property = b""

    def add(self, path, entry):
        """Adds a file unless its place is taken or lies below something that is no directory."""
        path = posixpath.normpath(b"/" + path).lstrip(b"/")
        if not path or b"\0" in path or self.entries.get(path) not in (None, DIRECTORY):
            return
        if path in self.entries and entry is not DIRECTORY:
            return
        parents = path.split(b"/")[:-1]
        for count in range(1, len(parents) + 1):
            if self.entries.get(b"/".join(parents[:count]), DIRECTORY) is not DIRECTORY:
                return
        for count in range(1, len(parents) + 1):
            self.entries[b"/".join(parents[:count])] = DIRECTORY
        self.entries[path] = entry

    def write(self, directory):
        """Writes the tree below a directory that does not exist yet."""
        root = os.fsencode(directory)
        os.mkdir(root)
        for path, entry in self.entries.items():  # parents were added before their files
            host = root + b"/" + path
            if entry is DIRECTORY:
                os.mkdir(host)
            elif isinstance(entry, str):
                os.symlink(os.fsencode(entry), host)
            else:
                with open(host, "wb", buffering=0) as file:
                    file.write(entry)


class TreeMaker:
    """Draws one tree. Without `harm` it keeps from what makes a calibration invalid."""

    def __init__(self, source, harm):
        self._draw = source.random
        self._source = source
        self._harm = harm
        self._bad_selectors = self._goes_wrong(0.08)
        self.tree = Tree()

    # Drawing

    def _pick(self, choices):
        return choices[int(self._draw() * len(choices))]

    def _chance(self, share):
        return self._draw() < share

    def _goes_wrong(self, share):
        return self._harm and self._draw() < share

    # Calibration texts

    def _spell(self, number, bits):
        style = int(self._draw() * 12)
        if style < 6:
            return b"%d" % number
        if style == 6:
            return b"0x%x" % number
        if style == 7:
            return b"0X%X" % number
        if style == 8:
            return b"0%o" % number
        if style == 9:
            return b"0x%08x" % number
        if style == 10:
            return b"+%d" % number
        return b"-%d" % ((1 << max(bits, 16)) - number) if number else b"-0"

    def _number(self, key, bits):
        if key.endswith(b".selector_gpio"):
            number = 6 + int(self._draw() * 2)
            if self._bad_selectors and self._chance(0.4):
                number = self._pick((0, 5, 8, 255))
        elif key.endswith(b".selector_gpio_value"):
            number = int(self._draw() * 2)
            if self._bad_selectors and self._chance(0.4):
                number = self._pick((2, 3, 255))
        elif self._chance(0.3):
            largest = (1 << bits) - 1
            number = self._pick((0, 1, 7, 8, largest - 1, largest, largest >> 1))
        else:
            number = int(self._draw() * (1 << bits))
        return self._spell(number, bits)

    def _assignment(self, key, value):
        """One line, with blanks and '[CCC]' in all the places where they do no harm."""
        line = key + b"="
        if self._chance(0.15):
            line += self._pick(BLANKS) * int(1 + self._draw() * 3)
        line += value
        if self._chance(0.3):
            line += self._pick(TAILS)
        if self._chance(0.1) and b"[CCC]" not in line:
            at = int(self._draw() * (len(line) + 1))
            line = line[:at] + b"[CCC]" + line[at:]
        if self._goes_wrong(0.008):
            at = int(self._draw() * (len(line) + 1))
            line = line[:at] + self._pick(BLANKS + MARKERS + (b"\n", b"[CCC]")) + line[at:]
        return line

    def _lines_for(self, keys):
        lines = []
        for key, bits in keys.items():
            if self._goes_wrong(0.012):
                continue
            value = self._number(key, bits)
            if self._goes_wrong(0.02):
                value = self._pick(BAD_VALUES)
            lines.append(self._assignment(key, value))
        return lines

    def _selection_lines(self, ch5, ch9):
        lines = []
        for channel, antenna in ((b"ch5", ch5), (b"ch9", ch9)):
            if self._goes_wrong(0.04):
                continue
            blanks = self._pick((b"", b"", b" ", b"\t\v"))
            line = channel + b".antenna_selection=" + blanks + antenna
            lines.append(line + self._pick((b"", b"", b"\r", b" spare", b"\t# note", b"\f[CCC]")))
        if self._goes_wrong(0.02):
            lines.append(self._pick((b"ch5", b"ch9")) + b".antenna_selection=" + self._pick(BLANKS))
        return lines

    def _text(self, lines):
        if not lines:
            return self._pick((b"", b"\n", b"# nothing yet\n", b"\xef\xbb\xbf"))
        end = self._pick((b"\n", b"\n", b"\n", b"\r\n", b"\n\n"))
        text = end.join(lines)
        return text if self._chance(0.2) else text + end

    def _calibration_texts(self):
        """The texts of one to three files that make a calibration together."""
        antennas = BAD_ANTENNAS if self._goes_wrong(0.08) else ANTENNAS
        ch5, ch9 = self._pick(antennas)
        keys = calibration_model.full_schema(ch5, ch9).kinds
        lines = self._lines_for(keys)
        for _ in range(int(self._draw() * 8)):
            lines.append(self._pick(UNKNOWN_LINES))
        if self._chance(0.8):
            self._source.shuffle(lines)
        lines = self._selection_lines(ch5, ch9) + lines
        files = 1 + int(self._draw() * self._draw() * 4)
        if files == 1:
            return [self._text(lines)]
        parts = self._split(lines, files)
        chosen = {key: bits for key, bits in keys.items() if self._chance(0.2)}
        parts[-1] = parts[-1] + self._lines_for(chosen)  # what a later file says counts
        return [self._text(part) for part in parts]

    def _split(self, lines, files):
        if self._chance(0.3):  # all in one file, the others amend it
            return [lines] + [[] for _ in range(files - 1)]
        parts = [[] for _ in range(files)]
        for line in lines:
            self._pick(parts).append(line)
        return parts

    # Path files

    def _place(self, text, number):
        """Puts a calibration file somewhere and returns the entry that leads to it."""
        name = b"c.conf" if number == 0 else b"c%d.conf" % number
        style = int(self._draw() * 14)
        add = self.tree.add
        if style < 4:
            add(b"vendor/etc/uwb/" + name, text)
            return b"/vendor/etc/uwb/" + name
        if style < 8:
            return self._place_by_country(text, name)
        if style == 8:
            add(self.tree.cwd + b"/" + name, text)
            return self._pick((b"", b"./", b".//", b"./././")) + name
        if style == 9:
            add(b"persist/" + name, text)
            depth = self.tree.cwd.count(b"/") + int(self._draw() * 3)
            return b"../" * depth + b"persist/" + name
        if style == 10:
            add(b"persist/real/" + name, text)
            add(b"vendor/etc/uwb/" + name, os.fsdecode(self._link_target(b"persist/real/" + name)))
            return b"/vendor/etc/uwb/" + name
        if style == 11:
            add(b"persist/real/" + name, text)
            target = self._pick(("../persist/real", "/persist/real", "/persist/real/"))
            add(b"vendor/current", target)
            return b"/vendor/current/" + name
        if style == 12:
            add(b"vendor/etc/uwb/" + name + b"\r", text)
            return b"/vendor/etc/uwb/" + name + b"\r"
        odd = self._pick((b" rev C", b"%s", b"\xc3\xa9", b"#1", b"\t", b"n" * 240))
        add(b"vendor/etc/uwb/" + odd + name, text)
        return b"/vendor/etc/uwb/" + odd + name + self._pick((b"", b"\0", b"\0<country>", b"\0x"))

    def _link_target(self, path):
        return self._pick((b"/", b"../../../", b"../../../../../", b"//")) + path

    def _place_by_country(self, text, name):
        entry = self._pick(
            (
                b"/vendor/etc/uwb/<country>/" + name,
                b"/vendor/etc/uwb/<country>/" + name,
                b"/vendor/etc/uwb/cal-<country>-" + name,
                b"/vendor/etc/uwb/<country>/<country>-" + name,
                b"/vendor/etc/<country>/uwb/<COUNTRY>/" + name,
                b"<country>/" + name,
                b"/vendor/etc/uwb/" + name + b"<country>",
            )
        )
        country = self.tree.country.lower() or b"unknown"
        if self._chance(0.3):
            country = b"default"
        elif self._chance(0.3):
            self._add_entry(entry.replace(b"<country>", b"default", 1), DEFAULT_TEXT)
        if self._goes_wrong(0.1):
            stand_in = self._pick((DIRECTORY, b"", b"loop/x"))
            self._add_entry(entry.replace(b"<country>", self.tree.country.lower(), 1), stand_in)
        self._add_entry(entry.replace(b"<country>", country, 1), text)
        return entry

    def _add_entry(self, entry, what):
        self.tree.add(entry if entry.startswith(b"/") else self.tree.cwd + b"/" + entry, what)

    def _path_text(self, entries):
        lines = []
        for entry in entries:
            while self._chance(0.25):
                lines.append(self._pick(STRAY_ENTRIES))
            lines.append(entry)
        while self._chance(0.25):
            lines.append(self._pick(STRAY_ENTRIES))
        text = b"\n".join(lines)
        return text if self._chance(0.2) else text + b"\n"

    def _useless_path_file(self):
        """A path file that leads to no calibration file."""
        kind = int(self._draw() * 5)
        if kind == 0:
            return DIRECTORY
        if kind == 1:
            return self._pick(("loop", "nowhere", "/nowhere", "."))
        if kind == 2:
            return self._pick((b"", b"\n", b"\n\n", b"/none\n", b"none\r\n\n", b"\0"))
        return b"/vendor/etc/uwb/none.conf\n/vendor/etc/uwb/<country>/none.conf"

    # The tree

    def make(self):
        tree = self.tree
        tree.cwd = self._pick((b"/", b"/", b"/data", b"/data/uwb"))
        tree.country = self._pick(COUNTRIES)
        tree.paths_property = self._pick(PATHS_PROPERTIES)
        tree.add(tree.cwd, DIRECTORY)
        if self._chance(0.2):
            tree.add(b"vendor/etc/uwb/loop", "loop")
            tree.add(b"vendor/etc/uwb/gone", "/nowhere/at/all")
        entries = [self._place(t, n) for n, t in enumerate(self._calibration_texts())]
        self._add_path_files(self._path_text(entries))
        return tree

    def _add_path_files(self, text):
        """Puts the path file among useless ones before it and some that come too late."""
        path_files = [*calibration_model.DEFAULT_PATH_FILES]
        if self.tree.paths_property:
            path_files.insert(0, self.tree.paths_property)
        chosen = int(self._draw() * len(path_files))
        for path_file in path_files[:chosen]:
            if self._chance(0.3):
                self._add_path_file(path_file, self._useless_path_file())
        if not self._goes_wrong(0.03):
            self._add_path_file(path_files[chosen], text)
        for path_file in path_files[chosen + 1 :]:
            if self._chance(0.2):
                self.tree.add(b"decoy.conf", DEFAULT_TEXT)
                self._add_path_file(path_file, b"/decoy.conf\n")

    def _add_path_file(self, path, what):
        if isinstance(what, bytes) and self._chance(0.1):
            target = b"/persist/lists/%d" % len(self.tree.entries)
            self.tree.add(target, what)
            what = os.fsdecode(target)
        self._add_entry(path, what)


class Case:
    """Trees and the loads over them, the first in the first tree."""

    def __init__(self, seed, number):
        source = random.Random(f"{seed}/{number}")
        self.number = number
        self.trees = [make_tree(source)]
        if source.random() < 0.2:
            self.trees.append(make_tree(source))
        self._steps = list(self._draw_steps(source))

    def _draw_steps(self, source):
        tree = 0
        country, extra = self.trees[0].country, self.trees[0].paths_property
        yield from self._setting(tree, country, extra)
        yield ("load", draw_capacity(source))
        while len(self.trees) > 1 and tree == 0 or source.random() < 0.2:
            change = source.random()
            if tree + 1 < len(self.trees):
                tree += 1
                if change < 0.7:
                    country, extra = self.trees[tree].country, self.trees[tree].paths_property
            elif change < 0.3:
                country = source.choice(COUNTRIES)
            elif change < 0.5:
                extra = b"" if extra else source.choice((b"/vendor/etc/calib_paths", b"/none"))
            elif change < 0.7:
                tree = 0
            yield from self._setting(tree, country, extra)
            yield ("load", draw_capacity(source))

    def _setting(self, tree, country, extra):
        yield ("root", tree)
        yield ("set", calibration_model.COUNTRY_PROPERTY, country)
        yield ("set", calibration_model.PATHS_PROPERTY, extra)

    def write(self, directory):
        """Writes the trees and returns the commands for them."""
        os.mkdir(directory)
        roots = [os.path.join(directory, f"root{n or ''}") for n in range(len(self.trees))]
        for root, tree in zip(roots, self.trees):
            tree.write(root)
        return [self._command(step, roots) for step in self._steps]

    def _command(self, step, roots):
        if step[0] == "root":
            return replay.root_command(roots[step[1]], self.trees[step[1]].cwd)
        if step[0] == "set":
            return replay.set_command(step[1], step[2])
        return f"load\t{step[1]}"

    def loads(self):
        return sum(step[0] == "load" for step in self._steps)

    def listing(self):
        lines = []
        for number, tree in enumerate(self.trees):
            lines.append(f"root{number or ''}, working directory {replay.escape(tree.cwd)}")
            for path, entry in tree.entries.items():
                name = "  /" + replay.escape(path)
                if entry is DIRECTORY:
                    lines.append(name + "/")
                elif isinstance(entry, str):
                    lines.append(f"{name} -> {entry}")
                else:
                    lines.append(f"{name} ({len(entry)} bytes)")
                    lines += ["    | " + replay.escape(line) for line in entry.split(b"\n")]
        return lines


def make_tree(source):
    return TreeMaker(source, harm=source.random() < 0.75).make()


def draw_capacity(source):
    share = source.random()
    if share < 0.5:
        return calibration_model.BLOCK_SIZE
    return source.choice((0, 1, 81, 83, 4096)) if share < 0.6 else source.randrange(201)
