"""Disks, media and scripts that fail: the documented exit code, a log that says why, and a run that ends by itself."""
import errno
import os
import shlex
import unittest

import benchlib
from setup_case import PRODUCT, SOURCE, SetupTest

NOT_INSTALLED = "L'application Veltrane n'a pas été installée correctement."
MADE = r"HKCU\Software\Quorvale\Made"


class Disks(SetupTest):
    """Runs onto a drive D: of a chosen size."""

    def install_on(self, size, folder=r"D:\Produit", before="true"):
        """Installs onto a fresh disk of `size` bytes; the exit code and what the drive then holds."""
        benchlib.require_namespaces()
        disk = os.path.join(self.prefix.root, "disk")
        os.mkdir(disk)
        listing = os.path.join(self.prefix.root, "listing")
        self.prefix.link_drive("d", disk)
        # The disk is there only within the one call, with everything that is to see it.
        script = "cd %s && { %s; } && \"$@\"; rc=$?; find . -mindepth 1 >%s; exit $rc" % (
            shlex.quote(disk), before, shlex.quote(listing))
        wrap = [*benchlib.in_namespace("--size", str(size), "--tmpfs", disk), "bash", "-c", script, "bash"]
        self.prefix.kill()
        code = self.install(folder, wrap=wrap)
        self.prefix.kill()
        with open(listing, encoding="utf-8") as file:
            return code, sorted(line.strip()[2:] for line in file)

    def test_full_disk(self):
        self.add_file("a.txt", b"alpha")
        self.add_file("b.dat", b"b" * 3000000)
        self.add_file("c.txt", b"gamma")
        self.write_script(install="+HKEY_CURRENT_USER\\Software\\Quorvale\\Made\\Second=pass\n")
        code, names = self.install_on(2 << 20)
        self.assertEqual(code, 12)
        self.assert_logged(
            "Espace insuffisant dans", "Installation : D:\\Produit\\a.txt",
            "CopyFileByName: vcError 4",
            "Impossible d'installer le fichier b.dat : le fichier destination est plein.", NOT_INSTALLED)
        # What was copied before stays; nothing half-written does, under any name.
        self.assertEqual(names, ["Produit", "Produit/VT6.QLC", "Produit/a.txt"])
        self.assertIsNone(self.prefix.reg_value(MADE, "Second"))

    def test_disk_without_any_room(self):
        self.add_file("a.txt", b"alpha" * 1000)
        self.write_script()
        code, names = self.install_on(1 << 20, before="head -c 1048576 /dev/zero >full 2>/dev/null || true")
        # Not even the configuration file can be written.
        self.assertEqual(code, 11)
        setup = "Installation de Veltrane 6.0c"
        self.assert_logged(
            "\nQuorvale internal error: #0x2b03\n   Une erreur est survenue. %s ne peut pas écrire le fichier. Votre "
            "disque dur est peut-être plein. %s va continuer.\n" % (setup, setup),
            "ne peut pas écrire le fichier de configuration dans D:\\Produit.")
        self.assertNotIn("Produit/a.txt", names)

    def test_disk_that_is_nearly_too_small_is_only_a_question(self):
        self.add_file("a.txt", b"alpha")
        self.write_script()
        code, _ = self.install_on(1 << 20)
        self.assertEqual(code, 0)
        self.assert_logged("KBytes available; 2000 KBytes needed.", "Espace insuffisant dans", "[OK]",
                           "Installation : D:\\Produit\\a.txt")

    def test_disk_of_just_the_room_that_is_needed(self):
        self.add_file("a.txt", b"alpha")
        self.write_script()
        code, _ = self.install_on(2100 * 1024)
        self.assertEqual(code, 0)
        self.assert_logged("KBytes available; 2000 KBytes needed.")
        self.assertNotIn("Espace insuffisant", self.log())

    def test_huge_disk(self):
        self.add_file("a.txt", b"alpha")
        self.write_script()
        code, _ = self.install_on(200 << 30)
        self.assertEqual(code, 0)
        # 200 GB less the few pages of what lies there.
        self.assert_logged(" 209715")
        self.assertNotIn("Espace insuffisant", self.log())

    def test_sizes_beyond_four_gigabytes_in_all(self):
        for name in ("a.txt", "b.txt", "c.txt"):
            self.add_file(name, b"small", size=2000000000)
        self.write_script()
        code, _ = self.install_on(3 << 30)
        self.assertEqual(code, 0)
        self.assert_logged("%d KBytes needed." % ((6000000000 >> 10) + 2000), "Espace insuffisant")


