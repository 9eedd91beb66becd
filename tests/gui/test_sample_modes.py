"""The sample distribution in each way of running: what an installation and its removal leave behind, entry by entry.

A workstation has a prefix of its own: the shared copy was installed by another machine onto a drive that both see.
"""
import hashlib
import os
import shutil
import tempfile
import unittest

import benchlib

DIST = os.path.join(benchlib.BUILD, "dist")
PRODUCT = r"C:\Program Files\Veltrane"
SHARED = r"S:\Veltrane"

# Controls: the main dialog's folder and its two boxes, one of the last dialog's boxes; answers of a message box.
FOLDER, PREFERENCES, FONTS, LAUNCH = "106", "110", "111", "161"
OK, YES, ICON = "1", "6", "1088"

LM, CU = "HKEY_LOCAL_MACHINE\\Software\\", "HKEY_CURRENT_USER\\Software\\"
UNINSTALL = r"HKLM\Software\Microsoft\Windows\CurrentVersion\Uninstall\KVRX6"
FONT_KEY = LM + r"Microsoft\Windows NT\CurrentVersion\Fonts"
USER_KEY = CU + r"Quorvale\KVRX6"

# What stays after every removal. A value is (key, name), a key by itself (key, None).
LEFT_ALWAYS = {
    (LM + "Quorvale", None): "the right to write is tried here; other products of the maker live below it",
    (CU + "Quorvale", None): "the same for the user's settings",
    (CU + r"Microsoft\Windows\CurrentVersion\Explorer\FileExts", None):
        "Explorer's own key, which every Windows has; only a fresh test prefix does not",
    "users\\root\\Temp\\Veltrane6.log": "the report, for the one who looks after the machine",
    "windows\\win.ini": "font settings, which other programs may rely on by now",
}
# What stays when the fonts are kept, as is offered.
LEFT_FONTS = {
    **{(FONT_KEY, name + " (TrueType)"): "its font is kept"
       for name in ("Liberation Mono", "Liberation Mono Bold", "Liberation Sans", "Liberation Serif Italic")},
    **{"windows\\Fonts\\" + name + ".ttf": "equations in documents still need it"
       for name in ("LiberationMono-Regular", "LiberationMono-Bold", "LiberationSans-Regular",
                    "LiberationSerif-Italic")},
}
# What stays when the preferences are kept, as is offered.
LEFT_SETTINGS = {
    (USER_KEY, None): "the user's settings are kept",
    (USER_KEY, "Zoom"): "the user's settings are kept",
}
LEFT_FILES = {
    "Program Files\\Veltrane\\": "holds the following",
    "Program Files\\Veltrane\\Setup.exe": "-RS keeps it for the next time",
    "Program Files\\Veltrane\\setup.inf": "-RS keeps it for the next time",
    "Program Files\\Veltrane\\Preferences\\": "holds the following",
    **{"Program Files\\Veltrane\\Preferences\\" + name + ".eqp": "the preferences are kept"
       for name in ("Affiche", "Article", "Livre", "Utilisateur")},
}
PROFILE = "[TrueType]\nTTifCollisions=1\n[FontSubstitutes]\nVT Symbol=Symbol\n"


def files_of(prefix, drive):
    """{path: digest of the content} of a drive."""
    found = {}
    for path in prefix.tree(drive):
        # The distribution and the test's own helpers.
        if not path.startswith(("dist\\", "helpers\\")):
            found[path] = "" if path.endswith("\\") else hashlib.sha256(prefix.read(drive + path)).hexdigest()
    return found


def state_of(prefix):
    """Files and registry of the machine in one dictionary."""
    state = files_of(prefix, "C:\\")
    for root in (r"HKLM\Software", r"HKCU\Software", "HKCR"):
        for key, values in prefix.reg_tree(root).items():
            # What Wine itself remembers, as the fonts it has seen.
            if key.startswith(CU + "Wine\\"):
                continue
            state[(key, None)] = ""
            state.update(((key, name), str(data)) for name, data in values.items())
    return state


