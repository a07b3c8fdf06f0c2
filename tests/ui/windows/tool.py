"""Drives the real program under Wine from outside, by control id and by keyboard: see driver/window_driver.cpp."""

import os
import re
import subprocess

from driven_tool import TABS, TIED, DrivenTool, mouse_place, xdotool
from waiting import wait_for

OUR_NUMBERS = range(1000, 1100)  # control ids that the tool's own windows have, and no message box
TOOL_TIP = "tooltips_class32"
BOX_BUTTONS = range(1, 10)
ABOUT = "About Configuration Tool"  # the one window of the tool's own that has nothing but such a button
ESCAPES = {"\\": "\\\\", "\t": "\\t", "\n": "\\n", "\r": "\\r"}
MEANT = {written: meant for meant, written in ESCAPES.items()}
WINDOW_FIELDS = 7
CONTROL_FIELDS = 9


class DriverEnded(Exception):
    """No answer comes any more."""


class Driver:
    """The program on the Windows side that speaks to windows: one line asked, one line answered."""

    def __init__(self, environment):
        self.process = self.started(environment)
        try:
            self.ask("foreground")
        except (DriverEnded, BrokenPipeError) as ended:  # before it began: see scripts/wine-start
            print(f"{ended}: once more")
            self.process = self.started(environment)

    @staticmethod
    def started(environment):
        return subprocess.Popen(
            [*TIED, os.environ["WINE"], os.environ["QLX_DRIVER"]],
            env=environment, stdin=subprocess.PIPE, stdout=subprocess.PIPE, encoding="utf-8")

    def ask(self, *command):
        """The fields of the answer. A window that is gone is a LookupError."""
        line = "\t".join(re.sub(r"[\\\t\n\r]", lambda found: ESCAPES[found.group()], str(field)) for field in command)
        self.process.stdin.write(line + "\n")
        self.process.stdin.flush()
        answer = self.process.stdout.readline()
        if not answer:
            raise DriverEnded(f"{command}: the driver has ended with {self.process.wait(timeout=5)}")
        verdict, *fields = answer.rstrip("\n").split("\t")
        fields = [re.sub(r"\\.", lambda found: MEANT[found.group()], field) for field in fields]
        if verdict == "ok":
            return fields
        raise LookupError(f"{command}: {fields}")

    def close(self):
        self.process.stdin.close()
        self.process.wait()
        self.process.stdout.close()


class Window:
    """A top-level window or a control, as it was when it was looked at."""

    def __init__(self, handle, kind, text, *bounds):
        self.handle, self.kind, self.text = int(handle), kind, text
        self.bounds = tuple(map(int, bounds))

    def __eq__(self, other):
        return self.handle == other.handle

    __hash__ = None


class Control(Window):
    def __init__(self, handle, number, kind, shown, text, *bounds):
        super().__init__(handle, kind, text, *bounds)
        self.number, self.shown = int(number), shown == "1"


def rows_of(fields, width):
    return [fields[start:start + width] for start in range(0, len(fields), width)]


def windows_path(path):
    """A path of this machine as the programs under Wine know it."""
    return "Z:" + path.replace("/", "\\")


