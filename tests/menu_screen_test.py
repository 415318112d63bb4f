"""menu_screen as users run it: its check, a picture, and a window with keys pressed."""

import contextlib
import itertools
import json
import os
import pathlib
import resource
import shutil
import signal
import sqlite3
import subprocess
import tempfile
import time
import unittest

MENU_SCREEN = pathlib.Path(os.environ["MENU_SCREEN"])
ROOT = MENU_SCREEN.parents[2]
RESOURCES = "usr/share/lib-morvith-tv/res"
CONFIG = "config/hw_kbd_lang_config.json"
KOREAN = "locale/ko/LC_MESSAGES/lib-morvith-tv.mo"
NAMES = {"long": "W" * 40, "odd": "\U0001FAE8 key", "mark": "a\u0BBE", "good": "Good",
         "translated": "Short"}


class MenuScreenTest(unittest.TestCase):
    def setUp(self):
        self.folder = pathlib.Path(self.enterContext(tempfile.TemporaryDirectory()))

    def screen(self, *arguments, status=0):
        environment = {**os.environ, "DISPLAY": "", "KVREG_FILE": str(self.folder / "registry.db")}
        done = subprocess.run([MENU_SCREEN, *arguments], capture_output=True, text=True, timeout=120,
                              check=False, env=environment, restore_signals=False)
        self.assertEqual(done.returncode, status, done)
        return done

    def test_check_finds_nothing_in_installed_files_and_finds_faults_of_an_image(self):
        self.assertEqual(self.screen("check").stdout, "")
        self.assertEqual(list(self.folder.iterdir()), [])  # uses a temporary registry
        shutil.copytree(ROOT / RESOURCES, self.folder / RESOURCES)
        (self.folder / RESOURCES / CONFIG).write_text(json.dumps({
            "keyboard_name_map": [{"name": key, "display_name": NAMES[key]} for key in NAMES],
            "lang_local_keyboard_type_table": [
                {"lang_local": "en_US", "keyboard_types": list(NAMES)}]}))
        profile = self.folder / "device.ini"
        profile.write_text("[device]\nsystem_language_ids=0;1;1\n[custom_bool]\n")
        damaged = self.folder / RESOURCES / KOREAN
        contents = damaged.read_bytes()
        damaged.write_bytes(contents[:16] + b"\xff\xff\xff\x7f" + contents[20:])  # gettext ends
        catalogue = self.folder / RESOURCES / "locale/en/LC_MESSAGES/lib-morvith-tv.mo"
        text = "Set the language of the keyboard."
        subprocess.run(["msgfmt", "-o", catalogue, "-"], check=True, text=True, input=(
            'msgid ""\nmsgstr "Content-Type: text/plain; charset=UTF-8\\n"\n'
            f'msgid "COM_SID_SETTINGS_GNP_CEJUL_SET_KEYBOARD_LANGUAGE"\nmsgstr "{text * 12}"\n'
            f'msgid "Short"\nmsgstr "{"M" * 40}"\n'))
        done = self.screen("check", "--root", self.folder, "--device", profile, "--ui-language", "ko",
                           status=1)
        found = done.stdout.splitlines()
        for words in (f"text '{text * 12}' is ", f"text '{NAMES['long']}' is ", " px wide in 'text'",
                      f"text '{'M' * 40}' is ", f"{KOREAN}' is damaged: a table is outside",
                      f"text '{NAMES['odd']}' has characters that no installed font has: \U0001FAE8;",
                      f"text '{NAMES['mark']}' has marks that are not in the font of "):
            self.assertTrue(any(words in line for line in found), (words, found))
        self.assertNotIn("'Good'", done.stdout)

    def test_draws_a_picture_without_a_display(self):
        self.screen("--picture", picture := self.folder / "page.png")
        drawn = picture.read_bytes()
        self.assertEqual(drawn[:24], b"\x89PNG\r\n\x1a\n\0\0\0\rIHDR\0\0\x07\x80\0\0\x048")
        self.assertRegex(self.screen(status=1).stderr, "^menu_screen: no display")
        resource.setrlimit(resource.RLIMIT_FSIZE, (4000, resource.RLIM_INFINITY))  # a full disk
        self.addCleanup(resource.setrlimit, resource.RLIMIT_FSIZE, (resource.RLIM_INFINITY,) * 2)
        self.screen("--ui-language", "ko", "--picture", picture, status=1)
        self.assertEqual(picture.read_bytes(), drawn)

    def test_waits_for_a_locked_registry_at_most_one_second(self):
        seconds = []
        with contextlib.closing(sqlite3.connect(self.folder / "registry.db")) as registry:
            registry.execute("CREATE TABLE registry (key TEXT PRIMARY KEY, value TEXT NOT NULL)")
            for lock in ("BEGIN", "BEGIN EXCLUSIVE"):
                registry.execute(lock)
                runs = []
                for _ in range(3):  # the fastest run counts, because the machine may be busy
                    start = time.monotonic()
                    done = self.screen("--picture", self.folder / "page.png")
                    runs.append(time.monotonic() - start)
                seconds.append(min(runs))
                registry.rollback()
        self.assertIn("database is locked", done.stderr)
        self.assertLess(seconds[1] - seconds[0], 1)

    def test_reports_problems(self):
        with contextlib.closing(sqlite3.connect(self.folder / "registry.db")) as registry:
            registry.execute("CREATE TABLE registry (key TEXT PRIMARY KEY, value TEXT NOT NULL)")
            registry.execute("INSERT INTO registry VALUES ('db/ime/keyboard_language_name', 'xx_XX')")
            registry.commit()
        shutil.copytree(ROOT / RESOURCES, self.folder / RESOURCES)
        (self.folder / RESOURCES / "edje/help_morvith.edj").write_text("damaged")
        errors = self.screen("--root", self.folder, "--picture", self.folder / "page.png").stderr
        self.assertRegex(errors, "^menu_screen: 'xx_XX' is not a choice for .*\n"
                                 "(menu_screen: .*\n)?menu_screen: cannot show the help image '.*'\n")


