"""The build gives the same bytes wherever and whenever it runs."""
import fcntl
import filecmp
import hashlib
import os
import shutil
import subprocess
import unittest

import benchlib

SOURCES = ("CMakeLists.txt", "CMakePresets.json", "cmake", "Setup", "dist", "docs", "tools")


def copy_changed(source, target):
    """Makes `target` the same as `source`; files that are the same already keep their time."""
    if os.path.isdir(source):
        os.makedirs(target, exist_ok=True)
        names = [name for name in os.listdir(source) if name != "__pycache__"]
        for name in os.listdir(target):
            if name not in names:
                path = os.path.join(target, name)
                shutil.rmtree(path) if os.path.isdir(path) else os.unlink(path)
        for name in names:
            copy_changed(os.path.join(source, name), os.path.join(target, name))
    elif not os.path.exists(target) or not filecmp.cmp(source, target, shallow=False):
        shutil.copy(source, target)


def files_below(folder):
    found = {}
    for path, _, names in os.walk(folder):
        for name in names:
            full = os.path.join(path, name)
            with open(full, "rb") as file:
                found[os.path.relpath(full, folder)] = hashlib.sha256(file.read()).hexdigest()
    return found


class ReproducibleBuildTest(unittest.TestCase):
    """The program and the distribution, built a second time in another folder from a copy of the sources.

    The second build is kept in the cache, so that it costs little when little has changed. It is another build
    nevertheless: no file of it comes from the first one.
    """

    def test_two_builds_in_two_folders_give_identical_bytes(self):
        name = hashlib.sha256(benchlib.REPO.encode()).hexdigest()[:12]
        place = os.path.join(benchlib.places()["CACHE"], "second-build", name, "another folder deeper down")
        os.makedirs(place, exist_ok=True)
        with open(os.path.join(os.path.dirname(place), "lock"), "w", encoding="ascii") as lock:
            fcntl.flock(lock, fcntl.LOCK_EX)
            for source in SOURCES:
                path = os.path.join(benchlib.REPO, source)
                if os.path.exists(path):
                    copy_changed(path, os.path.join(place, source))
            for command in (["cmake", "--preset", "win"], ["cmake", "--build", "build/win", "--", "--quiet"]):
                done = subprocess.run(command, cwd=place, stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                                      stderr=subprocess.STDOUT, check=False)
                self.assertEqual(done.returncode, 0, done.stdout.decode(errors="replace")[-4000:])
            for folder in ("bin", "dist"):
                second = files_below(os.path.join(place, "build", folder))
                first = files_below(os.path.join(benchlib.BUILD, folder))
                self.assertTrue(second)
                different = [path for path in second if first.get(path) != second[path]]
                self.assertEqual(different, [], "different bytes below build/" + folder)


if __name__ == "__main__":
    unittest.main()
