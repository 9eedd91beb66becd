"""Whole runs of Setup.exe on machines that a Windows program cannot make by itself: no desktop, folders without write
rights, full disks, power cuts, restarts, shares, other code pages."""
import os
import shutil
import subprocess
import tempfile
import unittest

import benchlib

SETUP = os.path.join(benchlib.BIN, "Setup.exe")
DIST = "C:\\dist"
MACHINE_STORE = r"HKLM\Software\Quorvale\KVRX6"

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


class Run(benchlib.WindowsTest):
    def distribution(self, files, folder=DIST, startup="", install="", remove="", encoding="cp1252"):
        """Writes Setup.exe, the files (name: bytes) and a script over them."""
        self.prefix.copy_in(SETUP, folder + "\\Setup.exe")
        keys, records = "", ""
        for number, (name, data) in enumerate(files.items()):
            self.prefix.write(folder + "\\" + name, data)
            keys += "file%d\n" % number
            records += "file%d=1,%s,<ProgDir>\\%s,%d\n" % (number, name, name, len(data))
        script = STARTUP + startup + "[easy_install]\n" + keys + install + "[remove]\n" + keys + remove + "[files]\n" + records
        self.prefix.write(folder + "\\setup.inf", script.replace("\n", "\r\n").encode(encoding))

    def setup(self, *args, folder=DIST, **more):
        return self.prefix.run(folder + "\\Setup.exe", *args, **more)

    def use_temp(self, folder):
        """Makes a folder the user's temporary one."""
        for name in ("TEMP", "TMP"):
            self.prefix.reg_add(r"HKCU\Environment", name, folder)

    def log(self):
        users = self.prefix.host(r"C:\users")
        for folder, _, names in os.walk(users):
            for name in ("Veltrane6.log", "QLSetup.log"):
                if name in names:
                    with open(os.path.join(folder, name), "rb") as file:
                        return file.read().decode("cp1252", "replace").replace("\r\n", "\n")
        return ""

    def assert_installed(self, files, folder):
        for name, data in files.items():
            self.assertEqual(self.prefix.read(folder + "\\" + name), data, name)


class NoDesktop(Run):
    """A session in which no window can be made: what a service or a remote shell has."""

    files = {"a.txt": b"alpha", "sub\\b.txt": b"beta"}

    def test_install_and_removal(self):
        self.distribution(self.files, remove="$dir_del=<ProgDir>\\sub\n")
        result = self.setup("-Q", "-D", r"C:\dest", env={"DISPLAY": None})
        self.assertEqual(result.code, 0, self.log())
        self.assert_installed(self.files, r"C:\dest")
        self.assertIn("\nThe background window could not be created.\n", self.log())
        self.assertNotIn("##ERROR", self.log())
        self.prefix.copy_in(SETUP, r"C:\dest\Setup.exe")
        self.prefix.copy_in(self.prefix.host(r"C:\dist\setup.inf"), r"C:\dest\setup.inf")
        result = self.setup("-Q", "-R", folder=r"C:\dest", env={"DISPLAY": None})
        self.assertEqual(result.code, 0, self.log())
        self.assertTrue(benchlib.wait_until(lambda: self.prefix.tree(r"C:\dest") == []), self.prefix.tree(r"C:\dest"))

    def test_trouble_does_not_wait_for_anybody(self):
        self.distribution(self.files, install="$no_such_task=1\n")
        result = self.setup("-Q", "-ASSERT", "-D", r"C:\dest", env={"DISPLAY": None}, timeout=40)
        self.assertEqual((result.code, result.timed_out), (8, False), self.log())

    def test_missing_source(self):
        self.distribution(self.files)
        os.unlink(self.prefix.host(r"C:\dist\a.txt"))
        result = self.setup("-Q", "-D", r"C:\dest", env={"DISPLAY": None}, timeout=40)
        self.assertEqual((result.code, result.timed_out), (12, False), self.log())


