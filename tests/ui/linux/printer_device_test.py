"""The Printer page on a tty of the test's own, on the simulated suite and with what surrounds it on a desktop."""

import os
import unittest

from devices import Ports
from printer_test import APPLY, APPLY_ALL, CODE_PAGE, EPSON, INTERFACE, LINK, NATIVE, NOT_ANSWERED, STANDARD, TABS, PrinterPage
from simulator import Simulator
from tool import Tool
from waiting import wait_for
from window_case import complete_file

ELEMENT = "<PRINTER_USB>COM8</PRINTER_USB>"


class Surroundings(PrinterPage):
    """The suite's settings and the web browser."""

    def test_logos_that_nobody_changed_stay_as_they_are(self):
        data = os.path.join(self.installation.directory, "suite", "DAT")
        os.makedirs(data)
        foreign = os.path.join(data, "7.bmp")
        with open(foreign, "wb") as file:
            file.write(b"another logo")
        settings = os.path.join(self.installation.directory, "quillon.conf")
        with open(settings, "w", encoding="utf-8") as file:
            file.write(f"Directory={os.path.dirname(data)}\n")
        logos = '<Printer_Logo Timestamp="01d0"><Logo Slot="1" Station="0">/gone/1.bmp</Logo></Printer_Logo>'
        self.installation.write(complete_file().replace(
            "<Printer_Configuration>", "<Printer_Configuration>" + logos))
        tool = self.open(environment={"QUILLON_SETTINGS": settings, **Tool.ALONE})
        tool.tab("Printer")
        self.apply(tool)
        tool.click(APPLY_ALL)
        tool.answer("OK", "All settings saved.")
        self.assertIn(b'<Logo Slot="1" Station="0">/gone/1.bmp</Logo>', self.installation.bytes())
        self.assertEqual(self.installation.bytes().count(b"<Printer_Logo"), 1)
        self.assertTrue(os.path.exists(foreign))

    def test_the_link_opens_the_makers_page(self):
        for key in (None, "Return"):
            with self.subTest(key):
                browser, opened = self.browser()
                self.installation.write(complete_file())
                tool = self.open(environment={**browser, **Tool.ALONE})
                tool.tab("Printer")
                if key is None:
                    tool.click(LINK)
                else:
                    tool.focus(LINK)
                    tool.key(key)
                wait_for(lambda opened=opened: os.path.exists(opened), "the browser")
                with open(opened, encoding="utf-8") as file:
                    self.assertEqual(file.read().rstrip("/"), "https://www.harlune.example")
                tool.kill()

    def test_without_a_browser_the_address_is_told(self):
        environment = {"PATH": "/nonexistent", "XDG_DATA_DIRS": "/usr/share", **Tool.ALONE}
        self.installation.write(complete_file())
        tool = self.open(environment=environment)
        tool.tab("Printer")
        tool.click(LINK)
        tool.answer("OK", "No web browser could be started.\nThe page is https://www.harlune.example")

    def browser(self):
        """An environment in which web pages are opened by a script that writes the address down."""
        directory = os.path.join(self.installation.directory, "share")
        os.makedirs(os.path.join(directory, "applications"), exist_ok=True)
        opened = os.path.join(directory, "opened")
        if os.path.exists(opened):
            os.remove(opened)
        script = os.path.join(directory, "browser")
        with open(script, "w", encoding="utf-8") as file:
            file.write(f'#!/bin/sh\nprintf %s "$1" >{opened}.new && mv {opened}.new {opened}\n')
        os.chmod(script, 0o755)
        with open(os.path.join(directory, "applications", "browser.desktop"), "w", encoding="utf-8") as file:
            file.write(f"[Desktop Entry]\nType=Application\nName=Browser\nExec={script} %u\n"
                       "MimeType=x-scheme-handler/http;x-scheme-handler/https;\n")
        with open(os.path.join(directory, "applications", "mimeapps.list"), "w", encoding="utf-8") as file:
            file.write("[Default Applications]\nx-scheme-handler/https=browser.desktop\n")
        return {"XDG_DATA_HOME": directory, "XDG_CONFIG_HOME": directory}, opened


