"""menu_host as a person and a script use it, where it was built."""

import contextlib
import itertools
import json
import os
import pathlib
import re
import resource
import shlex
import shutil
import sqlite3
import subprocess
import tempfile
import unittest

EMULATOR = os.environ["EMULATOR"].split()
MENU_HOST = pathlib.Path(os.environ["MENU_HOST"])
BAD_PROVIDER = os.environ["BAD_PROVIDER"]
ROOT = MENU_HOST.parents[2]
RESOURCES = "usr/share/lib-morvith-tv/res"
CONFIG = "config/hw_kbd_lang_config.json"
EDJE = "edje/help_morvith.edj"
KOREAN, ENGLISH = (f"locale/{name}/LC_MESSAGES/lib-morvith-tv.mo" for name in ("ko", "en"))

# What is said one after the other, the exit status, and what the answer then has.
DIALOGUE = (
    ("", 0, ["Keyboard Settings\n", f"/{RESOURCES}/{EDJE}\n", "Keyboard Type      (not set)"]),
    ("list type", 1, ["no keyboard types", "menu_host set language en_US"]),
    ("set language ko_KR", 0, ["Language  Korean             ko_KR\n",
                               "Type      Korean (106 keys)  ko_KR.kr_ibm106\n"]),
    ("set type us_intl_ibm103i", 0, ["English (US, International)  ko_KR.us_intl_ibm103i"]),
    ("get type", 0, ["ko_KR.us_intl_ibm103i\n"]),
    ("list type", 0, ["  Korean (106 keys)            ko_KR.kr_ibm106\n",
                      "* English (US, International)  ko_KR.us_intl_ibm103i\n"]),
    ("--ui-language ko", 0, ["키보드 언어  한국어                       ko_KR\n"]),
    ("--ui-language hi_IN", 0, ["कीबोर्ड की भाषा   कोरियाई                      ko_KR\n"]),
    ("info --registry /dev/null/x", 0,
     ["registry        /dev/null/x\n", "languages       61\n", "owner           rask.ovnel",
      "TP_OnScreenUI", "TP_IME", f"help picture    /{RESOURCES}/{EDJE}\n"]),
    ("info --json", 0, [f'"help_image": "/{RESOURCES}/{EDJE}"']),
    ("set language xx_XX", 1, ["none of the choices. 'menu_host list language'", "--force"]),
    ("set language ko-KR", 1, ["none of the choices. Did you mean ko_KR?"]),
    ("set language English", 1, ["Did you mean en_US or en_GB?"]),
    ("set type kr_ibm16", 1, ["Did you mean ko_KR.kr_ibm106?"]),
    ("set language xx_XX --force", 0, ["stored is 'en_US'", "en_US.us_ibm104"]),
    ("--log info set type '\x1b[31m\x9b\nvalue\udcff' --force", 0,
     ["set keyboard_language = ?[31m??value?", "(none of the choices)  \ufffd[31m\ufffd\ufffdvalue"]),
    ("list type", 0, ["stored: '\ufffd[31m\ufffd\ufffdvalue\ufffd', none of the choices"]),
    ("reset", 0, ["Language  (not set)\n", "Type      (not set)\n"]),
    ("get language", 1, ["nothing is stored"]),
    ("list", 2, ["language|type is required"]),
    ("devices --device europe", 0, ["* europe     /", "  global     /"]),
    (f"--registry '{BAD_PROVIDER}'", 1, [f"registry '{BAD_PROVIDER}': file is not a database"]),
    (f"--registry '{BAD_PROVIDER}' reset", 1, ["cannot forget ", "file is not a database"]),
    ("--ui-language eo_EO", 1, ["no catalogue for the language 'eo_EO'", ", zh_TW, zu."]),
    ("--device moon", 1, ["no device profile 'moon'", "europe, global, prototype"]),
    ("--device /etc/passwd", 1, ["'/etc/passwd' is no key file: Key file contains line"]),
    ("--root /nowhere", 1, ["'/nowhere/usr/share/lib-morvith-tv'", "name a root that has it.\n"]),
    ("--plugin /nowhere.so", 1, ["cannot load the plug-in: /nowhere.so"]),
    (f"--plugin '{next(ROOT.glob('usr/lib/*/libqlog.so'))}'", 1, ["does not export create_provider"]),
    (f"--plugin '{BAD_PROVIDER}'", 1, ["left the slot set_int empty"]),
)


