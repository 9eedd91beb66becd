"""The sample distribution: its script is sound, and a silent installation and removal leave what they should."""
import collections
import os
import re
import unittest

import benchlib

DIST = os.path.join(benchlib.BUILD, "dist")
PRODUCT = r"C:\Program Files\Veltrane"
FONTS = ["LiberationMono-Bold.ttf", "LiberationMono-Regular.ttf", "LiberationSans-Regular.ttf",
         "LiberationSerif-Italic.ttf"]
PREFERENCES = ["Affiche.eqp", "Article.eqp", "Livre.eqp", "Utilisateur.eqp"]

TASKS = """
    remove_atm_font remove_old_atm_font atm_fontchange_notify install_tt_font remove_font_name remove_tt_font register
    register_dll add_reg_chk_exist remove_reg_chk_exist tt_fontchange_notify add_icon add_icon_group empty_icon_group
    remove_icon_group ask_view_readme set_all_autoconverts set_one_autoconvert run_ole_mgr remove_ini_path file_sys dir_del
    file_inst convert_pref get_ini_var test_ATM_on test_overwrite_old_app set_word_macro check_unsupported_office_version
    fixup_word_migration run_word_macro remove_word_macro set_ppt_macro run_ppt_macro remove_ppt_macro notify_message
    ask_choose_lang remove_soft_fonts create_link stub_reg clean_old_winini_ext_reg clean_others_ext_reg
    add_openwith_support remove_openwith_support""".split()

Record = collections.namedtuple("Record", "disk source hidden keep dest size")


def expanded(data):
    """The content of a compressed file (SZDD): runs of plain bytes and of copies from the last 4096."""
    if data[:4] != b"SZDD":
        raise ValueError("not compressed")
    size = int.from_bytes(data[10:14], "little")
    window, at, place, out = bytearray(b" " * 4096), 14, 4080, bytearray()
    while len(out) < size:
        kinds = data[at]
        at += 1
        for bit in range(8):
            if len(out) >= size:
                break
            if kinds >> bit & 1:
                piece = data[at:at + 1]
                at += 1
            else:
                start, length = data[at] | (data[at + 1] & 0xF0) << 4, (data[at + 1] & 0x0F) + 3
                at += 2
                piece = None
            for i in range(1 if piece else length):
                byte = piece[0] if piece else window[start + i & 4095]
                out.append(byte)
                window[place] = byte
                place = place + 1 & 4095
    return bytes(out[:size])


class Script:
    """setup.inf of the distribution: sections as lists of (key, value)."""

    def __init__(self):
        with open(os.path.join(DIST, "setup.inf"), "rb") as file:
            self.text = file.read().decode("cp1252")
        self.sections, lines = {}, None
        for line in self.text.split("\r\n"):
            if line.startswith("["):
                lines = self.sections.setdefault(line[1:-1], [])
            elif line.strip() and not line.lstrip().startswith(";"):
                key, _, value = line.partition("=")
                lines.append((key.strip(), value.strip()))

    def lines(self):
        for name, lines in self.sections.items():
            if name != "files":
                for key, value in lines:
                    yield name, key, value

    def records(self):
        records = {}
        for key, value in self.sections["files"]:
            disk, source, dest, size = value.split(",")
            bare = dest.lstrip("*?")
            prefix = dest[:len(dest) - len(bare)]
            records[key] = Record(int(disk), source, "*" in prefix, "?" in prefix, bare, int(size))
        return records


def source_data(record):
    with open(os.path.join(DIST, *record.source.split("\\")), "rb") as file:
        data = file.read()
    return expanded(data) if record.source.endswith("_") else data


