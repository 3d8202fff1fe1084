#!/usr/bin/env python3
"""Writes the same small pictures (python.ppm, .pgm, .pbm) in the PNG, BMP and
TIFF variants the raster decoders read, and the pictures of the transparent
PNG files laid over white. Run from this folder: python3 make_variants.py"""

import struct
import zlib


def read_pnm(name):
    data = open(name, "rb").read()
    fields, at = [], 0
    while len(fields) < (3 if data[:2] == b"P4" else 4):
        while data[at:at + 1].isspace():
            at += 1
        start = at
        while not data[at:at + 1].isspace():
            at += 1
        fields.append(data[start:at])
    at += 1
    w, h = int(fields[1]), int(fields[2])
    if fields[0] == b"P6":
        raw = data[at:at + w * h * 3]
        return w, h, [tuple(raw[i:i + 3]) for i in range(0, w * h * 3, 3)]
    if fields[0] == b"P5":
        return w, h, [(v, v, v) for v in data[at:at + w * h]]
    stride = (w + 7) // 8  # P4: 1 is black
    px = []
    for y in range(h):
        for x in range(w):
            bit = data[at + y * stride + x // 8] >> (7 - x % 8) & 1
            px.append((0, 0, 0) if bit else (255, 255, 255))
    return w, h, px


def write_ppm(name, w, h, px):
    open(name, "wb").write(b"P6\n%d %d\n255\n" % (w, h) + bytes(c for p in px for c in p))


# ---------------------------------------------------------------- PNG

def chunk(kind, body):
    return struct.pack(">I", len(body)) + kind + body + struct.pack(">I", zlib.crc32(kind + body))


def pack_bits(values, depth):
    out, acc, n = bytearray(), 0, 0
    for v in values:
        acc = acc << depth | v
        n += depth
        if n == 8:
            out.append(acc)
            acc, n = 0, 0
    if n:
        out.append(acc << (8 - n))
    return bytes(out)


def png_row(samples, depth):
    if depth == 16:
        return b"".join(struct.pack(">H", s) for s in samples)
    if depth == 8:
        return bytes(samples)
    return pack_bits(samples, depth)


def paeth_filter(row, prior, bpp):
    out = bytearray()
    for i, x in enumerate(row):
        a = row[i - bpp] if i >= bpp else 0
        b = prior[i]
        c = prior[i - bpp] if i >= bpp else 0
        p = a + b - c
        pa, pb, pc = abs(p - a), abs(p - b), abs(p - c)
        pred = a if pa <= pb and pa <= pc else (b if pb <= pc else c)
        out.append((x - pred) & 255)
    return bytes(out)


def write_png(name, w, h, pixel_samples, depth, color_type, channels, extra=b"", interlace=False):
    """pixel_samples(x, y) -> tuple of samples; rows filtered in turn with
    filters 0 to 4 so that every filter is read."""
    bpp = max(1, channels * depth // 8)

    def rows_of(xs, ys):
        raw, prior, n = bytearray(), None, 0
        for y in ys:
            row = png_row([s for x in xs for s in pixel_samples(x, y)], depth)
            prior = prior or bytes(len(row))
            f = n % 5
            if f == 0:
                body = row
            elif f == 1:
                body = bytes((row[i] - (row[i - bpp] if i >= bpp else 0)) & 255 for i in range(len(row)))
            elif f == 2:
                body = bytes((row[i] - prior[i]) & 255 for i in range(len(row)))
            elif f == 3:
                body = bytes((row[i] - ((row[i - bpp] if i >= bpp else 0) + prior[i]) // 2) & 255
                             for i in range(len(row)))
            else:
                body = paeth_filter(row, prior, bpp)
            raw += bytes([f]) + body
            prior, n = row, n + 1
        return raw

    if interlace:
        raw = bytearray()
        for x0, y0, dx, dy in [(0, 0, 8, 8), (4, 0, 8, 8), (0, 4, 4, 8), (2, 0, 4, 4),
                               (0, 2, 2, 4), (1, 0, 2, 2), (0, 1, 1, 2)]:
            xs, ys = list(range(x0, w, dx)), list(range(y0, h, dy))
            if xs and ys:
                raw += rows_of(xs, ys)
    else:
        raw = rows_of(list(range(w)), list(range(h)))
    ihdr = struct.pack(">IIBBBBB", w, h, depth, color_type, 0, 0, 1 if interlace else 0)
    open(name, "wb").write(b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", ihdr) + extra +
                           chunk(b"IDAT", zlib.compress(bytes(raw))) + chunk(b"IEND", b""))


# ---------------------------------------------------------------- BMP

def write_bmp(name, w, h, px, depth, top_down=False):
    palette = sorted(set(px)) if depth <= 8 else []
    index = {c: i for i, c in enumerate(palette)}
    stride = (w * depth + 31) // 32 * 4
    rows = []
    for y in range(h):
        line = [px[y * w + x] for x in range(w)]
        if depth == 24:
            data = b"".join(bytes((b, g, r)) for r, g, b in line)
        else:
            data = pack_bits([index[c] for c in line], depth) if depth < 8 else bytes(index[c] for c in line)
        rows.append(data + bytes(stride - len(data)))
    if not top_down:
        rows.reverse()
    pal = b"".join(bytes((b, g, r, 0)) for r, g, b in palette)
    offset = 14 + 40 + len(pal)
    header = struct.pack("<IiiHHIIiiII", 40, w, -h if top_down else h, 1, depth, 0,
                         stride * h, 2835, 2835, len(palette), 0)
    body = header + pal + b"".join(rows)
    open(name, "wb").write(b"BM" + struct.pack("<IHHI", 14 + len(body), 0, 0, offset) + body)


# ---------------------------------------------------------------- TIFF

def lzw(data):
    out, acc, nbits, width = bytearray(), 0, 0, 9

    def emit(code):
        nonlocal acc, nbits
        acc = acc << width | code
        nbits += width
        while nbits >= 8:
            out.append(acc >> (nbits - 8) & 255)
            nbits -= 8

    table = {bytes([i]): i for i in range(256)}
    nxt = 258
    emit(256)
    w = b""
    for c in data:
        wc = w + bytes([c])
        if wc in table:
            w = wc
            continue
        emit(table[w])
        table[wc] = nxt
        nxt += 1
        if nxt > (1 << width) - 1 and width < 12:
            width += 1
        w = bytes([c])
    if w:
        emit(table[w])
    emit(257)
    if nbits:
        out.append(acc << (8 - nbits) & 255)
    return bytes(out)


def packbits(data):
    out, i = bytearray(), 0
    while i < len(data):
        run = 1
        while i + run < len(data) and run < 128 and data[i + run] == data[i]:
            run += 1
        if run > 1:
            out += bytes([257 - run, data[i]])
            i += run
            continue
        start = i
        while i < len(data) and i - start < 128 and (i + 1 >= len(data) or data[i + 1] != data[i]):
            i += 1
        out += bytes([i - start - 1]) + data[start:i]
    return bytes(out)


def write_tiff(name, w, h, rows, samples, bits, photometric, compression, little=True,
               predictor=1, colormap=None, rows_per_strip=5):
    """rows: list of already packed rows (bytes)."""
    e = "<" if little else ">"
    if predictor == 2:
        step = samples
        rows = [bytes(r[i] - (r[i - step] if i >= step else 0) & 255 for i in range(len(r))) for r in rows]
    strips = []
    for s in range(0, h, rows_per_strip):
        data = b"".join(rows[s:s + rows_per_strip])
        if compression == 5:
            data = lzw(data)
        elif compression == 32773:
            data = b"".join(packbits(r) for r in rows[s:s + rows_per_strip])
        elif compression == 8:
            data = zlib.compress(data)
        strips.append(data)
    blob = bytearray(b"II*\0" if little else b"MM\0*") + struct.pack(e + "I", 0)
    offsets = []
    for data in strips:
        offsets.append(len(blob))
        blob += data
        if len(blob) % 2:
            blob += b"\0"
    extra = {}

    def put(values, fmt):
        if len(blob) % 2:
            blob.append(0)
        at = len(blob)
        blob.extend(struct.pack(e + fmt * len(values), *values))
        return at

    entries = [(256, 4, [w]), (257, 4, [h]), (258, 3, [bits] * samples), (259, 3, [compression]),
               (262, 3, [photometric]), (273, 4, offsets), (277, 3, [samples]),
               (278, 4, [rows_per_strip]), (279, 4, [len(s) for s in strips]), (284, 3, [1])]
    if predictor != 1:
        entries.append((317, 3, [predictor]))
    if colormap:
        entries.append((320, 3, colormap))
    entries.sort()
    for tag, typ, values in entries:
        size = 2 if typ == 3 else 4
        if size * len(values) > 4:
            extra[tag] = put(values, "H" if typ == 3 else "I")
    if len(blob) % 2:
        blob.append(0)
    ifd = len(blob)
    struct.pack_into(e + "I", blob, 4, ifd)
    blob += struct.pack(e + "H", len(entries))
    for tag, typ, values in entries:
        size = 2 if typ == 3 else 4
        if tag in extra:
            blob += struct.pack(e + "HHII", tag, typ, len(values), extra[tag])
        else:
            field = struct.pack(e + ("H" if typ == 3 else "I") * len(values), *values)
            blob += struct.pack(e + "HHI", tag, typ, len(values)) + field + bytes(4 - len(field))
    blob += struct.pack(e + "I", 0)
    open(name, "wb").write(bytes(blob))


def read_palette_png(name):
    """An 8-bit palette PNG without interlacing (python.png), its tRNS alpha
    included: (w, h, [(r, g, b, a)])."""
    data = open(name, "rb").read()
    at, chunks = 8, {}
    while at < len(data):
        length, kind = struct.unpack(">I4s", data[at:at + 8])
        chunks[kind] = chunks.get(kind, b"") + data[at + 8:at + 8 + length]
        at += 12 + length
    w, h, depth, colour = struct.unpack(">IIBB", chunks[b"IHDR"][:10])
    assert depth == 8 and colour == 3
    plte, trns = chunks[b"PLTE"], chunks.get(b"tRNS", b"")
    raw, prior, px = zlib.decompress(chunks[b"IDAT"]), bytes(w), []
    for y in range(h):
        f, row = raw[y * (w + 1)], bytearray(raw[y * (w + 1) + 1:(y + 1) * (w + 1)])
        for i in range(w):
            a, b, c = (row[i - 1] if i else 0), prior[i], (prior[i - 1] if i else 0)
            p = a + b - c
            pred = [0, a, b, (a + b) // 2,
                    a if abs(p - a) <= abs(p - b) and abs(p - a) <= abs(p - c)
                    else (b if abs(p - b) <= abs(p - c) else c)][f]
            row[i] = (row[i] + pred) & 255
        for i in row:
            px.append(tuple(plte[3 * i:3 * i + 3]) + (trns[i] if i < len(trns) else 255,))
        prior = bytes(row)
    return w, h, px


def over_white(px):
    return [tuple((c * p[3] + 255 * (255 - p[3]) + 127) // 255 for c in p[:3]) for p in px]


def main():
    # The picture of python.png (which has a transparent background) over white.
    pw, ph, rgba = read_palette_png("python.png")
    write_ppm("python-over-white.ppm", pw, ph, over_white(rgba))

    w, h, rgb = read_pnm("python.ppm")
    _, _, grey = read_pnm("python.pgm")
    _, _, bw = read_pnm("python.pbm")
    at = lambda px: (lambda x, y: px[y * w + x])

    # PNG
    write_png("rgb8.png", w, h, at(rgb), 8, 2, 3)
    write_png("rgb16-interlaced.png", w, h, lambda x, y: tuple(c * 257 for c in rgb[y * w + x]),
              16, 2, 3, interlace=True)
    palette = sorted(set(rgb))
    idx = {c: i for i, c in enumerate(palette)}
    write_png("palette8-interlaced.png", w, h, lambda x, y: (idx[rgb[y * w + x]],), 8, 3, 1,
              chunk(b"PLTE", b"".join(bytes(c) for c in palette)), interlace=True)
    write_png("grey8.png", w, h, lambda x, y: (grey[y * w + x][0],), 8, 0, 1)
    write_png("grey1.png", w, h, lambda x, y: (1 if bw[y * w + x][0] else 0,), 1, 0, 1)
    # Alpha: every other pixel half transparent, laid over white.
    alpha = lambda x, y: 128 if (x + y) % 2 else 255
    write_png("rgba8-half.png", w, h, lambda x, y: rgb[y * w + x] + (alpha(x, y),), 8, 6, 4)
    write_ppm("rgba8-half-over-white.ppm", w, h,
              over_white([p + (alpha(i % w, i // w),) for i, p in enumerate(rgb)]))
    # A transparent colour key (tRNS of an RGB picture): pure black goes white.
    write_png("rgb8-key.png", w, h, at(rgb), 8, 2, 3, chunk(b"tRNS", struct.pack(">HHH", 0, 0, 0)))
    write_ppm("rgb8-key-over-white.ppm", w, h,
              [(255, 255, 255) if p == (0, 0, 0) else p for p in rgb])

    # BMP
    write_bmp("rgb24-top-down.bmp", w, h, rgb, 24, top_down=True)
    write_bmp("palette8.bmp", w, h, rgb, 8)

    # TIFF
    rgb_rows = [bytes(c for p in rgb[y * w:(y + 1) * w] for c in p) for y in range(h)]
    grey_rows = [bytes(p[0] for p in grey[y * w:(y + 1) * w]) for y in range(h)]
    bw_rows = [pack_bits([0 if p[0] else 1 for p in bw[y * w:(y + 1) * w]], 1) for y in range(h)]
    write_tiff("rgb-lzw.tif", w, h, rgb_rows, 3, 8, 2, 5)
    write_tiff("rgb-deflate-predictor.tif", w, h, rgb_rows, 3, 8, 2, 8, predictor=2)
    write_tiff("grey-lzw.tif", w, h, grey_rows, 1, 8, 1, 5)
    # White is zero (photometric 0), as fax-like scans store it.
    write_tiff("bw-white-is-zero.tif", w, h, bw_rows, 1, 1, 0, 32773)
    cmap_r = [c[0] * 257 for c in palette] + [0] * (256 - len(palette))
    cmap_g = [c[1] * 257 for c in palette] + [0] * (256 - len(palette))
    cmap_b = [c[2] * 257 for c in palette] + [0] * (256 - len(palette))
    pal_rows = [bytes(idx[p] for p in rgb[y * w:(y + 1) * w]) for y in range(h)]
    write_tiff("palette-uncompressed.tif", w, h, pal_rows, 1, 8, 3, 1,
               colormap=cmap_r + cmap_g + cmap_b)


if __name__ == "__main__":
    main()