def types(names, *ids):
    return json.dumps({
        "keyboard_name_map": [{"name": key, "display_name": name} for key, name in names.items()],
        "lang_local_keyboard_type_table": [
            {"lang_local": "en_US", "keyboard_types": [*names, *ids]}]}).encode()


KOREAN_TEXTS = (ROOT / RESOURCES / KOREAN).read_bytes()
LONG = "n" * 300
CUT = f"en_US.{LONG}"[:254]
# The device's languages, a file of it and its contents (None: no file), what the check finds.
FINDINGS = (
    ("1", EDJE, None, f"page: help image '/{RESOURCES}/{EDJE}' cannot be read; install it anew"),
    ("1", EDJE, b"", f"page: help image '/{RESOURCES}/{EDJE}' is empty; install it anew"),
    ("1", ENGLISH, None, "interface en_US: page is not translated at all; "
                         "add the catalogue 'en_US', or one of its language"),
    ("0;12", KOREAN, KOREAN_TEXTS.replace(b"LANGUAGE_GERMAN", b"LANGUAGE_GERMAX"),
     "interface ko_KR: text 'SID_SETUP_LANGUAGE_GERMAN' is not translated; "
     "add its msgstr to the catalogue 'ko'"),
    ("0;1", CONFIG, types({"b": "B"}),
     "keyboard ko_KR: type list has no choices; add keyboard_types for 'ko_KR'"),
    ("1", CONFIG, b"", "page: type list has no choices in any language; "
                       f"correct '/{RESOURCES}/{CONFIG}', or install it anew"),
    ("1", CONFIG, types({}, "b"),
     "keyboard en_US: type 'en_US.b' is shown as its id; give it a display_name"),
    ("1", CONFIG, types({"b": "x" * 255}),
     "keyboard en_US: type 'en_US.b' has a text of 254 bytes, where a longer one is cut; "
     "shorten its display_name"),
    ("1", CONFIG, types({"b": "B", LONG: "N"}),
     f"keyboard en_US: type '{CUT}' has a value of 254 bytes, where a longer one is cut; "
     "shorten its id"),
)
BAD_PROFILE = """system_language_ids=1; 7x;;99999999999;-3 ;0;-03
system_langauge_ids=1
[devise]
[custom_bool]
smart_control=maybe"""
PROFILE_FINDINGS = (
    "[devise] means nothing", "system_langauge_ids means nothing", "'7x' is no 32-bit integer",
    "'' is no 32-bit integer", "'99999999999' is no 32-bit integer", "'-3' is no language that",
    "'-03' is listed already", "smart_control changes nothing", "smart_control is no boolean")


