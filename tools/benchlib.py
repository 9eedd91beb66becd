"""Host side of the bench for tests written in Python: prefixes, programs, displays, registry, drives.

A test makes a Prefix (a throw-away clone of the golden one), writes files on its drive C:, runs Windows programs in it
and looks at what they did. Windows paths are written as Windows writes them, "C:\\dist\\setup.inf".

    with Prefix() as prefix:
        prefix.write(r"C:\\dist\\setup.inf", b"[startup]\\r\\n")
        result = prefix.run(r"C:\\dist\\Setup.exe", "-Q")
        assert result.code == 0, result.output
        prefix.restart()
"""
import contextlib
import fnmatch
import os
import re
import shutil
import signal
import subprocess
import sys
import tempfile
import threading
import time
import unittest

REPO = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
RUN = os.path.join(REPO, "tools", "bench", "run")
# Where the built programs are; the test runner sets it to its own copy of build/.
BUILD = os.environ.get("VELTRANE_BUILD", os.path.join(REPO, "build"))
BIN = os.path.join(BUILD, "bin")
HELPERS = os.path.join(BIN, "helpers")

TIMED_OUT = 124

# What every script of a test begins with: the product's identity.
STARTUP = r"""[startup]
AppName=Veltrane
MajVersion=6
MinVersion=0
ShortAppKey=VT
CompanyKey=KV
AppProgName=Veltrane
MachRegKey=REG*HKEY_LOCAL_MACHINE\Software\Quorvale\KVRX6
UserRegKey=REG*HKEY_CURRENT_USER\Software\Quorvale\KVRX6
ClassId={5D1E2C40-7A35-4B0E-9C11-3F6A8E0B7D26}
"""


class BenchError(Exception):
    """The bench itself failed, not the program under test."""


_places = None


def places():
    """CACHE, GOLDEN and WINE32 of the bench, which is made ready by the first call."""
    global _places
    if _places is None:
        done = subprocess.run([os.path.join(REPO, "tools", "bench", "ensure")], stdin=subprocess.DEVNULL,
                              stdout=subprocess.PIPE, check=False)
        if done.returncode != 0:
            raise BenchError("the bench could not be made ready")
        _places = dict(line.split("=", 1) for line in done.stdout.decode().splitlines())
    return _places


def wait_until(condition, timeout=10.0, step=0.02):
    """Asks until the condition holds or the time is over; returns its last answer."""
    end = time.monotonic() + timeout
    while True:
        answer = condition()
        if answer or time.monotonic() >= end:
            return answer
        time.sleep(step)


class Display:
    """A virtual X display; None of it is started when DISPLAY was given from outside."""

    def __init__(self, size="1024x768x24"):
        self.process = None
        self.name = os.environ.get("DISPLAY")
        if self.name:
            return
        read_end, write_end = os.pipe()
        self.process = subprocess.Popen(
            ["Xvfb", "-displayfd", str(write_end), "-screen", "0", size, "-nolisten", "tcp"],
            stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, pass_fds=[write_end])
        os.close(write_end)
        timer = threading.Timer(20, self.process.kill)
        timer.start()
        with os.fdopen(read_end) as pipe:
            number = pipe.readline().strip()
        timer.cancel()
        if not number:
            raise BenchError("Xvfb did not start")
        self.name = ":" + number

    def close(self):
        if self.process:
            self.process.terminate()
            self.process.wait()
            self.process = None

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.close()

    def screenshot(self, path):
        """Writes the whole screen to an image file."""
        subprocess.run(["import", "-window", "root", path], env={**os.environ, "DISPLAY": self.name},
                       stdin=subprocess.DEVNULL, check=True, timeout=30)


_display = None


def shared_display():
    """One display for this Python process, ended at its end."""
    global _display
    if _display is None:
        _display = Display()
        import atexit
        atexit.register(_display.close)
    return _display


class Result:
    """What a program left: exit code (the low 8 bits; see Prefix.run_full), output, and whether it had to be ended."""

    def __init__(self, code, output, timed_out):
        self.code, self.output, self.timed_out = code, output, timed_out

    @property
    def text(self):
        return self.output.decode("cp1252", "replace").replace("\r\n", "\n")

    def __repr__(self):
        return "Result(code=%r, timed_out=%r, output=%r)" % (self.code, self.timed_out, self.text[-2000:])


