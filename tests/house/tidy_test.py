import json
import os

from planted_tree import HOUSE, PlantedTree


class Tidy(PlantedTree):
    check = "tidy"

    def setUp(self):
        super().setUp()
        self.plant(".clang-tidy", (HOUSE / ".clang-tidy").read_text())
        self.plant("src/config/a.h", "#pragma once\nint Answer();\n")
        self.plant("src/config/a.cpp", '#include "a.h"\nint Answer() {\n  return 42;\n}\n')
        self.compile_with("")

    def compile_with(self, flags):
        source = str(self.root / "src/config/a.cpp")
        entry = {"directory": str(self.root), "file": source, "command": f"g++ -std=c++20 {flags} -c {source}"}
        self.plant("build/compile_commands.json", json.dumps([entry]))

    def run_check(self):
        environment = os.environ | {"XDG_CACHE_HOME": str(self.root / "cache")}
        return super().run_check(self.root / "build", env=environment)

    def assert_known(self, count):
        self.assertIn(f"1 files, {count} known", self.run_check().stdout)

    def test_a_name_against_the_conventions_is_found(self):
        self.plant("src/config/a.cpp", "int lower_function() {\n  return 1;\n}\n")
        self.assert_complaint("lower_function")

    def test_a_complaint_about_a_header_counts(self):
        self.plant("src/config/a.h", "#pragma once\nint Answer();\nclass bad_name {};\n")
        self.assert_complaint("bad_name")

    def test_the_names_that_the_suite_shares_pass(self):
        shared = "struct dataclass {};\nclass xmlclass {};\nconstexpr int LEVEL_ERROR = 1, MZP_DRIVER = 2;\n"
        self.plant("src/config/a.h", "#pragma once\nint Answer();\n" + shared)
        self.assert_clean()

    def test_a_file_that_passed_is_not_looked_at_again(self):
        self.assert_known(0)
        self.assert_known(1)

    def test_a_file_that_failed_is_looked_at_again(self):
        self.plant("src/config/a.cpp", "int lower_function() {\n  return 1;\n}\n")
        self.assert_complaint("lower_function")
        self.assert_complaint("lower_function")

    def test_a_change_of_anything_the_result_hangs_on_is_a_new_look(self):
        changes = {
            "source": lambda: self.plant("src/config/a.cpp", '#include "a.h"\nint Answer() {\n  return 43;\n}\n'),
            "header": lambda: self.plant("src/config/a.h", "#pragma once\n// the answer\nint Answer();\n"),
            "flags": lambda: self.compile_with("-DX"),
            "checks": lambda: self.plant(".clang-tidy", (HOUSE / ".clang-tidy").read_text() + "# changed\n"),
            "checks of its folder": lambda: self.plant("src/config/.clang-tidy", "InheritParentConfig: true\n"),
        }
        self.assert_known(0)
        for name, change in changes.items():
            with self.subTest(name):
                change()
                self.assert_known(0)
                self.assert_known(1)

    def test_a_header_that_another_compiler_has_precompiled_is_left_out(self):
        self.plant("build/cmake_pch.hxx", "#include <vector>\n")
        self.plant("build/cmake_pch.hxx.gch", "not clang's")
        self.compile_with(f"-Winvalid-pch -include {self.root}/build/cmake_pch.hxx")
        self.assert_clean()

    def test_another_header_that_is_included_from_outside_stays(self):
        self.plant("src/config/outside.h", "class bad_name {};\n")
        self.compile_with(f"-include {self.root}/src/config/outside.h")
        self.assert_complaint("bad_name")

    def test_nothing_to_check_is_no_success(self):
        self.plant("build/compile_commands.json", "[]")
        self.assertEqual(self.run_check().returncode, 1)
