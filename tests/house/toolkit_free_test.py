from planted_tree import PlantedTree

PROJECT = """cmake_minimum_required(VERSION 3.25)
project(planted LANGUAGES CXX)
add_library(qlx_platform STATIC src/platform/text.cpp)
add_library(qlx_core STATIC)
target_sources(qlx_core PRIVATE src/pages/MSRSettings.cpp)
if(NOT QLX_CORE_ONLY)
  add_library(qlx_ui STATIC src/pages/MSRDialog.cpp)
endif()
"""


class ToolkitFree(PlantedTree):
    check = "toolkit-free"

    def setUp(self):
        super().setUp()
        self.plant("CMakeLists.txt", PROJECT)
        self.plant("src/platform/text.cpp", "#include <gdk-pixbuf/gdk-pixbuf.h>\n")
        self.plant("src/pages/MSRSettings.cpp", '#include "pages/MSRSettings.h"\n')
        self.plant("src/pages/MSRSettings.h", "#include <string>\n")
        self.plant("src/pages/MSRDialog.cpp", '#include <wx/dialog.h>\n#include "pages/MSRSettings.h"\n')

    def test_a_view_may_include_the_toolkit_beside_a_model_that_does_not(self):
        self.assert_clean()

    def test_a_model_that_includes_the_toolkit_is_found(self):
        for header in ("wx/string.h", "gtk/gtk.h", "gdk/gdk.h", "atk/atk.h"):
            with self.subTest(header):
                self.plant("src/pages/MSRSettings.cpp", f"#include <{header}>\n")
                self.assert_complaint(f"src/pages/MSRSettings.cpp:1: {header}")

    def test_a_header_on_the_way_is_found(self):
        self.plant("src/pages/MSRSettings.h", '#include "controls/helper.h"\n')
        self.plant("src/controls/helper.h", "#pragma once\n#include <wx/window.h>\n")
        self.assert_complaint("src/controls/helper.h:2: wx/window.h")

    def test_a_tree_that_does_not_configure_is_no_clean_tree(self):
        self.plant("CMakeLists.txt", "nonsense(")
        self.assert_complaint("does not configure")
