"""The demo of each kind of device in the running window, over real ttys."""

import os
import termios
import threading
import time
import unittest

from devices import Ports
from ports_test import CLEAR_ALL, DEMO, LIST, ports_file
from services import Services
from driven_tool import xdotool
from tool import Tool
from waiting import wait_for
from window_case import RESTART_QUESTION, WindowCase

COMMAND, COMMAND_2, PORT_LABEL, OUTPUT, HEX, CLEAR, CLOSE = 1067, 1069, 1068, 1065, 1070, 1066, 1
MSR, DISPLAY, IBUTTON, DRAWER_1, DRAWER_2, PCI, PRINTER = range(7)
TITLES = [
    "MSR Demo",
    "Line Display Demo",
    "iButton Demo",
    "Cash Drawer Demo",
    "Cash Drawer Demo",
    "Cash Drawer Demo",
    "Printer Demo",
]
OPENED = "<COM Port Opened>"  # the first line of the output
PORT_OF = {MSR: "COM3", DISPLAY: "COM4", IBUTTON: "COM5", DRAWER_1: "COM6", DRAWER_2: "COM6", PCI: "COM7", PRINTER: "COM8"}
ELEMENTS = (
    "<MSR_USB>COM3</MSR_USB><LD_USB>COM4</LD_USB><IB_USB>COM5</IB_USB>"
    "<CD_USB>COM6</CD_USB><CD_PCI>COM7</CD_PCI>"
)
PRINTER_ELEMENT = "<PRINTER_USB>COM8</PRINTER_USB>"  # with it the program asks the printer first
DEMO_QUESTION = (
    "Configuration file changed. You must restart the services before running the Demo.\n\n"
    "Do you want to restart the services now?"
)


class DemoCase(WindowCase):
    def setUp(self):
        super().setUp()
        self.ports = Ports(*sorted(set(PORT_OF.values())))
        self.addCleanup(self.ports.close)

    def open_tool(self, environment=None, elements=ELEMENTS):
        return self.open(ports_file(elements), {**Tool.ALONE, **(environment or {}), **self.ports.environment})

    def open_demo(self, kind):
        """The program with the demo of one kind open, and the device's end of its port."""
        tool = self.open_tool(elements=ELEMENTS + PRINTER_ELEMENT if kind == PRINTER else ELEMENTS)
        tool.select(LIST, kind)
        tool.click(DEMO)
        tool.active_window(TITLES[kind])
        self.await_output(tool, OPENED)
        return tool, self.ports[PORT_OF[kind]]

    def await_output(self, tool, text):
        wait_for(lambda: text in tool.text(OUTPUT), f"{text!r} in the output")

    def assert_closed_cleanly(self, tool):
        tool.close()
        self.assertEqual(tool.wait(), 0)