class OnATty(PrinterPage):
    """The test is the printer."""

    def setUp(self):
        super().setUp()
        self.ports = Ports("COM8")
        self.addCleanup(self.ports.close)

    def start_page(self, **keys):
        """The program while it asks for the first time."""
        file = complete_file(Printer_Configuration=keys)
        self.installation.write(file.replace("<Ports_Configuration>", "<Ports_Configuration>" + ELEMENT))
        tool = self.start({**Tool.ALONE, **self.ports.environment})
        wait_for(tool.has_printer_open, "the question")
        return tool

    def test_the_window_says_that_it_asks_and_takes_no_input(self):
        tool = self.start_page()
        self.assertFalse(tool.enabled(TABS))
        self.assertTrue(tool.says("Asking the printer..."))
        self.assertEqual(self.ports["COM8"].receive(3), b"\x1dI\x01")
        wait_for(lambda: tool.enabled(TABS), "the end")
        self.assertFalse(tool.says("Asking the printer..."))

    def test_the_port_is_open_while_its_tab_is_shown_only(self):
        tool = self.start_page()
        wait_for(lambda: tool.has_printer_open(), "the port")
        wait_for(lambda: tool.enabled(TABS), "the end")
        self.assertFalse(tool.has_printer_open())
        tool.tab("Printer")
        tool.await_printer()
        self.assertTrue(tool.has_printer_open())
        tool.tab("MSR")
        wait_for(lambda: not tool.has_printer_open(), "the port to be closed")

    def test_each_question_is_asked_once(self):
        tool = self.start_page()
        printer = self.ports["COM8"]
        self.assertEqual(printer.receive(3), b"\x1dI\x01")
        wait_for(lambda: tool.enabled(TABS), "the end")
        tool.tab("Printer")
        self.assertEqual(printer.receive(4), b"\x1dN\x05\x02")
        wait_for(lambda: tool.enabled(TABS), "the end")
        tool.tab("MSR")
        tool.tab("Printer")
        wait_for(lambda: tool.has_printer_open(), "the port")
        self.assertTrue(tool.enabled(TABS))
        self.assertTrue(printer.is_silent())

    def test_a_tab_that_is_chosen_while_it_asks_counts_afterwards(self):
        tool = self.start_page()
        tool.tab("Printer")
        self.assertEqual(self.ports["COM8"].receive(7), b"\x1dI\x01\x1dN\x05\x02")
        tool.tab("MSR")
        wait_for(lambda: tool.enabled(TABS) and not tool.has_printer_open(), "the port to be closed")

    def test_a_late_answer_is_shown(self):
        tool = self.start_page(Code_Page="4", Emulation_Mode="0")
        wait_for(lambda: tool.enabled(TABS), "the end")
        tool.tab("Printer")
        tool.await_printer()
        self.assertTrue(tool.says(NOT_ANSWERED))
        self.ports["COM8"].send(bytes(33))
        wait_for(lambda: tool.chosen(CODE_PAGE) == "865", "the stored code page")
        self.assertFalse(tool.says(NOT_ANSWERED))

    def test_unplugging_at_any_moment_is_borne(self):
        tool = self.start_page()
        self.ports["COM8"].unplug()
        wait_for(lambda: tool.enabled(TABS), "the end")
        for _ in range(3):
            self.ports.plug("COM8")
            tool.tab("Printer")
            wait_for(lambda: tool.has_printer_open(), "the port")
            self.ports["COM8"].unplug()
            wait_for(lambda: tool.enabled(TABS), "the end")
            tool.tab("MSR")
        tool.close()
        self.assertEqual(tool.wait(), 0)

    def test_a_flooding_printer_can_be_left(self):
        tool = self.start_page()
        self.ports["COM8"].send(b"x" * 4000)
        wait_for(lambda: tool.enabled(TABS), "the end")
        tool.tab("Printer")
        tool.await_printer()
        for _ in range(50):
            self.ports["COM8"].send(bytes(range(64)))
        tool.close()
        self.assertEqual(tool.wait(), 0)


