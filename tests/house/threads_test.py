from planted_tree import PlantedTree


class Threads(PlantedTree):
    check = "threads"

    def test_the_headers_of_what_waits_for_an_atomic_are_found(self):
        for header in ("semaphore", "latch", "barrier"):
            with self.subTest(header):
                self.plant("tests/support/Gate.h", f"#pragma once\n#include <{header}>\n")
                self.assert_complaint("tests/support/Gate.h:2", f"<{header}>")

    def test_what_rests_on_it_is_found(self):
        for name in ("std::condition_variable_any", "std::stop_callback", "atomic_notify_all"):
            with self.subTest(name):
                self.plant("src/ports/Watch.cpp", f"\n\nvoid f() {{ {name} waiting; }}\n")
                self.assert_complaint("src/ports/Watch.cpp:3", name)

    def test_a_thread_that_is_let_go_at_once_is_found(self):
        self.plant("src/ports/Watch.cpp", "void f() {\n  std::thread([] {\n    g();\n  }).detach();\n}\n")
        self.assert_complaint("src/ports/Watch.cpp:4", "never begin")

    def test_a_thread_that_lets_itself_go_is_none(self):
        self.plant("src/ports/Watch.cpp", "void f() {\n  g();\n  asker.detach();\n}\n")
        self.assert_clean()

    def test_a_condition_variable_a_header_of_the_house_and_a_comment_are_none(self):
        self.plant(
            "src/ports/Watch.cpp",
            '#include <condition_variable>\n#include "latch"\n// std::stop_callback\nstd::condition_variable end;\n',
        )
        self.assert_clean()
