"""What is plugged into the terminal of a test: virtual ports on real ttys, USB HID devices in a mocked /sys."""

import os
import shutil
import subprocess
import tempfile

import gi

gi.require_version("UMockdev", "1.0")
from gi.repository import UMockdev  # noqa: E402  the version is chosen above

from virtual_ports import Port  # noqa: E402

TREE = os.path.abspath(os.path.join(os.path.dirname(__file__), "..", "..", ".."))


class Ports:
    """The terminal's virtual ports, by name."""

    def __init__(self, *names):
        self.directory = tempfile.mkdtemp(prefix="qlx-ports-")
        os.chmod(self.directory, 0o755)
        self.environment = {"QUILLON_PORT_DIR": self.directory}
        self.ports = {}
        for name in names:
            self.plug(name)

    def plug(self, name):
        """Puts a device behind a port that has none, or whose device was unplugged."""
        self.ports[name] = Port(os.path.join(self.directory, "MZP_" + name))

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
        self.lines = []
        for line in devices.splitlines():
            self.plug(line)
        self.environment = {
            "LD_PRELOAD": "libumockdev-preload.so.0",
            "UMOCKDEV_DIR": self.testbed.get_root_dir(),
        }

    @staticmethod
    def described(lines):
        return subprocess.run([os.path.join(TREE, "sim", "describe_hid.py")], input="\n".join(lines),
                              capture_output=True, text=True, check=True).stdout.strip()

    def plug(self, line):
        """Plugs one more device in; one that was unplugged comes back at another place."""
        before = self.described(self.lines)
        self.lines.append(line)
        self.testbed.add_from_string(self.described(self.lines).removeprefix(before).strip() + "\n")

    def unplug(self, line):
        place = len(self.lines) - self.lines[::-1].index(line)
        self.testbed.remove_device(f"/sys/devices/pci0000:00/0000:00:14.0/usb1/1-{place}")
