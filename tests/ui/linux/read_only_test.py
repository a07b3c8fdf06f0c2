"""The running program for a user who may not change settings."""

import os
import unittest

from devices import Ports
from ports_test import ports_file
from read_only_cases import NO_RIGHTS, ReadOnlyCases
from tool import Tool
from waiting import wait_for
from window_case import SAVE_FAILED, WindowCase, complete_file

MSR_CONTROLS = [*range(1001, 1019), 1029, 1024]
PRINTER_CONTROLS = [1074, 1075, 1096, 1072, 1073]
IBUTTON_CONTROLS = [*range(1040, 1051), 1033, 1034]


class ReadOnly(ReadOnlyCases, WindowCase):
    def setUp(self):
        self.assertNotEqual(os.geteuid(), 0, "this test must not run as root")
        super().setUp()

    def start_without_rights(self):
        return self.start()

    def test_ports_stay_as_they_are_and_the_demo_works(self):
        ports = Ports("COM3")
        self.addCleanup(ports.close)
        self.installation.write(ports_file("<MSR_USB>COM3</MSR_USB>"))
        tool = self.start({**Tool.ALONE, **ports.environment})
        tool.answer("OK", NO_RIGHTS)
        tool.main_window()
        tool.select(1056, 0)
        wait_for(lambda: tool.enabled(1060), "the demo")
        self.assertFalse(any(tool.enabled(number) for number in (1058, 1030, 1027)))
        tool.click(1060)
        tool.window("MSR Demo")
        ports["COM3"].send(b"card")
        wait_for(lambda: "4 Byte(s) Received:\ncard" in tool.text(1065), "the card")

    def test_what_a_load_enables_stays_grey(self):
        keys = {"Head_Wrapper": "head", "CR_Enabled": "true", "Track2_CR_Enabled": "true"}
        tool = self.open_and_read(complete_file(MSR_Configuration=keys))
        tool.tab("MSR")
        self.assertEqual([n for n in MSR_CONTROLS if tool.enabled(n)], [])
        self.assertTrue(tool.checked(1012) and tool.checked(1017))
        self.assertEqual(tool.text(1014), "head")

    def test_the_ibutton_page_is_grey_and_shows_its_values(self):
        tool = self.open_and_read(complete_file(IB_Configuration={"Prefix": "0D0A", "ID_Length": "4"}))
        tool.tab("iButton")
        self.assertEqual([n for n in IBUTTON_CONTROLS if tool.enabled(n)], [])
        self.assertEqual((tool.text(1040), tool.chosen(1045)), ("0D 0A", "4"))

    def test_the_printer_page_is_grey_and_the_printer_is_asked_all_the_same(self):
        ports = Ports("COM8")
        self.addCleanup(ports.close)
        self.installation.write(ports_file("<PRINTER_USB>COM8</PRINTER_USB>"))
        tool = self.start({**Tool.ALONE, **ports.environment})
        tool.answer("OK", NO_RIGHTS)
        self.assertEqual(ports["COM8"].receive(3), b"\x1dI\x01")
        ports["COM8"].send(bytes(33))
        wait_for(lambda: tool.enabled(1000), "the end of the question")
        tool.tab("Printer")
        tool.await_printer()
        self.assertEqual([n for n in PRINTER_CONTROLS if tool.enabled(n)], [])

    def test_the_message_comes_once_and_the_window_closes_at_once(self):
        tool = self.open_and_read(complete_file())
        tool.close()
        self.assertEqual(tool.wait(), 0)

    def test_a_file_that_cannot_be_created_is_told_and_the_window_opens_all_the_same(self):
        os.chmod(self.installation.directory, 0o555)
        self.addCleanup(os.chmod, self.installation.directory, 0o755)
        tool = self.start()
        tool.answer("OK", SAVE_FAILED.format(self.installation.file))
        tool.answer("OK", NO_RIGHTS)
        tool.tab("Logging")
        self.assertEqual(tool.text(1022), "38674")
        tool.close()
        self.assertEqual(tool.wait(), 0)


if __name__ == "__main__":
    unittest.main()
