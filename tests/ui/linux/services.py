"""The suite's two services behind a service manager: the simulated ones, on a bus of their own."""

import re

from simulator import Simulator

STOP_TAKES_MS = "1500"


class Services:
    """QLXSVC and QLXLOGSVC, running; the program finds their manager in environment."""

    def __init__(self, installation, refuses_to_stop=None, slow_to_stop=None):
        options = ["--refuse-stop", refuses_to_stop] if refuses_to_stop else []
        options += ["--stop-takes", STOP_TAKES_MS] if slow_to_stop else []
        self.simulator = Simulator(installation.file, *options)
        self.environment = self.simulator.environment

    def stops(self):
        """The names of the services that were asked to stop, in this order."""
        return re.findall(r"^(\w+)\.service asked to stop$", "\n".join(self.simulator.said()), re.MULTILINE)

    def let_go(self):
        """Lets the slow one stop; here it does so by itself."""

    def close(self):
        self.simulator.close()
