"""Tasks of a setup script tried through Setup.exe: shortcuts, file associations, fonts, equation servers, Office add-ins
and preferences are made by an installation, and a removal takes back what it made."""
import unittest

from setup_case import PRODUCT, SOURCE, SetupTest

PROGRAMS = r"C:\ProgramData\Microsoft\Windows\Start Menu\Programs"
FILE_EXTS = r"HKCU\Software\Microsoft\Windows\CurrentVersion\Explorer\FileExts"
FONT_LIST = r"HKLM\Software\Microsoft\Windows NT\CurrentVersion\Fonts"
USER_OFFICE = r"HKCU\Software\Microsoft\Office"
OFFICE = r"HKLM\Software\Microsoft\Office"
SAVED_TARGETS = r"HKLM\Software\Quorvale\KVRX6\OldOLEAutoConverts"
OWN_CLASS = "{5D1E2C40-7A35-4B0E-9C11-3F6A8E0B7D26}"
CLASS_A = "{5D1E2C40-7A35-4B0E-9C11-3F6A8E0B7DA1}"
CLASS_B = "{5D1E2C40-7A35-4B0E-9C11-3F6A8E0B7DB2}"


class TaskTest(SetupTest):
    def run_tasks(self, install="", remove="", startup=""):
        """An installation with these lines; `remove` is what a later removal will run."""
        self.write_script(install=install, remove=remove, startup=startup)
        self.assertEqual(self.install(), 0)
        return self.log()

    def run_removal(self):
        self.assertEqual(self.remove(), 0)
        return self.log()


class Shortcuts(TaskTest):
    def link(self, name):
        result = self.prefix.helper("read_link", PROGRAMS + "\\" + name)
        self.assertEqual(result.code, 0, result.text)
        return dict(line.split(": ", 1) for line in result.text.split("\n") if ": " in line)

    def test_group_is_made_and_removed(self):
        self.run_tasks(
            install="$add_icon=Editeur,Ouvre l'éditeur,C:\\vt\\Veltrane.exe,-x \"a b\",C:\\vt\\icons.dll,-3\n"
                    "$add_icon=Aide 6.0,Aide de <AppName>,C:\\vt\\Veltrane.hlp\n"
                    "$add_icon=Vide,Sans cible\n"
                    "$add_icon=Reste,Un autre,C:\\vt\\autre.exe\n"
                    "$add_icon_group=<AppName> <MajVersion>\n",
            remove="$remove_icon_group=<AppName> <MajVersion>\n$remove_icon_group=<AppName> <MajVersion>\n")
        group = PROGRAMS + r"\Veltrane 6"
        self.assert_logged(
            "Création du groupe de programmes Veltrane 6\n"
            "Successfully created program group folder, " + group + ".\n",
            "Assertion( Str::Length(linkRec.pathname) );",
            "    Installation de Veltrane 6.0c couldn't create the following link file: " + group + "\\Vide.lnk.\n"
            "      desc:      Sans cible\n"
            "      pathname:\t\n"
            "      args:      \n"
            "      iconPath:  <none>\n"
            "      iconIndex: 0\n")
        self.assertEqual(self.prefix.tree(group), ["Aide 6.0.lnk", "Editeur.lnk", "Reste.lnk"])
        self.assertEqual(self.link(r"Veltrane 6\Editeur.lnk"),
                         {"path": r"C:\vt\Veltrane.exe", "description": "Ouvre l'éditeur", "arguments": '-x "a b"',
                          "icon": r"C:\vt\icons.dll,-3", "folder": "", "hotkey": "0"})
        self.assertEqual(self.link(r"Veltrane 6\Aide 6.0.lnk"),
                         {"path": r"C:\vt\Veltrane.hlp", "description": "Aide de Veltrane", "arguments": "",
                          "icon": ",0", "folder": "", "hotkey": "0"})
        self.run_removal()
        self.assert_logged("Suppression des anciennes icônes Veltrane 6\n"
                           "Suppression des anciennes icônes Veltrane 6\n"
                           "    Couldn't delete the Veltrane 6 program group (maybe it didn't exist).\n")
        self.assertFalse(self.prefix.exists(group))
        self.assertTrue(self.prefix.exists(PROGRAMS))

    def test_emptying_leaves_other_files(self):
        for name in ("a.lnk", "B.LNK", "lisez.txt", "sub\\c.lnk"):
            self.prefix.write(PROGRAMS + "\\Outils\\" + name, "")
        self.run_tasks(install="$empty_icon_group=Outils\n$empty_icon_group=Rien\n")
        self.assert_logged("Suppression des anciennes icônes Outils\nSuppression des anciennes icônes Rien\n"
                           "    Failed: couldn't empty the Rien program group.\n")
        self.assertEqual(self.prefix.tree(PROGRAMS + r"\Outils"), ["lisez.txt", "sub\\", "sub\\c.lnk"])


