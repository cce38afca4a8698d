# SPDX-License-Identifier: Apache-2.0
"""Predicts one whole load: the bytes written and every log line, in order.

The model shares nothing with the library. It matches a line against a flat list of complete keys
where the library walks a tree, and it writes the block field by field with a CRC of its own, so
that an error in one of the two is not repeated by the other. All texts are bytes.
"""

import binascii
import os
import re
import stat

DEBUG, INFO, WARNING, ERROR = 3, 4, 5, 6

PATHS_PROPERTY = b"ro.vendor.uwb.calibration.calibrationpaths"
COUNTRY_PROPERTY = b"vendor.uwb.calibration.country_code"

DEFAULT_PATH_FILES = (
    b"/vendor/etc/uwb_calib_paths.conf",
    b"/vendor/etc/calib_paths",
    b"./uwb_calib_paths.conf",
    b"./calib_paths",
)

PLACEHOLDER = b"<country>"
BLOCK_SIZE = 82

WHITE_SPACE = b" \t\n\v\f\r"

NAME_MAX = 255
PATH_MAX = 4096  # counts the closing NUL
MAX_LINKS = 40


def c_string(text):
    """What is left of a text that is handed on as a C string."""
    return text.split(b"\0", 1)[0]


def split_lines(text):
    """The lines of a text as getline() finds them: a final line feed begins no further line."""
    lines = text.split(b"\n")
    if not lines[-1]:
        lines.pop()
    return lines


# Files ------------------------------------------------------------------------------------------


class FileTree:
    """A device's files: a host directory that stands for '/', and the caller's directory in it."""

    def __init__(self, root, cwd=b"/"):
        self._root = os.fsencode(root)
        self._cwd = self._walk([], cwd)
        if self._cwd is None:
            raise FileNotFoundError(f"no directory {cwd!r} below {root!r}")

    def read(self, path):
        """The file's text, or None when it cannot be opened. A directory opens, but has no text."""
        path = c_string(path)
        if not path or len(path) >= PATH_MAX:
            return None
        names = self._walk(self._cwd, path)
        if names is None:
            return None
        if stat.S_ISDIR(os.lstat(self._host(names)).st_mode):
            return b""
        with open(self._host(names), "rb") as file:
            return file.read()

    def _host(self, names):
        return b"/".join([self._root, *names])

    def _is_directory(self, names):
        return stat.S_ISDIR(os.lstat(self._host(names)).st_mode)

    def _walk(self, start, path):
        """Follows a path name by name; None when it leads nowhere, else the names from '/' on."""
        here = [] if path.startswith(b"/") else list(start)
        names = path.split(b"/")[::-1]
        links = 0
        while names:
            name = names.pop()
            if not name and names:
                continue
            if name in (b"", b".", b".."):  # "" is a closing slash: it asks for a directory
                if not self._is_directory(here):
                    return None
                if name == b"..":
                    here = here[:-1]  # '/' is its own parent
                continue
            if len(name) > NAME_MAX:
                return None
            host = self._host([*here, name])
            try:
                is_link = stat.S_ISLNK(os.lstat(host).st_mode)
            except OSError:
                return None
            if not is_link:
                here.append(name)
                continue
            links += 1
            if links > MAX_LINKS:
                return None
            target = os.readlink(host)
            if target.startswith(b"/"):
                here = []
            names += target.split(b"/")[::-1]
        return here


# Values -----------------------------------------------------------------------------------------

NUMBER = re.compile(rb"([+-]?)(?:0[xX]([0-9a-fA-F]*)|(0[0-7]*)|([1-9][0-9]*))")
NUMBER_LETTERS = re.compile(rb"[+-]?[0-9a-fA-FxX]*")


def match_number(text, stdlib):
    """Where the C++ libraries part: one reads as far as it can, one takes all it has or nothing."""
    if stdlib == "libstdc++":
        return NUMBER.match(text)
    return NUMBER.fullmatch(NUMBER_LETTERS.match(text)[0])


def read_number(text, bits, stdlib):
    """The number a text begins with, or None. Eight bits are read as sixteen and then checked."""
    match = match_number(text.lstrip(WHITE_SPACE), stdlib)
    if not match:
        return None
    sign, hexadecimal, octal, decimal = match.groups()
    if hexadecimal is not None:
        if not hexadecimal:
            return None
        number = int(hexadecimal, 16)
    else:
        number = int(octal, 8) if octal else int(decimal)
    modulus = 1 << max(bits, 16)
    if number >= modulus:
        return None
    if sign == b"-":
        number = -number % modulus
    return number if number < 1 << bits else None


def read_word(text):
    """The first word of a text, or None when there is nothing but white space."""
    words = text.split(None, 1)
    return words[0] if words else None


# Calibration texts ------------------------------------------------------------------------------


class BadValue(Exception):
    """A value that ends the reading of its file."""


