# Writes the drawing of this folder with ezdxf 0.18 (Debian python3-ezdxf).
# Not run by the build; kept to show what it holds. Run it in this folder:
#   /usr/bin/python3 make_drawings.py
#
# tables.dxf has one paper layout per plot style table it names, each
# plotting with plot styles on an ISO A4 sheet of PDF.pc3: "Monochrome"
# names the table the program ships, "Absente" one found nowhere, and
# "Tronquee" one the test puts in the per-user folder cut short
# (tests/data/plotstyle/broken/truncated.ctb).
import ezdxf

PLOT_PLOT_STYLES = 32

LAYOUTS = [
    ("Monochrome", "monochrome.ctb"),
    ("Absente", "absente.ctb"),
    ("Tronquee", "truncated.ctb"),
]

doc = ezdxf.new("R2018")
doc.layouts.rename("Layout1", LAYOUTS[0][0])
for index, (name, table) in enumerate(LAYOUTS):
    layout = doc.layout(name) if index == 0 else doc.layouts.new(name)
    dxf = layout.dxf_layout.dxf
    dxf.plot_configuration_file = "PDF.pc3"
    dxf.paper_size = "ISO A4 (297.00 x 210.00 mm)"
    dxf.paper_width = 297
    dxf.paper_height = 210
    for margin in ("left_margin", "bottom_margin", "right_margin", "top_margin"):
        setattr(dxf, margin, 0)
    dxf.plot_paper_units = 1
    dxf.plot_type = 5  # the layout
    dxf.current_style_sheet = table
    dxf.plot_layout_flags = dxf.plot_layout_flags | PLOT_PLOT_STYLES
    layout.add_lwpolyline([(10, 10), (150, 10), (150, 100), (10, 100)], close=True,
                          dxfattribs={"color": 1})
    layout.add_text(name, dxfattribs={"height": 5, "color": 3}).set_placement((20, 20))
doc.saveas("tables.dxf")