class Kinds(DemoCase):
    def test_every_kind_opens_its_window_on_its_port(self):
        tool = self.open_tool(elements=ELEMENTS + PRINTER_ELEMENT)
        for kind, title in enumerate(TITLES):
            tool.select(LIST, kind)
            tool.click(DEMO)
            tool.active_window(title)
            self.assert_own_icon(tool, title)
            self.assertEqual(tool.name(PORT_LABEL), PORT_OF[kind])
            self.await_output(tool, OPENED)
            labels = [tool.name(number) if tool.find(number) else None for number in (COMMAND, COMMAND_2)]
            expected = {DISPLAY: ["Send Text", None], PRINTER: ["Print Receipt", None]}
            drawers = ["Open CDs", "Get Status"]
            self.assertEqual(labels, expected.get(kind, drawers if DRAWER_1 <= kind <= PCI else [None, None]))
            self.assertEqual(tool.find(HEX) is not None, kind in (MSR, IBUTTON))
            tool.key("Escape")
            tool.main_window()

    def test_a_card_is_shown_as_text_and_then_in_hex(self):
        tool, reader = self.open_demo(MSR)
        self.assertFalse(tool.checked(HEX))
        reader.send(b"A\r")
        self.await_output(tool, "2 Byte(s) Received:\nA\n")
        tool.check(HEX, True)
        reader.send(b"A\r")
        self.await_output(tool, "2 Byte(s) Received:\n41 0D")
        self.assertTrue(tool.text(OUTPUT).startswith("<COM Port Opened>\n2 Byte(s) Received:\nA\n"))

    def test_an_ibutton_is_shown_in_hex(self):
        tool, reader = self.open_demo(IBUTTON)
        self.assertTrue(tool.checked(HEX))
        reader.send(bytes(range(17)))
        self.await_output(tool, "17 Byte(s) Received:\n00 01 02 03 04 05 06 07  08 09 0A 0B 0C 0D 0E 0F  10")

    def test_the_display_is_sent_its_text(self):
        tool, display = self.open_demo(DISPLAY)
        tool.click(COMMAND)
        self.assertEqual(display.receive(27), b"\x1f\x10\x04HARLUNE TEST\n\r0123456789")
        self.await_output(tool, '\n<Sending "HARLUNE TEST<LF><CR>0123456789">')

    def test_drawers_are_opened_and_tell_their_status(self):
        for kind in (DRAWER_1, DRAWER_2, PCI):
            with self.subTest(kind):
                tool, drawers = self.open_demo(kind)
                tool.click(COMMAND)
                self.assertEqual(drawers.receive(3), b"\x07\x1b\x07")
                tool.click(COMMAND_2)
                self.assertEqual(drawers.receive(1), b"\x06")
                drawers.send(b"\x58")
                self.await_output(
                    tool, "1 Byte(s) Received:\n58\n<Cash Drawer 1 is Opened.>\n<Cash Drawer 2 is Closed.>")
                tool.kill()

    def test_the_receipt_is_printed(self):
        tool, printer = self.open_demo(PRINTER)
        self.assertEqual(printer.receive(3), b"\x1dI\x01", "what the program asked when it started")
        tool.click(COMMAND)
        receipt = printer.receive(564)
        self.assertTrue(receipt.startswith(b"\x1b\x61\x01\x1b\x21\x09\x1d\x21\x35Harlune\n"))
        self.assertTrue(receipt.endswith(b"\x0c\x1b\x61\x00\x1b\x21\x00\x1d\x21\x00\x1d\x68\xa2\x1d\x48\x00\x1d\x66\x00"))
        self.assertEqual(tool.text(OUTPUT), OPENED)


class Window(DemoCase):
    def test_clear_empties_the_output_and_goes_grey(self):
        tool, reader = self.open_demo(MSR)
        self.assertTrue(tool.enabled(CLEAR))
        tool.click(CLEAR)
        wait_for(lambda: tool.text(OUTPUT) == "", "an empty output")
        self.assertFalse(tool.enabled(CLEAR))
        reader.send(b"B")
        wait_for(lambda: tool.text(OUTPUT) == "1 Byte(s) Received:\nB", "the next card from the first line on")
        self.assertTrue(tool.enabled(CLEAR))

    def test_enter_escape_and_the_button_close_the_window(self):
        tool = self.open_tool()
        tool.select(LIST, MSR)
        for close in (lambda: tool.key("Return"), lambda: tool.key("Escape"), lambda: tool.click(CLOSE)):
            tool.click(DEMO)
            tool.active_window("MSR Demo")
            close()
            tool.main_window()
        self.assert_closed_cleanly(tool)

    def test_tab_goes_through_the_controls(self):
        tool, _ = self.open_demo(DRAWER_1)
        tool.focus(COMMAND)
        for number in (COMMAND_2, OUTPUT):
            tool.key("Tab")
            wait_for(lambda number=number: tool.focused(number), f"the focus on {number}")
        tool.focus(CLEAR)
        tool.key("Tab")
        wait_for(lambda: tool.focused(CLOSE), "the focus on Close")

    def test_a_double_click_opens_the_demo_of_a_row_with_a_port_only(self):
        tool = self.open_tool(elements="<LD_USB>COM4</LD_USB>")
        tool.double_click(LIST, MSR)
        tool.double_click(LIST, DISPLAY)
        tool.active_window("Line Display Demo")
        self.assertEqual(len(tool.windows()), 2)

    def test_a_double_click_on_the_second_drawer_takes_the_firsts_port(self):
        tool = self.open_tool()
        tool.double_click(LIST, DRAWER_2)
        tool.active_window("Cash Drawer Demo")
        self.assertEqual(tool.name(PORT_LABEL), "COM6")

    def test_the_enter_key_on_a_row_opens_nothing(self):
        tool = self.open_tool()
        tool.select(LIST, MSR)
        tool.key("Return")
        tool.key("Down")
        wait_for(lambda: tool.enabled(DEMO), "the row below")
        self.assertEqual(len(tool.windows()), 1)