class Tool(DrivenTool):
    """The running program. Controls are named by their numbers."""

    ALONE = {}  # a new prefix has no services of the suite

    def __init__(self, installation, environment=None, rights="elevated"):
        self.driver = Driver({**os.environ, **(environment or {})})
        self.ask = self.driver.ask
        self.ask("start", self.path_shown(installation.program), self.path_shown(installation.directory), rights)

    @staticmethod
    def path_shown(path):
        """How the program names a file."""
        return windows_path(path)

    def await_start(self):
        """Until the window can be used: while the printer is asked it takes no input."""
        self.main_window()
        wait_for(lambda: self.enabled(TABS), "the end of the time that the printer has to answer")

    # Windows

    def windows(self):
        return [Window(*row) for row in rows_of(self.ask("windows"), WINDOW_FIELDS)]

    def controls(self, window):
        return [Control(*row) for row in rows_of(self.ask("controls", window.handle), CONTROL_FIELDS)]

    def is_open(self, window):
        return window in self.windows()

    def window(self, title):
        return wait_for(
            lambda: next((w for w in self.windows() if w.text == title and not self.is_box(w)), None),
            f"window {title!r}")

    def window_bounds(self, title):
        return self.window(title).bounds

    def active_window(self, title):
        """A window once keys reach it."""
        window = self.window(title)
        wait_for(lambda: self.ask("foreground") == [str(window.handle)], f"window {title!r} to be active")
        return window

    def window_titles(self):
        return [window.text for window in self.windows()]

    def labels(self, title=None):
        """The texts that a window shows, or that all do."""
        windows = [self.window(title)] if title else self.windows()
        shown = [control for window in windows for control in self.controls(window) if control.shown]
        return [c.text.replace("&", "") if c.kind in ("Static", "Button") else c.text for c in shown]

    def is_box(self, window):
        numbers = [control.number for control in self.controls(window)]
        return window.text != ABOUT and any(n in BOX_BUTTONS for n in numbers) and not any(n in OUR_NUMBERS for n in numbers)

    def box(self):
        """The message box that is open."""
        return wait_for(lambda: next((w for w in self.windows() if self.is_box(w)), None), "a message box")

    def box_text(self):
        """The text of the open message box; the system's boxes part a text at its blank line."""
        box = self.box()

        def text():
            return "\n\n".join(c.text for c in self.controls(box) if c.kind == "Static" and c.shown and c.text)

        return wait_for(text, "the text of the box")

    def box_buttons(self):
        """The places of the open message box's buttons, by their texts."""
        controls = [control for control in self.controls(self.box()) if control.shown and control.kind == "Button"]
        return {control.text.replace("&", ""): control.bounds for control in controls}

    def under_a_tool_tip(self):
        x, y, _ = mouse_place()
        tips = [window.bounds for window in self.windows() if window.kind == TOOL_TIP]
        return any(left <= x < left + width and top <= y < top + height for left, top, width, height in tips)

    # Controls

    def find(self, number, hidden=False):
        """The handle of the control with this number, or None."""
        found = self.ask("find", number)
        return found[0] if found and (hidden or found[1] == "1") else None

    def bounds(self, number):
        return tuple(map(int, self.ask("bounds", self.control(number))))

    def name(self, number):
        """What a screen reader calls the control."""
        return self.ask("accessible", self.control(number))[0]

    def description(self, number):
        """What a screen reader says behind the control's name."""
        return self.ask("accessible", self.control(number))[1]

    def enabled(self, number, hidden=False):
        control = wait_for(lambda: self.find(number, hidden), f"control {number}")
        return self.ask("enabled", control) == ["1"]

    def checked(self, number):
        return self.ask("checked", self.control(number)) == ["1"]

    def focused(self, number):
        return self.ask("focused") == [self.control(number)]

    def focus(self, number):
        self.ask("focus", self.control(number))
        wait_for(lambda: self.focused(number), f"focus on {number}")

    def enter(self, number, text):
        """By mouse, which waits its turn behind the keys that another field still gets."""
        self.click_until(lambda: self.focused(number), lambda: self.bounds(number), f"focus on {number}")
        super().enter(number, text)

    def text(self, number):
        return self.ask("text", self.control(number))[0].replace("\r\n", "\n")

    def text_start(self, number, count):
        """The first characters, however long the whole is."""
        return self.ask("text-start", self.control(number), count)[0]

    def text_length(self, number):
        return int(self.ask("text-length", self.control(number))[0])

    def set_text(self, number, text):
        """Sets a field as automation does."""
        self.ask("set-text", self.control(number), text)

    def caret(self, number):
        return int(self.ask("caret", self.control(number))[0])

    def chosen(self, number):
        """The item that a drop-down list shows."""
        chosen, *items = self.ask("items", self.control(number))
        return items[int(chosen)] if int(chosen) >= 0 else None

    def items(self, number):
        """The items of a drop-down list."""
        return self.ask("items", self.control(number))[1:]

    def pick(self, number, item):
        """Chooses an item of a drop-down list as automation does."""
        self.ask("choose", self.control(number), self.items(number).index(item))
        wait_for(lambda: self.chosen(number) == item, f"list {number} to show {item!r}")

    # Tabs

    def tabs(self):
        return self.ask("tabs", self.control(TABS))[1:]

    def current_tab(self):
        return self.tabs()[int(self.ask("tabs", self.control(TABS))[0])]

    def tab(self, name):
        """Brings a tab page to the front."""
        self.ask("tab", self.control(TABS), self.tabs().index(name))
        wait_for(lambda: self.current_tab() == name, f"tab {name!r}")

    # Lists

    def table(self, number):
        selected, columns, *texts = self.ask("rows", self.control(number))
        return int(selected), rows_of(texts, int(columns))

    def columns(self, number):
        """The titles of a list's columns."""
        return self.table(number)[1][0]

    def rows(self, number):
        """The texts of a list, row by row."""
        return self.table(number)[1][1:]

    def cell_bounds(self, number, row):
        return tuple(map(int, self.ask("cell", self.control(number), row)))

    def selected_row(self, number):
        selected = self.table(number)[0]
        return selected if selected >= 0 else None

    # The end

    def running(self):
        return not self.ask("exit-code")

    def threads(self):
        return int(self.ask("threads")[0])

    def wait(self):
        """The exit code, once the program has ended by itself."""
        return int(wait_for(lambda: self.ask("exit-code"), "the program to end")[0])

    def kill(self):
        if self.driver.process.poll() is None:
            self.ask("kill")
            self.driver.close()