class Running:
    """A program that runs beside the test."""

    def __init__(self, process, output_path):
        self.process, self.output_path = process, output_path

    @property
    def output(self):
        with open(self.output_path, "rb") as file:
            return file.read()

    def wait(self, timeout=60):
        """Waits for its end and returns the Result; ends it by force after the time."""
        timed_out = False
        try:
            self.process.wait(timeout)
        except subprocess.TimeoutExpired:
            timed_out = True
            self.kill()
        return Result(self.process.returncode, self.output, timed_out or self.process.returncode == TIMED_OUT)

    def alive(self):
        return self.process.poll() is None

    def kill(self):
        """Ends it by force, in the middle of whatever it does. Programs started by it may live on."""
        if self.alive():
            os.killpg(self.process.pid, signal.SIGKILL)
        self.process.wait()


class Prefix:
    """A clone of the golden Windows prefix, deleted by close() or at the end of the with block."""

    def __init__(self, display=None, locale="C.UTF-8", place=None):
        """`place`: the folder that holds the clone, the cache when not given."""
        here = places()
        self.display = display or shared_display()
        self.locale = locale
        self.env = {}
        self.running = []
        self.outputs = 0
        self.root = tempfile.mkdtemp(prefix="%d." % os.getpid(), dir=place or os.path.join(here["CACHE"], "clones"))
        copied = subprocess.run(["cp", "-a", here["GOLDEN"] + "/.", self.root], stdin=subprocess.DEVNULL, check=False)
        if copied.returncode != 0:
            self.close()
            raise BenchError("cannot clone the golden prefix (disk full?)")
        os.mkdir(os.path.join(self.root, "outputs"))

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.close()

    def close(self):
        """Ends all programs and deletes the clone."""
        if not os.path.isdir(self.root):
            return
        self.kill()
        for _ in range(5):
            subprocess.run(["chmod", "-R", "u+rwX", self.root], stdin=subprocess.DEVNULL, stderr=subprocess.DEVNULL,
                           check=False)
            shutil.rmtree(self.root, ignore_errors=True)
            if not os.path.isdir(self.root):
                return
            time.sleep(0.2)

    # ---- files ----

    def host(self, path):
        """The machine's path of a Windows path. Existing parts are found whatever their case."""
        match = re.match(r"([A-Za-z]):[\\/]?(.*)$", path, re.S)
        if not match:
            raise ValueError("not a full Windows path: %r" % path)
        drive = match.group(1).lower() + ":"
        here = os.path.realpath(os.path.join(self.root, "dosdevices", drive))
        for part in re.split(r"[\\/]+", match.group(2)):
            if not part:
                continue
            exact = os.path.join(here, part)
            if not os.path.lexists(exact) and os.path.isdir(here):
                for name in os.listdir(here):
                    if name.lower() == part.lower():
                        exact = os.path.join(here, name)
                        break
            here = exact
        return here

    def write(self, path, data):
        """Creates or replaces a file with the folders above it. Text is written in code page 1252 with CR LF."""
        if isinstance(data, str):
            data = data.replace("\r\n", "\n").replace("\n", "\r\n").encode("cp1252")
        target = self.host(path)
        os.makedirs(os.path.dirname(target), exist_ok=True)
        with open(target, "wb") as file:
            file.write(data)
        return target

    def read(self, path):
        with open(self.host(path), "rb") as file:
            return file.read()

    def text(self, path):
        """A file in code page 1252 as text with plain newlines."""
        return self.read(path).decode("cp1252", "replace").replace("\r\n", "\n")

    def exists(self, path):
        return os.path.lexists(self.host(path))

    def make_folder(self, path):
        os.makedirs(self.host(path), exist_ok=True)

    def copy_in(self, source, path):
        """Copies a file or folder of the machine to a Windows path."""
        target = self.host(path)
        os.makedirs(os.path.dirname(target), exist_ok=True)
        if os.path.isdir(source):
            shutil.copytree(source, target, dirs_exist_ok=True)
        else:
            shutil.copy2(source, target)

    def tree(self, path):
        """All files and folders below a Windows folder, as a sorted list of paths with backslashes; folders end with one."""
        top = self.host(path)
        found = []
        for folder, folders, files in os.walk(top):
            for name in folders:
                found.append(os.path.relpath(os.path.join(folder, name), top).replace("/", "\\") + "\\")
            for name in files:
                found.append(os.path.relpath(os.path.join(folder, name), top).replace("/", "\\"))
        return sorted(found)

    def chmod(self, path, mode):
        os.chmod(self.host(path), mode)

    def link_drive(self, letter, folder, kind=None):
        """Makes a folder of the machine a drive; kind: cdrom, network, floppy, hd, ramdisk. Ends all programs."""
        letter = letter.lower().rstrip(":")
        if kind:
            self.reg_add(r"HKLM\Software\Wine\Drives", letter + ":", kind)
        self.kill()
        link = os.path.join(self.root, "dosdevices", letter + ":")
        if os.path.lexists(link):
            os.unlink(link)
        os.symlink(folder, link)

    # ---- programs ----

    def environment(self, env=None):
        full = {name: value for name, value in os.environ.items()
                if name != "WINEPREFIX" and not name.startswith(("GTEST_", "VELTRANE_LOCALE"))}
        full.update(WINEPREFIX=self.root, DISPLAY=self.display.name, VELTRANE_LOCALE=self.locale)
        full.update(self.env)
        full.update(env or {})
        return {name: value for name, value in full.items() if value is not None}

    def start(self, program, *args, cwd=None, env=None, timeout=300, wrap=()):
        """Starts a program and returns a Running. `wrap`: words before the command, as for a bwrap call."""
        self.outputs += 1
        output = os.path.join(self.root, "outputs", "%d.txt" % self.outputs)
        command = [*wrap, RUN, "-t", str(timeout), program, *args]
        with open(output, "wb") as file:
            process = subprocess.Popen(
                command, stdin=subprocess.DEVNULL, stdout=file, stderr=subprocess.STDOUT, start_new_session=True,
                cwd=self.host(cwd or "C:\\"), env=self.environment(env))
        running = Running(process, output)
        self.running.append(running)
        return running

    def run(self, program, *args, cwd=None, env=None, timeout=60, wrap=()):
        """Runs a program to its end. The exit code is cut to 8 bits on its way through the host."""
        return self.start(program, *args, cwd=cwd, env=env, timeout=timeout, wrap=wrap).wait(timeout + 15)

    def run_full(self, command_line, timeout=60, env=None, cwd=None):
        """Runs a Windows command line through the helper exit_code.exe and gives all 32 bits of the exit code."""
        self.need_helpers()
        result = self.run(r"C:\helpers\exit_code.exe", command_line, timeout=timeout, env=env, cwd=cwd)
        match = re.search(rb"exit code (\d+)\s*$", result.output)
        if match:
            result.code = int(match.group(1))
        return result

    def need_helpers(self):
        """Puts the helper programs into C:\\helpers."""
        if not self.exists("C:\\helpers"):
            self.copy_in(HELPERS, "C:\\helpers")

    def helper(self, name, *args, timeout=30, **more):
        """Runs a helper program."""
        self.need_helpers()
        return self.run("C:\\helpers\\" + name + ".exe", *args, timeout=timeout, **more)

    def start_helper(self, name, *args, **more):
        self.need_helpers()
        return self.start("C:\\helpers\\" + name + ".exe", *args, **more)

    def kill(self):
        """Ends everything in the prefix at once: a power cut. The next program start is a start of Windows."""
        subprocess.run([RUN, "-t", "30", "--server", "-k"], stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL,
                       stderr=subprocess.DEVNULL, env=self.environment(), check=False)
        for running in self.running:
            with contextlib.suppress(ProcessLookupError):
                running.kill()
        self.running.clear()

    def restart(self):
        """A restart of Windows: pending renames and HKLM RunOnce are carried out when this returns."""
        self.kill()
        return self.run("wineboot", timeout=60)

    def settle(self, timeout=30):
        """Waits until every program in the prefix has ended."""
        subprocess.run([RUN, "-t", str(timeout), "--server", "-w"], stdin=subprocess.DEVNULL,
                       stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, env=self.environment(), check=False)

    # ---- registry ----

    def reg_add(self, key, name, value, kind="REG_SZ"):
        result = self.run("reg", "add", key, *(["/v", name] if name else ["/ve"]), "/t", kind, "/d", str(value), "/f")
        if result.code != 0:
            raise BenchError("reg add %s failed: %s" % (key, result.text))

    def reg_delete(self, key):
        """Deletes a key with all below it; says whether it was there."""
        return self.run("reg", "delete", key, "/f").code == 0

    def reg_tree(self, key):
        """A key with all below it: {key path: {value name: data}}, in the upper and lower case of the registry.

        The name of a default value is "". Data: str for texts, int for DWORDs, else (type number, bytes). A missing key
        gives an empty dictionary.
        """
        if self.run("reg", "export", key, "C:\\outputs.reg", "/y").code != 0:
            return {}
        with open(self.host("C:\\outputs.reg"), "rb") as file:
            text = file.read().decode("utf-16")
        os.unlink(self.host("C:\\outputs.reg"))
        return parse_reg(text)

    def reg_value(self, key, name):
        """One value (see reg_tree), or None when the key or the value is missing."""
        tree = self.reg_tree(key)
        for path, values in tree.items():
            if _long_root(key).lower() == path.lower():
                for found, data in values.items():
                    if found.lower() == name.lower():
                        return data
        return None

    def reg_exists(self, key):
        return self.run("reg", "query", key).code == 0


