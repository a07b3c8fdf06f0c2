"""A service manager that takes every call and answers none."""

import os
import select
import socket
import unittest

from status_test import SERVICES
from tool import Tool
from waiting import wait_for
from window_case import WindowCase, complete_file

PORT = 1022


class SilentBus:
    """A system bus that lets programs connect and says nothing."""

    def __init__(self, directory):
        path = os.path.join(directory, "bus")
        self.environment = {**Tool.ALONE, "DBUS_SYSTEM_BUS_ADDRESS": f"unix:path={path}"}
        self.listener = socket.socket(socket.AF_UNIX)
        self.listener.bind(path)
        self.listener.listen()
        self.last = None

    def connected(self):
        """Whether a program waits for an answer at this moment."""
        while select.select([self.listener], [], [], 0)[0]:
            self.drop()
            self.last = self.listener.accept()[0]
            self.last.setblocking(False)
        return self.last is not None and not self.ended()

    def ended(self):
        """Whether the program has given up its last connection."""
        try:
            while data := self.last.recv(4096):
                del data
        except BlockingIOError:
            return False
        return True

    def drop(self):
        if self.last is not None:
            self.last.close()
            self.last = None

    def close(self):
        self.drop()
        self.listener.close()


class SilentManager(WindowCase):
    def open_on_silent_bus(self):
        bus = SilentBus(self.installation.directory)
        self.addCleanup(bus.close)
        tool = self.open(complete_file(), bus.environment)
        wait_for(bus.connected, "the question for the services")
        return tool, bus

    def test_the_window_takes_keys_while_the_question_has_no_answer(self):
        tool, bus = self.open_on_silent_bus()
        tool.tab("Logging")
        tool.click(PORT)
        wait_for(lambda: tool.focused(PORT), "the field to have the focus")

        def key_taken_meanwhile():
            wait_for(bus.connected, "a question for the services")
            asking = bus.last
            wanted = "2" if tool.text(PORT) == "1" else "1"
            tool.key("ctrl+a")
            tool.type(wanted)
            wait_for(lambda: tool.text(PORT) == wanted, "the key to be taken")
            return bus.connected() and bus.last is asking

        wait_for(key_taken_meanwhile, "a key that is taken between a question and its answer")
        self.assertEqual(tool.name(SERVICES), "Services: unknown")

    def test_the_window_closes_while_the_question_has_no_answer(self):
        tool, _ = self.open_on_silent_bus()
        tool.close()
        self.assertEqual(tool.wait(), 0)


if __name__ == "__main__":
    unittest.main()
