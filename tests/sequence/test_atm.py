"""PostScript fonts removed through Setup.exe, with a stand-in for Adobe Type Manager in the system folder."""
import os
import struct
import unittest

import benchlib
from setup_case import SetupTest

ANSWERS = r"C:\atm.ini"  # what the stand-in says; its calls are recorded beside it
FONTS = r"C:\psfonts"    # the fonts of the machine
MEDIUM = r"C:\medium"    # the fonts of the product
NEW_PFB, NEW_PFM = MEDIUM + r"\v.pfb", MEDIUM + r"\v.pfm"
OLD_PFB, OLD_PFM = FONTS + r"\v.pfb", FONTS + r"\v.pfm"
BOTH = NEW_PFB + "," + NEW_PFM

REMOVED = "ATM Api: ATMRemoveFont return value = 0.\n"
KEPT = ("    The installed font VeltranePS is either the same as or newer than the one we're attempting to install. "
        "For this reason, the installed ATM font was not removed.\n")
ABSENT = "    The font VeltranePS was not removed because it is not installed on the user's system.\n"
REFUSED = "ne peut pas supprimer la police PostScript Type 1 VeltranePS de Adobe Type Manager (ATM)."
OLD_TASK = "Suppression des anciennes polices PostScript de Adobe Type Manager (ATM)\n"
ANY_TASK = "Suppression des polices PostScript de Adobe Type Manager (ATM)\n"


def pfb_of_line(line, end="\r"):
    text = (line + end + "12 dict begin\r").encode("cp1252")
    return b"\x80\x01" + struct.pack("<I", len(text)) + text + b"\x80\x03"


def pfb(version, name="VeltranePS"):
    return pfb_of_line("%%!PS-AdobeFont-1.0: %s %s" % (name, version))


def pfm(weight=400, italic=0, face="Veltrane PS"):
    data = bytearray(147)
    data[80] = italic
    data[83:85] = struct.pack("<H", weight)
    for at, text in ((105, face), (139, "VeltranePS")):
        data[at:at + 4] = struct.pack("<I", len(data))
        data += text.encode("cp1252") + b"\0"
    return bytes(data)


def deleted(first=OLD_PFB, second=OLD_PFM):
    return "    Deleted the font files: %s, and %s.\n" % (first, second)


