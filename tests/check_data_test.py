"""The check of keyboard configurations: a bad file per rule, and the shipped one, which is good."""

import os
import shutil
import subprocess
import tempfile
import unittest

SOURCE = os.environ["MORVITH_SOURCE"]
XKB = "/usr/share/X11/xkb"
PERSIAN = ('{ "name": "ir_ibm104", "display_name": "Persian", '
           '"xkb": { "layout": "ir", "model": "pc104" } }')
TURKISH = '"tr_ibm105", "tr_f_ibm105", "us_intl_ibm103i"'
CHINESE = '"cn_altgr_pinyin_ibm104", "us_intl_ibm103i"'
THAI = '"th_ibm104", "th_pat_ibm104", "us_ibm104", "us_intl_ibm103i"'
NAME, KEYMAP = '"Thai"', '"layout": "th", "model": "pc104"'
LOCALE = '{ "lang_local": "th_TH"'
OTHER_LOCALE = '{ "lang_local": "%s", "keyboard_types": ["us_ibm104"] }, ' + LOCALE
SCHEMA, ELEMENTS = '"./hw_kbd_lang_config.schema.json"', '"keyboard_name_map": ['

# What stands in the shipped file (None: all of it), what stands there instead, what each line says.
RULES = (
    (None, " \n", ["is empty; give it"]),
    (None, "[]", ["the document: [] is not of type 'object'. The "] + ['" is missing'] * 61),
    ("{\n", "\ufeff{\n", ["save it without a byte order mark"]),
    (ELEMENTS, ELEMENTS + "// ours", ["line 3, column 25: not strict JSON"]),
    ("Thai (Pattachote)", "\udcff", ["is not UTF-8"]),
    (ELEMENTS, '"deep": ' + "[" * 100_000, ["nested too deeply"]),
    (ELEMENTS, '"typo": 1, ' + ELEMENTS, ["the document: Additional properties are not"]),
    (SCHEMA, '"\\ud800"', ['$schema: "\\ud800" holds half of a surrogate pair']),
    (SCHEMA, "9" * 5000, ["$schema: inf is not of type 'string'. The path of the schema"]),
    (PERSIAN, '"text", ' + PERSIAN, ["keyboard_name_map[58]: 'text' is not of type 'object'"]),
    ('"display_name": "Thai",', "", ["'display_name' is a required property. A keyboard type"]),
    (NAME, '" Thai"', ['"th_ibm104".display_name: \' Thai\' does not match']),
    (NAME, '"Thai\\n"', ['"th_ibm104".display_name: U+000A is no character']),
    (NAME, '"Th\u202eai"', ['"th_ibm104".display_name: U+202E is no character']),
    (NAME, f'"{"ท" * 79}\u200cทร\u200dท\u00a0."', ["display_name: 255 bytes; shorten it to 254"]),
    (NAME, f'"{"ท" * 79}\u200cทร\u200dท.."', []),
    (TURKISH, TURKISH + ', "tr_ibm105", "\u2028ç"',
     ["'tr_ibm105', '\\u2028\\xe7'] has n... An array of", '"tr_TR".keyboard_types[4]: ']),
    (NAME, NAME + ', "display_name": "T"', ['[115] "th_ibm104": the member "display_name" stands']),
    (PERSIAN, f"{PERSIAN}, {PERSIAN}", ['[59] "ir_ibm104": stands already at keyboard_name_']),
    (LOCALE, OTHER_LOCALE % "tr_TR", ['"tr_TR": stands already at lang_local_keyboard_']),
    (LOCALE, OTHER_LOCALE % "xx_XX", ['"xx_XX": no language of the library']),
    (LOCALE, OTHER_LOCALE % "\x85", ['[39] "\\u0085".lang_local: ']),
    (f'    {LOCALE}, "keyboard_types": [{THAI}] }},\n', "",
     ['"th_TH" is missing', '"th_ibm104": no locale offers it', '"th_pat_ibm104": no locale']),
    (THAI, '"th_ibm104", "th_pat_ibm104", "th_x_ibm104"', ['"th_TH": "th_x_ibm104" would be']),
    (THAI, THAI + f', "{"x" * 242}_ibm104"', ["would be shown as its id", '" has 255 bytes']),
    (KEYMAP, KEYMAP.replace('th"', 'thx\\n"'), ["xkb: xkb-data has no layout 'thx\\n'; take"]),
    ('"variant": "pat"', '"variant": "pet"', ["no variant 'pet' of layout 'th'"]),
    (KEYMAP, KEYMAP.replace("104", "999"), ["no model 'pc999'"]),
    (KEYMAP, KEYMAP.replace("104", "101"), ["'pc101' has no board; take pc104 or pc105"]),
    (KEYMAP, '"layout": "th", "variant": "tis", "model": "pc104"', ["call it th_tis_ibm104, or"]),
    (KEYMAP, KEYMAP.replace("104", "105"), ["call it th_ibm105, or"]),
    ('"us", "variant": "intl"', '"us", "variant": "workman"', ["call it us_workman_ibm104, or"]),
    ('"Thai (Pattachote)"', NAME, ['"th_ibm104" and "th_pat_ibm104" are shown alike']),
    (CHINESE, CHINESE + ', "us_ibm104"', ['"cn_ibm104" and "us_ibm104" are the same keymap']),
    (THAI, '"th_ibm104", "th_pat_ibm104"', ['"th_TH": no type has the Latin letters']),
)


