"""Closing with Yes: the services restart, seen in the service manager and in the window."""

import unittest

from services import Services
from window_case import RESTART_QUESTION, WindowCase


class Restart(WindowCase):
    def open_changed(self, **behaviour):
        """The program on a new file, asked to close."""
        self.services = Services(self.installation, **behaviour)
        self.addCleanup(self.services.close)
        tool = self.open(environment=self.services.environment)
        tool.close()
        return tool

    def test_yes_restarts_both_services_and_closes(self):
        tool = self.open_changed()
        tool.answer("Yes", RESTART_QUESTION)
        tool.answer("OK", "Quillon services restarted.\n")
        self.assertEqual(tool.wait(), 0)
        self.assertEqual(self.services.stops(), ["QLXSVC", "QLXLOGSVC"])

    def test_no_leaves_the_services_alone(self):
        tool = self.open_changed()
        tool.answer("No", RESTART_QUESTION)
        self.assertEqual(tool.wait(), 0)
        self.assertEqual(self.services.stops(), [])

    def test_a_refused_stop_shows_two_boxes_and_closes(self):
        tool = self.open_changed(refuses_to_stop="QLXSVC")
        tool.answer("Yes", RESTART_QUESTION)
        self.assertRegex(tool.box_text(), r"^Stop QLX Service GetLastError = \d+$")
        tool.answer("OK")
        tool.answer("OK", "Quillon Framework Service failed to stop.\nRestart Quillon services manually.")
        self.assertEqual(tool.wait(), 0)

    def test_the_window_is_disabled_and_cannot_be_closed_while_the_services_stop(self):
        tool = self.open_changed(slow_to_stop="QLXSVC")
        tool.answer("Yes", RESTART_QUESTION)
        tool.window("Restarting services...")
        self.assertFalse(tool.enabled(1031))
        tool.key("Escape")
        self.services.let_go()
        tool.answer("OK", "Quillon services restarted.\n")
        self.assertEqual(tool.wait(), 0)


if __name__ == "__main__":
    unittest.main()