@unittest.skipUnless(all(map(shutil.which, ("Xvfb", "xdotool", "import", "compare"))),
                     "Xvfb, xdotool or ImageMagick is missing")
class WindowTest(unittest.TestCase):
    def setUp(self):
        self.folder = pathlib.Path(self.enterContext(tempfile.TemporaryDirectory()))
        read, write = os.pipe()
        screen = ["-displayfd", str(write), "-screen", "0", "1920x1080x24"]
        self.server = subprocess.Popen(["Xvfb", *screen], pass_fds=[write],
                                       stderr=subprocess.DEVNULL)
        self.addCleanup(self.server.wait)
        self.addCleanup(self.server.terminate)
        self.environment = {**os.environ, "DISPLAY": f":{os.read(read, 16).decode().strip()}",
                            "KVREG_FILE": str(self.folder / "registry.db")}

    def tool(self, *command):
        return subprocess.run(command, env=self.environment, check=command[0] != "compare",
                              timeout=60, text=True, capture_output=True)

    @contextlib.contextmanager
    def window(self, *arguments):
        with subprocess.Popen([MENU_SCREEN, *arguments], env=self.environment, text=True,
                              stderr=subprocess.PIPE) as window:
            try:
                find = "search --sync --onlyvisible --name menu_screen"
                self.tool("xdotool", *find.split(), "windowfocus", "--sync")
                yield window
            finally:
                window.kill()

    def hold(self, key, seconds):
        self.tool("xdotool", "keydown", key, "sleep", str(seconds), "keyup", key)

    def assert_shows(self, *arguments):
        picture, shown = self.folder / "picture.png", self.folder / "shown.png"
        self.tool(MENU_SCREEN, *arguments, "--picture", picture)
        difference, end = 1.0, time.monotonic() + 10
        while difference >= 0.01 and time.monotonic() < end:
            self.tool("import", "-silent", "-window", "root", shown)
            compared = self.tool("compare", "-metric", "RMSE", picture, shown, "null:").stderr
            difference = float(compared.split("(")[1].rstrip(")"))
        self.assertLess(difference, 0.01, arguments)

    def test_shows_the_picture_in_its_fonts(self):
        for arguments in (["ar"], ["ta", "--open", "language"], ["ja", "--open", "type"], ["am"]):
            with self.window("--ui-language", *arguments) as window:
                self.assert_shows("--ui-language", *arguments)
                fonts = pathlib.Path(f"/proc/{window.pid}/maps").read_text()
                self.assertIn("NotoSans-Regular", fonts)
                self.assertNotIn("DejaVu", fonts)
        pixels = self.tool("convert", self.folder / "shown.png", "-crop", "1x20+500+195", "txt:").stdout
        self.assertEqual(pixels.count("#FFFFFF"), 6, pixels)  # the frame of the focused row

    def test_a_held_key_acts_once_except_up_and_down(self):
        with self.window() as window:
            for key, *shown in (("Return", "--open", "language"), ("Down",), ("Return",)):
                self.hold(key, 2)
                if key == "Return":
                    self.assert_shows(*shown)
            stored = self.tool(MENU_SCREEN.parent / "menu_host", "get", "language").stdout
            self.assertNotIn(stored, ("ko_KR\n", "en_US\n"))  # the first two choices
            self.hold("Return", 0)
            self.hold("Escape", 2)
            self.assert_shows()
            self.hold("Escape", 0)
            self.assertEqual(window.wait(60), 0)

    def assert_stores(self, value):
        end = time.monotonic() + 10
        while value not in self.tool(MENU_SCREEN.parent / "menu_host").stdout:
            self.assertLess(time.monotonic(), end, value)

    def test_keys_choose_and_store(self):
        registry = self.folder / "registry.db"
        for language, to_page in (("en", "Left"), ("ar", "Right")):
            registry.unlink(missing_ok=True)
            with self.window("--ui-language", language):
                for keys, stored in (
                        ("Down Return Return", "ko_KR"),  # types need a stored language
                        (f"Return Down {to_page} Return KP_Enter", "ko_KR"),
                        ("Return Down Down Return", "es_MX"),
                        ("Down Return Down Return", "es_MX.latam_nodeadkeys_ibm105"),
                        ("Up Return End Down Return", "km_KH"),
                        ("Return Prior Return", "sw_KE"),
                        ("Return XF86ChannelUp XF86ChannelDown Next Return", "km_KH"),
                        ("Return Home Up Next Return", "fi_FI")):
                    self.tool("xdotool", "key", "--delay", "50", *keys.split())
                    self.assert_stores(stored)
                self.tool(MENU_SCREEN.parent / "menu_host", "set", "language", "ko_KR")
                self.tool("xdotool", "key", "--delay", "50", "Return", "Down", "Return")
                self.assert_stores("en_US")  # the list opens at the language that is stored now

    def test_a_failed_choice_keeps_the_list_open(self):
        with self.window():
            self.hold("Return", 0)
            self.assert_shows("--open", "language")
            with contextlib.closing(sqlite3.connect(self.folder / "registry.db")) as registry:
                registry.execute("CREATE TABLE registry (key TEXT PRIMARY KEY, value TEXT NOT NULL)")
                registry.execute("BEGIN EXCLUSIVE")
                self.hold("Return", 0)
                time.sleep(2)  # storing a choice waits less than this for the registry
            self.hold("Return", 0)
            self.assert_stores("ko_KR")

    def test_ends_with_the_window_the_session_and_the_display(self):
        destroy = "xdotool search --name menu_screen windowclose".split()
        for end, status in ((lambda window: self.tool(*destroy), 0),
                            (lambda window: window.send_signal(signal.SIGHUP), 0),
                            (lambda window: self.server.terminate(), 1)):
            with self.window() as window:
                self.assert_shows()
                end(window)
                errors = window.communicate(timeout=60)[1]
                self.assertEqual(window.returncode, status, errors)
        self.assertIn("menu_screen: the connection to the display was lost", errors)


@unittest.skipUnless(shutil.which("weston"), "weston is missing")
class WaylandTest(unittest.TestCase):
    def test_opens_a_window(self):
        folder = pathlib.Path(self.enterContext(tempfile.TemporaryDirectory()))
        environment = {**os.environ, "DISPLAY": "", "XDG_RUNTIME_DIR": str(folder),
                       "WAYLAND_DISPLAY": "wayland", "WAYLAND_DEBUG": "client",
                       "KVREG_FILE": str(folder / "registry.db")}
        weston = subprocess.Popen(
            ["weston", "--backend=headless-backend.so", "--socket=wayland", "--no-config"],
            env=environment, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        self.addCleanup(weston.wait)
        self.addCleanup(weston.terminate)
        end = time.monotonic() + 60
        while not (folder / "wayland").exists():
            self.assertLess(time.monotonic(), end)
        with subprocess.Popen(["timeout", "60", MENU_SCREEN], env=environment, text=True,
                              stderr=subprocess.PIPE) as window:
            events = "".join(itertools.takewhile(lambda line: "enter(" not in line, window.stderr))
            window.terminate()
            self.assertEqual(window.wait(60), 0, events)  # otherwise `timeout` ended it


if __name__ == "__main__":
    unittest.main()
