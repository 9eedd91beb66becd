"""Whole runs over sectioned texts in every shape: the script, and the machine store in a file or the registry."""
import os
import re

import setup_case
from setup_case import PRODUCT, SOURCE, STARTUP

KEY = r"HKEY_CURRENT_USER\Software\VTTestStores"
STORE = r"HKLM\Software\Quorvale\KVRX6"
HEADER = b"; Veltrane INI v1: Equation Preferences\r\n\r\n"

BODY = r"""[easy_install]
file0
Tail=yes
%s+HKEY_CURRENT_USER\Software\VTTestStores\Tail=<Tail>
[remove]
file0
[files]
file0=1,a.txt,<ProgDir>\a.txt,5
"""


class StoresTest(setup_case.SetupTest):
    def setUp(self):
        super().setUp()
        self.prefix.write(SOURCE + r"\a.txt", b"alpha")

    @staticmethod
    def bytes_of(text):
        return text.replace("\n", "\r\n").encode("cp1252")

    def run_script(self, script, code=0):
        """Installs with a script given as text or bytes; the values that its registry lines left."""
        self.prefix.reg_delete(KEY)
        self.prefix.write(SOURCE + r"\setup.inf", script)
        self.assertEqual(self.install(), code, self.log())
        if code == 0:
            self.assertEqual(self.prefix.read(PRODUCT + r"\a.txt"), b"alpha")
            os.unlink(self.prefix.host(PRODUCT + r"\a.txt"))
        return self.prefix.reg_tree(KEY).get(KEY, {})

    def run_lines(self, lines):
        """Installs with some lines in the main section; the values behind the last one must have run too."""
        values = self.run_script(STARTUP + BODY % lines)
        self.assertEqual(values.pop("Tail", None), "yes", self.log())
        return values


class ScriptShapes(StoresTest):
    """The script is read whatever its line ends, blanks and cases are."""

    good = StoresTest.bytes_of(STARTUP + BODY % "")

    def assert_runs(self, script):
        self.assertEqual(self.run_script(script), {"Tail": "yes"})

    def test_every_line_end(self):
        for end in (b"\n", b"\r", b"\n\r", b"\r\n\r\n"):
            with self.subTest(end=end):
                self.assert_runs(self.good.replace(b"\r\n", end))
        self.assert_runs(self.good[:-2])

    def test_blanks_and_tabs(self):
        script = re.sub(rb"(?m)^(?!\[)", b" \t", self.good)
        script = re.sub(rb"(?m)^([^=\r]*)=", rb"\1 \t=\t ", script).replace(b"\r\n", b" \t\r\n")
        self.assert_runs(script.replace(b"[", b"[ \t").replace(b"]", b"\t ]"))

    def test_upper_and_lower_case_of_names(self):
        script = self.good
        for name in (b"[startup]", b"[easy_install]", b"[files]", b"file0="):
            script = script.replace(name, name.upper())
        self.assert_runs(script)

    def test_header_line_of_stores(self):
        self.assert_runs(HEADER + self.good)

    def test_comments_and_lines_before_the_first_section(self):
        script = self.good.replace(b"Tail=yes", b";Tail=no\r\n\t; x\r\nTail=yes")
        self.assert_runs(b"stray=1\r\nstray\r\n\r\n ; note\r\n" + script)

    def test_more_than_a_hundred_sections(self):
        self.assert_runs(b"".join(b"[s%d]\r\nk=%d\r\n" % (i, i) for i in range(150)) + self.good)

    def test_first_section_and_first_key_of_a_name_count(self):
        script = self.good.replace(b"file0=1,", b"file0=1,a.txt,<ProgDir>\\a.txt,5\r\nFILE0=1,none,")
        self.assert_runs(script + b"[EASY_INSTALL]\r\n+" + KEY.encode() + b"\\Second=1\r\n")

    def test_bracket_that_never_closes_ends_the_section(self):
        self.assertEqual(self.run_script(self.good.replace(b"Tail=yes", b"[never closed\r\nTail=yes")), {})

    def test_ten_megabytes(self):
        self.assert_runs(b"[Big]\r\n" + (b"Key=" + b"v" * 94 + b"\r\n") * 105000 + self.good)


