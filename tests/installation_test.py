"""What is installed: the library's symbols, and data that its readers take without a complaint."""

import glob
import json
import os
import re
import subprocess
import unittest

STAGE = os.environ["MORVITH_TEST_ROOT"]
LIBRARIES = os.environ["LD_LIBRARY_PATH"]
SOURCE = os.environ["MORVITH_SOURCE"]
RESOURCES = f"{STAGE}/usr/share/lib-morvith-tv/res"


def output(*command):
    return subprocess.run(command, check=True, capture_output=True, text=True).stdout


class InstallationTest(unittest.TestCase):
    def test_library_exports_two_functions(self):
        library = f"{LIBRARIES}/libmorvith_dataprovider.so"
        defined = [line.split()[1:] for line in
                   output("nm", "-D", "--defined-only", library).splitlines()]
        self.assertEqual(defined, [["T", "create_provider"], ["T", "delete_provider"]])
        self.assertNotIn("RUNPATH", output("readelf", "-d", library))

    def test_every_catalogue_has_every_text(self):
        template = f"{SOURCE}/res/locale/lib-morvith-tv.pot"
        catalogues = glob.glob(f"{SOURCE}/res/locale/*.po")
        for po in catalogues:
            output("msgcmp", po, template)
        self.assertEqual(len(glob.glob(f"{RESOURCES}/locale/*/LC_MESSAGES/lib-morvith-tv.mo")),
                         len(catalogues))
        with open(template, encoding="utf-8") as pot:
            known = set(re.findall(r'^msgid "(.+)"$', pot.read(), re.M))
        used = set()
        for source in ("LanguageConfigManager", "morvith_dataprovider"):
            with open(f"{SOURCE}/src/{source}.cpp", encoding="utf-8") as code:
                used |= set(re.findall(r'"((?:COM_|SID_|IDS_|TV_)\w+)"', code.read()))
        self.assertEqual(used, known)

    def test_keyboard_configuration_is_consistent(self):
        with open(f"{RESOURCES}/config/hw_kbd_lang_config.json", encoding="utf-8") as file:
            config = json.load(file)
        names = [row["name"] for row in config["keyboard_name_map"]]
        locales = [row["lang_local"] for row in config["lang_local_keyboard_type_table"]]
        for row in config["lang_local_keyboard_type_table"]:
            types = row["keyboard_types"]
            self.assertEqual(len(types), len(set(types)), row)
            self.assertLessEqual(set(types), set(names), row)
            self.assertIn("us_intl_ibm103i", types, row)
        for keys in (names, locales):
            self.assertEqual(len(keys), len(set(keys)), keys)
        self.assertGreaterEqual(len(locales), 12)


if __name__ == "__main__":
    unittest.main()
