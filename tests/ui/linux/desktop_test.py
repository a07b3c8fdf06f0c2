"""What the desktop's own ways do to the window: the mouse's second clipboard, closing a question by keyboard."""

import unittest

from driven_tool import click_at
from ibutton_test import ASCII, PREFIX, IButtonPage
from waiting import wait_for
from window_case import RESTART_QUESTION, WindowCase, complete_file


class MiddleClick(IButtonPage):
    def test_a_middle_click_pastes_laid_out(self):
        tool = self.open_page()
        tool.enter(ASCII, "0d-0A41")
        tool.key("ctrl+a")
        wait_for(lambda: tool.control(ASCII).queryText().getNSelections() == 1, "the selection")
        click_at(tool.bounds(PREFIX), button=2)
        self.assert_field(tool, PREFIX, "0D 0A 41", 8)


class Question(WindowCase):
    def test_a_question_that_is_closed_without_an_answer_leaves_the_window_open(self):
        tool = self.open()
        tool.close()
        tool.box()
        tool.key("Escape")
        tool.await_no_other_window()
        tool.close()
        tool.answer("No", RESTART_QUESTION)
        self.assertEqual(tool.wait(), 0)


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


if __name__ == "__main__":
    unittest.main()
