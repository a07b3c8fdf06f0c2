"""One visit to every page: the same edits leave the same file, byte for byte, on every system."""

import os
import unittest

from devices import Ports
from ports_test import CONFIGURE, DRAWER_WINDOW, LIST, OK, PORT
from tool import Tool
from waiting import wait_for
from window_case import RESTART_QUESTION, WindowCase

EXPECTED = os.path.join(os.path.dirname(os.path.abspath(__file__)), "visit.xml")
APPLY_ALL = 1031


class Visit(WindowCase):
    def bind_port(self, tool, row, title, port):
        tool.select(LIST, row)
        tool.click(CONFIGURE)
        tool.active_window(title)
        tool.pick(PORT, port)
        tool.click(OK)
        tool.main_window()
        wait_for(lambda: tool.rows(LIST)[row][1] == port, f"{port} in row {row}")

    def change_ports(self, tool):
        self.bind_port(tool, 0, "MSR Configuration", "COM3")
        self.bind_port(tool, 3, DRAWER_WINDOW, "COM12")

    def change_logging(self, tool):
        tool.tab("Logging")
        tool.set_text(1025, " C:\\Log\\\u00e4\u4e2d\U0001f5a8 <a> & \"b\" 'c'.log ")
        tool.fill(1023, "2048")
        tool.fill(1022, "4711")
        tool.choose(1019, "Verbose", before=1022)
        tool.check(1037, False)

    def change_msr(self, tool):
        tool.tab("MSR")
        tool.check(1002, True)
        tool.check(1006, True)
        tool.fill(1008, "<")
        tool.fill(1010, "")
        tool.check(1012, True)
        tool.fill(1014, "a&b]]>")

    def change_ibutton(self, tool):
        tool.tab("iButton")
        tool.pick(1044, "3")
        tool.pick(1043, "TAB")
        tool.fill(1046, "Key:")
        tool.click(1048)
        wait_for(lambda: tool.text(1040) == "4B 65 79 3A", "the converted prefix")
        tool.fill(1041, "0d0a", shown="0D 0A")

    def change_printer(self, tool):
        tool.tab("Printer")
        tool.pick(1075, "Epson Emulation")
        tool.pick(1074, "1252")
        tool.check(1096, True)

    def test_the_same_edits_leave_the_same_file_on_every_system(self):
        ports = Ports("COM3", "COM12")
        self.addCleanup(ports.close)
        tool = self.open(environment={**Tool.ALONE, **ports.environment})
        self.change_ports(tool)
        self.change_logging(tool)
        self.change_msr(tool)
        self.change_ibutton(tool)
        self.change_printer(tool)
        tool.click(APPLY_ALL)
        tool.answer("OK", "All settings saved.")
        tool.close()
        tool.answer("No", RESTART_QUESTION)
        self.assertEqual(tool.wait(), 0)
        with open(EXPECTED, "rb") as expected:
            self.assertEqual(self.installation.bytes().decode(), expected.read().decode())


if __name__ == "__main__":
    unittest.main()
