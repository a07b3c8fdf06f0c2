from planted_tree import PlantedTree


class Format(PlantedTree):
    check = "format"

    def setUp(self):
        super().setUp()
        self.plant(".clang-format", "BasedOnStyle: Google\n")
        for folder in ("src", "sim", "tests", "bench"):
            self.plant(f"{folder}/a.cpp", "int a = 1;\n")

    def test_a_laid_out_tree_passes(self):
        self.assert_clean()

    def test_a_file_out_of_style_is_found_in_every_folder(self):
        for path in ("src/a.cpp", "sim/a.h", "tests/deep/a.cpp", "bench/a.cpp"):
            with self.subTest(path):
                self.plant(path, "int   a=1 ;\n")
                self.assertNotEqual(self.run_check().returncode, 0)
                self.plant(path, "int a = 1;\n")


class ShellScripts(PlantedTree):
    check = "shell-scripts"

    def test_a_script_without_defects_passes(self):
        self.plant("scripts/good", '#!/bin/bash\necho "$1"\n')
        self.assert_clean()

    def test_a_defect_in_any_script_is_found_whatever_its_name(self):
        for path, shell in (("scripts/run", "/bin/bash"), ("tests/robustness/kill.sh", "/bin/sh")):
            with self.subTest(path):
                self.plant(path, f"#!{shell}\nrm $1\n")
                self.assertNotEqual(self.run_check().returncode, 0)
                self.plant(path, f"#!{shell}\ntrue\n")
