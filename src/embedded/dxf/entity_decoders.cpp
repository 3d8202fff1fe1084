#include "embedded/dxf/entity_decoders.h"

#include <algorithm>
#include <cmath>
#include <string>
#include <vector>

#include "embedded/dxf/mesh_decoder.h"
#include "embedded/dxf/multileader_decoder.h"
#include "embedded/dxf/reader.h"

namespace sheafwork::embedded {
namespace {

// A count in the file sizes a reservation only up to the number of tags
// that could follow it; the vectors grow with what is really there.
void Reserve(auto& v, std::int64_t count, std::size_t tags) {
  if (count > 0) v.reserve(std::min(static_cast<std::size_t>(count), tags));
}

// A list of points given one coordinate tag at a time: the X code starts a
// new point, Y and Z set the last one (and are dropped before any X). False
// when the code is not one of the points'.
bool AddListPoint(const Context& ctx, const Tag& t, int xCode, std::vector<Vec3>& points) {
  if (t.code == xCode) {
    points.emplace_back().x = ctx.Real(t);
    return true;
  }
  if (t.code != xCode + 10 && t.code != xCode + 20) return false;
  if (!points.empty()) SetPoint(ctx, t, xCode, points.back());
  return true;
}

bool InCommonPart(std::string_view subclass) {
  return subclass.empty() || subclass == "AcDbEntity";
}

// Applies the tags every entity has; false for any other tag.
bool ApplyCommon(const Context& ctx, const Tag& t, Entity& e, bool& paperSpace) {
  EntityProps& p = e.props;
  switch (t.code) {
    case 5:
      e.handle = std::string(TrimSpaces(t.value));
      return true;
    case 6:
      p.linetype = ctx.Text(t);
      return true;
    case 8:
      p.layer = ctx.Text(t);
      return true;
    case 48:
      p.linetypeScale = ctx.Real(t);
      return true;
    case 60:
      p.invisible = ctx.Flag(t);
      return true;
    case 62:
      p.color = ctx.Short(t);
      return true;
    case 67:
      paperSpace = ctx.Flag(t);
      return true;
    case 330:
      return true;  // the owner, kept by the record
    case 370:
      p.lineweight = ctx.Short(t);
      return true;
    case 420:
      p.trueColor = static_cast<std::uint32_t>(ctx.Long(t)) & 0xFFFFFF;
      return true;
    default:
      return false;
  }
}

// The entity's own data tags, the common ones applied to `e`.
std::vector<const DataTag*>& OwnTagsOf(const Context& ctx, const Record& r, Entity& e,
                                       bool& paperSpace) {
  thread_local std::vector<const DataTag*> own;
  own.clear();
  for (const DataTag& d : r.data) {
    if (InCommonPart(r.SubclassOf(d)) && ApplyCommon(ctx, d.tag, e, paperSpace)) continue;
    own.push_back(&d);
  }
  return own;
}

using Own = std::span<const DataTag* const>;

Line DecodeLine(Context& ctx, Own own) {
  Line g;
  for (const DataTag* d : own)
    SetPoint(ctx, d->tag, 10, g.start) || SetPoint(ctx, d->tag, 11, g.end);
  return g;
}

Point DecodePoint(Context& ctx, Own own) {
  Point g;
  for (const DataTag* d : own) SetPoint(ctx, d->tag, 10, g.position);
  return g;
}

Circle DecodeCircle(Context& ctx, Own own) {
  Circle g;
  for (const DataTag* d : own) {
    const Tag& t = d->tag;
    if (SetPoint(ctx, t, 10, g.center) || SetPoint(ctx, t, 210, g.extrusion)) continue;
    // Some writers store a negative radius; its size is what is meant.
    if (t.code == 40) g.radius = std::fabs(ctx.Real(t));
  }
  return g;
}

Arc DecodeArc(Context& ctx, Own own) {
  Arc g;
  for (const DataTag* d : own) {
    const Tag& t = d->tag;
    if (SetPoint(ctx, t, 10, g.center) || SetPoint(ctx, t, 210, g.extrusion)) continue;
    if (t.code == 40) g.radius = std::fabs(ctx.Real(t));
    if (t.code == 50) g.startAngle = ctx.Real(t);
    if (t.code == 51) g.endAngle = ctx.Real(t);
  }
  return g;
}

Ellipse DecodeEllipse(Context& ctx, Own own) {
  Ellipse g;
  for (const DataTag* d : own) {
    const Tag& t = d->tag;
    if (SetPoint(ctx, t, 10, g.center) || SetPoint(ctx, t, 11, g.majorAxis) ||
        SetPoint(ctx, t, 210, g.extrusion)) {
      continue;
    }
    if (t.code == 40) g.ratio = ctx.Real(t);
    if (t.code == 41) g.startParam = ctx.Real(t);
    if (t.code == 42) g.endParam = ctx.Real(t);
  }
  return g;
}

// The four corners of SOLID, TRACE and 3DFACE; a missing fourth corner
// repeats the third.
template <typename Shape>
void DecodeCorners(Context& ctx, Own own, Shape& g, Vec3* extrusion, std::int16_t* edges) {
  bool hasFourth = false;
  for (const DataTag* d : own) {
    const Tag& t = d->tag;
    bool set = false;
    for (int k = 0; k < 4 && !set; ++k) set = SetPoint(ctx, t, 10 + k, g.corners[k]);
    if (set) {
      hasFourth = hasFourth || t.code == 13;
      continue;
    }
    if (extrusion != nullptr && SetPoint(ctx, t, 210, *extrusion)) continue;
    if (edges != nullptr && t.code == 70) *edges = ctx.Short(t);
  }
  if (!hasFourth) g.corners[3] = g.corners[2];
}

Polyline DecodeLwPolyline(Context& ctx, Own own) {
  Polyline g;
  for (const DataTag* d : own) {
    const Tag& t = d->tag;
    switch (t.code) {
      case 90:
        Reserve(g.vertices, ctx.Long(t), own.size());
        break;
      case 70: {
        const int flags = ctx.Short(t);
        g.closed = (flags & 1) != 0;
        g.linetypeGeneration = (flags & 128) != 0;
        break;
      }
      case 43:
        g.constantWidth = ctx.Real(t);
        break;
      case 38:
        g.elevation = ctx.Real(t);
        break;
      case 10:
        g.vertices.emplace_back().point.x = ctx.Real(t);
        break;
      case 20:
      case 40:
      case 41:
      case 42: {
        if (g.vertices.empty()) break;
        PolylineVertex& v = g.vertices.back();
        (t.code == 20   ? v.point.y
         : t.code == 40 ? v.startWidth
         : t.code == 41 ? v.endWidth
                        : v.bulge) = ctx.Real(t);
        break;
      }
      default:
        SetPoint(ctx, t, 210, g.extrusion);
        break;
    }
  }
  return g;
}

// The POLYLINE header; its vertices come from the VERTEX records after it.
void DecodePolyline(Context& ctx, Own own, Polyline& g) {
  for (const DataTag* d : own) {
    const Tag& t = d->tag;
    if (t.code == 70) {
      const int flags = ctx.Short(t);
      g.closed = (flags & 1) != 0;
      g.is3d = (flags & 8) != 0;
      g.linetypeGeneration = (flags & 128) != 0;
    } else if (t.code == 30) {
      g.elevation = ctx.Real(t);
    } else {
      SetPoint(ctx, t, 210, g.extrusion);
    }
  }
}

// SPLINE; with `onlySubclass`, the tags of that part only (the spline part
// of HELIX).
Spline DecodeSpline(Context& ctx, const Record& r, Own own, std::string_view onlySubclass = {}) {
  Spline g;
  for (const DataTag* d : own) {
    if (!onlySubclass.empty() && r.SubclassOf(*d) != onlySubclass) continue;
    const Tag& t = d->tag;
    switch (t.code) {
      case 70:
        g.closed = (ctx.Short(t) & 1) != 0;
        break;
      case 71:
        g.degree = ctx.Short(t);
        break;
      case 72:
        Reserve(g.knots, ctx.Long(t), own.size());
        break;
      case 73:
        Reserve(g.controlPoints, ctx.Long(t), own.size());
        break;
      case 74:
        Reserve(g.fitPoints, ctx.Long(t), own.size());
        break;
      case 40:
        g.knots.push_back(ctx.Real(t));
        break;
      case 41:
        g.weights.push_back(ctx.Real(t));
        break;
      default:
        AddListPoint(ctx, t, 10, g.controlPoints) || AddListPoint(ctx, t, 11, g.fitPoints);
        break;
    }
  }
  return g;
}

// TEXT, and the text part of ATTRIB. Codes of the text go by subclass: an
// attribute's own subclass reuses 71-73 for other things, and a text's
// vertical alignment sits in its second AcDbText subclass.
void DecodeTextPart(Context& ctx, const Record& r, Own own, Text& g, Attribute* attribute) {
  for (const DataTag* d : own) {
    const Tag& t = d->tag;
    const std::string_view sub = r.SubclassOf(*d);
    if (attribute != nullptr && (sub.empty() || sub == "AcDbAttribute" ||
                              sub == "AcDbAttributeDefinition" || sub == "AcDbText")) {
      // The attribute's (or its definition's) own codes, also where a writer
      // left its subclass marker out; a part that follows (the xrecord of
      // release 2018) has codes 2 and 70 of its own, whose 70 is no
      // visibility.
      if (t.code == 2) {
        attribute->tag = ctx.Text(t);
        continue;
      }
      if (t.code == 70) {
        attribute->invisible = (ctx.Short(t) & 1) != 0;
        continue;
      }
      if (t.code == 74) {
        g.verticalAlign = ctx.Short(t);
        continue;
      }
    }
    if (!sub.empty() && sub != "AcDbText") continue;
    if (SetPoint(ctx, t, 10, g.insert) || SetPoint(ctx, t, 210, g.extrusion)) continue;
    if (SetPoint(ctx, t, 11, g.alignPoint)) {
      g.hasAlignPoint = true;
      continue;
    }
    switch (t.code) {
      case 1:
        g.text = ctx.Text(t);
        break;
      case 7:
        g.style = ctx.Text(t);
        break;
      case 40:
        g.height = ctx.Real(t);
        break;
      case 41:
        g.widthFactor = ctx.Real(t);
        break;
      case 50:
        g.rotation = ctx.Real(t);
        break;
      case 51:
        g.oblique = ctx.Real(t);
        break;
      case 71:
        g.generation = ctx.Short(t);
        break;
      case 72:
        g.horizontalAlign = ctx.Short(t);
        break;
      case 73:
        if (attribute == nullptr) g.verticalAlign = ctx.Short(t);
        break;
      default:
        break;
    }
  }
}

// INSERT; with `onlySubclass`, the tags of that part only (the block
// reference part of ACAD_TABLE).
Insert DecodeInsert(Context& ctx, const Record& r, Own own, std::string_view onlySubclass = {}) {
  Insert g;
  for (const DataTag* d : own) {
    if (!onlySubclass.empty() && r.SubclassOf(*d) != onlySubclass) continue;
    const Tag& t = d->tag;
    if (SetPoint(ctx, t, 10, g.insert) || SetPoint(ctx, t, 210, g.extrusion)) continue;
    switch (t.code) {
      case 2:
        g.block = ctx.Text(t);
        break;
      case 41:
        g.scale.x = ctx.Real(t);
        break;
      case 42:
        g.scale.y = ctx.Real(t);
        break;
      case 43:
        g.scale.z = ctx.Real(t);
        break;
      case 50:
        g.rotation = ctx.Real(t);
        break;
      case 70:
        g.columns = std::max<std::int16_t>(1, ctx.Short(t));
        break;
      case 71:
        g.rows = std::max<std::int16_t>(1, ctx.Short(t));
        break;
      case 44:
        g.columnSpacing = ctx.Real(t);
        break;
      case 45:
        g.rowSpacing = ctx.Real(t);
        break;
      default:
        break;
    }
  }
  return g;
}

Dimension DecodeDimension(Context& ctx, const Record& r, Own own) {
  Dimension g;
  for (const DataTag* d : own) {
    const std::string_view sub = r.SubclassOf(*d);
    if (!sub.empty() && sub != "AcDbDimension") continue;
    const Tag& t = d->tag;
    if (SetPoint(ctx, t, 10, g.definitionPoint) || SetPoint(ctx, t, 11, g.textMidpoint) ||
        SetPoint(ctx, t, 210, g.extrusion)) {
      continue;
    }
    if (t.code == 12 || t.code == 22 || t.code == 32) {
      if (!g.insert) g.insert = Vec3{};
      SetPoint(ctx, t, 12, *g.insert);
    }
    if (t.code == 2) g.block = ctx.Text(t);
    if (t.code == 70) g.type = ctx.Short(t);
  }
  return g;
}

ConstructionLine DecodeConstructionLine(Context& ctx, Own own, bool ray) {
  ConstructionLine g;
  g.ray = ray;
  for (const DataTag* d : own)
    SetPoint(ctx, d->tag, 10, g.base) || SetPoint(ctx, d->tag, 11, g.direction);
  return g;
}

Leader DecodeLeader(Context& ctx, Own own) {
  Leader g;
  for (const DataTag* d : own) {
    const Tag& t = d->tag;
    switch (t.code) {
      case 3:
        g.dimStyle = ctx.Text(t);
        break;
      case 71:
        g.arrowhead = ctx.Flag(t);
        break;
      case 76:
        Reserve(g.vertices, ctx.Long(t), own.size());
        break;
      default:
        AddListPoint(ctx, t, 10, g.vertices);
        break;
    }
  }
  return g;
}

// Release 12 keeps a viewport's view in extended data: ACAD, "MVIEW", "{",
// version, target (1010), direction (1010), then 1040s: twist, view height,
// view center X and Y, lens ..., and the frozen layers' names (1003).
void DecodeMviewData(Context& ctx, const Record& r, Viewport& g) {
  const std::span<const Tag> x = r.XData("ACAD");
  if (x.empty() || x[0].code != 1000 || TrimSpaces(x[0].value) != "MVIEW") return;
  int points = 0;
  int reals = 0;
  for (const Tag& t : x) {
    if (t.code == 1010 || t.code == 1020 || t.code == 1030) {
      if (t.code == 1010) ++points;
      Vec3& p = points == 1 ? g.viewTarget : g.viewDirection;
      if (points == 1 || points == 2) SetPoint(ctx, t, 1010, p);
    } else if (t.code == 1040) {
      const double v = ctx.Real(t);
      switch (reals++) {
        case 0:
          g.twist = v;
          break;
        case 1:
          g.viewHeight = v;
          break;
        case 2:
          g.viewCenter.x = v;
          break;
        case 3:
          g.viewCenter.y = v;
          break;
        default:
          break;
      }
    } else if (t.code == 1003) {
      g.frozenLayers.push_back(ctx.Text(t));
    }
  }
}

Viewport DecodeViewport(Context& ctx, const Record& r, Own own) {
  Viewport g;
  for (const DataTag* d : own) {
    const Tag& t = d->tag;
    if (SetPoint(ctx, t, 10, g.center) || SetPoint(ctx, t, 12, g.viewCenter) ||
        SetPoint(ctx, t, 16, g.viewDirection) || SetPoint(ctx, t, 17, g.viewTarget)) {
      continue;
    }
    switch (t.code) {
      case 40:
        g.width = ctx.Real(t);
        break;
      case 41:
        g.height = ctx.Real(t);
        break;
      case 68:
        g.status = ctx.Short(t);
        break;
      case 69:
        g.id = ctx.Short(t);
        break;
      case 45:
        g.viewHeight = ctx.Real(t);
        break;
      case 51:
        g.twist = ctx.Real(t);
        break;
      case 90:
        g.flags = ctx.Long(t);
        break;
      case 331: {
        // The layer table comes before the entities in every file.
        const auto it = ctx.layerNames.find(HandleKey(t.value));
        if (it != ctx.layerNames.end()) g.frozenLayers.push_back(it->second);
        break;
      }
      case 340:
        g.clipBoundaryHandle = std::string(TrimSpaces(t.value));
        break;
      default:
        break;
    }
  }
  if (r.subclasses.size() == 1) DecodeMviewData(ctx, r, g);
  return g;
}

// WIPEOUT and IMAGE: placement, size in pixels and the clip boundary in
// pixel coordinates; an image also names its definition (340).
Wipeout DecodeWipeout(Context& ctx, Own own, std::string* definition = nullptr) {
  Wipeout g;
  Vec3 size{1, 1, 0};
  std::vector<Vec3> vertices;
  for (const DataTag* d : own) {
    const Tag& t = d->tag;
    if (SetPoint(ctx, t, 10, g.insert) || SetPoint(ctx, t, 11, g.uPixel) ||
        SetPoint(ctx, t, 12, g.vPixel) || SetPoint(ctx, t, 13, size) ||
        AddListPoint(ctx, t, 14, vertices)) {
      continue;
    }
    switch (t.code) {
      case 70:
        g.displayFlags = ctx.Short(t);
        break;
      case 280:
        g.clipping = ctx.Flag(t);
        break;
      case 71:
        g.clipType = ctx.Short(t);
        break;
      case 91:
        Reserve(vertices, ctx.Long(t), own.size());
        break;
      case 340:
        if (definition != nullptr) *definition = HandleKey(t.value);
        break;
      default:
        break;
    }
  }
  g.imageSize = {size.x, size.y};
  g.clipVertices.reserve(vertices.size());
  for (const Vec3& v : vertices) g.clipVertices.push_back({v.x, v.y});
  return g;
}

// Kinds that a plot never shows: lights and cameras of a rendered scene.
bool IsNeverDrawn(std::string_view type) { return type == "LIGHT" || type == "CAMERA"; }

}  // namespace

Decoded DecodeEntity(Context& ctx, const Record& r, Entity& out, bool& paperSpace) {
  const std::string_view type = r.type;
  const Own own = OwnTagsOf(ctx, r, out, paperSpace);
  if (type == "LINE") {
    out.geometry = DecodeLine(ctx, own);
  } else if (type == "CIRCLE") {
    out.geometry = DecodeCircle(ctx, own);
  } else if (type == "ARC") {
    out.geometry = DecodeArc(ctx, own);
  } else if (type == "LWPOLYLINE") {
    out.geometry = DecodeLwPolyline(ctx, own);
  } else if (type == "POLYLINE") {
    if (IsPolylineMesh(ctx, own)) {
      out.geometry = MeshEdges{};  // filled from the VERTEX records
    } else {
      Polyline g;
      DecodePolyline(ctx, own, g);
      out.geometry = std::move(g);
    }
  } else if (type == "TEXT") {
    Text g;
    DecodeTextPart(ctx, r, own, g, nullptr);
    out.geometry = std::move(g);
  } else if (type == "MTEXT") {
    out.geometry = DecodeMText(ctx, r, own);
  } else if (type == "INSERT") {
    out.geometry = DecodeInsert(ctx, r, own);
    if (!r.extensionDictionary.empty() && !out.handle.empty()) {
      ctx.insertDictionaries[HandleKey(out.handle)] = HandleKey(r.extensionDictionary);
    }
  } else if (type == "ELLIPSE") {
    out.geometry = DecodeEllipse(ctx, own);
  } else if (type == "SPLINE") {
    out.geometry = DecodeSpline(ctx, r, own);
  } else if (type == "HELIX") {
    out.geometry = DecodeSpline(ctx, r, own, "AcDbSpline");
  } else if (type == "POINT") {
    out.geometry = DecodePoint(ctx, own);
  } else if (type == "SOLID" || type == "TRACE") {
    Solid g;
    DecodeCorners(ctx, own, g, &g.extrusion, nullptr);
    out.geometry = g;
  } else if (type == "3DFACE") {
    Face3d g;
    DecodeCorners(ctx, own, g, nullptr, &g.invisibleEdges);
    out.geometry = g;
  } else if (type == "HATCH") {
    out.geometry = DecodeHatch(ctx, own);
  } else if (type == "DIMENSION" || type == "ARC_DIMENSION" || type == "LARGE_RADIAL_DIMENSION") {
    out.geometry = DecodeDimension(ctx, r, own);
  } else if (type == "LEADER") {
    out.geometry = DecodeLeader(ctx, own);
  } else if (type == "VIEWPORT") {
    out.geometry = DecodeViewport(ctx, r, own);
  } else if (type == "WIPEOUT") {
    out.geometry = DecodeWipeout(ctx, own);
  } else if (type == "IMAGE") {
    RasterImage g;
    g.placement = DecodeWipeout(ctx, own, &g.definition);
    out.geometry = std::move(g);
  } else if (type == "XLINE" || type == "RAY") {
    out.geometry = DecodeConstructionLine(ctx, own, type == "RAY");
  } else if (type == "ACAD_TABLE") {
    // Drawn through its anonymous block, like a block reference.
    out.geometry = DecodeInsert(ctx, r, own, "AcDbBlockReference");
  } else if (type == "MESH") {
    out.geometry = DecodeSubDMesh(ctx, own);
  } else if (type == "MULTILEADER" || type == "MLEADER") {
    out.geometry = DecodeMultiLeader(ctx, own);
  } else if (type == "ATTDEF") {
    // The template of a block's attributes: a block reference shows its own
    // ATTRIBs instead, and a definition outside its block shows its tag.
    Attribute a;
    AttributeDefinition g;
    DecodeTextPart(ctx, r, own, g.tag, &a);
    g.tag.text = std::move(a.tag);
    out.geometry = std::move(g);
  } else if (IsNeverDrawn(type)) {
    return Decoded::kIgnored;
  } else {
    // Kept, so that a plot can say what it left out.
    ctx.Skip(type);
    out.geometry = Undrawn{std::string(type)};
  }
  return Decoded::kEntity;
}

void AddVertex(Context& ctx, const Record& r, const Record& polylineRecord, Polyline& polyline) {
  PolylineVertex v;
  if (const Tag* w = polylineRecord.Find(40)) v.startWidth = ctx.Real(*w);
  if (const Tag* w = polylineRecord.Find(41)) v.endWidth = ctx.Real(*w);
  for (const DataTag& d : r.data) {
    const Tag& t = d.tag;
    if (SetPoint(ctx, t, 10, v.point)) continue;
    switch (t.code) {
      case 40:
        v.startWidth = ctx.Real(t);
        break;
      case 41:
        v.endWidth = ctx.Real(t);
        break;
      case 42:
        v.bulge = ctx.Real(t);
        break;
      case 70:
        if ((ctx.Short(t) & 16) != 0) return;  // spline frame control point
        break;
      default:
        break;
    }
  }
  polyline.vertices.push_back(v);
}

Attribute DecodeAttribute(Context& ctx, const Record& r) {
  Entity holder;
  bool paperSpace = false;
  const Own own = OwnTagsOf(ctx, r, holder, paperSpace);
  Attribute a;
  DecodeTextPart(ctx, r, own, a.text, &a);
  a.props = std::move(holder.props);
  return a;
}

}  // namespace sheafwork::embedded
