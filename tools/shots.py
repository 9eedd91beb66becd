"""Takes pictures of every dialog in every language, from real runs: build/shots/<language>-<name>.png.

    python3 tools/shots.py [LANGUAGE...]      after ./dev build

Each picture is the dialog's part of the screen; "screen" is the whole one. Look at them after every change of a dialog or
a text: nothing may be cut off or overlap.
"""
import os
import subprocess
import sys

import benchlib

OUT = os.path.join(benchlib.BUILD, "shots")
DIST = r"C:\dist"
PRODUCT = r"C:\Program Files\Veltrane"
# A folder name that is as long as users make them.
DEEP = r"C:\Program Files\Applications scientifiques du laboratoire\Composition de documents\Veltrane"

LANGUAGES = {
    "fr": ("fr_FR.UTF-8", "0x040c,fr"),
    "en": ("C.UTF-8", "0x0409,en"),
}

MAIN, PROGRESS, ANSWER_YES, CREATE, NAME, OLE, LANGUAGE, OLD, LAUNCH, README = (
    101, 22, 6, 1101, 121, 131, 141, 151, 161, 162)
MESSAGE, OLE_DETAILS, DETAILS = 20, 137, 171
ICON = 1088  # of a message box


class Studio:
    """One language: its prefix, the current run, the camera."""

    def __init__(self, language, display):
        self.language = language
        locale, self.app_lang = LANGUAGES[language]
        self.prefix = benchlib.Prefix(display, locale)
        self.display = display
        self.running = None
        os.makedirs(OUT, exist_ok=True)

    def close(self):
        self.prefix.close()

    # ---- what is installed ----

    def distribution(self, script, files=()):
        """A small distribution in C:\\dist."""
        for name in ("Setup.exe", "VTsu6fr.dll", "VTsu6en.dll"):
            self.prefix.copy_in(os.path.join(benchlib.BIN, name), DIST + "\\" + name)
        for name, data in files:
            self.prefix.write(DIST + "\\" + name, data)
        self.prefix.write(DIST + r"\setup.inf", script)

    def script(self, startup="", install="", files=(), size=None):
        lines = "".join("%s=%d,%s,<ProgDir>\\%s,%d\n" % (name, disk, name, name, size or 10) for name, disk in files)
        keys = "".join(name + "\n" for name, _ in files)
        return "%sAppLang=%s\n%s[easy_install]\n%s%s[remove]\n%s[wkstation_install]\nX=1\n[files]\nnone=1,a,b,1\n%s" % (
            benchlib.STARTUP, self.app_lang, startup, keys, install, keys, lines)

    # ---- running and looking ----

    def start(self, *args, folder=DIST):
        self.end()
        self.running = self.prefix.start(folder + r"\Setup.exe", *args, timeout=120)

    def end(self):
        """Ends the run by force; its windows go with it."""
        if self.running and self.running.alive():
            self.prefix.kill()
        self.running = None

    def drive(self, *words):
        result = self.prefix.helper("dialog_driver", *map(str, words))
        if result.code != 0:
            raise SystemExit("%s: %s: %s" % (self.language, " ".join(map(str, words)), result.text))
        return result.text

    def shoot(self, name, *window, settle=0.3):
        """A picture of the window that the options name."""
        # The last line: the shell may complain about the locale in front of it.
        left, top, width, height = map(int, self.drive(*window, "rect").splitlines()[-1].split())
        path = os.path.join(OUT, "%s-%s.png" % (self.language, name))
        # Drawing goes through the display's own queue.
        benchlib.time.sleep(settle)
        self.display.screenshot(path)
        subprocess.run(["mogrify", "-crop", "%dx%d+%d+%d" % (width + 8, height + 8, left - 4, top - 4), "+repage", path],
                       check=True, stdin=subprocess.DEVNULL)

    def whole(self, name):
        benchlib.time.sleep(0.3)
        self.display.screenshot(os.path.join(OUT, "%s-%s.png" % (self.language, name)))


def has(control):
    return ["-has", control]


BOX = ["-class", "#32770"]


