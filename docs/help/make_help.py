#!/usr/bin/env python3
"""Compiles the help of one language: make_help.py LANGUAGE OUT.chm, with chmcmd and chmls (Debian's fp-utils).

The pages are UTF-8 here and Windows-1252 in the help file, whose viewer reads the contents in the code page of its
language. Project and contents are made from topics.txt and the pages' titles.

Two things are put right in the compiled file. The compiler stamps the time into it: the stamps are set to a fixed value,
so that the same pages give the same bytes. And its list of topic numbers would hold the paths of this machine, which no
viewer finds: the list is written here, beside the compressed part of the file.
"""
import os
import re
import struct
import subprocess
import sys
import tempfile

HERE = os.path.dirname(os.path.abspath(__file__))
LANGUAGE_IDS = {'fr': 0x040C, 'en': 0x0409}
STAMP = 0x468C3800  # 5 July 2007


def topics():
    with open(os.path.join(HERE, 'topics.txt'), encoding='ascii') as file:
        rows = [line.split() for line in file if line.strip() and not line.startswith('#')]
    return [(row[0], [int(number) for number in row[1:]]) for row in rows]


# ---- what the compiler is given ----

def title(page):
    return re.search('<title>(.*?)</title>', page).group(1)


def project(language, pages):
    options = {
        'Compatibility': '1.1 or later', 'Compiled file': 'setup.chm', 'Contents file': 'toc.hhc',
        'Default topic': 'index.htm', 'Full-text search': 'No', 'Language': hex(LANGUAGE_IDS[language]),
        'Title': title(pages['index.htm']),
    }
    lines = ['[OPTIONS]'] + [f'{key}={value}' for key, value in options.items()]
    return '\n'.join(lines + ['', '[FILES]', *pages, 'help.css']) + '\n'


def contents(pages):
    items = ''.join(f'<li><object type="text/sitemap"><param name="Name" value="{title(page)}">'
                    f'<param name="Local" value="{name}"></object>\n' for name, page in pages.items())
    return f'<!DOCTYPE HTML PUBLIC "-//IETF//DTD HTML//EN">\n<html><body>\n<ul>\n{items}</ul>\n</body></html>\n'


def run_compiler(language):
    files = {}
    for name, _ in topics():
        with open(os.path.join(HERE, language, name), encoding='utf-8') as file:
            files[name] = file.read()
    files.update({'setup.hhp': project(language, files), 'toc.hhc': contents(files)})
    with open(os.path.join(HERE, 'help.css'), encoding='ascii') as file:
        files['help.css'] = file.read()
    with tempfile.TemporaryDirectory() as folder:
        for name, content in files.items():
            with open(os.path.join(folder, name), 'w', encoding='cp1252', newline='\r\n') as file:
                file.write(content)
        run = subprocess.run(['chmcmd', 'setup.hhp'], cwd=folder, stdout=subprocess.PIPE, stderr=subprocess.STDOUT)
        made = os.path.join(folder, 'setup.chm')
        if run.returncode != 0 or not os.path.exists(made):
            sys.exit(f'make_help.py: chmcmd failed\n{run.stdout.decode(errors="replace")}')
        with open(made, 'rb') as file:
            return bytearray(file.read())


# ---- the compiled file ----

def unpack_number(data, at):
    """A number in groups of seven bits, the highest first; the position behind it."""
    value = 0
    while True:
        byte = data[at]
        at += 1
        value = value << 7 | byte & 0x7F
        if not byte & 0x80:
            return value, at


def pack_number(value):
    groups = [value & 0x7F]
    while value > 0x7F:
        value >>= 7
        groups.insert(0, value & 0x7F | 0x80)
    return bytes(groups)


