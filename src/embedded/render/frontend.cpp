#include "embedded/render/frontend.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <type_traits>
#include <variant>

#include "embedded/render/aci_palette.h"
#include "embedded/render/hatch_pattern.h"
#include "embedded/render/linetypes.h"
#include "embedded/render/messages.h"
#include "embedded/render/plot_style_look.h"
#include "embedded/render/stroke_font.h"
#include "embedded/render/text_codes.h"
#include "embedded/render/text_drawing.h"
#include "embedded/render/truetype_text.h"
#include "embedded/render/wide_joins.h"

namespace sheafwork::embedded {

namespace {

constexpr std::size_t kMaxBlockDepth = 32;
constexpr int kMaxInsertCopies = 100000;
constexpr std::size_t kMaxPatternSegments = 200000;
constexpr std::int32_t kViewportOff = 131072;
constexpr std::int32_t kHatchTextBox = 8;
// How often the walk looks at its bounds: entities, and time between two
// questions whether it was cancelled.
constexpr std::uint64_t kWorkCheckEvery = 4096;
constexpr auto kCancelPollEvery = std::chrono::milliseconds(50);

// The entity count at which a walk that drew `drawn` looks again: after
// kWorkCheckEvery more, or as soon as it is past the limit.
std::uint64_t NextWorkCheck(std::uint64_t drawn, const SheetWork* work) {
  if (work == nullptr) return UINT64_MAX;
  const std::uint64_t pastLimit =
      work->entityLimit == UINT64_MAX ? UINT64_MAX : work->entityLimit + 1;
  return std::min(drawn + kWorkCheckEvery, pastLimit);
}

Transform3 WithOcs(const Transform3& t, const Vec3& extrusion) {
  return IsUnitZ(extrusion) ? t : t * Transform3::Ocs(extrusion);
}

/// The corners of a viewport's frame in paper space, counter-clockwise.
std::array<Vec2, 4> FrameCorners(const Viewport& vp) {
  const double hw = vp.width / 2, hh = vp.height / 2;
  const Vec3& c = vp.center;
  return {Vec2{c.x - hw, c.y - hh}, Vec2{c.x + hw, c.y - hh}, Vec2{c.x + hw, c.y + hh},
          Vec2{c.x - hw, c.y + hh}};
}

/// Calls `f` with each entity of `block` in its draw order.
template <typename F>
void ForEachInDrawOrder(const Block& block, F&& f) {
  if (block.drawOrder.empty()) {
    for (const Entity& e : block.entities) f(e);
    return;
  }
  for (const std::uint32_t i : block.drawOrder) {
    if (i < block.entities.size()) f(block.entities[i]);
  }
}

/// Sweep in degrees of a counter-clockwise arc, in (0, 360].
double SweepDegrees(double start, double end) {
  double sweep = std::fmod(end - start, 360.0);
  if (sweep <= 1e-12) sweep += 360.0;
  return sweep;
}

}  // namespace

Frontend::Frontend(const Drawing& drawing, Backend& backend, FrontendOptions options)
    : root_(drawing),
      drawing_(&drawing),
      backend_(backend),
      options_(std::move(options)),
      nextWorkCheck_(NextWorkCheck(0, options_.work)),
      lastCancelPoll_(std::chrono::steady_clock::now()) {}

void Frontend::CheckWork() {
  const SheetWork& work = *options_.work;
  if (entitiesDrawn_ > work.entityLimit) {
    throw PlotError(render_messages::SheetEntityLimit(work.entityLimit));
  }
  nextWorkCheck_ = NextWorkCheck(entitiesDrawn_, &work);
  if (!work.cancelled) return;
  const auto now = std::chrono::steady_clock::now();
  if (now - lastCancelPoll_ < kCancelPollEvery) return;
  lastCancelPoll_ = now;
  if (work.cancelled()) throw PlotError(render_messages::SheetCancelled());
}

// ---------------------------------------------------------------- layouts

const Block* Frontend::ModelSpaceOf(const Drawing& drawing) const {
  for (const Layout& layout : drawing.layouts) {
    if (layout.IsModel()) {
      if (const Block* b = drawing.LayoutBlock(layout)) return b;
    }
  }
  if (const Block* b = drawing.FindBlock("*Model_Space")) return b;
  return drawing.FindBlock("$MODEL_SPACE");
}

void Frontend::DrawLayout(const Layout& layout, const Affine2& toOutput) {
  const Block* block = root_.LayoutBlock(layout);
  if (block == nullptr) return;
  const Transform3 t = Transform3::FromAffine2(toOutput);
  if (layout.IsModel()) {
    viewHeight_ = root_.activeView && root_.activeView->height > 0
                      ? root_.activeView->height
                      : root_.header.limMax.y - root_.header.limMin.y;
    DrawBlockEntities(*block, t);
    return;
  }
  viewHeight_ = layout.limMax.y - layout.limMin.y;
  sheetBlock_ = block;
  // The first viewport of a paper layout (normally number 1) is the sheet
  // itself: neither its frame nor its content is drawn.
  std::vector<const Entity*> viewports;
  const Entity* overall = nullptr;
  for (const Entity& e : block->entities) {
    const auto* vp = std::get_if<Viewport>(&e.geometry);
    if (vp == nullptr) continue;
    if (overall == nullptr) {
      overall = &e;
      continue;
    }
    if (vp->id == 1) continue;
    viewports.push_back(&e);
  }
  auto drawContents = [&] {
    if (!options_.viewportContents) return;
    for (const Entity* e : viewports) {
      DrawViewportContent(std::get<Viewport>(e->geometry), toOutput);
    }
  };
  if (options_.viewportsFirst) drawContents();
  ForEachInDrawOrder(*block, [&](const Entity& e) {
    const auto* vp = std::get_if<Viewport>(&e.geometry);
    if (vp == nullptr) {
      DrawEntity(e, t);
      return;
    }
    if (&e == overall || vp->id == 1) return;
    const Resolved r = Resolve(e.props);
    // A viewport clipped by an entity shows that entity as its frame.
    if (r.visible && ClipBoundaryOf(*vp) == nullptr) DrawViewportFrame(*vp, t, r.style);
  });
  if (!options_.viewportsFirst) drawContents();
  sheetBlock_ = nullptr;
  backend_.Flush();
}

void Frontend::DrawBlockEntities(const Block& block, const Transform3& toOutput) {
  DrawEntities(block, toOutput);
  backend_.Flush();
}

void Frontend::DrawViewportFrame(const Viewport& vp, const Transform3& t, const Style& style) {
  out_.clear();
  for (const Vec2 c : FrameCorners(vp)) out_.push_back(t.ApplyXY({c.x, c.y, 0}));
  if (InCull(out_)) backend_.DrawPolyline(out_, true, style);
}

void Frontend::DrawViewportContent(const Viewport& vp, const Affine2& paperToOutput) {
  if ((vp.flags & kViewportOff) != 0 || vp.viewHeight <= 0 || vp.height <= 0 || vp.width <= 0) {
    return;
  }
  if (!IsUnitZ(vp.viewDirection)) {
    ++stats_.skippedViewports;
    return;
  }
  const Block* model = ModelSpaceOf(root_);
  if (model == nullptr) return;
  const double s = vp.height / vp.viewHeight;
  const Affine2 modelToPaper =
      Affine2::Translation(vp.center.x - s * vp.viewCenter.x, vp.center.y - s * vp.viewCenter.y) *
      Affine2::Scaling(s, s) * Affine2::Rotation(Radians(vp.twist)) *
      Affine2::Translation(-vp.viewTarget.x, -vp.viewTarget.y);

  std::vector<Vec2> frame;
  ViewportOutline(vp, paperToOutput, frame);
  Box2 frameBox;
  for (const Vec2& p : frame) frameBox.Extend(p);
  const std::optional<Box2> savedCull = options_.cull;
  options_.cull = savedCull ? savedCull->Intersection(frameBox) : frameBox;
  if (options_.cull->Empty()) {
    options_.cull = savedCull;
    return;
  }
  viewportFrozen_.clear();
  for (const std::string& name : vp.frozenLayers) viewportFrozen_.push_back(NameKey(name));
  looks_.clear();

  const double savedViewHeight = viewHeight_;
  viewHeight_ = vp.viewHeight;
  linetypeViewScale_ = root_.header.psLtScale ? s : 1.0;
  backend_.PushClip(frame);
  DrawEntities(*model, Transform3::FromAffine2(paperToOutput * modelToPaper));
  backend_.PopClip();
  linetypeViewScale_ = 1;
  viewHeight_ = savedViewHeight;

  viewportFrozen_.clear();
  looks_.clear();
  options_.cull = savedCull;
}

// ------------------------------------------------------------- properties

const LayerLook& Frontend::LookFor(std::string_view layer) {
  auto it = looks_.find(layer);
  if (it != looks_.end()) return it->second;
  const Layer* record = nullptr;
  if (!xrefPrefix_.empty()) {
    // The host drawing's copy of the layer ("XREF|name") carries its state.
    record = root_.FindLayer(xrefPrefix_ + std::string(layer));
  }
  const bool hostCopy = record != nullptr;
  if (record == nullptr) record = drawing_->FindLayer(layer);
  bool frozenHere = false;
  if (!viewportFrozen_.empty()) {
    const std::string key = NameKey(record != nullptr ? std::string_view(record->name) : layer);
    frozenHere =
        std::find(viewportFrozen_.begin(), viewportFrozen_.end(), key) != viewportFrozen_.end();
  }
  LayerLook look = LookOfLayer(record, layer, frozenHere);
  if (record != nullptr) look.linetype = PatternNamed(*drawing_, record->linetype);
  // Layer 0 is every drawing's own; a reference's other layers carry its
  // name.
  const std::string_view own = record != nullptr ? std::string_view(record->name) : layer;
  look.name =
      hostCopy ? record->name : (layer == "0" ? std::string() : xrefPrefix_) + std::string(own);
  return looks_.emplace(layer, std::move(look)).first->second;
}

Frontend::Resolved Frontend::Resolve(const EntityProps& props) {
  Resolved r;
  const BlockContext* block = blocks_.empty() ? nullptr : &blocks_.back();
  r.layer = props.layer;
  if (block != nullptr && props.layer == "0") r.layer = block->layer;
  r.look = &LookFor(r.layer);
  r.visible = !props.invisible && r.look->visible;
  r.style.rgb = EntityRgb(props, r.look->rgb, block != nullptr ? block->rgb : AciToRgb(7));
  r.lineweightMm =
      EntityLineweightMm(props.lineweight, r.look->lineweightMm,
                         block != nullptr ? block->lineweightMm : kDefaultLineweightMm);
  r.objectRgb = r.style.rgb;
  r.aci = EntityAci(props, r.look->aci, block != nullptr ? block->aci : 7);
  const PlotStylePen pen =
      PlottedPen(options_.plotStyles.get(), r.aci, r.objectRgb, r.lineweightMm);
  r.style.rgb = pen.rgb;
  r.style.widthMm = options_.lineweights.PenWidthMm(pen.lineweightMm);
  r.linetype = EntityPattern(*drawing_, props.linetype, r.look->linetype,
                             block != nullptr ? block->linetype : nullptr);
  r.linetypeScale = props.linetypeScale;
  return r;
}

// ---------------------------------------------------------------- walking

void Frontend::DrawEntities(const Block& block, const Transform3& t) {
  ForEachInDrawOrder(block, [&](const Entity& e) { DrawEntity(e, t); });
}

void Frontend::DrawEntity(const Entity& e, const Transform3& t) {
  if (++entitiesDrawn_ >= nextWorkCheck_) CheckWork();
  const Resolved r = Resolve(e.props);
  backend_.BeginLayer(r.look->name);
  std::visit(
      [&](const auto& g) {
        using G = std::decay_t<decltype(g)>;
        if constexpr (std::is_same_v<G, Insert>) {
          if (e.props.invisible || r.look->frozen) return;  // a frozen layer hides it all
          const Block* block = drawing_->FindBlock(g.block);
          if (block == nullptr) {
            ++stats_.missingBlocks;
            return;
          }
          const Transform3 placed = WithOcs(t, g.extrusion) * Transform3::Translation(g.insert) *
                                    Transform3::RotationZ(g.rotation);
          DrawBlockReference(r, *block, placed, &g, t);
        } else if constexpr (std::is_same_v<G, Dimension>) {
          if (e.props.invisible || r.look->frozen) return;
          const Block* block = drawing_->FindBlock(g.block);
          if (block == nullptr) {
            ++stats_.missingBlocks;
            return;
          }
          const Transform3 placed =
              WithOcs(t, g.extrusion) * Transform3::Translation(g.insert.value_or(Vec3{}));
          DrawBlockReference(r, *block, placed, nullptr, t);
        } else if constexpr (std::is_same_v<G, Viewport>) {
          // Viewports act only at the top of a paper layout.
        } else {
          if (!r.visible) return;
          BeginStrokes(r, t);
          if constexpr (std::is_same_v<G, Line>) {
            DrawLine(g, t, r.style);
          } else if constexpr (std::is_same_v<G, Circle>) {
            DrawCircle(g.center, g.radius, 0, 360, g.extrusion, t, r.style);
          } else if constexpr (std::is_same_v<G, Arc>) {
            DrawCircle(g.center, g.radius, g.startAngle, SweepDegrees(g.startAngle, g.endAngle),
                       g.extrusion, t, r.style);
          } else if constexpr (std::is_same_v<G, Ellipse>) {
            DrawEllipse(g, t, r.style);
          } else if constexpr (std::is_same_v<G, Polyline>) {
            DrawPolyline(g, t, r.style);
          } else if constexpr (std::is_same_v<G, Spline>) {
            DrawSpline(g, t, r.style);
          } else if constexpr (std::is_same_v<G, Point>) {
            DrawPointSymbol(g, t, r.style);
          } else if constexpr (std::is_same_v<G, Solid>) {
            DrawSolid(g, t, r.style);
          } else if constexpr (std::is_same_v<G, Face3d>) {
            DrawFace(g, t, r.style);
          } else if constexpr (std::is_same_v<G, Text>) {
            DrawText(g, t, r.style);
          } else if constexpr (std::is_same_v<G, MText>) {
            DrawMText(g, t, r);
          } else if constexpr (std::is_same_v<G, Hatch>) {
            DrawHatch(g, t, r.style);
          } else if constexpr (std::is_same_v<G, Leader>) {
            DrawLeader(g, t, r.style);
          } else if constexpr (std::is_same_v<G, Wipeout>) {
            DrawWipeout(g, t, r.style);
          } else if constexpr (std::is_same_v<G, RasterImage>) {
            DrawRasterImage(g, t, r.style);
          } else if constexpr (std::is_same_v<G, ConstructionLine>) {
            DrawConstructionLine(g, t, r.style);
          } else if constexpr (std::is_same_v<G, MeshEdges>) {
            DrawMeshEdges(g, t, r.style);
          } else if constexpr (std::is_same_v<G, MultiLeader>) {
            DrawMultiLeader(g, t, r);
          } else if constexpr (std::is_same_v<G, AttributeDefinition>) {
            // Inside a block reference the attributes stand in for it.
            if (blocks_.empty()) DrawText(g.tag, t, r.style);
          } else if constexpr (std::is_same_v<G, Undrawn>) {
            // Counted for the plot's report (UndrawnEntities).
          } else {
            static_assert(std::is_same_v<G, void>, "every kind of entity is drawn");
          }
        }
      },
      e.geometry);
}

void Frontend::DrawBlockReference(const Resolved& r, const Block& block, const Transform3& placed,
                                  const Insert* insert, const Transform3& parent) {
  if (std::find(activeBlocks_.begin(), activeBlocks_.end(), &block) != activeBlocks_.end() ||
      activeBlocks_.size() >= kMaxBlockDepth) {
    ++stats_.recursiveBlocks;
    return;
  }
  blocks_.push_back({r.layer, r.objectRgb, r.lineweightMm, r.aci, r.linetype});
  activeBlocks_.push_back(&block);

  const int columns = insert != nullptr ? std::max<int>(insert->columns, 1) : 1;
  const int rows = insert != nullptr ? std::max<int>(insert->rows, 1) : 1;
  const Vec3 scale = insert != nullptr ? insert->scale : Vec3{1, 1, 1};
  const Transform3 inner = Transform3::Scaling(scale) *
                           Transform3::Translation({-block.base.x, -block.base.y, -block.base.z});
  // A clipped reference (XCLIP), its attributes included.
  const bool clipped = insert != nullptr && insert->clip != nullptr;
  if (clipped) PushBlockClip(*insert->clip, placed * inner);
  // The cells of an array of references (MINSERT), the first at the
  // insertion point; `f` gets whether the cell is moved from there and by
  // how much, in the reference's axes.
  const auto forEachCell = [&](const auto& f) {
    int copies = 0;
    for (int row = 0; row < rows && copies < kMaxInsertCopies; ++row) {
      for (int col = 0; col < columns && copies < kMaxInsertCopies; ++col, ++copies) {
        const bool moved = row != 0 || col != 0;
        f(moved, moved ? Vec3{col * insert->columnSpacing, row * insert->rowSpacing, 0} : Vec3{});
      }
    }
  };
  forEachCell([&](bool moved, const Vec3& step) {
    const Transform3 m = (moved ? placed * Transform3::Translation(step) : placed) * inner;
    if (block.IsXref()) {
      DrawXref(block, m);
    } else {
      DrawEntities(block, m);
    }
  });
  // Attributes are placed already: they follow the reference's own space.
  // An array of references repeats them in every cell, moved as the cell is.
  if (insert != nullptr && !insert->attributes.empty()) {
    const Transform3 turn =
        Transform3::Ocs(insert->extrusion) * Transform3::RotationZ(insert->rotation);
    for (const Attribute& attribute : insert->attributes) {
      if (attribute.invisible) continue;
      const Resolved ar = Resolve(attribute.props);
      if (!ar.visible) continue;
      forEachCell([&](bool moved, const Vec3& step) {
        const Transform3 m = moved ? parent * Transform3::Translation(turn.Apply(step)) : parent;
        DrawText(attribute.text, m, ar.style);
      });
    }
  }
  if (clipped) PopBlockClip();
  activeBlocks_.pop_back();
  blocks_.pop_back();
}

void Frontend::DrawXref(const Block& block, const Transform3& t) {
  const std::string key = NameKey(block.name);
  const Drawing* xref = nullptr;
  for (const ExternalReference& ref : drawing_->xrefs) {
    if (NameKey(ref.blockName) == key) xref = ref.drawing.get();
  }
  if (xref == nullptr) {
    ++stats_.unresolvedXrefs;
    return;
  }
  if (std::find(activeDrawings_.begin(), activeDrawings_.end(), xref) != activeDrawings_.end()) {
    ++stats_.recursiveBlocks;
    return;
  }
  const Block* model = ModelSpaceOf(*xref);
  if (model == nullptr) return;
  const Drawing* savedDrawing = drawing_;
  const std::string savedPrefix = xrefPrefix_;
  activeDrawings_.push_back(drawing_);
  drawing_ = xref;
  xrefPrefix_ = block.name + "|";
  looks_.clear();
  DrawEntities(*model, t);
  drawing_ = savedDrawing;
  xrefPrefix_ = savedPrefix;
  activeDrawings_.pop_back();
  looks_.clear();
}

// ------------------------------------------------------------- primitives

bool Frontend::InCull(std::span<const Vec2> points) const {
  if (!options_.cull) return true;
  Box2 box;
  for (const Vec2& p : points) box.Extend(p);
  return box.Intersects(*options_.cull);
}

bool Frontend::MapLocal(const Affine2& a) {
  out_.clear();
  out_.reserve(local_.size());
  for (const Vec2& p : local_) out_.push_back(a.Apply(p));
  return InCull(out_);
}

void Frontend::EmitPolyline(bool closed, const Style& s) {
  if (out_.size() >= 2 && InCull(out_)) Stroke(out_, closed, s);
}

void Frontend::DrawLine(const Line& g, const Transform3& t, const Style& s) {
  const Vec2 pair[2] = {t.ApplyXY(g.start), t.ApplyXY(g.end)};
  if (!InCull(pair)) return;
  if (dasher_.Active()) {
    Stroke(pair, false, s);
  } else {
    backend_.DrawLines(pair, s);
  }
}

void Frontend::DrawCircle(const Vec3& center, double radius, double startDeg, double sweepDeg,
                          const Vec3& extrusion, const Transform3& t, const Style& s) {
  if (!(radius > 0)) return;
  const Affine2 a = WithOcs(t, extrusion).PlaneAt(center.z);
  const bool full = sweepDeg >= 360.0;
  const double sweep = Radians(sweepDeg);
  // Under a similarity a circle stays a circle: hand it over whole.
  const double s1 = std::hypot(a.a, a.b), s2 = std::hypot(a.c, a.d);
  if (!dasher_.Active() && std::fabs(s1 - s2) <= 1e-9 * s1 &&
      std::fabs(a.a * a.c + a.b * a.d) <= 1e-9 * s1 * s2) {
    const Vec2 c = a.Apply({center.x, center.y});
    const double r = radius * s1;
    if (options_.cull &&
        !Box2::Of({c.x - r, c.y - r}, {c.x + r, c.y + r}).Intersects(*options_.cull)) {
      return;
    }
    const double start = Radians(startDeg);
    const Vec2 dir = a.ApplyLinear({std::cos(start), std::sin(start)});
    const bool mirrored = a.Determinant() < 0;
    backend_.DrawArc(c, r, std::atan2(dir.y, dir.x), mirrored ? -sweep : sweep, s);
    return;
  }
  const int n = ArcSegments(radius * a.Scale(), sweep, options_.flattening);
  local_.clear();
  AppendArc(local_, {center.x, center.y}, radius, Radians(startDeg), sweep, n, true);
  if (full) local_.pop_back();
  MapLocal(a);
  EmitPolyline(full, s);
}

void Frontend::DrawEllipse(const Ellipse& g, const Transform3& t, const Style& s) {
  const Vec3 normal = Normalized(g.extrusion);
  const Vec3 minorDir = Cross(normal, g.majorAxis);
  const Vec3 minor{minorDir.x * g.ratio, minorDir.y * g.ratio, minorDir.z * g.ratio};
  const Affine2 a = PlanarMap(t, g.center, g.majorAxis, minor);
  double sweep = g.endParam - g.startParam;
  const bool full = std::fabs(sweep) >= kTwoPi - 1e-9 || sweep == 0;
  if (full) {
    sweep = kTwoPi;
  } else {
    sweep = std::fmod(sweep, kTwoPi);
    if (sweep <= 0) sweep += kTwoPi;
  }
  const int n = ArcSegments(a.Scale(), sweep, options_.flattening);
  local_.clear();
  AppendArc(local_, {0, 0}, 1, full ? 0 : g.startParam, sweep, n, true);
  if (full) local_.pop_back();
  MapLocal(a);
  EmitPolyline(full, s);
}

void Frontend::DrawBand(std::span<const Vec2> pts, double w0, double w1, const Affine2& a,
                        const Style& s) {
  // A filled band along `pts`, its width going from w0 to w1 by length.
  const std::size_t n = pts.size();
  if (n < 2) return;
  double total = 0;
  for (std::size_t i = 1; i < n; ++i)
    total += std::hypot(pts[i].x - pts[i - 1].x, pts[i].y - pts[i - 1].y);
  if (total <= 0) return;
  std::vector<Vec2>& band = pairs_;
  band.assign(2 * n, Vec2{});
  double run = 0;
  for (std::size_t i = 0; i < n; ++i) {
    if (i > 0) run += std::hypot(pts[i].x - pts[i - 1].x, pts[i].y - pts[i - 1].y);
    const Vec2 prev = pts[i > 0 ? i - 1 : i];
    const Vec2 next = pts[i + 1 < n ? i + 1 : i];
    double dx = next.x - prev.x, dy = next.y - prev.y;
    const double len = std::hypot(dx, dy);
    if (len > 0) {
      dx /= len;
      dy /= len;
    }
    const double half = (w0 + (w1 - w0) * run / total) / 2;
    band[i] = a.Apply({pts[i].x - dy * half, pts[i].y + dx * half});
    band[2 * n - 1 - i] = a.Apply({pts[i].x + dy * half, pts[i].y - dx * half});
  }
  if (!InCull(band)) return;
  const int size = static_cast<int>(band.size());
  backend_.FillLoops(band, {&size, 1}, s);
}

void Frontend::DrawPolyline(const Polyline& g, const Transform3& t, const Style& s) {
  const std::size_t n = g.vertices.size();
  if (n == 0) return;
  if (g.is3d) {
    out_.clear();
    for (const PolylineVertex& v : g.vertices) out_.push_back(t.ApplyXY(v.point));
    if (n == 1) {
      if (InCull(out_)) backend_.DrawPoint(out_[0], s);
      return;
    }
    EmitPolyline(g.closed, s);
    return;
  }
  const Affine2 a = WithOcs(t, g.extrusion).PlaneAt(g.elevation);
  const double scale = a.Scale();
  bool wide = g.constantWidth > 0;
  for (const PolylineVertex& v : g.vertices) wide = wide || v.startWidth > 0 || v.endWidth > 0;
  const std::size_t segments = g.closed ? n : n - 1;
  if (!wide) {
    local_.clear();
    segmentEnds_.clear();
    local_.push_back({g.vertices[0].point.x, g.vertices[0].point.y});
    for (std::size_t i = 0; i < segments; ++i) {
      const PolylineVertex& from = g.vertices[i];
      const PolylineVertex& to = g.vertices[(i + 1) % n];
      AppendBulgeSegment(local_, {from.point.x, from.point.y}, {to.point.x, to.point.y}, from.bulge,
                         scale, options_.flattening);
      segmentEnds_.push_back(local_.size() - 1);
    }
    if (g.closed && local_.size() > 1) local_.pop_back();  // back at the first vertex
    MapLocal(a);
    if (n == 1 || out_.size() == 1) {
      if (InCull(out_)) backend_.DrawPoint(out_[0], s);
      return;
    }
    if (dasher_.Active() && !g.linetypeGeneration) {
      if (InCull(out_)) StrokeSegments(g.closed, s);
      return;
    }
    EmitPolyline(g.closed, s);
    return;
  }
  // Each segment is a band of its own; where two wide ones meet at a turn
  // the outer corner between them is filled (wide_joins.h).
  struct BandEnd {
    Vec2 direction;
    double half = 0;
  };
  BandEnd previous, first;
  const auto join = [&](const PolylineVertex& at, const BandEnd& in, const BandEnd& out) {
    std::array<Vec2, 4> corner;
    const std::size_t size =
        WideJoin({at.point.x, at.point.y}, in.direction, in.half, out.direction, out.half, corner);
    if (size == 0) return;
    for (std::size_t k = 0; k < size; ++k) corner[k] = a.Apply(corner[k]);
    if (!InCull({corner.data(), size})) return;
    const int loop = static_cast<int>(size);
    backend_.FillLoops({corner.data(), size}, {&loop, 1}, s);
  };
  for (std::size_t i = 0; i < segments; ++i) {
    if (!g.linetypeGeneration) dasher_.Restart();
    const PolylineVertex& from = g.vertices[i];
    const PolylineVertex& to = g.vertices[(i + 1) % n];
    local_.clear();
    local_.push_back({from.point.x, from.point.y});
    AppendBulgeSegment(local_, {from.point.x, from.point.y}, {to.point.x, to.point.y}, from.bulge,
                       scale, options_.flattening);
    const double w0 = g.constantWidth > 0 ? g.constantWidth : from.startWidth;
    const double w1 = g.constantWidth > 0 ? g.constantWidth : from.endWidth;
    const BandEnd start{RunDirection(local_, false), std::max(w0, 0.0) / 2};
    if (i == 0) {
      first = start;
    } else {
      join(from, previous, start);
    }
    previous = {RunDirection(local_, true), std::max(w1, 0.0) / 2};
    if (w0 <= 0 && w1 <= 0) {
      MapLocal(a);
      EmitPolyline(false, s);
    } else {
      DrawBand(local_, w0, w1, a, s);
    }
  }
  if (g.closed && segments > 1) join(g.vertices[0], previous, first);
}

void Frontend::DrawSpline(const Spline& g, const Transform3& t, const Style& s) {
  points3_.clear();
  if (g.controlPoints.size() >= 2) {
    const int spans = static_cast<int>(g.controlPoints.size()) - std::max(g.degree, 1);
    AppendBSpline(points3_, g.degree, g.knots, g.controlPoints, g.weights,
                  std::clamp(16 * std::max(spans, 1), 16, 4096));
  } else if (g.fitPoints.size() >= 2) {
    AppendThroughPoints(points3_, g.fitPoints, g.closed, 16);
  } else {
    return;
  }
  out_.clear();
  for (const Vec3& p : points3_) out_.push_back(t.ApplyXY(p));
  EmitPolyline(false, s);
}

void Frontend::DrawSolid(const Solid& g, const Transform3& t, const Style& s) {
  const Affine2 a = WithOcs(t, g.extrusion).PlaneAt(g.corners[0].z);
  local_.clear();
  for (int i : {0, 1, 3, 2}) local_.push_back({g.corners[i].x, g.corners[i].y});
  if (!MapLocal(a)) return;
  if (root_.header.fillMode) {
    const int size = 4;
    backend_.FillLoops(out_, {&size, 1}, s);
  } else {
    backend_.DrawPolyline(out_, true, s);
  }
}

void Frontend::DrawFace(const Face3d& g, const Transform3& t, const Style& s) {
  pairs_.clear();
  for (int i = 0; i < 4; ++i) {
    if ((g.invisibleEdges & (1 << i)) != 0) continue;
    const Vec3& p = g.corners[static_cast<std::size_t>(i)];
    const Vec3& q = g.corners[static_cast<std::size_t>((i + 1) % 4)];
    if (p.x == q.x && p.y == q.y && p.z == q.z) continue;
    pairs_.push_back(t.ApplyXY(p));
    pairs_.push_back(t.ApplyXY(q));
  }
  if (!pairs_.empty() && InCull(pairs_)) backend_.DrawLines(pairs_, s);
}

void Frontend::DrawText(const Text& g, const Transform3& t, const Style& s) {
  text_.clear();
  AppendWithSpecialCodes(g.text, text_);
  if (text_.empty()) return;
  const TextStyle* style = drawing_->FindTextStyle(g.style);
  TextRun run;
  run.height = g.height > 0
                   ? g.height
                   : (style != nullptr && style->fixedHeight > 0 ? style->fixedHeight : 1.0);
  run.widthFactor = g.widthFactor > 0 ? g.widthFactor : 1.0;
  run.obliqueDegrees = g.oblique;
  run.horizontalAlign = g.horizontalAlign;
  run.verticalAlign = g.verticalAlign;
  Vec3 anchor = g.insert;
  double rotation = Radians(g.rotation);
  const bool baselineFromPoints =
      (g.horizontalAlign == 3 || g.horizontalAlign == 5) && g.hasAlignPoint;
  if (baselineFromPoints) {
    const double dx = g.alignPoint.x - g.insert.x, dy = g.alignPoint.y - g.insert.y;
    run.fitLength = std::hypot(dx, dy);
    if (run.fitLength > 0) rotation = std::atan2(dy, dx);
  } else if ((g.horizontalAlign != 0 || g.verticalAlign != 0) && g.hasAlignPoint) {
    anchor = g.alignPoint;
  }
  if ((g.horizontalAlign == 3 || g.horizontalAlign == 5) && run.fitLength <= 0) {
    run.horizontalAlign = 0;
  }
  Affine2 local = WithOcs(t, g.extrusion).PlaneAt(anchor.z) *
                  Affine2::Translation(anchor.x, anchor.y) * Affine2::Rotation(rotation);
  if ((g.generation & 2) != 0) {
    // Backwards text still runs between its two points when they give
    // its baseline.
    if (run.horizontalAlign == 3 || run.horizontalAlign == 5) {
      local = local * Affine2::Translation(run.fitLength, 0);
    }
    local = local * Affine2::Scaling(-1, 1);
  }
  if ((g.generation & 4) != 0) local = local * Affine2::Scaling(1, -1);
  run.toSheet = local;
  run.text = text_;
  const ShapeFace* face = nullptr;
  if (style != nullptr) {
    run.fontFamily = style->trueTypeFamily;
    run.fontFile = style->fontFile;
    if (IsShapeFont(style->trueTypeFamily, style->fontFile)) face = &StyleFace(*style);
  }
  if (face != nullptr) {
    DrawStrokeRun(backend_, run, s, options_.cull, *face);
  } else {
    backend_.DrawText(run, s);
  }
  TextMeasure& measure =
      options_.textMeasure != nullptr ? *options_.textMeasure : TrueTypeMeasure();
  DrawTextToggles(backend_, g.text, run, face, measure, s, options_.cull);
}

const ShapeFace& Frontend::StyleFace(const TextStyle& style) {
  const auto known = styleFaces_.find(&style);
  if (known != styleFaces_.end()) return *known->second;
  const ShapeFace& face = FileFace(style.fontFile, &style);
  styleFaces_.emplace(&style, &face);
  return face;
}

const ShapeFace& Frontend::FileFace(std::string_view fontFile, const TextStyle* style) {
  if (options_.fontSearchPath.empty()) return ShapeFace::Builtin();
  return FindShapeFace(fontFile, style != nullptr ? style->bigFontFile : std::string_view(),
                       options_.fontSearchPath, drawing_->header.codePage);
}

void Frontend::DrawMText(const MText& g, const Transform3& t, const Resolved& r) {
  if (g.text.empty()) return;
  const TextStyle* style = drawing_->FindTextStyle(g.style);
  const Vec3 normal = Normalized(g.extrusion);
  Vec3 xAxis;
  if (g.hasXAxis) {
    // A world direction, kept in the text's plane.
    const Vec3 d = Normalized(g.xAxis);
    const double along = d.x * normal.x + d.y * normal.y + d.z * normal.z;
    xAxis = Normalized({d.x - along * normal.x, d.y - along * normal.y, d.z - along * normal.z});
  }
  if (!g.hasXAxis || (xAxis.x == 0 && xAxis.y == 0 && xAxis.z == 0)) {
    // An angle in the object's own plane.
    const double a = Radians(g.rotation);
    const Transform3 ocs = Transform3::Ocs(g.extrusion);
    const Vec3 o = ocs.Apply({0, 0, 0});
    const Vec3 d = ocs.Apply({std::cos(a), std::sin(a), 0});
    xAxis = Normalized({d.x - o.x, d.y - o.y, d.z - o.z});
  }
  const Vec3 yAxis = Cross(normal, xAxis);
  MTextFormat base;
  base.height = g.height > 0 ? g.height : 1.0;
  if (style != nullptr) {
    base.widthFactor = style->widthFactor > 0 ? style->widthFactor : 1.0;
    base.obliqueDegrees = style->oblique;
    base.family = style->trueTypeFamily;
    base.file = style->fontFile;
    base.strokeFont = IsShapeFont(style->trueTypeFamily, style->fontFile);
    if (base.strokeFont) base.shapeFace = &StyleFace(*style);
  }
  std::vector<MTextPiece> pieces = ParseMText(g.text, base);
  for (MTextPiece& piece : pieces) {  // shape fonts switched to with \F
    MTextFormat& f = piece.format;
    if (f.strokeFont && f.shapeFace == nullptr) f.shapeFace = &FileFace(f.file, style);
  }
  TextBlock block;
  block.columnWidth = g.width > 0 ? g.width : 0;
  block.attachment = std::clamp<int>(g.attachment, 1, 9);
  block.lineSpacing = g.lineSpacing > 0 ? g.lineSpacing : 1.0;
  static const MText::Extras kNoExtras;
  const MText::Extras& extras = g.extras ? *g.extras : kNoExtras;
  const MTextColumns& columns = extras.columns;
  if (columns.type == 1 || columns.type == 2) {
    if (columns.width > 0) block.columnWidth = columns.width;
    block.columns.type = columns.type;
    block.columns.count = columns.count;
    block.columns.gutter = std::max(columns.gutter, 0.0);
    block.columns.height = std::max(columns.height, 0.0);
    if (columns.type == 2 && !columns.autoHeight) block.columns.heights = columns.heights;
    block.columns.reversed = columns.reversed;
  }
  block.boxes = (extras.background.flags & (1 | 2 | 16)) != 0;
  TextMeasure& measure =
      options_.textMeasure != nullptr ? *options_.textMeasure : TrueTypeMeasure();
  ShapedText shaped = ShapeText(pieces, block, measure);
  if (const PlotStyleTable* table = options_.plotStyles.get()) {
    const auto plotted = [&](std::optional<std::uint32_t>& rgb, int aci) {
      if (rgb) rgb = PlottedPen(table, aci != 0 ? aci : r.aci, *rgb, r.lineweightMm).rgb;
    };
    for (ShapedRun& run : shaped.runs) plotted(run.format.rgb, run.format.aci);
    for (ShapedLine& line : shaped.lines) plotted(line.rgb, line.aci);
  }
  const Affine2 toSheet = PlanarMap(t, g.insert, xAxis, yAxis);
  if (block.boxes) {
    const double scale =
        extras.background.scale >= 1 ? std::min(extras.background.scale, 5.0) : 1.5;
    DrawTextBackground(backend_, shaped.columns, base.height * (scale - 1), extras.background,
                       toSheet, r.style, options_.cull);
  }
  DrawFormattedText(backend_, shaped, toSheet, r.style, options_.cull);
}

void Frontend::AppendHatchLoop(const HatchLoop& loop, double scale) {
  const std::size_t first = local_.size();
  auto add = [&](Vec2 p) {
    if (local_.size() > first && local_.back().x == p.x && local_.back().y == p.y) return;
    local_.push_back(p);
  };
  if (loop.isPolyline) {
    const std::size_t n = loop.polyline.size();
    if (n == 0) return;
    local_.push_back({loop.polyline[0].point.x, loop.polyline[0].point.y});
    for (std::size_t i = 0; i < n; ++i) {
      if (i + 1 == n && !loop.closed && n > 1) {
        // The boundary closes anyway; the last bulge only counts when closed.
        break;
      }
      const PolylineVertex& from = loop.polyline[i];
      const PolylineVertex& to = loop.polyline[(i + 1) % n];
      AppendBulgeSegment(local_, {from.point.x, from.point.y}, {to.point.x, to.point.y}, from.bulge,
                         scale, options_.flattening);
    }
  } else {
    for (const HatchEdge& edge : loop.edges) {
      switch (edge.kind) {
        case HatchEdge::Kind::Line:
          add(edge.start);
          add(edge.end);
          break;
        case HatchEdge::Kind::Arc:
        case HatchEdge::Kind::EllipseArc: {
          double start = edge.startAngle, end = edge.endAngle;
          const bool elliptic = edge.kind == HatchEdge::Kind::EllipseArc;
          const double ratio = edge.ratio > 0 ? edge.ratio : 1.0;
          auto param = [&](double degrees) {
            const double r = Radians(degrees);
            return elliptic ? std::atan2(std::sin(r) / ratio, std::cos(r)) : r;
          };
          double sweep = Radians(SweepDegrees(start, end));
          if (elliptic) {
            sweep = param(end) - param(start);
            if (sweep <= 1e-12) sweep += kTwoPi;
            if (SweepDegrees(start, end) >= 360.0) sweep = kTwoPi;
          }
          double from = param(start);
          if (!edge.counterClockwise) {  // stored mirrored: run the other way
            from = -from;
            sweep = -sweep;
          }
          const double radius =
              elliptic ? std::hypot(edge.majorAxis.x, edge.majorAxis.y) : edge.radius;
          const int n = ArcSegments(radius * scale, sweep, options_.flattening);
          const Vec2 major = elliptic ? edge.majorAxis : Vec2{radius, 0};
          const Vec2 minor{-major.y * (elliptic ? ratio : 1.0), major.x * (elliptic ? ratio : 1.0)};
          for (int i = 0; i <= n; ++i) {
            const double u = from + sweep * i / n;
            add({edge.center.x + std::cos(u) * major.x + std::sin(u) * minor.x,
                 edge.center.y + std::cos(u) * major.y + std::sin(u) * minor.y});
          }
          break;
        }
        case HatchEdge::Kind::Spline: {
          points3_.clear();
          std::vector<Vec3> pts;
          if (edge.controlPoints.size() >= 2) {
            for (const Vec2& p : edge.controlPoints) pts.push_back({p.x, p.y, 0});
            AppendBSpline(points3_, edge.degree, edge.knots, pts, edge.weights,
                          std::clamp(16 * static_cast<int>(pts.size()), 16, 4096));
          } else {
            for (const Vec2& p : edge.fitPoints) pts.push_back({p.x, p.y, 0});
            AppendThroughPoints(points3_, pts, false, 16);
          }
          for (const Vec3& p : points3_) add({p.x, p.y});
          break;
        }
      }
    }
  }
  // Drop a repeated first point at the end; the loop closes by itself.
  if (local_.size() > first + 1 && local_.back().x == local_[first].x &&
      local_.back().y == local_[first].y) {
    local_.pop_back();
  }
  const int size = static_cast<int>(local_.size() - first);
  if (size < 3) {
    local_.resize(first);
    return;
  }
  loopSizes_.push_back(size);
}

void Frontend::DrawHatch(const Hatch& g, const Transform3& t, const Style& s) {
  const Affine2 a = WithOcs(t, g.extrusion).PlaneAt(g.elevation);
  const double scale = a.Scale();
  local_.clear();
  loopSizes_.clear();
  bool anyExternal = false;
  for (const HatchLoop& loop : g.loops) anyExternal = anyExternal || (loop.flags & (1 | 16)) != 0;
  // Text boxes (flag 8) are islands around text: never filled, whatever
  // the loops around them; they are cut out by a clip.
  bool textBoxes = false;
  for (const HatchLoop& loop : g.loops) {
    if ((loop.flags & kHatchTextBox) != 0) {
      textBoxes = true;
      continue;
    }
    if (g.style == 2 && anyExternal && (loop.flags & (1 | 16)) == 0) continue;
    AppendHatchLoop(loop, scale);
  }
  const std::size_t filledPoints = local_.size(), filledLoops = loopSizes_.size();
  if (filledLoops == 0) return;
  if (textBoxes) {
    for (const HatchLoop& loop : g.loops) {
      if ((loop.flags & kHatchTextBox) != 0) AppendHatchLoop(loop, scale);
    }
  }
  if (!MapLocal(a)) return;
  const std::span<const Vec2> filled(out_.data(), filledPoints);
  const bool cut = loopSizes_.size() > filledLoops;
  if (cut) {
    // A clip of the hatch's box with the text boxes as holes.
    Box2 box;
    for (const Vec2& p : filled) box.Extend(p);
    segment_.assign({box.min, {box.max.x, box.min.y}, box.max, {box.min.x, box.max.y}});
    segment_.insert(segment_.end(), out_.begin() + static_cast<std::ptrdiff_t>(filledPoints),
                    out_.end());
    loopSizes_.insert(loopSizes_.begin() + static_cast<std::ptrdiff_t>(filledLoops), 4);
    backend_.PushClipLoops(segment_, std::span<const int>(loopSizes_).subspan(filledLoops));
  }
  const std::span<const int> filledSizes(loopSizes_.data(), filledLoops);
  if (g.solid) {
    backend_.FillLoops(filled, filledSizes, s);
  } else {
    for (const HatchPatternLine& line : g.patternLines) {
      pairs_.clear();
      if (!AppendPatternSegments(std::span<const Vec2>(local_.data(), filledPoints), filledSizes,
                                 line, pairs_, kMaxPatternSegments)) {
        ++stats_.densePatterns;
      }
      if (pairs_.empty()) continue;
      for (Vec2& p : pairs_) p = a.Apply(p);
      backend_.DrawLines(pairs_, s);
    }
  }
  if (cut) backend_.PopClip();
}

void Frontend::DrawLeader(const Leader& g, const Transform3& t, const Style& s) {
  if (g.vertices.size() < 2) return;
  out_.clear();
  for (const Vec3& v : g.vertices) out_.push_back(t.ApplyXY(v));
  if (!InCull(out_)) return;
  Stroke(out_, false, s);
  if (!g.arrowhead) return;
  // No longer than half the first segment.
  const Vec3& tip = g.vertices[0];
  const Vec3& next = g.vertices[1];
  const double length = std::hypot(next.x - tip.x, next.y - tip.y);
  DrawArrowhead(tip, next, std::min(root_.header.measurement == 0 ? 0.18 : 2.5, length / 2), t, s);
}

}  // namespace sheafwork::embedded
