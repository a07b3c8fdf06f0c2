"""The program in other languages: what it shows is translated and never cut off; what it stores, logs and sends is not."""

import os
import re
import shutil
import subprocess
import tempfile
import unittest

import gi

gi.require_version("Gtk", "3.0")
from gi.repository import GLib, Gtk  # noqa: E402  the version is chosen above
import polib  # noqa: E402
import pyatspi  # noqa: E402

from devices import TREE, Ports  # noqa: E402
from ports_test import CONFIGURE, DEMO, LIST, ports_file  # noqa: E402
from simulator import Simulator  # noqa: E402
from tool import Tool, descendants, showing  # noqa: E402
from waiting import Timeout, wait_for  # noqa: E402
from window_case import WindowCase, complete_file  # noqa: E402

PAGES = ["COM Ports", "Logging", "MSR", "iButton", "Printer"]
ABOUT, OUTPUT, SEND = 0x10, 1065, 1067
PSEUDO = "en_XA"
NO_BUS = {"DBUS_SYSTEM_BUS_ADDRESS": "unix:path=/nonexistent"}


class Languages(WindowCase):
    """The program with the catalogues of the build, and with the pseudo one."""

    def setUp(self):
        super().setUp()
        self.folder = os.path.join(self.installation.directory, "locale")
        shutil.copytree(os.path.join(os.path.dirname(os.environ["QLX_PROGRAM"]), "locale"), self.folder)
        subprocess.run([os.path.join(TREE, "scripts", "translations"), "pseudo", self.folder], check=True)
        self.ports = Ports("COM3", "COM4", "COM6")
        self.addCleanup(self.ports.close)

    def open_in(self, language, file=None, environment=None):
        """The program in a language, with its window ready."""
        self.texts = {}
        catalogue = os.path.join(self.folder, language, "LC_MESSAGES", "qlxconfig.mo")
        if os.path.exists(catalogue):
            self.texts = {entry.msgid: entry.msgstr for entry in polib.mofile(catalogue)}
        self.installation.write(file or complete_file())
        tool = Tool(self.installation, {**NO_BUS, **self.ports.environment, "LANGUAGE": language, **(environment or {})})
        self.addCleanup(tool.kill)
        tool.active_window(self.says("Quillon Configuration Tool"))
        return tool

    def says(self, text):
        return self.texts.get(text, text)

    def page(self, tool, name):
        selection = tool.control(1000).querySelection()
        index = PAGES.index(name)

        def chosen():
            if not selection.isChildSelected(index):
                selection.selectChild(index)
            return selection.isChildSelected(index)

        wait_for(chosen, f"page {name}")

    def close(self, tool):
        tool.active_window(self.says("Quillon Configuration Tool"))
        tool.key("Escape")

    @staticmethod
    def labels(window):
        return [c.name for c in descendants(window) if c.getRoleName() in ("label", "push button", "check box") and showing(c)]


