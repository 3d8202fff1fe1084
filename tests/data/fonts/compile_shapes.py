#!/usr/bin/env python3
"""Compiles shape definitions (.shp text) into compiled shape files (.shx).

Our own small compiler, for the test fonts beside it. It reads the usual
source form:

    *BIGFONT nchars,nranges,first1,last1,...   (big fonts only, first line)
    *UNIFONT,6,name                            (Unicode fonts: the font's record)
    above,below,modes,encoding,type,0
    *number,defbytes,name                      (each shape, shape 0 the font's)
    byte,byte,...,0

Numbers are decimal, or hexadecimal when written with a leading 0 ("012",
"0D6D0"); parentheses are only for reading; ";" starts a comment. The byte
count of each shape is computed (the one written is not checked).

Usage: compile_shapes.py SOURCE.shp OUTPUT.shx
"""

import struct
import sys


def number(token):
    token = token.strip().strip("()").strip()
    negative = token.startswith("-")
    if negative:
        token = token[1:]
    value = int(token, 16) if len(token) > 1 and token.startswith("0") else int(token)
    return -value if negative else value


def byte(value):
    if not -128 <= value <= 255:
        raise ValueError(f"{value} does not fit in a byte")
    return value & 0xFF


def read_source(path):
    """The header line (or None) and the shapes as (number, name, bytes)."""
    header = None
    shapes = []
    current = None
    with open(path, encoding="utf-8") as source:
        for raw in source:
            line = raw.split(";", 1)[0].strip()
            if not line:
                continue
            if line.upper().startswith("*BIGFONT"):
                header = ("bigfont", [number(t) for t in line[8:].split(",")])
                continue
            if line.upper().startswith("*UNIFONT"):
                header = ("unifont", None)
                current = [0, line.split(",", 2)[2].strip(), []]
                shapes.append(current)
                continue
            if line.startswith("*"):
                fields = line[1:].split(",", 2)
                current = [number(fields[0]), fields[2].strip() if len(fields) > 2 else "", []]
                shapes.append(current)
                continue
            current[2].extend(number(t) for t in line.replace("(", ",").replace(")", ",").split(",") if t.strip())
    kind = header[0] if header else "shapes"
    return header, [(n, name, encode(values, kind)) for n, name, values in shapes]


def encode(values, kind):
    """The bytes of one shape. Displacements are two's complement; the
    octant byte of an arc (code 10, 11) written negative keeps its digits
    and gets the high bit: "-012" is 0x92, clockwise."""
    out = [byte(v) for v in values]
    i = 0
    while i < len(values):
        code = values[i]
        i += 1
        if not 0 <= code < 16:
            continue
        if code in (3, 4):
            i += 1
        elif code == 7:
            if kind == "unifont":
                i += 2
            elif kind == "bigfont" and i < len(values) and values[i] == 0:
                i += 7
            else:
                i += 1
        elif code == 8:
            i += 2
        elif code in (9, 13):
            while i + 1 < len(values) and (values[i], values[i + 1]) != (0, 0):
                i += 3 if code == 13 else 2
            i += 2
        elif code in (10, 11):
            at = i + (1 if code == 10 else 4)
            if at < len(values) and values[at] < 0:
                out[at] = 0x80 | (-values[at] & 0x7F)
            i = at + 1
        elif code == 12:
            i += 3
    return out


def record(name, data, named=True):
    return (name.encode("latin-1") + b"\0" if named else b"") + bytes(data)


def compile_shapes(shapes):
    shapes = sorted(shapes, key=lambda s: s[0])
    records = [record(name, data) for _, name, data in shapes]
    numbers = [n for n, _, _ in shapes]
    out = b"AutoCAD-86 shapes 1.0\r\n\x1a"
    out += struct.pack("<HHH", min(numbers), max(numbers), len(shapes))
    for n, r in zip(numbers, records):
        out += struct.pack("<HH", n, len(r))
    return out + b"".join(records)


def compile_unifont(shapes):
    info = record(shapes[0][1], shapes[0][2])
    out = b"AutoCAD-86 unifont 1.0\r\n\x1a"
    out += struct.pack("<IH", len(shapes), len(info)) + info
    for n, name, data in shapes[1:]:
        r = record(name, data)
        out += struct.pack("<HH", n, len(r)) + r
    return out


def compile_bigfont(ranges, shapes):
    shapes = sorted(shapes, key=lambda s: s[0])
    # The font's record keeps its name; the characters' records do not.
    records = [record(name, data, named=(n == 0)) for n, name, data in shapes]
    out = b"AutoCAD-86 bigfont 1.0\r\n\x1a"
    header_size = 4 + 4 * len(ranges)
    out += struct.pack("<HHH", header_size, len(shapes), len(ranges))
    for first, last in ranges:
        out += struct.pack("<HH", first, last)
    offset = len(out) + 8 * len(shapes)
    for (n, _, _), r in zip(shapes, records):
        out += struct.pack("<HHI", n, len(r), offset)
        offset += len(r)
    return out + b"".join(records)


def main(source, output):
    header, shapes = read_source(source)
    if header is None:
        data = compile_shapes(shapes)
    elif header[0] == "unifont":
        data = compile_unifont(shapes)
    else:
        values = header[1]
        ranges = [(values[2 + 2 * i], values[3 + 2 * i]) for i in range(values[1])]
        data = compile_bigfont(ranges, shapes)
    with open(output, "wb") as out:
        out.write(data)


if __name__ == "__main__":
    main(sys.argv[1], sys.argv[2])
