#include "embedded/render/paint_sheet.h"

#include <cmath>

#include "embedded/render/messages.h"
#include "embedded/render/plot_area.h"
#include "embedded/render/plot_style_look.h"
#include "embedded/render/truetype_text.h"

namespace sheafwork::embedded {

namespace {

// Lines a little outside the cull box can still reach into it.
constexpr double kCullSlackMm = 5;
// Largest gap between a curve and its chords on the sheet.
constexpr double kFlatteningMm = 0.01;

}  // namespace

SheetLayout PlanSheet(const PlotJob& job) {
  if (job.drawing == nullptr || job.layout == nullptr) {
    throw PlotError(render_messages::NothingToPlot());
  }
  const PlotSettings& s = job.settings;
  if (!s.HasUsablePaper()) {
    throw PlotError(render_messages::InvalidPaper(s.paperWidth, s.paperHeight));
  }
  return ComputeSheetLayout(s, ComputePlotRegion(*job.drawing, *job.layout, s, &job.work));
}

FrontendOptions SheetFrontendOptions(const PlotJob& job, const SheetLayout& sheet, Box2 cull,
                                     double dotsPerMm) {
  const PlotSettings& s = job.settings;
  cull.min = {cull.min.x - kCullSlackMm, cull.min.y - kCullSlackMm};
  cull.max = {cull.max.x + kCullSlackMm, cull.max.y + kCullSlackMm};
  FrontendOptions fo;
  fo.flattening = {kFlatteningMm, 16};
  fo.lineweights.plotLineweights = s.Has(kPrintLineweights) || s.Has(kPlotPlotStyles);
  fo.lineweights.scale = s.Has(kScaleLineweights) && !job.layout->IsModel() ? sheet.scale : 1.0;
  fo.lineweights.thinMm = ThinnestVisibleLineMm(dotsPerMm);
  if (s.Has(kPlotPlotStyles)) fo.plotStyles = job.plotStyles;
  fo.cull = cull;
  fo.viewportsFirst = s.Has(kDrawViewportsFirst);
  fo.fontSearchPath = job.fontSearchPath;
  fo.work = &job.work;
  return fo;
}

FrontendStats DrawSheet(Backend& backend, const PlotJob& job, const SheetLayout& sheet, Box2 cull,
                        double dotsPerMm) {
  FrontendOptions fo = SheetFrontendOptions(job, sheet, cull, dotsPerMm);
  fo.textMeasure = &TrueTypeMeasure();
  Frontend frontend(*job.drawing, backend, fo);
  frontend.DrawLayout(*job.layout, sheet.drawingToSheet);
  return frontend.Stats();
}

}  // namespace sheafwork::embedded
