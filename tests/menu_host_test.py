"""menu_host in its build folder, as users and scripts run it."""

import json
import os
import pathlib
import resource
import shlex
import shutil
import sqlite3
import struct
import subprocess
import tempfile
import unittest

COMMAND = [*os.environ["EMULATOR"].split(), os.environ["MENU_HOST"]]
BAD_PROVIDER = os.environ["BAD_PROVIDER"]
ROOT = pathlib.Path(COMMAND[-1]).parents[2]
RESOURCES = "usr/share/lib-morvith-tv/res"
CONFIG, EDJE = "config/hw_kbd_lang_config.json", "edje/help_morvith.edj"
KOREAN, ENGLISH = (f"locale/{name}/LC_MESSAGES/lib-morvith-tv.mo" for name in ("ko", "en"))

# Commands in this order, the exit status of each, and parts of its output.
DIALOGUE = (
    ("", 0, ["Keyboard Settings\n", f"/{RESOURCES}/{EDJE}\n", "Keyboard Type      (not set)"]),
    ("list type", 1, ["no language is stored", "'menu_host set language ko_KR' stores one"]),
    ("lst --jsn", 2, ["did you mean list?", "did you mean --json?"]),
    ("set language ko_KR", 0, [" ko_KR\nKeyboard Type      Korean (106 keys)  ko_KR.kr_ibm106\n"]),
    ("set type us_intl_ibm103i", 0, ["English (US, International)  ko_KR.us_intl_ibm103i"]),
    ("get type", 0, ["ko_KR.us_intl_ibm103i\n"]),
    ("list type", 0, ["  Korean (106 keys)            ko_KR", "* English (US, International)  k"]),
    ("list type --json", 0, ['keys)",\n      "current": false', 'nal)",\n      "current": true']),
    ("--ui-language fr list language", 0, ["Anglais (Royaume-Uni)  "]),
    ("--ui-language ko", 0, ["키보드 언어  한국어            ko_KR\n", "영어(미국, 국제)  ko_KR."]),
    ("--ui-language hi_IN", 0, ["कीबोर्ड की भाषा   कोरियाई                     ko_KR\n"]),
    ("info --registry /dev/null/x", 0, ["registry        /dev/null/x\n", "languages       61\n"]),
    ("info --json", 0, [f'"help_image": "/{RESOURCES}/{EDJE}"']),
    ("set language xx_XX", 1, ["unknown language 'xx_XX'; 'menu_host list language'", "--force"]),
    ("set language English", 1, ["did you mean en_US or en_GB?"]),
    ("set type kr_ibm16", 1, ["unknown type 'kr_ibm16'; did you mean ko_KR.kr_ibm106?"]),
    ("set type '\x1b'", 1, ["unknown type '\ufffd'"]),
    ("set language xx_XX --force", 0, ["stored 'en_US' instead of 'xx_XX'", "en_US.us_ibm104"]),
    ("--log info set type '\x1b[31m\x9b\nvalue\udcff' --force", 0,
     ["keyboard_language = ?[31m??value?", "the choices)  \ufffd[31m\ufffd\ufffdvalue\ufffd\n"]),
    ("list type", 0, ["stored: '\ufffd[31m\ufffd\ufffdvalue\ufffd', not one of the choices"]),
    ("--json", 0, ['"value": "\\u001b[31m\x9b\\nvalue\ufffd"']),
    ("reset", 0, ["Language  (not set)\n", "Type      (not set)\n"]),
    ("get language", 1, ["nothing is stored"]),
    ("devices --device europe", 0, ["* europe     /", "  global     /"]),
    (f"--registry '{BAD_PROVIDER}'", 1, [f"registry '{BAD_PROVIDER}': file is not a database"]),
    ("--registry /dev/null", 1, ["registry '/dev/null': not a regular file"]),
    ("--device /dev/null", 1, ["'/dev/null': not a regular file"]),
    ("--registry /nowhere/x", 1, ["cannot open the folder '/nowhere': No such file"]),
    ("--ui-language eo_EO", 1, ["no catalogue for the language 'eo_EO'", ", zh_TW, zu\n"]),
    ("--device moon", 1, ["unknown device profile 'moon'; available: europe, global, prototype;"]),
    ("--device /etc/passwd", 1, ["cannot read the device profile '/etc/passwd': Key file"]),
    ("--root /nowhere", 1, ["'/nowhere/usr/share/lib-morvith-tv'", "or pass another root\n"]),
    ("--log loud", 2, ["unknown log level 'loud'; available: info"]),
    ("--plugin /nowhere.so", 1, ["cannot load the plug-in: /nowhere.so"]),
    ("--plugin libc.so.6", 1, ["does not export create_provider"]),
    (f"--plugin '{BAD_PROVIDER}'", 1, ["set_int"]),
)

