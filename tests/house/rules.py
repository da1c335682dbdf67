#!/usr/bin/env python3
"""Holds the rules' headers, catalogue, tests and pages against each other: each rule of a family is
registered under its own name, tested in its family's test and described on a page of docs/rules."""

import re

from tree import files, main, text_of

FAMILY = re.compile(r"core/rules/(\w+)\.h$")
RULE = re.compile(r'struct (\w+Rule) \{[^}]*?std::string id = "([^"]+)"', re.S)
ENTRY = re.compile(r'cleanupRule\((\w+)\{\}, \w+, "(\w+)"\)')
CATALOG = "core/scan/RuleCatalog.cpp"


def read(root, path):
    return (text_of(root / path) if (root / path).is_file() else None) or ""


def check(root):
    paths = [str(path) for path in files(root)]
    pages = "\n".join(read(root, path) for path in paths if path.startswith("docs/rules/"))
    entries = dict(ENTRY.findall(read(root, CATALOG)))
    findings = []
    for path in paths:
        family = FAMILY.match(path)
        if not family:
            continue
        test = f"tests/core/rules/{family[1]}Test.cpp"
        tested = read(root, test)
        for rule, identifier in RULE.findall(read(root, path)):
            if entries.get(rule) != rule:
                findings.append(f"{path}: {rule} is not in {CATALOG} under its name")
            if not re.search(rf"\b{rule}\b", tested):
                findings.append(f"{path}: {rule} is not tested in {test}")
            if f"`{identifier}`" not in pages:
                findings.append(f"{path}: {identifier} stands on no page of docs/rules")
    return findings


if __name__ == "__main__":
    main(check)
