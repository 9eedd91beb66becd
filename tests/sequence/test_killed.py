"""The setup is killed at random moments. No torn file stands under its final name, and the same command run again ends
as if nothing had happened.

VELTRANE_KILLS: how often it is killed, over all tests (20). VELTRANE_SEED: repeats the moments of an earlier run.
"""
import hashlib
import os
import random
import re
import shutil
import signal
import subprocess
import tempfile
import time

import benchlib
from setup_case import PRODUCT, STARTUP

KILLS = int(os.environ.get("VELTRANE_KILLS", "20"))
SEED = os.environ.get("VELTRANE_SEED", str(random.SystemRandom().randrange(10 ** 9)))

SHARED = r"C:\windows\system32\VTShare.dll"
KEYS = (r"HKLM\Software\Quorvale", r"HKCU\Software\Quorvale")
# Names of files that are on their way; none of them is a final name of the distributions below.
PASSING = re.compile(r"(ver[0-9a-f]{1,4}\.tmp|~[^\\]*|VT6\.tmp)$", re.I)


def noise(seed, size):
    return random.Random(seed).randbytes(size)


def compressed(data, last_letter):
    """`data` in the system's compressed format; `last_letter` completes the name when it is expanded."""
    with tempfile.TemporaryDirectory() as folder:
        path = os.path.join(folder, "plain.txt")
        with open(path, "wb") as file:
            file.write(data)
        subprocess.run(["mscompress", path], cwd=folder, stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL,
                       check=True)
        with open(path + "_", "rb") as file:
            packed = bytearray(file.read())
    packed[9] = ord(last_letter)
    return bytes(packed)


class Distribution:
    """A product of one version: its files by destination below the product folder, and the script."""

    def __init__(self, version):
        self.version = version
        # Destination: (source name, bytes of the source, prefix of the record).
        self.files = {}
        for i in range(40):
            self.add("Dossier%d\\petit%02d.txt" % (i % 5, i), noise("%d %d" % (version, i), 100 + 37 * i))
        for i in range(6):
            self.add("Donnees\\moyen%d.dat" % i, noise("medium %d %d" % (version, i), 200000 + i))
        self.add("Donnees\\grand.dat", noise("large %d" % version, 3000000 - version))
        for i in range(4):
            text = b"version %d, line %d\r\n" % (version, i) * 5000
            self.add("Textes\\comprime%d.txt" % i, compressed(text, "t"), source="Textes\\comprime%d.tx_" % i)
        self.add("cache.dat", noise("hidden %d" % version, 5000), "*")
        self.add("reglages.ini", noise("kept %d" % version, 50000), "?")
        self.add("version%d.txt" % version, b"only in this version\r\n" * 1000)

    def add(self, name, data, prefix="", source=None):
        self.files[name] = (source or name, data, prefix)

    def script(self):
        keys = {name: "file%03d" % i for i, name in enumerate(sorted(self.files))}
        listed = "\n".join(keys.values())
        records = "\n".join("%s=1,%s,%s<ProgDir>\\%s,%d" % (keys[name], source, prefix, name, len(data))
                            for name, (source, data, prefix) in sorted(self.files.items()))
        values = "\n".join("+HKEY_LOCAL_MACHINE\\Software\\Quorvale\\KVRX6\\Valeurs\\valeur%d=version %d"
                           % (i, self.version) for i in range(20))
        return STARTUP + """
[easy_install]
$file_sys=delete,<ProgDir>\\version%(former)d.txt
$file_sys=copy,<InstallFromDir>\\Donnees\\grand.dat,<ProgDir>\\Copie\\grand.dat
$file_inst=<InstallFromDir>\\VTShare.dll,%(shared)s
%(listed)s
setup_program
setup_script
%(values)s
+HKEY_CURRENT_USER\\Software\\Quorvale\\KVRX6\\Nom=<AppName>
[remove]
%(listed)s
$file_sys=delete,%(shared)s
$dir_del=<ProgDir>\\Copie
$dir_del=<ProgDir>\\Donnees
-HKEY_LOCAL_MACHINE\\Software\\Quorvale\\KVRX6\\Valeurs\\
$remove_ini_path=<UserRegKey>
-HKEY_LOCAL_MACHINE\\Software\\Quorvale\\KVRX6\\
[files]
setup_program=1,Setup.exe,<ProgDir>\\Setup.exe,400000
setup_script=1,setup.inf,<ProgDir>\\setup.inf,8000
%(records)s
""" % {"former": self.version - 1, "listed": listed, "values": values, "records": records, "shared": SHARED}

    def write(self, prefix, folder):
        for source, data, _ in self.files.values():
            prefix.write(folder + "\\" + source, data)
        prefix.write(folder + "\\setup.inf", self.script())
        prefix.copy_in(os.path.join(benchlib.BIN, "Setup.exe"), folder + "\\Setup.exe")
        made = prefix.helper("make_library", folder + "\\VTShare.dll", "6.%d.0.0" % self.version)
        if made.code != 0:
            raise benchlib.BenchError("no library: %r" % made)


