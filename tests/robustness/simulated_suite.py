"""The simulated suite (qlxsim) from one start to the next."""
import os
import signal
import socket
import subprocess
import threading
import time

LIMIT = 300  # seconds for anything that should happen

# What a script starts ends with it, also when the script itself is killed.
TIED = ["setpriv", "--pdeathsig", "KILL", "--"]


def expect(promise, broken):
    if not promise:
        raise AssertionError(broken)


def await_condition(condition, what):
    deadline = time.monotonic() + LIMIT
    while not condition():
        expect(time.monotonic() < deadline, f"no {what} within {LIMIT} seconds")
        time.sleep(0.01)


def children(process):
    with open(f"/proc/{process}/task/{process}/children", encoding="ascii") as numbers:
        return [int(number) for number in numbers.read().split()]


class Suite:
    """Runs on a configuration file and in a directory of its own, which must have a short name; `hear` gets each line
    that it says, as bytes, with the number of the start."""

    def __init__(self, simulator, directory, configuration, hear=lambda start, line: None):
        self.command = [simulator, "--config", configuration, "--dir", directory, "--log-dir", directory]
        self.environment = {
            "DBUS_SYSTEM_BUS_ADDRESS": f"unix:path={directory}/bus",
            "QUILLON_PORT_DIR": f"{directory}/ports",
        }
        self.control = os.path.join(directory, "control")
        self.hear = hear
        self.starts = 0
        self.start()

    def start(self):
        self.starts += 1
        ready = threading.Event()
        self.process = subprocess.Popen([*TIED, *self.command], stdin=subprocess.DEVNULL, stdout=subprocess.PIPE)
        self.listener = threading.Thread(target=self._listen, args=(self.process.stdout, self.starts, ready))
        self.listener.start()
        expect(ready.wait(LIMIT), "the suite did not start")

    def _listen(self, said, start, ready):
        with said:
            for line in said:
                if line == b"ready\n":
                    ready.set()
                self.hear(start, line)

    def end(self, how=signal.SIGTERM):
        self.process.send_signal(how)
        code = self.process.wait(LIMIT)
        self.listener.join()
        expect(code == (0 if how == signal.SIGTERM else -how), f"the suite ended with {code}")

    def parts(self):
        """The processes that can hang: the services, which the simulator plays itself, and their bus."""
        return [self.process.pid, *children(self.process.pid)]

    def command_devices(self, line):
        """Has the devices do something; one that cannot is left alone."""
        with socket.socket(socket.AF_UNIX) as client:
            client.settimeout(LIMIT)
            client.connect(self.control)
            client.sendall(line.encode() + b"\n")
            client.shutdown(socket.SHUT_WR)
            while client.recv(4096):
                pass


def free_port():
    with socket.socket() as probe:
        probe.bind(("127.0.0.1", 0))
        return probe.getsockname()[1]