class German(Languages):
    def test_tabs_pages_and_columns(self):
        tool = self.open_in("de")
        tabs = tool.control(1000)
        names = [tabs.getChildAtIndex(i).name for i in range(tabs.childCount)]
        self.assertEqual(names, ["COM-Ports", "Protokoll", "MSR", "iButton", "Drucker"])
        table = tool.control(LIST).queryTable()
        titles = [table.getColumnHeader(column).name for column in range(table.nColumns)]
        self.assertEqual(titles, ["Gerät", "COM-Port", "Hersteller-ID", "Produkt-ID", "Seriennummer"])
        self.page(tool, "Logging")
        shown = self.labels(tool.windows()[0])
        for text in ("Name der Protokolldatei:", "KB", "Kassenlade (USB)", "Standard", "Alle übernehmen"):
            self.assertIn(text, shown)
        self.assertEqual(tool.items(1019), ["Aus", "Fehler", "Warnung", "Info", "Ausführlich", "Ablaufverfolgung"])

    def test_boxes_and_their_buttons(self):
        tool = self.open_in("de", ports_file(""))
        self.page(tool, "MSR")
        tool.click(1024)
        tool.answer("OK", "MSR-Einstellungen gespeichert.")
        self.close(tool)
        self.assertTrue(tool.box_text().endswith("Möchten Sie die Dienste jetzt neu starten?"))
        tool.answer("Nein")
        self.assertEqual(tool.wait(), 0)

    def test_a_sentence_with_a_value(self):
        tool = self.open_in("de")
        os.remove(self.installation.file)
        os.mkdir(self.installation.file)
        self.page(tool, "Logging")
        tool.click(1026)
        self.assertIn("Fehler beim Speichern der Datei!", tool.window_titles())
        tool.answer("OK", f"Die Datei „{self.installation.file}“ kann nicht gespeichert werden.\n"
                          "Prüfen Sie den Speicherort der Datei")
        tool.answer("OK", "Protokolleinstellungen gespeichert.")

    def test_the_end_of_the_program(self):
        self.installation.write("<Other/>")
        tool = self.start({**NO_BUS, "LANGUAGE": "de"})
        tool.answer("OK", "Fehler beim Laden von QLXConfig.xml!\nDas Programm wird beendet.")
        self.assertEqual(tool.wait(), 1)

    def test_a_failed_restart(self):
        tool = self.open_in("de", ports_file("<MSR_USB>COM3</MSR_USB>"))
        tool.click(1027)
        tool.answer("OK", "Porteinstellungen gespeichert.")
        self.close(tool)
        tool.answer("Ja")
        self.assertRegex(tool.box_text(), r"^Protokolldienst starten: GetLastError = \d+$")
        tool.answer("OK")
        tool.answer("OK", "Der Quillon-Protokolldienst konnte nicht angehalten werden.\n"
                          "Starten Sie die Quillon-Dienste von Hand neu.")
        self.assertEqual(tool.wait(), 0)

    def test_a_demo_translates_its_own_lines_and_no_device_s_bytes(self):
        tool = self.open_in("de", ports_file("<LD_USB>COM4</LD_USB>"))
        tool.select(LIST, 1)
        tool.click(DEMO)
        tool.active_window("Demo der Kundenanzeige")
        tool.click(SEND)
        self.assertEqual(self.ports["COM4"].receive(27), b"\x1f\x10\x04HARLUNE TEST\n\r0123456789")
        self.ports["COM4"].send(b"Clear")
        shown = ('<COM-Port geöffnet>\n<Gesendet wird "HARLUNE TEST<LF><CR>0123456789">\n'
                 "5 Byte(s) empfangen:\nClear")
        wait_for(lambda: tool.text(OUTPUT) == shown, f"{shown!r}, not {tool.text(OUTPUT)!r}")


class Choice(Languages):
    def tab_names(self, environment):
        title = {"C": "Quillon Configuration Tool"}.get(environment.get("LC_ALL"), "Quillon-Konfigurationsprogramm")
        self.installation.write(complete_file())
        tool = self.start({**NO_BUS, **environment})
        tabs = tool.active_window(title) and tool.control(1000)
        names = [tabs.getChildAtIndex(i).name for i in range(tabs.childCount)]
        tool.kill()
        return names

    def test_without_language_the_locale_counts(self):
        german = ["COM-Ports", "Protokoll", "MSR", "iButton", "Drucker"]
        self.assertEqual(self.tab_names({"LANGUAGE": "", "LC_ALL": "", "LANG": "de_AT.UTF-8"}), german)
        self.assertEqual(self.tab_names({"LANGUAGE": "", "LC_ALL": "de_DE.UTF-8", "LANG": "C"}), german)

    def test_without_either_everything_is_english(self):
        self.assertEqual(self.tab_names({"LANGUAGE": "", "LC_ALL": "C", "LANG": "de_DE.UTF-8"}), PAGES)


class Untranslated(Languages):
    """The file, the log and the backup are the same bytes whatever the language and the locale."""

    FIELDS = [("Logging", {1023: "2048"}), ("iButton", {1040: "0d0a", 1046: "Zwölf"}), ("MSR", {1008: "#"})]

    def visit(self, language, environment=None):
        """What is on disk after a visit to every page, and what the log service has got."""
        keys = {"Log_Level": "5", "File_Name": "C:\\LOG\\qlx.log"}
        for kept in (".bak", ".unreadable"):
            if os.path.exists(self.installation.file + kept):
                os.remove(self.installation.file + kept)
        words = {"Head_Wrapper": "Clear", "Tail_Wrapper": "None"}  # which the catalogues have too
        file = complete_file(Logging_Configuration=keys, MSR_Configuration=words)
        self.installation.write(file)
        simulator = Simulator(self.installation.file)
        try:
            tool = self.open_in(language, file, {**simulator.environment, **self.ports.environment, **(environment or {})})
            self.page(tool, "Printer")
            wait_for(lambda: "OnTcnSelchangeTabMzp() Couldn't open" in simulator.log(), "the record of the closed port")
            for page, fields in self.FIELDS:
                self.page(tool, page)
                for number, text in fields.items():
                    tool.enter(number, text)
            tool.click(1031)
            tool.answer(self.says("&OK").replace("&", ""))
            self.close(tool)
            tool.answer(self.says("&No").replace("&", ""))
            self.assertEqual(tool.wait(), 0)
            log = re.sub(r"\[[0-9a-f]+\]|\d+", "#", simulator.log())  # times, process, thread
        finally:
            simulator.close()
        with open(self.installation.file + ".bak", "rb") as backup:
            return self.installation.bytes(), backup.read(), log

    def test_the_bytes_are_the_same_in_every_language(self):
        english = self.visit("en")
        self.assertIn(b"<File_Size>2048</File_Size>", english[0])
        self.assertEqual(self.visit("de"), english)
        with tempfile.TemporaryDirectory() as folder:
            subprocess.run(["localedef", "-i", "de_DE", "-f", "UTF-8", os.path.join(folder, "de_DE.UTF-8")], check=True)
            installed = {"LC_ALL": "de_DE.UTF-8", "LOCPATH": folder}
            self.assertEqual(self.visit("de", installed), english)


