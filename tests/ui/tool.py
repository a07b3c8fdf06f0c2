"""Drives the real program from outside, as a person or a screen reader would: by accessible id and by keyboard."""

import os
import re
import shutil
import signal
import subprocess
import tempfile
import time
import xml.etree.ElementTree as ElementTree

import pyatspi

LIMIT = int(os.environ.get("QLX_UI_LIMIT", "30"))  # seconds that any single expectation may take

# What a test starts ends with it, also when the test itself is killed.
TIED = [shutil.which("setpriv"), "--pdeathsig", "TERM", "--"]


class Timeout(AssertionError):
    """An expectation was not met within LIMIT."""


def wait_for(condition, what):
    """Returns the first true value of condition(); a control that vanishes while it is read counts as false."""
    deadline = time.monotonic() + LIMIT
    while True:
        try:
            value = condition()
        except Exception as error:  # pylint: disable=broad-except
            if not vanished(error):
                raise
            value = None
        if value:
            return value
        if time.monotonic() > deadline:
            raise Timeout(what)
        time.sleep(0.02)


def vanished(error):
    """True for the errors with which the accessibility bus answers about a control that is gone."""
    return type(error).__module__.startswith(("gi", "pyatspi")) or isinstance(error, (AttributeError, LookupError))


def descendants(accessible):
    """The whole tree below accessible, parents first."""
    for index in range(accessible.childCount):
        child = accessible.getChildAtIndex(index)
        if child is not None:
            yield child
            yield from descendants(child)


def states(accessible):
    return accessible.getState().getStates()


def showing(accessible):
    return pyatspi.STATE_SHOWING in states(accessible)


def target(link):
    """What a link points to; nothing once it is gone."""
    try:
        return os.readlink(link)
    except FileNotFoundError:
        return ""


class Installation:
    """A directory with the program and its configuration file, gone when closed."""

    def __init__(self, program):
        self.directory = tempfile.mkdtemp(prefix="qlx-ui-")
        self.program = os.path.join(self.directory, "QLXConfig")
        self.file = os.path.join(self.directory, "QLXConfig.xml")
        shutil.copy(program, self.program)

    def close(self):
        shutil.rmtree(self.directory, ignore_errors=True)

    def write(self, text):
        with open(self.file, "w", encoding="utf-8") as file:
            file.write(text)

    def bytes(self):
        with open(self.file, "rb") as file:
            return file.read()

    def section(self, name):
        """The keys and texts of a section, in document order."""
        section = ElementTree.parse(self.file).getroot().find(name)
        return {child.tag: child.text or "" for child in section}


