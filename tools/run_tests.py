"""Runs all tests of the build, or those whose name contains FILTER, in parallel throw-away Windows prefixes.

    run_tests.py [FILTER]

Test programs (build/bin/*_test.exe) are run in pieces, Python tests (tests/*/test_*.py) class by class, fuzz targets
(build/host/*_fuzz) for a minute in all. The last line is "N passed, M failed, K skipped"; exit code 1 when one failed.
"""
import fcntl
import glob
import json
import math
import os
import queue
import re
import shutil
import signal
import subprocess
import sys
import threading
import time

import benchlib

REPO = benchlib.REPO
BUILD = os.path.join(REPO, "build")
PIECE = 100           # tests of one program that share a prefix
STALL = 300           # seconds without any output after which a test counts as hanging
PYTHON_TEST = 900     # seconds that one Python test may take
FUZZ_SECONDS = int(os.environ.get("VELTRANE_FUZZ_SECONDS", "60"))  # over all targets

# Suites that other tests run in circumstances of their own: a child process, a double-byte code page.
RUN_BY_OTHERS = re.compile(r"\w*Child\.|DoubleByte\.")

PASSED, FAILED, SKIPPED = "passed", "failed", "skipped"


class Outcome:
    def __init__(self, name, outcome, detail="", seconds=0.0):
        self.name, self.outcome, self.detail, self.seconds = name, outcome, detail, seconds


class Runner:
    """Jobs, workers and what came out."""

    def __init__(self, snapshot):
        self.snapshot = snapshot
        self.jobs = queue.Queue()
        self.lock = threading.Lock()
        self.outcomes = []
        self.open_jobs = 0
        self.stop = threading.Event()

    def add(self, job):
        with self.lock:
            self.open_jobs += 1
        self.jobs.put(job)

    def report(self, title, outcomes, seconds):
        counts = {kind: sum(o.outcome == kind for o in outcomes) for kind in (PASSED, FAILED, SKIPPED)}
        with self.lock:
            self.outcomes += outcomes
            for outcome in outcomes:
                if outcome.outcome == FAILED:
                    print("---- FAILED %s\n%s" % (outcome.name, outcome.detail.strip()))
                elif outcome.outcome == SKIPPED:
                    print("---- skipped %s: %s" % (outcome.name, outcome.detail.strip().replace("\n", " ")))
            text = ", ".join("%d %s" % (count, kind) for kind, count in counts.items() if count)
            print("%s: %s (%.1f s)" % (title, text or "nothing ran", seconds), flush=True)

    def work(self):
        display = None
        while not self.stop.is_set():
            try:
                job = self.jobs.get(timeout=0.1)
            except queue.Empty:
                with self.lock:
                    if self.open_jobs == 0:
                        break
                continue
            began = time.monotonic()
            try:
                if job.needs_display and display is None:
                    display = benchlib.Display()
                outcomes = job.run(self, display)
            except Exception as error:  # the bench, not a test
                outcomes = [Outcome(name, FAILED, "the bench failed: %r" % error) for name in job.names()]
            self.report(job.title, outcomes, time.monotonic() - began)
            with self.lock:
                self.open_jobs -= 1
        if display:
            display.close()

    def run(self):
        count = int(os.environ.get("VELTRANE_WORKERS", (os.cpu_count() or 1) + 1))
        threads = [threading.Thread(target=self.work) for _ in range(count)]
        for thread in threads:
            thread.start()
        try:
            for thread in threads:
                while thread.is_alive():
                    thread.join(0.2)
        except KeyboardInterrupt:
            self.stop.set()
            for thread in threads:
                thread.join()
            raise


# ---- GoogleTest programs ----

