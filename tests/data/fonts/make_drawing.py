#!/usr/bin/env python3
"""Writes shape_fonts.dxf with ezdxf: text in styles whose fonts are the
shape fonts beside it (trait.shx with the big font big.shx, uni), and in a
standard shape font that is not there (romans.shx); two more styles name
fonts found nowhere (perdue.shx, arial.ttf). Heights are chosen so
that one vector length of the test fonts is one drawing unit.

Run from this folder: python3 make_drawing.py
"""

import ezdxf

doc = ezdxf.new("R2010")
doc.header["$DWGCODEPAGE"] = "ANSI_936"
doc.styles.new("TRAIT", dxfattribs={"font": "trait.shx", "bigfont": "big.shx"})
doc.styles.new("UNI", dxfattribs={"font": "uni"})
doc.styles.new("ROMANS", dxfattribs={"font": "romans.shx"})
doc.styles.new("PERDU", dxfattribs={"font": "perdue.shx"})
doc.styles.new("ARIAL", dxfattribs={"font": "arial.ttf"})
msp = doc.modelspace()
msp.add_text("LO", dxfattribs={"style": "TRAIT", "height": 6, "insert": (10, 10)})
msp.add_text("\u4e2d", dxfattribs={"style": "TRAIT", "height": 8, "insert": (10, 30)})
msp.add_text("\u0394\u03b1", dxfattribs={"style": "UNI", "height": 6, "insert": (10, 50)})
msp.add_text("\u03b1", dxfattribs={"style": "ROMANS", "height": 5, "insert": (10, 70)})
msp.add_mtext("{\\C1O}\\FUNI;\u0394", dxfattribs={"style": "TRAIT", "char_height": 6,
                                                "insert": (40, 16), "attachment_point": 7})
doc.header["$EXTMIN"] = (0, 0, 0)
doc.header["$EXTMAX"] = (60, 80, 0)
doc.header["$LIMMIN"] = (0, 0)
doc.header["$LIMMAX"] = (60, 80)
doc.saveas("shape_fonts.dxf")