class AtmFonts(SetupTest):
    def setUp(self):
        super().setUp()
        self.prefix.copy_in(os.path.join(benchlib.HELPERS, "atm.dll"), r"C:\windows\system32\ATM32.dll")
        self.prefix.env = {"VT_ATM": ANSWERS}
        self.prefix.write(NEW_PFB, pfb("001.003"))
        self.prefix.write(NEW_PFM, pfm())

    def run_lines(self, lines, answers="", style=0):
        """The log of an installation with these lines; the stand-in knows one font of a style (1 italic, 2 bold)."""
        self.prefix.write(ANSWERS, "[ATM]\n%s\n[Veltrane PS,%d]\npfb=%s\npfm=%s\n" % (answers, style, OLD_PFB, OLD_PFM))
        self.prefix.write(r"C:\windows\Atm.ini", "[Fonts]\nVeltrane PS=a,b\nVeltrane PS,BOLD=a,b\n"
                                                 "Veltrane PS,ITALIC=a,b\nVeltrane PS,BOLDITALIC=a,b\n")
        self.prefix.write(OLD_PFM, pfm())
        self.write_script(install="".join(line + "\n" for line in lines))
        self.assertEqual(self.install(), 0)
        return self.log()

    def font_lines(self):
        return self.prefix.text(r"C:\windows\Atm.ini").splitlines()[1:]

    def has_font(self):
        return self.prefix.exists(OLD_PFB), self.prefix.exists(OLD_PFM)

    def test_age_decides(self):
        for version, goes in (("001.002", True), ("000.999", True), ("1.3", False), ("001.004", False),
                              ("2.0", False)):
            with self.subTest(version=version):
                self.prefix.write(OLD_PFB, pfb(version))
                log = self.run_lines(["$remove_old_atm_font= %s , %s" % (NEW_PFB, NEW_PFM)])
                self.assertIn(OLD_TASK + (REMOVED + deleted() if goes else KEPT), log)
                self.assertEqual(self.has_font(), (not goes, not goes))
                self.assertEqual("Veltrane PS=a,b" in self.font_lines(), not goes)
        self.assertTrue(self.prefix.exists(NEW_PFB) and self.prefix.exists(NEW_PFM))

    def test_each_style_has_its_line(self):
        for weight, italic, style, key in ((400, 0, 0, ""), (401, 0, 2, ",BOLD"), (400, 1, 1, ",ITALIC"),
                                           (700, 255, 3, ",BOLDITALIC")):
            with self.subTest(key=key):
                self.prefix.write(OLD_PFB, pfb("9.9"))
                self.prefix.write(NEW_PFM, pfm(weight, italic))
                log = self.run_lines(["$remove_atm_font=" + BOTH], style=style)
                self.assertIn(ANY_TASK + REMOVED + deleted(), log)
                self.assertEqual(self.has_font(), (False, False))
                lines = ["Veltrane PS" + other + "=a,b" for other in ("", ",BOLD", ",ITALIC", ",BOLDITALIC")]
                lines.remove("Veltrane PS" + key + "=a,b")
                self.assertEqual(self.font_lines(), lines)

    def test_refusal_is_shown_for_an_old_font_only(self):
        self.prefix.write(OLD_PFB, pfb("001.002"))
        refused = "ATM Api: ATMRemoveFont return value = -5.\n"
        log = self.run_lines(["$remove_old_atm_font=" + BOTH], answers="remove=-5")
        self.assertIn(OLD_TASK + refused + "Installation de Veltrane 6.0c " + REFUSED, log)
        log = self.run_lines(["$remove_atm_font=" + BOTH], answers="remove=-5")
        self.assertIn(ANY_TASK + refused, log)
        self.assertNotIn(REFUSED, log)
        self.assertEqual(self.has_font(), (True, True))
        self.assertEqual(len(self.font_lines()), 4)

    def test_font_in_use_is_kept(self):
        self.prefix.write(OLD_PFB, pfb("001.002"))
        log = self.run_lines(["$remove_atm_font=" + BOTH], answers="status=-406")
        self.assertIn(ANY_TASK + "    The font VeltranePS was not removed because it is in use. Status: -406.\n", log)
        self.assertEqual(self.has_font(), (True, True))

    def test_font_that_is_not_installed(self):
        log = self.run_lines(["$remove_old_atm_font=" + BOTH, "$remove_atm_font=" + BOTH], style=2)
        failed = ("GetATMFontPaths: ATMGetFontPaths (ATM API) failed on font Veltrane PS. Error value: -409.\n")
        self.assertIn(OLD_TASK + failed + ABSENT + ANY_TASK + failed + ABSENT, log)

    def test_each_bad_file_has_its_line(self):
        examine = "    Installation de Veltrane 6.0c was unable to examine the required font files: %s and %s.\n"
        comment = "GetPSNameAndVersion: Comment line in %s is "
        short = "PostScript data failure: opened file %sdoesn't contain complete %s structure.\n"
        metrics = pfm()
        bad = (
            ("pfb", None, "    GetPSNameAndVersion error: %s does not exist.\n"),
            ("pfb", b"\x80\x01\0\0\0", "GetPSNameAndVersion: Cannot find beginning of file, %s.\n"),
            ("pfb", b"\x80\x01\0\0\0\0%!PS", comment + "bad, EOF before comment was entirely read.\n"),
            ("pfb", b"\x80\x01\0\0\0\0" + b"x" * 1024 + b"\r", comment + "larger than storage buffer.\n"),
            ("pfb", pfb_of_line("%!PS-AdobeFont-1.0: VeltranePS"),
             "GetPSNameAndVersion error: The comment line in %s is malformed and cannot be parsed.\n"),
            ("pfb", pfb("13"), "Error parsing font version in %s.\n"),
            ("pfm", None, "PostScript data failure: couldn't get style flags as font file %s doesn't exist.\n"),
            ("pfm", metrics[:118], short % ("", "PFMHEADER")),
            ("pfm", metrics[:146], short % ("%s ", "PFMEXTENSION")),
        )
        lines, expected = [], ""
        for i, (kind, data, line) in enumerate(bad):
            path = MEDIUM + "\\bad%d.%s" % (i, kind)
            if data is not None:
                self.prefix.write(path, data)
            outline, other = (path, NEW_PFM) if kind == "pfb" else (NEW_PFB, path)
            lines.append("$remove_old_atm_font=%s,%s" % (outline, other))
            expected += OLD_TASK + line.replace("%s", path) + examine % (other, outline)
        self.assertIn(expected, self.run_lines(lines))

    def test_script_can_ask_for_atm(self):
        for answers, value in (("loaded=1", "1"), ("loaded=0", "0")):
            with self.subTest(answers=answers):
                log = self.run_lines(["$test_ATM_on=do_atm", "$file_sys=<do_atm>"], answers=answers)
                self.assertIn('unrecognized file system operation "%s"' % value, log)

    def test_notice_of_the_change(self):
        self.run_lines(["$atm_fontchange_notify="])
        self.assertIn("ATMBeginFontChange\nATMForceFontChange\nATMEndFontChange\nATMFinish\n",
                      self.prefix.text(ANSWERS + ".log"))


if __name__ == "__main__":
    unittest.main()
