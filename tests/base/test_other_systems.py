"""The tests of the base storey that say nothing on the usual test system: other code pages, time zones, dump writers."""
import os
import unittest

import benchlib

PROGRAM = os.path.join(benchlib.BIN, "base_test.exe")


class OtherSystem(benchlib.WindowsTest):
    def run_tests(self, name_filter, env=None):
        """Runs tests of base_test.exe; all of them must pass and none may be skipped."""
        self.prefix.copy_in(PROGRAM, r"C:\t\base_test.exe")
        result = self.prefix.run(r"C:\t\base_test.exe", "--gtest_color=no", "--gtest_filter=" + name_filter,
                                 cwd=r"C:\t", env=env, timeout=120)
        self.assertEqual(result.code, 0, result.text)
        self.assertIn("[  PASSED  ]", result.text)
        self.assertNotIn("[  PASSED  ] 0 tests", result.text)
        self.assertNotIn("[  SKIPPED ]", result.text)


class JapaneseSystem(OtherSystem):
    locale = "ja_JP.UTF-8"

    def test_double_byte_text(self):
        self.run_tests("DoubleByte.*:StrList.*:Utf8.*")

    def test_edits_are_those_of_every_code_page(self):
        self.run_tests("StrRoom.*:StrDelete.*:StrInsert.*:StrSetAt.*:StrInvariant.*:StrOverwrite.*:StrSubstring.*"
                       ":NoMemory.*:GuardPage.*")


class TimeZones(OtherSystem):
    def test_west_of_greenwich_with_summer_time(self):
        self.run_tests("TimeValue.*:TimeText.*", {"TZ": "EST5EDT"})

    def test_east_of_greenwich_with_summer_time(self):
        self.run_tests("TimeValue.*:TimeText.*", {"TZ": "CET-1CEST"})

    def test_half_an_hour(self):
        self.run_tests("TimeValue.*:TimeText.*", {"TZ": "IST-5:30"})


class DumpWriters(OtherSystem):
    def test_failing_one(self):
        self.prefix.copy_in(os.path.join(benchlib.HELPERS, "dbghelp.dll"), r"C:\windows\system32\dbghelp.dll")
        self.run_tests("MiniDump.WhatCannotBeWrittenLeavesNoFile",
                       {"WINEDLLOVERRIDES": "dbghelp=n", "VT_DUMP_WRITER_FAILS": "1"})

    def test_none(self):
        os.unlink(self.prefix.host(r"C:\windows\system32\dbghelp.dll"))
        self.run_tests("MiniDump.WithoutADumpWriterThereIsNone",
                       {"WINEDLLOVERRIDES": "dbghelp=n", "VT_NO_DUMP_WRITER": "1"})


del OtherSystem

if __name__ == "__main__":
    unittest.main()
