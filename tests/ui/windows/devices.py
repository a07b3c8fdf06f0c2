"""What is plugged into the terminal of a test: virtual ports on ttys of the machine below Wine."""

import os

from tool import Driver
from virtual_ports import Port


class RegisteredPort(Port):
    """With the device interface by which the program finds it."""

    def __init__(self, driver, name):
        super().__init__(os.path.join(os.environ["WINEPREFIX"], "dosdevices", name.lower()))
        self.driver, self.reference = driver, "MZP_" + name
        driver.ask("plug", self.reference)

    def unplug(self):
        if self.device >= 0:
            self.driver.ask("unplug", self.reference)
        super().unplug()


class Ports:
    """The terminal's virtual ports, by name."""

    environment = {}

    def __init__(self, *names):
        self.driver = Driver(os.environ)
        self.ports = {}
        for name in names:
            self.plug(name)

    def plug(self, name):
        """Puts a device behind a port that has none, or whose device was unplugged."""
        self.ports[name] = RegisteredPort(self.driver, name)

    def __getitem__(self, name):
        return self.ports[name]

    def close(self):
        for port in self.ports.values():
            port.unplug()
        self.driver.close()
