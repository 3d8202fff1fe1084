"""Writes the drawing of this folder with ezdxf (Debian's python3-ezdxf): run
`/usr/bin/python3 make_cli.py` here. A frame of 4000 x 2000 drawing units
(millimetres) whose size on the sheet tells the plot scale, in red, and a
green cross in its middle."""

import ezdxf


def frame():
    doc = ezdxf.new("R2010")
    doc.header["$INSUNITS"] = 4  # millimetres
    msp = doc.modelspace()
    red, green = {"color": 1}, {"color": 3}
    msp.add_lwpolyline([(0, 0), (4000, 0), (4000, 2000), (0, 2000)], close=True, dxfattribs=red)
    msp.add_line((1900, 1000), (2100, 1000), dxfattribs=green)
    msp.add_line((2000, 900), (2000, 1100), dxfattribs=green)
    # The model tab on our PDF device, ISO A4, paper sizes in millimetres.
    settings = msp.dxf_layout.dxf
    settings.plot_configuration_file = "PDF.pc3"
    settings.paper_size = "ISO A4 (297.00 x 210.00 mm)"
    settings.paper_width = 297
    settings.paper_height = 210
    settings.plot_paper_units = 1
    doc.saveas("frame.dxf")


frame()
