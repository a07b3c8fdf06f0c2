import os
import shutil
import unittest

from planted_tree import HOUSE, PlantedTree

STAND_IN = """#!/bin/bash
while [ $# -gt 0 ]; do declare "${1#--}=$2"; shift 2; done
trap 'echo ended; exit 0' TERM
cat >"$dir/environment" <<END
export DBUS_SYSTEM_BUS_ADDRESS=unix:path=$dir/bus
export QUILLON_PORT_DIR=$dir/ports
END
echo "config $config"
echo ready
while :; do sleep 0.05; done
"""


class WithSimulator(PlantedTree):
    def setUp(self):
        super().setUp()
        self.simulator(STAND_IN)
        (self.root / "installation").mkdir()

    def simulator(self, text):
        self.plant("bin/qlxsim", text)
        (self.root / "bin" / "qlxsim").chmod(0o755)

    def run_with(self, *command, installation="installation"):
        environment = os.environ | {"QLX_BIN": str(self.root / "bin"), "TMPDIR": str(self.root)}
        wrapper = HOUSE / "scripts" / "with-simulator"
        return self.run_command(wrapper, self.root / installation, *command, env=environment)

    def said(self):
        return (self.root / "installation" / "simulator.txt").read_text()

    def test_the_command_sees_the_simulated_bus_and_keeps_its_exit_code(self):
        done = self.run_with("sh", "-c", "echo bus=$DBUS_SYSTEM_BUS_ADDRESS; exit 5")
        self.assertEqual(done.returncode, 5)
        self.assertIn(f"bus=unix:path={self.root}/qlxsim.", done.stdout)

    def test_the_command_sees_the_simulated_ports(self):
        done = self.run_with("sh", "-c", "echo ports=$QUILLON_PORT_DIR")
        self.assertIn(f"ports={self.root}/qlxsim.", done.stdout)

    @unittest.skipUnless(shutil.which("umockdev-run"), "umockdev-run is not installed")
    def test_the_command_sees_the_simulated_usb_devices(self):
        done = self.run_with("cat", "/sys/class/hidraw/hidraw0/device/uevent")
        self.assertIn("HID_ID=0003:00001209:00000001", done.stdout)

    def test_the_simulator_is_given_the_installations_configuration(self):
        self.run_with("true")
        self.assertIn(f"config {self.root}/installation/QLXConfig.xml", self.said())

    def test_the_simulator_ends_with_the_command_and_leaves_no_directory(self):
        self.run_with("true")
        self.assertTrue(self.said().endswith("ended\n"), self.said())
        self.assertEqual(list(self.root.glob("qlxsim.*")), [])

    def test_a_simulator_that_dies_early_is_named(self):
        self.simulator("#!/bin/sh\nexit 3\n")
        done = self.run_with("true")
        self.assertEqual(done.returncode, 125)
        self.assertIn("ended before it was ready", done.stderr)

    def test_a_missing_simulator_or_installation_is_named(self):
        self.assertIn("no directory", self.run_with("true", installation="nowhere").stderr)
        (self.root / "bin" / "qlxsim").unlink()
        self.assertIn("build it first", self.run_with("true").stderr)
