# SPDX-License-Identifier: Apache-2.0
"""The changes that script/mutants makes to the library, found in its sources."""

import dataclasses
import os
import re
import sys

PROJECT = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
FOLDERS = ("grammar", "schema", "output", "loader")


@dataclasses.dataclass(frozen=True)
class Mutant:
    path: str
    line: int  # Of the first character that changes, counted from 1.
    kind: str
    text: str  # The whole changed file.
    old: str  # The lines that differ, without indentation.
    new: str

    def key(self):
        return self.path, self.old, self.new

    def __str__(self):
        old = "".join(f"\n- {line}" for line in self.old.splitlines())
        new = "".join(f"\n+ {line}" for line in self.new.splitlines())
        return f"{self.path}:{self.line} ({self.kind}){old}{new}"


def make_mutant(path, source, start, end, replacement, kind):
    """The source with characters start to end replaced."""
    text = source[:start] + replacement + source[end:]
    first = os.path.commonprefix([source, text]).count("\n")
    before, after = source.splitlines()[first:], text.splitlines()[first:]
    while before and after and before[-1] == after[-1]:
        del before[-1], after[-1]
    old, new = ([line.strip() for line in lines] for lines in (before, after))
    line = source.count("\n", 0, start) + 1
    return Mutant(path, line, kind, text, "\n".join(old), "\n".join(new))


def blank(match):
    return re.sub(r"[^\n]", " ", match[0])


def code_of(source):
    """The source with comments, preprocessor lines and static assertions blanked out."""
    texts_or_comments = r'"(?:\\.|[^"\\\n])*"|//[^\n]*'
    source = re.sub(texts_or_comments, lambda m: blank(m) if m[0][0] == "/" else m[0], source)
    source = re.sub(r"^#[^\n]*", blank, source, flags=re.M)
    return re.sub(r"static_assert\([^;]*;", blank, source)


def without_texts(code):
    """The code with what stands in quotes blanked out, the quotes kept."""

    def hollow(match):
        return match[0][0] + " " * (len(match[0]) - 2) + match[0][-1]

    return re.sub(r'"(?:\\.|[^"\\\n])*"|\'(?:\\.|[^\'\\\n])+\'', hollow, code)


# Pattern, replacements, kind. The first group is what is replaced.
OPERATORS = [
    (r"(==)", ["!="], "comparison"),
    (r"(!=)", ["=="], "comparison"),
    (r" (<) ", ["<=", ">="], "comparison"),
    (r" (>) ", [">=", "<="], "comparison"),
    (r"(<=)", ["<", ">"], "comparison"),
    (r"(>=)", [">", "<"], "comparison"),
    (r"(&&)", ["||"], "operator"),
    (r"(\|\|)", ["&&"], "operator"),
    (r"(!)(?=[\w(])", [""], "operator"),
    (r"(\+\+)", ["--"], "operator"),
    (r"(--)(?=\w)", ["++"], "operator"),
    (r"(\+=)", ["-=", "="], "operator"),
    (r"(-=)", ["+="], "operator"),
    (r"[\w)] (\+) ", ["-"], "operator"),
    (r"[\w)] (-) ", ["+"], "operator"),
    (r"[\w)] (\*) ", ["+"], "operator"),
    (r"[\w)] (/) ", ["*"], "operator"),
    (r" (\|) ", ["&", "^"], "operator"),
    (r" (&) ", ["|"], "operator"),
    (r" (\^) ", ["|", "&"], "operator"),
    (r" (<<) (?=[\w(])", [">>"], "operator"),
    (r" (>>) (?=[\w(])", ["<<"], "operator"),
    (r"\breturn (true)\b", ["false"], "returned truth"),
    (r"\breturn (false)\b", ["true"], "returned truth"),
    (r"= (true)\b", ["false"], "truth"),
    (r"= (false)\b", ["true"], "truth"),
    (r"(\{\})(?=;)", [""], "initialisation"),
    (r"\b(none)\b(?! =)", ["9"], "constant"),
    (r"\b(continue|break)(?=;)", ["return {}"], "jump"),
    (r"\b(SwapBytes)\b(?! =)", ["NoConversion"], "constant"),
    (r"\b(NoConversion)\b(?! =)", ["SwapBytes"], "constant"),
    (r"\b(kMostSignificantByteFirst)\b(?! =)", ["EndiannessConversion::NoConversion"], "constant"),
    (r"\b(ANDROID_LOG_(?!DEFAULT)\w+)", ["ANDROID_LOG_VERBOSE"], "priority"),
    (r"\b(?:if|while) \((.*)\)(?: \{$| \w)", ["true", "false"], "condition"),
    (r" \? (.*) : ", [], "choice"),
]


def operator_mutants(path, source, code):
    hollow = without_texts(code)
    for pattern, replacements, kind in OPERATORS:
        for match in re.finditer(pattern, hollow, re.M):
            for replacement in replacements:
                yield make_mutant(path, source, *match.span(1), replacement, kind)


