"""F1: each window opens its chapter of the guide."""

import os
import shutil
import unittest

from driven_tool import MAIN_WINDOW
from ports_test import DEMO, LIST, MSR, PORT, PortsPage
from waiting import wait_for
from window_case import WindowCase, complete_file

CHAPTERS, PAGE, CLOSE = 1098, 1099, 1
ABOUT = 0x10
CONVERTED_TEXT = 1046
TITLES = ["COM Ports", "Logging", "MSR", "iButton", "Printer"]


class Book:
    """What the tests below share: the program with the book of the build beside it."""

    def setUp(self):
        super().setUp()
        self.book = os.path.join(self.installation.directory, "help")
        shutil.copytree(os.path.join(os.path.dirname(os.environ["QLX_PROGRAM"]), "help"), self.book)

    def read(self, tool, title):
        """F1 shows the chapter of this title; Escape closes it again."""
        tool.key("F1")
        self.assert_shown(tool, title)
        tool.key("Escape")
        wait_for(lambda: f"Help: {title}" not in tool.window_titles(), "the help to close")

    def go_to_list(self, tool):
        """By keyboard, from the page."""
        wait_for(lambda: tool.focused(PAGE), "the page to have the focus")
        tool.key("shift+Tab")
        wait_for(lambda: tool.focused(CHAPTERS), "the list to have the focus")

    def assert_shown(self, tool, title):
        tool.active_window(f"Help: {title}")
        self.assert_own_icon(tool, f"Help: {title}")
        self.assertEqual(tool.name(PAGE), title)
        self.assertTrue(tool.description(PAGE).lstrip().startswith(title), tool.description(PAGE)[:80])


class Chapters(Book, PortsPage):
    def test_each_page_has_its_own(self):
        tool = self.open(complete_file())
        for title in TITLES:
            tool.tab(title)
            self.read(tool, title)
            tool.main_window()

    def test_a_field_of_the_page_and_the_about_box_have_that_of_the_page(self):
        tool = self.open(complete_file())
        tool.tab("iButton")
        tool.click(CONVERTED_TEXT)
        wait_for(lambda: tool.focused(CONVERTED_TEXT), "the converter to have the focus")
        self.read(tool, "iButton")
        tool.main_window()
        tool.click(ABOUT)
        tool.active_window("About Configuration Tool")
        self.assertTrue(tool.says("Press F1 for help."))
        self.read(tool, "iButton")

    def test_the_windows_of_the_ports_page_have_their_own(self):
        tool = self.open_page("<MSR_USB>COM3</MSR_USB>")
        self.configure(tool, MSR, "MSR Configuration")
        self.read(tool, "Configure")
        tool.active_window("MSR Configuration")
        self.assertEqual(tool.chosen(PORT), "COM3")
        tool.key("Escape")
        tool.main_window()
        tool.click(DEMO)
        tool.active_window("MSR Demo")
        self.read(tool, "Demo")
        tool.active_window("MSR Demo")


class Reading(Book, WindowCase):
    def open_help(self):
        tool = self.open(complete_file())
        tool.key("F1")
        self.assert_shown(tool, "COM Ports")
        return tool

    def test_the_list_leads_to_the_other_chapters(self):
        tool = self.open_help()
        self.go_to_list(tool)
        tool.key("Down")
        self.assert_shown(tool, "Configure")

    def test_f1_and_the_about_key_open_nothing_over_the_help(self):
        tool = self.open_help()
        tool.key("F1")
        tool.key("alt+a")
        self.go_to_list(tool)
        tool.key("Up")  # once this is done, the keys before it are too
        self.assert_shown(tool, "The services do not restart")
        self.assertEqual(len(tool.windows()), 2)

    def test_close_returns_to_the_window(self):
        tool = self.open_help()
        tool.click(CLOSE)
        tool.await_no_other_window()
        self.assertEqual(tool.window_titles().count(MAIN_WINDOW), 1)
        tool.main_window()
        tool.key("Escape")
        self.assertEqual(tool.wait(), 0)


class Damage(Book, WindowCase):
    def assert_told(self, tool, file):
        path = tool.path_shown(os.path.join(self.book, file))
        tool.answer("OK", f"The help is not installed: the file\n{path}\nis missing or damaged.")

    def test_a_missing_book_is_told(self):
        shutil.rmtree(self.book)
        tool = self.open(complete_file())
        tool.key("F1")
        self.assert_told(tool, "contents")
        tool.await_no_other_window()

    def test_a_missing_chapter_is_told(self):
        os.remove(os.path.join(self.book, "msr.html"))
        tool = self.open(complete_file())
        tool.tab("MSR")
        tool.key("F1")
        self.assert_told(tool, "msr.html")
        tool.await_no_other_window()

    def test_a_chapter_stays_when_the_chosen_one_is_missing(self):
        os.remove(os.path.join(self.book, "msr.html"))
        tool = self.open(complete_file())
        tool.tab("Logging")
        tool.key("F1")
        self.assert_shown(tool, "Logging")
        self.go_to_list(tool)
        tool.key("Down")
        self.assert_told(tool, "msr.html")
        self.assertIn("Help: Logging", tool.window_titles())
        self.assertEqual(tool.name(PAGE), "Logging")


if __name__ == "__main__":
    unittest.main()
