"""What the Debian packages hold, as far as it can be seen without installing them."""

import io
import os
import re
import stat
import subprocess
import tarfile
import tempfile
import unittest
import xml.etree.ElementTree as ElementTree

from help_files import help_files
from package_files import VERSION, completions, output, package

APP = "example.harlune.qlxconfig"
PROGRAM = "opt/harlune/quillon/QLXConfig"
TOOL = {
    PROGRAM,
    *(f"opt/harlune/quillon/locale/{language}/LC_MESSAGES/qlxconfig.mo" for language in ("de", "es")),
    *(f"opt/harlune/quillon/{name}" for name in help_files()),
    "usr/bin/QLXConfig",
    f"usr/share/applications/{APP}.desktop",
    f"usr/share/metainfo/{APP}.metainfo.xml",
    f"usr/share/polkit-1/actions/{APP}.policy",
    f"usr/share/icons/hicolor/scalable/apps/{APP}.svg",
    f"usr/share/icons/hicolor/48x48/apps/{APP}.png",
    f"usr/share/icons/hicolor/128x128/apps/{APP}.png",
    "usr/share/man/man1/QLXConfig.1.gz",
    "usr/lib/udev/rules.d/70-quillon-ports.rules",
    "usr/share/doc/qlxconfig/copyright",
    "usr/share/doc/qlxconfig/changelog.gz",
}
SIMULATOR = {
    "usr/bin/qlxsim",
    "usr/share/man/man1/qlxsim.1.gz",
    "usr/share/bash-completion/completions/qlxsim",
    "usr/share/doc/qlxsim/copyright",
    "usr/share/doc/qlxsim/changelog.gz",
}


def members(name):
    """Path and entry of everything that is not a directory."""
    bytes_ = subprocess.run(["dpkg-deb", "--fsys-tarfile", package(name)], check=True, capture_output=True).stdout
    with tarfile.open(fileobj=io.BytesIO(bytes_)) as archive:
        return {entry.name.removeprefix("./"): entry for entry in archive if not entry.isdir()}


def field(name, key):
    return output("dpkg-deb", "--field", package(name), key).strip()


class Extracted:
    """Both packages, unpacked into one directory."""

    directory = None

    @classmethod
    def path(cls, name):
        return os.path.join(cls.directory.name, name)


def offered(line):
    return completions(Extracted.path("usr/share/bash-completion/completions/qlxsim"), line)


def setUpModule():
    Extracted.directory = tempfile.TemporaryDirectory()
    for name in ("qlxconfig", "qlxsim"):
        output("dpkg-deb", "--extract", package(name), Extracted.directory.name)


def tearDownModule():
    Extracted.directory.cleanup()


class Contents(unittest.TestCase):
    def test_lintian_has_nothing_to_say_but_for_the_compilers_name_and_chance_words_in_the_programs(self):
        output("lintian", "--fail-on", "error,warning,info,pedantic", "--display-info", "--pedantic",
               "--suppress-tags", "binary-has-unneeded-section,spelling-error-in-binary",
               package("qlxconfig"), package("qlxsim"))

    def test_each_package_holds_its_files(self):
        self.assertEqual(TOOL - set(members("qlxconfig")), set())
        self.assertEqual(SIMULATOR - set(members("qlxsim")), set())

    def test_the_configuration_is_not_shipped(self):
        self.assertEqual([path for path in members("qlxconfig") if path.endswith(".xml")],
                         [f"usr/share/metainfo/{APP}.metainfo.xml"])

    def test_everything_is_roots_and_only_the_programs_can_be_run(self):
        for name, programs in (("qlxconfig", {PROGRAM}), ("qlxsim", {"usr/bin/qlxsim"})):
            files = members(name)
            self.assertEqual({(entry.uname, entry.gname) for entry in files.values()}, {("root", "root")})
            runnable = {path for path, entry in files.items() if entry.isfile() and entry.mode & stat.S_IXUSR}
            self.assertEqual(runnable, programs)
            self.assertFalse(any(entry.mode & 0o022 for entry in files.values() if entry.isfile()))

    def test_the_command_is_a_link_to_the_program(self):
        self.assertEqual(members("qlxconfig")["usr/bin/QLXConfig"].linkname, f"/{PROGRAM}")

    def test_the_libraries_are_dependencies(self):
        self.assertIn("libwxgtk3.2-1 (>=", field("qlxconfig", "Depends"))
        self.assertIn("libzint", field("qlxsim", "Depends"))

    def test_the_toolkits_reader_of_svg_pictures_is_a_dependency(self):
        self.assertIn("librsvg2-common", field("qlxconfig", "Depends"))

    def test_a_library_that_is_loaded_at_run_time_is_recommended(self):
        self.assertIn("libhidapi-hidraw0", field("qlxconfig", "Recommends"))

    def test_the_simulator_brings_the_bus_daemon_that_it_starts(self):
        self.assertIn("dbus-daemon", field("qlxsim", "Depends"))

    def test_change_log_and_software_catalogue_know_this_version(self):
        changelog = output("zcat", Extracted.path("usr/share/doc/qlxconfig/changelog.gz"))
        self.assertEqual(re.match(r"qlxconfig \((.*)\)", changelog).group(1), VERSION)
        metainfo = ElementTree.parse(Extracted.path(f"usr/share/metainfo/{APP}.metainfo.xml"))
        self.assertEqual(metainfo.find("releases/release").get("version"), VERSION)


