"""What the device's Debian package holds: paths, owners, modes, size, and a hardened library."""

import glob
import os
import re
import subprocess
import tempfile
import unittest

SOURCE = os.environ["MORVITH_SOURCE"]
RESOURCES = "usr/share/lib-morvith-tv/res"
FILES = {
    "usr/lib/<triplet>/libmorvith_dataprovider.so",
    f"{RESOURCES}/config/hw_kbd_lang_config.json",
    f"{RESOURCES}/edje/help_morvith.edj",
    f"{RESOURCES}/image/setting_device_manager_ta_non_bt.webp",
}


def dpkg_deb(option, *arguments):
    package, = glob.glob(f"{os.environ['PACKAGES']}/libmorvith-dataprovider_*.deb")
    return subprocess.run(["dpkg-deb", option, package, *arguments], check=True,
                          capture_output=True, text=True).stdout


class PackageTest(unittest.TestCase):
    def test_holds_the_library_and_its_data_readable_by_all_and_nothing_else(self):
        files = set()
        for line in dpkg_deb("--contents").splitlines():
            mode, owner, *_, path = line.split()
            path = re.sub("^usr/lib/[^/]+/", "usr/lib/<triplet>/", path.removeprefix("./"))
            self.assertEqual((mode, owner), ("drwxr-xr-x" if path.endswith("/") else "-rw-r--r--",
                                             "root/root"), path)
            files |= set() if path.endswith("/") else {path}
        languages = [os.path.splitext(os.path.basename(po))[0]
                     for po in glob.glob(f"{SOURCE}/res/locale/*.po")]
        self.assertEqual(len(languages), 61)
        self.assertEqual(files, FILES | {
            f"{RESOURCES}/locale/{language}/LC_MESSAGES/lib-morvith-tv.mo"
            for language in languages})

    def test_takes_less_than_a_megabyte(self):
        kibibytes = int(dpkg_deb("--field", "Installed-Size"))
        self.assertLess(kibibytes * 1024, 1_000_000)

    def test_library_is_hardened(self):
        with tempfile.TemporaryDirectory() as folder:
            dpkg_deb("--extract", folder)
            library, = glob.glob(f"{folder}/usr/lib/*/libmorvith_dataprovider.so")
            facts = subprocess.run(["readelf", "--wide", "--segments", "--dynamic", "--dyn-syms",
                                    library], check=True, capture_output=True, text=True).stdout
        for sign in (r"GNU_STACK .* RW +0x", "GNU_RELRO ", r"\(FLAGS\) +BIND_NOW",
                     "UND __stack_chk_fail"):
            self.assertTrue(re.search(sign, facts), sign)


if __name__ == "__main__":
    unittest.main()
