# SPDX-License-Identifier: Apache-2.0
"""The calibration of calibration.h and its block."""

import pathlib
import re

HEADER = pathlib.Path(__file__).with_name("calibration.h").read_text()
TEXT = "".join(line + "\n" for line in re.findall(r'"(.*)\\n"', HEADER))
BLOCK = bytes(int(byte, 16) for byte in re.findall(r"0x(\w\w),", HEADER)).ljust(82, b"\0")
