"""The iButton page of the running program: its hex fields by keyboard and mouse, the converter, what Apply stores."""

import unittest

from pages_test import TabOrder
from waiting import wait_for
from window_case import WindowCase, complete_file

PREFIX, SUFFIX, ON_REMOVE = 1040, 1041, 1042
DELIMITER, START, LENGTH = 1043, 1044, 1045
ASCII, HEX = 1046, 1047
COPIES = {1048: PREFIX, 1049: SUFFIX, 1050: ON_REMOVE}
DEFAULT, APPLY = 1033, 1034
ZEROS = " ".join(["00"] * 16)


class IButtonPage(WindowCase, TabOrder):
    def open_page(self, **keys):
        tool = self.open(complete_file(IB_Configuration=keys))
        tool.tab("iButton")
        return tool

    def assert_field(self, tool, number, text, caret=None):
        wait_for(lambda: tool.text(number) == text, f"{text!r} in {number}, not {tool.text(number)!r}")
        if caret is not None:
            wait_for(lambda: tool.caret(number) == caret, f"the caret at {caret}, not {tool.caret(number)}")


class Editing(IButtonPage):
    def test_typed_digits_are_paired_and_everything_else_is_swallowed(self):
        tool = self.open_page()
        tool.focus(PREFIX)
        tool.type("0D0a")
        self.assert_field(tool, PREFIX, "0D 0A", 5)
        tool.type("gG -!z")
        tool.type("1f")
        self.assert_field(tool, PREFIX, "0D 0A 1F", 8)

    def test_digits_typed_in_the_middle_move_the_rest(self):
        tool = self.open_page(Prefix="0D0A")
        tool.focus(PREFIX)
        tool.key("Home")
        tool.key("Right")
        tool.type("1")
        self.assert_field(tool, PREFIX, "01 D0 A", 2)

    def test_a_field_is_full_at_sixteen_bytes(self):
        tool = self.open_page()
        tool.enter(PREFIX, "0123456789abcdef0123456789abcdef77")
        self.assert_field(tool, PREFIX, "01 23 45 67 89 AB CD EF 01 23 45 67 89 AB CD EF", 47)

    def test_delete_and_backspace_regroup_the_rest_and_keep_their_place(self):
        tool = self.open_page(Prefix="0D0A1F")
        tool.focus(PREFIX)
        tool.key("Home")
        tool.key("Right")
        tool.key("Delete")
        self.assert_field(tool, PREFIX, "00 A1 F", 1)
        tool.key("BackSpace")
        self.assert_field(tool, PREFIX, "0A 1F", 0)
        tool.key("End")
        tool.key("BackSpace")
        tool.key("BackSpace")
        self.assert_field(tool, PREFIX, "0A", 2)

    def test_backspace_behind_a_blank_steps_over_it(self):
        tool = self.open_page(Prefix="0D0A")
        tool.focus(PREFIX)
        tool.key("Home")
        for _ in range(3):
            tool.key("Right")
        tool.key("BackSpace")
        self.assert_field(tool, PREFIX, "0D 0A", 2)

    def test_a_letter_that_is_no_digit_leaves_the_selection(self):
        tool = self.open_page(Prefix="0D0A")
        tool.focus(PREFIX)
        tool.key("ctrl+a")
        tool.type("x")
        tool.key("ctrl+c")
        tool.click(SUFFIX)
        tool.key("ctrl+v")
        self.assert_field(tool, SUFFIX, "0D 0A")
        self.assert_field(tool, PREFIX, "0D 0A")

    def test_cut_and_paste_between_fields(self):
        tool = self.open_page(Prefix="0D0A")
        tool.focus(PREFIX)
        tool.key("ctrl+a")
        tool.key("ctrl+x")
        self.assert_field(tool, PREFIX, "")
        tool.focus(SUFFIX)
        tool.type("1")
        tool.key("ctrl+v")
        self.assert_field(tool, SUFFIX, "10 D0 A", 7)

    def test_text_is_filtered_when_it_is_pasted(self):
        tool = self.open_page()
        tool.enter(ASCII, "0D-0a ZZ 41")
        tool.key("ctrl+a")
        tool.key("ctrl+c")
        tool.click(PREFIX)
        tool.key("ctrl+v")
        self.assert_field(tool, PREFIX, "0D 0A 41", 8)

    def test_undo_and_deleting_a_word_leave_the_text_laid_out(self):
        tool = self.open_page(Prefix="0D0A1F")
        tool.focus(PREFIX)
        tool.key("End")
        tool.key("ctrl+z")
        self.assert_field(tool, PREFIX, "0D 0A 1F")
        tool.key("ctrl+BackSpace")
        self.assert_field(tool, PREFIX, "0D 0A")

    def test_a_screen_reader_can_set_a_field(self):
        tool = self.open_page(Prefix="41")
        tool.set_text(PREFIX, "0d-0a")
        self.assert_field(tool, PREFIX, "0D 0A")


