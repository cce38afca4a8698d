# SPDX-License-Identifier: Apache-2.0
"""Reads an Android.bp file: modules with strings, booleans, lists and maps."""

import ast
import re

TOKEN = re.compile(r'\s+|//[^\n]*|(?P<token>"(?:\\.|[^"\\])*"|[\w.]+|[{}\[\]:,+])')


class Reader:
    def __init__(self, text):
        self._tokens = []
        at = 0
        while at < len(text):
            match = TOKEN.match(text, at)
            if match is None:
                raise ValueError(f"unexpected {text[at:at + 20]!r}")
            if match["token"]:
                self._tokens.append(match["token"])
            at = match.end()

    def modules(self):
        """Of every module its type and its properties, in order."""
        found = []
        while self._tokens:
            kind = self._tokens.pop(0)
            found.append((kind, self._value()))
        return found

    def _value(self):
        token = self._tokens.pop(0)
        if token == "{":
            return dict(self._items("}", self._property))
        if token == "[":
            return self._items("]", self._value)
        if token in ("true", "false"):
            return token == "true"
        text = ast.literal_eval(token)
        while self._tokens and self._tokens[0] == "+":
            self._tokens.pop(0)
            text += ast.literal_eval(self._tokens.pop(0))
        return text

    def _property(self):
        name = self._tokens.pop(0)
        self._expect(":")
        return name, self._value()

    def _items(self, end, read):
        items = []
        while self._tokens[0] != end:
            items.append(read())
            if self._tokens[0] != end:
                self._expect(",")
        self._expect(end)
        return items

    def _expect(self, token):
        found = self._tokens.pop(0)
        if found != token:
            raise ValueError(f"{found} instead of {token}")


def modules_of(path):
    """The modules that have a name, by name: type and properties."""
    with open(path, encoding="utf-8") as file:
        modules = Reader(file.read()).modules()
    named = {}
    for kind, properties in modules:
        if "name" not in properties:
            continue
        if properties["name"] in named:
            raise ValueError(f"two modules {properties['name']}")
        named[properties["name"]] = (kind, properties)
    return named
