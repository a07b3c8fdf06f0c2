"""The foot of the main window: the file in use, unsaved changes and the services."""

import os
import unittest

from services import Services
from waiting import wait_for
from window_case import SAVE_FAILED, WindowCase, complete_file

FILE, SERVICES, UNSAVED = 2001, 2002, 2003
NOTHING_UNSAVED = "No unsaved changes"


class Status(WindowCase):
    def test_the_whole_path_of_the_file_is_named_however_little_room_it_has(self):
        tool = self.open(complete_file())
        self.assertEqual(tool.name(FILE), tool.path_shown(self.installation.file))

    def test_running_services_are_told(self):
        services = Services(self.installation)
        self.addCleanup(services.close)
        tool = self.open(complete_file(), services.environment)
        wait_for(lambda: tool.name(SERVICES) == "Services: running", "the state of the services")

    def test_without_an_answer_the_services_are_unknown(self):
        tool = self.open(complete_file())
        self.assertEqual(tool.name(SERVICES), "Services: unknown")
        tool.close()
        self.assertEqual(tool.wait(), 0)


class Unsaved(WindowCase):
    def await_words(self, tool, words):
        wait_for(lambda: tool.name(UNSAVED) == words, f"{words!r}, not {tool.name(UNSAVED)!r}")

    def test_an_edit_is_told_until_the_stored_value_is_back(self):
        tool = self.open(complete_file(Logging_Configuration={"TCP_Port": "4000"}))
        self.await_words(tool, NOTHING_UNSAVED)
        tool.tab("Logging")
        tool.enter(1022, "4001")
        self.await_words(tool, "Unsaved changes: Logging")
        tool.key("BackSpace")
        tool.type("0")
        self.await_words(tool, NOTHING_UNSAVED)

    def test_pages_are_told_in_the_order_of_the_tabs_and_keep_their_texts(self):
        tool = self.open(complete_file())
        tabs = tool.tabs()
        tool.tab("MSR")
        tool.check(1006, True)
        tool.tab("Logging")
        tool.check(1021, False)
        self.await_words(tool, "Unsaved changes: Logging, MSR")
        self.assertEqual(tool.tabs(), tabs)
        tool.click(1026)
        tool.answer("OK", "Log settings saved.")
        self.await_words(tool, "Unsaved changes: MSR")
        tool.click(1031)
        tool.answer("OK", "All settings saved.")
        self.await_words(tool, NOTHING_UNSAVED)

    def test_defaults_are_unsaved_where_the_file_has_something_else(self):
        tool = self.open(complete_file(MSR_Configuration={"Track1_Enabled": "false"}, IB_Configuration={"Prefix": "0D"}))
        tool.tab("MSR")
        tool.click(1029)
        self.await_words(tool, "Unsaved changes: MSR")
        tool.tab("iButton")
        tool.click(1033)
        self.await_words(tool, "Unsaved changes: MSR, iButton")

    def test_a_printer_choice_is_unsaved_until_it_is_applied(self):
        tool = self.open(complete_file())
        tool.tab("Printer")
        tool.check(1096, True)
        self.await_words(tool, "Unsaved changes: Printer")
        tool.click(1073)
        tool.answer("OK", "Printer settings saved.")
        self.await_words(tool, NOTHING_UNSAVED)

    def test_what_was_not_written_stays_unsaved(self):
        tool = self.open(complete_file())
        os.remove(self.installation.file)
        os.mkdir(self.installation.file)
        tool.tab("Logging")
        tool.check(1021, False)
        tool.click(1026)
        tool.answer("OK", SAVE_FAILED.format(tool.path_shown(self.installation.file)))
        tool.answer("OK", "Log settings saved.")
        self.await_words(tool, "Unsaved changes: Logging")

    def test_closing_asks_nothing_about_them(self):
        tool = self.open(complete_file())
        tool.tab("Logging")
        tool.check(1021, False)
        self.await_words(tool, "Unsaved changes: Logging")
        tool.close()
        self.assertEqual(tool.wait(), 0)


if __name__ == "__main__":
    unittest.main()
