#!/usr/bin/python3
"""Writes the MTEXT and TEXT drawings of this folder with ezdxf (Debian's
python3-ezdxf). Run from this folder: /usr/bin/python3 make_drawings.py"""

import ezdxf
from ezdxf.lldxf.tags import Tags
from ezdxf.lldxf.types import DXFTag, DXFVertex

LOREM = (
    "Lorem ipsum dolor sit amet consectetur adipiscing elit sed do eiusmod "
    "tempor incididunt ut labore et dolore magna aliqua Ut enim ad minim veniam "
    "quis nostrud exercitation ullamco laboris nisi ut aliquip ex ea commodo"
)


def new(version):
    doc = ezdxf.new(version)
    doc.header["$INSUNITS"] = 4  # millimetres
    doc.styles.new("ARIAL", dxfattribs={"font": "arial.ttf"})
    return doc, doc.modelspace()


def columns(version, name):
    doc, msp = new(version)
    # Three static columns of given contents, 30 wide with a gutter of 5.
    msp.add_mtext_static_columns(
        ["alpha beta", "gamma delta", "epsilon zeta"],
        width=30, gutter_width=5, height=40,
        dxfattribs={"insert": (0, 100), "char_height": 2.5, "style": "ARIAL"},
    )
    # Dynamic columns of one height: the text flows on when a column is full.
    msp.add_mtext_dynamic_auto_height_columns(
        LOREM, width=40, gutter_width=4, height=20, count=3,
        dxfattribs={"insert": (0, 50), "char_height": 2.5, "style": "ARIAL"},
    )
    # Dynamic columns of their own heights.
    msp.add_mtext_dynamic_manual_height_columns(
        LOREM, width=40, gutter_width=4, heights=[10, 25],
        dxfattribs={"insert": (0, 0), "char_height": 2.5, "style": "ARIAL"},
    )
    doc.saveas(name)


def background():
    doc, msp = new("R2018")
    # Something under the texts, drawn before them: their fill hides it.
    msp.add_line((-10, 0), (150, 50))
    a = msp.add_mtext("Fond ACI 1", dxfattribs={"insert": (0, 40), "char_height": 5, "width": 60, "style": "ARIAL"})
    a.set_bg_color(1, scale=1.5)
    b = msp.add_mtext("Fond RVB cadre", dxfattribs={"insert": (0, 20), "char_height": 5, "width": 75, "style": "ARIAL"})
    b.set_bg_color((0, 128, 255), scale=2, text_frame=True)
    c = msp.add_mtext("Fond du dessin", dxfattribs={"insert": (80, 40), "char_height": 5, "style": "ARIAL"})
    c.set_bg_color("canvas", scale=1.5)
    d = msp.add_mtext("Cadre seul", dxfattribs={"insert": (80, 20), "char_height": 5, "style": "ARIAL"})
    d.set_bg_color(None, text_frame=True)
    doc.saveas("background.dxf")


def stacked():
    doc, msp = new("R2018")
    for i, code in enumerate(["\\S1/2;", "\\S1#2;", "\\S1^2;"]):
        msp.add_mtext("A " + code + " B", dxfattribs={"insert": (0, 30 - 12 * i), "char_height": 5, "style": "ARIAL"})
    doc.saveas("stacked.dxf")


def mirrored():
    doc, msp = new("R2018")
    rows = [(2, 3), (2, 5), (4, 3), (4, 5), (0, 5), (6, 3)]
    for i, (flags, halign) in enumerate(rows):
        y = 12 * i
        msp.add_text("ABCDEFGHIJKL", dxfattribs={
            "insert": (0, y), "align_point": (30, y), "height": 5,
            "text_generation_flag": flags, "halign": halign})
    doc.saveas("mirrored.dxf")


def attributes():
    doc, msp = new("R2018")
    block = doc.blocks.new("CARTOUCHE")
    block.add_line((0, 0), (60, 0))
    block.add_attdef("TITRE", (0, 2), dxfattribs={"height": 5})
    ref = msp.add_blockref("CARTOUCHE", (0, 0))
    attrib = ref.add_attrib("TITRE", "visible", (0, 2), dxfattribs={"height": 5})
    # What another program stores after the attribute's own part: merge
    # flag, multi-line flag, "really locked", alignment point, annotation
    # scale, tag.
    attrib._xrecord = Tags([
        DXFTag(100, "AcDbXrecord"), DXFTag(280, 1), DXFTag(70, 0),
        DXFTag(70, 1), DXFVertex(10, (0, 2, 0)), DXFTag(40, 1.0),
        DXFTag(2, "TITRE"),
    ])
    hidden = ref.add_attrib("CACHE", "hidden", (0, 10), dxfattribs={"height": 5})
    hidden.dxf.flags = 1
    hidden._xrecord = Tags([
        DXFTag(100, "AcDbXrecord"), DXFTag(280, 1), DXFTag(70, 0),
        DXFTag(70, 0), DXFVertex(10, (0, 10, 0)), DXFTag(40, 1.0),
        DXFTag(2, "CACHE"),
    ])
    doc.saveas("attributes-r2018.dxf")


if __name__ == "__main__":
    columns("R2018", "columns-r2018.dxf")
    columns("R2007", "columns-r2007.dxf")
    background()
    stacked()
    mirrored()
    attributes()