class Schema:
    """The keys of one pass, in the order of the report, and the values read so far."""

    def __init__(self, kinds):
        self.kinds = kinds  # key -> number of bits, or None for a word
        self._starts = tuple(key + b"=" for key in kinds)
        self.values = {}

    def missing(self):
        return [key for key in self.kinds if key not in self.values]

    def store(self, line, stdlib):
        """Gives a line to the first key that it begins with; a line of no key is dropped."""
        if not line.startswith(self._starts):
            return
        for key, bits in self.kinds.items():
            if line.startswith(key + b"="):
                text = line[len(key) + 1 :]
                value = read_word(text) if bits is None else read_number(text, bits, stdlib)
                if value is None:
                    raise BadValue
                self.values[key] = value
                return


def selection_schema():
    return Schema({b"ch5.antenna_selection": None, b"ch9.antenna_selection": None})


def antenna_keys(antenna, channel, has_wiring):
    """The keys of one antenna. The wiring comes after the channel, the level before its line."""
    keys = {
        b"%s.%s.prf64.ant_delay" % (antenna, channel): 16,
        b"%s.%s.prf64.tx_power" % (antenna, channel): 32,
        b"%s.%s.prf64.pg_count" % (antenna, channel): 16,
        b"%s.%s.prf64.pg_delay" % (antenna, channel): 8,
    }
    if has_wiring:
        keys[antenna + b".selector_gpio_value"] = 8
        keys[antenna + b".selector_gpio"] = 8
        keys[antenna + b".port"] = 8
    return keys


def full_schema(ch5, ch9):
    """The keys of a complete calibration. A shared antenna's wiring is asked for once."""
    return Schema(
        {
            b"version": 16,
            **antenna_keys(ch5, b"ch5", has_wiring=True),
            **antenna_keys(ch9, b"ch9", has_wiring=ch9 != ch5),
            b"temperature_reference": 8,
            b"xtal_trim": 8,
            b"wifi_coex_time_gap": 8,
            b"ap_coop_mode": 8,
            b"alternate_pulse_shape": 8,
            b"wifi_coex_min_spacing": 8,
        }
    )


# The block --------------------------------------------------------------------------------------


class BadSelector(Exception):
    """A selector line or level that has no code."""


def selector_code(values, antenna):
    line = values[antenna + b".selector_gpio"]
    level = values[antenna + b".selector_gpio_value"]
    if line not in (6, 7):
        raise BadSelector(b"GPIO must be 6 or 7")
    if level not in (0, 1):
        raise BadSelector(b"GPIO value must be 0 or 1")
    return {(6, 0): 0x01, (6, 1): 0x03, (7, 0): 0x04, (7, 1): 0x0C}[line, level]


def encode_block(values, ch5, ch9):
    """The 82 bytes. With a shared antenna both channels find the same wiring under its name."""

    def number(size, key):
        return values[key].to_bytes(size, "big")

    def port(antenna):
        return bytes([(values[antenna + b".port"] + 1) % 256])

    ch9_selector = selector_code(values, ch9)  # first: its error is reported
    ch5_selector = selector_code(values, ch5)
    block = b"".join(
        [
            number(2, b"version"),  # 2
            number(2, ch9 + b".ch9.prf64.ant_delay"),  # 4
            number(2, ch5 + b".ch5.prf64.ant_delay"),  # 6
            number(4, ch9 + b".ch9.prf64.tx_power"),  # 8
            number(2, ch9 + b".ch9.prf64.pg_count"),  # 12
            number(1, ch9 + b".ch9.prf64.pg_delay"),  # 14
            number(4, ch5 + b".ch5.prf64.tx_power"),  # 15
            number(2, ch5 + b".ch5.prf64.pg_count"),  # 19
            number(1, ch5 + b".ch5.prf64.pg_delay"),  # 21
            bytes(4),  # 22
            number(1, b"temperature_reference"),  # 26
            number(1, b"xtal_trim"),  # 27
            bytes(3),  # 28
            number(1, b"wifi_coex_time_gap"),  # 31
            number(1, b"ap_coop_mode"),  # 32
            bytes([ch5_selector]),  # 33
            number(1, b"alternate_pulse_shape"),  # 34
            number(1, b"wifi_coex_min_spacing"),  # 35
            bytes([ch9_selector]),  # 36
            port(ch5),  # 37
            port(ch9),  # 38
            bytes(43),  # 39
        ]
    )
    return seal(block)


def seal(block):
    """Puts the CRC in front of the 80 bytes that it covers."""
    block = binascii.crc_hqx(block, 1).to_bytes(2, "big") + block
    assert len(block) == BLOCK_SIZE
    return block


# The load ---------------------------------------------------------------------------------------


class Invalid(Exception):
    """Calibration files were read, but they make no calibration."""


