"""The tests of the platform storey that need drives of a certain size or kind, or another time zone."""
import os
import unittest

import benchlib

PROGRAM = os.path.join(benchlib.BIN, "platform_test.exe")


class OtherSystem(benchlib.WindowsTest):
    def run_tests(self, name_filter, count=None, wrap=(), env=None):
        """Runs tests of platform_test.exe; all of them must pass (that many, if given) and none may be skipped."""
        self.prefix.copy_in(PROGRAM, r"C:\t\platform_test.exe")
        self.prefix.kill()
        result = self.prefix.run(r"C:\t\platform_test.exe", "--gtest_color=no", "--gtest_filter=" + name_filter,
                                 cwd=r"C:\t", wrap=wrap, env=env, timeout=120)
        self.prefix.kill()
        self.assertEqual(result.code, 0, result.text)
        self.assertRegex(result.text, r"\[  PASSED  \] %s test" % (count or "[1-9][0-9]*"))
        self.assertNotIn("[  SKIPPED ]", result.text)


class TimeZones(OtherSystem):
    def test_dates_of_files(self):
        for zone in ("EST5EDT", "IST-5:30"):
            with self.subTest(zone=zone):
                self.run_tests("FSDate.*:FSModDate.*", env={"TZ": zone})


class Drives(OtherSystem):
    def disk(self, size):
        """Makes D: a disk of that size for a command begun with the words returned."""
        benchlib.require_namespaces()
        folder = os.path.join(self.prefix.root, "disk")
        os.mkdir(folder)
        self.prefix.link_drive("d", folder)
        return benchlib.in_namespace("--size", str(size), "--tmpfs", folder)

    def test_copying_onto_a_full_disk(self):
        self.run_tests("FullDiskChild.*", 3, self.disk(3 << 20))

    def test_free_space_of_a_huge_disk(self):
        self.run_tests("HugeDiskChild.*", 1, self.disk(200 << 30))

    def test_each_kind_of_drive(self):
        kinds = {"d": "cdrom", "e": "network", "f": "floppy", "g": "ramdisk", "h": "hd"}
        for letter, kind in kinds.items():
            folder = os.path.join(self.prefix.root, kind)
            os.mkdir(folder)
            self.prefix.link_drive(letter, folder, kind)
        self.prefix.link_drive("i", os.path.join(self.prefix.root, "nowhere"))
        self.run_tests("DriveKindsChild.*", 2)


if __name__ == "__main__":
    unittest.main()
