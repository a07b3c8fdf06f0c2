"""Every window as a screen reader and the Tab key find it: what can be reached has a name, once each, in order."""

import unittest

import pyatspi

from devices import Ports
from ports_test import CANCEL, CONFIGURE, DEMO, LIST, ports_file
from services import Services
from tool import Tool, shown, states
from waiting import wait_for
from window_case import RESTART_QUESTION, WindowCase

ABOUT, APPLY_ALL, TABS = 16, 1031, 1000
FRAME = [ABOUT, APPLY_ALL, TABS]  # around every page
PAGES = {
    "COM Ports": [LIST, CONFIGURE, DEMO, 1030, 1027],
    "Logging": [1025, 1023, 1022, 1019, 1020, 1021, 1032, 1035, 1036, 1037, 1039, 1028, 1026],
    "MSR": [1002, 1003, 1004, 1005, 1006, 1007, 1008, 1009, 1010, 1011, 1012, 1014, 1013, 1015, 1016, 1017, 1018, 1029, 1024],
    "iButton": [1044, 1045, 1043, 1040, 1048, 1041, 1049, 1042, 1050, 1046, 1047, 1033, 1034],
    "Printer": [1074, 1075, 1095, 1072, 1096, 1073],
}
# The controls whose labels are terms of the trade; what they mean is their tool tip and their description.
TERMS = {
    "Logging": {1022: "Where the logging service listens on this machine.",
                1019: "How much is logged: each level includes the ones before it."},
    "MSR": {1002: "Sends a carriage return (CR) behind every track.",
            1007: "Leaves out a track that could not be read.",
            1018: "Sends a carriage return (CR) behind this track only."},
    "iButton": {1044: "Where the part of the key's identifier that is sent begins.",
                1048: "Paste converted ASCII characters from the HEX text box to the Prefix text box",
                1042: "Bytes that are sent when the key is taken away."},
    "Printer": {1074: "Which characters the printer has.",
                1075: "Which printer's commands the applications send.",
                1096: "The printer tells of a change by itself, without being asked."},
}
DRAWERS = [1051, 1061, 1052, 1053, 1054, 1062, 1055, 1057, 1059, 1, CANCEL]
PORT_ONLY = [1051, 1, CANCEL]
CHOICES = {
    0: ("MSR Configuration", PORT_ONLY),
    1: ("Line Display Configuration", PORT_ONLY),
    2: ("iButton Configuration", PORT_ONLY),
    3: ("Cash Drawer (USB) Configuration", DRAWERS),
    5: ("Cash Drawer (PCI) Configuration", PORT_ONLY),
    6: ("Printer Configuration", PORT_ONLY),
}
DEMOS = {
    0: ("MSR Demo", [1065, 1070, 1066, 1]),
    1: ("Line Display Demo", [1067, 1065, 1066, 1]),
    2: ("iButton Demo", [1065, 1070, 1066, 1]),
    3: ("Cash Drawer Demo", [1067, 1069, 1065, 1066, 1]),
    5: ("Cash Drawer Demo", [1067, 1069, 1065, 1066, 1]),
}

ROLES = {"check box", "combo box", "label", "page tab list", "push button", "table", "text"}
NAMED = ROLES - {"label"} | {"page tab", "progress bar", "table column header"}
# Parts of a list, which the arrow keys reach, and the frames around others.
PARTS = {"panel", "scroll pane", "table cell", "table column header"}


def focusable(control):
    state = states(control)
    return {pyatspi.STATE_FOCUSABLE, pyatspi.STATE_SENSITIVE} <= set(state) and control.getRoleName() not in PARTS


def key_of(control):
    """The control's number; of a box's button its text."""
    number = control.get_accessible_id()
    return int(number) if number else control.name


class Walk(WindowCase):
    def complaints(self, controls):
        """What a screen reader could not say of the controls, or not tell apart."""
        said = set()
        for control in controls:
            role, name = control.getRoleName(), control.name.strip()
            if role in NAMED and not name:
                yield f"{role} {control.get_accessible_id()} has no name"
            if role == "table":
                yield from self.complaints_of_cells(control.queryTable())
            if not focusable(control):
                continue
            if role not in ROLES:
                yield f"{name!r} is a {role}"
            if (name, control.description) in said:
                yield f"{role} {name!r} is there twice"
            said.add((name, control.description))

    @staticmethod
    def complaints_of_cells(table):
        if not table.nRows or not table.nColumns:
            yield "the table tells nothing of its cells"
        for row in range(table.nRows):
            if not table.getAccessibleAt(row, 0).name:
                yield f"row {row} does not say what it is"

    def focused(self, ring):
        """The place of the focus in the ring, or None."""
        return next((key for key, control in ring.items() if pyatspi.STATE_FOCUSED in states(control)), None)

    def walk(self, tool, ring, titles, direction):
        """Where the focus is after each press of the key, until it is where it was. On its way back GTK stops at the
        title of a list's first column, which does no harm."""
        places = [wait_for(lambda: self.focused(ring), "the focus to be on a control")]
        if len(ring) == 1:
            return places
        while len(places) <= len(ring):
            tool.key(direction)
            place = wait_for(lambda: self.left(ring | titles, places[-1]), f"the focus to leave {places[-1]}")
            if place in titles:
                tool.key(direction)
                place = wait_for(lambda place=place: self.left(ring | titles, place), f"the focus to leave {place!r}")
            places.append(place)
            if place == places[0]:
                return places[:-1]
        self.fail(f"the focus does not come back to {places[0]}: {places}")

    def left(self, ring, last):
        """Where the focus is once it is no longer where it was."""
        place = self.focused(ring)
        return place if place != last else None

    def judge(self, tool, window, order):
        """Both ways round a window that has the focus, whose controls are to follow each other in this order."""
        controls = wait_for(lambda: list(shown(window)), "the window's controls")
        self.assertEqual(list(self.complaints(controls)), [])
        ring = {key_of(control): control for control in controls if focusable(control)}
        self.assertEqual(set(ring), set(order), "what can have the focus")
        titles = {key_of(control): control for control in controls if control.getRoleName() == "table column header"}
        forward = self.walk(tool, ring, titles, "Tab")
        start = order.index(forward[0])
        self.assertEqual(forward, order[start:] + order[:start])
        back = self.walk(tool, ring, titles, "shift+Tab")
        self.assertEqual(back, [forward[0], *forward[:0:-1]])

    def judge_box(self, tool, buttons, text):
        """The text of a box can be reached too, to be copied."""
        self.assertEqual(tool.box_text(), text)
        self.judge(tool, tool.box(), [text, *buttons])
        tool.answer(buttons[0])