class ScriptLines(StoresTest):
    """Lines of every length."""

    def test_values_around_the_length_of_a_line(self):
        lines = ""
        for length in (509, 510, 511, 512, 513, 516, 517, 600, 1022, 1023, 1100):
            name = "L%d" % length
            lines += "%s=%s\n+%s\\%s=<%s>\n" % (name, ("v" * (length - len(name) - 2)) + "E", KEY, name, name)
        values = self.run_lines(lines)
        self.assertEqual(len(values), 11)
        for name, value in values.items():
            whole = "v" * (int(name[1:]) - len(name) - 2) + "E"
            self.assertEqual(value, whole[:511], name)

    def test_comments_of_more_than_a_line(self):
        for length in (510, 511, 512, 1022):
            with self.subTest(length=length):
                self.assertEqual(self.run_lines(";" + "x" * (length - 1) + "Tail=no\n"), {})

    def test_nuls_in_front_of_a_line(self):
        line = b"\0" * 511 + b"Nuls=seen\r\n+" + KEY.encode() + b"\\Nuls=<Nuls>\r\n"
        script = self.bytes_of(STARTUP + BODY % "").replace(b"Tail=yes\r\n", b"Tail=yes\r\n" + line)
        self.assertEqual(self.run_script(script), {"Tail": "yes", "Nuls": "seen"})

    def test_nul_hides_the_rest_of_a_line(self):
        script = self.bytes_of(STARTUP + BODY % "").replace(b"Tail=yes\r\n", b"Tail=yes\0 and no\r\n")
        self.assertEqual(self.run_script(script), {"Tail": "yes"})

    def test_accents(self):
        self.assertEqual(self.run_lines("\xc9t\xe9=\xe7a\n+%s\\\xe9t\xc9=<\xc9t\xe9>\n" % KEY), {"\xe9t\xc9": "\xe7a"})


class DamagedScripts(StoresTest):
    """A script cut anywhere, or none at all, ends the run with one of its codes."""

    def test_no_script_in_the_file(self):
        for script in (b"", b"\0" * 5000, b"\r\n" * 100, b"[", b"[startup"):
            with self.subTest(script=script[:10]):
                self.run_script(script, code=2)
                self.assert_logged('DoSection fail: section "startup" not found.')

    def test_cut_at_any_byte(self):
        good = self.bytes_of(STARTUP + BODY % "")
        for cut in range(5, len(good), 41):
            with self.subTest(cut=cut):
                self.prefix.write(SOURCE + r"\setup.inf", good[:cut])
                self.assertIn(self.install(), (0, 1, 2, 8, 12), self.log())


