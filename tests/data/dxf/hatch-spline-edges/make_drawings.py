# Writes the drawings of this folder with ezdxf 0.18 (Debian python3-ezdxf):
# one hatch whose single edge path is a wedge of a line, a spline edge, a
# line and an arc, the spline edge placed first or last of the path's edges
# in turn. Run with /usr/bin/python3 make_drawings.py in this folder.
import ezdxf

# name, release, spline written with fit points, spline edge last
DRAWINGS = [("spline-r2018.dxf", "R2018", False, False),
            ("spline-fit-r2018.dxf", "R2018", True, False),
            ("spline-last-r2018.dxf", "R2018", False, True),
            ("spline-last-r2000.dxf", "R2000", False, True)]


def add_spline(path, with_fit):
    path.add_spline(
        control_points=[(100, 0), (110, 30), (90, 60), (100, 100)],
        fit_points=[(100, 0), (104, 50), (100, 100)] if with_fit else None,
        knot_values=[0, 0, 0, 0, 1, 1, 1, 1],
        degree=3)


for name, version, with_fit, spline_last in DRAWINGS:
    doc = ezdxf.new(version)
    hatch = doc.modelspace().add_hatch(color=1)
    path = hatch.paths.add_edge_path()
    if spline_last:
        path.add_line((100, 100), (0, 100))
        path.add_arc((0, 50), 50, 90, 270, ccw=True)
        path.add_line((0, 0), (100, 0))
        add_spline(path, with_fit)
    else:
        path.add_line((0, 0), (100, 0))
        add_spline(path, with_fit)
        path.add_line((100, 100), (0, 100))
        path.add_arc((0, 50), 50, 90, 270, ccw=True)
    doc.saveas(name)
