"""The COM Ports page of the running program: its rows, and the choice of a port for a row."""

import os
import unittest
import xml.etree.ElementTree as ElementTree

from devices import Ports
from tool import Tool
from waiting import wait_for
from window_case import WindowCase, complete_file

LIST, CONFIGURE, DEMO, CLEAR_ALL, APPLY = 1056, 1058, 1060, 1030, 1027
PORT, DEVICE_1, DEVICE_2, OK, CANCEL = 1051, 1061, 1062, 1, 2
TEXTS_1, TEXTS_2 = (1052, 1053, 1054), (1055, 1057, 1059)
MSR, DRAWER_1, DRAWER_2, PRINTER = 0, 3, 4, 6
DRAWER_WINDOW = "Cash Drawer (USB) Configuration"


def ports_file(elements):
    """A complete file whose section of ports holds the given elements."""
    return complete_file().replace(
        "<Ports_Configuration></Ports_Configuration>", f"<Ports_Configuration>{elements}</Ports_Configuration>")


class PortsPage(WindowCase):
    def open_page(self, elements="", environment=None):
        """The program on ports COM3, COM6 and COM7."""
        self.ports = Ports("COM3", "COM6", "COM7")
        self.addCleanup(self.ports.close)
        settings = {"QUILLON_SETTINGS": os.path.join(self.installation.directory, "quillon.conf")}
        return self.open(
            ports_file(elements), {**(environment or {}), **Tool.ALONE, **settings, **self.ports.environment})

    def configure(self, tool, row, title=DRAWER_WINDOW):
        tool.select(LIST, row)
        tool.click(CONFIGURE)
        tool.active_window(title)
        self.assert_own_icon(tool, title)

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
        titles = self.open_page().columns(LIST)
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


class AbsentPorts(PortsPage):
    """Rows whose port the terminal does not have."""

    LOST = "Line Display: COM12 was not present at the start. Saving clears it."
    GONE = "Printer: COM7 is not present."

    def test_a_stored_port_that_is_not_there_is_told_of_until_a_save_has_cleared_it(self):
        tool = self.open_page("<MSR_USB>COM3</MSR_USB><LD_USB>COM12</LD_USB>")
        before = self.installation.bytes()
        self.assertTrue(tool.says(self.LOST))
        self.assertEqual(tool.rows(LIST)[1], ["Line Display", "", "", "", ""])
        self.assertEqual(self.installation.bytes(), before)
        tool.click(APPLY)
        tool.answer("OK", "Ports settings saved.")
        wait_for(lambda: not tool.says(self.LOST), "the words to go")
        self.assertEqual([text for _, text, _ in self.saved()], ["COM3", "", "", "", "", ""])

    def test_a_bound_port_that_goes_is_told_of_and_saved(self):
        tool = self.open_page("<PRINTER_USB>COM7</PRINTER_USB>")
        self.assertFalse(tool.says(self.GONE))
        self.ports["COM7"].unplug()
        wait_for(lambda: tool.says(self.GONE), "the absence in words")
        self.assertEqual(tool.rows(LIST)[PRINTER][1], "COM7")
        tool.click(APPLY)
        tool.answer("OK", "Ports settings saved.")
        self.assertEqual(self.saved()[5][1], "COM7")
        self.ports.plug("COM7")
        wait_for(lambda: not tool.says(self.GONE), "the words to go")


class LivePorts(PortsPage):
    def test_ports_come_and_go_in_the_open_choice_and_what_is_chosen_stays(self):
        tool = self.open_page("<MSR_USB>COM6</MSR_USB>")
        self.configure(tool, MSR, "MSR Configuration")
        self.ports.plug("COM12")
        wait_for(lambda: "COM12" in tool.items(PORT), "the new port")
        self.ports["COM3"].unplug()
        wait_for(lambda: "COM3" not in tool.items(PORT), "the old port to go")
        self.assertEqual(tool.chosen(PORT), "COM6")
        self.ports["COM6"].unplug()
        wait_for(lambda: tool.says("Not present"), "the absence in words")
        self.assertEqual(tool.chosen(PORT), "COM6")
        tool.click(OK)
        tool.main_window()
        wait_for(lambda: self.saved()[0][1] == "COM6", "the file")


class Choice(PortsPage):
    def test_an_unplugged_stored_drawer_is_not_lost_by_ok(self):
        tool = self.open_page('<CD_USB VID="0x1209" PID="0x0003" Serial_Number="AWAY">COM6</CD_USB>')
        self.configure(tool, DRAWER_1)
        self.assertEqual(tool.items(DEVICE_1), ["Auto"])
        self.assertEqual(self.texts(tool, TEXTS_1), ["0x1209", "0x0003", "AWAY"])
        tool.click(OK)
        tool.main_window()
        wait_for(lambda: self.saved()[3][2].get("Serial_Number") == "AWAY", "the file")

    def test_other_kinds_choose_their_port_only(self):
        tool = self.open_page("<PRINTER_USB>COM7</PRINTER_USB>")
        self.configure(tool, MSR, "MSR Configuration")
        self.assertFalse(any(tool.enabled(number) for number in (DEVICE_1, *TEXTS_1)))
        self.assertIsNone(tool.find(DEVICE_2))
        tool.pick(PORT, "COM7")
        tool.click(OK)
        tool.main_window()
        wait_for(lambda: tool.rows(LIST)[MSR][1] == "COM7", "the port")
        self.assertEqual(tool.rows(LIST)[PRINTER][1], "")

    def test_the_pci_drawer_shows_two_grey_groups(self):
        tool = self.open_page()
        self.configure(tool, 5, "Cash Drawer (PCI) Configuration")
        self.assertEqual(tool.items(DEVICE_1), ["Auto"])
        self.assertFalse(any(tool.enabled(number) for number in (DEVICE_1, DEVICE_2, *TEXTS_1, *TEXTS_2)))

    def test_the_window_is_reached_by_keyboard_alone(self):
        tool = self.open_page()
        self.configure(tool, DRAWER_1)
        tool.choose(PORT, "COM3", before=CANCEL)
        tool.focus(OK)
        tool.key("Return")
        tool.main_window()
        wait_for(lambda: tool.rows(LIST)[DRAWER_1][1] == "COM3", "the port")

    def test_its_keys_reach_the_port_and_press_the_buttons(self):
        tool = self.open_page()
        for key, stored in (("alt+c", ""), ("alt+o", "COM3")):
            self.configure(tool, DRAWER_1)
            tool.focus(CANCEL)
            tool.key("alt+p")
            tool.key("Down")
            wait_for(lambda: tool.chosen(PORT) == "COM3", "the key to reach the list of ports")
            tool.key(key)
            tool.main_window()
            wait_for(lambda stored=stored: tool.rows(LIST)[DRAWER_1][1] == stored, "the port")


if __name__ == "__main__":
    unittest.main()
