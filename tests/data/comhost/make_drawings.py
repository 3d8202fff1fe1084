# Writes the drawings of the COM host checks: each has one paper-space layout
# "Présentation1" holding an A4 frame and a few lines, so that the embedded
# host and the scripted host of the test server see the same layouts.
#   /usr/bin/python3 make_drawings.py   (Debian's python3-ezdxf)
import ezdxf

for name, lines in (("Plan.dxf", 3), ("Coupe.dxf", 5), ("Erreur53.dxf", 1), ("Facade.dxf", 2)):
    doc = ezdxf.new("R2010")
    msp = doc.modelspace()
    for i in range(lines):
        msp.add_line((0, i * 10), (100, i * 10))
    doc.layouts.rename("Layout1", "Présentation1")
    layout = doc.layouts.get("Présentation1")
    layout.page_setup(size=(297, 210), margins=(10, 10, 10, 10), units="mm")
    layout.add_lwpolyline([(0, 0), (277, 0), (277, 190), (0, 190)], close=True)
    doc.saveas(name)
