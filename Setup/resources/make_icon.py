#!/usr/bin/env python3
"""Draws setup.ico: a white sigma over a fraction bar on a rounded blue tile, in 16, 32 and 48 pixels.

Usage: make_icon.py setup.ico
Sixteen colours from the tile's blue to white do for the smooth edges and keep the file below 3 KB; the tile's corners
are cut by the mask, which every Windows understands. The result is committed: run this only to change the drawing.
"""
import struct
import sys

SIZES = (16, 32, 48)
SAMPLES = 8  # per pixel and direction
BLUE, WHITE = (0x1F, 0x4E, 0x9E), (0xFF, 0xFF, 0xFF)

# In a tile of 1 by 1, y down.
SIGMA = [(.28, .16), (.73, .16), (.73, .29), (.68, .29), (.66, .24), (.45, .24), (.58, .41), (.44, .58),
         (.67, .58), (.69, .52), (.74, .52), (.73, .66), (.28, .66), (.28, .60), (.44, .41), (.28, .21)]
BAR = [(.18, .75), (.82, .75), (.82, .82), (.18, .82)]
RADIUS = .17


def inside(polygon, x, y):
    result = False
    for (x1, y1), (x2, y2) in zip(polygon, polygon[1:] + polygon[:1]):
        if (y1 > y) != (y2 > y) and x < x1 + (y - y1) * (x2 - x1) / (y2 - y1):
            result = not result
    return result


def in_tile(x, y):
    dx = max(RADIUS - x, x - (1 - RADIUS), 0)
    dy = max(RADIUS - y, y - (1 - RADIUS), 0)
    return dx * dx + dy * dy <= RADIUS * RADIUS


def coverage(size, column, row, test):
    hits = sum(test((column + (i + .5) / SAMPLES) / size, (row + (j + .5) / SAMPLES) / size)
               for i in range(SAMPLES) for j in range(SAMPLES))
    return hits / SAMPLES ** 2


def image(size):
    pixel_stride, mask_stride = (size + 7) // 8 * 4, (size + 31) // 32 * 4
    pixels, mask = bytearray(), bytearray()
    for row in reversed(range(size)):
        line, cut = bytearray(pixel_stride), bytearray(mask_stride)
        for column in range(size):
            if coverage(size, column, row, in_tile) < .5:
                cut[column // 8] |= 0x80 >> column % 8
                shade = 15  # the last colour is black: the mask then leaves the background as it is
            else:
                white = coverage(size, column, row, lambda x, y: inside(SIGMA, x, y) or inside(BAR, x, y))
                shade = round(white * 14)
            line[column // 2] |= shade << (0 if column % 2 else 4)
        pixels += line
        mask += cut
    palette = b''.join(struct.pack('<3Bx', *(round(b + (w - b) * i / 14) for b, w in zip(BLUE[::-1], WHITE[::-1])))
                       for i in range(15)) + bytes(4)
    header = struct.pack('<IiiHHIIiiII', 40, size, size * 2, 1, 4, 0, len(pixels) + len(mask), 0, 0, 16, 0)
    return header + palette + bytes(pixels) + bytes(mask)


def main():
    images = [image(size) for size in SIZES]
    offset = 6 + 16 * len(images)
    directory = struct.pack('<HHH', 0, 1, len(images))
    for size, data in zip(SIZES, images):
        directory += struct.pack('<BBBBHHII', size, size, 16, 0, 1, 4, len(data), offset)
        offset += len(data)
    with open(sys.argv[1], 'wb') as out:
        out.write(directory + b''.join(images))


main()
