#!/usr/bin/env python3
"""Writes sample.dxf, the drawing the tests of the host's automation open
(tests/embedded/automation): a release 2000 drawing in code page 1252 with
three layers (COTES not plotted), two views (Détail in paper space), three
text style records (one a shape file), the model layout and two paper
layouts stored out of tab order: "Coupe" (tab 2, no device, a sheet of its
own) before "Présentation1" (tab 1, PDF.pc3 on an A3 sheet), and two page
setups. Written tag by tag; run with python3."""

from pathlib import Path


def tags(*pairs):
    return "".join(f"{code}\n{value}\n" for code, value in pairs)


def section(name, body):
    return tags((0, "SECTION"), (2, name)) + body + tags((0, "ENDSEC"))


def table(name, records):
    return tags((0, "TABLE"), (2, name)) + "".join(records) + tags((0, "ENDTAB"))


# Flags of plot settings: the default (standard scale, plot styles,
# lineweights, viewports first), with the model bit, without the scale bit.
DEFAULT, MODEL, CUSTOM_SCALE = 688, 688 | 1024, 688 & ~16

layers = [tags((0, "LAYER"), (2, name), (70, 0), (62, 7), (290, plot))
          for name, plot in (("0", 1), ("MURS", 1), ("COTES", 0))]
views = [tags((0, "VIEW"), (2, name), (70, flags), (40, 100), (41, 100))
         for name, flags in (("Façade", 0), ("Détail", 1))]
styles = [tags((0, "STYLE"), (2, "Standard"), (70, 0), (3, "txt")),
          tags((0, "STYLE"), (2, ""), (70, 1), (3, "ltypeshp.shx")),
          tags((0, "STYLE"), (2, "Titre"), (70, 0), (3, "romans.shx"))]
spaces = (("1F", "*Model_Space", "22"), ("58", "*Paper_Space", "59"), ("70", "*Paper_Space0", "71"))
records = [tags((0, "BLOCK_RECORD"), (5, handle), (100, "AcDbSymbolTableRecord"),
                (100, "AcDbBlockTableRecord"), (2, name), (340, layout))
           for handle, name, layout in spaces]
blocks = "".join(tags((0, "BLOCK"), (330, handle), (100, "AcDbEntity"), (8, "0"),
                      (100, "AcDbBlockBegin"), (2, name), (70, 0), (10, 0), (20, 0),
                      (0, "ENDBLK"), (330, handle))
                 for handle, name, _ in spaces)


def layout(handle, name, tab, record, *settings):
    return (tags((0, "LAYOUT"), (5, handle), (330, "1A"), (100, "AcDbPlotSettings"), *settings)
            + tags((100, "AcDbLayout"), (1, name), (70, 1), (71, tab), (330, record)))


def dictionary(handle, entries):
    return tags((0, "DICTIONARY"), (5, handle), (100, "AcDbDictionary"),
                *[pair for key, value in entries for pair in ((3, key), (350, value))])


objects = (
    dictionary("C", [("ACAD_LAYOUT", "1A"), ("ACAD_PLOTSETTINGS", "1B")])
    + dictionary("1A", [("Model", "22"), ("Coupe", "71"), ("Présentation1", "59")])
    + dictionary("1B", [("A1 PDF", "90"), ("Objet A4", "91")])
    + layout("22", "Model", 0, "1F", (2, "none_device"), (70, MODEL))
    + layout("71", "Coupe", 2, "70", (2, ""), (4, "Feuille maison"), (44, 500), (45, 250),
             (70, DEFAULT))
    + layout("59", "Présentation1", 1, "58", (2, "PDF.pc3"),
             (4, "ISO A3 (420.00 x 297.00 mm)"), (70, DEFAULT))
    + tags((0, "PLOTSETTINGS"), (5, "90"), (330, "1B"), (100, "AcDbPlotSettings"),
           (1, "A1 PDF"), (2, "PDF.pc3"), (4, "ISO A1 (841.00 x 594.00 mm)"), (44, 841),
           (45, 594), (142, 1), (143, 50), (70, CUSTOM_SCALE), (74, 1))
    + tags((0, "PLOTSETTINGS"), (5, "91"), (330, "1B"), (100, "AcDbPlotSettings"),
           (1, "Objet A4"), (70, MODEL)))

text = (section("HEADER", tags((9, "$ACADVER"), (1, "AC1015"), (9, "$DWGCODEPAGE"),
                               (3, "ANSI_1252"), (9, "$TILEMODE"), (70, 1)))
        + section("TABLES", table("LAYER", layers) + table("VIEW", views)
                  + table("STYLE", styles) + table("BLOCK_RECORD", records))
        + section("BLOCKS", blocks) + section("ENTITIES", "") + section("OBJECTS", objects)
        + tags((0, "EOF")))
(Path(__file__).resolve().parent / "sample.dxf").write_bytes(text.encode("cp1252"))