class Places(SetupTest):
    """Folders and media that refuse."""

    def setUp(self):
        super().setUp()
        self.add_file("a.txt", b"alpha")
        self.add_file("sous\\b.txt", b"beta")
        self.write_script(install="+HKEY_CURRENT_USER\\Software\\Quorvale\\Made\\Second=pass\n")

    def protect(self, path, mode=0o555):
        self.prefix.make_folder(path)
        self.prefix.chmod(path, mode)
        self.addCleanup(self.prefix.chmod, path, 0o755)

    def test_read_only_target(self):
        self.protect(PRODUCT)
        self.assertEqual(self.install(), 11)
        self.assert_logged("ne peut pas écrire le fichier de configuration dans " + PRODUCT)
        self.assertEqual(self.prefix.tree(PRODUCT), [])

    def test_target_that_cannot_be_made(self):
        self.protect(r"C:\ferme")
        self.assertEqual(self.install(r"C:\ferme\Veltrane"), 11)
        self.assertEqual(self.prefix.tree(r"C:\ferme"), [])

    def test_read_only_folder_in_the_target(self):
        self.protect(PRODUCT + r"\sous")
        self.assertEqual(self.install(), 12)
        self.assert_logged("Impossible d'installer le fichier b.txt", NOT_INSTALLED)
        self.assertEqual(self.prefix.read(PRODUCT + r"\a.txt"), b"alpha")
        self.assertEqual(self.prefix.tree(PRODUCT + r"\sous"), [])

    def test_read_only_file_in_the_target_is_replaced(self):
        self.prefix.write(PRODUCT + r"\a.txt", b"old")
        self.prefix.chmod(PRODUCT + r"\a.txt", 0o444)
        self.assertEqual(self.install(), 0)
        self.assert_installed()

    def test_folder_in_the_way_of_a_file(self):
        self.prefix.make_folder(PRODUCT + r"\a.txt")
        self.assertEqual(self.install(), 12)
        self.assert_logged("Impossible d'installer le fichier a.txt", NOT_INSTALLED)
        self.assert_nothing_passing()

    def test_unreadable_source(self):
        self.prefix.chmod(SOURCE + r"\sous\b.txt", 0)
        self.assertEqual(self.install(), 12)
        self.assert_logged("CopyFileByName: vcError 512",
                           "Impossible d'installer le fichier b.txt faute de pouvoir le lire.", NOT_INSTALLED)
        self.assertFalse(self.prefix.exists(PRODUCT + r"\sous\b.txt"))
        self.assert_nothing_passing()

    def link_to_bad_medium(self, path):
        """Puts there a file that opens well, tells a size and then cannot be read."""
        unreadable = "/sys/class/net/lo/speed"
        try:
            with open(unreadable, "rb", buffering=0) as file:
                file.read(1)
        except OSError as error:
            if error.errno == errno.EINVAL:
                os.symlink(unreadable, self.prefix.host(path))
                return
        self.skipTest("no file of this machine refuses to be read")

    def test_file_that_opens_and_cannot_be_read(self):
        self.link_to_bad_medium(r"C:\bad.ini")
        self.write_script(install="$get_ini_var=Found,C:\\bad.ini,section,key\n")
        self.assertEqual(self.install(), 0)
        setup = "Installation de Veltrane 6.0c"
        self.assert_logged("\nQuorvale internal error: #0x2b04\n   Une erreur est survenue. %s ne peut pas lire le fichier. "
                           "%s va continuer.\n" % (setup, setup))
        self.assert_installed()

    def test_script_that_opens_and_cannot_be_read(self):
        os.unlink(self.prefix.host(SOURCE + r"\setup.inf"))
        self.link_to_bad_medium(SOURCE + r"\setup.inf")
        self.assertEqual(self.install(), 1)
        self.assert_logged("ne peut pas lire le fichier.")
        self.assertFalse(self.prefix.exists(PRODUCT))

    def test_folder_as_a_source(self):
        self.prefix.make_folder(SOURCE + r"\c.txt")
        self.records.append((1, "c.txt", "<ProgDir>\\c.txt", 10))
        self.write_script()
        self.assertEqual(self.install(), 12)
        self.assert_logged("Impossible d'installer le fichier c.txt", NOT_INSTALLED)
        self.assert_nothing_passing()

    def test_held_source(self):
        holder = self.prefix.start_helper("hold_file", SOURCE + r"\a.txt", "none", "-for", "120000")
        self.assertTrue(benchlib.wait_until(lambda: holder.output.startswith(b"ready"), 20))
        self.assertEqual(self.install(), 12)
        self.assert_logged("Impossible d'installer le fichier a.txt faute de pouvoir le lire.")
        self.assertNotIn("on restart", self.log())

    def test_missing_second_disk(self):
        self.add_file("c.txt", b"gamma", disk=2)
        self.write_script()
        os.unlink(self.prefix.host(SOURCE + r"\c.txt"))
        self.assertEqual(self.install(), 12)
        self.assert_logged("Insérez le disque 2 dans le lecteur", "[OK]",
                           "ne peut pas copier " + SOURCE + r"\c.txt", "Insérez le DISQUE 2", NOT_INSTALLED)
        # One look more after the question, not one question after the other.
        self.assertEqual(self.log().count("Insérez le DISQUE 2"), 1)
        self.assertEqual(self.prefix.read(PRODUCT + r"\a.txt"), b"alpha")

    def read_only_drive(self, folder):
        """Words before a command that sees `folder` of the drive E: read-only, as a medium is."""
        benchlib.require_namespaces()
        medium = os.path.join(self.prefix.root, "medium")
        os.mkdir(medium)
        self.prefix.link_drive("e", medium, "cdrom")
        self.prefix.make_folder("E:\\" + folder)
        return benchlib.in_namespace("--ro-bind", medium, medium)

    def test_from_a_read_only_medium(self):
        wrap = self.read_only_drive("dist")
        self.prefix.copy_in(self.prefix.host(SOURCE), r"E:\dist")
        self.prefix.kill()
        result = self.prefix.run(r"E:\dist\Setup.exe", "-Q", "-D", PRODUCT, wrap=wrap, timeout=60)
        self.prefix.kill()
        self.assertEqual(result.code, 0, self.log())
        self.assert_installed()
        # The copies do not stay as read-only as their originals.
        for name in ("a.txt", "sous\\b.txt"):
            self.assertTrue(os.access(self.prefix.host(PRODUCT + "\\" + name), os.W_OK), name)
        self.assertEqual(self.remove(), 0)
        self.assertFalse(self.prefix.exists(PRODUCT + r"\a.txt"))

    def test_onto_a_read_only_medium(self):
        wrap = self.read_only_drive("Veltrane")
        self.prefix.kill()
        self.assertEqual(self.install(r"E:\Veltrane", wrap=wrap), 11)
        self.prefix.kill()
        self.assert_logged(r"ne peut pas écrire le fichier de configuration dans E:\Veltrane")
        self.assertEqual(self.prefix.tree("E:\\"), ["Veltrane\\"])

    def test_drive_that_does_not_exist(self):
        self.assertEqual(self.install(r"Q:\Veltrane"), 11)
        self.assert_logged(r"ne peut pas écrire le fichier de configuration dans Q:\Veltrane")

    def test_temporary_folder_that_takes_no_file(self):
        temp = self.temp()
        self.protect(temp)
        self.assertEqual(self.install(), 0)
        self.assert_installed()
        self.assertEqual(self.prefix.tree(temp), [])


