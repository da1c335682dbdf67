#!/usr/bin/env python3
"""Checks that one noun has one stem: Volumes.h, Volumes.cpp, linux/Volumes.cpp, VolumesTest.cpp.

Who knows one of the names then knows where the other files are. Names are UpperCamel.
"""

import re

from tree import files, is_inside, main

PRODUCT = ["core", "cli", "app"]
CPP_FOLDERS = PRODUCT + ["tests", "bench", "fuzz", "samples"]
SOURCE_SUFFIXES = (".cpp", ".mm")
SUFFIXES = SOURCE_SUFFIXES + (".h", ".qml")
UPPER_CAMEL = re.compile(r"[A-Z][A-Za-z0-9]*")

# Implementations of a neutral header, which stands in the folder above.
SYSTEMS = {"posix", "linux", "macos"}

# These test the program as a whole, not one file.
WITHOUT_MIRROR = ["tests/e2e", "tests/faults", "tests/house"]
# These are named by others: fixtures, and stand-ins for headers of a system.
NAMED_BY_OTHERS = ["tests/fixtures", "tests/macos/include"]


def is_program(path):
    return path.stem == "main" and path.suffix in SOURCE_SUFFIXES


def folders_of_header(path):
    """The folders in which a source's header may stand."""
    if path.parent.name in SYSTEMS:
        # What both systems share on the inside has its header in posix/.
        return [path.parent, path.parent.parent, path.parent.parent / "posix"]
    return [path.parent]


def folders_of_subject(test):
    """The folders in which the thing that a test is about may stand: the mirrored one, or, for a
    helper of the tests, the test's own."""
    return [test.parent.relative_to("tests"), test.parent]


def findings(root):
    paths = [
        path
        for path in files(root)
        if path.parts[0] in CPP_FOLDERS
        and path.suffix in SUFFIXES
        and not any(is_inside(str(path), folder) for folder in NAMED_BY_OTHERS)
    ]
    stems = {path.with_suffix("") for path in paths}
    headers = {path.with_suffix("") for path in paths if path.suffix == ".h"}

    for path in paths:
        if is_program(path):
            continue
        if not UPPER_CAMEL.fullmatch(path.stem):
            yield f"{path}: the name is not UpperCamel"
        if path.parts[0] in PRODUCT and path.suffix in SOURCE_SUFFIXES:
            if not any(folder / path.stem in headers for folder in folders_of_header(path)):
                yield f"{path}: there is no header {path.stem}.h for it"
        if path.parts[0] == "tests" and path.stem.endswith("Test"):
            subject = path.stem.removesuffix("Test")
            if any(is_inside(str(path), folder) for folder in WITHOUT_MIRROR):
                continue
            if not any(folder / subject in stems for folder in folders_of_subject(path)):
                yield f"{path}: there is no {folders_of_subject(path)[0] / subject} that it tests"


def check(root):
    return list(findings(root))


if __name__ == "__main__":
    main(check)
