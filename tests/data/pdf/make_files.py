#!/usr/bin/env python3
"""Writes the PDF files that our writer must refuse to import pages from:
well-formed PDFs of other shapes, written by hand here, and a file that is
no PDF at all. Run from this folder: python3 make_files.py"""

import zlib


def pdf(header, objects, trailer=b""):
    """A PDF of `objects` (bodies, numbered from 1) with a correct table;
    `trailer` adds entries to the trailer."""
    out = bytearray(header)
    offsets = []
    for number, body in enumerate(objects, start=1):
        offsets.append(len(out))
        out += b"%d 0 obj\n" % number + body + b"\nendobj\n"
    xref = len(out)
    out += b"xref\n0 %d\n0000000000 65535 f \n" % (len(objects) + 1)
    for offset in offsets:
        out += b"%010d 00000 n \n" % offset
    out += b"trailer\n<< /Size %d /Root 1 0 R%s >>\nstartxref\n%d\n%%%%EOF\n" % (
        len(objects) + 1, trailer, xref)
    return bytes(out)


def stream(data, deflated=False):
    if deflated:
        data = zlib.compress(data)
    return (b"<< /Length %d%s >>\nstream\n" % (len(data), b" /Filter /FlateDecode" if deflated
                                                 else b"") + data + b"\nendstream")


CONTENT = b"0 0 1 rg 10 10 100 50 re f"

# The smallest usual PDF: resources in the page, one content stream, no
# compression, no information dictionary.
with open("other-program.pdf", "wb") as f:
    f.write(pdf(b"%PDF-1.4\n", [
        b"<< /Type /Catalog /Pages 2 0 R >>",
        b"<< /Type /Pages /Kids [3 0 R] /Count 1 >>",
        b"<< /Type /Page /Parent 2 0 R /MediaBox [0 0 200 100] /Resources << >> "
        b"/Contents 4 0 R >>",
        stream(CONTENT),
    ]))

# Our header, table, information and deflated content, but the page in a
# page tree nested in the root one.
with open("nested-pages.pdf", "wb") as f:
    f.write(pdf(b"%PDF-1.5\n%\xe2\xe3\xcf\xd3\n", [
        b"<< /Type /Catalog /Pages 2 0 R >>",
        b"<< /Type /Pages /Kids [3 0 R] /Count 1 >>",
        b"<< /Type /Pages /Parent 2 0 R /Kids [4 0 R] /Count 1 >>",
        b"<< /Type /Page /Parent 3 0 R /MediaBox [0 0 200 100] /Resources 5 0 R "
        b"/Contents [6 0 R] >>",
        b"<< >>",
        stream(CONTENT, deflated=True),
        b"<< /Producer (Sheafwork) >>",
    ], trailer=b" /Info 7 0 R"))

with open("not-a-pdf.pdf", "wb") as f:
    f.write(b"Ceci n'est pas un PDF.\n" * 20)