class MenuHostTest(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)
        self.registry = self.folder / "registry.db"
        self.command = [*EMULATOR, MENU_HOST, "--registry", self.registry]
        self.environment = {**os.environ, "TMPDIR": folder.name}

    def host(self, *arguments, status=0, **options):
        done = subprocess.run([*self.command, *arguments], capture_output="stdout" not in options,
                              text=True, timeout=60, check=False, env=self.environment, **options)
        self.assertEqual(done.returncode, status, done)
        return done

    def profile(self, entries):
        file = self.folder / "device.ini"
        file.write_text(f"[device]\n{entries}\n[custom_bool]\n"
                        "com.velmora/featureconf/bt_profile_bt_smart_control=true")
        return file

    def test_dialogue(self):
        for command, status, says in DIALOGUE:
            done = self.host(*shlex.split(command), status=status)
            for words in says:
                self.assertIn(words, done.stdout + done.stderr, command)

    def test_helps_within_100_columns_and_says_a_wrong_level(self):
        self.assertLessEqual(max(map(len, self.host("--help").stdout.splitlines())), 100)
        self.environment["QLOG_LEVEL"] = "loud"
        self.assertIn("no level 'loud'", self.host(status=1).stderr)

    def test_answers_with_one_document(self):
        for command, value in (("", None), ("set language ko_KR", "ko_KR")):
            page = json.loads(self.host(*command.split(), "--json").stdout)
            self.assertEqual(page["language"]["value"], value)
        listed = json.loads(self.host("list", "type", "--json").stdout)["choices"]
        self.assertEqual([each["value"] for each in listed if each["current"]], ["ko_KR.kr_ibm106"])
        self.host("set", "type", b"\xff", "--force")
        self.assertEqual(json.loads(self.host("--json").stdout)["type"]["value"], "\ufffd")

    def test_takes_from_a_profile_what_is_good_and_finds_the_rest(self):
        (self.folder / "device.ini.ini").write_text("[device]\nsystem_language_ids=0")
        bad = self.profile(BAD_PROFILE)
        done = self.host("list", "language", "--device", bad)
        self.assertEqual([line.split()[-1] for line in done.stdout.splitlines()], ["en_US", "ko_KR"])
        self.assertEqual(done.stderr.count("skipped"), 3)
        done = self.host("check", "--device", bad, status=1)
        for line, words in zip(done.stdout.splitlines(), PROFILE_FINDINGS, strict=True):
            self.assertRegex(line, f"^profile {bad}: .*{re.escape(words)}.*; ")
        done = self.host("check", "--device", self.profile(""), status=1)
        self.assertIn("devinfo_get_value_int_array Error.\n", done.stderr)
        self.assertIn("[device] system_language_ids is missing; list the numbers", done.stdout)

    def test_check_is_silent_over_each_device_and_leaves_the_registry_alone(self):
        self.host("set", "language", "ko_KR")
        for device in ("global", "europe", "prototype"):
            self.assertEqual(self.host("check", "--device", device).stdout, "")
        self.assertEqual(list(self.folder.iterdir()), [self.registry])
        self.assertIn("ko_KR.kr_ibm106", self.host().stdout)

    def test_check_finds_in_an_image_what_would_trip_a_viewer_up(self):
        resources = self.folder / RESOURCES
        for languages, path, contents, finding in FINDINGS:
            shutil.copytree(ROOT / RESOURCES, resources)
            (resources / path).unlink()
            if contents is not None:
                (resources / path).write_bytes(contents)
            profile = self.profile(f"system_language_ids={languages}")
            self.environment["DEVINFO_PROFILE"] = str(profile)
            done = self.host("check", "--root", self.folder, status=1)
            self.assertEqual(done.stdout.splitlines(), [finding])
            shutil.rmtree(resources)

    def test_reports_what_is_not_stored_and_keeps_what_was(self):
        def limit(size):
            return {"restore_signals": False, "status": 1, "preexec_fn": lambda:
                    resource.setrlimit(resource.RLIMIT_FSIZE, (size, size))}
        done = self.host("check", "--json", **limit(0))
        problems = [finding["problem"] for finding in json.loads(done.stdout)["findings"]]
        self.assertIn("cannot be tried: cannot write a temporary device profile", problems[0])
        self.assertEqual(problems[1], "is not stored")
        self.host("set", "language", "ko_KR")
        done = self.host("set", "type", "x" * 80000, "--force", **limit(16384))
        self.assertIn("error KVREG: cannot write", done.stderr)
        self.assertIn("ko_KR.kr_ibm106", self.host().stdout)
        with open("/dev/full", "w", encoding="utf-8") as full:
            self.host("info", stdout=full, status=1)

    def test_keeps_whole_values_when_its_process_is_killed(self):
        self.host("set", "language", "ko_KR")
        journal = self.folder / "registry.db-journal"  # there as long as a write takes
        interrupted = 0
        for language in itertools.islice(itertools.cycle(["de_DE", "ko_KR"]), 100):
            with subprocess.Popen([*self.command, "set", "language", language],
                                  stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL) as writer:
                while writer.poll() is None and not journal.exists():
                    pass
                writer.kill()
            interrupted += journal.exists()
            page = json.loads(self.host("--json").stdout)
            self.assertIn(page["language"]["value"], ("ko_KR", "de_DE"))
            self.assertIn(page["type"]["value"], ("ko_KR.kr_ibm106", "de_DE.de_ibm105"))
        self.assertGreater(interrupted, 0)

    def test_tells_a_null_value_from_memory_that_ran_out(self):
        with contextlib.closing(sqlite3.connect(self.registry, isolation_level=None)) as other:
            other.execute("CREATE TABLE registry (key TEXT PRIMARY KEY, value TEXT)")
            other.execute("INSERT INTO registry VALUES ('db/ime/hardware_keyboard_name', NULL)")
        self.assertIn("its value is NULL", self.host(status=1).stderr)


if __name__ == "__main__":
    unittest.main()
