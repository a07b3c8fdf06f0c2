from planted_tree import PlantedTree

COMPILER = "x86_64-w64-mingw32-g++-posix"


class WindowsImports(PlantedTree):
    check = "windows-imports"

    def build(self, *options):
        self.plant("main.cpp", "#include <iostream>\nint main() { std::cout << 1; }\n")
        done = self.run_command(COMPILER, self.root / "main.cpp", "-o", self.root / "main.exe", *options)
        self.assertEqual(done.returncode, 0, done.stderr)
        self.root = self.root / "main.exe"

    def test_a_dll_of_the_compiler_is_found(self):
        self.build()
        self.assert_complaint("main.exe: imports libstdc++-6.dll")

    def test_a_static_program_is_clean(self):
        self.build("-static")
        self.assert_clean()

    def test_a_file_that_is_no_program_is_told(self):
        self.plant("text.exe", "no program\n")
        self.root = self.root / "text.exe"
        self.assert_complaint("windows-imports:", "text.exe")
