#!/usr/bin/python3
"""Writes the drawings of this folder with ezdxf (Debian's python3-ezdxf).

ezdxf 0.18 writes the blocks, references, hatches and draw order tables; it
has no clipped references, so their objects (extension dictionary, ACAD_FILTER
dictionary, SPATIAL_FILTER, and for an inverted clip the record holding its
hole) are added to the tags it wrote, laid out as the commercial CAD program
stores them: the boundary as drawn in world coordinates when the reference was
clipped, with the inverse of the reference's placement at that time.

Run from this folder: /usr/bin/python3 make_clipping.py
"""
import math

import ezdxf
from ezdxf.lldxf import const

HEAVY = {"lineweight": 50}


def plaque(doc, name="PLAQUE", offset=(0, 0)):
    """A 10 x 10 cross: a midline along x and one along y, offset as asked."""
    block = doc.blocks.new(name, base_point=offset)
    ox, oy = offset
    block.add_line((ox, oy + 5), (ox + 10, oy + 5), dxfattribs=HEAVY)
    block.add_line((ox + 5, oy), (ox + 5, oy + 10), dxfattribs=HEAVY)
    return block


def translate(x, y):
    return [1, 0, 0, x, 0, 1, 0, y, 0, 0, 1, 0]


IDENTITY = translate(0, 0)


class Clips:
    """Clipped references added to the tags ezdxf wrote."""

    def __init__(self):
        self.clips = []  # (insert handle, boundary, inverse insert, enabled, hole)

    def add(self, insert, boundary, inverse=IDENTITY, enabled=1, hole=None):
        self.clips.append((insert.dxf.handle, boundary, inverse, enabled, hole))

    def write(self, path):
        with open(path, encoding="utf-8") as f:
            lines = f.read().split("\n")
        tags = [(lines[i].strip(), lines[i + 1]) for i in range(0, len(lines) - 1, 2)]
        seed, seed_index = 0, None
        for i, (c, v) in enumerate(tags):
            if c == "9" and v == "$HANDSEED":
                seed_index = i + 1
                seed = int(tags[i + 1][1], 16)
        handle = [max(seed, 0x9000)]

        def new():
            handle[0] += 1
            return "%X" % handle[0]

        objects = []
        xdicts = {}
        for insert, boundary, inverse, enabled, hole in self.clips:
            xdict, filters, spatial = new(), new(), new()
            xdicts[insert] = xdict
            objects += dictionary(xdict, insert, "ACAD_FILTER", filters)
            objects += dictionary(filters, xdict, "SPATIAL", spatial)
            holes = []
            if hole is not None:
                hole_dict, record = new(), new()
                holes = [("102", "{ACAD_XDICTIONARY"), ("360", hole_dict), ("102", "}")]
            objects += [("0", "SPATIAL_FILTER"), ("5", spatial)] + holes + [
                ("330", filters), ("100", "AcDbFilter"), ("100", "AcDbSpatialFilter"),
                ("70", str(len(boundary)))]
            for x, y in boundary:
                objects += [("10", repr(float(x))), ("20", repr(float(y)))]
            objects += [("210", "0.0"), ("220", "0.0"), ("230", "1.0"), ("11", "0.0"),
                        ("21", "0.0"), ("31", "0.0"), ("71", str(enabled)), ("72", "0"),
                        ("73", "0")]
            for value in inverse + IDENTITY:
                objects.append(("40", repr(float(value))))
            if hole is not None:
                objects += dictionary(hole_dict, spatial, "ACAD_XREC_ROUNDTRIP", record)
                objects += [("0", "XRECORD"), ("5", record), ("330", hole_dict),
                            ("100", "AcDbXrecord"), ("280", "1"),
                            ("102", "ACAD_INVERTEDCLIP_ROUNDTRIP")]
                for x, y in hole:
                    objects += [("10", repr(float(x))), ("20", repr(float(y))), ("30", "0.0")]
                objects += [("102", "ACAD_INVERTEDCLIP_ROUNDTRIP_COMPARE")]
                for x, y in boundary:
                    objects += [("10", repr(float(x))), ("20", repr(float(y))), ("30", "0.0")]
        out = []
        section = None
        for i, (c, v) in enumerate(tags):
            if c == "2" and i > 0 and tags[i - 1] == ("0", "SECTION"):
                section = v
            if c == "0" and v == "ENDSEC" and section == "OBJECTS":
                out += objects
            out.append((c, v))
            # The extension dictionary goes right after the handle of its
            # reference (ezdxf writes no other group there).
            if c == "5" and v in xdicts and tags[i - 1] == ("0", "INSERT"):
                out += [("102", "{ACAD_XDICTIONARY"), ("360", xdicts[v]), ("102", "}")]
        out[seed_index] = ("5", "%X" % (handle[0] + 1))
        with open(path, "w", encoding="utf-8") as f:
            f.write("\n".join("%3s\n%s" % (c, v) for c, v in out) + "\n")


def dictionary(handle, owner, key, value):
    return [("0", "DICTIONARY"), ("5", handle), ("330", owner), ("100", "AcDbDictionary"),
            ("280", "1"), ("281", "1"), ("3", key), ("360", value)]


def keyhole(hole, lo, hi):
    """One outline around `hole` and the box lo..hi, joined by a slit."""
    (hx0, hy0), (hx1, hy1) = hole
    return [(hx0, hy0), (hx0, hy1), (hx1, hy1), (hx1, hy0), (hx0, hy0), (hx0, lo[1]),
            (hi[0], lo[1]), hi, (lo[0], hi[1]), lo, (hx0, lo[1])]


