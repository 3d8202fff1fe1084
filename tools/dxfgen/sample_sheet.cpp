#include "dxfgen/sample_sheet.h"

#include <cmath>
#include <numbers>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "dxfgen/entities.h"

namespace sheafwork::dxfgen {

namespace {

const Props kFrame{"CADRE", "", 256, -1};
const Props kZones{"ZONES", "", 256, -1};
const Props kTitles{"TITRES", "", 256, -1};
const Props kLabels{"LEGENDES", "", 256, -1};
const Props kSamples{"ESSAIS", "", 256, -1};
const Props kMarks{"REPERES", "", 256, -1};
const Props kViewports{"FENETRES", "", 256, -1};
const Props kHidden{"Defpoints", "", 256, -1};
const Props kLayer0{"0", "", 256, -1};
const Props kByBlock{"0", "", 0, -2};
const Props kWalls{"MURS", "", 256, -1};
const Props kFurniture{"MOBILIER", "", 256, -1};
const Props kAxes{"AXES", "", 256, -1};
const Props kRooms{"PIECES", "", 256, -1};

constexpr double kPi = std::numbers::pi;

// Tags of the entity part, which go before the entity's own subclass.
Entity WithCommon(Entity e, std::vector<Tag> common) {
  e.tags.insert(e.tags.begin(), common.begin(), common.end());
  return e;
}

Entity TrueColour(Entity e, unsigned rgb) {
  return WithCommon(std::move(e), {{420, std::to_string(rgb)}});
}

Entity LinetypeScale(Entity e, double scale) {
  return WithCommon(std::move(e), {{48, FormatReal(scale)}});
}

// The value of `code` in `e` becomes `value`.
void SetTag(Entity& e, int code, std::string value) {
  for (Tag& t : e.tags) {
    if (t.code == code) t.value = std::move(value);
  }
}

Props With(Props p, std::string linetype, int color = 256, int lineweight = -1) {
  p.linetype = std::move(linetype);
  p.color = color;
  p.lineweight = lineweight;
  return p;
}

Props Coloured(Props p, int color) {
  p.color = color;
  return p;
}

Props Weighted(Props p, int lineweight) {
  p.lineweight = lineweight;
  return p;
}

struct LwVertex {
  P2 p;
  double bulge = 0;
  double startWidth = 0;
  double endWidth = 0;
};

Entity WideLwPolyline(const Props& props, const std::vector<LwVertex>& vertices, int flags,
                      double constantWidth = 0) {
  std::vector<P2> extent;
  for (const auto& v : vertices) extent.push_back(v.p);
  Entity e = Make("LWPOLYLINE", props, extent);
  Tags t(e);
  t.S(100, "AcDbPolyline").I(90, static_cast<long>(vertices.size())).I(70, flags);
  t.R(43, constantWidth);
  for (const auto& v : vertices) {
    t.Pt2(10, v.p);
    if (v.startWidth != 0 || v.endWidth != 0) t.R(40, v.startWidth).R(41, v.endWidth);
    if (v.bulge != 0) t.R(42, v.bulge);
  }
  return e;
}

Entity Ellipse(const Props& props, P2 center, P2 major, double ratio, double start = 0,
               double end = 2 * kPi) {
  const double r = std::hypot(major.x, major.y);
  Entity e = Make("ELLIPSE", props, {{center.x - r, center.y - r}, {center.x + r, center.y + r}});
  Tags(e)
      .S(100, "AcDbEllipse")
      .Pt(10, center)
      .Pt(11, major)
      .R(210, 0)
      .R(220, 0)
      .R(230, 1)
      .R(40, ratio)
      .R(41, start)
      .R(42, end);
  return e;
}

// A clamped cubic B-spline through its control points' hull.
Entity Spline(const Props& props, const std::vector<P2>& controlPoints) {
  Entity e = Make("SPLINE", props, controlPoints);
  const long n = static_cast<long>(controlPoints.size());
  Tags t(e);
  t.S(100, "AcDbSpline").R(210, 0).R(220, 0).R(230, 1).I(70, 8).I(71, 3);
  t.I(72, n + 4).I(73, n).I(74, 0);
  const long spans = n - 3;
  for (int i = 0; i < 4; ++i) t.R(40, 0);
  for (long i = 1; i < spans; ++i) t.R(40, static_cast<double>(i) / static_cast<double>(spans));
  for (int i = 0; i < 4; ++i) t.R(40, 1);
  for (const P2& p : controlPoints) t.Pt(10, p);
  return e;
}

Entity Point(const Props& props, P2 at) {
  Entity e = Make("POINT", props, {at});
  Tags(e).S(100, "AcDbPoint").Pt(10, at);
  return e;
}

Entity Trace(const Props& props, P2 c0, P2 c1, P2 c2, P2 c3) {
  Entity e = Solid(props, c0, c1, c2, c3);
  e.type = "TRACE";
  return e;
}

Entity Face(const Props& props, P2 c0, P2 c1, P2 c2, P2 c3, int invisibleEdges) {
  Entity e = Make("3DFACE", props, {c0, c1, c2, c3});
  Tags(e).S(100, "AcDbFace").Pt(10, c0).Pt(11, c1).Pt(12, c2).Pt(13, c3).I(70, invisibleEdges);
  return e;
}

// TEXT anchored at `at` with alignment `horizontal` (1 center, 2 right,
// 4 middle) and `vertical` (1 bottom, 2 middle, 3 top).
Entity AlignedAt(const Props& props, P2 at, double height, std::string_view text, int horizontal,
                 int vertical) {
  return Text(props, at, height, text, {"Standard", 0, horizontal, vertical});
}

// TEXT aligned (3) or fitted (5) between two points.
Entity Between(const Props& props, P2 from, P2 to, double height, std::string_view text,
               int horizontal) {
  Entity e = Make("TEXT", props, {from, to});
  Tags(e)
      .S(100, "AcDbText")
      .Pt(10, from)
      .R(40, height)
      .S(1, text)
      .S(7, "Standard")
      .I(72, horizontal)
      .Pt(11, to)
      .S(100, "AcDbText");
  return e;
}

// A small cross marking a text's alignment point.
std::vector<Entity> Mark(P2 at) {
  return {Line(kMarks, {at.x - 1, at.y}, {at.x + 1, at.y}),
          Line(kMarks, {at.x, at.y - 1}, {at.x, at.y + 1})};
}

// A hatch bounded by closed polyline loops, the first the outer one. A
// pattern hatch gives its lines already scaled: angle, base, offset, dashes.
struct PatternLine {
  double angle;
  P2 base;
  P2 offset;
  std::vector<double> dashes;
};

Entity PatternHatch(const Props& props, std::string_view name,
                    const std::vector<std::vector<P2>>& loops,
                    const std::vector<PatternLine>& lines) {
  Entity e = Make("HATCH", props);
  Tags t(e);
  t.S(100, "AcDbHatch").Pt(10, {0, 0}).R(210, 0).R(220, 0).R(230, 1);
  t.S(2, name).I(70, 0).I(71, 0).I(91, static_cast<long>(loops.size()));
  bool outer = true;
  for (const auto& loop : loops) {
    t.I(92, outer ? 3 : 2).I(72, 0).I(73, 1).I(93, static_cast<long>(loop.size()));
    for (const P2& p : loop) {
      t.Pt2(10, p);
      e.extentPoints.push_back(p);
    }
    t.I(97, 0);
    outer = false;
  }
  t.I(75, 0).I(76, 1).R(52, 0).R(41, 1).I(77, 0).I(78, static_cast<long>(lines.size()));
  for (const auto& line : lines) {
    t.R(53, line.angle).R(43, line.base.x).R(44, line.base.y);
    t.R(45, line.offset.x).R(46, line.offset.y).I(79, static_cast<long>(line.dashes.size()));
    for (double d : line.dashes) t.R(49, d);
  }
  t.I(98, 0);
  return e;
}

// A wipeout over the rectangle `min`..`max`: a one-pixel image whose clip
// polygon is given from the upper left corner, in pixels.
Entity Wipeout(const Props& props, P2 min, P2 max) {
  Entity e = Make("WIPEOUT", props, {min, max});
  Tags t(e);
  t.S(100, "AcDbWipeout").I(90, 0).Pt(10, min);
  t.Pt(11, {max.x - min.x, 0}).Pt(12, {0, max.y - min.y}).Pt2(13, {1, 1});
  t.S(340, "0").I(70, 7).I(280, 1).I(281, 50).I(282, 50).I(283, 0).S(360, "0");
  // A pentagon: the rectangle with its upper right corner cut off.
  const std::vector<P2> polygon{{-0.5, -0.5}, {0.2, -0.5}, {0.5, -0.1},
                                {0.5, 0.5},   {-0.5, 0.5}, {-0.5, -0.5}};
  t.I(71, 2).I(91, static_cast<long>(polygon.size()));
  for (const P2& p : polygon) t.Pt2(14, p);
  return e;
}

// ---------------------------------------------------------------------------
// The sheet: A3 landscape, a frame, a title strip and twelve zones of
// 100 × 88 mm in three rows.

constexpr double kLeft = 10, kRight = 410, kBottom = 10, kTop = 287;
constexpr double kStrip = 22;  ///< top of the title strip
constexpr double kZoneWidth = 100;
constexpr double kZoneHeight = (kTop - kStrip) / 3;

struct Zone {
  P2 min;
  P2 At(double x, double y) const { return {min.x + x, min.y + y}; }
};

Zone ZoneAt(int column, int row) {  // row 0 at the top
  return {{kLeft + column * kZoneWidth, kTop - (row + 1) * kZoneHeight}};
}

void AddZone(std::vector<Entity>& out, const Zone& z, std::string_view title) {
  out.push_back(Rectangle(kZones, z.min, {z.min.x + kZoneWidth, z.min.y + kZoneHeight}));
  out.push_back(Text(kTitles, z.At(3, kZoneHeight - 6), 3.5, title));
}

void Label(std::vector<Entity>& out, P2 at, std::string_view text) {
  out.push_back(Text(kLabels, at, 2.2, text));
}

void LinetypeZone(std::vector<Entity>& out) {
  const Zone z = ZoneAt(0, 0);
  AddZone(out, z, "Types de ligne");
  struct Row {
    const char* linetype;
    double scale;
    const char* label;
  };
  const Row rows[] = {
      {"TIRETS", 1, "TIRETS"},           {"AXE", 1, "AXE"},
      {"POINTILLE", 1, "POINTILLE"},     {"CACHE", 1, "CACHE"},
      {"TIRET_POINT", 1, "TIRET_POINT"}, {"TIRETS", 0.5, "TIRETS x 0,5"},
      {"AXE", 0.5, "AXE x 0,5"},
  };
  double y = kZoneHeight - 14;
  for (const Row& row : rows) {
    Label(out, z.At(3, y - 1), row.label);
    Entity line = Line(With(kSamples, row.linetype), z.At(30, y), z.At(96, y));
    out.push_back(row.scale == 1 ? line : LinetypeScale(line, row.scale));
    y -= 7;
  }
  // A zigzag of short segments: the pattern runs on across the vertices
  // (flag 128), or starts again on each segment and never fits.
  for (int generation = 0; generation < 2; ++generation) {
    const double base = generation != 0 ? 16 : 4;
    std::vector<LwVertex> zigzag;
    for (int i = 0; i <= 11; ++i) zigzag.push_back({z.At(30 + i * 6, base + (i % 2) * 5)});
    out.push_back(WideLwPolyline(With(kSamples, "TIRETS"), zigzag, generation != 0 ? 128 : 0));
    Label(out, z.At(3, base + 1), generation != 0 ? "continu (128)" : "par segment");
  }
}

void LineweightZone(std::vector<Entity>& out) {
  const Zone z = ZoneAt(1, 0);
  AddZone(out, z, "Épaisseurs de ligne");
  const int weights[] = {0, 13, 18, 25, 35, 50, 70, 100};
  const char* labels[] = {"0",       "0,13 mm", "0,18 mm", "0,25 mm",
                          "0,35 mm", "0,50 mm", "0,70 mm", "1,00 mm"};
  double y = kZoneHeight - 15;
  for (int i = 0; i < 8; ++i) {
    Label(out, z.At(3, y - 1), labels[i]);
    out.push_back(Line(Weighted(kSamples, weights[i]), z.At(25, y), z.At(96, y)));
    y -= 9;
  }
}

void ColourZone(std::vector<Entity>& out) {
  const Zone z = ZoneAt(2, 0);
  AddZone(out, z, "Couleurs");
  const auto square = [&](const Props& props, double x, double y) {
    return Solid(props, z.At(x, y), z.At(x + 8, y), z.At(x, y + 8), z.At(x + 8, y + 8));
  };
  Label(out, z.At(3, 72), "ACI 1 à 9");
  for (int i = 0; i < 9; ++i) out.push_back(square(Coloured(kSamples, i + 1), 3 + i * 10.5, 62));
  Label(out, z.At(3, 55), "ACI 10 à 250");
  const int more[] = {10, 30, 50, 90, 130, 170, 210, 250, 253};
  for (int i = 0; i < 9; ++i) out.push_back(square(Coloured(kSamples, more[i]), 3 + i * 10.5, 45));
  Label(out, z.At(3, 38), "Couleurs vraies");
  const unsigned rgb[] = {0xE67E22, 0x2E86C1, 0x28B463, 0x8E44AD, 0xC0392B, 0x7F8C8D};
  for (int i = 0; i < 6; ++i) out.push_back(TrueColour(square(kSamples, 3 + i * 10.5, 28), rgb[i]));
  // Lines in colour, by layer and by number.
  for (int i = 0; i < 6; ++i) {
    Entity line = Line(Weighted(kSamples, 50), z.At(3 + i * 15, 8), z.At(13 + i * 15, 20));
    out.push_back(TrueColour(line, rgb[5 - i]));
  }
}

void CurveZone(std::vector<Entity>& out) {
  const Zone z = ZoneAt(3, 0);
  AddZone(out, z, "Arcs, cercles, ellipses, spline");
  out.push_back(Circle(kSamples, z.At(16, 56), 12));
  out.push_back(Arc(kSamples, z.At(48, 56), 12, 30, 240));
  out.push_back(Ellipse(kSamples, z.At(80, 56), {14, 0}, 0.5));
  out.push_back(Ellipse(kSamples, z.At(16, 22), {0, 12}, 0.6, 0, 4));
  out.push_back(Ellipse(kSamples, z.At(42, 22), {9, 6}, 0.4, kPi / 2, 2 * kPi));
  out.push_back(Spline(Coloured(kSamples, 5),
                       {z.At(56, 8), z.At(62, 34), z.At(74, 4), z.At(84, 36), z.At(96, 12)}));
  Label(out, z.At(84, 4), "spline");
}

void PolylineZone(std::vector<Entity>& out) {
  const Zone z = ZoneAt(0, 1);
  AddZone(out, z, "Polylignes");
  // A slot: two half circles joined.
  out.push_back(WideLwPolyline(
      kSamples, {{z.At(8, 60), 0}, {z.At(38, 60), 1}, {z.At(38, 70), 0}, {z.At(8, 70), 1}}, 1));
  Label(out, z.At(44, 64), "arrondis (bulge)");
  // Constant width.
  out.push_back(WideLwPolyline(kSamples, {{z.At(8, 42)}, {z.At(30, 52)}, {z.At(52, 42)}}, 0, 1.5));
  Label(out, z.At(58, 46), "largeur 1,5");
  // Widths changing along: an arrow, then a tapering arc.
  out.push_back(WideLwPolyline(
      Coloured(kSamples, 1),
      {{z.At(8, 26), 0, 2, 2}, {z.At(30, 26), 0, 6, 0}, {z.At(40, 26), 0, 0, 0}}, 0));
  out.push_back(WideLwPolyline(Coloured(kSamples, 3),
                               {{z.At(50, 22), 0.6, 0.5, 4}, {z.At(80, 22), 0, 0, 0}}, 0));
  Label(out, z.At(8, 32), "largeurs variables");
  // The older kind, with a bulge the other way, closed.
  out.push_back(Polyline2d(
      kSamples, {{z.At(8, 6)}, {z.At(40, 6), -0.4}, {z.At(40, 14)}, {z.At(8, 14)}}, true));
  Label(out, z.At(46, 8), "POLYLINE fermée");
}

void PointZone(std::vector<Entity>& out) {
  const Zone z = ZoneAt(1, 1);
  AddZone(out, z, "Points, solides, faces 3D");
  for (int i = 0; i < 5; ++i) out.push_back(Point(kSamples, z.At(10 + i * 10, 66)));
  Label(out, z.At(62, 65), "PDMODE 35");
  out.push_back(
      Solid(Coloured(kSamples, 1), z.At(6, 36), z.At(30, 36), z.At(10, 56), z.At(26, 52)));
  out.push_back(
      Solid(Coloured(kSamples, 5), z.At(36, 36), z.At(56, 36), z.At(46, 54), z.At(46, 54)));
  Label(out, z.At(6, 30), "SOLID");
  out.push_back(
      Trace(Coloured(kSamples, 3), z.At(62, 38), z.At(62, 42), z.At(94, 50), z.At(94, 54)));
  Label(out, z.At(62, 30), "TRACE");
  out.push_back(Face(kSamples, z.At(10, 6), z.At(44, 8), z.At(40, 24), z.At(12, 20), 0));
  out.push_back(Face(kSamples, z.At(54, 6), z.At(90, 6), z.At(90, 24), z.At(54, 24), 4));
  Label(out, z.At(56, 26), "3DFACE, un bord caché");
}

void TextZone(std::vector<Entity>& out) {
  const Zone z = ZoneAt(2, 1);
  AddZone(out, z, "Textes");
  struct Case {
    P2 at;
    int horizontal;
    int vertical;
    const char* text;
  };
  const Case cases[] = {
      {{20, 68}, 0, 0, "Gauche"},  {{50, 68}, 1, 0, "Centre"},      {{90, 68}, 2, 0, "Droite"},
      {{20, 58}, 1, 1, "Bas"},     {{50, 58}, 1, 2, "Milieu"},      {{80, 58}, 1, 3, "Haut"},
      {{25, 48}, 4, 0, "Médiane"}, {{75, 48}, 2, 3, "Droite haut"},
  };
  for (const Case& c : cases) {
    out.push_back(AlignedAt(kSamples, z.At(c.at.x, c.at.y), 3, c.text, c.horizontal, c.vertical));
    for (Entity& m : Mark(z.At(c.at.x, c.at.y))) out.push_back(std::move(m));
  }
  out.push_back(Between(kSamples, z.At(6, 34), z.At(44, 38), 3, "Texte aligné", 3));
  out.push_back(Between(kSamples, z.At(54, 34), z.At(94, 34), 3, "Texte ajusté", 5));
  for (P2 p : {P2{6, 34}, P2{44, 38}, P2{54, 34}, P2{94, 34}}) {
    for (Entity& m : Mark(z.At(p.x, p.y))) out.push_back(std::move(m));
  }
  out.push_back(Text(kSamples, z.At(6, 24), 4, "Style ROMANS (romans.shx)", {"ROMANS", 0, 0, 0}));
  out.push_back(
      Text(kSamples, z.At(6, 10), 3.5, "Texte tourné à 10 degrés", {"Standard", 10, 0, 0}));
}

void MTextZone(std::vector<Entity>& out) {
  const Zone z = ZoneAt(3, 1);
  AddZone(out, z, "Texte multiligne");
  out.push_back(MText(kSamples, z.At(4, 76), 3, 90,
                      "Premier paragraphe : un texte ordinaire assez long pour passer à la "
                      "ligne de lui-même.\\P{\\fArial|b1|i0|c0|p34;Arial gras} puis {\\C1;rouge} "
                      "et \\Lsouligné\\l.\\P{\\H2x;Double hauteur}\\PFraction : 1\\S1/2; pouce"));
}

BlockDef MarkerBlock() {
  BlockDef b;
  b.name = "REPERE";
  b.flags = 2;
  b.entities = {
      Circle(kLayer0, {0, 0}, 5),
      Line(kLayer0, {-5, 0}, {5, 0}),
      Attdef(kLayer0, "NUM", "Numéro", "1", {-1.5, 1}, 3),
      Attdef(kLayer0, "NOM", "Nom", "", {7, -1}, 2.5),
  };
  return b;
}

BlockDef TileBlock() {
  BlockDef b;
  b.name = "CARREAU";
  b.entities = {Rectangle(kByBlock, {0, 0}, {8, 8}), Line(kByBlock, {0, 0}, {8, 8})};
  return b;
}

void BlockZone(std::vector<Entity>& out) {
  const Zone z = ZoneAt(0, 2);
  AddZone(out, z, "Blocs, attributs, réseau");
  const P2 at = z.At(14, 62);
  out.push_back(
      Insert(Coloured(kSamples, 1), "REPERE", at, 1, 0,
             {Attrib(kSamples, "NUM", "A", {at.x - 1.5, at.y + 1}, 3),
              Attrib(kSamples, "NOM", "Bloc avec attributs", {at.x + 7, at.y - 1}, 2.5)}));
  const P2 turned = z.At(70, 50);
  out.push_back(Insert(Coloured(kSamples, 5), "REPERE", turned, 0.8, 30,
                       {Attrib(kSamples, "NUM", "B", {turned.x - 1.5, turned.y + 1}, 2.4)}));
  // The tile again, larger, clipped to a triangle of its own coordinates.
  Entity clipped = Insert(Coloured(kSamples, 6), "CARREAU", z.At(70, 24), 2.5);
  clipped.clipBoundary = {{0, 0}, {8, 0}, {0, 8}};
  out.push_back(std::move(clipped));
  Label(out, z.At(70, 18), "bloc découpé");
  Entity array = Insert(Coloured(kSamples, 3), "CARREAU", z.At(8, 8));
  Tags(array).I(70, 5).I(71, 3).R(44, 12).R(45, 10);
  out.push_back(std::move(array));
  Label(out, z.At(8, 2), "MINSERT 5 x 3");
}

void HatchZone(std::vector<Entity>& out) {
  const Zone z = ZoneAt(1, 2);
  AddZone(out, z, "Hachures et masque");
  const auto box = [&](double x0, double y0, double x1, double y1) {
    return std::vector<P2>{z.At(x0, y0), z.At(x1, y0), z.At(x1, y1), z.At(x0, y1)};
  };
  out.push_back(SolidHatch(Coloured(kSamples, 4),
                           {{{z.At(6, 44)}, {z.At(44, 44)}, {z.At(44, 76)}, {z.At(6, 76)}},
                            {{z.At(16, 54)}, {z.At(34, 54)}, {z.At(34, 66)}, {z.At(16, 66)}}}));
  Label(out, z.At(48, 58), "pleine, un îlot");
  out.push_back(PatternHatch(Coloured(kSamples, 1), "ANSI31",
                             {box(6, 6, 94, 38), box(60, 14, 86, 30)},
                             {{45, {0, 0}, {-1.767767, 1.767767}, {}}}));
  // Masked over the pattern, with a text on top of the mask.
  out.push_back(Wipeout(kSamples, z.At(10, 12), z.At(46, 32)));
  out.push_back(Text(kSamples, z.At(13, 20), 3, "masque"));
}

BlockDef DimensionBlock(const Zone& z) {
  // A horizontal dimension of 50 between x 10 and 60, line at y 60.
  BlockDef b;
  b.name = "*D1";
  b.flags = 1;
  const Props dim = Coloured(kLayer0, 256);
  b.entities = {
      Line(dim, z.At(10, 61.5), z.At(60, 61.5)),
      Line(dim, z.At(10, 46), z.At(10, 63)),
      Line(dim, z.At(60, 46), z.At(60, 63)),
      Solid(dim, z.At(10, 61.5), z.At(13, 62.2), z.At(13, 60.8), z.At(13, 60.8)),
      Solid(dim, z.At(60, 61.5), z.At(57, 62.2), z.At(57, 60.8), z.At(57, 60.8)),
      Text(dim, z.At(35, 62.5), 2.5, "50", {"Standard", 0, 1, 0}),
  };
  return b;
}

void DimensionZone(std::vector<Entity>& out) {
  const Zone z = ZoneAt(2, 2);
  AddZone(out, z, "Cote et ligne de repère");
  out.push_back(Rectangle(kSamples, z.At(10, 30), z.At(60, 44)));
  Entity dim = Make("DIMENSION", Coloured(kSamples, 1));
  Tags(dim)
      .S(100, "AcDbDimension")
      .S(2, "*D1")
      .Pt(10, z.At(60, 61.5))
      .Pt(11, z.At(35, 62.5))
      .I(70, 32)
      .S(3, "Standard")
      .S(100, "AcDbAlignedDimension")
      .Pt(13, z.At(10, 44))
      .Pt(14, z.At(60, 44))
      .S(100, "AcDbRotatedDimension");
  out.push_back(std::move(dim));
  Entity leader = Make("LEADER", Coloured(kSamples, 5));
  const std::vector<P2> path{z.At(40, 38), z.At(70, 20), z.At(80, 20)};
  Tags t(leader);
  t.S(100, "AcDbLeader").S(3, "Standard").I(71, 1).I(72, 0).I(73, 3).I(76, 3);
  for (const P2& p : path) t.Pt(10, p);
  out.push_back(std::move(leader));
  out.push_back(Text(kSamples, z.At(81, 19), 2.5, "Repère"));
}

// The model space shown by the viewports: a small flat, in millimetres.
std::vector<Entity> Flat() {
  std::vector<Entity> m;
  const auto wall = [&](std::vector<LwVertex> v, int flags) {
    m.push_back(WideLwPolyline(kWalls, v, flags, 200));
  };
  wall({{{0, 0}}, {{12000, 0}}, {{12000, 8000}}, {{0, 8000}}}, 1);
  wall({{{7000, 0}}, {{7000, 3000}}}, 0);
  wall({{{7000, 4000}}, {{7000, 8000}}}, 0);
  wall({{{7000, 5000}}, {{12000, 5000}}}, 0);
  m.push_back(Arc(kWalls, {7000, 3000}, 1000, 90, 180));
  m.push_back(Line(kWalls, {7000, 3000}, {6000, 3000}));
  // Furniture.
  m.push_back(Rectangle(kFurniture, {1000, 1000}, {3200, 2000}));
  m.push_back(Circle(kFurniture, {4500, 5500}, 900));
  for (int i = 0; i < 4; ++i) {
    const double a = i * kPi / 2;
    m.push_back(Circle(kFurniture, {4500 + 1300 * std::cos(a), 5500 + 1300 * std::sin(a)}, 250));
  }
  m.push_back(Rectangle(kFurniture, {8500, 6000}, {11500, 7600}));
  // Axes, a column and the rooms' names.
  m.push_back(Line(kAxes, {-1000, 4000}, {13000, 4000}));
  m.push_back(Line(kAxes, {7000, -1000}, {7000, 9000}));
  m.push_back(SolidHatch(Coloured(kWalls, 8),
                         {{{{6800, 3800}}, {{7200, 3800}}, {{7200, 4200}}, {{6800, 4200}}}}));
  m.push_back(Text(kRooms, {2000, 6500}, 350, "Séjour"));
  m.push_back(Text(kRooms, {8500, 2000}, 350, "Cuisine"));
  m.push_back(Text(kRooms, {8500, 5400}, 350, "Chambre"));
  return m;
}

void ViewportZone(std::vector<Entity>& out) {
  const Zone z = ZoneAt(3, 2);
  AddZone(out, z, "Fenêtres sur l'objet");
  // A viewport turned by 30 degrees with the furniture frozen in it; its
  // view centre is given in the turned view's own axes.
  const double twist = 30, scale = 1.0 / 250;
  const P2 shown{6000, 4000};
  const double c = std::cos(twist * kPi / 180), s = std::sin(twist * kPi / 180);
  Entity turned = Viewport(kViewports, z.At(24, 40), 42, 62, 2,
                           {{c * shown.x - s * shown.y, s * shown.x + c * shown.y}, scale});
  SetTag(turned, 51, FormatReal(twist));
  turned.handleRefs.push_back({331, "LAYER:MOBILIER"});
  out.push_back(std::move(turned));
  Label(out, z.At(4, 4), "tournée, MOBILIER gelé");
  // A viewport clipped by a closed polyline with a rounded side.
  Entity boundary = WideLwPolyline(
      kViewports,
      {{z.At(52, 14)}, {z.At(92, 14)}, {z.At(96, 40), 0.6}, {z.At(76, 70)}, {z.At(52, 56)}}, 1);
  boundary.label = "contour";
  out.push_back(std::move(boundary));
  Entity clipped = Viewport(kViewports, z.At(74, 42), 46, 60, 3, {{6000, 4000}, 1.0 / 200});
  SetTag(clipped, 90, std::to_string(32768 | 65536));
  clipped.handleRefs.push_back({340, "contour"});
  out.push_back(std::move(clipped));
  Label(out, z.At(54, 4), "contour non rectangulaire");
}

}  // namespace

Document SampleSheet() {
  Document doc;
  doc.layers = {
      {"CADRE", 7, "Continuous", 50, true},    {"ZONES", 8, "Continuous", 18, true},
      {"TITRES", 5, "Continuous", 35, true},   {"LEGENDES", 7, "Continuous", 13, true},
      {"ESSAIS", 7, "Continuous", 25, true},   {"REPERES", 1, "Continuous", 9, true},
      {"FENETRES", 4, "Continuous", 25, true}, {"MURS", 7, "Continuous", 35, true},
      {"MOBILIER", 30, "CACHE", 18, true},     {"AXES", 1, "AXE", 13, true},
      {"PIECES", 5, "Continuous", 18, true},
  };
  doc.linetypes = {
      {"TIRETS", "Tirets __ __ __", {6, -3}},
      {"AXE", "Axe ____ _ ____ _", {12, -3, 2, -3}},
      {"POINTILLE", "Pointillé . . . .", {0, -2}},
      {"CACHE", "Cache _ _ _ _", {3, -1.5}},
      {"TIRET_POINT", "Tiret point __ . __ .", {6, -2, 0, -2}},
  };
  doc.styles = {{"ROMANS", "romans.shx", 1}, {"ARIAL", "arial.ttf", 1}};
  doc.headerVariables = {{"$PDMODE", 70, "35"}, {"$PDSIZE", 40, FormatReal(3)}};

  doc.model = Flat();
  PlotSetup a3;
  a3.device = "PDF.pc3";
  a3.media = "ISO A3 (420.00 x 297.00 mm)";
  a3.paperWidth = 420;
  a3.paperHeight = 297;
  a3.marginLeft = a3.marginBottom = a3.marginRight = a3.marginTop = 0;
  PlotSetup model = a3;
  model.flags = 4 | 16 | 32 | 128 | 512 | kModelTypeFlag;
  model.plotType = 1;
  model.standardScale = 0;
  doc.modelSettings = model;

  LayoutDef sheet;
  sheet.name = "Planche A3";
  sheet.settings = a3;
  std::vector<Entity>& p = sheet.entities;
  p.push_back(Viewport(kHidden, {210, 148.5}, 420, 297, 1, {{210, 148.5}, 1}));
  p.push_back(Rectangle(kFrame, {kLeft, kBottom}, {kRight, kTop}));
  p.push_back(Line(kFrame, {kLeft, kStrip}, {kRight, kStrip}));
  p.push_back(Text(kTitles, {kLeft + 4, kBottom + 4}, 5, "Planche d'essais du traceur"));
  p.push_back(Text(kLabels, {kRight - 4, kBottom + 4}, 3, "Sheafwork - toutes les entités tracées",
                   {"Standard", 0, 2, 0}));
  LinetypeZone(p);
  LineweightZone(p);
  ColourZone(p);
  CurveZone(p);
  PolylineZone(p);
  PointZone(p);
  TextZone(p);
  MTextZone(p);
  BlockZone(p);
  HatchZone(p);
  DimensionZone(p);
  ViewportZone(p);
  doc.layouts = {sheet};
  doc.activeLayout = 0;
  doc.blocks = {MarkerBlock(), TileBlock(), DimensionBlock(ZoneAt(2, 2))};
  return doc;
}

}  // namespace sheafwork::dxfgen