def main_dialog(s):
    s.distribution(s.script("enable_remove_keep_prefs=1\nenable_remove_keep_fonts=1\n"))
    s.start("-D", DEEP)
    s.drive(*has(MAIN), "find")
    s.whole("screen")
    s.shoot("1200-install", *has(MAIN))
    s.drive(*has(MAIN), "set", 106, "")
    s.drive(*has(MAIN), "command", 1)
    s.shoot("297-no-folder", *has(ICON))
    s.drive(*has(ICON), "command", 1)
    s.drive(*has(MAIN), "set", 106, r"C:\windows")
    s.drive(*has(MAIN), "command", 107)
    s.shoot("1800-browse", *has(CREATE))
    s.drive(*has(CREATE), "command", CREATE)
    s.shoot("1900-new-folder", *has(NAME))
    s.drive(*has(NAME), "command", 2)
    s.drive(*has(CREATE), "command", 2)
    s.drive(*has(MAIN), "click", 103)
    s.shoot("1200-remove", *has(MAIN))
    s.distribution(s.script())
    s.start("-D", DEEP)
    s.drive(*has(MAIN), "click", 103)
    s.shoot("1200-remove-all", *has(MAIN))
    # A version that was found already.
    s.distribution(s.script("ini_ProgDir=" + PRODUCT + "\n"))
    s.start()
    s.shoot("1200-again", *has(MAIN))


def workstation(s):
    s.distribution(s.script(files=[("a.txt", 1)]), [("a.txt", "0123456789")])
    s.prefix.run(DIST + r"\Setup.exe", "-Q", "-D", DEEP)
    s.start("-W", "-D", DEEP)
    s.shoot("1200-workstation", *has(MAIN))


