"""What the host-side tests of whole runs share: a small distribution, silent runs, and their log."""
import os

import benchlib

PRODUCT = r"C:\Program Files\Veltrane"
SOURCE = r"C:\dist"

STARTUP = benchlib.STARTUP

LIMIT = 60  # seconds after which a run counts as hanging


class SetupTest(benchlib.WindowsTest):
    """Silent runs of the real setup from C:\\dist."""

    def setUp(self):
        super().setUp()
        self.records = []
        self.prefix.copy_in(os.path.join(benchlib.BIN, "Setup.exe"), SOURCE + r"\Setup.exe")

    def add_file(self, name, data, dest=None, disk=1, size=None):
        """A source file with its record; `dest` with its prefix characters, "<ProgDir>\\name" when not given."""
        self.prefix.write(SOURCE + "\\" + name, data)
        self.records.append((disk, name, dest or "<ProgDir>\\" + name, len(data) if size is None else size))

    def script(self, install="", remove="", startup=""):
        keys = "".join("file%d\n" % i for i in range(len(self.records)))
        lines = "".join("file%d=%d,%s,%s,%d\n" % (i, *record) for i, record in enumerate(self.records))
        return "%s%s\n[easy_install]\n%s%s\n[remove]\n%s%s\n[files]\nnone=1,none,<ProgDir>\\none,0\n%s" % (
            STARTUP, startup, keys, install, keys, remove, lines)

    def write_script(self, **sections):
        self.prefix.write(SOURCE + r"\setup.inf", self.script(**sections))

    def run_setup(self, *args, limit=LIMIT, **more):
        """The exit code of a run; a run that hangs is a failure."""
        began = self.prefix.run(SOURCE + r"\Setup.exe", *args, timeout=limit, **more)
        self.assertFalse(began.timed_out, "the setup hangs; log:\n" + self.log())
        return began.code

    def install(self, folder=PRODUCT, **more):
        return self.run_setup("-Q", "-D", folder, **more)

    def remove(self, **more):
        return self.run_setup("-Q", "-RS", **more)

    def temp(self):
        users = self.prefix.host(r"C:\users")
        for user in sorted(os.listdir(users)):
            if user != "Public" and os.path.isdir(os.path.join(users, user, "Temp")):
                return "C:\\users\\" + user + "\\Temp"
        raise benchlib.BenchError("no temporary folder")

    def log(self):
        """The text of the last run's log; of the early one when the run did not get further."""
        for name in ("Veltrane6.log", "QLSetup.log"):
            path = self.temp() + "\\" + name
            if self.prefix.exists(path):
                return self.prefix.text(path)
        return ""

    def assert_logged(self, *texts):
        """The log holds the texts, in this order."""
        log, place = self.log(), 0
        for text in texts:
            found = log.find(text, place)
            self.assertGreaterEqual(found, 0, "not in the log, or not in this order: %r\n%s" % (text, log[-6000:]))
            place = found + len(text)

    def assert_installed(self, folder=PRODUCT):
        for _, name, dest, _ in self.records:
            path = dest.lstrip("*?").replace("<ProgDir>", folder)
            self.assertTrue(self.prefix.exists(path), path)
            self.assertEqual(self.prefix.read(path), self.prefix.read(SOURCE + "\\" + name), path)

    def assert_nothing_passing(self, folder=PRODUCT):
        """No file on its way was left."""
        names = [name for name in self.prefix.tree(folder)
                 if name.lower().endswith(".tmp") or name.split("\\")[-1].startswith("~")]
        self.assertEqual(names, [])
        self.assertFalse(self.prefix.exists(self.temp() + r"\QLSetup.lst"))
