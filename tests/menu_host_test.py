"""menu_host as a person and a script use it, over a staged installation."""

import json
import os
import resource
import shutil
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

    def host(self, *arguments, device="global", status=0, stdout=subprocess.PIPE, **options):
        command = [f"{STAGE}/usr/bin/menu_host", "--registry", self.registry,
                   "--device", profile(device), *arguments]
        done = subprocess.run(command, stdout=stdout, stderr=subprocess.PIPE, text=True,
                              timeout=60, env=self.environment, **options)
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
                file.write("[device]\n" +
                           (f"system_language_ids={ids}\n" if ids is not None else "") +
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

    def check(self, ids, *arguments, changes=None, **options):
        """A check of an installation in which files, by path, have other contents (None: none)."""
        resources = f"{self.folder}/usr/share/lib-morvith-tv/res"
        shutil.rmtree(resources, ignore_errors=True)
        shutil.copytree(f"{STAGE}/usr/share/lib-morvith-tv/res", resources)
        for path, contents in (changes or {}).items():
            os.remove(f"{resources}/{path}")
            if contents is not None:
                with open(f"{resources}/{path}", "wb") as file:
                    file.write(contents)
        with open(f"{self.folder}/device.ini", "w", encoding="utf-8") as file:
            file.write(f"[device]\nsystem_language_ids={ids}\n[custom_bool]\n"
                       "com.velmora/featureconf/bt_profile_bt_smart_control=true\n")
        self.environment.update(MORVITH_TEST_ROOT=self.folder, TMPDIR=f"{self.folder}/temporary")
        os.makedirs(self.environment["TMPDIR"], exist_ok=True)
        done = self.host("check", "--device", file.name, *arguments, **options)
        self.assertEqual(os.listdir(self.environment["TMPDIR"]), [])
        return done

    def test_check_is_silent_over_a_good_page_and_leaves_the_registry_alone(self):
        self.host("set", "language", "ko_KR")
        self.host("set", "type", "ko_KR.us_intl_ibm103i")
        before = self.document()
        done = self.host("check")
        self.assertEqual((done.stdout, done.stderr), ("", ""))
        self.assertEqual(json.loads(self.check("0;200", "--json").stdout), {"findings": []})
        self.assertEqual(self.document(), before)

    def test_check_finds_what_would_trip_a_viewer_up(self):
        def korean(old, new):
            with open(f"{STAGE}/usr/share/lib-morvith-tv/res/{ko}", "rb") as file:
                catalogue = file.read()
            self.assertIn(old, catalogue)
            return {ko: catalogue.replace(old, new.ljust(len(old), b"\0"))}

        def types(*keyboards):
            return {"config/hw_kbd_lang_config.json": json.dumps({
                "keyboard_name_map": [{"name": name, "display_name": text}
                                      for name, text in keyboards if text is not None],
                "lang_local_keyboard_type_table": [
                    {"lang_local": "en_US", "keyboard_types": [name for name, _ in keyboards]}],
            }).encode()}

        ko, german, edje = ("locale/ko/LC_MESSAGES/lib-morvith-tv.mo", "독일어".encode(),
                            "edje/help_morvith.edj")
        image = f"page: help image '/usr/share/lib-morvith-tv/res/{edje}' "
        text = "interface ko_KR: text 'SID_SETUP_LANGUAGE_GERMAN' "
        one = "keyboard en_US: type 'en_US.a' "
        long_id = "n" * 300
        cut = f"en_US.{long_id}"[:254]
        long = " of 254 bytes, where a longer one is cut; shorten its "
        own = "give each a display_name of its own and list it once"
        for ids, changes, lines in (
                ("1", {edje: None}, [image + "cannot be read; install it anew"]),
                ("1", {edje: b""}, [image + "is empty; install it anew"]),
                ("1", {ko.replace("ko", "en"): None},
                 ["interface en_US: page is not translated at all; "
                  "add the catalogue 'en_US', or one of its language"]),
                ("0;1", {ko: b""}, ["interface ko_KR: page is not translated at all; "
                                    "replace the catalogue 'ko'"]),
                ("0;1;12", korean(b"LANGUAGE_GERMAN", b"LANGUAGE_GERMAX"),
                 [text + "is not translated; add its msgstr to the catalogue 'ko'"]),
                ("0;12", korean(b"TV_KEYBOARD_TYPE", b"TV_KEYBOARD_TYPO"),
                 ["interface ko_KR: text 'COM_TV_KEYBOARD_TYPE' is not translated; "
                  "add its msgstr to the catalogue 'ko'"]),
                ("0;12", korean(german, b"\xff"),
                 [text + "is not UTF-8; correct its msgstr in the catalogue 'ko'"]),
                ("0;12", korean(german, "\u3000".encode()),
                 [text + "is blank; correct its msgstr in the catalogue 'ko'"]),
                ("0;12", korean("키보드의 종류를 설정합니다.".encode(), b"SID_SETUP_LANGUAGE_KOREAN"),
                 ["interface ko_KR: text 'COM_SID_SETTINGS_GNP_CEJUL_SET_KEYBOARD_TYPE' is not "
                  "translated; add its msgstr to the catalogue 'ko'"]),
                ("0;1;12", korean(german, "영어".encode()),
                 [text + "reads '영어', as 'SID_SETUP_LANGUAGE_ENGLISH' does; "
                         "tell them apart in the catalogue 'ko'"]),
                ("0;1", types(("a", "A")), ["keyboard ko_KR: type list has no choices; "
                                            "add keyboard_types for 'ko_KR'"]),
                ("0;1", types(), ["page: type list has no choices in any language; "
                                  "install the keyboard configuration anew, or correct it"]),
                ("1", types(("a", None)), [one + "is shown as its id; give it a display_name"]),
                ("1", types(("a", "\u3000")), [one + "shows no text; give it a display_name"]),
                ("1", types(("a", "\ud800x")),
                 [one + "has a text that is not UTF-8; correct its display_name"]),
                ("1", types(("a", "x" * 253 + "é")), [one + "has a text" + long + "display_name"]),
                ("1", types(("b", "B"), (long_id, "N")),
                 [f"keyboard en_US: type '{cut}' has a value{long}id"]),
                ("1", types((long_id, "N")),
                 [f"keyboard en_US: type list begins with '{cut}' where 'en_US.{long_id}' "
                  "was stored; the two must be the same",
                  f"keyboard en_US: type '{cut}' has a value{long}id"]),
                ("1", types(("b", "B"), ("a", "B")),
                 [one + f"reads 'B', as 'en_US.b' does; {own}"])):
            with self.subTest(lines):
                done = self.check(ids, changes=changes, status=1)
                self.assertEqual(done.stdout.splitlines(), lines)
                self.assertEqual(done.stderr, f"menu_host: findings: {len(lines)}\n")

    def test_check_finds_a_choice_that_is_not_stored(self):
        done = self.check("1", "--json", status=1, restore_signals=False, preexec_fn=lambda:
                          resource.setrlimit(resource.RLIMIT_FSIZE, (0, 0)))
        self.assertEqual(json.loads(done.stdout)["findings"], [
            {"where": "keyboard en_US", "item": "language 'en_US'", "problem": "is not stored",
             "remedy": "see what the log says"}])
        self.assertIn("KVREG", done.stderr)

    def test_says_what_was_wrong_and_what_would_have_been_right(self):
        self.assert_refused("--plugin", "/nowhere.so", says=["/nowhere.so", "--plugin"])
        self.assert_refused("--plugin", f"{LIBRARIES}/libqlog.so.0",
                            says=["not a data provider", "create_provider"])
        for bad, says in (("fails", "create_provider returned 1"),
                          ("lacks", "left the slot set_int")):
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
        self.environment["TMPDIR"] = "/nowhere"
        self.assert_refused("check", says=["'/nowhere'", "TMPDIR"])

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
