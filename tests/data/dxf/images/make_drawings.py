#!/usr/bin/env python3
"""Writes the drawings with raster images (ezdxf, Debian's python3-ezdxf).
The image files are in ../../raster. Run from this folder with the system
Python: /usr/bin/python3 make_drawings.py"""

import ezdxf


def placed(doc, msp, path, insert, size, rotation=0, pixels=(16, 16)):
    image_def = doc.add_image_def(filename=path, size_in_pixel=pixels)
    return msp.add_image(image_def, insert=insert, size_in_units=size, rotation=rotation)


def images():
    """One image per way of finding its file, one that is nowhere, and the
    frames shown (RASTERVARIABLES frame 1)."""
    doc = ezdxf.new("R2010")
    msp = doc.modelspace()
    doc.set_raster_variables(frame=1)
    # As stored, relative to the drawing's folder.
    placed(doc, msp, "../../raster/rgb8.png", (0, 0), (16, 16))
    # A Windows path elsewhere: found by its name along the support path.
    placed(doc, msp, "C:\\Projets\\Logos\\python.jpg", (20, 0), (16, 16), rotation=30)
    # Nowhere.
    placed(doc, msp, "C:\\Projets\\Logos\\absent.png", (0, 20), (32, 16), pixels=(32, 16))
    doc.saveas("images.dxf")


def clipped():
    """Frames hidden; one image clipped by a rectangle, one by a triangle,
    one whose clipping is switched off (the whole image shows)."""
    doc = ezdxf.new("R2010")
    msp = doc.modelspace()
    doc.set_raster_variables(frame=0)
    rect = placed(doc, msp, "../../raster/rgb8.png", (0, 0), (16, 16))
    rect.set_boundary_path([(3.5, 3.5), (11.5, 7.5)])
    tri = placed(doc, msp, "../../raster/rgb8.png", (20, 0), (16, 16))
    tri.set_boundary_path([(-0.5, 15.5), (15.5, 15.5), (7.5, -0.5)])
    off = placed(doc, msp, "../../raster/rgb8.png", (40, 0), (16, 16))
    off.set_boundary_path([(3.5, 3.5), (11.5, 7.5)])
    off.dxf.clipping = 0
    doc.saveas("clipped.dxf")


if __name__ == "__main__":
    images()
    clipped()
