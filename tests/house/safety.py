#!/usr/bin/env python3
"""Sees to it that the tests that docs/SAFETY.md names exist."""

import re

from tree import files, is_inside, main, text_of

PAGE = "docs/SAFETY.md"
NAMED = re.compile(r"`((?:fuzz\.[\w-]+)|(?:[A-Z]\w+\.[A-Z]\w+))`")
DEFINED = re.compile(r"\bTEST(?:_F|_P)?\(\s*(\w+)\s*,\s*(\w+)\s*\)")
FUZZED = re.compile(r"^add_fuzz_target\(([\w-]+)", re.M)


def defined_tests(root):
    names = set()
    for path in files(root):
        if is_inside(str(path), "tests") or is_inside(str(path), "fuzz"):
            text = text_of(root / path) or ""
            names.update(f"{suite}.{name}" for suite, name in DEFINED.findall(text))
            names.update(f"fuzz.{target}" for target in FUZZED.findall(text))
    return names


def check(root):
    if not (root / PAGE).is_file():
        return []
    existing = defined_tests(root)
    return [
        f"{PAGE}:{number}: there is no test {name}"
        for number, line in enumerate((text_of(root / PAGE) or "").splitlines(), start=1)
        for name in NAMED.findall(line)
        if name not in existing
    ]


if __name__ == "__main__":
    main(check)
