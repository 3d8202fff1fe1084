#!/usr/bin/python3
"""Writes the drawings of this folder with ezdxf (Debian's python3-ezdxf).

Each drawing holds the entities of one frontend test, in the order the test
expects them drawn; the test says what each must become.

Run from this folder: /usr/bin/python3 make_drawings.py
"""
import ezdxf
from ezdxf.math import Vec3

BYBLOCK, BYLAYER = 0, 256


def new():
    return ezdxf.new("R2018", setup=False)


def colours():
    """Colours through layers and blocks: a reference of colour 5 on a layer of
    true colour hands its colour down through a nested by-block reference;
    true colour beside a layer's, a layer's colour, by block outside any
    block, colour 7."""
    doc = new()
    doc.layers.add("Red", color=1)
    doc.layers.add("Rgb").rgb = (0x12, 0x34, 0x56)
    inner = doc.blocks.new("Inner")
    inner.add_line((0, 0), (1, 0), dxfattribs={"color": BYBLOCK})
    inner.add_line((0, 0), (1, 0))  # layer 0: the reference's layer
    outer = doc.blocks.new("Outer")
    outer.add_blockref("Inner", (0, 0), dxfattribs={"color": BYBLOCK})
    msp = doc.modelspace()
    msp.add_blockref("Outer", (0, 0), dxfattribs={"layer": "Rgb", "color": 5})
    msp.add_line((0, 0), (1, 0), dxfattribs={"layer": "Red", "true_color": 0xABCDEF})
    msp.add_line((0, 0), (1, 0), dxfattribs={"layer": "Red"})
    msp.add_line((0, 0), (1, 0), dxfattribs={"layer": "Red", "color": BYBLOCK})
    msp.add_line((0, 0), (1, 0), dxfattribs={"color": 7})
    doc.saveas("colours.dxf")


def lineweights():
    """A by-block weight in a reference of 0.70 mm, a layer's 0.50 mm, the
    default, and 0."""
    doc = new()
    doc.layers.add("Heavy", lineweight=50)
    block = doc.blocks.new("B")
    block.add_line((0, 0), (1, 0), dxfattribs={"layer": "Heavy", "lineweight": -2})
    msp = doc.modelspace()
    msp.add_blockref("B", (0, 0), dxfattribs={"lineweight": 70})
    msp.add_line((0, 0), (1, 0), dxfattribs={"layer": "Heavy"})
    msp.add_line((0, 0), (1, 0), dxfattribs={"layer": "Heavy", "lineweight": -3})
    msp.add_line((0, 0), (1, 0), dxfattribs={"layer": "Heavy", "lineweight": 0})
    doc.saveas("lineweights.dxf")


def extents():
    """One entity of each kind, each on a layer of its own named after it."""
    doc = new()
    block = doc.blocks.new("B")
    block.add_line((0, 0), (10, 5))
    msp = doc.modelspace()

    def on(name):
        doc.layers.add(name)
        return {"layer": name}

    msp.add_line((1, 2), (5, 7), dxfattribs=on("line"))
    msp.add_circle((10, 10), 5, dxfattribs=on("circle"))
    msp.add_arc((0, 0), 10, 0, 90, dxfattribs=on("arc"))
    msp.add_arc((0, 0), 10, 270, 90, dxfattribs=on("arc across 0"))
    msp.add_ellipse((0, 0), major_axis=(10, 0), ratio=0.5, dxfattribs=on("ellipse"))
    # A half circle below its chord.
    msp.add_lwpolyline([(0, 0, 0, 0, 1), (2, 0, 0, 0, 0)], format="xyseb", dxfattribs=on("bulge"))
    wide = msp.add_lwpolyline([(0, 0), (10, 0)], dxfattribs=on("wide polyline"))
    wide.dxf.const_width = 2
    msp.add_open_spline([(0, 0), (1, 2), (2, 0)], degree=2, knots=[0, 0, 0, 1, 1, 1],
                        dxfattribs=on("spline"))
    msp.add_solid([(0, 0), (4, 0), (0, 3), (4, 3)], dxfattribs=on("solid"))
    msp.add_3dface([(0, 0), (5, 0), (5, 5), (0, 5)], dxfattribs=on("3D face"))
    hatch = msp.add_hatch(dxfattribs=on("hatch"))
    hatch.paths.add_polyline_path([(1, 1), (3, 1), (3, 3), (1, 3)])
    msp.add_leader([(0, 0), (10, 10)], dxfattribs=on("leader"))
    msp.add_point((3, 4), dxfattribs=on("point"))
    attribs = on("mirrored insert")
    attribs["extrusion"] = (0, 0, -1)
    msp.add_blockref("B", (10, 0), dxfattribs=attribs)
    grid = msp.add_blockref("B", (0, 0), dxfattribs=on("insert grid"))
    grid.dxf.column_count = grid.dxf.row_count = 2
    grid.dxf.column_spacing = grid.dxf.row_spacing = 10
    doc.saveas("extents.dxf")


