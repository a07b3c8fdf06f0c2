"""The running program for a user who may not change settings: the cases that every platform shares."""

from driven_tool import MAIN_WINDOW, TABS
from pages_test import LOGGING_TAB_ORDER
from window_case import complete_file

NO_RIGHTS = (
    "You do not have sufficient permissions.\n"
    "Please run the application as Administrator if you need to change the settings."
)
READ_ONLY = (
    "Read only: this program runs without the rights to change settings. "
    "To change them, close it and start it as administrator (root)."
)
BANNER = 2004


class ReadOnlyCases:
    """The cases of a WindowCase that starts the program by start_without_rights."""

    def open_and_read(self, file):
        self.installation.write(file)
        tool = self.start_without_rights()
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

    def test_every_page_says_above_it_that_it_is_read_only_why_and_what_to_do(self):
        tool = self.open_and_read(complete_file())
        for tab in tool.tabs():
            tool.tab(tab)
            self.assertEqual(tool.name(BANNER), READ_ONLY)
            left, top, width, height = tool.bounds(BANNER)
            frame = tool.window_bounds(MAIN_WINDOW)
            self.assertLessEqual(top + height, tool.bounds(TABS)[1], "not above the tabs")
            self.assertLessEqual(left + width, frame[0] + frame[2], "wider than the window")

    def test_the_file_stays_as_it_was(self):
        tool = self.open_and_read(complete_file())
        before = self.installation.bytes()
        tool.close()
        self.assertEqual(tool.wait(), 0)
        self.assertEqual(self.installation.bytes(), before)
