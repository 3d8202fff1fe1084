# Writes minsert.dxf with ezdxf 0.18 (Debian python3-ezdxf): a block with one
# attribute inserted as an array of 2 rows and 3 columns (spacing 30 across,
# 20 up), turned by 90°, its attribute in a TrueType style. Run with
# /usr/bin/python3 make_drawings.py in this folder.
import ezdxf

doc = ezdxf.new("R2000")
doc.styles.new("ARIAL", dxfattribs={"font": "arial.ttf"})
block = doc.blocks.new("CASE")
block.add_line((0, 0), (10, 0))
block.add_attdef("NUM", (0, 2), dxfattribs={"height": 2, "style": "ARIAL"})
ref = doc.modelspace().add_blockref("CASE", (100, 100), dxfattribs={"rotation": 90})
ref.add_auto_attribs({"NUM": "A-1"})
ref.dxf.column_count = 3
ref.dxf.row_count = 2
ref.dxf.column_spacing = 30
ref.dxf.row_spacing = 20
doc.saveas("minsert.dxf")
