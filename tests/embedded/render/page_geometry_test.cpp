#include "embedded/render/page_geometry.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "embedded/render/render_test_support.h"
#include "fakes/test_data.h"

namespace sheafwork::embedded {
namespace {

using namespace testing;

TEST(PageGeometryTest, PlacesThePlotOnTheSheet) {
  for (const auto& row : sheafwork::testing::ReadTestTable("render/page_geometry.tsv")) {
    SCOPED_TRACE(row.where + " " + row[0]);
    const std::vector<double> media = NumbersIn(row[1]);
    PlotSettings s;
    s.paperWidth = media.at(0);
    s.paperHeight = media.at(1);
    s.marginLeft = media.at(2);
    s.marginBottom = media.at(3);
    s.marginRight = media.at(4);
    s.marginTop = media.at(5);
    s.rotation = static_cast<std::int16_t>(std::stoi(row[2]));
    s.flags = kUseStandardScale;
    const double scale = std::stod(row[3]);
    s.standardScale = static_cast<std::int16_t>(scale <= 0 ? -scale : 16);
    if (scale > 0) {
      s.Set(kUseStandardScale, false);
      s.customNumerator = 1;
      s.customDenominator = scale;
    }
    s.Set(kPlotCentered, row[4] == "yes");
    s.origin = PointIn(row[5]);
    s.paperUnits = static_cast<std::int16_t>(std::stoi(row[6]));
    const SheetLayout layout = ComputeSheetLayout(s, {BoxIn(row[7]), std::nullopt});
    ExpectNear(Vec2{layout.frame.width, layout.frame.height}, PointIn(row[8]));
    ExpectNear(layout.frame.printable, BoxIn(row[9]));
    EXPECT_NEAR(layout.mmPerDrawingUnit, std::stod(row[10]), 1e-9);
    ExpectNear(layout.drawingToSheet.Apply(PointIn(row[11])), PointIn(row[12]));
  }
}

}  // namespace
}  // namespace sheafwork::embedded
