"""The tests of every storey once more with the system's heap checking switched on.

With it every byte written behind a block is found when the test that did it ends (tests/support/heap_check.h). Left out are
stores of 10 MB, which take minutes with it, and the suites that other tests run.
"""
import glob
import os
import unittest

import benchlib

LEFT_OUT = "*TenMegabytes*:*Child.*:DoubleByte.*"


class HeapCheckedTest(benchlib.WindowsTest):
    def run_checked(self, storey, chosen):
        beside = glob.glob(os.path.join(benchlib.BIN, "*.dll")) + [
            os.path.join(benchlib.BIN, name)
            for name in (storey + "_test.exe", "Setup.exe", "helpers", "testdata")]
        for path in beside:
            self.prefix.copy_in(path, "C:\\t\\" + os.path.basename(path))
        return self.prefix.run("C:\\t\\%s_test.exe" % storey, "--gtest_color=no", "--gtest_filter=" + chosen, cwd="C:\\t",
                               env={"WINEDEBUG": "warn+heap"}, timeout=600)

    def run_storey(self, storey):
        result = self.run_checked(storey, "-" + LEFT_OUT)
        self.assertEqual(result.code, 0, result.text[-8000:])
        self.assertIn("[  PASSED  ]", result.text)
        self.assertNotIn("err:heap", result.text)


class LowerStoreys(HeapCheckedTest):
    def test_a_byte_behind_a_block_is_found(self):
        result = self.run_checked("base", "HeapCheckChild.*")
        self.assertNotEqual(result.code, 0, result.text)
        self.assertIn("heap is damaged", result.text)

    def test_base(self):
        self.run_storey("base")

    def test_platform(self):
        self.run_storey("platform")

    def test_messages(self):
        self.run_storey("messages")

    def test_stores(self):
        self.run_storey("stores")


class MiddleStoreys(HeapCheckedTest):
    def test_ui(self):
        self.run_storey("ui")

    def test_script(self):
        self.run_storey("script")

    def test_shell(self):
        self.run_storey("shell")

    def test_office(self):
        self.run_storey("office")


class UpperStoreys(HeapCheckedTest):
    def test_fonts(self):
        self.run_storey("fonts")

    def test_oleserver(self):
        self.run_storey("oleserver")

    def test_tasks(self):
        self.run_storey("tasks")

    def test_installer(self):
        self.run_storey("installer")


if __name__ == "__main__":
    unittest.main()
