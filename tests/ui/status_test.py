"""The foot of the main window: the file in use and the services."""

import unittest

from services import Services
from waiting import wait_for
from window_case import WindowCase, complete_file

FILE, SERVICES = 2001, 2002


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


if __name__ == "__main__":
    unittest.main()
