"""What the tool under random use meets: its file, the machine's USB devices, the suite with its devices."""
import os
import subprocess
import time

import gi

gi.require_version("UMockdev", "1.0")
from gi.repository import UMockdev  # noqa: E402  the version is chosen above

from simulated_suite import free_port  # noqa: E402

TREE = os.path.dirname(os.path.dirname(os.path.dirname(os.path.abspath(__file__))))
SUITE_AWAY_EVERY = 15  # seconds
SECTIONS = ("Ports", "Logging", "MSR", "IB", "Printer")
PORTS = {"MSR_USB": 3, "LD_USB": 4, "IB_USB": 5, "CD_USB": 6, "CD_PCI": 7, "PRINTER_USB": 8}
MODULES = ("Service", "MSR", "LD", "IB", "CD", "CD_PCI", "PRINTER_USB")
DEVICES = ("msr", "display", "ibutton", "drawers", "pci", "printer")
DEEDS = ("swipe", "swipe ONE||THREE", "touch 1122334455667788", "remove", "open 1", "close 1", "open pci 1", "close pci 1",
         "absent 2", "present 2", "present pci 2", "printer usual", "printer many-pages", "printer other-type",
         "printer silent", "printer garbage", "printer split", "printer long-list", "garbage 4096")
DEEDS_TO_ONE = ("unplug {}", "plug {}", "plug {}", "garbage 512 {}", "send {} 41420d0a00ff", "trickle {} 4142434445 20",
                "flood {} on", "flood {} off", "flood {} off")


def configuration():
    filled = {
        "Ports": "".join(f"<{name}>COM{number}</{name}>" for name, number in PORTS.items()),
        "Logging": f"<TCP_Port>{free_port()}</TCP_Port><Log_Level>5</Log_Level><File_Size>1024</File_Size>"
        + "".join(f"<Module_{name}>true</Module_{name}>" for name in MODULES),
    }
    sections = (f"<{name}_Configuration>{filled.get(name, '')}</{name}_Configuration>" for name in SECTIONS)
    return f"<MZP>{''.join(sections)}</MZP>"


class UsbDevices:
    """Mocked ones, for a program that runs in the environment as long as this lives."""

    def __init__(self):
        self.testbed = UMockdev.Testbed.new()
        with open(os.path.join(TREE, "sim", "hid_devices.txt"), encoding="utf-8") as devices:
            described = subprocess.run([os.path.join(TREE, "sim", "describe_hid.py")], stdin=devices,
                                       capture_output=True, text=True, check=True)
        self.testbed.add_from_string(described.stdout)
        self.environment = {"LD_PRELOAD": "libumockdev-preload.so.0", "UMOCKDEV_DIR": self.testbed.get_root_dir()}


class Surroundings:
    """The devices and their suite, which do as they please."""

    def __init__(self, suite, choice):
        self.suite, self.choice = suite, choice
        self.next_absence = time.monotonic() + SUITE_AWAY_EVERY / 2
        self.away_until = None
        self.absences = 0

    def go(self):
        if self.away_until is not None:
            if time.monotonic() > self.away_until:
                self.settle()
        elif time.monotonic() > self.next_absence:
            self.suite.end()
            self.away_until = time.monotonic() + self.choice.uniform(0, 3)
            self.absences += 1
        elif self.choice.random() < 0.5:
            deed = self.choice.choice(DEEDS + DEEDS_TO_ONE)
            self.suite.command_devices(deed.format(self.choice.choice(DEVICES)))

    def settle(self):
        """The suite is there, and stays for a while."""
        if self.away_until is not None:
            self.suite.start()
        self.away_until = None
        self.next_absence = time.monotonic() + self.choice.uniform(0, 2 * SUITE_AWAY_EVERY)
