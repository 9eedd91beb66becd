"""The tests of the base storey that say nothing on the usual test system: other code pages, time zones, dump writers."""
import os
import unittest

import benchlib


class JapaneseSystem(benchlib.WindowsTest):
    locale = "ja_JP.UTF-8"

    def test_double_byte_text(self):
        self.run_tests("base", "DoubleByte.*:StrList.*:Utf8.*")

    def test_edits_are_those_of_every_code_page(self):
        self.run_tests("base", "StrRoom.*:StrDelete.*:StrInsert.*:StrSetAt.*:StrInvariant.*:StrOverwrite.*"
                       ":StrSubstring.*:NoMemory.*:GuardPage.*")


class TimeZones(benchlib.WindowsTest):
    def test_west_of_greenwich_with_summer_time(self):
        self.run_tests("base", "TimeValue.*:TimeText.*", env={"TZ": "EST5EDT"})

    def test_east_of_greenwich_with_summer_time(self):
        self.run_tests("base", "TimeValue.*:TimeText.*", env={"TZ": "CET-1CEST"})

    def test_half_an_hour(self):
        self.run_tests("base", "TimeValue.*:TimeText.*", env={"TZ": "IST-5:30"})


class DumpWriters(benchlib.WindowsTest):
    def test_failing_one(self):
        self.prefix.copy_in(os.path.join(benchlib.HELPERS, "dbghelp.dll"), r"C:\windows\system32\dbghelp.dll")
        self.run_tests("base", "MiniDump.WhatCannotBeWrittenLeavesNoFile",
                       env={"WINEDLLOVERRIDES": "dbghelp=n", "VT_DUMP_WRITER_FAILS": "1"})

    def test_none(self):
        os.unlink(self.prefix.host(r"C:\windows\system32\dbghelp.dll"))
        self.run_tests("base", "MiniDump.WithoutADumpWriterThereIsNone",
                       env={"WINEDLLOVERRIDES": "dbghelp=n", "VT_NO_DUMP_WRITER": "1"})

if __name__ == "__main__":
    unittest.main()
