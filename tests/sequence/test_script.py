"""The script through the front door: every kind of line, file records, and the general tasks with what they log."""
import os

from setup_case import PRODUCT, SOURCE, SetupTest

MADE = r"HKEY_CURRENT_USER\Software\Quorvale\Made"
WORK = r"C:\work"
FAILED = "L'application Veltrane n'a pas été installée correctement. L'installation a échoué ou a été interrompue."


class ScriptTest(SetupTest):
    def made(self, name):
        return self.prefix.reg_value(MADE, name)

    def work(self, name, data=b"x"):
        self.prefix.write(WORK + "\\" + name, data)

    def append(self, text):
        """Adds sections behind the script."""
        path = SOURCE + r"\setup.inf"
        self.prefix.write(path, self.prefix.text(path) + text)

    def lines(self, begin, end=None):
        """The log's lines from the one that begins with a text up to the one that begins with another."""
        lines = self.log().split("\n")
        first = next(i for i, line in enumerate(lines) if line.startswith(begin))
        if end is None:
            return lines[first:]
        return lines[first:next(i for i in range(first, len(lines)) if lines[i].startswith(end))]

    def unknown(self, task, section):
        return ["The arguments for the task %s in Setup.inf are unknown." % task,
                "    In Setup.inf: section \"%s\", line \"$%s\"." % (section, task)]


class Lines(ScriptTest):
    def test_each_kind_in_its_order(self):
        self.prefix.reg_add(MADE, "Old", "x")
        self.prefix.reg_add(MADE + "\\Old", "v", "x")
        self.prefix.reg_add(MADE + "\\Gone\\Below", "v", "x")
        self.write_script(
            startup="A=1\nB=<A>2<Unset>\n; C=comment\nB=<B>3\ndo_on=<A>\ndo_off=0\n"
            "$file_sys=delete,C:\\work\\a\n&always\n",
            install="&on?\n&off?\n&unset?\n-%s\\Old\n-%s\\Gone\\\n+%s\\last=<B>|<C>\n" % (MADE, MADE, MADE))
        self.append("[always]\n+$%s\\always=<B>\n[on]\n+%s\\on=1\n[off]\n+%s\\off=1\n" % (MADE, MADE, MADE))
        self.work("a")
        self.assertEqual(self.install(), 0)
        self.assertFalse(self.prefix.exists(WORK + r"\a"))
        tree = self.prefix.reg_tree(MADE)
        self.assertEqual(tree[MADE], {"always": "12<Unset>3", "on": "1", "last": "12<Unset>3|<C>"})
        self.assertEqual(tree[MADE + "\\Old"], {"v": "x"})
        self.assertNotIn(MADE + "\\Gone", tree)

    def test_an_option_that_is_neither_on_nor_off(self):
        self.write_script(startup="do_on=yes\n", install="&on?\n+%s\\behind=1\n" % MADE)
        self.append("[on]\n+%s\\on=1\n" % MADE)
        self.assertEqual(self.install(), 0)
        self.assert_logged('Assertion( value == "0" || value == "1" );')
        self.assertIsNone(self.made("on"))
        self.assertEqual(self.made("behind"), "1")

    def test_a_line_that_fails_ends_the_run(self):
        for line, text in (("$File_sys=delete,x", "Assertion( taskProc );"),
                           ("&nowhere", 'DoSection fail: section "nowhere" not found.'),
                           ("norecord", 'no record "norecord" in the section "files"'),
                           ("short", "has less than four fields")):
            with self.subTest(line=line):
                self.write_script(install="A=1\n&inner\n+%s\\behind=1\n" % MADE)
                self.append("short=1,a,<ProgDir>\\a\n[inner]\n%s\n+%s\\behind=1\n" % (line, MADE))
                self.assertEqual(self.install(), 8)
                self.assert_logged(text, FAILED)
                self.assertIsNone(self.made("behind"))

    def test_a_long_value_is_cut(self):
        self.write_script(install="Long=%s\n+%s\\long=<Long>\n" % ("v" * 600, MADE))
        self.assertEqual(self.install(), 0)
        self.assertEqual(self.made("long"), "v" * 511)


