"""menu_host as a person and a script use it, over a staged installation."""

import json
import os
import subprocess
import tempfile
import unicodedata
import unittest

STAGE = os.environ["MORVITH_TEST_ROOT"]
BAD_PROVIDER = os.environ["BAD_PROVIDER_FILE"]
LIBRARIES = os.environ["LD_LIBRARY_PATH"]


def profile(name):
    return f"{STAGE}/usr/share/morvith-menu-host/devices/{name}.ini"


def width(text):
    """Columns on a terminal, by the Unicode database rather than by the library under test."""
    return sum(0 if unicodedata.category(c) in ("Mn", "Me", "Cf")
               else 2 if unicodedata.east_asian_width(c) in "WF" else 1 for c in text)


class MenuHostTest(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = folder.name
        self.registry = f"{self.folder}/registry.db"
        self.environment = dict(os.environ)

    def host(self, *arguments, device="global", status=0, stdout=subprocess.PIPE):
        command = [f"{STAGE}/usr/bin/menu_host", "--registry", self.registry,
                   "--device", profile(device), *arguments]
        done = subprocess.run(command, stdout=stdout, stderr=subprocess.PIPE, text=True,
                              timeout=60, env=self.environment)
        self.assertEqual(done.returncode, status, (done.stdout, done.stderr))
        return done

    def document(self, *arguments, quiet=True, **options):
        done = self.host(*arguments, "--json", **options)
        self.assertEqual(done.stderr == "", quiet, done.stderr)
        return json.loads(done.stdout)

    def assert_refused(self, *arguments, status=1, says):
        done = self.host(*arguments, status=status)
        for words in says:
            self.assertIn(words, done.stderr)

    def test_stores_a_choice_and_reads_it_back(self):
        page = self.document()
        self.assertEqual(page["title"], "Keyboard Settings")
        self.assertIsNone(page["language"]["value"])

        stored = self.document("set", "language", "ko_KR")
        self.assertEqual(stored["language"]["text"], "Korean")
        self.assertEqual(stored["type"]["value"], "ko_KR.kr_ibm106")
        self.document("set", "type", "ko_KR.us_intl_ibm103i")
        page = self.document("--ui-language", "ko_KR")
        self.assertEqual(page["language"]["text"], "한국어")
        self.assertEqual(page["type"]["value"], "ko_KR.us_intl_ibm103i")

        listed = self.document("list", "type")
        self.assertEqual([c["value"] for c in listed["choices"] if c["current"]],
                         ["ko_KR.us_intl_ibm103i"])
        self.assertEqual(self.document("info"), {"owner": "rask.ovnel",
                                                 "main_component": "TP_OnScreenUI",
                                                 "sub_component": "TP_IME"})

    def test_shows_what_each_device_has(self):
        for device, languages, image in (("global", 61, "edje/help_morvith.edj"),
                                         ("europe", 12, "ta_non_bt.webp"),
                                         ("prototype", 7, "ta_non_bt.webp")):
            with self.subTest(device):
                done = self.host("list", "language", device=device)
                self.assertEqual(len(done.stdout.splitlines()), languages)
                self.assertEqual(done.stderr.count("not support"), 3 * (device == "prototype"))
                page = self.document(device=device, quiet=device != "prototype")
                self.assertTrue(page["help_image"].endswith(image))
                self.assertTrue(os.path.isfile(STAGE + page["help_image"]))

    def test_takes_from_a_bad_profile_what_is_good(self):
        capability = "[custom_bool]\ncom.velmora/featureconf/bt_profile_bt_smart_control="
        for ids, wanted, skipped in (("1; x7;;99999999999;-3 ;0", ["en_US", "ko_KR"], 3),
                                     ("", ["en_GB"], 0), (None, ["en_GB"], 0)):
            with open(f"{self.folder}/device.ini", "w", encoding="utf-8") as file:
                file.write("[device]\n" + (f"system_language_ids={ids}\n" if ids is not None else "") +
                           capability + "maybe\n")
            done = self.host("--device", file.name, "list", "language")
            self.assertEqual([line.split()[-1] for line in done.stdout.splitlines()], wanted)
            self.assertEqual(done.stderr.count("skipped"), skipped)
            self.assertEqual("devinfo_get_value_int_array Error.\n" in done.stderr, ids is None)
            self.assertNotIn("\n\n", done.stderr)
        done = self.host("--device", file.name)
        self.assertIn("non_bt.webp", done.stdout)
        self.assertIn("get key value failed", done.stderr)

    def test_aligns_columns_in_wide_and_combining_scripts(self):
        self.host("set", "language", "ko_KR")
        locales = [choice["value"] for choice in self.document("list", "language")["choices"]]
        self.assertEqual(len(locales), 61)
        for language in locales:
            lines = self.host("--ui-language", language, "list", "language").stdout.splitlines()
            self.assertEqual({width(line) for line in lines}, {width(lines[0])})
            self.assertEqual([line for line in lines if line[0] == "*"], [lines[0]])
            page = self.host("--ui-language", language).stdout.splitlines()
            starts = {width(line[:line.index("ko_KR")]) for line in page if "ko_KR" in line}
            self.assertEqual(len(starts), 1, page)

    def test_aligns_what_a_device_puts_in(self):
        resources = f"{self.folder}/usr/share/lib-morvith-tv/res"
        os.makedirs(f"{resources}/config")
        os.symlink(f"{STAGE}/usr/share/lib-morvith-tv/res/locale", f"{resources}/locale")
        names = {"a": "ที่นี่", "b": "한국어", "c": "e\u0301", "d": "plain"}
        with open(f"{resources}/config/hw_kbd_lang_config.json", "w", encoding="utf-8") as file:
            json.dump({"keyboard_name_map": [{"name": name, "display_name": text}
                                             for name, text in names.items()],
                       "lang_local_keyboard_type_table": [{"lang_local": "en_US",
                                                           "keyboard_types": list(names)}]}, file)
        self.environment["MORVITH_TEST_ROOT"] = self.folder
        self.host("set", "language", "en_US")
        lines = self.host("list", "type").stdout.splitlines()
        self.assertEqual([width(line[:line.index("en_US")]) for line in lines], [10] * 4)

    def test_finds_a_locale_or_its_language_among_the_installed_catalogues(self):
        resources = f"{self.folder}/usr/share/lib-morvith-tv/res"
        os.makedirs(f"{resources}/locale")
        for name in ("config", "locale/ko", "locale/zh_HK"):
            os.symlink(f"{STAGE}/usr/share/lib-morvith-tv/res/{name}", f"{resources}/{name}")
        self.environment["MORVITH_TEST_ROOT"] = self.folder
        for language, title in (("ko_KR", "키보드 설정"), ("zh_HK", "鍵盤設定")):
            self.assertEqual(self.document("--ui-language", language)["title"], title)
        for language in ("zh_TW", "zu_ZA"):
            self.assert_refused("--ui-language", language, says=[f"'{language}'", "ko, zh_HK."])

    def test_says_what_was_wrong_and_what_would_have_been_right(self):
        self.assert_refused("--plugin", "/nowhere.so", says=["/nowhere.so", "--plugin"])
        self.assert_refused("--plugin", f"{LIBRARIES}/libqlog.so.0",
                            says=["not a data provider", "create_provider"])
        for bad, says in (("fails", "create_provider returned 1"), ("lacks", "left the slot set_int")):
            self.environment["BAD_PROVIDER"] = bad
            self.assert_refused("--plugin", BAD_PROVIDER, says=[says])
        self.assert_refused("--device", "moon", says=["'moon'", "profile", "one of:"])
        self.assert_refused("--device", "/etc/passwd", says=["key file"])
        self.assert_refused("--registry", "", says=["empty"], status=2)
        self.assert_refused("--registry", "/nowhere/registry.db", says=["/nowhere", "Make it"])
        self.assert_refused("--ui-language", "korean", says=["ll_CC", "ko_KR"], status=2)
        self.assert_refused("--log", "loud", says=["info", "none"], status=2)
        self.assert_refused("list", "colour", says=["{language,type}"], status=2)
        self.assert_refused("list", "type", says=["set language"])
        self.assert_refused("set", "language", "xx_XX", says=["'xx_XX'", "ko_KR, en_US", "--force"])
        self.assertIsNone(self.document()["language"]["value"])

    def test_force_hands_over_any_value_and_shows_what_became_of_it(self):
        done = self.host("set", "language", "xx_XX", "--force")
        self.assertIn("stored is 'en_US'", done.stderr)
        self.assertIn("en_US.us_ibm104", done.stdout)
        self.host("set", "type", "odd\x1b[31m\nvalue", "--force")
        self.assertIn("(none of the choices)  odd\ufffd[31m\ufffdvalue", self.host().stdout)
        self.assertIn("none of the choices", self.host("list", "type").stdout)
        self.host("set", "type", b"\xff", "--force")
        self.assertEqual(self.document()["type"]["value"], "\ufffd")

    def test_reports_what_fails_and_logs_from_the_level_up(self):
        os.mkdir(self.registry)
        done = self.host("set", "language", "ko_KR", status=1)
        self.assertIn("Fail Set Default Keyboard Language", done.stderr)
        self.assertIn("stored is ''", done.stderr)
        os.rmdir(self.registry)
        with open("/dev/full", "w", encoding="utf-8") as full:
            self.host("info", stdout=full, status=1)
        for level in ("error", "warning", "info"):
            done = self.host("--log", level, "list", "language", device="prototype")
            self.assertEqual("info IME_QEL" in done.stderr, level == "info")
            self.assertEqual("warning IME_QEL" in done.stderr, level != "error")


if __name__ == "__main__":
    unittest.main()