class Tool:
    """The running program. Controls are named by their numbers."""

    def __init__(self, installation, environment=None):
        environment = {**os.environ, **(environment or {})}
        self.printer_link = self._printer_link(installation.directory, environment.get("QUILLON_PORT_DIR"))
        self.process = subprocess.Popen(
            [*TIED, installation.program],
            cwd=installation.directory,
            env=environment,
            stdin=subprocess.DEVNULL,
        )

    @staticmethod
    def _printer_link(directory, ports):
        """The link to the port that the program, which reads it when it starts, has for the printer; or None."""
        file = os.path.join(directory, "QLXConfig.xml")
        if ports is None or not os.path.isfile(file):
            return None
        with open(file, "rb") as opened:
            port = re.search(rb"<PRINTER_USB[^>]*>(COM\d+)<", opened.read())
        return os.path.join(ports, "MZP_" + port.group(1).decode()) if port else None

    # The printer

    def has_printer_open(self):
        tty = os.path.realpath(self.printer_link)
        folder = f"/proc/{self.process.pid}/fd"
        return tty in [target(os.path.join(folder, descriptor)) for descriptor in os.listdir(folder)]

    def await_printer(self):
        """Until the printer has been asked: the window takes no input from the moment that the port opens."""
        wait_for(self.has_printer_open, "the printer's port to be opened")
        wait_for(lambda: self.enabled(1000), "the end of the time that the printer has to answer")

    # Windows

    def application(self):
        desktop = pyatspi.Registry.getDesktop(0)
        for index in range(desktop.childCount):
            application = desktop.getChildAtIndex(index)
            if application is not None and application.get_process_id() == self.process.pid:
                return application
        return None

    def windows(self):
        application = self.application()
        if application is None:
            return []
        children = [application.getChildAtIndex(i) for i in range(application.childCount)]
        return [window for window in children if window is not None and showing(window)]

    def window(self, title):
        return wait_for(
            lambda: next((w for w in self.windows() if w.name == title and w.getRoleName() != "alert"), None),
            f"window {title!r}",
        )

    def active_window(self, title):
        """A window once keys reach it: without a window manager they go where the mouse is."""
        window = self.window(title)
        extents = window.queryComponent().getExtents(pyatspi.DESKTOP_COORDS)
        xdotool("mousemove", extents.x + extents.width // 2, extents.y + extents.height // 2)
        wait_for(lambda: pyatspi.STATE_ACTIVE in states(window), f"window {title!r} to be active")
        return window

    def main_window(self):
        return self.active_window("Quillon Configuration Tool")

    def window_titles(self):
        """The titles of the program's windows; for a message box the accessibility tree does not tell it."""
        found = subprocess.run(
            ["xdotool", "search", "--onlyvisible", "--pid", str(self.process.pid), "--name", "", "getwindowname", "%@"],
            capture_output=True, text=True, check=False)
        return found.stdout.splitlines()

    def box(self):
        """The message box that is open."""
        return wait_for(lambda: next((w for w in self.windows() if w.getRoleName() == "alert"), None), "a message box")

    def box_text(self):
        """The text of the open message box, its lines joined as they stand."""
        box = self.box()

        def text():
            labels = [c.name for c in descendants(box) if c.getRoleName() == "label" and c.name]
            return "\n".join(labels)

        return wait_for(text, "the text of the box")

    def answer(self, button, text=None):
        """Checks the open box's text, presses its button by mouse and waits until the box is gone."""
        box = self.box()
        if text is not None and self.box_text() != text:
            raise AssertionError(f"the box says {self.box_text()!r}, not {text!r}")
        control = wait_for(
            lambda: next((c for c in descendants(box) if c.getRoleName() == "push button" and c.name == button), None),
            f"button {button!r}",
        )
        clicked = 0

        def closed():
            nonlocal clicked
            if not any(w.getRoleName() == "alert" and w == box for w in self.windows()):
                return True
            if time.monotonic() > clicked + 1:  # a window manager may have moved the box under the mouse
                self.click_on(control)
                clicked = time.monotonic()
            return False

        wait_for(closed, "the box to close")

    # Controls

    def find(self, number, hidden=False):
        """The control with this number, or None."""
        for window in self.windows():
            for control in descendants(window):
                if control.get_accessible_id() == str(number) and (hidden or showing(control)):
                    return control
        return None

    def control(self, number):
        return wait_for(lambda: self.find(number), f"control {number}")

    def enabled(self, number):
        return pyatspi.STATE_SENSITIVE in states(self.control(number))

    def checked(self, number):
        return pyatspi.STATE_CHECKED in states(self.control(number))

    def focused(self, number):
        return pyatspi.STATE_FOCUSED in states(self.control(number))

    def text(self, number):
        return self.control(number).queryText().getText(0, -1)

    def caret(self, number):
        return self.control(number).queryText().caretOffset

    def chosen(self, number):
        """The item that a drop-down list shows."""
        selection = self.control(number).querySelection()
        return selection.getSelectedChild(0).name if selection.nSelectedChildren else None

    def click_on(self, accessible):
        extents = accessible.queryComponent().getExtents(pyatspi.DESKTOP_COORDS)
        x, y = extents.x + extents.width // 2, extents.y + extents.height // 2
        xdotool("mousemove", x, y, "click", 1)

    def click(self, number):
        self.click_on(self.control(number))

    def check(self, number, value):
        """Clicks a check box unless it is as wanted, and waits until it is."""
        if self.checked(number) != value:
            self.click(number)
        wait_for(lambda: self.checked(number) == value, f"check box {number} to become {value}")

    def focus(self, number):
        self.control(number).queryComponent().grabFocus()
        wait_for(lambda: self.focused(number), f"focus on {number}")

    def enter(self, number, text):
        """Replaces a field's text by typing."""
        self.focus(number)
        xdotool("key", "ctrl+a", "key", "Delete")
        wait_for(lambda: self.text(number) == "", f"field {number} to become empty")
        self.type(text)

    def choose(self, number, item, before):
        """Chooses an item of a drop-down list by keyboard, coming from the control that precedes it: the list
        itself tells nobody that it has the focus."""
        self.focus(before)
        xdotool("key", "Tab")
        wait_for(lambda: not self.focused(before), f"the focus to leave {before}")
        for _ in range(20):
            if self.chosen(number) == item:
                return
            last = self.chosen(number)
            xdotool("key", "Down")
            wait_for(lambda last=last: self.chosen(number) != last, f"list {number} to move on from {last!r}")
        raise AssertionError(f"list {number} has no item {item!r}")

    def pick(self, number, item):
        """Chooses an item of a drop-down list as a screen reader does."""
        items = [c for c in descendants(self.control(number)) if c.getRoleName() == "menu item" and c.name == item]
        if not items:
            raise AssertionError(f"list {number} has no item {item!r}")
        items[0].queryAction().doAction(0)
        wait_for(lambda: self.chosen(number) == item, f"list {number} to show {item!r}")

    def items(self, number):
        """The items of a drop-down list."""
        return [c.name for c in descendants(self.control(number)) if c.getRoleName() == "menu item"]

    # Lists

    def rows(self, number):
        """The texts of a list, row by row."""

        def text(cell):
            cell.clearCache()  # the bus tells of changed names only to those who listen all the time
            return cell.name

        table = self.control(number).queryTable()
        columns = range(table.nColumns)
        return [[text(table.getAccessibleAt(row, column)) for column in columns] for row in range(table.nRows)]

    def cell(self, number, row):
        return self.control(number).queryTable().getAccessibleAt(row, 0)

    def select(self, number, row):
        """Clicks on a row and waits until it is the selected one."""
        self.click_on(self.cell(number, row))
        wait_for(lambda: pyatspi.STATE_SELECTED in states(self.cell(number, row)), f"row {row} to be selected")

    def double_click(self, number, row):
        self.select(number, row)
        xdotool("click", "--repeat", 2, "--delay", 50, 1)

    @staticmethod
    def type(text):
        xdotool("type", "--delay", "15", "--", text)

    @staticmethod
    def key(name):
        xdotool("key", name)

    def tab(self, name):
        """Brings a tab page to the front."""
        tabs = self.control(1000)
        index = [tabs.getChildAtIndex(i).name for i in range(tabs.childCount)].index(name)
        tabs.querySelection().selectChild(index)
        wait_for(lambda: showing(tabs.getChildAtIndex(index)), f"tab {name!r}")

    # The end

    def wait(self):
        """The exit code, once the program has ended by itself."""
        return self.process.wait(timeout=LIMIT)

    def close(self):
        """Asks the main window to close, as the close box does."""
        self.main_window()
        self.key("Escape")

    def kill(self):
        if self.process.poll() is None:
            self.process.send_signal(signal.SIGKILL)
        self.process.wait()


def xdotool(*arguments):
    subprocess.run(["xdotool", *map(str, arguments)], check=True)


def screenshot(path, accessible=None):
    """The screen, or the part of it that accessible takes up, as a PNG; the empty screen around it is cut off."""
    crop = []
    if accessible is not None:
        extents = accessible.queryComponent().getExtents(pyatspi.DESKTOP_COORDS)
        crop = ["-crop", f"{extents.width}x{extents.height}+{extents.x}+{extents.y}"]
    subprocess.run(["import", "-window", "root", *crop, "-trim", "+repage", path], check=True)
