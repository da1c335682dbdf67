#!/usr/bin/env python3
"""Tests of the checks beside this file: on small trees, each passes and fails as it should."""

import pathlib
import subprocess
import tempfile
import unittest

import include_table
import one_stem
import qml
import rules
import safety
import symbols
import wording


class CheckTest(unittest.TestCase):
    """Makes a tree of the files given and compares what a check finds in it."""

    def found(self, check, tree):
        with tempfile.TemporaryDirectory() as root:
            root = pathlib.Path(root)
            for name, content in tree.items():
                path = root / name
                path.parent.mkdir(parents=True, exist_ok=True)
                path.write_bytes(content if isinstance(content, bytes) else content.encode())
            return check(root)

    def assert_passes(self, check, tree):
        self.assertEqual(self.found(check, tree), [])

    def assert_finds(self, check, tree, *beginnings):
        found = self.found(check, tree)
        self.assertEqual(len(found), len(beginnings), found)
        for finding, beginning in zip(found, beginnings):
            self.assertTrue(finding.startswith(beginning), f"{finding!r} is not {beginning!r}")


class QmlTest(CheckTest):
    def test_a_screen_knows_no_other(self):
        parts = {"app/screens/b/B.qml": "Item {}\n", "app/screens/Page.qml": "Item {}\n",
                 "app/controls/Button.qml": "Item {}\n"}
        self.assert_passes(qml.check, parts | {
            "app/screens/a/A.qml": "Page {\n    Own {}\n    Button {}\n}\n",
            "app/screens/a/Own.qml": "Item {}\n", "app/screens/shell/Main.qml": "B {}\n"})
        self.assert_finds(qml.check, parts | {"app/screens/a/A.qml": "Page {\n    B {}\n}\n"},
                          "app/screens/a/A.qml:2: B is of another screen")

    def test_colours(self):
        self.assert_passes(qml.check, {"app/controls/A.qml": "Item { color: Theme.text }\n"})
        for color in ('"#fff"', "Qt.rgba(0, 0, 0, 1)"):
            self.assert_finds(qml.check, {"app/controls/A.qml": f"Item {{ color: {color} }}\n"},
                              "app/controls/A.qml:1: a colour")

    def test_texts(self):
        self.assert_passes(qml.check, {"app/screens/A.qml": """A {
    text: qsTr("Scan")
    title: "Tidewright"
    help: ""
    label: model.label
}
"""})
        self.assert_finds(qml.check, {"app/screens/A.qml": 'A {\n    text: "Scan"\n}\n'},
                          "app/screens/A.qml:2: 'Scan' is not translated")


