"""The main window: start, tabs, Apply All, keys, closing."""

import contextlib
import io
import os
import unittest
from unittest import mock

from driven_tool import MAIN_WINDOW
from tool import Tool
from waiting import Timeout, wait_for
from window_case import RESTART_QUESTION, SAVE_FAILED, WindowCase, complete_file

PORT = 1022  # the field of the Logging page
LOAD_ERROR = "Error loading QLXConfig.xml!\nExiting program."


class Evidence(WindowCase):
    def test_an_expectation_that_is_not_met_is_told_with_what_is_on_the_screen(self):
        self.open(complete_file())
        picture = os.path.join(self.installation.directory, "screen.png")
        said = io.StringIO()
        with mock.patch.dict(os.environ, QLX_UI_PICTURE=picture), mock.patch("waiting.LIMIT", 0):
            with contextlib.redirect_stderr(said), self.assertRaisesRegex(Timeout, "^snow in August$"):
                wait_for(lambda: False, "snow in August")
        self.assertIn(f'"{MAIN_WINDOW}"', said.getvalue())
        self.assertIn("mouse: ", said.getvalue())
        with open(picture, "rb") as file:
            self.assertTrue(file.read().startswith(b"\x89PNG"))

    def test_a_witness_that_fails_does_not_hide_which_expectation_was_not_met(self):
        def fail():
            raise OSError("no screen")

        with mock.patch("waiting.LIMIT", 0), mock.patch("waiting.witnesses", [fail]):
            with self.assertRaisesRegex(Timeout, "^snow in August$") as caught:
                wait_for(lambda: False, "snow in August")
        self.assertEqual(str(caught.exception.__context__), "no screen")

    def test_a_click_that_went_elsewhere_is_made_again_where_the_control_is_then(self):
        tool = self.open(complete_file())
        tool.tab("Logging")
        places = [(0, 0, 2, 2)]
        tool.click_until(lambda: tool.focused(PORT), lambda: places.pop() if places else tool.bounds(PORT), "the focus")
        self.assertTrue(tool.focused(PORT))
        self.assertEqual(places, [])

    def test_clicks_that_never_help_are_told(self):
        tool = self.open(complete_file())
        with mock.patch("waiting.LIMIT", 0), mock.patch("waiting.witnesses", []):
            with self.assertRaisesRegex(Timeout, r"^snow in August after clicks at \[\(.*, 0, 0, 2, 2\)\]$"):
                tool.click_until(lambda: False, lambda: (0, 0, 2, 2), "snow in August")


class Start(WindowCase):
    def test_a_new_file_is_written_and_closing_asks_for_the_restart(self):
        tool = self.open()
        self.assertEqual(self.installation.section("Logging_Configuration")["TCP_Port"], "38674")
        tool.close()
        tool.answer("No", RESTART_QUESTION)
        self.assertEqual(tool.wait(), 0)

    def test_a_complete_file_is_left_alone_and_closing_asks_nothing(self):
        tool = self.open(complete_file())
        before = self.installation.bytes()
        tool.close()
        self.assertEqual(tool.wait(), 0)
        self.assertEqual(self.installation.bytes(), before)

    def test_a_file_without_the_root_element_ends_the_program_with_code_1(self):
        self.installation.write("<Other/>")
        tool = self.start()
        tool.answer("OK", LOAD_ERROR)
        self.assertEqual(tool.wait(), 1)

    def test_a_file_that_is_not_well_formed_is_replaced_and_kept_beside(self):
        self.installation.write("<MZP><broken>")
        tool = self.open()
        with open(self.installation.file + ".unreadable", encoding="utf-8") as kept:
            self.assertEqual(kept.read(), "<MZP><broken>")
        tool.close()
        tool.answer("No", RESTART_QUESTION)

    def test_a_second_copy_ends_without_a_window(self):
        self.open(complete_file())
        second = Tool(self.installation)
        self.addCleanup(second.kill)
        self.assertEqual(second.wait(), 0)

    def test_a_copy_that_was_killed_does_not_lock_the_next_one_out(self):
        self.open(complete_file()).kill()
        self.open(complete_file())

    def test_whoever_may_change_settings_is_told_nothing_of_rights(self):
        self.assertIsNone(self.open(complete_file()).find(2004))

    def test_the_window_shows_the_five_tabs_with_com_ports_in_front(self):
        tool = self.open(complete_file())
        self.assertEqual(tool.tabs(), ["COM Ports", "Logging", "MSR", "iButton", "Printer"])
        self.assertEqual(tool.current_tab(), "COM Ports")


