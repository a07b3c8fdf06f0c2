"""The running program for a user who may not change settings: one without elevation."""

import unittest

from pages_test import LOGGING_TAB_ORDER
from tool import Tool
from window_case import WindowCase, complete_file

NO_RIGHTS = (
    "You do not have sufficient permissions.\n"
    "Please run the application as Administrator if you need to change the settings."
)


class ReadOnly(WindowCase):
    def open_and_read(self, file):
        self.installation.write(file)
        tool = Tool(self.installation, Tool.ALONE, rights="ordinary")
        self.addCleanup(tool.kill)
        tool.answer("OK", NO_RIGHTS)
        tool.main_window()
        return tool

    def test_every_control_is_grey_and_the_values_are_shown(self):
        keys = {"TCP_Port": "4000", "Module_MSR": "false"}
        tool = self.open_and_read(complete_file(Logging_Configuration=keys))
        tool.tab("Logging")
        self.assertEqual([n for n in LOGGING_TAB_ORDER if tool.enabled(n)], [])
        self.assertEqual(tool.text(1022), "4000")
        self.assertFalse(tool.checked(1021))
        self.assertFalse(tool.enabled(1031))

    def test_the_file_stays_as_it_was(self):
        tool = self.open_and_read(complete_file())
        before = self.installation.bytes()
        tool.close()
        self.assertEqual(tool.wait(), 0)
        self.assertEqual(self.installation.bytes(), before)


if __name__ == "__main__":
    unittest.main()
