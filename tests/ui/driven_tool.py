"""What a test does with the running program by mouse and keyboard, whatever the platform tells about its windows."""

import os
import re
import shutil
import subprocess
import sys
import time

from waiting import Timeout, wait_for

MAIN_WINDOW = "Quillon Configuration Tool"
TABS = 1000

# What a test starts ends with it, also when the test itself is killed.
TIED = [shutil.which("setpriv"), "--pdeathsig", "TERM", "--"]


def xdotool(*arguments):
    subprocess.run(["xdotool", *map(str, arguments)], check=True)


def answer_of(*command):
    return subprocess.run(command, capture_output=True, text=True, check=True).stdout


def mouse_place():
    """Where the mouse is, and in which window: x, y, the number of the window."""
    told = dict(line.split("=") for line in answer_of("xdotool", "getmouselocation", "--shell").split())
    return int(told["X"]), int(told["Y"]), told["WINDOW"]


def screenshot(path, bounds=None):
    """The screen, or a rectangle of it, as a PNG; the empty screen around it is cut off."""
    crop = []
    if bounds is not None:
        left, top, width, height = bounds
        crop = ["-crop", f"{width}x{height}+{left}+{top}"]
    subprocess.run(["import", "-window", "root", *crop, "-trim", "+repage", path], check=True)


def still_screenshot(path):
    """The screen once the program has nothing more to draw."""
    previous = None

    def still():
        nonlocal previous
        screenshot(path)
        with open(path, "rb") as file:
            last, previous = previous, file.read()
        return last == previous

    wait_for(still, "a screen that stands still")


def tell_screen():
    """What is on the screen when an expectation was not met, said on standard error; QLX_UI_PICTURE names a picture."""
    windows = answer_of("xwininfo", "-root", "-tree").splitlines()
    named = [line.strip() for line in windows if '"' in line]  # the others are parts of these
    # xdotool fails where no window gets the keys; that is evidence too.
    focus = subprocess.run(["xdotool", "getwindowfocus"], capture_output=True, text=True, check=False).stdout.strip()
    print(*named, f"mouse: {mouse_place()}", f"keys go to: {focus or 'no window'}", sep="\n", file=sys.stderr)
    if picture := os.environ.get("QLX_UI_PICTURE"):
        screenshot(picture)
        print(f"picture: {picture}", file=sys.stderr)


class DrivenTool:
    """The running program. Controls are named by their numbers, windows by their titles; each platform's Tool
    answers how they look: windows, box, box_text, box_buttons, find, bounds, cell_bounds, enabled, checked,
    focused, text, text_start, text_length, caret, chosen, items, tabs, current_tab, rows, selected_row, name, labels,
    and whether the mouse is under_a_tool_tip, that of the control it was on before: it goes once the program looks;
    and does what neither mouse nor keyboard do: focus, set_text, pick, wait, kill."""

    # Windows

    def main_window(self):
        return self.active_window(MAIN_WINDOW)

    def icon(self, title):
        """What the frame of the window shows, as window managers are told; empty for none."""
        window = answer_of("xdotool", "search", "--onlyvisible", "--name", f"^{re.escape(title)}$").split()[0]
        return answer_of("xprop", "-id", window, "-notype", "32c", "_NET_WM_ICON").partition(" = ")[2]

    def await_no_other_window(self):
        wait_for(lambda: len(self.windows()) == 1, "every window but the main one to close")

    def says(self, text):
        """Whether a window shows this text to the user."""
        return text in self.labels()

    def answer(self, button, text=None):
        """Checks the open box's text, presses its button by mouse and waits until the box is gone."""
        box = self.box()
        if text is not None and self.box_text() != text:
            raise AssertionError(f"the box says {self.box_text()!r}, not {text!r}")
        bounds = wait_for(lambda: self.box_buttons().get(button), f"button {button!r}")
        self.click_until(lambda: not self.is_open(box), lambda: self.box_buttons().get(button, bounds), "the box to close")

    # Controls

    def click_at(self, bounds, button=1):
        """A click into the middle of a rectangle on the screen: left, top, width, height."""
        left, top, width, height = bounds
        xdotool("mousemove", left + width // 2, top + height // 2)
        wait_for(lambda: not self.under_a_tool_tip(), "the tool tip of another control to make way")
        xdotool("click", button)

    def click_until(self, done, place, what):
        """Clicks where `place` says, once more each second until it is done: what is clicked on may have been moved by a
        window manager, or hidden by a tool tip, just when the click came."""
        clicks = []  # when and where

        def clicked():
            if done():
                return True
            if not clicks or time.monotonic() > clicks[-1][0] + 1:
                bounds = place()
                self.click_at(bounds)
                clicks.append((time.monotonic(), *bounds))
            return False

        try:
            wait_for(clicked, what)
        except Timeout as timeout:
            raise Timeout(f"{timeout} after clicks at {clicks}") from timeout

    def control(self, number):
        return wait_for(lambda: self.find(number), f"control {number}")

    def click(self, number):
        self.click_at(self.bounds(number))

    def check(self, number, value):
        """Clicks a check box unless it is as wanted, and waits until it is."""
        if self.checked(number) != value:
            self.click(number)
        wait_for(lambda: self.checked(number) == value, f"check box {number} to become {value}")

    def enter(self, number, text):
        """Replaces a field's text by typing."""
        self.focus(number)
        xdotool("key", "ctrl+a", "key", "Delete")
        wait_for(lambda: self.text(number) == "", f"field {number} to become empty")
        self.type(text)

    def fill(self, number, text, shown=None):
        """Replaces a field's text by typing and waits until all of it has arrived; what is shown may differ from what
        is typed."""
        self.enter(number, text)
        shown = text if shown is None else shown
        wait_for(lambda: self.text(number) == shown, f"field {number} to show {shown!r}")

    def choose(self, number, item, before):
        """Chooses an item of a drop-down list by keyboard, coming from the control that precedes it. A field that got text
        before has to show all of it: being given the focus selects what is there, and the next key replaces it."""
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

    # Lists

    def select(self, number, row):
        """Clicks on a row and waits until it is the selected one."""
        self.click_at(self.cell_bounds(number, row))
        wait_for(lambda: self.selected_row(number) == row, f"row {row} to be selected")

    def double_click(self, number, row):
        self.select(number, row)
        xdotool("click", "--repeat", 2, "--delay", 50, 1)

    @staticmethod
    def type(text):
        xdotool("type", "--delay", "15", "--", text)

    @staticmethod
    def key(name):
        xdotool("key", name)

    # The end

    def close(self):
        """Asks the main window to close, as the close box does."""
        self.main_window()
        self.key("Escape")