class Page(IButtonPage):
    def test_new_file_shows_the_defaults(self):
        tool = self.open()
        tool.tab("iButton")
        self.assertEqual([tool.chosen(n) for n in (START, LENGTH, DELIMITER)], ["1", "16", "CR+ LF"])
        self.assertEqual([tool.text(n) for n in (PREFIX, SUFFIX, ON_REMOVE)], ["", "", ZEROS])

    def test_the_lists_hold_their_items(self):
        tool = self.open_page()
        numbers = [str(number) for number in range(1, 17)]
        self.assertEqual(tool.items(START), numbers)
        self.assertEqual(tool.items(LENGTH), numbers)
        self.assertEqual(tool.items(DELIMITER), ["None", "CR", "LF", "CR+ LF", "TAB"])

    def test_the_file_is_shown(self):
        tool = self.open_page(ID_Start="3", ID_Length="17", Delimiter="4", Prefix="2", Suffix="0D0A", OnRemove="ff")
        self.assertEqual([tool.chosen(n) for n in (START, LENGTH, DELIMITER)], ["3", None, "TAB"])
        self.assertEqual([tool.text(n) for n in (PREFIX, SUFFIX, ON_REMOVE)], ["", "0D 0A", ""])

    def test_apply_saves_what_is_shown_and_says_so(self):
        tool = self.open_page()
        tool.pick(START, "2")
        tool.pick(DELIMITER, "None")
        tool.enter(PREFIX, "0d0a")
        tool.click(APPLY)
        tool.answer("OK", "iButton settings saved.")
        self.assertEqual(
            self.installation.section("IB_Configuration"),
            {"ID_Start": "2", "ID_Length": "16", "Prefix": "0D0A", "Suffix": "", "Delimiter": "0", "OnRemove": "0" * 32})

    def test_no_selection_is_stored_as_zero(self):
        tool = self.open_page(ID_Start="0")
        tool.click(APPLY)
        tool.answer("OK", "iButton settings saved.")
        self.assertEqual(self.installation.section("IB_Configuration")["ID_Start"], "0")

    def test_an_odd_field_is_refused_by_name_and_nothing_is_stored(self):
        for number, name in ((PREFIX, "Prefix"), (SUFFIX, "Suffix"), (ON_REMOVE, "On Remove")):
            with self.subTest(name):
                tool = self.open_page(Suffix="0D0A")
                before = self.installation.bytes()
                tool.enter(number, "4")
                tool.click(APPLY)
                tool.answer("OK", f'"{name}" needs to be a valid hex string.\niButton settings NOT saved.')
                wait_for(lambda number=number: tool.focused(number), "the focus on the field to mend")
                self.assertEqual(self.installation.bytes(), before)
                tool.kill()

    def test_apply_all_stores_an_odd_field(self):
        tool = self.open_page()
        tool.enter(PREFIX, "4")
        tool.click(1031)
        tool.answer("OK", "All settings saved.")
        self.assertEqual(self.installation.section("IB_Configuration")["Prefix"], "4")

    def test_the_converter_follows_the_text_and_each_button_copies_it(self):
        tool = self.open_page()
        tool.enter(ASCII, "Hi!")
        self.assert_field(tool, HEX, "48 69 21")
        for button, field in COPIES.items():
            tool.click(button)
            self.assert_field(tool, field, "48 69 21")
        tool.focus(ASCII)
        tool.key("End")
        tool.key("BackSpace")
        self.assert_field(tool, HEX, "48 69")

    def test_the_converter_takes_sixteen_characters(self):
        tool = self.open_page()
        tool.enter(ASCII, "0123456789ABCDEFGH")
        self.assert_field(tool, ASCII, "0123456789ABCDEF")

    def test_a_code_of_many_digits_is_copied_as_it_stands_and_refused(self):
        tool = self.open_page()
        tool.set_text(ASCII, "A\u20ac\t")
        self.assert_field(tool, HEX, "41 20AC 9")
        tool.focus(1048)
        tool.key("space")
        self.assert_field(tool, PREFIX, "41 20AC 9")
        tool.click(APPLY)
        tool.answer("OK", '"Prefix" needs to be a valid hex string.\niButton settings NOT saved.')

    def test_the_result_cannot_be_edited(self):
        tool = self.open_page()
        tool.enter(ASCII, "A")
        self.assert_field(tool, HEX, "41")
        tool.focus(HEX)
        tool.type("9")
        tool.key("BackSpace")
        tool.focus(ASCII)
        self.assert_field(tool, HEX, "41")

    def test_default_refills_the_settings_and_leaves_converter_and_file(self):
        tool = self.open_page(Prefix="41", ID_Start="0")
        before = self.installation.bytes()
        tool.enter(ASCII, "A")
        tool.click(DEFAULT)
        self.assert_field(tool, PREFIX, "")
        self.assertEqual([tool.chosen(n) for n in (START, LENGTH, DELIMITER)], ["1", "16", "CR+ LF"])
        self.assertEqual((tool.text(ON_REMOVE), tool.text(ASCII), tool.text(HEX)), (ZEROS, "A", "41"))
        self.assertEqual(self.installation.bytes(), before)

    def test_tab_order(self):
        tool = self.open_page()
        self.assert_tab_order(tool, [PREFIX, 1048, SUFFIX, 1049, ON_REMOVE, 1050, ASCII, HEX, DEFAULT, APPLY])

    def test_the_lists_come_before_the_fields(self):
        tool = self.open_page(ID_Start="5", ID_Length="5", Delimiter="2")
        tool.focus(PREFIX)
        for number in (DELIMITER, LENGTH, START):
            tool.key("shift+Tab")
            last = tool.chosen(number)
            tool.key("Up")
            wait_for(lambda number=number, last=last: tool.chosen(number) != last, f"list {number} to be reached")

    def test_the_buttons_tell_a_screen_reader_what_they_do(self):
        tool = self.open_page()
        for button, name in ((1048, "Prefix"), (1049, "Suffix"), (1050, "On Remove")):
            self.assertEqual(
                tool.description(button),
                f"Paste converted ASCII characters from the HEX text box to the {name} text box")

    def test_every_control_has_a_name(self):
        tool = self.open_page()
        for number in (*range(1040, 1051), DEFAULT, APPLY):
            self.assertTrue(tool.name(number), number)


if __name__ == "__main__":
    unittest.main()
