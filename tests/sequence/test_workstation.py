"""A workstation that runs the product from a server's shared folder, named on the command line."""
import os
import shutil
import unittest

from setup_case import SOURCE, STARTUP, SetupTest

SHARE = r"\\server\share\Veltrane"
MADE = r"HKCU\Software\Quorvale\Made"

# Controls: the main dialog's folder, the last dialog's box, a message box's icon; the button.
FOLDER, LAUNCH, ICON, OK = "106", "161", "1088", "1"

SECTIONS = r"""
[easy_install]
a
[remove]
a
[wkstation_install]
w
+HKEY_CURRENT_USER\Software\Quorvale\Made\Product=<ProgDir>
+HKEY_CURRENT_USER\Software\Quorvale\Made\Given=<cmd_ProgDir>
+HKEY_CURRENT_USER\Software\Quorvale\Made\Config=<ConfigPath>
[wkstation_remove]
w
-HKEY_CURRENT_USER\Software\Quorvale\Made\
[files]
a=1,a.txt,<ProgDir>\a.txt,5
w=1,w.ini,<WinDir>\veltrane-w.ini,5
"""


class WorkstationTest(SetupTest):
    def setUp(self):
        super().setUp()
        self.prefix.need_helpers()
        self.prefix.write(SOURCE + r"\setup.inf", STARTUP + SECTIONS)
        self.prefix.write(SOURCE + r"\a.txt", "alpha")
        # The server's administrator installs onto the share.
        self.server = os.path.join(self.prefix.root, "dosdevices", "unc", "server", "share")
        os.makedirs(self.server)
        self.assertEqual(self.install(SHARE), 0, self.log())
        self.shared = os.path.join(self.server, "Veltrane")
        for name in ("Setup.exe", "setup.inf"):
            shutil.copy(self.prefix.host(SOURCE + "\\" + name), self.shared)
        with open(os.path.join(self.shared, "w.ini"), "wb") as file:
            file.write(b"local")
        # On the workstation nothing is known of that.
        self.prefix.reg_delete(r"HKLM\Software\Quorvale")
        self.before = self.files()

    def files(self):
        found = {}
        for name in os.listdir(self.shared):
            with open(os.path.join(self.shared, name), "rb") as file:
                found[name] = file.read()
        return found

    def drive(self, *words):
        result = self.prefix.helper("dialog_driver", "-t", "30000", *words, timeout=90)
        self.assertEqual(result.code, 0, "%s: %s\n%s" % (" ".join(words), result.text, self.log()))
        return result.text.split("\n")

    def begin(self, *switches):
        return self.prefix.start(SHARE + r"\Setup.exe", *switches, timeout=120)

    def finish(self, run):
        """Answers the last dialog without starting the product."""
        self.drive("-has", LAUNCH, "click", LAUNCH, "click", OK, "gone")
        self.assertEqual(run.wait().code, 0, self.log())

    def assert_prepared(self):
        made = self.prefix.reg_tree(MADE)
        self.assertEqual(list(made.values()),
                         [{"Product": SHARE, "Given": SHARE, "Config": SHARE + r"\VT6.qlc"}])
        self.assertEqual(self.prefix.text(r"C:\windows\veltrane-w.ini"), "local")
        self.assertEqual(self.prefix.reg_value(r"HKLM\Software\Quorvale\KVRX6\Directories", "ProgDir"), SHARE)
        self.assertFalse(self.prefix.exists(r"C:\Program Files\Veltrane"))
        self.assertEqual(self.files(), self.before)

    def test_given_share(self):
        run = self.begin("-W", "-D", SHARE)
        shown = self.drive("-has", FOLDER, "get", FOLDER, "enabled", FOLDER)
        self.assertEqual(shown[:2], [SHARE, "1"])
        self.drive("-has", FOLDER, "click", OK, "gone")
        self.finish(run)
        self.assert_logged("Opening config file at " + SHARE + r"\VT6.qlc: Success",
                           "Veltrane installation directory is " + SHARE)
        self.assertNotIn("##ERROR", self.log())
        self.assertEqual(self.log().count("Opening config file at"), 1)
        self.assertNotIn("Ecriture des données de configuration", self.log())
        self.assert_prepared()

    def test_locked_share_with_a_trailing_backslash(self):
        run = self.begin("/w", "/dl", SHARE + "\\")
        shown = self.drive("-has", FOLDER, "get", FOLDER, "enabled", FOLDER)
        self.assertEqual(shown[:2], [SHARE, "0"])
        self.drive("-has", FOLDER, "click", OK, "gone")
        self.finish(run)
        self.assert_prepared()

    def test_dialog_that_confirms_itself(self):
        run = self.begin("-W", "-I", "-D", SHARE)
        self.finish(run)
        self.assert_prepared()

    def test_program_from_another_place(self):
        # The distribution has no configuration file; the one of the given share is read all the same.
        self.prefix.write(SOURCE + r"\w.ini", "local")
        run = self.prefix.start(SOURCE + r"\Setup.exe", "-W", "-I", "-D", SHARE, timeout=120)
        self.finish(run)
        self.assert_prepared()

    def test_given_folder_without_a_configuration_file(self):
        # The share itself has one, but what was named is not worked around.
        run = self.begin("-W", "-D", r"C:\elsewhere")
        self.drive("-has", ICON, "click", OK, "gone")
        self.assertEqual(run.wait().code, 2, self.log())
        self.assert_logged(r"##ERROR: Opening config file at C:\elsewhere\VT6.qlc: Failed",
                           "Setup ne trouve pas le fichier de configuration de Veltrane")
        self.assertEqual(self.log().count("Opening config file at"), 1)
        self.assertFalse(self.prefix.exists(r"C:\elsewhere"))
        self.assertEqual(self.prefix.reg_tree(MADE), {})
        self.assertEqual(self.files(), self.before)

    def test_silent_workstation_run_is_refused(self):
        for switches in (("-Q", "-W", "-D", SHARE), ("-W", "-D", SHARE, "-Q"), ("/q", "/w", "/r")):
            self.assertEqual(self.run_setup(*switches), 4, self.log())
            self.assert_logged("Arguments de ligne de commande non valides.")
        self.assertEqual(self.prefix.reg_tree(MADE), {})

    def test_removal_of_what_was_installed(self):
        self.finish(self.begin("-W", "-I", "-D", SHARE))
        run = self.begin("-W", "-R", "-I")
        self.drive("-has", ICON, "click", OK, "gone")
        self.assertEqual(run.wait().code, 0, self.log())
        self.assert_logged("Veltrane installation directory is " + SHARE,
                           r"Deleting C:\windows\veltrane-w.ini, result = success",
                           "a supprimé Veltrane et tous ses composants.")
        self.assertEqual(self.prefix.reg_tree(MADE), {})
        self.assertFalse(self.prefix.exists(r"C:\windows\veltrane-w.ini"))
        self.assertEqual(self.files(), self.before)


if __name__ == "__main__":
    unittest.main()
