#!/bin/sh
# Succeeds with a DXF file whose TABLES section never ends.
printf '0\r\nSECTION\r\n2\r\nTABLES\r\n0\r\nEOF\r\n' > "$2"
