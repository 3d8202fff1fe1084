#pragma once
// Small drawings built in memory, a backend that records what it is given,
// and a way to look at painted pixels in sheet millimetres.

#include <string>
#include <vector>

#include "embedded/model/drawing.h"
#include "embedded/render/backend.h"
#include "embedded/render/frontend.h"
#include "embedded/render/plot_job.h"
#include "embedded/render/text_layout.h"
#include "support/image_probes.h"

namespace sheafwork::embedded::testing {

/// The drawing tests/data/`relative` (fakes/test_data.h), read by our DXF reader.
Drawing ReadTestDrawing(const std::string& relative);

/// The drawing's model layout, and its layout named `name`.
const Layout& ModelOf(const Drawing& drawing);
const Layout& LayoutNamed(const Drawing& drawing, const std::string& name);

/// A drawing with layers "0" and "Defpoints" and an empty model space, its
/// only layout. Call Reindex() after adding blocks.
Drawing MakeDrawing();

Block& ModelSpace(Drawing& drawing);

Entity MakeEntity(Geometry geometry, const std::string& layer = "0");
Entity MakeLine(Vec2 from, Vec2 to, const std::string& layer = "0");

/// Settings plotting the window 0..width × 0..height at 1:1 on a width ×
/// height mm sheet without margins: drawing units are sheet millimetres.
PlotSettings OneToOneSettings(double width, double height);
inline PlotSettings OneToOneSettings(double size) { return OneToOneSettings(size, size); }

/// A job plotting `layout` of `drawing` with `settings`.
PlotJob MakeJob(const Drawing& drawing, const Layout& layout, const PlotSettings& settings);

/// The message of the PlotError RunPlotJob(job) throws; empty when it plots.
std::string PlotFailure(const PlotJob& job);

/// What a backend was given; images are left to the frontend, which draws
/// their frames.
struct Recorded {
  enum class Kind { Lines, Polyline, Fill, Point, Text } kind;
  std::vector<Vec2> points;
  Style style;
  std::string text;
};

class RecordingBackend final : public Backend {
 public:
  void DrawLines(std::span<const Vec2> pairs, const Style& style) override;
  void DrawPolyline(std::span<const Vec2> points, bool closed, const Style& style) override;
  void FillLoops(std::span<const Vec2> points, std::span<const int> loopSizes,
                 const Style& style) override;
  void DrawPoint(Vec2 at, const Style& style) override;
  void DrawText(const TextRun& text, const Style& style) override;
  void PushClip(std::span<const Vec2> polygon) override;
  void PopClip() override;
  void BeginLayer(std::string_view name) override;

  /// Text is handed on to the default backend, which fills its outlines.
  bool outlineText = false;
  std::vector<Recorded> items;
  std::vector<std::string> layers;  ///< the layer each item was drawn on
  int clipDepth = 0;
  int maxClipDepth = 0;

 private:
  void Add(Recorded item);
  std::string layer_;
};

/// Measures every character one unit wide, whatever its font.
class FixedMeasure final : public TextMeasure {
 public:
  double Advance(const FontFace& face, std::string_view text) override;
};

/// The box of `item`'s points.
Box2 BoxOf(const Recorded& item);

/// What the frontend hands a backend for `layout`; its counters in `stats`
/// when given.
RecordingBackend DrawLayout(const Drawing& drawing, const Layout& layout,
                            const FrontendOptions& options = {}, FrontendStats* stats = nullptr);

/// The numbers of a table's field, separated by blanks: "x y" as a point,
/// "x0 y0 x1 y1" as a box (empty when the field holds no number).
std::vector<double> NumbersIn(const std::string& field);
Vec2 PointIn(const std::string& field);
Box2 BoxIn(const std::string& field);

/// How many times `what` occurs in `text`.
std::size_t Count(const std::string& text, const std::string& what);

void ExpectNear(Vec2 actual, Vec2 expected, double tolerance = 1e-9);
void ExpectNear(const Box2& actual, const Box2& expected, double tolerance = 1e-9);
void ExpectNear(const std::vector<Vec2>& actual, const std::vector<Vec2>& expected,
                double tolerance = 1e-9);

}  // namespace sheafwork::embedded::testing
