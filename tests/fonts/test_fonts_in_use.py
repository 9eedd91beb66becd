"""Fonts as other programs meet them: there after an installation, gone after a removal; and folders and media that
cannot be written to."""
import os
import unittest

import benchlib

SETUP = os.path.join(benchlib.BIN, "Setup.exe")
FONT_LIST = r"HKLM\Software\Microsoft\Windows NT\CurrentVersion\Fonts"
FONTS = [("Veltrane Alpha", "Regular"), ("Veltrane Beta", "Bold"), ("Veltrane Gamma", "Italic")]
STARTUP = """[startup]
AppName=Veltrane
MajVersion=6
MinVersion=0
ShortAppKey=VT
CompanyKey=KV
AppProgName=Veltrane
MachRegKey=REG*HKEY_LOCAL_MACHINE\\Software\\Quorvale\\KVRX6
UserRegKey=REG*HKEY_CURRENT_USER\\Software\\Quorvale\\KVRX6
"""


class FontRun(benchlib.WindowsTest):
    def make_font(self, path, family, style="Regular", version="1.0"):
        self.prefix.make_folder(path.rsplit("\\", 1)[0])
        result = self.prefix.helper("make_font", path, family, style, version)
        self.assertEqual(result.code, 0, result.text)

    def distribution(self, install, remove=""):
        self.prefix.copy_in(SETUP, r"C:\dist\Setup.exe")
        self.prefix.write(r"C:\dist\setup.inf", STARTUP + "[easy_install]\n" + install + "[remove]\n" + remove)

    def setup(self, *args, folder=r"C:\dist", wrap=()):
        result = self.prefix.run(folder + r"\Setup.exe", "-Q", *args, wrap=wrap)
        self.assertEqual(result.code, 0, result.text)
        self.prefix.settle()
        return self.log()

    def log(self):
        logs = [path for path in self.prefix.tree("C:\\") if path.lower().endswith("veltrane6.log")]
        self.assertEqual(len(logs), 1, logs)
        return self.prefix.text("C:\\" + logs[0])

    def seen(self, family):
        result = self.prefix.helper("font_facts", "-use", family)
        self.assertEqual(result.code, 0, result.text)
        return dict(part.split(" ", 1) for part in result.text.strip().split("|"))

    def listed(self, name):
        return self.prefix.reg_value(FONT_LIST, name + " (TrueType)")


class SecondProgram(FontRun):
    def test_draws_after_installation_and_not_after_removal(self):
        install = remove = ""
        for number, (family, style) in enumerate(FONTS):
            self.make_font(r"C:\dist\vt%d.ttf" % number, family, style)
            install += "$install_tt_font=<InstallFromDir>\\vt%d.ttf,<TTSysDir>\\vt%d.ttf\n" % (number, number)
            remove += "$remove_tt_font=<TTSysDir>\\vt%d.ttf\n" % number
        self.distribution(install + "$tt_fontchange_notify=\n", remove + "$tt_fontchange_notify=\n")
        for family, _ in FONTS:
            self.assertEqual(self.seen(family)["known"], "0")
        self.prefix.kill()

        self.setup("-D", r"C:\dest")
        self.prefix.kill()  # names of new families are only right after a start of the system
        for number, (family, style) in enumerate(FONTS):
            name = family if style == "Regular" else family + " " + style
            self.assertEqual(self.listed(name), "vt%d.ttf" % number)
            seen = self.seen(family)
            self.assertEqual(seen["face"], family)
            self.assertNotEqual(seen["known"], "0")
            # The made fonts advance by six tenths of the em, and their "A" is a box of half an em by seven tenths.
            self.assertEqual(seen["width"], "60", seen)
            self.assertAlmostEqual(int(seen["pixels"]), 50 * 70, delta=150)

        self.prefix.copy_in(SETUP, r"C:\dest\Setup.exe")
        self.prefix.copy_in(self.prefix.host(r"C:\dist\setup.inf"), r"C:\dest\setup.inf")
        self.setup("-R", "-RS", folder=r"C:\dest")
        self.prefix.kill()
        for number, (family, style) in enumerate(FONTS):
            self.assertIsNone(self.listed(family if style == "Regular" else family + " " + style))
            self.assertFalse(self.prefix.exists(r"C:\windows\Fonts\vt%d.ttf" % number))
            seen = self.seen(family)
            self.assertEqual(seen["known"], "0")
            self.assertNotEqual(seen["face"], family)


class ReadOnlyPlaces(FontRun):
    NAME = "Installation de Veltrane 6.0c"

    def test_read_only_font_folder(self):
        self.make_font(r"C:\dist\vt.ttf", "Veltrane Alpha")
        self.distribution("$install_tt_font=<InstallFromDir>\\vt.ttf,<TTSysDir>\\vt.ttf\n")
        self.prefix.chmod(r"C:\windows\Fonts", 0o555)
        log = self.setup("-D", r"C:\dest")
        self.assertRegex(log, r"ne peut pas installer la police TrueType Veltrane Alpha : le dossier de polices "
                              r"C:\\[Ww]indows\\Fonts est en lecture seule\. .* doit être autorisé à écrire dans ce "
                              r"dossier")
        self.assertNotIn("La police est située dans", log)
        self.assertIsNone(self.listed("Veltrane Alpha"))

    def test_read_only_file_that_cannot_be_renamed(self):
        # The name is so long that no numbered one fits, and the medium takes no writing at all.
        benchlib.require_namespaces()
        self.make_font(r"C:\dist\vt.ttf", "Veltrane Alpha")
        folder = r"C:\medium"
        name = "v" * (259 - len(folder) - 1 - 4) + ".ttf"
        self.prefix.write(folder + "\\" + name, b"another file")
        self.prefix.chmod(folder + "\\" + name, 0o444)
        self.distribution("$install_tt_font=<InstallFromDir>\\vt.ttf,%s\\%s\n" % (folder, name))
        host = self.prefix.host(folder)
        self.prefix.kill()
        log = self.setup("-D", r"C:\dest", wrap=("bwrap", "--dev-bind", "/", "/", "--ro-bind", host, host))
        self.assertRegex(log, r"ne peut pas installer la police TrueType Veltrane Alpha : le fichier de police "
                              r"C:\\medium\\v+\.ttf est en lecture seule ou est en cours d'utilisation\.")
        self.assertEqual(self.prefix.read(folder + "\\" + name), b"another file")
        self.assertIsNone(self.listed("Veltrane Alpha"))


del FontRun

if __name__ == "__main__":
    unittest.main()
