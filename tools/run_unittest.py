"""Runs test methods of one Python test file and writes one JSON line for each result to the file given.

    run_unittest.py RESULT FILE [TEST...]       TEST is Class.method; none lists the tests instead
"""
import importlib.util
import json
import os
import sys
import time
import traceback
import unittest

sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))


def tests_in(suite):
    for item in suite:
        if isinstance(item, unittest.TestSuite):
            yield from tests_in(item)
        else:
            yield item


def short_name(test):
    return ".".join(test.id().split(".")[-2:])


class Reporter(unittest.TestResult):
    def __init__(self, stream):
        super().__init__()
        self.stream = stream
        self.seen = set()

    def report(self, test, outcome, detail=""):
        # A test with failing parts is one failed test.
        if outcome != "failed" and test.id() in self.seen:
            return
        self.seen.add(test.id())
        name = short_name(test) if isinstance(test, unittest.TestCase) else str(test)
        self.stream.write(json.dumps({"test": name, "outcome": outcome, "detail": detail,
                                      "seconds": time.monotonic() - self.began}) + "\n")
        self.stream.flush()

    began = 0.0

    def startTest(self, test):
        super().startTest(test)
        self.began = time.monotonic()
        self.stream.write(json.dumps({"start": short_name(test)}) + "\n")
        self.stream.flush()

    def addSuccess(self, test):
        self.report(test, "passed")

    def addSkip(self, test, reason):
        self.report(test, "skipped", reason)

    def addFailure(self, test, err):
        self.report(test, "failed", "".join(traceback.format_exception(*err)))

    addError = addFailure

    def addSubTest(self, test, subtest, err):
        if err is not None:
            self.report(test, "failed", str(subtest) + "\n" + "".join(traceback.format_exception(*err)))

    def addExpectedFailure(self, test, err):
        self.report(test, "failed", "expected failures are not used here")

    def addUnexpectedSuccess(self, test):
        self.report(test, "failed", "unexpected success")


def main():
    result_path, path, wanted = sys.argv[1], sys.argv[2], set(sys.argv[3:])
    sys.path.insert(0, os.path.dirname(os.path.abspath(path)))
    name = os.path.splitext(os.path.basename(path))[0]
    spec = importlib.util.spec_from_file_location(name, path)
    module = importlib.util.module_from_spec(spec)
    sys.modules[name] = module
    spec.loader.exec_module(module)
    suite = list(tests_in(unittest.defaultTestLoader.loadTestsFromModule(module)))
    with open(result_path, "w", encoding="utf-8") as stream:
        if not wanted:
            stream.write(json.dumps([short_name(test) for test in suite]) + "\n")
            return
        chosen = unittest.TestSuite(test for test in suite if short_name(test) in wanted)
        chosen.run(Reporter(stream))


main()
