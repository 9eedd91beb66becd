"""Checks docs/rows/*.md: tables of documented behaviours with the tests that hold each.

A file has a title ("# "), groups ("## ") with a table of two columns (behaviour, tests) each, and perhaps a last group
"Not brought about on the bench", a list. Every row names at least one test, every test named exists, no row stands twice,
and docs/testing.md gives the number of rows and of edge cases (the rows of the group "Edge cases") of each file.
"""
import ast
import collections
import glob
import os
import re

EDGE_CASES = "Edge cases"
UNTESTED = "Not brought about on the bench"
HEADER = ["| behaviour | tests |", "|---|---|"]


def windows_tests(repo):
    """The names of all GoogleTest tests, as the runner gives them; "Suite.Name" for each instance of a parameterised one."""
    found = set()
    for path in glob.glob(os.path.join(repo, "tests", "*", "*_test.cpp")):
        storey = os.path.basename(os.path.dirname(path))
        with open(path, encoding="utf-8") as file:
            text = file.read()
        found |= {"%s_test/%s.%s" % (storey, suite, name)
                  for suite, name in re.findall(r"^TEST(?:_F|_P)?\(\s*(\w+)\s*,\s*(\w+)\s*\)", text, re.M)}
    return found


def python_tests(repo):
    found = set()
    for path in glob.glob(os.path.join(repo, "tests", "*", "test_*.py")):
        module = "%s/%s" % (os.path.basename(os.path.dirname(path)), os.path.basename(path)[:-3])
        with open(path, encoding="utf-8") as file:
            tree = ast.parse(file.read(), path)
        for node in tree.body:
            if isinstance(node, ast.ClassDef):
                found |= {"%s/%s.%s" % (module, node.name, method.name) for method in node.body
                          if isinstance(method, ast.FunctionDef) and method.name.startswith("test")}
    return found


def fuzz_targets(repo):
    return {"fuzz/" + os.path.basename(path)[:-4] for path in glob.glob(os.path.join(repo, "tests", "fuzz", "*_fuzz.cpp"))}


def exists(name, tests):
    """Whether a test is there; instances of parameterised tests are named "Prefix/Suite.Name/*"."""
    if name in tests:
        return True
    match = re.fullmatch(r"(\w+_test/)(?:\w+/)?(\w+\.\w+)(?:/?\*)?", name)
    return bool(match) and match.group(1) + match.group(2) in tests


def cells(line):
    """The cells of a table's line; "\\|" is a bar inside a cell."""
    return [cell.strip() for cell in re.split(r"(?<!\\)\|", line.strip())[1:-1]]


def read_rows(path, name, problems):
    """[(group, behaviour, tests)] of a file."""
    rows, group, header = [], None, 0
    with open(path, encoding="utf-8") as file:
        lines = file.read().split("\n")
    if not lines[0].startswith("# "):
        problems.append("%s:1: no title" % name)
    for number, line in enumerate(lines, 1):
        place = "%s:%d: " % (name, number)
        if line.startswith("## "):
            if group == UNTESTED:
                problems.append(place + "%r is to be the last group" % UNTESTED)
            group, header = line[3:].strip(), 0
        elif line.startswith("|") and (group is None or group == UNTESTED):
            problems.append(place + "a table where none is to be")
        elif line.startswith("|") and header < len(HEADER):
            if line != HEADER[header]:
                problems.append(place + "not the head of a table: %s" % HEADER[header])
            header += 1
        elif line.startswith("|"):
            row = cells(line)
            if len(row) == 2:
                rows.append((group, row[0], re.findall(r"`([^`]+)`", row[1])))
            if len(row) != 2 or not rows[-1][2] or re.sub(r"`[^`]+`|[, ]", "", row[1]):
                problems.append(place + "a row is a behaviour and the names of its tests in backticks")
    return rows


def check(repo):
    problems = []
    tests = windows_tests(repo) | python_tests(repo) | fuzz_targets(repo)
    with open(os.path.join(repo, "docs", "testing.md"), encoding="utf-8") as file:
        overview = file.read()
    for path in sorted(glob.glob(os.path.join(repo, "docs", "rows", "*.md"))):
        name = os.path.relpath(path, repo)
        rows = read_rows(path, name, problems)
        for _, behaviour, names in rows:
            problems += ["%s: there is no test %s" % (name, test) for test in names if not exists(test, tests)]
        twice = [row for row, count in collections.Counter((group, row) for group, row, _ in rows).items() if count > 1]
        problems += ["%s: twice in %r: %s" % (name, group, row) for group, row in twice]
        edges = sum(group == EDGE_CASES for group, _, _ in rows)
        counts = re.search(r"^\| \[[^]]*\]\(rows/%s\) \| (\d+) \| (\d+) \|" % re.escape(os.path.basename(path)), overview, re.M)
        if not counts or (int(counts.group(1)), int(counts.group(2))) != (len(rows) - edges, edges):
            problems.append("docs/testing.md: %s has %d rows and %d edge cases" % (name, len(rows) - edges, edges))
    return problems
