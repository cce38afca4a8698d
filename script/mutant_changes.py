# SPDX-License-Identifier: Apache-2.0
"""The changes that script/mutants makes to the library, found in its sources."""

import glob
import os
import re
import sys
import typing

PROJECT = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
FOLDERS = ("grammar", "schema", "output", "loader")


class Mutant(typing.NamedTuple):
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
    old, new = ("\n".join(line.strip() for line in lines) for lines in (before, after))
    return Mutant(path, source.count("\n", 0, start) + 1, kind, text, old, new)


def code_of(source):
    """The source with all blanked out that is no code: comments, preprocessor lines, static
    assertions and what stands in quotes; the quotes are kept."""

    def blank(match):
        quote = match[1] or ""
        text = match[0][len(quote) : len(match[0]) - len(quote)]
        return quote + re.sub(r"[^\n]", " ", text) + quote

    code = re.sub(r"""^#.*|//.*|("|')(?:\\.|(?!\1)[^\\\n])*\1""", blank, source, flags=re.M)
    return re.sub(r"static_assert()\([^;]*;", blank, code)


def neighbours(number):
    number = int(number, 0)
    return [str(number + 1), *([str(number - 1)] if number else [])]


# Pattern, what replaces its first group, kind.
TOKENS = [
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
    (r"(?<![\w.\"])(0[xX][0-9A-Fa-f]+|\d+)[uU]?(?![\w.\"])", neighbours, "constant"),
    (r"'( +)'", ["~"], "character"),
    (r'"() +"', ["~"], "message"),
    (r'" +()"', ["~"], "message"),
]


def token_changes(code):
    for pattern, replacements, kind in TOKENS:
        for match in re.finditer(pattern, code, re.M):
            for replacement in replacements(match[1]) if callable(replacements) else replacements:
                yield *match.span(1), replacement, kind


# A statement that is more than a declaration: its end is the ';' on its own level.
STATEMENT = re.compile(
    r"^( +)(?!(?:return|using|case|namespace|struct|class)\b)[^\s{}/][^;{}]*;\n", re.M
)
# A row of a table or list, up to the comma at its line's end.
ROW = re.compile(r"^( +)[\w\"~&][^\n;]*,\n", re.M)
# A statement that only works out a value: the order of two such is their author's taste.
QUIET = re.compile(r"[^()]* = [^;]*;\s*")
CALL = re.compile(r"(?!sizeof\b|offsetof\b)\b\w+\(")


def line_changes(source, code):
    """Each statement and row left out, and each two neighbours swapped."""
    # A comment may stand between rows, and keeps statements apart.
    for what, piece, text in ("statement", STATEMENT, source), ("row", ROW, code):
        pieces = [m for m in piece.finditer(code) if m[0].count("(") == m[0].count(")")]
        for one in pieces:
            yield *one.span(), "", f"{what} left out"
        for one, two in zip(pieces, pieces[1:]):
            between = slice(one.end(), two.start())
            quiet = all(QUIET.fullmatch(m[0]) and not CALL.search(m[0]) for m in (one, two))
            if one[1] == two[1] and not text[between].strip() and not quiet:
                swapped = source[slice(*two.span())] + source[between] + source[slice(*one.span())]
                yield one.start(), two.end(), swapped, f"{what}s swapped"


def read(*path):
    with open(os.path.join(PROJECT, *path), encoding="utf-8") as file:
        return file.read()


def sources():
    """The files of the library, as paths from the project's root."""
    found = [glob.glob(f"{folder}/*.*", root_dir=PROJECT) for folder in FOLDERS]
    return [path for path in sorted(sum(found, [])) if path.endswith((".cpp", ".h"))]


def small_changes():
    """All changes, by place; of those that make the same file, one."""
    for path in sources():
        source = read(path)
        code = code_of(source)
        changes = list(token_changes(code))
        if path.endswith(".cpp"):  # Without a declaration hardly anything compiles.
            changes += line_changes(source, code)
        made = {source: None}
        for change in changes:
            mutant = make_mutant(path, source, *change)
            made.setdefault(mutant.text, mutant)
        del made[source]
        yield from sorted(made.values(), key=lambda m: m.line)


def large_changes():
    """Those of tests/mutants/patches: blocks of a title, a path and the places that change."""
    for block in read("tests/mutants/patches").rstrip("\n").split("\n\n")[1:]:
        title, path, places = block.split("\n", 2)
        path = path.removeprefix("--- ")
        source = text = "\n" + read(path)
        for place in places.split("\n@@\n"):
            old, new = (
                "".join(f"\n{line[1:]}" for line in place.split("\n") if line[0] in marks) + "\n"
                for marks in (" -", " +")
            )
            if text.count(old) != 1:
                fail(f"'{title}' does not fit {path}, where this is not found just once:{old}")
            text = text.replace(old, new)
        first = len(os.path.commonprefix([source, text]))
        yield make_mutant(path, source[1:], first - 1, len(source) - 1, text[first:], title)


def known_equivalents(mutants):
    """The keys of tests/mutants/equivalent: blocks of a path, '-' lines, '+' lines and a reason."""
    known = set()
    for block in read("tests/mutants/equivalent").rstrip("\n").split("\n\n")[1:]:
        path, *lines = block.split("\n")
        old, new = ("\n".join(line[2:] for line in lines if line[0] == mark) for mark in "-+")
        if lines[-1][0] in "-+":
            fail(f"tests/mutants/equivalent gives no reason for\n{block}")
        if (path, old, new) not in {mutant.key() for mutant in mutants}:
            fail(f"tests/mutants/equivalent names what is no change any more:\n{block}")
        known.add((path, old, new))
    return known


def fail(text):
    print(f"mutants: {text}", file=sys.stderr)
    sys.exit(2)