class Associations(TaskTest):
    def open_with(self, extension):
        return self.prefix.reg_tree(FILE_EXTS + "\\." + extension + r"\OpenWithList").get(
            FILE_EXTS.replace("HKCU", "HKEY_CURRENT_USER") + "\\." + extension + r"\OpenWithList", {})

    def test_open_with_list_gets_the_application_and_loses_it(self):
        key = FILE_EXTS + r"\.vtd\OpenWithList"
        for name, data in (("a", "x.exe"), ("c", "y.exe"), ("MRUList", "ca")):
            self.prefix.reg_add(key, name, data)
        self.run_tasks(install="$add_openwith_support=vtd,Veltrane.exe\n$add_openwith_support=vtd,VELTRANE.EXE\n",
                       remove="$remove_openwith_support=vtd,veltrane.exe\n$remove_openwith_support=vtd,veltrane.exe\n")
        self.assert_logged("Added Veltrane.exe to OpenWithList for vtd\n"
                           "VELTRANE.EXE already exists in OpenWithList for vtd\n")
        self.assertEqual(self.open_with("vtd"), {"a": "x.exe", "c": "y.exe", "d": "Veltrane.exe", "MRUList": "cad"})
        self.run_removal()
        self.assert_logged("Deleted veltrane.exe from OpenWithList for vtd\n"
                           "veltrane.exe did not exist in OpenWithList for vtd\n")
        self.assertEqual(self.open_with("vtd"), {"a": "x.exe", "c": "y.exe", "MRUList": "ca"})

    def test_conflicting_associations_are_cleaned(self):
        for type_name, command in (("Other.Doc", r'"C:\x\Veltrane.exe" %1'), ("Own.Doc.1", r"C:\x\Veltrane.exe %1"),
                                   ("Third.Doc", r"C:\x\third.exe %1")):
            self.prefix.reg_add("HKCR\\." + type_name[:3].lower(), "", type_name)
            self.prefix.reg_add("HKCR\\" + type_name + r"\shell\open\command", "", command)
        extensions = r"HKLM\Software\Microsoft\Windows\CurrentVersion\Extensions"
        self.prefix.reg_add(extensions, "oth", r"C:\old\VELTRANE.EXE ^.oth")
        self.prefix.reg_add(extensions, "thi", r"third.exe ^.thi")
        self.run_tasks(install="$clean_others_ext_reg=oth,Own.Doc\n$clean_others_ext_reg=.own,Own.Doc\n"
                               "$clean_others_ext_reg=\"thi\",Own.Doc\n"
                               "$clean_old_winini_ext_reg=oth\n$clean_old_winini_ext_reg=thi\n")
        log = self.log()
        self.assert_logged(
            "    An independant application was found to be launching Veltrane. Installation de Veltrane 6.0c has "
            'removed the registry key "HKEY_CLASSES_ROOT\\Other.Doc\\shell\\open" in order to eliminate the conflict.\n'
            '    Fixed possible file extension conflicts by deleting the value "oth" from the '
            '"HKEY_LOCAL_MACHINE\\Software\\Microsoft\\Windows\\CurrentVersion\\Extensions" registry key.\n')
        self.assertEqual((log.count("An independant"), log.count("Fixed possible")), (1, 1))
        self.assertEqual([self.prefix.reg_exists("HKCR\\" + name + r"\shell\open\command")
                          for name in ("Other.Doc", "Own.Doc.1", "Third.Doc")], [False, True, True])
        self.assertIsNone(self.prefix.reg_value(extensions, "oth"))
        self.assertEqual(self.prefix.reg_value(extensions, "thi"), "third.exe ^.thi")

    def test_a_document_class_is_registered_once(self):
        self.prefix.reg_add(r"HKCR\Taken.Doc", "", "Of another")
        self.run_tasks(install="$stub_reg=Stub.Doc,%s,Équation\n$stub_reg=Taken.Doc,%s,Équation\n" % (CLASS_A, CLASS_B))
        self.assertEqual([self.prefix.reg_value("HKCR\\" + key, "") for key in (
            "Stub.Doc", r"Stub.Doc\CLSID", "CLSID\\" + CLASS_A, "CLSID\\" + CLASS_A + r"\ProgID", "Taken.Doc")],
            ["Équation", CLASS_A, "Équation", "Stub.Doc", "Of another"])
        self.assertFalse(self.prefix.reg_exists("HKCR\\CLSID\\" + CLASS_B))


