"""What the tests on a desktop share: the program as a screen reader knows it, and its processes."""

import os
import pathlib
import re
import subprocess
import time

import gi

gi.require_version("Atspi", "2.0")
import pyatspi  # noqa: E402

# In seconds; long, for a machine that has much else to do.
PATIENCE = int(os.environ.get("PATIENCE", "120"))

# What the program says on a desktop that has none.
NO_TRAY = "no system tray"

PROGRAMS = pathlib.Path(os.environ["PROGRAMS"])
WORK = pathlib.Path(os.environ["WORK"])


def fail(sentence):
    raise SystemExit(f"FAILED: {sentence}")


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


def expect(sentence, ask):
    """Fails unless `ask` answers something before long."""
    answer = within(PATIENCE, ask)
    if not answer:
        fail(sentence)
    print("ok:", sentence)
    return answer


def output_of(*command):
    """What the command prints; nothing where it fails."""
    return subprocess.run(command, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, text=True,
                          check=False, timeout=PATIENCE).stdout.strip()


def descendants(node, depth=0):
    yield node
    if depth < 40:
        for index in range(node.childCount):
            child = node.getChildAtIndex(index)
            if child is not None:
                yield from descendants(child, depth + 1)


def showing(node):
    return node.getState().contains(pyatspi.STATE_SHOWING)


class Helper:
    """Another process of the desktop, which ends with the test, and can be told lines."""

    def __init__(self, *command):
        self.name = os.path.basename(command[-1] if command[0].endswith("python3") else command[0])
        self.log = WORK / f"{self.name}.log"
        with open(self.log, "w", encoding="utf-8") as log:
            # pylint: disable-next=consider-using-with
            self.process = subprocess.Popen(command, stdin=subprocess.PIPE, stdout=log, stderr=log,
                                            text=True)

    def lines(self):
        return self.log.read_text(encoding="utf-8").splitlines()

    def tell(self, line):
        self.process.stdin.write(line + "\n")
        self.process.stdin.flush()

    def stop(self):
        self.process.terminate()
        self.process.wait(PATIENCE)

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.stop()


def key(*names):
    output_of("xdotool", "key", *names)


def click(x, y):
    output_of("xdotool", "mousemove", str(x), str(y), "click", "1")


class Program:
    """A run of the window's program; what it writes to standard error is an error of the test,
    but for lines that `may_say` matches. `hand` is what its controls are pressed by: "reader",
    "mouse" or "keyboard"."""

    runs = 0

    def __init__(self, *arguments, may_say=None, hand="reader"):
        Program.runs += 1
        self.may_say = may_say
        self.hand = hand
        self.log = WORK / f"program-{Program.runs}.log"
        with open(self.log, "w", encoding="utf-8") as log:
            # pylint: disable-next=consider-using-with
            self.process = subprocess.Popen([PROGRAMS / "tidewright-app", *arguments], stderr=log)

    def says(self, pattern):
        return re.search(pattern, self.log.read_text(encoding="utf-8"))

    def is_running(self):
        return self.process.poll() is None

    def ends(self):
        expect("the program ends", lambda: not self.is_running())
        if self.process.returncode != 0:
            fail(f"it ends with {self.process.returncode}")

    def _accessible(self):
        desktop = pyatspi.Registry.getDesktop(0)
        return next((each for each in desktop if each is not None and each.childCount > 0
                     and each.get_process_id() == self.process.pid), None)

    def _find(self, pattern, role=None, description=None):
        program = self._accessible()
        return program and next((each for each in descendants(program)
                                 if re.fullmatch(pattern, each.name or "")
                                 and role in (None, each.getRoleName())
                                 and description in (None, each.description)
                                 and showing(each)), None)

    def shows(self, pattern, role=None):
        try:
            return self._find(pattern, role) is not None
        except (gi.repository.GLib.GError, LookupError):
            return False

    def wait_for(self, pattern, role=None, description=None):
        found = within(PATIENCE, lambda: self._find(pattern, role, description))
        if found is None:
            print("What there was:")
            program = self._accessible()
            for each in descendants(program) if program else []:
                if each.name and showing(each):
                    print("  ", each.getRoleName(), repr(each.name))
            fail(f"nothing is named {pattern!r}")
        print("ok:", found.getRoleName(), repr(found.name))
        return found

    def goes(self, pattern, role=None):
        expect(f"{pattern!r} goes", lambda: not self.shows(pattern, role))

    def act(self, pattern, names, role=None, description=None):
        node = self.wait_for(pattern, role, description)
        within(PATIENCE, lambda: node.getState().contains(pyatspi.STATE_ENABLED))
        action = node.queryAction()
        known = [action.getName(index).lower() for index in range(action.nActions)]
        for name in names:
            if name in known:
                action.doAction(known.index(name))
                return node
        return fail(f"{pattern!r} can only {known}")

    def press(self, pattern, role=None, description=None):
        if self.hand == "reader":
            self.act(pattern, ("press",), role, description)
        elif self.hand == "mouse":
            self._click(self.wait_for(pattern, role, description))
        else:
            node = self.focus(pattern, role, description)
            key("space" if node.getRoleName() == "check box" else "Return")

    def increase(self, pattern):
        """The number that is set by steps, by one."""
        if self.hand == "reader":
            self.act(pattern, ("increase",), "spin button")
        elif self.hand == "mouse":
            self._click(self.wait_for(pattern, "spin button"), across=0.75)
        else:
            self.focus(pattern, "spin button")
            key("Up")

    @staticmethod
    def _click(node, across=0.5):
        place = node.queryComponent().getExtents(pyatspi.DESKTOP_COORDS)
        click(place.x + int(place.width * across), place.y + place.height // 2)

    def focus(self, pattern, role=None, description=None):
        """Brings the keyboard there, as a person does who has no mouse."""
        for _ in range(60):
            node = self.wait_for(pattern, role, description)
            if node.getState().contains(pyatspi.STATE_FOCUSED):
                return node
            key("Tab")
            time.sleep(0.1)
        return fail(f"the keyboard does not reach {pattern!r}")

    def __enter__(self):
        return self

    def __exit__(self, kind, *_):
        if self.is_running():
            self.process.terminate()
            self.process.wait(PATIENCE)
        said = [line for line in self.log.read_text(encoding="utf-8").splitlines()
                if not (self.may_say and re.search(self.may_say, line))]
        if said:
            print("The program has warned:", *said, sep="\n")
            if kind is None:
                fail("the program has warned")
