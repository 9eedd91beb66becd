"""The test runner: a fault that it overlooked would hide all others."""
import contextlib
import io
import os
import shutil
import sys
import tempfile
import textwrap
import unittest

import benchlib
import run_tests


class Collector:
    """Stands in for the runner: keeps the jobs that are added."""

    def __init__(self, snapshot=""):
        self.added = []
        self.snapshot = snapshot
        self.stop = type("Never", (), {"is_set": staticmethod(lambda: False)})

    def add(self, job):
        self.added.append(job)


OUTPUT = """[==========] Running 4 tests from 1 test suite.
[ RUN      ] A.Passes
[       OK ] A.Passes (12 ms)
[ RUN      ] A.Fails
x.cpp:1: Failure
something is wrong
[  FAILED  ] A.Fails (0 ms)
[ RUN      ] A.Skips/3
x.cpp:2: Skipped
[  SKIPPED ] A.Skips/3 (0 ms)
"""


def judge(output, code, tests, hung=False, report=None):
    runner = Collector()
    program = run_tests.Program("x_test.exe", tests, "x_test")
    outcomes = program.judge(runner, benchlib.Result(code, output.encode(), hung), report or {}, hung)
    return {o.name: o.outcome for o in outcomes}, runner.added, outcomes


class ProgramTest(unittest.TestCase):
    """What is made of a GoogleTest program's end."""

    def test_outcomes_are_read_with_their_output(self):
        names, added, outcomes = judge(OUTPUT, 1, ["A.Passes", "A.Fails", "A.Skips/3"])
        self.assertEqual(names, {"x_test/A.Passes": "passed", "x_test/A.Fails": "failed", "x_test/A.Skips/3": "skipped"})
        self.assertIn("something is wrong", outcomes[1].detail)
        self.assertEqual(added, [])

    def test_a_crash_fails_its_test_and_runs_the_rest_again(self):
        names, added, _ = judge(OUTPUT + "[ RUN      ] A.Crashes\n", 5, ["A.Passes", "A.Fails", "A.Skips/3", "A.Crashes",
                                                                        "A.After"])
        self.assertEqual(names["x_test/A.Crashes"], "failed")
        self.assertNotIn("x_test/A.After", names)
        self.assertEqual([job.tests for job in added], [["A.After"]])

    def test_a_test_that_hangs_fails(self):
        names, added, outcomes = judge("[ RUN      ] A.Hangs\n", -9, ["A.Hangs"], hung=True)
        self.assertEqual(names, {"x_test/A.Hangs": "failed"})
        self.assertIn("no output", outcomes[0].detail)
        self.assertEqual(added, [])

    def test_tests_that_never_ran_fail(self):
        names, added, _ = judge("", 53, ["A.One", "A.Two"])
        self.assertEqual(names, {"x_test/A.One": "failed", "x_test/A.Two": "failed"})
        self.assertEqual(added, [])

    def test_a_bad_exit_code_after_good_tests_is_a_failure(self):
        names, _, _ = judge("[ RUN      ] A.Passes\n[       OK ] A.Passes (1 ms)\n", 5, ["A.Passes"])
        self.assertEqual(names, {"x_test/A.Passes": "passed", "x_test/(exit code)": "failed"})

    def test_the_report_overrules_the_printed_outcome(self):
        report = {"testsuites": [{"testsuite": [{"classname": "A", "name": "Passes", "status": "RUN", "result": "COMPLETED",
                                                 "failures": [{"failure": "left a handle"}]}]}]}
        names, _, outcomes = judge("[ RUN      ] A.Passes\n[       OK ] A.Passes (1 ms)\n", 1, ["A.Passes"], report=report)
        self.assertEqual(names, {"x_test/A.Passes": "failed"})
        self.assertIn("left a handle", outcomes[0].detail)


