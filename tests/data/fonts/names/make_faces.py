#!/usr/bin/env python3
"""Writes the small font files of this folder: only the tables that say
what a face is called and what it looks like ('name', 'head', 'hhea',
'OS/2'), no glyphs. Run it here: python3 make_faces.py"""
import struct


def name_table(records):
    # records: (platform, encoding, language, name id, text)
    strings = b""
    entries = []
    for platform, encoding, language, name_id, text in records:
        data = text.encode("utf-16-be") if platform != 1 else text.encode("latin-1")
        entries.append((platform, encoding, language, name_id, len(data), len(strings)))
        strings += data
    header = struct.pack(">HHH", 0, len(entries), 6 + 12 * len(entries))
    return header + b"".join(struct.pack(">6H", *e) for e in entries) + strings


def head(upem, mac_style):
    return struct.pack(">IIIIHHqqhhhhHHhhh", 0x10000, 0x10000, 0, 0x5F0F3CF5, 0, upem, 0, 0,
                       0, 0, 0, 0, mac_style, 8, 2, 0, 0)


def hhea(ascender, descender):
    return struct.pack(">Ihhh", 0x10000, ascender, descender, 0) + bytes(26)


def os2(version, weight, selection, cap_height):
    table = struct.pack(">HhHH", version, 500, weight, 5) + bytes(54)  # up to achVendID's end
    table += struct.pack(">HHHhhhHH", selection, 32, 126, 800, -200, 0, 900, 250)
    table += struct.pack(">II", 1, 0)
    if version >= 2:
        table += struct.pack(">hhHHH", 500, cap_height, 0, 32, 0)
    return table


def sfnt(tables, start=0):
    tags = sorted(tables)
    offset = start + 12 + 16 * len(tags)
    directory = struct.pack(">IHHHH", 0x10000, len(tags), 0, 0, 0)
    body = b""
    for tag in tags:
        data = tables[tag]
        directory += struct.pack(">4sIII", tag.encode(), 0, offset + len(body), len(data))
        body += data + bytes(-len(data) % 4)
    return directory + body


def face(family, subfamily, typographic=None, weight=400, selection=0x40, mac_style=0,
         upem=2048, cap_height=1456, mac_only=False, os2_version=4):
    if mac_only:
        names = [(1, 0, 0, 1, family), (1, 0, 0, 2, subfamily)]
    else:
        names = [(1, 0, 0, 1, "Mac " + family), (3, 1, 0x40C, 1, "Français " + family),
                 (3, 1, 0x409, 1, family), (3, 1, 0x409, 2, subfamily)]
        if typographic:
            names.append((3, 1, 0x409, 16, typographic))
    return {"name": name_table(names), "head": head(upem, mac_style),
            "hhea": hhea(1901, -483), "OS/2": os2(os2_version, weight, selection, cap_height)}


def write(path, data):
    with open(path, "wb") as f:
        f.write(data)


write("regular.ttf", sfnt(face("Essai Sans", "Regular")))
first = face("Paire", "Regular", upem=1000)
second = face("Paire", "Bold", weight=700, selection=0x20, upem=1000)
one = sfnt(first, 20)
two = sfnt(second, 20 + len(one))
write("pair.ttc", b"ttcf" + struct.pack(">HHIII", 1, 0, 2, 20, 20 + len(one)) + one + two)
