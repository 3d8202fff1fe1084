#!/usr/bin/env python3
"""Writes searchable_text.dxf with ezdxf: text in a style whose shape font
is found nowhere (plume.shx), so that the program's own stroke font draws
it. The texts carry accents, characters beyond the Windows code page and
the special codes for the diameter, degree and plus-minus signs; one line
is turned a quarter, and a multi-line text has two lines. Drawing units are
sheet millimetres when the model is plotted at 1:1 from (0, 0).

Run from this folder: /usr/bin/python3 make_drawings.py
"""

import ezdxf

doc = ezdxf.new("R2010")
doc.styles.new("PLUME", dxfattribs={"font": "plume.shx"})
msp = doc.modelspace()
msp.add_text("Façade %%c25 %%d %%p Ω ø ⌀", dxfattribs={"style": "PLUME", "height": 5,
                                                      "insert": (10, 40)})
msp.add_text("Coupe AA", dxfattribs={"style": "PLUME", "height": 5, "rotation": 90,
                                     "insert": (130, 10)})
msp.add_mtext("Légende\\PÉchelle 1:50", dxfattribs={"style": "PLUME", "char_height": 4,
                                                   "insert": (10, 90), "attachment_point": 1})
doc.header["$EXTMIN"] = (0, 0, 0)
doc.header["$EXTMAX"] = (150, 100, 0)
doc.saveas("searchable_text.dxf")
