import subprocess
import unittest

from planted_tree import HOUSE

WRAPPER = HOUSE / "scripts" / "private-network"
PORT = 38674  # the same in every network
LISTEN = f"""
import socket
with socket.create_server(("127.0.0.1", {PORT})) as server, socket.create_connection(("127.0.0.1", {PORT})):
    print("listening", flush=True)
    input()
"""
REACH_OUT = """
import socket
with socket.socket() as out:
    out.settimeout(5)
    out.connect(("192.0.2.1", 80))
"""


class PrivateNetwork(unittest.TestCase):
    def run_in(self, *command):
        return subprocess.run([WRAPPER, *command], capture_output=True, text=True, check=False)

    def start(self, program):
        process = subprocess.Popen(
            [WRAPPER, "/usr/bin/python3", "-c", program], stdin=subprocess.PIPE, stdout=subprocess.PIPE, text=True
        )
        self.addCleanup(process.communicate, "\n")
        return process

    def test_two_at_a_time_listen_on_one_port(self):
        both = [self.start(LISTEN) for _ in range(2)]
        self.assertEqual([process.stdout.readline() for process in both], ["listening\n"] * 2)

    def test_nothing_outside_can_be_reached(self):
        self.assertIn("Network is unreachable", self.run_in("/usr/bin/python3", "-c", REACH_OUT).stderr)

    def test_the_command_is_root_and_keeps_its_arguments_and_exit_code(self):
        done = self.run_in("sh", "-c", 'id -u; echo "$1"; exit 7', "x", "a  b")
        self.assertEqual((done.returncode, done.stdout), (7, "0\na  b\n"))

    def test_without_a_command_it_says_how_it_is_used(self):
        done = self.run_in()
        self.assertEqual(done.returncode, 125)
        self.assertIn("usage", done.stderr)
