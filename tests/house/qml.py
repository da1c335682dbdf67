#!/usr/bin/env python3
"""Sees to it that screens know no other screen, that colours come from the theme, and that every
text which people read goes through Qt's translation."""

import re

from tree import files, is_inside, main, text_of

SCREENS = "app/screens"
SHELL = "app/screens/shell"  # puts the screens together
QML = ("app/controls", SCREENS)

TYPE = re.compile(r"\b([A-Z]\w*)\s*\{")
COLOR = re.compile(r'"#[0-9a-fA-F]{3,8}"|\bQt\.(?:rgba|hsla|hsva)\(')
# A text that is shown: the value of such a property, where it is a literal with a word in it.
SHOWN = re.compile(
    r"\b(?:text|title|subtitle|message|label|help|placeholder|actionTitle|Accessible\.name|"
    r'Accessible\.description)\s*:\s*"([^"\n]*[A-Za-z][^"\n]*)"')
NAMES = {"Tidewright"}  # the same in every language


def folder_of(path):
    return path.parent.as_posix()


def check(root):
    findings = []
    qml = [path for path in files(root)
           if path.suffix == ".qml" and any(is_inside(str(path), folder) for folder in QML)]
    homes = {path.stem: folder_of(path) for path in qml if is_inside(str(path), SCREENS)}
    for path in qml:
        for number, line in enumerate((text_of(root / path) or "").splitlines(), 1):
            where = f"{path}:{number}: "
            code = line.split("//", 1)[0] if '"' not in line else line
            if is_inside(str(path), SCREENS) and not is_inside(str(path), SHELL):
                for name in TYPE.findall(code):
                    if homes.get(name, SCREENS) not in (SCREENS, folder_of(path)):
                        findings.append(f"{where}{name} is of another screen")
            if COLOR.search(code):
                findings.append(f"{where}a colour that is not the theme's")
            for text in SHOWN.findall(code):
                if text not in NAMES:
                    findings.append(f"{where}{text!r} is not translated")
    return findings


if __name__ == "__main__":
    main(check)
