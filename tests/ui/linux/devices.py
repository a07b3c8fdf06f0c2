"""What is plugged into the terminal of a test: virtual ports on real ttys, USB HID devices in a mocked /sys."""

import os
import pty
import select
import shutil
import subprocess
import tempfile
import time
import tty

import gi

gi.require_version("UMockdev", "1.0")
from gi.repository import UMockdev  # noqa: E402  the version is chosen above

from waiting import LIMIT  # noqa: E402

TREE = os.path.abspath(os.path.join(os.path.dirname(__file__), "..", "..", ".."))


class Port:
    """The device's end of one virtual port."""

    def __init__(self, directory, name):
        self.device, self.kept = pty.openpty()
        tty.setraw(self.kept)
        self.link = os.path.join(directory, "MZP_" + name)
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


class Ports:
    """The terminal's virtual ports, by name."""

    def __init__(self, *names):
        self.directory = tempfile.mkdtemp(prefix="qlx-ports-")
        os.chmod(self.directory, 0o755)
        self.environment = {"QUILLON_PORT_DIR": self.directory}
        self.ports = {name: Port(self.directory, name) for name in names}

    def plug(self, name):
        """Puts a new device behind a port whose device was unplugged."""
        self.ports[name] = Port(self.directory, name)

    def __getitem__(self, name):
        return self.ports[name]

    def close(self):
        for port in self.ports.values():
            port.unplug()
        shutil.rmtree(self.directory)


class UsbDevices:
    """Lines for sim/describe_hid.py; the program finds the devices when it runs in the environment."""

    def __init__(self, devices):
        self.testbed = UMockdev.Testbed.new()
        described = subprocess.run(
            [os.path.join(TREE, "sim", "describe_hid.py")], input=devices, capture_output=True, text=True, check=True)
        self.testbed.add_from_string(described.stdout)
        self.environment = {
            "LD_PRELOAD": "libumockdev-preload.so.0",
            "UMOCKDEV_DIR": self.testbed.get_root_dir(),
        }
