"""The tests of the lowest storeys once more with the system's heap checking switched on.

With it every byte written behind a block is found when the test that did it ends (tests/support/heap_check.h).
"""
import glob
import os
import unittest

import benchlib


class HeapChecking(benchlib.WindowsTest):
    def run_storey(self, storey):
        beside = glob.glob(os.path.join(benchlib.BIN, "*.dll")) + [
            os.path.join(benchlib.BIN, name)
            for name in (storey + "_test.exe", "Setup.exe", "helpers", "testdata")]
        for path in beside:
            self.prefix.copy_in(path, "C:\\t\\" + os.path.basename(path))
        result = self.prefix.run("C:\\t\\%s_test.exe" % storey, "--gtest_color=no", cwd="C:\\t",
                                 env={"WINEDEBUG": "warn+heap"}, timeout=600)
        self.assertEqual(result.code, 0, result.text[-8000:])
        self.assertIn("[  PASSED  ]", result.text)

    def test_base(self):
        self.run_storey("base")

    def test_platform(self):
        self.run_storey("platform")

    def test_messages(self):
        self.run_storey("messages")


if __name__ == "__main__":
    unittest.main()
