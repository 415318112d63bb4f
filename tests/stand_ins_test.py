"""The stand-ins themselves, as the installed libraries that any process can use."""

import ctypes
import os
import signal
import tempfile
import time
import unittest

KVREG = ctypes.CDLL("libkvreg.so.0")
KVREG.kvreg_get_str.restype = ctypes.c_void_p
DEVINFO = ctypes.CDLL("libdevinfo.so.0")
QLOG = getattr(ctypes.CDLL("libqlog.so.0"), "__qlog_print")
FREE = ctypes.CDLL(None).free
FREE.argtypes = [ctypes.c_void_p]


class IntArray(ctypes.Structure):
    _fields_ = [("count", ctypes.c_int), ("values", ctypes.POINTER(ctypes.c_int))]


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


class StandInTest(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = folder.name
        self.addCleanup(os.dup2, os.dup(2), 2)
        self.log = open(f"{self.folder}/log", "w+", encoding="utf-8")
        self.addCleanup(self.log.close)
        os.dup2(self.log.fileno(), 2)
        os.environ.update(KVREG_FILE=f"{self.folder}/registry.db", QLOG_LEVEL="warning",
                          DEVINFO_PROFILE=f"{self.folder}/profile.ini")

    def logged(self):
        self.log.seek(0)
        lines = self.log.read()
        self.log.seek(0)
        self.log.truncate()
        return lines

    def answers(self, profile, number=227, key=b"key"):
        with open(os.environ["DEVINFO_PROFILE"], "w", encoding="utf-8") as file:
            file.write(profile)
        ids, value = IntArray(), ctypes.c_bool(True)
        results = (DEVINFO.devinfo_get_value_int_array(number, ctypes.byref(ids)),
                   DEVINFO.devinfo_get_custom_bool(key, ctypes.byref(value)))
        numbers = ids.values[:ids.count] if ids.values else None
        FREE(ids.values)
        return [result == 0 for result in results], numbers, value.value

    def test_registry_keeps_values(self):
        self.assertIsNone(read(b"key"))
        for value in (b"ko_KR", b"", "한국어 'quoted' \"%s\"".encode(), b"last"):
            self.assertEqual(KVREG.kvreg_set_str(b"key", value), 0)
            self.assertEqual(read(b"key"), value)
        self.assertIsNone(read(b"Key"))
        self.assertEqual(self.logged(), "")

    def test_registry_reports_what_it_cannot_do(self):
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

    def test_registry_takes_two_writers_and_killed_ones(self):
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

    def test_device_answers_or_fails_and_skips_a_bad_id(self):
        good = "[device]\nsystem_language_ids = 1; x7;;99999999999; -3 ;0\n[custom_bool]\nkey=false"
        self.assertEqual(self.answers(good), ([True, True], [1, -3, 0], False))
        log = self.logged()
        self.assertTrue(log.count("skipped") == 3 and "entry 2, 'x7'" in log, log)
        for profile, number, key in (("", 227, b"key"), ("no key file", 227, b"key"),
                                     ("[custom_bool]\nkey=maybe\n", 227, b"key"),
                                     (good, 228, b"other"), (good, 228, None)):
            self.assertEqual(self.answers(profile, number, key), ([False, False], None, True))
            self.assertEqual(self.logged().count("error DEVINFO"), 2)

    def test_log_writes_one_line_a_message_from_the_threshold_up(self):
        lines = ["info T: a\n", "warning T: b\n", "error T: c?d\n"]
        for level, first in (("info", 0), ("warning", 1), ("error", 2), ("none", 3), ("typo", 0)):
            os.environ["QLOG_LEVEL"] = level
            for priority, text in ((4, b"a"), (5, b"b\n"), (6, b"c\nd")):
                QLOG(0, priority, b"T", b"%s", text)
            self.assertEqual(self.logged(), "".join(lines[first:]), level)


if __name__ == "__main__":
    unittest.main()