class Load:
    """One call with a buffer of `capacity` bytes, told by `result`, `written` and `log`."""

    def __init__(self, tree, properties, capacity, stdlib="libstdc++"):
        self._tree = tree
        self._properties = properties
        self._stdlib = stdlib
        self._country = b""
        self.log = []
        self.written = self._run()[:capacity]
        self.result = len(self.written)

    def _say(self, priority, text, *arguments):
        self.log.append((priority, text % tuple(c_string(a) for a in arguments)))

    def _run(self):
        self._say(INFO, b"load_uwb_params_from_files entry, version v1.2-RC1")
        self._country = self._properties.get(COUNTRY_PROPERTY, b"")
        if self._country:
            self._say(INFO, b"Using country code: %s", self._country)
        else:
            self._say(WARNING, b"No country code set")
        for path_file in self._path_files():
            files = self._read_path_file(path_file)
            if files:
                return self._block_from(path_file, files)
            self._say(
                ERROR, b"Failed to read calibration files from %s, trying next path file", path_file
            )
        self._say(ERROR, b"Did not find valid calibration values in any of the files")
        return b""

    def _path_files(self):
        extra = self._properties.get(PATHS_PROPERTY, b"")
        return [extra, *DEFAULT_PATH_FILES] if extra else DEFAULT_PATH_FILES

    def _read_path_file(self, path_file):
        """The calibration files that a path file leads to, as (path, text)."""
        self._say(INFO, b"Reading path file %s", path_file)
        lines = self._tree.read(path_file)
        if lines is None:
            self._say(ERROR, b"Failed to open path file: %s", path_file)
        files = [self._read_entry(line) for line in split_lines(lines or b"")]
        files = [file for file in files if file]
        if not files:
            self._say(ERROR, b"Unable to read any calibration file from: %s", path_file)
        return files

    def _read_entry(self, entry):
        self._say(INFO, b"Reading entry: %s", entry)
        if PLACEHOLDER not in entry:
            self._say(INFO, b"No country placeholder, opening as-is")
            return self._read_calibration(entry)
        self._say(INFO, b"Calib path contains a country code placeholder, replacing it")
        path = entry.replace(PLACEHOLDER, self._country.lower() or b"unknown", 1)
        self._say(INFO, b"Parsing calib file: %s", path)
        file = self._read_calibration(path)
        if file:
            return file
        self._say(ERROR, b"Failed to reader calib file: %s, falling back to default", path)
        return self._read_calibration(entry.replace(PLACEHOLDER, b"default", 1))

    def _read_calibration(self, path):
        text = self._tree.read(path)
        if text is None:
            self._say(ERROR, b"Unable to open file %s", path)
            return None
        return path, text

    def _block_from(self, path_file, files):
        try:
            block = self._convert(path_file, files)
        except Invalid:
            self._say(ERROR, b"Calibration is invalid, aborting")
            return b""
        except BadSelector as error:
            self._say(ERROR, b"Unable to convert calib to params: %s", error.args[0])
            return b""
        self._say(INFO, b"Valid calibration was parsed from entries in %s", path_file)
        return block

    def _convert(self, path_file, files):
        count = b"%d" % len(files)
        self._say(INFO, b"Found %s calibration files in %s", count, path_file)

        self._say(INFO, b"Parsing antenna selection")
        selection = selection_schema()
        if not self._parse(selection, files):
            self._say(ERROR, b"Failed to parse antenna selection")
            raise Invalid
        self._check(selection)
        ch5, ch9 = (selection.values[c + b".antenna_selection"] for c in (b"ch5", b"ch9"))

        self._say(INFO, b"Parsing full calibration")
        full = full_schema(ch5, ch9)
        if not self._parse(full, files):
            self._say(ERROR, b"Failed to parse calibration from %s", path_file)
            raise Invalid
        self._check(full)
        return encode_block(full.values, ch5, ch9)

    def _check(self, schema):
        missing = schema.missing()
        if not missing:
            return
        self._say(ERROR, b"Calibration is invalid, missing params: ")
        for key in missing:
            self._say(ERROR, b"- %s", key)
        raise Invalid

    def _parse(self, schema, files):
        """Reads all files; true when at least one was read to its end."""
        any_read = False
        for path, text in files:
            self._say(INFO, b"Parsing %s", path)
            try:
                self._parse_text(schema, text)
                any_read = True
            except BadValue:
                self._say(ERROR, b"Unexpected_value\n")
                self._say(
                    ERROR, b"Failed to parse calb file %s, reason %s", path, b"Unexpected value"
                )
        return any_read

    def _parse_text(self, schema, text):
        for line in split_lines(text):
            dense = line.translate(None, WHITE_SPACE)
            before, equals, _ = dense.partition(b"=")
            if not equals:
                continue
            # A marker that straddles the sign cannot exist: none of the three contains it.
            if b"//" in before or b"#" in before or b";" in before:
                self._say(DEBUG, b"--------------Ignored: %s\n", dense)
                continue
            schema.store(line.replace(b"[CCC]", b"", 1), self._stdlib)


def hex_rows(data):
    """Sixteen bytes to a row, behind their offset."""
    return [f"{at:03d}  {data[at : at + 16].hex(' ')}" for at in range(0, len(data), 16)]
