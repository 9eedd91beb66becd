#!/usr/bin/env python3
"""Lays out the sample distribution: programs, generated product files, compressed files, fonts and setup.inf.

Everything depends on the inputs only, so the same inputs give the same bytes. The folder is made beside its final place
and then put there, so that a broken build leaves no half of it.
"""
import argparse
import os
import re
import shutil
import struct
import subprocess
import sys
import tempfile

# ---- what the product consists of ----

FORMULAS = {
    'Algebre': [
        ('Binome', r'(a+b)^2 = a^2 + 2ab + b^2'),
        ('Discriminant', r'x = \frac{-b \pm \sqrt{b^2-4ac}}{2a}'),
        ('Geometrique', r'\sum_{k=0}^{n} q^k = \frac{1-q^{n+1}}{1-q}'),
        ('Determinant', r'\det A = \sum_{\sigma} \epsilon(\sigma) \prod_{i} a_{i,\sigma(i)}'),
        ('Newton', r'(a+b)^n = \sum_{k=0}^{n} \binom{n}{k} a^k b^{n-k}'),
        ('Logarithme', r'\ln(ab) = \ln a + \ln b'),
    ],
    'Analyse': [
        ('Derivee', r"f'(x) = \lim_{h \to 0} \frac{f(x+h)-f(x)}{h}"),
        ('Parties', r"\int_a^b u v' = [uv]_a^b - \int_a^b u' v"),
        ('Taylor', r'f(x) = \sum_{k=0}^{\infty} \frac{f^{(k)}(a)}{k!} (x-a)^k'),
        ('Gauss', r'\int_{-\infty}^{\infty} e^{-x^2} dx = \sqrt{\pi}'),
        ('Fourier', r'\hat f(\xi) = \int f(x) e^{-2 i \pi x \xi} dx'),
        ('Euler', r'e^{i \pi} + 1 = 0'),
    ],
    'Geometrie': [
        ('Pythagore', r'a^2 + b^2 = c^2'),
        ('Sinus', r'\frac{a}{\sin A} = \frac{b}{\sin B} = \frac{c}{\sin C}'),
        ('Disque', r'S = \pi r^2'),
        ('Boule', r'V = \frac{4}{3} \pi r^3'),
        ('Ellipse', r'\frac{x^2}{a^2} + \frac{y^2}{b^2} = 1'),
    ],
    'Physique': [
        ('Newton', r'F = m a'),
        ('Energie', r'E = m c^2'),
        ('Coulomb', r'F = \frac{1}{4 \pi \epsilon_0} \frac{q_1 q_2}{r^2}'),
        ('Schrodinger', r'i \hbar \frac{\partial \psi}{\partial t} = H \psi'),
        ('Snell', r'n_1 \sin \theta_1 = n_2 \sin \theta_2'),
    ],
}
TOPICS = [
    ('Sommaire', 'Sommaire', "Cette aide présente l'éditeur d'équations Veltrane."),
    ('Fractions', 'Fractions', 'Choisissez Fraction dans la palette, puis tapez le numérateur et le dénominateur.'),
    ('Racines', 'Racines', "Choisissez Racine dans la palette, puis tapez l'expression."),
    ('Indices', 'Indices et exposants', "Tapez Ctrl+H pour un exposant, Ctrl+L pour un indice."),
    ('Sommes', 'Sommes et produits', 'Les bornes se tapent au-dessus et au-dessous du signe.'),
    ('Integrales', 'Intégrales', 'Choisissez le nombre de signes, puis tapez les bornes.'),
    ('Matrices', 'Matrices', 'Indiquez le nombre de lignes et de colonnes.'),
    ('Grec', 'Lettres grecques', 'Tapez Ctrl+G puis la lettre latine correspondante.'),
    ('Polices', 'Polices', "Les styles d'une équation se règlent dans le menu Style."),
    ('Export', 'Exporter', 'Un traducteur écrit une équation en TeX, en MathML ou en texte.'),
]
PICTURES = ['Fraction', 'Racine', 'Exposant', 'Somme', 'Integrale', 'Matrice']
TRANSLATORS = [r'TeX\LaTeX', r'TeX\AMSTeX', r'TeX\PlainTeX', r'Web\MathML', r'Web\HTML', r'Texte\Unicode']
STYLES = {'Article': (12, 8, 6), 'Livre': (11, 8, 6), 'Affiche': (36, 24, 18), 'Utilisateur': (12, 7, 5)}
EXAMPLES = ['Cours', 'Devoir', 'Article']
FONTS = ['LiberationMono-Regular', 'LiberationMono-Bold', 'LiberationSerif-Italic', 'LiberationSans-Regular']


