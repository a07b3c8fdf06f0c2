"""The tool under random use: started again whenever it has ended, its memory and the sanitizers' reports watched."""
import os
import re
import subprocess
import time
from collections import Counter

from simulated_suite import LIMIT, TIED, await_condition, expect

TITLE = "Quillon Configuration Tool"
ENDED_WITH_A_WORD = 1  # the exit code after a message that the program has to end
SETTLED_AFTER = 15  # seconds in which the memory of a new process may grow without being counted


def xdotool(*arguments):
    """What it prints; nothing when the window that it was about is gone."""
    done = subprocess.run(["xdotool", *map(str, arguments)], check=False, capture_output=True, text=True, timeout=LIMIT)
    return done.stdout


class WatchedProgram:
    def __init__(self, directory, environment):
        self.directory = directory
        self.environment = {
            **environment,
            # The toolkit keeps until the end what it allocates once; mocked devices come from a library that is loaded
            # before any other; freed memory that the sanitizer holds back is no growth of the program's.
            "ASAN_OPTIONS": "detect_leaks=0:verify_asan_link_order=0:quarantine_size_mb=16",
            "UBSAN_OPTIONS": "print_stacktrace=1",
        }
        self.errors = os.path.join(directory, "errors")
        self.ends = Counter()  # by exit code
        self.growth = 0  # KiB, the most of any process once it had settled
        self.start()

    def reports(self):
        """What the sanitizers have written, with all that was written around it; empty when they were silent."""
        with open(self.errors, encoding="utf-8", errors="replace") as errors:
            text = errors.read()
        return text if re.search("Sanitizer|runtime error:", text) else ""

    def start(self):
        with open(self.errors, "ab") as errors:
            self.process = subprocess.Popen([*TIED, os.path.join(self.directory, "QLXConfig")], cwd=self.directory,
                                            env={**os.environ, **self.environment}, stdin=subprocess.DEVNULL,
                                            stderr=errors)
        self.settles = time.monotonic() + SETTLED_AFTER
        self.settled = None
        try:
            await_condition(self._shown, "window of the program")
        except AssertionError as error:
            raise AssertionError(f"{error}; there are {self.titles()}\n{self.reports()}") from None

    def _shown(self):
        expect(self.process.poll() is None, f"the program ended with {self.process.poll()} before it had a window")
        return TITLE in self.titles()

    def titles(self):
        """Those of its windows that can be seen."""
        found = xdotool("search", "--onlyvisible", "--pid", self.process.pid, "--name", "", "getwindowname", "%@")
        return found.splitlines()

    def resident(self):
        """KiB; 0 once it has ended."""
        try:
            with open(f"/proc/{self.process.pid}/status", encoding="utf-8") as status:
                found = re.search(r"VmRSS:\s+(\d+)", status.read())
        except FileNotFoundError:
            found = None
        return int(found[1]) if found else 0

    def watch_memory(self):
        resident = self.resident()
        if resident == 0 or time.monotonic() < self.settles:
            return
        self.settled = self.settled or resident
        self.growth = max(self.growth, resident - self.settled)

    def revive(self):
        """Starts it again when it has ended, as it may."""
        if self.process.poll() is None:
            return
        code = self.process.returncode
        self.ends[code] += 1
        expect(code in (0, ENDED_WITH_A_WORD), f"the program ended with {code}\n{self.reports()}")
        self.start()

    def end(self):
        self.process.kill()
        self.process.wait(LIMIT)