LONG = "n" * 300
TYPES = json.dumps({
    "keyboard_name_map": [{"name": "t", "display_name": LONG}, {"name": LONG, "display_name": "N"},
                          {"name": "odd", "display_name": "\ufffd"}],
    "lang_local_keyboard_type_table": [
        {"lang_local": "en_US", "keyboard_types": ["t", "id", LONG, "odd"]}]}).encode()
MO = (ROOT / RESOURCES / KOREAN).read_bytes()
WORDS = 7 + 4 * MO[8]  # in the header and the tables
TEXTS = int.from_bytes(MO[16:20], "little")  # the offset of their table


def catalogue(offset, word):
    return MO[:offset] + word.to_bytes(4, "little") + MO[offset + 4:]


BIG_ENDIAN = struct.pack(f">{WORDS}I", *struct.unpack_from(f"<{WORDS}I", MO)) + MO[4 * WORDS:]
DAMAGED = (
    (b"", "it ends in its header"), (catalogue(0, 0), "it does not begin like a catalogue"),
    (catalogue(4, 1), "its revision"), (catalogue(8, 2**31), "a table is outside the file"),
    (catalogue(20, 2), "its hash table"), (catalogue(TEXTS + 12, 0), "its strings overlap"),
    (MO[:-1], "a string has no end"), (MO[:-2] + b"\xff\0", "a string is not UTF-8"),
    (MO.replace(b"\0TV_", b"\0AV_"), "its message ids"),
    (MO.replace(b"UTF-8", b"UTF-9"), "its charset is not UTF-8"),
)
GOOD_PROFILE = ("[device]\nsystem_language_ids=1;0;12;17\n[custom_bool]\n"
                "com.velmora/featureconf/bt_profile_bt_smart_control=true")
# The contents of files (None: a FIFO), and a part of each finding.
IMAGE_FINDINGS = (
    ({ENGLISH: catalogue(8, 1), KOREAN: MO.replace(b"_GERMAN", b"_GERMAX"), CONFIG: TYPES}, (
        "keyboard en_US: type 'en_US.t' has a text", "keyboard en_US: type 'en_US.id' is shown as",
        f"keyboard en_US: type 'en_US.{LONG[6:254]}' has a value of 254 bytes",
        "keyboard en_US: type 'en_US.odd' has U+FFFD or a control character in its text",
        "keyboard ko_KR: type list has no choices; ", "keyboard de_DE: type list has no choices; ",
        "keyboard en_GB: type list has no choices; ",
        "interface en_US: page is not translated at all; translate it in en.po",
        "ko_KR: text 'SID_SETUP_LANGUAGE_GERMAN' is not translated; translate it in ko.po")),
    ({ENGLISH: b""}, (f"{ENGLISH}' is damaged",)),  # en_US and en_GB share it
    ({EDJE: b"", CONFIG: b"{}"}, (f"{EDJE}' is empty", "type list has no choices in any language")),
    ({CONFIG: b""}, (f"configuration '/{RESOURCES}/{CONFIG}' is empty",)),
    ({KOREAN: BIG_ENDIAN}, ()),
    *(({KOREAN: file}, (f"{KOREAN}' is damaged: {reason}",)) for file, reason in DAMAGED),
    ({path: None for path in (EDJE, CONFIG, KOREAN)}, ["is not a regular file; install"] * 3),
)
BAD_PROFILE = ("[device]\nsystem_language_ids=1; 7x;;99999999999;-3 ;0;-03\nsystem_langauge_ids=1\n"
               "[devise]\n[custom_bool]\nsmart_control=maybe")
PROFILE_FINDINGS = (
    "[devise] is unknown", "[device] system_langauge_ids is unknown", "2 '7x' is not a 32-bit",
    "3 '' is not a 32-bit integer", "4 '99999999999' is not a 32-bit integer; fix or remove it",
    "ids -3 is an unknown language id; fix or remove it", "ids -3 is a duplicate; remove it",
    "smart_control changes nothing on the page; did you mean com", "smart_control is not a boolean")