class SampleModes(benchlib.WindowsTest):
    maxDiff = None

    def setUp(self):
        super().setUp()
        self.prefix.need_helpers()

    def drive(self, *words):
        result = self.prefix.helper("dialog_driver", "-t", "30000", *words, timeout=60)
        self.assertEqual(result.code, 0, "%s: %s" % (" ".join(words), result.text))

    def ended_well(self, run):
        result = run.wait(90)
        log = self.prefix.text(r"C:\users\root\Temp\Veltrane6.log")
        self.assertEqual(result.code, 0, log)
        self.assertNotIn("##ERROR", log)
        self.assertNotIn("Launch app = Success", log)

    def use_the_product(self):
        self.prefix.reg_add(r"HKCU\Software\Quorvale\KVRX6", "Zoom", "200")

    def check_left(self, before, *lists):
        expected = {}
        for part in (LEFT_ALWAYS, *lists):
            expected.update(part)
        after = state_of(self.prefix)
        differ = {entry for entry in before.keys() | after.keys() if before.get(entry) != after.get(entry)}
        self.assertEqual(sorted(map(str, differ)), sorted(map(str, expected)))
        # The only one of them that was there before.
        self.assertEqual({entry for entry in differ if entry in before}, {"windows\\win.ini"})
        self.assertEqual(self.prefix.text(r"C:\windows\win.ini"), self.profile + PROFILE)

    def remember(self):
        self.profile = self.prefix.text(r"C:\windows\win.ini")
        return state_of(self.prefix)

    def test_install_and_remove_but_keep_setup(self):
        self.prefix.copy_in(DIST, r"C:\dist")
        before = self.remember()
        self.ended_well(self.prefix.start(r"C:\dist\Setup.exe", "-Q", "-D", PRODUCT))
        self.assertEqual(self.prefix.reg_value(UNINSTALL, "UninstallString"), '"%s\\Setup.exe" -R' % PRODUCT)
        self.use_the_product()
        self.ended_well(self.prefix.start(PRODUCT + r"\Setup.exe", "-Q", "-RS"))
        self.check_left(before, LEFT_FONTS, LEFT_SETTINGS, LEFT_FILES)

    def share(self):
        """Another machine installs onto the drive that plays the server."""
        folder = tempfile.mkdtemp(prefix="shared.")
        self.addCleanup(shutil.rmtree, folder, True)
        with benchlib.Prefix() as other:
            other.copy_in(DIST, r"C:\dist")
            other.link_drive("s", folder)
            result = other.run(r"C:\dist\Setup.exe", "-Q", "-D", SHARED, timeout=120)
            self.assertEqual(result.code, 0, result.text)
        self.prefix.link_drive("s", folder, "network")
        self.shared = files_of(self.prefix, "S:\\")
        self.assertIn("Veltrane\\VT6.QLC", self.shared)

    def install_workstation(self):
        run = self.prefix.start(SHARED + r"\Setup.exe", "-W")
        self.drive("-has", FOLDER, "set", FOLDER, SHARED, "click", OK, "gone")
        # Commands for Word, the fonts, the end.
        self.drive("-has", YES, "click", YES, "gone")
        self.drive("-has", ICON, "click", OK, "gone")
        # The product would make settings of its own.
        self.drive("-has", LAUNCH, "click", LAUNCH, "click", OK, "gone")
        self.ended_well(run)
        self.assertEqual(self.prefix.reg_value(UNINSTALL, "UninstallString"), '"%s\\Setup.exe" -W -R' % SHARED)
        self.assertEqual(self.prefix.reg_value(r"HKCR\Veltrane.Equation.6\shell\open\command", ""),
                         '"%s\\Veltrane.exe" "%%1"' % SHARED)
        self.assertFalse(self.prefix.exists(PRODUCT))
        self.assertTrue(self.prefix.exists(r"C:\windows\Fonts\LiberationMono-Regular.ttf"))
        self.assertEqual(files_of(self.prefix, "S:\\"), self.shared)

    def remove_workstation(self, switch, *boxes):
        run = self.prefix.start(SHARED + r"\Setup.exe", "-W", switch)
        clicks = [word for box in boxes for word in ("click", box)]
        self.drive("-has", FOLDER, "wait-text", FOLDER, SHARED, *clicks, "click", OK, "gone")
        self.drive("-has", ICON, "click", OK, "gone")
        self.ended_well(run)
        self.prefix.settle()
        # The server's copy is everybody's.
        self.assertEqual(files_of(self.prefix, "S:\\"), self.shared)

    def test_workstation_and_removal_as_offered(self):
        self.share()
        before = self.remember()
        self.install_workstation()
        self.use_the_product()
        self.remove_workstation("-RS")
        self.check_left(before, LEFT_FONTS, LEFT_SETTINGS)

    def test_workstation_and_removal_of_everything(self):
        self.share()
        before = self.remember()
        self.install_workstation()
        self.use_the_product()
        self.remove_workstation("-R", PREFERENCES, FONTS)
        self.check_left(before)


if __name__ == "__main__":
    unittest.main()
