"""The tool and the simulated suite together: a device is bound, the services restart, the demo talks to it."""

import os
import unittest

from demo_test import CLOSE, COMMAND, COMMAND_2, DEMO_QUESTION, DISPLAY, DRAWER_1, DRAWER_2, ELEMENTS, HEX, IBUTTON, MSR, OUTPUT, PCI, PRINTER, PRINTER_ELEMENT, TITLES
from devices import UsbDevices
from ports_test import CONFIGURE, DEMO, DEVICE_1, DEVICE_2, LIST, OK, PORT, ports_file
from simulator import Simulator
from usb_test import DRAWERS
from waiting import wait_for
from window_case import WindowCase


class Suite(WindowCase):
    def open_suite(self, elements=ELEMENTS, environment=None):
        self.installation.write(ports_file(elements))
        self.simulator = Simulator(self.installation.file)
        self.addCleanup(self.simulator.close)
        return self.open(environment={**self.simulator.environment, **(environment or {})})

    def open_demo(self, kind):
        tool = self.open_suite(ELEMENTS + PRINTER_ELEMENT if kind == PRINTER else ELEMENTS)
        tool.select(LIST, kind)
        tool.click(DEMO)
        tool.active_window(TITLES[kind])
        self.await_output(tool, "<COM Port Opened>")
        return tool

    def await_output(self, tool, text):
        wait_for(lambda: text in tool.text(OUTPUT), f"{text!r} in the output")

    def test_a_swipe_is_shown(self):
        tool = self.open_demo(MSR)
        self.simulator.control("swipe TRACK1|TRACK2|TRACK3")
        self.await_output(tool, "%TRACK1?;TRACK2?+TRACK3?")

    def test_an_ibutton_is_shown_when_it_comes_and_when_it_goes(self):
        tool = self.open_demo(IBUTTON)
        self.simulator.control("touch 1122334455667788")
        self.await_output(tool, "31 31 32 32 33 33 34 34")
        tool.check(HEX, False)
        self.simulator.control("touch 1122334455667788")
        self.await_output(tool, "1122334455667788")

    def test_the_display_shows_its_text(self):
        tool = self.open_demo(DISPLAY)
        tool.click(COMMAND)
        self.simulator.wait_for_line("[HARLUNE TEST        ] [0123456789          ]")

    def test_the_drawers_open_and_tell_it(self):
        for kind, drawers in ((DRAWER_1, ""), (DRAWER_2, ""), (PCI, "pci ")):
            with self.subTest(kind):
                tool = self.open_demo(kind)
                self.simulator.control(f"present {drawers}2")
                tool.click(COMMAND)
                tool.click(COMMAND_2)
                self.await_output(tool, "<Cash Drawer 1 is Opened.>\n<Cash Drawer 2 is Opened.>")
                self.simulator.control(f"close {drawers}1")
                self.simulator.control(f"absent {drawers}2")
                tool.click(COMMAND_2)
                self.await_output(tool, "<Cash Drawer 1 is Closed.>\n<Cash Drawer 2 is Not Present.>")
                tool.kill()
                self.simulator.close()

    def test_the_printer_keeps_the_receipt(self):
        tool = self.open_demo(PRINTER)
        tool.click(COMMAND)
        path = os.path.join(self.simulator.directory, "receipt-1.bin")
        wait_for(lambda: os.path.exists(path) and os.path.getsize(path) == 564, "the receipt")

    def test_garbage_is_shown_whole(self):
        tool = self.open_demo(IBUTTON)
        self.simulator.control("garbage 4096 ibutton")

        def shown():
            lines = tool.text(OUTPUT).split("\n")
            return sum(int(line.split()[0]) for line in lines if line.endswith("Byte(s) Received:"))

        wait_for(lambda: shown() == 4096, "4096 bytes")

    def test_a_flooding_device_can_be_left(self):
        tool = self.open_demo(MSR)
        self.simulator.control("flood msr on")
        wait_for(lambda: tool.text_length(OUTPUT) > 200000, "the flood")
        tool.click(CLOSE)
        tool.main_window()
        tool.close()
        self.assertEqual(tool.wait(), 0)

    def test_a_device_that_comes_back_is_served_by_the_next_demo(self):
        tool = self.open_demo(MSR)
        for _ in range(5):
            self.simulator.control("unplug msr")
            self.await_output(tool, "<Error Reading Port>")
            tool.key("Escape")
            tool.main_window()
            self.simulator.control("plug msr")
            tool.click(DEMO)
            tool.active_window("MSR Demo")
            self.await_output(tool, "<COM Port Opened>")
            self.simulator.control("swipe ONE|TWO|THREE")
            self.await_output(tool, "%ONE?;TWO?+THREE?")

    def test_drawers_are_bound_the_services_restarted_and_the_drawers_tried(self):
        self.usb = UsbDevices(DRAWERS)
        self.start_window_manager()
        tool = self.open_suite("", self.usb.environment)
        tool.select(LIST, DRAWER_1)
        tool.click(CONFIGURE)
        tool.active_window("Cash Drawer (USB) Configuration")
        tool.pick(PORT, "COM9")
        tool.pick(DEVICE_1, "a")
        tool.pick(DEVICE_2, "b")
        tool.click(OK)
        tool.main_window()
        wait_for(lambda: tool.enabled(DEMO), "the demo of the new port")
        tool.click(DEMO)
        tool.answer("Yes", DEMO_QUESTION)
        tool.answer("OK", "Quillon services restarted.\n")
        tool.active_window("Cash Drawer Demo")
        self.await_output(tool, "<COM Port Opened>")
        tool.click(COMMAND)
        tool.click(COMMAND_2)
        self.await_output(tool, "<Cash Drawer 1 is Opened.>")
        tool.key("Escape")
        tool.main_window()
        tool.close()
        self.assertEqual(tool.wait(), 0)


if __name__ == "__main__":
    unittest.main()
