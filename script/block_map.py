#!/usr/bin/env python3
# SPDX-License-Identifier: Apache-2.0
"""Draws the map of a block's bytes as SVG, from what 'tarnix-uwb-params build --format json' writes.

usage: tarnix-uwb-params build --root examples --format json | script/block_map.py > docs/block_map.svg
"""
import json
import sys

COLUMNS, WIDTH, HEIGHT, LEFT, TOP = 8, 108, 52, 64, 24
LIGHT = ("#cfe8ff", "#ffe0b8", "#d3f2cf", "#f3d3ef", "#d9d6ff", "#fbd3d3")
DARK = ("#14466e", "#6b4208", "#1f5a2a", "#64295c", "#3e3a8c", "#74302f")


def style(text, back, line, colours):
    fills = "".join(f".f{i}{{fill:{colour}}}" for i, colour in enumerate(colours))
    return f"text{{fill:{text}}}rect{{stroke:{line}}}.back,.zero{{fill:{back}}}{fills}"


def rows_of(fields):
    """Rows of pieces (field, offset, end). The rows that the last field fills alone are one."""
    rows = []
    for field in fields:
        at, end = field["offset"], field["offset"] + field["size"]
        while at < end:
            stop = at - at % COLUMNS + COLUMNS
            if at % COLUMNS == 0:
                rows.append([])
                stop = end if field is fields[-1] else stop
            rows[-1].append((field, at, min(end, stop)))
            at = min(end, stop)
    return rows


def lines_of(field, columns):
    """The name, broken at underscores where it is wider than the columns."""
    room = columns * WIDTH // 8
    lines = [""]
    for part in field["name"].replace("_", "_ ").split():
        if lines[-1] and len(lines[-1] + part) > room:
            lines.append("")
        lines[-1] += part
    return lines


def piece_of(index, field, at, end, y):
    columns = min(end - at, COLUMNS)
    x = LEFT + at % COLUMNS * WIDTH
    is_reserved = "value" not in field
    lines = ["zero"] if is_reserved else lines_of(field, columns)
    kind = "zero" if is_reserved else f"f{index % len(LIGHT)}"
    shown = [f'<rect class="{kind}" x="{x}" y="{y}" width="{columns * WIDTH}" height="{HEIGHT}">'
             f'<title>{field["name"]}, offset {field["offset"]}, size {field["size"]}</title></rect>']
    for i, line in enumerate(lines):
        middle = y + HEIGHT / 2 + 4.5 + 15 * (i - (len(lines) - 1) / 2)
        shown.append(f'<text x="{x + columns * WIDTH / 2:g}" y="{middle:g}">{line}</text>')
    return shown


def main():
    fields = json.load(sys.stdin)["fields"]
    rows = rows_of(fields)
    width, height = LEFT + COLUMNS * WIDTH + 1, TOP + len(rows) * HEIGHT + 1
    out = [f'<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 {width} {height}" role="img"'
           ' font-family="monospace" font-size="13" text-anchor="middle">',
           "<title>The fields of the block, by offset</title>",
           f"<style>{style('#1c1e21', '#fff', '#5b616b', LIGHT)}@media(prefers-color-scheme:dark){{"
           f"{style('#e8eaed', '#15171b', '#a4abb6', DARK)}}}</style>",
           f'<rect class="back" width="{width}" height="{height}" stroke-width="0"/>']
    for column in range(COLUMNS):
        out.append(f'<text x="{LEFT + (column + 0.5) * WIDTH:g}" y="16">+{column}</text>')
    for i, row in enumerate(rows):
        y = TOP + i * HEIGHT
        first, last = row[0][1], row[-1][2] - 1
        name = str(first) if last - first < COLUMNS else f"{first}-{last}"
        out.append(f'<text x="{LEFT / 2:g}" y="{y + HEIGHT / 2 + 4.5:g}">{name}</text>')
        for field, at, end in row:
            out += piece_of(fields.index(field), field, at, end, y)
    print("\n".join([*out, "</svg>"]))


main()