_ROOTS = {"HKLM": "HKEY_LOCAL_MACHINE", "HKCU": "HKEY_CURRENT_USER", "HKCR": "HKEY_CLASSES_ROOT", "HKU": "HKEY_USERS"}


def _long_root(key):
    root, _, rest = key.partition("\\")
    root = _ROOTS.get(root.upper(), root)
    return root + "\\" + rest if rest else root


def parse_reg(text):
    """The text of an exported .reg file as {key path: {value name: data}} (see Prefix.reg_tree)."""
    tree, values = {}, None
    text = text.replace("\r\n", "\n").replace("\\\n  ", "")
    lines = text.split("\n")
    i = 0
    while i < len(lines):
        line = lines[i]
        i += 1
        if line.startswith("[") and line.endswith("]"):
            values = tree.setdefault(line[1:-1], {})
            continue
        match = re.match(r'(?:@|"((?:[^"\\]|\\.)*)")=(.*)$', line, re.S)
        if not match or values is None:
            continue
        name = re.sub(r"\\(.)", r"\1", match.group(1) or "", flags=re.S)
        data = match.group(2)
        if data.startswith('"'):
            # A text may hold line breaks.
            while not re.match(r'"(?:[^"\\]|\\.)*"$', data, re.S) and i < len(lines):
                data += "\n" + lines[i]
                i += 1
            values[name] = re.sub(r"\\(.)", r"\1", data[1:-1], flags=re.S)
        elif data.startswith("dword:"):
            values[name] = int(data[6:], 16)
        else:
            kind, _, digits = data.partition(":")
            number = re.match(r"hex\(([0-9a-f]+)\)$", kind)
            raw = bytes.fromhex(digits.replace(",", ""))
            number = int(number.group(1), 16) if number else 3
            values[name] = raw.decode("utf-16-le").rstrip("\0") if number == 2 else (number, raw)
    return tree


