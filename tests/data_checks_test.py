"""Runs check-data and check-texts on the shipped files, and on copies with one fault each."""

import os
import pathlib
import subprocess
import sys
import tempfile
import unittest

SOURCE = pathlib.Path(os.environ["MORVITH_SOURCE"])
CHECK_DATA, CHECK_TEXTS = SOURCE / "checks/check-data", SOURCE / "checks/check-texts"

NAME, KEYMAP = '"Thai"', '"layout": "th", "model": "pc104"'
ROW = f'{{ "name": "th_ibm104", "display_name": {NAME}, "xkb": {{ {KEYMAP} }} }}'
TYPES = '["th_ibm104", "th_pat_ibm104", "us_ibm104", "us_intl_ibm103i"]'
HANGUL = '"[:Hangul:]"'
LANGUAGE, GERMAN = "COM_TV_KEYBOARD_LANGUAGE", "SID_SETUP_LANGUAGE_GERMAN"
ENTRY, TEXT, HELP = f'msgid "{LANGUAGE}"', '"Tastatursprache"', '"Sprache der Tastatur festlegen."'

# For each file: a text in it, the text that replaces it, and the findings that this causes.
FAULTS = {
    (CHECK_DATA, "res/config/hw_kbd_lang_config.json"): (
        (NAME, "[" * 100_000, "brackets are nested too deeply"),
        (NAME, NAME + ', "xkb": {}', "line 121, column 6: not strict JSON: member 'xkb' is"),
        (NAME, '"\\ud800"', "half of a surrogate pair"),
        (NAME, "\udcff", "line 121 is not UTF-8"),
        (NAME, NAME[:-1], "line 121: a quote is missing"),
        ("\n", "\r\n", "carriage returns"),
        ('{\n  "$', '\ufeff{\n  "$', "byte order mark"),
        (NAME, f'[{"1" * 5000}, "{"ç" * 80}"]',
         "line 121, keyboard_name_map[117].display_name: [inf, '" + "\\xe7" * 73 + "... The text"),
        (ROW, f"{ROW}, {ROW}", "keyboard_name_map[118] 'th_ibm104': already exists in line 121"),
        ('"xh_ZA"', '"xx_ZA"', "'xx_ZA': unknown locale", "'xh_ZA' is missing"),
        (TYPES, TYPES.replace("pat", "x"), "did you mean th_ibm104?", "pat_ibm104': no locale"),
        (TYPES, '["th_ibm104", "us_intl_ibm103i", "us_ibm104", "th_pat_ibm104"]', "nor last"),
        (NAME, '"Th\u202eai"', "'th_ibm104': display_name: character U+202E is not allowed"),
        (KEYMAP, KEYMAP.replace("th", "x"), "unknown layout 'x'"),
        (KEYMAP, '"layout": "x", "renamed": "th", "model": "pc105"', "x_ibm105 or th_ibm105, or"),
        ('"dk", "model": "pc105', '"dk", "variant": "dvorak", "model": "pc104', "rename", "cannot"),
        ("pat", "x", "missing but has shipped", "id is not in", "unknown variant 'x' of layout"),
        ('"Thai (Pattachote)"', NAME, "have the same display_name"),
        ('"German"', f'"Danish{" -" * 16}"', "layout 'de' is not for Danish", "shorten it to 36"),
        ('["cn_ibm104"', '["us_ibm104", "cn_ibm104"', "the same keymap", "not a keyboard of CN"),
        (HANGUL, '"[e]", "country": "KR"', "cannot type", "not needed", "remove exceptions."),
        ('"[0-9@]"', '"[0-9]"', "needs AltGr for @, but another type does not"),
        (HANGUL, '"[:Pali:]"', "exceptions.characters is not a set"),
    ),
    (CHECK_DATA, "platform/devices/global.ini"): (
        (";98;", ";", "language id 98 (my_MM) is missing"),
    ),
    (CHECK_TEXTS, "res/locale/de.po"): (
        ("charset=UTF-8", "charset=ISO-8859-1", "header: charset is ISO-8859-1"),
        (TEXT, TEXT[:-1], "line 35: end-of-line within string; fix what msgfmt"),
        (ENTRY, 'msgid "OWN"', f"{LANGUAGE}: missing in the cat", "OWN: missing in the template"),
        ('"Deutsch"', '""', "not translated"),
        (ENTRY, f'#~ msgid "OLD"\n#~ msgstr "x "\n\n#, fuzzy\n{ENTRY}', "OLD: obsolete", "fuzzy"),
        ("Language: de", "Language: xx", "fix what i18nspector reports", "Language is xx, but"),
        (TEXT, '"Tastatur\\bsprache"', "is not allowed"),
        (TEXT, '"\u200d"', "no visible character"),
        (HELP, f'"{"글" * 33}%1$s "', "71 columns; shorten it to 70", "%1$s is", "blank at"),
        (TEXT, f'"{"e" * 36}{chr(0x301) * 109}"', "254 bytes; shorten it to 253"),
        (TEXT, f'"{GERMAN}"', "its text is a message id"),
        ('"Deutsch"', '"Englisch"', f"{GERMAN}: same text as SID_SETUP_LANGUAGE_ENGLISH"),
        ('"Deutsch"', '"deutsch"', "names of languages begin with a capital letter"),
        ('"106 Tasten"', f'"{"T" * 40}"', "Korean (106 keys): 'Koreanisch (T"),
        ('"106 Tasten"', '"101/104 Tasten"', "same text as Korean (101/104 keys)"),
        ('msgstr "{language} ({words})"', 'msgstr "()"', "its text needs {language} and {words}"),
    ),
    (CHECK_TEXTS, "res/locale/lib-morvith-tv.pot"): (
        (ENTRY, 'msgid "OWN"', f"{LANGUAGE}: used by the library", "OWN: not used by the library"),
        ('"106 keys"', '"106 kays"', "106 kays: no display_name uses", "106 keys: used in a display"),
    ),
}

