import shutil

from planted_tree import HOUSE, PlantedTree


class TestCommand(PlantedTree):
    """The real scripts/test in a tree whose stages say what they are told to."""

    def setUp(self):
        super().setUp()
        self.script("scripts/setup", "exit 0")
        self.script("scripts/checks/format", "exit 0")
        shutil.copy(HOUSE / "scripts" / "test", self.root / "scripts" / "test")

    def script(self, path, body):
        self.plant(path, f"#!/bin/bash\n{body}\n")
        (self.root / path).chmod(0o755)

    def run_stages(self, *stages):
        return self.run_command(self.root / "scripts" / "test", *stages)

    def test_ends_with_one_line_that_names_what_passed(self):
        done = self.run_stages("setup", "format")
        self.assertEqual(done.returncode, 0)
        self.assertIn("test: passed: setup format", done.stdout.splitlines()[-1])

    def test_stops_at_the_first_failing_stage_and_names_it(self):
        self.script("scripts/checks/format", "exit 3")
        done = self.run_stages("setup", "format", "setup")
        self.assertNotEqual(done.returncode, 0)
        self.assertIn("test: FAILED at stage format", done.stderr.splitlines()[-1])
        self.assertEqual(done.stdout.count("== setup"), 1)

    def test_an_unknown_stage_is_refused_before_anything_runs(self):
        done = self.run_stages("setup", "formt")
        self.assertEqual(done.returncode, 2)
        self.assertNotIn("== setup", done.stdout)
