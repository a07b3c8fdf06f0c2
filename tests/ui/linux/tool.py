"""Drives the real program from outside, as a person or a screen reader would: by accessible id and by keyboard."""

import os
import re
import signal
import subprocess

import pyatspi

from driven_tool import TABS, TIED, DrivenTool, mouse_place, xdotool
from waiting import LIMIT, vanished, wait_for

LISTS = (pyatspi.ROLE_COMBO_BOX, pyatspi.ROLE_TABLE, pyatspi.ROLE_TREE_TABLE)


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


def shown(accessible):
    """What is shown of the tree below accessible, parents first."""
    for index in range(accessible.childCount):
        child = accessible.getChildAtIndex(index)
        if child is not None and showing(child):
            yield child
            yield from shown(child)


def controls_below(accessible):
    """The tree below accessible without the parts of lists: to ask each of them is most of the time of a search."""
    for index in range(accessible.childCount):
        child = accessible.getChildAtIndex(index)
        if child is not None:
            yield child
            if child.getRole() not in LISTS:
                yield from controls_below(child)


def has_number(control, number, hidden):
    """Whether the control is still there under this number; shown, unless it may be hidden."""
    try:
        return control.get_accessible_id() == str(number) and (hidden or showing(control))
    except Exception as error:  # pylint: disable=broad-except
        if not vanished(error):
            raise
        return False


def bounds_of(accessible):
    extents = accessible.queryComponent().getExtents(pyatspi.DESKTOP_COORDS)
    return extents.x, extents.y, extents.width, extents.height


def target(link):
    """What a link points to; nothing once it is gone."""
    try:
        return os.readlink(link)
    except FileNotFoundError:
        return ""


