#include "embedded/model/layouts.h"

#include <string>

namespace sheafwork::embedded {
namespace {

constexpr const char* kModelSpace = "*Model_Space";
constexpr const char* kPaperSpace = "*Paper_Space";
constexpr double kMmPerInch = 25.4;
constexpr double kMinSheetSide = 50;     // mm
constexpr double kMaxSheetSide = 10000;  // mm

// Extents scaled to fit on an A3 landscape sheet.
PlotSettings FitOnA3(bool model) {
  PlotSettings s;
  s.paperWidth = 420;
  s.paperHeight = 297;
  s.plotType = kPlotExtents;
  s.standardScale = 0;
  s.Set(kUseStandardScale, true);
  s.Set(kModelType, model);
  return s;
}

// The sheet the paper limits describe, plotted 1:1; null when the limits
// cannot be a sheet.
std::optional<PlotSettings> SheetFromLimits(const Header& h) {
  const bool inches = h.measurement == 0;
  const double unit = inches ? kMmPerInch : 1;
  const double width = (h.pLimMax.x - h.pLimMin.x) * unit;
  const double height = (h.pLimMax.y - h.pLimMin.y) * unit;
  const auto plausible = [](double side) { return side >= kMinSheetSide && side <= kMaxSheetSide; };
  if (!plausible(width) || !plausible(height)) return std::nullopt;
  PlotSettings s;
  s.paperWidth = width;
  s.paperHeight = height;
  s.paperUnits = inches ? 0 : 1;
  s.plotType = kPlotLayout;
  s.standardScale = 16;
  s.Set(kUseStandardScale, true);
  s.Set(kModelType, false);
  // The plot origin is measured from the printable area's corner.
  s.origin = {-s.marginLeft - h.pLimMin.x * unit, -s.marginBottom - h.pLimMin.y * unit};
  return s;
}

bool EnsureBlock(Drawing& d, const char* name) {
  if (d.FindBlock(name) != nullptr) return false;
  Block block;
  block.name = name;
  d.blocks.push_back(std::move(block));
  return true;
}

}  // namespace

void SynthesiseLayouts(Drawing& drawing) {
  if (!drawing.layouts.empty()) return;
  const Header& h = drawing.header;
  bool blocksAdded = EnsureBlock(drawing, kModelSpace);

  Layout model;
  model.name = "Model";
  model.blockName = kModelSpace;
  model.tabOrder = 0;
  model.limMin = h.limMin;
  model.limMax = h.limMax;
  model.insBase = h.insBase;
  model.settings = FitOnA3(true);
  drawing.layouts.push_back(std::move(model));

  const Block* paperSpace = drawing.FindBlock(kPaperSpace);
  if (paperSpace != nullptr && !paperSpace->entities.empty()) {
    Layout paper;
    paper.name = "Présentation1";
    paper.blockName = paperSpace->name;
    paper.tabOrder = 1;
    paper.limMin = h.pLimMin;
    paper.limMax = h.pLimMax;
    paper.settings = SheetFromLimits(h).value_or(FitOnA3(false));
    drawing.layouts.push_back(std::move(paper));
  }
  drawing.activeLayout = (!h.tileMode && drawing.layouts.size() > 1) ? 1 : 0;
  if (blocksAdded) drawing.Reindex();
}

}  // namespace sheafwork::embedded