class Records(ScriptTest):
    def test_prefixes_doubles_and_sizes(self):
        self.add_file("a.txt", b"new", dest="* <ProgDir>\\hidden.txt", size=4000000000)
        self.add_file("a.txt", b"new", dest="<ProgDir>\\HIDDEN.TXT", size=1024)
        self.add_file("a.txt", b"new", dest="?C:\\work\\kept.txt", size=1024)
        self.add_file("a.txt", b"new", dest="*?C:\\work\\both.txt", size=1024)
        self.work("kept.txt", b"old")
        self.write_script()
        self.assertEqual(self.install(), 0)
        self.assert_logged('      "C:\\work\\kept.txt" already exists. File not copied.',
                           "Volume C:... ", " KBytes available; 3908251 KBytes needed.",
                           "Installation : " + PRODUCT + r"\hidden.txt", r"Installation : C:\work\both.txt")
        self.assertEqual(self.prefix.read(WORK + r"\kept.txt"), b"old")
        for path in (PRODUCT + r"\hidden.txt", WORK + r"\both.txt"):
            self.assertEqual(self.prefix.read(path), b"new")
            self.assertIn("H", self.prefix.run("attrib", path).text.split("C:")[0])

    def test_a_missing_source_of_one_disk(self):
        self.add_file("a.txt", b"new")
        self.write_script()
        os.unlink(self.prefix.host(SOURCE + r"\a.txt"))
        self.assertEqual(self.install(), 12)
        self.assert_logged("ne peut pas trouver le fichier d'origine " + SOURCE + r"\a.txt.", FAILED)

    def test_disks_are_asked_for_in_ascending_order(self):
        for name, disk in (("c.txt", 3), ("a.txt", 1), ("b.txt", 1)):
            self.add_file(name, b"new", disk=disk)
        self.write_script()
        self.assertEqual(self.install(), 0)
        self.assert_logged(r"\a.txt", r"\b.txt",
                           "Insérez le disque 3 dans le lecteur C: puis cliquez sur OK pour continuer.: [OK]", r"\c.txt")

    def test_removal_deletes_what_is_listed(self):
        self.add_file("a.txt", b"new")
        self.add_file("b.txt", b"new", dest="?<ProgDir>\\b.txt")
        self.add_file("c.txt", b"new")
        self.write_script()
        self.assertEqual(self.install(), 0)
        os.unlink(self.prefix.host(PRODUCT + r"\c.txt"))
        self.assertEqual(self.remove(), 0)
        self.assertEqual(self.lines("Deleting ", "Installation"), [
            "Deleting " + PRODUCT + r"\a.txt, result = success",
            "Deleting " + PRODUCT + r"\b.txt, result = success",
            "##ERROR: Deleting " + PRODUCT + r"\c.txt, result = failure"])