def copying(s):
    count = 4000
    files = [("f%d" % i, 1) for i in range(count)]
    s.distribution(s.script(files=files), [(name, "0123456789") for name, _ in files])
    s.start("-I", "-D", DEEP)
    if not benchlib.wait_until(lambda: s.prefix.exists(DEEP + r"\f%d" % (count * 2 // 5)), 60):
        raise SystemExit("the copy does not come so far")
    s.shoot("1600-progress", *has(PROGRESS), settle=0)
    s.end()


def questions(s):
    s.prefix.need_helpers()
    new, old = r"C:\new.dll", r"C:\old.dll"
    for path, version in ((new, "2.0.0.0"), (old, "1.0.0.0")):
        s.prefix.helper("make_library", path, version)
    name = "Une bibliotheque au nom plutot long.dll"
    s.distribution(s.script(files=[("x.dll", 1), ("y.txt", 2)]).replace("<ProgDir>\\x.dll", "<ProgDir>\\" + name),
                   [("x.dll", s.prefix.read(old))])
    s.prefix.write(DEEP + "\\" + name, s.prefix.read(new))
    s.start("-I", "-D", DEEP)
    s.shoot("1700-newer-file", *has(ANSWER_YES))
    s.drive(*has(ANSWER_YES), "command", 6)
    s.shoot("4129-disk", *has(ICON))
    s.drive(*has(ICON), "command", 1, "gone")
    s.shoot("4128-file-of-disk", *has(ICON))
    s.distribution(s.script(files=[("f%d" % i, 1) for i in range(2000)], size=2147483647))
    s.start("-I", "-D", DEEP)
    s.shoot("4099-space", *has(ICON))


def earlier(s):
    s.prefix.make_folder(DEEP)
    s.distribution(s.script("OldAppDir=" + DEEP + "\n"))
    s.start()
    s.shoot("2300-earlier-version", *has(OLD))
    s.end()
    s.distribution(s.script())
    s.prefix.copy_in(os.path.join(benchlib.HELPERS, "earlier_setup.exe"), r"C:\five\Setup.exe")
    s.prefix.write(r"C:\five\Setup.exe.todo", "wait C:\\never\n")
    s.prefix.reg_add(r"HKLM\Software\Quorvale\KVRX5\Directories", "ProgDir", r"C:\five")
    s.start()
    s.shoot("2400-status", *has(MESSAGE))
    s.end()
    s.prefix.reg_delete(r"HKLM\Software\Quorvale\KVRX5")


def checks(s):
    s.distribution(s.script())
    office = s.prefix.start_helper("stand_in_window", "OpusApp", "Word")
    s.prefix.need_helpers()
    benchlib.wait_until(lambda: b"ready" in office.output)
    s.start()
    s.shoot("2500-office", *BOX)
    s.end()
    s.start("-WHAT")
    s.shoot("791-command-line", *has(ICON))
    s.end()
    s.prefix.start_helper("stand_in_window", "MainVTWin6", "Veltrane")
    s.start()
    s.shoot("4101-running-copy", *has(ICON))
    s.end()
    s.start("-ASSERT")
    s.shoot("assertion", *has(ICON))
    s.end()


def finishing(s):
    readme = "ViewReadMePath=C:\\dist\\a.txt\n"
    s.distribution(s.script(files=[("a.txt", 1)]), [("a.txt", "0123456789")])
    s.start("-I", "-D", PRODUCT)
    s.shoot("2700-finished", *has(LAUNCH))
    s.distribution(s.script("ViewReadMeDlg=1\n" + readme, files=[("a.txt", 1)]))
    s.start("-I", "-D", PRODUCT)
    s.shoot("2600-finished-readme", *has(README))
    s.end()
    holder = s.prefix.start_helper("hold_file", PRODUCT + r"\a.txt", "read")
    benchlib.wait_until(lambda: b"ready" in holder.output)
    s.distribution(s.script(readme, files=[("a.txt", 1)]))
    s.start("-I", "-D", PRODUCT)
    s.shoot("2800-restart", *has(README))
    s.end()


def languages_and_servers(s):
    s.distribution(s.script(install="$ask_choose_lang=" + DIST + "\\VTsu6*.dll\n"))
    for language, _ in LANGUAGES.items():
        s.prefix.copy_in(os.path.join(benchlib.BUILD, "dist", "VT6%s.dll" % language), DIST + "\\VT6%s.dll" % language)
    s.prefix.write(DIST + r"\setup.inf", s.script(install="$ask_choose_lang=" + DIST + "\\VT6*.dll\n"))
    s.start("-I", "-D", PRODUCT)
    s.shoot("2200-language", *has(LANGUAGE))
    s.end()
    # The sample product's registration fills the lists.
    s.prefix.copy_in(os.path.join(benchlib.BUILD, "dist"), r"C:\sample")
    s.prefix.reg_add(r"HKLM\Software\Quorvale\KVRX6\Config", "AppLang", s.app_lang)
    s.prefix.run(r"C:\sample\Setup.exe", "-Q", "-D", PRODUCT, timeout=120)
    for prog_id, class_id, name in (("Equation.2", "{00021700-0000-0000-C000-000000000046}", "Microsoft Equation 2.0"),
                                    ("Equation.3", "{0002CE02-0000-0000-C000-000000000046}", "Microsoft Equation 3.0")):
        s.prefix.reg_add("HKCR\\" + prog_id, "", name)
        s.prefix.reg_add("HKCR\\" + prog_id + r"\CLSID", "", class_id)
        s.prefix.reg_add("HKCR\\CLSID\\" + class_id, "", name)
        s.prefix.reg_add("HKCR\\CLSID\\" + class_id + r"\ProgID", "", prog_id)
        s.prefix.reg_add("HKCR\\CLSID\\" + class_id + r"\LocalServer32", "", PRODUCT + r"\Veltrane.exe")
    s.start("-OLEMGR", folder=r"C:\sample")
    s.drive(*has(OLE), "click", 139)
    s.shoot("2000-conversion-manager", *has(OLE))
    s.drive(*has(OLE), "command", OLE_DETAILS)
    s.shoot("2100-details", *has(DETAILS))
    s.end()


def macro_notices(s):
    s.prefix.copy_in(os.path.join(benchlib.BIN, "VTsu6%s.dll" % s.language), r"C:\lang.dll")
    for name, number in (("2900-word", 2900), ("3000-powerpoint", 3000)):
        s.prefix.start_helper("show_dialog", r"C:\lang.dll", str(number), "AppName=Veltrane")
        s.shoot(name, *BOX)
        s.drive(*BOX, "command", 1, "gone")


SCENES = (main_dialog, workstation, copying, questions, earlier, checks, finishing, languages_and_servers, macro_notices)


def main(arguments):
    wanted = [a for a in arguments if a in LANGUAGES] or list(LANGUAGES)
    scenes = [s for s in SCENES if s.__name__ in arguments] or SCENES
    with benchlib.Display() as display:
        for language in wanted:
            for scene in scenes:
                studio = Studio(language, display)
                try:
                    scene(studio)
                finally:
                    studio.close()
                print(language, scene.__name__, flush=True)


if __name__ == "__main__":
    main(sys.argv[1:])
