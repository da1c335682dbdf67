#!/usr/bin/env python3
"""Checks the text of every file: that it speaks of this project alone, and is cleanly written.

Paths of somebody's machine, numbers of a tracker and notes to oneself mean nothing to a reader of
the repository. Fixtures, and what fuzzers begin with, are held to the paths alone: they stay as
they came.
"""

import re

from tree import files, is_inside, main, text_of

# In the patterns, a letter in brackets keeps this file from finding itself.
ANYWHERE = [
    # Not a folder of that name below a home or another folder, which any text may name.
    (r"(?<![\w.~*})-])/[w]ork/", "names a path of somebody's machine"),
    (r"\.\./([s]hared|\.[l]ibrary)\b", "names a path outside of the repository"),
]
OUTSIDE_FIXTURES = [
    (r"\b[P]art \d+\.\d", "cites a document that is not in the repository"),
    (r"\b[Tt]he [s]pec(ification)?\b", "cites a document that is not in the repository"),
    (r"\b[Ii]ssues? #", "cites a tracker by number"),
    (r"\b[T]ODO\b|\b[F]IXME\b", "leaves a note to oneself behind"),
    (r"[ \t]+$", "ends in white space"),
]
OUTSIDE_CODE = [
    # In code it may be a literal: the home folder of an account as any other.
    (r"(?<![\w.~*})-])/[r]oot/", "names a path of somebody's machine"),
]
IN_SOURCES = [
    (r"\t", "has a tab"),
]

FIXTURES = ["tests/fixtures", "fuzz/corpus"]
CODE = {".h", ".cpp", ".mm"}
SOURCES = CODE | {".qml", ".py", ".cmake", ".sh", ".json", ".yml", ".md"}


def is_source(path, text):
    return path.suffix in SOURCES or path.name == "CMakeLists.txt" or text.startswith("#!")


def is_fixture(path):
    return any(is_inside(str(path), folder) for folder in FIXTURES)


def rules_for(path, text):
    rules = list(ANYWHERE)
    if is_fixture(path):
        return rules
    rules += OUTSIDE_FIXTURES
    if path.suffix not in CODE:
        rules += OUTSIDE_CODE
    if is_source(path, text):
        rules += IN_SOURCES
    return rules


def findings(root):
    for path in files(root):
        text = text_of(root / path)
        if text is None:
            continue
        rules = [(re.compile(pattern), sentence) for pattern, sentence in rules_for(path, text)]
        for number, line in enumerate(text.split("\n"), start=1):
            for pattern, sentence in rules:
                if pattern.search(line):
                    yield f"{path}:{number}: {sentence}"
        if text and not text.endswith("\n") and not is_fixture(path):
            yield f"{path}: does not end in a new line"


def check(root):
    return list(findings(root))


if __name__ == "__main__":
    main(check)