def constant_mutants(path, source, code):
    number_pattern = r"(?<![\w.\"])(0[xX][0-9A-Fa-f]+|\d+)[uU]?(?![\w.\"])"
    for match in re.finditer(number_pattern, without_texts(code)):
        number = int(match[1], 0)
        for other in {number + 1, max(number - 1, 0)} - {number}:
            yield make_mutant(path, source, *match.span(1), str(other), "constant")
    for match in re.finditer(r"'(\\.|[^'\\])'", code):
        yield make_mutant(path, source, *match.span(1), "~", "character")


def message_mutants(path, source, code):
    for match in re.finditer(r'"((?:\\.|[^"\\\n])+)"', code):
        yield make_mutant(path, source, match.start(1), match.start(1), "~", "message")
        yield make_mutant(path, source, match.end(1), match.end(1), "~", "message")


# A statement that is more than a declaration: its end is the ';' on its own level.
STATEMENT = re.compile(r"^( +)(?!(?:return|using|case|namespace|struct|class)\b)[^\s{}/][^;{}]*;\n", re.M)


def statements_of(code):
    found = STATEMENT.finditer(without_texts(code))
    return [m for m in found if m[0].count("(") == m[0].count(")")]


# A statement that only works out a value: the order of two such is their author's taste.
QUIET = re.compile(r"[^()]* = [^;]*;\s*")
CALL = re.compile(r"(?!sizeof\b|offsetof\b)\b\w+\(")


def are_quiet(*statements):
    return all(QUIET.fullmatch(s[0]) and not CALL.search(s[0]) for s in statements)


def statement_mutants(path, source, code):
    statements = statements_of(code)
    for statement in statements:
        yield make_mutant(path, source, *statement.span(), "", "statement left out")
    for first, second in zip(statements, statements[1:]):
        adjacent = first.end() == second.start() and first[1] == second[1]
        if adjacent and not are_quiet(first, second):
            swapped = source[slice(*second.span())] + source[slice(*first.span())]
            place = first.start(), second.end()
            yield make_mutant(path, source, *place, swapped, "statements swapped")


# A row of a table or list, up to the comma at its line's end.
ROW = re.compile(r"^( +)[\w\"~&][^\n;]*,\n", re.M)


def row_mutants(path, source, code):
    rows = [m for m in ROW.finditer(code) if m[0].count("(") == m[0].count(")")]
    for row in rows:
        yield make_mutant(path, source, *row.span(), "", "row left out")
    for first, second in zip(rows, rows[1:]):
        if first[1] == second[1] and not code[first.end() : second.start()].strip():
            between = source[first.end() : second.start()]
            swapped = source[slice(*second.span())] + between + source[slice(*first.span())]
            yield make_mutant(path, source, first.start(), second.end(), swapped, "rows swapped")


MAKERS = (operator_mutants, constant_mutants, message_mutants, statement_mutants, row_mutants)
# Without a declaration hardly anything compiles.
HEADER_MAKERS = (operator_mutants, constant_mutants, message_mutants)


def sources():
    for folder in FOLDERS:
        for name in sorted(os.listdir(os.path.join(PROJECT, folder))):
            if name.endswith((".cpp", ".h")):
                yield f"{folder}/{name}"


def all_mutants():
    """All changes, by place; of those that make the same file, one."""
    for path in sources():
        source = read(os.path.join(PROJECT, path))
        code = code_of(source)
        made = {}
        for maker in HEADER_MAKERS if path.endswith(".h") else MAKERS:
            for mutant in maker(path, source, code):
                if mutant.text != source:
                    made.setdefault(mutant.text, mutant)
        yield from sorted(made.values(), key=lambda m: m.line)


def patches():
    """The larger changes: blocks of a title, a path and the places that change."""
    for block in read(os.path.join(PROJECT, "script", "mutants.patches")).split("\n\n")[1:]:
        title, path, places = block.rstrip("\n").split("\n", 2)
        path = path.removeprefix("--- ")
        source = text = "\n" + read(os.path.join(PROJECT, path))
        for place in places.split("\n@@\n"):
            old = "".join(f"\n{line[1:]}" for line in place.split("\n") if line[0] in " -")
            new = "".join(f"\n{line[1:]}" for line in place.split("\n") if line[0] in " +")
            if text.count(old + "\n") != 1:
                fail(f"'{title}' does not fit {path}, where this is not found just once:{old}")
            text = text.replace(old + "\n", new + "\n")
        first = len(os.path.commonprefix([source, text]))
        yield make_mutant(path, source[1:], first - 1, len(source) - 1, text[first:], title)


def read(path):
    with open(path, encoding="utf-8") as file:
        return file.read()


def known_equivalents():
    """The named changes and their reasons: blocks of a path, '-' lines, '+' lines and the reason."""
    known = {}
    for block in re.split(r"\n\s*\n", read(os.path.join(PROJECT, "script", "mutants.equivalent"))):
        lines = [line for line in block.splitlines() if not line.startswith("#")]
        if not lines:
            continue
        old = "\n".join(line[2:] for line in lines if line.startswith("- "))
        new = "\n".join(line[2:] for line in lines if line.startswith("+ "))
        reason = " ".join(line for line in lines[1:] if not line.startswith(("- ", "+ ")))
        if not reason:
            fail(f"no reason given for {lines}")
        known[lines[0], old, new] = reason
    return known


def fail(text):
    print(f"mutants: {text}", file=sys.stderr)
    sys.exit(2)