class NoDesktop(SetupTest):
    """A session in which no window can be made at all."""

    def setUp(self):
        super().setUp()
        self.add_file("a.txt", b"alpha")
        self.write_script(install="+HKEY_CURRENT_USER\\Software\\Quorvale\\Made\\Second=pass\n",
                          remove="-HKEY_CURRENT_USER\\Software\\Quorvale\\Made\\\n")
        self.prefix.env["DISPLAY"] = None
        self.prefix.kill()

    def test_installation_and_removal(self):
        self.assertEqual(self.install(), 0)
        self.assert_logged("\nThe background window could not be created.\n",
                           "a installé les éléments sélectionnés.")
        self.assertNotIn("##ERROR", self.log())
        self.assert_installed()
        self.assertEqual(self.prefix.reg_value(MADE, "Second"), "pass")
        self.assertEqual(self.remove(), 0)
        self.assertFalse(self.prefix.exists(PRODUCT + r"\a.txt"))
        self.assertFalse(self.prefix.reg_exists(MADE))

    def test_failures_end_too(self):
        os.unlink(self.prefix.host(SOURCE + r"\a.txt"))
        self.assertEqual(self.install(), 12)
        self.assert_logged(NOT_INSTALLED)
        os.unlink(self.prefix.host(SOURCE + r"\setup.inf"))
        self.assertEqual(self.install(), 1)
        self.assertEqual(self.run_setup("-Q", "nonsense"), 4)

    def test_assertions_end_too(self):
        self.assertEqual(self.run_setup("-Q", "-ASSERT", "-D", PRODUCT), 0)
        self.assert_logged("-assert on the command line")