class Program:
    """Some tests of one GoogleTest program, in one prefix."""

    needs_display = True

    def __init__(self, path, tests, title):
        self.path, self.tests, self.title = path, tests, title
        self.program = os.path.splitext(os.path.basename(path))[0]

    def names(self):
        return [self.program + "/" + test for test in self.tests]

    def run(self, runner, display):
        prefix = benchlib.Prefix(display)
        try:
            install_program(prefix, runner.snapshot, self.path)
            running = prefix.start(
                "C:\\t\\" + os.path.basename(self.path), "--gtest_color=no", "--gtest_filter=" + ":".join(self.tests),
                "--gtest_output=json:C:\\t\\result.json", cwd="C:\\t", timeout=3600)
            hung = watch(runner, running)
            result = running.wait(1)
            report = read_json(prefix.host("C:\\t\\result.json"))
        finally:
            prefix.close()
        return self.judge(runner, result, report, hung)

    def judge(self, runner, result, report, hung):
        found = parse_gtest(result.text)
        for name, (outcome, reason) in json_outcomes(report).items():
            if name in found and found[name].outcome == PASSED and outcome != PASSED:
                found[name].outcome, found[name].detail = outcome, reason
        outcomes = [Outcome(self.program + "/" + name, o.outcome, o.detail, o.seconds) for name, o in found.items()]
        missing = [test for test in self.tests if test not in found]
        unfinished = unfinished_test(result.text)
        if unfinished and unfinished not in found:
            why = "no output for %d seconds" % STALL if hung else "the program ended with code %s" % result.code
            outcomes.append(Outcome(self.program + "/" + unfinished, FAILED,
                                    result.text[-4000:] + "\n" + why + " in the middle of this test"))
            missing = [test for test in missing if test != unfinished]
            if missing:
                runner.add(Program(self.path, missing, self.title + " (rest)"))
        elif missing:
            outcomes += [Outcome(self.program + "/" + test, FAILED, "did not run; exit code %s\n%s" %
                                 (result.code, result.text[-2000:])) for test in missing]
        elif result.code != 0 and not any(o.outcome == FAILED for o in outcomes):
            outcomes.append(Outcome(self.program + "/(exit code)", FAILED, "all tests ran, but the program ended with "
                                    "code %s\n%s" % (result.code, result.text[-2000:])))
        return outcomes


def install_program(prefix, snapshot, path):
    """Puts a test program with what may stand beside it into C:\\t."""
    folder = os.path.join(snapshot, "bin")
    prefix.copy_in(path, "C:\\t\\" + os.path.basename(path))
    for extra in [*glob.glob(os.path.join(folder, "*.dll")), os.path.join(folder, "Setup.exe"),
                  os.path.join(folder, "helpers"), os.path.join(folder, "testdata")]:
        if os.path.exists(extra):
            prefix.copy_in(extra, "C:\\t\\" + os.path.basename(extra))


def watch(runner, running):
    """Waits for the end of a program; ends it when it writes nothing any more. Says whether it hung."""
    size, since = 0, time.monotonic()
    while running.alive():
        now = os.path.getsize(running.output_path)
        if now != size:
            size, since = now, time.monotonic()
        if runner.stop.is_set() or time.monotonic() - since > STALL:
            running.kill()
            return True
        time.sleep(0.05)
    return False


def read_json(path):
    try:
        with open(path, encoding="utf-8", errors="replace") as file:
            return json.load(file)
    except (OSError, ValueError):
        return {}


def json_outcomes(report):
    found = {}
    for suite in report.get("testsuites", []):
        for test in suite.get("testsuite", []):
            name = test["classname"] + "." + test["name"]
            if test.get("failures"):
                found[name] = (FAILED, "\n".join(f.get("failure", "") for f in test["failures"]))
            elif test.get("result") == "SKIPPED":
                found[name] = (SKIPPED, "")
            elif test.get("status") == "RUN":
                found[name] = (PASSED, "")
    return found


def parse_gtest(text):
    """Outcomes by test name in GoogleTest's printed output, which is there even when the program crashed later."""
    found, lines, running = {}, [], None
    for line in text.split("\n"):
        match = re.match(r"\[( RUN      |       OK |  FAILED  |  SKIPPED )\] (\S+?)(?:, where .*?)?(?: \((\d+) ms\))?$", line)
        if match and match.group(1) == " RUN      ":
            running, lines = match.group(2), []
        elif match and running == match.group(2):
            kind = {"       OK ": PASSED, "  FAILED  ": FAILED, "  SKIPPED ": SKIPPED}[match.group(1)]
            found[running] = Outcome(running, kind, "\n".join(lines), int(match.group(3) or 0) / 1000)
            running = None
        else:
            lines.append(line)
    return found


