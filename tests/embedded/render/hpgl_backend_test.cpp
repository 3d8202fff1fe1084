#include "embedded/render/hpgl_backend.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <numbers>
#include <string>
#include <vector>

#include "support/hpgl_reader.h"
#include "support/image_probes.h"

namespace sheafwork::embedded {
namespace {

using testing::HpglPlot;
using testing::ReadHpgl;

constexpr Style kRed{0xFF0000, 0.35};
constexpr Style kBlue{0x0000FF, 0.5};

TEST(HpglBackendTest, SetsUpThePlotAndAPenPerColour) {
  HpglBackend b(420, 297, "plan.dxf - \"A3\"");
  const std::vector<Vec2> line = {{10, 10}, {20, 10}};
  b.DrawPolyline(line, false, kRed);
  b.DrawPolyline(line, false, kBlue);
  b.DrawPolyline(line, false, Style{0xFF0000, 0.7});  // the red pen, wider
  b.DrawPolyline(line, false, kRed);
  const std::string file = b.Finish();
  const HpglPlot plot = ReadHpgl(file);

  EXPECT_EQ(file.rfind("IN;CO\"plan.dxf - 'A3'\";PS16800,11880;WU0;NP4;", 0), 0u) << file;
  EXPECT_EQ(file.substr(file.size() - 10), "PU;SP0;PG;");
  EXPECT_EQ(plot.All("PC"), (std::vector<std::string>{"PC1,255,0,0", "PC2,0,0,255"}));
  EXPECT_EQ(b.PenColors(), (std::vector<std::uint32_t>{0xFF0000, 0x0000FF}));
  // Widths with the pens; in the drawing only where a pen changes width.
  EXPECT_EQ(plot.All("PW"),
            (std::vector<std::string>{"PW0.35,1", "PW0.5,2", "PW0.7,1", "PW0.35,1"}));
  EXPECT_EQ(plot.All("SP"), (std::vector<std::string>{"SP1", "SP2", "SP1", "SP0"}));
  ASSERT_EQ(plot.strokes.size(), 4u);
  EXPECT_EQ(plot.strokes[1].pen, 2);
  EXPECT_DOUBLE_EQ(plot.strokes[2].widthMm, 0.7);
  EXPECT_DOUBLE_EQ(plot.strokes[3].widthMm, 0.35);
}

TEST(HpglBackendTest, PaletteSizesAndPensBeyondTheLast) {
  struct Case {
    int colours;
    std::string palette;
  };
  for (const Case& c : {Case{1, "NP2;"}, Case{3, "NP4;"}, Case{4, "NP8;"}, Case{300, "NP256;"}}) {
    HpglBackend b(100, 100, "");
    const std::vector<Vec2> line = {{1, 1}, {2, 2}};
    for (int i = 0; i < c.colours; ++i) {
      b.DrawPolyline(line, false, Style{static_cast<std::uint32_t>(i * 0x010203), 0.25});
    }
    const std::string file = b.Finish();
    EXPECT_NE(file.find(c.palette), std::string::npos) << c.colours;
    EXPECT_EQ(file.find("CO\""), std::string::npos);  // no title, no comment
    const int pens = std::min(c.colours, HpglBackend::kMaxPens);
    EXPECT_EQ(ReadHpgl(file).All("PC").size(), static_cast<std::size_t>(pens));
  }
  // Once the pens run out, a colour takes the nearest pen's.
  HpglBackend b(100, 100, "");
  const std::vector<Vec2> line = {{1, 1}, {2, 2}};
  for (int i = 0; i < HpglBackend::kMaxPens; ++i) {
    b.DrawPolyline(line, false, Style{static_cast<std::uint32_t>(i) << 16, 0.25});
  }
  b.DrawPolyline(line, false, Style{0x7F0101, 0.25});
  b.DrawPolyline(line, false, Style{0x000101, 0.25});  // the first pen's
  const HpglPlot plot = ReadHpgl(b.Finish());
  ASSERT_GE(plot.strokes.size(), 2u);
  EXPECT_EQ(plot.strokes[plot.strokes.size() - 2].pen, 0x7F + 1);
  EXPECT_EQ(plot.strokes.back().pen, 1);
}

TEST(HpglBackendTest, LongRunsAreSplitAndFarPointsClippedOntoTheLine) {
  HpglBackend b(100, 100, "");
  std::vector<Vec2> zigzag;
  for (int i = 0; i < 600; ++i) zigzag.push_back({i * 0.1, (i % 2) * 1.0});
  b.DrawPolyline(zigzag, false, kRed);
  // From the sheet to very far away: cut where the plotter's range ends,
  // in the same direction.
  b.DrawLines(std::vector<Vec2>{{0, 0}, {1e9, 1e9}}, kBlue);
  b.DrawLines(std::vector<Vec2>{{0, 0}, {std::nan(""), 1}}, kBlue);  // dropped
  const HpglPlot plot = ReadHpgl(b.Finish());
  std::size_t points = 0;
  for (const std::string& pd : plot.All("PD")) {
    const std::size_t n = (std::count(pd.begin(), pd.end(), ',') + 1) / 2;
    EXPECT_LE(n, 256u);
    points += n;
  }
  EXPECT_EQ(points, 599u + 1u);
  const auto& far = plot.strokes.back();
  ASSERT_EQ(far.points.size(), 2u);
  EXPECT_GT(far.points[1].x, 1e6);
  EXPECT_LT(far.points[1].x * 40, std::ldexp(1.0, 30));
  EXPECT_DOUBLE_EQ(far.points[1].x, far.points[1].y);
}

TEST(HpglBackendTest, ArcsAndCircles) {
  HpglBackend b(100, 100, "");
  b.DrawArc({50, 50}, 10, 0, std::numbers::pi / 2, kRed);
  b.DrawArc({50, 50}, 10, std::numbers::pi, -std::numbers::pi / 4, kRed);  // clockwise
  b.DrawArc({20, 20}, 5, 1, 2 * std::numbers::pi, kRed);
  b.DrawArc({70, 70}, 0.01, 0, 1, kRed);  // too small for the plotter: chords
  const std::string file = b.Finish();
  EXPECT_NE(file.find("PU2400,2000;PD;AA2000,2000,90,1;"), std::string::npos) << file;
  EXPECT_NE(file.find("PU1600,2000;PD;AA2000,2000,-45,1;"), std::string::npos) << file;
  EXPECT_NE(file.find("PU800,800;CI200,1;"), std::string::npos) << file;
  EXPECT_NE(file.find("CT1;"), std::string::npos);
  EXPECT_EQ(file.find("AA2800"), std::string::npos);

  const HpglPlot plot = ReadHpgl(file);
  const Box2 box = plot.InkExtents();
  EXPECT_NEAR(box.min.x, 15 - 0.175, 0.01);  // the circle's left
  EXPECT_NEAR(box.max.x, 70 + 0.175, 0.05);  // the tiny arc
  const QImage image = testing::RenderHpgl(plot, 4);
  const auto ink = [&](double x, double y) { return testing::InkNear(image, 4, {x, y}, 0); };
  EXPECT_TRUE(ink(50 + 10 * std::cos(0.7), 50 + 10 * std::sin(0.7)));
  EXPECT_FALSE(ink(50 + 10 * std::cos(-0.7), 50 + 10 * std::sin(-0.7)));
  EXPECT_TRUE(ink(50 + 10 * std::cos(2.8), 50 + 10 * std::sin(2.8)));  // above the left end
  EXPECT_FALSE(ink(50 + 10 * std::cos(3.5), 50 + 10 * std::sin(3.5)));
}

TEST(HpglBackendTest, ClipsAreInputWindowsAroundThePolygon) {
  HpglBackend b(100, 100, "");
  const std::vector<Vec2> line = {{0, 50}, {100, 50}};
  const std::vector<Vec2> frame = {{10.01, 20}, {60, 20}, {60, 70.99}, {10.01, 70.99}};
  const std::vector<Vec2> triangle = {{30, 10}, {90, 30}, {50, 80}};
  const std::vector<Vec2> elsewhere = {{80, 80}, {90, 80}, {90, 90}};
  b.PushClip(frame);
  b.DrawPolyline(line, false, kRed);
  b.PushClip(triangle);  // its box, within the frame
  b.DrawPolyline(line, false, kRed);
  b.PushClip(elsewhere);  // nothing left: nothing drawn
  b.DrawPolyline(line, false, kBlue);
  b.DrawPoint({85, 85}, kBlue);
  b.FillLoops(triangle, std::vector<int>{3}, kBlue);
  b.PopClip();
  b.PopClip();
  b.DrawPolyline(line, false, kRed);
  b.PopClip();
  b.DrawPolyline(line, false, kRed);
  b.PopClip();  // one too many: ignored
  const HpglPlot plot = ReadHpgl(b.Finish());
  EXPECT_EQ(plot.All("IW"),
            (std::vector<std::string>{"IW400,800,2400,2840", "IW1200,800,2400,2840",
                                      "IW1200,800,2400,2840", "IW400,800,2400,2840", "IW"}));
  EXPECT_TRUE(plot.fills.empty());
  ASSERT_EQ(plot.strokes.size(), 4u);
  EXPECT_EQ(plot.penColors.size(), 1u);  // the hidden blue never got a pen
  EXPECT_DOUBLE_EQ(plot.strokes[0].window.min.x, 10);
  EXPECT_DOUBLE_EQ(plot.strokes[1].window.min.x, 30);
  EXPECT_DOUBLE_EQ(plot.strokes[2].window.max.y, 71);
  EXPECT_TRUE(plot.strokes[3].window.Empty());
}

}  // namespace
}  // namespace sheafwork::embedded
