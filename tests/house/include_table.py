#!/usr/bin/env python3
"""Holds every #include line against the table of docs/ARCHITECTURE.md: which folder may know which.

The table comes first, as data. Beside each exception stands its reason. What is not allowed here
is forbidden; a new folder or library is therefore added here before it is used.
"""

import re

from tree import files, is_inside, main, text_of

# Each folder may include what lies in itself and in what stands beside it: folders or single files.
MAY_INCLUDE = {
    "core/support": [],
    "core/model": ["core/support"],
    "core/platform": ["core/model", "core/support"],
    "core/probes": [
        "core/platform", "core/model", "core/support",
        "core/scan/DirectorySizer.h",  # a probe reports the size of what it found
    ],
    "core/projects": [
        "core/platform", "core/model", "core/support",
        "core/scan/ScanContext.h",  # exclusions, cancellation and the clock come in the context
    ],
    "core/scan": [
        "core/insights", "core/probes", "core/projects", "core/platform", "core/model",
        "core/support",
    ],
    "core/rules": [
        "core/scan", "core/probes", "core/projects", "core/platform", "core/model",
        "core/support",
    ],
    "core/cleaning": [
        "core/probes", "core/projects", "core/platform", "core/model", "core/support",
    ],
    "core/insights": ["core/scan", "core/platform", "core/model", "core/support"],
    "app/main.cpp": ["app", "core"],  # the composition root makes and wires everything
    "app/state": ["app/platform", "core"],
    "app/platform": ["core/platform", "core/model", "core/support"],
    "app/controls": [],
    "app/tray": [
        "app/controls", "app/state",
        "app/platform/linux/Bus.h",  # a desktop tells over the bus where status items can be
        "core/platform/SystemLog.h",
    ],
    "app/screens": [
        "app/controls", "app/state",
        "core/support/Require.h",  # the window's parts are within the program
    ],
    "cli": ["app/state", "app/platform/StandardDefaults.h", "core"],
    # Single files that may do more than their folder.
    "core/scan/RuleCatalog.cpp": ["core/rules"],  # the one list of all rules
}

# These may include anything, also of each other; nothing else includes them.
UNRESTRICTED = ["tests", "bench", "fuzz", "samples"]

# Headers for a few: whoever else may include their folder may not include these.
RESERVED = {
    # Power to delete: everything else goes through the cleaner and its policy.
    "core/platform/Removal.h": ["core/cleaning", "core/platform", "tests", "bench", "fuzz"],
    "core/platform/Trash.h": ["core/cleaning", "core/platform", "tests", "bench", "fuzz"],
    "core/platform/FileReplacement.h": ["app", "core/platform", "tests"],
    # What has a system's name is behind the seam; the neutral header beside it is for everyone.
    "core/platform/linux": ["core/platform/linux", "app/platform/linux", "tests"],
    "core/platform/macos": ["core/platform/macos", "app/platform/macos", "tests"],
    "core/platform/posix": ["core/platform", "tests"],
    "app/platform/linux": ["app/platform/linux", "app/tray/linux", "tests"],
    "app/platform/macos": ["app/platform/macos", "tests"],
}

# The seam: the only places that know which system they run on.
SEAM = ["core/platform", "app/platform", "app/tray"]
# Headers of the system are needed in two more places, which behave alike on every system.
MAY_INCLUDE_SYSTEM_HEADERS = SEAM + [
    "cli/Terminal.cpp",  # the width of a terminal, and whether there is one
    "cli/Interrupt.cpp",  # Ctrl-C
]

# Libraries, by how their headers are written, and where each may be included. The first that
# matches decides.
EVERYWHERE = [""]
LIBRARIES = [
    (r"fmt/", EVERYWHERE),
    (r"nlohmann/json_fwd\.hpp$", EVERYWHERE),  # names the type, so that a record can mention it
    (r"nlohmann/", ["core/support"]),
    (r"unicode/", ["core/support"]),
    (r"pcre2\.h$", ["core/support"]),
    (r"tl/", ["core/support"]),
    (r"CLI/", ["cli"]),
    (r"Q[A-Z]|Qt[A-Z]", ["app", "cli"]),
    (r"xcb/", ["app/tray/linux"]),
]

