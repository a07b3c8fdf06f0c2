"""A hand that clicks and types at random, mostly where there is something to click."""
import itertools
import time

import pyatspi

from simulated_suite import await_condition
from watched_program import TITLE, xdotool

LOOK_EVERY = 3  # seconds between two looks at what can be clicked
MOST_STEPS = 8  # of one go
SCREEN = (1280, 1024)  # of scripts/private-display
ROLES = {"push button", "check box", "text", "combo box", "page tab", "table cell", "list item", "menu item", "toggle button"}
CLOSING = {"OK", "Cancel", "Close"}
KEYS = ("Tab", "Tab", "shift+Tab", "Return", "space", "Up", "Down", "Left", "Right", "Home", "End", "Prior", "Next",
        "BackSpace", "Delete", "ctrl+a", "ctrl+c", "ctrl+x", "ctrl+v", "ctrl+z", "ctrl+Next", "ctrl+Prior", "F1", "F4",
        "F10", "alt+a", "alt+d", "alt+c", "alt+Down", "Menu")
TEXTS = ("0", "1", "9", "F", "c", "%", "<&>", "COM9", "99999", "true", "/etc/passwd", "00 11", "\u00e9", "z" * 40)


def descendants(accessible):
    for index in range(accessible.childCount):
        child = accessible.getChildAtIndex(index)
        if child is not None and child.getState().contains(pyatspi.STATE_SHOWING):
            yield child
            yield from descendants(child)


class RandomHand:
    def __init__(self, program, choice):
        self.program = program
        self.choice = choice
        self.places = []
        self.titles = []
        self.next_look = 0
        self.steps = 0

    def _windows(self):
        desktop = pyatspi.Registry.getDesktop(0)
        applications = (desktop.getChildAtIndex(index) for index in range(desktop.childCount))
        pid = self.program.process.pid
        application = next((one for one in applications if one is not None and one.get_process_id() == pid), None)
        return [] if application is None else [application.getChildAtIndex(i) for i in range(application.childCount)]

    def _visible_places(self):
        """The middles of what can be clicked; the main window's closing buttons only now and then."""
        for window in self._windows():
            main = window.name == TITLE
            for control in descendants(window):
                if control.getRoleName() not in ROLES:
                    continue
                if main and control.name in CLOSING and self.choice.random() < 0.95:
                    continue
                area = control.queryComponent().getExtents(pyatspi.DESKTOP_COORDS)
                yield area.x + area.width // 2, area.y + area.height // 2

    def _look(self):
        try:
            self.places = list(self._visible_places())
        except Exception:  # pylint: disable=broad-except
            self.places = []  # a control went while it was looked at
        self.next_look = time.monotonic() + LOOK_EVERY

    def await_answer(self):
        """Until the program tells what there is to click."""
        def answered():
            self._look()
            return self.places

        await_condition(answered, "answer from the program")

    def _click(self):
        anywhere = not self.places or self.choice.random() < 0.2
        place = [self.choice.randrange(size) for size in SCREEN] if anywhere else self.choice.choice(self.places)
        button = self.choice.choices((1, 3), (20, 1))[0]
        return ["mousemove", *place, "click", "--repeat", self.choice.choice((1, 1, 1, 2)), button]

    def _key(self):
        # In the main window alone it would end the program all the time.
        escapes = ["Escape"] * 3 if len(self.titles) > 1 else []
        return ["key", self.choice.choice([*KEYS, *escapes])]

    def _type(self):
        return ["type", "--delay", 0, "--args", 1, self.choice.choice(TEXTS)]

    def go(self):
        """A few clicks and keys, as fast as they are taken."""
        self.titles = self.program.titles()
        if time.monotonic() >= self.next_look:
            self._look()
        kinds = self.choice.choices((self._click, self._key, self._type), (6, 3, 1), k=self.choice.randint(1, MOST_STEPS))
        self.steps += len(kinds)
        xdotool(*itertools.chain.from_iterable(kind() for kind in kinds))