class Troubles(DemoCase):
    def test_a_port_that_has_gone_greys_the_controls_and_tells(self):
        self.ports["COM6"].unplug()
        tool = self.open_tool(elements="<MSR_USB>COM3</MSR_USB>")
        self.ports["COM3"].unplug()
        tool.select(LIST, MSR)
        tool.click(DEMO)
        tool.active_window("MSR Demo")
        self.await_output(tool, "<Error Opening COM Port>")
        self.assertFalse(tool.enabled(HEX))
        tool.key("Escape")
        tool.main_window()
        self.assert_closed_cleanly(tool)

    def test_an_unplugged_device_is_told_and_its_writes_fail(self):
        tool, drawers = self.open_demo(DRAWER_1)
        drawers.unplug()
        self.await_output(tool, "<Error Reading Port>")
        tool.click(COMMAND_2)
        self.await_output(tool, "<Error Writing to Port>")
        # Of the read that the unplugging ended, where that tells it, and of the next that cannot start.
        self.assertIn(tool.text(OUTPUT).count("<Error Reading Port>"), (1, 2))
        tool.key("Escape")
        tool.main_window()
        self.assert_closed_cleanly(tool)

    def test_every_byte_can_be_shown(self):
        tool, reader = self.open_demo(MSR)
        for block in (bytes(range(256)), bytes(256), b"\x1b[31m\x00\xff" * 100, b"\xc3\x28\xa0\xa1" * 50):
            reader.send(block)
            wait_for(lambda: tool.text(OUTPUT).count("Byte(s) Received:") >= 1, "the block")
            tool.click(CLEAR)
            wait_for(lambda: tool.text(OUTPUT) == "", "an empty output")

    def flood(self, port):
        """Sends from a thread as fast as the port takes it until the function that is returned is called."""
        over = threading.Event()
        os.set_blocking(port.device, False)

        def send():
            while not over.is_set():
                try:
                    os.write(port.device, b"%B1234567890^NAME^25121010000?\r" * 100)
                except BlockingIOError:
                    time.sleep(0.001)  # the port is full

        sender = threading.Thread(target=send)
        sender.start()

        def end():
            over.set()
            sender.join()

        self.addCleanup(end)
        return end

    def test_the_window_can_be_used_and_closed_in_mid_flood(self):
        tool, reader = self.open_demo(MSR)
        self.flood(reader)
        clear = tool.bounds(CLEAR)
        tool.check(HEX, True)
        wait_for(lambda: tool.text_length(OUTPUT) > 1000000, "the flood")
        self.assertEqual(tool.text_start(OUTPUT, len(OPENED)), OPENED)
        tool.click_at(clear)
        wait_for(lambda: tool.text_start(OUTPUT, len(OPENED)) != OPENED, "the output to have been emptied")
        tool.click(CLOSE)
        tool.main_window()
        threads = tool.threads()
        tool.click(DEMO)
        tool.active_window("MSR Demo")
        tool.click(CLOSE)
        tool.main_window()
        wait_for(lambda: tool.threads() <= threads, "the readers to have ended")
        self.assert_closed_cleanly(tool)

    def test_a_printer_that_takes_nothing_can_be_left_at_once(self):
        tool, printer = self.open_demo(PRINTER)
        termios.tcflow(printer.kept, termios.TCOOFF)
        tool.click(COMMAND)
        self.await_output(tool, "<Error Writing to Port>")
        tool.click(COMMAND)  # does nothing while the receipt is still being tried
        tool.click(CLOSE)
        tool.main_window()
        self.assert_closed_cleanly(tool)

    def test_a_device_may_be_unplugged_in_demo_after_demo(self):
        tool = self.open_tool()
        tool.select(LIST, MSR)
        for _ in range(10):
            tool.click(DEMO)
            tool.active_window("MSR Demo")
            self.await_output(tool, OPENED)
            self.ports["COM3"].unplug()
            self.await_output(tool, "<Error Reading Port>")
            tool.key("Escape")
            tool.main_window()
            self.ports.plug("COM3")
        self.assert_closed_cleanly(tool)


