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
LIBC = ctypes.CDLL(None)
LIBC.free.argtypes = [ctypes.c_void_p]
SYSTEM_LANGUAGES = 227


class IntArray(ctypes.Structure):
    _fields_ = [("count", ctypes.c_int), ("values", ctypes.POINTER(ctypes.c_int))]


def read(key):
    value = KVREG.kvreg_get_str(key)
    text = None if value is None else ctypes.string_at(value)
    LIBC.free(value)
    return text


def child(work):
    """Runs work in a process of its own. Returns its id."""
    process = os.fork()
    if process == 0:
        os._exit(0 if work() else 1)
    return process


class StandInTest(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = folder.name
        self.log = open(f"{self.folder}/log", "w+b")
        self.addCleanup(self.log.close)
        os.dup2(2, 99)
        os.dup2(self.log.fileno(), 2)
        self.addCleanup(os.dup2, 99, 2)
        os.environ.update(KVREG_FILE=f"{self.folder}/registry.db", QLOG_LEVEL="warning",
                          DEVINFO_PROFILE=f"{self.folder}/profile.ini")

    def logged(self):
        LIBC.fflush(None)
        self.log.seek(0)
        lines = self.log.read().decode()
        self.log.seek(0)
        self.log.truncate()
        return lines

    def write_profile(self, text):
        with open(f"{self.folder}/profile.ini", "w", encoding="utf-8") as profile:
            profile.write(text)

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
        for file, key in (("none/registry.db", b"key"), ("", b"key"), ("text", b"key"),
                          ("registry.db", None)):
            with self.subTest(file):
                os.environ["KVREG_FILE"] = f"{self.folder}/{file}"
                self.assertIsNone(read(key))
                never_written = file.startswith("none")
                self.assertEqual("cannot read" in self.logged(), not never_written)
                self.assertLess(KVREG.kvreg_set_str(key, b"value"), 0)
                self.assertIn("error KVREG: cannot write", self.logged())
        del os.environ["KVREG_FILE"]
        self.assertLess(KVREG.kvreg_set_str(b"key", b"value"), 0)
        self.assertIn("KVREG_FILE is not set", self.logged())

    def test_registry_takes_two_writers_at_once(self):
        writers = [child(lambda key=key: all(KVREG.kvreg_set_str(key, b"%d" % i) == 0
                                             for i in range(100))) for key in (b"one", b"two")]
        self.assertEqual([os.waitpid(writer, 0)[1] for writer in writers], [0, 0])
        self.assertEqual((read(b"one"), read(b"two")), (b"99", b"99"))

    def test_registry_survives_a_killed_writer(self):
        values = (b"a" * 20000, b"b" * 20000)
        KVREG.kvreg_set_str(b"key", values[0])
        for attempt in range(20):
            writer = child(lambda: [KVREG.kvreg_set_str(b"key", values[i % 2])
                                    for i in range(100000)])
            time.sleep(0.002 + 0.0017 * attempt)
            os.kill(writer, signal.SIGKILL)
            os.waitpid(writer, 0)
            self.assertIn(read(b"key"), values)
            self.assertEqual(KVREG.kvreg_set_str(b"key", values[0]), 0)
        self.assertEqual(self.logged(), "")

    def test_device_skips_a_bad_id_and_keeps_the_rest(self):
        self.write_profile("[device]\nsystem_language_ids = 1; x7;;99999999999; -3 ;0\n")
        answer = IntArray()
        self.assertEqual(DEVINFO.devinfo_get_value_int_array(SYSTEM_LANGUAGES,
                                                             ctypes.byref(answer)), 0)
        self.assertEqual(answer.values[:answer.count], [1, -3, 0])
        LIBC.free(answer.values)
        log = self.logged()
        self.assertEqual(log.count("skipped"), 3, log)
        self.assertIn("entry 2, 'x7'", log)

    def test_device_fails_where_it_has_no_answer(self):
        answer, value = IntArray(), ctypes.c_bool(True)
        good = "[device]\nsystem_language_ids=1\n[custom_bool]\nkey=false\n"
        for profile, number, key in (("", SYSTEM_LANGUAGES, b"key"), ("no key file", 227, b"key"),
                                     ("[custom_bool]\nkey=maybe\n", 227, b"key"),
                                     (good, 228, b"other"), (good, 228, None)):
            self.write_profile(profile)
            self.assertNotEqual(DEVINFO.devinfo_get_value_int_array(number,
                                                                    ctypes.byref(answer)), 0)
            self.assertNotEqual(DEVINFO.devinfo_get_custom_bool(key, ctypes.byref(value)), 0)
            self.assertTrue(answer.count == 0 and not answer.values and value.value)
            self.assertEqual(self.logged().count("error DEVINFO"), 2)
        self.assertEqual(DEVINFO.devinfo_get_custom_bool(b"key", ctypes.byref(value)), 0)
        self.assertFalse(value.value)

    def test_log_writes_one_line_a_message_from_the_threshold_up(self):
        lines = ["info T: a\n", "warning T: b\n", "error T: c?d\n"]
        for level, first in (("info", 0), ("warning", 1), ("error", 2), ("none", 3), ("typo", 0)):
            os.environ["QLOG_LEVEL"] = level
            for priority, text in ((4, b"a"), (5, b"b\n"), (6, b"c\nd")):
                QLOG(0, priority, b"T", b"%s", text)
            self.assertEqual(self.logged(), "".join(lines[first:]), level)
        os.environ["QLOG_LEVEL"] = "error"
        QLOG(0, 6, b"T", b"%s", b"x" * 9000)
        self.assertEqual(self.logged(), "error T: " + "x" * 4095 + "\n")


if __name__ == "__main__":
    unittest.main()
