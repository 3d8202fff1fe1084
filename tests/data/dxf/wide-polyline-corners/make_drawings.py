# Writes corners.dxf with ezdxf 0.18 (Debian python3-ezdxf): two polylines 4
# units wide, one turning by a right angle at (50, 0), one turning back at a
# sharp 10° angle at (150, 0). Run with /usr/bin/python3 make_drawings.py in
# this folder.
import math

import ezdxf

doc = ezdxf.new("R2000")
msp = doc.modelspace()
msp.add_lwpolyline([(0, 0), (50, 0), (50, 50)], dxfattribs={"const_width": 4})
back = math.radians(170)
msp.add_lwpolyline([(100, 0), (150, 0), (150 + 50 * math.cos(back), 50 * math.sin(back))],
                   dxfattribs={"const_width": 4})
doc.saveas("corners.dxf")
