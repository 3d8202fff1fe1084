#pragma once
// The graphical entities of a drawing, as read: coordinates as stored (object
// coordinates where the entity has an extrusion vector), angles in degrees
// unless a member says otherwise. Resolving properties (by layer, by block)
// and transforms is the renderer's work.

#include <array>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "embedded/model/geometry.h"

namespace sheafwork::embedded {

/// Colour numbers with a meaning of their own.
inline constexpr std::int16_t kColorByBlock = 0;
inline constexpr std::int16_t kColorByLayer = 256;

/// Lineweights with a meaning of their own (others are 1/100 mm).
inline constexpr std::int16_t kLineweightByLayer = -1;
inline constexpr std::int16_t kLineweightByBlock = -2;
inline constexpr std::int16_t kLineweightDefault = -3;

/// What every entity carries besides its geometry.
struct EntityProps {
  std::string layer = "0";
  std::string linetype;  ///< empty means by layer; also "BYBLOCK", a name
  std::int16_t color = kColorByLayer;
  std::optional<std::uint32_t> trueColor;  ///< 0xRRGGBB; wins over `color`
  std::int16_t lineweight = kLineweightByLayer;
  double linetypeScale = 1;
  bool invisible = false;
};

struct Line {
  Vec3 start;
  Vec3 end;
};

struct Circle {
  Vec3 center;
  double radius = 0;
  Vec3 extrusion = kUnitZ;
};

/// Counter-clockwise from startAngle to endAngle in its object coordinates.
struct Arc {
  Vec3 center;
  double radius = 0;
  double startAngle = 0;
  double endAngle = 360;
  Vec3 extrusion = kUnitZ;
};

/// World coordinates; parameters in radians (0 to 2π is the whole ellipse).
struct Ellipse {
  Vec3 center;
  Vec3 majorAxis;  ///< end point of the major axis, relative to the center
  double ratio = 1;
  double startParam = 0;
  double endParam = 6.283185307179586;
  Vec3 extrusion = kUnitZ;
};

struct PolylineVertex {
  Vec3 point;
  double startWidth = 0;
  double endWidth = 0;
  double bulge = 0;  ///< tan(included angle / 4) of the arc to the next vertex
};

/// LWPOLYLINE and POLYLINE alike. A 2-D polyline's points are in object
/// coordinates at `elevation`; a 3-D one's are world points.
struct Polyline {
  std::vector<PolylineVertex> vertices;
  bool closed = false;
  bool is3d = false;
  double elevation = 0;
  double constantWidth = 0;
  Vec3 extrusion = kUnitZ;
  /// The linetype pattern runs on across vertices instead of starting
  /// again at each one.
  bool linetypeGeneration = false;
};

struct Spline {
  int degree = 3;
  bool closed = false;
  std::vector<double> knots;
  std::vector<double> weights;  ///< empty unless rational
  std::vector<Vec3> controlPoints;
  std::vector<Vec3> fitPoints;
};

struct Point {
  Vec3 position;
};

/// SOLID and TRACE: a filled quadrilateral drawn 0 → 1 → 3 → 2 (a triangle
/// when the last two corners are equal).
struct Solid {
  std::array<Vec3, 4> corners;
  Vec3 extrusion = kUnitZ;
};

/// 3DFACE, world coordinates, drawn 0 → 1 → 2 → 3.
struct Face3d {
  std::array<Vec3, 4> corners;
  std::int16_t invisibleEdges = 0;  ///< bits 1, 2, 4, 8 for edges 1 to 4
};

/// TEXT, and the text of attributes.
struct Text {
  std::string text;  ///< UTF-8, special codes (%%d ...) as stored
  std::string style = "Standard";
  Vec3 insert;      ///< first alignment point
  Vec3 alignPoint;  ///< second alignment point, meaningful when hasAlignPoint
  bool hasAlignPoint = false;
  double height = 0;
  double rotation = 0;
  double widthFactor = 1;
  double oblique = 0;
  std::int16_t generation = 0;       ///< 2 mirrored in X, 4 upside down
  std::int16_t horizontalAlign = 0;  ///< 0 left, 1 center, 2 right, 3 aligned, 4 middle, 5 fit
  std::int16_t verticalAlign = 0;    ///< 0 baseline, 1 bottom, 2 middle, 3 top
  Vec3 extrusion = kUnitZ;
};

/// How multi-line text flows into columns.
struct MTextColumns {
  std::int16_t type = 0;        ///< 0 one column, 1 static, 2 dynamic
  std::int16_t count = 0;       ///< static and dynamic of given heights
  bool autoHeight = true;       ///< dynamic: every column `height` high
  bool reversed = false;        ///< columns from right to left
  double width = 0;             ///< of one column, 0 for the text's width
  double gutter = 0;            ///< between two columns
  double height = 0;            ///< of every column (static, dynamic auto height)
  std::vector<double> heights;  ///< dynamic of given heights, one per column
};

/// The box behind multi-line text.
struct MTextBackground {
  std::int32_t flags = 0;                  ///< 1 fill colour, 2 the drawing's background, 16 frame
  std::int16_t color = 0;                  ///< ACI of the fill
  std::optional<std::uint32_t> trueColor;  ///< 0xRRGGBB, wins over `color`
  double scale = 1.5;                      ///< margin: (scale - 1) text heights around the text
  std::int32_t transparency = 0;           ///< 0x020000AA: alpha AA (255 opaque); 0 none
};

struct MText {
  std::string text;  ///< UTF-8 with its inline formatting codes
  std::string style = "Standard";
  Vec3 insert;  ///< world coordinates
  double height = 0;
  double width = 0;             ///< reference column width, 0 for no wrapping
  std::int16_t attachment = 1;  ///< 1 top left ... 9 bottom right
  bool hasXAxis = false;        ///< whether the file gave xAxis
  Vec3 xAxis{1, 0, 0};          ///< world direction of the baseline, when `hasXAxis`
  double rotation = 0;          ///< degrees in the object's plane, used without xAxis
  double lineSpacing = 1;
  Vec3 extrusion = kUnitZ;
  /// Columns and background, kept apart (most texts have neither) so that
  /// every entity stays as small as before.
  struct Extras {
    MTextColumns columns;
    MTextBackground background;
  };
  std::shared_ptr<const Extras> extras;  ///< null: one column, no background
};

/// An attribute attached to an insert: already placed in world position.
struct Attribute {
  EntityProps props;
  std::string tag;
  Text text;
  bool invisible = false;
};

/// The clip boundary of a block reference (XCLIP), as stored: a polygon in
/// its own plane and the maps that take it into the block's coordinates.
/// A point of the block is inside the clip when it maps into the polygon.
struct BlockClip {
  /// Two points are the opposite corners of a rectangle.
  std::vector<Vec2> boundary;
  Vec3 normal = kUnitZ;  ///< of the boundary's plane
  Vec3 origin;           ///< of the boundary's plane
  /// Rows of [linear | translation]: the reference's own placement when it
  /// was clipped, inverted (world to block coordinates), and the map from
  /// world coordinates into the boundary's coordinates.
  std::array<double, 12> inverseInsert{1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0};
  std::array<double, 12> toBoundary{1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0};
  /// An inverted clip shows what lies outside `hole` (same coordinates as
  /// `boundary`; two points are a rectangle).
  bool inverted = false;
  std::vector<Vec2> hole;
};

/// INSERT and MINSERT.
struct Insert {
  std::string block;
  Vec3 insert;
  Vec3 scale{1, 1, 1};
  double rotation = 0;
  std::int16_t columns = 1;
  std::int16_t rows = 1;
  double columnSpacing = 0;
  double rowSpacing = 0;
  Vec3 extrusion = kUnitZ;
  std::vector<Attribute> attributes;
  /// The clip boundary of the reference (XCLIP); null when the reference
  /// is not clipped or its clipping is off.
  std::shared_ptr<const BlockClip> clip;
};

/// One edge of a hatch boundary, in the hatch's object coordinates.
struct HatchEdge {
  enum class Kind { Line, Arc, EllipseArc, Spline } kind = Kind::Line;
  Vec2 start, end;        ///< line
  Vec2 center;            ///< arc, elliptic arc
  double radius = 0;      ///< arc
  Vec2 majorAxis;         ///< elliptic arc, relative to the center
  double ratio = 1;       ///< elliptic arc
  double startAngle = 0;  ///< degrees, as stored
  double endAngle = 0;
  bool counterClockwise = true;
  int degree = 3;  ///< spline
  std::vector<double> knots;
  std::vector<double> weights;
  std::vector<Vec2> controlPoints;
  std::vector<Vec2> fitPoints;
};

struct HatchLoop {
  std::int32_t flags = 0;  ///< 1 external, 2 polyline, 16 outermost ...
  bool isPolyline = false;
  bool closed = true;
  std::vector<PolylineVertex> polyline;  ///< when isPolyline
  std::vector<HatchEdge> edges;          ///< otherwise
};

struct HatchPatternLine {
  double angle = 0;
  Vec2 base;
  Vec2 offset;
  std::vector<double> dashes;
};

struct Hatch {
  std::string pattern;
  bool solid = false;
  std::int16_t style = 0;  ///< 0 normal (odd parity), 1 outer, 2 ignore islands
  double elevation = 0;
  Vec3 extrusion = kUnitZ;
  std::vector<HatchLoop> loops;
  std::vector<HatchPatternLine> patternLines;
};

/// Drawn through its anonymous block.
struct Dimension {
  std::string block;
  Vec3 definitionPoint;
  Vec3 textMidpoint;
  std::optional<Vec3> insert;
  std::int16_t type = 0;
  Vec3 extrusion = kUnitZ;
};

struct Leader {
  std::vector<Vec3> vertices;
  bool arrowhead = true;
  std::string dimStyle;
};

/// A paper-space viewport onto model space.
struct Viewport {
  Vec3 center;  ///< of the frame, paper units
  double width = 0;
  double height = 0;
  std::int16_t status = 0;
  std::int16_t id = 0;
  Vec2 viewCenter;  ///< relative to the target, model units
  Vec3 viewTarget;
  Vec3 viewDirection = kUnitZ;
  double viewHeight = 0;  ///< model units
  double twist = 0;
  std::int32_t flags = 0;                 ///< 65536 clipped by a boundary, 131072 off
  std::vector<std::string> frozenLayers;  ///< names
  std::string clipBoundaryHandle;
};

/// WIPEOUT: an area masked with the sheet's background. Placed like a
/// raster image: pixel (i, j) of an image `imageSize` pixels large, counted
/// from its upper left corner, has its centre at insert + (i + ½)·u +
/// (height − j − ½)·v; a wipeout's image is 1 × 1 pixel.
struct Wipeout {
  Vec3 insert;  ///< lower left corner of the image, world coordinates
  Vec3 uPixel{1, 0, 0};
  Vec3 vPixel{0, 1, 0};
  Vec2 imageSize{1, 1};
  std::int16_t displayFlags = 7;   ///< 1 shown, 2 shown when not aligned, 4 clipped
  bool clipping = true;            ///< the clip boundary applies
  std::int16_t clipType = 1;       ///< 1 rectangle (two opposite corners), 2 polygon
  std::vector<Vec2> clipVertices;  ///< image pixel coordinates
};

/// IMAGE: the pixels of a raster file, placed and clipped like a wipeout.
struct RasterImage {
  Wipeout placement;
  std::string definition;  ///< handle key of its image definition (IMAGEDEF)
};

/// XLINE (endless both ways) and RAY (endless from its base point), world
/// coordinates; drawn as far as the plot reaches.
struct ConstructionLine {
  Vec3 base;
  Vec3 direction{1, 0, 0};
  bool ray = false;
};

/// Polyface and polygon meshes (POLYLINE) and MESH as the edges they show,
/// world coordinates: `edges` holds pairs of indexes into `vertices`.
struct MeshEdges {
  std::vector<Vec3> vertices;
  std::vector<std::uint32_t> edges;
};

/// A stand-alone attribute definition (ATTDEF outside the block it
/// belongs to): shows its tag. Inside a block reference it shows nothing.
struct AttributeDefinition {
  Text tag;  ///< placed and formatted as the definition's text
};

/// MULTILEADER: leader lines with arrowheads, a landing, and either
/// multi-line text or a block as content. World coordinates.
/// Kept small: most drawings have none, and every entity is as large as the
/// largest kind.
struct MultiLeader {
  /// Each leader line, arrow end first: the points of `points` from
  /// lineEnds[i - 1] (0 for the first) to lineEnds[i].
  std::vector<Vec3> points;
  std::vector<std::uint32_t> lineEnds;
  bool arrowhead = true;
  double arrowSize = 0;
  std::vector<MText> text;  ///< the text content, none or one
  std::string block;        ///< the block content, empty for none
  Vec3 blockInsert;
  Vec3 blockScale{1, 1, 1};
  double blockRotation = 0;  ///< degrees
};

/// An entity of a kind the host reads but cannot draw (REGION, MLINE,
/// OLE2FRAME ...), kept so that a plot can say what it left out.
struct Undrawn {
  std::string kind;
};

using Geometry =
    std::variant<Line, Circle, Arc, Ellipse, Polyline, Spline, Point, Solid, Face3d, Text, MText,
                 Insert, Hatch, Dimension, Leader, Viewport, Wipeout, RasterImage, ConstructionLine,
                 MeshEdges, AttributeDefinition, MultiLeader, Undrawn>;

struct Entity {
  EntityProps props;
  std::string handle;
  Geometry geometry;
};

}  // namespace sheafwork::embedded
