"""The Debian packages in use, in the root directory of $ROOT, on the screen of $DISPLAY."""

import os
import re
import shutil
import socket
import subprocess
import tempfile
import time
import unittest
import xml.etree.ElementTree as ElementTree

from package_files import NEXT_VERSION, VERSION, completions, output, package

ROOT = os.environ["ROOT"]
LIMIT = 30  # seconds that any single expectation may take
SUITE = "/opt/harlune/quillon"
CONFIGURATION = f"{SUITE}/QLXConfig.xml"
EDITED = b"<MZP><Logging_Configuration><TCP_Port>4711</TCP_Port></Logging_Configuration></MZP>\n"
TITLE = "Quillon Configuration Tool"


def inside(path):
    return ROOT + path


def chroot(*command):
    return output("chroot", ROOT, *command, env={**os.environ, "DEBIAN_FRONTEND": "noninteractive", "LC_ALL": "C.UTF-8"})


def start(*command, **options):
    return subprocess.Popen(["setpriv", "--pdeathsig", "TERM", "--", "chroot", ROOT, *command],
                            stdin=subprocess.DEVNULL, **options)


def bring(*paths):
    """Copies packages to where the root directory sees them."""
    for path in paths:
        shutil.copy(path, inside("/tmp/"))
    return [f"/tmp/{os.path.basename(path)}" for path in paths]


def dpkg(*arguments):
    """Without what other packages do about new files, such as indexing the manuals."""
    chroot("dpkg", "--no-triggers", *arguments)


def install(version=VERSION):
    dpkg("--install", *bring(package("qlxconfig", version), package("qlxsim", version)))


def write(path, content):
    with open(inside(path), "wb") as file:
        file.write(content)


def read(path):
    with open(inside(path), "rb") as file:
        return file.read()


def exists(path):
    return os.path.lexists(inside(path))


def wait_for(condition, what):
    deadline = time.monotonic() + LIMIT
    while not condition():
        assert time.monotonic() < deadline, f"waited {LIMIT} s for {what}"
        time.sleep(0.02)


def windows():
    search = ["xdotool", "search", "--onlyvisible", "--name", f"^{TITLE}$"]
    return subprocess.run(search, capture_output=True, check=False, timeout=LIMIT).stdout.split()


def setUpModule():
    """Shows the screen to the root directory. Where that lacks the dependencies apt brings them, which is their proof."""
    screen = os.environ["XDG_RUNTIME_DIR"].rpartition("/")[0]
    os.makedirs(inside(screen))
    output("mount", "--bind", screen, inside(screen))
    if not exists("/usr/share/doc/libwxgtk3.2-1"):
        chroot("apt-get", "install", "--yes", "--quiet", "--no-install-recommends",
               *bring(package("qlxconfig"), package("qlxsim")))


class Installed(unittest.TestCase):
    """Both packages are there at the beginning and gone at the end."""

    def setUp(self):
        install()
        self.addCleanup(dpkg, "--purge", "qlxconfig", "qlxsim")


class LifeCycle(Installed):
    def open_tool(self, **options):
        tool = start("QLXConfig", **options)
        self.addCleanup(tool.wait)
        self.addCleanup(tool.kill)
        wait_for(windows, "the window")
        return tool

    def paths(self):
        """Everything that the packages brought, but the directories that others have too."""
        paths = chroot("dpkg", "--listfiles", "qlxconfig", "qlxsim").split()
        return [path for path in paths if "harlune" in path or not os.path.isdir(inside(path))]

    def left_over(self, paths):
        known = [name for name in os.listdir(inside("/var/lib/dpkg/info")) if name.startswith("qlx")]
        return [path for path in paths if exists(path)] + known

    def installed_version(self):
        return chroot("dpkg-query", "--show", "--showformat=${Version}", "qlxconfig")

    def test_the_command_opens_the_window_and_makes_the_configuration_beside_the_program(self):
        self.assertFalse(exists(CONFIGURATION))
        self.open_tool()
        self.assertEqual(ElementTree.parse(inside(CONFIGURATION)).getroot().tag, "MZP")
        self.assertEqual(os.stat(inside(CONFIGURATION)).st_mode & 0o777, 0o644)

    def test_the_toolkit_has_all_that_it_draws_with(self):
        with tempfile.TemporaryFile() as said:
            self.open_tool(stderr=said)
            said.seek(0)
            self.assertEqual(said.read().decode(), "")

    def test_an_upgrade_keeps_the_edited_configuration(self):
        write(CONFIGURATION, EDITED)
        install(NEXT_VERSION)
        self.assertEqual((self.installed_version(), read(CONFIGURATION)), (NEXT_VERSION, EDITED))

    def test_an_upgrade_while_the_tool_is_open_leaves_it_open(self):
        tool = self.open_tool()
        install(NEXT_VERSION)
        self.assertIsNone(tool.poll())
        self.assertTrue(windows())

    def test_a_removal_keeps_the_configuration_for_the_next_installation(self):
        write(CONFIGURATION, EDITED)
        dpkg("--remove", "qlxconfig")
        self.assertEqual((exists(f"{SUITE}/QLXConfig"), exists("/usr/bin/QLXConfig")), (False, False))
        self.assertEqual(read(CONFIGURATION), EDITED)
        install()
        self.assertEqual(read(CONFIGURATION), EDITED)

    def test_a_purge_leaves_nothing(self):
        paths = self.paths()
        self.assertIn(SUITE, paths)
        for ending in ("", ".new", ".bak", ".bak.new", ".unreadable", ".unreadable.new"):
            write(CONFIGURATION + ending, EDITED)
        dpkg("--purge", "qlxconfig", "qlxsim")
        self.assertEqual(self.left_over(paths), [])

    def test_a_purge_after_a_removal_leaves_nothing(self):
        paths = self.paths()
        write(CONFIGURATION, EDITED)
        dpkg("--remove", "qlxconfig", "qlxsim")
        self.assertIn(SUITE, self.left_over(paths))
        dpkg("--purge", "qlxconfig", "qlxsim")
        self.assertEqual(self.left_over(paths), [])

    def test_a_purge_leaves_the_rest_of_the_suite_alone(self):
        write(f"{SUITE}/QLXSVC", b"a driver")
        self.addCleanup(shutil.rmtree, inside("/opt/harlune"))
        dpkg("--purge", "qlxconfig")
        self.assertEqual(read(f"{SUITE}/QLXSVC"), b"a driver")

    def test_the_manual_is_found(self):
        if not exists("/usr/bin/man"):
            self.skipTest("this root directory has no man")
        self.assertIn("change the settings", chroot("man", "QLXConfig"))


