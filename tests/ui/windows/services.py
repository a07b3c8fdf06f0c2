"""The suite's two services in Wine's service manager: real ones, made for the test."""

import os
import re

from tool import Driver, windows_path


class Services:
    """QLXSVC and QLXLOGSVC, running."""

    environment = {}

    def __init__(self, installation, refuses_to_stop=None, slow_to_stop=None):
        self.driver = Driver(os.environ)
        self.journal = os.path.join(installation.directory, "services")
        self.slow = slow_to_stop
        behaviours = {refuses_to_stop: "refuses-to-stop", slow_to_stop: "hangs-stopping"}
        for name in ("QLXLOGSVC", "QLXSVC"):
            self.driver.ask("install", name, windows_path(self.journal), behaviours.get(name, ""))

    def stops(self):
        """The names of the services that were asked to stop, in this order."""
        with open(self.journal, encoding="ascii") as journal:
            return re.findall(r"^(\w+) asked to stop$", journal.read(), re.MULTILINE)

    def let_go(self):
        """Lets the slow one stop."""
        self.driver.ask("let-go", self.slow)

    def close(self):
        self.driver.close()
