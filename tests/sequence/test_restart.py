"""Files in use: the run succeeds, and the next start of Windows puts the new ones in their place."""
import benchlib
from setup_case import PRODUCT, SOURCE, SetupTest


class Restart(SetupTest):
    def hold(self, path, *how):
        """Keeps a file open in another process."""
        holder = self.prefix.start_helper("hold_file", path, *how, "-for", "120000")
        self.assertTrue(benchlib.wait_until(lambda: holder.output.startswith(b"ready"), 20), holder.output)
        return holder

    def old(self, name, data):
        self.prefix.write(PRODUCT + "\\" + name, data)

    def make_library(self, path, version):
        self.prefix.make_folder(path.rsplit("\\", 1)[0])
        self.assertEqual(self.prefix.helper("make_library", path, version).code, 0)

    def waiting(self):
        """Names of the files in the product folder that wait for the restart."""
        return [name for name in self.prefix.tree(PRODUCT) if name.startswith("~")]

    def check_waits(self, name, old, waiting=1):
        """The run ended well, `name` is still the old one, and the new one waits."""
        self.assert_logged(
            "  The file " + PRODUCT + "\\" + name + " is in use. Installing this file on restart. TempPath = " + PRODUCT,
            "Windows must be restarted to complete the installation.")
        self.assertEqual(self.prefix.read(PRODUCT + "\\" + name), old)
        self.assertEqual(len(self.waiting()), waiting)

    def check_restarted(self):
        self.prefix.restart()
        self.assert_installed()
        self.assert_nothing_passing()

    def test_open_file(self):
        self.add_file("texte.txt", b"new text")
        self.write_script()
        self.old("texte.txt", b"old")
        self.hold(PRODUCT + r"\texte.txt", "none")
        self.assertEqual(self.install(), 0)
        self.check_waits("texte.txt", b"old")
        self.assertEqual(self.waiting(), ["~exte.txt"])
        self.check_restarted()

    def test_open_file_that_others_may_read(self):
        self.add_file("texte.txt", b"new text")
        self.write_script()
        self.old("texte.txt", b"old")
        self.hold(PRODUCT + r"\texte.txt", "read")
        self.assertEqual(self.install(), 0)
        self.check_waits("texte.txt", b"old")
        self.check_restarted()

    def test_running_program(self):
        self.prefix.need_helpers()
        old = self.prefix.read(r"C:\helpers\exit_with.exe")
        self.add_file("programme.exe", self.prefix.read(r"C:\helpers\exit_code.exe"))
        self.write_script()
        self.old("programme.exe", old)
        running = self.prefix.start(PRODUCT + r"\programme.exe", "hang")
        # The loader maps the program before it does anything else.
        self.assertTrue(benchlib.wait_until(
            lambda: self.prefix.helper("hold_file", PRODUCT + r"\programme.exe", "all", "-write", "-for", "0")
            .output.startswith(b"error"), 20), "the program does not run")
        self.assertEqual(self.install(), 0)
        self.assertTrue(running.alive())
        self.check_waits("programme.exe", old)
        self.check_restarted()

    def test_loaded_library(self):
        self.make_library(PRODUCT + r"\aide.dll", "6.0.0.1")
        old = self.prefix.read(PRODUCT + r"\aide.dll")
        self.make_library(SOURCE + r"\aide.dll", "6.0.0.2")
        self.add_file("aide.dll", self.prefix.read(SOURCE + r"\aide.dll"))
        self.write_script()
        self.hold(PRODUCT + r"\aide.dll", "-load")
        self.assertEqual(self.install(), 0)
        self.check_waits("aide.dll", old)
        self.check_restarted()

    def test_several_files_that_would_wait_under_one_name(self):
        for name in ("a.txt", "b.txt", "sous\\c.txt"):
            self.add_file(name, b"new " + name.encode())
            self.old(name, b"old")
            self.hold(PRODUCT + "\\" + name, "none")
        self.write_script()
        self.assertEqual(self.install(), 0)
        self.check_waits("b.txt", b"old", waiting=3)
        self.assertEqual(self.waiting(), ["~.txt", "~_01.txt", "~_02.txt"])
        self.check_restarted()

    def test_file_in_use_outside_the_product_folder(self):
        self.add_file("partage.txt", b"new", dest=r"C:\Commun\partage.txt")
        self.write_script()
        self.prefix.write(r"C:\Commun\partage.txt", b"old")
        self.hold(r"C:\Commun\partage.txt", "none")
        self.assertEqual(self.install(), 0)
        self.assertEqual(self.prefix.read(r"C:\Commun\partage.txt"), b"old")
        self.assertEqual(self.waiting(), ["~artage.txt"])
        self.check_restarted()

    def test_a_hidden_file_is_hidden_after_the_restart(self):
        self.add_file("texte.txt", b"new text", dest="*<ProgDir>\\texte.txt")
        self.write_script()
        self.old("texte.txt", b"old")
        self.hold(PRODUCT + r"\texte.txt", "none")
        self.assertEqual(self.install(), 0)
        self.check_waits("texte.txt", b"old")
        self.check_restarted()
        self.assertIn("H", self.prefix.run("attrib", PRODUCT + r"\texte.txt").text.split("C:")[0])

    def test_the_other_files_are_installed_at_once(self):
        for name in ("a.txt", "b.txt", "c.txt"):
            self.add_file(name, b"new " + name.encode())
        self.write_script(install="+HKEY_CURRENT_USER\\Software\\Quorvale\\Made\\Second=pass\n")
        self.old("b.txt", b"old")
        self.hold(PRODUCT + r"\b.txt", "none")
        self.assertEqual(self.install(), 0)
        self.assertEqual(self.prefix.read(PRODUCT + r"\a.txt"), b"new a.txt")
        self.assertEqual(self.prefix.read(PRODUCT + r"\c.txt"), b"new c.txt")
        self.assertEqual(self.prefix.reg_value(r"HKCU\Software\Quorvale\Made", "Second"), "pass")
        self.check_waits("b.txt", b"old")
        self.check_restarted()

    def test_a_run_without_files_in_use_needs_no_restart(self):
        self.add_file("texte.txt", b"new text")
        self.write_script()
        self.assertEqual(self.install(), 0)
        self.assertNotIn("must be restarted", self.log())

    def test_an_installation_between_run_and_restart_wins(self):
        self.add_file("texte.txt", b"first")
        self.write_script()
        self.old("texte.txt", b"old")
        holder = self.hold(PRODUCT + r"\texte.txt", "none")
        self.assertEqual(self.install(), 0)
        self.prefix.write(SOURCE + r"\texte.txt", b"second")
        self.assertEqual(self.install(), 0)
        self.assertTrue(holder.alive())
        self.check_waits("texte.txt", b"old", waiting=2)
        self.check_restarted()

    def test_a_held_file_outlives_a_removal_and_is_named_in_the_log(self):
        self.add_file("texte.txt", b"text")
        self.write_script()
        self.assertEqual(self.install(), 0)
        self.hold(PRODUCT + r"\texte.txt", "none")
        self.assertEqual(self.remove(), 0)
        self.assert_logged("##ERROR: Deleting " + PRODUCT + r"\texte.txt, result = failure")
        self.assertEqual(self.prefix.read(PRODUCT + r"\texte.txt"), b"text")
        # The same removal, with the file free, deletes it.
        self.prefix.kill()
        self.assertEqual(self.remove(), 0)
        self.assertFalse(self.prefix.exists(PRODUCT + r"\texte.txt"))

    def test_a_held_configuration_file_outlives_a_removal_and_is_named_in_the_log(self):
        self.add_file("texte.txt", b"text")
        self.write_script()
        self.assertEqual(self.install(), 0)
        self.hold(PRODUCT + r"\VT6.QLC", "none")
        self.assertEqual(self.remove(), 0)
        self.assert_logged("##ERROR: Deleting " + PRODUCT + r"\VT6.QLC, result = failure")
        self.assertEqual(self.prefix.tree(PRODUCT), ["VT6.QLC"])
        # The next removal takes it, and one without it has nothing to say of it.
        self.prefix.kill()
        for _ in range(2):
            self.assertEqual(self.remove(), 0)
            self.assertNotIn("VT6.QLC, result", self.log())
            self.assertEqual(self.prefix.tree(PRODUCT), [])
