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


colours()
lineweights()
transforms()
extents()