def text(lines):
    return ('\r\n'.join(lines) + '\r\n').encode('cp1252')


def equation_file(folder, name, formula):
    return text(['VELTRANE EQUATION 6', 'Categorie=' + folder, 'Nom=' + name, 'TeX=' + formula])


def help_page(title, body):
    return text(['<html><head>', '<meta http-equiv="Content-Type" content="text/html; charset=windows-1252">',
                 f'<title>{title}</title></head>', f'<body><h1>{title}</h1>', f'<p>{body}</p>',
                 '<p><a href="Sommaire.htm">Sommaire</a></p></body></html>'])


def picture(number):
    """A two-colour bitmap of 32 by 32: rings whose width depends on the number."""
    rows = bytearray()
    for y in range(32):
        bits = 0
        for x in range(32):
            distance = (2 * x - 31) ** 2 + (2 * y - 31) ** 2
            bits = bits << 1 | (distance // (60 + 40 * number) % 2)
        rows += struct.pack('>I', bits)
    header = struct.pack('<IiiHHIIiiII', 40, 32, 32, 1, 1, 0, len(rows), 0, 0, 2, 0)
    colours = struct.pack('<II', 0x00FFFFFF, 0x009E4E1F)
    offset = 14 + len(header) + len(colours)
    return struct.pack('<2sIHHI', b'BM', offset + len(rows), 0, 0, offset) + header + colours + bytes(rows)


def translator(name):
    return text([f'// {name.split(chr(92))[-1]}: traducteur de Veltrane', f'nom = "{name}"'] +
                [f'symbole {code:04X} = "&#{code};"' for code in range(0x3B1, 0x3CA)])


def style(name, sizes):
    keys = ['Full', 'Subscript', 'SubSubscript']
    return text(['; Veltrane INI v1: Equation Preferences', '', '[Sizes]'] +
                [f'{key}={size} pt' for key, size in zip(keys, sizes)] +
                ['', '[Styles]', 'Text=Liberation Serif,I', 'Function=Liberation Sans,N', 'User1=Liberation Mono,N'])


def dictionary():
    """Names of characters: long and repetitive, so that compressing it pays."""
    import unicodedata
    lines = []
    for code in list(range(0x370, 0x400)) + list(range(0x2190, 0x2300)):
        name = unicodedata.name(chr(code), '')
        if name:
            lines.append(f'{code:04X};{name}')
    return text(lines)


def macro_file(name):
    """Stands in for a macro file: Office would not load it, and setup only copies it."""
    return b'\xD0\xCF\x11\xE0\xA1\xB1\x1A\xE1' + name.encode('ascii').ljust(504, b'\0')


def type1_outline():
    """The first segment of a Type 1 outline file: enough for its name and version to be read."""
    body = b'%!PS-AdobeFont-1.0: VTSymb 006.000\r%%CreationDate: 2007\r/FontName /VTSymb def\r'
    return struct.pack('<BBI', 0x80, 1, len(body)) + body + b'\x80\x03'


def type1_metrics():
    """A printer font metrics file: 117 bytes of header, 30 of extension, then the names."""
    face, driver_name = b'VT Symbol\0', b'VTSymb\0'
    names = 117 + 30
    size = names + len(face) + len(driver_name)
    header = struct.pack('<HI60s', 0x100, size, b'Quorvale')
    header += struct.pack('<7H3B', 0x81, 10, 300, 300, 750, 250, 0, 0, 0, 0)
    header += struct.pack('<HB', 400, 2)
    header += struct.pack('<HHB', 0, 1000, 0x10)
    header += struct.pack('<HH4BH', 500, 1000, 32, 255, 0, 0, 0)
    header += struct.pack('<IIII', 0, names, 0, 0)
    header += b'\0' * (117 - len(header))
    extension = struct.pack('<HIIIIIII', 30, 0, 0, 0, 0, 0, names + len(face), 0)
    return header + extension + face + driver_name


# ---- laying it out ----

class Distribution:
    """Files by section of setup.inf, in the order in which they are added."""

    def __init__(self, folder, mscompress):
        self.folder = folder
        self.mscompress = mscompress
        self.sections = {}
        self.keys = set()

    def add(self, section, path, data, compress=False, prefix='', listed=True):
        """path: below the distribution folder and below <ProgDir> alike, with backslashes."""
        assert path.isascii(), path
        target = os.path.join(self.folder, *path.split('\\'))
        os.makedirs(os.path.dirname(target), exist_ok=True)
        with open(target, 'wb') as out:
            out.write(data)
        source = self.compressed(path, target) if compress else path
        if listed:
            key = re.sub('[^a-z0-9]+', '_', path.lower())
            assert key not in self.keys, key
            self.keys.add(key)
            self.sections.setdefault(section, []).append((key, source, prefix + '<ProgDir>\\' + path, len(data)))

    def compressed(self, path, target):
        """Replaces name.ext by name.ex_, with the lost letter where the expander looks for it."""
        subprocess.run([self.mscompress, os.path.basename(target)], cwd=os.path.dirname(target), check=True,
                       stdout=subprocess.DEVNULL)
        with open(target + '_', 'rb') as packed:
            data = bytearray(packed.read())
        data[9] = ord(target[-1])
        os.remove(target)
        os.remove(target + '_')
        with open(target[:-1] + '_', 'wb') as out:
            out.write(data)
        return path[:-1] + '_'

    def script(self, template):
        lists, records = [], []
        for section, files in self.sections.items():
            lists += [f'[{section}]'] + [key for key, *_ in files] + ['']
            records += [f'{key}=1,{source},{dest},{size}' for key, source, dest, size in files]
        return template.replace('@FILE_SECTIONS@', '\n'.join(lists + ['[files]'] + records))


def read(path):
    with open(path, 'rb') as file:
        return file.read()


def add_product(dist, options):
    def program(name):
        return read(os.path.join(options.programs, name))

    dist.add('product_files', 'Veltrane.exe', program('Veltrane.exe'), compress=True)
    dist.add('product_files', 'VTHelper.dll', program('VTHelper.dll'), compress=True)
    dist.add('product_files', r'Commun\VTShare.dll', program('VTShare.dll'))
    for language in options.languages:
        dist.add('product_files', f'VT6{language}.dll', program(f'VT6{language}.dll'))
    dist.add('product_files', 'Lisezmoi.txt', hand_written(options, 'Lisezmoi.txt'))
    dist.add('product_files', 'Licence.txt', hand_written(options, 'Licence.txt'), compress=True)
    dist.add('product_files', 'Dictionnaire.dat', dictionary(), compress=True)
    dist.add('product_files', 'Produit.id', text(['KVRX6', '6.0', '200707050000']), prefix='*')
    for name, title, body in TOPICS:
        dist.add('product_files', rf'Aide\{name}.htm', help_page(title, body), compress=True)
    for number, name in enumerate(PICTURES):
        dist.add('product_files', rf'Aide\Images\{name}.bmp', picture(number))
    for folder, formulas in FORMULAS.items():
        for name, formula in formulas:
            dist.add('product_files', rf'Modeles\{folder}\{name}.vteq', equation_file(folder, name, formula))
    for name in TRANSLATORS:
        dist.add('product_files', rf'Traducteurs\{name}.tdl', translator(name))
    for name in EXAMPLES:
        dist.add('product_files', rf'Exemples\{name}.txt', text([f'Exemple : {name}', '', FORMULAS['Analyse'][0][1]]))
    for name in ['Veltrane.dot', 'Veltrane Formats.dot', 'Veltrane.dotm', 'Veltrane Formats.dotm']:
        dist.add('product_files', rf'Macros\Word\{name}', macro_file(name))
    for name in ['Veltrane.ppa', 'Veltrane.ppam']:
        dist.add('product_files', rf'Macros\PowerPoint\{name}', macro_file(name))


def hand_written(options, name):
    with open(os.path.join(options.source, 'files', name), encoding='utf-8') as file:
        return text(file.read().splitlines())


def add_fonts(dist, options):
    for name in FONTS:
        path = os.path.join(options.fonts, name + '.ttf')
        if not os.path.exists(path):
            sys.exit(f'make_dist.py: {path} is missing: install the package fonts-liberation')
        dist.add('font_files', rf'Polices\{name}.ttf', read(path))
    dist.add('font_files', r'Polices\PostScript\VTSymb.pfb', type1_outline())
    dist.add('font_files', r'Polices\PostScript\VTSymb.pfm', type1_metrics())


def add_preferences(dist):
    for name, sizes in STYLES.items():
        dist.add('user_files', rf'Preferences\{name}.eqp', style(name, sizes),
                 prefix='?' if name == 'Utilisateur' else '')


def add_setup(dist, options):
    """setup.inf lists itself, so its size must be known before it is written: the number is filled in until it fits."""
    with open(os.path.join(options.source, 'setup.inf.in'), encoding='ascii') as file:
        template = file.read()
    for language in options.languages:
        name = f'VTsu6{language}.dll'
        dist.add('setup_texts', name, read(os.path.join(options.bin, name)))
        name = f'setup_{language}.chm'
        dist.add('setup_texts', name, read(os.path.join(options.help, name)))
    dist.add('setup_program', 'Setup.exe', read(os.path.join(options.bin, 'Setup.exe')))
    entries = dist.sections['setup_program']
    entries.append(None)
    size, script = 0, b''
    while not script or len(script) != size:
        size = len(script)
        entries[-1] = ('setup_inf', 'setup.inf', '<ProgDir>\\setup.inf', size)
        script = text(dist.script(template).splitlines())
    with open(os.path.join(dist.folder, 'setup.inf'), 'wb') as out:
        out.write(script)


def put(made, out):
    """Replaces what is in the folder, but not the folder itself: somebody may stand in it."""
    os.makedirs(out, exist_ok=True)
    for name in os.listdir(out):
        path = os.path.join(out, name)
        if os.path.isdir(path) and not os.path.islink(path):
            shutil.rmtree(path)
        else:
            os.remove(path)
    for name in os.listdir(made):
        os.rename(os.path.join(made, name), os.path.join(out, name))


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument('--source', required=True, help='the folder dist/ of the sources')
    parser.add_argument('--bin', required=True, help='where Setup.exe and its language libraries are')
    parser.add_argument('--programs', required=True, help="where the product's programs are")
    parser.add_argument('--help-files', dest='help', required=True, help='where the compiled help files are')
    parser.add_argument('--fonts', required=True, help='the folder of the TrueType fonts')
    parser.add_argument('--languages', nargs='+', required=True)
    parser.add_argument('--mscompress', default='mscompress')
    parser.add_argument('--out', required=True)
    options = parser.parse_args()
    parent = os.path.dirname(os.path.abspath(options.out))
    os.makedirs(parent, exist_ok=True)
    with tempfile.TemporaryDirectory(dir=parent, prefix='.dist-') as folder:
        dist = Distribution(folder, options.mscompress)
        add_product(dist, options)
        add_fonts(dist, options)
        add_preferences(dist)
        add_setup(dist, options)
        put(folder, options.out)


main()