STANDARD = set("""
    algorithm any array atomic barrier bit bitset cassert cctype cerrno cfenv cfloat charconv chrono
    cinttypes climits clocale cmath codecvt compare complex concepts condition_variable coroutine
    csetjmp csignal cstdarg cstddef cstdint cstdio cstdlib cstring ctime cuchar cwchar cwctype deque
    exception filesystem forward_list fstream functional future initializer_list iomanip ios iosfwd
    iostream istream iterator latch limits list locale map memory mutex new numbers numeric optional
    ostream queue random ranges ratio regex scoped_allocator semaphore set shared_mutex
    source_location span sstream stack stdexcept streambuf string string_view system_error thread
    tuple type_traits typeindex typeinfo unordered_map unordered_set utility valarray variant vector
    version
""".split())

# Standard headers that one of the compilers does not have yet.
NOT_YET = {
    "execution": "Apple's library lacks it",
    "format": "GCC 12 lacks it; fmt is there",
    "memory_resource": "macOS has it from 14 on only",
    "stop_token": "Apple's library lacks it; core/support/CancelToken.h is there",
    "syncstream": "Apple's library lacks it",
}

SOURCES = (".h", ".cpp", ".mm")
FOLDERS = ["core", "cli", "app"] + UNRESTRICTED

INCLUDE = re.compile(r'\s*#\s*(?:include|import)\s*([<"])([^>"]+)[>"]')
CONDITION = re.compile(r"\s*#\s*(?:if|ifdef|ifndef|elif)\b(.*)")
SYSTEM_MACRO = re.compile(
    r"\b(__APPLE__|__MACH__|__linux__|__linux|__unix__|_WIN32|__FreeBSD__|TARGET_OS_\w+|Q_OS_\w+"
    r"|__GLIBC__|__OBJC__)\b"
)


def is_in_any(path, places):
    return any(place == "" or is_inside(path, place) for place in places)


def allowed_for(path):
    """The places that a file may include, its own folder among them, or None if it has no row."""
    rows = [row for row in MAY_INCLUDE if is_inside(path, row)]
    if not rows:
        return None
    folders = [row for row in rows if not row.endswith(SOURCES)]
    return folders + [place for row in rows for place in MAY_INCLUDE[row]]


def objection_to_project_header(path, header):
    if not is_in_any(header, FOLDERS):
        return "is not written from the root of the repository"
    for reserved, places in RESERVED.items():
        if is_inside(header, reserved) and not is_in_any(path, places):
            return f"is for {', '.join(places)} only"
    if is_in_any(path, UNRESTRICTED):
        return None
    allowed = allowed_for(path)
    if allowed is None:
        return "stands in a folder that has no row in the include table"
    return None if is_in_any(header, allowed) else "is not allowed here by the include table"


def objection_to_library_header(path, header):
    if header in STANDARD or is_in_any(path, UNRESTRICTED):
        return None
    if header in NOT_YET:
        return f"is not in every standard library: {NOT_YET[header]}"
    for pattern, places in LIBRARIES:
        if re.match(pattern, header):
            return None if is_in_any(path, places) else f"is for {', '.join(places)} only"
    if is_in_any(path, MAY_INCLUDE_SYSTEM_HEADERS):
        return None
    return "is neither standard C++ nor a known library, and headers of the system are for the seam"


def findings(root):
    for path in map(str, files(root)):
        if not path.endswith(SOURCES) or not is_in_any(path, FOLDERS):
            continue
        for number, line in enumerate((text_of(root / path) or "").splitlines(), start=1):
            if include := INCLUDE.match(line):
                quote, header = include.groups()
                check = objection_to_project_header if quote == '"' else objection_to_library_header
                if objection := check(path, header):
                    yield f"{path}:{number}: {header} {objection}"
            elif condition := CONDITION.match(line):
                macro = SYSTEM_MACRO.search(condition.group(1))
                if macro and not is_in_any(path, SEAM + UNRESTRICTED):
                    yield f"{path}:{number}: {macro.group()} is asked about outside of the seam"


def check(root):
    return list(findings(root))


if __name__ == "__main__":
    main(check)
