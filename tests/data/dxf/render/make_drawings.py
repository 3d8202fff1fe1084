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


def transforms():
    """A 10-unit line in "Inner", turned a quarter in "Outer" (base (1, 1)),
    that doubled at (50, 20); "Inner" upside down (extrusion -z) at (10, 0);
    "Inner" as a turned grid of 2 columns 20 apart and 3 rows 5 apart."""
    doc = new()
    inner = doc.blocks.new("Inner")
    inner.add_line((0, 0), (10, 0))
    outer = doc.blocks.new("Outer", base_point=(1, 1))
    outer.add_blockref("Inner", (6, 1), dxfattribs={"rotation": 90})
    msp = doc.modelspace()
    msp.add_blockref("Outer", (50, 20), dxfattribs={"xscale": 2, "yscale": 2})
    msp.add_blockref("Inner", (10, 0), dxfattribs={"extrusion": (0, 0, -1)})
    grid = msp.add_blockref("Inner", (0, 100), dxfattribs={"rotation": 90})
    grid.dxf.column_count, grid.dxf.row_count = 2, 3
    grid.dxf.column_spacing, grid.dxf.row_spacing = 20, 5
    doc.saveas("transforms.dxf")


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


def colourful():
    """1 mm lines of colours 1, 38, 75 ... 223 from y 20 to 80, an orange
    true colour at 90, a vertical line on a green layer, a magenta solid."""
    doc = new()
    doc.layers.add("Vert", color=3)
    msp = doc.modelspace()
    for i in range(7):
        y = 20 + 10 * i
        msp.add_line((10, y), (90, y), dxfattribs={"color": 1 + 37 * i, "lineweight": 100})
    msp.add_line((10, 90), (90, 90), dxfattribs={"color": 5, "true_color": 0xFF8000, "lineweight": 100})
    msp.add_line((50, 10), (50, 95), dxfattribs={"layer": "Vert", "lineweight": 100})
    msp.add_solid([(20, 5), (40, 5), (20, 15), (40, 15)], dxfattribs={"color": 6})
    doc.saveas("colourful.dxf")


def texts():
    """Text in shape fonts and TrueType faces."""
    doc = new()
    doc.styles.new("Plume", dxfattribs={"font": "romans.shx"})
    msp = doc.modelspace()
    # Left-aligned at (20, 30); ending at (100, 60); fitted from (0, 90) to (50, 90).
    msp.add_text("Façade", dxfattribs={"style": "Plume", "height": 10, "insert": (20, 30)})
    msp.add_text("Nord", dxfattribs={"style": "Plume", "height": 10, "halign": 2,
                                     "align_point": (100, 60)})
    msp.add_text("AB", dxfattribs={"style": "Plume", "height": 5, "halign": 5,
                                   "insert": (0, 90), "align_point": (50, 90)})
    doc.saveas("shape_text.dxf")

    # Multi-line text of colour 5 turned a quarter: an inline colour, a shape
    # font, an underline.
    doc = new()
    doc.styles.new("Arial", dxfattribs={"font": "arial.ttf"})
    doc.modelspace().add_mtext("{\\C1;Rouge} noir\\P{\\Ftxt;trait}\\P\\Lsous", dxfattribs={
        "style": "Arial", "insert": (10, 100), "char_height": 2, "rotation": 90, "color": 5})
    doc.saveas("mtext_runs.dxf")

    # A title in the stroke font at (10, 170), 10 high; below it, multi-line
    # text 6 high hanging from (10, 140): bold, red, twice as high, a
    # fraction, underlined.
    doc = new()
    doc.styles.new("Plume", dxfattribs={"font": "txt"})
    doc.styles.new("Sans", dxfattribs={"font": "DejaVuSans.ttf"})
    msp = doc.modelspace()
    msp.add_text("Élévation Sud %%c25", dxfattribs={"style": "Plume", "height": 10,
                                                   "insert": (10, 170)})
    msp.add_mtext("{\\fDejaVu Sans|b1;Gras} et {\\C1;rouge}\\P{\\H2x;Grand} \\S1/2;\\P"
                  "\\Lsouligné\\l fin",
                  dxfattribs={"style": "Sans", "insert": (10, 140), "char_height": 6, "width": 150})
    doc.saveas("formatted_text.dxf")


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

    # A 40 mm viewport at (50, 50) at half size onto (100, 200), its view
    # centre 4 units left of that, turned a quarter; a 10-unit line from there.
    doc = new()
    doc.modelspace().add_line((100, 200), (110, 200))
    sheet = doc.layouts.new("Feuille")
    viewport(sheet, (0, 0), 0, 0)
    viewport(sheet, (50, 50), 40, 80, target=(100, 200), view_center=(-4, 0),
             view_twist_angle=90)
    doc.saveas("twist.dxf")


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


def paper_linetype():
    """A dashed line (2 on, 1 off) 100 long at the middle of a 20 mm viewport
    at 1:10: 10 mm on the sheet."""
    doc = new()
    doc.linetypes.new("TIRETS", dxfattribs={"description": "__ __", "pattern": [3, 2, -1]})
    doc.modelspace().add_line((0, 0), (100, 0), dxfattribs={"linetype": "TIRETS"})
    sheet = doc.layouts.new("Feuille")
    viewport(sheet, (0, 0), 0, 0)
    viewport(sheet, (50, 50), 20, 200, target=(50, 0))
    doc.saveas("paper_linetype.dxf")


def visibility():
    """Lines from (0, y) to (1, y): y 0 on a plain layer, 1 on a layer off, 2
    frozen, 3 not plotted, 4 locked, 5 invisible itself, 6 on "DEFPOINTS".
    A block of a line on layer 0 and one 1 above it on layer "Other",
    referenced at (0, 10) on a frozen layer and at (0, 20) on a layer off."""
    doc = new()
    msp = doc.modelspace()
    for y, name in enumerate(["plain", "off", "frozen", "not plotted", "locked"]):
        layer = doc.layers.add(name)
        if name == "off":
            layer.off()
        if name == "frozen":
            layer.freeze()
        if name == "not plotted":
            layer.dxf.plot = 0
        if name == "locked":
            layer.lock()
        msp.add_line((0, y), (1, y), dxfattribs={"layer": name})
    doc.layers.add("hidden line")  # ezdxf 0.18 does not write a line's group 60: added below
    msp.add_line((0, 5), (1, 5), dxfattribs={"layer": "hidden line"})
    msp.add_line((0, 6), (1, 6), dxfattribs={"layer": "DEFPOINTS"})
    doc.layers.add("Other")
    doc.layers.add("Host frozen").freeze()
    doc.layers.add("Host off").off()
    block = doc.blocks.new("B")
    block.add_line((0, 0), (1, 0))
    block.add_line((0, 1), (1, 1), dxfattribs={"layer": "Other"})
    msp.add_blockref("B", (0, 10), dxfattribs={"layer": "Host frozen"})
    msp.add_blockref("B", (0, 20), dxfattribs={"layer": "Host off"})
    doc.saveas("visibility.dxf")
    with open("visibility.dxf", encoding="utf-8") as f:
        text = f.read()
    with open("visibility.dxf", "w", encoding="utf-8") as f:
        f.write(text.replace("  8\nhidden line\n", "  8\nhidden line\n 60\n     1\n", 1))


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


colours()
visibility()
blocks()
viewports()
clipped_viewports()
paper_linetype()
texts()
pens()
colourful()
lineweights()
transforms()
extents()