class Measure:
    """What GTK takes for a text in the size that the user has chosen."""

    def __init__(self, scale):
        settings = Gtk.Settings.get_default()
        settings.set_property("gtk-xft-dpi", 96 * 1024 * scale)

    def smallest(self, role, text, width):
        """Width and height that show all of the text in a control of this role that is as wide as `width`."""
        if role == "push button":
            control = Gtk.Button(label=text)
        elif role == "check box":
            control = Gtk.CheckButton(label=text)
        elif role == "table column header":
            control = Gtk.Label()
            control.set_markup(f"<b>{GLib.markup_escape_text(text)}</b>")
        else:
            control = Gtk.Label(label=text, wrap=True, visible=True)
            if control.get_preferred_width().natural_width > width >= control.get_preferred_width().minimum_width:
                return width, control.get_preferred_height_for_width(width).natural_height
        control.show_all()
        size = control.get_preferred_size().natural_size
        return size.width, size.height


def mnemonic_of(control):
    """The key that reaches a control, as screen readers tell it; empty where there is none."""
    try:
        return control.queryAction().getKeyBinding(0)
    except NotImplementedError:
        return ""


def within(inner, outer):
    return (outer.x <= inner.x and inner.x + inner.width <= outer.x + outer.width
            and outer.y <= inner.y and inner.y + inner.height <= outer.y + outer.height)


def overlap(one, other):
    return (one.x < other.x + other.width and other.x < one.x + one.width
            and one.y < other.y + other.height and other.y < one.y + one.height)


