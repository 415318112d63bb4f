"""The gate for catalogues: what it refuses, and that it takes what is shipped."""

import os
import shutil
import subprocess
import tempfile
import unittest

SOURCE = os.environ["MORVITH_SOURCE"]
LANGUAGE = "COM_TV_KEYBOARD_LANGUAGE"
GOOD = '"키보드 언어"'


def check(*files, source=SOURCE):
    return subprocess.run([f"{source}/scripts/check-texts", *files], stderr=subprocess.PIPE,
                          text=True, timeout=120, check=False)


class CheckTextsTest(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = folder.name

    def changed(self, old, new, name="ko.po", source="ko.po"):
        with open(f"{SOURCE}/res/locale/{source}", encoding="utf-8") as file:
            text = file.read()
        self.assertEqual(text.count(old), 1, old)
        with open(f"{self.folder}/{name}", "w", encoding="utf-8") as file:
            file.write(text.replace(old, new))
        return file.name

    def test_takes_what_is_shipped(self):
        done = check()
        self.assertEqual((done.returncode, done.stderr), (0, ""))
        done = check(self.changed(GOOD, f'"{84 * "글"}.\\""'))  # 254 bytes
        self.assertEqual((done.returncode, done.stderr), (0, ""))

    def test_refuses_each_fault_by_file_and_message(self):
        entry = f'msgid "{LANGUAGE}"'
        for old, new, message, says in (
                (GOOD, '"키보드 언어', LANGUAGE, "msgfmt"),
                (GOOD, '"키보드 언어\\n"', LANGUAGE, "msgfmt"),
                ('"Language-Team: none\\n"\n', "", "header", "msgfmt"),
                (entry, 'msgid "COM_TV_KEYBOARD_TONGUE"', LANGUAGE, "msgmerge"),
                (entry, 'msgid "OWN"\nmsgstr "것"\n\n' + entry, "OWN", "msgmerge"),
                (GOOD, '""', LANGUAGE, "translate it"),
                (entry, "#, fuzzy\n" + entry, LANGUAGE, "flag"),
                (GOOD, GOOD + '\n\n#~ msgid "OLD"\n#~ msgstr "옛"', "OLD", "no-obsolete"),
                (GOOD, '"키보드\u0080 언어"', LANGUAGE, "i18nspector"),
                ("Language: ko", "Language: de", "header", "Language: ko"),
                (GOOD, f'"{84 * "글"}..."', LANGUAGE, "254"),
                (GOOD, '"키보드 언어 "', LANGUAGE, "a blank at an end"),
                (GOOD, '"키보드\\t언어"', LANGUAGE, "U+0009"),
                (GOOD, '"SID_SETUP_LANGUAGE_GERMAN"', LANGUAGE, "a message id"),
                ('"독일어"', '"영어"', "SID_SETUP_LANGUAGE_GERMAN", "languages apart")):
            with self.subTest(new):
                done = check(self.changed(old, new))
                self.assertEqual(done.returncode, 1)
                self.assertIn(f"{self.folder}/ko.po: ", done.stderr)
                self.assertIn(message, done.stderr)
                self.assertIn(says, done.stderr)

    def test_refuses_a_name_that_is_no_language(self):
        for stem, says in (("korean", "named after neither"), ("ko-KR", "named after neither"),
                           ("xx", "invalid-language xx")):
            done = check(self.changed("Language: ko", f"Language: {stem}", f"{stem}.po"))
            self.assertEqual(done.returncode, 1)
            self.assertIn(f"{stem}.po: {says}", done.stderr)

    def test_misses_the_catalogue_of_a_locale(self):
        for folder in ("scripts", "src", "res/locale"):
            shutil.copytree(f"{SOURCE}/{folder}", f"{self.folder}/{folder}",
                            ignore=shutil.ignore_patterns("[a-y]*.po"))
        said = check(source=self.folder).stderr
        self.assertEqual((said.count("no catalogue"), said.count(" zh")), (61 - 4, 0), said)

    def test_shows_all_findings_of_all_files(self):
        template = self.changed(f'"{LANGUAGE}"', f'"{LANGUAGE}', "lib-morvith-tv.pot",
                                "lib-morvith-tv.pot")
        done = check(template, f"{self.folder}/none.po", self.changed(GOOD, '""', "xx.po"))
        self.assertEqual(done.returncode, 1)
        for says in (f"{template}: {LANGUAGE}", "none.po: no such file", f"xx.po: {LANGUAGE}: not",
                     "xx.po: the header: "):
            self.assertIn(says, done.stderr)


if __name__ == "__main__":
    unittest.main()
