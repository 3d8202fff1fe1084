"""Writes slow.dxf: a small drawing whose plot takes a while.

Block B0 holds ten short lines; each block Bn holds ten references to
B(n-1), side by side; model space references the last block COPIES times.
The drawing is a few kilobytes; its plot walks 10**(LEVELS + 1) * COPIES
lines, most of them shorter than the plot's resolution: a fraction of a
second, long enough for a test to stop a run in the middle of it.

Run: /usr/bin/python3 make_drawings.py (needs python3-ezdxf).
"""

import ezdxf

LEVELS = 5
COPIES = 6

doc = ezdxf.new("R2010")
block = doc.blocks.new("B0")
for i in range(10):
    block.add_line((i, 0), (i + 0.5, 1))
for level in range(1, LEVELS + 1):
    block = doc.blocks.new(f"B{level}")
    for i in range(10):
        # alternately across and up, so that the drawing stays square
        offset = (i * 11 ** ((level - 1) // 2), 0) if level % 2 else (0, i * 11 ** ((level - 1) // 2))
        block.add_blockref(f"B{level - 1}", offset)
for i in range(COPIES):
    doc.modelspace().add_blockref(f"B{LEVELS}", (0, i * 0.3))
doc.saveas("slow.dxf")
