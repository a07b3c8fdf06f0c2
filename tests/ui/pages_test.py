"""The Logging and MSR pages of the running program."""

import unittest

from waiting import wait_for
from window_case import WindowCase, complete_file

LOGGING_TAB_ORDER = [1025, 1023, 1022, 1019, 1020, 1021, 1032, 1035, 1036, 1037, 1039, 1028, 1026]
MODULES = [1020, 1021, 1032, 1035, 1036, 1037, 1039]
# 1001 is always grey, the wrapper texts and the boxes they depend on are checked separately.
MSR_TAB_ORDER = [1002, 1003, 1004, 1005, 1006, 1007, 1008, 1009, 1010, 1011, 1012, 1013]
MSR_TAB_ORDER += [1016, 1017, 1018, 1029, 1024]


class TabOrder:
    """Mixed into a WindowCase: walks a page by the Tab key."""

    def assert_tab_order(self, tool, numbers):
        tool.focus(numbers[0])
        for number in numbers[1:]:
            tool.key("Tab")
            wait_for(lambda number=number: tool.focused(number), f"Tab to reach {number}")


class LoggingPage(WindowCase, TabOrder):
    def test_new_file_shows_the_defaults(self):
        tool = self.open()
        tool.tab("Logging")
        self.assertEqual(tool.text(1025), "C:\\Program Files\\Harlune\\QLX\\LOG\\qlx.log")
        self.assertEqual(tool.text(1023), "10240")
        self.assertEqual(tool.text(1022), "38674")
        self.assertEqual(tool.chosen(1019), "Off")
        self.assertTrue(all(tool.checked(module) for module in MODULES))

    def test_the_file_is_shown(self):
        tool = self.open(
            complete_file(
                Logging_Configuration={
                    "File_Name": " /var/log/\u00e4\u4e2d.log ",
                    "File_Size": "7",
                    "Log_Level": "05",
                    "TCP_Port": "4000",
                    "Module_MSR": "TRUE",
                    "Module_LD": "false",
                }
            )
        )
        tool.tab("Logging")
        self.assertEqual(tool.text(1025), " /var/log/\u00e4\u4e2d.log ")
        self.assertEqual((tool.text(1023), tool.text(1022), tool.chosen(1019)), ("7", "4000", "Trace"))
        self.assertTrue(tool.checked(1021))
        self.assertFalse(tool.checked(1032))

    def test_apply_saves_what_is_shown_and_says_so(self):
        tool = self.open(complete_file())
        tool.tab("Logging")
        tool.fill(1025, "/tmp/a <b> & c.log")
        tool.fill(1022, "4711")
        tool.choose(1019, "Warning", before=1022)
        tool.check(1037, False)
        tool.click(1026)
        tool.answer("OK", "Log settings saved.")
        saved = self.installation.section("Logging_Configuration")
        self.assertEqual(list(saved)[:4], ["File_Name", "File_Size", "Log_Level", "TCP_Port"])
        self.assertEqual(saved["File_Name"], "/tmp/a <b> & c.log")
        self.assertEqual((saved["TCP_Port"], saved["Log_Level"]), ("4711", "2"))
        self.assertEqual((saved["Module_CD_PCI"], saved["Module_CD"]), ("", "true"))

    def test_limits_bind_typing(self):
        tool = self.open(complete_file())
        tool.tab("Logging")
        tool.enter(1022, "12a34567")
        tool.enter(1023, "-1234567")
        wait_for(lambda: tool.text(1023) == "123456", "the size to hold six digits")
        self.assertEqual(tool.text(1022), "12345")

    def test_default_refills_the_controls_and_leaves_the_file(self):
        tool = self.open(complete_file(Logging_Configuration={"TCP_Port": "4000"}))
        before = self.installation.bytes()
        tool.tab("Logging")
        tool.click(1028)
        wait_for(lambda: tool.text(1022) == "38674", "the default port")
        tool.tab("MSR")
        tool.tab("Logging")
        self.assertEqual(self.installation.bytes(), before)

    def test_tab_order(self):
        tool = self.open(complete_file())
        tool.tab("Logging")
        tool.focus(1022)
        tool.choose(1019, "Error", before=1022)
        tool.key("Tab")
        wait_for(lambda: tool.focused(1020), "Tab to reach 1020")
        self.assert_tab_order(tool, [1025, 1023, 1022])
        self.assert_tab_order(tool, [1020, 1021, 1032, 1035, 1036, 1037, 1039, 1028, 1026])

    def test_every_control_has_a_name(self):
        tool = self.open(complete_file())
        tool.tab("Logging")
        for number in LOGGING_TAB_ORDER:
            self.assertTrue(tool.name(number), number)


