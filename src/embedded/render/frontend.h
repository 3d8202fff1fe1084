#pragma once
// Walks a layout's entities, resolves what each one looks like (visibility,
// colour, pen width, block and viewport transforms) and hands the backend
// flattened primitives on the sheet.

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "embedded/model/drawing.h"
#include "embedded/plotstyle/plot_style_table.h"
#include "embedded/render/backend.h"
#include "embedded/render/box.h"
#include "embedded/render/curves.h"
#include "embedded/render/dasher.h"
#include "embedded/render/plot_job.h"
#include "embedded/render/properties.h"
#include "embedded/render/shape_font.h"
#include "embedded/render/text_layout.h"
#include "embedded/render/transform.h"

namespace sheafwork::embedded {

struct FrontendOptions {
  Flattening flattening;  ///< in output units
  LineweightPolicy lineweights;
  /// Output region outside which primitives are dropped; nothing dropped
  /// when absent.
  std::optional<Box2> cull;
  /// Draw model space through the viewports of paper layouts (extents of
  /// a paper layout look at the frames only).
  bool viewportContents = true;
  /// Paper layouts: viewport contents before the paper-space entities.
  bool viewportsFirst = false;
  /// The plot style table pens go through; none when null.
  std::shared_ptr<const PlotStyleTable> plotStyles;
  /// What multi-line text is measured with; the Qt fonts when null.
  TextMeasure* textMeasure = nullptr;
  /// The ";"-separated folders shape font files (.shx) are looked for in;
  /// text in a shape font found nowhere is drawn with our stroke font.
  std::string fontSearchPath;
  /// What bounds the walk (entities drawn, cancelling); none when null.
  const SheetWork* work = nullptr;
};

/// What the frontend left out, for the plot's report.
struct FrontendStats {
  std::size_t missingBlocks = 0;
  std::size_t unresolvedXrefs = 0;
  std::size_t recursiveBlocks = 0;
  std::size_t skippedViewports = 0;  ///< not a plan view
  std::size_t densePatterns = 0;     ///< hatch patterns cut short
  std::size_t denseLinetypes = 0;    ///< lines drawn continuous, their pattern too dense
};

class Frontend {
 public:
  Frontend(const Drawing& drawing, Backend& backend, FrontendOptions options);

  /// Draws `layout` through `toOutput` (its drawing units to output units):
  /// the entities of its block, and for a paper layout the model space
  /// through each of its viewports.
  void DrawLayout(const Layout& layout, const Affine2& toOutput);
  /// Draws the entities of `block` as top-level entities.
  void DrawBlockEntities(const Block& block, const Transform3& toOutput);

  const FrontendStats& Stats() const { return stats_; }

 private:
  struct BlockContext {
    std::string_view layer;  ///< the reference's layer as resolved
    std::uint32_t rgb = 0;
    double lineweightMm = kDefaultLineweightMm;
    int aci = 7;
    const Linetype* linetype = nullptr;
  };
  struct Resolved {
    std::string_view layer;
    const LayerLook* look = nullptr;
    bool visible = false;
    Style style;
    double lineweightMm = kDefaultLineweightMm;  ///< the object's, before any plot style
    std::uint32_t objectRgb = 0;                 ///< likewise
    int aci = 7;                                 ///< its colour number
    const Linetype* linetype = nullptr;          ///< null: continuous
    double linetypeScale = 1;                    ///< the entity's own
  };

  /// The entities of `block` in its draw order.
  void DrawEntities(const Block& block, const Transform3& t);
  void DrawEntity(const Entity& entity, const Transform3& t);
  /// Throws PlotError once the walk drew more entities than options_.work
  /// allows or was cancelled; called every kWorkCheckEvery entities.
  void CheckWork();
  void DrawViewportContent(const Viewport& vp, const Affine2& paperToOutput);
  void DrawViewportFrame(const Viewport& vp, const Transform3& t, const Style& style);
  void DrawBlockReference(const Resolved& r, const Block& block, const Transform3& placed,
                          const Insert* insert, const Transform3& parent);
  void DrawXref(const Block& block, const Transform3& t);

  void DrawLine(const Line& g, const Transform3& t, const Style& s);
  void DrawCircle(const Vec3& center, double radius, double startDeg, double sweepDeg,
                  const Vec3& extrusion, const Transform3& t, const Style& s);
  void DrawEllipse(const Ellipse& g, const Transform3& t, const Style& s);
  void DrawPolyline(const Polyline& g, const Transform3& t, const Style& s);
  void DrawSpline(const Spline& g, const Transform3& t, const Style& s);
  void DrawSolid(const Solid& g, const Transform3& t, const Style& s);
  void DrawFace(const Face3d& g, const Transform3& t, const Style& s);
  void DrawText(const Text& g, const Transform3& t, const Style& s);
  /// The face of a text style in a shape font, found once per style.
  const ShapeFace& StyleFace(const TextStyle& style);
  const ShapeFace& FileFace(std::string_view fontFile, const TextStyle* style);
  /// Multi-line text; its inline colours plot through the plot style table
  /// as the entity's own colour does.
  void DrawMText(const MText& g, const Transform3& t, const Resolved& r);
  void DrawHatch(const Hatch& g, const Transform3& t, const Style& s);
  /// Appends `loop` flattened to `local_` and its size to `loopSizes_`
  /// (nothing when fewer than three points result).
  void AppendHatchLoop(const HatchLoop& loop, double scale);
  void DrawLeader(const Leader& g, const Transform3& t, const Style& s);
  void DrawBand(std::span<const Vec2> local, double w0, double w1, const Affine2& a,
                const Style& s);
  void DrawPointSymbol(const Point& g, const Transform3& t, const Style& s);
  void DrawWipeout(const Wipeout& g, const Transform3& t, const Style& s);
  /// A raster image's pixels, clipped to its boundary, and its frame; only
  /// the frame when the file was not found or cannot be drawn.
  void DrawRasterImage(const RasterImage& g, const Transform3& t, const Style& s);