class Ports(Installed):
    """The links of udev."""

    def links_of(self, tty, rules=""):
        if not exists("/usr/bin/umockdev-run"):
            self.skipTest("this root directory has no umockdev")
        write("/etc/udev/rules.d/65-till.rules", rules.encode())
        self.addCleanup(os.remove, inside("/etc/udev/rules.d/65-till.rules"))
        device = f"/devices/virtual/tty/{tty}"
        facts = f"P: {device}\nN: {tty}\nE: DEVNAME=/dev/{tty}\nE: SUBSYSTEM=tty\nE: MAJOR=240\nE: MINOR=3\n\n"
        write("/tmp/tty.umockdev", facts.encode())
        told = chroot("umockdev-run", "--device", "/tmp/tty.umockdev", "--", "udevadm", "test", "--action=add",
                      f"/sys{device}")
        return re.findall(r"^DEVLINKS=(.*)$", told, re.MULTILINE)

    def test_a_tty_of_the_driver_is_linked_under_its_number(self):
        self.assertEqual(self.links_of("ttyMZP12"), ["/dev/quillon/MZP_COM12"])

    def test_another_tty_is_not_linked(self):
        self.assertEqual(self.links_of("ttyUSB3"), [])

    def test_a_rule_of_the_shop_gives_another_tty_a_number(self):
        rule = 'SUBSYSTEM=="tty", KERNEL=="ttyUSB3", ENV{QUILLON_COM}="7"\n'
        self.assertEqual(self.links_of("ttyUSB3", rule), ["/dev/quillon/MZP_COM7"])

    def test_a_rule_of_the_shop_goes_before_the_drivers_number(self):
        rule = 'SUBSYSTEM=="tty", KERNEL=="ttyMZP3", ENV{QUILLON_COM}="9"\n'
        self.assertEqual(self.links_of("ttyMZP3", rule), ["/dev/quillon/MZP_COM9"])


class RunningUdev(unittest.TestCase):
    """What a running udev is told, by a stand-in for udevadm that writes its calls down."""

    def setUp(self):
        stand_in = "/usr/local/sbin/udevadm"
        write(stand_in, b'#!/bin/sh\necho "$@" >>/tmp/udevadm.calls\n')
        os.chmod(inside(stand_in), 0o755)
        self.addCleanup(os.remove, inside(stand_in))
        os.makedirs(inside("/run/udev"), exist_ok=True)
        self.addCleanup(shutil.rmtree, inside("/run/udev"))
        with socket.socket(socket.AF_UNIX, socket.SOCK_SEQPACKET) as control:
            control.bind(inside("/run/udev/control"))
        self.addCleanup(dpkg, "--purge", "qlxconfig", "qlxsim")

    def calls(self):
        calls = read("/tmp/udevadm.calls").decode().splitlines()
        os.remove(inside("/tmp/udevadm.calls"))
        return calls

    def test_ports_that_are_there_get_their_links_at_once_and_lose_them_with_the_package(self):
        expected = ["control --reload", "trigger --subsystem-match=tty"]
        install()
        self.assertEqual(self.calls(), expected)
        dpkg("--remove", "qlxconfig")
        self.assertEqual(self.calls(), expected)


class Simulator(Installed):
    def test_it_runs_and_the_completion_offers_each_of_its_commands(self):
        simulator = start("qlxsim", "--config", "/tmp/none.xml", "--dir", "/tmp/suite", "--ports", "COM3",
                          stdout=subprocess.DEVNULL)
        self.addCleanup(simulator.wait)
        self.addCleanup(simulator.terminate)
        wait_for(lambda: exists("/tmp/suite/environment"), "the simulator")
        told = chroot("qlxsim", "--control", "/tmp/suite/control", "help")
        commands = set(re.findall(r"^[a-z]+", told, re.MULTILINE)) - {"ok"}
        self.assertIn("swipe", commands)
        completion = inside("/usr/share/bash-completion/completions/qlxsim")
        self.assertEqual(completions(completion, "qlxsim --control c "), commands)


if __name__ == "__main__":
    unittest.main()
