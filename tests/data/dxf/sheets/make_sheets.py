# Writes the drawings of this folder with ezdxf 0.18 (Debian python3-ezdxf).
# Not run by the build; kept to show what they hold. Run it in this folder:
#   /usr/bin/python3 make_sheets.py
#
# never_set_up.dxf holds layouts as drawings from elsewhere store them: a
# paper of 0 x 0 mm without a name, the device "None", devices this machine
# does not have (another program's .pc3, another system's printer), paper
# names written by another program ("ISO_A4_(210.00_x_297.00_MM)") or
# shortened ("ISO A2"). It was saved on the model tab, and the paper layout
# last shown ("Autre PDF", on *Paper_Space) is not the first tab.
import ezdxf

LAYOUTS = [
    # name, device, paper name, width, height (mm)
    ("Vierge", "", "", 0, 0),
    ("Sans traceur", "None", "ISO_A4_(210.00_x_297.00_MM)", 210, 297),
    ("Autre PDF", "DWG To PDF.pc3", "ISO_full_bleed_A1_(841.00_x_594.00_MM)", 841, 594),
    ("Imprimante", "Microsoft Print to PDF", "Letter", 215.9, 279.4),
    ("A2 court", "PDF.pc3", "ISO A2", 0, 0),
    ("Maison", "Absent.pc3", "Feuille maison", 500, 250),
]


def store(layout, device, paper, width, height):
    dxf = layout.dxf_layout.dxf
    dxf.plot_configuration_file = device
    dxf.paper_size = paper
    dxf.paper_width = width
    dxf.paper_height = height
    for margin in ("left_margin", "bottom_margin", "right_margin", "top_margin"):
        setattr(dxf, margin, 0)
    dxf.plot_paper_units = 1
    dxf.plot_type = 5  # the layout


doc = ezdxf.new("R2018")
msp = doc.modelspace()
msp.add_lwpolyline([(0, 0), (200, 0), (200, 100), (0, 100)], close=True)
store(msp, "none_device", "", 0, 0)
doc.layouts.rename("Layout1", "Vierge")
for name, device, paper, width, height in LAYOUTS:
    layout = doc.layout(name) if name == "Vierge" else doc.layouts.new(name)
    store(layout, device, paper, width, height)
    layout.add_lwpolyline([(10, 10), (150, 10), (150, 100), (10, 100)], close=True)
    layout.add_text(name, dxfattribs={"height": 5}).set_placement((20, 20))
doc.layouts.set_active_layout("Autre PDF")
doc.header["$TILEMODE"] = 1
doc.saveas("never_set_up.dxf")