class MachineStore(StoresTest):
    """The store that MachRegKey names is read at the start and written at the end."""

    probe = "+%s\\Found=<ini_ProgDir>\n" % KEY
    written = b"ProgDir=" + PRODUCT.encode() + b"\r\nInstallFromDir=C:\\dist\r\n\r\n"

    def run_with(self, path):
        """What a run finds in the store at `path`."""
        startup = re.sub(r"(?m)^MachRegKey=.*$", lambda _: "MachRegKey=" + path, STARTUP)
        return self.run_script(startup + BODY % self.probe)["Found"]

    def test_file_store_is_read_and_rewritten(self):
        self.prefix.write(r"C:\m.ini", b"stray\n[Other]\n;n\nk = v\nL=" + b"v" * 600 +
                          b"\n[ directories ]\n\tPROGDIR =\tC:\\Old\t\n")
        self.assertEqual(self.run_with(r"C:\m.ini"), "C:\\Old")
        self.assertEqual(self.prefix.read(r"C:\m.ini"),
                         HEADER + b"stray\r\n\r\n[Other]\r\n;n\r\nk = v\r\nL=" + b"v" * 509 + b"\r\n" + b"v" * 91 +
                         b"\r\n\r\n[ directories ]\r\n" + self.written)

    def test_missing_file_store_is_made(self):
        self.assertEqual(self.run_with(r"C:\m.ini"), "<ini_ProgDir>")
        self.assertEqual(self.prefix.read(r"C:\m.ini"), HEADER + b"[Directories]\r\n" + self.written)

    def test_read_only_file_store_stays(self):
        self.prefix.write(r"C:\m.ini", b"[Directories]\nProgDir=C:\\Old\n")
        self.prefix.chmod(r"C:\m.ini", 0o444)
        self.assertEqual(self.run_with(r"C:\m.ini"), "C:\\Old")
        self.assertEqual(self.prefix.read(r"C:\m.ini"), b"[Directories]\nProgDir=C:\\Old\n")

    def test_unknown_root_and_prefix_in_lower_case_are_no_stores(self):
        for start in ("REG*HKEY_CURRENT_CONFIG", "reg*HKEY_LOCAL_MACHINE"):
            with self.subTest(start=start):
                self.assertEqual(self.run_with(start + r"\Software\Quorvale\KVRX6"), "<ini_ProgDir>")

    def test_registry_store_is_read_and_written(self):
        self.prefix.reg_add(STORE + r"\directories", "progdir", r"C:\Old")
        self.assertEqual(self.run_with("REG*HKEY_LOCAL_MACHINE\\Software\\Quorvale\\KVRX6"), "C:\\Old")
        self.assertEqual(self.prefix.reg_value(STORE + r"\Directories", "ProgDir"), PRODUCT)
        self.assertEqual(self.prefix.reg_value(STORE + r"\Directories", "InstallFromDir"), SOURCE)

    def test_registry_store_keeps_what_is_not_its_own(self):
        self.prefix.reg_add(STORE + r"\Directories", "[x", "bracket")
        self.prefix.reg_add(STORE + r"\Directories", "zzz", "last")
        self.prefix.reg_add(STORE + r"\Other\Deep", "number", "7", "REG_DWORD")
        self.prefix.reg_add(STORE + r"\Other", "number", "8", "REG_DWORD")
        self.prefix.reg_add(STORE + r"\Other", "long", "x" * 3000)
        self.run_with("REG*HKEY_LOCAL_MACHINE\\Software\\Quorvale\\KVRX6")
        self.assert_logged("KeyIsValid(szValueName)")
        tree = {path.split("KVRX6")[1]: values for path, values in self.prefix.reg_tree(STORE).items()}
        self.assertEqual(tree["\\Directories"],
                         {"ProgDir": PRODUCT, "InstallFromDir": SOURCE, "[x": "bracket", "zzz": "last"})
        self.assertEqual(tree["\\Other"], {"number": 8, "long": "x" * 3000})
        self.assertEqual(tree["\\Other\\Deep"], {"number": 7})

    def test_encoded_names_of_subkeys(self):
        self.prefix.reg_add(STORE + r"\$Direc$74ories", "ProgDir", r"C:\Encoded")
        self.assertEqual(self.run_with("REG*HKEY_LOCAL_MACHINE\\Software\\Quorvale\\KVRX6"), "C:\\Encoded")


class RegistryLines(StoresTest):
    """Lines and tasks of the script that write to the registry."""

    def test_key_that_cannot_be_made_is_logged(self):
        name = "x" * 300  # the registry takes 255 characters
        self.run_lines("+HKEY_CURRENT_USER\\%s\\value=1\n+HKEY_LOCAL_MACHINE\\%s\\=1\n" % (name, name))
        self.assert_logged('RegCreateKeyValue couldn\'t create key, "0x80000001\\%s".\n' % name,
                           'RegCreateKeyValue couldn\'t create key, "0x80000002\\%s".\n' % name)

    def test_root_names(self):
        below = "\\Software\\VTTestStores\\"
        lines = "".join("+%s%s%s=1\n" % (root, below, name) for root, name in (
            ("HKEY_CURRENT_USER", "full"), ("REG*HKEY_CURRENT_USER", "prefix"), ("reg*HKEY_CURRENT_USER", "lower"),
            ("hkey_current_user", "case"), ("HKEY_CURRENT_U", "short"), ("HKCU", "other"), ("", "none")))
        self.assertEqual(self.run_lines(lines), {"full": "1", "prefix": "1"})

    def test_values_and_keys_are_made_and_deleted(self):
        lines = ("+{0}\\=default\n+{0}\\two words= a  b \n+{0}\\gone=1\n+{0}\\Gone\\Deep\\v=1\n"
                 "-{0}\\gone\n-{0}\\Gone\\\n-{0}\\missing\n-{0}\\Missing\\\n").format(KEY)
        self.assertEqual(self.run_lines(lines), {"": "default", "two words": "a  b"})
        self.assertFalse(self.prefix.reg_exists(KEY + r"\Gone"))

    def test_number_of_another_owner_is_left(self):
        self.prefix.reg_add(r"HKCU\Software\VTTestOwner", "number", "5", "REG_DWORD")
        task = "$add_reg_chk_exist=HKEY_CURRENT_USER\\Software\\VTTestOwner\\%s,,mine\n"
        self.run_lines(task % "number" + task % "new")
        self.assertEqual(self.prefix.reg_value(r"HKCU\Software\VTTestOwner", "number"), 5)
        self.assertEqual(self.prefix.reg_value(r"HKCU\Software\VTTestOwner", "new"), "mine")
