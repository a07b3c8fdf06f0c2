import os
import shutil

from planted_tree import HOUSE, PlantedTree


class CommandCase(PlantedTree):
    """The real scripts/test in a tree whose stages say what they are told to."""

    def setUp(self):
        super().setUp()
        (self.root / "scripts").mkdir()
        shutil.copy(HOUSE / "scripts" / "test", self.root / "scripts" / "test")

    def script(self, path, body):
        self.plant(path, f"#!/bin/bash\n{body}\n")
        (self.root / path).chmod(0o755)


class TestCommand(CommandCase):
    def setUp(self):
        super().setUp()
        self.script("scripts/setup", "exit 0")
        self.script("scripts/checks/format", "exit 0")

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


class TidyBesideTests(CommandCase):
    """The same with a clang-tidy that would look for minutes, unless tests are over."""

    def setUp(self):
        super().setUp()
        self.plant("build/linux-release/compile_commands.json", "[]")
        self.script("tools/cmake", "exit 0")
        self.script("scripts/checks/tidy", "echo $$ >> looks; [ -e tests-over ] || exec sleep 120")
        self.path = f"{self.root / 'tools'}:{os.environ['PATH']}"

    def make_ctest(self, waits_for, result=0):
        self.script("tools/ctest", f"until [ -e {waits_for} ]; do sleep 0.05; done; touch tests-over; exit {result}")

    def run_stages(self, *stages):
        return self.run_command(
            self.root / "scripts" / "test", *stages, env={**os.environ, "PATH": self.path}, cwd=self.root)

    def looks(self):
        file = self.root / "looks"
        return [int(line) for line in file.read_text().split()] if file.exists() else []

    def assert_gone(self, process):
        with self.assertRaises(ProcessLookupError):
            os.kill(process, 0)

    def test_begins_beside_the_tests_and_ends_with_them(self):
        self.make_ctest(waits_for="looks")
        done = self.run_stages("release", "tidy")
        self.assertEqual(done.returncode, 0, done.stderr)
        ahead, _stage = self.looks()
        self.assert_gone(ahead)
        self.assertEqual(done.stderr, "")

    def test_tests_that_fail_are_not_hidden(self):
        self.make_ctest(waits_for="looks", result=8)
        done = self.run_stages("release", "tidy")
        self.assertEqual(done.returncode, 8)
        self.assertEqual(done.stderr.splitlines()[-1].partition(" (")[0], "test: FAILED at stage release")
        (ahead,) = self.looks()
        self.assert_gone(ahead)

    def test_does_not_begin_when_nobody_asks_for_it(self):
        self.make_ctest(waits_for=".")
        self.assertEqual(self.run_stages("release").returncode, 0)
        self.assertEqual(self.looks(), [])
