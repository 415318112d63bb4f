"""The registry's stand-in, as the installed library that several processes use at once."""

import ctypes
import os
import signal
import tempfile
import time
import unittest

KVREG = ctypes.CDLL("libkvreg.so.0")
KVREG.kvreg_get_str.restype = ctypes.c_void_p
FREE = ctypes.CDLL(None).free
FREE.argtypes = [ctypes.c_void_p]


def read(key):
    value = KVREG.kvreg_get_str(key)
    text = None if value is None else ctypes.string_at(value)
    FREE(value)
    return text


def write_in_child(key, values):
    """Writes the values, one after the other, in a process of its own. Returns its id."""
    process = os.fork()
    if process == 0:
        os._exit(sum(KVREG.kvreg_set_str(key, value) != 0 for value in values))
    return process


class RegistryTest(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
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

    def test_takes_two_writers_and_killed_ones(self):
        writers = [write_in_child(key, [b"%d" % i for i in range(100)]) for key in (b"1", b"2")]
        self.assertEqual([os.waitpid(writer, 0)[1] for writer in writers], [0, 0])
        self.assertEqual((read(b"1"), read(b"2")), (b"99", b"99"))

        values = (b"a" * 20000, b"b" * 20000)
        KVREG.kvreg_set_str(b"key", values[0])
        for attempt in range(8):
            writer = write_in_child(b"key", values * 10000)
            time.sleep(0.002 + 0.004 * attempt)
            os.kill(writer, signal.SIGKILL)
            os.waitpid(writer, 0)
            self.assertIn(read(b"key"), values)
            self.assertEqual(KVREG.kvreg_set_str(b"key", values[0]), 0)
        self.assertEqual(self.logged(), "")


if __name__ == "__main__":
    unittest.main()
