"""Installs the sample distribution silently into a fresh Windows prefix, shows what that did, removes it, shows what is left."""
import hashlib
import os
import re
import shutil
import sys
import time

import benchlib

PRODUCT = r"C:\Program Files\Veltrane"
LOG = re.compile(r"\\Veltrane\d+\.log$", re.I)


def title(text):
    print("\n==== " + text, flush=True)


def files(prefix):
    """What lies on C:, by path without case: a sum of the contents, or None for a folder."""
    top = prefix.host("C:\\")
    found = {}
    for path in prefix.tree("C:\\"):
        if path.endswith("\\"):
            found[path.lower()] = (path, None)
            continue
        with open(os.path.join(top, path.replace("\\", "/")), "rb") as file:
            found[path.lower()] = (path, hashlib.sha256(file.read()).digest())
    return found


def registry(prefix):
    """Both halves of the registry as Wine writes them to its files: {key: {value: data}}. Ends all programs."""
    prefix.kill()
    tree = {}
    for name, root in (("system.reg", "HKEY_LOCAL_MACHINE"), ("user.reg", "HKEY_CURRENT_USER")):
        with open(os.path.join(prefix.root, name), encoding="utf-8", errors="replace") as file:
            key = None
            for line in file:
                match = re.match(r"\[(.*)\] \d+", line)
                if match:
                    key = root + "\\" + match.group(1).replace("\\\\", "\\")
                    tree[key] = {}
                    continue
                match = re.match(r'(?:@|"((?:[^"\\]|\\.)*)")=(.*)$', line)
                if match and key:
                    tree[key][match.group(1) or ""] = match.group(2)
    return tree


def of_the_system(path):
    """What the bench's Windows writes of its own accord when programs run."""
    return path.startswith(("helpers", "outputs"))


SYSTEM_KEYS = re.compile(
    r"\\Software\\Wine\b|\\Control\\Class|\\Services\\|\\Enum\\|\\Control\\Video|\\DeviceClasses|\\Hardware\\"
    r"|\\HardwareConfig|\\Explorer\\SessionInfo|^HKEY_CURRENT_USER\\Volatile Environment|^HKEY_CURRENT_USER\\Console$",
    re.I)


def registry_of_the_system(key):
    return SYSTEM_KEYS.search(key)


def show_tree(prefix, folder):
    top = prefix.host(folder)
    count = size = 0
    for path, folders, names in os.walk(top):
        folders.sort()
        depth = os.path.relpath(path, top).count("/") + (path != top)
        print("  " * depth + (os.path.basename(path) if depth else folder) + "\\")
        for name in sorted(names):
            bytes_ = os.path.getsize(os.path.join(path, name))
            print("%s%-*s %9d" % ("  " * (depth + 1), 40 - 2 * depth, name, bytes_))
            count, size = count + 1, size + bytes_
    print("%d files, %d bytes" % (count, size))


def show_registry(prefix):
    for key in (r"HKLM\Software\Quorvale", r"HKCU\Software\Quorvale"):
        tree = prefix.reg_tree(key)
        if not tree:
            print(key + ": none")
        for path, values in tree.items():
            print(path)
            for name, data in values.items():
                print("    %-16s %s" % (name or "(default)", data))


def logs(prefix):
    return [path for path in prefix.tree(r"C:\users") + prefix.tree(r"C:\windows") if LOG.search("\\" + path)]


def show_log(prefix):
    """The log without the many lines for single files."""
    paths = ["C:\\users\\" + path for path in prefix.tree("C:\\users") if LOG.search("\\" + path)]
    if not paths:
        print("there is no log")
        return
    copied = 0
    for line in prefix.text(paths[0]).split("\n"):
        if re.match(r"(Installing|Expanding|Deleting|Removing): ", line):
            copied += 1
        elif line.strip():
            print("  | " + line)
    print("  (and %d lines on single files; the log is %s)" % (copied, paths[0]))


def difference(before, after, skip):
    """Lines for what came, went and changed."""
    for name in sorted(set(before) | set(after)):
        if skip(name) or before.get(name) == after.get(name):
            continue
        yield name, ("new" if name not in before else "gone" if name not in after else "changed")


def show_left(before_files, prefix, before_registry):
    after = files(prefix)
    nothing = True
    for name, kind in difference(before_files, after, of_the_system):
        nothing = False
        path = (after.get(name) or before_files[name])[0]
        print("  %-8s C:\\%s" % (kind, path))
    after_registry = registry(prefix)
    for key, kind in difference(before_registry, after_registry, registry_of_the_system):
        nothing = False
        print("  %-8s %s" % (kind, key))
        for value, what in difference(before_registry.get(key, {}), after_registry.get(key, {}), lambda _: False):
            print("  %-8s     %s = %s" % (what, value or "(default)", after_registry.get(key, {}).get(value, "")))
    if nothing:
        print("  nothing")


def run_setup(prefix, program, *args):
    print("> %s %s" % (program, " ".join('"%s"' % arg if " " in arg else arg for arg in args)))
    began = time.monotonic()
    result = prefix.run(program, *args, timeout=120)
    print("exit code %d after %.1f s%s" % (result.code, time.monotonic() - began,
                                          " (ended by force)" if result.timed_out else ""))
    if result.text.strip():
        print(result.text)
    return result


def main():
    dist = os.path.join(benchlib.BUILD, "dist")
    if not os.path.exists(os.path.join(dist, "Setup.exe")):
        sys.exit("error: there is no sample distribution in %s yet, so nothing can be installed" % dist)
    with benchlib.Prefix() as prefix:
        # Once, so that what Windows itself writes at its first start does not count.
        prefix.run("wineboot")
        before_registry = registry(prefix)
        before_files = files(prefix)
        prefix.copy_in(dist, "C:\\dist")

        title("Silent installation into a fresh Windows prefix")
        result = run_setup(prefix, r"C:\dist\Setup.exe", "-Q", "-D", PRODUCT)
        if result.code != 0 or not prefix.exists(PRODUCT):
            show_log(prefix)
            sys.exit("error: the silent installation failed with exit code %d" % result.code)
        title("Installed files")
        show_tree(prefix, PRODUCT)
        title("Registry keys of the product")
        show_registry(prefix)
        title("Log of the installation")
        show_log(prefix)

        title("Silent removal by the installed program")
        result = run_setup(prefix, PRODUCT + r"\Setup.exe", "-Q", "-R")
        if result.code != 0:
            show_log(prefix)
            sys.exit("error: the silent removal failed with exit code %d" % result.code)
        gone = benchlib.wait_until(lambda: not prefix.exists(PRODUCT + r"\Setup.exe"), 15)
        batch = r"C:\windows\QLDELSU.BAT"
        benchlib.wait_until(lambda: not prefix.exists(batch), 15)
        shutil.rmtree(prefix.host("C:\\dist"))
        title("What is left of it")
        show_left(before_files, prefix, before_registry)
        if not gone:
            sys.exit("error: the program did not delete itself")


main()
