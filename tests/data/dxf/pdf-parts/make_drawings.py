#!/usr/bin/env python3
"""Writes the drawings whose sheets are plotted into a PDF book both
directly and as one-page files added to it (ezdxf, Debian's python3-ezdxf).
Both drawings have layers of their own and a layer of the same name
("Cotes (façade)"), text (searchable in the PDF: fonts) and plan.dxf a
raster image (../../raster/rgb8.png). Drawing units are sheet millimetres
when the model is plotted at 1:1 from (0, 0).

Run from this folder: /usr/bin/python3 make_drawings.py
"""

import ezdxf


def plan():
    doc = ezdxf.new("R2010")
    for name, color in (("Murs", 1), ("Cotes (façade)", 3), ("Texte", 5)):
        doc.layers.add(name, color=color)
    msp = doc.modelspace()
    msp.add_lwpolyline([(10, 10), (140, 10), (140, 90), (10, 90)], close=True,
                       dxfattribs={"layer": "Murs", "lineweight": 50})
    msp.add_line((10, 5), (140, 5), dxfattribs={"layer": "Cotes (façade)"})
    msp.add_text("Séjour (12 0 R)", dxfattribs={"layer": "Texte", "height": 5,
                                                "insert": (20, 60)})
    image_def = doc.add_image_def(filename="../../raster/rgb8.png", size_in_pixel=(16, 16))
    msp.add_image(image_def, insert=(100, 40), size_in_units=(30, 30),
                  dxfattribs={"layer": "Murs"})
    doc.layouts.rename("Layout1", "Présentation")
    psp = doc.layouts.get("Présentation")
    psp.add_circle((50, 50), 30, dxfattribs={"layer": "Murs"})
    psp.add_text("Cartouche", dxfattribs={"layer": "Texte", "height": 4, "insert": (10, 10)})
    doc.header["$EXTMIN"] = (0, 0, 0)
    doc.header["$EXTMAX"] = (150, 100, 0)
    doc.saveas("plan.dxf")


def coupe():
    doc = ezdxf.new("R2010")
    for name, color in (("Cotes (façade)", 3), ("Toit", 6)):
        doc.layers.add(name, color=color)
    msp = doc.modelspace()
    msp.add_lwpolyline([(10, 10), (50, 50), (90, 10)], dxfattribs={"layer": "Toit"})
    msp.add_line((10, 5), (90, 5), dxfattribs={"layer": "Cotes (façade)"})
    msp.add_text("Coupe AA ⌀ Ω", dxfattribs={"layer": "Toit", "height": 4, "insert": (20, 20)})
    doc.header["$EXTMIN"] = (0, 0, 0)
    doc.header["$EXTMAX"] = (100, 60, 0)
    doc.saveas("coupe.dxf")


if __name__ == "__main__":
    plan()
    coupe()
