#!/usr/bin/env python3
"""Writes the broken plot style tables of this folder from the shipped
monochrome.ctb: each is damaged in one way a real file can be."""
import pathlib
import struct

here = pathlib.Path(__file__).resolve().parent
good = (here.parents[3] / "data" / "plotstyles" / "monochrome.ctb").read_bytes()
header, body = good[:60], good[60:]
checksum, text_size, compressed_size = struct.unpack("<III", header[48:60])

# Cut short in the middle of its compressed data.
(here / "truncated.ctb").write_bytes(good[: 60 + len(body) // 2])
# A header that announces a text twice as long as the one it holds.
(here / "lying.ctb").write_bytes(
    header[:48] + struct.pack("<III", checksum, text_size * 2, compressed_size) + body)
# Compressed data overwritten in its middle.
damaged = bytearray(good)
for i in range(60 + 8, 60 + 40):
    damaged[i] = 0x55
(here / "damaged.ctb").write_bytes(bytes(damaged))
# Not a table at all.
(here / "notes.ctb").write_bytes(b"Ceci n'est pas une table de styles de trac\xe9.\r\n" * 3)