class LongPaths(SetupTest):
    """Paths at and beyond the 259 characters that Windows takes."""

    def name_of_length(self, length):
        """A path below the product folder, of `length` characters in all."""
        path = PRODUCT
        while length - len(path) > 110:
            path += "\\" + "d" * 99
        path += "\\" + "f" * (length - len(path) - 1)
        assert len(path) == length
        return path

    def test_long_paths_are_installed_and_removed(self):
        for length in (127, 128, 140, 200, 255, 259):
            self.add_file("a%d.txt" % length, b"of %d" % length, dest=self.name_of_length(length))
        self.write_script()
        self.assertEqual(self.install(), 0, self.log())
        self.assert_installed()
        self.assert_nothing_passing()
        self.assertEqual(self.remove(), 0)
        for record in self.records:
            self.assertFalse(self.prefix.exists(record[2]), record[2])

    def test_long_source_paths(self):
        deep = "\\".join(["s" * 60] * 3)
        self.add_file(deep + "\\a.txt", b"alpha", dest="<ProgDir>\\a.txt")
        self.add_file(deep + "\\" + "b" * 30 + ".txt", b"beta")
        self.write_script()
        self.assertEqual(self.install(), 0, self.log())
        self.assert_installed()

    def test_longer_paths_are_left_out_and_logged(self):
        self.add_file("a.txt", b"alpha")
        for length in (260, 300, 400):
            self.add_file("long%d.txt" % length, b"too long", dest=self.name_of_length(length))
        self.add_file("b.txt", b"beta")
        self.write_script()
        self.assertEqual(self.install(), 0)
        line = "is too long; the file is left out. In Setup.inf: section \"easy_install\", line \"file"
        self.assertEqual(self.log().count(line), 3)
        for name in ("a.txt", "b.txt"):
            self.assertTrue(self.prefix.exists(PRODUCT + "\\" + name))
        # Nothing was cut and put somewhere else.
        self.assertEqual([name for name in self.prefix.tree(PRODUCT) if "fff" in name or "ddd" in name], [])

    def test_source_path_that_is_too_long(self):
        self.add_file("a.txt", b"alpha")
        self.records.append((1, "s" * 300 + ".txt", "<ProgDir>\\court.txt", 5))
        self.write_script()
        self.assertEqual(self.install(), 0)
        self.assert_logged("is too long; the file is left out.")
        self.assertFalse(self.prefix.exists(PRODUCT + r"\court.txt"))

    def test_product_folder_that_is_too_long(self):
        self.add_file("a.txt", b"alpha")
        self.write_script()
        for length in (300, 258):
            self.assertEqual(self.install("C:\\" + "x" * (length - 3)), 12)
            self.assert_logged("is too long; the file is left out.", NOT_INSTALLED)
        # At most the folder itself could be made.
        self.assertEqual([name for name in self.prefix.tree("C:\\") if "xxx" in name and not name.endswith("\\")], [])


