"""Fuzzes one target or all, each for a while.

    run_fuzz.py [NAME [SECONDS]]       NAME contains text of the target's name; "" is all; 300 seconds each
"""
import glob
import os
import sys

import benchlib
import run_tests


def main():
    pattern = sys.argv[1] if len(sys.argv) > 1 else ""
    seconds = int(sys.argv[2]) if len(sys.argv) > 2 else 300
    failed = 0
    paths = [path for path in sorted(glob.glob(os.path.join(run_tests.BUILD, "host", "*_fuzz")))
             if benchlib.matches(os.path.basename(path), pattern)]
    if not paths:
        sys.exit("error: no fuzz target has a name that contains %r" % pattern)
    for path in paths:
        name = os.path.basename(path)
        print("==> %s for %d seconds" % (name, seconds), flush=True)
        code, text = run_tests.run_fuzzer(path, seconds)
        print("\n".join(text.rstrip().split("\n")[-12:]))
        if code != 0:
            failed += 1
            print("FAILED %s, exit code %s; the input is in %s" % (name, code, os.path.join(run_tests.BUILD, "fuzz", name)))
    print("%d passed, %d failed, 0 skipped" % (len(paths) - failed, failed))
    sys.exit(1 if failed else 0)


main()