class Tasks(ScriptTest):
    def test_file_operations(self):
        self.write_script(startup=r"""$file_sys=delete,C:\work\missing
$file_sys=DELETE,C:\work\a
$file_sys=rename,C:\work\b,C:\work\c
$file_sys=rename,C:\work\b,C:\work\none\b
$file_sys=copy,C:\work\b,C:\work\c
$file_sys=copy,C:\work\b,C:\work\none\b
$file_sys=rename, C:\work\d , C:\work\e
$file_sys=move,a,b
$file_sys=
""")
        for name in ("a", "b", "c", "d\\x"):
            self.work(name, name.encode())
        self.assertEqual(self.install(), 0)
        self.assertEqual(self.prefix.tree(WORK), ["b", "c", "e\\", "e\\x"])
        self.assertEqual(self.prefix.read(WORK + r"\c"), b"b")
        rename = r"    Attempt to rename the existing file/dir, C:\work\b to C:\work"
        self.assertEqual(self.lines("    Attempt", "Opening setup info"), [
            rename + r"\c, failed because the target path already exists.",
            rename + r"\none\b, failed.",
            r"    Attempt to copy the existing file/dir, C:\work\b to C:\work\none\b, failed.",
            '    Task_file_sys: unrecognized file system operation "move".',
            *self.unknown("file_sys", "startup"),
            '    Task_file_sys: unrecognized file system operation "".'])

    def test_a_folder_is_deleted_in_the_second_pass(self):
        self.add_file("a.txt", b"new", dest=r"C:\work\x, y\a.txt")
        self.write_script(startup="$dir_del=C:\\work\\p\n", install='$dir_del="C:\\work\\x, y"\n')
        self.work(r"p\q\r")
        self.prefix.write(SOURCE + r"\setup.inf", self.prefix.text(SOURCE + r"\setup.inf").replace(
            r"C:\work\x, y\a.txt", r"<Sub>\a.txt").replace("[startup]", "[startup]\nSub=C:\\work\\x, y"))
        self.assertEqual(self.install(), 0)
        self.assert_logged(r"Installation : C:\work\x, y\a.txt")
        self.assertEqual(self.prefix.tree(WORK), [])

    def test_registry_values_of_others_are_left(self):
        for name, text in (("ours", "so mine it is"), ("theirs", "other"), ("mark", "<ProgID>")):
            self.prefix.reg_add(MADE, name, text)
        self.prefix.reg_add(MADE, "number", 5, "REG_DWORD")
        self.prefix.reg_add(MADE + r"\Ext\ShellEx", "", "x")
        values = ("ours", "theirs", "mark", "number", "new", r"Ext\new")
        self.write_script(
            install="".join("$add_reg_chk_exist=%s\\%s,ignored,mine\n" % (MADE, value) for value in values),
            remove="".join("$remove_reg_chk_exist=%s\\%s,mine\n" % (MADE, value) for value in values))
        self.assertEqual(self.install(), 0)
        self.assert_logged(
            "Mise à jour des registres", "    Installation de Veltrane 6.0c found a ShellEx key under " + MADE +
            r'\Ext. Since this shell extention may handle "file open", Veltrane will not be associated with this file type.')
        tree = self.prefix.reg_tree(MADE)
        self.assertEqual(tree[MADE], {"ours": "mine", "theirs": "other", "mark": "mine", "number": 5, "new": "mine"})
        self.assertEqual(tree[MADE + r"\Ext"], {})
        self.assertEqual(self.remove(), 0)
        self.assertEqual(self.prefix.reg_tree(MADE)[MADE], {"theirs": "other", "number": 5})

    def test_ini_files(self):
        self.work("home.ini", b"[Paths]\r\nHome=C:\\work\\there\r\nAway=C:\\work\\nowhere\r\n")
        self.work(r"there\veltrane.exe")
        self.prefix.reg_add(MADE + r"\Store\Section", "v", "x")
        self.write_script(
            startup="Away=kept\n$get_ini_var=Home,C:\\work\\home.ini,paths,HOME\n"
            "$get_ini_var=Away,C:\\work\\home.ini,Paths,Away\n"
            "$get_ini_var=Home,C:\\work\\home.ini,Paths\n",
            install="+%s\\found=<Home>|<Away>\n" % MADE,
            remove="$remove_ini_path=C:\\work\\home.ini,keep\n$remove_ini_path=C:\\work\\missing.ini\n"
            "$remove_ini_path=REG*%s\\Store\n" % MADE)
        self.assertEqual(self.install(), 0)
        self.assert_logged(*self.unknown("get_ini_var", "startup"))
        self.assertEqual(self.made("found"), r"C:\work\there|kept")
        self.assertEqual(self.remove(), 0)
        self.assertTrue(self.prefix.exists(WORK + r"\home.ini"))
        self.assertNotIn(MADE + r"\Store", self.prefix.reg_tree(MADE))
        self.assertEqual(self.run_setup("-Q", "-R", "-D", PRODUCT), 0)
        self.assertFalse(self.prefix.exists(WORK + r"\home.ini"))

    def test_messages_and_choices(self):
        startup = "do_ttfonts=1\ndo_other=1\n$test_overwrite_old_app=old\n"
        self.write_script(startup=startup, install="""$notify_message=do_ttfonts
$notify_message=do_other
$notify_message=do_none
$ask_view_readme=do_other,<ProgDir>\\lisez.txt,-x
+%s\\readme=<ViewReadMeDlg>|<ViewReadMePath>|<ReadMeArgs>|<old>
$ask_view_readme=do_none,a,b
$ask_view_readme=
""" % MADE)
        self.append("[shutdown]\n+%s\\after=<ViewReadMeDlg>\n" % MADE)
        self.assertEqual(self.install(), 0)
        self.assert_logged("polices TrueType",
                           "    WARNING: The message ID for the task 'do_other' could not be found.",
                           "    The triggering task 'do_none' is not 'on'.")
        self.assertEqual(self.made("readme"), "0|" + PRODUCT + r"\lisez.txt|-x|0")
        self.assertEqual(self.made("after"), "0")

    def test_a_file_installed_by_a_task(self):
        self.prefix.write(SOURCE + r"\a.txt", b"new")
        self.write_script(startup="$file_inst=C:\\dist\\a.txt,C:\\work\\\n"
                          "$file_inst=C:\\dist\\a.txt,C:\\work\\sub\\b.txt\n"
                          "$file_inst=C:\\dist\\none.txt,C:\\work\\c.txt\n$file_inst=\n")
        self.assertEqual(self.install(), 0)
        self.assertEqual(self.prefix.tree(WORK), ["a.txt", "sub\\", "sub\\b.txt"])
        self.assertEqual(self.lines("    Installing", "Opening setup info"), [
            "    Installing C:\\dist\\a.txt to C:\\work\\.",
            "    Installing C:\\dist\\a.txt to C:\\work\\sub\\b.txt.",
            "    Installing C:\\dist\\none.txt to C:\\work\\c.txt.",
            "VerInstallFile: GetLastError 2",
            *self.unknown("file_inst", "startup")])

    def test_libraries_register_themselves(self):
        self.prefix.need_helpers()
        line = "$register_dll=C:\\helpers\\selfreg.dll\n$register_dll=C:\\helpers\\none.dll\n"
        self.write_script(install=line, remove=line)
        for run in (self.install, self.remove):
            self.assertEqual(run(), 0)
            self.assert_logged("DLL Registration succeeded for C:\\helpers\\selfreg.dll\n"
                               "##ERROR: DLL Registration failed for C:\\helpers\\none.dll\n")
            self.assertEqual(self.log().count("DLL Registration"), 2)