class SampleScript(unittest.TestCase):
    def setUp(self):
        self.script = Script()

    def test_every_task_is_used_and_no_other(self):
        used = {key[1:] for _, key, _ in self.script.lines() if key.startswith("$")}
        self.assertEqual(used, set(TASKS))
        self.assertEqual(len(TASKS), 44)

    def test_every_section_is_run_from_somewhere(self):
        called = {key.lstrip("&").rstrip("?") for _, key, _ in self.script.lines() if key.startswith("&")}
        main = {"startup", "shutdown", "easy_install", "remove", "wkstation_install", "wkstation_remove"}
        self.assertEqual(called | main, set(self.script.sections) - {"files"})

    def test_every_optional_section_has_its_switch(self):
        set_here = {key for _, key, _ in self.script.lines()} | {
            value.split(",")[0] for _, key, value in self.script.lines()
            if key in ("$test_ATM_on", "$test_overwrite_old_app")}
        of_the_dialog = {"do_" + key[len("enable_"):] for _, key, _ in self.script.lines() if key.startswith("enable_")}
        for _, key, _ in self.script.lines():
            if key.startswith("&") and key.endswith("?"):
                self.assertIn("do_" + key[1:-1], set_here | of_the_dialog)

    def test_every_file_line_has_a_record_and_every_record_a_line(self):
        listed = {key for _, key, value in self.script.lines() if not value and key[0] not in "$&+-"}
        self.assertEqual(listed, set(self.script.records()))

    def test_sources_are_there_and_sizes_are_true(self):
        for key, record in self.script.records().items():
            self.assertEqual(len(source_data(record)), record.size, key)
            self.assertEqual(record.disk, 1, key)

    def test_no_file_is_left_out(self):
        files = {os.path.relpath(os.path.join(folder, name), DIST).replace("/", "\\")
                 for folder, _, names in os.walk(DIST) for name in names}
        self.assertEqual({record.source for record in self.script.records().values()}, files)

    def test_there_is_one_of_each_kind(self):
        records = self.script.records().values()
        self.assertGreaterEqual(len(records), 60)
        self.assertEqual(sum(record.hidden for record in records), 1)
        self.assertEqual(sum(record.keep for record in records), 1)
        self.assertGreaterEqual(sum(record.source.endswith("_") for record in records), 5)
        self.assertGreaterEqual(sum(record.dest.endswith(".ttf") for record in records), 3)
        self.assertTrue(any(record.dest.count("\\") >= 3 for record in records))

    def test_compressed_files_know_their_names(self):
        for record in self.script.records().values():
            if record.source.endswith("_"):
                with open(os.path.join(DIST, *record.source.split("\\")), "rb") as file:
                    self.assertEqual(chr(file.read()[9]), record.dest[-1], record.source)

    def test_everything_goes_below_the_product_folder(self):
        for record in self.script.records().values():
            self.assertRegex(record.dest, r"^<ProgDir>\\[^:]+$")
            self.assertNotIn("..", record.dest)

    def test_lines_fit_their_reader(self):
        for line in self.script.text.split("\r\n"):
            self.assertLess(len(line), 512, line)

    def test_each_folder_of_ours_is_removed(self):
        folders = {record.dest.split("\\")[1] for record in self.script.records().values() if record.dest.count("\\") > 1}
        removed = {value.strip('"').split("\\")[1] for _, key, value in self.script.lines() if key == "$dir_del"}
        self.assertEqual(removed, folders)


