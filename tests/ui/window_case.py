"""What the tests of the running window share."""

import os
import subprocess
import unittest

from driven_tool import MAIN_WINDOW, tell_screen
from installation import Installation
from tool import Tool
from waiting import wait_for, witnesses

RESTART_QUESTION = (
    "Configuration file changed. You must restart the services for the configuration to take effect.\n\n"
    "Do you want to restart the services now?"
)
SAVE_FAILED = 'Unable to save file "{}".\nPlease check location of file'
SECTIONS = [
    "Ports_Configuration",
    "Logging_Configuration",
    "MSR_Configuration",
    "IB_Configuration",
    "Printer_Configuration",
]


def complete_file(**sections):
    """A configuration file with every section; the named ones with the given keys and texts."""
    body = ""
    for name in SECTIONS:
        keys = "".join(f"<{key}>{text}</{key}>" for key, text in sections.get(name, {}).items())
        body += f"<{name}>{keys}</{name}>"
    return f"<MZP>{body}</MZP>"


class WindowCase(unittest.TestCase):
    """Each test has an installation of its own; whatever it started is gone afterwards."""

    def setUp(self):
        self.installation = Installation(os.environ["QLX_PROGRAM"])
        self.addCleanup(self.installation.close)
        witnesses.append(tell_screen)
        self.addCleanup(witnesses.remove, tell_screen)

    def start_window_manager(self):
        """Until the test is over, windows have frames and get the focus as on a user's screen."""
        manager = subprocess.Popen(["openbox"], stderr=subprocess.DEVNULL)
        self.addCleanup(manager.wait)
        self.addCleanup(manager.terminate)

        def managed():
            check = subprocess.run(
                ["xprop", "-root", "_NET_SUPPORTING_WM_CHECK"], capture_output=True, text=True, check=True)
            return "window id" in check.stdout

        wait_for(managed, "the window manager")

    def assert_own_icon(self, tool, title):
        """The window has the program's icon, which the main window has."""
        self.assertTrue(tool.icon(MAIN_WINDOW))
        self.assertEqual(tool.icon(title), tool.icon(MAIN_WINDOW))

    def start(self, environment=None):
        """Starts the program without waiting for its window. No service manager answers unless one is given."""
        tool = Tool(self.installation, environment or Tool.ALONE)
        self.addCleanup(tool.kill)
        return tool

    def open(self, file=None, environment=None):
        """Starts the program, on the given file if there is one, and waits until its window can be used."""
        if file is not None:
            self.installation.write(file)
        tool = self.start(environment)
        tool.await_start()
        return tool
