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


class LiveLists(UsbPage):
    """What is plugged in and unplugged while the choice is open."""

    CD1, CD2, DUAL, _ = DRAWERS.splitlines()
    NOT_PRESENT = "Not present"

    def absences(self, tool):
        """How often the window says that something is not present."""
        return tool.labels(DRAWER_WINDOW).count(self.NOT_PRESENT)

    def letter_of(self, tool, serial):
        """Picks items of the first list until it is the device's."""
        for item in tool.items(DEVICE_1)[1:]:
            tool.pick(DEVICE_1, item)
            wait_for(lambda: tool.text(1054) != "", "the identity")
            if tool.text(1054) == serial:
                return item
        raise AssertionError(f"{serial} is not offered")

    def test_ports_come_and_go_and_the_choice_stays(self):
        tool = self.open_page("<CD_USB>COM6</CD_USB>")
        self.configure(tool, DRAWER_1)
        self.ports.plug("COM12")
        wait_for(lambda: tool.items(PORT) == ["COM3", "COM6", "COM7", "COM12"], "the new port")
        self.ports["COM3"].unplug()
        wait_for(lambda: tool.items(PORT) == ["COM6", "COM7", "COM12"], "the old port to go")
        self.assertEqual(tool.chosen(PORT), "COM6")
        tool.pick(PORT, "COM12")
        tool.click(OK)
        tool.main_window()
        wait_for(lambda: self.saved()[3][1] == "COM12", "the file")
        self.configure(tool, DRAWER_1)
        self.assertEqual(tool.chosen(PORT), "COM12")

    def test_a_chosen_port_that_goes_is_said_to_be_not_present_and_kept(self):
        tool = self.open_page("<CD_USB>COM6</CD_USB>")
        self.configure(tool, DRAWER_1)
        self.assertEqual(self.absences(tool), 0)
        self.ports["COM6"].unplug()
        wait_for(lambda: self.absences(tool) == 1, "the absence in words")
        self.assertEqual(tool.description(PORT), self.NOT_PRESENT)
        self.assertEqual((tool.items(PORT), tool.chosen(PORT)), (["COM3", "COM6", "COM7"], "COM6"))
        self.ports.plug("COM6")
        wait_for(lambda: self.absences(tool) == 0, "the words to go")
        self.assertEqual(tool.description(PORT), "")
        self.ports["COM6"].unplug()
        wait_for(lambda: self.absences(tool) == 1, "the absence in words")
        tool.click(OK)
        tool.main_window()
        wait_for(lambda: self.saved()[3][1] == "COM6", "the file")

    def test_devices_come_and_go_and_the_choice_stays(self):
        tool = self.open_page(devices=f"{self.CD1}\n{self.CD2}")
        self.configure(tool, DRAWER_1)
        chosen = self.letter_of(tool, "CD0002")
        other = "b" if chosen == "a" else "a"
        self.usb.plug(self.DUAL)
        wait_for(lambda: tool.items(DEVICE_1) == ["Auto", "a", "b", "c"], "the new device")
        self.usb.unplug(self.CD1)
        left = [item for item in ("Auto", "a", "b", "c") if item != other]
        wait_for(lambda: (tool.items(DEVICE_1), tool.items(DEVICE_2)) == (left, left), "the old device to go")
        self.assertEqual((tool.chosen(DEVICE_1), tool.text(1054)), (chosen, "CD0002"))
        self.usb.plug(self.CD1)
        wait_for(lambda: tool.items(DEVICE_1) == ["Auto", "a", "b", "c"], "the device with its letter")
        self.assertEqual((tool.chosen(DEVICE_1), tool.text(1054)), (chosen, "CD0002"))
        self.assertEqual(self.absences(tool), 0)

    def test_a_chosen_device_that_goes_is_said_to_be_not_present_and_kept(self):
        tool = self.open_page("<CD_USB>COM6</CD_USB>", devices=f"{self.CD1}\n{self.CD2}")
        self.configure(tool, DRAWER_1)
        chosen = self.letter_of(tool, "CD0002")
        self.usb.unplug(self.CD2)
        wait_for(lambda: self.absences(tool) == 1, "the absence in words")
        self.assertEqual(tool.description(DEVICE_1), self.NOT_PRESENT)
        self.assertEqual((tool.chosen(DEVICE_1), tool.text(1054)), (chosen, "CD0002"))
        tool.click(OK)
        tool.main_window()
        wait_for(lambda: self.saved()[3][2].get("Serial_Number") == "CD0002", "the file")

    def test_a_stored_device_is_not_present_until_it_is_plugged_in(self):
        tool = self.open_page('<CD_USB VID="0xf055" PID="0x0005" Serial_Number="CD0002">COM6</CD_USB>', devices=self.CD1)
        self.configure(tool, DRAWER_1)
        wait_for(lambda: self.absences(tool) == 1, "the absence in words")
        self.assertEqual(tool.chosen(DEVICE_1), "Auto")
        self.usb.plug(self.CD2)
        wait_for(lambda: tool.chosen(DEVICE_1) == "b", "the stored device")
        self.assertEqual(self.absences(tool), 0)


if __name__ == "__main__":
    unittest.main()
