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

        program.press("Map", "check box")
        program.wait_for("Map of JavaScript", "list")
        program.press("Map", "check box")
        program.wait_for("JavaScript", "list")

        program.press("Insights.*", "list item")
        program.wait_for("Insights", "heading")
        program.press("Apps & Files", "list item")
        program.wait_for("Tidewright never removes apps.*")
        program.press("Large Files")
        program.wait_for("Files over 1 GB in your folders.*")
        program.press("History", "list item")
        program.wait_for("No cleanups yet.*")

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
        program.press("History", "list item")
        program.wait_for(".* freed across 1 cleanups")
        program.wait_for(r".*, \d+ items cleaned", "list item")


if __name__ == "__main__":
    main()
