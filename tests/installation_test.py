"""What is installed: the library's symbols, and the data that belongs to it."""

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

    def test_template_has_the_texts_of_the_library_and_each_catalogue_is_installed(self):
        template = f"{SOURCE}/res/locale/lib-morvith-tv.pot"
        self.assertEqual(len(glob.glob(f"{RESOURCES}/locale/*/LC_MESSAGES/lib-morvith-tv.mo")),
                         len(glob.glob(f"{SOURCE}/res/locale/*.po")))
        with open(template, encoding="utf-8") as pot:
            known = set(re.findall(r'^msgid "(.+)"$', pot.read(), re.M))
        used = set()
        for source in ("LanguageConfigManager", "morvith_dataprovider"):
            with open(f"{SOURCE}/src/{source}.cpp", encoding="utf-8") as code:
                used |= set(re.findall(r'"((?:COM_|SID_|IDS_|TV_)\w+)"', code.read()))
        self.assertEqual(used, known)

    def test_every_locale_offers_the_type_that_the_library_falls_back_to_first_or_last(self):
        with open(f"{RESOURCES}/config/hw_kbd_lang_config.json", encoding="utf-8") as file:
            for row in json.load(file)["lang_local_keyboard_type_table"]:
                types = row["keyboard_types"]
                self.assertIn("us_intl_ibm103i", (types[0], types[-1]), row)


if __name__ == "__main__":
    unittest.main()