def pens():
    """Colour numbers through a plot style table: colour 1, a layer of colour
    1, colour 3 at 0.35 mm, true colours beside numbers 1 and 3, a reference
    of colour 1 to a block of a by-block line and a line of colour 3, colour
    5 at weight 0, by block outside any block. Weight 0.25 mm where not said."""
    doc = new()
    doc.layers.add("Rouge", color=1)

    def pen(color, lineweight=25, **more):
        return dict(color=color, lineweight=lineweight, **more)

    block = doc.blocks.new("B")
    block.add_line((0, 0), (1, 0), dxfattribs=pen(BYBLOCK))
    block.add_line((0, 0), (1, 0), dxfattribs=pen(3))
    msp = doc.modelspace()
    msp.add_line((0, 0), (1, 0), dxfattribs=pen(1))
    msp.add_line((0, 0), (1, 0), dxfattribs=pen(BYLAYER, layer="Rouge"))
    msp.add_line((0, 0), (1, 0), dxfattribs=pen(3, 35))
    msp.add_line((0, 0), (1, 0), dxfattribs=pen(1, true_color=0x123456))
    msp.add_line((0, 0), (1, 0), dxfattribs=pen(3, true_color=0x123456))
    msp.add_blockref("B", (0, 0), dxfattribs=pen(1))
    msp.add_line((0, 0), (1, 0), dxfattribs=pen(5, 0))
    msp.add_line((0, 0), (1, 0), dxfattribs=pen(BYBLOCK))
    doc.saveas("pens.dxf")


def texts():
    """Multi-line text in a TrueType face and a shape font."""
    # Multi-line text of colour 5 turned a quarter: an inline colour, a shape
    # font, an underline.
    doc = new()
    doc.styles.new("Arial", dxfattribs={"font": "arial.ttf"})
    doc.modelspace().add_mtext("{\\C1;Rouge} noir\\P{\\Ftxt;trait}\\P\\Lsous", dxfattribs={
        "style": "Arial", "insert": (10, 100), "char_height": 2, "rotation": 90, "color": 5})
    doc.saveas("mtext_runs.dxf")


def viewport(layout, center, size, view_height, target=(0, 0), view_center=(0, 0), **attribs):
    vp = layout.add_viewport(center=center, size=(size, size), view_center_point=view_center,
                             view_height=view_height)
    vp.dxf.view_target_point = (target[0], target[1], 0)
    for name, value in attribs.items():
        vp.dxf.set(name, value)
    return vp


def viewports():
    """Paper layout "Feuille": the overall viewport (number 1), a viewport of
    the same place freezing layer "Notes", one at (150, 50) switched off, and
    a paper-space line to (1, 1). The model: a wall along y 0 from x -30 to
    30, a note along y 10."""
    doc = new()
    doc.layers.add("Walls")
    doc.layers.add("Notes")
    msp = doc.modelspace()
    msp.add_line((-30, 0), (30, 0), dxfattribs={"layer": "Walls"})
    msp.add_line((-30, 10), (30, 10), dxfattribs={"layer": "Notes"})
    sheet = doc.layouts.new("Feuille")
    viewport(sheet, (50, 50), 40, 40, id=1, status=1)
    viewport(sheet, (50, 50), 40, 40, id=2, status=1).frozen_layers = ["NOTES"]
    viewport(sheet, (150, 50), 40, 40, id=3, status=1, flags=131072)
    sheet.add_line((0, 0), (1, 1))
    doc.saveas("viewports.dxf")


def clipped_viewports():
    """A model filled black from (0, 0) to (100, 100) and a layout per case,
    each with a 60 mm viewport at 1:1 onto the model's middle, clipped by a
    paper-space entity: a circle of radius 20, a diamond (an open polyline),
    an ellipse 50 × 20; the flag without an entity, an entity (circle)
    without the flag, a boundary of another kind (a line)."""
    doc = new()
    doc.modelspace().add_solid([(0, 0), (100, 0), (0, 100), (100, 100)])
    cases = {
        "cercle": lambda sheet: sheet.add_circle((50, 50), 20),
        "polyligne": lambda sheet: sheet.add_lwpolyline([(50, 25), (75, 50), (50, 75), (25, 50)]),
        "ellipse": lambda sheet: sheet.add_ellipse((50, 50), major_axis=(25, 0), ratio=0.4),
        "sans entité": None,
        "sans drapeau": lambda sheet: sheet.add_circle((50, 50), 5),
        "ligne": lambda sheet: sheet.add_line((0, 0), (1, 1)),
    }
    for name, boundary in cases.items():
        sheet = doc.layouts.new(name)
        viewport(sheet, (0, 0), 0, 0)
        vp = viewport(sheet, (50, 50), 60, 60, target=(50, 50), status=1)
        if name != "sans drapeau":
            vp.dxf.flags = 65536
        vp.dxf.clipping_boundary_handle = "FFFFF"  # nothing
        if boundary is not None:
            entity = boundary(sheet)
            vp.dxf.clipping_boundary_handle = entity.dxf.handle
    doc.saveas("clipped_viewports.dxf")


