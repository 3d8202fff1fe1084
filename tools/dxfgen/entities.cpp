#include "dxfgen/entities.h"

#include <string>
#include <utility>

namespace sheafwork::dxfgen {

Tags& Tags::S(int code, std::string_view value) {
  tags_.push_back({code, std::string(value)});
  return *this;
}
Tags& Tags::R(int code, double value) { return S(code, FormatReal(value)); }
Tags& Tags::I(int code, long value) { return S(code, std::to_string(value)); }
Tags& Tags::Pt(int code, P2 p) { return R(code, p.x).R(code + 10, p.y).R(code + 20, 0); }
Tags& Tags::Pt2(int code, P2 p) { return R(code, p.x).R(code + 10, p.y); }

Entity Make(std::string type, const Props& props, std::vector<P2> extent) {
  Entity e;
  e.type = std::move(type);
  e.props = props;
  e.extentPoints = std::move(extent);
  return e;
}

namespace {

std::vector<P2> Points(const std::vector<Vertex>& vertices) {
  std::vector<P2> points;
  for (const auto& v : vertices) points.push_back(v.p);
  return points;
}

}  // namespace

Entity Line(const Props& props, P2 a, P2 b) {
  Entity e = Make("LINE", props, {a, b});
  Tags(e).S(100, "AcDbLine").Pt(10, a).Pt(11, b);
  return e;
}

Entity Circle(const Props& props, P2 center, double radius) {
  Entity e = Make("CIRCLE", props,
                  {{center.x - radius, center.y - radius}, {center.x + radius, center.y + radius}});
  Tags(e).S(100, "AcDbCircle").Pt(10, center).R(40, radius);
  return e;
}

Entity Arc(const Props& props, P2 center, double radius, double startAngle, double endAngle) {
  Entity e = Make("ARC", props,
                  {{center.x - radius, center.y - radius}, {center.x + radius, center.y + radius}});
  Tags(e)
      .S(100, "AcDbCircle")
      .Pt(10, center)
      .R(40, radius)
      .S(100, "AcDbArc")
      .R(50, startAngle)
      .R(51, endAngle);
  return e;
}

Entity LwPolyline(const Props& props, const std::vector<Vertex>& vertices, bool closed) {
  Entity e = Make("LWPOLYLINE", props, Points(vertices));
  Tags t(e);
  t.S(100, "AcDbPolyline").I(90, static_cast<long>(vertices.size())).I(70, closed ? 1 : 0);
  t.R(43, 0);
  for (const auto& v : vertices) {
    t.Pt2(10, v.p);
    if (v.bulge != 0) t.R(42, v.bulge);
  }
  return e;
}

Entity Polyline2d(const Props& props, const std::vector<Vertex>& vertices, bool closed) {
  Entity e = Make("POLYLINE", props, Points(vertices));
  Tags(e).S(100, "AcDb2dPolyline").I(66, 1).Pt(10, {0, 0}).I(70, closed ? 1 : 0);
  for (const auto& v : vertices) {
    Entity vertex = Make("VERTEX", props);
    Tags t(vertex);
    t.S(100, "AcDbVertex").S(100, "AcDb2dVertex").Pt(10, v.p);
    if (v.bulge != 0) t.R(42, v.bulge);
    t.I(70, 0);
    e.followers.push_back(std::move(vertex));
  }
  return e;
}

Entity Rectangle(const Props& props, P2 min, P2 max) {
  return LwPolyline(props, {{min}, {{max.x, min.y}}, {max}, {{min.x, max.y}}}, true);
}

Entity Text(const Props& props, P2 at, double height, std::string_view text,
            const TextOptions& options) {
  Entity e = Make("TEXT", props, {at});
  Tags t(e);
  t.S(100, "AcDbText").Pt(10, at).R(40, height).S(1, text);
  if (options.rotation != 0) t.R(50, options.rotation);
  t.S(7, options.style);
  if (options.horizontal != 0) t.I(72, options.horizontal);
  if (options.horizontal != 0 || options.vertical != 0) t.Pt(11, at);
  t.S(100, "AcDbText");
  if (options.vertical != 0) t.I(73, options.vertical);
  return e;
}

Entity MText(const Props& props, P2 at, double height, double width, std::string_view text,
             std::string_view style) {
  Entity e = Make("MTEXT", props, {at});
  Tags(e)
      .S(100, "AcDbMText")
      .Pt(10, at)
      .R(40, height)
      .R(41, width)
      .I(71, 1)
      .I(72, 1)
      .S(1, text)
      .S(7, style);
  return e;
}

Entity Attdef(const Props& props, std::string_view tag, std::string_view prompt,
              std::string_view defaultValue, P2 at, double height) {
  Entity e = Make("ATTDEF", props, {at});
  Tags(e)
      .S(100, "AcDbText")
      .Pt(10, at)
      .R(40, height)
      .S(1, defaultValue)
      .S(7, "Standard")
      .S(100, "AcDbAttributeDefinition")
      .S(3, prompt)
      .S(2, tag)
      .I(70, 0);
  return e;
}

Entity Attrib(const Props& props, std::string_view tag, std::string_view value, P2 at,
              double height) {
  Entity e = Make("ATTRIB", props, {at});
  Tags(e)
      .S(100, "AcDbText")
      .Pt(10, at)
      .R(40, height)
      .S(1, value)
      .S(7, "Standard")
      .S(100, "AcDbAttribute")
      .S(2, tag)
      .I(70, 0);
  return e;
}

Entity Insert(const Props& props, std::string_view block, P2 at, double scale, double rotation,
              std::vector<Entity> attributes) {
  Entity e = Make("INSERT", props, {at});
  Tags t(e);
  t.S(100, "AcDbBlockReference");
  if (!attributes.empty()) t.I(66, 1);
  t.S(2, block).Pt(10, at);
  if (scale != 1) t.R(41, scale).R(42, scale).R(43, scale);
  if (rotation != 0) t.R(50, rotation);
  e.followers = std::move(attributes);
  return e;
}

Entity Solid(const Props& props, P2 c0, P2 c1, P2 c2, P2 c3) {
  Entity e = Make("SOLID", props, {c0, c1, c2, c3});
  Tags(e).S(100, "AcDbTrace").Pt(10, c0).Pt(11, c1).Pt(12, c2).Pt(13, c3);
  return e;
}

Entity SolidHatch(const Props& props, const std::vector<std::vector<Vertex>>& loops) {
  Entity e = Make("HATCH", props);
  Tags t(e);
  t.S(100, "AcDbHatch").Pt(10, {0, 0}).R(210, 0).R(220, 0).R(230, 1);
  t.S(2, "SOLID").I(70, 1).I(71, 0).I(91, static_cast<long>(loops.size()));
  bool outer = true;
  for (const auto& loop : loops) {
    bool bulges = false;
    for (const auto& v : loop) bulges = bulges || v.bulge != 0;
    t.I(92, outer ? 3 : 2).I(72, bulges ? 1 : 0).I(73, 1).I(93, static_cast<long>(loop.size()));
    for (const auto& v : loop) {
      t.Pt2(10, v.p);
      if (bulges) t.R(42, v.bulge);
      e.extentPoints.push_back(v.p);
    }
    t.I(97, 0);
    outer = false;
  }
  t.I(75, 1).I(76, 1).I(98, 0);
  return e;
}

Entity Viewport(const Props& props, P2 center, double width, double height, int id,
                const ViewportView& view) {
  Entity e = Make("VIEWPORT", props);
  Tags(e)
      .S(100, "AcDbViewport")
      .Pt(10, center)
      .R(40, width)
      .R(41, height)
      .I(68, id)  // status: stacking order, 1 for the overall viewport
      .I(69, id)
      .Pt2(12, view.center)
      .Pt2(13, {0, 0})
      .Pt2(14, {10, 10})
      .Pt2(15, {10, 10})
      .R(16, 0)
      .R(26, 0)
      .R(36, 1)
      .Pt(17, {0, 0})
      .R(42, 50)
      .R(43, 0)
      .R(44, 0)
      .R(45, height / view.scale)
      .R(50, 0)
      .R(51, 0)
      .I(72, 1000)
      .I(90, 32768)
      .S(1, "")
      .I(281, 0)
      .I(71, 1)
      .I(74, 0);
  return e;
}

Entity ViewportR12(const Props& props, P2 center, double width, double height, int id,
                   const ViewportView& view) {
  Entity e = Make("VIEWPORT", props);
  Tags t(e);
  t.Pt(10, center).R(40, width).R(41, height).I(68, id).I(69, id);
  t.S(1001, "ACAD").S(1000, "MVIEW").S(1002, "{").I(1070, 16);
  t.R(1010, 0).R(1020, 0).R(1030, 0);  // target
  t.R(1010, 0).R(1020, 0).R(1030, 1);  // view direction
  t.R(1040, 0);                        // twist
  t.R(1040, height / view.scale);      // view height
  t.R(1040, view.center.x).R(1040, view.center.y);
  t.R(1040, 50).R(1040, 0).R(1040, 0);                // lens, front and back clip
  t.I(1070, 0).I(1070, 1000).I(1070, 1).I(1070, 3);   // view mode, circle zoom, fast zoom, icon
  t.I(1070, 0).I(1070, 0).I(1070, 0).I(1070, 0);      // snap, grid, snap style, isopair
  t.R(1040, 0).R(1040, 0).R(1040, 0);                 // snap angle and base
  t.R(1040, 10).R(1040, 10).R(1040, 10).R(1040, 10);  // snap and grid spacing
  t.I(1070, 0);                                       // hidden-line plot
  t.S(1002, "{").S(1002, "}").S(1002, "}");           // no frozen layers
  return e;
}

}  // namespace sheafwork::dxfgen
