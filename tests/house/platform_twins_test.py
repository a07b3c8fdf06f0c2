from planted_tree import PlantedTree

HEADER = "bool Open();\nclass Port {\n virtual void Read() = 0;\n virtual void Write() = 0;\n};\n"
LINUX = "bool Open() { return true; }\nvoid Read() override { if (Write()) {} }\nvoid Write() override {}\n"


class PlatformTwins(PlantedTree):
    check = "platform-twins"

    def setUp(self):
        super().setUp()
        self.plant("src/platform/port.h", HEADER)
        self.plant("src/platform/linux/port.cpp", LINUX)
        self.plant("src/platform/windows/port.cpp", LINUX)

    def test_equal_twins_are_clean(self):
        self.assert_clean()

    def test_a_missing_twin_is_found(self):
        self.plant("src/platform/time.h", "int Now();\n")
        self.plant("src/platform/windows/time.cpp", "int Now() { return 1; }\n")
        self.assert_complaint("there is no src/platform/linux/time.cpp")

    def test_a_missing_folder_is_found(self):
        self.plant("src/controls/linux/list.cpp", "")
        self.assert_complaint("src/controls: has no folder windows")

    def test_another_order_is_found(self):
        self.plant("src/platform/windows/port.cpp", "void Write() {}\nvoid Port::Read() {}\nbool Open() { return true; }\n")
        self.assert_complaint("src/platform/windows/port.cpp: has Write where src/platform/linux/port.cpp has Open")

    def test_calls_and_comments_are_no_definitions(self):
        self.plant(
            "src/platform/windows/port.cpp",
            "// Write() {}\nbool Open() {\n  while (more && Write()) { }\n}\nvoid Read() {}\nvoid Write() {}\n",
        )
        self.assert_clean()

    def test_a_header_that_neither_implements_alone_is_clean(self):
        self.plant("src/platform/text.h", "int Length();\n")
        self.assert_clean()