class Fonts(TaskTest):
    def make_font(self, name, family, version="1.0"):
        result = self.prefix.helper("make_font", SOURCE + "\\" + name, family, "Regular", version)
        self.assertEqual(result.code, 0, result.text)

    def test_fonts_come_and_go(self):
        self.make_font("new.ttf", "Vt Alpha", "2.0")
        self.make_font("old.ttf", "Vt Alpha", "1.0")
        self.make_font("other.ttf", "Vt Beta")
        self.prefix.write(r"C:\windows\Fonts\vtb.ttf", "of another")
        self.run_tasks(install="$install_tt_font=<InstallFromDir>\\new.ttf,<TTSysDir>\\vta.ttf\n"
                               "$install_tt_font=<InstallFromDir>\\old.ttf,<TTSysDir>\\vta.ttf\n"
                               "$install_tt_font=<InstallFromDir>\\new.ttf,<TTSysDir>\\vta.ttf\n"
                               "$install_tt_font=<InstallFromDir>\\other.ttf,<TTSysDir>\\vtb.ttf\n"
                               "$install_tt_font=<InstallFromDir>\\none.ttf,<TTSysDir>\\vtc.ttf\n"
                               "$install_tt_font=\n",
                       remove="$remove_tt_font=<TTSysDir>\\vta.ttf\n$remove_font_name=Vt Beta,TrueType\n"
                              "$remove_tt_font=<TTSysDir>\\vta.ttf\n")
        self.assert_logged(
            r"  Task_install_tt_font(name: install_tt_font, args: C:\dist\new.ttf,",
            "Installation des polices TrueType\n",
            "    TTSysDir variable defined: C:\\windows\\Fonts\n",
            "   TrueType font installation [Vt Alpha]: installed font's version (2.0) is newer/later than the font "
            "we're attempting to install (1.0). Installation de Veltrane 6.0c will keep the installed font.\n",
            "Successfully removed Vt Alpha from font table\n",
            "InstallTTFont: destination pathname changed from C:\\windows\\Fonts\\vtb.ttf to "
            "C:\\windows\\Fonts\\vtb_01.ttf, due to a filename collision.\n",
            "TrueType font installation failure: couldn't read data from the font file C:\\dist\\none.ttf.\n"
            "Installation de Veltrane 6.0c ne peut pas installer la police TrueType none.\n"
            "La police est située dans C:\\dist\\none.ttf.\n",
            "Bad param in InstallTTFont: 'sourcePath' is empty or NULL.\n")
        self.assertEqual(self.log().count("TTSysDir variable defined"), 1)
        self.assertEqual(self.prefix.reg_value(FONT_LIST, "Vt Alpha (TrueType)"), "vta.ttf")
        self.assertEqual(self.prefix.reg_value(FONT_LIST, "Vt Beta (TrueType)"), "vtb_01.ttf")
        self.assertEqual(self.prefix.read(r"C:\windows\Fonts\vta.ttf"), self.prefix.read(SOURCE + r"\new.ttf"))
        self.run_removal()
        self.assert_logged("Suppression des polices TrueType\n",
                           "Successfully removed Vt Alpha from font table\n",
                           "Successfully removed Vt Beta from font table\n",
                           "   UninstallTTFont: font file C:\\windows\\Fonts\\vta.ttf doesn't exist = Success (nothing "
                           "to uninstall).\n")
        self.assertIsNone(self.prefix.reg_value(FONT_LIST, "Vt Alpha (TrueType)"))
        self.assertIsNone(self.prefix.reg_value(FONT_LIST, "Vt Beta (TrueType)"))
        self.assertEqual([name for name in self.prefix.tree(r"C:\windows\Fonts") if name.startswith("vt")], ["vtb.ttf"])

    def test_without_atm_its_tasks_say_so(self):
        self.run_tasks(install="$test_ATM_on=do_atm\n&atm?\n$remove_atm_font=C:\\a.pfb,C:\\a.pfm\n"
                               "$remove_old_atm_font=C:\\a.pfb,C:\\a.pfm\n$atm_fontchange_notify=\n"
                               "$file_sys=<do_atm>\n")
        self.assert_logged(
            'unrecognized file system operation "0"',
            "Suppression des polices PostScript de Adobe Type Manager (ATM)\n"
            "    ATM is not properly loaded. PostScript fonts cannot be removed.\n"
            "Suppression des anciennes polices PostScript de Adobe Type Manager (ATM)\n"
            "    ATM is not properly loaded. PostScript fonts cannot be removed.\n")

    def test_printer_fonts_are_removed_on_removal_only(self):
        devices = r"HKCU\Software\Microsoft\Windows NT\CurrentVersion"
        for section in ("PrinterPorts", "Devices"):
            self.prefix.reg_add(devices + "\\" + section, "Laser", "PSCRIPT,LPT1:")
        path = r"C:\windows\win.ini"
        lines = ("[PostScript,LPT1]\nsoftfonts=3\nsoftfont1=c:\\ps\\a.pfm\n"
                 "softfont2=c:\\ps\\vtfont1.pfm,c:\\ps\\VTFONT1.pfb\nsoftfont4=c:\\ps\\b.pfm\n")
        self.prefix.write(path, self.prefix.text(path) + lines)
        for name in ("a.pfm", "b.pfm", "vtfont1.pfm", "vtfont1.pfb"):
            self.prefix.write("C:\\ps\\" + name, "x")
        self.run_tasks(install="$remove_soft_fonts=x\n", remove="$remove_soft_fonts=\n")
        self.assert_logged("  Task_remove_soft_fonts(name: remove_soft_fonts, args: x)\n")
        self.assertIn(lines, self.prefix.text(path))
        self.run_removal()
        self.assert_logged(
            "  Task_remove_soft_fonts(name: remove_soft_fonts, args: )\n"
            "-WIN.INI [PostScript,LPT1] softfont2=c:\\ps\\vtfont1.pfm,c:\\ps\\VTFONT1.pfb\n"
            "The printer Laser appears to have fewer softfont lines than the softfonts =... line indicates in "
            "win.ini.\n"
            "+WIN.INI [PostScript,LPT1] softfonts=2\n")
        self.assertIn("[PostScript,LPT1]\nsoftfonts=2\nsoftfont1=c:\\ps\\a.pfm\nsoftfont4=c:\\ps\\b.pfm\n",
                      self.prefix.text(path))
        self.assertEqual(self.prefix.tree(r"C:\ps"), ["a.pfm", "b.pfm"])

    def test_printers_of_the_bitmap_drivers_reload_their_fonts(self):
        devices = r"HKCU\Software\Microsoft\Windows NT\CurrentVersion"
        sections = {"A": ("HPPCL", "LPT1:"), "B": ("hppcl5a", "LPT2:"), "C": ("HPPCL5MS", "FILE:"),
                    "D": ("HPPCL5E", "LPT4:"), "E": ("HPPCL6", "LPT5:")}
        for name, device in sections.items():
            self.prefix.reg_add(devices + r"\PrinterPorts", name, ",".join(device) + ",15,45")
        path = r"C:\windows\win.ini"
        lines = ("[HPPCL,LPT1:]\nsoftfonts=3\nsoftfont1=c:\\a.sfp\nsoftfont2=c:\\b.sfp\nsoftfont4=c:\\c.sfp\nfsvers=7\n"
                 "[hppcl5a,LPT2]\nsoftfonts=5\nsoftfont1=c:\\a.sfp\nsoftfont2=c:\\VTFONT1.sfl\n"
                 "[HPPCL5MS,FILE:]\nsoftfonts=0\nsoftfont1=c:\\vtfont1.sfl\n"
                 "[HPPCL6,LPT5:]\nsoftfonts=1\nsoftfont1=c:\\vtfont1.sfl\nfsvers=1\n")
        self.prefix.write(path, self.prefix.text(path) + lines)
        self.run_tasks(remove="$remove_soft_fonts=\n")
        log = self.run_removal()
        for text in ("The printer A appears to have fewer softfont lines than the softfonts =... line indicates in "
                     "win.ini.\n+WIN.INI [HPPCL,LPT1:] fsvers=8\n",
                     "-WIN.INI [hppcl5a,LPT2] softfont2=c:\\VTFONT1.sfl\nThe printer B appears to have fewer softfont "
                     "lines than the softfonts =... line indicates in win.ini.\n+WIN.INI [hppcl5a,LPT2] softfonts=1\n"
                     "+WIN.INI [hppcl5a,LPT2] fsvers=1\n",
                     "+WIN.INI [HPPCL5MS,FILE:] fsvers=1\n"):
            self.assertIn(text, log)
        self.assertEqual(log.count("WIN.INI ["), 5)
        left = self.prefix.text(path)
        for text in ("[HPPCL,LPT1:]\nsoftfonts=3\nsoftfont1=c:\\a.sfp\nsoftfont2=c:\\b.sfp\nsoftfont4=c:\\c.sfp\n"
                     "fsvers=8\n",
                     "[hppcl5a,LPT2]\nsoftfonts=1\nsoftfont1=c:\\a.sfp\nfsvers=1\n",
                     "[HPPCL5MS,FILE:]\nsoftfonts=0\nsoftfont1=c:\\vtfont1.sfl\nfsvers=1\n",
                     "[HPPCL6,LPT5:]\nsoftfonts=1\nsoftfont1=c:\\vtfont1.sfl\nfsvers=1\n"):
            self.assertIn(text, left)
        self.assertNotIn("HPPCL5E", left)