  // Construction lines, meshes, multileaders (frontend_entities.cpp).
  /// XLINE and RAY, cut to the cull box; nothing without one (extents).
  void DrawConstructionLine(const ConstructionLine& g, const Transform3& t, const Style& s);
  void DrawMeshEdges(const MeshEdges& g, const Transform3& t, const Style& s);
  void DrawMultiLeader(const MultiLeader& g, const Transform3& t, const Resolved& r);
  /// A filled arrowhead `size` long (drawing units) at `tip`, pointing away
  /// from `next`.
  void DrawArrowhead(const Vec3& tip, const Vec3& next, double size, const Transform3& t,
                     const Style& s);

  // Linetypes (frontend_strokes.cpp).
  /// Sets up the dash pattern of the entity about to be drawn through `t`.
  void BeginStrokes(const Resolved& r, const Transform3& t);
  /// Draws `points` (output units) with the current pattern.
  void Stroke(std::span<const Vec2> points, bool closed, const Style& s);
  /// Draws `out_` as the polyline segments ending at `segmentEnds_`, the
  /// pattern starting again at each one.
  void StrokeSegments(bool closed, const Style& s);

  // Viewport and block reference clip boundaries (frontend_clipping.cpp).
  /// The entity clipping `vp` instead of its rectangle, null when none.
  const Entity* ClipBoundaryOf(const Viewport& vp) const;
  /// Puts into `polygon` the outline clipping `vp`, in output units.
  void ViewportOutline(const Viewport& vp, const Affine2& paperToOutput,
                       std::vector<Vec2>& polygon);
  /// Clips what follows to a block reference's clip, `t` mapping block
  /// coordinates to output units, until PopBlockClip.
  void PushBlockClip(const BlockClip& clip, const Transform3& t);
  void PopBlockClip();
  /// Puts into `out_` the boundary of a wipeout or image (its clip boundary
  /// when clipped, else the whole image) mapped by `t`; false when it has
  /// no area.
  bool ImageBoundary(const Wipeout& g, const Transform3& t);

  Resolved Resolve(const EntityProps& props);
  const LayerLook& LookFor(std::string_view layer);
  const Block* ModelSpaceOf(const Drawing& drawing) const;
  /// Maps `local_` through `a` into `out_`; false when it misses the cull box.
  bool MapLocal(const Affine2& a);
  bool InCull(std::span<const Vec2> points) const;
  void EmitPolyline(bool closed, const Style& s);

  const Drawing& root_;
  const Drawing* drawing_;  ///< the drawing being walked (an xref's inside one)
  std::string xrefPrefix_;  ///< "name|" inside an external reference
  Backend& backend_;
  FrontendOptions options_;
  FrontendStats stats_;

  std::unordered_map<std::string_view, LayerLook> looks_;
  std::unordered_map<const TextStyle*, const ShapeFace*> styleFaces_;
  std::vector<std::string> viewportFrozen_;  ///< name keys
  std::vector<BlockContext> blocks_;
  std::vector<const Block*> activeBlocks_;
  std::vector<const Drawing*> activeDrawings_;
  const Block* sheetBlock_ = nullptr;  ///< the paper layout's block being drawn
  /// The cull boxes in force outside each clipped reference being drawn.
  std::vector<std::optional<Box2>> savedCulls_;
  /// Paper units per model unit of the viewport being drawn when
  /// linetypes are scaled to paper, 1 otherwise.
  double linetypeViewScale_ = 1;
  /// Height in drawing units of the view or viewport being drawn, for the
  /// size of point symbols.
  double viewHeight_ = 0;
  Dasher dasher_;
  /// Entities drawn so far, and the count at which CheckWork comes next.
  std::uint64_t entitiesDrawn_ = 0;
  std::uint64_t nextWorkCheck_;
  std::chrono::steady_clock::time_point lastCancelPoll_;

  // Scratch buffers reused from entity to entity.
  std::vector<Vec2> local_;
  std::vector<Vec2> out_;
  std::vector<Vec3> points3_;
  std::vector<int> loopSizes_;
  std::vector<Vec2> pairs_;
  std::vector<std::size_t> segmentEnds_;
  std::vector<Vec2> segment_;
  std::string text_;
};

}  // namespace sheafwork::embedded