def make_xclip():
    """Clipped references, one per 25 mm column; see the test for what shows."""
    doc = ezdxf.new("R2010")
    msp = doc.modelspace()
    plaque(doc)
    plaque(doc, "PLAQUE_DECALEE", (100, 10))
    nest = doc.blocks.new("NICHE")
    clips = Clips()

    # Clipped where it stands: a rectangle drawn around its left part.
    a = msp.add_blockref("PLAQUE", (10, 10))
    clips.add(a, [(10, 10), (14, 20)], translate(-10, -10))
    # A copy of that reference moved and turned a quarter: its filter is the
    # same, the boundary staying where it was drawn.
    b = msp.add_blockref("PLAQUE", (45, 15), dxfattribs={"rotation": 90})
    clips.add(b, [(10, 10), (14, 20)], translate(-10, -10))
    # Doubled, clipped by a triangle.
    c = msp.add_blockref("PLAQUE", (70, 10), dxfattribs={"xscale": 2, "yscale": 2})
    clips.add(c, [(70, 10), (90, 10), (70, 30)],
              [0.5, 0, 0, -35, 0, 0.5, 0, -5, 0, 0, 0.5, 0])
    # A block whose base is where it is inserted: the block's coordinates are
    # the world's.
    d = msp.add_blockref("PLAQUE_DECALEE", (100, 10))
    clips.add(d, [(100, 10), (104, 20)])
    # Inverted: what lies outside a square in its middle shows.
    e = msp.add_blockref("PLAQUE", (125, 10))
    clips.add(e, keyhole([(127, 12), (133, 18)], (124, 9), (136, 21)), translate(-125, -10),
              hole=[(127, 12), (133, 18)])
    # Clipped inside another block, which is then inserted.
    inner = nest.add_blockref("PLAQUE", (2, 0))
    clips.add(inner, [(2, 0), (6, 10)], translate(-2, 0))
    msp.add_blockref("NICHE", (150, 10))
    # Clipping switched off: the whole cross shows.
    g = msp.add_blockref("PLAQUE", (175, 10))
    clips.add(g, [(175, 10), (179, 20)], translate(-175, -10), enabled=0)

    doc.saveas("xclip.dxf")
    clips.write("xclip.dxf")


def make_xref():
    """An external reference clipped like the first case above."""
    part = ezdxf.new("R2010")
    pm = part.modelspace()
    pm.add_line((0, 5), (10, 5), dxfattribs=HEAVY)
    pm.add_line((5, 0), (5, 10), dxfattribs=HEAVY)
    part.saveas("xclip-part.dxf")

    host = ezdxf.new("R2010")
    host.add_xref_def("xclip-part.dxf", "PIECE")
    clips = Clips()
    ref = host.modelspace().add_blockref("PIECE", (10, 10))
    clips.add(ref, [(10, 10), (14, 20)], translate(-10, -10))
    host.saveas("xclip-xref.dxf")
    clips.write("xclip-xref.dxf")


def make_draw_order():
    """Red text written first, then a blue solid hatch over it; the draw
    order table puts the text on top, in model space and in a block."""
    doc = ezdxf.new("R2010")
    msp = doc.modelspace()

    def text_under_hatch(layout, x):
        text = layout.add_text("T", dxfattribs={"height": 8, "color": 1, "insert": (x + 2, 2)})
        hatch = layout.add_hatch(color=5)
        hatch.paths.add_polyline_path([(x, 0), (x + 12, 0), (x + 12, 12), (x, 12)],
                                      is_closed=True, flags=const.BOUNDARY_PATH_EXTERNAL)
        layout.set_redraw_order({text.dxf.handle: "FFFF"})
        return text, hatch

    text_under_hatch(msp, 0)
    block = doc.blocks.new("ETIQUETTE")
    text_under_hatch(block, 0)
    msp.add_blockref("ETIQUETTE", (20, 0))
    doc.saveas("draworder.dxf")


def make_hatch_text_boxes():
    """Solid hatches with islands around text (text box boundary paths)."""
    doc = ezdxf.new("R2010")
    msp = doc.modelspace()
    # A text box inside an island inside the outer boundary.
    msp.add_text("AB", dxfattribs={"height": 3, "insert": (16, 18.5)})
    h = msp.add_hatch(color=5)
    h.paths.add_polyline_path([(0, 0), (40, 0), (40, 40), (0, 40)], is_closed=True,
                              flags=const.BOUNDARY_PATH_EXTERNAL)
    h.paths.add_polyline_path([(10, 10), (30, 10), (30, 30), (10, 30)], is_closed=True,
                              flags=const.BOUNDARY_PATH_OUTERMOST)
    h.paths.add_polyline_path([(15, 18), (25, 18), (25, 22), (15, 22)], is_closed=True,
                              flags=const.BOUNDARY_PATH_TEXTBOX)
    # A text box running out over the outer boundary.
    msp.add_text("CD", dxfattribs={"height": 3, "insert": (81, 18.5)})
    h = msp.add_hatch(color=5)
    h.paths.add_polyline_path([(50, 0), (90, 0), (90, 40), (50, 40)], is_closed=True,
                              flags=const.BOUNDARY_PATH_EXTERNAL)
    h.paths.add_polyline_path([(80, 18), (100, 18), (100, 22), (80, 22)], is_closed=True,
                              flags=const.BOUNDARY_PATH_TEXTBOX | const.BOUNDARY_PATH_OUTERMOST)
    doc.saveas("hatch-textbox.dxf")


if __name__ == "__main__":
    make_xclip()
    make_xref()
    make_draw_order()
    make_hatch_text_boxes()
