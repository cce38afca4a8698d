#!/usr/bin/env python3
# SPDX-License-Identifier: Apache-2.0
"""Makes the file trees that the benchmarks load, below the folder given as the only argument.

  typical    two files with 23 keys and 27 comment lines, 2.3 KB in all, as a device has them
  commented  1 MB, of which 95 % are comments and blank lines; a fifth of the comments hold '='
  keys       1 MB of complete key sets, one after the other
  noise      1 MB of dotted keys that no schema knows, and one complete key set
  commented10, keys10, noise10: the same with 10 MB

Each holds the path file ./uwb_calib_paths.conf, the third of the library's defaults, so two are
missing before it. Nothing in the texts is random: they are always the same.
"""

import pathlib
import sys

KEYS = """\
version=2
ch5.antenna_selection=patch
ch9.antenna_selection=edge
patch.selector_gpio=6
patch.selector_gpio_value=0
patch.port=0
edge.selector_gpio=7
edge.selector_gpio_value=1
edge.port=1
patch.ch5.prf64.ant_delay=16412
patch.ch5.prf64.pg_count=0x00A2
patch.ch5.prf64.pg_delay=0x34
edge.ch9.prf64.ant_delay=16398
edge.ch9.prf64.pg_count=0x009E
edge.ch9.prf64.pg_delay=0x2B
temperature_reference=20
xtal_trim=40
wifi_coex_time_gap=12
wifi_coex_min_spacing=4
ap_coop_mode=1
alternate_pulse_shape=0
"""
COUNTRY_KEYS = """\
patch.ch5.prf64.tx_power=0x181C2024
edge.ch9.prf64.tx_power=0x14181C20
"""
ALL_KEYS = KEYS + COUNTRY_KEYS
COMMENTS = [
    "# Measured in the chamber at 20 degrees, mean of 200 units.",
    "// Do not edit this section without asking the antenna team first.",
    "; The next section holds what differs from one country to another.",
    "# patch.ch5.prf64.tx_power=0x18181818 was far too strong.",
    "# Delays are counted from the antenna's feed, cable included.",
]
NOISE = [
    "patch.ch6.prf64.ant_delay=16412",
    "rear.ch5.prf16.tx_power=0x181C2024",
    "debug.trace.level=3",
    "vendor.radio.retry_count=7",
    "edge.ch9.prf128.pg_count=158",
]


def with_comments(keys, comments):
    """The keys with comment lines spread evenly between them."""
    lines = keys.splitlines()
    out, given = [], 0
    for number, line in enumerate(lines, 1):
        while given < round(number * comments / len(lines)):
            out.append(COMMENTS[given % len(COMMENTS)])
            given += 1
        out.append(line)
    return "\n".join(out) + "\n"


def repeated(text, size):
    """The text again and again, up to about `size` bytes."""
    return text * (size // len(text))


def commented(size):
    """Nineteen parts of comments and blank lines to one part of keys."""
    comments = repeated("\n".join(COMMENTS) + "\n\n", 19 * len(ALL_KEYS))
    return repeated(ALL_KEYS + comments, size)


def noise(size):
    return ALL_KEYS + repeated("\n".join(NOISE) + "\n", size)


def write_corpus(folder, entries, files):
    folder.mkdir(parents=True, exist_ok=True)
    (folder / "uwb_calib_paths.conf").write_text("\n".join(entries) + "\n")
    for name, text in files.items():
        file = folder / name
        file.parent.mkdir(exist_ok=True)
        file.write_text(text)


def write_typical(folder):
    country = with_comments(COUNTRY_KEYS, 4)
    files = {"common.conf": with_comments(KEYS, 23)}
    files.update({f"{code}/calib.conf": country for code in ("us", "default")})
    write_corpus(folder, ["./common.conf", "./<country>/calib.conf"], files)


def main():
    if len(sys.argv) != 2 or sys.argv[1].startswith("-"):
        print(__doc__)
        return 0 if sys.argv[1:] == ["--help"] else 2
    root = pathlib.Path(sys.argv[1])
    write_typical(root / "typical")
    for suffix, size in (("", 1_000_000), ("10", 10_000_000)):
        write_corpus(root / f"commented{suffix}", ["./calib.conf"], {"calib.conf": commented(size)})
        write_corpus(root / f"keys{suffix}", ["./calib.conf"],
                     {"calib.conf": repeated(ALL_KEYS, size)})
        write_corpus(root / f"noise{suffix}", ["./calib.conf"], {"calib.conf": noise(size)})
    return 0


if __name__ == "__main__":
    sys.exit(main())
