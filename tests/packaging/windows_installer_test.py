"""The Windows installer in use, in the Windows of $WINEPREFIX."""

import os
import re
import subprocess
import tempfile
import time
import unittest

from help_files import help_files

LIMIT = 60  # seconds that any single expectation may take
SETUP = os.environ["QLX_SETUP"]
NEXT_SETUP = os.environ["QLX_NEXT_SETUP"]
VERSION = os.environ["QLX_VERSION"]
NEXT_VERSION = os.environ["QLX_NEXT_VERSION"]
LANGUAGES = sorted(name[:-3] for name in os.listdir("../../translations") if name.endswith(".po"))

DRIVE = os.path.join(os.environ["WINEPREFIX"], "drive_c")
DIRECTORY = r"C:\suite"
STANDARD = r"C:\Program Files\Harlune\MZP\BIN"
KEY = r"HKLM\Software\Microsoft\Windows\CurrentVersion\Uninstall\QLXConfig"
MENU = r"C:\ProgramData\Microsoft\Windows\Start Menu\Programs\Quillon"
EDITED = b"<MZP><Logging_Configuration><TCP_Port>4711</TCP_Port></Logging_Configuration></MZP>\n"
NEXT, CLOSE, YES, NO = 1, 1, 6, 7  # numbers of buttons
IN_USE = 32
TOO_OLD = 1150 % 256  # the part of the number that gets out of here


def here(path):
    """A file of that Windows as this machine knows it."""
    return os.path.join(DRIVE, *path.removeprefix("C:\\").split("\\"))


def wine(*command):
    """Exit code and output of a Windows program. No pipe: what it starts could hold that open for ever."""
    with tempfile.TemporaryFile("w+", encoding="utf-8") as output:
        code = subprocess.run([os.environ["WINE"], *command], stdin=subprocess.DEVNULL, stdout=output,
                              stderr=subprocess.DEVNULL, timeout=LIMIT, check=False).returncode
        output.seek(0)
        return code, output.read()


def install(setup=SETUP, directory=DIRECTORY):
    """The exit code of an unattended installation."""
    return wine(setup, "/S", *([f"/D={directory}"] if directory else []))[0]


def remove(directory=DIRECTORY):
    """The exit code of an unattended removal; the uninstaller itself stays, for it runs where it lies."""
    return wine(here(directory + r"\QLXConfig-uninstall.exe"), "/S", f"_?={directory}")[0]


def registered():
    """The values by which Windows lists the program, by name; none when it does not."""
    lines = wine("reg", "query", KEY)[1].splitlines()
    return {name: value for line in lines for name, value in re.findall(r"^    (\w+)    REG_\w+    (.*)$", line)}


def content(path):
    with open(here(path), "rb") as file:
        return file.read()


def put(path, written=b"theirs"):
    os.makedirs(os.path.dirname(here(path)), exist_ok=True)
    with open(here(path), "wb") as file:
        file.write(written)


def files(directory):
    """All files below it, named from there."""
    top = here(directory)
    return sorted(os.path.relpath(os.path.join(folder, name), top) for folder, _, names in os.walk(top) for name in names)


def wait_for(condition, what):
    deadline = time.monotonic() + LIMIT
    while not condition():
        if time.monotonic() > deadline:
            raise AssertionError(what)
        time.sleep(0.05)


