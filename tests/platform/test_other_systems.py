"""The tests of the platform storey that need drives of a certain size or kind, or another time zone."""
import os
import unittest

import benchlib


class TimeZones(benchlib.WindowsTest):
    def test_dates_of_files(self):
        for zone in ("EST5EDT", "IST-5:30"):
            with self.subTest(zone=zone):
                self.run_tests("platform", "FSDate.*:FSModDate.*", env={"TZ": zone})


class Drives(benchlib.WindowsTest):
    def disk(self, size):
        """Makes D: a disk of that size for a command begun with the words returned."""
        benchlib.require_namespaces()
        folder = os.path.join(self.prefix.root, "disk")
        os.mkdir(folder)
        self.prefix.link_drive("d", folder)
        return benchlib.in_namespace("--size", str(size), "--tmpfs", folder)

    def test_copying_onto_a_full_disk(self):
        self.run_tests("platform", "FullDiskChild.*", 3, wrap=self.disk(3 << 20))

    def test_free_space_of_a_huge_disk(self):
        self.run_tests("platform", "HugeDiskChild.*", 1, wrap=self.disk(200 << 30))

    def test_each_kind_of_drive(self):
        kinds = {"d": "cdrom", "e": "network", "f": "floppy", "g": "ramdisk", "h": "hd"}
        for letter, kind in kinds.items():
            folder = os.path.join(self.prefix.root, kind)
            os.mkdir(folder)
            self.prefix.link_drive(letter, folder, kind)
        self.prefix.link_drive("i", os.path.join(self.prefix.root, "nowhere"))
        self.run_tests("platform", "DriveKindsChild.*", 2)


if __name__ == "__main__":
    unittest.main()