class EquationServers(TaskTest):
    def add_server(self, prog_id, class_id, target=None, program=None):
        self.prefix.reg_add("HKCR\\" + prog_id + r"\CLSID", "", class_id)
        self.prefix.reg_add("HKCR\\CLSID\\" + class_id, "", prog_id + " objects")
        self.prefix.reg_add("HKCR\\CLSID\\" + class_id + r"\ProgID", "", prog_id)
        if target:
            self.prefix.reg_add("HKCR\\CLSID\\" + class_id + r"\AutoConvertTo", "", target)
        if program:
            self.prefix.reg_add("HKCR\\CLSID\\" + class_id + r"\LocalServer32", "", program)

    def target(self, class_id):
        return self.prefix.reg_value("HKCR\\CLSID\\" + class_id + r"\AutoConvertTo", "")

    def test_conversion_is_set_and_given_back(self):
        self.add_server("Equation.3", CLASS_A, CLASS_B)
        self.add_server("Equation.KVRX7", CLASS_B)
        self.run_tasks(install="$set_all_autoconverts=True\n", remove="$set_all_autoconverts=False\n$register=\n")
        self.assertEqual((self.target(CLASS_A), self.target(CLASS_B)), (OWN_CLASS, None))
        self.assertEqual(self.prefix.reg_value(SAVED_TARGETS + "\\" + CLASS_A, ""), CLASS_B)
        self.run_removal()
        self.assert_logged("OLE Registration command: " + PRODUCT + "\\Veltrane.exe -remove = Success 2\n")
        self.assertEqual((self.target(CLASS_A), self.target(CLASS_B)), (CLASS_B, None))
        self.assertFalse(self.prefix.reg_exists(SAVED_TARGETS + "\\" + CLASS_A))

    def test_a_product_that_is_missing_is_not_registered(self):
        self.run_tasks(install="$register=\n$run_ole_mgr=Maybe\n")
        self.assert_logged("Modification des données OLE et des associations de fichiers\n"
                           "OLE Registration command: " + PRODUCT + "\\Veltrane.exe -install = Fail: Error =  2\n"
                           "Veltrane ne peut pas effectuer son enregistrement OLE. \nVeuillez contacter Quorvale.\n",
                           "The arguments for the task run_ole_mgr in Setup.inf are unknown.\n")

    def test_preferences_of_the_newest_server_are_taken_over(self):
        old = r"HKCU\Software\Microsoft\Equation Editor\3.0\Options"
        self.add_server("Equation.3", CLASS_A)
        self.add_server("Equation.2", CLASS_B)
        self.prefix.reg_add(old + r"\Spacing", "LineSpacing", "150%")
        for name, data in (("Text", "Tahoma,I"), ("Function", "No Such Font,B"), ("User1", "Tahoma,")):
            self.prefix.reg_add(old + r"\Fonts", name, data)
        own = r"HKCU\Software\Quorvale\KVRX6"
        self.run_tasks(install="$convert_pref=\n$convert_pref=\n")
        self.assert_logged("    Convert VT preferences: REG*HKEY_CURRENT_USER\\Software\\Microsoft\\Equation Editor\\3.0"
                           "\\Options to REG*HKEY_CURRENT_USER\\Software\\Quorvale\\KVRX6, result: Success\n",
                           "Assertion( ! convertYet );")
        self.assertEqual(self.prefix.reg_value(own + r"\Spacing", "LineSpacing"), "150%")
        self.assertEqual([self.prefix.reg_value(own + r"\Styles", name) for name in ("Text", "Function", "User1")],
                         ["Tahoma,I", "", ""])
        self.assertFalse(self.prefix.reg_exists(own + r"\Fonts"))

    def test_preferences_of_an_old_editor_lie_beside_its_program(self):
        self.add_server("Equation.1x", CLASS_A, program='"C:\\old dir\\EQN.EXE" /x')
        windows = r"HKCU\Software\Microsoft\Windows NT\CurrentVersion\Windows"
        self.prefix.reg_add(windows, "Device", "Laser,PSCRIPT,LPT1:")
        source = ("; c\n[SPACING]\nA=1\n[Printer,PSCRIPT,LPT2:]\nText=Marlett,N\n"
                  "[printer,pscript,lpt1:]\nText=Tahoma,N\nUser1=Tahoma,B\n; c\n"
                  "Greek=No Such Font,I\nUser2=Tahoma\nLast=helv\n")
        self.prefix.write(r"C:\old dir\eqnedit.ini", source)
        self.run_tasks(install="$convert_pref=\n", startup="UserRegKey=C:\\own.ini\n")
        line = "    Convert VT preferences: C:\\old dir\\eqnedit.ini to %s, result: %s\n"
        self.assert_logged(line % ("C:\\own.ini", "Success"))
        text = ("; Veltrane INI v1: Equation Preferences\n\n[SPACING]\nA=1\n\n[Styles]\nText=Tahoma,N\nUser1=\n; c\n"
                "Greek=\nUser2=\nLast=MS Sans Serif\n\n")
        self.assertEqual(self.prefix.text(r"C:\own.ini"), text)
        self.assertEqual(self.prefix.text(r"C:\old dir\eqnedit.ini"), source)
        # A second run finds every section there; a target that cannot be written fails.
        self.run_tasks(install="$convert_pref=\n", startup="UserRegKey=C:\\own.ini\n")
        self.assertEqual(self.prefix.text(r"C:\own.ini"), text)
        self.prefix.chmod(r"C:\own.ini", 0o444)
        self.run_tasks(install="$convert_pref=\n", startup="UserRegKey=C:\\own.ini\n")
        self.assert_logged(line % ("C:\\own.ini", "Fail"))


