#!/usr/bin/env python3
"""Writes the binary DXF files of this folder, tag by tag, for the tests of
the tokenizer (tests/embedded/dxf/reader_test.cpp). Release 12 files give
group codes in one byte (255 then two bytes for larger codes), later ones in
two; strings end with a zero byte, numbers are little-endian."""

import struct
from pathlib import Path

HERE = Path(__file__).resolve().parent
SENTINEL = b"AutoCAD Binary DXF\r\n\x1a\x00"


class Writer:
    def __init__(self, short_codes):
        self.short = short_codes
        self.data = bytearray(SENTINEL)

    def code(self, code):
        if self.short and code < 255:
            self.data.append(code)
        else:
            if self.short:
                self.data.append(0xFF)
            self.data += struct.pack("<H", code)
        return self

    def string(self, code, text):
        self.code(code)
        self.data += text.encode() + b"\x00"
        return self

    def value(self, code, fmt, number):
        self.code(code)
        self.data += struct.pack("<" + fmt, number)
        return self


def sample(short_codes, version):
    w = Writer(short_codes)
    w.string(0, "SECTION").string(2, "HEADER").string(9, "$ACADVER").string(1, version)
    w.value(10, "d", 2.5).value(70, "h", -3).value(90, "i", 70000)
    w.string(1001, "ACAD").value(1070, "h", 7)
    return w


short = sample(True, "AC1009").string(0, "EOF").string(1, "after the end")
(HERE / "short-codes.dxf").write_bytes(short.data)
long = sample(False, "AC1015").value(290, "B", 1).string(0, "EOF").string(1, "after the end")
(HERE / "long-codes.dxf").write_bytes(long.data)
for short_codes, name in ((True, "short-codes-no-version.dxf"), (False, "long-codes-no-version.dxf")):
    w = Writer(short_codes).string(0, "SECTION").string(2, "ENTITIES").string(0, "ENDSEC")
    (HERE / name).write_bytes(w.data)
# Cut inside the double of code 10.
cut = sample(False, "AC1015").data
(HERE / "value-cut.dxf").write_bytes(cut[: cut.find(b"AC1015") + 7 + 2 + 3])
# A string without its final zero byte.
(HERE / "string-unterminated.dxf").write_bytes(sample(False, "AC1015").string(1, "no end").data[:-1])
