#!/usr/bin/env python3
"""How soon the window shows its first picture, against a bare window of Qt Quick, and what it costs
to be left alone: bench/window.py FOLDER_OF_PROGRAMS HOME. The home is one that tidewright-sample-home
has made. Nothing is asserted."""

import os
import select
import subprocess
import sys
import time

FIRST_FRAME = b"Frame rendered"
STARTS = 7
SECONDS_LEFT_ALONE = 30


def started(program, home, **more):
    environment = {
        "PATH": "/usr/bin:/bin",
        "HOME": home,
        "TMPDIR": home + "/.tmp",
        "QT_QPA_PLATFORM": os.environ.get("QT_QPA_PLATFORM", "offscreen"),
        "QT_QUICK_BACKEND": "software",
        "QT_FORCE_STDERR_LOGGING": "1",
        "LC_ALL": "C.UTF-8",
    }
    for name in ("DISPLAY", "XAUTHORITY", "XDG_RUNTIME_DIR"):
        if name in os.environ:
            environment[name] = os.environ[name]
    environment.update(more)
    return subprocess.Popen([program], env=environment, stderr=subprocess.PIPE, bufsize=0)


def first_frame(program, home):
    begin = time.monotonic()
    process = started(program, home, QT_LOGGING_RULES="qt.scenegraph.time.renderloop=true")
    try:
        text = b""
        while FIRST_FRAME not in text:
            if not select.select([process.stderr], [], [], 20)[0]:
                raise SystemExit(f"{program} has shown nothing: {text}")
            read = os.read(process.stderr.fileno(), 4096)
            if not read:
                raise SystemExit(f"{program} has ended: {text}")
            text += read
        return (time.monotonic() - begin) * 1000
    finally:
        process.kill()
        process.wait()


def processor_seconds(process):
    with open(f"/proc/{process.pid}/stat", encoding="utf-8") as file:
        fields = file.read().rsplit(")", 1)[1].split()
    return (int(fields[11]) + int(fields[12])) / os.sysconf("SC_CLK_TCK")


def share_left_alone(program, home, **more):
    process = started(program, home, **more)
    try:
        time.sleep(5)
        before = processor_seconds(process)
        time.sleep(SECONDS_LEFT_ALONE)
        return (processor_seconds(process) - before) / SECONDS_LEFT_ALONE * 100
    finally:
        process.kill()
        process.wait()


def median(values):
    return sorted(values)[len(values) // 2]


def main():
    programs, home = os.path.abspath(sys.argv[1]), os.path.abspath(sys.argv[2])
    app, bare = programs + "/tidewright-app", programs + "/bare-window"
    pairs = [(first_frame(app, home), first_frame(bare, home)) for _ in range(STARTS)]
    ours, theirs = (median(column) for column in zip(*pairs))
    print(f"First frame: {ours:.0f} ms, a bare window {theirs:.0f} ms, ratio {ours / theirs:.2f}")
    still = share_left_alone(app, home, TIDEWRIGHT_REDUCE_MOTION="1")
    print(f"Left alone, motion reduced: {still:.1f} % of a core over {SECONDS_LEFT_ALONE} s")
    moving = share_left_alone(app, home)
    print(f"Left alone, the orb moving: {moving:.1f} % of a core over {SECONDS_LEFT_ALONE} s")


if __name__ == "__main__":
    main()