class Rights(Run):
    files = {"a.txt": b"alpha", "sub\\b.txt": b"beta"}

    def test_destination_without_write_rights(self):
        self.distribution(self.files)
        self.prefix.make_folder(r"C:\dest")
        self.prefix.chmod(r"C:\dest", 0o555)
        self.assertEqual(self.setup("-Q", "-D", r"C:\dest").code, 11, self.log())
        self.assertEqual(self.prefix.tree(r"C:\dest"), [])

    def test_parent_of_the_destination_without_write_rights(self):
        self.distribution(self.files)
        self.prefix.make_folder(r"C:\locked")
        self.prefix.chmod(r"C:\locked", 0o555)
        self.assertEqual(self.setup("-Q", "-D", r"C:\locked\dest").code, 11, self.log())
        self.assertIn("C:\\locked\\dest", self.log())

    def test_subfolder_without_write_rights(self):
        self.distribution(self.files)
        self.prefix.make_folder(r"C:\dest\sub")
        self.prefix.chmod(r"C:\dest\sub", 0o555)
        self.assertEqual(self.setup("-Q", "-D", r"C:\dest").code, 12, self.log())
        self.assertTrue(self.prefix.exists(r"C:\dest\a.txt"))
        self.assertEqual(self.prefix.tree(r"C:\dest\sub"), [])

    def test_temporary_folder_without_write_rights(self):
        self.distribution(self.files)
        self.prefix.make_folder(r"C:\temp")
        self.prefix.chmod(r"C:\temp", 0o555)
        self.use_temp(r"C:\temp")
        self.assertEqual(self.setup("-Q", "-D", r"C:\dest").code, 0)
        self.assert_installed(self.files, r"C:\dest")
        self.assertEqual(self.prefix.tree(r"C:\temp"), [])
        self.assertEqual(self.log(), "")

    def test_read_only_distribution(self):
        self.distribution(self.files)
        for name in ["setup.inf", "Setup.exe", "a.txt", "sub\\b.txt"]:
            self.prefix.chmod(DIST + "\\" + name, 0o444)
        self.prefix.chmod(DIST + "\\sub", 0o555)
        self.prefix.chmod(DIST, 0o555)
        self.assertEqual(self.setup("-Q", "-D", r"C:\dest").code, 0, self.log())
        self.assert_installed(self.files, r"C:\dest")

    def test_unreadable_script(self):
        self.distribution(self.files)
        self.prefix.chmod(r"C:\dist\setup.inf", 0)
        self.assertEqual(self.setup("-Q", "-D", r"C:\dest").code, 1, self.log())


class FullDisk(Run):
    def test_files_that_do_not_fit(self):
        benchlib.require_namespaces()
        files = {"first.dat": b"x" * 1000, "large.dat": b"y" * 3000000}
        self.distribution(files)
        disk = os.path.join(self.prefix.root, "small disk")
        os.mkdir(disk)
        self.prefix.link_drive("e", disk, "hd")
        result = self.setup("-Q", "-D", r"E:\dest", wrap=benchlib.in_namespace("--size", "2000000", "--tmpfs", disk))
        self.assertEqual(result.code, 12, self.log())
        log = self.log()
        self.assertIn("Espace insuffisant dans E:", log)
        self.assertIn("le fichier destination est plein", log)