class OfficeAddIns(TaskTest):
    def add_word(self, version, path):
        self.prefix.reg_add(OFFICE + r"\%d.0\Word\InstallRoot" % version, "Path", path)

    def test_word_macros_come_and_go(self):
        self.add_word(12, "C:\\Office\\")
        self.add_word(11, '"C:\\OFFICE\\"')
        self.add_word(9, "C:\\Office9")
        self.prefix.make_folder(r"C:\Office\Startup")
        for name in ("vt.dot", "vt2.dot"):
            self.prefix.write(SOURCE + "\\" + name, name)
        record = "".join("$set_word_macro=%d,vt.dot,<InstallFromDir>,vt2.dot,<InstallFromDir>\n" % version
                         for version in (8, 9, 10, 11, 12))
        self.run_tasks(install=record + "$run_word_macro=yes\n$run_word_macro=False\n",
                       remove=record + "$remove_word_macro=Word\n")
        self.assert_logged(
            "    Error: MS Word version 8 is not supported by this version of Installation de Veltrane 6.0c.\n"
            "MS Word 9 found, Office Loc is C:\\Office9\\Startup\n"
            "MS Word 10 not found, Office Loc is \n"
            "MS Word 11 found, Office Loc is C:\\OFFICE\\Startup\n"
            "MS Word 12 found, Office Loc is C:\\Office\\Startup\n"
            "The arguments for the task run_word_macro in Setup.inf are unknown.\n",
            "Installation des commandes pour Microsoft Word 2007\n"
            "Copying C:\\dist\\vt.dot to C:\\Office\\Startup\\vt.dot\n"
            "Copying C:\\dist\\vt2.dot to C:\\Office\\Startup\\vt2.dot\n"
            "Installation des commandes pour Microsoft Word 2003\n"
            "    The startup folder for Microsoft Word 2003 is also used by Microsoft Word 2007. vt.dot was not "
            "installed.\n"
            "Installation des commandes pour Microsoft Word 2000\n"
            "Copying C:\\dist\\vt.dot to C:\\Office9\\Startup\\vt.dot\n"
            "Installation de Veltrane 6.0c ne peut pas installer les Commandes Veltrane pour Microsoft Word 2000 "
            "(Office 2000) pour la raison suivante : le dossier de démarrage de Word n'existe pas.\n")
        self.assertEqual(self.prefix.tree(r"C:\Office\Startup"), ["vt.dot", "vt2.dot"])
        self.prefix.write(r"C:\Office\Startup\user.dot", "of the user")
        self.run_removal()
        self.assert_logged("  Task_remove_word_macro(name: remove_word_macro, args: Word)\n"
                           "Suppression des commandes pour Microsoft Word\n"
                           "Suppression des commandes pour Microsoft Word 2000\n",
                           "Suppression des commandes pour Microsoft Word 2003\n"
                           "Deleting C:\\OFFICE\\Startup\\vt.dot, result = success\n")
        self.assertEqual(self.prefix.tree(r"C:\Office\Startup"), ["user.dot"])

    def test_left_over_copies_and_unsupported_versions(self):
        self.add_word(12, "C:\\Office\\")
        self.add_word(14, "C:\\Office14\\")
        self.prefix.write(r"C:\Office\Startup\VT.DOT", "x")
        self.prefix.write(r"C:\Office\Startup\vt.dotx", "x")
        self.run_tasks(install="$fixup_word_migration=vt.dot,none.dot\n$check_unsupported_office_version=13,1\n"
                               "$check_unsupported_office_version=13,5\n")
        missing = ("Installation de Veltrane 6.0c couldn't determine the name of the MS Office/Word 'Startup' folder. "
                   "Unable to continue task 'fixup_word_migration'.\n")
        self.assert_logged(missing * 3 +
                           'Installation de Veltrane 6.0c found "VT.DOT" and tried to delete it: SUCCESS\n')
        self.assertEqual(self.prefix.tree(r"C:\Office\Startup"), ["vt.dotx"])
        self.assertEqual(self.log().count("une version de Microsoft Office que Veltrane 6 ne connaît pas"), 1)

    def test_powerpoint_add_ins_come_and_go(self):
        for version in (9, 12):
            self.prefix.reg_add(OFFICE + r"\%d.0\PowerPoint\InstallRoot" % version, "Path", "C:\\Office\\")
        self.prefix.reg_add(OFFICE + r"\12.0\PowerPoint\AddIns\other", "Path", "other.ppa")
        record = "".join("$set_ppt_macro=%d,tool.ppa,C:\\P\n" % version for version in (8, 9, 10, 11, 12))
        self.run_tasks(install=record + "$run_ppt_macro=True\n", remove=record + "$remove_ppt_macro=PowerPoint\n")
        self.assert_logged(
            "MS PowerPoint version 8 is not supported by this version of Installation de Veltrane 6.0c.\n"
            "  Task_run_ppt_macro(name: run_ppt_macro, args: True)\n",
            "Voulez-vous installer les commandes de Veltrane pour Microsoft PowerPoint ?: [Yes]\n")
        add_in = r"\%d.0\PowerPoint\AddIns\tool"
        for key in (USER_OFFICE + add_in % 9, OFFICE + add_in % 12):
            self.assertEqual([self.prefix.reg_value(key, name) for name in ("AutoLoad", "Path")],
                             [0xFFFFFFFF, r"C:\P\tool.ppa"], key)
        for key in (OFFICE + add_in % 9, USER_OFFICE + add_in % 10, OFFICE + add_in % 11, USER_OFFICE + add_in % 12):
            self.assertFalse(self.prefix.reg_exists(key), key)
        self.run_removal()
        self.assert_logged("  Task_remove_ppt_macro(name: remove_ppt_macro, args: PowerPoint)\n")
        for key in (USER_OFFICE + add_in % 9, OFFICE + add_in % 12):
            self.assertFalse(self.prefix.reg_exists(key), key)
        self.assertTrue(self.prefix.reg_exists(OFFICE + r"\12.0\PowerPoint\AddIns\other"))


