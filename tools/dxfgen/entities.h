#pragma once
// Builders for the entities the generated drawings use. Each returns the
// entity's data tags with their subclass markers; angles in degrees.

#include <string>
#include <string_view>
#include <vector>

#include "dxfgen/document.h"

namespace sheafwork::dxfgen {

/// Appends tags to an entity in the order given, for the builders and for
/// drawings that write an entity of their own.
class Tags {
 public:
  explicit Tags(Entity& e) : tags_(e.tags) {}
  Tags& S(int code, std::string_view value);
  Tags& R(int code, double value);
  Tags& I(int code, long value);
  /// A 3D point (z 0) under `code`, `code` + 10, `code` + 20.
  Tags& Pt(int code, P2 p);
  Tags& Pt2(int code, P2 p);

 private:
  std::vector<Tag>& tags_;
};

/// An entity of `type` with its properties and the points that bound it.
Entity Make(std::string type, const Props& props, std::vector<P2> extent = {});

struct Vertex {
  P2 p;
  double bulge = 0;  ///< of the arc to the next vertex
};

Entity Line(const Props& props, P2 a, P2 b);
Entity Circle(const Props& props, P2 center, double radius);
Entity Arc(const Props& props, P2 center, double radius, double startAngle, double endAngle);
/// LWPOLYLINE (release 2000 on).
Entity LwPolyline(const Props& props, const std::vector<Vertex>& vertices, bool closed);
/// POLYLINE with VERTEX followers, the form every release knows.
Entity Polyline2d(const Props& props, const std::vector<Vertex>& vertices, bool closed);
/// A closed rectangle as an LWPOLYLINE.
Entity Rectangle(const Props& props, P2 min, P2 max);

struct TextOptions {
  std::string style = "Standard";
  double rotation = 0;
  int horizontal = 0;  ///< 0 left, 1 center, 2 right
  int vertical = 0;    ///< 0 baseline, 1 bottom, 2 middle, 3 top
};
Entity Text(const Props& props, P2 at, double height, std::string_view text,
            const TextOptions& options = {});
Entity MText(const Props& props, P2 at, double height, double width, std::string_view text,
             std::string_view style = "Standard");

Entity Attdef(const Props& props, std::string_view tag, std::string_view prompt,
              std::string_view defaultValue, P2 at, double height);
Entity Attrib(const Props& props, std::string_view tag, std::string_view value, P2 at,
              double height);
/// INSERT; `attributes` (ATTRIB entities) follow it when given.
Entity Insert(const Props& props, std::string_view block, P2 at, double scale = 1,
              double rotation = 0, std::vector<Entity> attributes = {});

/// SOLID, corners in the file's order (drawn 0 → 1 → 3 → 2).
Entity Solid(const Props& props, P2 c0, P2 c1, P2 c2, P2 c3);
/// A solid-filled HATCH bounded by closed polyline loops (the first the outer one).
Entity SolidHatch(const Props& props, const std::vector<std::vector<Vertex>>& loops);

struct ViewportView {
  P2 center;     ///< model point shown at the frame's centre
  double scale;  ///< paper units per model unit, 1/50 for 1:50
};
/// A paper-space VIEWPORT of release 2000 on. The overall viewport of a
/// layout has id 1 and shows the sheet itself.
Entity Viewport(const Props& props, P2 center, double width, double height, int id,
                const ViewportView& view);
/// The same for release 12, where the view is kept in extended data.
Entity ViewportR12(const Props& props, P2 center, double width, double height, int id,
                   const ViewportView& view);

}  // namespace sheafwork::dxfgen