class Keys(WindowCase):
    def test_enter_does_nothing(self):
        tool = self.open(complete_file())
        tool.tab("Logging")
        before = self.installation.bytes()
        for number in (1022, 1020):
            tool.focus(number)
            tool.key("Return")
        tool.tab("MSR")
        tool.focus(1008)
        tool.key("Return")
        tool.check(1002, True)
        self.assertEqual(len(tool.windows()), 1)
        self.assertEqual(self.installation.bytes(), before)

    def test_about_is_reached_by_keyboard(self):
        tool = self.open(complete_file())
        tool.tab("Logging")
        tool.click(1022)  # the key has to leave the page that the focus is in
        wait_for(lambda: tool.focused(1022), "the field to have the focus")
        tool.key("alt+a")
        tool.active_window("About Configuration Tool")
        self.assert_own_icon(tool, "About Configuration Tool")
        labels = tool.labels("About Configuration Tool")
        self.assertIn("Version:", labels)
        self.assertIn("1.11.8", labels)
        tool.key("Escape")
        tool.await_no_other_window()

    def test_the_key_of_apply_all_is_reached_from_a_page(self):
        tool = self.open(complete_file())
        tool.tab("Printer")
        tool.click(1096)
        tool.key("alt+l")
        tool.answer("OK", "All settings saved.")


class Mnemonics(WindowCase):
    def test_the_key_of_a_label_leads_to_its_field(self):
        tool = self.open(complete_file())
        tool.tab("Logging")
        tool.click(1022)
        wait_for(lambda: tool.focused(1022), "the field to have the focus")
        for key, number in (("alt+n", 1025), ("alt+s", 1023)):
            tool.key(key)
            wait_for(lambda number=number: tool.focused(number), f"{key} to reach {number}")
        tool.key("alt+v")
        wait_for(lambda: not tool.focused(1023), "the list to have the focus")
        tool.key("Down")
        wait_for(lambda: tool.chosen(1019) == "Error", "the list to move on")
        tool.key("alt+m")
        wait_for(lambda: not tool.checked(1021), "the box to be switched")


class ApplyAll(WindowCase):
    def test_saves_every_page_without_the_pages_messages(self):
        tool = self.open(complete_file())
        tool.tab("Logging")
        tool.fill(1022, "4000")
        tool.tab("MSR")
        tool.fill(1008, "#")
        tool.click(1031)
        tool.answer("OK", "All settings saved.")
        self.assertEqual(self.installation.section("Logging_Configuration")["TCP_Port"], "4000")
        self.assertEqual(self.installation.section("MSR_Configuration")["Track1_Start_Sentinel"], "#")
        tool.close()
        tool.answer("No", RESTART_QUESTION)
        self.assertEqual(tool.wait(), 0)

    def test_what_the_tool_does_not_know_survives(self):
        unknown = "<!--kept--><Other a=\"1\"><Deep>x</Deep></Other>"
        tool = self.open(complete_file().replace("</MZP>", unknown + "</MZP>"))
        tool.click(1031)
        tool.answer("OK")
        saved = self.installation.bytes().decode()
        self.assertIn("<!--kept-->", saved)
        self.assertIn("<Deep>x</Deep>", saved)

    def test_the_file_before_the_run_is_kept_as_backup(self):
        tool = self.open(complete_file())
        before = self.installation.bytes()
        tool.click(1031)
        tool.answer("OK")
        with open(self.installation.file + ".bak", "rb") as backup:
            self.assertEqual(backup.read(), before)


class FailedSave(WindowCase):
    def test_the_box_names_the_file_and_the_old_file_stays(self):
        tool = self.open(complete_file())
        before = self.installation.bytes()
        os.remove(self.installation.file)
        os.mkdir(self.installation.file)
        tool.tab("Logging")
        tool.click(1026)
        wait_for(lambda: "Save File Error!" in tool.window_titles(), "the box of the failed save")
        tool.answer("OK", SAVE_FAILED.format(tool.path_shown(self.installation.file)))
        tool.answer("OK", "Log settings saved.")
        os.rmdir(self.installation.file)
        self.installation.write(before.decode())
        tool.close()
        self.assertEqual(tool.wait(), 0)


if __name__ == "__main__":
    unittest.main()