class Restart(Run):
    files = {"a.txt": b"new text", "b.txt": b"beta"}

    def test_destination_in_use_is_replaced_at_the_next_start(self):
        self.distribution(self.files)
        self.prefix.write(r"C:\dest\a.txt", b"old")
        holder = self.prefix.start_helper("hold_file", r"C:\dest\a.txt", "none")
        self.assertTrue(benchlib.wait_until(lambda: b"ready" in holder.output))
        self.assertEqual(self.setup("-Q", "-D", r"C:\dest").code, 0, self.log())
        self.assertEqual(self.prefix.read(r"C:\dest\a.txt"), b"old")
        self.prefix.restart()
        self.assert_installed(self.files, r"C:\dest")
        self.assertEqual(self.prefix.tree(r"C:\dest"), ["VT6.QLC", "a.txt", "b.txt"])

    def test_restart_that_the_user_accepts(self):
        self.distribution(self.files, install="do_readme=1\n$ask_view_readme=do_readme,<ProgDir>\\Lisezmoi.txt,/x\n")
        self.prefix.write(r"C:\dest\a.txt", b"old")
        holder = self.prefix.start_helper("hold_file", r"C:\dest\a.txt", "none")
        self.assertTrue(benchlib.wait_until(lambda: b"ready" in holder.output))
        self.prefix.start(DIST + "\\Setup.exe", "-I", "-D", r"C:\dest")
        self.assertEqual(self.prefix.helper("dialog_driver", "-has", "163", "find").code, 0, self.log())
        # Console programs outlive this restart, and this one would keep the file.
        self.assertEqual(self.prefix.run("taskkill", "/f", "/im", "hold_file.exe").code, 0)
        pressed = self.prefix.helper("dialog_driver", "-has", "163", "command", "1")
        self.assertEqual(pressed.code, 0, pressed.text + self.log())
        # Windows starts again without our help.
        self.assertTrue(benchlib.wait_until(lambda: self.prefix.read(r"C:\dest\a.txt") == b"new text", 30), self.log())
        log = self.log()
        self.assertIn("Installation requires reboot: user chose to allow reboot.\n", log)
        self.assertIn("Openning ReadMe on restart. RunOnce = Setup: C:\\dest\\Lisezmoi.txt /x\n", log)
        self.assertEqual(self.prefix.reg_value(r"HKCU\Software\Microsoft\Windows\CurrentVersion\RunOnce", "Setup"),
                         r"C:\dest\Lisezmoi.txt /x")

    def test_power_cut_in_the_middle(self):
        files = {"f%04d.dat" % number: b"content %d" % number * 500 for number in range(600)}
        self.distribution(files)
        self.prefix.start(DIST + "\\Setup.exe", "-Q", "-D", r"C:\dest")
        self.assertTrue(benchlib.wait_until(lambda: self.prefix.exists(r"C:\dest\f0150.dat"), 60, 0.005))
        self.prefix.kill()
        self.assertFalse(self.prefix.exists(r"C:\dest\f0599.dat"))
        self.assertEqual(self.setup("-Q", "-D", r"C:\dest", timeout=120).code, 0)
        self.assert_installed(files, r"C:\dest")
        self.assertEqual(self.prefix.tree(r"C:\dest"), ["VT6.QLC"] + sorted(files))

    def test_power_cut_in_a_removal(self):
        files = {"f%04d.dat" % number: b"x" for number in range(600)}
        self.distribution(files)
        self.assertEqual(self.setup("-Q", "-D", r"C:\dest", timeout=120).code, 0)
        self.prefix.start(DIST + "\\Setup.exe", "-Q", "-RS")
        self.assertTrue(benchlib.wait_until(lambda: not self.prefix.exists(r"C:\dest\f0150.dat"), 60, 0.005))
        self.prefix.kill()
        self.assertEqual(self.setup("-Q", "-RS", timeout=120).code, 0)
        self.assertEqual(self.prefix.tree(r"C:\dest"), [])


class Share(Run):
    def test_network_source(self):
        files = {"a.txt": b"alpha", "sub\\b.txt": b"beta"}
        self.distribution(files)
        share = os.path.join(self.prefix.root, "dosdevices", "unc", "server")
        os.makedirs(share)
        shutil.copytree(self.prefix.host(DIST), os.path.join(share, "share"))
        for name in files:
            os.unlink(self.prefix.host(DIST + "\\" + name))
        result = self.setup("-Q", "-D", r"C:\dest", "-S", "\\\\server\\share\\")
        self.assertEqual(result.code, 0, self.log())
        self.assert_installed(files, r"C:\dest")
        self.assertEqual(self.prefix.reg_value(MACHINE_STORE + r"\Directories", "InstallFromDir"), r"\\server\share")

    def test_program_on_a_share(self):
        files = {"a.txt": b"alpha"}
        self.distribution(files)
        share = os.path.join(self.prefix.root, "dosdevices", "unc", "server")
        os.makedirs(share)
        shutil.move(self.prefix.host(DIST), os.path.join(share, "share"))
        result = self.prefix.run(r"\\server\share\Setup.exe", "-Q", "-D", r"C:\dest")
        self.assertEqual(result.code, 0, self.log())
        self.assert_installed(files, r"C:\dest")

    def test_program_in_the_root_of_a_drive(self):
        files = {"a.txt": b"alpha"}
        self.distribution(files)
        self.prefix.link_drive("d", self.prefix.host(DIST), "cdrom")
        result = self.prefix.run("D:\\Setup.exe", "-Q", "-D", r"C:\dest")
        self.assertEqual(result.code, 0, self.log())
        self.assert_installed(files, r"C:\dest")