def unfinished_test(text):
    runs = re.findall(r"^\[ RUN      \] (\S+)$", text, re.M)
    if runs and not re.search(r"^\[(?:       OK |  FAILED  |  SKIPPED )\] %s\b" % re.escape(runs[-1]), text, re.M):
        return runs[-1]
    return None


def list_tests(prefix, path):
    """The names of a program's tests. Once in some thousand starts Wine itself dies at the end of a program: try again."""
    for _ in range(3):
        result = prefix.run("C:\\t\\" + os.path.basename(path), "--gtest_list_tests", cwd="C:\\t", timeout=60)
        if result.code == 0:
            break
    else:
        return None, result
    names, suite = [], ""
    for line in result.text.split("\n"):
        line = line.split("#")[0].rstrip()
        if line.startswith("  "):
            names.append(suite + line.strip())
        elif line.endswith("."):
            suite = line.strip()
    return [name for name in names if "DISABLED_" not in name and not RUN_BY_OTHERS.match(name)], result


# ---- Python tests ----

class PythonClass:
    """The tests of one class of a Python test file, in a process of its own."""

    needs_display = True

    def __init__(self, path, module, tests, title):
        self.path, self.module, self.tests, self.title = path, module, tests, title

    def names(self):
        return [self.module + "/" + test for test in self.tests]

    def run(self, runner, display):
        result_path = os.path.join(runner.snapshot, "result.%d.%d" % (threading.get_ident(), time.monotonic_ns()))
        with open(result_path + ".out", "wb") as output:
            process = subprocess.Popen(
                [sys.executable, os.path.join(REPO, "tools", "run_unittest.py"), result_path, self.path, *self.tests],
                stdin=subprocess.DEVNULL, stdout=output, stderr=subprocess.STDOUT, start_new_session=True,
                env={**os.environ, "DISPLAY": display.name, "VELTRANE_BUILD": runner.snapshot,
                     "VELTRANE_SHOTS": os.path.join(BUILD, "shots"), "PYTHONDONTWRITEBYTECODE": "1"})
        hung = self.watch(runner, process, result_path)
        sweep_clones_of(process.pid)
        with open(result_path + ".out", encoding="utf-8", errors="replace") as file:
            printed = file.read()
        return self.judge(runner, read_lines(result_path), printed, hung, process.returncode)

    def watch(self, runner, process, result_path):
        size, since = -1, time.monotonic()
        while process.poll() is None:
            now = os.path.getsize(result_path) if os.path.exists(result_path) else -1
            if now != size:
                size, since = now, time.monotonic()
            if runner.stop.is_set() or time.monotonic() - since > PYTHON_TEST:
                try:
                    os.killpg(process.pid, signal.SIGTERM)
                    process.wait(5)
                except (ProcessLookupError, subprocess.TimeoutExpired):
                    process.kill()
                process.wait()
                return True
            time.sleep(0.05)
        return False

    def judge(self, runner, records, printed, hung, code):
        outcomes, reported, started, of_class = [], set(), None, None
        for record in records:
            if "start" in record:
                started = record["start"]
                continue
            if record["test"] not in self.tests:
                of_class = record  # setUpClass or setUpModule
                continue
            reported.add(record["test"])
            detail = record["detail"] + ("\n" + printed if record["outcome"] == FAILED and printed else "")
            outcomes.append(Outcome(self.module + "/" + record["test"], record["outcome"], detail, record["seconds"]))
        missing = [test for test in self.tests if test not in reported]
        if missing and of_class:
            return outcomes + [Outcome(self.module + "/" + test, of_class["outcome"], of_class["detail"])
                               for test in missing]
        if missing and started in missing:
            why = "took more than %d seconds" % PYTHON_TEST if hung else "its process ended with code %s" % code
            outcomes.append(Outcome(self.module + "/" + started, FAILED, printed + "\n" + why))
            missing.remove(started)
            if missing:
                runner.add(PythonClass(self.path, self.module, missing, self.title + " (rest)"))
            return outcomes
        if of_class and of_class["outcome"] == FAILED:
            outcomes.append(Outcome(self.module + "/" + of_class["test"], FAILED, of_class["detail"]))
        return outcomes + [Outcome(self.module + "/" + test, FAILED, "did not run\n" + printed) for test in missing]