class MenuHostTest(unittest.TestCase):
    def setUp(self):
        self.folder = pathlib.Path(self.enterContext(tempfile.TemporaryDirectory()))
        self.profile = self.folder / "device.ini"
        registry = str(self.folder / "registry.db")
        self.environment = {**os.environ, "KVREG_FILE": registry, "TMPDIR": str(self.folder),
                            "LC_ALL": "C.UTF-8"}

    def host(self, *arguments, status=0, **options):
        done = subprocess.run([*COMMAND, *arguments], capture_output="stdout" not in options,
                              text=True, timeout=60, check=False, env=self.environment, **options)
        self.assertEqual(done.returncode, status, done)
        return done

    def check(self, *arguments, findings):
        done = self.host("check", "--device", self.profile, *arguments, status=bool(findings))
        for line, finding in zip(done.stdout.splitlines(), findings, strict=True):
            self.assertIn(finding, line)

    def test_dialogue(self):
        for command, status, parts in DIALOGUE:
            done = self.host(*shlex.split(command), status=status)
            for part in parts:
                self.assertIn(part, done.stdout + done.stderr, command)

    def test_uses_the_language_of_the_users_locale_if_it_is_translated(self):
        for locale, title in (("de_AT.UTF-8", "Tastatureinstellungen"), ("eo", "Keyboard Settings")):
            self.environment |= {"LC_ALL": "", "LC_MESSAGES": locale, "LANG": "ko_KR.UTF-8"}
            self.assertIn(f"{title}\n", self.host().stdout)

    def test_help_fits_a_terminal(self):
        self.assertNotRegex(self.host("--help").stdout, ".{81}")

    def test_uses_good_entries_of_a_profile_and_finds_bad_ones(self):
        (self.folder / "device.ini.ini").write_text("[device]\nsystem_language_ids=0")
        self.profile.write_text(BAD_PROFILE)
        self.environment["DEVINFO_PROFILE"] = str(self.profile)
        listed = self.host("list", "language").stdout.split()
        self.assertEqual(listed, ["English", "en_US", "Korean", "ko_KR"])
        self.check(findings=PROFILE_FINDINGS)
        self.profile.write_text("")
        self.check(findings=[f"profile {self.profile}: [device] system_language_ids has no lang"])

    def test_check_finds_nothing_on_good_devices_and_leaves_no_files(self):
        for device, log_lines in (("global", 0), ("europe", 0), ("prototype", 2)):
            done = self.host("check", "--device", device)
            self.assertEqual((done.stdout, done.stderr.count("\n")), ("", log_lines))
        self.assertEqual(list(self.folder.iterdir()), [])

    def test_check_finds_faults_of_an_image(self):
        self.profile.write_text(GOOD_PROFILE)
        self.environment |= {"DEVINFO_PROFILE": str(self.profile), "ROOTFS_DIR": str(self.folder)}
        for files, findings in IMAGE_FINDINGS:
            shutil.copytree(ROOT / RESOURCES, self.folder / RESOURCES, dirs_exist_ok=True)
            for path, contents in files.items():
                file = self.folder / RESOURCES / path
                file.unlink()
                os.mkfifo(file) if contents is None else file.write_bytes(contents)
            self.check("--root", self.folder, findings=findings)

    def test_reports_a_full_disk_and_keeps_stored_values(self):
        def limit(size):
            return {"restore_signals": False, "status": 1, "preexec_fn": lambda:
                    resource.setrlimit(resource.RLIMIT_FSIZE, (size, size))}
        self.assertRegex(self.host("check", "--json", **limit(0)).stdout,
                         '(?s)cannot be checked: cannot write a temp.*"problem": "is not stored"')
        self.host("set", "language", "ko_KR")
        done = self.host("set", "type", "x" * 80000, "--force", **limit(16384))
        self.assertIn("the provider stored 'ko_KR.kr_ibm106' instead of 'xxx", done.stderr)
        self.host("info", stdout=os.open("/dev/full", os.O_WRONLY), status=1)

    def test_changes_no_database_that_is_not_a_registry(self):
        with sqlite3.connect(self.environment["KVREG_FILE"]) as database:
            database.execute("CREATE TABLE other (x)")
        self.assertIn("no such table: registry; fix", self.host("reset", status=1).stderr)
        self.assertEqual(len(list(database.execute("SELECT 1 FROM sqlite_master"))), 1)
        with database:
            database.execute("CREATE TABLE registry (key, value)")
            database.execute("INSERT INTO registry VALUES ('db/ime/keyboard_language_name', NULL)")
        self.assertIn("nothing is stored", self.host("get", "language", status=1).stderr)

    def test_creates_the_state_folder_only_to_store(self):
        del self.environment["KVREG_FILE"]
        state = self.folder / "state"
        self.environment["XDG_STATE_HOME"] = str(state)
        for command, is_created in (("reset", False), ("list language", False),
                                    ("set language ko_KR", True)):
            self.host(*command.split())
            self.assertEqual(state.exists(), is_created, command)
        self.environment["XDG_STATE_HOME"] = "state"
        self.assertIn("'state/morvith-menu-host' is not an abs", self.host(status=1).stderr)

    def test_keeps_whole_values_if_it_is_killed(self):
        self.host("set", "language", "ko_KR")
        journal = self.folder / "registry.db-journal"  # exists during a write
        interrupted = 0
        for language in ["de_DE", "ko_KR"] * 50:
            with subprocess.Popen([*COMMAND, "set", "language", language], env=self.environment,
                                  stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL) as writer:
                while writer.poll() is None and not journal.exists():
                    pass
                writer.kill()
            interrupted += journal.exists()
            self.assertRegex(self.host("get", "language").stdout, "^(ko_KR|de_DE)$")
            self.assertRegex(self.host("get", "type").stdout, "^(ko_KR.kr_ibm106|de_DE.de_ibm105)$")
        self.assertGreater(interrupted, 0)


if __name__ == "__main__":
    unittest.main()
