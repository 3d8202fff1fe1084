#include "embedded/render/render_test_support.h"

#include <gtest/gtest.h>

#include <QtGlobal>
#include <iterator>
#include <sstream>

#include "embedded/dxf/reader.h"
#include "embedded/model/layouts.h"
#include "fakes/test_data.h"
#include "text/utf8.h"

namespace sheafwork::embedded::testing {

namespace {

// The tests paint without a display, whatever the environment has.
const bool kOffscreen = [] {
  qputenv("QT_QPA_PLATFORM", "offscreen");
  return true;
}();

}  // namespace

Drawing ReadTestDrawing(const std::string& relative) {
  return ReadDxfFile(sheafwork::testing::TestData(relative));
}

const Layout& ModelOf(const Drawing& drawing) {
  for (const Layout& layout : drawing.layouts) {
    if (layout.IsModel()) return layout;
  }
  throw std::runtime_error("no model layout");
}

const Layout& LayoutNamed(const Drawing& drawing, const std::string& name) {
  for (const Layout& layout : drawing.layouts) {
    if (layout.name == name) return layout;
  }
  throw std::runtime_error("no layout " + name);
}

Box2 BoxOf(const Recorded& item) {
  Box2 box;
  for (const Vec2& p : item.points) box.Extend(p);
  return box;
}

Drawing MakeDrawing() {
  (void)kOffscreen;
  Drawing d;
  for (const char* name : {"0", "Defpoints"}) {
    Layer layer;
    layer.name = name;
    d.layers.push_back(layer);
  }
  SynthesiseLayouts(d);
  d.Reindex();
  return d;
}

Block& ModelSpace(Drawing& d) { return d.blocks[0]; }

Entity MakeEntity(Geometry geometry, const std::string& layer) {
  Entity e;
  e.props.layer = layer;
  e.geometry = std::move(geometry);
  return e;
}

Entity MakeLine(Vec2 from, Vec2 to, const std::string& layer) {
  return MakeEntity(Line{{from.x, from.y, 0}, {to.x, to.y, 0}}, layer);
}

PlotJob MakeJob(const Drawing& drawing, const Layout& layout, const PlotSettings& settings) {
  PlotJob job;
  job.drawing = &drawing;
  job.layout = &layout;
  job.settings = settings;
  return job;
}

std::string PlotFailure(const PlotJob& job) {
  try {
    RunPlotJob(job);
  } catch (const PlotError& e) {
    return e.what();
  }
  return "";
}

double FixedMeasure::Advance(const FontFace&, std::string_view text) {
  double n = 0;
  for (std::size_t i = 0; i < text.size(); i += DecodeUtf8(text, i).length) n += 1;
  return n;
}

RecordingBackend DrawLayout(const Drawing& drawing, const Layout& layout,
                            const FrontendOptions& options, FrontendStats* stats) {
  RecordingBackend backend;
  Frontend frontend(drawing, backend, options);
  frontend.DrawLayout(layout, Affine2{});
  if (stats != nullptr) *stats = frontend.Stats();
  return backend;
}

PlotSettings OneToOneSettings(double width, double height) {
  PlotSettings s;
  s.paperWidth = width;
  s.paperHeight = height;
  s.marginLeft = s.marginBottom = s.marginRight = s.marginTop = 0;
  s.plotType = kPlotWindow;
  s.windowMin = {0, 0};
  s.windowMax = {width, height};
  s.standardScale = 16;
  s.flags = kUseStandardScale | kPrintLineweights;
  return s;
}

void RecordingBackend::Add(Recorded item) {
  items.push_back(std::move(item));
  layers.push_back(layer_);
}

void RecordingBackend::BeginLayer(std::string_view name) { layer_.assign(name); }

void RecordingBackend::DrawLines(std::span<const Vec2> pairs, const Style& style) {
  Add({Recorded::Kind::Lines, {pairs.begin(), pairs.end()}, style, {}});
}

void RecordingBackend::DrawPolyline(std::span<const Vec2> points, bool, const Style& style) {
  Add({Recorded::Kind::Polyline, {points.begin(), points.end()}, style, {}});
}

void RecordingBackend::FillLoops(std::span<const Vec2> points, std::span<const int>,
                                 const Style& style) {
  Add({Recorded::Kind::Fill, {points.begin(), points.end()}, style, {}});
}

void RecordingBackend::DrawPoint(Vec2 at, const Style& style) {
  Add({Recorded::Kind::Point, {at}, style, {}});
}

void RecordingBackend::DrawText(const TextRun& text, const Style& style) {
  if (outlineText) return Backend::DrawText(text, style);
  Add({Recorded::Kind::Text, {text.toSheet.Apply({0, 0})}, style, std::string(text.text)});
}

void RecordingBackend::PushClip(std::span<const Vec2>) {
  ++clipDepth;
  maxClipDepth = std::max(maxClipDepth, clipDepth);
}

void RecordingBackend::PopClip() { --clipDepth; }

std::vector<double> NumbersIn(const std::string& field) {
  std::istringstream in(field);
  return {std::istream_iterator<double>(in), std::istream_iterator<double>()};
}

Vec2 PointIn(const std::string& field) {
  const std::vector<double> v = NumbersIn(field);
  return {v.at(0), v.at(1)};
}

Box2 BoxIn(const std::string& field) {
  const std::vector<double> v = NumbersIn(field);
  return v.empty() ? Box2{} : Box2::Of({v.at(0), v.at(1)}, {v.at(2), v.at(3)});
}

std::size_t Count(const std::string& text, const std::string& what) {
  std::size_t n = 0;
  for (std::size_t at = text.find(what); at != std::string::npos;
       at = text.find(what, at + what.size())) {
    ++n;
  }
  return n;
}

void ExpectNear(Vec2 actual, Vec2 expected, double tolerance) {
  EXPECT_NEAR(actual.x, expected.x, tolerance);
  EXPECT_NEAR(actual.y, expected.y, tolerance);
}

void ExpectNear(const Box2& actual, const Box2& expected, double tolerance) {
  ASSERT_FALSE(actual.Empty());
  ExpectNear(actual.min, expected.min, tolerance);
  ExpectNear(actual.max, expected.max, tolerance);
}

void ExpectNear(const std::vector<Vec2>& actual, const std::vector<Vec2>& expected,
                double tolerance) {
  ASSERT_EQ(actual.size(), expected.size());
  for (std::size_t i = 0; i < actual.size(); ++i) {
    SCOPED_TRACE(::testing::Message() << "point " << i);
    ExpectNear(actual[i], expected[i], tolerance);
  }
}

}  // namespace sheafwork::embedded::testing

// Qt reads the system's fontconfig setup when it paints text, and
// fontconfig 2.14 loses 288 bytes once while parsing Debian's configuration
// (see platform/fontconfig_fonts.cpp, which carries the same suppression for
// the programs that link it). This binary does not link that library.
#if defined(__SANITIZE_ADDRESS__)
extern "C" const char* __lsan_default_suppressions() { return "leak:libfontconfig.so\n"; }
#endif
