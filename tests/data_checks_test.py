"""The checks of data before it ships: a fault for each rule, and what is shipped, which has none."""

import os
import pathlib
import re
import subprocess
import tempfile
import unittest

SOURCE = os.environ["MORVITH_SOURCE"]
CHECK_DATA, CHECK_TEXTS = f"{SOURCE}/checks/check-data", f"{SOURCE}/checks/check-texts"

# What stands in the shipped file, what stands there instead, and what the findings say.
SCHEMA, TABLE = '"./hw_kbd_lang_config.schema.json"', '"keyboard_name_map": ['
NAME, KEYMAP = '"Thai"', '"layout": "th", "model": "pc104"'
TYPE = f'{{ "name": "th_ibm104", "display_name": {NAME}, "xkb": {{ {KEYMAP} }} }}'
TYPES = '"th_ibm104", "th_pat_ibm104", "us_ibm104", "us_intl_ibm103i"'
CHINESE = '"cn_ibm104", "cn_altgr_pinyin_ibm104"'
THAI = '"th_ibm104", "th_pat_ibm104"'
DANISH, HAUSA = '["dk_ibm105", ', '["ng_ibm104", "ng_hausa_ibm104"'
CONFIG_FAULTS = (
    (TABLE, '"deep": [[[[]]]], ' + TABLE, "line 3, column 14: not strict JSON of this format: a"),
    (TABLE, '"deep": ' + "[" * 100_000, "line 3, column 14: not strict JSON of this format: a"),
    (NAME, f'"Thai {"ท" * 9}\u200c\\"{"[" * 9}"'),
    (TABLE, TABLE.replace("map", "mop"),
     'no array keyboard_name_map with elements; call "keyboard_name_mop" so'),
    (TABLE, TABLE + "// ours", "line 3, column 25: not strict JSON of this format: Expecting"),
    ("Thai (Pattachote)", "\udcff", "is not UTF-8"),
    (SCHEMA, '"\\ud800"', '$schema: "\\ud800" holds half of a surrogate pair'),
    (TYPE, f'"{"ç" * 80}", {TYPE}', "]: '" + "\\xe7" * 76 + "... A keyboard type is an object"),
    ('"Albanian"', "106", 'line 4, keyboard_name_map[0] "al_ibm105".display_name: 106 is not of'),
    (f'"display_name": {NAME}, ', "", '"th_ibm104": \'display_name\' is a required property'),
    (NAME, NAME + ', "xkb": {}', '"th_ibm104": the member "xkb" stands there more than once'),
    (TYPE, f"{TYPE}, {TYPE}", '"th_ibm104": stands already at line 1'),
    ('"xh_ZA"', '"xx_ZA"', '"xx_ZA": no language of the library', '"xh_ZA" is missing'),
    (TYPES, TYPES.replace("pat", "x"), '"th_x_ibm104" would be shown', '"th_pat_ibm104": no locale'),
    (TYPES, '"th_ibm104", "th_pat_ibm104"', '"th_TH": "us_intl_ibm103i" is neither first nor last'),
    (TYPES, TYPES + ', "th_tis_ibm104"', "would", '"us_intl_ibm103i" is neither first nor last'),
    (NAME, '"Th\u202eai"', '"th_ibm104".display_name: U+202E is no character'),
    (NAME, f'"{"ท" * 37}"', '"th_ibm104".display_name: 37 columns; shorten it to 36'),
    (NAME, f'"e{chr(0x301) * 127}"', '"th_ibm104".display_name: 255 bytes; shorten it'),
    (KEYMAP, KEYMAP.replace("th", "latin"), "xkb: xkb-data has no layout 'latin'"),
    (KEYMAP, KEYMAP.replace("th", "latin") + ', "renamed": "th"'),
    ('"variant": "pat"', '"variant": "pet"', "no variant 'pet' of layout 'th'"),
    (KEYMAP, '"variant": "tis", ' + KEYMAP.replace("104", "105"), "call it th_tis_ibm105, or",
     '"th_ibm104" needs none of the characters'),
    ('"Thai (Pattachote)"', NAME, '"th_ibm104" and "th_pat_ibm104" are shown alike'),
    (CHINESE, f'"us_ibm104", {CHINESE}', '"us_ibm104" and "cn_ibm104" are the same keymap',
     '"us_ibm104" is no keyboard of CN'),
    ('"German"', '"Danish"', '"de_ibm105".display_name: says Danish, which is no language of'),
    ("th_pat_ibm104", "th_tis_ibm104", '"th_pat_ibm104" is missing, which has shipped',
     "is not among the ids that have shipped", "call it th_pat_ibm104"),
    (DANISH, '["de_ibm105", "dk_ibm105", ', '"de_ibm105" is no keyboard of DK'),
    (THAI, '"th_pat_ibm104", "th_ibm104"', '"th_pat_ibm104" does not type'),
    (HAUSA, '["ng_hausa_ibm104", "ng_ibm104"', "does not type . / d m w z without AltGr"),
    ('"[๎]"', '"[:Pali:]"', "exceptions.characters: is no set"),
)
LANGUAGE = "COM_TV_KEYBOARD_LANGUAGE"
ENTRY, TEXT = f'msgid "{LANGUAGE}"', '"Tastatursprache"'
GERMAN, HELP = "SID_SETUP_LANGUAGE_GERMAN", '"Sprache der Tastatur festlegen."'
CATALOGUE_FAULTS = (
    ("charset=UTF-8", "charset=ISO-8859-1", "the header: charset is ISO-8859-1; save the file"),
    (TEXT, TEXT[:-1], "line 35: end-of-line within string; mend it until msgfmt"),
    (TEXT, '"Tastatur\\bsprache"', " is no character to read; remove it"),
    (ENTRY, 'msgid "OWN"', f"{LANGUAGE}: not in the catalogue", "OWN: not in the template"),
    (TEXT, '""', f"{LANGUAGE}: not translated"),
    (ENTRY, "#, fuzzy\n" + ENTRY, f"{LANGUAGE}: fuzzy"),
    (TEXT, TEXT + '\n\n#~ msgid "OLD"\n#~ msgstr "alt"', "OLD: obsolete"),
    ("Language: de", "Language: ko", "the header: Language is ko, the file is named after de"),
    (TEXT, f'"{"글" * 18}%1$s"', "40 columns; shorten it to 36", f"{LANGUAGE}: %1$s is a directive"),
    (HELP, f'"{"글" * 35} "', "71 columns; shorten it to 70", "LANGUAGE: a blank at an end"),
    (TEXT, f'"e{chr(0x301) * 127}"', f"{LANGUAGE}: 255 bytes; shorten it to 254"),
    (TEXT, f'"{GERMAN}"', f"{LANGUAGE}: the text is a message id"),
    ('"Deutsch"', '"Englisch"', f"{GERMAN}: reads as SID_SETUP_LANGUAGE_ENGLISH does"),
    ('"Deutsch"', '"deutsch"', f"{GERMAN}: begins otherwise than most names of languages"),
)
TEMPLATE_FAULTS = ((ENTRY, 'msgid "OWN"', f"{LANGUAGE}: the library uses it; add it",
                    "OWN: the library does not use it; remove it"),)


