"""The registry's stand-in, as the installed library that several processes use at once."""

import ctypes
import itertools
import os
import random
import resource
import signal
import tempfile
import time
import unittest

STAGE = os.environ["MORVITH_TEST_ROOT"]
LANGUAGE, TYPE = b"db/ime/keyboard_language_name", b"db/ime/hardware_keyboard_name"
TYPES = {b"ko_KR": b"ko_KR.kr_ibm106", b"de_DE": b"de_DE.de_ibm105"}  # each locale's first
SET_STRING = 6  # its slot in the callback table
NOBODY = 65534

KVREG = ctypes.CDLL("libkvreg.so.0")
KVREG.kvreg_get_str.restype = ctypes.c_void_p
FREE = ctypes.CDLL(None).free
FREE.argtypes = [ctypes.c_void_p]


def read(key):
    value = KVREG.kvreg_get_str(key)
    text = None if value is None else ctypes.string_at(value)
    FREE(value)
    return text


def in_child(task, *arguments):
    """Starts a process that carries out a task, which says whether it went well. Returns its id."""
    process = os.fork()
    if process == 0:
        well = False
        try:
            well = task(*arguments)
        finally:
            os._exit(0 if well else 1)
    return process


def went_well(process):
    return os.waitpid(process, 0)[1] == 0


def write(key, *values):
    return all(KVREG.kvreg_set_str(key, value) == 0 for value in values)


def write_without_space(key, value):
    signal.signal(signal.SIGXFSZ, signal.SIG_IGN)
    resource.setrlimit(resource.RLIMIT_FSIZE, (16384, 16384))
    return write(key, value)


def write_as_a_stranger(key, value):
    if os.geteuid() == 0:
        os.seteuid(NOBODY)
    return write(key, value)


def load_provider():
    """The function by which a host stores a choice."""
    ctypes.CDLL(os.environ["PYTHON_HOST_FILE"], ctypes.RTLD_GLOBAL)
    library = ctypes.CDLL(f"{os.environ['LD_LIBRARY_PATH']}/libmorvith_dataprovider.so")
    table = ctypes.POINTER(ctypes.c_void_p)()
    library.create_provider(ctypes.byref(table))
    return ctypes.CFUNCTYPE(ctypes.c_int, ctypes.c_char_p, ctypes.c_char_p)(table[SET_STRING])


def choose_without_end(set_string):
    for language in itertools.cycle(TYPES):
        set_string(LANGUAGE, language)


class RegistryTest(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory(dir="/tmp")  # where a stranger can enter
        self.addCleanup(folder.cleanup)
        self.folder = folder.name
        self.addCleanup(os.dup2, os.dup(2), 2)
        self.log = open(f"{self.folder}/log", "w+", encoding="utf-8")
        self.addCleanup(self.log.close)
        os.dup2(self.log.fileno(), 2)
        os.environ["KVREG_FILE"] = f"{self.folder}/registry.db"

    def logged(self):
        self.log.seek(0)
        lines = self.log.read()
        self.log.seek(0)
        self.log.truncate()
        return lines

    def test_keeps_values(self):
        self.assertIsNone(read(b"key"))
        for value in (b"ko_KR", b"", "한국어 'quoted' \"%s\"".encode(), b"last"):
            self.assertEqual(KVREG.kvreg_set_str(b"key", value), 0)
            self.assertEqual(read(b"key"), value)
        self.assertIsNone(read(b"Key"))
        self.assertEqual(self.logged(), "")

    def test_reports_what_it_cannot_do(self):
        with open(f"{self.folder}/text", "w", encoding="utf-8") as text:
            text.write("x" * 4096)
        for file, key, reads in (("none/registry.db", b"key", 0), ("", b"key", 1),
                                 ("text", b"key", 1), ("registry.db", None, 1)):
            os.environ["KVREG_FILE"] = f"{self.folder}/{file}"
            self.assertIsNone(read(key))
            self.assertEqual(self.logged().count("error KVREG: cannot read"), reads, file)
            self.assertLess(KVREG.kvreg_set_str(key, b"value"), 0)
            self.assertIn("error KVREG: cannot write", self.logged())
        del os.environ["KVREG_FILE"]
        self.assertLess(KVREG.kvreg_set_str(b"key", b"value"), 0)
        self.assertIn("KVREG_FILE is not set", self.logged())

    def test_keeps_what_it_has_when_it_cannot_write(self):
        self.assertTrue(write(b"key", b"kept"))
        os.chmod(self.folder, 0o755)
        for task, mode, reason in ((write_without_space, 0o644, "disk"),
                                   (write_as_a_stranger, 0o444, "readonly")):
            os.chmod(f"{self.folder}/registry.db", mode)
            self.assertFalse(went_well(in_child(task, b"key", b"lost" * 20000)))
            self.assertRegex(self.logged(), f"error KVREG: cannot write 'key': .*{reason}")
            self.assertEqual(read(b"key"), b"kept")

    def test_loses_nothing_of_two_writers_at_once(self):
        writers = [in_child(write, key, *(b"%d" % i for i in range(100))) for key in (b"1", b"2")]
        self.assertEqual([went_well(writer) for writer in writers], [True, True])
        self.assertEqual((read(b"1"), read(b"2")), (b"99", b"99"))
        self.assertEqual(self.logged(), "")

    def test_has_whole_choices_after_their_writers_were_killed(self):
        os.environ["QLOG_LEVEL"] = "error"
        os.environ["DEVINFO_PROFILE"] = f"{STAGE}/usr/share/morvith-menu-host/devices/global.ini"
        set_string = load_provider()
        set_string(LANGUAGE, b"ko_KR")
        interrupted = 0
        for _ in range(500):
            writer = in_child(choose_without_end, set_string)
            time.sleep(random.uniform(0, 0.008))
            os.kill(writer, signal.SIGKILL)
            os.waitpid(writer, 0)
            interrupted += os.path.exists(f"{self.folder}/registry.db-journal")
            self.assertIn(read(LANGUAGE), TYPES)
            self.assertIn(read(TYPE), TYPES.values())
            language = random.choice(list(TYPES))
            set_string(LANGUAGE, language)
            self.assertEqual((read(LANGUAGE), read(TYPE)), (language, TYPES[language]))
        self.assertGreater(interrupted, 50)  # in the middle of a write
        self.assertEqual(self.logged(), "")


if __name__ == "__main__":
    unittest.main()
