"""The two help pictures: what is in them, and that any folder and user builds the same files."""

import os
import re
import subprocess
import tempfile
import unittest
from xml.etree import ElementTree

STAGE = os.environ["MORVITH_TEST_ROOT"]
SOURCE = os.environ["MORVITH_SOURCE"]
RESOURCES = f"{STAGE}/usr/share/lib-morvith-tv/res"
EDJ = "help_morvith.edj"
WEBP = "setting_device_manager_ta_non_bt.webp"
INSTALLED = {EDJ: f"{RESOURCES}/edje/{EDJ}", WEBP: f"{RESOURCES}/image/{WEBP}"}


def output(*command, env=None):
    return subprocess.run(command, check=True, capture_output=True, text=True, env=env).stdout


class PicturesTest(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        folder = tempfile.TemporaryDirectory()
        cls.addClassCleanup(folder.cleanup)
        cls.rebuilt = f"{folder.name}/res"
        env = {**os.environ, "HOME": "/dev/null"}
        output("cmake", "-S", SOURCE, "-B", folder.name, env=env)
        output("cmake", "--build", folder.name, "--target", "resources", env=env)
        cls.env = {**os.environ, "HOME": folder.name}  # EFL's tools keep caches there

    def test_are_the_same_from_any_build_folder_and_readable(self):
        for name, path in INSTALLED.items():
            with open(path, "rb") as installed, open(f"{self.rebuilt}/{name}", "rb") as rebuilt:
                self.assertEqual(installed.read(), rebuilt.read(), name)
            self.assertEqual(os.stat(path).st_mode & 0o777, 0o644, name)

    def test_layout_has_a_vector_and_two_texts(self):
        listed = output("edje_inspector", "--mode=parts", "--group=help", INSTALLED[EDJ],
                        env=self.env)
        parts = dict(re.findall(r"part { name: '(\w+)'; type: (\w+);", listed))
        self.assertEqual(parts, {"background": "RECT", "picture": "VECTOR",
                                 "title": "TEXT", "help": "TEXTBLOCK"})
        self.assertLess(os.path.getsize(INSTALLED[EDJ]), 64 * 1024)

    def test_image_fills_a_full_hd_screen(self):
        info = output("webpinfo", INSTALLED[WEBP])
        self.assertRegex(info, r"Width: 1920\n\s*Height: 1080\n(.*\n)*.*Lossless(.*\n)*No error")

    def test_drawings_differ_in_the_connection_and_need_no_font(self):
        drawable = {"svg", "title", "g", "rect", "circle", "ellipse", "path"}  # by EFL as well
        for connection, other in (("wireless", "cable"), ("cable", "wireless")):
            root = ElementTree.parse(f"{self.rebuilt}/help_keyboard_{connection}.svg").getroot()
            self.assertLessEqual({node.tag.split("}")[1] for node in root.iter()}, drawable)
            shown = {node.get("id"): node.get("display") for node in root.iter()}
            self.assertEqual((shown[connection], shown[other]), ("inline", "none"), connection)


if __name__ == "__main__":
    unittest.main()