class OtherLanguage(Run):
    """File names with letters need the language's locale on this machine, which is made for the time of the test."""

    def setUp(self):
        super().setUp()
        folder = tempfile.mkdtemp(prefix="veltrane-locale.")
        self.addCleanup(shutil.rmtree, folder)
        name = self.locale.split(".")[0]
        subprocess.run(["localedef", "--no-archive", "-i", name, "-f", "UTF-8", os.path.join(folder, name + ".utf8")],
                       stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, check=False)
        os.chmod(folder, 0o755)
        self.prefix.env["LOCPATH"] = folder


class FrenchSystem(OtherLanguage):
    locale = "fr_FR.UTF-8"

    def test_accents_everywhere(self):
        files = {"\u00e9t\u00e9.txt": b"alpha"}
        folder = "C:\\\u00c9diteur d'\u00e9quations"
        self.distribution(files)
        temp = "C:\\donn\u00e9es temporaires"
        self.prefix.make_folder(temp)
        self.use_temp(temp)
        result = self.setup("-Q", "-D", folder)
        self.assertEqual(result.code, 0, result.text)
        self.assert_installed(files, folder)
        self.assertEqual(self.prefix.tree(temp), ["Veltrane6.log"])
        self.prefix.copy_in(SETUP, folder + "\\Setup.exe")
        self.prefix.copy_in(self.prefix.host(r"C:\dist\setup.inf"), folder + "\\setup.inf")
        result = self.setup("-Q", "-R", folder=folder)
        self.assertEqual(result.code, 0, self.prefix.text(temp + "\\Veltrane6.log"))
        self.assertTrue(benchlib.wait_until(lambda: self.prefix.tree(folder) == []), self.prefix.tree(folder))


class JapaneseSystem(OtherLanguage):
    """A code page in which the second byte of a letter may be a backslash."""

    locale = "ja_JP.UTF-8"

    def test_folder_whose_name_holds_a_backslash_byte(self):
        files = {"\u30bd.txt": b"alpha", "sub\\b.txt": b"beta"}
        for folder in ("C:\\\u30bd", "C:\\\u8868\u793a \u80fd"):
            with self.subTest(folder=folder):
                self.distribution(files, encoding="cp932", remove="$dir_del=<ProgDir>\\sub\n")
                self.assertEqual(self.setup("-Q", "-D", folder).code, 0, self.log())
                self.assert_installed(files, folder)
                self.prefix.copy_in(SETUP, folder + "\\Setup.exe")
                self.prefix.copy_in(self.prefix.host(r"C:\dist\setup.inf"), folder + "\\setup.inf")
                self.assertEqual(self.setup("-Q", "-R", folder=folder).code, 0, self.log())
                self.assertTrue(benchlib.wait_until(lambda: self.prefix.tree(folder) == []), self.prefix.tree(folder))

    def test_held_file_whose_name_begins_with_a_backslash_byte(self):
        names = ("\u30bd.txt", "\u8868\u793a.txt", "\u30bd")
        self.distribution({name: b"new" for name in names}, encoding="cp932")
        for name in names:
            self.prefix.write("C:\\dest\\" + name, b"old")
            holder = self.prefix.start_helper("hold_file", "C:\\dest\\" + name, "none")
            self.assertTrue(benchlib.wait_until(lambda: b"ready" in holder.output))
        self.assertEqual(self.setup("-Q", "-D", r"C:\dest").code, 0, self.log())
        self.assertEqual(self.prefix.tree(r"C:\dest"), sorted(["VT6.QLC", "~", "~.txt", "~\u793a.txt", *names]))
        self.prefix.restart()
        self.assertEqual(self.prefix.tree(r"C:\dest"), sorted(["VT6.QLC", *names]))
        for name in names:
            self.assertEqual(self.prefix.read("C:\\dest\\" + name), b"new", name)


if __name__ == "__main__":
    unittest.main()
