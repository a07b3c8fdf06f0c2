"""A small source tree in a temporary folder, for the house checks to judge."""

import subprocess
import tempfile
import unittest
from pathlib import Path

LIMIT = 120  # seconds, for a command that should take a few
HOUSE = Path(__file__).resolve().parents[2]


class PlantedTree(unittest.TestCase):
    check = ""  # the script below scripts/checks/ that a test class is about

    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.root = Path(folder.name).resolve()

    def plant(self, path, text):
        target = self.root / path
        target.parent.mkdir(parents=True, exist_ok=True)
        target.write_text(text, encoding="utf-8")

    def run_command(self, *command, **options):
        return subprocess.run(command, capture_output=True, text=True, check=False, timeout=LIMIT, **options)

    def run_check(self, *more, **options):
        return self.run_command(HOUSE / "scripts" / "checks" / self.check, self.root, *more, **options)

    def assert_clean(self):
        done = self.run_check()
        self.assertEqual(done.returncode, 0, done.stderr)

    def assert_complaint(self, *words):
        done = self.run_check()
        self.assertEqual(done.returncode, 1, done.stdout + done.stderr)
        for word in words:
            self.assertIn(word, done.stderr)
