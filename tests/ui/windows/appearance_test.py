"""Every page in each language and at twice the resolution: translated, and nothing cut off."""

import os
import shutil
import subprocess
import unittest

import polib

from tool import Tool
from window_case import WindowCase, complete_file

USUAL, DOUBLE = 96, 192  # dots per inch
TAB_COUNT = 5
SCREEN = (1280, 1024)


def set_resolution(dots_per_inch):
    """For every program that starts from now on."""
    subprocess.run(
        [os.environ["WINE"], "reg", "add", r"HKCU\Control Panel\Desktop", "/v", "LogPixels", "/t", "REG_DWORD",
         "/d", str(dots_per_inch), "/f"], check=True, stdout=subprocess.DEVNULL)


class Appearance(WindowCase):
    def setUp(self):
        super().setUp()
        self.folder = os.path.join(self.installation.directory, "locale")
        shutil.copytree(os.path.join(os.path.dirname(os.environ["QLX_PROGRAM"]), "locale"), self.folder)
        self.texts = {}
        set_resolution(USUAL)

    def open_in(self, language):
        catalogue = os.path.join(self.folder, language, "LC_MESSAGES", "qlxconfig.mo")
        if os.path.exists(catalogue):
            self.texts = {entry.msgid: entry.msgstr for entry in polib.mofile(catalogue)}
        self.installation.write(complete_file())
        tool = Tool(self.installation, {"LANGUAGE": language})
        self.addCleanup(tool.kill)
        tool.active_window(self.says("Quillon Configuration Tool"))
        return tool

    def says(self, text):
        return self.texts.get(text, text)

    def labels_and_buttons(self, tool):
        window = tool.window(self.says("Quillon Configuration Tool"))
        return [c for c in tool.controls(window) if c.kind in ("Static", "Button") and c.shown and c.text]

    def cut_off(self, tool):
        """What needs more room than it has."""
        for control in self.labels_and_buttons(tool):
            needed = tuple(map(int, tool.ask("room", control.handle)))
            _, _, width, height = control.bounds
            if needed[0] > width or needed[1] > height:
                yield f"{control.text!r} needs {needed}, not {(width, height)}"

    def judge_pages(self, tool):
        for name in tool.tabs():
            tool.tab(name)
            self.assertEqual(list(self.cut_off(tool)), [], name)
        self.assertEqual(len(tool.tabs()), TAB_COUNT)

    def test_german_texts_are_shown_and_whole(self):
        tool = self.open_in("de")
        self.assertEqual(tool.tabs(), ["COM-Ports", "Protokoll", "MSR", "iButton", "Drucker"])
        tool.tab("Protokoll")
        shown = [control.text.replace("&", "") for control in self.labels_and_buttons(tool)]
        for text in ("Name der Protokolldatei:", "KB", "Kassenlade (USB)", "Standard", "Alle übernehmen"):
            self.assertIn(text, shown)
        self.judge_pages(tool)

    def test_at_twice_the_resolution_everything_is_twice_as_large_and_whole(self):
        tool = self.open_in("en")
        usual = tool.bounds(1031)
        tool.kill()
        set_resolution(DOUBLE)
        for language in ("en", "de", "es"):
            with self.subTest(language=language):
                tool = self.open_in(language)
                self.assertGreaterEqual(tool.bounds(1031)[3], 1.7 * usual[3])
                self.judge_pages(tool)
                _, _, width, height = tool.window_bounds(self.says("Quillon Configuration Tool"))
                self.assertTrue(width <= SCREEN[0] and height <= SCREEN[1], (width, height))
                tool.kill()
                self.texts = {}


if __name__ == "__main__":
    unittest.main()
