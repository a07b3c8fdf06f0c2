from planted_tree import HOUSE, PlantedTree

import polib

HEADER = """\
msgid ""
msgstr ""
"Project-Id-Version: QLXConfig\\n"
"PO-Revision-Date: 2026-01-01 12:00+0000\\n"
"Last-Translator: somebody\\n"
"Language-Team: German\\n"
"Language: de\\n"
"MIME-Version: 1.0\\n"
"Content-Type: text/plain; charset=UTF-8\\n"
"Content-Transfer-Encoding: 8bit\\n"
"""
SOURCE = """\
auto a = _("Apply");
auto b = Translatable(L"File \\"%s\\".\\nPlease "
                      "check it");
auto c = _("&About...");
auto d = _("from ");
auto e = "no text for the user";
"""
GERMAN = {
    "Apply": "Übernehmen",
    'File \\"%s\\".\\nPlease check it': 'Datei „%s“.\\nBitte prüfen',
    "&About...": "&Info...",
    "from ": "von ",
}


class Translations(PlantedTree):
    check = "translations"

    def setUp(self):
        super().setUp()
        self.plant("src/pages/Page.cpp", SOURCE)
        self.plant("translations/none", "")
        self.update()
        self.plant_german({})

    def update(self):
        done = self.run_command(HOUSE / "scripts" / "translations", "update", self.root)
        self.assertEqual(done.returncode, 0, done.stderr)

    def plant_german(self, changes):
        """A German catalogue with some other texts; None leaves a text out."""
        body = HEADER
        for text, german in {**GERMAN, **changes}.items():
            if german is not None:
                flag = "#, c-format\n" if "%s" in text else ""
                body += f'\n{flag}msgid "{text}"\nmsgstr "{german}"\n'
        self.plant("translations/de.po", body)

    def test_catalogues_in_step_pass(self):
        self.assert_clean()

    def test_an_update_of_what_is_in_step_changes_nothing(self):
        self.update()
        before = (self.root / "translations" / "de.po").read_bytes()
        self.update()
        self.assertEqual((self.root / "translations" / "de.po").read_bytes(), before)
        self.assert_clean()

    def test_a_new_text_has_to_be_collected_and_then_translated(self):
        self.plant("src/pages/Page.cpp", SOURCE + 'auto f = _("Clear");\n')
        self.assert_complaint("translations/qlxconfig.pot is not in step")
        self.update()
        self.assert_complaint("the text for 'Clear' is not translated")

    def test_a_text_that_changed_only_in_the_source_is_found(self):
        self.plant("src/pages/Page.cpp", SOURCE.replace('"Apply"', '"Apply All"'))
        self.assert_complaint("not in step")

    def test_a_text_that_a_language_lacks_or_has_no_more_is_found(self):
        self.plant_german({"Apply": None, "Gone": "Weg"})
        self.assert_complaint("'Apply' is missing", "'Gone' is no text of the source")

    def test_an_unfinished_text_is_found(self):
        self.plant_german({"Apply": ""})
        self.assert_complaint("'Apply' is not translated")
        german = self.root / "translations" / "de.po"
        self.plant_german({})
        german.write_text(german.read_text().replace('msgid "Apply"', '#, fuzzy\nmsgid "Apply"'))
        self.assert_complaint("'Apply' is fuzzy")

    def test_the_values_place_and_the_line_breaks_have_to_agree(self):
        text = 'File \\"%s\\".\\nPlease check it'
        self.plant_german({text: "Datei %d.\\nBitte prüfen"})
        self.assert_complaint("for argument 1 are not the same")
        self.plant_german({text: "Datei „%s“.\\nBitte prüfen\\n"})
        self.assert_complaint("\\n")

    def test_the_mnemonic_the_ending_and_the_blanks_have_to_agree(self):
        self.plant_german({"&About...": "Info..."})
        self.assert_complaint('has not as many "&"')
        for german in ("&Info", "&Info…", "&Info:"):
            with self.subTest(german):
                self.plant_german({"&About...": german})
                self.assert_complaint('does not end as the English one, with "..."')
        self.plant_german({"from ": "von"})
        self.assert_complaint("has not the blanks")

    def test_a_second_wide_literal_is_found(self):
        self.plant("src/pages/Page.cpp", 'auto a = Translatable(\n    L"one "\n    L"two");\n')
        self.assert_complaint("src/pages/Page.cpp:1: only the first literal")


class Pseudo(PlantedTree):
    def test_every_text_is_in_brackets_and_longer_and_keeps_what_the_program_reads_in_it(self):
        self.plant("src/a.cpp", SOURCE)
        self.plant("translations/none", "")
        for arguments in (["update"], ["pseudo", str(self.root / "locale")]):
            done = self.run_command(HOUSE / "scripts" / "translations", *arguments, self.root)
            self.assertEqual(done.returncode, 0, done.stderr)
        texts = {entry.msgid: entry.msgstr for entry in polib.mofile(str(self.root / "locale/en_XA/LC_MESSAGES/qlxconfig.mo"))}
        self.assertEqual(len(texts), 4)
        for text, pseudo in texts.items():
            with self.subTest(text):
                self.assertRegex(pseudo.strip(), r"(?s)^\[!! .* !!\]$")
                self.assertGreaterEqual(len(pseudo), 1.4 * len(text))
                for part in ("%s", "&", "\n"):
                    self.assertEqual(pseudo.count(part), text.count(part))
        self.assertTrue(texts["from "].endswith(" !!] "))