class MsrPage(WindowCase, TabOrder):
    def open_msr(self, **keys):
        tool = self.open(complete_file(MSR_Configuration=keys))
        tool.tab("MSR")
        return tool

    def test_new_file_shows_the_defaults(self):
        tool = self.open()
        tool.tab("MSR")
        self.assertEqual([tool.text(number) for number in (1008, 1009, 1010, 1011)], ["%", ";", "+", "?"])
        self.assertEqual([n for n in range(1001, 1019) if n not in range(1008, 1012) and n not in (1014, 1015)
                          and tool.checked(n)], [1003, 1004, 1005])
        self.assertFalse(tool.enabled(1014) or tool.enabled(1015) or tool.enabled(1001))

    def test_wrapper_budget_by_keyboard(self):
        tool = self.open_msr()
        tool.check(1012, True)
        tool.check(1013, True)
        tool.enter(1014, "12345")
        wait_for(lambda: tool.text(1014) == "12345", "the head")
        tool.enter(1015, "abcdefghijkl")
        wait_for(lambda: tool.text(1015) == "abcdefghi", "the tail to stop at nine characters")
        tool.enter(1014, "123456789")
        wait_for(lambda: tool.text(1014) == "12345", "the head to stop at five characters")

    def test_a_full_head_locks_the_tail_out(self):
        tool = self.open_msr(Head_Wrapper="12345", Tail_Wrapper="")
        tool.check(1013, True)
        tool.focus(1014)
        tool.key("End")
        tool.type("6789ABCDEF")
        wait_for(lambda: tool.text(1014) == "123456789ABCDE", "a full head")
        wait_for(lambda: not tool.checked(1013) and not tool.enabled(1015), "the tail to be locked")
        tool.click(1013)
        self.assertFalse(tool.checked(1013))
        self.assertFalse(tool.enabled(1015))

    def test_a_text_longer_than_its_share_stays_when_it_is_loaded(self):
        tool = self.open_msr(Head_Wrapper="1234567890", Tail_Wrapper="abcdefghij")
        self.assertEqual((tool.text(1014), tool.text(1015)), ("1234567890", "abcdefghij"))
        tool.click(1024)
        tool.answer("OK", "MSR settings saved.")
        saved = self.installation.section("MSR_Configuration")
        self.assertEqual((saved["Head_Wrapper"], saved["Tail_Wrapper"]), ("1234567890", "abcdefghij"))

    def test_a_full_head_with_a_tail_from_the_file_stays_as_loaded_through_apply(self):
        tool = self.open_msr(Head_Wrapper="12345678901234", Tail_Wrapper="tail")
        tool.click(1024)
        tool.answer("OK", "MSR settings saved.")
        self.assertTrue(tool.checked(1013) and tool.enabled(1015))
        self.assertEqual(self.installation.section("MSR_Configuration")["Tail_Wrapper"], "tail")

    def test_unchecking_the_tail_empties_it_in_the_file(self):
        tool = self.open_msr(Tail_Wrapper="tail")
        tool.check(1013, False)
        self.assertEqual(tool.text(1015), "")
        tool.click(1024)
        tool.answer("OK")
        self.assertEqual(self.installation.section("MSR_Configuration")["Tail_Wrapper"], "")

    def test_a_carriage_return_for_all_tracks_excludes_those_of_single_tracks(self):
        tool = self.open_msr(CR_Enabled="true", Track2_CR_Enabled="true")
        self.assertTrue(tool.checked(1002))
        self.assertFalse(tool.checked(1017) or tool.enabled(1017))
        tool.check(1002, False)
        self.assertTrue(tool.enabled(1017))

    def test_an_emptied_sentinel_is_stored_empty(self):
        tool = self.open_msr()
        tool.enter(1009, "")
        tool.enter(1010, "xy")
        tool.click(1024)
        tool.answer("OK")
        saved = self.installation.section("MSR_Configuration")
        self.assertEqual((saved["Track2_Start_Sentinel"], saved["Track3_Start_Sentinel"]), ("", "x"))

    def test_default_button(self):
        tool = self.open_msr(Head_Wrapper="head", Track1_Start_Sentinel="#", Strip_Sentinels="true")
        tool.click(1029)
        wait_for(lambda: tool.text(1008) == "%", "the default sentinel")
        self.assertEqual(tool.text(1014), "")
        self.assertFalse(tool.checked(1012) or tool.checked(1006) or tool.enabled(1014))

    def test_tab_order(self):
        tool = self.open_msr()
        self.assert_tab_order(tool, MSR_TAB_ORDER)

    def test_tab_order_visits_the_wrapper_texts_that_are_on(self):
        tool = self.open_msr(Head_Wrapper="h", Tail_Wrapper="t")
        self.assert_tab_order(tool, [1011, 1012, 1014, 1013, 1015, 1016])


if __name__ == "__main__":
    unittest.main()
