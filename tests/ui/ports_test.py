"""The COM Ports page and the choice of USB devices in the running window."""

import os
import unittest
import xml.etree.ElementTree as ElementTree

import pyatspi

from devices import Ports, UsbDevices
from tool import wait_for
from window_case import RESTART_QUESTION, WindowCase, complete_file, free_port

LIST, CONFIGURE, DEMO, CLEAR_ALL, APPLY = 1056, 1058, 1060, 1030, 1027
PORT, DEVICE_1, DEVICE_2, OK, CANCEL = 1051, 1061, 1062, 1, 2
TEXTS_1, TEXTS_2 = (1052, 1053, 1054), (1055, 1057, 1059)
MSR, DRAWER_1, DRAWER_2, PRINTER = 0, 3, 4, 6

DRAWERS = """\
1209 0001 FF45:5400 CD0001 Drawer
F055 0005 FF45:5400 CD0002 Drawer
1209 0002 FF45:5400 CDD001 'Dual Drawer'
F055 0008 FF45:1600 M1 'Card Reader'
"""
DRAWER_WINDOW = "Cash Drawer (USB) Configuration"


def ports_file(elements):
    """A complete file whose section of ports holds the given elements."""
    return complete_file(Logging_Configuration={"TCP_Port": free_port()}).replace(
        "<Ports_Configuration></Ports_Configuration>", f"<Ports_Configuration>{elements}</Ports_Configuration>")


class PortsPage(WindowCase):
    def open_page(self, elements="", devices="", environment=None):
        """The program on ports COM3, COM6 and COM7."""
        self.ports = Ports("COM3", "COM6", "COM7")
        self.addCleanup(self.ports.close)
        environment = {
            **(environment or {}),
            "DBUS_SYSTEM_BUS_ADDRESS": "unix:path=/nonexistent",
            "QUILLON_SETTINGS": os.path.join(self.installation.directory, "quillon.conf"),
            **self.ports.environment,
        }
        if devices:
            self.usb = UsbDevices(devices)
            environment.update(self.usb.environment)
        return self.open(ports_file(elements), environment)

    def configure(self, tool, row, title=DRAWER_WINDOW):
        tool.select(LIST, row)
        tool.click(CONFIGURE)
        tool.active_window(title)

    def saved(self):
        """The elements of the section, in document order: name, text, attributes."""
        section = ElementTree.parse(self.installation.file).getroot().find("Ports_Configuration")
        return [(element.tag, element.text or "", element.attrib) for element in section]

    def texts(self, tool, numbers):
        return [tool.text(number) for number in numbers]