class EveryWindow(Languages):
    """Every page, dialog and box that can be reached without a device of its own."""

    PSEUDO = re.compile(r"(?s)^\[!! .* !!\]$")
    NO_TEXT = re.compile(r"^(COM\d+|[\d.]+|https://\S+|\.\.\.|[a-z]|)$")
    SHORTENED = re.compile(r"^/\S+/QLXConfig\.xml$")  # by the toolkit, in its middle
    MEASURED = ("label", "push button", "check box", "page tab", "table column header", "panel")
    FIELDS = ("text", "combo box")
    SOLID = ("label", "push button", "check box", *FIELDS)

    def is_translated(self, name):
        """A label may be broken into lines, and a number may stand at its end."""
        if self.NO_TEXT.match(name):
            return True
        if self.language == PSEUDO:
            return self.PSEUDO.match(name.strip()) is not None
        texts = {" ".join(text.replace("&", "").split()) for text in self.texts.values()}
        name = " ".join(name.split())
        return name in texts or re.sub(r"\d+$", "%s", name) in texts

    def controls_of(self, window):
        """Name, role and rectangle of what shows a text in a window."""
        found = []
        for control in descendants(window):
            role = control.getRoleName()
            if role in (*self.MEASURED, *self.FIELDS) and showing(control) and (control.name or role != "panel"):
                found.append((control.name, role, control.queryComponent().getExtents(pyatspi.DESKTOP_COORDS)))
        return found

    def complaints(self, window):
        """What is not translated, cut off, outside of the window or under something else."""
        frame = window.queryComponent().getExtents(pyatspi.DESKTOP_COORDS)
        controls = self.controls_of(window)
        if not controls:
            yield "nothing is shown"
        for name, role, area in controls:
            if role in self.MEASURED and not self.SHORTENED.match(name):
                if not self.is_translated(name):
                    yield f"{role} {name!r} is not translated"
                width, height = self.measure.smallest("label" if self.NO_TEXT.match(name) else role, name, area.width)
                if area.width < width or area.height < height:
                    yield f"{role} {name!r} is cut off: {area.width} x {area.height}, not {width} x {height}"
            if role != "table column header" and not within(area, frame):  # a table scrolls
                yield f"{role} {name!r} is outside"
        yield from self.clashes(window)
        solid = [control for control in controls if control[1] in self.SOLID]
        for index, (name, _, area) in enumerate(solid):
            for other_name, _, other in solid[:index]:
                if overlap(area, other):
                    yield f"{name!r} lies on {other_name!r}"

    @staticmethod
    def keyed(window):
        """What is shown in a window and may have a mnemonic."""
        return [c for c in descendants(window) if showing(c) and c.getRoleName() in ("push button", "check box", "text", "combo box")]

    def clashes(self, window):
        """Controls that share their mnemonic with another one."""
        first = {}
        for control in self.keyed(window):
            key = mnemonic_of(control)
            if key and key in first:
                yield f"{control.name!r} and {first[key]!r} share {key}"
            first.setdefault(key, control.name)

    def without_key(self, window):
        """The names of controls with a label and no mnemonic; a wrapper's text is reached through its box."""
        labels = {c.name for c in descendants(window) if c.getRoleName() == "label"}
        roles = ("push button", "check box")
        named = [c for c in self.keyed(window) if c.getRoleName() in roles or c.name in labels]
        return [c.name for c in named if not self.NO_TEXT.match(c.name) and not mnemonic_of(c)]

    def judge(self, place, window):
        """A window that is still being placed is given time; what is wrong stays wrong."""
        last = []

        def is_well():
            last[:] = self.complaints(window)
            return not last

        try:
            wait_for(is_well, place)
        except Timeout:
            self.fail("\n".join([f"{place}:", *last]))

    def judge_dialog(self, tool, title):
        window = tool.active_window(self.says(title))
        self.judge(title, window)
        self.assertEqual(self.without_key(window), [], title)
        tool.key("Escape")
        tool.active_window(self.says("Quillon Configuration Tool"))

    def judge_box(self, tool, place, button):
        tool.box_text()
        self.judge(place, tool.box())
        tool.answer(self.says(button).replace("&", ""))

    def judge_pages(self, tool):
        for page in PAGES:
            self.page(tool, page)
            self.judge(page, tool.windows()[0])
            self.assertEqual(self.without_key(tool.windows()[0]), [], page)
        items = tool.items(1074) + tool.items(1075)
        self.page(tool, "COM Ports")
        for item in items + [text for row in tool.rows(LIST) for text in row]:
            self.assertTrue(self.is_translated(item), item)

    def judge_dialogs(self, tool):
        tool.click(ABOUT)
        self.judge_dialog(tool, "About Configuration Tool")
        for row, title in ((0, "MSR Configuration"), (3, "Cash Drawer (USB) Configuration")):
            tool.select(LIST, row)
            tool.click(CONFIGURE)
            self.judge_dialog(tool, title)
        for row, title in ((0, "MSR Demo"), (1, "Line Display Demo"), (3, "Cash Drawer Demo")):
            tool.select(LIST, row)
            tool.click(DEMO)
            self.judge_dialog(tool, title)

    def judge_boxes(self, tool):
        tool.click(1027)
        self.judge_box(tool, "saved", "&OK")
        tool.click(DEMO)
        self.judge_box(tool, "question before the demo", "&No")
        self.page(tool, "iButton")
        tool.enter(1040, "0d0")
        tool.click(1034)
        self.judge_box(tool, "refusal", "&OK")
        self.close(tool)
        self.judge_box(tool, "question at the close", "&Yes")
        self.judge_box(tool, "error number", "&OK")
        self.judge_box(tool, "failed service", "&OK")
        self.assertEqual(tool.wait(), 0)

    def walk(self, language, scale):
        self.language = language
        self.measure = Measure(scale)
        elements = "<MSR_USB>COM3</MSR_USB><LD_USB>COM4</LD_USB><CD_USB>COM6</CD_USB>"
        tool = self.open_in(language, ports_file(elements), {"GDK_DPI_SCALE": str(scale)})
        self.judge_pages(tool)
        self.judge_dialogs(tool)
        self.judge_boxes(tool)

    def test_every_text_is_marked_for_translation_and_has_room_to_grow(self):
        self.start_window_manager()
        self.walk(PSEUDO, 1)

    def test_every_german_text_is_there_and_whole_at_twice_the_size(self):
        self.start_window_manager()
        self.walk("de", 2)

    def test_every_spanish_text_is_there_and_whole_at_twice_the_size(self):
        self.start_window_manager()
        self.walk("es", 2)


if __name__ == "__main__":
    unittest.main()