class IncludeTableTest(CheckTest):
    def passes(self, path, *lines):
        self.assert_passes(include_table.check, {path: "\n".join(lines) + "\n"})

    def fails(self, path, line):
        self.assert_finds(include_table.check, {path: f"\n{line}\n"}, f"{path}:2: ")

    def test_folders(self):
        self.passes("core/support/A.h", '#include "core/support/B.h"')
        self.fails("core/support/A.h", '#include "core/model/B.h"')
        self.passes("core/model/A.h", '#include "core/support/B.h"')
        self.fails("core/model/A.h", '#include "core/platform/B.h"')
        self.fails("core/platform/A.h", '#include "core/probes/B.h"')
        self.passes("core/scan/A.h", '#include "core/probes/B.h"', '#include "core/projects/B.h"')
        self.fails("core/scan/A.h", '#include "core/cleaning/B.h"')
        self.passes("core/rules/A.cpp", '#include "core/platform/Volumes.h"')
        self.fails("core/rules/A.cpp", '#include "core/cleaning/B.h"')
        self.fails("core/cleaning/A.cpp", '#include "core/rules/B.h"')
        self.fails("core/cleaning/A.cpp", '#include "core/scan/B.h"')
        self.fails("core/insights/A.cpp", '#include "core/rules/B.h"')
        self.passes("cli/A.cpp", '#include "app/state/B.h"', '#include "core/rules/B.h"')
        self.fails("cli/A.cpp", '#include "app/platform/B.h"')
        self.fails("app/state/A.cpp", '#include "app/screens/B.h"')
        self.passes("app/screens/A.cpp", '#include "app/state/B.h"', '#include "app/controls/B.h"')
        self.fails("app/screens/A.cpp", '#include "core/model/B.h"')
        self.fails("core/model/A.cpp", '#include "app/state/B.h"')
        self.passes("app/main.cpp", '#include "app/state/B.h"', '#include "core/scan/B.h"')

    def test_single_files_that_may_more_or_less(self):
        self.passes("core/scan/RuleCatalog.cpp", '#include "core/rules/B.h"')
        self.fails("core/scan/RuleCatalog.h", '#include "core/rules/B.h"')
        self.fails("core/scan/RuleCatalog.cpp", '#include "core/cleaning/B.h"')
        self.passes("core/probes/A.h", '#include "core/scan/DirectorySizer.h"')
        self.fails("core/probes/A.h", '#include "core/scan/DiskScanner.h"')
        self.passes("core/projects/A.h", '#include "core/scan/ScanContext.h"')
        self.fails("core/projects/A.h", '#include "core/scan/DirectorySizer.h"')

    def test_removal_is_for_cleaning(self):
        for header in ["core/platform/Removal.h", "core/platform/Trash.h"]:
            self.passes("core/cleaning/A.cpp", f'#include "{header}"')
            self.passes("core/platform/linux/A.cpp", f'#include "{header}"')
            self.passes("tests/core/platform/ATest.cpp", f'#include "{header}"')
            self.fails("core/rules/A.cpp", f'#include "{header}"')
            self.fails("core/scan/A.cpp", f'#include "{header}"')
            self.fails("cli/A.cpp", f'#include "{header}"')
            self.fails("app/main.cpp", f'#include "{header}"')
        self.passes("core/rules/A.cpp", '#include "core/platform/TrashSize.h"')

    def test_nobody_includes_tests(self):
        self.passes("tests/core/ATest.cpp", '#include "samples/B.h"', '#include "core/rules/B.h"')
        self.passes("bench/A.cpp", '#include "tests/support/TempHome.h"')
        for folder in ["tests", "bench", "fuzz", "samples"]:
            self.fails("core/support/A.cpp", f'#include "{folder}/B.h"')

    def test_seam(self):
        self.passes("core/platform/linux/A.cpp", '#include "core/platform/linux/B.h"')
        self.passes("tests/core/platform/linux/BTest.cpp", '#include "core/platform/linux/B.h"')
        self.fails("core/platform/A.cpp", '#include "core/platform/linux/B.h"')
        self.fails("core/platform/linux/A.cpp", '#include "core/platform/macos/B.h"')
        self.passes("core/platform/macos/A.mm", '#include "core/platform/posix/B.h"')
        self.fails("core/probes/A.cpp", '#include "core/platform/posix/B.h"')

    def test_form(self):
        self.fails("core/support/A.cpp", '#include "B.h"')
        self.fails("core/support/A.cpp", '#include "../model/B.h"')
        self.fails("core/support/A.cpp", '  #  include "B.h"')
        self.fails("core/novelty/A.cpp", '#include "core/support/B.h"')
        self.fails("core/A.cpp", '#include "core/support/B.h"')
        self.passes("docs/A.h", '#include "B.h"')

    def test_libraries(self):
        self.passes(
            "core/support/A.cpp",
            "#include <nlohmann/json.hpp>",
            "#include <pcre2.h>",
            "#include <tl/expected.hpp>",
            "#include <unicode/coll.h>",
            "#include <vector>",
        )
        self.passes("core/rules/A.cpp", "#include <fmt/format.h>")
        self.passes("core/model/A.h", "#include <nlohmann/json_fwd.hpp>")
        self.fails("core/model/A.h", "#include <nlohmann/json.hpp>")
        self.fails("core/rules/A.h", "#include <unicode/coll.h>")
        self.fails("core/rules/A.h", "#include <pcre2.h>")
        self.fails("cli/A.h", "#include <tl/expected.hpp>")
        self.passes("cli/A.cpp", "#include <CLI/CLI.hpp>")
        self.fails("core/support/A.cpp", "#include <CLI/CLI.hpp>")
        self.passes("app/state/A.h", "#include <QObject>", "#include <QtCore/QString>")
        self.fails("core/support/A.h", "#include <QString>")
        self.passes("tests/core/ATest.cpp", "#include <gtest/gtest.h>", "#include <unistd.h>")
        self.fails("core/support/A.h", "#include <gtest/gtest.h>")
        self.fails("core/support/A.h", "#include <format>")

    def test_system(self):
        for header in ["unistd.h", "sys/stat.h", "systemd/sd-journal.h", "plist/plist.h",
                       "Foundation/Foundation.h", "errno.h"]:
            self.passes("core/platform/linux/A.cpp", f"#include <{header}>")
            self.passes("cli/Terminal.cpp", f"#include <{header}>")
            self.fails("cli/ScanCommand.cpp", f"#include <{header}>")
            self.fails("core/support/A.cpp", f"#import <{header}>")
        self.passes("core/platform/A.cpp", "#ifdef __APPLE__", "#endif")
        self.passes("core/support/A.cpp", "#if __cplusplus > 202002L", "#endif")
        self.fails("core/support/A.cpp", "#ifdef __APPLE__")
        self.fails("cli/Terminal.cpp", "#if defined(__linux__) && 1")