class State:
    """What a run left: all names on the drive, the bytes of the files it works on, and the registry."""

    def __init__(self, prefix):
        self.names = {name for name in prefix.tree("C:\\") if not name.startswith(("dist", "saved\\"))}
        self.files = {}
        for folder in (PRODUCT, r"C:\windows\system32", "C:\\users"):
            top = prefix.host(folder)
            for here, _, names in os.walk(top):
                for name in names:
                    path = os.path.join(here, name)
                    if folder == r"C:\windows\system32" and not name.lower().startswith("vt"):
                        continue
                    if name.lower().endswith(".log"):
                        continue
                    self.files[folder + "\\" + os.path.relpath(path, top).replace("/", "\\")] = content(path)
        self.registry = [prefix.reg_tree(key) for key in KEYS]


def content(path):
    with open(path, "rb") as file:
        digest = hashlib.sha256(file.read()).hexdigest()
    try:
        attributes = os.getxattr(path, "user.DOSATTRIB")
    except OSError:
        attributes = b""
    return digest, attributes, os.stat(path).st_mode & 0o222


class Killed(benchlib.WindowsTest):
    maxDiff = None

    def setUp(self):
        super().setUp()
        self.random = random.Random("%s %s" % (SEED, self.id()))
        self.new = Distribution(2)
        self.new.write(self.prefix, r"C:\dist")

    # ---- states to start from ----

    def save(self):
        """Remembers the product folder, the shared file and the registry, for reset()."""
        self.saved = []
        for path in (PRODUCT, SHARED):
            if self.prefix.exists(path):
                copy = self.prefix.host("C:\\saved\\%d" % len(self.saved))
                os.makedirs(os.path.dirname(copy), exist_ok=True)
                subprocess.run(["cp", "-a", self.prefix.host(path), copy], check=True)
                self.saved.append((path, copy))
        lines = ["@echo off"]
        for key in KEYS:
            lines.append("reg delete %s /f" % key)
        for i, key in enumerate(KEYS):
            if self.prefix.run("reg", "export", key, "C:\\saved%d.reg" % i, "/y").code == 0:
                lines.append("reg import C:\\saved%d.reg" % i)
        lines.append("exit /b 0")
        self.prefix.write(r"C:\reset.bat", "\n".join(lines) + "\n")

    def reset(self):
        for path in (PRODUCT, SHARED):
            host = self.prefix.host(path)
            if os.path.isdir(host):
                shutil.rmtree(host)
            elif os.path.exists(host):
                os.unlink(host)
        for path, copy in self.saved:
            subprocess.run(["cp", "-a", copy, self.prefix.host(path)], check=True)
        for name in self.logs():
            os.unlink(name)
        self.prefix.run("cmd", "/c", r"C:\reset.bat")

    def temp(self):
        users = self.prefix.host(r"C:\users")
        for user in os.listdir(users):
            folder = os.path.join(users, user, "Temp")
            if user != "Public" and os.path.isdir(folder):
                return folder
        raise benchlib.BenchError("no temporary folder")

    def logs(self):
        return [os.path.join(self.temp(), name) for name in os.listdir(self.temp()) if name.lower().endswith(".log")]

    # ---- runs ----

    def run_to_end(self, command):
        result = self.prefix.run(*command, timeout=120)
        self.assertFalse(result.timed_out)
        return result.code

    def setup_process(self):
        """The pid of the setup that runs in our prefix, or None."""
        for pid in os.listdir("/proc"):
            if not pid.isdigit():
                continue
            try:
                with open("/proc/%s/comm" % pid, encoding="ascii", errors="replace") as file:
                    if file.read().strip().lower() != "setup.exe":
                        continue
                with open("/proc/%s/environ" % pid, "rb") as file:
                    if b"WINEPREFIX=" + self.prefix.root.encode() in file.read().split(b"\0"):
                        return int(pid)
            except OSError:
                continue
        return None

    def run_and_kill(self, command, log_size, whole_time, power_cut):
        """Kills the setup when its log has grown to a random part of its size, and a little later. Says whether it was
        still running then."""
        part = self.random.random() * log_size
        pause = self.random.random() * whole_time / 20
        log = os.path.join(self.temp(), "QLSetup.log")
        running = self.prefix.start(*command, timeout=120)
        pid = benchlib.wait_until(lambda: self.setup_process() or not running.alive(), 60, 0.002)
        if pid is True or not pid:
            running.wait()
            return False
        while running.alive():
            try:
                if os.stat(log).st_size >= part:
                    break
            except FileNotFoundError:
                pass
            time.sleep(0.0005)
        time.sleep(pause)
        interrupted = running.alive()
        if power_cut:
            self.prefix.kill()
        elif interrupted:
            try:
                os.kill(pid, signal.SIGKILL)
            except ProcessLookupError:
                interrupted = False
        running.wait()
        return interrupted

    def check_kills(self, command, count):
        """The state from before must be there; `command` is killed again and again, and each time run to its end."""
        self.save()
        before = State(self.prefix)
        self.reset()
        began = time.monotonic()
        code = self.run_to_end(command)
        whole_time = time.monotonic() - began
        self.assertEqual(code, 0)
        after = State(self.prefix)
        self.assertNotEqual(before.files, after.files)
        log_size = max(os.path.getsize(name) for name in self.logs())

        interrupted = halfway = tries = 0
        while interrupted < count:
            tries += 1
            self.assertLess(tries, 3 * count + 10, "the setup is too quick to be killed")
            self.reset()
            if not self.run_and_kill(command, log_size, whole_time, tries % 4 == 0):
                continue
            interrupted += 1
            with self.subTest(seed=SEED, kill=tries):
                halfway += self.check_interrupted(before, after)
                self.assertEqual(self.run_to_end(command), code)
                self.check_same(State(self.prefix), after)
        # The kills must have hit the middle now and then, or nothing was tested.
        self.assertGreaterEqual(halfway, count // 4)

    def check_interrupted(self, before, after):
        """No file under a final name is anything but the old or the new one. Says whether some are of each."""
        now = State(self.prefix)
        for path, found in now.files.items():
            if PASSING.search(path) or path.endswith(".lst"):
                continue
            # Attributes come after the bytes.
            allowed = [state.files[path][0] for state in (before, after) if path in state.files]
            self.assertIn(found[0], allowed, "torn: " + path)
        return now.files != before.files and now.files != after.files

    def check_same(self, now, after):
        self.assertEqual(sorted(now.names ^ after.names), [])
        self.assertEqual({path for path in after.files if now.files.get(path) != after.files[path]}, set())
        self.assertEqual(now.registry, after.registry)

    # ---- the tests ----

    INSTALL = (r"C:\dist\Setup.exe", "-Q", "-D", PRODUCT)

    def test_installation_over_nothing(self):
        # Wine makes files and keys of its own at the first run.
        self.save()
        self.run_to_end(self.INSTALL)
        self.reset()
        self.check_kills(self.INSTALL, (KILLS + 2) // 3)

    def test_installation_over_an_older_version(self):
        Distribution(1).write(self.prefix, r"C:\dist1")
        self.assertEqual(self.run_to_end((r"C:\dist1\Setup.exe", "-Q", "-D", PRODUCT)), 0)
        # The user's own settings stay.
        self.prefix.write(PRODUCT + r"\reglages.ini", "[mine]\n")
        self.check_kills(self.INSTALL, (KILLS + 1) // 3)

    def test_removal(self):
        self.assertEqual(self.run_to_end(self.INSTALL), 0)
        self.check_kills((PRODUCT + r"\Setup.exe", "-Q", "-RS"), KILLS // 3)
