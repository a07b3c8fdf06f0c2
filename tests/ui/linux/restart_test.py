"""Closing with Yes: the services restart, seen on the bus and in the window."""

import os
import unittest

from simulator import Simulator
from tool import screenshot
from waiting import wait_for
from window_case import RESTART_QUESTION, WindowCase, complete_file, free_port


class Restart(WindowCase):
    def simulate(self, *options):
        simulator = Simulator(self.installation.file, *options)
        self.addCleanup(simulator.close)
        return simulator

    def open_changed(self, simulator):
        """The program on a new file, asked to close."""
        tool = self.open(environment=simulator.environment)
        tool.close()
        return tool

    def test_yes_restarts_both_services_and_closes(self):
        simulator = self.simulate()
        tool = self.open_changed(simulator)
        tool.answer("Yes", RESTART_QUESTION)
        tool.answer("OK", "Quillon services restarted.\n")
        self.assertEqual(tool.wait(), 0)

    def test_no_leaves_the_services_alone(self):
        simulator = self.simulate()
        before = simulator.said()
        tool = self.open_changed(simulator)
        tool.answer("No", RESTART_QUESTION)
        self.assertEqual(tool.wait(), 0)
        self.assertEqual([line for line in simulator.said()[len(before) :] if "stop" in line.lower()], [])

    def test_a_refused_stop_shows_two_boxes_and_closes(self):
        simulator = self.simulate("--refuse-stop", "QLXSVC")
        tool = self.open_changed(simulator)
        tool.answer("Yes", RESTART_QUESTION)
        self.assertRegex(tool.box_text(), r"^Stop QLX Service GetLastError = \d+$")
        tool.answer("OK")
        tool.answer("OK", "Quillon Framework Service failed to stop.\nRestart Quillon services manually.")
        self.assertEqual(tool.wait(), 0)

    def test_the_window_is_disabled_and_cannot_be_closed_while_the_services_stop(self):
        simulator = self.simulate("--stop-takes", "1500")
        tool = self.open_changed(simulator)
        tool.answer("Yes", RESTART_QUESTION)
        tool.window("Restarting services...")
        self.assertFalse(tool.enabled(1031))
        tool.key("Escape")
        tool.answer("OK", "Quillon services restarted.\n")
        self.assertEqual(tool.wait(), 0)

    def test_the_windows_stay_painted_while_a_service_never_stops(self):
        simulator = self.simulate("--hang-stopping", "QLXSVC")
        tool = self.open_changed(simulator)
        tool.answer("Yes", RESTART_QUESTION)
        bar = tool.bounds(1087)
        tool.window("Restarting services...")
        pictures = set()

        def moving():
            path = os.path.join(self.installation.directory, "bar.png")
            screenshot(path, bar)
            with open(path, "rb") as file:
                pictures.add(file.read())
            return len(pictures) > 3

        wait_for(moving, "four different pictures of the progress bar")

    def test_the_log_stream_goes_to_the_port_of_the_file(self):
        keys = {"Log_Level": "1", "TCP_Port": free_port(), "File_Name": "C:\\LOG\\qlx.log"}
        self.installation.write(complete_file(Logging_Configuration=keys))
        simulator = self.simulate()
        tool = self.open(environment=simulator.environment)
        tool.tab("Printer")
        record = "QLXConfigDlg::OnTcnSelchangeTabMzp() Couldn't open COM port. Maybe not configured.\r\n"
        wait_for(lambda: simulator.log().endswith(record), "the record in the log")


if __name__ == "__main__":
    unittest.main()
