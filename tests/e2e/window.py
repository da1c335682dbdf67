"""Goes from the start to "Done" by accessible names: what window.sh starts is driven here."""

import re
import sys
import time

import gi

gi.require_version("Atspi", "2.0")
import pyatspi  # noqa: E402

PATIENCE = 120  # seconds, for a machine that has much else to do


def within(seconds, ask):
    """What `ask` answers as soon as that is something; None when the time is over."""
    end = time.monotonic() + seconds
    while time.monotonic() < end:
        try:
            answer = ask()
        except (gi.repository.GLib.GError, LookupError):
            answer = None  # it went while it was looked at
        if answer:
            return answer
        time.sleep(0.1)
    return None


def descendants(node, depth=0):
    yield node
    if depth < 40:
        for index in range(node.childCount):
            child = node.getChildAtIndex(index)
            if child is not None:
                yield from descendants(child, depth + 1)


def showing(node):
    return node.getState().contains(pyatspi.STATE_SHOWING)


class Window:
    def __init__(self):
        self.program = within(PATIENCE, self._program)
        if self.program is None:
            raise SystemExit("FAILED: the program is not on the accessibility bus")

    @staticmethod
    def _program():
        desktop = pyatspi.Registry.getDesktop(0)
        return next((each for each in desktop if each is not None
                     and each.name in ("tidewright-app", "Tidewright") and each.childCount > 0), None)

    def _find(self, pattern, role):
        return next((each for each in descendants(self.program)
                     if re.fullmatch(pattern, each.name or "")
                     and (role is None or each.getRoleName() == role) and showing(each)), None)

    def wait_for(self, pattern, role=None):
        found = within(PATIENCE, lambda: self._find(pattern, role))
        if found is None:
            print("What there was:")
            for each in descendants(self.program):
                if each.name and showing(each):
                    print("  ", each.getRoleName(), repr(each.name))
            raise SystemExit(f"FAILED: nothing is named {pattern!r}")
        print("ok:", found.getRoleName(), repr(found.name))
        return found

    def act(self, pattern, names, role=None):
        node = self.wait_for(pattern, role)
        within(PATIENCE, lambda: node.getState().contains(pyatspi.STATE_ENABLED))
        action = node.queryAction()
        known = [action.getName(index).lower() for index in range(action.nActions)]
        for name in names:
            if name in known:
                action.doAction(known.index(name))
                return node
        raise SystemExit(f"FAILED: {pattern!r} can only {known}")

    def press(self, pattern, role=None):
        return self.act(pattern, ("press",), role)


def main():
    window = Window()
    window.wait_for(r"Disk \d+ percent full, (Healthy|Low space|Almost full)")
    window.wait_for("Step 1 Learns your projects")
    window.press("Scan My Mac", "push button")
    window.wait_for("What needs attention")

    window.press(r"JavaScript, .*", "list item")
    box = window.wait_for(r"Clean .*", "check box")
    before = box.getState().contains(pyatspi.STATE_CHECKED)
    for expected in (not before, before):
        window.act(re.escape(box.name), ("toggle", "press"), "check box")
        if not within(PATIENCE, lambda: box.getState().contains(pyatspi.STATE_CHECKED) == expected):
            raise SystemExit(f"FAILED: {box.name!r} does not follow its action")

    window.press("About Tidewright", "push button")
    window.wait_for(r"Version \d+\.\d+\.\d+")
    window.press("Close", "push button")

    window.press("Overview", "list item")
    window.press(r"Review & Clean .*", "push button")
    window.wait_for("Review cleanup")
    window.press("Cancel", "push button")
    window.press(r"Review & Clean .*", "push button")
    window.press(r"Clean \d.*", "push button")
    window.wait_for(r"Freed (?!so far).*", "heading")
    window.wait_for("Toolchain check")
    window.press("Done", "push button")
    window.wait_for("Scan Again", "push button")
    window.wait_for("Freed so far .*")


if __name__ == "__main__":
    main()
    sys.exit(0)
