"""Cuts the debug sections off Windows programs: strip_debug.py FOLDER

They stand behind all others, with long names (written "/NUMBER") and marked as discardable, so the file is cut before the
first of them. The strip program of newer binutils changes the flags of the other sections as well: with a read-only import
table Wine cannot load its own programs. Files that are no such programs stay as they are.
"""
import os
import struct
import sys

HEADER, SECTION = 24, 40  # bytes of the signature with the file header, and of a section's entry
DISCARDABLE = 0x02000000


def is_debug(entry):
    return entry.startswith(b"/") and struct.unpack_from("<I", entry, 36)[0] & DISCARDABLE != 0


def stripped(data):
    """The program without its debug sections; None when there is nothing to cut."""
    if data[:2] != b"MZ" or len(data) < 0x40:
        return None
    start = struct.unpack_from("<I", data, 0x3C)[0]
    if data[start:start + 4] != b"PE\0\0":
        return None
    count, optional_size = struct.unpack_from("<H12xH", data, start + 6)
    table = start + HEADER + optional_size
    entries = [data[at:at + SECTION] for at in range(table, table + SECTION * count, SECTION)]
    kept = count
    while kept > 0 and is_debug(entries[kept - 1]):
        kept -= 1
    if kept == count:
        return None
    end = min(offset for offset in (struct.unpack_from("<I", entry, 20)[0] for entry in entries[kept:]) if offset)
    first_address = struct.unpack_from("<I", entries[kept], 12)[0]
    result = bytearray(data[:end])
    struct.pack_into("<H", result, start + 6, kept)
    struct.pack_into("<II", result, start + 12, 0, 0)  # the symbol table lay behind the sections
    struct.pack_into("<I", result, start + HEADER + 56, first_address)  # the size of the image
    result[table + SECTION * kept:table + SECTION * count] = bytes(SECTION * (count - kept))
    return bytes(result)


def main():
    for folder, _, names in os.walk(sys.argv[1]):
        for name in names:
            path = os.path.join(folder, name)
            with open(path, "rb") as file:
                result = stripped(file.read())
            if result is not None:
                with open(path, "wb") as file:
                    file.write(result)


if __name__ == "__main__":
    main()