class PythonClassTest(unittest.TestCase):
    """What is made of a Python test file."""

    def run_source(self, source, tests):
        with tempfile.TemporaryDirectory() as folder:
            path = os.path.join(folder, "test_it.py")
            with open(path, "w", encoding="utf-8") as file:
                file.write(textwrap.dedent(source))
            runner = Collector(folder)
            display = type("Display", (), {"name": os.environ.get("DISPLAY", ":0")})
            outcomes = run_tests.PythonClass(path, "it/test_it", tests, "title").run(runner, display)
            return {o.name.split("/")[-1]: o.outcome for o in outcomes}, runner.added

    def test_outcomes(self):
        names, added = self.run_source("""
            import unittest
            class T(unittest.TestCase):
                def test_good(self):
                    pass
                def test_bad(self):
                    self.fail("so it is")
                def test_error(self):
                    raise OSError("no")
                def test_skip(self):
                    self.skipTest("not here")
                def test_parts(self):
                    for i in range(3):
                        with self.subTest(i):
                            self.assertNotEqual(i, 1)
            """, ["T.test_good", "T.test_bad", "T.test_error", "T.test_skip", "T.test_parts"])
        self.assertEqual(names, {"T.test_good": "passed", "T.test_bad": "failed", "T.test_error": "failed",
                                 "T.test_skip": "skipped", "T.test_parts": "failed"})
        self.assertEqual(added, [])

    def test_a_failed_preparation_fails_all(self):
        names, _ = self.run_source("""
            import unittest
            class T(unittest.TestCase):
                @classmethod
                def setUpClass(cls):
                    raise OSError("no")
                def test_good(self):
                    pass
            """, ["T.test_good"])
        self.assertEqual(names, {"T.test_good": "failed"})

    def test_a_process_that_dies_fails_its_test_and_runs_the_rest_again(self):
        names, added = self.run_source("""
            import os, unittest
            class T(unittest.TestCase):
                def test_a(self):
                    os._exit(3)
                def test_b(self):
                    pass
            """, ["T.test_a", "T.test_b"])
        self.assertEqual(names, {"T.test_a": "failed"})
        self.assertEqual([job.tests for job in added], [["T.test_b"]])


class FuzzerTest(unittest.TestCase):
    """A fuzz target's end."""

    def test_a_bad_exit_code_fails(self):
        self.addCleanup(shutil.rmtree, os.path.join(run_tests.BUILD, "fuzz", "self_test_fuzz"), ignore_errors=True)
        with tempfile.TemporaryDirectory() as folder:
            path = os.path.join(folder, "self_test_fuzz")
            for code, outcome in ((0, "passed"), (77, "failed")):
                with open(path, "w", encoding="utf-8") as file:
                    file.write("#!/bin/sh\nexit %d\n" % code)
                os.chmod(path, 0o755)
                self.assertEqual(run_tests.Fuzz(path, 1).run(Collector(), None)[0].outcome, outcome)


class EndTest(unittest.TestCase):
    """The last line and the exit code."""

    def finish(self, *outcomes, pattern=""):
        printed = io.StringIO()
        with contextlib.redirect_stdout(printed):
            code = run_tests.finish([run_tests.Outcome("name%d" % i, o) for i, o in enumerate(outcomes)], pattern)
        return code, printed.getvalue().rstrip().split("\n")[-1]

    def test_counts(self):
        self.assertEqual(self.finish("passed", "passed", "skipped"), (0, "2 passed, 0 failed, 1 skipped"))
        self.assertEqual(self.finish("passed", "failed"), (1, "1 passed, 1 failed, 0 skipped"))

    def test_nothing_run_is_no_success(self):
        self.assertEqual(self.finish(pattern="no such test"), (1, "0 passed, 0 failed, 0 skipped"))

    def test_filters(self):
        self.assertTrue(benchlib.matches("base_test/Str.Appends", "Str.App"))
        self.assertTrue(benchlib.matches("base_test/Str.Appends", "Str.*"))
        self.assertTrue(benchlib.matches("base_test/Str.Appends", "base_test/*"))
        self.assertFalse(benchlib.matches("base_test/Str.Appends", "Ini*"))


if __name__ == "__main__":
    sys.exit(unittest.main())