class OnTheSuite(PrinterPage):
    def open_page(self, printer, **keys):
        logging = {"Log_Level": "5", "Module_PRINTER_USB": "true"}
        file = complete_file(Logging_Configuration=logging, Printer_Configuration=keys)
        self.installation.write(file.replace("<Ports_Configuration>", "<Ports_Configuration>" + ELEMENT))
        self.simulator = Simulator(self.installation.file, "--printer", printer)
        self.addCleanup(self.simulator.close)
        tool = self.open(environment=self.simulator.environment)
        tool.tab("Printer")
        tool.await_printer()
        return tool

    def asked(self):
        return [line for line in self.simulator.said() if line.endswith("asked for")]

    def test_the_page_is_filled_from_what_the_printer_holds(self):
        tool = self.open_page("many-pages", Code_Page="4", Emulation_Mode="0")
        items = tool.items(CODE_PAGE)
        self.assertEqual((len(items), items[-1], "850" in items, "851" in items), (25, "Printer Default", True, False))
        self.assertEqual(self.shown(tool), (items[4], NATIVE, False))
        self.assertFalse(tool.says(NOT_ANSWERED))
        self.assertEqual(
            self.asked(), ["printer: device information asked for", "printer: code page list asked for"])

    def test_a_printers_own_code_page_is_stored_by_its_place_and_one(self):
        tool = self.open_page("many-pages", Code_Page="4", Emulation_Mode="0")
        place = tool.items(CODE_PAGE).index("850")
        tool.pick(CODE_PAGE, "850")
        self.assertEqual(self.apply(tool)["Code_Page"], str(place + 1))

    def test_the_native_interface_brings_the_printers_list_back(self):
        tool = self.open_page("many-pages")
        tool.pick(INTERFACE, EPSON)
        wait_for(lambda: tool.items(CODE_PAGE) == STANDARD, "the standard list")
        tool.pick(INTERFACE, NATIVE)
        wait_for(lambda: "850" in tool.items(CODE_PAGE), "the printer's list")
        self.assertEqual(tool.chosen(CODE_PAGE), tool.items(CODE_PAGE)[1])

    def test_a_printer_without_code_pages_leaves_the_choice_to_itself(self):
        tool = self.open_page("no-pages", Code_Page="-1", Emulation_Mode="0")
        self.assertEqual(tool.items(CODE_PAGE), ["Printer Default"])
        self.assertEqual(tool.chosen(CODE_PAGE), "Printer Default")

    def test_another_type_shows_the_stored_values_in_the_standard_list(self):
        tool = self.open_page("other-type", Code_Page="7", Emulation_Mode="0")
        self.assertEqual(tool.items(CODE_PAGE), STANDARD)
        self.assertEqual(self.shown(tool), ("869", NATIVE, False))

    def test_the_order_of_the_keys_decides_whether_the_code_page_is_lowered(self):
        tool = self.open_page("other-type", Emulation_Mode="0", Code_Page="7")
        self.assertEqual(self.shown(tool), ("857", NATIVE, False))

    def test_a_silent_printer_leaves_the_standard_values(self):
        tool = self.open_page("silent", Code_Page="4", Emulation_Mode="0")
        self.assertEqual(self.shown(tool), ("858", NATIVE, False))
        self.assertTrue(tool.says(NOT_ANSWERED))

    def test_an_epson_printer_is_not_asked_and_the_stored_values_are_shown(self):
        tool = self.open_page("many-pages", Code_Page="18", Emulation_Mode="2")
        self.assertEqual(tool.items(CODE_PAGE), STANDARD)
        self.assertEqual(self.shown(tool), ("1252", EPSON, False))
        self.assertEqual(self.asked(), [])

    def test_garbage_and_answers_in_pieces_leave_a_page_that_can_be_used(self):
        for printer in ("garbage", "split", "split-early", "long-list"):
            with self.subTest(printer):
                tool = self.open_page(printer, Code_Page="4", Emulation_Mode="0")
                self.assertEqual(tool.items(CODE_PAGE)[-1], "Printer Default")
                tool.pick(CODE_PAGE, tool.items(CODE_PAGE)[0])
                self.apply(tool)
                tool.close()
                tool.answer("No")
                self.assertEqual(tool.wait(), 0)
                self.simulator.close()

    def test_what_happens_is_logged(self):
        self.open_page("usual", Emulation_Mode="0")
        log = self.simulator.log()
        for line in ("LEVEL_INFO    \tPRINTERDialog::OpenPort - COM Port Opened",
                     "LEVEL_VERBOSE \tPRINTERDialog::ProcessReceiveData - Printer Status Bytes (33 bytes)",
                     "LEVEL_INFO    \tPrinter Device Information (15 bytes)"):
            self.assertIn(line, log)

    def test_a_port_that_is_not_there_is_logged_at_the_start_and_at_the_tab(self):
        logging = {"Log_Level": "5", "Module_PRINTER_USB": "true"}
        self.installation.write(complete_file(Logging_Configuration=logging))
        self.simulator = Simulator(self.installation.file)
        self.addCleanup(self.simulator.close)
        tool = self.open(environment=self.simulator.environment)
        tool.tab("Printer")
        for line in ("PRINTERDialog::OpenPort - COM Port string is empty\r\n",
                     "QLXConfigDlg::OnInitDialog() Couldn't open COM port. Maybe not configured.\r\n",
                     "QLXConfigDlg::OnTcnSelchangeTabMzp() Couldn't open COM port. Maybe not configured.\r\n"):
            wait_for(lambda line=line: line in self.simulator.log(), line)
        self.apply(tool)
        wait_for(lambda: "LEVEL_VERBOSE \tPRINTERDialog - Settings saved\r\n" in self.simulator.log(), "the save")


if __name__ == "__main__":
    unittest.main()
