"""The Printer page of the running program, without a printer."""

import os
import re
import shutil
import unittest

from pages_test import TabOrder
from waiting import wait_for
from window_case import WindowCase, complete_file

CODE_PAGE, INTERFACE, UNSOLICITED, LINK = 1074, 1075, 1096, 1095
DEFAULT, APPLY, APPLY_ALL, TABS = 1072, 1073, 1031, 1000
HIDDEN = [1071, 1076, 1077, 1078, 1079, 1080, 1081, 1082, 1083, 1086]
NATIVE, COMPATIBILITY, EPSON = "Mirel Printer (Native)", "Mirel Printer (Compatibility)", "Epson Emulation"
STANDARD = (
    "437 858 863 860 865 Generic 869 857 864 867 852 848 866 872 775 861 "
    "1250 1251 1252 1253 1254 1255 1256 1257 1258").split() + ["Printer Default"]
NOT_ANSWERED = (
    "The printer has not answered: these are standard values, not the stored ones.\n"
    "Apply stores what is shown here.")
SAVED = "Printer settings saved."


class PrinterPage(WindowCase, TabOrder):
    def stored(self):
        return self.installation.section("Printer_Configuration")

    def shown(self, tool):
        return tool.chosen(CODE_PAGE), tool.chosen(INTERFACE), tool.checked(UNSOLICITED)

    def apply(self, tool):
        tool.click(APPLY)
        tool.answer("OK", SAVED)
        return self.stored()


class WithoutPrinter(PrinterPage):
    def open_page(self, **keys):
        tool = self.open(complete_file(Printer_Configuration=keys))
        tool.tab("Printer")
        return tool

    def test_the_page_shows_standard_values_and_says_that_they_are_not_the_stored_ones(self):
        tool = self.open_page(Code_Page="4", Emulation_Mode="2", Unsolicited_Status="True")
        self.assertEqual(self.shown(tool), ("858", NATIVE, True))
        self.assertEqual(tool.items(CODE_PAGE), STANDARD)
        self.assertEqual(tool.items(INTERFACE), [NATIVE, COMPATIBILITY, EPSON])
        self.assertTrue(tool.says(NOT_ANSWERED))

    def test_native_code_pages_are_stored_by_number(self):
        tool = self.open_page()
        for item, stored in (("1252", "18"), ("Generic", "6"), ("Printer Default", "-1"), ("437", "0")):
            tool.pick(CODE_PAGE, item)
            self.assertEqual(self.apply(tool), {"Code_Page": stored, "Emulation_Mode": "0", "Unsolicited_Status": ""})

    def test_epson_code_pages_are_stored_by_place(self):
        tool = self.open_page()
        tool.pick(INTERFACE, EPSON)
        for item, stored in (("1252", "18"), ("Printer Default", "25")):
            tool.pick(CODE_PAGE, item)
            saved = self.apply(tool)
            self.assertEqual((saved["Code_Page"], saved["Emulation_Mode"]), (stored, "2"))

    def test_another_interface_goes_back_to_858(self):
        tool = self.open_page()
        tool.pick(CODE_PAGE, "1252")
        tool.pick(INTERFACE, COMPATIBILITY)
        wait_for(lambda: tool.chosen(CODE_PAGE) == "858", "858")

    def test_unsolicited_status_is_stored_as_true_once_applied(self):
        tool = self.open_page(Unsolicited_Status="TRUE")
        self.assertEqual(self.apply(tool)["Unsolicited_Status"], "true")
        tool.check(UNSOLICITED, False)
        self.assertEqual(self.apply(tool)["Unsolicited_Status"], "")

    def test_default_keeps_the_code_page_and_stores_nothing(self):
        tool = self.open_page()
        before = self.installation.bytes()
        tool.pick(INTERFACE, EPSON)
        tool.pick(CODE_PAGE, "1252")
        tool.check(UNSOLICITED, True)
        tool.click(DEFAULT)
        wait_for(lambda: not tool.checked(UNSOLICITED), "the default")
        self.assertEqual(self.shown(tool), ("1252", NATIVE, False))
        self.assertEqual(self.installation.bytes(), before)

    def test_apply_all_stores_the_page_without_a_box_of_its_own(self):
        tool = self.open_page()
        tool.pick(CODE_PAGE, "1252")
        tool.click(APPLY_ALL)
        tool.answer("OK", "All settings saved.")
        self.assertEqual(self.stored()["Code_Page"], "18")
        self.assertTrue(tool.enabled(APPLY))

    def test_the_window_is_grey_as_long_as_apply_has_not_ended(self):
        tool = self.open_page()
        os.remove(self.installation.file)
        os.mkdir(self.installation.file)  # the worker's save fails, and its box stops it half-way
        tool.click(APPLY)
        self.assertIn("Unable to save file", tool.box_text())
        self.assertFalse(any(tool.enabled(number) for number in (TABS, CODE_PAGE, APPLY, APPLY_ALL)))
        tool.answer("OK")
        tool.answer("OK", SAVED)
        wait_for(lambda: all(tool.enabled(number) for number in (TABS, CODE_PAGE, APPLY, APPLY_ALL)), "the window")
        shutil.rmtree(self.installation.file)

    def test_the_focus_is_on_apply_again_afterwards(self):
        tool = self.open_page()
        tool.focus(APPLY)
        tool.key("space")
        tool.answer("OK", SAVED)
        tool.main_window()
        wait_for(lambda: tool.focused(APPLY), "the focus")

    def test_tab_order(self):
        tool = self.open_page()
        self.assert_tab_order(tool, [LINK, DEFAULT, UNSOLICITED, APPLY])
        tool.focus(LINK)
        for number in (INTERFACE, CODE_PAGE):
            tool.key("shift+Tab")
            last = tool.chosen(number)
            tool.key("Down")
            wait_for(lambda number=number, last=last: tool.chosen(number) != last, f"list {number} to be reached")

    def test_controls_for_other_printers_are_there_and_hidden(self):
        tool = self.open_page()
        for number in HIDDEN:
            wait_for(lambda number=number: tool.find(number, hidden=True), f"control {number}")
            self.assertIsNone(tool.find(number), number)
        self.assertFalse(any(tool.enabled(number, hidden=True) for number in (1082, 1083)))

    def test_the_note_stops_where_it_always_has(self):
        tool = self.open_page()
        notes = [text for text in tool.labels() if text.startswith("Note:")]
        self.assertEqual(re.sub(r"\s+", " ", notes[0])[-27:], "paper sensing settings. The")

    def test_every_control_has_a_name(self):
        tool = self.open_page()
        for number in (CODE_PAGE, INTERFACE, UNSOLICITED, LINK, DEFAULT, APPLY):
            self.assertTrue(tool.name(number), number)


if __name__ == "__main__":
    unittest.main()
