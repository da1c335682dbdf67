"""Goes from the start to "Done" by accessible names, as a screen reader does."""

import re

import pyatspi

from desktop import NO_TRAY, PATIENCE, Program, fail, within


def main():
    with Program(may_say=NO_TRAY) as program:
        program.wait_for(r"Disk \d+ percent full, (Healthy|Low space|Almost full)")
        program.wait_for("Step 1 Learns your projects")
        program.press("Scan My Mac", "push button")
        program.wait_for("What needs attention")

        program.press(r"JavaScript, .*", "list item")
        box = program.wait_for(r"Clean .*", "check box")
        before = box.getState().contains(pyatspi.STATE_CHECKED)
        for expected in (not before, before):
            program.act(re.escape(box.name), ("toggle", "press"), "check box")
            if not within(PATIENCE,
                          lambda: box.getState().contains(pyatspi.STATE_CHECKED) == expected):
                fail(f"{box.name!r} does not follow its action")

        program.press("About Tidewright", "push button")
        program.wait_for(r"Version \d+\.\d+\.\d+")
        program.press("Close", "push button")

        program.press("Overview", "list item")
        program.press(r"Review & Clean .*", "push button")
        program.wait_for("Review cleanup")
        program.press("Cancel", "push button")
        program.press(r"Review & Clean .*", "push button")
        program.press(r"Clean \d.*", "push button")
        program.wait_for(r"Freed (?!so far).*", "heading")
        program.wait_for("Toolchain check")
        program.press("Done", "push button")
        program.wait_for("Scan Again", "push button")
        program.wait_for("Freed so far .*")


if __name__ == "__main__":
    main()