class Tool(DrivenTool):
    """The running program. Controls are named by their numbers."""

    # Without a bus no service manager answers.
    ALONE = {"DBUS_SYSTEM_BUS_ADDRESS": "unix:path=/nonexistent"}

    def __init__(self, installation, environment=None):
        environment = {**os.environ, **(environment or {})}
        self.printer_link = self._printer_link(installation.directory, environment.get("QUILLON_PORT_DIR"))
        self.found = {}  # controls by number, as they were last found
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

    @staticmethod
    def path_shown(path):
        """How the program names a file."""
        return path

    # The printer

    def await_start(self):
        """Until the window can be used: while the printer is asked it takes no input."""
        if self.printer_link and os.path.exists(self.printer_link):
            self.await_printer()
        self.main_window()

    def has_printer_open(self):
        tty = os.path.realpath(self.printer_link)
        folder = f"/proc/{self.process.pid}/fd"
        return tty in [target(os.path.join(folder, descriptor)) for descriptor in os.listdir(folder)]

    def await_printer(self):
        """Until the printer has been asked: the window takes no input from the moment that the port opens."""
        wait_for(self.has_printer_open, "the printer's port to be opened")
        wait_for(lambda: self.enabled(TABS), "the end of the time that the printer has to answer")

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

    def is_open(self, window):
        return any(w == window for w in self.windows())

    def window(self, title):
        return wait_for(
            lambda: next((w for w in self.windows() if w.name == title and w.getRoleName() != "alert"), None),
            f"window {title!r}",
        )

    def window_bounds(self, title):
        return bounds_of(self.window(title))

    def active_window(self, title):
        """A window once keys reach it: without a window manager they go where the mouse is."""
        window = self.window(title)
        left, top, width, height = bounds_of(window)
        xdotool("mousemove", left + width // 2, top + height // 2)
        wait_for(lambda: pyatspi.STATE_ACTIVE in states(window), f"window {title!r} to be active")
        return window

    def window_titles(self):
        """The titles of the program's windows; for a message box the accessibility tree does not tell it."""
        found = subprocess.run(
            ["xdotool", "search", "--onlyvisible", "--pid", str(self.process.pid), "--name", "", "getwindowname", "%@"],
            capture_output=True, text=True, check=False)
        return found.stdout.splitlines()

    def labels(self, title=None):
        """The texts that a window shows, or that all do."""
        windows = [self.window(title)] if title else self.windows()
        return [child.name for window in windows for child in shown(window)]

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

    def box_buttons(self):
        """The places of the open message box's buttons, by their texts."""
        return {c.name: bounds_of(c) for c in descendants(self.box()) if c.getRoleName() == "push button"}

    @staticmethod
    def under_a_tool_tip():
        kind = subprocess.run(
            ["xprop", "-id", mouse_place()[2], "_NET_WM_WINDOW_TYPE"], capture_output=True, text=True, check=False)
        return "TOOLTIP" in kind.stdout

    # Controls

    def find(self, number, hidden=False):
        """The control with this number, or None."""
        found = self.found.get(number)
        if found is None or not has_number(found, number, hidden):
            controls = (control for window in self.windows() for control in controls_below(window))
            found = next((control for control in controls if has_number(control, number, hidden)), None)
        self.found[number] = found
        return found

    def bounds(self, number):
        return bounds_of(self.control(number))

    def name(self, number):
        """What a screen reader calls the control."""
        return self.control(number).name

    def description(self, number):
        """What a screen reader says behind the control's name."""
        return self.control(number).description

    def enabled(self, number, hidden=False):
        control = wait_for(lambda: self.find(number, hidden), f"control {number}")
        return pyatspi.STATE_SENSITIVE in states(control)

    def checked(self, number):
        return pyatspi.STATE_CHECKED in states(self.control(number))

    def focused(self, number):
        return pyatspi.STATE_FOCUSED in states(self.control(number))

    def focus(self, number):
        self.control(number).queryComponent().grabFocus()
        wait_for(lambda: self.focused(number), f"focus on {number}")

    def text(self, number):
        return self.control(number).queryText().getText(0, -1)

    def text_start(self, number, count):
        """The first characters, however long the whole is."""
        return self.control(number).queryText().getText(0, count)

    def text_length(self, number):
        return self.control(number).queryText().characterCount

    def set_text(self, number, text):
        """Sets a field as a screen reader does."""
        self.control(number).queryEditableText().setTextContents(text)

    def caret(self, number):
        return self.control(number).queryText().caretOffset

    def chosen(self, number):
        """The item that a drop-down list shows."""
        selection = self.control(number).querySelection()
        return selection.getSelectedChild(0).name if selection.nSelectedChildren else None

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

    # Tabs

    def tabs(self):
        tabs = self.control(TABS)
        return [tabs.getChildAtIndex(i).name for i in range(tabs.childCount)]

    def current_tab(self):
        return self.control(TABS).querySelection().getSelectedChild(0).name

    def tab(self, name):
        """Brings a tab page to the front."""
        tabs = self.control(TABS)
        index = self.tabs().index(name)
        tabs.querySelection().selectChild(index)
        wait_for(lambda: showing(tabs.getChildAtIndex(index)), f"tab {name!r}")

    # Lists

    def columns(self, number):
        """The titles of a list's columns."""
        table = self.control(number).queryTable()
        return [table.getColumnHeader(column).name for column in range(table.nColumns)]

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

    def cell_bounds(self, number, row):
        return bounds_of(self.cell(number, row))

    def selected_row(self, number):
        table = self.control(number).queryTable()
        rows = range(table.nRows)
        return next((row for row in rows if pyatspi.STATE_SELECTED in states(table.getAccessibleAt(row, 0))), None)

    # The end

    def running(self):
        return self.process.poll() is None

    def threads(self):
        return len(os.listdir(f"/proc/{self.process.pid}/task"))

    def wait(self):
        """The exit code, once the program has ended by itself."""
        return self.process.wait(timeout=LIMIT)

    def kill(self):
        if self.process.poll() is None:
            self.process.send_signal(signal.SIGKILL)
        self.process.wait()