class Rows(PortsPage):
    def test_the_rows_show_present_ports_and_the_drawers_identities(self):
        tool = self.open_page(
            '<MSR_USB VID="0x1" PID="0x2" Serial_Number="M">COM3</MSR_USB><LD_USB>COM12</LD_USB>'
            '<CD_USB VID="0x1209" PID="0x0001" Serial_Number="A" VID_2="0xf055" PID_2="0x0005" Serial_Number_2="B">'
            "COM6</CD_USB>")
        self.assertEqual(tool.rows(LIST), [
            ["MSR", "COM3", "", "", ""],
            ["Line Display", "", "", "", ""],
            ["iButton", "", "", "", ""],
            ["Cash Drawer 1 (USB)", "COM6", "0x1209", "0x0001", "A"],
            ["Cash Drawer 2 (USB)", "", "0xf055", "0x0005", "B"],
            ["Cash Drawer (PCI)", "", "", "", ""],
            ["Printer", "", "", "", ""],
        ])

    def test_the_columns_have_their_titles(self):
        table = self.open_page().control(LIST).queryTable()
        titles = [table.getColumnHeader(column).name for column in range(table.nColumns)]
        self.assertEqual(titles, ["Device", "COM Port", "Vendor ID", "Product ID", "Serial Number"])

    def test_without_a_selection_nothing_can_be_configured_or_tried(self):
        tool = self.open_page("<MSR_USB>COM3</MSR_USB>")
        self.assertFalse(tool.enabled(CONFIGURE) or tool.enabled(DEMO))
        self.assertTrue(tool.enabled(CLEAR_ALL) and tool.enabled(APPLY))

    def test_a_demo_takes_a_port_and_the_second_drawer_takes_the_first_ones(self):
        tool = self.open_page("<CD_USB>COM6</CD_USB>")
        for row, has_demo in ((MSR, False), (DRAWER_1, True), (PRINTER, False), (DRAWER_2, True)):
            tool.select(LIST, row)
            wait_for(lambda has_demo=has_demo: tool.enabled(DEMO) == has_demo, f"the demo of row {row}")
            self.assertTrue(tool.enabled(CONFIGURE))

    def test_tab_goes_through_list_and_buttons(self):
        tool = self.open_page("<MSR_USB>COM3</MSR_USB>")
        tool.select(LIST, MSR)
        wait_for(lambda: tool.focused(LIST) or tool.enabled(DEMO), "the list to take the selection")
        for number in (CONFIGURE, DEMO, CLEAR_ALL, APPLY):
            tool.key("Tab")
            wait_for(lambda number=number: tool.focused(number), f"the focus on {number}")

    def test_arrow_keys_move_the_selection(self):
        tool = self.open_page("<LD_USB>COM3</LD_USB>")
        tool.select(LIST, MSR)
        tool.key("Down")
        wait_for(lambda: tool.enabled(DEMO), "the demo of the next row")

    def test_apply_writes_every_row_and_drops_what_is_not_there(self):
        tool = self.open_page('<LD_USB VID="0x1">COM12</LD_USB><PRINTER_USB VID="0x2">COM7</PRINTER_USB>')
        tool.click(APPLY)
        tool.answer("OK", "Ports settings saved.")
        none = {"PID": "", "Serial_Number": "", "VID": ""}
        second = {"PID_2": "", "Serial_Number_2": "", "VID_2": ""}
        self.assertEqual(self.saved(), [
            ("MSR_USB", "", none),
            ("LD_USB", "", none),
            ("IB_USB", "", none),
            ("CD_USB", "", none | second),
            ("CD_PCI", "", {}),
            ("PRINTER_USB", "COM7", none),
        ])

    def test_clear_all_is_not_saved_before_apply(self):
        tool = self.open_page("<MSR_USB>COM3</MSR_USB>")
        before = self.installation.bytes()
        tool.select(LIST, MSR)
        tool.click(CLEAR_ALL)
        wait_for(lambda: tool.rows(LIST)[MSR][1] == "", "the row to become empty")
        self.assertTrue(tool.enabled(DEMO), "the buttons stay as they were")
        tool.close()
        self.assertEqual(tool.wait(), 0)
        self.assertEqual(self.installation.bytes(), before)

    def test_a_demo_on_a_cleared_row_shows_its_opening_error(self):
        tool = self.open_page("<MSR_USB>COM3</MSR_USB>")
        tool.select(LIST, MSR)
        tool.click(CLEAR_ALL)
        wait_for(lambda: tool.rows(LIST)[MSR][1] == "", "the row to become empty")
        tool.click(DEMO)
        wait_for(lambda: tool.text(1065) == "<Error Opening COM Port>", "the error")
        self.assertFalse(tool.enabled(1070))

    def test_apply_all_saves_the_ports_too(self):
        tool = self.open_page("<MSR_USB>COM12</MSR_USB>")
        tool.click(1031)
        tool.answer("OK", "All settings saved.")
        self.assertEqual(self.saved()[0][1], "")


class MakersIdentifiers(PortsPage):
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