def blocks():
    """A block "Tag" of a line and a reference to itself at (5, 5), referenced
    at (100, 0) with an attribute "A-12" at (7, 8) and an invisible one; the
    external reference "Linked" (linked.dxf: a line from (0, 0) to (3, 0) on
    layer "Murs") at (0, 50), and "Missing", whose file is nowhere, at (0, 60)."""
    doc = new()
    doc.layers.add("Murs")
    doc.modelspace().add_line((0, 0), (3, 0), dxfattribs={"layer": "Murs"})
    doc.saveas("linked.dxf")
    doc = new()
    doc.styles.get("Standard").dxf.font = "arial.ttf"
    tag = doc.blocks.new("Tag")
    tag.add_line((0, 0), (1, 0))
    tag.add_blockref("Tag", (5, 5))
    doc.add_xref_def("linked.dxf", "Linked")
    doc.add_xref_def("missing.dxf", "Missing")
    msp = doc.modelspace()
    ref = msp.add_blockref("Tag", (100, 0))
    ref.add_attrib("REPERE", "A-12", (7, 8), dxfattribs={"height": 2})
    ref.add_attrib("CACHE", "secret", (7, 8), dxfattribs={"height": 2, "flags": 1})
    msp.add_blockref("Linked", (0, 50))
    msp.add_blockref("Missing", (0, 60))
    doc.saveas("blocks.dxf")


def outputs():
    """A 100 x 70 rectangle at (30, 20) with its diagonal, a circle, an arc and
    a point, all with a 0.50 mm pen, and a red solid triangle inside: the
    same marks whatever the output."""
    doc = new()
    msp = doc.modelspace()
    heavy = {"lineweight": 50}
    msp.add_lwpolyline([(30, 20), (130, 20), (130, 90), (30, 90)], close=True, dxfattribs=heavy)
    msp.add_line((30, 20), (130, 90), dxfattribs=heavy)
    msp.add_circle((100, 40), 12, dxfattribs=heavy)
    msp.add_arc((70, 40), 8, 30, 250, dxfattribs=heavy)
    msp.add_point((115, 80), dxfattribs=heavy)
    msp.add_solid([(40, 60), (70, 60), (40, 85), (40, 85)], dxfattribs={"color": 1})
    doc.saveas("outputs.dxf")


def hatch_island():
    """A red solid hatch over the square 20..80 with a round island of radius
    10 about (50, 50), its boundary two half circles."""
    doc = new()
    hatch = doc.modelspace().add_hatch(color=1)
    hatch.paths.add_polyline_path([(20, 20), (80, 20), (80, 80), (20, 80)], is_closed=True)
    island = hatch.paths.add_edge_path()
    island.add_arc((50, 50), 10, 0, 180)
    island.add_arc((50, 50), 10, 180, 360)
    doc.saveas("hatch_island.dxf")


def wipeout():
    """A black solid over the square 20..80, a wipeout masking the square
    40..60, then a line 0.50 mm wide from (30, 50) to (70, 50) over both."""
    doc = new()
    msp = doc.modelspace()
    msp.add_solid([(20, 20), (80, 20), (20, 80), (80, 80)], dxfattribs={"color": 7})
    msp.add_wipeout([(40, 40), (60, 60)])
    msp.add_line((30, 50), (70, 50), dxfattribs={"lineweight": 50})
    doc.saveas("wipeout.dxf")


def inline_colours():
    """Multi-line text of colour 5 in a TrueType face whose runs set colours
    1, 3, by layer and a true colour of their own."""
    doc = new()
    doc.styles.new("Arial", dxfattribs={"font": "arial.ttf"})
    doc.modelspace().add_mtext(
        "{\\C1;rouge} {\\C3;vert} {\\C256;objet} {\\c65280;vrai}",
        dxfattribs={"style": "Arial", "char_height": 2.5, "color": 5, "lineweight": 25},
    )
    doc.saveas("inline_colours.dxf")


colours()
blocks()
viewports()
clipped_viewports()
texts()
pens()
lineweights()
extents()
outputs()
hatch_island()
wipeout()
inline_colours()
