from planted_tree import PlantedTree

PATCH = """--- a/src/table.h
+++ b/src/table.h
@@ -1,2 +1,3 @@
 one
+  two, {2}
 three
"""


class Examples(PlantedTree):
    check = "examples"

    def setUp(self):
        super().setUp()
        self.plant("src/table.h", "one\nthree\n")
        self.plant("docs/examples/add.patch", PATCH)
        self.plant("CONTRIBUTING.md", "A row more:\n\n    +two, {2}\n")

    def test_a_patch_that_applies_and_is_shown_passes(self):
        self.assert_clean()

    def test_a_patch_that_no_longer_applies_is_found(self):
        self.plant("src/table.h", "1\n3\n")
        self.assert_complaint("docs/examples/add.patch: does not apply", "src/table.h")

    def test_a_line_that_is_not_shown_is_found(self):
        self.plant("CONTRIBUTING.md", "A row more:\n\n    +two, {3}\n")
        self.assert_complaint("docs/examples/add.patch: CONTRIBUTING.md does not show +two, {2}")
