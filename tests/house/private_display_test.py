import os
import signal
import subprocess
import time
import unittest
from pathlib import Path

from planted_tree import HOUSE

WRAPPER = HOUSE / "scripts" / "private-display"
LIMIT = 20  # seconds
SAY_PLACE = 'echo "$DISPLAY $DBUS_SESSION_BUS_ADDRESS $XDG_RUNTIME_DIR"; '


def running(directory):
    """The ids of the processes that were started with, or live in, a private display's directory."""
    found = []
    for process in Path("/proc").glob("[0-9]*"):
        try:
            known = (process / "cmdline").read_bytes() + (process / "environ").read_bytes()
        except OSError:
            continue
        if directory.encode() in known:
            found.append(int(process.name))
    return found


class PrivateDisplay(unittest.TestCase):
    def start(self, command):
        process = subprocess.Popen(
            [WRAPPER, "sh", "-c", command], stdin=subprocess.PIPE, stdout=subprocess.PIPE, text=True
        )
        self.addCleanup(process.wait, LIMIT)
        self.addCleanup(process.stdin.close)
        self.addCleanup(process.stdout.close)
        return process

    def place(self, process):
        return process.stdout.readline().split()

    def assert_all_gone(self, directory):
        deadline = time.monotonic() + LIMIT
        while (left := running(directory)) and time.monotonic() < deadline:
            time.sleep(0.05)
        for process in left:
            os.kill(process, signal.SIGKILL)
        self.assertEqual(left, [])

    def test_the_command_keeps_its_exit_code_arguments_and_input(self):
        done = subprocess.run(
            [WRAPPER, "sh", "-c", 'read -r line; echo "$1/$line"; exit 7', "x", "a b"],
            input="typed\n", capture_output=True, text=True, check=False,
        )  # fmt: skip
        self.assertEqual((done.returncode, done.stdout), (7, "a b/typed\n"))

    def test_the_command_has_a_screen_of_the_stated_size(self):
        done = subprocess.run([WRAPPER, "xdotool", "getdisplaygeometry"], capture_output=True, text=True, check=False)
        self.assertEqual(done.stdout, "1280 1024\n")

    def test_two_at_a_time_share_nothing(self):
        both = [self.start(SAY_PLACE + "read -r line") for _ in range(2)]
        first, second = (self.place(process) for process in both)
        for mine, other in zip(first, second, strict=True):
            self.assertNotEqual(mine, other)

    def test_nothing_is_left_when_the_command_ends(self):
        process = self.start(SAY_PLACE)
        directory = os.path.dirname(self.place(process)[2])
        process.wait()
        self.assert_all_gone(directory)
        self.assertFalse(os.path.exists(directory))

    def test_nothing_goes_on_running_when_the_wrapper_is_killed(self):
        for number in (signal.SIGTERM, signal.SIGKILL):
            with self.subTest(number):
                process = self.start(SAY_PLACE + "exec sleep 600")
                directory = os.path.dirname(self.place(process)[2])
                process.send_signal(number)
                process.wait()
                self.assert_all_gone(directory)
                subprocess.run(["rm", "-rf", directory], check=True)

    def test_a_command_that_does_not_exist_fails(self):
        done = subprocess.run([WRAPPER, "no-such-command"], capture_output=True, check=False)
        self.assertNotEqual(done.returncode, 0)
