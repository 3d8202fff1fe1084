#!/usr/bin/env python3
"""Writes as-written.dxf (what the pinned LibreDWG writer gives: every layer
off, the viewport's frozen layers under group 341) and repaired.dxf (what the
converter must make of it)."""


def dxf(layers, viewport_code):
    tags = []

    def tag(code, value):
        tags.append("%3d\r\n%s\r\n" % (code, value))

    tag(999, "LibreDWG 0.13.3.7825.246_0c9ab_dirty")
    tag(0, "SECTION"); tag(2, "TABLES")
    tag(0, "TABLE"); tag(2, "LAYER"); tag(5, "2"); tag(330, "0")
    tag(100, "AcDbSymbolTable"); tag(70, "     4")
    for handle, name, colour in layers:
        tag(0, "LAYER"); tag(5, handle); tag(330, "2")
        tag(100, "AcDbSymbolTableRecord"); tag(100, "AcDbLayerTableRecord")
        tag(2, name); tag(70, "     0"); tag(62, "%6d" % colour)
        tag(6, "Continuous"); tag(370, "    -3"); tag(390, "F")
    tag(0, "ENDTAB"); tag(0, "ENDSEC")
    tag(0, "SECTION"); tag(2, "ENTITIES")
    tag(0, "VIEWPORT"); tag(5, "40"); tag(330, "1F"); tag(100, "AcDbEntity")
    tag(67, "     1"); tag(8, "0"); tag(100, "AcDbViewport")
    tag(10, "150.0"); tag(20, "100.0"); tag(30, "0.0"); tag(40, "200.0"); tag(41, "150.0")
    tag(69, "     2")
    tag(viewport_code, "89"); tag(viewport_code, "8A")
    tag(340, "0"); tag(90, "   32864")
    # An entity's own negative colour is not a layer's: left alone.
    tag(0, "LINE"); tag(5, "41"); tag(330, "1F"); tag(100, "AcDbEntity")
    tag(8, "Tavolo 2"); tag(62, "    -1"); tag(100, "AcDbLine")
    tag(10, "0.0"); tag(20, "0.0"); tag(30, "0.0"); tag(11, "10.0"); tag(21, "0.0"); tag(31, "0.0")
    tag(0, "ENDSEC"); tag(0, "EOF")
    return "".join(tags)


# Handle, name, colour as written and as it must come out ("Cloison" is off
# in the drawing; the last name is UTF-8, as in an R2007+ DXF).
written = [("10", "0", -7), ("89", "Tavolo 2", -2), ("8A", "Tavolo 3", -4),
           ("8B", "Cloison", -5), ("8C", "Cuisine é", -3)]
repaired = [("10", "0", 7), ("89", "Tavolo 2", 2), ("8A", "Tavolo 3", 4),
            ("8B", "Cloison", -5), ("8C", "Cuisine é", 3)]
with open("as-written.dxf", "w", encoding="utf-8", newline="") as out:
    out.write(dxf(written, 341))
with open("repaired.dxf", "w", encoding="utf-8", newline="") as out:
    out.write(dxf(repaired, 331))
