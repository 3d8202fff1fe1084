// What a table does to an object's colour and lineweight.

#include <gtest/gtest.h>

#include "embedded/plotstyle/plot_style_table.h"

namespace sheafwork::embedded {
namespace {

TEST(PlotStyleTableTest, AppliesTheEntryOfTheColourNumber) {
  PlotStyleTable table;
  PlotStyleEntry& red = table.entries[0];
  red.color = EncodePlotStyleColor(0x0000FF);
  red.lineweight = 13;  // 0.50 in the usual table
  PlotStyleEntry& faded = table.entries[8];
  faded.color = EncodePlotStyleColor(0x000000);
  faded.screen = 25;
  PlotStyleEntry& gray = table.entries[2];
  gray.colorPolicy = kPolicyGrayscale;
  PlotStyleEntry& byLayerKind = table.entries[3];
  byLayerKind.color = EncodePlotStyleColor(0x123456, kColorKindByLayer);
  PlotStyleEntry& indexKind = table.entries[4];
  indexKind.color = EncodePlotStyleColor(0xFF00FF, kColorKindIndex);
  PlotStyleEntry& zeroWeight = table.entries[5];
  zeroWeight.lineweight = 0;  // 0.00 mm: the object's lineweight
  PlotStyleEntry& otherObject = table.entries[6];
  otherObject.color = kPlotStyleObjectColor2;
  otherObject.modeColor = EncodePlotStyleColor(0x00FF00);

  struct Case {
    int aci;
    std::uint32_t rgb;
    double mm;
    std::uint32_t wantRgb;
    double wantMm;
  };
  const Case cases[] = {
      {1, 0xFF0000, 0.25, 0x0000FF, 0.50},    // pen colour and lineweight
      {9, 0x808080, 0.25, 0xBFBFBF, 0.25},    // black at 25 %: a light grey
      {3, 0x00FF00, 0.30, 0x969696, 0.30},    // grey of the object's colour
      {4, 0xABCDEF, 0.25, 0xABCDEF, 0.25},    // "by layer" kind: the object's
      {5, 0x00FF00, 0.25, 0xFF00FF, 0.25},    // colour-number kind: its RGB bytes
      {6, 0x112233, 0.70, 0x112233, 0.70},    // 0.00 mm keeps the object's weight
      {7, 0x445566, 0.25, 0x445566, 0.25},    // the other "object colour" value
      {2, 0x10FF10, 0.18, 0x10FF10, 0.18},    // an untouched entry
      {0, 0x10FF10, 0.18, 0x10FF10, 0.18},    // no entry for 0 ...
      {256, 0x10FF10, 0.18, 0x10FF10, 0.18},  // ... nor 256
  };
  for (const Case& c : cases) {
    const PlotStylePen pen = table.Apply(c.aci, c.rgb, c.mm);
    EXPECT_EQ(pen.rgb, c.wantRgb) << "colour " << c.aci;
    EXPECT_DOUBLE_EQ(pen.lineweightMm, c.wantMm) << "colour " << c.aci;
  }
}

}  // namespace
}  // namespace sheafwork::embedded
