# Writes the drawings of this folder. layouts.dxf is written with ezdxf 0.18
# (Debian python3-ezdxf): three paper layouts on sheets of different sizes,
# each holding one text that names it, the second one active when saved so
# that its block is *Paper_Space while it is not the first layout. The other
# files are that file damaged by editing its tags, as damaged files met in
# practice are. Run with /usr/bin/python3 make_drawings.py in this folder.
import ezdxf

doc = ezdxf.new("R2010")
doc.modelspace().add_text("MODELE", dxfattribs={"height": 5})
sizes = {"Alpha": (297, 210), "Beta": (420, 297), "Gamma": (594, 420)}
for name, (width, height) in sizes.items():
    layout = doc.layouts.new(name)
    layout.page_setup(size=(width, height), margins=(10, 10, 10, 10), units="mm")
    layout.add_text(name.upper(), dxfattribs={"height": 10, "insert": (20, 20)})
doc.layouts.delete("Layout1")
doc.layouts.set_active_layout("Beta")
doc.saveas("layouts.dxf")


def read_pairs(name):
    with open(name, encoding="utf-8") as f:
        lines = f.read().split("\n")
    return [(lines[i], lines[i + 1]) for i in range(0, len(lines) - 1, 2)]


def write_pairs(name, pairs):
    with open(name, "w", encoding="utf-8", newline="") as f:
        for code, value in pairs:
            f.write(code + "\n" + value + "\n")


def records(pairs):
    """Start indexes of the records: the 0 tags."""
    return [i for i, (code, _) in enumerate(pairs) if code.strip() == "0"]


def record_of(pairs, starts, type_, name_code, name):
    """(start, end) of the record of `type_` whose `name_code` tag is `name`."""
    for k, s in enumerate(starts):
        end = starts[k + 1] if k + 1 < len(starts) else len(pairs)
        if pairs[s][1] == type_ and any(
                c.strip() == name_code and v == name for c, v in pairs[s:end]):
            return s, end
    raise KeyError(name)


base = read_pairs("layouts.dxf")

# The block record table without its header: its TABLE record is left out,
# the records themselves and ENDTAB stay.
pairs = list(base)
starts = records(pairs)
s, e = record_of(pairs, starts, "TABLE", "2", "BLOCK_RECORD")
write_pairs("no-block-record-table-header.dxf", pairs[:s] + pairs[e:])

# A section without its header: the 0/SECTION and 2/<name> tags are left out.
for section in ("TABLES", "BLOCKS"):
    pairs = list(base)
    at = [i for i in range(len(pairs) - 1)
          if pairs[i][1] == "SECTION" and pairs[i + 1] == ("  2", section)][0]
    write_pairs("no-%s-section-header.dxf" % section.lower(), pairs[:at] + pairs[at + 2:])

# A section without its end: its 0/ENDSEC tag is left out, so the next
# section starts inside it.
for section in ("BLOCKS", "ENTITIES"):
    pairs = list(base)
    at = [i for i in range(len(pairs) - 1)
          if pairs[i][1] == "SECTION" and pairs[i + 1] == ("  2", section)][0]
    end = [i for i in range(at, len(pairs)) if pairs[i] == ("  0", "ENDSEC")][0]
    write_pairs("no-%s-section-end.dxf" % section.lower(), pairs[:end] + pairs[end + 1:])

# Gamma's layout names a block record that does not exist and its record
# does not point back; its block is the only one no other layout claims.
pairs = list(base)
starts = records(pairs)
s, e = record_of(pairs, starts, "LAYOUT", "1", "Gamma")
subclass = [i for i in range(s, e) if pairs[i][0].strip() == "100" and pairs[i][1] == "AcDbLayout"][0]
link = [i for i in range(subclass, e) if pairs[i][0].strip() == "330"][0]
record = pairs[link][1]
pairs[link] = (pairs[link][0], "FFFF")
rs, re_ = record_of(pairs, starts, "BLOCK_RECORD", "5", record)
for i in range(rs, re_):
    if pairs[i][0].strip() == "340":
        pairs[i] = (pairs[i][0], "0")
write_pairs("layout-link-wrong.dxf", pairs)

# Gamma's block record is gone and nothing else links Gamma to a block: its
# layout's link points nowhere.
pairs = list(base)
starts = records(pairs)
s, e = record_of(pairs, starts, "LAYOUT", "1", "Gamma")
layout = pairs[s:e]
subclass = [i for i, (c, v) in enumerate(layout) if c.strip() == "100" and v == "AcDbLayout"][0]
link = [i for i, (c, _) in enumerate(layout) if c.strip() == "330" and i > subclass][0]
record = layout[link][1]
spans = list(zip(starts, starts[1:] + [len(pairs)]))


def has(a, b, code, value):
    return any(c.strip() == code and v == value for c, v in pairs[a:b])


# The record itself, and the BLOCK and ENDBLK records owned by it.
drop = [(a, b) for a, b in spans if pairs[a][1] == "BLOCK_RECORD" and has(a, b, "5", record)]
drop += [(a, b) for a, b in spans
         if pairs[a][1] in ("BLOCK", "ENDBLK") and has(a, b, "330", record)]
kept = [p for i, p in enumerate(pairs) if not any(a <= i < b for a, b in drop)]
write_pairs("layout-block-missing.dxf", kept)

# Model space's block record renamed "*U" (its true name kept in extended
# data), as an export to an old release writes it: the entities of the
# ENTITIES section name that record as their owner.
pairs = list(base)
starts = records(pairs)
s, e = record_of(pairs, starts, "BLOCK_RECORD", "2", "*Model_Space")
name = [i for i in range(s, e) if pairs[i][0].strip() == "2"][0]
pairs[name] = (pairs[name][0], "*U")
pairs[e:e] = [("1001", "ACDBDYNAMICBLOCKTRUENAME2"), ("1000", "*MODEL_SPACE")]
write_pairs("model-space-record-renamed.dxf", pairs)