class Scripts(SetupTest):
    """Scripts that are none, or full of mistakes."""

    def run_bytes(self, data, limit=60):
        self.prefix.write(SOURCE + r"\setup.inf", data)
        return self.install(limit=limit)

    def test_garbage(self):
        garbage = bytes(i * 7919 + i // 251 & 0xFF for i in range(200000))
        for data in (garbage, garbage[::-1], b"\xff" * 100000, b"[" * 100000, b"=" * 100000, b"\r\n" * 100000):
            with self.subTest(data[:8]):
                # Nothing gave the configuration file a name.
                self.assertEqual(self.run_bytes(data), 2)
                self.assertFalse(self.prefix.exists(PRODUCT))

    def test_wide_characters(self):
        self.add_file("a.txt", b"alpha")
        self.assertEqual(self.run_bytes(b"\xff\xfe" + self.script().encode("utf-16-le")), 2)
        self.assertFalse(self.prefix.exists(PRODUCT))

    def test_bytes_of_value_0(self):
        self.add_file("a.txt", b"alpha")
        text = self.script(install="Un=avant\0apres\n+HKEY_CURRENT_USER\\Software\\Quorvale\\Made\\Un=<Un>\n\0\0\0\n")
        self.assertEqual(self.run_bytes(text.replace("\n", "\r\n").encode("cp1252")), 0)
        self.assert_installed()
        # A line ends, for us, at the first such byte.
        self.assertEqual(self.prefix.reg_value(MADE, "Un"), "avant")

    def test_line_of_ten_megabytes(self):
        self.add_file("a.txt", b"alpha")
        long = "x" * (10 << 20)
        text = self.script(install="Long=%s\n+HKEY_CURRENT_USER\\Software\\Quorvale\\Made\\Apres=oui\n" % long)
        self.assertEqual(self.run_bytes(text.replace("\n", "\r\n").encode("cp1252"), limit=120), 0)
        self.assert_installed()
        self.assertEqual(self.prefix.reg_value(MADE, "Apres"), "oui")

    def test_ten_megabytes_without_an_end_of_line(self):
        self.assertEqual(self.run_bytes(b"y" * (10 << 20), limit=120), 2)

    def test_section_that_runs_itself(self):
        self.add_file("a.txt", b"alpha")
        self.write_script(install="&easy_install\n")
        self.assertEqual(self.install(), 8)
        self.assert_logged("DoSection fail: section \"easy_install\" is nested too deeply.", NOT_INSTALLED)

    def test_variable_that_holds_itself(self):
        self.add_file("a.txt", b"alpha")
        self.write_script(install="Un=<Deux>x\nDeux=<Un>x\n+HKEY_CURRENT_USER\\Software\\Quorvale\\Made\\Un=<Un>\n")
        self.assertEqual(self.install(limit=120), 0)
        self.assert_installed()

    # Lines of the install section and records of the section "files": what is wrong, lines, records, exit code, log.
    MISTAKES = [
        ("record with three fields", "bad", "bad=1,a.txt,<ProgDir>\\a.txt", 8,
         ["the record \"bad=1,a.txt,<ProgDir>\\a.txt\" has less than four fields",
          "section \"easy_install\" stopped at the line \"bad\""]),
        ("record without fields", "bad", "bad=,,,", 8, ["section \"easy_install\" stopped at the line \"bad\""]),
        ("no record", "bad", "", 8, ["no record \"bad\" in the section \"files\"", "stopped at the line \"bad\""]),
        ("disk 0", "bad", "bad=0,a.txt,<ProgDir>\\bad.txt,5", 0,
         ["disk != 0", "section \"easy_install\", line \"bad\""]),
        ("disk that is no number", "bad", "bad=one,a.txt,<ProgDir>\\bad.txt,5", 0,
         ["disk != 0", "section \"easy_install\", line \"bad\""]),
        ("size that is no number", "bad", "bad=1,a.txt,<ProgDir>\\bad.txt,huge", 0,
         ["the size \"huge\" of the file \"bad\" is no number. In Setup.inf: section \"easy_install\", line \"bad\"."]),
        ("negative size", "bad", "bad=1,a.txt,<ProgDir>\\bad.txt,-5", 0,
         ["has the size -5; it counts as 0.", "section \"easy_install\", line \"bad\""]),
        ("no destination file", "bad", "bad=1,a.txt,<ProgDir>\\,5", 0,
         ["names no destination file.", "section \"easy_install\", line \"bad\""]),
        ("only prefix characters", "bad", "bad=1,a.txt,*?*,5", 0,
         ["names no destination file.", "section \"easy_install\", line \"bad\""]),
        ("unknown task", "$paint_it=blue", "", 8,
         ["taskProc", "There is no task \"paint_it\".", "stopped at the line \"$paint_it\""]),
        ("task without arguments", "$file_sys=", "", 0,
         ["The arguments for the task file_sys in Setup.inf are unknown.\n    In Setup.inf: section \"easy_install\", "
          "line \"$file_sys\"."]),
        ("task with too few arguments", "$file_sys=rename,C:\\dist\\a.txt", "", 0,
         ["arg2.Length()", "In Setup.inf: section \"easy_install\", line \"$file_sys\"."]),
        ("task that must not delete", "$dir_del=C:\\", "", 0,
         ["must not be deleted", "section \"easy_install\", line \"$dir_del\""]),
        ("registry line without a backslash", "+HKEY_CURRENT_USER=x", "", 0,
         ["names no key.", "section \"easy_install\", line \"+HKEY_CURRENT_USER\""]),
        ("registry line with one backslash", "+HKEY_CURRENT_USER\\Software=x", "", 0,
         ["names no key.", "section \"easy_install\", line \"+HKEY_CURRENT_USER\\Software\""]),
        ("registry line of an unknown root", "+HKEY_NOWHERE\\Software\\X\\Y=x", "", 0,
         ["names no key.", "section \"easy_install\", line \"+HKEY_NOWHERE\\Software\\X\\Y\""]),
        ("deletion of a root", "-HKEY_CURRENT_USER\\\\", "", 0, ["names no key."]),
        ("value that switches nothing", "do_Opt=maybe\n&Opt?", "", 0, ["value == \"0\" || value == \"1\""]),
    ]

    def test_destination_without_a_folder(self):
        self.add_file("a.txt", b"alpha")
        self.add_file("seul.txt", b"alone", dest="seul.txt")
        self.write_script()
        before = set(self.prefix.tree(r"C:\windows"))
        self.assertEqual(self.install(), 0, self.log())
        # The system says where a shared file goes.
        self.assertEqual(set(self.prefix.tree(r"C:\windows")) - before, {"system32\\seul.txt"})
        self.assertEqual(self.prefix.read(r"C:\windows\system32\seul.txt"), b"alone")
        # A removal does not look for it in whatever folder is current.
        self.prefix.write(SOURCE + r"\seul.txt", b"mine")
        self.assertEqual(self.remove(cwd=SOURCE), 0)
        self.assert_logged("##ERROR: Deleting seul.txt, result = failure")
        self.assertEqual(self.prefix.read(SOURCE + r"\seul.txt"), b"mine")

    def test_mistakes_have_their_outcome_and_harm_nothing_else(self):
        self.prefix.reg_add(r"HKCU\Software\Witness", "Here", "yes")
        for what, lines, record, code, texts in self.MISTAKES:
            with self.subTest(what):
                self.records = []
                self.add_file("a.txt", b"alpha")
                lines += "\n+HKEY_CURRENT_USER\\Software\\Quorvale\\Made\\Behind=%s\n" % what
                self.prefix.write(SOURCE + r"\setup.inf", self.script(install=lines) + record + "\n")
                self.assertEqual(self.install(), code, self.log())
                self.assert_logged(*texts)
                behind = self.prefix.reg_value(MADE, "Behind")
                if code == 0:
                    self.assertEqual(behind, what)
                    self.assert_installed()
                else:
                    self.assertNotEqual(behind, what)
                    self.assert_logged(NOT_INSTALLED)
                self.assertEqual(self.prefix.reg_value(r"HKCU\Software\Witness", "Here"), "yes")
                self.assertTrue(self.prefix.exists(SOURCE + r"\a.txt"))


class Damage(SetupTest):
    """Files of the distribution that are not what they were."""

    def test_damaged_language_library_is_passed_over(self):
        self.add_file("a.txt", b"alpha")
        self.write_script()
        with open(os.path.join(benchlib.BIN, "VTsu6en.dll"), "rb") as file:
            whole = file.read()
        for data in (whole[:len(whole) // 2], whole[:-700], whole[:600] + b"\xff" * (len(whole) - 600), b"", b"text"):
            with self.subTest(size=len(data)):
                self.prefix.write(SOURCE + r"\VTsu6en.dll", data)
                self.assertEqual(self.install(), 0, self.log())
                self.assert_logged(r"##ERROR: C:\dist\VTsu6en.dll is damaged; no language is read from it.",
                                   "System language failed, using built-in!", "a installé les éléments sélectionnés.")
                self.assert_installed()


    def test_compressed_file_that_is_cut_is_not_installed(self):
        whole = b"SZDD\x88\xf0\x27\x33Al" + (16).to_bytes(4, "little") + b"\xffabcdefgh\xffijklmnop"
        self.add_file("a.dl_", whole[:-5])
        self.write_script()
        self.assertEqual(self.install(), 12, self.log())
        self.assert_logged("the compressed file ends too early: C:\\dist\\a.dl_", "faute de pouvoir le lire")


class SeveralAtOnce(SetupTest):
    """Setups that an impatient user starts over the same folder."""

    def run_together(self, *runs):
        began = [self.prefix.start(SOURCE + r"\Setup.exe", "-Q", *args, timeout=60) for args in runs]
        results = [running.wait(75) for running in began]
        self.assertFalse(any(result.timed_out for result in results))
        return {result.code for result in results}

    def test_each_ends_with_one_of_its_codes_and_the_last_word_is_whole(self):
        for i in range(20):
            self.add_file("f%d.dat" % i, os.urandom(50000))
        self.write_script()
        install, remove = ("-D", PRODUCT), ("-RS",)
        for runs in ((install, install, install), (install, remove), (remove, remove)):
            with self.subTest(runs=len(runs), first=runs[0][0]):
                # 11 and 12: another one had the configuration file or a file of the product at that moment.
                self.assertLessEqual(self.run_together(*runs), {0, 11, 12})
                self.assertEqual(self.install(), 0, self.log())
                self.assert_installed()
                self.assert_nothing_passing()


class ExhaustedMemory(SetupTest):
    """Texts larger than a program can hold: files without contents on disk, so that they cost nothing."""

    def grow(self, path):
        os.truncate(self.prefix.host(path), 3 << 30)

    def test_a_script_that_no_memory_holds(self):
        self.write_script()
        self.grow(SOURCE + r"\setup.inf")
        self.assertEqual(self.install(), 8)
        self.assert_logged("Performing silent install to " + PRODUCT, "Setup")  # before the texts are known
        self.assertFalse(self.prefix.exists(PRODUCT))

    def test_a_file_that_no_memory_holds(self):
        self.add_file("a.txt", b"alpha")
        self.write_script(install="$get_ini_var=OldAppDir,C:\\large.ini,Paths,Home\n"
                          "+HKEY_CURRENT_USER\\Software\\Quorvale\\Made\\Second=pass\n")
        self.prefix.write(r"C:\large.ini", "[Paths]\n")
        self.grow(r"C:\large.ini")
        self.assertEqual(self.install(), 8)
        self.assert_logged("n'a pas assez de mémoire et va se terminer. Veuillez redémarrer Windows avant de relancer")
        self.assertFalse(self.prefix.exists(PRODUCT + r"\a.txt"))
        self.assertIsNone(self.prefix.reg_value(MADE, "Second"))
        # Nothing is left that keeps the next run from succeeding.
        os.unlink(self.prefix.host(r"C:\large.ini"))
        self.assertEqual(self.install(), 0)
        self.assert_installed()


if __name__ == "__main__":
    unittest.main()
