import sys
import tempfile
import unittest
from pathlib import Path
from random import Random
from unittest import mock

from planted_tree import HOUSE

sys.path.insert(0, str(HOUSE / "tests" / "robustness"))

import saved_file  # noqa: E402
import two_savers  # noqa: E402

SAVED = "<MZP>" + "".join(f"<{part}_Configuration><Number>%s</Number></{part}_Configuration>" for part in ("Ports", "Printer"))
# Says what a saver says and leaves the file of its last save behind.
SAVER = f'''echo saving
number=$(($3 + $2 - 1))
printf '{SAVED}</MZP>' "$number" "$number" >"$1"
cp "$1" "$1.bak"
'''


class SavedFile(unittest.TestCase):
    """Instead of Wine a script that ends the first starts before the program begins."""

    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = Path(folder.name)
        self.path = str(self.folder / saved_file.FILE)

    def program(self, name, body):
        program = self.folder / name
        program.write_text(f"#!/bin/bash\n{body}\n")
        program.chmod(0o755)
        return str(program)

    def stumble(self, times):
        # Of two that start at once only one can make the folder.
        body = (f'echo start >>"{self.folder}/starts"\n'
                f'for stumble in $(seq {times}); do mkdir "{self.folder}/$stumble" 2>/dev/null && exit 1; done\n'
                'exec "$@"')
        emulator = mock.patch.object(saved_file, "EMULATOR", [self.program("emulator", body)])
        emulator.start()
        self.addCleanup(emulator.stop)

    def starts(self):
        return len((self.folder / "starts").read_text().splitlines())

    def test_a_saver_that_does_not_begin_is_started_once_more(self):
        self.stumble(1)
        saved_file.save(self.program("saver", SAVER), self.path, 2, 7)
        self.assertEqual((saved_file.number(self.path), self.starts()), (8, 2))

    def test_a_saver_that_never_begins_is_told(self):
        self.stumble(9)
        with self.assertRaisesRegex(SystemExit, "ended with 1 before it began, twice"):
            saved_file.save(self.program("saver", SAVER), self.path, 2, 7)
        self.assertEqual(self.starts(), 2)

    def test_a_saver_that_fails_is_started_once_and_told(self):
        self.stumble(0)
        with self.assertRaisesRegex(SystemExit, "the saver ended with 3"):
            saved_file.save(self.program("saver", "echo saving; exit 3"), self.path, 2)
        self.assertEqual(self.starts(), 1)

    def run_two(self):
        return two_savers.run(self.program("saver", SAVER), 1, Random(1), str(self.folder / "installation"))

    def test_two_savers_of_which_one_does_not_begin_are_started_once_more(self):
        (self.folder / "installation").mkdir()
        self.stumble(0)
        with mock.patch.object(two_savers, "save", self.save_then_stumble):
            seen = self.run_two()
        self.assertEqual((seen["failed"], seen["neither"], self.starts()), (0, 0, 4))

    def save_then_stumble(self, saver, path, count):
        saved_file.save(saver, path, count, 0)
        (self.folder / "starts").unlink()
        self.stumble(1)

    def test_two_savers_of_which_none_ever_begins_are_told(self):
        (self.folder / "installation").mkdir()
        self.stumble(9)
        with mock.patch.object(two_savers, "save"), self.assertRaisesRegex(SystemExit, "before it began, twice"):
            self.run_two()


if __name__ == "__main__":
    unittest.main()