class OneStemTest(CheckTest):
    def passes(self, *paths):
        self.assert_passes(one_stem.check, dict.fromkeys(paths, ""))

    def fails(self, path, *others):
        self.assert_finds(one_stem.check, dict.fromkeys((path, *others), ""), f"{path}: ")

    def test_sources_have_headers(self):
        self.passes("core/support/URL.cpp", "core/support/URL.h", "cli/main.cpp", "app/main.cpp")
        self.fails("core/support/URL.cpp")
        self.fails("core/support/URL.cpp", "core/model/URL.h")
        self.fails("app/platform/Wake.mm")
        self.passes("core/model/Record.h", "bench/Anything.cpp", "fuzz/Anything.cpp")

    def test_sources_of_a_system(self):
        self.passes("core/platform/Volumes.h", "core/platform/linux/Volumes.cpp",
                    "core/platform/macos/Volumes.mm", "core/platform/posix/Descriptor.cpp",
                    "core/platform/posix/Descriptor.h")
        self.fails("core/platform/linux/Volumes.cpp")
        self.fails("core/platform/linux/Volumes.cpp", "core/platform/macos/Volumes.h")

    def test_tests_mirror(self):
        self.passes("tests/core/support/URLTest.cpp", "core/support/URL.h")
        self.passes("tests/core/platform/linux/JournalTest.cpp", "core/platform/linux/Journal.cpp",
                    "core/platform/linux/Journal.h")
        self.passes("tests/support/TempHomeTest.cpp", "tests/support/TempHome.h")
        self.passes("tests/e2e/EverythingTest.cpp", "tests/support/Helper.cpp")
        self.fails("tests/core/support/URLTest.cpp")
        self.fails("tests/core/support/URLTest.cpp", "core/model/URL.h")

    def test_names(self):
        self.passes("core/model/AVD.h", "core/model/SHA256.h", "tests/fixtures/app/main_2.cpp",
                    "tests/macos/include/os/log.h")
        self.fails("core/model/scanItem.h")
        self.fails("core/model/Scan_Item.h")
        self.fails("tests/core/helper.cpp")