class DataChecksTest(unittest.TestCase):
    def setUp(self):
        self.folder = self.enterContext(tempfile.TemporaryDirectory())

    def check(self, script, *files, **environment):
        environment = {**os.environ, "PYTHONIOENCODING": "ascii", **environment}
        done = subprocess.run([script, *files], check=False, text=True, env=environment,
                              stdout=subprocess.PIPE, stderr=subprocess.STDOUT)
        self.assertEqual(done.returncode, bool(done.stdout), done.stdout)
        return done.stdout.splitlines()

    def expect(self, script, shipped, faults):
        text = pathlib.Path(shipped).read_text("utf-8")
        expected = {}
        for number, (old, new, *says) in enumerate(faults):
            file = pathlib.Path(self.folder, str(number), os.path.basename(shipped))
            file.parent.mkdir()
            file.write_text(text.replace(old, new), "utf-8", "surrogateescape")
            expected[str(file)] = says
        lines = self.check(script, *expected)
        for file, says in expected.items():
            found = [line for line in lines if file in line]
            self.assertEqual(len(found), len(says), found)
            for words in says:
                self.assertIn(words, "\n".join(found))

    def test_finds_each_fault_of_a_configuration_and_nothing_else(self):
        self.expect(CHECK_DATA, f"{SOURCE}/res/config/hw_kbd_lang_config.json", CONFIG_FAULTS)

    def test_finds_each_fault_of_a_catalogue_and_nothing_else(self):
        self.expect(CHECK_TEXTS, f"{SOURCE}/res/locale/de.po", CATALOGUE_FAULTS)

    def test_finds_a_template_that_is_not_the_librarys(self):
        self.expect(CHECK_TEXTS, f"{SOURCE}/res/locale/lib-morvith-tv.pot", TEMPLATE_FAULTS)

    def test_takes_what_is_shipped_and_reports_what_is_not_there(self):
        for script in (CHECK_DATA, CHECK_TEXTS):
            self.assertEqual(self.check(script), [])
            self.assertRegex(self.check(script, "none")[0], "^none: .*[Nn]o such file")

    def test_finds_keymaps_that_do_not_compile_and_that_there_is_no_xkb_data(self):
        os.symlink("/usr/share/X11/xkb/rules", f"{self.folder}/rules")
        lines = self.check(CHECK_DATA, XKB_CONFIG_ROOT=self.folder)
        self.assertIn('"th_ibm104".xkb: the keymap does not compile', "\n".join(lines))
        lines = self.check(CHECK_DATA, XKB_CONFIG_ROOT=f"{self.folder}/rules")
        self.assertRegex(lines[0], "^xkb-data .*/evdev.xml'; correct XKB_CONFIG_ROOT")

    def test_finds_a_locale_without_a_catalogue(self):
        os.symlink(f"{SOURCE}/checks", f"{self.folder}/checks")
        os.makedirs(f"{self.folder}/res/locale")
        lines = self.check(f"{self.folder}/checks/check-texts")
        self.assertIn("/res/locale: no catalogue for ko_KR; add ko.po, or ko_KR.po", lines[0])
        documentation = pathlib.Path(SOURCE, "docs/device-data.md").read_text("utf-8")
        documented = re.findall(r"^\| \d+ \| `", documentation, re.M)
        self.assertEqual(len(lines), len(documented), "docs/device-data.md lists the languages")


if __name__ == "__main__":
    unittest.main()