class SampleRuns(benchlib.WindowsTest):
    def setUp(self):
        super().setUp()
        self.prefix.copy_in(DIST, r"C:\dist")

    def run_setup(self, program, *args):
        result = self.prefix.run(program, *args, timeout=120)
        self.assertEqual(result.code, 0, result.text)

    def install(self):
        self.run_setup(r"C:\dist\Setup.exe", "-Q", "-D", PRODUCT)

    def remove(self):
        self.run_setup(PRODUCT + r"\Setup.exe", "-Q", "-R")
        gone = benchlib.wait_until(lambda: not self.prefix.exists(PRODUCT + r"\Setup.exe"), 10)
        self.assertTrue(gone, "setup did not delete itself")
        # The batch file deletes itself last.
        self.assertTrue(benchlib.wait_until(lambda: not self.prefix.exists(r"C:\windows\QLDELSU.BAT"), 10))

    def files(self):
        return set(self.prefix.tree("C:\\")) - {"dist\\"}

    def registry(self):
        """(key, value name, data) of both stores; keys by themselves with None. Without what Wine itself keeps."""
        noise = re.compile(r"\\(Software\\Wine|Console)(\\|$)")
        found = set()
        for root in (r"HKLM\Software", "HKCU"):
            for key, values in self.prefix.reg_tree(root).items():
                if noise.search(key):
                    continue
                found.add((key, None, None))
                found.update((key, name, str(data)) for name, data in values.items())
        return found

    def test_files_arrive_whole(self):
        self.install()
        for key, record in Script().records().items():
            path = record.dest.replace("<ProgDir>", PRODUCT)
            self.assertTrue(self.prefix.exists(path), key)
            self.assertEqual(self.prefix.read(path), source_data(record), key)

    def test_the_hidden_file_is_hidden(self):
        self.install()
        listing = self.prefix.run("cmd", "/c", "dir", "/b", "/a:h", PRODUCT).text.split()
        self.assertIn("Produit.id", listing)

    def test_installing_again_keeps_the_users_file_and_renews_the_others(self):
        self.install()
        self.prefix.write(PRODUCT + r"\Preferences\Utilisateur.eqp", "mine\n")
        self.prefix.write(PRODUCT + r"\Modeles\Algebre\Binome.vteq", "changed\n")
        self.install()
        self.assertEqual(self.prefix.text(PRODUCT + r"\Preferences\Utilisateur.eqp"), "mine\n")
        self.assertIn("TeX=", self.prefix.text(PRODUCT + r"\Modeles\Algebre\Binome.vteq"))

    def test_what_an_installation_makes(self):
        self.install()
        values = {
            (r"HKLM\Software\Quorvale\KVRX6\Directories", "ProgDir"): PRODUCT,
            (r"HKLM\Software\Quorvale\KVRX6\Product", "Version"): "6.0",
            (r"HKLM\Software\Microsoft\Windows\CurrentVersion\Uninstall\KVRX6", "UninstallString"):
                '"%s\\Setup.exe" -R' % PRODUCT,
            (r"HKCR\.vteq", ""): "Veltrane.Equation.6",
            (r"HKCR\Veltrane.Equation.6\shell\open\command", ""): '"%s\\Veltrane.exe" "%%1"' % PRODUCT,
            (r"HKCR\Equation.KVRX36\CLSID", ""): "{C60857EB-FDFC-49B5-B705-033F54CED203}",
            (r"HKLM\Software\Microsoft\Windows NT\CurrentVersion\Fonts", "Liberation Mono Bold (TrueType)"):
                "LiberationMono-Bold.ttf",
        }
        for (key, name), data in values.items():
            # The editor registers itself beside the setup.
            benchlib.wait_until(lambda: self.prefix.reg_value(key, name) == data, 10)
            self.assertEqual(self.prefix.reg_value(key, name), data, key)
        for font in FONTS:
            self.assertTrue(self.prefix.exists("C:\\windows\\Fonts\\" + font), font)
        group = [path for path in self.files() if "\\Programs\\Veltrane 6\\" in path and path.endswith(".lnk")]
        self.assertEqual(len(group), 5, group)
        self.assertTrue(self.prefix.exists(PRODUCT + r"\Exemples\Veltrane.lnk"))
        self.assertTrue(self.prefix.exists(PRODUCT + r"\VT6.QLC"))

    def leftovers(self):
        """(files, registry entries) that an installation and a removal leave behind."""
        registry, files = self.registry(), self.files()
        self.install()
        self.remove()
        self.prefix.settle()
        left_files = {path for path in self.files() - files if not path.startswith("outputs")}
        self.assertEqual(files - self.files(), set())
        after = self.registry()
        self.assertEqual(registry - after, set())
        return left_files, after - registry

    LEFT_FILES = {"Program Files\\Veltrane\\"}
    # The log is made for the one who looks after the machine. The two keys are no product's: the right to write is
    # tried in the first, and the second is there on every Windows but a fresh test prefix.
    LEFT_KEYS = {r"HKEY_LOCAL_MACHINE\Software\Quorvale",
                 r"HKEY_CURRENT_USER\Software\Microsoft\Windows\CurrentVersion\Explorer\FileExts"}

    def check_leftovers(self, more_files, more_values):
        files, registry = self.leftovers()
        log = {path for path in files if path.endswith("\\Temp\\Veltrane6.log")}
        self.assertEqual(len(log), 1)
        self.assertEqual(files - log, self.LEFT_FILES | more_files)
        self.assertEqual(registry, {(key, None, None) for key in self.LEFT_KEYS} | more_values)
        profile = self.prefix.text(r"C:\windows\win.ini")
        self.assertIn("TTifCollisions=1", profile)
        self.assertIn("VT Symbol=Symbol", profile)

    def test_a_silent_removal_keeps_what_is_offered_to_be_kept(self):
        font_key = r"HKEY_LOCAL_MACHINE\Software\Microsoft\Windows NT\CurrentVersion\Fonts"
        names = ["Liberation Mono Bold", "Liberation Mono", "Liberation Sans", "Liberation Serif Italic"]
        folder = "Program Files\\Veltrane\\Preferences\\"
        self.check_leftovers({folder} | {folder + name for name in PREFERENCES} | {"windows\\Fonts\\" + f for f in FONTS},
                             {(font_key, name + " (TrueType)", file) for name, file in zip(names, FONTS)})

    def test_a_removal_without_options_leaves_nothing(self):
        script = self.prefix.text(r"C:\dist\setup.inf")
        changed = re.sub("(?m)^(enable_remove_keep_[a-z]+)=1$", r"\1=0", script)
        self.assertNotEqual(changed, script)
        self.prefix.write(r"C:\dist\setup.inf", changed)
        self.check_leftovers(set(), set())


if __name__ == "__main__":
    unittest.main()
