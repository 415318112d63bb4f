"""The Debian packages: their contents, the released library, and a host built and run from them."""

import glob
import json
import os
import pathlib
import re
import shutil
import subprocess
import tempfile
import unittest

SOURCE = pathlib.Path(os.environ["MORVITH_SOURCE"])
EMULATOR = os.environ["EMULATOR"].split()
PACKAGES = sorted(glob.glob(f"{os.environ['PACKAGES']}/*.deb"))
NATIVE_PACKAGES = sorted(glob.glob(f"{SOURCE}/build-release/test-packages/*.deb"))
PACKAGE, = (path for path in PACKAGES if "/libmorvith-dataprovider_" in path)
RESOURCES = "usr/share/lib-morvith-tv/res"
CONFIG = "config/hw_kbd_lang_config.json"
EDJ = f"{RESOURCES}/edje/help_morvith.edj"
WEBP = f"{RESOURCES}/image/setting_device_manager_ta_non_bt.webp"


def output(*command):
    return subprocess.run(command, check=True, capture_output=True, text=True).stdout


def contents(packages):
    """Names, modes, owners and links, and checksums of the files that are not compiled."""
    lines = []
    for package in packages:
        if "menu-screen" not in package:  # not built for every processor
            lines += output("dpkg-deb", "--info", package, "md5sums").splitlines()
            for entry in output("dpkg-deb", "--contents", package).splitlines():
                mode, owner, _size, _date, _time, *name = entry.split()
                lines.append(" ".join([mode, owner, *name]))
    text = re.sub(r"^\w+  (usr/(bin|lib|share/man)/)", r"\1", "\n".join(lines), flags=re.M)
    return sorted(re.sub(r"[^/]+-linux-gnu\w*", "TRIPLET", text).splitlines())


class PackageTest(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        folder = cls.enterClassContext(tempfile.TemporaryDirectory())
        os.chdir(folder)
        os.environ["HOME"] = folder  # EFL's tools keep caches there
        for package in PACKAGES:
            output("dpkg-deb", "--extract", package, ".")
        cls.plugin, = glob.glob("usr/lib/*/libmorvith_dataprovider.so")

    @unittest.skipUnless(EMULATOR and NATIVE_PACKAGES, "compares the packages of two processors")
    def test_packages_of_both_processors_have_the_same_contents(self):
        self.assertEqual(contents(PACKAGES), contents(NATIVE_PACKAGES), "run scripts/test first")

    def test_another_build_makes_the_same_packages(self):
        copy = pathlib.Path("ä copy")  # another path, with a blank and a letter that is not ASCII
        shutil.copytree(SOURCE, copy, ignore=shutil.ignore_patterns("build*", ".git"))
        os.umask(0o077)
        output("cmake", "-S", copy, "-B", copy / "build", *os.environ["CMAKE_OPTIONS"].split())
        output("cmake", "--build", copy / "build", "--target", "package", "--parallel", "2")
        for package in PACKAGES:
            again = copy / "build/packages" / os.path.basename(package)
            self.assertEqual(again.read_bytes(), pathlib.Path(package).read_bytes(), package)
        output("env", "DESTDIR=stage", "cmake", "--install", copy / "build")
        self.assertEqual(output("find", "stage", "-type", "d", "!", "-perm", "755"), "")

    def test_library_package_has_only_the_library_and_its_data(self):
        expected = {self.plugin, f"{RESOURCES}/{CONFIG}", EDJ, WEBP}
        expected |= {f"{RESOURCES}/locale/{po.stem}/LC_MESSAGES/lib-morvith-tv.mo"
                     for po in SOURCE.glob("res/locale/*.po")}
        lines = output("dpkg-deb", "--contents", PACKAGE).splitlines()
        self.assertEqual({line.split("./")[1] for line in lines if line[0] == "-"}, expected)
        source = json.loads((SOURCE / "res" / CONFIG).read_text("utf-8"))
        for table, members in (("keyboard_name_map", ("name", "display_name")),
                               ("lang_local_keyboard_type_table", ("lang_local", "keyboard_types"))):
            source[table] = [{name: row[name] for name in members} for row in source[table]]
        del source["$schema"]
        installed = json.loads(pathlib.Path(RESOURCES, CONFIG).read_text("utf-8"))
        self.assertEqual(installed, source)
        for line in lines:
            self.assertRegex(line, "^(drwxr-xr-x|-rw-r--r--) root/root ")

    def test_library_is_small_and_hardened_and_exports_two_functions(self):
        exports = output("nm", "-D", "--defined-only", "--format=just-symbols", self.plugin)
        self.assertEqual(exports.split(), ["create_provider", "delete_provider"])
        facts = output("readelf", "--wide", "--segments", "--sections", "--relocs", "--dynamic",
                       "--dyn-syms", self.plugin)
        for sign in (r"GNU_STACK .* RW +0x", "GNU_RELRO ", r"\(FLAGS\) +BIND_NOW",
                     "UND __stack_chk_fail"):
            self.assertRegex(facts, sign)
        self.assertNotRegex(facts, r"RUNPATH|RPATH|TEXTREL|\.symtab")
        # Only loaded bytes count: the linker pads the file for pages of 64 KiB.
        loaded = re.findall(r"\n +LOAD(?: +\S+){4} +(\S+)", facts)
        self.assertIn(sum(int(size, 16) for size in loaded), range(1, 40 * 1024 + 1))
        relocations = re.findall(r"Relocation section .* contains (\d+) entr", facts)
        self.assertIn(sum(map(int, relocations)), range(1, 129))

    def test_help_images_have_their_parts_and_size(self):
        parts = output("edje_inspector", "--mode=parts", "--group=help", EDJ)
        for name, kind in (("picture", "VECTOR"), ("help", "TEXTBLOCK")):
            self.assertIn(f"part {{ name: '{name}'; type: {kind};", parts)
        self.assertRegex(output("webpinfo", WEBP),
                         r"Width: 1920\n +Height: 1080\n(.*\n)* +Format: Lossless")

    def test_example_builds_from_the_packages_and_runs(self):
        libraries = f"{os.getcwd()}/{os.path.dirname(self.plugin)}"
        os.environ["PKG_CONFIG_PATH"] = f"{libraries}/pkgconfig"
        os.environ["PKG_CONFIG_SYSROOT_DIR"] = os.getcwd()
        ask = "pkg-config", "morvith-dataprovider"
        output(os.environ["CC"], "-std=c11", "-Wall", "-Wextra", "-Werror", "-o", "host",
               SOURCE / "examples/host.c", *output(*ask, "--cflags", "--libs").split())
        shown = output(
            "env", f"LD_LIBRARY_PATH={libraries}", "LD_PRELOAD=librootfs.so.0", "ROOTFS_DIR=.",
            "DEVINFO_PROFILE=usr/share/morvith-platform-stand-ins/devices/global.ini",
            "KVREG_FILE=registry.db", "LC_ALL=C_XX.UTF-8", "LANGUAGE=ko",
            *EMULATOR, "./host", output(*ask, "--variable=plugin").strip(), "ko_KR")
        self.assertRegex(shown, r"\n\* ko_KR  한국어\n(.*\n)*\* ko_KR.kr_ibm106  한국어")


if __name__ == "__main__":
    unittest.main()
