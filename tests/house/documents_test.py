from planted_tree import PlantedTree


class Documents(PlantedTree):
    check = "documents"

    def setUp(self):
        super().setUp()
        self.plant("scripts/run", "")
        self.plant("docs/linux.md", "[back](../README.md) [far](https://example.org/x) [here](#top)\n")

    def test_links_and_paths_that_exist_pass(self):
        self.plant("README.md", "[a](docs/linux.md) [b](docs/linux.md#x) `scripts/run --tour` `docs/` `out/run` `src`\n")
        self.assert_clean()

    def test_a_dead_link_is_found(self):
        self.plant("README.md", "one\n[a](docs/windows.md)\n")
        self.assert_complaint("README.md:2: there is no docs/windows.md")

    def test_a_link_is_relative_to_its_document(self):
        self.plant("README.md", "")
        self.plant("docs/more.md", "[a](docs/linux.md)\n")
        self.assert_complaint("docs/more.md:1: there is no docs/docs/linux.md")

    def test_a_path_in_backticks_that_is_gone_is_found(self):
        self.plant("README.md", "run `scripts/walk --fast`\n")
        self.assert_complaint("README.md:1: there is no scripts/walk")

    def test_a_row_of_a_table_with_a_cell_too_many_is_found(self):
        self.plant("README.md", "| a | b |\n|---|---|\n| one | `-R 'x|y'` |\n")
        self.assert_complaint("README.md:3: 3 cells under 2")

    def test_a_stroke_that_is_told_from_a_divider_passes(self):
        self.plant("README.md", "| a | b |\n|---|---|\n| one | `-R 'x\\|y'` |\n\n| c |\n|---|\n")
        self.assert_clean()
