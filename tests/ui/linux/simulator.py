"""The simulated suite, as a test sees it: its bus, its services, its devices, what it said."""

import os
import re
import shutil
import socket
import subprocess
import tempfile

from driven_tool import TIED
from waiting import wait_for


class Simulator:
    """qlxsim on a configuration file; its lines are kept, its bus and its ports are found in environment."""

    def __init__(self, configuration, *options):
        # Not below the installation: the path of a socket has room for 107 bytes only.
        self.directory = tempfile.mkdtemp(prefix="qlxsim-")
        self.said_file = os.path.join(self.directory, "said")
        with open(self.said_file, "wb") as said:
            self.process = subprocess.Popen(
                [*TIED, os.environ["QLX_SIMULATOR"], "--config", configuration, "--dir", self.directory]
                + ["--log-dir", self.directory, *options],
                stdin=subprocess.DEVNULL,
                stdout=said,
                stderr=subprocess.STDOUT,
            )
        wait_for(lambda: "ready" in self.said(), "the simulator to be ready")
        with open(os.path.join(self.directory, "environment"), encoding="utf-8") as exports:
            self.environment = dict(re.findall(r"^export (\w+)='?(.*?)'?$", exports.read(), re.MULTILINE))

    @property
    def ports(self):
        """The directory of the links to the virtual ports."""
        return self.environment["QUILLON_PORT_DIR"]

    def control(self, command):
        """Has the devices do `command`, such as "swipe"; the lines of the answer before its "ok"."""
        with socket.socket(socket.AF_UNIX) as client:
            client.settimeout(10)
            client.connect(self.environment["QLXSIM_CONTROL"])
            client.sendall(command.encode() + b"\n")
            client.shutdown(socket.SHUT_WR)
            with client.makefile(encoding="utf-8") as answer:
                *lines, last = answer.read().splitlines() or ["no answer"]
        if last != "ok":
            raise AssertionError(f"the simulator answers {command!r} with {last!r}")
        return lines

    def said(self):
        with open(self.said_file, encoding="utf-8", errors="replace") as said:
            return said.read().splitlines()

    def wait_for_line(self, part):
        return wait_for(lambda: [line for line in self.said() if part in line], f"the simulator to say {part!r}")

    def log(self):
        """What the logging service has written."""
        try:
            with open(os.path.join(self.directory, "qlx.log"), encoding="latin-1", newline="") as log:
                return log.read()
        except FileNotFoundError:
            return ""

    def close(self):
        self.process.terminate()
        code = self.process.wait()
        shutil.rmtree(self.directory, ignore_errors=True)
        if code != 0:
            raise AssertionError(f"the simulator ended with {code}")
