"""The font readers on the fonts of Debian packages by many makers, compared with what other tools say of the same files.

The packages are downloaded with apt and unpacked below the bench's cache, once; nothing is installed. Where that is not
possible the tests are skipped.
"""
import fcntl
import logging
import os
import re
import shutil
import struct
import subprocess
import sys
import tempfile
import unittest

import benchlib

# TrueType fonts of different makers and programs, of all styles; some have no Macintosh names.
FONT_PACKAGES = ["fonts-crosextra-carlito", "fonts-dejavu-core", "fonts-dejavu-extra", "fonts-freefont-ttf",
                 "fonts-hack", "fonts-lato", "fonts-liberation", "fonts-open-sans", "fonts-sil-charis",
                 "fonts-sil-gentium-basic", "fonts-tlwg-garuda-ttf", "fonts-tlwg-norasi-ttf", "ttf-bitstream-vera"]
TYPE1_PACKAGES = ["t1-cyrillic", "xfonts-scalable"]
FONTTOOLS = ["python3-fonttools"]
FONTFORGE = ["fontforge-nox"]
WANTED = 100

ITALIC, BOLD = 2, 1


def missing_packages(names):
    """The packages that an installation of these would add."""
    done = subprocess.run(["apt-get", "install", "--print-uris", "-qq", "-y", "--no-install-recommends", *names],
                          stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.PIPE, check=True,
                          timeout=120)
    return [line.split()[1].split("_")[0] for line in done.stdout.decode().splitlines() if line.startswith("'")]


def unpacked(name, packages, with_needed=False):
    """The folder below the cache that holds the unpacked packages; skips the test where they cannot be had."""
    folder = os.path.join(benchlib.places()["CACHE"], "packages-" + name)
    with open(folder + ".lock", "w", encoding="ascii") as lock:
        fcntl.flock(lock, fcntl.LOCK_EX)
        if os.path.isdir(folder):
            return folder
        work = tempfile.mkdtemp(prefix="packages.", dir=os.path.dirname(folder))
        try:
            if with_needed:
                packages = packages + [p for p in missing_packages(packages) if p not in packages]
            subprocess.run(["apt-get", "-q", "download", *packages], cwd=work, stdin=subprocess.DEVNULL,
                           stdout=subprocess.PIPE, stderr=subprocess.STDOUT, check=True, timeout=240)
            for package in sorted(os.listdir(work)):
                subprocess.run(["dpkg-deb", "-x", os.path.join(work, package), work], stdin=subprocess.DEVNULL,
                               check=True, timeout=120)
                os.unlink(os.path.join(work, package))
            os.rename(work, folder)
        except (OSError, subprocess.SubprocessError) as error:
            raise unittest.SkipTest("the packages %s cannot be had: %s" % (" ".join(packages), error))
        finally:
            shutil.rmtree(work, ignore_errors=True)
    return folder


def files_below(folder, ending):
    found = []
    for place, _, names in os.walk(folder):
        found += [os.path.join(place, name) for name in names if name.lower().endswith(ending)]
    return sorted(path for path in found if not os.path.islink(path))


class RealFonts(benchlib.WindowsTest):
    def facts(self, paths):
        """What the program reads of the files: {path: list of fields, or None when it refuses the file}."""
        names = {}
        for number, path in enumerate(paths):
            name = "%03d%s" % (number, os.path.splitext(path)[1].lower())
            names[name] = path
            self.prefix.copy_in(path, "C:\\facts\\" + name)
        result = self.prefix.helper("font_facts", "C:\\facts", timeout=120)
        self.assertEqual(result.code, 0, result.text)
        facts = {}
        for line in result.text.splitlines():
            fields = line.split("|")
            facts[names[fields[0]]] = fields[2:] if fields[1] == "ok" else None
        self.assertEqual(len(facts), len(paths))
        return facts


