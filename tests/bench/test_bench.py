"""The bench itself: what the tests of the program take for granted."""
import os
import stat
import unittest

import benchlib


class PrefixTest(benchlib.WindowsTest):
    """Files, programs, registry of a clone."""

    def test_files_are_found_whatever_their_case(self):
        self.prefix.write(r"C:\Some Folder\Text.TXT", "déjà\n")
        self.assertEqual(self.prefix.read(r"c:\some folder\text.txt"), b"d\xe9j\xe0\r\n")
        self.assertEqual(self.prefix.text(r"C:\SOME FOLDER\TEXT.TXT"), "déjà\n")
        self.assertEqual(self.prefix.tree(r"C:\Some Folder"), ["Text.TXT"])

    def test_exit_codes_come_through_whole(self):
        result = self.prefix.helper("exit_with", "77", "hello")
        self.assertEqual((result.code, result.text), (77, "hello\n"))
        self.prefix.need_helpers()
        self.assertEqual(self.prefix.run_full(r"C:\helpers\exit_with.exe 305419896").code, 305419896)

    def test_a_program_that_hangs_is_ended(self):
        result = self.prefix.helper("exit_with", "hang", timeout=1)
        self.assertTrue(result.timed_out)

    def test_registry_values_are_read(self):
        key = r"HKCU\Software\VeltraneTest"
        self.assertEqual(self.prefix.reg_tree(key), {})
        self.prefix.reg_add(key, "text", 'a "quoted" \\ path')
        self.prefix.reg_add(key, "number", "258", "REG_DWORD")
        self.prefix.reg_add(key, "expand", "%PATH%", "REG_EXPAND_SZ")
        self.prefix.reg_add(key + r"\Sub", "", "default")
        self.assertEqual(self.prefix.reg_tree(key), {
            r"HKEY_CURRENT_USER\Software\VeltraneTest":
                {"text": 'a "quoted" \\ path', "number": 258, "expand": "%PATH%"},
            r"HKEY_CURRENT_USER\Software\VeltraneTest\Sub": {"": "default"}})
        self.assertEqual(self.prefix.reg_value(key, "NUMBER"), 258)
        self.assertIsNone(self.prefix.reg_value(key, "missing"))
        self.prefix.restart()
        self.assertEqual(self.prefix.reg_value(key, "number"), 258)
        self.assertTrue(self.prefix.reg_delete(key))
        self.assertFalse(self.prefix.reg_exists(key))

    def test_a_restart_carries_out_pending_renames(self):
        self.prefix.write(r"C:\new.txt", "new")
        self.prefix.write(r"C:\windows\wininit.ini", "[Rename]\nC:\\old.txt=C:\\new.txt\n")
        self.prefix.restart()
        self.assertEqual(self.prefix.text(r"C:\old.txt"), "new")
        self.assertFalse(self.prefix.exists(r"C:\new.txt"))

    def test_a_held_file_is_free_after_a_power_cut(self):
        self.prefix.write(r"C:\held.txt", "x")
        holder = self.prefix.start_helper("hold_file", r"C:\held.txt", "none")
        self.assertTrue(benchlib.wait_until(lambda: b"ready" in holder.output))
        self.assertNotEqual(self.prefix.run("cmd", "/c", "type", r"C:\held.txt").text, "x")
        self.prefix.kill()
        self.assertEqual(self.prefix.run("cmd", "/c", "type", r"C:\held.txt").text, "x")

    def test_a_linked_drive_has_the_kind_asked_for(self):
        folder = os.path.join(self.prefix.root, "medium")
        os.mkdir(folder)
        with open(os.path.join(folder, ".windows-label"), "w", encoding="ascii") as file:
            file.write("VTDISK1\n")
        self.prefix.link_drive("d", folder, "cdrom")
        self.assertIn("VTDISK1", self.prefix.run("cmd", "/c", "vol", "d:").text)


class IsolationTest(benchlib.WindowsTest):
    """What the programs under test must not reach."""

    def test_the_machines_disks_are_not_there(self):
        self.assertEqual(sorted(os.listdir(os.path.join(self.prefix.root, "dosdevices")))[0], "c:")
        self.assertFalse(os.path.lexists(os.path.join(self.prefix.root, "dosdevices", "z:")))
        self.assertNotEqual(self.prefix.run("cmd", "/c", "dir", "z:\\").code, 0)

    def test_the_machines_fonts_are_not_registered(self):
        fonts = self.prefix.reg_tree(r"HKLM\Software\Microsoft\Windows NT\CurrentVersion\Fonts")
        files = [str(data) for values in fonts.values() for data in values.values()]
        self.assertTrue(files)
        self.assertEqual([name for name in files if ":" in name and not name.lower().startswith("c:")], [])

    def test_user_folders_are_the_clones_own(self):
        links = [os.path.join(folder, name) for folder, folders, _ in os.walk(self.prefix.host(r"C:\users"))
                 for name in folders if os.path.islink(os.path.join(folder, name))]
        self.assertEqual(links, [])

    def test_a_read_only_folder_refuses_new_files(self):
        self.prefix.make_folder(r"C:\closed")
        self.prefix.chmod(r"C:\closed", stat.S_IRUSR | stat.S_IXUSR)
        self.prefix.run("cmd", "/c", r"echo x> C:\closed\new.txt")
        self.assertFalse(self.prefix.exists(r"C:\closed\new.txt"))

    def test_two_clones_do_not_share_files_or_registry(self):
        with benchlib.Prefix() as other:
            self.prefix.run("cmd", "/c", r"echo x>> C:\windows\win.ini")
            self.prefix.reg_add(r"HKLM\Software\VeltraneTest", "a", "1")
            self.assertNotEqual(self.prefix.read(r"C:\windows\win.ini"), other.read(r"C:\windows\win.ini"))
            self.assertFalse(other.reg_exists(r"HKLM\Software\VeltraneTest"))


class NamespaceTest(benchlib.WindowsTest):
    """Mounts for one test, where the machine allows them."""

    def test_a_full_disk(self):
        benchlib.require_namespaces()
        small = os.path.join(self.prefix.root, "small")
        os.mkdir(small)
        self.prefix.link_drive("d", small)
        self.prefix.write(r"C:\big.bin", b"x" * 300000)
        copy = ("cmd", "/c", "copy", r"C:\big.bin", "d:\\")
        full = self.prefix.run(*copy, wrap=benchlib.in_namespace("--size", "65536", "--tmpfs", small))
        self.assertNotEqual(full.code, 0, full)
        self.prefix.kill()
        roomy = self.prefix.run(*copy, wrap=benchlib.in_namespace("--size", "1000000", "--tmpfs", small))
        self.assertEqual(roomy.code, 0, roomy)


if __name__ == "__main__":
    unittest.main()
