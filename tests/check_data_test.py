"""The check of keyboard configurations: one bad file per rule, and the shipped file, which is good."""

import os
import shutil
import subprocess
import tempfile
import unittest

SOURCE = os.environ["MORVITH_SOURCE"]
XKB = "/usr/share/X11/xkb"
PERSIAN = '{ "name": "ir_ibm104", "display_name": "Persian", "xkb": { "layout": "ir", "model": "pc104" } }'
TURKISH = '"tr_ibm105", "tr_f_ibm105", "us_intl_ibm103i"'
THAI = '"th_ibm104", "th_pat_ibm104", "us_ibm104", "us_intl_ibm103i"'
ELEMENTS = '"keyboard_name_map": ['

# What stands in the shipped file, what stands there instead, what each line says.
RULES = (
    (ELEMENTS, ELEMENTS + ",", ["line 3, column 25"]),
    ("Thai (Pattachote)", "\udcff", ["is not UTF-8"]),
    (ELEMENTS, '"deep": ' + "[" * 100_000, ["nested too deeply"]),
    (ELEMENTS, '"typo": 1, ' + ELEMENTS, ["the document: Additional properties are not allowed ('typo'"]),
    (PERSIAN, '"text", ' + PERSIAN, ["keyboard_name_map[58]: 'text' is not of type 'object'"]),
    ('"display_name": "Thai",', "", ["\"th_ibm104\": 'display_name' is a required property",
                                     '"th_TH": "th_ibm104" would be shown as its id']),
    ('"Thai"', '" Thai"', ['"th_ibm104".display_name: ', '"th_TH": "th_ibm104" would be shown']),
    (TURKISH, TURKISH + ', "tr_ibm105"', ['"tr_TR".keyboard_types: ', '"tr_f_ibm105": no locale offers it',
                                          '"tr_ibm105": no locale offers it', '"tr_TR" is missing']),
    ('"display_name": "Thai"', '"display_name": "T", "display_name": "Thai"',
     ['"th_ibm104", "display_name": "Thai"']),
    (PERSIAN, f"{PERSIAN}, {PERSIAN}", ['[59] "ir_ibm104": stands already at keyboard_name_map[58]']),
    ('{ "lang_local": "th_TH"', '{ "lang_local": "tr_TR", "keyboard_types": ["us_ibm104"] }, { "lang_local": "th_TH"',
     ['"tr_TR": stands already at lang_local_keyboard_type_table[']),
    ('{ "lang_local": "th_TH"', '{ "lang_local": "xx_XX", "keyboard_types": ["us_ibm104"] }, { "lang_local": "th_TH"',
     ['"xx_XX": no language of the library']),
    (f'    {{ "lang_local": "th_TH", "keyboard_types": [{THAI}] }},\n', "",
     ['"th_TH" is missing', '"th_ibm104": no locale offers it', '"th_pat_ibm104": no locale offers it']),
    (THAI, THAI + ', "th_x_ibm104"', ['"th_TH": "th_x_ibm104" would be shown as its id']),
    (THAI, THAI + f', "{"x" * 242}_ibm104"', ["would be shown as its id", '" has 255 bytes']),
    ('"Thai"', f'"{"ท" * 85}"', ['"th_ibm104".display_name: 255 bytes']),
    ('"layout": "th", "model": "pc104"', '"layout": "thx", "model": "pc104"',
     ["no layout 'thx'", "the id does not say its keymap; call it thx_ibm104"]),
    ('"variant": "pat"', '"variant": "pet"', ["no variant 'pet' of layout 'th'", "call it th_pet_ibm104"]),
    ('"layout": "th", "model": "pc104"', '"layout": "th", "model": "pc999"',
     ["no model 'pc999'", "the id does not say its keymap"]),
    ('"Thai (Pattachote)"', '"Thai"', ['"th_ibm104" and "th_pat_ibm104" are shown alike']),
    ('"layout": "th", "variant": "pat"', '"layout": "th"',
     ["call it th_ibm104", '"th_ibm104" and "th_pat_ibm104" are the same keymap']),
    (THAI, '"th_ibm104", "th_pat_ibm104"', ['"th_TH": no type has the Latin letters']),
)


class CheckDataTest(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = folder.name

    def check(self, *files, **environment):
        done = subprocess.run([f"{SOURCE}/scripts/check-data", *files], capture_output=True, text=True,
                              timeout=60, check=False, env={**os.environ, **environment})
        self.assertEqual(done.stderr, "")
        self.assertEqual(done.returncode, 1 if done.stdout else 0)
        return done.stdout.splitlines()

    def test_finds_a_fault_by_every_rule_and_nothing_else(self):
        with open(f"{SOURCE}/res/config/hw_kbd_lang_config.json", encoding="utf-8") as file:
            shipped = file.read()
        bad = f"{self.folder}/device.json"
        for old, new, says in RULES:
            with self.subTest(says):
                self.assertEqual(shipped.count(old), 1, old)
                with open(bad, "w", encoding="utf-8", errors="surrogateescape") as file:
                    file.write(shipped.replace(old, new))
                found = self.check(bad)
                self.assertEqual(len(found), len(says), found)
                for words in says:
                    self.assertTrue(any(words in line for line in found), (words, found))
                self.assertTrue(all(line.startswith(f"{bad}: ") for line in found))

    def test_takes_the_shipped_file_and_reports_one_that_is_not_there(self):
        self.assertEqual(self.check(), [])
        self.assertIn("No such file", self.check(f"{self.folder}/none.json")[0])

    def test_finds_a_keymap_that_does_not_compile(self):
        xkb = shutil.copytree(XKB, f"{self.folder}/xkb")
        with open(f"{xkb}/symbols/th", "w", encoding="utf-8") as symbols:
            symbols.write("broken")
        found = self.check(XKB_CONFIG_ROOT=xkb)
        self.assertEqual(["does not compile" in line for line in found], [True, True], found)


if __name__ == "__main__":
    unittest.main()
