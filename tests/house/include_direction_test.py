from planted_tree import PlantedTree


class IncludeDirection(PlantedTree):
    check = "include-direction"

    def include(self, includer, name):
        self.plant(includer, f'#include "{name}"\n')

    def test_down_and_on_the_same_floor_is_fine(self):
        self.include("src/app/Dialog.cpp", "pages/Page.h")
        self.include("src/pages/Page.cpp", "config/ConfigDocument.h")
        self.include("src/config/ConfigDocument.cpp", "log/LogMessage.h")
        self.include("src/log/LogMessage.cpp", "platform/program.h")
        self.plant("src/platform/text.cpp", "#include <wx/wx.h>\n")
        self.assert_clean()

    def test_up_is_found(self):
        for includer, name in (
            ("src/platform/x.cpp", "config/values.h"),
            ("src/config/x.cpp", "pages/Page.h"),
            ("src/services/x.cpp", "demo/Session.h"),
            ("src/pages/x.cpp", "app/Dialog.h"),
        ):
            with self.subTest(includer):
                self.include(includer, name)
                self.assert_complaint(f"{includer}:1: {name}", "upwards")
                self.plant(includer, "")

    def test_angle_brackets_are_no_way_around(self):
        self.plant("src/config/x.cpp", "#include <pages/Page.h>\n")
        self.assert_complaint("upwards")

    def test_sideways_between_pages_ports_and_demo_is_found(self):
        self.include("src/pages/x.cpp", "ports/Ports.h")
        self.include("src/demo/x.cpp", "ports/Ports.h")
        self.include("src/ports/x.cpp", "demo/Session.h")
        self.assert_complaint("pages includes sideways", "demo includes sideways", "ports includes sideways")

    def test_the_ports_page_may_open_the_demo_dialog(self):
        self.include("src/ports/PORTSDialog.cpp", "demo/DemoDialog.h")
        self.assert_clean()

    def test_a_back_end_is_known_to_the_platform_its_tests_and_the_simulator_only(self):
        for includer in ("src/platform/linux/a.cpp", "tests/platform/a.cpp", "sim/a.cpp"):
            self.include(includer, "platform/linux/path_text.h")
        self.assert_clean()
        self.include("src/log/a.cpp", "platform/linux/path_text.h")
        self.include("bench/a.cpp", "platform/linux/path_text.h")
        self.assert_complaint("src/log/a.cpp:1", "bench/a.cpp:1")

    def test_one_back_end_does_not_know_the_other(self):
        self.include("src/platform/windows/a.cpp", "platform/linux/path_text.h")
        self.assert_complaint("must not know")

    def test_a_relative_path_is_no_way_around(self):
        self.include("src/config/a.cpp", "../pages/Page.h")
        self.assert_complaint("'..'")

    def test_the_tool_knows_neither_simulator_nor_tests(self):
        self.include("src/app/a.cpp", "sim/Bus.h")
        self.include("src/log/a.cpp", "tests/fake.h")
        self.assert_complaint("know sim/", "know tests/")

    def test_a_folder_without_a_floor_is_found(self):
        self.plant("src/helpers/a.cpp", "")
        self.assert_complaint("helpers has no floor")
