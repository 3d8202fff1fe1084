# Writes the fan-out drawings with ezdxf 0.18 (Debian python3-ezdxf). Run
# with /usr/bin/python3 make_drawings.py in this folder.
#
# xref-0.dxf .. xref-6.dxf: xref-0 holds a square; every xref-N has ten
# external-reference blocks, all naming xref-(N-1), each inserted once side
# by side, so that xref-6 shows 10^6 squares through six levels of
# references to six files.
#
# blocks.dxf: block B0 is one line; B1 .. B8 each hold ten references to the
# block below; the model space holds ten references to B8: 10^9 lines.
import ezdxf

FAN = 10


def new_doc():
    doc = ezdxf.new("R2000")
    doc.header["$INSUNITS"] = 4
    return doc


doc = new_doc()
doc.modelspace().add_lwpolyline([(0, 0), (8, 0), (8, 8), (0, 8)], close=True)
doc.saveas("xref-0.dxf")
for level in range(1, 7):
    doc = new_doc()
    msp = doc.modelspace()
    step = 10 ** level
    for i in range(FAN):
        name = "NIV%d_%d" % (level - 1, i)
        doc.add_xref_def("xref-%d.dxf" % (level - 1), name)
        msp.add_blockref(name, (i * step, 0))
    doc.saveas("xref-%d.dxf" % level)

doc = new_doc()
b0 = doc.blocks.new("B0")
b0.add_line((0, 0), (0.8, 0.8))
for level in range(1, 9):
    block = doc.blocks.new("B%d" % level)
    step = 10 ** (level - 1)
    for i in range(FAN):
        block.add_blockref("B%d" % (level - 1), (i * step, (level % 2) * step))
msp = doc.modelspace()
for i in range(FAN):
    msp.add_blockref("B8", (i * 10 ** 8, 0))
doc.saveas("blocks.dxf")