class LogLines(TaskTest):
    """Lines that hold nothing but what a task did keep it when a variable of the script has the name of an item."""

    NAMES = ("app Extension ext ExtLine FontName Found LinkFile MacroFile Path ProdUsingFolder Product ProgGroup Root "
             "ShortcutFolder SubKey Value WordVer").split()

    def test_items_are_not_taken_from_variables(self):
        self.prefix.reg_add(OFFICE + r"\12.0\Word\InstallRoot", "PATH", r"C:\w")
        self.prefix.reg_add(OFFICE + r"\11.0\Word\InstallRoot", "PATH", r"C:\W")
        extensions = r"Software\Microsoft\Windows\CurrentVersion\Extensions"
        self.prefix.reg_add("HKLM\\" + extensions, "vtx", r"C:\vt\Veltrane.exe")
        self.prefix.write(r"C:\m\A.dot", b"macro")
        self.prefix.make_folder(r"C:\w\Startup")
        self.run_tasks(
            startup="".join("%s=other\n" % name for name in self.NAMES),
            install="$add_icon_group=Group\n$empty_icon_group=Missing\n$remove_icon_group=Missing\n"
                    "$create_link=Q:\\x,Text,C:\\vt\\a.exe\n"
                    "$set_word_macro=12,A.dot,C:\\m\n$set_word_macro=11,A.dot,C:\\m\n$run_word_macro=False\n"
                    "$clean_old_winini_ext_reg=vtx\n$remove_font_name=No Such Font,TrueType\n")
        self.assert_logged(
            "Successfully created program group folder, " + PROGRAMS + "\\Group.\n",
            "    Failed: couldn't empty the Missing program group.\n",
            "    Couldn't delete the Missing program group (maybe it didn't exist).\n",
            "    Couldn't create link file Q:\\x.lnk.\n",
            "MS Word 12 found, Office Loc is C:\\w\\Startup\nMS Word 11 found, Office Loc is C:\\W\\Startup\n",
            "    The startup folder for Microsoft Word 2003 is also used by Microsoft Word 2007. A.dot was not "
            "installed.\n",
            "    Fixed possible file extension conflicts by deleting the value \"vtx\" from the "
            "\"HKEY_LOCAL_MACHINE\\" + extensions + "\" registry key.\n",
            "Uninstall Font: No Such Font is not in the font table\n")


if __name__ == "__main__":
    unittest.main()
