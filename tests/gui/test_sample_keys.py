"""A first-time user with nothing but a keyboard: installs, starts and removes the sample product."""
import os

import benchlib

DIST = os.path.join(benchlib.BUILD, "dist")
PRODUCT = r"C:\Program Files\Veltrane"

MAIN, LANGUAGE, LAUNCH, OPTION = "101", "141", "161", "110"
YES, ICON = "6", "1088"  # of a message box


class SampleByKeyboard(benchlib.WindowsTest):
    def setUp(self):
        super().setUp()
        self.prefix.copy_in(DIST, r"C:\dist")

    def drive(self, *words):
        result = self.prefix.helper("dialog_driver", "-t", "30000", *words, timeout=60)
        self.assertEqual(result.code, 0, "%s: %s" % (" ".join(words), result.text))
        return result.text

    def log(self):
        for user in os.listdir(self.prefix.host(r"C:\users")):
            path = "C:\\users\\%s\\Temp\\Veltrane6.log" % user
            if self.prefix.exists(path):
                return self.prefix.text(path)
        return ""

    def test_install_start_and_remove(self):
        run = self.prefix.start(r"C:\dist\Setup.exe", timeout=200)
        self.drive("-has", MAIN, "keys", "{ENTER}", "gone")
        # Commands for Word, the product's language, the fonts, the end.
        self.drive("-has", YES, "keys", "{ENTER}", "gone")
        self.drive("-has", LANGUAGE, "keys", "{DOWN}{ENTER}", "gone")
        self.drive("-has", ICON, "keys", "{ENTER}", "gone")
        self.drive("-has", LAUNCH, "keys", "{TAB}{SPACE}{ENTER}", "gone")
        self.assertEqual(run.wait(60).code, 0, self.log())
        self.assertTrue(self.prefix.exists(PRODUCT + r"\Veltrane.exe"))
        self.assertIn("Launch app = Success\n", self.log())
        self.assertIn("User chose NOT to display the ReadMe.\n", self.log())
        # The product is up; its window closes as every window does.
        self.drive("-class", "MainVTWin6", "keys", "%{F4}", "gone")
        # As Add or Remove Programs starts it.
        run = self.prefix.start(PRODUCT + r"\Setup.exe", "-R", timeout=200)
        self.drive("-has", MAIN, "keys", "{ENTER}", "gone")
        self.drive("-has", ICON, "keys", "{ENTER}", "gone")
        self.assertEqual(run.wait(60).code, 0, self.log())
        self.assertTrue(benchlib.wait_until(lambda: not self.prefix.exists(PRODUCT + r"\Setup.exe")))
        self.assertFalse(self.prefix.exists(PRODUCT + r"\Veltrane.exe"))
        # Both boxes were left checked: preferences and fonts are kept.
        self.assertTrue(self.prefix.exists(PRODUCT + r"\Preferences\Article.eqp"))
        self.assertTrue(self.prefix.exists(r"C:\windows\Fonts\LiberationMono-Regular.ttf"))
        self.assertFalse(self.prefix.reg_exists(r"HKLM\Software\Quorvale\KVRX6"))