class Binding(PortsPage):
    def test_both_usb_drawers_from_plugged_in_devices_to_the_file(self):
        tool = self.open_page("<MSR_USB>COM6</MSR_USB>", DRAWERS)
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
        tool = self.open_page("<CD_USB>COM6</CD_USB>", DRAWERS)
        before = (tool.rows(LIST), self.installation.bytes())
        for leave in (lambda: tool.click(CANCEL), lambda: tool.key("Escape")):
            self.configure(tool, DRAWER_1)
            tool.pick(PORT, "COM3")
            tool.pick(DEVICE_1, "a")
            leave()
            tool.main_window()
            self.assertEqual((tool.rows(LIST), self.installation.bytes()), before)

    def test_the_second_drawers_row_configures_both(self):
        tool = self.open_page("", DRAWERS)
        self.configure(tool, DRAWER_2)
        tool.pick(PORT, "COM7")
        tool.pick(DEVICE_2, "a")
        tool.click(OK)
        tool.main_window()
        wait_for(lambda: tool.rows(LIST)[DRAWER_1][1] == "COM7", "the first drawer's port")
        self.assertNotEqual(tool.rows(LIST)[DRAWER_2][4], "")

    def test_a_device_chosen_twice_stays_where_it_was_chosen_last(self):
        tool = self.open_page("", DRAWERS)
        self.configure(tool, DRAWER_1)
        tool.pick(DEVICE_1, "a")
        tool.pick(DEVICE_2, "a")
        wait_for(lambda: tool.chosen(DEVICE_1) == "Auto", "the first list to go back")
        self.assertEqual(self.texts(tool, TEXTS_1), ["", "", ""])
        self.assertNotEqual(tool.text(1059), "")

    def test_a_dual_drawer_chosen_second_moves_to_the_first_and_greys_the_second(self):
        tool = self.open_page("", DRAWERS)
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

    def test_an_unplugged_stored_drawer_is_not_lost_by_ok(self):
        tool = self.open_page('<CD_USB VID="0x1209" PID="0x0003" Serial_Number="AWAY">COM6</CD_USB>')
        self.configure(tool, DRAWER_1)
        self.assertEqual(tool.items(DEVICE_1), ["Auto"])
        self.assertEqual(self.texts(tool, TEXTS_1), ["0x1209", "0x0003", "AWAY"])
        tool.click(OK)
        tool.main_window()
        wait_for(lambda: self.saved()[3][2].get("Serial_Number") == "AWAY", "the file")

    def test_other_kinds_choose_their_port_only(self):
        tool = self.open_page("<PRINTER_USB>COM7</PRINTER_USB>", DRAWERS)
        self.configure(tool, MSR, "MSR Configuration")
        self.assertFalse(any(tool.enabled(number) for number in (DEVICE_1, *TEXTS_1)))
        self.assertIsNone(tool.find(DEVICE_2))
        tool.pick(PORT, "COM7")
        tool.click(OK)
        tool.main_window()
        wait_for(lambda: tool.rows(LIST)[MSR][1] == "COM7", "the port")
        self.assertEqual(tool.rows(LIST)[PRINTER][1], "")

    def test_the_pci_drawer_shows_two_grey_groups(self):
        tool = self.open_page("", DRAWERS)
        self.configure(tool, 5, "Cash Drawer (PCI) Configuration")
        self.assertEqual(tool.items(DEVICE_1), ["Auto"])
        self.assertFalse(any(tool.enabled(number) for number in (DEVICE_1, DEVICE_2, *TEXTS_1, *TEXTS_2)))

    def test_the_window_is_reached_by_keyboard_alone(self):
        tool = self.open_page("", DRAWERS)
        self.configure(tool, DRAWER_1)
        tool.choose(PORT, "COM3", before=CANCEL)
        tool.focus(OK)
        tool.key("Return")
        tool.main_window()
        wait_for(lambda: tool.rows(LIST)[DRAWER_1][1] == "COM3", "the port")


class LargeText(PortsPage):
    def test_at_200_percent_the_lists_are_as_high_as_their_text_and_the_window_fits_on_the_screen(self):
        tool = self.open_page("", DRAWERS, {"GDK_DPI_SCALE": "2"})
        self.configure(tool, DRAWER_1)
        label = height(tool.control(1088))
        for number in (PORT, DEVICE_1, DEVICE_2, *TEXTS_1):
            self.assertGreaterEqual(height(tool.control(number)), 1.4 * label, number)
        extents = tool.window(DRAWER_WINDOW).queryComponent().getExtents(pyatspi.DESKTOP_COORDS)
        self.assertLessEqual(extents.width, 1280)


def height(accessible):
    return accessible.queryComponent().getExtents(pyatspi.DESKTOP_COORDS).height


if __name__ == "__main__":
    unittest.main()