def read_lines(path):
    if not os.path.exists(path):
        return []
    with open(path, encoding="utf-8") as file:
        return [json.loads(line) for line in file if line.endswith("\n")]


def sweep_clones_of(pid):
    """Removes the prefixes of a test process that was ended before it could."""
    for clone in glob.glob(os.path.join(benchlib.places()["CACHE"], "clones", "%d.*" % pid)):
        env = {**os.environ, "WINEPREFIX": clone}
        subprocess.run([benchlib.RUN, "-t", "30", "--server", "-k"], env=env, stdin=subprocess.DEVNULL,
                       stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, check=False)
        subprocess.run(["chmod", "-R", "u+rwX", clone], stdin=subprocess.DEVNULL, stderr=subprocess.DEVNULL, check=False)
        shutil.rmtree(clone, ignore_errors=True)


def python_jobs(runner, pattern):
    jobs = []
    for path in sorted(glob.glob(os.path.join(REPO, "tests", "*", "test_*.py"))):
        folder = os.path.basename(os.path.dirname(path))
        module = folder + "/" + os.path.splitext(os.path.basename(path))[0]
        listing = os.path.join(runner.snapshot, "list")
        done = subprocess.run([sys.executable, os.path.join(REPO, "tools", "run_unittest.py"), listing, path],
                              stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, check=False,
                              env={**os.environ, "VELTRANE_BUILD": runner.snapshot, "PYTHONDONTWRITEBYTECODE": "1"})
        if done.returncode != 0:
            runner.report(module, [Outcome(module, FAILED, done.stdout.decode(errors="replace"))], 0)
            continue
        classes = {}
        for test in read_lines(listing)[0]:
            if not pattern or benchlib.matches(module + "/" + test, pattern):
                classes.setdefault(test.split(".")[0], []).append(test)
        for name, tests in classes.items():
            jobs.append(PythonClass(path, module, tests, module + " " + name))
    return jobs


# ---- fuzz targets ----

class Fuzz:
    """A fuzz target: first its seeds, then new inputs until the time is over."""

    needs_display = False

    def __init__(self, path, seconds):
        self.path, self.seconds = path, seconds
        self.title = "fuzz/" + os.path.basename(path)

    def names(self):
        return [self.title]

    def run(self, runner, display):
        began = time.monotonic()
        code, text = run_fuzzer(self.path, self.seconds, runner.stop)
        outcome = PASSED if code == 0 else FAILED
        return [Outcome(self.title, outcome, text[-8000:] + "\nexit code %s" % code, time.monotonic() - began)]


def run_fuzzer(path, seconds, stop=None):
    """Runs a target over its seeds (tests/fuzz/seeds/<name>) and its grown corpus; gives exit code and output."""
    name = os.path.basename(path)
    work = os.path.join(BUILD, "fuzz", name)
    corpus = os.path.join(work, "corpus")
    os.makedirs(corpus, exist_ok=True)
    seeds = os.path.join(REPO, "tests", "fuzz", "seeds", name.replace("_fuzz", ""))
    dictionary = os.path.join(REPO, "tests", "fuzz", "seeds", name.replace("_fuzz", "") + ".dict")
    command = [path, "-max_total_time=%d" % max(1, seconds), "-timeout=20", "-rss_limit_mb=1024", "-max_len=65536",
               "-print_final_stats=1", "-artifact_prefix=" + work + "/", corpus]
    if os.path.isdir(seeds):
        command.append(seeds)
    if os.path.exists(dictionary):
        command.insert(1, "-dict=" + dictionary)
    log = os.path.join(work, "output.%d" % os.getpid())
    with open(log, "wb") as output:
        process = subprocess.Popen(command, stdin=subprocess.DEVNULL, stdout=output, stderr=subprocess.STDOUT,
                                   env={**os.environ, "UBSAN_OPTIONS": "print_stacktrace=1"})
        end = time.monotonic() + seconds + 120
        while process.poll() is None:
            if time.monotonic() > end or (stop and stop.is_set()):
                process.kill()
                process.wait()
            time.sleep(0.05)
    with open(log, encoding="utf-8", errors="replace") as file:
        text = file.read()
    os.unlink(log)
    return process.returncode, text


