"""The tests of the script engine that need another code page."""
import unittest

import benchlib


class JapaneseSystem(benchlib.WindowsTest):
    locale = "ja_JP.UTF-8"

    def test_double_byte_text(self):
        self.run_tests("script", "DoubleByte.*", 5)


if __name__ == "__main__":
    unittest.main()