class WindowsInstaller(unittest.TestCase):
    def setUp(self):
        self.assertEqual(registered(), {}, "an installation is left")
        self.addCleanup(self.clean_up)

    def clean_up(self):
        directory = registered().get("InstallLocation")
        if directory:
            remove(directory)
            wine("reg", "delete", KEY, "/f")  # also when a program that has just ended kept the removal from its file
        for top in (here(DIRECTORY), here(STANDARD)):
            subprocess.run(["rm", "-rf", top], check=True)

    def run_tool(self):
        """The installed program with its window open."""
        tool = subprocess.Popen([os.environ["WINE"], here(DIRECTORY + r"\QLXConfig.exe")], stdin=subprocess.DEVNULL)
        self.addCleanup(tool.wait)
        self.addCleanup(wine, "taskkill", "/f", "/im", "QLXConfig.exe")
        wait_for(lambda: os.path.exists(here(DIRECTORY + r"\QLXConfig.xml")), "the program makes no configuration")

    def remove_by_hand(self, *buttons):
        uninstaller = subprocess.Popen(
            [os.environ["WINE"], here(DIRECTORY + r"\QLXConfig-uninstall.exe"), f"_?={DIRECTORY}"], stdin=subprocess.DEVNULL)
        self.addCleanup(uninstaller.wait)
        self.addCleanup(uninstaller.kill)
        for button in buttons:
            self.assertEqual(wine(os.environ["QLX_PRESS_BUTTON"], str(button))[0], 0, f"button {button}")
        return uninstaller.wait(LIMIT)

    # Installation

    def test_brings_the_program_its_catalogues_its_help_and_what_there_is_to_read(self):
        self.assertEqual(install(), 0)
        catalogues = [f"locale/{language}/LC_MESSAGES/qlxconfig.mo" for language in LANGUAGES]
        texts = [f"doc/QLXConfig/{name}.txt" for name in ("LICENSE", "THIRD-PARTY")]
        programs = ["QLXConfig-uninstall.exe", "QLXConfig.exe"]
        self.assertEqual(files(DIRECTORY), sorted([*programs, *catalogues, *help_files(), *texts]))
        self.assertEqual(content(DIRECTORY + r"\doc\QLXConfig\LICENSE.txt")[:11], b"MIT License")

    def test_installs_the_program_that_was_built(self):
        install()
        with open(os.environ["QLX_PROGRAM"], "rb") as built:
            self.assertEqual(content(DIRECTORY + r"\QLXConfig.exe"), built.read())

    def test_registers_the_program_for_removal(self):
        install()
        size = int(registered()["EstimatedSize"], 16) * 1024
        on_disk = sum(os.path.getsize(os.path.join(here(DIRECTORY), name)) for name in files(DIRECTORY))
        self.assertAlmostEqual(size, on_disk, delta=on_disk / 10)
        self.assertEqual(registered(), registered() | {
            "DisplayName": "Quillon Configuration Tool",
            "DisplayVersion": VERSION,
            "Publisher": "Quillon",
            "DisplayIcon": rf'"{DIRECTORY}\QLXConfig.exe",0',
            "InstallLocation": DIRECTORY,
            "UninstallString": rf'"{DIRECTORY}\QLXConfig-uninstall.exe"',
            "QuietUninstallString": rf'"{DIRECTORY}\QLXConfig-uninstall.exe" /S',
            "NoModify": "0x1",
            "NoRepair": "0x1",
        })

    def test_puts_the_program_into_the_start_menu_of_all_users(self):
        install()
        self.assertEqual(files(MENU), ["Quillon Configuration Tool.lnk"])
        self.assertIn(rf"{DIRECTORY}\QLXConfig.exe".encode(), content(MENU + r"\Quillon Configuration Tool.lnk"))

    def test_installs_beside_the_suite_when_no_directory_is_given(self):
        self.assertEqual(install(directory=None), 0)
        self.assertIn("QLXConfig.exe", files(STANDARD))

    def test_a_directory_that_cannot_be_written_is_a_failure(self):
        self.assertNotEqual(install(directory=r"Z:\proc\nowhere"), 0)
        self.assertEqual(registered(), {})

    def test_refuses_a_windows_that_is_too_old(self):
        self.addCleanup(wine, "winecfg", "/v", "win10")
        wine("winecfg", "/v", "winxp64")
        self.assertEqual(install(), TOO_OLD)
        self.assertEqual(files(DIRECTORY), [])

    # Upgrade

    def test_an_upgrade_keeps_the_configuration_byte_for_byte(self):
        install()
        put(DIRECTORY + r"\QLXConfig.xml", EDITED)
        put(DIRECTORY + r"\QLXConfig.xml.bak", EDITED + b" ")
        self.assertEqual(install(NEXT_SETUP), 0)
        self.assertEqual(content(DIRECTORY + r"\QLXConfig.xml"), EDITED)
        self.assertEqual(content(DIRECTORY + r"\QLXConfig.xml.bak"), EDITED + b" ")
        self.assertEqual(registered()["DisplayVersion"], NEXT_VERSION)

    def test_an_upgrade_finds_the_directory_by_itself(self):
        install()
        self.assertEqual(install(NEXT_SETUP, directory=None), 0)
        self.assertEqual(registered()["InstallLocation"], DIRECTORY)
        self.assertEqual(files(STANDARD), [])

    def test_an_upgrade_replaces_the_program(self):
        put(DIRECTORY + r"\QLXConfig.exe", b"an older one")
        install()
        self.assertEqual(content(DIRECTORY + r"\QLXConfig.exe")[:2], b"MZ")

    # While the program runs

    def test_an_open_program_is_neither_upgraded_nor_removed(self):
        install()
        before = content(DIRECTORY + r"\QLXConfig.exe")
        self.run_tool()
        self.assertEqual(install(NEXT_SETUP), IN_USE)
        self.assertEqual(remove(), IN_USE)
        self.assertEqual(registered()["DisplayVersion"], VERSION)
        self.assertEqual(content(DIRECTORY + r"\QLXConfig.exe"), before)
        self.assertIn("locale/de/LC_MESSAGES/qlxconfig.mo", files(DIRECTORY))

    # Removal

    def test_a_removal_takes_everything_that_was_installed(self):
        install()
        self.assertEqual(remove(), 0)
        self.assertEqual(files(DIRECTORY), ["QLXConfig-uninstall.exe"])
        self.assertEqual(os.listdir(here(DIRECTORY)), ["QLXConfig-uninstall.exe"])
        self.assertFalse(os.path.exists(here(MENU)))
        self.assertEqual(registered(), {})

    def test_windows_own_way_of_removal_takes_the_uninstaller_and_the_directory_too(self):
        install()
        command = registered()["QuietUninstallString"]
        wine("cmd", "/c", *command.replace('"', "").split())
        wait_for(lambda: not os.path.exists(here(DIRECTORY)), f"{files(DIRECTORY)} are left")

    def test_a_removal_without_a_question_keeps_the_configuration(self):
        install()
        put(DIRECTORY + r"\QLXConfig.xml", EDITED)
        self.assertEqual(remove(), 0)
        self.assertEqual(content(DIRECTORY + r"\QLXConfig.xml"), EDITED)

    def test_a_removal_keeps_what_others_have_put_there(self):
        install()
        foreign = ["QLXSVC.exe", r"locale\de\LC_MESSAGES\suite.mo", r"doc\readme.txt", "QLXConfig.xml.mine"]
        for name in foreign:
            put(DIRECTORY + "\\" + name)
        put(MENU + r"\Suite.lnk")
        self.addCleanup(subprocess.run, ["rm", "-rf", here(MENU)], check=True)
        self.assertEqual(remove(), 0)
        kept = sorted(name.replace("\\", "/") for name in foreign)
        self.assertEqual(files(DIRECTORY), sorted([*kept, "QLXConfig-uninstall.exe"]))
        self.assertEqual(files(MENU), ["Suite.lnk"])

    def test_a_removal_by_hand_takes_the_configuration_when_told_so(self):
        install()
        for end in ("", ".bak", ".unreadable"):
            put(DIRECTORY + r"\QLXConfig.xml" + end, EDITED)
        self.assertEqual(self.remove_by_hand(NEXT, YES, CLOSE), 0)
        self.assertEqual(files(DIRECTORY), ["QLXConfig-uninstall.exe"])

    def test_a_removal_by_hand_keeps_the_configuration_when_told_so(self):
        install()
        for end in ("", ".bak"):
            put(DIRECTORY + r"\QLXConfig.xml" + end, EDITED)
        self.assertEqual(self.remove_by_hand(NEXT, NO, CLOSE), 0)
        self.assertEqual(files(DIRECTORY), ["QLXConfig-uninstall.exe", "QLXConfig.xml", "QLXConfig.xml.bak"])

    def test_a_removal_by_hand_asks_nothing_when_there_is_no_configuration(self):
        install()
        self.assertEqual(self.remove_by_hand(NEXT, CLOSE), 0)
        self.assertEqual(registered(), {})
