"""The window at 200 % text size."""

import unittest

from printer_test import CODE_PAGE, INTERFACE
from usb_test import DEVICE_1, DEVICE_2, DRAWER_1, DRAWER_WINDOW, PORT, TEXTS_1, UsbPage
from window_case import WindowCase, complete_file

LARGE = {"GDK_DPI_SCALE": "2"}
FIELDS = {
    "Logging": ([1025, 1023, 1022], 1020),
    "MSR": ([1008, 1009, 1010, 1011, 1014, 1015], 1003),
    "iButton": ([1040, 1041, 1042, 1046, 1047], 1048),
    "Printer": ([CODE_PAGE, INTERFACE], 1087),
}


def height(tool, number):
    return tool.bounds(number)[3]


class Pages(WindowCase):
    def test_every_field_is_as_high_as_a_label(self):
        tool = self.open(complete_file(), LARGE)
        for tab, (fields, label) in FIELDS.items():
            tool.tab(tab)
            for number in fields:
                with self.subTest(tab=tab, field=number):
                    self.assertGreaterEqual(height(tool, number), height(tool, label))

    def test_the_window_fits_on_the_screen(self):
        tool = self.open(complete_file(), LARGE)
        _, _, width, window_height = tool.window_bounds("Quillon Configuration Tool")
        self.assertLessEqual(width, 1280)
        self.assertLessEqual(window_height, 1024)
        self.assertIsNotNone(tool.find(1031))


class Devices(UsbPage):
    def test_the_lists_are_as_high_as_their_text_and_the_window_fits_on_the_screen(self):
        tool = self.open_page(environment=LARGE)
        self.configure(tool, DRAWER_1)
        for number in (PORT, DEVICE_1, DEVICE_2, *TEXTS_1):
            self.assertGreaterEqual(height(tool, number), 1.4 * height(tool, 1088), number)
        self.assertLessEqual(tool.window_bounds(DRAWER_WINDOW)[2], 1280)


if __name__ == "__main__":
    unittest.main()
