#!/bin/sh
echo "a warning first" >&2
echo "dwg2dxf: fichier abîmé (section des objets)" >&2
echo "" >&2
exit 1