class WordingTest(CheckTest):
    def passes(self, name, text):
        self.assert_passes(wording.check, {name: text})

    def fails(self, name, text, beginning=":1: "):
        self.assert_finds(wording.check, {name: text}, f"{name}{beginning}")

    def test_machine_paths(self):
        for path in ["/wo" "rk/main", "../sha" "red/a", "../.lib" "rary/a"]:
            self.fails("README.md", f"See {path}.\n")
            self.fails("core/A.cpp", f'open("{path}");\n')
            self.fails("tests/fixtures/a.txt", path)
        for path in ["~/wo" "rk/", "$HOME/wo" "rk/", "/home/dev/wo" "rk/"]:
            self.passes("README.md", f"See {path}.\n")
        self.passes("README.md", "network/ shared/ /workspace\n")
        self.fails("README.md", "cd /ro" "ot/x\n")
        self.passes("core/A.cpp", "open(/ro" "ot/x);\n")

    def test_other_documents(self):
        for text in ["Pa" "rt 3.2", "the spe" "c", "The spe" "cification says", "iss" "ue #12",
                     "// TO" "DO: later", "FIX" "ME"]:
            self.fails("core/A.h", text + "\n")
        self.passes("core/A.h", "the Trash specification 1.0, special, part 2, issues, todo\n")

    def test_clean_text(self):
        self.passes("core/A.h", "int a;\n\nint b;\n")
        self.passes("core/A.h", "")
        self.fails("core/A.h", "int a; \n")
        self.fails("core/A.h", "\tint a;\n")
        self.fails("run", "#!/bin/sh\n\techo\n", ":2: ")
        self.passes("packaging/rules", "build:\n\tmake\n")
        self.fails("core/A.h", "int a;", ": ")

    def test_what_is_not_ours(self):
        self.passes("tests/fixtures/go.mod", "\tgithub.com/a v1 \nTO" "DO")
        self.passes("docs/picture.png", b"\x89PNG\0 \n")
        self.passes("docs/latin1.txt", b"\xe4 \n")
        self.passes("build/dev/A.h", "int a; \n")

    def test_ignored_files_are_no_part_of_the_repository(self):
        with tempfile.TemporaryDirectory() as root:
            root = pathlib.Path(root)
            try:
                subprocess.run(["git", "init", "-q"], cwd=root, check=True, capture_output=True)
            except OSError:
                self.skipTest("git is not installed")
            (root / ".gitignore").write_text("/out/\n")
            (root / "out").mkdir()
            (root / "out/A.h").write_text("int a; \n")
            (root / "B.h").write_text("int b; \n")
            self.assertEqual(len(wording.check(root)), 1)


class SafetyTest(CheckTest):
    tree = {
        "docs/SAFETY.md": "Nothing goes: `ATest.Stays`, `BTest.Stays`,\n`CTest.Each`, `fuzz.paths`\n",
        "tests/core/ATest.cpp": "TEST(ATest, Stays) {}\nTEST_F(BTest,\n       Stays) {}\n",
        "tests/core/CTest.cpp": "TEST_P(CTest, Each) {}\n",
        "fuzz/CMakeLists.txt": "add_fuzz_target(paths PathsFuzz.cpp)\n",
    }

    def test_all_are_there(self):
        self.assert_passes(safety.check, self.tree)

    def test_one_is_missing(self):
        for missing in ("tests/core/CTest.cpp", "fuzz/CMakeLists.txt"):
            tree = {path: text for path, text in self.tree.items() if path != missing}
            self.assert_finds(safety.check, tree, "docs/SAFETY.md:2: there is no test ")

    def test_named_elsewhere(self):
        tree = self.tree | {"tests/core/ATest.cpp": "// TEST ATest.Stays is gone\n"}
        self.assert_finds(safety.check, tree, "docs/SAFETY.md:1: ", "docs/SAFETY.md:1: ")


class RulesTest(CheckTest):
    TREE = {
        "core/rules/Cars.h": 'struct CarRule {\n    std::string id = "cars.car";\n};\n',
        "core/scan/RuleCatalog.cpp": 'cleanupRule(CarRule{}, system, "CarRule"),\n',
        "tests/core/rules/CarsTest.cpp": "TEST(CarRule, Starts) {}\n",
        "docs/rules/cars.md": "`cars.car` looks at cars.\n",
    }

    def without(self, path, content=""):
        return {**self.TREE, path: content}

    def test_complete(self):
        self.assert_passes(rules.check, self.TREE)

    def test_not_registered(self):
        finding = "core/rules/Cars.h: CarRule is not in"
        self.assert_finds(rules.check, self.without("core/scan/RuleCatalog.cpp"), finding)
        other = 'cleanupRule(CarRule{}, system, "CartRule"),\n'
        self.assert_finds(rules.check, self.without("core/scan/RuleCatalog.cpp", other), finding)

    def test_not_tested(self):
        other = "TEST(CarRules, Start) {}\n"
        finding = "core/rules/Cars.h: CarRule is not tested"
        self.assert_finds(rules.check, self.without("tests/core/rules/CarsTest.cpp", other), finding)

    def test_not_described(self):
        finding = "core/rules/Cars.h: cars.car stands on no page"
        self.assert_finds(rules.check, self.without("docs/rules/cars.md", "cars.car"), finding)


