"""Virtual COM ports on real ttys, with the test as the device."""

import os
import pty
import select
import time
import tty

from waiting import LIMIT


class Port:
    """The device's end of one virtual port, whose other end the program finds by a link."""

    def __init__(self, link):
        self.device, self.kept = pty.openpty()
        tty.setraw(self.kept)
        self.link = link
        os.symlink(os.ttyname(self.kept), self.link)

    def send(self, data):
        os.write(self.device, data)

    def receive(self, size):
        """The next bytes that the tool sends: size of them."""
        data = b""
        deadline = time.monotonic() + LIMIT
        while len(data) < size:
            ready, _, _ = select.select([self.device], [], [], max(0, deadline - time.monotonic()))
            if not ready:
                raise AssertionError(f"only {data!r} was received")
            data += os.read(self.device, size - len(data))
        return data

    def is_silent(self):
        """Whether the tool has sent nothing that was not received yet."""
        return not select.select([self.device], [], [], 0)[0]

    def unplug(self):
        if self.device >= 0:
            os.unlink(self.link)
            os.close(self.kept)
            os.close(self.device)
            self.device = -1
