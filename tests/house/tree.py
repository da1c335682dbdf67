"""What the checks of the code share: the files of the repository, and how findings are reported.

A check is a function from the root of a tree to a list of sentences, one for each finding, each
beginning with the file and, where there is one, the line. No finding means that the check passed.
"""

import pathlib
import subprocess
import sys

# Where there is no git, these folders are no part of the sources.
NOT_SOURCES = {".git", "build", "__pycache__"}


def files(root):
    """The files of the tree, tracked or new, as paths relative to its root, in order."""
    root = pathlib.Path(root)
    listed = _listed_by_git(root)
    if listed is None:
        listed = _walked(root)
    return sorted(path for path in listed if (root / path).is_file())


def _listed_by_git(root):
    # In a folder that merely lies somewhere inside another repository, git would list nothing.
    if not (root / ".git").exists():
        return None
    # A clone that belongs to another user is read all the same: nothing in it is run by this.
    command = ["git", "-c", "safe.directory=*", "ls-files", "-z", "-co", "--exclude-standard"]
    try:
        output = subprocess.run(command, cwd=root, check=True, capture_output=True).stdout
    except (OSError, subprocess.CalledProcessError):
        return None
    return [pathlib.PurePosixPath(name) for name in output.decode().split("\0") if name]


def _walked(root):
    for path in root.rglob("*"):
        relative = path.relative_to(root)
        if not NOT_SOURCES.intersection(relative.parts):
            yield pathlib.PurePosixPath(relative.as_posix())


def text_of(path):
    """The text of a file, or None where it is no text."""
    data = path.read_bytes()
    if b"\0" in data:
        return None
    try:
        return data.decode()
    except UnicodeDecodeError:
        return None


def is_inside(path, folder):
    """Whether a path is the folder (or file) itself or lies inside of it."""
    return path == folder or path.startswith(folder + "/")


def main(check):
    """Holds a check against the tree named on the command line, and exits."""
    if len(sys.argv) != 2:
        sys.exit(f"usage: {sys.argv[0]} ROOT")
    findings = check(pathlib.Path(sys.argv[1]).resolve())
    for finding in findings:
        print(finding)
    sys.exit(1 if findings else 0)