class Desktop(unittest.TestCase):
    def test_the_menu_entry_is_valid(self):
        self.assertEqual(output("desktop-file-validate", Extracted.path(f"usr/share/applications/{APP}.desktop")), "")

    def test_the_software_catalogue_accepts_the_description_the_menu_entry_and_the_icons(self):
        output("appstreamcli", "validate-tree", "--no-net", "--no-color", Extracted.path("."))

    def test_the_menu_entry_asks_polkit_for_the_program_that_its_action_names(self):
        with open(Extracted.path(f"usr/share/applications/{APP}.desktop"), encoding="utf-8") as entry:
            self.assertIn(f"\nExec=pkexec /{PROGRAM}\n", entry.read())
        policy = ElementTree.parse(Extracted.path(f"usr/share/polkit-1/actions/{APP}.policy"))
        notes = {note.get("key"): note.text for note in policy.iterfind("action/annotate")}
        self.assertEqual(notes["org.freedesktop.policykit.exec.path"], f"/{PROGRAM}")
        self.assertEqual(notes["org.freedesktop.policykit.exec.allow_gui"], "true")

    def test_only_an_administrator_may_change_settings(self):
        policy = ElementTree.parse(Extracted.path(f"usr/share/polkit-1/actions/{APP}.policy"))
        self.assertEqual({allowed.text for allowed in policy.find("action/defaults")}, {"auth_admin"})

    def test_the_icons_have_the_size_of_their_folder(self):
        for size in (48, 128):
            with open(Extracted.path(f"usr/share/icons/hicolor/{size}x{size}/apps/{APP}.png"), "rb") as file:
                head = file.read(24)
            self.assertEqual(head[:8], b"\x89PNG\r\n\x1a\n")
            self.assertEqual((int.from_bytes(head[16:20], "big"), int.from_bytes(head[20:24], "big")), (size, size))


class Manuals(unittest.TestCase):
    def test_both_readers_find_nothing_wrong(self):
        for name in ("QLXConfig", "qlxsim"):
            page = Extracted.path(f"usr/share/man/man1/{name}.1.gz")
            formatted = subprocess.run(["man", "--warnings", "--local-file", "-Tutf8", "-Z", page], check=True,
                                       capture_output=True)
            self.assertEqual(formatted.stderr, b"")
            output("mandoc", "-T", "lint", "-W", "warning", page)

    def test_the_page_and_the_completion_know_each_option_of_the_simulator(self):
        options = set(re.findall(r"--[a-z-]+", output(Extracted.path("usr/bin/qlxsim"), "--help")))
        page = output("man", "--local-file", Extracted.path("usr/share/man/man1/qlxsim.1.gz"),
                      env={**os.environ, "MANWIDTH": "200", "LC_ALL": "C.UTF-8"})
        self.assertGreater(len(options), 15)
        self.assertEqual({option for option in options if option not in page}, set())
        self.assertEqual(offered("qlxsim --"), options)


class Completion(unittest.TestCase):
    def test_printers_are_those_of_the_simulator(self):
        told = re.search(r"--printer NAME:\{(.*?)\}", output(Extracted.path("usr/bin/qlxsim"), "--help")).group(1)
        self.assertEqual(offered("qlxsim --printer "), set(told.split(",")))

    def test_services_follow_a_bad_day(self):
        self.assertEqual(offered("qlxsim --hang-stopping QLXL"), {"QLXLOGSVC"})

    def test_a_further_port_follows_a_comma(self):
        self.assertEqual(offered("qlxsim --ports COM3,COM1"), {"COM3,COM10"})

    def test_commands_follow_the_socket(self):
        self.assertEqual(offered("qlxsim --control run/control un"), {"unplug"})
        self.assertEqual(offered("qlxsim --control run/control unplug p"), {"pci", "printer"})
        self.assertEqual(offered("qlxsim --control run/control flood msr "), {"on", "off"})


if __name__ == "__main__":
    unittest.main()
