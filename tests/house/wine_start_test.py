import subprocess
import tempfile
import unittest
from pathlib import Path

from planted_tree import HOUSE

START = HOUSE / "scripts" / "wine-start"
PASSED = "[  PASSED  ] 2 tests."


class WineStart(unittest.TestCase):
    """Instead of Wine a script that counts its runs."""

    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = Path(folder.name)

    def program(self, body):
        program = self.folder / "program"
        program.write_text(f'#!/bin/bash\necho run >>"{self.folder}/runs"\nruns=$(wc -l <"{self.folder}/runs")\n{body}\n')
        program.chmod(0o755)
        return program

    def run_program(self, body):
        done = subprocess.run([START, self.program(body), "argument"], capture_output=True, text=True, check=False, timeout=30)
        self.errors = done.stderr
        return done.returncode, done.stdout, len((self.folder / "runs").read_text().splitlines())

    def test_a_program_that_passes_runs_once(self):
        self.assertEqual(self.run_program(f'echo "$1"; echo "{PASSED}"'), (0, f"argument\n{PASSED}\n", 1))

    def test_a_program_that_fails_runs_once(self):
        self.assertEqual(self.run_program("echo failed; echo why >&2; exit 3"), (3, "failed\n", 1))
        self.assertEqual(self.errors, "why\n")

    def test_what_ends_without_a_word_is_started_once_more(self):
        result, said, runs = self.run_program(f"[ $runs -eq 2 ] || exit 1; echo '{PASSED}'")
        self.assertEqual((result, said, runs), (0, f"{PASSED}\n", 2))
        self.assertIn("ended with 1", self.errors)

    def test_what_wine_said_of_it_is_shown(self):
        result, said, runs = self.run_program(f"[ $runs -eq 2 ] || {{ echo err:virtual >&2; exit 1; }}; echo '{PASSED}'")
        self.assertEqual((result, said, runs), (0, f"{PASSED}\n", 2))
        self.assertIn("err:virtual", self.errors)

    def test_what_a_program_says_is_passed_on_while_it_runs(self):
        # Gives up by itself, where nothing is passed on.
        wait = f'for turn in {{1..500}}; do [ ! -e "{self.folder}/heard" ] || echo heard; sleep 0.02; done | head -n 1'
        with subprocess.Popen([START, self.program(f"echo begun; {wait}; echo '{PASSED}'")], stdout=subprocess.PIPE, text=True) as process:
            begun = process.stdout.readline()
            (self.folder / "heard").touch()
            said = process.stdout.read()
        self.assertEqual((begun, said), ("begun\n", f"heard\n{PASSED}\n"))

    def test_a_program_left_behind_holds_up_nobody(self):
        self.addCleanup((self.folder / "over").touch)
        left_behind = f'(until [ ! -d "{self.folder}" ] || [ -e "{self.folder}/over" ]; do sleep 0.02; done) &'
        self.assertEqual(self.run_program(f"echo '{PASSED}'; {left_behind}"), (0, f"{PASSED}\n", 1))

    def test_what_is_ended_in_the_middle_of_its_tests_is_started_once_more(self):
        result, said, runs = self.run_program(f"echo begun; [ $runs -eq 2 ] || exit 0; echo '{PASSED}'")
        self.assertEqual((result, said.splitlines()[-1], runs), (0, PASSED, 2))
        self.assertIn("ended with 0 before its tests did; once more", self.errors)

    def test_what_ends_in_the_middle_of_its_tests_twice_has_failed(self):
        result, _, runs = self.run_program("echo begun")
        self.assertEqual((result, runs), (1, 2))
        self.assertIn("before its tests did\n", self.errors)

    def test_what_ends_without_a_word_twice_has_failed(self):
        result, _, runs = self.run_program("exit 1")
        self.assertEqual((result, runs), (1, 2))


if __name__ == "__main__":
    unittest.main()
