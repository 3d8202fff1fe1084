"""Writes the drawings of this folder with ezdxf (Debian's python3-ezdxf):
run `python3 make_entities.py` here. Each drawing holds kinds of entity that
plots from other programs carry: construction lines, meshes, multileaders,
attribute definitions, and kinds the host cannot draw."""

import ezdxf
from ezdxf.math import Vec2
from ezdxf.render import mleader


def frame(msp):
    msp.add_lwpolyline([(0, 0), (100, 0), (100, 100), (0, 100)], close=True)
    # The model tab on our PDF device and one of its papers.
    msp.dxf_layout.dxf.plot_configuration_file = "PDF.pc3"
    msp.dxf_layout.dxf.paper_size = "ISO A4 (297.00 x 210.00 mm)"
    msp.dxf_layout.dxf.paper_width = 297
    msp.dxf_layout.dxf.paper_height = 210


def construction_lines():
    doc = ezdxf.new("R2010")
    msp = doc.modelspace()
    frame(msp)
    msp.add_xline((50, 50), (1, 1))  # the diagonal, endless both ways
    msp.add_ray((20, 80), (1, 0))  # from (20, 80) to the right
    doc.saveas("construction_lines.dxf")


def meshes():
    doc = ezdxf.new("R2010")
    msp = doc.modelspace()
    frame(msp)
    # A polyface: two squares sharing an edge; the shared edge is invisible
    # in the second face.
    pf = msp.add_polyface()
    pf.append_face([(10, 10, 0), (30, 10, 0), (30, 30, 0), (10, 30, 0)])
    pf.append_face([(30, 10, 0), (50, 10, 0), (50, 30, 0), (30, 30, 0)])
    pf.optimize()
    faces = list(pf.faces())
    # Hide the edge (30, 30) -> (30, 10) of the second face.
    second = faces[1][-1]
    for code in ("vtx0", "vtx1", "vtx2", "vtx3"):
        index = second.dxf.get(code, 0)
        vertex = pf.vertices[abs(index) - 1] if index else None
        if vertex is not None and tuple(vertex.dxf.location)[:2] == (30, 30):
            second.dxf.set(code, -abs(index))
    # A 3 x 3 polygon mesh from (60, 10) to (90, 40), open both ways.
    pm = msp.add_polymesh((3, 3))
    for m in range(3):
        for n in range(3):
            pm.set_mesh_vertex((m, n), (60 + 15 * n, 10 + 15 * m, 0))
    # MESH: one square face from (10, 60) to (40, 90).
    mesh = msp.add_mesh()
    with mesh.edit_data() as data:
        data.vertices = [(10, 60, 0), (40, 60, 0), (40, 90, 0), (10, 90, 0)]
        data.faces = [(0, 1, 2, 3)]
    doc.saveas("meshes.dxf")


def multileaders():
    doc = ezdxf.new("R2010")
    msp = doc.modelspace()
    frame(msp)
    builder = msp.add_multileader_mtext("Standard")
    builder.set_content("NOTE", char_height=5, alignment=mleader.TextAlignment.left)
    builder.set_arrow_properties(size=4)
    builder.add_leader_line(mleader.ConnectionSide.left, [Vec2(20, 20)])
    builder.build(insert=Vec2(50, 50))

    block = doc.blocks.new("REPERE")
    block.add_circle((0, 0), 5)
    builder = msp.add_multileader_block("Standard")
    builder.set_content(name="REPERE", scale=1, alignment=mleader.BlockAlignment.center_extents)
    builder.set_arrow_properties(size=4)
    builder.add_leader_line(mleader.ConnectionSide.left, [Vec2(60, 20)])
    builder.build(insert=Vec2(80, 80))
    doc.saveas("multileaders.dxf")


def attribute_definitions():
    doc = ezdxf.new("R2010")
    msp = doc.modelspace()
    frame(msp)
    # Stand-alone: shows its tag.
    msp.add_attdef("REPERE", (10, 10), text="valeur", dxfattribs={"height": 5})
    # Inside a block: the reference shows its attribute (moved up to y = 75),
    # not the definition (which would stand at y = 62).
    block = doc.blocks.new("CARTOUCHE")
    block.add_line((0, 0), (40, 0))
    block.add_attdef("TITRE", (0, 2), text="défaut", dxfattribs={"height": 5})
    ref = msp.add_blockref("CARTOUCHE", (10, 60))
    ref.add_attrib("TITRE", "PLAN", (10, 75), dxfattribs={"height": 5})
    doc.saveas("attribute_definitions.dxf")


def undrawn():
    doc = ezdxf.new("R2010")
    msp = doc.modelspace()
    frame(msp)
    msp.add_mline([(10, 10), (90, 10)])
    msp.add_mline([(10, 20), (90, 20)])
    msp.new_entity("TOLERANCE", {"insert": (10, 50), "content": "{\\Fgdt;j}%%v0.1"})
    # On a layer that is off: left out by design, not by the host.
    doc.layers.add("CACHE").off()
    msp.add_mline([(10, 30), (90, 30)], dxfattribs={"layer": "CACHE"})
    doc.saveas("undrawn.dxf")


construction_lines()
meshes()
multileaders()
attribute_definitions()
undrawn()