class Pages(Walk):
    def test_every_page_is_walked_through_in_its_order(self):
        self.ports = Ports("COM3", "COM6")
        self.addCleanup(self.ports.close)
        file = ports_file("<MSR_USB>COM3</MSR_USB><CD_USB>COM6</CD_USB><LD_USB>COM12</LD_USB>").replace(
            "<MSR_Configuration>", "<MSR_Configuration><Head_Wrapper>a</Head_Wrapper><Tail_Wrapper>b</Tail_Wrapper>")
        tool = self.open(file, {**Tool.ALONE, **self.ports.environment})
        window = tool.main_window()
        tool.select(LIST, 0)
        wait_for(lambda: tool.enabled(DEMO), "the row's buttons")
        for page, order in PAGES.items():
            tool.tab(page)
            tool.focus(TABS)
            self.judge(tool, window, order + FRAME)

    def test_a_screen_reader_tells_what_a_term_means(self):
        tool = self.open(ports_file(""))
        for page, terms in TERMS.items():
            tool.tab(page)
            for number, meaning in terms.items():
                with self.subTest(page, number=number):
                    self.assertEqual(tool.description(number), meaning)

    def test_a_cell_of_the_list_is_read_as_it_is_shown(self):
        self.ports = Ports("COM3")
        self.addCleanup(self.ports.close)
        tool = self.open(ports_file('<MSR_USB>COM3</MSR_USB><LD_USB>COM12</LD_USB><CD_USB VID="0x1209"/>'),
                         {**Tool.ALONE, **self.ports.environment})
        self.assertEqual(tool.rows(LIST)[0][:2], ["MSR", "COM3"])
        self.assertEqual(tool.rows(LIST)[3][:3], ["Cash Drawer 1 (USB)", "", "0x1209"])
        self.assertEqual(tool.name(LIST), "Devices")
        self.assertIn("Line Display: COM12 was not present", tool.description(LIST))


class Dialogs(Walk):
    def setUp(self):
        super().setUp()
        self.ports = Ports("COM3", "COM4", "COM5", "COM6", "COM7")
        self.addCleanup(self.ports.close)

    def open_all(self):
        elements = "".join(f"<{name}>{port}</{name}>" for name, port in (
            ("MSR_USB", "COM3"), ("LD_USB", "COM4"), ("IB_USB", "COM5"), ("CD_USB", "COM6"), ("CD_PCI", "COM7")))
        return self.open(ports_file(elements), {**Tool.ALONE, **self.ports.environment})

    def judge_each(self, windows, button):
        tool = self.open_all()
        for row, (title, order) in windows.items():
            tool.select(LIST, row)
            tool.click(button)
            self.judge(tool, tool.active_window(title), order)
            tool.key("Escape")
            tool.await_no_other_window()
            tool.main_window()

    def test_every_choice_of_devices(self):
        self.judge_each(CHOICES, CONFIGURE)

    def test_every_demo(self):
        self.judge_each(DEMOS, DEMO)

    def test_the_about_box_and_the_message_boxes(self):
        self.start_window_manager()  # which gives a box the keys, as on a user's screen
        tool = self.open_all()
        tool.click(ABOUT)
        self.judge(tool, tool.active_window("About Configuration Tool"), [1])
        tool.key("Escape")
        tool.await_no_other_window()
        tool.click(APPLY_ALL)
        self.judge_box(tool, ["OK"], "All settings saved.")
        tool.close()
        self.judge_box(tool, ["No", "Yes"], RESTART_QUESTION)
        self.assertEqual(tool.wait(), 0)


class Progress(Walk):
    def test_the_restart_says_what_goes_on(self):
        services = Services(self.installation, slow_to_stop="QLXSVC")
        self.addCleanup(services.close)
        tool = self.open(environment=services.environment)
        tool.close()
        tool.answer("Yes", RESTART_QUESTION)
        window = tool.window("Restarting services...")
        self.assertEqual(list(self.complaints(shown(window))), [])
        self.assertIn("progress bar", [control.getRoleName() for control in shown(window)])
        services.let_go()
        tool.answer("OK", "Quillon services restarted.\n")
        self.assertEqual(tool.wait(), 0)


if __name__ == "__main__":
    unittest.main()
