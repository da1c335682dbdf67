"""The status item: in a system tray of X, at a StatusNotifier host, and where there is neither; and
a second start of the program."""

import json
import os
import pathlib
import re
import subprocess
import sys
import time

from desktop import Helper, NO_TRAY, PROGRAMS, Program, click, expect, fail, key, output_of

HERE = pathlib.Path(__file__).parent
PILL = r"Tidewright, (Healthy|Low space|Almost full)(, \d+(\.\d)? GB free)?"
PANEL = "Open Tidewright"  # stands in the panel alone
MAIN_WINDOW = "Sidebar"


def place_of(window):
    return {name: int(number) for name, _, number in (
        line.partition("=") for line in output_of(
            "xdotool", "getwindowgeometry", "--shell", window).splitlines()) if number.isdigit()}


def main_window():
    """Where it is shown; the panel has its name, but not its size."""
    shown = output_of("xdotool", "search", "--onlyvisible", "--name", "^Tidewright$").splitlines()
    return next((each for each in shown if place_of(each).get("WIDTH", 0) > 600), None)


def close_main_window(program):
    """As the window manager does when its button is pressed."""
    window = expect("the main window is there", main_window)
    output_of("xdotool", "windowactivate", "--sync", window, "key", "alt+F4")
    program.goes(MAIN_WINDOW)


def main_window_is_in_front():
    window = main_window()
    return window and window == output_of("xdotool", "getactivewindow")


def active_window():
    return output_of("xdotool", "getactivewindow", "getwindowname")


def icon_of(program):
    """The middle of the item in a tray of X, once it is there."""
    windows = output_of("xdotool", "search", "--pid", str(program.process.pid)).splitlines()
    for window in windows:
        # Qt adds the program's name to a title.
        if re.fullmatch(f"{PILL} — Tidewright", output_of("xdotool", "getwindowname", window)):
            place = place_of(window)
            return place["X"] + place["WIDTH"] // 2, place["Y"] + place["HEIGHT"] // 2
    return None


def uses_panel(program, press_item):
    """What a person does with the item, whichever kind it is."""
    program.wait_for(MAIN_WINDOW)
    close_main_window(program)
    time.sleep(1)
    if not program.is_running():
        fail("the program has ended although its item is there")

    press_item()
    program.wait_for(PANEL, "push button")
    expect("the panel is the active window", lambda: active_window() == "Tidewright")
    key("Escape")
    program.goes(PANEL, "push button")

    press_item()
    program.wait_for(PANEL, "push button")
    with Helper("/usr/bin/xmessage", "-name", "elsewhere", "elsewhere"):
        program.goes(PANEL, "push button")  # another window has taken the activation
    time.sleep(0.5)  # a click that took it would not open the panel again

    press_item()
    program.press(PANEL, "push button")
    program.wait_for(MAIN_WINDOW)
    program.goes(PANEL, "push button")
    expect("the main window is in front", main_window_is_in_front)


def second_start(program):
    close_main_window(program)
    with Helper("/usr/bin/xmessage", "-title", "Other", "in front"):
        expect("another program is in front", lambda: active_window() == "Other")
        started = subprocess.run([PROGRAMS / "tidewright-app"], check=False, timeout=60)
        if started.returncode != 0:
            fail(f"the second start ends with {started.returncode}")
        program.wait_for(MAIN_WINDOW)
        expect("the first one's window has come to the front", main_window_is_in_front)


def tray_of_x():
    print("== A system tray of X")
    with Program() as program:
        program.wait_for(MAIN_WINDOW)
        with Helper("trayer", "--edge", "top", "--align", "right", "--height", "24",
                    "--widthtype", "request"):
            expect("the item comes with the tray", lambda: icon_of(program))
            uses_panel(program, lambda: click(*icon_of(program)))
            second_start(program)
            close_main_window(program)
            click(*icon_of(program))
            program.press("Quit Tidewright", "push button")
            program.ends()


def notifier_host():
    print("== A StatusNotifier host")
    with Program(may_say=NO_TRAY) as program:  # when the host has gone
        program.wait_for(MAIN_WINDOW)
        with Helper(sys.executable, str(HERE / "notifier_host.py")) as host:
            def last():
                told = [line for line in host.lines() if line.startswith("{")]
                return json.loads(told[-1]) if told else None

            expect("the item comes with the host", last)
            expect("it has the program's name", lambda: last()["title"] == "Tidewright")
            expect("its tip says it all", lambda: re.fullmatch(PILL, last()["toolTip"]))
            expect("it has pictures", lambda: [22, 22] in last()["sizes"])
            uses_panel(program, lambda: host.tell("Activate"))
        close_main_window(program)
        program.ends()  # the host has gone


def no_tray():
    print("== No tray")
    with Program(may_say=NO_TRAY) as program:
        program.wait_for(MAIN_WINDOW)
        close_main_window(program)
        program.ends()
        if len(re.findall(NO_TRAY, program.log.read_text(encoding="utf-8"))) != 1:
            fail("the log does not say once that there is no tray")


if __name__ == "__main__":
    os.environ["NO_AT_BRIDGE"] = "1"  # for the desktop's other programs
    no_tray()
    tray_of_x()
    notifier_host()