# ---- all ----

def take_snapshot():
    """A copy of what was built, so that a build beside this run changes nothing under it."""
    for old in glob.glob(os.path.join(BUILD, "test-run.*")):
        if not os.path.exists("/proc/" + old.rsplit(".", 1)[1]):
            shutil.rmtree(old, ignore_errors=True)
    snapshot = os.path.join(BUILD, "test-run.%d" % os.getpid())
    shutil.rmtree(snapshot, ignore_errors=True)
    os.makedirs(snapshot)
    with open(os.path.join(BUILD, ".lock"), "w", encoding="ascii") as lock:
        fcntl.flock(lock, fcntl.LOCK_EX)
        for folder in ("bin", "dist"):
            if os.path.isdir(os.path.join(BUILD, folder)):
                shutil.copytree(os.path.join(BUILD, folder), os.path.join(snapshot, folder))
    return snapshot


def program_jobs(runner, pattern):
    jobs = []
    programs = sorted(glob.glob(os.path.join(runner.snapshot, "bin", "*_test.exe")))
    if not programs:
        return jobs
    with benchlib.Prefix() as prefix:
        for path in programs:
            install_program(prefix, runner.snapshot, path)
            program = os.path.splitext(os.path.basename(path))[0]
            tests, result = list_tests(prefix, path)
            if tests is None:
                runner.report(program, [Outcome(program, FAILED, "cannot list its tests: %r" % result)], 0)
                continue
            chosen = [test for test in tests if not pattern or benchlib.matches(program + "/" + test, pattern)]
            pieces = math.ceil(len(chosen) / PIECE)
            for i in range(pieces):
                part = chosen[i * len(chosen) // pieces:(i + 1) * len(chosen) // pieces]
                jobs.append(Program(path, part, program + (" %d/%d" % (i + 1, pieces) if pieces > 1 else "")))
    return jobs


def fuzz_jobs(pattern):
    paths = [path for path in sorted(glob.glob(os.path.join(BUILD, "host", "*_fuzz"))) if os.access(path, os.X_OK)]
    chosen = [path for path in paths if not pattern or benchlib.matches("fuzz/" + os.path.basename(path), pattern)]
    return [Fuzz(path, FUZZ_SECONDS // len(paths)) for path in chosen]


def finish(outcomes, pattern):
    """The counts as the last line, and the exit code."""
    if pattern and not outcomes:
        print("no test has a name that contains %r" % pattern)
    failed = [outcome for outcome in outcomes if outcome.outcome == FAILED]
    if failed:
        print("failed:")
        for outcome in sorted(failed, key=lambda o: o.name):
            print("  " + outcome.name)
    print("%d passed, %d failed, %d skipped" % (
        sum(o.outcome == PASSED for o in outcomes), len(failed), sum(o.outcome == SKIPPED for o in outcomes)))
    return 1 if failed or not outcomes else 0


def main():
    pattern = sys.argv[1] if len(sys.argv) > 1 else ""
    signal.signal(signal.SIGTERM, signal.default_int_handler)
    runner = Runner(take_snapshot())
    try:
        # The longest first.
        for job in python_jobs(runner, pattern) + fuzz_jobs(pattern) + program_jobs(runner, pattern):
            runner.add(job)
        runner.run()
    except KeyboardInterrupt:
        print("interrupted")
        finish(runner.outcomes, "")
        return 130
    finally:
        shutil.rmtree(runner.snapshot, ignore_errors=True)
    return finish(runner.outcomes, pattern)


if __name__ == "__main__":
    sys.exit(main())
