# Writes the plot style tables of this folder with ezdxf 0.18 (Debian
# python3-ezdxf), an open-source DXF library, so that our reader is checked
# against files it did not write itself. Not run by the build; kept to show
# what they hold. Run with /usr/bin/python3 from this folder.
#
# ezdxf packs the header's three numbers with the platform's "unsigned long":
# 8 bytes each on 64-bit Linux (ez-wide.ctb, a 72-byte header, where the
# usual one is 60 bytes).
from ezdxf.addons import acadctb

table = acadctb.new_ctb()
table.description = "Table d'essai"
red = table[1]
red.color = (0, 0, 255)      # colour 1 plots blue
red.screen = 50
red.set_lineweight(0.5)
green = table[3]
green.set_lineweight(0.33)   # not in the usual table: appended to it
yellow = table[2]
yellow.color = (10, 200, 30)
yellow.grayscale = True
white = table[7]
white.color = (0, 0, 0)

table.save("ez-wide.ctb")
