// Clipped block references, draw order tables and hatch islands around
// text, plotted from the drawings of tests/data/dxf/clipping (written by
// ezdxf; make_clipping.py there says what each one holds).

#include <gtest/gtest.h>

#include <QImage>
#include <memory>
#include <string>

#include "embedded/dxf/reader.h"
#include "embedded/model/xrefs.h"
#include "embedded/render/extents_backend.h"
#include "embedded/render/render_test_support.h"
#include "fakes/test_data.h"

namespace sheafwork::embedded {
namespace {

using testing::InkNear;
using testing::OneToOneSettings;

constexpr double kPx = 10;  // pixels per sheet millimetre

Drawing Read(const std::string& name) {
  Drawing d = testing::ReadTestDrawing("dxf/clipping/" + name);
  ResolveExternalReferences(d, "", [](const std::string& path) {
    return std::make_shared<const Drawing>(ReadDxfFile(path));
  });
  return d;
}

QImage Painted(const Drawing& d, const PlotSettings& s) {
  return testing::RenderSheet(d, testing::ModelOf(d), s, kPx);
}

// Each reference draws a cross of two 10-unit midlines; its clip keeps part.
TEST(ClippingTest, ReferencesShowWhatTheirClipKeeps) {
  const Drawing d = Read("xclip.dxf");
  const QImage image = Painted(d, OneToOneSettings(200, 40));
  for (const auto& row : sheafwork::testing::ReadTestTable("dxf/clipping/xclip-probes.tsv")) {
    SCOPED_TRACE(row.where + " " + row[0]);
    EXPECT_EQ(InkNear(image, kPx, testing::PointIn(row[1])), row[2] == "ink");
  }
}

TEST(ClippingExtentsTest, OnlyWhatTheClipKeepsCounts) {
  const Drawing d = Read("xclip-xref.dxf");
  ExtentsBackend extents;
  Frontend(d, extents, {}).DrawLayout(testing::ModelOf(d), Affine2{});
  EXPECT_NEAR(extents.Extents().min.x, 10, 0.01);
  EXPECT_NEAR(extents.Extents().max.x, 14, 0.01);  // the cross runs on to 20
}

// Red text drawn first, a blue solid hatch over it; the draw order table
// puts the text on top, in model space (x 0..12) and in a block (x 20..32).
TEST(DrawOrderTest, TextSortedAfterTheHatchIsDrawnOverIt) {
  const Drawing d = Read("draworder.dxf");
  const testing::RecordingBackend rec = testing::DrawLayout(d, testing::ModelOf(d));
  for (const double left : {0.0, 20.0}) {
    SCOPED_TRACE(left);
    int hatch = -1, text = -1;
    for (int i = 0; i < static_cast<int>(rec.items.size()); ++i) {
      const testing::Recorded& item = rec.items[static_cast<std::size_t>(i)];
      if (item.points.empty() || item.points[0].x < left || item.points[0].x > left + 12) continue;
      if (item.style.rgb == 0x0000FF && item.kind == testing::Recorded::Kind::Fill) hatch = i;
      if (item.style.rgb == 0xFF0000 && text < 0) text = i;
    }
    ASSERT_GE(hatch, 0);
    ASSERT_GE(text, 0);
    EXPECT_LT(hatch, text);
  }
}

// Text boxes are never filled: not inside an island, not where they run
// out of the boundary.
TEST(HatchTextBoxTest, IslandsAroundTextStayUnfilled) {
  const Drawing d = Read("hatch-textbox.dxf");
  const QImage image = Painted(d, OneToOneSettings(110, 45));
  for (const auto& row :
       sheafwork::testing::ReadTestTable("dxf/clipping/hatch-textbox-probes.tsv")) {
    SCOPED_TRACE(row.where + " " + row[0]);
    EXPECT_EQ(testing::ColorAt(image, kPx, testing::PointIn(row[1])) == 0x0000FF,
              row[2] == "filled");
  }
}

}  // namespace
}  // namespace sheafwork::embedded
