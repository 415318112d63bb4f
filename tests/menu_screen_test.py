"""menu_screen as users run it: its check, a picture, and a window with keys pressed."""

import json
import os
import pathlib
import shutil
import subprocess
import tempfile
import time
import unittest

MENU_SCREEN = pathlib.Path(os.environ["MENU_SCREEN"])
ROOT = MENU_SCREEN.parents[2]
RESOURCES = "usr/share/lib-morvith-tv/res"
CONFIG = "config/hw_kbd_lang_config.json"
NAMES = {"long": "W" * 40, "odd": "\U0001FAE8 key", "good": "Good"}


class MenuScreenTest(unittest.TestCase):
    def setUp(self):
        self.folder = pathlib.Path(self.enterContext(tempfile.TemporaryDirectory()))

    def screen(self, *arguments, status=0):
        environment = {**os.environ, "DISPLAY": "", "KVREG_FILE": str(self.folder / "registry.db")}
        done = subprocess.run([MENU_SCREEN, *arguments], capture_output=True, text=True, timeout=120,
                              check=False, env=environment)
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
        profile.write_text("[device]\nsystem_language_ids=1;1\n[custom_bool]\n")
        catalogue = self.folder / RESOURCES / "locale/en/LC_MESSAGES/lib-morvith-tv.mo"
        text = "Set the language of the keyboard."
        subprocess.run(["msgfmt", "-o", catalogue, "-"], check=True, text=True, input=(
            'msgid ""\nmsgstr "Content-Type: text/plain; charset=UTF-8\\n"\n'
            f'msgid "COM_SID_SETTINGS_GNP_CEJUL_SET_KEYBOARD_LANGUAGE"\nmsgstr "{text * 12}"\n'))
        done = self.screen("check", "--root", self.folder, "--device", profile, status=1)
        found = done.stdout.splitlines()
        for words in (f"text '{text * 12}' is ", f"text '{NAMES['long']}' is ", " px wide in 'text'",
                      f"text '{NAMES['odd']}' has characters that no installed font has: \U0001FAE8;"):
            self.assertTrue(any(words in line for line in found), (words, found))
        self.assertNotIn("'Good'", done.stdout)

    def test_draws_pictures_without_a_display(self):
        drawn = {}
        for opened in ("language", "type"):
            picture = self.folder / f"{opened}.png"
            self.screen("--open", opened, "--picture", picture)
            drawn[opened] = picture.read_bytes()
            self.assertEqual(drawn[opened][:24], b"\x89PNG\r\n\x1a\n\0\0\0\rIHDR\0\0\x07\x80\0\0\x048")
            self.assertGreater(len(drawn[opened]), 20000)
        self.assertNotEqual(*drawn.values())
        done = self.screen("--picture", picture, "--registry", MENU_SCREEN)
        self.assertEqual(done.stderr.count("menu_screen: cannot read 'db/ime/"), 2)
        self.assertIn("no display", self.screen(status=1).stderr)
        self.assertIn("cannot write the picture",
                      self.screen("--picture", "/nowhere/page.png", status=1).stderr)

    @unittest.skipUnless(shutil.which("Xvfb") and shutil.which("xdotool"), "Xvfb or xdotool is missing")
    def test_stores_a_choice_in_a_window_and_closes(self):
        read, write = os.pipe()
        server = subprocess.Popen(["Xvfb", "-displayfd", str(write)], pass_fds=[write],
                                  stderr=subprocess.DEVNULL)
        self.addCleanup(server.wait)
        self.addCleanup(server.terminate)
        environment = {**os.environ, "DISPLAY": f":{os.read(read, 16).decode().strip()}"}
        registry = self.folder / "registry.db"
        with subprocess.Popen([MENU_SCREEN, "--registry", registry], env=environment) as window:
            keys = "search --sync --name menu_screen windowfocus --sync key Return key Return"
            subprocess.run(["xdotool", *keys.split()], env=environment, check=True, timeout=60,
                           capture_output=True)
            while not registry.exists() and window.poll() is None:
                time.sleep(0.01)
            subprocess.run(["xdotool", "key", "Escape"], env=environment, check=True, timeout=60)
            self.assertEqual(window.wait(60), 0)
        self.assertIn(b"ko_KR.kr_ibm106", registry.read_bytes())


if __name__ == "__main__":
    unittest.main()