class CompiledHelp:
    """The directory has one chunk of 4 KB in a file of this size: (name, section, offset, length) in order of names.
    Section 0 is stored as it is and runs to the file's end; an offset counts from its beginning."""

    CHUNK_HEADER = 20

    def __init__(self, data):
        self.data = data
        self.sizes, = struct.unpack_from('<Q', data, 0x38)
        directory, = struct.unpack_from('<Q', data, 0x48)
        self.stored, = struct.unpack_from('<Q', data, 0x58)
        header, _, self.chunk_size, self.density = struct.unpack_from('<IIII', data, directory + 8)
        chunks, = struct.unpack_from('<I', data, directory + 0x2C)
        self.chunk = directory + header
        if chunks != 1 or data[self.chunk:self.chunk + 4] != b'PMGL':
            sys.exit('make_help.py: the compiled help has more files than are provided for')
        self.entries = list(self.read_directory())

    def read_directory(self):
        free, = struct.unpack_from('<I', self.data, self.chunk + 4)
        at, end = self.chunk + self.CHUNK_HEADER, self.chunk + self.chunk_size - free
        while at < end:
            length, at = unpack_number(self.data, at)
            name = self.data[at:at + length].decode('utf-8')
            section, at = unpack_number(self.data, at + length)
            offset, at = unpack_number(self.data, at)
            size, at = unpack_number(self.data, at)
            yield name, section, offset, size

    def write_directory(self):
        """Behind the entries free space, then from the end backwards: their number and where every fifth one begins."""
        packed, starts = b'', []
        for name, *numbers in self.entries:
            starts.append(len(packed))
            packed += pack_number(len(name)) + name.encode('utf-8') + b''.join(map(pack_number, numbers))
        step = 1 + (1 << self.density)
        marks = struct.pack('<H', len(self.entries))
        for start in starts[step::step]:
            marks = struct.pack('<H', start) + marks
        free = self.chunk_size - self.CHUNK_HEADER - len(packed)
        if free < len(marks):
            sys.exit('make_help.py: the compiled help has more files than are provided for')
        struct.pack_into('<I', self.data, self.chunk + 4, free)
        begin = self.chunk + self.CHUNK_HEADER
        self.data[begin:self.chunk + self.chunk_size] = packed + b'\0' * (free - len(marks)) + marks

    def store(self, name, content):
        """Puts a file, new or not, at the end of the stored section."""
        self.entries = [entry for entry in self.entries if entry[0] != name]
        self.entries.append((name, 0, len(self.data) - self.stored, len(content)))
        self.entries.sort(key=lambda entry: entry[0].lower())
        self.data += content
        struct.pack_into('<Q', self.data, self.sizes + 8, len(self.data))
        self.write_directory()

    def fix_stamps(self):
        struct.pack_into('>I', self.data, 0x10, STAMP)
        offset, = [offset for name, section, offset, _ in self.entries if (name, section) == ('/#SYSTEM', 0)]
        at = self.stored + offset + 4  # behind the version
        while True:
            code, size = struct.unpack_from('<HH', self.data, at)
            if code == 10:
                struct.pack_into('<I', self.data, at + 4, STAMP)
                return
            at += 4 + size


def number_topics(compiled):
    """A table of (number, where in the texts the page's name begins), sorted, its size first."""
    texts, rows = b'\0', []
    for name, numbers in topics():
        rows += [(number, len(texts)) for number in numbers]
        texts += name.encode('ascii') + b'\0'
    table = b''.join(struct.pack('<II', *row) for row in sorted(rows))
    compiled.store('/#STRINGS', texts)
    compiled.store('/#IVB', struct.pack('<I', len(table)) + table)


def check(path):
    """Reads the numbers and the pages back with another program than the one that wrote them."""
    def extract(name, folder):
        target = os.path.join(folder, 'extracted')
        subprocess.run(['chmls', 'extract', os.path.abspath(path), name, target], check=True, cwd=folder,
                       stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        with open(target, 'rb') as file:
            data = file.read()
        os.remove(target)
        return data

    with tempfile.TemporaryDirectory() as folder:
        table, texts = extract('/#IVB', folder), extract('/#STRINGS', folder)
        found = {}
        for at in range(4, len(table), 8):
            number, start = struct.unpack_from('<II', table, at)
            found[number] = texts[start:texts.index(b'\0', start)].decode('ascii')
        for name, numbers in topics():
            page = extract('/' + name, folder)
            if b'</html>' not in page or any(found.pop(number, None) != name for number in numbers):
                sys.exit(f'make_help.py: {name} cannot be read back from {path}')


def main(language, out):
    compiled = CompiledHelp(run_compiler(language))
    compiled.fix_stamps()
    number_topics(compiled)
    with open(out, 'wb') as file:
        file.write(compiled.data)
    check(out)


main(*sys.argv[1:])
