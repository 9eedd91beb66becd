"""The tests of the script engine that need another code page."""
import os
import unittest

import benchlib

PROGRAM = os.path.join(benchlib.BIN, "script_test.exe")


class JapaneseSystem(benchlib.WindowsTest):
    locale = "ja_JP.UTF-8"

    def test_double_byte_text(self):
        self.prefix.copy_in(PROGRAM, r"C:\t\script_test.exe")
        result = self.prefix.run(r"C:\t\script_test.exe", "--gtest_color=no", "--gtest_filter=DoubleByte.*",
                                 cwd=r"C:\t", timeout=120)
        self.assertEqual(result.code, 0, result.text)
        self.assertIn("[  PASSED  ] 4 tests", result.text)


if __name__ == "__main__":
    unittest.main()
