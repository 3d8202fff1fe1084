# Writes the drawings of this folder with ezdxf 0.18 (Debian python3-ezdxf),
# an open-source DXF library, so that the reader is checked against files it
# did not write itself. Not run by the build; kept to show what they hold.
import ezdxf

DRAWINGS = [("R12", "ez-r12.dxf", "asc"), ("R2007", "ez-r2007.dxf", "asc"),
            ("R2000", "ezbin-r2000.dxf", "bin"), ("R2018", "ezbin-r2018.dxf", "bin")]

for version, name, fmt in DRAWINGS:
    doc = ezdxf.new(version, setup=True)
    msp = doc.modelspace()
    doc.layers.add("MURS", color=1)
    doc.layers.add("CACHE", color=3).off()
    msp.add_line((0, 0), (100, 0), dxfattribs={"layer": "MURS"})
    msp.add_circle((50, 50), 20)
    msp.add_arc((50, 50), 30, 0, 90)
    msp.add_text("Élévation °", dxfattribs={"height": 5}).set_placement((10, 80))
    msp.add_line((0, 10), (100, 10), dxfattribs={"layer": "CACHE"})
    if version != "R12":
        msp.add_lwpolyline([(0, 0, 0, 0, 0.5), (50, 20), (100, 0)], format="xyseb")
        msp.add_ellipse((150, 50), major_axis=(30, 0), ratio=0.5)
        msp.add_mtext("Ligne 1\\PLigne 2", dxfattribs={"char_height": 4, "insert": (120, 100)})
        hatch = msp.add_hatch(color=2)
        hatch.paths.add_polyline_path([(0, 0), (20, 0), (20, 20), (0, 20)])
        msp.add_spline([(0, 0), (10, 20), (30, -10), (50, 0)])
    block = doc.blocks.new("PORTE")
    block.add_line((0, 0), (10, 0))
    block.add_arc((0, 0), 10, 0, 90)
    msp.add_blockref("PORTE", (200, 0), dxfattribs={"rotation": 30})
    paper = doc.layout("Layout1")
    if version != "R12":
        paper.page_setup(size=(420, 297), margins=(10, 10, 10, 10), units="mm")
        paper.add_viewport(center=(200, 150), size=(300, 200), view_center_point=(100, 50),
                           view_height=150)
        doc.layouts.new("Deuxième")
    paper.add_line((0, 0), (400, 0))
    doc.saveas(name, fmt=fmt)