# ---- what a machine may forbid ----

def require_namespaces():
    """Skips the test where mounts in a namespace of our own are refused."""
    tried = subprocess.run(["bwrap", "--dev-bind", "/", "/", "--tmpfs", "/mnt", "true"], stdin=subprocess.DEVNULL,
                           stdout=subprocess.DEVNULL, stderr=subprocess.PIPE, check=False)
    if tried.returncode != 0:
        raise unittest.SkipTest("this machine refuses mount namespaces: " + tried.stderr.decode(errors="replace").strip())


def in_namespace(*mounts):
    """Words for `wrap`: the whole machine with some mounts over it, e.g. "--size", "1048576", "--tmpfs", folder.

    The wineserver must not be running yet, and everything that shall see the mounts has to run in one such call.
    """
    return ["bwrap", "--dev-bind", "/", "/", *mounts, "--die-with-parent", "--"]


class WindowsTest(unittest.TestCase):
    """A test with a prefix of its own in self.prefix."""

    locale = "C.UTF-8"

    def setUp(self):
        self.prefix = Prefix(locale=self.locale)
        self.addCleanup(self.prefix.close)

    def run_tests(self, storey, name_filter, count=None, **more):
        """Runs tests of a storey's program, in a Windows session of their own; all of them must pass (that many, if
        given) and none may be skipped."""
        program = storey + "_test.exe"
        self.prefix.copy_in(os.path.join(BIN, program), "C:\\t\\" + program)
        self.prefix.kill()
        result = self.prefix.run("C:\\t\\" + program, "--gtest_color=no", "--gtest_filter=" + name_filter, cwd="C:\\t",
                                 timeout=120, **more)
        self.prefix.kill()
        self.assertEqual(result.code, 0, result.text)
        self.assertRegex(result.text, r"\[  PASSED  \] %s tests?\." % (count or "[1-9][0-9]*"))
        self.assertNotIn("[  SKIPPED ]", result.text)


def matches(name, pattern):
    """Whether a test name contains the text, or matches it where it has * or ?."""
    if any(c in pattern for c in "*?"):
        return fnmatch.fnmatchcase(name, pattern) or fnmatch.fnmatchcase(name, "*" + pattern + "*")
    return pattern in name


if __name__ == "__main__":
    sys.exit("a module of the tests, not a program")
