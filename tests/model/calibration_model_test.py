# SPDX-License-Identifier: Apache-2.0
"""Holds the model to known values. Run: python3 calibration_model_test.py"""

import os
import tempfile
import unittest

import calibration_model as model

# text, bits, number; None is a value that fails
NUMBERS = [
    (b"0", 8, 0), (b"255", 8, 255), (b"256", 8, None), (b"65535", 8, None), (b"70000", 16, None),
    (b"65535", 16, 65535), (b"65536", 16, None), (b"4294967295", 32, 4294967295),
    (b"4294967296", 32, None), (b"0x1F ; factory trim", 8, 31), (b"0X1f", 8, 31), (b"010", 8, 8),
    (b" \t\v\f7\r", 8, 7), (b"+7", 8, 7), (b"-1", 16, 65535), (b"-0", 8, 0), (b"-1", 8, None),
    (b"-65535", 8, 1), (b"-65536", 8, None), (b"-4294967295", 32, 1), (b"-0x10", 16, 65520),
    (b"", 8, None), (b"  ", 8, None), (b"+", 8, None), (b"+-1", 8, None), (b"- 1", 8, None),
    (b"seven", 8, None), (b"0x", 8, None), (b"0xg", 8, None), (b"1//", 8, 1), (b"1.5", 8, 1),
    (b"12\0", 8, 12), (b"12g", 8, 12),
]  # fmt: skip
# What libstdc++ reads and libc++ refuses.
PREFIXES = [
    (b"08", 8, 0), (b"00x1", 8, 0), (b"12abc", 8, 12), (b"1e5", 8, 1), (b"0x1x", 8, 1),
    (b"12x", 8, 12),
]  # fmt: skip


class Numbers(unittest.TestCase):
    def test_every_spelling(self):
        for text, bits, number in NUMBERS + PREFIXES:
            with self.subTest(text=text, bits=bits):
                self.assertEqual(model.read_number(text, bits, "libstdc++"), number)
                if (text, bits, number) in PREFIXES:
                    number = None
                self.assertEqual(model.read_number(text, bits, "libc++"), number)


class Block(unittest.TestCase):
    def test_eighty_zero_bytes_are_sealed_with_their_crc(self):
        self.assertEqual(model.seal(bytes(80)), b"\xda\x35" + bytes(80))

    def test_known_crc(self):
        self.assertEqual(model.binascii.crc_hqx(b"123456789", 1), 0x7610)


class Files(unittest.TestCase):
    def setUp(self):
        holder = tempfile.TemporaryDirectory()
        self.addCleanup(holder.cleanup)
        self.root = holder.name
        os.makedirs(self.root + "/a/b")
        with open(self.root + "/a/file", "wb") as file:
            file.write(b"text")
        os.symlink("/a", self.root + "/absolute")
        os.symlink("../../a/file", self.root + "/a/b/relative")
        os.symlink("loop", self.root + "/loop")
        os.symlink("nowhere", self.root + "/dangling")
        for number in range(41):
            target = f"link{number - 1}" if number else "a/file"
            os.symlink(target, f"{self.root}/link{number}")
        self.tree = model.FileTree(self.root, b"/a")

    def test_paths_that_open(self):
        for path in [b"/a/file", b"file", b"./b/../file", b"/../../a/file", b"//a//file",
                     b"/link39", b"/absolute/file", b"/a/b/relative", b"/absolute/b/relative",
                     b"file\0x"]:
            with self.subTest(path=path):
                self.assertEqual(self.tree.read(path), b"text")

    def test_directories_read_as_empty(self):
        for path in [b"/", b"..", b"/a", b"/a/", b"/absolute", b"/absolute/", b"."]:
            with self.subTest(path=path):
                self.assertEqual(self.tree.read(path), b"")

    def test_paths_that_do_not_open(self):
        for path in [b"", b"\0file", b"/a/file/", b"/a/file/.", b"/a/file/..", b"/loop",
                     b"/dangling", b"/none/../a/file", b"/link40", b"x" * 256,
                     b"./" * 2048 + b"file"]:
            with self.subTest(path=path):
                self.assertIsNone(self.tree.read(path))

    def test_the_longest_path_opens(self):
        self.assertEqual(self.tree.read(b"/" * 4089 + b"a/file"), b"text")
        self.assertIsNone(self.tree.read(b"/" * 4090 + b"a/file"))


if __name__ == "__main__":
    unittest.main()
