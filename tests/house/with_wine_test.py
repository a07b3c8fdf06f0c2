import os

from planted_tree import HOUSE, PlantedTree

INSIDE = 'echo "$HOME" && ls -l "$WINEPREFIX/drive_c/users/"* && exit 3'


class WithWine(PlantedTree):
    def test_a_windows_of_its_own_that_leaves_nothing(self):
        done = self.run_command(HOUSE / "scripts" / "with-wine", "sh", "-c", INSIDE, env={**os.environ, "TMPDIR": str(self.root)})
        self.assertEqual(done.returncode, 3, done.stderr)
        home = done.stdout.splitlines()[0]
        self.assertTrue(home.startswith(f"{self.root}/"), "the home directory is the Windows' own")
        for line in done.stdout.splitlines():
            if " -> " in line:  # the user's folders are links
                self.assertTrue(line.partition(" -> ")[2].startswith(home), line)
        self.assertEqual(os.listdir(self.root), [])

    def test_without_a_command_it_tells_how_it_is_used(self):
        done = self.run_command(HOUSE / "scripts" / "with-wine")
        self.assertEqual(done.returncode, 125)
        self.assertIn("usage: with-wine COMMAND...", done.stderr)
