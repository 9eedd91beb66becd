"""What docs/ says of the program, held against the program."""
import os
import re
import unittest

import benchlib
from setup_case import PRODUCT, SOURCE, STARTUP, SetupTest


def text_of(*parts):
    with open(os.path.join(benchlib.REPO, *parts), encoding="utf-8") as file:
        return file.read()


def task_rows():
    """The rows of the task tables in docs/script.md: name, whether the first argument may be quoted, pass, examples."""
    rows = re.findall(r"(?m)^\| `(\w+)`( ”)? \| ([^|]*?) \| (.*) \|$", text_of("docs", "script.md"))
    return [(name, bool(quoted), acts, re.findall(r"`(\$[^`]*)`", rest)) for name, quoted, acts, rest in rows]


class Tables(unittest.TestCase):
    """The tables for readers have the rows of the tables in the program."""

    passes = {"kPass0": "0", "kPass1": "1", "kInstall1Remove0": "1/0", "kNoDataOrPass0": "s0", "kNoDataOrPass1": "s1",
              "kAlways": "always"}

    def test_every_task_with_its_pass_and_its_quotes(self):
        source = text_of("Setup", "tasks", "infproc.cpp")
        table = {name: (quoted == "kQuoted", self.passes[rule])
                 for name, rule, quoted in re.findall(r"VT_TASK\((\w+), (k\w+), (k\w+), k\w+\)", source)}
        self.assertEqual(len(table), 44)
        self.assertEqual({name: (quoted, acts) for name, quoted, acts, _ in task_rows()}, table)

    def test_every_task_has_an_example_of_its_own(self):
        for name, _, _, examples in task_rows():
            with self.subTest(name):
                self.assertEqual([example.split("=")[0] for example in examples], ["$" + name])

    def test_every_switch(self):
        known = re.findall(r'\{"([A-Z]+)", Takes::', text_of("Setup", "installer", "cmdline.cpp"))
        table = re.findall(r"(?m)^\| `-([A-Z]+)(?: folder)?` \|", text_of("docs", "admin.md"))
        self.assertEqual(sorted(table), sorted(known))

    def test_every_exit_code(self):
        known = re.findall(r"(?m)^  kExit\w+ = (\d+),", text_of("Setup", "installer", "exitcodes.h"))
        codes = text_of("docs", "admin.md").split("## Exit codes")[1].split("\n## ")[0]
        # 9 is what the box of an internal failure ends the program with.
        self.assertEqual(sorted(re.findall(r"(?m)^\| (\d+) \|", codes)), sorted(known + ["9"]))


class Examples(SetupTest):
    """Every line that docs/script.md gives as an example is understood, in an installation and in a removal."""

    def assert_understood(self):
        log = self.log()
        for complaint in ("are unknown", "There is no task", "Assertion(", "In Setup.inf:"):
            self.assertNotIn(complaint, log)

    def test_every_example_is_understood(self):
        lines = "".join(example + "\n" for _, _, _, examples in task_rows() for example in examples)
        script = "%s[easy_install]\n%s[remove]\n%s[files]\nnone=1,none,none,0\n" % (STARTUP, lines, lines)
        self.prefix.write(SOURCE + r"\setup.inf", script)
        self.prefix.write(PRODUCT + r"\Data\a.txt", b"alpha")
        self.assertEqual(self.install(), 0, self.log())
        self.assert_understood()
        self.assertFalse(self.prefix.exists(PRODUCT + r"\Data"))
        self.assertEqual(self.remove(), 0, self.log())
        self.assert_understood()

    def test_the_records_of_the_file_section(self):
        block = re.search(r"```\n\[files\]\n(.*?)```", text_of("docs", "script.md"), re.S).group(1)
        sources = dict(re.findall(r"(?m)^(\w+)=\d+,([^,]+),", block))
        for name in sources.values():
            self.prefix.write(SOURCE + "\\" + name, name.encode())
        keys = "".join(key + "\n" for key in sources)
        self.prefix.write(SOURCE + r"\setup.inf",
                          STARTUP + "[easy_install]\n%s[remove]\n%s[files]\n%s" % (keys, keys, block))
        self.assertEqual(self.install(), 0, self.log())
        self.assertEqual(self.prefix.read(PRODUCT + r"\Veltrane.exe"), sources["editor"].encode())
        self.assertEqual(self.prefix.read(PRODUCT + r"\notes.txt"), sources["notes"].encode())
        # The user's own notes are kept by an installation, and go with a removal.
        self.prefix.write(PRODUCT + r"\notes.txt", b"mine")
        self.assertEqual(self.install(), 0, self.log())
        self.assertEqual(self.prefix.read(PRODUCT + r"\notes.txt"), b"mine")
        self.assertEqual(self.remove(), 0, self.log())
        self.assertEqual(self.prefix.tree(PRODUCT), ["Data\\"])


if __name__ == "__main__":
    unittest.main()
