import os
import shutil

from planted_tree import HOUSE, PlantedTree


class Setup(PlantedTree):
    """The real script beside a package list of our own; apt-get writes its calls down instead of obeying."""

    def setUp(self):
        super().setUp()
        shutil.copy(HOUSE / "scripts" / "setup", self.root / "setup")
        self.plant("packages.txt", "# a group\nfirst\n\nsecond\n")
        (self.root / "bin").mkdir()
        for name in ("env", "sed"):
            (self.root / "bin" / name).symlink_to(shutil.which(name))
        self.command("apt-get", f'echo "$*" >>{self.root}/calls')
        self.installed("first", "second")
        self.user(0)

    def command(self, name, body):
        self.plant(f"bin/{name}", f"#!/bin/bash\n{body}\n")
        (self.root / "bin" / name).chmod(0o755)

    def installed(self, *packages):
        cases = "".join(f"{package}) echo -n installed ;; " for package in packages)
        self.command("dpkg-query", f'case "${{@: -1}}" in {cases} *) exit 1 ;; esac')

    def user(self, number):
        self.command("id", f"echo {number}")

    def run_setup(self):
        environment = os.environ | {"PATH": str(self.root / "bin")}
        return self.run_command(self.root / "setup", env=environment)

    def calls(self):
        calls = self.root / "calls"
        return calls.read_text() if calls.exists() else ""

    def test_does_nothing_when_nothing_is_missing(self):
        self.user(1000)
        self.assertEqual(self.run_setup().returncode, 0)
        self.assertEqual(self.calls(), "")

    def test_installs_only_what_is_missing(self):
        self.installed("first")
        self.assertEqual(self.run_setup().returncode, 0)
        update, install = self.calls().splitlines()
        self.assertTrue(update.endswith(" update"), update)
        self.assertTrue(install.endswith(" install -y --no-install-recommends second"), install)

    def test_asks_sudo_when_not_root(self):
        self.installed()
        self.user(1000)
        self.command("sudo", f'echo sudo >>{self.root}/calls; "$@"')
        self.assertEqual(self.run_setup().returncode, 0)
        self.assertEqual(self.calls().count("sudo\n"), 2)

    def test_says_what_is_missing_when_neither_root_nor_sudo(self):
        self.installed("second")
        self.user(1000)
        done = self.run_setup()
        self.assertEqual(done.returncode, 1)
        self.assertIn("missing: first.", done.stderr)
        self.assertIn("sudo", done.stderr)

    def test_says_so_on_a_system_without_the_package_manager(self):
        (self.root / "bin" / "apt-get").unlink()
        done = self.run_setup()
        self.assertEqual(done.returncode, 1)
        self.assertIn("no Debian system", done.stderr)

    def test_says_what_could_not_be_installed(self):
        self.installed("first")
        self.command("apt-get", '[[ "$*" != *install* ]]')
        done = self.run_setup()
        self.assertEqual(done.returncode, 1)
        self.assertIn("could not be installed: second", done.stderr)