class TrueType(RealFonts):
    def test_names_version_and_style(self):
        fonts = files_below(unpacked("truetype", FONT_PACKAGES), ".ttf")
        self.assertGreaterEqual(len(fonts), WANTED)
        sys.path.insert(0, os.path.join(unpacked("fonttools", FONTTOOLS), "usr/lib/python3/dist-packages"))
        self.addCleanup(sys.path.pop, 0)
        from fontTools.ttLib import TTFont
        logging.getLogger("fontTools").setLevel(logging.ERROR)
        facts = self.facts(fonts)
        read = 0
        for path in fonts:
            with TTFont(path, lazy=True) as font:
                names = {}
                for record in font["name"].names:
                    if record.platformID == 1:
                        names.setdefault(record.nameID, record.toBytes().split(b"\0")[0])
                if not names.get(1) or not names.get(4):
                    self.assertIsNone(facts[path], path)
                    continue
                selection = font["OS/2"].fsSelection
                expected = [names[4].hex(), names[1].hex(), str(round(font["head"].fontRevision * 65536)),
                            str((ITALIC if selection & 1 else 0) + (BOLD if selection & 0x20 else 0))]
            self.assertEqual(facts[path], expected, path)
            read += 1
        self.assertGreaterEqual(read, 90)

    def test_fontconfig_agrees(self):
        if not shutil.which("fc-scan"):
            self.skipTest("fc-scan is not installed")
        fonts = files_below(unpacked("truetype", FONT_PACKAGES), ".ttf")
        facts = self.facts(fonts)
        scanned = subprocess.run(["fc-scan", "-f", "%{file}|%{family}|%{fontversion}\n", *fonts],
                                 stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, check=True, timeout=120)
        checked = 0
        for line in scanned.stdout.decode("utf-8").splitlines():
            path, families, version = line.split("|")
            if facts[path] is None:
                continue
            family = bytes.fromhex(facts[path][1]).decode("mac_roman")
            # Both know the family, one of them perhaps with the style in its name.
            self.assertTrue(any(family.startswith(f) or f.startswith(family) for f in families.split(",")),
                            (path, family, families))
            self.assertEqual(facts[path][2], version, path)
            checked += 1
        self.assertGreaterEqual(checked, 90)


class Type1(RealFonts):
    def outlines(self):
        """Outline files, and for each the name and version that its first line and its dictionary give."""
        found = {}
        for path in files_below(unpacked("type1", TYPE1_PACKAGES), ".pfb"):
            with open(path, "rb") as file:
                data = file.read(20000)
            first = re.split(rb"[\r\n]", data[6:])[0]
            name = re.search(rb"/FontName\s*/(\S+)", data).group(1)
            found[path] = (first, name)
        return found

    def test_names_and_versions_of_outlines(self):
        outlines = self.outlines()
        self.assertGreaterEqual(len(outlines), 30)
        facts = self.facts(list(outlines))
        read = 0
        for path, (first, name) in outlines.items():
            match = re.match(rb"%!\S+[ \t]+(\S+)[ \t]+(\d+)\.(\d+)", first)
            if not match:
                self.assertIsNone(facts[path], (path, first))
                continue
            version = int(match.group(2)) * 65536 + int(match.group(3)) % 65536
            self.assertEqual(facts[path], [match.group(1).hex(), str(version)], path)
            # The comment names the font as its dictionary does.
            self.assertEqual(match.group(1), name, path)
            read += 1
        self.assertGreaterEqual(read, 25)

    def test_metrics_made_by_a_font_editor(self):
        tree = unpacked("fontforge", FONTFORGE, with_needed=True)
        libraries = ":".join(sorted({os.path.dirname(path) for path in files_below(tree, "") if ".so" in path}))
        work = tempfile.mkdtemp()
        self.addCleanup(shutil.rmtree, work, True)
        made = {}
        for number, (path, (_, name)) in enumerate(list(self.outlines().items())[::5]):
            target = os.path.join(work, "%d.pfb" % number)
            done = subprocess.run(
                [os.path.join(tree, "usr/bin/fontforge"), "-lang=ff", "-c", 'Open($1); Generate($2,"",2)', path, target],
                env={**os.environ, "LD_LIBRARY_PATH": libraries}, stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                stderr=subprocess.STDOUT, timeout=60, check=False)
            metrics = target[:-1] + "m"
            if not os.path.exists(metrics):
                self.skipTest("no metrics file was made: %s" % done.stdout.decode("utf-8", "replace")[-200:])
            made[metrics] = name
        facts = self.facts(list(made))
        for path, name in made.items():
            with open(path, "rb") as file:
                data = file.read()
            face_at, = struct.unpack_from("<I", data, 105)
            weight, = struct.unpack_from("<H", data, 83)
            style = (ITALIC if data[80] else 0) + (BOLD if weight > 400 else 0)
            face = data[face_at:].split(b"\0")[0]
            self.assertTrue(face)
            self.assertEqual(facts[path], [face.hex(), name.hex(), str(style)], path)


del RealFonts

if __name__ == "__main__":
    unittest.main()
