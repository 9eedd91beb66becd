"""Measures size and speed of the built program, and long tests with --long.

    measure.py [--quick] [--long]

Speed is printed as ratios of times taken in one run: on a memory file system, on one processor, with the quickest of
several rounds, so that other work on the machine matters little. --quick takes fewer rounds and no 10,000 files to
install. --long also kills the setup 200 times at random moments.
"""
import os
import re
import shutil
import subprocess
import sys
import tempfile

sys.path.insert(0, os.path.join(os.path.dirname(os.path.dirname(os.path.abspath(__file__))), "tools"))
import benchlib  # noqa: E402

MEMORY = "/dev/shm"
SIZE_LIMIT = 500 * 1000  # bytes of Setup.exe
FILES_IN_FOLDER = 100
FILE_SIZE = 1000


class Failure(Exception):
    pass


def file_name(number):
    return "folder%02d\\file%05d.dat" % (number // FILES_IN_FOLDER, number)


def script(count, last_line=""):
    """A script that lists `count` files; `last_line` ends its main section."""
    lines = [benchlib.STARTUP + "[easy_install]"] + ["file%05d" % i for i in range(count)]
    lines += [last_line, "[files]", "none=1,none,<ProgDir>\\none,0"]
    lines += ["file%05d=1,%s,<ProgDir>\\%s,%d" % (i, file_name(i), file_name(i), FILE_SIZE) for i in range(count)]
    return "\n".join(lines) + "\n"


class Bench:
    """One prefix on a memory file system, with the payload in C:\\dist."""

    def __init__(self, count):
        self.place = tempfile.mkdtemp(prefix="veltrane-bench.%d." % os.getpid(), dir=memory_folder())
        self.prefix = benchlib.Prefix(place=self.place)
        self.prefix.copy_in(os.path.join(benchlib.BIN, "bench"), r"C:\bench")
        for name in ("Setup.exe", "VTsu6fr.dll", "VTsu6en.dll"):
            self.prefix.copy_in(os.path.join(benchlib.BIN, name), "C:\\dist\\" + name)
        for i in range(count):
            self.prefix.write("C:\\dist\\" + file_name(i), (b"%05d " % i) * (FILE_SIZE // 6))
        self.runs = 0

    def close(self):
        self.prefix.close()
        shutil.rmtree(self.place, ignore_errors=True)

    def microseconds(self, program, *args, code=0, env=None):
        """Whole time of one program, which has to end with `code`."""
        result = self.prefix.run(r"C:\bench\time_run.exe", program, *args, timeout=600, env=env)
        match = re.search(r"microseconds (\d+)\nexit code (\d+)\n", result.text)
        if not match or int(match.group(2)) != code:
            raise Failure("%s ended otherwise than with %d: %s" % (program, code, result.text[-500:]))
        return int(match.group(1))

    def number(self, program, *args, name="microseconds"):
        """A number that one of our own loops prints."""
        result = self.prefix.run("C:\\bench\\" + program, *args, timeout=600)
        match = re.search(name + r" (\d+)\n", result.text)
        if result.code != 0 or not match:
            raise Failure("%s: %s" % (program, result.text[-500:]))
        return int(match.group(1))

    def fresh(self):
        """A destination folder that does not exist yet, in place of the one before."""
        shutil.rmtree(self.prefix.host("C:\\dest%d" % self.runs), ignore_errors=True)
        self.runs += 1
        return "C:\\dest%d" % self.runs

    def copy_list(self, count, dest):
        text = "".join("C:\\dist\\%s\t%s\\%s\n" % (file_name(i), dest, file_name(i)) for i in range(count))
        self.prefix.write(r"C:\list.txt", text)
        return r"C:\list.txt"

    def install(self, count, env=None):
        self.prefix.write(r"C:\dist\setup.inf", script(count))
        dest = self.fresh()
        time = self.microseconds(r"C:\dist\Setup.exe", "-Q", "-D", dest, env=env)
        self.check(dest, count)
        return time

    def copy(self, program, count):
        dest = self.fresh()
        time = self.microseconds("C:\\bench\\" + program, self.copy_list(count, dest))
        self.check(dest, count)
        return time

    def check(self, dest, count):
        for i in (0, count // 2, count - 1):
            path = dest + "\\" + file_name(i)
            if count and self.prefix.read(path) != self.prefix.read("C:\\dist\\" + file_name(i)):
                raise Failure("%s did not arrive" % path)

    def gather(self, count):
        """A run of the setup that ends in its collecting pass, at the last line, behind `count` file lines."""
        self.prefix.write(r"C:\dist\setup.inf", script(count, "no such file"))
        return self.microseconds(r"C:\dist\Setup.exe", "-Q", "-D", self.fresh(), code=8)

    def gather_in_process(self, count, rounds):
        self.prefix.write(r"C:\gather.inf", script(count))
        if self.number("gather_loop.exe", r"C:\gather.inf", "1", name="lines") != count:
            raise Failure("not all lines were gathered")
        return self.number("gather_loop.exe", r"C:\gather.inf", str(rounds), name="nanoseconds") / 1000

    def requests(self, start):
        """What a cold prefix asks the Wine server while start() runs."""
        self.prefix.kill()
        start()
        self.prefix.kill()
        output = os.path.join(self.prefix.root, "outputs", "%d.txt" % self.prefix.outputs)
        count = 0
        with open(output, "rb") as file:
            for line in file:
                # A request; answers read "name() = ...".
                if re.match(rb"[0-9a-f]{4}: \w+\(", line) and b"() = " not in line:
                    count += 1
        os.unlink(output)
        return count


def memory_folder():
    """Where the measuring takes place; what killed runs left there is removed."""
    if not os.path.isdir(MEMORY) or shutil.disk_usage(MEMORY).free < 1 << 30:
        raise Failure("%s has no room of 1 GB" % MEMORY)
    for name in os.listdir(MEMORY):
        match = re.match(r"veltrane-bench\.(\d+)\.", name)
        if match and not os.path.isdir("/proc/" + match.group(1)):
            shutil.rmtree(os.path.join(MEMORY, name), ignore_errors=True)
    return MEMORY


def verdict(text, value, limit):
    good = value <= limit
    print("  %-58s %8.3f   at most %g: %s" % (text, value, limit, "yes" if good else "NO"), flush=True)
    return good


def measure_size():
    size = os.path.getsize(os.path.join(benchlib.BIN, "Setup.exe"))
    print("size of Setup.exe: %d bytes, at most %d: %s" % (size, SIZE_LIMIT, "yes" if size < SIZE_LIMIT else "NO"))
    return size < SIZE_LIMIT


def measure_install(bench, counts, rounds):
    """Prints milliseconds per file; returns the quickest copy loop for each count."""
    copies = {}
    for count in counts:
        times = {"Setup.exe": [], "CopyFileA loop": [], "VerInstallFileA loop": []}
        for _ in range(rounds):
            times["Setup.exe"].append(bench.install(count))
            times["CopyFileA loop"].append(bench.copy("copy_loop.exe", count))
            times["VerInstallFileA loop"].append(bench.copy("install_loop.exe", count))
        copies[count] = min(times["CopyFileA loop"])
        print("installing %d files of %d bytes (quickest of %d, whole runs):" % (count, FILE_SIZE, rounds))
        for name, taken in times.items():
            print("  %-24s %8.3f ms per file   %6.2f times the CopyFileA loop"
                  % (name, min(taken) / 1000 / count, min(taken) / copies[count]), flush=True)
    return copies


def measure_gathering(bench, rounds, copy_time, count):
    whole = [bench.gather(count) for _ in range(rounds)]
    empty = [bench.gather(0) for _ in range(rounds)]
    cost = min(whole) - min(empty)
    print("gathering %d file lines:" % count)
    print("  a run that ends at its last line %.1f ms, without the lines %.1f ms"
          % (min(whole) / 1000, min(empty) / 1000))
    good = verdict("cost as a part of the CopyFileA loop over as many files", cost / copy_time, 0.1)
    small, large = count // 10, count
    per_line = {}
    for lines in (small, large):
        per_line[lines] = min(bench.gather_in_process(lines, 400000 // lines) for _ in range(rounds)) / lines
    print("  processor time per line: %.2f us of %d lines, %.2f us of %d lines"
          % (per_line[small], small, per_line[large], large))
    return verdict("growth per line from %d to %d lines" % (small, large), per_line[large] / per_line[small], 1.1) and good


def measure_requests(bench):
    """The difference between two counts leaves out what starting costs."""
    few, many = 100, 600
    print("requests to the Wine server for each file:")
    trace = {"WINEDEBUG": "+server"}

    def setup(count):
        bench.prefix.write(r"C:\dist\setup.inf", script(count))
        return bench.prefix.run(r"C:\dist\Setup.exe", "-Q", "-D", bench.fresh(), timeout=600, env=trace)

    def loop(program, count):
        return bench.prefix.run("C:\\bench\\" + program, bench.copy_list(count, bench.fresh()), timeout=600, env=trace)

    for name, start in (("Setup.exe", setup), ("CopyFileA loop", lambda n: loop("copy_loop.exe", n)),
                        ("VerInstallFileA loop", lambda n: loop("install_loop.exe", n))):
        counts = [bench.requests(lambda n=n: start(n)) for n in (few, many)]
        print("  %-24s %8.1f" % (name, (counts[1] - counts[0]) / (many - few)), flush=True)


def run_long_tests():
    """The killed runs of the tests, many more of them."""
    tests = os.path.join(benchlib.REPO, "tests", "sequence", "test_killed.py")
    with tempfile.NamedTemporaryFile(mode="r", suffix=".json") as report:
        env = {**os.environ, "VELTRANE_KILLS": "200"}
        listed = [sys.executable, os.path.join(benchlib.REPO, "tools", "run_unittest.py"), report.name, tests]
        subprocess.run(listed, env=env, stdin=subprocess.DEVNULL, check=True, timeout=60)
        names = re.findall(r'"([^"]+)"', report.read())
        subprocess.run([*listed, *names], env=env, stdin=subprocess.DEVNULL, check=True, timeout=7200)
        report.seek(0)
        text = report.read()
        failed = text.count('"outcome": "failed"')
        print("killed at 200 random moments: %d tests passed, %d failed" % (text.count('"outcome": "passed"'), failed))
        if failed:
            print(text)
        return failed == 0


def main():
    quick, long = "--quick" in sys.argv, "--long" in sys.argv
    if set(sys.argv[1:]) - {"--quick", "--long"}:
        raise Failure("usage: ./dev bench [--quick] [--long]")
    good = measure_size()
    everything = os.sched_getaffinity(0)
    os.sched_setaffinity(0, {max(everything)})  # and with it every program started from here
    counts = [1000] if quick else [1000, 10000]
    bench = Bench(10000)
    try:
        copies = measure_install(bench, counts, 2 if quick else 3)
        copy_time = copies.get(10000) or bench.copy("copy_loop.exe", 10000)
        good = measure_gathering(bench, 3 if quick else 5, copy_time, 10000) and good
        measure_requests(bench)
    finally:
        bench.close()
    os.sched_setaffinity(0, everything)
    if long:
        good = run_long_tests() and good
    return 0 if good else 1


if __name__ == "__main__":
    try:
        sys.exit(main())
    except (Failure, benchlib.BenchError) as error:
        sys.exit("error: %s" % error)
