# Writes negative-radius.dxf: a circle and an arc written by ezdxf 0.18
# (Debian python3-ezdxf) with radius 20 and 30, then their radii made
# negative by editing the file, as some writers store them. Run with
# /usr/bin/python3 make_drawings.py in this folder.
import ezdxf

doc = ezdxf.new("R2000")
msp = doc.modelspace()
msp.add_circle((50, 50), 20)
msp.add_arc((150, 50), 30, 0, 90)
doc.saveas("negative-radius.dxf")

with open("negative-radius.dxf", encoding="utf-8") as f:
    lines = f.read().split("\n")
entity = None
for i in range(0, len(lines) - 1, 2):
    code, value = lines[i].strip(), lines[i + 1]
    if code == "0":
        entity = value
    elif code == "40" and entity in ("CIRCLE", "ARC"):
        lines[i + 1] = "-" + value
with open("negative-radius.dxf", "w", encoding="utf-8", newline="") as f:
    f.write("\n".join(lines))
