"""A day with the program: opened at login, watched and notified, cleaned from its panel, looked up,
and told what to leave alone; all by what the argument names: reader, mouse or keyboard."""

import json
import os
import pathlib
import re
import shlex
import subprocess
import sys
import time

import pyatspi

from desktop import Helper, NO_TRAY, PROGRAMS, Program, expect, fail, key, output_of

HAND = sys.argv[1]
HERE = pathlib.Path(__file__).parent
HOME = pathlib.Path(os.environ["HOME"])
AUTOSTART = HOME / ".config/autostart"
MAIN_WINDOW = "Sidebar"


def setting(key, *value):
    command = [PROGRAMS / "tidewright", "settings", key, *value]
    return subprocess.run(command, check=True, stdout=subprocess.PIPE, text=True).stdout.strip()


def login_command():
    """What the desktop runs at login, by the entry that the program has made."""
    entries = list(AUTOSTART.glob("*.desktop"))
    found = entries and re.search(r"^Exec=(.*)$", entries[0].read_text(encoding="utf-8"), re.M)
    return found and shlex.split(found[1].replace("%%", "%"))


def open_settings(program):
    program.wait_for(MAIN_WINDOW)
    if HAND == "keyboard":
        key("ctrl+comma")
    else:
        program.press("Settings…", "push button")
    program.wait_for("Open at login")


def open_tab(program, name):
    if HAND != "keyboard":
        program.press(name, "page tab")
        return
    for _ in range(3):
        if program.wait_for(name, "page tab").getState().contains(pyatspi.STATE_SELECTED):
            return
        key("ctrl+Tab")
        time.sleep(0.3)
    fail(f"the keyboard does not open {name}")


def open_history(program):
    if HAND != "keyboard":
        program.press("History", "list item")
        return
    program.focus("Overview", "list item")
    for _ in range(20):
        if program.shows("History", "heading"):
            return
        key("Down")
        time.sleep(0.3)
    fail("the keyboard does not reach the history")


def turn_on_login():
    print("== Evening before: open at login")
    with Program(may_say=NO_TRAY, hand=HAND) as program:
        open_settings(program)
        program.press("Open at login")
        expect("an autostart entry is there", login_command)
        program.press("Show free space next to the menu bar icon")
        expect("the command line knows", lambda: setting("showFreeSpaceInMenuBar") == "yes")
        program.process.terminate()


def report():
    return json.loads(output_of(str(PROGRAMS / "tidewright"), "scan", "--json"))


def day(kept):
    print("== Morning: the login starts it, and the disk is low")
    setting("lowSpaceGB", "1000000")
    setting("criticalSpaceGB", "1")
    command = login_command()
    if command[0] != str(PROGRAMS / "tidewright-app"):
        fail(f"the login starts {command}")
    with Helper(sys.executable, str(HERE / "notifier_host.py")) as panel, \
            Helper(sys.executable, str(HERE / "desktop_services.py"), str(kept)) as services:
        expect("the desktop is there", lambda: "ready" in panel.lines() + services.lines())
        with Program(hand=HAND) as program:
            expect("the user is notified",
                   lambda: "notified: Free space is getting low" in services.lines())
            expect("the pill says so", lambda: any(
                re.search(r'"Tidewright, Low space, [\d.]+ GB free"', line)
                for line in panel.lines()))

            print("== Noon: from the panel to the results")
            program.wait_for(MAIN_WINDOW)
            panel.tell("Activate")
            program.press("Scan Now", "push button")
            program.press(r"Review \d.*", "push button")
            program.wait_for("Review cleanup")
            program.press(r"Clean \d.*", "push button")
            program.wait_for(r"Freed (?!so far).*", "heading")
            program.press("Done", "push button")
            program.goes("Done", "push button")
            open_history(program)
            program.wait_for(r".* items cleaned.*")

            print("== Afternoon: thresholds and what to leave alone")
            open_settings(program)
            open_tab(program, "Thresholds")
            program.increase("Critical below 1 GB free")
            program.wait_for("Critical below 2 GB free", "spin button")
            if setting("criticalSpaceGB") != "2":
                fail("the command line does not see the new threshold")
            open_tab(program, "Locations")
            program.press("Add Folder…", "push button", "Never touch")
            program.wait_for(re.escape(f"Remove {kept}"), "push button")

            if [each for each in services.lines() if "notified" in each] != [
                    "notified: Free space is getting low"]:
                fail(f"the user was notified too often: {services.lines()}")
            program.process.terminate()

    print("== Next day: it is kept")
    there = [item for item in report()["items"]
             if any(each.startswith(f"{kept}/") for each in item["urls"])]
    if not there or any(item["decision"] != "keep" for item in there):
        fail(f"not all of {there} is kept")
    with Program(may_say=NO_TRAY, hand=HAND) as program:
        open_settings(program)
        open_tab(program, "Locations")
        program.wait_for(re.escape(f"Remove {kept}"), "push button")


def main():
    os.environ["NO_AT_BRIDGE"] = "1"  # for the desktop's other programs
    turn_on_login()
    found = [item for item in report()["items"] if item["decision"] == "ask" and item["urls"]]
    if not found:
        fail("the sample home has nothing that is asked about")
    day(pathlib.Path(found[0]["urls"][0]).parent)


if __name__ == "__main__":
    main()
