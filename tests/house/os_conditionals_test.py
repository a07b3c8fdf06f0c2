from planted_tree import PlantedTree


class OsConditionals(PlantedTree):
    check = "os-conditionals"

    def test_a_conditional_in_a_page_is_found(self):
        self.plant("src/pages/Page.cpp", "int a;\n#ifdef _WIN32\n#endif\n")
        self.assert_complaint("src/pages/Page.cpp:2", "_WIN32")

    def test_every_form_of_conditional_is_found(self):
        for line in (
            "#if defined(__linux__)",
            "#if defined __unix__ && 1",
            "#  ifndef WIN32",
            "#elif defined(_MSC_VER)",
            "#if 1 || \\\n defined(__MINGW32__)",
            "#if /* why */ defined(__WXMSW__)",
            "#elifdef __WXGTK__",
            "#if __has_include(<windows.h>)",
        ):
            with self.subTest(line):
                self.plant("tests/x_test.cpp", line + "\n#endif\n")
                self.assert_complaint("tests/x_test.cpp:1")

    def test_the_platform_folder_may_have_them(self):
        self.plant("src/platform/program.h", "#ifdef _WIN32\n#endif\n")
        self.assert_clean()

    def test_other_conditionals_comments_and_text_are_none(self):
        self.plant(
            "src/pages/Page.cpp",
            "// #ifdef _WIN32\n/*\n#ifdef __linux__\n*/\n#ifdef NDEBUG\n#endif\n"
            '#include "platform/linux/x.h"\nauto a = R"(\n#if _WIN32\n)";\nauto b = "/*";\n#if QLX_LINUX_LIKE // WIN32\n#endif\n',
        )
        self.assert_clean()

    def test_text_that_looks_like_a_comment_hides_nothing(self):
        self.plant("src/pages/Page.cpp", 'auto a = "/*"; auto b = \'"\'; int c = 1\'000;\n#ifdef _WIN32 // */\n#endif\n')
        self.assert_complaint("src/pages/Page.cpp:2")
