"""The choice of USB devices in the running window."""

import os
import unittest

from devices import UsbDevices
import ports_test
from ports_test import APPLY, CANCEL, CONFIGURE, DEMO, DEVICE_1, DEVICE_2, DRAWER_1, DRAWER_2, DRAWER_WINDOW, LIST, MSR, OK, PORT, TEXTS_1, TEXTS_2
from waiting import wait_for
from window_case import RESTART_QUESTION

DRAWERS = """\
1209 0001 FF45:5400 CD0001 Drawer
F055 0005 FF45:5400 CD0002 Drawer
1209 0002 FF45:5400 CDD001 'Dual Drawer'
F055 0008 FF45:1600 M1 'Card Reader'
"""


class UsbPage(ports_test.PortsPage):
    def open_page(self, elements="", devices=DRAWERS, environment=None):
        """The program on ports COM3, COM6 and COM7 with the devices plugged in."""
        self.usb = UsbDevices(devices)
        return super().open_page(elements, {**(environment or {}), **self.usb.environment})


class MakersIdentifiers(UsbPage):
    def test_a_makers_file_decides_which_devices_are_offered(self):
        with open(os.path.join(self.installation.directory, "supported_devices"), "w", encoding="ascii") as file:
            file.write('<supported_devices V1="0x4321"/>')
        tool = self.open_page(devices=DRAWERS + "4321 0002 FF45:5400 ours 'Dual Drawer'\n")
        self.configure(tool, DRAWER_1)
        self.assertEqual(tool.items(DEVICE_1), ["Auto", "a", "b"])
        self.assertTrue(tool.enabled(DEVICE_2))
        offered = []
        for item in ("a", "b"):
            tool.pick(DEVICE_1, item)
            offered.append(wait_for(lambda: tool.text(1054), "the identity"))
            tool.pick(DEVICE_1, "Auto")
            wait_for(lambda: tool.text(1054) == "", "no identity")
        self.assertEqual(sorted(offered), ["CD0002", "ours"])


class Binding(UsbPage):
    def test_both_usb_drawers_from_plugged_in_devices_to_the_file(self):
        tool = self.open_page("<MSR_USB>COM6</MSR_USB>")
        self.configure(tool, DRAWER_1)
        self.assertEqual(tool.items(PORT), ["COM3", "COM6", "COM7"])
        self.assertEqual(tool.items(DEVICE_1), ["Auto", "a", "b", "c"])
        self.assertEqual(tool.chosen(DEVICE_1), "Auto")
        tool.pick(PORT, "COM6")
        tool.pick(DEVICE_1, "a")
        wait_for(lambda: tool.text(1054) != "", "the first identity")
        tool.pick(DEVICE_2, "b")
        wait_for(lambda: tool.text(1059) != "", "the second identity")
        first, second = self.texts(tool, TEXTS_1), self.texts(tool, TEXTS_2)
        self.assertEqual({first[2], second[2]} & {"CDD001"}, set())
        tool.click(OK)
        tool.main_window()
        rows = wait_for(lambda: tool.rows(LIST) if tool.rows(LIST)[DRAWER_1][1] else None, "the rows")
        self.assertEqual(rows[DRAWER_1], ["Cash Drawer 1 (USB)", "COM6", *first])
        self.assertEqual(rows[DRAWER_2], ["Cash Drawer 2 (USB)", "", *second])
        self.assertEqual(rows[MSR][1], "", "one port serves one device")
        wait_for(lambda: tool.enabled(DEMO), "the demo of the new port")

        saved = {name: (text, attributes) for name, text, attributes in self.saved()}
        keys = ("VID", "PID", "Serial_Number")
        self.assertEqual(saved["CD_USB"][0], "COM6")
        self.assertEqual([saved["CD_USB"][1][key] for key in keys], first)
        self.assertEqual([saved["CD_USB"][1][key + "_2"] for key in keys], second)
        self.assertEqual(saved["MSR_USB"][0], "")
        tool.close()
        tool.answer("No", RESTART_QUESTION)
        self.assertEqual(tool.wait(), 0)

    def test_cancel_and_escape_change_nothing(self):
        tool = self.open_page("<CD_USB>COM6</CD_USB>")
        before = (tool.rows(LIST), self.installation.bytes())
        for leave in (lambda: tool.click(CANCEL), lambda: tool.key("Escape")):
            self.configure(tool, DRAWER_1)
            tool.pick(PORT, "COM3")
            tool.pick(DEVICE_1, "a")
            leave()
            tool.main_window()
            self.assertEqual((tool.rows(LIST), self.installation.bytes()), before)

    def test_the_second_drawers_row_configures_both(self):
        tool = self.open_page()
        self.configure(tool, DRAWER_2)
        tool.pick(PORT, "COM7")
        tool.pick(DEVICE_2, "a")
        tool.click(OK)
        tool.main_window()
        wait_for(lambda: tool.rows(LIST)[DRAWER_1][1] == "COM7", "the first drawer's port")
        self.assertNotEqual(tool.rows(LIST)[DRAWER_2][4], "")

    def test_a_device_chosen_twice_stays_where_it_was_chosen_last(self):
        tool = self.open_page()
        self.configure(tool, DRAWER_1)
        tool.pick(DEVICE_1, "a")
        tool.pick(DEVICE_2, "a")
        wait_for(lambda: tool.chosen(DEVICE_1) == "Auto", "the first list to go back")
        self.assertEqual(self.texts(tool, TEXTS_1), ["", "", ""])
        self.assertNotEqual(tool.text(1059), "")

    def test_a_dual_drawer_chosen_second_moves_to_the_first_and_greys_the_second(self):
        tool = self.open_page()
        self.configure(tool, DRAWER_1)
        for item in ("a", "b", "c"):
            tool.pick(DEVICE_1, item)
            wait_for(lambda: tool.text(1054) != "", "the identity")
            if tool.text(1054) == "CDD001":
                break
        tool.pick(DEVICE_1, "Auto")
        wait_for(lambda: tool.enabled(DEVICE_2), "the second list")
        items = [c for c in tool.items(DEVICE_2)]
        self.assertIn(item, items)
        tool.control(DEVICE_2).querySelection().selectChild(items.index(item))
        wait_for(lambda: tool.chosen(DEVICE_1) == item, "the first list to take it")
        self.assertEqual(self.texts(tool, TEXTS_1), ["0x1209", "0x0002", "CDD001"])
        self.assertFalse(any(tool.enabled(number) for number in (DEVICE_2, *TEXTS_2)))


if __name__ == "__main__":
    unittest.main()