class SymbolsTest(CheckTest):
    TREE = {
        "app/controls/SymbolTable.cpp": 'constexpr Symbol symbols[] = {\n    {"trash", "bin"},\n'
                                        '    {"trash.fill", "bin", 2},\n    {"doc", "file"},\n};\n',
        "app/controls/symbols/bin.svg": "<svg/>\n",
        "app/controls/symbols/file.svg": "<svg/>\n",
        "app/controls/symbols/README.md": "Where they are from.\n",
    }

    def assert_used(self, path, code, *names):
        """The code is about these names: it passes as it stands and fails for each that differs."""
        self.assert_passes(symbols.check, {**self.TREE, path: code})
        for name in names:
            self.assertEqual(code.count(f'"{name}"'), 1, "a test needs each name once")
            found = self.found(symbols.check,
                               {**self.TREE, path: code.replace(f'"{name}"', '"no.such"')})
            line = code[:code.index(f'"{name}"')].count("\n") + 1
            self.assertEqual(found, [f"{path}:{line}: the symbol no.such has no row in "
                                     "app/controls/SymbolTable.cpp"])

    def test_in_records(self):
        self.assert_used("core/A.cpp", """
Insight a{.id = "a.b",
          .symbolName = "trash",
          .title = "other"};
b.symbolName = good ? "trash.fill" : "doc";
""", "trash", "trash.fill", "doc")
        self.assert_used("core/A.cpp", """
struct Words { const char* title; const char* symbolName; };
constexpr std::array words{
    Words{"A b", "trash", "Text."},
    {"C",
     "doc", "Text."},
    {QT_TRANSLATE_NOOP("A", "B"), "trash.fill"},
};
""", "trash", "doc", "trash.fill")

    def test_in_functions(self):
        self.assert_used("app/state/A.cpp", """
const char* stateSymbol(const State& state) {
    if (state.isNew)
        return "";
    return state.isGood ? "trash" : "doc";
}
const char* other() { return "other"; }
""", "trash", "doc")
        self.assert_used("app/state/A.cpp", """
switch (role) {
case Role::symbolName:
    return text(isGood ? "trash" : "doc");
case Role::other:
    return "other";
}
""", "trash", "doc")
        self.assert_used("app/state/A.cpp", """
EmptyText A::emptyText() const {
    if (m_isScanned)
        return {{}, QStringLiteral("doc"), tr("None.")};
    return {tr("Not yet"),
            QStringLiteral("trash"), tr("Scan.")};
}
""", "doc", "trash")

    def test_in_functions_of_one_line(self):
        self.assert_used("app/state/A.cpp", """
QString healthSymbol() const { return "trash"; }

QString other() const {
    return "other";
}
""", "trash")

    def test_in_qml(self):
        for path in ("app/controls/A.qml", "app/screens/overview/A.qml"):
            self.assert_used(path, 'A {\n    symbol: "trash"; text: "a"\n}\n', "trash")
        self.assert_used("app/screens/A.qml", """
A {
    symbolName: health === "good" ? "trash"
        : "doc"
    text: "other"
    rows: [{ symbol: "trash.fill", title: "Other" }]
}
""", "trash", "doc", "trash.fill")
        self.assert_used("app/screens/A.qml", """
A {
    function stateSymbol(state) {
        if (state)
            return "doc"
        return "trash"
    }
    text: "other"
}
""", "doc", "trash")
        tree = {**self.TREE, "app/A.qml": 'A { source: "image://symbols/tras/" + colour }\n'}
        self.assert_finds(symbols.check, tree, "app/A.qml:1: the symbol tras ")

    def test_what_names_no_symbol(self):
        self.assert_passes(symbols.check, {
            **self.TREE,
            "core/A.cpp": 'Rule a{.id = "system.trash"};\nA b{"Discord", "discord"};\n'
                          'auto kind = FileKind::symbolicLink;\nreturn a ? "x.y" : "z";\n',
            "app/A.qml": 'A { text: symbol; symbol: row.symbolName; font: "Inter" }\n',
            "tests/A.cpp": 'a.symbolName = "no.such";\n',
        })

    def test_table_and_files(self):
        tree = {**self.TREE, "app/controls/symbols/more.svg": "<svg/>\n"}
        del tree["app/controls/symbols/bin.svg"]
        self.assert_finds(symbols.check, tree,
                          "app/controls/SymbolTable.cpp: app/controls/symbols/bin.svg is not there",
                          "app/controls/symbols/more.svg: no row ")


if __name__ == "__main__":
    unittest.main()