class CheckDataTest(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = folder.name

    def check(self, *files, **environment):
        done = subprocess.run([f"{SOURCE}/scripts/check-data", *files], capture_output=True,
                              text=True, timeout=60, check=False,
                              env={**os.environ, "PYTHONIOENCODING": "ascii", **environment})
        if done.stderr:
            return done.returncode, done.stderr
        self.assertEqual(done.returncode, 1 if done.stdout else 0)
        return done.stdout.splitlines()

    def test_finds_a_fault_by_every_rule_and_nothing_else(self):
        with open(f"{SOURCE}/res/config/hw_kbd_lang_config.json", encoding="utf-8") as file:
            shipped = file.read()
        for number, (old, new, _) in enumerate(RULES):
            self.assertEqual(shipped.count(old or shipped), 1, old)
            with open(f"{self.folder}/{number}.json", "w", encoding="utf-8",
                      errors="surrogateescape") as file:
                file.write(shipped.replace(old or shipped, new))
        lines = self.check(*(f"{self.folder}/{number}.json" for number in range(len(RULES))))
        self.assertEqual(len(lines), sum(len(says) for _, _, says in RULES))
        for number, (_, _, says) in enumerate(RULES):
            with self.subTest(says):
                found = [line for line in lines if f"/{number}.json: " in line]
                self.assertEqual(len(found), len(says), found)
                for words in says:
                    self.assertTrue(any(words in line for line in found), (words, found))

    def test_takes_the_shipped_file_and_reports_one_that_is_not_there(self):
        self.assertEqual(self.check(), [])
        self.assertIn("No such file", self.check(f"{self.folder}/none.json")[0])

    def test_finds_a_keymap_that_does_not_compile_and_that_there_are_none(self):
        xkb = shutil.copytree(XKB, f"{self.folder}/xkb")
        with open(f"{xkb}/symbols/th", "w", encoding="utf-8") as symbols:
            symbols.write("broken")
        found = self.check(XKB_CONFIG_ROOT=xkb)
        self.assertEqual(["does not compile" in line for line in found], [True, True], found)
        status, says = self.check(XKB_CONFIG_ROOT=self.folder)
        self.assertRegex(says, "^xkb-data .*/rules/evdev.xml'; correct XKB_CONFIG_ROOT")
        self.assertEqual(status, 1)


if __name__ == "__main__":
    unittest.main()
