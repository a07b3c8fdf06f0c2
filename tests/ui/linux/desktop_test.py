"""What the desktop's own ways do to the window: the mouse's second clipboard, closing a question by keyboard."""

import unittest

from ibutton_test import ASCII, PREFIX, IButtonPage
from waiting import wait_for
from window_case import RESTART_QUESTION, WindowCase


class MiddleClick(IButtonPage):
    def test_a_middle_click_pastes_laid_out(self):
        tool = self.open_page()
        tool.enter(ASCII, "0d-0A41")
        tool.key("ctrl+a")
        wait_for(lambda: tool.control(ASCII).queryText().getNSelections() == 1, "the selection")
        tool.click_at(tool.bounds(PREFIX), button=2)
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


if __name__ == "__main__":
    unittest.main()
