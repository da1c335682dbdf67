#!/usr/bin/env python3
"""Sees to it that every symbol that the code names stands in the table of symbols.

A name stands where a symbol is said in words: after `symbolName =` or QML's `symbol:`, in what a
function or a role with "symbol" in its name returns, after a title in a list in braces, and in an
address of an image. Names that are made of parts while the program runs are not found.
"""

import re

from tree import files, is_inside, main, text_of

TABLE = "app/controls/SymbolTable.cpp"
PICTURES = "app/controls/symbols"
ROW = re.compile(r'^    \{"([^"]+)", "([^"]+)"', re.M)

LITERAL = re.compile(r'"([^"\n]*)"|\'([^\'\n]*)\'')
COMPARED = re.compile(r"""[!=]==?\s*(?:"[^"\n]*"|'[^'\n]*')""")
TITLE = r'(?:tr\("[^"]*"\)|QT_TRANSLATE_NOOP\([^()]*\)|"[A-Z][^"\n]*"|\{\})'
WRAPPED = r"(?:QStringLiteral\(|QLatin1String\()?"

# Each finds a stretch of code whose literals are names of symbols.
IN_CPP = [
    re.compile(r"\bsymbolName\s*=(?!=)([^;,}]*)"),
    re.compile(r"\b\w*[sS]ymbol(?:Name)?\([^;{}]*\)[\w\s]*(\{[^\n]*\}\n|\{.*?\n\})", re.S),
    re.compile(r"case [\w:]*[sS]ymbol(?:Name)?:(.*?)(?:\bcase\b|\bdefault\b|\n\})", re.S),
]
# Only in files that speak of symbols: other lists begin alike.
AFTER_A_TITLE = re.compile(r"\{\s*" + TITLE + r",\s*" + WRAPPED + r'("[a-z][a-z0-9.]*")')
SPEAKS_OF_SYMBOLS = re.compile(r"\bsymbolName\b|\b[eE]mptyText\b")
# A value goes on in the next line after an operator and before one.
IN_QML = [
    re.compile(r"\b(?:\w*S|s)ymbol(?:Name)?\s*:((?:[^\n;,}]*[?:(|&]\s*\n|[^\n;,}]*\n(?=\s*[?:|&]))*"
               r"[^\n;,}]*)"),
    re.compile(r"\bfunction \w*[sS]ymbol\w*\([^{]*(\{.*?\n\s*\}\n)", re.S),
]
IN_AN_ADDRESS = re.compile(r'("image://symbols/[^"/\n]+)[/"]')


def names_in(text, patterns):
    """The names, each with the number of its line."""
    for pattern in patterns:
        for stretch in pattern.finditer(text):
            code = COMPARED.sub(lambda match: " " * len(match[0]), stretch[1])
            code = code if code.count('"') % 2 == 0 else code + '"'
            for literal in LITERAL.finditer(code):
                name = (literal[1] or literal[2] or "").removeprefix("image://symbols/")
                if name:
                    line = text.count("\n", 0, stretch.start(1) + literal.start()) + 1
                    yield name, line


def used_names(root, paths):
    for path in paths:
        suffix = path.rpartition(".")[2]
        if path == TABLE or not (is_inside(path, "core") or is_inside(path, "app")):
            continue
        if suffix in ("h", "cpp", "mm", "qml", "js"):
            text = text_of(root / path) or ""
            patterns = [IN_AN_ADDRESS] + (IN_QML if suffix in ("qml", "js") else IN_CPP)
            if suffix not in ("qml", "js") and SPEAKS_OF_SYMBOLS.search(text):
                patterns.append(AFTER_A_TITLE)
            for name, line in names_in(text, patterns):
                yield path, line, name


def check(root):
    paths = [str(path) for path in files(root)]
    table = text_of(root / TABLE) if TABLE in paths else ""
    rows = dict(ROW.findall(table))
    named = {f"{PICTURES}/{file}.svg" for file in rows.values()}
    pictures = {path for path in paths if is_inside(path, PICTURES) and path.endswith(".svg")}
    return sorted(
        {f"{path}:{line}: the symbol {name} has no row in {TABLE}"
         for path, line, name in used_names(root, paths) if name not in rows}
        | {f"{TABLE}: {path} is not there" for path in named - pictures}
        | {f"{path}: no row of {TABLE} names it" for path in pictures - named}
    )


if __name__ == "__main__":
    main(check)