class AfterAChange(DemoCase):
    """A demo when the file has changed since the services were last started."""

    def setUp(self):
        super().setUp()
        self.start_window_manager()  # a window that opens by itself gets the focus from nobody else

    def open_changed(self, **behaviour):
        """The program with a saved change, asked for the demo of the card reader."""
        self.services = Services(self.installation, **behaviour)
        self.addCleanup(self.services.close)
        tool = self.open_tool(self.services.environment)
        tool.click(1027)
        tool.answer("OK", "Ports settings saved.")
        tool.select(LIST, MSR)
        tool.click(DEMO)
        return tool

    def test_no_runs_no_demo_and_asks_again(self):
        tool = self.open_changed()
        tool.answer("No", DEMO_QUESTION)
        tool.double_click(LIST, MSR)
        tool.answer("No", DEMO_QUESTION)
        self.assertEqual(self.services.stops(), [])

    def test_yes_restarts_the_services_and_opens_the_demo(self):
        tool = self.open_changed()
        tool.answer("Yes", DEMO_QUESTION)
        tool.answer("OK", "Quillon services restarted.\n")
        tool.active_window("MSR Demo")
        self.await_output(tool, OPENED)
        tool.key("Escape")
        tool.main_window()
        tool.click(DEMO)  # the change is in force: no more question, now or at the close
        tool.active_window("MSR Demo")
        tool.key("Escape")
        tool.main_window()
        self.assert_closed_cleanly(tool)

    def test_a_failed_restart_opens_no_demo_and_the_page_goes_on(self):
        tool = self.open_changed(refuses_to_stop="QLXSVC")
        tool.answer("Yes", DEMO_QUESTION)
        self.assertRegex(tool.box_text(), r"^Stop QLX Service GetLastError = \d+$")
        tool.answer("OK")
        tool.answer("OK", "Quillon Framework Service failed to stop.\nRestart Quillon services manually.")
        tool.main_window()
        wait_for(lambda: tool.enabled(DEMO) and tool.enabled(CLEAR_ALL), "the page to be enabled again")
        self.assertEqual(len(tool.windows()), 1)
        tool.close()
        tool.answer("No", RESTART_QUESTION)
        self.assertEqual(tool.wait(), 0)

    def test_during_the_restart_the_tabs_are_grey_and_the_window_stays_open(self):
        tool = self.open_changed(slow_to_stop="QLXSVC")
        tool.answer("Yes", DEMO_QUESTION)
        tool.window("Restarting services...")
        self.assert_own_icon(tool, "Restarting services...")
        self.assertFalse(tool.enabled(1000) or tool.enabled(DEMO) or tool.enabled(CLEAR_ALL))
        before = self.installation.bytes()
        xdotool("key", "Escape")
        tool.click(1031)
        self.services.let_go()
        tool.answer("OK", "Quillon services restarted.\n")
        tool.active_window("MSR Demo")
        self.assertEqual(self.installation.bytes(), before, "Apply All does nothing meanwhile")


if __name__ == "__main__":
    unittest.main()
