"""The restart on the simulated suite: what is painted meanwhile, and where the log goes."""

import os
import unittest

from driven_tool import screenshot
from simulator import Simulator
from waiting import wait_for
from window_case import RESTART_QUESTION, WindowCase, complete_file

OTHER_PORT = 40404  # than a new file names


class SimulatedRestart(WindowCase):
    def simulate(self, *options):
        simulator = Simulator(self.installation.file, *options)
        self.addCleanup(simulator.close)
        return simulator

    def test_the_windows_stay_painted_while_a_service_never_stops(self):
        simulator = self.simulate("--hang-stopping", "QLXSVC")
        tool = self.open(environment=simulator.environment)
        tool.close()
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
        keys = {"Log_Level": "1", "TCP_Port": OTHER_PORT, "File_Name": "C:\\LOG\\qlx.log"}
        self.installation.write(complete_file(Logging_Configuration=keys))
        simulator = self.simulate()
        tool = self.open(environment=simulator.environment)
        tool.tab("Printer")
        record = "QLXConfigDlg::OnTcnSelchangeTabMzp() Couldn't open COM port. Maybe not configured.\r\n"
        wait_for(lambda: simulator.log().endswith(record), "the record in the log")


if __name__ == "__main__":
    unittest.main()