CONFIG, ENGLISH, GERMAN_PO = (
    SOURCE / "res" / file
    for file in ("config/hw_kbd_lang_config.json", "locale/en.po", "locale/de.po"))
REDUCE, COMPILE = ["reduce_configuration.py"], ["compile_catalogue.py", CONFIG, ENGLISH]
# For each step of the build: a file, a text in it, the text that replaces it, and the message.
BUILD_FAULTS = (
    (REDUCE, CONFIG, NAME, "\udcff", "line 121 is not UTF-8; save the file as UTF-8; run checks/"),
    (REDUCE, CONFIG, NAME, NAME[:-1], "delimiter: line 121 column 52 (char 15096); run checks/"),
    (REDUCE, CONFIG, NAME, '"\\ud800"', "surrogates not allowed; run checks/check-data"),
    (COMPILE, GERMAN_PO, TEXT, TEXT[:-1], "msgfmt failed; run checks/check-texts"),
)


class DataChecks(unittest.TestCase):
    def setUp(self):
        self.folder = pathlib.Path(self.enterContext(tempfile.TemporaryDirectory()))

    def run_check(self, program, *files, **environment):
        done = subprocess.run([program, *files], check=False, capture_output=True, text=True,
                              env={**os.environ, "PYTHONIOENCODING": "ascii", **environment})
        self.assertEqual(done.returncode, bool(done.stdout + done.stderr), done)
        return (done.stdout + done.stderr).splitlines()

    def test_find_each_fault(self):
        for (program, shipped), faults in FAULTS.items():
            text, expected = (SOURCE / shipped).read_text("utf-8"), {}
            for number, (old, new, *findings) in enumerate(faults):
                file = self.folder / str(number) / shipped
                file.parent.mkdir(parents=True, exist_ok=True)
                file.write_text(text.replace(old, new), "utf-8", "surrogateescape")
                expected[file] = findings
            lines = self.run_check(program, *expected)
            for file, findings in expected.items():
                found = [line for line in lines if line.startswith(f"{file}: ")]
                is_found = [finding in "\n".join(found) for finding in findings]
                self.assertEqual([True] * len(found), is_found, (file, findings, found))

    def test_build_names_the_file_and_the_fault(self):
        for (step, *arguments), shipped, old, new, message in BUILD_FAULTS:
            file = self.folder / shipped.name
            file.write_text(shipped.read_text("utf-8").replace(old, new), "utf-8", "surrogateescape")
            lines = self.run_check(sys.executable, SOURCE / "res" / step, *arguments, file, "/dev/null")
            self.assertTrue(lines[-1].startswith(f"{file}: ") and message in lines[-1], lines)

    def test_accept_shipped_files_and_report_missing_and_special_ones(self):
        for program in (CHECK_DATA, CHECK_TEXTS):
            self.assertEqual(self.run_check(program), [])
            self.assertRegex(self.run_check(program, "x")[0], "^x: cannot be read: No such file")
            self.assertRegex(self.run_check(program, "/dev/null")[0], "read: not a regular file$")

    def test_find_missing_keymaps_and_catalogues(self):
        (self.folder / "rules").symlink_to("/usr/share/X11/xkb/rules")
        lines = self.run_check(CHECK_DATA, XKB_CONFIG_ROOT=str(self.folder))
        self.assertIn("'th_ibm104': keymap does not compile", "\n".join(lines))
        self.assertIn("correct XKB", self.run_check(CHECK_DATA, XKB_CONFIG_ROOT="/x")[0])
        (self.folder / "checks").symlink_to(SOURCE / "checks")
        lines = self.run_check(self.folder / "checks/check-texts")
        self.assertIn("/res/locale: no catalogue for ko_KR; add ko.po or ko_KR.po", lines[0])
        documentation = (SOURCE / "docs/device-data.md").read_text("utf-8")
        for line in lines[:-1]:
            self.assertIn(f" | `{line[-8:-3]}` | ", documentation)


if __name__ == "__main__":
    unittest.main()
